#include "design/sc_machine_note.hpp"

#include "settings/shown_names.hpp"

String SCMachineNote::_to_string() const {
	return title.is_empty() ? String("Note") : title;
}

void SCMachineNote::_validate_property(PropertyInfo &property) const {
	shown_names::leave_out_of_files(this, property);
}

void SCMachineNote::_bind_methods() {
	ClassTable<SCMachineNote> table(
			"A box drawn behind the states. On its own it is a comment, with states dragged onto it a group. It has no effect on running.");
	table.setting<&SCMachineNote::title>("title", "The heading across the top of the box.");
	table.setting<&SCMachineNote::text>("text", hint::MULTILINE, "What the next reader should know.");
	table.setting<&SCMachineNote::color>("color", "The tint of the box.");
	table.setting<&SCMachineNote::graph_position>("graph_position", "Where it sits in the graph.");
	table.setting<&SCMachineNote::graph_size>("graph_size", "How big it is, unless it is shrinking to fit.");
	table.setting<&SCMachineNote::fits_its_states>("fits_its_states", "Shrink to fit the states inside.");
	table.setting<&SCMachineNote::holds>("holds", "The names of the states inside it.");
	table.setting<&SCMachineNote::level>("level",
			"The state this box belongs beside: empty for the top level, otherwise the parent state's name, followed by › and the parallel state's name when "
			"it is drawn inside one of its parallel states.");
}
