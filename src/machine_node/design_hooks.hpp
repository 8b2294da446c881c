#pragma once

// What the check of designs, which knows of kinds, offers to machines, which do not. Null where designs are not checked.

#include <godot_cpp/variant/packed_string_array.hpp>

using namespace godot;

class SCMachine;

namespace design_hooks {

// Tells the game maker what cannot work in the machine's design, once for each design. May run a game's code.
inline void (*tell_at_start)(SCMachine *machine) = nullptr;
// A sentence for each thing that is wrong, or may be.
inline PackedStringArray (*warnings_of)(SCMachine *machine) = nullptr;

} // namespace design_hooks
