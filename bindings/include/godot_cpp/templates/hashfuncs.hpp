// Hash functions, and the hasher and comparator that HashMap and HashSet use unless told otherwise. A type of its own becomes a key by
// offering `uint32_t hash() const` and `operator==`; every engine type does.
#ifndef GODOT_CPP_TEMPLATES_HASHFUNCS_HPP
#define GODOT_CPP_TEMPLATES_HASHFUNCS_HPP

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/core/object_id.hpp>

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace godot {

template <class T>
class Ref;

struct AABB;
struct Basis;
struct Color;
struct Plane;
struct Projection;
struct Quaternion;
struct Rect2;
struct Rect2i;
struct Transform2D;
struct Transform3D;
struct Vector2;
struct Vector2i;
struct Vector3;
struct Vector3i;
struct Vector4;
struct Vector4i;

namespace internal {

template <typename T, typename... Choices>
inline constexpr bool is_one_of = (std::is_same_v<T, Choices> || ...);

template <typename T>
inline constexpr bool is_real_math_type =
		is_one_of<T, Vector2, Vector3, Vector4, Rect2, AABB, Basis, Color, Plane, Projection, Quaternion, Transform2D, Transform3D>;

// The kind of number that a math type consists of.
template <typename T>
struct MathNumber {
	static constexpr bool INTEGER = is_one_of<T, Vector2i, Vector3i, Vector4i, Rect2i>;
	static constexpr bool REAL = is_real_math_type<T>;
	static_assert(INTEGER || REAL, "This type has no hash(): give the container a hasher.");
	using Type = std::conditional_t<INTEGER, int32_t, real_t>;
};

} // namespace internal

#define HASH_MURMUR3_SEED 0x7F07C65

constexpr uint32_t hash_rotl32(uint32_t x, int8_t bits) {
	return (x << bits) | (x >> (32 - bits));
}

// The finishing step of MurmurHash3: spreads every input bit over the whole result.
constexpr uint32_t hash_fmix32(uint32_t h) {
	h ^= h >> 16;
	h *= 0x85ebca6b;
	h ^= h >> 13;
	h *= 0xc2b2ae35;
	h ^= h >> 16;
	return h;
}

constexpr uint32_t hash_murmur3_one_32(uint32_t value, uint32_t seed = HASH_MURMUR3_SEED) {
	value *= 0xcc9e2d51;
	value = hash_rotl32(value, 15);
	value *= 0x1b873593;
	seed ^= value;
	seed = hash_rotl32(seed, 13);
	return seed * 5 + 0xe6546b64;
}

constexpr uint32_t hash_murmur3_one_64(uint64_t value, uint32_t seed = HASH_MURMUR3_SEED) {
	seed = hash_murmur3_one_32(uint32_t(value & 0xFFFFFFFF), seed);
	return hash_murmur3_one_32(uint32_t(value >> 32), seed);
}

// Equal floats hash equal: both zeros do, and so does every NaN.
inline uint32_t hash_murmur3_one_float(float value, uint32_t seed = HASH_MURMUR3_SEED) {
	uint32_t bits;
	if (value == 0.0f) {
		value = 0.0f;
	} else if (Math::is_nan(value)) {
		value = NAN;
	}
	std::memcpy(&bits, &value, sizeof(bits));
	return hash_murmur3_one_32(bits, seed);
}

inline uint32_t hash_murmur3_one_double(double value, uint32_t seed = HASH_MURMUR3_SEED) {
	uint64_t bits;
	if (value == 0.0) {
		value = 0.0;
	} else if (Math::is_nan(value)) {
		value = NAN;
	}
	std::memcpy(&bits, &value, sizeof(bits));
	return hash_murmur3_one_64(bits, seed);
}

inline uint32_t hash_murmur3_one_real(real_t value, uint32_t seed = HASH_MURMUR3_SEED) {
	return hash_murmur3_one_float(value, seed);
}

inline uint32_t hash_murmur3_buffer(const void *data, int length, uint32_t seed = HASH_MURMUR3_SEED) {
	const uint8_t *bytes = static_cast<const uint8_t *>(data);
	const int blocks = length / 4;
	uint32_t h = seed;
	for (int i = 0; i < blocks; i++) {
		uint32_t block;
		std::memcpy(&block, bytes + i * 4, sizeof(block));
		h = hash_murmur3_one_32(block, h);
	}
	uint32_t tail = 0;
	for (int i = length - 1; i >= blocks * 4; i--) {
		tail = (tail << 8) | bytes[i];
	}
	tail *= 0xcc9e2d51;
	tail = hash_rotl32(tail, 15);
	tail *= 0x1b873593;
	h ^= tail;
	return hash_fmix32(h ^ uint32_t(length));
}

inline uint32_t hash_djb2(const char *text) {
	uint32_t h = 5381;
	for (; *text; text++) {
		h = h * 33 + uint8_t(*text);
	}
	return h;
}

inline uint32_t hash_djb2_buffer(const uint8_t *bytes, int length, uint32_t previous = 5381) {
	for (int i = 0; i < length; i++) {
		previous = previous * 33 + bytes[i];
	}
	return previous;
}

constexpr uint32_t hash_djb2_one_32(uint32_t value, uint32_t previous = 5381) {
	return previous * 33 + value;
}

constexpr uint32_t hash_one_uint64(uint64_t value) {
	value = (~value) + (value << 18);
	value ^= value >> 31;
	value *= 21;
	value ^= value >> 11;
	value += value << 6;
	value ^= value >> 22;
	return uint32_t(value);
}

struct HashMapHasherDefault {
	template <typename T>
	static uint32_t hash(const T &value) {
		if constexpr (std::is_pointer_v<T>) {
			return hash_one_uint64(uint64_t(reinterpret_cast<uintptr_t>(value)));
		} else if constexpr (std::is_same_v<T, float>) {
			return hash_fmix32(hash_murmur3_one_float(value));
		} else if constexpr (std::is_floating_point_v<T>) {
			return hash_fmix32(hash_murmur3_one_double(double(value)));
		} else if constexpr (std::is_integral_v<T> || std::is_enum_v<T>) {
			return sizeof(T) > 4 ? hash_one_uint64(uint64_t(value)) : hash_fmix32(uint32_t(value));
		} else if constexpr (std::is_same_v<T, ObjectID>) {
			return hash_one_uint64(uint64_t(value));
		} else {
			return _object(value, 0);
		}
	}

	template <typename T>
	static uint32_t hash(const Ref<T> &reference) {
		return hash(reference.ptr());
	}

private:
	template <typename T>
	static auto _object(const T &value, int) -> decltype(uint32_t(value.hash())) {
		return uint32_t(value.hash());
	}

	template <typename T>
	static auto _object(const T &value, int) -> decltype(uint32_t(value.get_id())) {
		return hash_one_uint64(uint64_t(value.get_id()));
	}

	// What is left are the math types, which consist of numbers of one kind.
	template <typename T>
	static uint32_t _object(const T &value, long) {
		using Number = typename internal::MathNumber<T>::Type;
		Number parts[sizeof(T) / sizeof(Number)];
		std::memcpy(parts, static_cast<const void *>(&value), sizeof(T));
		uint32_t h = HASH_MURMUR3_SEED;
		for (const Number &part : parts) {
			if constexpr (std::is_floating_point_v<Number>) {
				h = hash_murmur3_one_float(part, h);
			} else {
				h = hash_murmur3_one_32(uint32_t(part), h);
			}
		}
		return hash_fmix32(h);
	}
};

template <typename T>
struct HashMapComparatorDefault {
	static bool compare(const T &a, const T &b) {
		if constexpr (std::is_floating_point_v<T>) {
			// NaN has to be found again once it is a key.
			return a == b || (std::isnan(a) && std::isnan(b));
		} else if constexpr (internal::is_real_math_type<T>) {
			return a.is_same(b);
		} else {
			return a == b;
		}
	}
};

} // namespace godot

#endif // GODOT_CPP_TEMPLATES_HASHFUNCS_HPP
