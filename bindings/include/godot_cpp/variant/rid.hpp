#ifndef GODOT_CPP_VARIANT_RID_HPP
#define GODOT_CPP_VARIANT_RID_HPP

// The engine's handle of a server resource: a plain number, so that nothing here needs the engine.

#include <cstdint>

namespace godot {

class Variant;

class RID {
	uint64_t id = 0;

public:
	bool is_valid() const { return id != 0; }
	bool is_null() const { return id == 0; }
	int64_t get_id() const { return int64_t(id); }
	uint32_t get_local_index() const { return uint32_t(id & 0xFFFFFFFF); }

	bool operator==(const RID &p_other) const { return id == p_other.id; }
	bool operator!=(const RID &p_other) const { return id != p_other.id; }
	bool operator<(const RID &p_other) const { return id < p_other.id; }
	bool operator<=(const RID &p_other) const { return id <= p_other.id; }
	bool operator>(const RID &p_other) const { return id > p_other.id; }
	bool operator>=(const RID &p_other) const { return id >= p_other.id; }

	void *_native_ptr() const { return const_cast<uint64_t *>(&id); }
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_RID_HPP
