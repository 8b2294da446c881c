#include "kinds/physics/velocity_bodies.hpp"

#include "machine/companion_scripts.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/physics_server2d.hpp>
#include <godot_cpp/classes/physics_server3d.hpp>

namespace moving {

namespace {

struct Names {
	StringName script = "quillstead_move";
	StringName add_push = "add_push";
	StringName driven = "_driven";
};

// A machine that moved it so many physics frames ago still does.
constexpr int64_t MOVED_LATELY = 2;
constexpr int64_t NEVER = INT64_MIN / 2;

bool is_walked_about(const Node *body, const Ref<Script> &script) {
	const Dictionary driven = script->get(NativeNames::of<Names>().driven);
	const int64_t last = driven.get(body->get_instance_id(), NEVER);
	return int64_t(Engine::get_singleton()->get_physics_frames()) - last <= MOVED_LATELY;
}

template <class Body>
Variant in_physics(const Body *body, int state) {
	if constexpr (std::is_same_v<Body, RigidBody2D>) {
		return PhysicsServer2D::get_singleton()->body_get_state(body->get_rid(), PhysicsServer2D::BodyState(state));
	} else {
		return PhysicsServer3D::get_singleton()->body_get_state(body->get_rid(), PhysicsServer3D::BodyState(state));
	}
}

template <class Body, class Vector>
void shove_rigid(Body *body, const Vector &impulse) {
	if (is_in_space(body)) {
		body->apply_central_impulse(impulse);
	} else {
		body->set_linear_velocity(body->get_linear_velocity() + impulse / real_t(body->get_mass()));
	}
}

template <class Body, class Vector>
void shove_character(Body *body, const Vector &speed) {
	const Ref<Script> script = CompanionScripts::script(NativeNames::of<Names>().script);
	if (script.is_valid() && is_walked_about(body, script)) {
		script->call(NativeNames::of<Names>().add_push, body, speed);
	} else {
		body->set_velocity(body->get_velocity() + speed);
	}
}

} // namespace

bool is_in_space(const RigidBody2D *body) {
	return PhysicsServer2D::get_singleton()->body_get_space(body->get_rid()).is_valid();
}
bool is_in_space(const RigidBody3D *body) {
	return PhysicsServer3D::get_singleton()->body_get_space(body->get_rid()).is_valid();
}

Vector2 velocity_of(const RigidBody2D *body) {
	return is_in_space(body) ? Vector2(in_physics(body, PhysicsServer2D::BODY_STATE_LINEAR_VELOCITY)) : body->get_linear_velocity();
}
Vector3 velocity_of(const RigidBody3D *body) {
	return is_in_space(body) ? Vector3(in_physics(body, PhysicsServer3D::BODY_STATE_LINEAR_VELOCITY)) : body->get_linear_velocity();
}
Vector2 velocity_of(const CharacterBody2D *body) {
	return body->get_velocity();
}
Vector3 velocity_of(const CharacterBody3D *body) {
	return body->get_velocity();
}

void set_velocity(RigidBody2D *body, const Vector2 &velocity) {
	body->set_linear_velocity(velocity);
}
void set_velocity(RigidBody3D *body, const Vector3 &velocity) {
	body->set_linear_velocity(velocity);
}
void set_velocity(CharacterBody2D *body, const Vector2 &velocity) {
	body->set_velocity(velocity);
}
void set_velocity(CharacterBody3D *body, const Vector3 &velocity) {
	body->set_velocity(velocity);
}

float turning_of(const RigidBody2D *body) {
	return is_in_space(body) ? float(in_physics(body, PhysicsServer2D::BODY_STATE_ANGULAR_VELOCITY)) : float(body->get_angular_velocity());
}
Vector3 turning_of(const RigidBody3D *body) {
	return is_in_space(body) ? Vector3(in_physics(body, PhysicsServer3D::BODY_STATE_ANGULAR_VELOCITY)) : body->get_angular_velocity();
}

Vector2 up_of(const RigidBody2D *) {
	return Vector2(0.0f, -1.0f);
}
Vector3 up_of(const RigidBody3D *) {
	return Vector3(0.0f, 1.0f, 0.0f);
}
Vector2 up_of(const CharacterBody2D *body) {
	return body->get_up_direction();
}
Vector3 up_of(const CharacterBody3D *body) {
	return body->get_up_direction();
}

bool is_frozen(const Node *body) {
	const RigidBody2D *body_2d = Object::cast_to<RigidBody2D>(body);
	const RigidBody3D *body_3d = Object::cast_to<RigidBody3D>(body);
	return (body_2d != nullptr && body_2d->is_freeze_enabled()) || (body_3d != nullptr && body_3d->is_freeze_enabled());
}

void shove(RigidBody2D *body, const Vector2 &impulse) {
	shove_rigid(body, impulse);
}
void shove(RigidBody3D *body, const Vector3 &impulse) {
	shove_rigid(body, impulse);
}
void shove(CharacterBody2D *body, const Vector2 &speed) {
	shove_character(body, speed);
}
void shove(CharacterBody3D *body, const Vector3 &speed) {
	shove_character(body, speed);
}

} // namespace moving
