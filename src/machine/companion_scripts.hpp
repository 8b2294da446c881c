#pragma once

// The addon's scripts in runtime/ that the library calls by name. Each is loaded at its first use and
// kept; one that failed to load is tried again at the next.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/script.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class CompanionScripts {
public:
	// `file` is the name in runtime/ without ".gd".
	static Ref<Script> script(const StringName &file);
	// Calls a static method of the script; nil when the script cannot be loaded.
	static Variant call(const StringName &file, const StringName &method, const Array &arguments);
	static Variant constant(const StringName &file, const StringName &name);
	// Whether the object's script is that one, or extends it.
	static bool is_one(const Object *object, const StringName &file);
	// The first child of which that is so; null for none.
	static Node *first_child(const Node *node, const StringName &file);
	static void free_shared();
};

// Tells the game maker something once for this machine and key.
class MakerWarnings {
public:
	static void once_for(Object *machine, const String &key, const String &text);
	static void say(const String &text);
};
