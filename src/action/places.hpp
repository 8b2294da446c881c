#pragma once

// Where things are, in 2D and in 3D alike: a place is a Vector2 or a Vector3, and whoever asks need
// not know which. Also the change of a kind's defaults from metres to pixels.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/variant.hpp>
#include <godot_cpp/variant/vector2.hpp>
#include <godot_cpp/variant/vector3.hpp>

using namespace godot;

namespace places {

inline constexpr double PIXELS_PER_METRE = 32.0;

// A Node2D, a Node3D or a Control.
bool has_a_place(const Node *node);
// Nil for a node without a place.
Variant position_of(const Node *node);
void set_position_of(Node *node, const Variant &place);
// For a message about a node that stands for a place and has none.
String no_place_words(const Node *node, const String &setting);

// Decided by the node itself, or by the nearest node above it that has a side.
bool is_2d(const Node *node);
// A number stands for a vector with all its parts the same, a node for where it is; anything else for zero.
Vector2 as_vector2(const Variant &value);
Vector3 as_vector3(const Variant &value);
// Between nodes or places. Endless when one of them is nowhere.
double distance_between(const Variant &first, const Variant &second);

// Puts the 2D defaults on a fresh action or condition. Distances are multiplied, so it is done once.
void suit_settings_2d(Object *object);
// "Class:setting" to the value it has in 2D, or to "px" for a distance.
Dictionary starts_in_2d();

} // namespace places
