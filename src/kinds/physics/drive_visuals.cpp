#include "kinds/physics/drive_visuals.hpp"

#include "character/body_keys.hpp"

#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/classes/vehicle_wheel3d.hpp>
#include <godot_cpp/classes/visual_instance3d.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/packed_float32_array.hpp>
#include <godot_cpp/variant/packed_int64_array.hpp>
#include <godot_cpp/variant/packed_vector3_array.hpp>

namespace drive_visuals {

namespace {

constexpr double USUAL_RADIUS = 0.35;
// How fast wheels and the model follow, in shares a second.
constexpr double FOLLOWS = 8.0;
constexpr double LEAST_TURN = 0.0001;

bool is_called_a_wheel(const Node *node) {
	const String name = String(node->get_name()).to_lower();
	return name.contains("wheel") && !name.contains("steering");
}

bool is_in_space(const Node *node) {
	return Object::cast_to<Node2D>(node) != nullptr || Object::cast_to<Node3D>(node) != nullptr;
}

// A wheel is not looked into, but what holds several of them is none.
bool collect(Node *node, PackedInt64Array &wheels) {
	bool any_below = false;
	for (int i = 0; i < node->get_child_count(); i++) {
		Node *child = node->get_child(i);
		const bool below = collect(child, wheels);
		if (!below && is_called_a_wheel(child) && is_in_space(child)) {
			wheels.push_back(int64_t(child->get_instance_id()));
			any_below = true;
		}
		any_below = any_below || below;
	}
	return any_below;
}

template <class Wheel>
Wheel *wheel_at(const PackedInt64Array &wheels, int64_t at) {
	return Object::cast_to<Wheel>(ObjectDB::get_instance(ObjectID(uint64_t(wheels[at]))));
}

Vector3 rest_of(const Node *wheel) {
	if (const Node2D *in_2d = Object::cast_to<Node2D>(wheel)) {
		return Vector3(0, 0, in_2d->get_rotation());
	}
	const Node3D *in_3d = Object::cast_to<Node3D>(wheel);
	return in_3d != nullptr ? in_3d->get_rotation() : Vector3();
}

PackedInt64Array wheels_of(Node *body) {
	const DriveKeys &keys = DriveKeys::shared();
	if (!body->has_meta(keys.wheels)) {
		PackedInt64Array wheels;
		collect(body, wheels);
		PackedVector3Array rest;
		for (int64_t i = 0; i < wheels.size(); i++) {
			rest.push_back(rest_of(wheel_at<Node>(wheels, i)));
		}
		body->set_meta(keys.wheels, wheels);
		body->set_meta(keys.wheel_rest, rest);
	}
	return body->get_meta(keys.wheels);
}

double radius_of(const Node3D *wheel) {
	const VisualInstance3D *drawn = Object::cast_to<VisualInstance3D>(wheel);
	if (drawn == nullptr) {
		return USUAL_RADIUS;
	}
	const Vector3 size = drawn->get_aabb().size;
	const double radius = double(MAX(size.x, MAX(size.y, size.z))) / 2.0;
	return radius > LEAST_TURN ? radius : USUAL_RADIUS;
}

void turn_wheel(const Node2D *body, Node2D *wheel, const Vector3 &rest, double, double steer) {
	const bool in_front = (body->get_global_transform().affine_inverse().xform(wheel->get_global_position())).x > 0.0f;
	if (in_front) {
		wheel->set_rotation(double(rest.z) + steer);
	}
}

void turn_wheel(const Node3D *body, Node3D *wheel, const Vector3 &rest, double rolled, double steer) {
	const bool in_front = (body->get_global_transform().affine_inverse().xform(wheel->get_global_position())).z < 0.0f;
	const Basis turned =
			Basis(Vector3(0, 1, 0), real_t(in_front ? -steer : 0.0)) * Basis(Vector3(1, 0, 0), real_t(-Math::fmod(rolled / radius_of(wheel), Math::TAU)));
	wheel->set_rotation((turned * Basis::from_euler(rest)).get_euler());
}

template <class Side>
void turn_all(Side *body, double rolled, double steer) {
	const PackedInt64Array wheels = wheels_of(body);
	const PackedVector3Array rest = body->get_meta(DriveKeys::shared().wheel_rest);
	for (int64_t i = 0; i < wheels.size() && i < rest.size(); i++) {
		Side *wheel = wheel_at<Side>(wheels, i);
		if (wheel != nullptr && wheel->is_inside_tree()) {
			turn_wheel(body, wheel, rest[i], rolled, steer);
		}
	}
}

} // namespace

void turn_wheels(Node *body, double way, double steer, double delta) {
	const DriveKeys &keys = DriveKeys::shared();
	if (wheels_of(body).is_empty() || !body->is_inside_tree()) {
		return;
	}
	const double before = body_keys::number(body, keys.wheel_steer, 0.0);
	const double steered = Math::lerp(before, steer, MIN(FOLLOWS * delta, 1.0));
	const double rolled = body_keys::number(body, keys.wheel_roll, 0.0) + way;
	if (Math::abs(way) < LEAST_TURN && Math::abs(steered - before) < LEAST_TURN) {
		return;
	}
	body->set_meta(keys.wheel_steer, steered);
	body->set_meta(keys.wheel_roll, rolled);
	if (Node2D *in_2d = Object::cast_to<Node2D>(body)) {
		turn_all(in_2d, rolled, steered);
	} else if (Node3D *in_3d = Object::cast_to<Node3D>(body)) {
		turn_all(in_3d, rolled, steered);
	}
}

void grip_wheels(VehicleBody3D *vehicle, double share) {
	const DriveKeys &keys = DriveKeys::shared();
	if (!vehicle->has_meta(keys.wheels)) {
		PackedInt64Array wheels;
		PackedFloat32Array grips;
		for (int i = 0; i < vehicle->get_child_count(); i++) {
			VehicleWheel3D *wheel = Object::cast_to<VehicleWheel3D>(vehicle->get_child(i));
			if (wheel != nullptr && !wheel->is_used_as_steering()) {
				wheels.push_back(int64_t(wheel->get_instance_id()));
				grips.push_back(wheel->get_friction_slip());
			}
		}
		vehicle->set_meta(keys.wheels, wheels);
		vehicle->set_meta(keys.wheel_grip, grips);
	}
	const PackedInt64Array wheels = vehicle->get_meta(keys.wheels);
	const PackedFloat32Array grips = vehicle->get_meta(keys.wheel_grip);
	for (int64_t i = 0; i < wheels.size() && i < grips.size(); i++) {
		if (VehicleWheel3D *wheel = wheel_at<VehicleWheel3D>(wheels, i)) {
			wheel->set_friction_slip(float(double(grips[i]) * share));
		}
	}
}

void lean(Node *body, Node *model, double degrees, double corner, double braking, double delta) {
	Node3D *leaning = Object::cast_to<Node3D>(model);
	if (leaning == nullptr) {
		return;
	}
	const DriveKeys &keys = DriveKeys::shared();
	if (!body->has_meta(keys.model_rest)) {
		body->set_meta(keys.model_rest, leaning->get_rotation());
	}
	const Vector2 full = Vector2(real_t(corner), real_t(-braking / 2.0)) * real_t(Math::deg_to_rad(degrees));
	const Vector2 before = body->has_meta(keys.lean) ? Vector2(body->get_meta(keys.lean)) : Vector2();
	const Vector2 now = before.lerp(full, real_t(MIN(FOLLOWS * delta, 1.0)));
	body->set_meta(keys.lean, now);
	const Vector3 rest = body->get_meta(keys.model_rest);
	const Basis leant = Basis(Vector3(1, 0, 0), now.y) * Basis(Vector3(0, 0, 1), now.x);
	leaning->set_rotation((leant * Basis::from_euler(rest)).get_euler());
}

void stand_straight(Node *body, Node *model) {
	const DriveKeys &keys = DriveKeys::shared();
	Node3D *leaning = Object::cast_to<Node3D>(model);
	if (leaning != nullptr && body->has_meta(keys.model_rest)) {
		leaning->set_rotation(body->get_meta(keys.model_rest));
	}
	body->remove_meta(keys.model_rest);
	body->remove_meta(keys.lean);
}

} // namespace drive_visuals
