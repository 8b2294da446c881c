#include "kinds/machine/machines.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"
#include "settings/plumbing.hpp"

namespace {

constexpr char WHOSE_MACHINE[] = "The node whose machine is meant, or the machine itself: the machine on that node, or on one of the nodes it sits under.";

String machine_in_line(const NodePath &path) {
	const String node = words::name_in_line(path, "Self", "(pick one)");
	return vformat("the machine of %s", node);
}

void add_names(PackedStringArray &names, const Array &more) {
	for (int64_t i = 0; i < more.size(); i++) {
		const String name = more[i];
		if (!name.is_empty() && !names.has(name)) {
			names.push_back(name);
		}
	}
}

} // namespace

void SCCancelDelayedEventsAction::describe(KindTable<SCCancelDelayedEventsAction> &kind) {
	kind.about("machine", "cancel_delayed_events", "Call off events this machine's Send Event actions are still waiting to send after a Delay.");
	kind.setting<&SCCancelDelayedEventsAction::event>("event", "Which event to call off, such as Explode when the fuse is cut. Empty calls off all that are waiting.");
	kind.setting<&SCCancelDelayedEventsAction::store_count_in>("store_count_in", "The variable that takes how many were called off. Empty keeps it nowhere.");
}

String SCCancelDelayedEventsAction::summary_default() {
	const String what = event.is_empty() ? String("every delayed event") : vformat("delayed %s", event);
	return store_count_in.is_empty() ? vformat("Call off %s", what) : vformat("Call off %s, how many into %s", what, store_count_in);
}

TypedArray<StringName> SCCancelDelayedEventsAction::optional_names_default() {
	return Array::make(StringName("event"), StringName("store_count_in"));
}

void SCEnableMachineAction::describe(KindTable<SCEnableMachineAction> &kind) {
	kind.about("machine", "enable_machine", "Switch another machine on or off, to stop a patrol while a cutscene plays or wake a trap when a lever is pulled.");
	kind.constants_of<Turn>();
	kind.constants_of<WhenOff>();
	kind.setting<&SCEnableMachineAction::machine_path>("machine_path", WHOSE_MACHINE);
	kind.setting<&SCEnableMachineAction::turn>("turn", "Whether to switch it on or off, or to whichever it is not now. A machine that is not running is started by switching it on.").relists();
	kind.setting<&SCEnableMachineAction::when_off>("when_off", "Holds Still keeps it in its state, deaf to every event, and it goes on from there once it is switched on. Stops leaves its states, and it begins anew once it is switched on.");
}

String SCEnableMachineAction::summary_default() {
	const String which = machine_in_line(machine_path);
	switch (turn) {
		case TURN_ON:
			return vformat("Switch %s on", which);
		case TURN_OFF:
			return vformat(when_off == STOPS ? "Stop %s" : "Switch %s off", which);
		case TURN_OTHER_WAY:
			break;
	}
	return vformat("Switch %s on or off, whichever it is not", which);
}

void SCEnableMachineAction::_validate_property(PropertyInfo &property) const {
	if (property.name == StringName("when_off") && turn == TURN_ON) {
		hide_from_inspector(property);
	}
}

void SCForwardEventsAction::describe(KindTable<SCForwardEventsAction> &kind) {
	kind.about("machine", "forward_events", "While this state runs, pass the events this machine gets on to another machine as well.");
	kind.setting<&SCForwardEventsAction::machine_path>("machine_path", WHOSE_MACHINE);
	kind.setting<&SCForwardEventsAction::only_these>("only_these", "Pass on these events only. An empty list passes on all of them, but for FINISHED, which is this machine's own business, and global events, which every machine hears anyway.");
}

String SCForwardEventsAction::summary_default() {
	const String what = only_these.is_empty() ? String("every event") : words::listed(only_these);
	return vformat("Pass %s on to %s", what, machine_in_line(machine_path));
}

void SCGetLastEventAction::describe(KindTable<SCGetLastEventAction> &kind) {
	kind.about("machine", "get_last_event", "Put the name of the event that brought the machine into this state into a String variable.");
	kind.setting<&SCGetLastEventAction::store_in>("store_in", "The variable the event's name goes into. It becomes empty when no event did, as in the state a machine starts in.");
}

String SCGetLastEventAction::summary_default() {
	return vformat("Put the event that led here into %s", store_in);
}

