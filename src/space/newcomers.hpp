#pragma once

// What joins the game while it runs: noted who made it, and added to the scene when the engine takes it.

#include <godot_cpp/classes/node.hpp>

using namespace godot;

class SCMachineBase;

namespace newcomers {

// So that whoever saves or changes scenes can tell it from what the scene's file brings.
void note_maker(SCMachineBase *machine, Node *made);
// Where what is put under no node in particular goes: the scene being played, or the top of the tree when there is none. Null
// outside the tree.
Node *scene_of(SCMachineBase *machine);
// At once, or with the end of the frame's calls: the engine takes no children while a parent is being set up, nor what collides
// while the physics are at work. May run a game's code.
void add(Node *parent, Node *made);

} // namespace newcomers
