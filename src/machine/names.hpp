#pragma once

// The names the runtime reads, calls and emits by, built once on first use and freed when the
// library is unloaded: no name is built on a tick.

#include <godot_cpp/variant/node_path.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

struct MachineNames {
	StringName finished_event = "FINISHED";

	// Members of design resources, for states that are not the compiled class.
	StringName state_name = "state_name";
	StringName actions = "actions";
	StringName transitions = "transitions";
	StringName sub_states = "sub_states";
	StringName parallel_states = "parallel_states";
	StringName states = "states";
	StringName pause_here = "pause_here";
	StringName is_end_state = "is_end_state";
	StringName inner_starts = "inner_starts";
	StringName inner_slot_of = "inner_slot_of";
	StringName event = "event";
	StringName to_state = "to_state";
	StringName store_data_in = "store_data_in";

	// Members of actions that are not the compiled class.
	StringName enter = "enter";
	StringName update = "update";
	StringName exit = "exit";
	StringName read_variables = "_read_variables";
	StringName wants_physics = "wants_physics";
	StringName needs_every_tick = "needs_every_tick";
	StringName works_after_finishing = "works_after_finishing";
	StringName variables_to_watch = "variables_to_watch";
	StringName disabled = "disabled";
	StringName wait_for_previous = "wait_for_previous";
	StringName update_interval = "update_interval";
	StringName from_variables = "from_variables";
	StringName live_words = "live_words";
	StringName check = "check";
	StringName invert = "invert";

	StringName check_last = "check_last";

	StringName physics_tick = "physics_tick";
	StringName debug_log = "debug_log";
	StringName values = "values";

	// Called on the machine itself, so that a script that extends it is asked.
	StringName start = "start";
	StringName all_states = "all_states";
	StringName connect_system_events = "_connect_system_events";
	StringName on_stopped = "_core_on_stopped";
	StringName report_values = "_report_values";
	StringName after_step = "_core_after_step";
	StringName store_event_data = "_core_store_event_data";
	StringName quest_heard = "_core_quest_heard";
	StringName send_changed_values = "_send_changed_values";
	StringName restart_timeouts = "_core_restart_timeouts";
	StringName send_event = "send_event";
	StringName take_event_deferred = "_core_take_event_deferred";
	StringName heard = "heard";

	StringName state_changed = "state_changed";
	StringName event_sent = "event_sent";
	StringName state_finished = "state_finished";
	StringName tween_finished = "finished";
	StringName tree_entered = "tree_entered";
	StringName process_frame = "process_frame";
	StringName physics_frame = "physics_frame";
	StringName tree_exiting = "tree_exiting";
	StringName timeout = "timeout";
	StringName property_list_changed = "property_list_changed";
	StringName add_child = "add_child";

	// Called on the fast lane when the state of a resting action is left.
	StringName drop_job = "remove";

	// Companion scripts that every start goes by, and what is called on them.
	StringName carry_over_script = "quillstead_carry_over";
	StringName is_waiting = "is_waiting";
	StringName claim = "claim";
	StringName take_in = "take_in";
	StringName start_timers = "start_timers";
	StringName system_events_script = "system_events";
	StringName is_system_event = "is_system_event";

	// Where a node's own machine is looked for first.
	NodePath machine_child = NodePath("Machine");
	StringName velocity = "velocity";
	StringName velocity_computed = "velocity_computed";
	StringName on_velocity_computed = "_on_velocity_computed";
	StringName move_and_slide = "move_and_slide";

	static const MachineNames &shared() { return made != nullptr ? *made : make(); }
	static void free_shared();

private:
	inline static const MachineNames *made = nullptr;
	static const MachineNames &make();
};
