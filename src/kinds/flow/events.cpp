#include "kinds/flow/events.hpp"

#include "action/shared_verbs.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "machine_node/sc_machine_base.hpp"

void SCGetEventDataAction::describe(KindTable<Self> &kind) {
	kind.about("flow", "get_event_data", "Read the value an event arrived with.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::event>("event",
				"The event whose value is wanted. It has to be the event that last moved the machine, so that a state that several events lead to can tell "
				"them apart. Empty takes the last one, whichever it was.")
			.optional();
	kind.setting<&Self::store_in>("store_in", "The variable the value goes into, for example the damage that Hurt carried.")
			.optional_if<&Self::store_sender_in>();
	kind.setting<&Self::if_it_carried_nothing>(
			"if_it_carried_nothing", "What is stored when the event carried no value. Left empty, the variable keeps what it holds.");
	kind.setting<&Self::store_sender_in>("store_sender_in", "The variable that takes the node whose machine sent the event, when a machine did.").optional();
}

String SCGetEventDataAction::summary_default() {
	const String of = event.is_empty() ? String("the last event") : String(event);
	if (store_in.is_empty() && !store_sender_in.is_empty()) {
		return vformat("Put the sender of %s into %s", of, store_sender_in);
	}
	const String sender = store_sender_in.is_empty() ? String() : vformat(", and its sender into %s", store_sender_in);
	return vformat("Put the value of %s into %s%s", of, store_in, sender).strip_edges(true, false);
}

void SCGoToStateAction::describe(KindTable<Self> &kind) {
	kind.about("flow", "go_to_state", "Jump straight to another state, without waiting for a transition.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::state_name>("state_name", "The state to go to, at any depth of this machine.").optional_if<&Self::state_name_variable>();
	kind.setting<&Self::state_name_variable>("state_name_variable", "Read the state's name from this variable instead, such as one that Get State filled.")
			.optional();
}

String SCGoToStateAction::summary_default() {
	return vformat("Go to %s", state_name);
}

void SCNextFrameEventAction::describe(KindTable<Self> &kind) {
	kind.about("flow", "next_frame", "Send an event on the next frame.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.setting<&Self::event_name>("event_name", "The event sent next frame.");
	kind.warns<&Self::warn_next_frame>("_warn_next_frame", "m", "index");
}

String SCNextFrameEventAction::summary_default() {
	return vformat("Send %s next frame", event_name);
}

void SCNextFrameEventAction::warn_next_frame(SCMachineBase *machine, int) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, this, 0,
				vformat("Next Frame Event on %s has no event name, so nothing was sent. Type one in its Event Name.", machine->name_in_messages()));
	}
}

void SCRandomEventAction::describe(KindTable<Self> &kind) {
	kind.about("flow", "random_event",
			"Send one of several events at random, so a state can branch differently each time, such as an enemy that sometimes dodges or a machine that picks "
			"a room.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::events>("events", "The events to choose between.");
	kind.setting<&Self::weights>("weights",
			"How likely each one is, in the same order. Leave it empty for an even chance. A short list is filled out with 1s and a long one is cut, so a "
			"weight always lines up with its event.");
	kind.warns<&Self::warn_random>("_warn_random", "m", "index", "which");
}

String SCRandomEventAction::summary_default() {
	if (events.is_empty()) {
		return "Send one of no events";
	}
	if (weights.is_empty()) {
		return vformat("Send one of %s", words::listed(events));
	}
	PackedStringArray chances;
	for (int64_t i = 0; i < events.size(); i++) {
		const double weight = i < weights.size() ? MAX(values::as_number(weights[i]), 0.0) : 1.0;
		chances.push_back(vformat("%s (%s)", words::listed(Array::make(events[i])), words::number(weight)));
	}
	return vformat("Send one of %s", String(", ").join(chances));
}

void SCRandomEventAction::warn_random(SCMachineBase *machine, int, int which) {
	if (machine == nullptr) {
		return;
	}
	if (which == 0) {
		verbs::warn_whole(machine, this, which,
				vformat("Random Event on %s has no events to choose between, so it sent nothing. Add them beside Events.", machine->name_in_messages()));
	} else {
		verbs::warn_whole(machine, this, which,
				vformat("Random Event on %s chose a row of its list that names no event, so it sent nothing. Type a name in every row beside Events.",
						machine->name_in_messages()));
	}
}

void SCTimerAction::describe(KindTable<Self> &kind) {
	kind.about("flow", "countdown",
			"Count a variable down in game time and send an event when it reaches zero, for a round timer, a fuse, or a power-up wearing off.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.setting<&Self::variable_name>("variable_name",
				"The variable that counts down, in seconds. A float shows fractions, an int whole seconds. Adding to it while it runs gives more time, such as "
				"a bonus of 5 seconds.")
			.written();
	kind.setting<&Self::start_over>("start_over",
			"Begin from the Seconds below each time this state is reached. Off, it goes on from what the variable holds, so leaving the state stops the clock "
			"and coming back lets it run on.");
	kind.setting<&Self::seconds>("seconds", hint::SECONDS, "What it counts down from.").only_if<&Self::start_over>();
	kind.setting<&Self::event_name>("event_name", "The event sent when it reaches zero. Empty sends none; the action finishes then either way.").optional();
}

String SCTimerAction::summary_default() {
	const String from = start_over ? vformat(" from %s s", words::number(seconds)) : String();
	const String then = event_name.is_empty() ? String() : vformat(", then send %s", event_name);
	return vformat("Count %s down%s%s", variable_name, from, then);
}
