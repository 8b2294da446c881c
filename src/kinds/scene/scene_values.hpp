#pragma once

// Values of a running scene as plain ones that a JSON file can hold, and back, for the script that writes scenes down.
//
// What the engine has its own form for, such as a position, is kept in that form. A float comes back to the last bit, which the
// engine's form does not promise. A node is the place it has in the scene, a resource the path of its file; nothing that a file
// says makes an object or runs code.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/dictionary.hpp>

using namespace godot;

namespace scene_values {

// What a scene's values are seen from.
struct Place {
	Node *scene = nullptr;
	// The ids of all nodes in it; what a node is by.
	Dictionary ids;
	// Of nodes that stand elsewhere than a file says, by the place that it says.
	Dictionary placed;
	// A number that may be the id of something elsewhere is left out.
	bool forgets_strangers = false;

	String place_of(Node *node) const;
	Node *node_at(const String &path) const;
};

// False for what no file can hold.
bool encode(const Place &place, const Variant &value, Variant &encoded);
// False for what `encode` has not written.
bool decode(const Place &place, const Variant &kept, Variant &value);

// For the script.
void add_helpers();

} // namespace scene_values
