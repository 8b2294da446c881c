#pragma once

// The area that a collision shape marks out, for whoever puts things somewhere in it: how far it reaches, a place drawn from it,
// and where a point of it is in the world. In 3D it is seen from above, and everything stands at the height of the shape's middle.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/random_number_generator.hpp>
#include <godot_cpp/variant/transform2d.hpp>
#include <godot_cpp/variant/transform3d.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace places_inside {

struct Area {
	// Null for no area. Good until a game's code may run.
	const Node *shape = nullptr;
	bool in_2d = false;
	bool is_round = false;
	// From the middle to the sides, in the shape's own measure.
	double half_x = 0.0;
	double half_y = 0.0;
	Transform2D world_2d;
	Transform3D world_3d;

	explicit operator bool() const { return shape != nullptr; }
	// A point of the area, in the shape's own measure, as a place in the world: a Vector2 or a Vector3.
	Variant place_of(const Vector2 &point) const;
	// Whether the point lies within its outline.
	bool holds(const Vector2 &point) const;
	// Of the outline, the point that is farthest from a place in the world.
	Vector2 farthest_from(const Variant &place) const;
};

// The area of the collision shape that the node is, or of the first below it, those of 3D first. None without one, or when its
// shape is no box, sphere, cylinder, capsule, rectangle or circle.
Area at(const Node *node);
// Every part of the area is as likely. Takes two numbers of the generator.
Vector2 draw(const Area &area, RandomNumberGenerator *random);

} // namespace places_inside
