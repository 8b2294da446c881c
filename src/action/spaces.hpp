#pragma once

// What runtimes that move, turn and measure things ask of a node, on either side alike: which side it
// is on, what its own space and its parent's are, and whether it may be moved at all.

#include "action/places.hpp"
#include "action/shared_verbs.hpp"

#include <godot_cpp/classes/control.hpp>
#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/transform2d.hpp>
#include <godot_cpp/variant/transform3d.hpp>

using namespace godot;

namespace spaces {

// The node of a path setting if it is a Node2D, a Node3D or a Control. Null otherwise, and the game maker is told.
Node *placed_or_warn(SCMachineBase *machine, const Object *kind, const NodePath &path, const StringName &setting);
template <auto Field, class Kind>
Node *placed_or_warn(SCMachineBase *machine, const Kind *kind) {
	return placed_or_warn(machine, kind, setting_of<Field>(kind), verbs::name_of<Field>());
}
// The same without a word, for every frame after the first.
Node *placed(SCMachineBase *machine, const NodePath &path);
template <auto Field, class Kind>
Node *placed(SCMachineBase *machine, const Kind *kind) {
	return placed(machine, setting_of<Field>(kind));
}
// Says so when a container or the physics will put the node back where they want it.
void warn_if_placed_by_another(SCMachineBase *machine, const Object *kind, const Node *node);
// Whether there is a place in the world to put the node at, which there is none for within a size of 0, and for `turning` a 3D
// node its own. If not, the game maker is told.
bool has_size_or_warn(SCMachineBase *machine, const Object *kind, const Node *placed, bool turning);
// Whether a setting of any type holds a vector, or a node that has a place, and one that can be worked with. If not, the game
// maker is told.
bool place_or_warn(SCMachineBase *machine, const Object *kind, const Variant &value, const StringName &setting);
template <auto Field, class Kind>
bool place_or_warn(SCMachineBase *machine, const Kind *kind) {
	return place_or_warn(machine, kind, setting_of<Field>(kind), verbs::name_of<Field>());
}

// A calculation on two vectors of the node's side: `with_vectors(node, here, step, [](auto from, auto by) { return from + by; })`.
template <class Work>
Variant with_vectors(const Node *placed, const Variant &first, const Variant &second, Work work) {
	if (places::is_2d(placed)) {
		return work(places::as_vector2(first), places::as_vector2(second));
	}
	return work(places::as_vector3(first), places::as_vector3(second));
}
// A Vector2 or a Vector3, by the node's side.
Variant on_side_of(const Node *placed, const Variant &place);

// Whether there is a way back out of a space: none when its size is zero, or lies beyond the engine's numbers.
bool has_a_way_back(const Transform2D &space);
bool has_a_way_back(const Basis &space);
Transform2D world_of(const CanvasItem *item);
Transform3D world_of(const Node3D *node_3d);
Transform2D parent_of(const CanvasItem *item);
Transform3D parent_of(const Node3D *node_3d);

// A place in the node's own space as one in the world, and back. Nil where there is no way back.
Variant to_world(const Node *placed, const Variant &place);
Variant to_own(const Node *placed, const Variant &place);
// A direction of the node's own, its front or its left, as one in the world. Its size has no say.
Variant own_direction(const Node *placed, const Variant &direction);

// Of a Node2D or a Control, in its parent.
double rotation_of(const CanvasItem *item);
void set_rotation_of(CanvasItem *item, double rotation);

// Calls `act` with the node as what it is: a Node2D, a Control or a Node3D.
template <class AnyNode, class Act>
void visit(AnyNode *placed, Act act) {
	if (auto *node_3d = Object::cast_to<Node3D>(placed)) {
		act(node_3d);
	} else if (auto *node_2d = Object::cast_to<Node2D>(placed)) {
		act(node_2d);
	} else if (auto *control = Object::cast_to<Control>(placed)) {
		act(control);
	}
}

} // namespace spaces
