#include "fast_lane/spots.hpp"

#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/utility_functions.hpp>
#include <godot_cpp/variant/vector2.hpp>

spots::Side spots::side_of(const Object *object) {
	if (Object::cast_to<Node2D>(object) != nullptr) {
		return IN_2D;
	}
	return Object::cast_to<Node3D>(object) != nullptr ? IN_3D : NOWHERE;
}

bool spots::read(const Object *node, Side side, Vector3 &spot) {
	switch (side) {
		case IN_2D: {
			const Vector2 in_2d = static_cast<const Node2D *>(node)->get_global_position();
			spot = Vector3(in_2d.x, in_2d.y, 0);
			return true;
		}
		case IN_3D: {
			const Node3D *in_space = static_cast<const Node3D *>(node);
			if (!in_space->is_inside_tree()) {
				return false;
			}
			spot = in_space->get_global_position();
			return true;
		}
		case NOWHERE:
			break;
	}
	spot = Vector3();
	return true;
}

bool spots::from_value(const Variant &value, Vector3 &spot) {
	switch (value.get_type()) {
		case Variant::VECTOR2:
		case Variant::VECTOR2I: {
			const Vector2 in_2d = value;
			spot = Vector3(in_2d.x, in_2d.y, 0);
			return true;
		}
		case Variant::VECTOR3:
		case Variant::VECTOR3I:
			spot = value;
			return true;
		default:
			return false;
	}
}

// The order of the random numbers is kept, so that a seeded game wanders the same way each time.
Vector3 spots::random_around(const Vector3 &home, double radius, Side side) {
	if (side == IN_2D) {
		const double distance = UtilityFunctions::randf_range(0.0, radius);
		const double angle = UtilityFunctions::randf_range(0.0, Math::TAU);
		return Vector3(real_t(home.x + std::cos(angle) * distance), real_t(home.y + std::sin(angle) * distance), home.z);
	}
	const double z = UtilityFunctions::randf_range(-1.0, 1.0);
	const double x = UtilityFunctions::randf_range(-1.0, 1.0);
	const Vector3 way = Vector3(real_t(x), 0, real_t(z)).normalized();
	return home + way * real_t(UtilityFunctions::randf_range(0.0, radius));
}
