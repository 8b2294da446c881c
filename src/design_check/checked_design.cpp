#include "design_check/checked_design.hpp"

#include "action/sc_action.hpp"
#include "action/shared_verbs.hpp"
#include "design/sc_machine_template.hpp"
#include "design/sc_machine_transition.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/core/object.hpp>

namespace {

String named(const StringName &name, const char *nameless) {
	return name.is_empty() ? String(nameless) : String(name);
}

// The base of all kinds, by itself.
bool is_bare(const SCMachineAction &action) {
	return action.get_class() == SCMachineAction::get_class_static() && action.get_script().get_type() == Variant::NIL;
}

void add_once(LocalVector<StringName> &names, const StringName &name) {
	if (!name.is_empty() && !CheckedDesign::holds(names, name)) {
		names.push_back(name);
	}
}

} // namespace

String CheckedDesign::name_of(const SCMachineAction &action) {
	return action.display_name.is_empty() ? verbs::kind_in_palette(&action) : action.display_name;
}

Dictionary DesignFinding::as_dictionary() const {
	Dictionary told;
	told["severity"] = int64_t(severity);
	told["rule"] = StringName(rule);
	told["place"] = place;
	told["text"] = vformat("%s.", what);
	told["remedy"] = remedy;
	told["about"] = about;
	return told;
}

CheckedDesign::CheckedDesign(const SCMachineTemplate &from) : initial_state(from.initial_state), top_states(from.states), variable_list(from.variables) {
	name = !from.display_name.is_empty() ? from.display_name : from.get_path().get_file().get_basename();
	name = name.is_empty() ? String("Template") : name;
	for (int64_t i = 0; i < from.events.size(); i++) {
		const Ref<SCMachineEvent> event = from.events[i];
		if (event.is_null()) {
			find(DesignFinding::WARNING, "empty_row", name, Variant(), vformat("row %d of its events holds nothing", i + 1), "Take the row away.");
		} else {
			add_once(heard_events, event->event_name);
			add_once(declared_events, event->event_name);
		}
	}
	read_variables();
	read_states(top_states, name, initial_state, "states");
}

CheckedDesign::CheckedDesign(const SCMachine &machine) :
		initial_state(machine.initial_state), top_states(machine.get_states()), variable_list(machine.get_variables()) {
	name = machine.name_in_messages();
	read_variables();
	// What is stored under a name as the machine starts is there, declared or not.
	const Array stored = Dictionary(machine.get_starting_values()).keys();
	for (int64_t i = 0; i < stored.size(); i++) {
		add_once(variable_names, stored[i]);
	}
	read_states(top_states, name, initial_state, "states");
	if (initial_state.is_valid() && !visited.has(initial_state->get_instance_id())) {
		read_states(Array::make(initial_state), name, initial_state, "states");
	}
}

void CheckedDesign::find(
		DesignFinding::Severity severity, const char *rule, const String &place, const Variant &about, const String &what, const String &remedy) {
	DesignFinding finding;
	finding.severity = severity;
	finding.rule = rule;
	finding.place = place;
	finding.about = about;
	finding.what = what;
	finding.remedy = remedy;
	findings.push_back(finding);
}

bool CheckedDesign::holds(const LocalVector<StringName> &names, const StringName &name) {
	for (const StringName &known : names) {
		if (known == name) {
			return true;
		}
	}
	return false;
}

void CheckedDesign::read_variables() {
	for (int64_t i = 0; i < variable_list.size(); i++) {
		const Ref<SCMachineVariable> variable = variable_list[i];
		if (variable.is_null()) {
			find(DesignFinding::WARNING, "empty_row", name, Variant(), vformat("row %d of its variables holds nothing", i + 1), "Take the row away.");
			continue;
		}
		variables.push_back(variable);
		add_once(variable_names, variable->name);
	}
}

