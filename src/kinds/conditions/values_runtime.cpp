// Compiled conditions about what variables hold.

#include "action/add_kind.hpp"
#include "action/comparing.hpp"
#include "action/conditions.hpp"
#include "kinds/conditions/values.hpp"

namespace {

bool is_such_variable(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCVariableCondition;
	Variant held;
	if (!conditions::read<&Kind::variable_name>(machine, condition, held)) {
		return false;
	}
	return comparing::passes(held, comparing::Test(setting_of<&Kind::test>(condition)), setting_of<&Kind::value>(condition));
}

bool compare(SCMachineBase *, SCMachineCondition *condition) {
	using Kind = SCCompareCondition;
	return comparing::passes(setting_of<&Kind::first>(condition), comparing::Test(setting_of<&Kind::test>(condition)), setting_of<&Kind::second>(condition));
}

const AddKinds added = {
	add_condition<SCVariableCondition, &is_such_variable>(),
	add_condition<SCCompareCondition, &compare>(),
};

} // namespace
