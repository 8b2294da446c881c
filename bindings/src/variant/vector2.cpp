#include <godot_cpp/variant/vector2.hpp>
#include <godot_cpp/variant/vector2i.hpp>

#include "math_checks.hpp"

namespace godot {

Vector2 Vector2::rotated(real_t angle) const {
	const real_t sine = Math::sin(angle);
	const real_t cosine = Math::cos(angle);
	return Vector2(x * cosine - y * sine, x * sine + y * cosine);
}

Vector2 Vector2::slerp(const Vector2 &to, real_t weight) const {
	const real_t from_squared = length_squared();
	const real_t to_squared = to.length_squared();
	if (from_squared == 0.0f || to_squared == 0.0f) {
		// A zero vector has no angle to turn from.
		return lerp(to, weight);
	}
	const real_t from_length = Math::sqrt(from_squared);
	const real_t result_length = Math::lerp(from_length, Math::sqrt(to_squared), weight);
	return rotated(angle_to(to) * weight) * (result_length / from_length);
}

Vector2 Vector2::slide(const Vector2 &normal) const {
	CHECK_NORMALIZED(normal, "normal Vector2", Vector2());
	return *this - normal * dot(normal);
}

Vector2 Vector2::bounce(const Vector2 &normal) const {
	return -reflect(normal);
}

Vector2 Vector2::reflect(const Vector2 &normal) const {
	CHECK_NORMALIZED(normal, "normal Vector2", Vector2());
	return 2.0f * normal * dot(normal) - *this;
}

Vector2::operator String() const {
	return String(Variant(*this));
}

Vector2i::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
