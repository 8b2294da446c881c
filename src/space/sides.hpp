#pragma once

// What the physics of 2D and of 3D are made of, so that what is asked alike on both sides is written once as a template.

#include <godot_cpp/classes/area2d.hpp>
#include <godot_cpp/classes/area3d.hpp>
#include <godot_cpp/classes/box_shape3d.hpp>
#include <godot_cpp/classes/character_body2d.hpp>
#include <godot_cpp/classes/character_body3d.hpp>
#include <godot_cpp/classes/circle_shape2d.hpp>
#include <godot_cpp/classes/kinematic_collision2d.hpp>
#include <godot_cpp/classes/kinematic_collision3d.hpp>
#include <godot_cpp/classes/physics_direct_body_state2d.hpp>
#include <godot_cpp/classes/physics_direct_body_state3d.hpp>
#include <godot_cpp/classes/physics_direct_space_state2d.hpp>
#include <godot_cpp/classes/physics_direct_space_state3d.hpp>
#include <godot_cpp/classes/physics_ray_query_parameters2d.hpp>
#include <godot_cpp/classes/physics_ray_query_parameters3d.hpp>
#include <godot_cpp/classes/physics_server2d.hpp>
#include <godot_cpp/classes/physics_server3d.hpp>
#include <godot_cpp/classes/physics_shape_query_parameters2d.hpp>
#include <godot_cpp/classes/physics_shape_query_parameters3d.hpp>
#include <godot_cpp/classes/rectangle_shape2d.hpp>
#include <godot_cpp/classes/rigid_body2d.hpp>
#include <godot_cpp/classes/rigid_body3d.hpp>
#include <godot_cpp/classes/sphere_shape3d.hpp>
#include <godot_cpp/core/math.hpp>

#include <cmath>

using namespace godot;

struct In2D {
	using Vector = Vector2;
	using Transform = Transform2D;
	using Placed = Node2D;
	using Collider = CollisionObject2D;
	using Area = Area2D;
	using Character = CharacterBody2D;
	using Rigid = RigidBody2D;
	using Collision = KinematicCollision2D;
	using Shape = Shape2D;
	using Round = CircleShape2D;
	using Box = RectangleShape2D;
	using Server = PhysicsServer2D;
	using BodyState = PhysicsDirectBodyState2D;
	using Space = PhysicsDirectSpaceState2D;
	using RayQuery = PhysicsRayQueryParameters2D;
	using ShapeQuery = PhysicsShapeQueryParameters2D;
	static constexpr bool IS_2D = true;
	static Vector up() { return Vector2(0, -1); }
	// How far below its feet a body that stands still looks for the floor.
	static constexpr double LEAST_REACH = 1.0;
	// Closer than this the engine's own tests do not tell apart.
	static constexpr double HAIR = 0.1;
};

struct In3D {
	using Vector = Vector3;
	using Transform = Transform3D;
	using Placed = Node3D;
	using Collider = CollisionObject3D;
	using Area = Area3D;
	using Character = CharacterBody3D;
	using Rigid = RigidBody3D;
	using Collision = KinematicCollision3D;
	using Shape = Shape3D;
	using Round = SphereShape3D;
	using Box = BoxShape3D;
	using Server = PhysicsServer3D;
	using BodyState = PhysicsDirectBodyState3D;
	using Space = PhysicsDirectSpaceState3D;
	using RayQuery = PhysicsRayQueryParameters3D;
	using ShapeQuery = PhysicsShapeQueryParameters3D;
	static constexpr bool IS_2D = false;
	static Vector up() { return Vector3(0, 1, 0); }
	static constexpr double LEAST_REACH = 0.1;
	static constexpr double HAIR = 0.005;
};

namespace surfaces {

enum Surface { THE_GROUND, A_WALL, A_CEILING };

// What the engine allows a floor beyond its own angle.
inline constexpr double ANGLE_SLACK = 0.01;
inline constexpr double RIGID_FLOOR_ANGLE = 0.7853981633974483;

template <class Vector>
Surface of(const Vector &normal, const Vector &up, double floor_angle) {
	const double angle = std::acos(CLAMP(double(normal.dot(up)), -1.0, 1.0));
	if (angle <= floor_angle + ANGLE_SLACK) {
		return THE_GROUND;
	}
	return angle >= Math::PI - floor_angle - ANGLE_SLACK ? A_CEILING : A_WALL;
}

// A body that floats has walls all around.
template <class Character, class Vector>
Surface of(const Character *body, const Vector &normal) {
	const bool floats = body->get_motion_mode() == Character::MOTION_MODE_FLOATING;
	return floats ? A_WALL : of(normal, body->get_up_direction(), body->get_floor_max_angle());
}

} // namespace surfaces

namespace collisions {

// Each thing that a character's slide ran into: `each(collider, normal, place)`.
template <class Each>
void for_each(const Ref<KinematicCollision2D> &collision, Each each) {
	if (collision.is_valid()) {
		each(collision->get_collider(), collision->get_normal(), collision->get_position());
	}
}
template <class Each>
void for_each(const Ref<KinematicCollision3D> &collision, Each each) {
	for (int i = 0; collision.is_valid() && i < collision->get_collision_count(); i++) {
		each(collision->get_collider(i), collision->get_normal(i), collision->get_position(i));
	}
}

} // namespace collisions
