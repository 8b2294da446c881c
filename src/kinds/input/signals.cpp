#include "kinds/input/signals.hpp"

#include "action/shared_verbs.hpp"

void SCEventOnSignalAction::describe(KindTable<Self> &kind) {
	kind.about("input", "event_on_signal",
			"Listen to any node's signal while this state runs and send an event when it fires, such as a button pressed, a body entering an area or a timer "
			"finishing.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::node_path>("node_path", "Node whose signal to listen to. Empty is Self, the node this Machine works on.");
	kind.setting<&Self::signal_name>("signal_name", "The signal's name, such as pressed, body_entered or timeout.");
	kind.setting<&Self::event_name>(
				"event_name", "Event sent. It carries the thing picked below. Empty sends none, for a signal only kept in a variable below.")
			.optional_if<&Self::keeps_what_it_hears>();
	kind.setting<&Self::store_argument_in>("store_argument_in", "Store what the signal hands over in this variable, such as the body that entered.")
			.optional_if<&Self::keeps_nothing>();
	kind.setting<&Self::argument>("argument", { PROPERTY_HINT_RANGE, "0,8,1,or_greater" }, "Which of the things handed over, where 1 is the first.")
			.only_if<&Self::hands_something_on>();
	kind.warns<&Self::warn_signal>("_warn_signal", "m", "index", "what", "node");
}

String SCEventOnSignalAction::summary_default() {
	String does;
	if (!event_name.is_empty() || store_argument_in.is_empty()) {
		does = vformat(", send %s", event_name);
	}
	if (!store_argument_in.is_empty()) {
		does += vformat(", keep what it hands over in %s", store_argument_in);
	}
	return vformat("When %s signals %s%s", words::name_in_line(node_path), signal_name, does);
}

void SCEventOnSignalAction::warn_signal(SCMachineBase *machine, int index, int what, Node *node) {
	(void)index;
	if (what == NO_NODE || node == nullptr) {
		verbs::node_or_warn<&Self::node_path>(machine, this);
	} else if (signal_name.is_empty()) {
		verbs::warn(machine, this, vformat("it has no signal of %s to listen to. Type one under Signal Name.", node->get_name()));
	} else {
		verbs::warn(machine, this,
				vformat("%s is a %s, which has no signal called %s, so nothing is heard. Type one that it has under Signal Name.", node->get_name(),
						node->get_class(), signal_name));
	}
}
