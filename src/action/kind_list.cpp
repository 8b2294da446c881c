#include "action/kind_list.hpp"

#include "action/sc_action.hpp"
#include "action/sc_condition.hpp"
#include "action/sc_native_actions.hpp"
#include "settings/class_rows.hpp"

namespace kind_list {

TypedArray<Dictionary> rows() {
	TypedArray<Dictionary> listed;
	for (const ClassRow *row : ClassRows::shared().in_order()) {
		if (row->script_path.is_empty()) {
			continue;
		}
		Dictionary kind;
		kind["class"] = row->class_name;
		kind["category"] = row->category;
		kind["word"] = row->word;
		kind["script"] = row->script_path;
		kind["about"] = row->about;
		listed.push_back(kind);
	}
	return listed;
}

bool has_runtime(Object *action_or_condition) {
	if (Object::cast_to<SCMachineCondition>(action_or_condition) != nullptr) {
		return SCNativeActions::of_condition(action_or_condition) != nullptr;
	}
	return Object::cast_to<SCMachineAction>(action_or_condition) != nullptr && SCNativeActions::of_action(action_or_condition) != nullptr;
}

} // namespace kind_list
