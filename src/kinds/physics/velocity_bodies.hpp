#pragma once

// What moves at a velocity: rigid and character bodies, in 2D and in 3D. A rigid body's velocity is read from the physics
// themselves, as its node learns of a shove only a frame later.

#include "character/body_sides.hpp"

#include <godot_cpp/classes/rigid_body2d.hpp>
#include <godot_cpp/classes/rigid_body3d.hpp>

using namespace godot;

namespace moving {

inline constexpr const char *A_BODY = "a RigidBody or a character body";

template <class Act>
bool visit_rigid(Node *node, Act act) {
	if (auto *body_2d = Object::cast_to<RigidBody2D>(node)) {
		act(body_2d);
		return true;
	}
	if (auto *body_3d = Object::cast_to<RigidBody3D>(node)) {
		act(body_3d);
		return true;
	}
	return false;
}

// Calls `act` with the node as the body that it is. False when it is none that moves at a velocity.
template <class Act>
bool visit(Node *node, Act act) {
	return visit_rigid(node, act) || bodies::visit(node, act);
}

inline bool is_one(const Node *node) {
	return Object::cast_to<RigidBody2D>(node) != nullptr || Object::cast_to<RigidBody3D>(node) != nullptr || bodies::is_character(node);
}

// Whether the physics have it: not outside the tree, nor while it is switched off.
bool is_in_space(const RigidBody2D *body);
bool is_in_space(const RigidBody3D *body);

Vector2 velocity_of(const RigidBody2D *body);
Vector3 velocity_of(const RigidBody3D *body);
Vector2 velocity_of(const CharacterBody2D *body);
Vector3 velocity_of(const CharacterBody3D *body);

void set_velocity(RigidBody2D *body, const Vector2 &velocity);
void set_velocity(RigidBody3D *body, const Vector3 &velocity);
void set_velocity(CharacterBody2D *body, const Vector2 &velocity);
void set_velocity(CharacterBody3D *body, const Vector3 &velocity);

// In radians a second; about each axis in 3D.
float turning_of(const RigidBody2D *body);
Vector3 turning_of(const RigidBody3D *body);

// Which way is up for it.
Vector2 up_of(const RigidBody2D *body);
Vector3 up_of(const RigidBody3D *body);
Vector2 up_of(const CharacterBody2D *body);
Vector3 up_of(const CharacterBody3D *body);

bool is_frozen(const Node *body);

// A shove at its middle. A body that the physics do not have yet takes it along as speed. For a character body, which has no
// mass, it is a speed: one that a machine walks about is pushed for a moment, whatever its steering makes of its velocity.
void shove(RigidBody2D *body, const Vector2 &impulse);
void shove(RigidBody3D *body, const Vector3 &impulse);
void shove(CharacterBody2D *body, const Vector2 &speed);
void shove(CharacterBody3D *body, const Vector3 &speed);

} // namespace moving
