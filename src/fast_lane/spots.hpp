#pragma once

// Where things are and how they get there, for the jobs of the fast lane: no Variant, no allocation,
// 2D and 3D by one path. A spot in 2D is a Vector3 whose z is 0.

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/variant.hpp>
#include <godot_cpp/variant/vector3.hpp>

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
// Moving a node may run a game's code, which may do anything.
void put(Object *node, Side side, const Vector3 &spot);
// The spot that a Vector2 or a Vector3 stands for; false for anything else.
bool from_value(const Variant &value, Vector3 &spot);

// Along the ground in 3D, where height never counts.
double flat_distance(const Vector3 &from, const Vector3 &to, Side side);
double full_distance(const Vector3 &from, const Vector3 &to);
// One step of so many seconds, which lands on `to` rather than beyond it.
Vector3 step_toward(const Vector3 &from, const Vector3 &to, Side side, double speed, double delta);
Vector3 random_around(const Vector3 &home, double radius, Side side);

} // namespace spots
