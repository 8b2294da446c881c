#pragma once

// The player, held still while somebody talks: its process mode is Disabled, while its shapes stay in the physics, so that it does
// not leave the areas it stands in and come into them again. Several talks may hold the same one.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/array.hpp>

using namespace godot;

class SCMachineBase;

namespace held_player {

// The first in the group player, if a talk of that machine may hold it: null for the machine's own node, and for one that
// something else has stopped.
Node *to_hold(SCMachineBase *machine);
// Holds it, and keeps `box` going that may be somewhere below it. Answers with what release() takes. May run a game's code.
Array hold(SCMachineBase *machine, Node *player, Node *box);
// The player may be gone. May run a game's code.
void release(const Variant &player, const Array &tickets);

} // namespace held_player
