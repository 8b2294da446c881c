#include "inventory/quest_book.hpp"

#include "action/action_shared.hpp"
#include "action/words.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/scene_tree.hpp>

namespace quest_book {

namespace {

struct QuestNames {
	StringName quest_script = "quest";
	StringName title = "title";
	StringName steps = "steps";
	StringName says = "says";

	StringName script = "quests";
	StringName start = "start";
	StringName complete = "complete";
	StringName fail = "fail";
	StringName abandon = "abandon";
	StringName track = "track";
	StringName status_of = "status_of";
	StringName step_done = "step_done";
	StringName step_counts_now = "step_counts_now";
};

const QuestNames &names() {
	return NativeNames::of<QuestNames>();
}

Variant tree_of(SCMachineBase *machine) {
	return machine != nullptr && machine->is_inside_tree() ? Variant(machine->get_tree()) : Variant();
}

Array steps_of(const Ref<Resource> &quest) {
	const Variant steps = quest.is_valid() ? quest->get(names().steps) : Variant();
	return steps.get_type() == Variant::ARRAY ? Array(steps) : Array();
}

} // namespace

bool is_quest(const Ref<Resource> &quest) {
	return CompanionScripts::is_one(quest.ptr(), names().quest_script);
}

String title_of(const Ref<Resource> &quest) {
	const String title = quest.is_valid() ? String(quest->get(names().title)) : String();
	return title.is_empty() ? words::text_of(quest) : title;
}

String in_line(const Ref<Resource> &quest) {
	return quest.is_valid() ? title_of(quest) : ActionShared::get().not_picked;
}

String status_in_words(Status status) {
	switch (status) {
		case NOT_STARTED:
			break;
		case ACTIVE:
			return "under way";
		case DONE:
			return "done already";
		case FAILED:
			return "failed already";
		case ABANDONED:
			return "abandoned";
	}
	return "not started";
}

void start(SCMachineBase *machine, const Ref<Resource> &quest) {
	CompanionScripts::call(names().script, names().start, Array::make(quest, tree_of(machine)));
}

void complete(SCMachineBase *machine, const Ref<Resource> &quest) {
	CompanionScripts::call(names().script, names().complete, Array::make(quest, tree_of(machine)));
}

void fail(const Ref<Resource> &quest) {
	CompanionScripts::call(names().script, names().fail, Array::make(quest));
}

void abandon(const Ref<Resource> &quest) {
	CompanionScripts::call(names().script, names().abandon, Array::make(quest));
}

void track(const Ref<Resource> &quest, bool tracked) {
	CompanionScripts::call(names().script, names().track, Array::make(quest, tracked));
}

Status status_of(const Ref<Resource> &quest) {
	const Variant status = CompanionScripts::call(names().script, names().status_of, Array::make(quest));
	return status.get_type() == Variant::INT ? Status(int64_t(status)) : NOT_STARTED;
}

int64_t step_count(const Ref<Resource> &quest) {
	return steps_of(quest).size();
}

String step_says(const Ref<Resource> &quest, int64_t step) {
	const Array steps = steps_of(quest);
	const Object *held = step >= 0 && step < steps.size() ? steps[step].get_validated_object() : nullptr;
	return held != nullptr ? String(held->get(names().says)) : String();
}

bool step_done(const Ref<Resource> &quest, int64_t step) {
	return CompanionScripts::call(names().script, names().step_done, Array::make(quest, step)).booleanize();
}

bool step_counts_now(const Ref<Resource> &quest, int64_t step) {
	return CompanionScripts::call(names().script, names().step_counts_now, Array::make(quest, step)).booleanize();
}

} // namespace quest_book
