#pragma once

// What a setting of any type holds, to be handed to a game: what was typed in there goes out as a copy.

#include "action/kind_table.hpp"
#include "machine/own_copy.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace contents {

template <auto Field>
Variant own_value(const SCMachineAction *action) {
	const StringName &name = FieldOf<Field>::row->info.name;
	const Variant held = setting_of<Field>(action);
	// It also stands in for a variable that cannot be read.
	const bool is_typed_in = action->is_typed_in(name) || UtilityFunctions::is_same(held, action->typed_in.get(name, Variant()));
	return is_typed_in ? own_copy(held) : held;
}

} // namespace contents
