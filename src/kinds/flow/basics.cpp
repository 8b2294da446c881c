#include "kinds/flow/basics.hpp"

#include "action/shared_verbs.hpp"
#include "settings/plumbing.hpp"

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

// Set does not look at what the variable held before.
PackedStringArray SCSetVariableAction::variables_read_default() {
	return operation == SET ? PackedStringArray() : SCMachineAction::variables_read_default();
}

PackedStringArray SCSetVariableAction::variables_written_default() {
	PackedStringArray written;
	if (!variable_name.is_empty()) {
		written.push_back(variable_name);
	}
	return written;
}

void SCSetVariableAction::warn_nothing_picked(SCMachineBase *machine, int index) {
	if (machine != nullptr) {
		MakerWarnings::once_for(machine, vformat("set_variable:%d:%d", get_instance_id(), index), vformat("Set Variable on %s has no variable picked, so it changed nothing. Pick one in its Variable Name.", machine->name_in_messages()));
	}
}

void SCSetVariableAction::warn_cannot(SCMachineBase *machine, const Variant &held) const {
	const String holds = values::kind_in_words(held);
	const String given = values::kind_in_words(value);
	String what;
	switch (operation) {
		case SET:
			what = vformat("%s holds %s and cannot be set to %s", variable_name, holds, given);
			break;
		case ADD:
			what = vformat("%s cannot be added to %s, which holds %s", given, variable_name, holds);
			break;
		case SUBTRACT:
			what = vformat("%s cannot be taken from %s, which holds %s", given, variable_name, holds);
			break;
		case MULTIPLY:
			what = vformat("%s holds %s, which cannot be multiplied by %s", variable_name, holds, given);
			break;
		case TOGGLE:
			verbs::warn(machine, this, vformat("%s holds %s, which is neither true nor false, so it changed nothing. Pick a bool under Variable Name.", variable_name, holds));
			return;
	}
	verbs::warn(machine, this, vformat("%s, so it changed nothing. Give Value the right kind of value, or pick another variable under Variable Name.", what));
}

void SCSetVariableAction::_validate_property(PropertyInfo &property) const {
	const bool steps = operation == ADD || operation == SUBTRACT;
	if ((property.name == StringName("value") && operation == TOGGLE) || (property.name == StringName("per_second") && (!steps || run_mode != EVERY_FRAME))) {
		hide_from_inspector(property);
	}
}

void SCSendEventAction::describe(KindTable<SCSendEventAction> &kind) {
	kind.about("flow", "send_event", "Send a named event to this machine, to every machine in a group, or to every machine in the game.");
	kind.constants_of<Reach>();
	kind.setting<&SCSendEventAction::event_name>("event_name", "The event name.");
	kind.setting<&SCSendEventAction::reach>("reach", "Who hears it. An event the template declares global always goes everywhere, whatever this says.").relists();
	kind.setting<&SCSendEventAction::to_group>("to_group", "The group whose machines hear it.");
	kind.setting<&SCSendEventAction::to_node_path>("to_node_path", "The node whose machine hears it: the machine on that node, or on one of the nodes it sits under. Empty is Self.");
	kind.setting<&SCSendEventAction::data>("data", "Value carried with the event, such as how hard the hit was. The transition that takes the event can store it.");
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
		to = vformat(" to %s", words::name_in_line(to_node_path));
	}
	const String carrying = data.get_type() == Variant::NIL ? String() : vformat(" with %s", words::text_of(data));
	const String later = delay > 0.0 ? vformat(" after %s s", words::number(delay)) : String();
	return vformat("Send %s%s%s%s", event_name, carrying, to, later);
}

bool SCSendEventAction::finishes_as_it_starts_default() {
	return delay <= 0.0 && !from_variables.has("delay");
}

void SCSendEventAction::warn_send(SCMachineBase *machine, int index) {
	(void)index;
	if (event_name.is_empty()) {
		verbs::warn(machine, this, "it has no event, so nothing was sent. Type one under Event Name.");
	} else if (reach == A_GROUP) {
		verbs::warn(machine, this, vformat("it has no group to send %s to, so nothing was sent. Type one under To Group.", event_name));
	} else if (Node *at = verbs::node_or_warn(machine, this, to_node_path, "to_node_path")) {
		verbs::warn(machine, this, vformat("there is no Machine on %s or on a node above it, so nobody heard %s. Give it a Machine, or pick another node under To Node Path.", at->get_name(), event_name));
	}
}

void SCSendEventAction::_validate_property(PropertyInfo &property) const {
	if ((property.name == StringName("to_group") && reach != A_GROUP) || (property.name == StringName("to_node_path") && reach != A_NODE)) {
		hide_from_inspector(property);
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
