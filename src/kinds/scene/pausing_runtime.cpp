// The compiled runtime of Pause Game.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/scene/mouse_in_pause.hpp"
#include "kinds/scene/pausing.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

using Kind = SCPauseGameAction;

// Whether any state of the machine lets the game run again.
bool means_to_resume(const SCMachine *machine) {
	const TypedArray<SCMachineState> states = machine->all_states();
	for (int64_t i = 0; i < states.size(); i++) {
		const Ref<SCMachineState> state = states[i];
		const Array actions = state.is_valid() ? Array(state->actions) : Array();
		for (int64_t at = 0; at < actions.size(); at++) {
			const Kind *pausing = Object::cast_to<Kind>(actions[at]);
			if (pausing != nullptr && pausing->may_resume()) {
				return true;
			}
		}
	}
	return false;
}

// Whether it waits for more than events, which reach it all the same.
bool waits_for_its_turn(MachineRun &run) {
	bool waits = run.is_lane_on(LANE_FRAME) || run.is_lane_on(LANE_PHYSICS);
	for (const RunRow *row : run.live_rows()) {
		waits = waits || row->timers.size() > 0;
	}
	return waits;
}

// Once the states that the pause led to have been entered.
void tell_if_stuck(int64_t machine_id, int64_t action_id) {
	SCMachine *machine = Object::cast_to<SCMachine>(ObjectDB::get_instance(uint64_t(machine_id)));
	SCMachineAction *action = Object::cast_to<SCMachineAction>(ObjectDB::get_instance(uint64_t(action_id)));
	if (machine == nullptr || action == nullptr || !machine->is_inside_tree() || !machine->get_tree()->is_paused() || machine->can_process()) {
		return;
	}
	if (machine->is_running() && waits_for_its_turn(machine->run()) && means_to_resume(machine)) {
		verbs::warn(machine, action,
				vformat("the game stands still now, and so does %s, which is to let it run again, so it notices no key and no time. Set its Process Mode to "
						"Always.",
						machine->name_in_messages()));
	}
}

void pause(SCMachineBase *machine, SCMachineAction *action) {
	const StillHere here(machine);
	const StringName event = setting_of<&Kind::paused_event>(action);
	if (setting_of<&Kind::show_mouse>(action)) {
		mouse_in_pause::show();
	}
	callable_mp_static(&tell_if_stuck).call_deferred(int64_t(machine->get_instance_id()), int64_t(action->get_instance_id()));
	machine->get_tree()->set_pause(true);
	if (here) {
		verbs::send(machine, event);
	}
}

void resume(SCMachineBase *machine, SCMachineAction *action) {
	const StillHere here(machine);
	const StringName event = setting_of<&Kind::resumed_event>(action);
	mouse_in_pause::put_back();
	machine->get_tree()->set_pause(false);
	if (here) {
		verbs::send(machine, event);
	}
}

class PauseGame : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		if (!machine->is_inside_tree()) {
			verbs::warn(machine, action, "the machine is in no scene, so nothing is paused or resumed. Add its node to the scene first.");
			return;
		}
		const bool is_paused = machine->get_tree()->is_paused();
		const auto mode = checked::choice<&Kind::mode>(machine, action, Kind::RESUME);
		if (mode == Kind::PAUSE ? is_paused : mode == Kind::RESUME && !is_paused) {
			return;
		}
		if (is_paused) {
			resume(machine, action);
		} else {
			pause(machine, action);
		}
	}
};

const AddKinds added = {
	add_kind<SCPauseGameAction, PauseGame>(),
};

} // namespace
