// The compiled runtime of Check, and the questions about variables.

#include "action/add_kind.hpp"
#include "action/comparing.hpp"
#include "action/native_names.hpp"
#include "action/conditions.hpp"
#include "fast_lane/sc_fast_lane.hpp"
#include "kinds/conditions/space.hpp"
#include "kinds/conditions/values.hpp"
#include "kinds/logic/check.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>

#include <utility>

namespace {

struct Names {
	StringName check_last = "check_last";
	StringName warn_no_question = "_warn_no_question";
};

const Names &names() {
	return NativeNames::of<Names>();
}

bool is_in_a_world(const Node *node) {
	return Object::cast_to<Node2D>(node) != nullptr || Object::cast_to<Node3D>(node) != nullptr;
}

class Check : public SCNativeAction {
	static bool repeats(const SCMachineAction *action) {
		return action->run_mode == SCMachineAction::EVERY_FRAME;
	}

	static Ref<SCMachineCondition> condition_of(const SCMachineAction *action) {
		return setting_of<&SCCheckAction::condition>(action);
	}

	static bool must_wait(SCMachineBase *machine, const Ref<SCMachineCondition> &condition, int index) {
		return condition.is_valid() && condition->wait_for_actions && !machine->actions_done_except(index);
	}

	static void ask(SCMachineBase *machine, SCMachineAction *action, int index, bool repeating, const StillHere &here) {
		// 1. and 2.
		const Ref<SCMachineCondition> condition = condition_of(action);
		if (condition.is_null()) {
			action->call(names().warn_no_question, machine, index);
			return;
		}
		if (must_wait(machine, condition, index)) {
			return;
		}
		// 3. A question may run a game's code, and another machine may read its own values into these settings.
		const StringName store_in = setting_of<&SCCheckAction::store_in>(action);
		const StringName true_event = setting_of<&SCCheckAction::true_event>(action);
		const StringName false_event = setting_of<&SCCheckAction::false_event>(action);
		const bool only_changes = setting_of<&SCCheckAction::only_when_it_changes>(action);
		Dictionary slot = machine->slot(index);
		const bool answer = machine->ask(condition.ptr(), index, slot);
		// 4.
		if (here && !store_in.is_empty()) {
			machine->set_value(store_in, answer);
		}
		if (!here) {
			return;
		}
		// 5.
		const Variant last = slot.get(names().check_last, Variant());
		if (only_changes && repeating && last.get_type() == Variant::BOOL && bool(last) == answer) {
			return;
		}
		slot[names().check_last] = answer;
		// 6.
		verbs::send(machine, answer ? true_event : false_event);
	}

	// While the answer is no, what may turn it is waited for.
	static void rest_on_signals(SCMachineBase *machine, SCMachineAction *action, int index, const StillHere &here) {
		const Ref<SCMachineCondition> condition = here ? condition_of(action) : Ref<SCMachineCondition>();
		if (condition.is_null() || condition->wait_for_actions || !setting_of<&SCCheckAction::only_when_it_changes>(action)) {
			return;
		}
		const Dictionary slot = machine->slot(index);
		const Variant last = slot.get(names().check_last, Variant());
		if (last.get_type() != Variant::BOOL || bool(last)) {
			return;
		}
		const Array wakers = condition->rest_signals(machine, slot);
		if (here && !wakers.is_empty()) {
			machine->rest_until(index, wakers);
		}
	}

	// What the lane cannot do: keep the answer, wait for other actions, ask now and then, read variables.
	static bool is_for_the_lane(const SCMachineAction *action, const SCDistanceCondition *condition) {
		if (condition->wait_for_actions || !condition->from_variables.is_empty() || !condition->store_in.is_empty()) {
			return false;
		}
		return setting_of<&SCCheckAction::only_when_it_changes>(action) && setting_of<&SCCheckAction::store_in>(action).is_empty() && action->update_interval <= 0.0 && !action->reads_variables();
	}

