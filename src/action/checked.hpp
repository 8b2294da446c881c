#pragma once

// Settings read with a look at whether anything can be done with them. A variable that one reads, a script or a
// file edited by hand may have put in a number that is none or is endless, or a choice that there is not. The game
// maker is told, and the runtime that asked gets something that the engine takes.

#include "action/kind_table.hpp"

namespace checked {

// Three sides of this length still have a volume that fits into the engine's numbers, and what is no farther away
// than this the physics do not give up on.
inline constexpr double LARGEST = 1.0e12;

// False for what is no number, and for one that is endless or too large. In a vector each part is looked at; any
// other value has none.
bool is_sound(double number);
bool is_sound(const Variant &value);

// The same, and the game maker is told that nothing was done.
bool sound_or_warn(SCMachineBase *machine, const Object *kind, const Variant &value, const StringName &setting);

// Tells of a number or a choice that is not sound, and answers what is taken in its place.
double number_in_place_of(double held, SCMachineBase *machine, const Object *kind, const StringName &setting);
void warn_no_such_choice(int64_t held, int64_t otherwise, SCMachineBase *machine, const Object *kind, const PropertyInfo &setting);

template <auto Field>
double number(SCMachineBase *machine, const SCMachineAction *action) {
	const double held = setting_of<Field>(action);
	return is_sound(held) ? held : number_in_place_of(held, machine, action, FieldOf<Field>::row->info.name);
}

constexpr int64_t count_of(const EnumWords &words) {
	int64_t count = 1;
	for (const char *at = words.constants; *at != '\0'; at++) {
		count += *at == ',' ? 1 : 0;
	}
	return count;
}

// For a choice that is handed on as a number, or that has to be one of those there are.
template <auto Field>
typename FieldOf<Field>::Value choice(SCMachineBase *machine, const SCMachineAction *action, typename FieldOf<Field>::Value otherwise) {
	constexpr int64_t COUNT = count_of(enum_words_of(typename FieldOf<Field>::Value()));
	const auto held = setting_of<Field>(action);
	// Read as signed: what lies below the first is a huge number otherwise.
	const auto number = int32_t(held);
	if (number >= 0 && number < COUNT) {
		return held;
	}
	warn_no_such_choice(number, int64_t(otherwise), machine, action, FieldOf<Field>::row->info);
	return otherwise;
}

} // namespace checked
