#include "kinds/flow.hpp"

#include "action/words.hpp"
#include "machine/companion_scripts.hpp"
#include "sc_machine_base.hpp"

namespace {

void hide(PropertyInfo &property) {
	property.usage &= ~uint32_t(PROPERTY_USAGE_EDITOR);
}

} // namespace

void SCWaitAction::describe(KindTable<SCWaitAction> &kind) {
	kind.about("flow", "wait", "Wait a number of seconds, then finish.");
	kind.setting<&SCWaitAction::seconds>("seconds", hint::SECONDS, "How long to wait.");
	kind.setting<&SCWaitAction::random_extra>("random_extra", hint::SECONDS, "Up to this many extra seconds, picked at random each time.");
	kind.setting<&SCWaitAction::real_time>("real_time", "Count real seconds, whatever speed the game runs at.");
}

String SCWaitAction::summary_default() {
	const String unit = real_time ? " of real time" : "";
	if (random_extra > 0.0) {
		return vformat("Wait %s to %s s%s", words::number(seconds), words::number(seconds + random_extra), unit);
	}
	return vformat("Wait %s s%s", words::number(seconds), unit);
}

bool SCWaitAction::finishes_as_it_starts_default() {
	return seconds <= 0.0 && random_extra <= 0.0 && !from_variables.has("seconds") && !from_variables.has("random_extra");
}

void SCSetVariableAction::describe(KindTable<SCSetVariableAction> &kind) {
	kind.about("flow", "set_variable", "Set, add to, take away from, multiply or toggle one of the machine's variables.");
	kind.constants_of<Operation>();
	kind.setting<&SCSetVariableAction::variable_name>("variable_name", "The variable to change.");
	kind.setting<&SCSetVariableAction::operation>("operation", "What to do with it. Add, Subtract and Multiply work on numbers, places and colours. Toggle flips true and false.").relists();
	kind.setting<&SCSetVariableAction::value>("value", "Value used by Set, Add, Subtract, Multiply.");
	kind.setting<&SCSetVariableAction::per_second>("per_second", "On Every Frame, add or take away this much each second. Add and Subtract only.");
	ClassDB::bind_method(D_METHOD("_warn_nothing_picked", "m", "index"), &SCSetVariableAction::warn_nothing_picked);
}

String SCSetVariableAction::summary_default() {
	const String shown = words::text_of(value);
	const String pace = per_second && repeats() ? " each second" : "";
	switch (operation) {
		case ADD:
			return vformat("Add %s to %s%s", shown, variable_name, pace);
		case SUBTRACT:
			return vformat("Take %s from %s%s", shown, variable_name, pace);
		case MULTIPLY:
			return vformat("Multiply %s by %s", variable_name, shown);
		case TOGGLE:
			return vformat("Toggle %s", variable_name);
		case SET:
			break;
	}
	return vformat("Set %s to %s", variable_name, shown);
}

void SCSetVariableAction::warn_nothing_picked(SCMachineBase *machine, int index) {
	if (machine != nullptr) {
		MakerWarnings::once_for(machine, vformat("set_variable:%d:%d", get_instance_id(), index), vformat("Set Variable on %s has no variable picked, so it changed nothing. Pick one in its Variable Name.", machine->name_in_messages()));
	}
}

void SCSetVariableAction::_validate_property(PropertyInfo &property) const {
	const bool steps = operation == ADD || operation == SUBTRACT;
	if ((property.name == StringName("value") && operation == TOGGLE) || (property.name == StringName("per_second") && (!steps || run_mode != EVERY_FRAME))) {
		hide(property);
	}
}

void SCSendEventAction::describe(KindTable<SCSendEventAction> &kind) {
	kind.about("flow", "send_event", "Send a named event to this machine, to every machine in a group, or to every machine in the game.");
	kind.constants_of<Reach>();
	kind.setting<&SCSendEventAction::event_name>("event_name", "The event name.");
	kind.setting<&SCSendEventAction::reach>("reach", "Who hears it. An event the template declares global always goes everywhere, whatever this says.").relists();
	kind.setting<&SCSendEventAction::to_group>("to_group", "The group whose machines hear it.");
	kind.setting<&SCSendEventAction::to_node_path>("to_node_path", "The node whose machine hears it: the machine on that node, or on one of the nodes it sits under. Empty is Self.");
	kind.setting<&SCSendEventAction::data>("data", "Value carried with the event.");
	kind.setting<&SCSendEventAction::delay>("delay", hint::SECONDS, "Seconds before sending, zero for at once. Leaving the state first means it is never sent.");
	ClassDB::bind_method(D_METHOD("_warn_send", "m", "index"), &SCSendEventAction::warn_send);
}

String SCSendEventAction::summary_default() {
	String to;
	if (reach == A_GROUP) {
		to = vformat(" to group %s", to_group);
	} else if (reach == EVERY_MACHINE) {
		to = " to every machine";
	} else if (reach == A_NODE) {
		to = to_node_path.is_empty() ? String(" to Self") : vformat(" to %s", to_node_path);
	}
	const String later = delay > 0.0 ? vformat(" after %s s", words::number(delay)) : String();
	return vformat("Send %s%s%s", event_name, to, later);
}

bool SCSendEventAction::finishes_as_it_starts_default() {
	return delay <= 0.0 && !from_variables.has("delay");
}

void SCSendEventAction::warn_send(SCMachineBase *machine, int index) {
	if (machine != nullptr) {
		MakerWarnings::once_for(machine, vformat("send_event:%d:%d", get_instance_id(), index), vformat("Send Event on %s has no event name, so nothing was sent. Type one in its Event Name.", machine->name_in_messages()));
	}
}

void SCSendEventAction::_validate_property(PropertyInfo &property) const {
	if ((property.name == StringName("to_group") && reach != A_GROUP) || (property.name == StringName("to_node_path") && reach != A_NODE)) {
		hide(property);
	}
}

void SCPrintAction::describe(KindTable<SCPrintAction> &kind) {
	kind.about("flow", "print", "Print a line to the Output panel.");
	kind.constants_of<Loudness>();
	kind.setting<&SCPrintAction::text>("text", hint::MULTILINE, "The line. A variable's name in braces, such as {score}, is replaced by its value, and {target} by the name of the node the machine works on.");
	kind.setting<&SCPrintAction::loudness>("loudness", "Whether it is an ordinary line, or shown as a warning or an error.");
}

String SCPrintAction::summary_default() {
	return vformat("Print \"%s\"", text);
}
