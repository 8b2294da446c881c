#pragma once

// Where things are and how they get there, for the jobs of the fast lane and whoever else measures as they do:
// no Variant, no allocation, 2D and 3D by one path. A spot in 2D is a Vector3 whose z is 0.

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/variant.hpp>
#include <godot_cpp/variant/vector3.hpp>

#include <cmath>

using namespace godot;

namespace spots {

enum Side : uint8_t {
	// Neither a Node2D nor a Node3D.
	NOWHERE,
	IN_2D,
	IN_3D,
};

Side side_of(const Object *object);

// False when it cannot be told: a Node3D has no global position outside the tree. Zero for what is nowhere.
bool read(const Object *node, Side side, Vector3 &spot);
// The spot that a Vector2 or a Vector3 stands for; false for anything else.
bool from_value(const Variant &value, Vector3 &spot);
Vector3 random_around(const Vector3 &home, double radius, Side side);

// What is to be crossed on the ground, where height never counts: x and y in 2D, x and z in 3D.
struct Way {
	double x;
	double along;
	double length;

	Way(const Vector3 &from, const Vector3 &to, Side side) :
			x(double(to.x) - double(from.x)), along(side == IN_2D ? double(to.y) - double(from.y) : double(to.z) - double(from.z)),
			length(std::sqrt(x * x + along * along)) {}

	// After one step of so many seconds, which lands on the place rather than beyond it.
	Vector3 step(const Vector3 &from, Side side, double speed, double delta) const {
		constexpr double SHORTEST_DELTA = 0.0001;
		if (!(length > 0.0)) {
			return from;
		}
		const double longest = delta > SHORTEST_DELTA ? delta : SHORTEST_DELTA;
		const double share = speed * longest < length ? speed * delta / length : delta / longest;
		const real_t after = real_t(double(from.x) + x * share);
		if (side == IN_2D) {
			return Vector3(after, real_t(double(from.y) + along * share), from.z);
		}
		return Vector3(after, from.y, real_t(double(from.z) + along * share));
	}
};

// The square of how far apart two spots are; in 3D with height, unless it is to be ignored.
inline double apart_squared(const Vector3 &from, const Vector3 &to, Side side, bool ignore_height) {
	const double x = double(to.x) - double(from.x);
	const double y = side == IN_3D && ignore_height ? 0.0 : double(to.y) - double(from.y);
	if (side == IN_2D) {
		return x * x + y * y;
	}
	const double z = double(to.z) - double(from.z);
	return x * x + y * y + z * z;
}

inline double ground_distance(const Vector3 &from, const Vector3 &to, Side side) {
	return Way(from, to, side).length;
}

inline double full_distance(const Vector3 &from, const Vector3 &to) {
	return std::sqrt(apart_squared(from, to, IN_3D, false));
}

} // namespace spots
