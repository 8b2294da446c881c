// Three floats: positions, directions and sizes in 3D. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_VECTOR3_HPP
#define GODOT_CPP_VARIANT_VECTOR3_HPP

#include <godot_cpp/variant/vector2.hpp>

namespace godot {

struct Basis;
struct Vector3i;

struct [[nodiscard]] Vector3 : internal::RealVector<Vector3> {
	enum Axis {
		AXIS_X,
		AXIS_Y,
		AXIS_Z,
	};
	static constexpr int AXIS_COUNT = 3;

	union {
		_UNNAMED_MEMBERS_ struct {
			real_t x;
			real_t y;
			real_t z;
		};
		real_t coord[3];
	};

	constexpr Vector3() : x(0), y(0), z(0) {}
	constexpr Vector3(real_t x_value, real_t y_value, real_t z_value) : x(x_value), y(y_value), z(z_value) {}

	_FORCE_INLINE_ real_t &operator[](int axis) { return coord[axis]; }
	_FORCE_INLINE_ const real_t &operator[](int axis) const { return coord[axis]; }

	template <typename F, typename... V>
	constexpr Vector3 _each(F function, const V &...v) const {
		return Vector3(function(x, v.x...), function(y, v.y...), function(z, v.z...));
	}
	template <typename F, typename... V>
	constexpr auto _sum(F function, const V &...v) const {
		return function(x, v.x...) + function(y, v.y...) + function(z, v.z...);
	}

	void zero() { *this = Vector3(); }
	Axis min_axis_index() const { return x < y ? (x < z ? AXIS_X : AXIS_Z) : (y < z ? AXIS_Y : AXIS_Z); }
	Axis max_axis_index() const { return x < y ? (y < z ? AXIS_Z : AXIS_Y) : (x < z ? AXIS_Z : AXIS_X); }

	constexpr Vector3 cross(const Vector3 &with) const {
		return Vector3((y * with.z) - (z * with.y), (z * with.x) - (x * with.z), (x * with.y) - (y * with.x));
	}
	Basis outer(const Vector3 &with) const;
	Vector3 get_any_perpendicular() const;

	real_t angle_to(const Vector3 &to) const { return Math::atan2(cross(to).length(), dot(to)); }
	real_t signed_angle_to(const Vector3 &to, const Vector3 &axis) const;
	void rotate(const Vector3 &axis, real_t angle) { *this = rotated(axis, angle); }
	Vector3 rotated(const Vector3 &axis, real_t angle) const;
	Vector3 slerp(const Vector3 &to, real_t weight) const;
	void snap(const Vector3 &step) { *this = snapped(step); }

	Vector2 octahedron_encode() const;
	static Vector3 octahedron_decode(const Vector2 &encoded);

	// The argument of these three must be normalized; debug builds report one that is not and answer with a zero vector.
	Vector3 slide(const Vector3 &normal) const;
	Vector3 bounce(const Vector3 &normal) const;
	Vector3 reflect(const Vector3 &normal) const;

	explicit operator String() const;
	operator Vector3i() const;
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_VECTOR3_HPP
