#include "character/facing_along.hpp"

#include "character/body_keys.hpp"
#include "character/body_notes.hpp"
#include "machine/companion_scripts.hpp"

#include <godot_cpp/classes/animated_sprite2d.hpp>
#include <godot_cpp/classes/polygon2d.hpp>
#include <godot_cpp/classes/sprite2d.hpp>
#include <godot_cpp/core/math.hpp>

namespace facing_along {

namespace {

// Sideways parts of a direction that say nothing of left and right.
constexpr real_t NO_SIDE = 0.001f;

struct FacingNames {
	StringName script = "quillstead_move";
	StringName face_along = "face_along";
};

template <class Picture>
bool flip(Node *child, bool left) {
	Picture *picture = Object::cast_to<Picture>(child);
	if (picture == nullptr) {
		return false;
	}
	const bool flipped = left != body_keys::truth(picture, BodyKeys::shared().art_faces_left);
	if (picture->is_flipped_h() != flipped) {
		picture->set_flip_h(flipped);
	}
	return true;
}

bool flip_polygon(Node *child, bool left) {
	Polygon2D *polygon = Object::cast_to<Polygon2D>(child);
	if (polygon == nullptr) {
		return false;
	}
	const Vector2 scale = polygon->get_scale();
	const real_t width = Math::abs(scale.x);
	polygon->set_scale(Vector2(left ? -width : width, scale.y));
	return true;
}

double shortest_angle(double from, double to) {
	const double apart = Math::fmod(to - from, Math::TAU);
	return Math::fmod(2.0 * apart, Math::TAU) - apart;
}

bool turn_side(Node2D *node_2d, const Vector2 &direction) {
	if (!node_2d->has_meta(BodyKeys::shared().side_on)) {
		return false;
	}
	if (Math::abs(direction.x) > NO_SIDE) {
		face_side(node_2d, direction.x < 0.0f);
	}
	return true;
}

} // namespace

double weight(double turn_speed, double delta) {
	return CLAMP(turn_speed * delta, 0.0, 1.0);
}

void face_side(Node2D *body, bool left) {
	const BodyKeys &keys = BodyKeys::shared();
	if (!body->has_meta(keys.faces_left) || bool(body->get_meta(keys.faces_left)) != left) {
		body->set_meta(keys.faces_left, left);
	}
	if (body_notes::is_without_pictures(body)) {
		return;
	}
	bool any = false;
	const int count = body->get_child_count();
	for (int i = 0; i < count; i++) {
		Node *child = body->get_child(i);
		any = flip<Sprite2D>(child, left) || flip<AnimatedSprite2D>(child, left) || flip_polygon(child, left) || any;
	}
	if (!any) {
		body_notes::note_without_pictures(body);
	}
}

bool faces_left(const Node *body) {
	return body_keys::truth(body, BodyKeys::shared().faces_left);
}

void turn(Node3D *node_3d, const Vector3 &direction, double weight) {
	Vector3 way(direction.x, 0.0f, direction.z);
	if (way.is_zero_approx() || !way.is_finite()) {
		return;
	}
	way.normalize();
	Vector3 rotation = node_3d->get_global_rotation();
	const double goal = Math::atan2(-double(way.x), -double(way.z));
	const real_t turned = rotation.y + real_t(shortest_angle(double(rotation.y), goal) * weight);
	// To set a rotation moves the body in the physics world, even when it is the one it has.
	if (turned != rotation.y) {
		rotation.y = turned;
		node_3d->set_global_rotation(rotation);
	}
}

void turn(Node2D *node_2d, const Vector2 &direction, double weight) {
	if (turn_side(node_2d, direction) || direction.is_zero_approx() || !direction.is_finite()) {
		return;
	}
	const Transform2D own = node_2d->get_transform();
	if (own.determinant() == 0.0f) {
		return;
	}
	const Transform2D parent = node_2d->get_global_transform() * own.affine_inverse();
	if (parent.determinant() == 0.0f) {
		return;
	}
	// By its rotation, so that one that is flipped keeps facing as it is drawn.
	const double rotation = double(node_2d->get_rotation());
	const double now = double(parent.basis_xform(Vector2(real_t(Math::cos(rotation)), real_t(Math::sin(rotation)))).angle());
	const double next = now + shortest_angle(now, double(direction.angle())) * weight;
	if (real_t(next) == real_t(now)) {
		return;
	}
	node_2d->set_rotation(double(parent.affine_inverse().basis_xform(Vector2(real_t(Math::cos(next)), real_t(Math::sin(next)))).angle()));
}

void turn_by_script(Node2D *node_2d, const Vector2 &direction, double weight) {
	if (turn_side(node_2d, direction)) {
		return;
	}
	const FacingNames &names = NativeNames::of<FacingNames>();
	const Ref<Script> script = CompanionScripts::script(names.script);
	if (script.is_valid()) {
		script->call(names.face_along, node_2d, direction, weight);
	}
}

} // namespace facing_along
