// Ways out of a state that are never taken, although each name in them is right.

#include "action/sc_action.hpp"
#include "design/sc_machine_parallel_state.hpp"
#include "design/sc_machine_transition.hpp"
#include "design_check/design_check.hpp"
#include "design_check/near_names.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/names.hpp"

namespace design_check {

namespace {

// Below this many letters a word of the game's own is too easily near one of the engine's: "show".
constexpr int64_t FEWEST_LETTERS = 6;

LocalVector<StringName> system_event_names() {
	LocalVector<StringName> names;
	const Variant listed = CompanionScripts::constant(MachineNames::shared().system_events_script, "SENT_BY");
	const Array keys = listed.get_type() == Variant::DICTIONARY ? Dictionary(listed).keys() : Array();
	for (int64_t i = 0; i < keys.size(); i++) {
		names.push_back(keys[i]);
	}
	return names;
}

bool is_sent(const CheckedDesign &design, const StringName &event) {
	for (const NameUse &use : design.sent) {
		if (use.name == event) {
			return true;
		}
	}
	return false;
}

bool has_an_end(const TypedArray<SCMachineState> &states) {
	for (int64_t i = 0; i < states.size(); i++) {
		const Ref<SCMachineState> state = states[i];
		if (state.is_valid() && state->is_end_state) {
			return true;
		}
	}
	return false;
}

// Why a state is never done, and what helps. Empty when it may be.
String never_done(const Ref<SCMachineState> &state, String &remedy) {
	for (int64_t i = 0; i < state->actions.size(); i++) {
		const Ref<SCMachineAction> action = state->actions[i];
		const String words = action.is_valid() && !action->disabled ? action->holds_its_state() : String();
		if (!words.is_empty()) {
			remedy = words.ends_with(".") ? words : vformat("%s.", words);
			return vformat("%s never finishes", CheckedDesign::name_of(*action.ptr()));
		}
	}
	remedy = "Tick Is End State on the last of them, or leave by another event.";
	for (int64_t i = 0; i < state->parallel_states.size(); i++) {
		const Ref<SCMachineParallelState> region = state->parallel_states[i];
		if (region.is_valid() && !has_an_end(region->states)) {
			return vformat("none of the states of %s is an end state", region->parallel_name);
		}
	}
	if (state->parallel_states.is_empty() && !state->sub_states.is_empty() && !has_an_end(state->sub_states)) {
		return "none of its sub-states is an end state";
	}
	return String();
}

void check_finished(CheckedDesign &design, const CheckedState &checked, const Ref<SCMachineTransition> &transition) {
	if (is_sent(design, transition->event)) {
		return;
	}
	String remedy;
	const String why = never_done(checked.state, remedy);
	if (!why.is_empty()) {
		design.find(DesignFinding::WARNING, "never_done", checked.place, transition,
				vformat("its transition on %s is never taken, as %s", transition->event, why), remedy);
	}
}

} // namespace

void check_ways_out(CheckedDesign &design) {
	const LocalVector<StringName> system_events = system_event_names();
	for (const CheckedState &checked : design.states) {
		HashMap<StringName, StringName> first;
		for (int64_t i = 0; i < checked.state->transitions.size(); i++) {
			const Ref<SCMachineTransition> transition = checked.state->transitions[i];
			if (transition.is_null() || transition->event.is_empty()) {
				continue;
			}
			const StringName event = transition->event;
			if (const StringName *to = first.getptr(event)) {
				// A state that runs in another region already is passed over, so that there the second has its turn.
				if (!checked.is_nested) {
					design.find(DesignFinding::WARNING, "second_way", checked.place, transition,
							vformat("it has two transitions on %s, and the one to %s is always taken, never the one to %s", event, *to, transition->to_state),
							"Take one away, or give each an event of its own.");
				}
				continue;
			}
			if (CheckedDesign::holds(design.state_names, transition->to_state)) {
				first.insert(event, transition->to_state);
			}
			if (event == SCMachineTransition::finished_event()) {
				check_finished(design, checked, transition);
				continue;
			}
			if (String(event).length() < FEWEST_LETTERS || is_sent(design, event) || CheckedDesign::holds(design.declared_events, event) ||
					CheckedDesign::holds(system_events, event)) {
				continue;
			}
			const StringName meant = near_names::nearest(event, system_events);
			if (!meant.is_empty()) {
				design.find(DesignFinding::WARNING, "system_event_spelled", checked.place, transition,
						vformat("its transition waits for %s, and the event that a node sends by itself is called %s", event, meant),
						vformat("Write %s under Event, unless a script sends the other.", meant));
			}
		}
	}
}

} // namespace design_check
