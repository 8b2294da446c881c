#pragma once

// How a setting gets its value at run time: each setting that names a variable is overwritten with
// what the variable holds, fitted to the kind of value that was typed in. Called by the core before an
// action's enter, update and exit, and before a condition is asked; never for one that names none.

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class SCMachineBase;

namespace reading {

// `named` maps settings to variables. What was typed in is kept in `typed_in` before it is overwritten.
void read_variables_into(Object *object, const Dictionary &named, Dictionary typed_in, SCMachineBase *machine);
// One setting of those. Reading it may call user code, which may free the object and the machine.
void read_one_into(Object *object, const StringName &setting, const Dictionary &named, Dictionary typed_in, SCMachineBase *machine);
// Once per object, setting and machine.
void say_it_cannot_fit(
		Object *object, const StringName &setting, const StringName &variable, const Variant &held, const Variant &typed_in, SCMachineBase *machine);

} // namespace reading
