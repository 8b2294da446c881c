#pragma once

// Hurt Boxes: nodes with the addon's script, right under what can be hurt. What a hit does is that script's business; here is how
// one is found and asked.

#include "machine_node/sc_machine.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

namespace hurt_boxes {

// The first child with that script, or one that extends it; null for none.
Node *under(const Node *node);
bool is_one(const Node *node);

StringName health_variable(Node *hurt_box);
// The machine that has that variable, holding a number; null for none.
SCMachine *machine_of(Node *hurt_box);
// These may run a game's code.
void take_hit(Node *hurt_box, double damage, Node *attacker, double knockback);
// How much was given, as the kind of number that the variable holds.
Variant heal(Node *hurt_box, double amount, bool revives);

} // namespace hurt_boxes
