#include "kinds/logic/check.hpp"

#include "action/action_shared.hpp"
#include "action/shared_verbs.hpp"
#include "action/summary_line.hpp"

namespace {

void add_each_once(PackedStringArray &names, const PackedStringArray &more) {
	for (int64_t i = 0; i < more.size(); i++) {
		if (!names.has(more[i])) {
			names.push_back(more[i]);
		}
	}
}

// Its own, and those that its settings are read from.
PackedStringArray variables_behind(SCMachineCondition &condition) {
	PackedStringArray names = condition.variables_read();
	add_each_once(names, PackedStringArray(condition.from_variables.values()));
	return names;
}

} // namespace

void SCCheckAction::describe(KindTable<Self> &kind) {
	kind.about("logic", "check", "Ask one of QuillStead's questions here in the state instead of on a transition, and do something with the answer.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::condition>("condition", "The question to ask.");
	kind.setting<&Self::true_event>("true_event", "The event sent when the answer is yes. Empty sends nothing.").optional();
	kind.setting<&Self::false_event>("false_event", "The event sent when the answer is no. Empty sends nothing.").optional();
	kind.setting<&Self::store_in>("store_in", "The variable the answer goes into, as true or false.").optional();
	kind.setting<&Self::only_when_it_changes>("only_when_it_changes", "While this is asked every frame, send an event only when the answer changes.");
	kind.warns<&Self::warn_no_question>("_warn_no_question", "m", "index");
}

String SCCheckAction::summary_default() {
	const String asked = condition.is_valid() ? summary_line::shown_line(condition.ptr()) : ActionShared::get().not_picked;
	String does;
	if (!true_event.is_empty()) {
		does += vformat(", yes sends %s", true_event);
	}
	if (!false_event.is_empty()) {
		does += vformat(", no sends %s", false_event);
	}
	if (!store_in.is_empty()) {
		does += vformat(", answer kept in %s", store_in);
	}
	return vformat("Check: %s%s", asked, does);
}

bool SCCheckAction::wants_physics_default() {
	return condition.is_valid() && condition->wants_physics();
}

bool SCCheckAction::finishes_as_it_starts_default() {
	return SCMachineAction::finishes_as_it_starts_default() && (condition.is_null() || !condition->wait_for_actions);
}

bool SCCheckAction::waits_for_variables() const {
	return run_mode == EVERY_FRAME && only_when_it_changes && update_interval <= 0.0 && from_variables.is_empty() && condition.is_valid() &&
			!condition->wait_for_actions && condition->depends_only_on_variables();
}

PackedStringArray SCCheckAction::variables_to_watch_default() {
	return waits_for_variables() ? variables_behind(*condition.ptr()) : PackedStringArray();
}

PackedStringArray SCCheckAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	if (condition.is_valid()) {
		add_each_once(names, variables_behind(*condition.ptr()));
	}
	return names;
}

PackedStringArray SCCheckAction::variables_written_default() {
	PackedStringArray names = SCMachineAction::variables_written_default();
	if (condition.is_valid()) {
		add_each_once(names, condition->variables_written());
	}
	return names;
}

// A condition is put on the graph inside its Check, so it is suited with it.
void SCCheckAction::suit_2d_default() {
	SCMachineAction::suit_2d_default();
	if (condition.is_valid()) {
		places::suit_settings_2d(condition.ptr());
	}
}

void SCCheckAction::warn_no_question(SCMachineBase *machine, int) {
	verbs::warn(machine, this, "it has no question to ask, so it did nothing. Pick one under Condition.");
}
