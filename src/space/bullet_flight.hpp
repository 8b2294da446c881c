#pragma once

// Bullets in flight. Whoever fires one hands it over here; from then on all of them are moved together, once a physics frame, when
// the addon's script says so, whatever becomes of the machine that has fired them. They are told of by id: a game may free anything
// at any time.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/vector2.hpp>
#include <godot_cpp/variant/vector3.hpp>

using namespace godot;

namespace bullet_flight {

struct Order {
	// It is never hit by its own, and neither is what is below it.
	ObjectID shooter;
	// Tells bullets of different scenes apart.
	uint64_t scene = 0;
	StringName hits_group;
	StringName hit_event;
	double damage = 1.0;
	double speed = 0.0;
	double lifetime = 0.0;
	// In radians a second.
	double homing = 0.0;
	int64_t bounces = 0;
	int64_t pierce = 0;
};

// No more than these fly at a time.
inline constexpr int64_t MOST = 20000;

int64_t count();
// Puts a Node2D or a Node3D at its place in the world, turned to its way, before it is added to its parent. `way` is as seen from
// above.
void put(Node *bullet, const Node *parent, const Vector3 &place, const Vector2 &way);
// Takes over a bullet that has been put there and added, or is about to be.
void launch(Node *bullet, const Node *parent, const Vector3 &place, const Vector2 &way, const Order &order);

// Helpers for the addon's script: a step of so many seconds, which answers how many still fly, and a bullet that somebody turns.
void add_helpers();

} // namespace bullet_flight
