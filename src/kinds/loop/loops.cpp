#include "kinds/loop/loops.hpp"

#include "action/shared_verbs.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "machine_node/sc_machine_base.hpp"

void SCForEachAction::describe(KindTable<Self> &kind) {
	kind.about("loop", "for_each", "Walk through a list one item at a time, such as every enemy in the room, every spawn point or every line of dialogue.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::list_variable>("list_variable", "The variable holding the list, as filled by the Array action.");
	kind.setting<&Self::store_item_in>("store_item_in", "The variable each item is put into when its turn comes.").optional();
	kind.setting<&Self::store_index_in>(
				"store_index_in", "The variable that holds which place in the list the item has, where the first is 0. Empty keeps it nowhere.")
			.optional();
	kind.setting<&Self::next_event>(
			"next_event", "Sent when there was another item. Lead it to the state that does something with the item, and that state's FINISHED back here.");
	kind.setting<&Self::done_event>("done_event", "Sent when the list has run out.");
	kind.setting<&Self::progress_variable>("progress_variable",
				"Where the count of how far through it is kept, so the walk survives leaving and coming back. Two For Each actions in one machine need "
				"different names here.")
			.optional();
	kind.setting<&Self::start_again_when_done>(
			"start_again_when_done", "Start again from the first item once the list has run out. Off, every further visit sends the Done Event.");
	kind.warns<&Self::warn_for_each>("_warn_for_each", "m", "index", "which", "held");
}

String SCForEachAction::summary_default() {
	const String into = store_item_in.is_empty() ? String() : vformat(" into %s", store_item_in);
	return vformat("For each of %s%s, send %s, then %s", words::picked(list_variable), into, next_event, done_event);
}

void SCForEachAction::warn_for_each(SCMachineBase *machine, int, int which, const Variant &held) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	const String sent = words::event_in_words(done_event);
	if (list_variable.is_empty()) {
		verbs::warn_whole(machine, this, 2,
				vformat("For Each on %s has no variable picked, so there was nothing to walk through and it sent %s. Pick the variable holding the list beside "
						"List Variable.",
						name, sent));
	} else if (which == 1) {
		verbs::warn_whole(machine, this, 1,
				vformat("For Each on %s: %s holds %s, which is not a list, so there was nothing to walk through and it sent %s. Fill it with the Array action, "
						"or make it an Array in the Variables tab.",
						name, list_variable, values::kind_in_words(held), sent));
	} else {
		verbs::warn_whole(machine, this, 0,
				vformat("For Each on %s: this machine has no variable called %s, so there was nothing to walk through and it sent %s. Pick the variable "
						"holding the list beside List Variable.",
						name, list_variable, sent));
	}
}

void SCRepeatAction::describe(KindTable<Self> &kind) {
	kind.about("loop", "repeat", "Do something a set number of times, such as fire three shots, spawn five coins or flash the screen twice.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::times>("times", { PROPERTY_HINT_RANGE, "0,100,1,or_greater" }, "How many times to go round.");
	kind.setting<&Self::times_variable>("times_variable", "Read how many times from this variable instead.").optional();
	kind.setting<&Self::again_event>(
			"again_event", "Sent while there are goes left. Lead it to the state that does the work, and that state's FINISHED back here.");
	kind.setting<&Self::done_event>("done_event", "Sent once they are used up.");
	kind.setting<&Self::progress_variable>("progress_variable",
				"Where the count of goes is kept, so it survives leaving and coming back. Two Repeat actions in one machine need different names here.")
			.optional();
	kind.setting<&Self::start_again_when_done>("start_again_when_done", "The next visit repeats afresh. Off, every further visit sends the Done Event.");
}

String SCRepeatAction::summary_default() {
	const String unit = times == 1 && times_variable.is_empty() ? "time" : "times";
	return vformat("Send %s %d %s, then %s", again_event, times, unit, done_event);
}

void SCSequenceAction::describe(KindTable<Self> &kind) {
	kind.about("loop", "sequence", "Send a different event each time this state is reached, working down a list in order.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::events>("events", "The events sent, one per visit, in this order.");
	kind.setting<&Self::loop>("loop", "Go back to the first event after the last one. Off, it stops at the last.");
	kind.setting<&Self::done_event>("done_event", "Sent once the list is used up, when Loop is off.").unless<&Self::loop>();
	kind.setting<&Self::progress_variable>("progress_variable",
				"Where the count of how far down the list it is is kept, so it survives leaving and coming back. Two Sequence actions in one machine need "
				"different names here.")
			.optional();
	kind.warns<&Self::warn_no_events>("_warn_no_events", "m", "index");
}

String SCSequenceAction::summary_default() {
	if (events.is_empty()) {
		return "Send the next event of an empty list";
	}
	const String each = words::listed(events);
	return loop ? vformat("Send the next of %s, round and round", each) : vformat("Send the next of %s, then %s", each, done_event);
}

void SCSequenceAction::warn_no_events(SCMachineBase *machine, int) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, this, 0,
				vformat("Sequence on %s has no events in its list, so it sent nothing. Add them beside Events, in the order they are sent.",
						machine->name_in_messages()));
	}
}
