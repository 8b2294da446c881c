// The compiled condition about being in the water.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "action/spaces.hpp"
#include "kinds/conditions/in_water.hpp"
#include "space/water.hpp"

namespace {

using Kind = SCInWaterCondition;

bool is_in_water(SCMachineBase *machine, SCMachineCondition *condition) {
	const Node *someone = conditions::node<&Kind::node_path>(machine, condition);
	if (someone == nullptr) {
		return false;
	}
	if (!places::has_a_place(someone)) {
		verbs::warn(machine, condition,
				vformat("%s, so the answer is no.", places::no_place_words(someone, verbs::setting_in_inspector(verbs::name_of<&Kind::node_path>()))));
		return false;
	}
	const double depth = water::depth_or_warn<&Kind::water_path>(machine, condition, someone, "so the answer is no");
	return depth > 0.0 && depth >= setting_of<&Kind::how_deep>(condition);
}

const AddKinds added = {
	add_condition<SCInWaterCondition, &is_in_water>(),
};

} // namespace

bool SCInWaterCondition::check_default(SCMachineBase *machine, const Dictionary &) {
	return machine != nullptr && is_in_water(machine, this);
}
