#include "action/conditions.hpp"

#include "action/action_shared.hpp"

namespace conditions {

Node *node(SCMachineBase *machine, const SCMachineCondition *condition, const NodePath &path, const StringName &setting) {
	if (path != ActionShared::get().no_node) {
		return verbs::node_or_warn(machine, condition, path, setting);
	}
	const StringName variable = condition->from_variables.get(setting, StringName());
	verbs::warn(machine, condition,
			vformat("the variable %s holds no node, so the answer is no. Put a node into it, or pick one under %s.", variable,
					verbs::setting_in_inspector(setting)));
	return nullptr;
}

bool read(SCMachineBase *machine, const SCMachineCondition *condition, const StringName &variable, Variant &held) {
	if (variable.is_empty()) {
		verbs::warn(machine, condition, "no variable is picked, so the answer is no. Pick one under Variable Name.");
		return false;
	}
	if (!machine->has_value(variable)) {
		verbs::warn(machine, condition,
				vformat("there is no variable called %s, so the answer is no. Add it under Variables, or pick another under Variable Name.", variable));
		return false;
	}
	held = machine->get_value(variable);
	return true;
}

} // namespace conditions
