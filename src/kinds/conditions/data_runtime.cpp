// The compiled condition about a field of a record.

#include "action/add_kind.hpp"
#include "action/comparing.hpp"
#include "action/conditions.hpp"
#include "kinds/conditions/data.hpp"
#include "machine/native_names.hpp"

namespace {

using Kind = SCDataCondition;

struct DataNames {
	// In the slot: the value that was looked at for whether the field can hold it.
	StringName looked_at = "looked_at";
};

void warn(SCMachineBase *machine, SCMachineCondition *condition, const String &why) {
	condition->call(*WarningOf<&Kind::warn_data>::name, machine, why);
}

// A value that the field can never hold is told of, such as a choice that is misspelled.
void look_at_value(SCMachineBase *machine, SCMachineCondition *condition, const Ref<Resource> &record, const StringName &field, const Variant &value) {
	const StringName &looked_at = NativeNames::of<DataNames>().looked_at;
	Dictionary slot = machine->condition_slot();
	if (slot.has(looked_at) && values::same_value(slot[looked_at], value)) {
		return;
	}
	slot[looked_at] = value;
	const StillHere here(machine);
	const String refused = records::refusal(record, field, value);
	if (here && !refused.is_empty()) {
		verbs::warn(machine, condition, vformat("%s is compared with what it never holds: %s. Change the value.", field, refused));
	}
}

bool compare(const Ref<Resource> &record, const StringName &field, const Variant &held, comparing::Test test, const Variant &value) {
	if (test >= comparing::GREATER && test <= comparing::LESS_OR_EQUAL) {
		const int64_t place = records::place_among_choices(record, field, held);
		const int64_t other = place >= 0 ? records::place_among_choices(record, field, value) : -1;
		if (other >= 0) {
			return comparing::passes(place, test, other);
		}
	}
	return comparing::passes(held, test, value);
}

bool is_such_field(SCMachineBase *machine, SCMachineCondition *condition) {
	if (machine == nullptr) {
		return false;
	}
	const StringName field = setting_of<&Kind::field>(condition);
	const auto test = comparing::Test(setting_of<&Kind::test>(condition));
	const Variant value = setting_of<&Kind::value>(condition);
	const StillHere here(machine);
	const records::Meant meant = records::meant<Kind>(machine, condition);
	if (!here) {
		return false;
	}
	if (!meant || field.is_empty()) {
		warn(machine, condition, meant ? String("no field is picked. Pick one under Field") : meant.missing);
		return false;
	}
	const String missing = records::missing_field(meant.record, field);
	if (!missing.is_empty()) {
		if (here) {
			warn(machine, condition, missing);
		}
		return false;
	}
	const Variant held = here ? records::get_field(meant.record, field) : Variant();
	if (here && test >= comparing::EQUALS && test <= comparing::LESS_OR_EQUAL) {
		look_at_value(machine, condition, meant.record, field, value);
	}
	return here && compare(meant.record, field, held, test, value);
}

const AddKinds added = {
	add_condition<SCDataCondition, &is_such_field>(),
};

} // namespace
