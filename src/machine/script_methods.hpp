#pragma once

// Tells whether an object's script overrides a method of the script it extends. Asked while a state
// is compiled, for actions that are no compiled class; the method lists are kept by script.

#include <godot_cpp/variant/string_name.hpp>

namespace godot {
class Object;
}

class ScriptMethods {
public:
	static bool overrides(godot::Object *object, const godot::StringName &method);
	// Whether the object's script has the method at all.
	static bool defines(godot::Object *object, const godot::StringName &method);
	static void free_shared();
};
