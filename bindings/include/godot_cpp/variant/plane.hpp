// A plane in 3D: the points whose dot product with `normal` is `d`. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_PLANE_HPP
#define GODOT_CPP_VARIANT_PLANE_HPP

#include <godot_cpp/classes/global_constants.hpp>
#include <godot_cpp/variant/vector3.hpp>

namespace godot {

class Variant;

struct [[nodiscard]] Plane {
	Vector3 normal;
	real_t d = 0;

	constexpr Plane() = default;
	constexpr Plane(real_t a, real_t b, real_t c, real_t distance) : normal(a, b, c), d(distance) {}
	constexpr Plane(const Vector3 &direction, real_t distance = 0) : normal(direction), d(distance) {}
	constexpr Plane(const Vector3 &direction, const Vector3 &point) : normal(direction), d(direction.dot(point)) {}
	Plane(const Vector3 &point1, const Vector3 &point2, const Vector3 &point3, ClockDirection direction = CLOCKWISE);

	void set_normal(const Vector3 &value) { normal = value; }
	const Vector3 &get_normal() const { return normal; }
	void normalize();
	Plane normalized() const;
	constexpr Vector3 get_center() const { return normal * d; }
	Vector3 get_any_perpendicular_normal() const;
	Vector3 project(const Vector3 &point) const { return point - normal * distance_to(point); }
	bool is_point_over(const Vector3 &point) const { return normal.dot(point) > d; }
	constexpr real_t distance_to(const Vector3 &point) const { return normal.dot(point) - d; }
	bool has_point(const Vector3 &point, real_t tolerance = CMP_EPSILON) const { return Math::abs(distance_to(point)) <= tolerance; }

	bool intersect_3(const Plane &plane1, const Plane &plane2, Vector3 *result = nullptr) const;
	bool intersects_ray(const Vector3 &from, const Vector3 &direction, Vector3 *result = nullptr) const;
	bool intersects_segment(const Vector3 &from, const Vector3 &to, Vector3 *result = nullptr) const;
	// The point, or nil where there is none.
	Variant intersect_3_bind(const Plane &plane1, const Plane &plane2) const;
	Variant intersects_ray_bind(const Vector3 &from, const Vector3 &direction) const;
	Variant intersects_segment_bind(const Vector3 &from, const Vector3 &to) const;

	bool is_equal_approx(const Plane &plane) const { return normal.is_equal_approx(plane.normal) && Math::is_equal_approx(d, plane.d); }
	bool is_equal_approx_any_side(const Plane &plane) const { return is_equal_approx(plane) || is_equal_approx(-plane); }
	bool is_same(const Plane &plane) const { return normal.is_same(plane.normal) && Math::is_same(d, plane.d); }
	bool is_finite() const { return normal.is_finite() && Math::is_finite(d); }
	constexpr Plane operator-() const { return Plane(-normal, -d); }
	bool operator==(const Plane &plane) const { return normal == plane.normal && d == plane.d; }
	bool operator!=(const Plane &plane) const { return !(*this == plane); }

	explicit operator String() const;
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_PLANE_HPP
