#include "kinds/flow/send_event.hpp"

#include "action/shared_verbs.hpp"

void SCSendEventAction::describe(KindTable<Self> &kind) {
	kind.about("flow", "send_event", "Send a named event to this machine, to every machine in a group, or to every machine in the game.");
	kind.runs_for_a_while<&Self::delay>();
	kind.constants_of<Reach>();
	kind.setting<&Self::event_name>("event_name", "The event name.");
	kind.setting<&Self::reach>("reach", "Who hears it. An event the template declares global always goes everywhere, whatever this says.");
	kind.setting<&Self::to_group>("to_group", "The group whose machines hear it.").only_if<&Self::reach, A_GROUP>();
	kind.setting<&Self::to_node_path>(
				"to_node_path", "The node whose machine hears it: the machine on that node, or on one of the nodes it sits under. Empty is Self.")
			.only_if<&Self::reach, A_NODE>();
	kind.setting<&Self::data>("data", "Value carried with the event, such as how hard the hit was. The transition that takes the event can store it.");
	kind.setting<&Self::delay>("delay", hint::SECONDS, "Seconds before sending, zero for at once. Leaving the state first means it is never sent.");
	kind.warns<&Self::warn_send>("_warn_send", "m", "index");
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

void SCSendEventAction::warn_send(SCMachineBase *machine, int index) {
	(void)index;
	if (event_name.is_empty()) {
		verbs::warn(machine, this, "it has no event, so nothing was sent. Type one under Event Name.");
	} else if (reach == A_GROUP) {
		verbs::warn(machine, this, vformat("it has no group to send %s to, so nothing was sent. Type one under To Group.", event_name));
	} else if (Node *at = verbs::node_or_warn<&Self::to_node_path>(machine, this)) {
		verbs::warn(machine, this,
				vformat("there is no Machine on %s or on a node above it, so nobody heard %s. Give it a Machine, or pick another node under To Node Path.",
						at->get_name(), event_name));
	}
}
