#include "action/facing.hpp"

#include "action/spaces.hpp"

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/quaternion.hpp>

namespace facing {

namespace {

// Straighter up than this, the upright axis no longer says which way round it stands.
constexpr real_t STRAIGHT_UP = 0.9999f;

Quaternion rotation_of(const Basis &basis) {
	return spaces::has_a_way_back(basis) ? basis.get_rotation_quaternion() : Quaternion();
}

Variant goal_2d(const CanvasItem *item, const Vector2 &direction, const Stance &stance) {
	const Transform2D parent = spaces::parent_of(item);
	if (direction.is_zero_approx() || !spaces::has_a_way_back(parent)) {
		return Variant();
	}
	const Vector2 turned = direction.rotated(real_t(Math::deg_to_rad(stance.degrees)));
	const Vector2 inside = parent.affine_inverse().basis_xform(turned);
	const double rotation = spaces::rotation_of(item);
	return inside.is_finite() ? Variant(rotation + Math::angle_difference(rotation, double(inside.angle()))) : Variant();
}

Variant goal_3d(const Node3D *node_3d, Vector3 direction, const Stance &stance) {
	if (stance.level) {
		direction.y = 0.0f;
	}
	if (direction.is_zero_approx()) {
		return Variant();
	}
	direction = direction.normalized();
	// So far away, or no number at all, that there is no telling which way.
	if (!direction.is_normalized()) {
		return Variant();
	}
	Vector3 up(0, 1, 0);
	if (Math::abs(direction.y) > STRAIGHT_UP) {
		// Tipping its head back or forward: what was behind it comes up, or goes down.
		const Quaternion now = rotation_of(spaces::world_of(node_3d).basis);
		up = now.xform(Vector3(0, 0, direction.y > 0.0f ? 1.0f : -1.0f));
		if (Math::abs(up.dot(direction)) > STRAIGHT_UP) {
			up = now.xform(Vector3(0, 1, 0));
		}
	}
	const Basis turned = Basis::looking_at(direction, up) * Basis(Vector3(0, 1, 0), real_t(Math::deg_to_rad(stance.degrees)));
	return rotation_of(spaces::parent_of(node_3d).basis).inverse() * turned.get_rotation_quaternion();
}

} // namespace

Variant goal(const Node *placed, const Variant &direction, const Stance &stance) {
	if (const CanvasItem *item = Object::cast_to<CanvasItem>(placed)) {
		return goal_2d(item, places::as_vector2(direction), stance);
	}
	const Node3D *node_3d = Object::cast_to<Node3D>(placed);
	return node_3d != nullptr ? goal_3d(node_3d, places::as_vector3(direction), stance) : Variant();
}

NodePath property_of(const Node *placed) {
	return places::is_2d(placed) ? "rotation" : "quaternion";
}

double angle_to(const Node *placed, const Variant &goal) {
	if (const CanvasItem *item = Object::cast_to<CanvasItem>(placed)) {
		return Math::abs(Math::angle_difference(double(spaces::rotation_of(item)), double(goal)));
	}
	const Node3D *node_3d = Object::cast_to<Node3D>(placed);
	return node_3d != nullptr ? double(node_3d->get_quaternion().angle_to(goal)) : 0.0;
}

void turn(Node *placed, const Variant &goal, double most) {
	if (goal.get_type() == Variant::NIL) {
		return;
	}
	const double left = angle_to(placed, goal);
	const double share = left > most ? MAX(most, 0.0) / left : 1.0;
	if (Node3D *node_3d = Object::cast_to<Node3D>(placed)) {
		node_3d->set_quaternion(share < 1.0 ? node_3d->get_quaternion().slerp(goal, real_t(share)) : Quaternion(goal));
	} else if (CanvasItem *item = Object::cast_to<CanvasItem>(placed)) {
		spaces::set_rotation_of(item, Math::lerp_angle(spaces::rotation_of(item), double(goal), share));
	}
}

} // namespace facing
