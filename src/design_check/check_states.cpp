// What a design says of its states: where it starts, what they are called, and whether anything leads to them.

#include "action/sc_action.hpp"
#include "design/sc_machine_transition.hpp"
#include "design_check/design_check.hpp"
#include "design_check/near_names.hpp"

namespace design_check {

void check_starts(CheckedDesign &design) {
	if (design.states.is_empty()) {
		design.find(DesignFinding::WARNING, "no_states", design.name, Variant(), "it has no states, so it does nothing",
				"Give it a template, or add states to it.");
		return;
	}
	if (design.initial_state.is_null()) {
		design.find(DesignFinding::WARNING, "no_start", design.name, Variant(), "it has no state to start in, so it does not start",
				vformat("Pick one under Initial State, such as %s.", design.states[0].state->state_name));
	} else {
		bool is_one_of_its_own = false;
		for (const CheckedState &checked : design.states) {
			is_one_of_its_own = is_one_of_its_own || checked.state == design.initial_state;
		}
		if (!is_one_of_its_own) {
			design.find(DesignFinding::WARNING, "foreign_start", design.name, design.initial_state,
					vformat("it starts in %s, which is not one of its states", design.initial_state->state_name), "Pick one of its own under Initial State.");
		}
	}
	for (const CheckedState &checked : design.states) {
		const Ref<SCMachineState> wanted = checked.state->start_sub_state;
		if (wanted.is_valid() && checked.state->first_sub_state() != wanted) {
			design.find(DesignFinding::WARNING, "foreign_start", checked.place, wanted,
					vformat("it starts in %s, which is not one of its sub-states, so the first of them is taken", wanted->state_name),
					"Pick one of its own under Start Sub State.");
		}
	}
}

// Transitions go by name, and a name leads to one state only.
void check_state_names(CheckedDesign &design) {
	HashMap<StringName, const CheckedState *> first;
	for (const CheckedState &checked : design.states) {
		const StringName name = checked.state->state_name;
		if (name.is_empty()) {
			design.find(DesignFinding::WARNING, "nameless_state", checked.place, checked.state, "it has no name, so no transition can lead to it",
					"Type one under State Name.");
		} else if (const CheckedState *const *known = first.getptr(name)) {
			design.find(DesignFinding::WARNING, "same_name", checked.place, checked.state,
					vformat("another state is called %s as well (%s), and a transition to that name always leads to the same one", name, (*known)->place),
					"Give each a name of its own.");
		} else {
			first.insert(name, &checked);
		}
	}
}

// A script, Go To State and Go To Previous State may lead there as well, which is not told by the design.
void check_ways_in(CheckedDesign &design) {
	HashSet<StringName> led_to;
	for (const CheckedState &checked : design.states) {
		for (int64_t i = 0; i < checked.state->transitions.size(); i++) {
			const Ref<SCMachineTransition> transition = checked.state->transitions[i];
			if (transition.is_valid() && transition->to_state != checked.state->state_name) {
				led_to.insert(transition->to_state);
			}
		}
	}
	for (const CheckedState &checked : design.states) {
		bool inside_is_led_to = false;
		for (const CheckedState &other : design.states) {
			inside_is_led_to =
					inside_is_led_to || (other.state != checked.state && led_to.has(other.state->state_name) && checked.state->contains(other.state));
		}
		if (!checked.state->state_name.is_empty() && !checked.is_a_start && !inside_is_led_to && !led_to.has(checked.state->state_name)) {
			design.find(DesignFinding::HINT, "never_reached", checked.place, checked.state, "no transition leads to it",
					"Add one, or take the state away. A script or a Go To State may lead there, of course.");
		}
	}
}

void check_transitions(CheckedDesign &design) {
	for (const CheckedState &checked : design.states) {
		for (int64_t i = 0; i < checked.state->transitions.size(); i++) {
			const Ref<SCMachineTransition> transition = checked.state->transitions[i];
			if (transition.is_null()) {
				design.find(DesignFinding::WARNING, "empty_row", checked.place, checked.state, vformat("row %d of its transitions holds nothing", i + 1),
						"Take the row away.");
				continue;
			}
			const StringName event = transition->event;
			const StringName to = transition->to_state;
			if (event.is_empty()) {
				design.find(DesignFinding::WARNING, "no_event", checked.place, transition,
						vformat("its transition to %s waits for no event, so it is never taken", to.is_empty() ? String("nowhere") : String(to)),
						"Pick one under Event. FINISHED is sent when all of the state's actions are done.");
			} else if (event != SCMachineTransition::finished_event() && String(event).to_upper() == String(SCMachineTransition::finished_event())) {
				design.find(DesignFinding::WARNING, "finished_spelled", checked.place, transition,
						vformat("its transition waits for %s, and the event of a state that is done is called FINISHED, in capitals", event),
						"Write FINISHED under Event.");
			}
			const String waits_for = event.is_empty() ? String("a transition") : vformat("its transition on %s", event);
			if (to.is_empty()) {
				design.find(DesignFinding::WARNING, "no_destination", checked.place, transition, vformat("%s leads to no state", waits_for),
						"Pick one under To State.");
			} else if (!CheckedDesign::holds(design.state_names, to)) {
				const String meant = near_names::did_you_mean(near_names::nearest(to, design.state_names));
				design.find(DesignFinding::WARNING, "missing_state", checked.place, transition,
						vformat("%s leads to %s, and no state is called that", waits_for, to), vformat("%sPick a state under To State.", meant));
			}
		}
	}
}

} // namespace design_check
