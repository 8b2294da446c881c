#pragma once

// Where Instantiate puts a new node: picked once, so that what warns of it and what then appears stand at the same place.

#include "action/sc_action.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/variant.hpp>
#include <godot_cpp/variant/vector3.hpp>

using namespace godot;

namespace spawn_places {

struct Where {
	// In the world, with the offset in it. Nil where its own scene puts it.
	Variant place;
	// The way that the node there faces, a Transform2D or a Quaternion. Nil leaves it its own turn.
	Variant turn;
	// From where its own scene puts it.
	Variant shift;
	Vector3 up;
	// What was wrong with it, told when something with a place of its own is put there.
	String problem;
	// Of the node there: 2 or 3, or 0 for a place that is anybody's.
	int dimensions = 0;
};

// False, and told, when nothing is to appear.
bool pick(SCMachineBase *machine, SCMachineAction *action, Where &where);
// For a node that is not in the tree yet and goes under that parent.
void put(SCMachineBase *machine, SCMachineAction *action, Node *made, const Node *parent, const Where &where);

} // namespace spawn_places
