#pragma once

// What a player reads of the thing in reach: in a Label of the game, or floating over the thing.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/string.hpp>

using namespace godot;

namespace interaction_prompt {

// Over the thing, named "Prompt", as a child of it. Null while the thing takes no children, and for what is neither in 2D nor 3D.
Node *float_over(Node *thing, const String &text);
// A Label or a Label3D.
void set_text(Node *label, const String &text);
// Another text needs another place to stay in the middle.
void place_over(Node *label, const Node *thing);
// From whatever it floats over, which may hold the one who asks.
void take_away(Node *label, Node *asked_by);

} // namespace interaction_prompt
