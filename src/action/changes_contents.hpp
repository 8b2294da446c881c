#pragma once

// The base of what works on a list or a table that a variable holds. It is changed as a copy and written back: the value that a
// variable starts with is shared by every machine of the design, and a watcher of the variable only hears of another value.

#include "action/contents.hpp"
#include "action/own_value.hpp"
#include "action/runtime_shapes.hpp"
#include "action/settings_in_use.hpp"
#include "machine/value_kinds.hpp"

namespace contents {

// A setting of any type that holds something, or that a variable is picked for.
template <auto Field>
bool is_given(const SCMachineAction *action) {
	return setting_of<Field>(action).get_type() != Variant::NIL || !action->is_typed_in(verbs::name_of<Field>());
}

} // namespace contents

// The derived class has, for the sentences, `NOUN`, `A_TYPE` and `ITEM` ("list", "an Array", "item"), and
// `static bool is_one(const Variant &held)`,
// `static bool is_set_up(SCMachineBase *, const SCMachineAction *)`, which tells what is missing,
// `static bool makes_one(const SCMachineAction *)`: work that brings it into being when there is none yet,
// `static Held copy_of(const Variant &held)` and `static Variant as_held(const Held &, const Variant &held)`,
// `static contents::Outcome changed(const SCMachineAction *, const Variant &held, Held &)`, which may run a game's code.
template <class Derived, class Kind, class Held, auto Variable>
class ChangesContents : public OnceOrRepeating<Derived> {
	// What the game hears of it. May run its code at every step.
	static void tell(SCMachineBase *machine, const SCMachineAction *action, const contents::Outcome &outcome) {
		const StillHere here(machine);
		if (verbs::applies<&Kind::store_in>(action)) {
			if (!outcome.found && !outcome.is_condition) {
				verbs::let_go(machine, setting_of<&Kind::store_in>(action));
			} else if (outcome.is_condition) {
				verbs::keep_or_tell<&Kind::store_in, &Kind::found_event, &Kind::not_found_event>(machine, action, outcome.answer);
			} else if (verbs::may_stay_empty<&Kind::store_in>(action)) {
				verbs::keep_if_named<&Kind::store_in>(machine, action, outcome.answer);
			} else {
				verbs::keep<&Kind::store_in>(machine, action, outcome.answer, "the answer");
			}
		}
		if (!here || !verbs::applies<&Kind::found_event>(action)) {
			return;
		}
		if (!outcome.found && !outcome.is_condition && setting_of<&Kind::not_found_event>(action).is_empty()) {
			verbs::warn(machine, action,
					vformat("there is no such %s in %s, so nothing came of it. Name an event under Not Found Event to do something about it.", Derived::ITEM,
							setting_of<Variable>(action)));
		}
		const Variant carried = outcome.is_condition ? outcome.looked_for : outcome.answer;
		verbs::send_either<&Kind::found_event, &Kind::not_found_event>(machine, action, outcome.found, outcome.found ? carried : Variant());
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StringName name = setting_of<Variable>(action);
		const String setting = verbs::setting_in_inspector(verbs::name_of<Variable>());
		if (name.is_empty()) {
			verbs::warn(machine, action,
					vformat("no variable is picked, so there was no %s to work with. Pick the variable holding the %s beside %s.", Derived::NOUN, Derived::NOUN,
							setting));
			return;
		}
		const Variant held = machine->get_value(name);
		const bool is_nothing = ValueKinds::is_nothing(held);
		if (!is_nothing && !Derived::is_one(held)) {
			verbs::warn(machine, action,
					vformat("%s holds %s, which is not a %s, so it was left alone. Make it %s under Variables, or pick another under %s.", name,
							values::kind_in_words(held), Derived::NOUN, Derived::A_TYPE, setting));
			return;
		}
		if (!Derived::is_set_up(machine, action)) {
			return;
		}
		if (is_nothing && !machine->has_value(name) && !Derived::makes_one(action)) {
			verbs::warn_no_such_variable<Variable>(machine, action, vformat("the %s counts as empty", Derived::NOUN));
		}
		const StillHere here(machine);
		Held changed = is_nothing ? Held() : Derived::copy_of(held);
		const contents::Outcome outcome = Derived::changed(action, held, changed);
		if (!here) {
			return;
		}
		if (outcome.changed) {
			machine->set_value(name, Derived::as_held(changed, held));
		}
		if (!outcome.problem.is_empty()) {
			verbs::warn(machine, action, outcome.problem);
		} else if (here) {
			tell(machine, action, outcome);
		}
	}
};
