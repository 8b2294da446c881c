#include <godot_cpp/variant/plane.hpp>

#include "math_checks.hpp"

namespace godot {

Plane::Plane(const Vector3 &point1, const Vector3 &point2, const Vector3 &point3, ClockDirection direction) {
	normal = direction == CLOCKWISE ? (point1 - point3).cross(point1 - point2) : (point1 - point2).cross(point1 - point3);
	normal.normalize();
	d = normal.dot(point1);
}

void Plane::normalize() {
	const real_t length = normal.length();
	if (length == 0) {
		*this = Plane();
		return;
	}
	normal /= length;
	d /= length;
}

Plane Plane::normalized() const {
	Plane result = *this;
	result.normalize();
	return result;
}

Vector3 Plane::get_any_perpendicular_normal() const {
	const Vector3 other = Math::abs(normal.dot(Vector3(1, 0, 0))) > 0.99f ? Vector3(0, 1, 0) : Vector3(1, 0, 0);
	return (other - normal * normal.dot(other)).normalized();
}

bool Plane::intersect_3(const Plane &plane1, const Plane &plane2, Vector3 *result) const {
	const real_t volume = normal.cross(plane1.normal).dot(plane2.normal);
	if (Math::is_zero_approx(volume)) {
		return false;
	}
	if (result) {
		*result = ((plane1.normal.cross(plane2.normal) * d) + (plane2.normal.cross(normal) * plane1.d) + (normal.cross(plane1.normal) * plane2.d)) / volume;
	}
	return true;
}

bool Plane::intersects_ray(const Vector3 &from, const Vector3 &direction, Vector3 *result) const {
	const real_t slope = normal.dot(direction);
	if (Math::is_zero_approx(slope)) {
		return false;
	}
	const real_t distance = (normal.dot(from) - d) / slope;
	if (distance > real_t(CMP_EPSILON)) {
		// Behind the start.
		return false;
	}
	if (result) {
		*result = from + direction * -distance;
	}
	return true;
}

bool Plane::intersects_segment(const Vector3 &from, const Vector3 &to, Vector3 *result) const {
	const Vector3 way = from - to;
	const real_t slope = normal.dot(way);
	if (Math::is_zero_approx(slope)) {
		return false;
	}
	const real_t share = (normal.dot(from) - d) / slope;
	if (share < real_t(-CMP_EPSILON) || share > (1.0f + real_t(CMP_EPSILON))) {
		return false;
	}
	if (result) {
		*result = from + way * -share;
	}
	return true;
}

Variant Plane::intersect_3_bind(const Plane &plane1, const Plane &plane2) const {
	Vector3 point;
	return intersect_3(plane1, plane2, &point) ? Variant(point) : Variant();
}

Variant Plane::intersects_ray_bind(const Vector3 &from, const Vector3 &direction) const {
	Vector3 point;
	return intersects_ray(from, direction, &point) ? Variant(point) : Variant();
}

Variant Plane::intersects_segment_bind(const Vector3 &from, const Vector3 &to) const {
	Vector3 point;
	return intersects_segment(from, to, &point) ? Variant(point) : Variant();
}

Plane::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
