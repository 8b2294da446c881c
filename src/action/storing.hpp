#pragma once

// Putting an answer into a variable of a machine that has a kind of its own.

#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class SCMachineBase;

namespace storing {

// Whether the variable can hold the value. One that holds nothing yet takes anything.
bool fits(SCMachineBase *machine, const StringName &variable, const Variant &value);
// Writes the value as the kind that the variable holds. False, and nothing written, when it does not fit
// or no variable is named. May run a game's code.
bool put(SCMachineBase *machine, const StringName &variable, const Variant &value);

} // namespace storing
