#include "kinds/flow/events.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"
#include "action/values.hpp"
#include "machine_node/sc_machine_base.hpp"
#include "settings/plumbing.hpp"

void SCGetEventDataAction::describe(KindTable<SCGetEventDataAction> &kind) {
	kind.about("flow", "get_event_data", "Read the value an event arrived with.");
	kind.setting<&SCGetEventDataAction::event>("event", "The event whose value is wanted. It has to be the event that last moved the machine, so that a state that several events lead to can tell them apart. Empty takes the last one, whichever it was.");
	kind.setting<&SCGetEventDataAction::store_in>("store_in", "The variable the value goes into, for example the damage that Hurt carried.");
	kind.setting<&SCGetEventDataAction::if_it_carried_nothing>("if_it_carried_nothing", "What is stored when the event carried no value. Left empty, the variable keeps what it holds.");
	kind.setting<&SCGetEventDataAction::store_sender_in>("store_sender_in", "The variable that takes the node whose machine sent the event, when a machine did.");
}

String SCGetEventDataAction::summary_default() {
	const String of = event.is_empty() ? String("the last event") : String(event);
	if (store_in.is_empty() && !store_sender_in.is_empty()) {
		return vformat("Put the sender of %s into %s", of, store_sender_in);
	}
	const String sender = store_sender_in.is_empty() ? String() : vformat(", and its sender into %s", store_sender_in);
	return vformat("Put the value of %s into %s%s", of, store_in, sender).strip_edges(true, false);
}

TypedArray<StringName> SCGetEventDataAction::optional_names_default() {
	TypedArray<StringName> optional = Array::make(StringName("event"), StringName("store_sender_in"));
	if (!store_sender_in.is_empty()) {
		optional.push_back(StringName("store_in"));
	}
	return optional;
}

void SCGoToStateAction::describe(KindTable<SCGoToStateAction> &kind) {
	kind.about("flow", "go_to_state", "Jump straight to another state, without waiting for a transition.");
	kind.setting<&SCGoToStateAction::state_name>("state_name", "The state to go to, at any depth of this machine.");
	kind.setting<&SCGoToStateAction::state_name_variable>("state_name_variable", "Read the state's name from this variable instead, such as one that Get State filled.");
}

String SCGoToStateAction::summary_default() {
	return vformat("Go to %s", state_name);
}

TypedArray<StringName> SCGoToStateAction::optional_names_default() {
	TypedArray<StringName> optional = Array::make(StringName("state_name_variable"));
	if (!state_name_variable.is_empty()) {
		optional.push_back(StringName("state_name"));
	}
	return optional;
}

void SCNextFrameEventAction::describe(KindTable<SCNextFrameEventAction> &kind) {
	kind.about("flow", "next_frame", "Send an event on the next frame.");
	kind.setting<&SCNextFrameEventAction::event_name>("event_name", "The event sent next frame.");
	ClassDB::bind_method(D_METHOD("_warn_next_frame", "m", "index"), &SCNextFrameEventAction::warn_next_frame);
}

String SCNextFrameEventAction::summary_default() {
	return vformat("Send %s next frame", event_name);
}

void SCNextFrameEventAction::warn_next_frame(SCMachineBase *machine, int) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, this, 0, vformat("Next Frame Event on %s has no event name, so nothing was sent. Type one in its Event Name.", machine->name_in_messages()));
	}
}

void SCRandomEventAction::describe(KindTable<SCRandomEventAction> &kind) {
	kind.about("flow", "random_event", "Send one of several events at random, so a state can branch differently each time, such as an enemy that sometimes dodges or a machine that picks a room.");
	kind.setting<&SCRandomEventAction::events>("events", "The events to choose between.");
	kind.setting<&SCRandomEventAction::weights>("weights", "How likely each one is, in the same order. Leave it empty for an even chance. A short list is filled out with 1s and a long one is cut, so a weight always lines up with its event.");
	ClassDB::bind_method(D_METHOD("_warn_random", "m", "index", "which"), &SCRandomEventAction::warn_random);
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
		verbs::warn_whole(machine, this, which, vformat("Random Event on %s has no events to choose between, so it sent nothing. Add them beside Events.", machine->name_in_messages()));
	} else {
		verbs::warn_whole(machine, this, which, vformat("Random Event on %s chose a row of its list that names no event, so it sent nothing. Type a name in every row beside Events.", machine->name_in_messages()));
	}
}

void SCTimerAction::describe(KindTable<SCTimerAction> &kind) {
	kind.about("flow", "countdown", "Count a variable down in game time and send an event when it reaches zero, for a round timer, a fuse, or a power-up wearing off.");
	kind.setting<&SCTimerAction::variable_name>("variable_name", "The variable that counts down, in seconds. A float shows fractions, an int whole seconds. Adding to it while it runs gives more time, such as a bonus of 5 seconds.");
	kind.setting<&SCTimerAction::start_over>("start_over", "Begin from the Seconds below each time this state is reached. Off, it goes on from what the variable holds, so leaving the state stops the clock and coming back lets it run on.").relists();
	kind.setting<&SCTimerAction::seconds>("seconds", hint::SECONDS, "What it counts down from.");
	kind.setting<&SCTimerAction::event_name>("event_name", "The event sent when it reaches zero. Empty sends none; the action finishes then either way.");
}

String SCTimerAction::summary_default() {
	const String from = start_over ? vformat(" from %s s", words::number(seconds)) : String();
	const String then = event_name.is_empty() ? String() : vformat(", then send %s", event_name);
	return vformat("Count %s down%s%s", variable_name, from, then);
}

PackedStringArray SCTimerAction::variables_written_default() {
	PackedStringArray written = SCMachineAction::variables_written_default();
	if (!variable_name.is_empty() && !written.has(variable_name)) {
		written.push_back(variable_name);
	}
	return written;
}

TypedArray<StringName> SCTimerAction::optional_names_default() {
	return Array::make(StringName("event_name"));
}

void SCTimerAction::_validate_property(PropertyInfo &property) const {
	if (!start_over && (property.name == StringName("seconds") || property.name == StringName("seconds_variable"))) {
		hide_from_inspector(property);
	}
}
