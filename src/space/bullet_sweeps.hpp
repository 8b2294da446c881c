#pragma once

// The way of bullets through the world, a step at a time: where each gets to, what it hits and what it bounces off. Nothing is moved
// and nobody is told here, so no game's code runs meanwhile.
//
// A bullet is no part of the physics. Its shape is swept from where it was to where it gets to, so that none is too fast for a
// thin wall. Most of them are nowhere near anything: bullets that fly close together are asked for all at once, by the box
// around their ways, and what is near one of them is then looked at alone.

#include "fast_lane/spots.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/rid.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/transform2d.hpp>
#include <godot_cpp/variant/transform3d.hpp>

using namespace godot;

namespace bullet_sweeps {

struct Bullet {
	ObjectID node;
	// It never hits this node, nor what is below it.
	ObjectID shooter;
	// In 2D with a z of 0.
	Vector3 place;
	// As seen from above, of length 1.
	Vector2 way;
	double life = 0.0;
	// For this step, which is the last when life ends with it.
	double seconds = 0.0;
	int64_t bounces = 0;
	int64_t pierce = 0;
	ObjectID bounced_off;
	// What it has hit and flies on from.
	LocalVector<ObjectID> passed;
	bool has_arrived = false;
	bool has_turned = false;
	bool is_spent = false;
	// Freed, or taken out of the scene by somebody.
	bool is_gone = false;
};

// Bullets that are alike, in one world.
struct Flight {
	spots::Side side = spots::NOWHERE;
	// What they were put under.
	ObjectID parent;
	uint64_t scene = 0;
	StringName hits_group;
	StringName hit_event;
	double damage = 0.0;
	double speed = 0.0;
	// In radians a second.
	double homing = 0.0;
	int64_t mask = 0;
	// Without a shape that can be swept they are points.
	Ref<Resource> shape;
	RID shape_rid;
	// From a bullet's place, and turned with it.
	Transform2D shape_2d;
	Transform3D shape_3d;
	// All of it lies within this.
	double radius = 0.0;
	LocalVector<Bullet> bullets;
};

struct Hit {
	ObjectID bullet;
	ObjectID collider;
	// What is in the group, which is the collider or lies above it.
	ObjectID thing;
	// Of the thing; none when it has no Hurt Box.
	ObjectID hurt_box;
	StringName event;
	double damage = 0.0;
};
using Hits = LocalVector<Hit>;

// Reads the mask and the shape of such bullets from one of them, which need not be in the scene yet.
void read_shape(Flight &flight, Node *bullet);
// The bullet's own area or body, which the physics are to know nothing of while it flies.
void take_out_of_physics(Node *bullet);
// The engine does the rest as it comes into a scene again.
void give_back_to_physics(Node *bullet);

// Moves on each bullet that has seconds, and adds what they hit. False when the world cannot be asked just now.
bool fly(Flight &flight, const Node *parent, Hits &hits);

// How a bullet in 3D is turned.
Basis looking_along(const Vector2 &way);

} // namespace bullet_sweeps
