#pragma once

// Classes of nodes as a game maker names them: the engine's, and those that scripts of the game give a name.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/script.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

class SCMachineBase;

namespace node_types {

bool is_known(const StringName &type);
// Of that class, or of one made from it.
bool is_a(const Object *object, const StringName &type);
// Null for a class that is none of a script's.
Ref<Script> script_of(const StringName &type);

// The class typed in under a setting that may stay empty. False, and told, when there is none of that name; `instead` says what
// came of it.
bool known_or_warn(SCMachineBase *machine, const Object *kind, const StringName &type, const StringName &setting, const char *instead);

} // namespace node_types
