// Compiled conditions about what variables hold.

#include "action/add_kind.hpp"
#include "action/comparing.hpp"
#include "action/conditions.hpp"
#include "kinds/conditions/values.hpp"

namespace {

bool is_text(const Variant &value) {
	return value.get_type() == Variant::STRING || value.get_type() == Variant::STRING_NAME;
}

bool is_such_variable(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCVariableCondition;
	Variant held;
	if (!conditions::read<&Kind::variable_name>(machine, condition, held)) {
		return false;
	}
	const auto test = comparing::Test(setting_of<&Kind::test>(condition));
	const Variant value = setting_of<&Kind::value>(condition);
	if (test <= comparing::LESS_OR_EQUAL && (is_text(held) ? values::is_number(value) : values::is_number(held) && is_text(value))) {
		verbs::warn(machine, condition,
				vformat("%s holds %s and is compared with %s, which is never the same. Give Value the right kind of value, or pick another variable under "
						"Variable Name.",
						setting_of<&Kind::variable_name>(condition), values::kind_in_words(held), values::kind_in_words(value)));
	}
	return comparing::passes(held, test, value);
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
