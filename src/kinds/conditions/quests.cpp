#include "kinds/conditions/quests.hpp"

#include "action/shared_verbs.hpp"
#include "inventory/quest_book.hpp"
#include "machine/native_names.hpp"

namespace {

constexpr Hint STATUS = { PROPERTY_HINT_ENUM, "Not Started:0,Active:1,Done:2,Failed:3,Abandoned:4" };
constexpr Hint STEP = { PROPERTY_HINT_RANGE, "0,100,1,or_greater,hide_slider" };

struct Names {
	StringName step = "step";
};

String name_of(SCMachineBase *machine) {
	return machine != nullptr ? machine->name_in_messages() : String("a machine");
}

String status_in_line(int64_t status) {
	switch (status) {
		case quest_book::NOT_STARTED:
			return "has not been started";
		case quest_book::DONE:
			return "is done";
		case quest_book::FAILED:
			return "has failed";
		case quest_book::ABANDONED:
			return "was abandoned";
		default:
			return "is active";
	}
}

// Commas and colons mean something in a list of the inspector's.
String as_choice(const String &text) {
	return text.replace(",", ";").replace(":", " -").replace("\n", " ");
}

String list_of_steps(const Ref<Resource> &quest) {
	if (quest.is_null()) {
		return "Pick a quest first:0";
	}
	PackedStringArray choices;
	for (int64_t i = 0; i < quest_book::step_count(quest); i++) {
		choices.push_back(vformat("%d. %s:%d", i + 1, as_choice(quest_book::step_says(quest, i)), i));
	}
	return choices.is_empty() ? String("The quest has no steps:0") : String(",").join(choices);
}

} // namespace

void SCQuestIsCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "quest_is", "Where a quest has got, whether not started, active, done or failed.");
	kind.setting<&Self::quest>("quest", hint::QUEST, "The quest to ask about.");
	kind.setting<&Self::status>("status", STATUS, "The answer is yes while the quest has got there.");
	kind.warns<&Self::warn_quest_is>("_warn_quest_is", "m", "index");
}

String SCQuestIsCondition::summary_default() {
	return vformat("Quest %s %s", quest_book::in_line(quest), status_in_line(status));
}

void SCQuestIsCondition::warn_quest_is(SCMachineBase *machine, int64_t index) {
	MakerWarnings::once_for(machine, vformat("quest_is:%d", index),
			vformat("Quest Is on %s has no quest to ask about, so the answer is always no. Pick a quest under Quest.", name_of(machine)));
}

void SCQuestStepIsCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "quest_step_is", "Where one step of a quest has got, whether done, not done, or the one to do now.");
	kind.constants_of<StepStatus>();
	kind.setting<&Self::quest>("quest", hint::QUEST, "The quest to ask about.").relists();
	kind.setting<&Self::step>("step", STEP, "The step to ask about. In a variable or a script, the first step is 0.");
	kind.setting<&Self::status>("status",
			"Done is yes once the step is done. Not Done is yes before that, also while the quest has not begun. To Do Now is yes while the step counts: the "
			"quest is under way, the step is not done, and, where steps come in order, it is its turn.");
	kind.warns<&Self::warn_quest_step_is>("_warn_quest_step_is", "m", "index");
}

String SCQuestStepIsCondition::summary_default() {
	const String is = status == DONE ? "is done" : (status == NOT_DONE ? "is not done" : "is the one to do now");
	return vformat("Step %d of quest %s %s", step + 1, quest_book::in_line(quest), is);
}

void SCQuestStepIsCondition::warn_quest_step_is(SCMachineBase *machine, int64_t index) {
	const char *lacks =
			quest_book::is_quest(quest) ? "a step the quest does not have, so pick one under Step" : "no quest to ask about, so pick one under Quest";
	MakerWarnings::once_for(
			machine, vformat("quest_step_is:%d", index), vformat("Quest Step Is on %s has %s, so the answer is always no.", name_of(machine), lacks));
}

void SCQuestStepIsCondition::_validate_property(PropertyInfo &property) const {
	if (property.name == NativeNames::of<Names>().step) {
		property.hint = PROPERTY_HINT_ENUM;
		property.hint_string = list_of_steps(quest);
	}
}
