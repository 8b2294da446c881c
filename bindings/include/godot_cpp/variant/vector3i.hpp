// Three integers: a cell of a grid in 3D. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_VECTOR3I_HPP
#define GODOT_CPP_VARIANT_VECTOR3I_HPP

#include <godot_cpp/variant/vector3.hpp>

namespace godot {

struct [[nodiscard]] Vector3i : internal::IntVector<Vector3i> {
	enum Axis {
		AXIS_X,
		AXIS_Y,
		AXIS_Z,
	};
	static constexpr int AXIS_COUNT = 3;

	union {
		_UNNAMED_MEMBERS_ struct {
			int32_t x;
			int32_t y;
			int32_t z;
		};
		int32_t coord[3];
	};

	constexpr Vector3i() : x(0), y(0), z(0) {}
	constexpr Vector3i(int32_t x_value, int32_t y_value, int32_t z_value) : x(x_value), y(y_value), z(z_value) {}

	_FORCE_INLINE_ int32_t &operator[](int axis) { return coord[axis]; }
	_FORCE_INLINE_ const int32_t &operator[](int axis) const { return coord[axis]; }

	template <typename F, typename... V>
	constexpr Vector3i _each(F function, const V &...v) const {
		return Vector3i(function(x, v.x...), function(y, v.y...), function(z, v.z...));
	}
	template <typename F, typename... V>
	constexpr auto _sum(F function, const V &...v) const {
		return function(x, v.x...) + function(y, v.y...) + function(z, v.z...);
	}

	Axis min_axis_index() const { return x < y ? (x < z ? AXIS_X : AXIS_Z) : (y < z ? AXIS_Y : AXIS_Z); }
	Axis max_axis_index() const { return x < y ? (y < z ? AXIS_Z : AXIS_Y) : (x < z ? AXIS_Z : AXIS_X); }

	explicit operator String() const;
	constexpr operator Vector3() const { return Vector3(real_t(x), real_t(y), real_t(z)); }
};

inline Vector3::operator Vector3i() const {
	return Vector3i(int32_t(x), int32_t(y), int32_t(z));
}

} // namespace godot

#endif // GODOT_CPP_VARIANT_VECTOR3I_HPP
