// The compiled condition In Range.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "action/places.hpp"
#include "kinds/conditions/in_range.hpp"
#include "machine/machine_run.hpp"
#include "steering/dealing.hpp"

#include <godot_cpp/core/math.hpp>

namespace {

using Kind = SCInRangeCondition;

bool is_in_range(SCMachineBase *machine, SCMachineCondition *condition) {
	const ClassRow *row = condition->class_row();
	if (row == nullptr || !row->is_or_extends(KindOf<Kind>::row)) {
		return false;
	}
	Node *body = machine != nullptr ? conditions::node<&Kind::body_path>(machine, condition) : nullptr;
	Node *subject = body != nullptr ? dealing::with(machine, static_cast<Kind *>(condition), machine->run().action_asking(), body) : nullptr;
	if (subject == nullptr) {
		return false;
	}
	// Endless for what has no place.
	const double distance = places::distance_between(body, subject);
	if (!Math::is_finite(distance)) {
		return false;
	}
	const double most = values::number_of(machine, setting_of<&Kind::closer_than>(condition), setting_of<&Kind::closer_than_variable>(condition));
	const double least = setting_of<&Kind::but_further_than>(condition);
	verbs::keep_if_named<&Kind::store_distance_in>(machine, condition, distance);
	return (most == 0.0 || distance <= most) && (least == 0.0 || distance >= least);
}

const AddKinds added = {
	add_condition<SCInRangeCondition, &is_in_range>(),
};

} // namespace
