// The number under which the engine knows an object for as long as it lives. Code that must survive a call into a game's scripts keeps this
// instead of a pointer and asks ObjectDB again afterwards.

#ifndef GODOT_CPP_CORE_OBJECT_ID_HPP
#define GODOT_CPP_CORE_OBJECT_ID_HPP

#include <cstdint>

namespace godot {

class ObjectID {
	uint64_t id = 0;

public:
	constexpr ObjectID() = default;
	explicit constexpr ObjectID(const uint64_t p_id) : id(p_id) {}
	explicit constexpr ObjectID(const int64_t p_id) : id(static_cast<uint64_t>(p_id)) {}

	ObjectID &operator=(int64_t p_id) {
		id = static_cast<uint64_t>(p_id);
		return *this;
	}
	ObjectID &operator=(uint64_t p_id) {
		id = p_id;
		return *this;
	}

	constexpr bool is_ref_counted() const { return (id >> 63) != 0; }
	constexpr bool is_valid() const { return id != 0; }
	constexpr bool is_null() const { return id == 0; }

	constexpr operator uint64_t() const { return id; }
	constexpr operator int64_t() const { return static_cast<int64_t>(id); }

	constexpr bool operator==(const ObjectID &p_other) const { return id == p_other.id; }
	constexpr bool operator!=(const ObjectID &p_other) const { return id != p_other.id; }
	constexpr bool operator<(const ObjectID &p_other) const { return id < p_other.id; }
};

} // namespace godot

#endif // GODOT_CPP_CORE_OBJECT_ID_HPP
