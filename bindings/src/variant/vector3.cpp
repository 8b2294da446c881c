#include <godot_cpp/variant/basis.hpp>
#include <godot_cpp/variant/vector3.hpp>
#include <godot_cpp/variant/vector3i.hpp>

#include "math_checks.hpp"

namespace godot {

Vector3 Vector3::get_any_perpendicular() const {
	CHECK_MATH(!is_zero_approx(), Vector3(), "The Vector3 must not be zero.");
	return cross(Math::abs(x) <= Math::abs(y) && Math::abs(x) <= Math::abs(z) ? Vector3(1, 0, 0) : Vector3(0, 1, 0)).normalized();
}

real_t Vector3::signed_angle_to(const Vector3 &to, const Vector3 &axis) const {
	const Vector3 normal = cross(to);
	const real_t angle = Math::atan2(normal.length(), dot(to));
	return normal.dot(axis) < 0 ? -angle : angle;
}

Vector3 Vector3::rotated(const Vector3 &axis, real_t angle) const {
	return Basis(axis, angle).xform(*this);
}

Vector3 Vector3::slerp(const Vector3 &to, real_t weight) const {
	const real_t from_squared = length_squared();
	const real_t to_squared = to.length_squared();
	if (from_squared == 0.0f || to_squared == 0.0f) {
		// A zero vector has no angle to turn from.
		return lerp(to, weight);
	}
	Vector3 axis = cross(to);
	const real_t axis_squared = axis.length_squared();
	if (axis_squared == 0.0f) {
		// Collinear: no plane to turn in.
		return lerp(to, weight);
	}
	axis /= Math::sqrt(axis_squared);
	const real_t from_length = Math::sqrt(from_squared);
	const real_t result_length = Math::lerp(from_length, Math::sqrt(to_squared), weight);
	return rotated(axis, angle_to(to) * weight) * (result_length / from_length);
}

Vector2 Vector3::octahedron_encode() const {
	// Seen from above, the upper half of the octahedron fills the inner diamond; the lower half is folded outwards.
	const Vector3 n = *this / (Math::abs(x) + Math::abs(y) + Math::abs(z));
	Vector2 o(n.x, n.y);
	if (n.z < 0) {
		o.x = (1.0f - Math::abs(n.y)) * (n.x >= 0.0f ? 1.0f : -1.0f);
		o.y = (1.0f - Math::abs(n.x)) * (n.y >= 0.0f ? 1.0f : -1.0f);
	}
	return Vector2(o.x * 0.5f + 0.5f, o.y * 0.5f + 0.5f);
}

Vector3 Vector3::octahedron_decode(const Vector2 &encoded) {
	const Vector2 f(encoded.x * 2.0f - 1.0f, encoded.y * 2.0f - 1.0f);
	Vector3 n(f.x, f.y, 1.0f - Math::abs(f.x) - Math::abs(f.y));
	const real_t fold = CLAMP(-n.z, 0.0f, 1.0f);
	n.x += n.x >= 0 ? -fold : fold;
	n.y += n.y >= 0 ? -fold : fold;
	return n.normalized();
}

Vector3 Vector3::slide(const Vector3 &normal) const {
	CHECK_NORMALIZED(normal, "normal Vector3", Vector3());
	return *this - normal * dot(normal);
}

Vector3 Vector3::bounce(const Vector3 &normal) const {
	return -reflect(normal);
}

Vector3 Vector3::reflect(const Vector3 &normal) const {
	CHECK_NORMALIZED(normal, "normal Vector3", Vector3());
	return 2.0f * normal * dot(normal) - *this;
}

Vector3::operator String() const {
	return String(Variant(*this));
}

Vector3i::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
