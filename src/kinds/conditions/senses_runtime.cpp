// Compiled conditions about the Perception node.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "kinds/conditions/senses.hpp"
#include "machine/native_names.hpp"
#include "steering/senses.hpp"

namespace {

struct Remembered {
	StringName lost_at = "lost_at";
};

// Null without a Perception node, of which the game maker is told.
template <auto Path, auto Warning>
Node *perception_of(SCMachineBase *machine, SCMachineCondition *condition) {
	Node *body = machine != nullptr ? conditions::node<Path>(machine, condition) : nullptr;
	Node *perception = senses::of(body);
	if (body != nullptr && perception == nullptr) {
		condition->call(*WarningOf<Warning>::name, machine);
	}
	return perception;
}

bool can_see(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCCanSeeCondition;
	Node *perception = perception_of<&Kind::body_path, &Kind::warn_can_see>(machine, condition);
	if (!senses::can_see_target(perception)) {
		return false;
	}
	Node *target = senses::target_of(perception);
	const StringName group = setting_of<&Kind::group>(condition);
	if (!group.is_empty() && (target == nullptr || !target->is_in_group(group))) {
		return false;
	}
	verbs::keep_if_named<&Kind::store_seen_in>(machine, condition, target);
	return true;
}

// A Perception node that extends ours may have a mind of its own about what is lost. Then it is counted from when that is first
// heard of.
double since_first_asked(SCMachineBase *machine, bool is_lost) {
	const StringName &lost_at = NativeNames::of<Remembered>().lost_at;
	Dictionary slot = machine->condition_slot();
	if (!is_lost) {
		slot.erase(lost_at);
		return 0.0;
	}
	if (!slot.has(lost_at)) {
		slot[lost_at] = machine->state_time();
	}
	return machine->state_time() - double(slot[lost_at]);
}

bool is_target_lost(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCTargetLostCondition;
	Node *perception = perception_of<&Kind::body_path, &Kind::warn_target_lost>(machine, condition);
	if (perception == nullptr) {
		return false;
	}
	const StillHere here(machine);
	const bool is_lost = senses::has_lost_it(perception);
	if (!here) {
		return false;
	}
	const double asked = since_first_asked(machine, is_lost);
	if (!is_lost) {
		return false;
	}
	if (setting_of<&Kind::only_when_forgotten>(condition)) {
		return !senses::has_a_target(perception);
	}
	const double told = senses::out_of_sight_for(perception);
	return (told >= 0.0 ? told : asked) >= setting_of<&Kind::out_of_sight_for>(condition);
}

const AddKinds added = {
	add_condition<SCCanSeeCondition, &can_see>(),
	add_condition<SCTargetLostCondition, &is_target_lost>(),
};

} // namespace
