#include "design/sc_machine_transition.hpp"

#include "settings/plumbing.hpp"
#include "settings/shown_names.hpp"

StringName SCMachineTransition::finished_event() {
	return "FINISHED";
}

String SCMachineTransition::_to_string() const {
	const String on = event.is_empty() ? String("(nothing)") : vformat("on %s", event);
	return vformat("%s -> %s", on, to_state.is_empty() ? String("(nowhere)") : String(to_state));
}

void SCMachineTransition::_validate_property(PropertyInfo &property) const {
	shown_names::leave_out_of_files(this, property);
	if (is_plumbing(property.name) || property.name == StringName("graph_position")) {
		hide_from_inspector(property);
	}
}

void SCMachineTransition::_bind_methods() {
	ClassTable<SCMachineTransition> table("One way out of a state: the event that takes it and the state it leads to.");
	table.setting<&SCMachineTransition::event>("event", "The event that takes this transition: FINISHED, or any name an action or another machine sends.");
	table.setting<&SCMachineTransition::to_state>("to_state", "Name of the state to go to. Must match a state in the machine.");
	table.setting<&SCMachineTransition::store_data_in>("store_data_in", "The variable that receives the value the event carries, as the transition is taken.");
	table.setting<&SCMachineTransition::graph_position>(
			"graph_position", "Where this transition's box sits when it floats as a global transition inside a parent state.");
	ClassDB::bind_static_method("SCMachineTransition", D_METHOD("finished_event"), &SCMachineTransition::finished_event);
}
