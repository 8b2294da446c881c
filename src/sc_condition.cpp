#include "sc_condition.hpp"

#include "machine/machine_run.hpp"
#include "sc_machine.hpp"

#include <godot_cpp/core/object.hpp>

bool SCMachineCondition::check(SCMachineBase *machine, int slot) {
	bool answer = false;
	if (GDVIRTUAL_CALL(_check, Object::cast_to<SCMachine>(machine), slot, answer)) {
		return answer;
	}
	return check_default(machine, slot);
}

bool SCMachineCondition::check_default(SCMachineBase *machine, int slot) {
	(void)machine;
	(void)slot;
	return false;
}

bool SCMachineCondition::evaluate(SCMachineBase *machine, int slot) {
	read_variables(machine);
	return check(machine, slot) != invert;
}

void SCMachineCondition::read_variables(SCMachineBase *machine) {
	(void)machine;
}

void SCMachineCondition::_bind_methods() {
	ClassTable<SCMachineCondition> table("A yes or no question, asked by a Check action in a state.");
	table.setting<&SCMachineCondition::invert>("invert", "Ask the question the other way round, so yes becomes no and no becomes yes.");
	table.setting<&SCMachineCondition::wait_for_actions>("wait_for_actions", "Only ask once every action in the state has finished.");
	table.setting<&SCMachineCondition::can_rest>("can_rest", hint::NEITHER_STORED_NOR_SHOWN, "True for a question that can answer [method rest_signals] at all, so a Check asking any other every frame does not ask it that too, every frame.");
	table.setting<&SCMachineCondition::display_name>("display_name", "Name shown on the row. Empty uses the condition's type.");
	table.setting<&SCMachineCondition::from_variables>("from_variables", { PROPERTY_HINT_DICTIONARY_TYPE, "StringName;StringName", PROPERTY_USAGE_STORAGE }, "Which settings are read from a variable of the machine, and from which: setting name to variable name.");
	ClassDB::bind_method(D_METHOD("check", "m", "slot"), &SCMachineCondition::check);
	ClassDB::bind_method(D_METHOD("check_default", "m", "slot"), &SCMachineCondition::check_default);
	ClassDB::bind_method(D_METHOD("evaluate", "m", "slot"), &SCMachineCondition::evaluate);
	ClassDB::bind_method(D_METHOD("read_variables", "m"), &SCMachineCondition::read_variables);
	GDVIRTUAL_BIND(_check, "m", "slot");
}
