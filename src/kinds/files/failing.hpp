#pragma once

// How a kind of the files category says that it could not do its work: to the game maker in a sentence, to the game in an event.

#include "action/shared_verbs.hpp"
#include "kinds/files/paths.hpp"

namespace files {

// Sends the event, which carries the reason.
template <class Kind>
void send_failed(SCMachineBase *machine, SCMachineAction *action, const String &wrong) {
	verbs::send<&Kind::failed_event>(machine, action, wrong);
}
template <class Kind>
void fail(SCMachineBase *machine, SCMachineAction *action, const String &wrong, const String &remedy) {
	const StillHere here(machine);
	warn_nothing_done(machine, action, wrong, remedy);
	if (here) {
		send_failed<Kind>(machine, action, wrong);
	}
}
// For what somebody who has named the event may well expect: nothing is said then.
template <class Kind>
void fail_or_send(SCMachineBase *machine, SCMachineAction *action, const String &wrong, const String &remedy) {
	if (setting_of<&Kind::failed_event>(action).is_empty()) {
		warn_nothing_done(machine, action, wrong, remedy);
	} else {
		send_failed<Kind>(machine, action, wrong);
	}
}

// The place that a path setting leads to. Without one the game maker is told and the event sent.
template <class Kind, auto Field>
Place place_or_fail(SCMachineBase *machine, SCMachineAction *action, Use use) {
	const StillHere here(machine);
	const Place place = place_or_warn<Field, &Kind::anywhere>(machine, action, use);
	if (!place && here) {
		send_failed<Kind>(machine, action, place.wrong);
	}
	return place;
}

} // namespace files
