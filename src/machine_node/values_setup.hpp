#pragma once

// What happens to a machine's values around its start: where they start, how they are limited, which
// of them all machines share. SCMachine calls these; the values themselves live in its MachineRun.

#include "machine/value_table.hpp"

#include <godot_cpp/classes/ref.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class SCMachine;
class SCMachineBase;
class SCMachineVariable;

namespace MachineValues {

using Declared = LocalVector<Ref<SCMachineVariable>>;
// The variables of a list, without what is no variable.
Declared declared_in(const Array &variables);

// What the values are set to as the machine starts: declared, then handed over, then put in unchecked.
NamedValues starting_values_of(SCMachine *machine, const Declared &declared);
// Reads Never Below and Never Above of the declared variables, and applies them to the present values.
void learn_limits(SCMachine *machine, const Declared &declared);
// Only for a machine that carries nothing over: variables that start full, or at a share of their limit.
void start_attributes(SCMachine *machine, const Declared &declared);

// A text typed as a limit: nil when empty, a float, or the StringName of another variable.
Variant bound_of(const String &typed);
bool same_kind(const Variant &value, const Variant &was);
// Both look in a list of variables.
bool is_global_in(const Array &variables, const StringName &named);
bool holds_node_in(const Array &variables, const StringName &named);
// Whether the machine's variable of this name is declared with a whole number.
bool holds_whole(SCMachine *machine, const StringName &named);

// Beside registering and forgetting the events of the design.
void share_globals(SCMachine *machine, const Declared &declared);
void stop_sharing(SCMachineBase *machine);

bool is_global_value(const StringName &named);
Variant global_value(const StringName &named, const Variant &fallback);
void set_global_value(const StringName &named, const Variant &value);
Array global_names();
void note_scene_start(SCMachine *machine);
// Every global not in `keep` goes back to what it was when this scene began.
void put_globals_back(const Array &keep);

} // namespace MachineValues
