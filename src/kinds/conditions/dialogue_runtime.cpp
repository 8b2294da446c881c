// The compiled condition Dialogue Line Said.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "kinds/conditions/dialogue.hpp"
#include "machine/native_names.hpp"

namespace {

using Kind = SCDialogueLineSaidCondition;

struct Names {
	StringName conversation = "conversation";
	StringName was_said = "was_said";
	StringName line = "line";
	// In the record: the dialogue and the line that were looked for in vain, so that a long one is not searched on every tick.
	StringName missing = "missing";
};

const Names &names() {
	return NativeNames::of<Names>();
}

bool lacks_the_line(SCMachineBase *machine, const Ref<Resource> &dialogue, const StringName &line) {
	Dictionary record = machine->condition_slot();
	const Array asked = Array::make(int64_t(dialogue->get_instance_id()), line);
	const Variant before = record.get(names().missing, Variant());
	if (before.get_type() == Variant::ARRAY && Array(before) == asked) {
		return true;
	}
	if (dialogue->has_method(names().line) && dialogue->call(names().line, line).get_validated_object() != nullptr) {
		return false;
	}
	record[names().missing] = asked;
	return true;
}

void warn(SCMachineBase *machine, SCMachineCondition *condition, Kind::Wrong what) {
	condition->call(*WarningOf<&Kind::warn_said>::name, machine, int64_t(condition->get_instance_id()), int64_t(what));
}

bool was_said(SCMachineBase *machine, SCMachineCondition *condition) {
	const Ref<Resource> dialogue = setting_of<&Kind::dialogue>(condition);
	const StringName line = setting_of<&Kind::line>(condition);
	if (dialogue.is_null()) {
		warn(machine, condition, Kind::NO_DIALOGUE);
		return false;
	}
	if (CompanionScripts::call(names().conversation, names().was_said, Array::make(dialogue, line)).booleanize()) {
		return true;
	}
	const StillHere here(machine);
	if (lacks_the_line(machine, dialogue, line) && here) {
		warn(machine, condition, Kind::NO_SUCH_LINE);
	}
	return false;
}

const AddKinds added = {
	add_condition<SCDialogueLineSaidCondition, &was_said>(),
};

} // namespace
