#pragma once

// A character's senses: the Perception node right below it, whose script is the addon's. How it decides on sight, hearing and
// memory is that script's business; here is how it is found and asked.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/packed_string_array.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace senses {

// The first child with that script, or one that extends it; null for none.
Node *of(const Node *body);
bool is_perception(const Node *node);

// What it is dealing with now; null for nothing, and for what is gone.
Node *target_of(Node *perception);
bool can_see_target(Node *perception);
bool has_a_target(Node *perception);
bool has_lost_it(Node *perception);
// For how long it has not seen what it saw; below zero when it does not tell.
double out_of_sight_for(Node *perception);
// These may run a game's code.
void look_now(Node *perception);
void notice(Node *perception, Node *target);
void hear(Node *perception, const Variant &place);
// All that may hear, in the scene that the node is in.
Array hearers(const Node *in_scene);
// "Guard, Dog, Cook and others": for a sentence.
String listed(const PackedStringArray &who);
// Any of its places and numbers, by name.
Variant ask(Node *perception, const StringName &property);

} // namespace senses
