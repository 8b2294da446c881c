#ifndef GODOT_CPP_VARIANT_OPAQUE_VALUE_HPP
#define GODOT_CPP_VARIANT_OPAQUE_VALUE_HPP

// The storage and the life of a builtin value whose inside belongs to the engine: every String, StringName, NodePath,
// Callable, Signal, Dictionary, Array and packed array is one. Copying and destroying ask the engine; moving swaps bytes,
// which all of these types allow, and leaves an empty, valid value behind.

#include <gdextension_interface.h>

#include <cstddef>
#include <cstdint>
#include <utility>

namespace godot {
namespace internal {

// Called once, when the interface has been loaded and before any such value is made.
void init_opaque_values();
void construct_opaque(GDExtensionVariantType p_type, void *r_value);
void copy_opaque(GDExtensionVariantType p_type, void *r_value, const void *p_from);
void destroy_opaque(GDExtensionVariantType p_type, void *p_value);

// Says that the constructor's body fills the storage.
struct Unconstructed {};

// ZERO_IS_EMPTY: the type's empty value is all zero bits and owns nothing, so that making, moving and dropping one costs
// no call. Array and Dictionary own a shared block even when empty.
template <GDExtensionVariantType TYPE, size_t SIZE, bool ZERO_IS_EMPTY = true>
class OpaqueValue {
	static_assert(SIZE % sizeof(uint64_t) == 0);
	static constexpr size_t WORDS = SIZE / sizeof(uint64_t);

	uint64_t opaque[WORDS] = {};

protected:
	OpaqueValue() {
		if constexpr (!ZERO_IS_EMPTY) {
			construct_opaque(TYPE, opaque);
		}
	}

	explicit OpaqueValue(Unconstructed) {}

	OpaqueValue(const OpaqueValue &p_other) {
		if (!p_other._is_zero()) {
			copy_opaque(TYPE, opaque, p_other.opaque);
		}
	}

	OpaqueValue(OpaqueValue &&p_other) noexcept : OpaqueValue() { _swap(p_other); }

	~OpaqueValue() {
		if (!_is_zero()) {
			destroy_opaque(TYPE, opaque);
		}
	}

	OpaqueValue &operator=(const OpaqueValue &p_other) {
		if (this != &p_other) {
			OpaqueValue copy(p_other);
			_swap(copy);
		}
		return *this;
	}

	OpaqueValue &operator=(OpaqueValue &&p_other) noexcept {
		if (this != &p_other) {
			OpaqueValue taken(std::move(p_other));
			_swap(taken);
		}
		return *this;
	}

	bool _is_zero() const {
		uint64_t bits = 0;
		for (const uint64_t word : opaque) {
			bits |= word;
		}
		return bits == 0;
	}

	uint64_t _first_word() const { return opaque[0]; }

private:
	void _swap(OpaqueValue &p_other) noexcept {
		for (size_t index = 0; index < WORDS; index++) {
			std::swap(opaque[index], p_other.opaque[index]);
		}
	}

public:
	GDExtensionTypePtr _native_ptr() const { return const_cast<uint64_t *>(opaque); }
};

// What operator[] gives for an index outside, after reporting it: an empty value that the caller may write to in vain.
// Kept in zeroed bytes because a static object of an engine type would be destroyed after the engine has gone.
template <typename T>
T &out_of_bounds_value() {
	alignas(T) static thread_local unsigned char bytes[sizeof(T)] = {};
	T &value = *reinterpret_cast<T *>(bytes);
	value = T();
	return value;
}

void report_index_out_of_bounds(GDExtensionVariantType p_type, int64_t p_index, int64_t p_size);

} // namespace internal
} // namespace godot

#endif // GODOT_CPP_VARIANT_OPAQUE_VALUE_HPP
