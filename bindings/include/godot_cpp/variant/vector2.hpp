// A pair of floats: positions, directions and sizes in 2D. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_VECTOR2_HPP
#define GODOT_CPP_VARIANT_VECTOR2_HPP

#include <godot_cpp/variant/vector_common.hpp>

namespace godot {

struct Vector2i;

struct [[nodiscard]] Vector2 : internal::RealVector<Vector2> {
	enum Axis {
		AXIS_X,
		AXIS_Y,
	};
	static constexpr int AXIS_COUNT = 2;

	union {
		_UNNAMED_MEMBERS_ struct {
			union {
				real_t x;
				real_t width;
			};
			union {
				real_t y;
				real_t height;
			};
		};
		real_t coord[2];
	};

	constexpr Vector2() : x(0), y(0) {}
	constexpr Vector2(real_t x_value, real_t y_value) : x(x_value), y(y_value) {}

	_FORCE_INLINE_ real_t &operator[](int axis) { return coord[axis]; }
	_FORCE_INLINE_ const real_t &operator[](int axis) const { return coord[axis]; }

	template <typename F, typename... V>
	constexpr Vector2 _each(F function, const V &...v) const {
		return Vector2(function(x, v.x...), function(y, v.y...));
	}
	template <typename F, typename... V>
	constexpr auto _sum(F function, const V &...v) const {
		return function(x, v.x...) + function(y, v.y...);
	}

	Axis min_axis_index() const { return x < y ? AXIS_X : AXIS_Y; }
	Axis max_axis_index() const { return x < y ? AXIS_Y : AXIS_X; }

	static Vector2 from_angle(real_t angle) { return Vector2(Math::cos(angle), Math::sin(angle)); }
	real_t angle() const { return Math::atan2(y, x); }
	real_t angle_to(const Vector2 &to) const { return Math::atan2(cross(to), dot(to)); }
	real_t angle_to_point(const Vector2 &to) const { return (to - *this).angle(); }
	constexpr real_t cross(const Vector2 &with) const { return x * with.y - y * with.x; }
	constexpr real_t aspect() const { return x / y; }
	constexpr Vector2 orthogonal() const { return Vector2(y, -x); }
	Vector2 rotated(real_t angle) const;
	Vector2 slerp(const Vector2 &to, real_t weight) const;
	Vector2 plane_project(real_t d, const Vector2 &v) const { return v - *this * (dot(v) - d); }

	// The argument of these three must be normalized; debug builds report one that is not and answer with a zero vector.
	Vector2 slide(const Vector2 &normal) const;
	Vector2 bounce(const Vector2 &normal) const;
	Vector2 reflect(const Vector2 &normal) const;

	explicit operator String() const;
	operator Vector2i() const;
};

using Size2 = Vector2;
using Point2 = Vector2;

} // namespace godot

#endif // GODOT_CPP_VARIANT_VECTOR2_HPP