	// A plain question about a distance is asked for many machines in one loop.
	static void rest_in_fast_lane(SCMachineBase *machine, SCMachineAction *action, int index, const StillHere &here) {
		const Ref<SCMachineCondition> asked = here ? condition_of(action) : Ref<SCMachineCondition>();
		// A script of a game's own may ask it in another way.
		const bool is_plain = asked.is_valid() && asked->class_row() == KindOf<SCDistanceCondition>::row && SCNativeActions::of_condition(asked.ptr()) != nullptr;
		const SCDistanceCondition *condition = is_plain ? Object::cast_to<SCDistanceCondition>(asked.ptr()) : nullptr;
		if (condition == nullptr || !is_for_the_lane(action, condition)) {
			return;
		}
		Node *body = machine->target_node();
		const bool to_one_node = !condition->to_node_path.is_empty();
		Node *to_node = to_one_node ? values::node_of(machine, condition->to_node_path) : nullptr;
		if (!is_in_a_world(body) || (to_one_node ? !is_in_a_world(to_node) : condition->group.is_empty())) {
			return;
		}
		SCFastLane *lane = SCFastLane::lane_for(machine);
		if (lane == nullptr || !here) {
			return;
		}
		const Variant last = machine->slot(index).get(names().check_last, Variant());
		StringName if_near = setting_of<&SCCheckAction::true_event>(action);
		StringName if_far = setting_of<&SCCheckAction::false_event>(action);
		int32_t was_near = last.get_type() == Variant::BOOL ? int32_t(bool(last)) : -1;
		// The lane measures and knows nothing of turned questions.
		if (condition->invert) {
			std::swap(if_near, if_far);
			was_near = was_near < 0 ? was_near : 1 - was_near;
		}
		const int32_t job = lane->add_distance_check(action->wants_physics(), machine, body, condition->group, to_node, condition->distance, condition->ignore_height, if_near, if_far, was_near);
		if (job != SCFastLane::NO_JOB) {
			machine->rest_in_lane(index, lane, job);
		}
	}

	static void ask_once(SCMachineBase *machine, SCMachineAction *action, int index) {
		if (must_wait(machine, condition_of(action), index)) {
			return;
		}
		const StillHere here(machine);
		ask(machine, action, index, false, here);
		if (here) {
			machine->finish(index);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		if (!repeats(action)) {
			ask_once(machine, action, index);
			return;
		}
		const StillHere here(machine);
		const Ref<SCMachineCondition> condition = condition_of(action);
		ask(machine, action, index, true, here);
		if (condition.is_valid() && condition->can_rest) {
			rest_on_signals(machine, action, index, here);
		} else {
			rest_in_fast_lane(machine, action, index, here);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		if (repeats(action)) {
			const StillHere here(machine);
			ask(machine, action, index, true, here);
			const Ref<SCMachineCondition> condition = here ? condition_of(action) : Ref<SCMachineCondition>();
			if (condition.is_valid() && condition->can_rest) {
				rest_on_signals(machine, action, index, here);
			}
		} else if (!machine->is_finished(index)) {
			ask_once(machine, action, index);
		}
	}
};

bool ask_variable(SCMachineBase *machine, SCMachineCondition *condition) {
	const StringName variable = setting_of<&SCVariableCondition::variable_name>(condition);
	if (!conditions::has_variable(machine, condition, variable)) {
		return false;
	}
	return comparing::passes(machine->get_value(variable), comparing::Test(setting_of<&SCVariableCondition::test>(condition)), setting_of<&SCVariableCondition::value>(condition));
}

bool ask_compare(SCMachineBase *, SCMachineCondition *condition) {
	const double first = setting_of<&SCCompareCondition::first>(condition);
	const double second = setting_of<&SCCompareCondition::second>(condition);
	return comparing::passes(first, comparing::Test(setting_of<&SCCompareCondition::test>(condition)), second);
}

const AddKinds added = {
	add_kind<SCCheckAction, Check>(),
	add_condition<SCVariableCondition, &ask_variable>(),
	add_condition<SCCompareCondition, &ask_compare>(),
};

} // namespace
