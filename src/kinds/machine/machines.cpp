#include "kinds/machine/machines.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

namespace {

constexpr char WHOSE_MACHINE[] = "The node whose machine is meant, or the machine itself: the machine on that node, or on one of the nodes it sits under.";

String machine_in_line(const NodePath &path) {
	const String node = words::name_in_line(path, "Self", "(pick one)");
	return vformat("the machine of %s", node);
}

} // namespace

void SCCancelDelayedEventsAction::describe(KindTable<Self> &kind) {
	kind.about("machine", "cancel_delayed_events", "Call off events this machine's Send Event actions are still waiting to send after a Delay.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::event>("event", "Which event to call off, such as Explode when the fuse is cut. Empty calls off all that are waiting.").optional();
	kind.setting<&Self::store_count_in>("store_count_in", "The variable that takes how many were called off. Empty keeps it nowhere.").optional();
}

String SCCancelDelayedEventsAction::summary_default() {
	const String what = event.is_empty() ? String("every delayed event") : vformat("delayed %s", event);
	return store_count_in.is_empty() ? vformat("Call off %s", what) : vformat("Call off %s, how many into %s", what, store_count_in);
}

void SCEnableMachineAction::describe(KindTable<Self> &kind) {
	kind.about("machine", "enable_machine", "Switch another machine on or off, to stop a patrol while a cutscene plays or wake a trap when a lever is pulled.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<Turn>();
	kind.constants_of<WhenOff>();
	kind.setting<&Self::machine_path>("machine_path", WHOSE_MACHINE);
	kind.setting<&Self::turn>(
			"turn", "Whether to switch it on or off, or to whichever it is not now. A machine that is not running is started by switching it on.");
	kind.setting<&Self::when_off>("when_off",
				"Holds Still keeps it in its state, deaf to every event, and it goes on from there once it is switched on. Stops leaves its states, and it "
				"begins anew once it is switched on.")
			.unless<&Self::turn, TURN_ON>();
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

void SCForwardEventsAction::describe(KindTable<Self> &kind) {
	kind.about("machine", "forward_events", "While this state runs, pass the events this machine gets on to another machine as well.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::machine_path>("machine_path", WHOSE_MACHINE);
	kind.setting<&Self::only_these>("only_these",
			"Pass on these events only. An empty list passes on all of them, but for FINISHED, which is this machine's own business, and global events, which "
			"every machine hears anyway.");
}

String SCForwardEventsAction::summary_default() {
	const String what = only_these.is_empty() ? String("every event") : words::listed(only_these);
	return vformat("Pass %s on to %s", what, machine_in_line(machine_path));
}

void SCGetLastEventAction::describe(KindTable<Self> &kind) {
	kind.about("machine", "get_last_event", "Put the name of the event that brought the machine into this state into a String variable.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::store_in>(
			"store_in", "The variable the event's name goes into. It becomes empty when no event did, as in the state a machine starts in.");
}

String SCGetLastEventAction::summary_default() {
	return vformat("Put the event that led here into %s", store_in);
}

void SCGetPreviousStateAction::describe(KindTable<Self> &kind) {
	kind.about("machine", "get_previous_state", "Put the name of the state the machine came from into a String variable.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::store_in>("store_in", "The variable the state's name goes into. It becomes empty in the state a machine starts in.");
}

String SCGetPreviousStateAction::summary_default() {
	return vformat("Put the state it came from into %s", store_in);
}

void SCGetStateAction::describe(KindTable<Self> &kind) {
	kind.about("machine", "get_state", "Put the name of the state a machine is in into a String variable.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Which>();
	kind.setting<&Self::machine_path>(
			"machine_path", "The node whose machine is asked: the machine on that node, or on one of the nodes it sits under. Empty asks this machine.");
	kind.setting<&Self::which>("which",
			"Which of the states one inside the other. For example, of Attack in Fight the innermost is Attack, the outermost Fight, and the whole path "
			"Fight/Attack.");
	kind.setting<&Self::store_in>("store_in", "The variable the state's name goes into. It becomes empty when that machine is not running.");
}

String SCGetStateAction::summary_default() {
	const String whose = machine_path.is_empty() ? String("this machine") : machine_in_line(machine_path);
	return vformat("Put the state of %s into %s", whose, store_in);
}

void SCGoToPreviousStateAction::describe(KindTable<Self> &kind) {
	kind.about("machine", "go_to_previous_state", "Go back to the state the machine came from, without a transition naming it.");
	kind.runs(Runs::AT_ONCE);
}

String SCGoToPreviousStateAction::summary_default() {
	return "Go back to the state it came from";
}

void SCMachineVariableAction::describe(KindTable<Self> &kind) {
	kind.about("machine", "machine_variable", "Read or write a variable on another machine.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Operation>();
	kind.setting<&Self::machine_path>("machine_path", WHOSE_MACHINE);
	kind.setting<&Self::operation>("operation", "Read copies its variable into one of this machine's. Write copies one of this machine's into its variable.");
	kind.setting<&Self::variable_there>("variable_there", "The name of the variable on the other machine.");
	kind.setting<&Self::store_in>("store_in", "The variable of this machine that takes the value.").only_if<&Self::operation, READ>();
	kind.setting<&Self::from_variable>("from_variable", "The variable of this machine whose value is written.").only_if<&Self::operation, WRITE>();
}

String SCMachineVariableAction::summary_default() {
	const String which = machine_in_line(machine_path);
	if (operation == WRITE) {
		return vformat("Put %s in %s on %s", words::picked(from_variable), variable_there, which);
	}
	return vformat("Put %s on %s into %s", variable_there, which, store_in);
}
