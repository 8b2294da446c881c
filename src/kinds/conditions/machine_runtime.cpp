// Compiled conditions about machines, time, change and chance.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "action/machines.hpp"
#include "design/sc_machine_state.hpp"
#include "kinds/conditions/machine.hpp"
#include "machine/native_names.hpp"
#include "machine/value_kinds.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

struct Remembered {
	StringName rolled = "rolled";
	StringName extra = "extra";
	StringName seen = "seen";
	StringName seen_object = "seen_object";
};

const Remembered &remembered() {
	return NativeNames::of<Remembered>();
}

bool roll(double chance) {
	// The dice can come up with exactly 1.
	return chance >= 100.0 || UtilityFunctions::randf() * 100.0 < chance;
}

bool is_lucky(SCMachineBase *machine, SCMachineCondition *condition) {
	const double chance = setting_of<&SCChanceCondition::chance>(condition);
	if (!setting_of<&SCChanceCondition::once_per_visit>(condition)) {
		return roll(chance);
	}
	Dictionary slot = machine->condition_slot();
	const StringName &rolled = remembered().rolled;
	if (!slot.has(rolled)) {
		slot[rolled] = roll(chance);
	}
	return slot[rolled];
}

// The state is found among those that are entered, whether or not the design has it by now.
bool has_entered(MachineRun &run, const StringName &state) {
	for (const RunRow *row : run.live_rows()) {
		if ((row->plan != nullptr ? row->plan->name : machines::name_of_state(row->state)) == state) {
			return true;
		}
	}
	return false;
}

bool is_in_state(SCMachineBase *machine, SCMachineCondition *condition) {
	const StringName state = setting_of<&SCInStateCondition::state_name>(condition);
	if (state.is_empty()) {
		verbs::warn(machine, condition, "no state is picked, so the answer is no. Type the state's name under State Name.");
		return false;
	}
	SCMachineBase *asked = machine;
	const NodePath path = setting_of<&SCInStateCondition::machine_path>(condition);
	if (!path.is_empty()) {
		const Node *node = conditions::node<&SCInStateCondition::machine_path>(machine, condition);
		if (node == nullptr) {
			return false;
		}
		asked = machines::at(machine, path);
		if (asked == nullptr) {
			verbs::warn(machine, condition,
					vformat("%s has no Machine, so the answer is no. Pick a Machine, or a node that has one, under Machine Path.", node->get_name()));
			return false;
		}
	}
	if (has_entered(asked->run(), state)) {
		return true;
	}
	if (asked->is_running() && asked->find_state(state).is_null()) {
		verbs::warn(machine, condition,
				vformat("%s has no state called %s, so the answer is no. Check the name under State Name.", asked->name_in_messages(), state));
	}
	return false;
}

bool has_sub_states(const Ref<Resource> &state) {
	const SCMachineState *compiled = Object::cast_to<SCMachineState>(state.ptr());
	// One made by a script may keep them where it likes.
	return state.is_valid() && (compiled == nullptr || !compiled->sub_states.is_empty() || !compiled->parallel_states.is_empty());
}

bool is_work_inside_done(SCMachineBase *machine, SCMachineCondition *condition) {
	const Ref<Resource> state = machine->running_state();
	if (state.is_valid() && !has_sub_states(state)) {
		verbs::warn(machine, condition,
				vformat("%s has no sub-states, so there is no work inside it to finish and the answer is no. Ask this in the state that holds the sub-states.",
						machines::name_of_state(state)));
		return false;
	}
	if (!machine->sub_state_finished()) {
		return false;
	}
	return !setting_of<&SCSubStateFinishedCondition::require_own_actions>(condition) || machine->actions_done_except(machine->run().action_asking());
}

bool is_time_up(SCMachineBase *machine, SCMachineCondition *condition) {
	double seconds = setting_of<&SCTimeoutCondition::seconds>(condition);
	const double random_extra = setting_of<&SCTimeoutCondition::random_extra>(condition);
	if (random_extra > 0.0) {
		Dictionary slot = machine->condition_slot();
		const StringName &extra = remembered().extra;
		if (!slot.has(extra)) {
			slot[extra] = UtilityFunctions::randf();
		}
		seconds += double(slot[extra]) * random_extra;
	}
	// Game time is a sum of many small steps, so half a second may come out a hair short.
	return machine->state_time() + CMP_EPSILON >= seconds;
}

// A node is remembered by its number: it may be freed meanwhile, and must not be kept alive.
bool has_changed(SCMachineBase *machine, SCMachineCondition *condition) {
	Variant held;
	if (!conditions::read<&SCVariableChangedCondition::variable_name>(machine, condition, held)) {
		return false;
	}
	Object *object = held.get_type() == Variant::OBJECT ? held.get_validated_object() : nullptr;
	const int64_t object_id = object != nullptr ? int64_t(object->get_instance_id()) : 0;
	const Variant value = held.get_type() == Variant::OBJECT ? Variant() : held;

	const Remembered &names = remembered();
	Dictionary slot = machine->condition_slot();
	const bool watched = slot.has(names.seen);
	const bool same = watched && ValueKinds::is_same(slot[names.seen], value) && int64_t(slot[names.seen_object]) == object_id;
	if (!same) {
		// A list is copied, or its later self would be compared with itself.
		slot[names.seen] = value.duplicate(true);
		slot[names.seen_object] = object_id;
	}
	return watched && !same;
}

const AddKinds added = {
	add_condition<SCChanceCondition, &is_lucky>(),
	add_condition<SCInStateCondition, &is_in_state>(),
	add_condition<SCSubStateFinishedCondition, &is_work_inside_done>(),
	add_condition<SCTimeoutCondition, &is_time_up>(),
	add_condition<SCVariableChangedCondition, &has_changed>(),
};

} // namespace
