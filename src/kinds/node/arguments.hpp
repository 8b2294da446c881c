#pragma once

// What a method or a signal takes, as the engine describes it, and the values of two settings turned into that.

#include "action/kind_table.hpp"
#include "action/own_value.hpp"
#include "action/property_paths.hpp"

#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/typed_array.hpp>

class SCMachineBase;

namespace arguments {

// As many as the kinds have settings for.
inline constexpr int64_t MOST = 2;

// The entry of the list that is called `name`; empty when none is.
Dictionary described_in(const TypedArray<Dictionary> &list, const StringName &name);
bool is_static(const Dictionary &described);
// False for one that is declared to give nothing back.
bool gives_something(const Dictionary &described);

// Whether the setting holds something or is read from a variable, which may hold nothing.
bool is_set(const SCMachineAction *action, const StringName &setting, const Variant &held);

template <auto First, auto Second>
Array given(const SCMachineAction *action) {
	const Variant first = contents::own_value<First>(action);
	const Variant second = contents::own_value<Second>(action);
	if (is_set(action, FieldOf<Second>::row->info.name, second)) {
		return Array::make(first, second);
	}
	return is_set(action, FieldOf<First>::row->info.name, first) ? Array::make(first) : Array();
}

// Makes of what was given what the described method takes. Empty when it could, and why not otherwise: "it takes 1 value and was
// given 2". Whatever nothing was given for and takes anything gets nothing. `exactly` leaves no argument to its default.
String fit(SCMachineBase *machine, const Dictionary &described, Array &given, bool exactly = false);

// Calls the method. Empty when it was called, and why not otherwise.
String call(Object *on, const StringName &method, const Array &given, Variant &answer);

} // namespace arguments
