// The compiled runtime of Check.

#include "action/add_kind.hpp"
#include "action/shared_verbs.hpp"
#include "fast_lane/lane_offer.hpp"
#include "fast_lane/sc_fast_lane.hpp"
#include "kinds/logic/check.hpp"
#include "machine/names.hpp"

#include <utility>

namespace {

// A Variant, as a script may have put anything there; nil before the first answer.
Variant last_answer(const Dictionary &slot) {
	return slot.get(MachineNames::shared().check_last, Variant());
}

class Check : public SCNativeAction {
	using Kind = SCCheckAction;

	static bool repeats(const SCMachineAction *action) { return action->run_mode == SCMachineAction::EVERY_FRAME; }

	static Ref<SCMachineCondition> condition_of(const SCMachineAction *action) { return setting_of<&Kind::condition>(action); }

	static bool must_wait(SCMachineBase *machine, const Ref<SCMachineCondition> &condition, int index) {
		return condition.is_valid() && condition->wait_for_actions && !machine->actions_done_except(index);
	}

	static void ask(SCMachineBase *machine, SCMachineAction *action, int index, bool repeating, const StillHere &here) {
		const Ref<SCMachineCondition> condition = condition_of(action);
		if (condition.is_null()) {
			verbs::say<&Kind::warn_no_question>(action, machine, index);
			return;
		}
		if (must_wait(machine, condition, index)) {
			return;
		}
		// A condition may run a game's code, and another machine may read its own values into these settings.
		const StringName store_in = setting_of<&Kind::store_in>(action);
		const StringName true_event = setting_of<&Kind::true_event>(action);
		const StringName false_event = setting_of<&Kind::false_event>(action);
		const bool only_changes = setting_of<&Kind::only_when_it_changes>(action);
		if (store_in.is_empty() && true_event.is_empty() && false_event.is_empty()) {
			verbs::warn(machine, action, "nothing is done with the answer. Type an event under True Event or False Event, or pick a variable under Store In.");
		}
		Dictionary slot = machine->slot(index);
		const bool answer = machine->ask(condition.ptr(), index, slot);
		if (here && !store_in.is_empty()) {
			machine->set_value(store_in, answer);
		}
		if (!here) {
			return;
		}
		const Variant last = last_answer(slot);
		if (only_changes && repeating && last.get_type() == Variant::BOOL && bool(last) == answer) {
			return;
		}
		slot[MachineNames::shared().check_last] = answer;
		verbs::send(machine, answer ? true_event : false_event);
	}

	// While the answer is no, what may turn it is waited for.
	static void rest_on_signals(SCMachineBase *machine, SCMachineAction *action, int index, const StillHere &here) {
		const Ref<SCMachineCondition> condition = here ? condition_of(action) : Ref<SCMachineCondition>();
		if (condition.is_null() || condition->wait_for_actions || !setting_of<&Kind::only_when_it_changes>(action)) {
			return;
		}
		const Dictionary slot = machine->slot(index);
		const Variant last = last_answer(slot);
		if (last.get_type() != Variant::BOOL || bool(last)) {
			return;
		}
		const Array wakers = condition->rest_signals(machine, slot);
		if (here && !wakers.is_empty()) {
			machine->rest_until(index, wakers);
		}
	}

	// What the lane cannot do: keep the answer, wait for other actions, ask now and then, read variables.
	static bool is_for_the_lane(const SCMachineAction *action, const SCMachineCondition *condition) {
		if (condition->wait_for_actions || !condition->from_variables.is_empty() || action->update_interval > 0.0 || action->reads_variables()) {
			return false;
		}
		return setting_of<&Kind::only_when_it_changes>(action) && setting_of<&Kind::store_in>(action).is_empty();
	}

	// What the lane can measure is asked for many machines in one loop.
	static void rest_in_fast_lane(SCMachineBase *machine, SCMachineAction *action, int index, const StillHere &here) {
		const Ref<SCMachineCondition> condition = here ? condition_of(action) : Ref<SCMachineCondition>();
		LaneDistance asked;
		if (condition.is_null() || !is_for_the_lane(action, condition.ptr()) || !LaneOffer::fill(machine, condition.ptr(), asked)) {
			return;
		}
		SCFastLane *lane = SCFastLane::lane_for(machine);
		if (lane == nullptr || !here) {
			return;
		}
		const Dictionary slot = machine->slot(index);
		const Variant last = last_answer(slot);
		StringName if_near = setting_of<&Kind::true_event>(action);
		StringName if_far = setting_of<&Kind::false_event>(action);
		int32_t was_near = last.get_type() == Variant::BOOL ? int32_t(bool(last)) : -1;
		// The lane measures and knows nothing of turned answers.
		if (condition->invert) {
			std::swap(if_near, if_far);
			was_near = was_near < 0 ? was_near : 1 - was_near;
		}
		const int32_t job = lane->add_distance_check(
				action->wants_physics(), machine, asked.body, asked.group, asked.to_node, asked.distance, asked.ignore_height, if_near, if_far, was_near);
		if (job != SCFastLane::NO_JOB) {
			lane->keep_answer_in(job, slot, condition->invert);
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

const AddKinds added = {
	add_kind<SCCheckAction, Check>(),
};

} // namespace