void SCGetPreviousStateAction::describe(KindTable<SCGetPreviousStateAction> &kind) {
	kind.about("machine", "get_previous_state", "Put the name of the state the machine came from into a String variable.");
	kind.setting<&SCGetPreviousStateAction::store_in>("store_in", "The variable the state's name goes into. It becomes empty in the state a machine starts in.");
}

String SCGetPreviousStateAction::summary_default() {
	return vformat("Put the state it came from into %s", store_in);
}

void SCGetStateAction::describe(KindTable<SCGetStateAction> &kind) {
	kind.about("machine", "get_state", "Put the name of the state a machine is in into a String variable.");
	kind.constants_of<Which>();
	kind.setting<&SCGetStateAction::machine_path>("machine_path", "The node whose machine is asked: the machine on that node, or on one of the nodes it sits under. Empty asks this machine.");
	kind.setting<&SCGetStateAction::which>("which", "Which of the states one inside the other. For example, of Attack in Fight the innermost is Attack, the outermost Fight, and the whole path Fight/Attack.");
	kind.setting<&SCGetStateAction::store_in>("store_in", "The variable the state's name goes into. It becomes empty when that machine is not running.");
}

String SCGetStateAction::summary_default() {
	const String whose = machine_path.is_empty() ? String("this machine") : machine_in_line(machine_path);
	return vformat("Put the state of %s into %s", whose, store_in);
}

void SCGoToPreviousStateAction::describe(KindTable<SCGoToPreviousStateAction> &kind) {
	kind.about("machine", "go_to_previous_state", "Go back to the state the machine came from, without a transition naming it.");
}

String SCGoToPreviousStateAction::summary_default() {
	return "Go back to the state it came from";
}

void SCMachineVariableAction::describe(KindTable<SCMachineVariableAction> &kind) {
	kind.about("machine", "machine_variable", "Read or write a variable on another machine.");
	kind.constants_of<Operation>();
	kind.setting<&SCMachineVariableAction::machine_path>("machine_path", WHOSE_MACHINE);
	kind.setting<&SCMachineVariableAction::operation>("operation", "Read copies its variable into one of this machine's. Write copies one of this machine's into its variable.").relists();
	kind.setting<&SCMachineVariableAction::variable_there>("variable_there", "The name of the variable on the other machine.");
	kind.setting<&SCMachineVariableAction::store_in>("store_in", "The variable of this machine that takes the value.");
	kind.setting<&SCMachineVariableAction::from_variable>("from_variable", "The variable of this machine whose value is written.");
}

String SCMachineVariableAction::summary_default() {
	const String which = machine_in_line(machine_path);
	if (operation == WRITE) {
		return vformat("Put %s in %s on %s", words::picked(from_variable), variable_there, which);
	}
	return vformat("Put %s on %s into %s", variable_there, which, store_in);
}

void SCMachineVariableAction::_validate_property(PropertyInfo &property) const {
	if (property.name == StringName(operation == READ ? "from_variable" : "store_in")) {
		hide_from_inspector(property);
	}
}

void SCRunTemplateAction::describe(KindTable<SCRunTemplateAction> &kind) {
	kind.about("machine", "run_template", "Run another template inside this state, on the same node, for as long as the state runs.");
	kind.setting<&SCRunTemplateAction::machine_template>("template", "The template to run.");
	kind.setting<&SCRunTemplateAction::shared_variables>("shared_variables", "Variables this machine hands to the other template as it starts, and takes back from it when it ends, by the same names in both.");
	kind.setting<&SCRunTemplateAction::done_event>("done_event", "An event the other template sends to say it is done, as well as reaching an end state. Empty waits for an end state only.");
}

String SCRunTemplateAction::summary_default() {
	if (machine_template.is_null()) {
		return "Run a template (pick one)";
	}
	String name = machine_template->display_name;
	if (name.is_empty()) {
		name = machine_template->get_path().get_file().get_basename().capitalize();
	}
	const String line = vformat("Run %s", name.is_empty() ? String("a template of its own") : name);
	return shared_variables.is_empty() ? line : vformat("%s, sharing %s", line, words::listed(shared_variables));
}

PackedStringArray SCRunTemplateAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	add_names(names, shared_variables);
	return names;
}

PackedStringArray SCRunTemplateAction::variables_written_default() {
	PackedStringArray names = SCMachineAction::variables_written_default();
	add_names(names, shared_variables);
	return names;
}

TypedArray<StringName> SCRunTemplateAction::optional_names_default() {
	return Array::make(StringName("done_event"));
}