void CheckedDesign::read_states(const Array &list, const String &above, const Ref<SCMachineState> &start, const char *in_what) {
	for (int64_t i = 0; i < list.size(); i++) {
		const Ref<SCMachineState> state = list[i];
		if (state.is_null()) {
			find(DesignFinding::WARNING, "empty_row", above, Variant(), vformat("row %d of its %s holds no state", i + 1, in_what), "Take the row away.");
			continue;
		}
		if (visited.has(state->get_instance_id())) {
			continue;
		}
		visited.insert(state->get_instance_id());
		CheckedState checked;
		checked.state = state;
		checked.place = vformat("%s > %s", above, named(state->state_name, "a state without a name"));
		checked.is_a_start = state == start;
		checked.is_nested = above != name;
		states.push_back(checked);
		add_once(state_names, state->state_name);
		for (int64_t t = 0; t < state->transitions.size(); t++) {
			const Ref<SCMachineTransition> transition = state->transitions[t];
			if (transition.is_valid()) {
				add_once(heard_events, transition->event);
			}
		}
		read_actions(checked);
		read_states(state->sub_states, checked.place, state->first_sub_state(), "sub-states");
		for (int64_t r = 0; r < state->parallel_states.size(); r++) {
			const Ref<SCMachineParallelState> region = state->parallel_states[r];
			if (region.is_null()) {
				find(DesignFinding::WARNING, "empty_row", checked.place, state, vformat("row %d of its parallel states holds nothing", r + 1),
						"Take the row away.");
			} else {
				const String place = vformat("%s > %s", checked.place, named(region->parallel_name, "a parallel state without a name"));
				read_states(region->states, place, region->first_state(), "states");
			}
		}
	}
}

void CheckedDesign::read_actions(const CheckedState &checked) {
	const Ref<SCMachineState> state = checked.state;
	for (int64_t i = 0; i < state->actions.size(); i++) {
		const Variant held = state->actions[i];
		Object *object = held.get_type() == Variant::OBJECT ? held.get_validated_object() : nullptr;
		SCMachineAction *action = Object::cast_to<SCMachineAction>(object);
		if (object == nullptr) {
			find(DesignFinding::WARNING, "empty_row", checked.place, state, vformat("row %d of its actions holds nothing, so nothing is done there", i + 1),
					"Pick an action for it, or take the row away.");
		} else if (action != nullptr && !action->disabled) {
			if (is_bare(*action)) {
				find(DesignFinding::WARNING, "bare_action", checked.place, held,
						vformat("row %d of its actions is a plain SCMachineAction, which does nothing", i + 1), "Pick a kind of action in its place.");
				continue;
			}
			// A script's answers are a game's code.
			const Ref<SCMachineAction> kept(action);
			read_action(*action, checked);
			check_waiting(*action, checked, i);
		}
	}
}

void CheckedDesign::check_waiting(SCMachineAction &action, const CheckedState &checked, int64_t row) {
	const Variant above = action.wait_for_previous && row > 0 ? checked.state->actions[row - 1] : Variant();
	SCMachineAction *waited_for = Object::cast_to<SCMachineAction>(above.get_type() == Variant::OBJECT ? above.get_validated_object() : nullptr);
	if (waited_for != nullptr && !waited_for->disabled && !waited_for->holds_its_state().is_empty()) {
		find(DesignFinding::WARNING, "waits_for_ever", vformat("%s > %s", checked.place, name_of(action)), Ref<SCMachineAction>(&action),
				vformat("it waits for %s before it, which never finishes", name_of(*waited_for)), "Untick Wait For Previous, or put it first.");
	}
}

void CheckedDesign::read_action(SCMachineAction &action, const CheckedState &checked) {
	NameUse use;
	use.place = vformat("%s > %s", checked.place, name_of(action));
	use.about = Ref<SCMachineAction>(&action);
	use.in_state = checked.state.ptr();
	const auto note = [&use](LocalVector<NameUse> &into, const PackedStringArray &names) {
		for (int64_t i = 0; i < names.size(); i++) {
			if (!names[i].is_empty()) {
				use.name = names[i];
				into.push_back(use);
			}
		}
	};
	note(sent, action.events_sent());
	note(written, action.variables_written());
	const Array settings = action.from_variables.keys();
	for (int64_t i = 0; i < settings.size(); i++) {
		const StringName variable = action.from_variables[settings[i]];
		if (!variable.is_empty()) {
			use.name = variable;
			use.setting = settings[i];
			read.push_back(use);
		}
	}
	use.setting = StringName();
	note(read, action.variables_read());
}
