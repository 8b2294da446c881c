#pragma once

// Whether a body takes part in the physics. One that is switched off does not, and the engine has loud words for whoever moves it.

#include <godot_cpp/classes/character_body2d.hpp>
#include <godot_cpp/classes/character_body3d.hpp>
#include <godot_cpp/classes/physics_server2d.hpp>
#include <godot_cpp/classes/physics_server3d.hpp>

using namespace godot;

inline bool in_physics(const CollisionObject2D *body) {
	return PhysicsServer2D::get_singleton()->body_get_space(body->get_rid()).is_valid();
}

inline bool in_physics(const CollisionObject3D *body) {
	return PhysicsServer3D::get_singleton()->body_get_space(body->get_rid()).is_valid();
}
