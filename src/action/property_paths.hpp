#pragma once

// What a property of a node takes, found by its name or by a path into it such as "position:y" or
// "material:albedo_color", and a value turned into that.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/node_path.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace property_paths {

struct Wanted {
	bool is_there = false;
	// Nil for a property that takes anything.
	Variant::Type type = Variant::NIL;
	// For an object, what it must be; empty for any.
	StringName class_name;
	// On the way to a property that is not there, what holds nothing to reach into.
	String empty_part;
};

Wanted wanted_at(Object *object, const NodePath &path);
// "position:y" as the engine's path to a property; empty, and so to nothing that is there, when it is none.
NodePath path_of(const String &property);

// False when the value cannot stand for what is wanted. A single number stands for a vector or a colour
// with every part the same; a node for where it is, or for the way to it from `node`.
bool fit(const Wanted &wanted, const Variant &value, Node *node, Variant &fitted);
// "a Vector2", "a Texture2D": for messages.
String in_words(const Wanted &wanted);

} // namespace property_paths
