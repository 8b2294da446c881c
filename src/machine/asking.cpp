// How a condition is asked: the machine lends it the record it remembers by.

#include "action/sc_action.hpp"
#include "action/sc_condition.hpp"
#include "action/sc_native_actions.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine_base.hpp"

namespace {

// Puts the outer condition's record back, also when a condition asks another.
class Lent {
	Variant &record;
	int &index;
	Variant outer_record;
	int outer_index;

public:
	Lent(Variant &machine_record, int &machine_index) :
			record(machine_record), index(machine_index), outer_record(machine_record), outer_index(machine_index) {}
	~Lent() {
		record = outer_record;
		index = outer_index;
	}
	Lent(const Lent &) = delete;
	Lent &operator=(const Lent &) = delete;
};

} // namespace

Dictionary MachineRun::condition_slot() {
	if (condition_record.get_type() != Variant::DICTIONARY) {
		condition_record = condition_index >= 0 ? slot(condition_index) : Dictionary();
	}
	return condition_record;
}

bool MachineRun::ask(Object *condition, int action_index, const Variant &record) {
	if (condition == nullptr || node == nullptr) {
		return false;
	}
	Busy keep(*this);
	const Ref<RefCounted> held = Object::cast_to<RefCounted>(condition);
	Lent outer(condition_record, condition_index);
	condition_record = record.get_type() == Variant::DICTIONARY ? record : Variant(slot(action_index));
	condition_index = action_index;

	const MachineNames &names = MachineNames::shared();
	SCMachineCondition *compiled = Object::cast_to<SCMachineCondition>(condition);
	if (compiled != nullptr) {
		if (compiled->reads_variables()) {
			compiled->read_variables(node);
		}
	} else {
		const Variant named = condition->get(names.from_variables);
		if (named.get_type() == Variant::DICTIONARY && !Dictionary(named).is_empty() && condition->has_method(names.read_variables)) {
			condition->call(names.read_variables, node);
		}
	}
	if (node == nullptr) {
		return false;
	}

	bool answer = false;
	bool inverted = false;
	if (compiled != nullptr) {
		const NativeCondition native = SCNativeActions::of_condition(condition);
		answer = native != nullptr ? native(node, compiled) : compiled->check(node, condition_slot());
		inverted = compiled->invert;
	} else {
		if (condition->has_method(names.check)) {
			answer = condition->call(names.check, node, action_index).booleanize();
		}
		inverted = condition->get(names.invert).booleanize();
	}
	return answer != inverted;
}

bool MachineRun::ask_compiled(Object *condition, int action_index) {
	SCMachineCondition *compiled = Object::cast_to<SCMachineCondition>(condition);
	const NativeCondition native = compiled != nullptr ? SCNativeActions::of_condition(condition) : nullptr;
	if (native == nullptr || node == nullptr) {
		return false;
	}
	Busy keep(*this);
	Lent outer(condition_record, condition_index);
	if (condition_record.get_type() != Variant::DICTIONARY) {
		condition_record = action_index >= 0 ? Variant(slot(action_index)) : Variant(Dictionary());
		condition_index = action_index;
	}
	return native(node, compiled);
}
