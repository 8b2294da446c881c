// What scripts can call on a machine, by subject.

#include "action/sc_native_actions.hpp"
#include "character/body_notes.hpp"
#include "character/smoothing.hpp"
#include "design/sc_machine_state.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine_base.hpp"
#include "settings/object_arguments.hpp"

namespace {

void note_step(Node *body, int64_t frame) {
	if (body != nullptr) {
		body_notes::note_step(body, frame);
	}
}

} // namespace

void SCMachineBase::_bind_methods() {
	MachineNames::shared();
	bind_running();
	bind_events();
	bind_values();
	bind_timers();
	bind_moving();
	bind_debugging();
	BIND_ENUM_CONSTANT(NOTHING);
	BIND_ENUM_CONSTANT(STOP);
	BIND_ENUM_CONSTANT(START);
}

void SCMachineBase::bind_running() {
	ClassDB::bind_method(D_METHOD("stop"), &SCMachineBase::stop);
	ClassDB::bind_method(D_METHOD("is_running"), &SCMachineBase::is_running);
	ClassDB::bind_method(D_METHOD("get_current_state"), &SCMachineBase::get_current_state);
	ClassDB::bind_method(D_METHOD("set_current_state", "state"), &SCMachineBase::set_current_state);
	ClassDB::bind_method(D_METHOD("find_state", "state_name"), &SCMachineBase::find_state);
	ClassDB::bind_method(D_METHOD("active_chain"), &SCMachineBase::active_chain);
	ClassDB::bind_method(D_METHOD("active_states"), &SCMachineBase::active_states);
	ClassDB::bind_method(D_METHOD("is_in_state", "state"), &SCMachineBase::is_in_state);
	ClassDB::bind_method(D_METHOD("go_to_state", "state"), &SCMachineBase::go_to_state);
	ClassDB::bind_method(D_METHOD("restart_state", "state"), &SCMachineBase::restart_state);
	ClassDB::bind_method(D_METHOD("go_to", "state_name"), &SCMachineBase::go_to);
	ClassDB::bind_method(D_METHOD("running_state"), &SCMachineBase::running_state);
	ClassDB::bind_method(D_METHOD("still_here"), &SCMachineBase::still_here);
	ClassDB::bind_method(D_METHOD("live_rows"), &SCMachineBase::live_rows);
	ClassDB::bind_method(D_METHOD("slot", "index"), &SCMachineBase::slot);
	ClassDB::bind_method(D_METHOD("condition_slot"), &SCMachineBase::condition_slot);
	ClassDB::bind_method(D_METHOD("ask", "condition", "action_index", "record"), &SCMachineBase::ask, DEFVAL(Variant()));
	ClassDB::bind_method(D_METHOD("ask_compiled", "condition", "action_index"), &SCMachineBase::ask_compiled);
	ClassDB::bind_method(D_METHOD("progress_made", "walker", "most"), &SCMachineBase::progress_made);
	ClassDB::bind_method(D_METHOD("finish", "index"), &SCMachineBase::finish);
	ClassDB::bind_method(D_METHOD("finisher", "index"), &SCMachineBase::finisher);
	ClassDB::bind_method(D_METHOD("is_finished", "index"), &SCMachineBase::is_finished);
	ClassDB::bind_method(D_METHOD("actions_done"), &SCMachineBase::actions_done);
	ClassDB::bind_method(D_METHOD("actions_done_except", "index"), &SCMachineBase::actions_done_except);
	ClassDB::bind_method(D_METHOD("state_time"), &SCMachineBase::state_time);
	ClassDB::bind_method(D_METHOD("sub_state_finished"), &SCMachineBase::sub_state_finished);
	ClassDB::bind_method(D_METHOD("previous_state"), &SCMachineBase::previous_state);
	ClassDB::bind_method(D_METHOD("last_event"), &SCMachineBase::last_event);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("native_action", "what", "action", "machine", "index", "delta"),
			object_arguments::guarded<&SCNativeActions::call>("native_action"));
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("native_helper", "name", "arguments"), &SCNativeActions::call_helper);

	ClassDB::bind_method(D_METHOD("_core_begin", "design", "physics_tick", "debug_log", "loop_limit", "values"), &SCMachineBase::core_begin);
	ClassDB::bind_method(D_METHOD("_core_setting", "name", "value"), &SCMachineBase::core_setting);
	ClassDB::bind_method(D_METHOD("_core_want_start"), &SCMachineBase::core_want_start);
	ClassDB::bind_method(D_METHOD("_core_let_go"), &SCMachineBase::core_let_go);
	ClassDB::bind_method(D_METHOD("_core_resume", "leaves"), &SCMachineBase::core_resume);
	ClassDB::bind_method(D_METHOD("_core_resume_now"), &SCMachineBase::core_resume_now);
	ClassDB::bind_method(D_METHOD("_core_has_resume_states"), &SCMachineBase::core_has_resume_states);
	ClassDB::bind_method(D_METHOD("_core_clear_resume_states"), &SCMachineBase::core_clear_resume_states);
	ClassDB::bind_method(D_METHOD("_core_leaving"), &SCMachineBase::core_leaving);
	ClassDB::bind_method(D_METHOD("_core_set_resume_when_left", "on"), &SCMachineBase::core_set_resume_when_left);
	ClassDB::bind_method(D_METHOD("_core_live_runs"), &SCMachineBase::core_live_runs);

	ADD_PROPERTY(PropertyInfo(Variant::OBJECT, "current_state", PROPERTY_HINT_RESOURCE_TYPE, "SCMachineState", PROPERTY_USAGE_NONE), "set_current_state",
			"get_current_state");
}

void SCMachineBase::bind_events() {
	ClassDB::bind_method(D_METHOD("send_event", "event_name", "data"), &SCMachineBase::send_event_from_script, DEFVAL(Variant()));
	ClassDB::bind_method(D_METHOD("send_event_from_signal", "event_name", "data"), &SCMachineBase::send_event_from_signal, DEFVAL(Variant()));
	ClassDB::bind_static_method(
			"SCMachineBase", D_METHOD("broadcast_everywhere", "event_name", "data"), &SCMachineBase::broadcast_everywhere, DEFVAL(Variant()));
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("core_is_global_event", "event_name"), &SCMachineBase::core_is_global_event);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("set_quest_events", "events"), &SCMachineBase::set_quest_events);
	ClassDB::bind_method(D_METHOD("event_data", "event_name"), &SCMachineBase::event_data);
	ClassDB::bind_method(D_METHOD("last_event_data"), &SCMachineBase::last_event_data);
	ClassDB::bind_method(D_METHOD("last_event_sender"), &SCMachineBase::last_event_sender);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("note_sender", "sent", "from"), &SCMachineBase::note_sender);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("sender_of", "sent"), &SCMachineBase::sender_of);
	ClassDB::bind_method(D_METHOD("add_forwarder", "forwarder"), &SCMachineBase::add_forwarder);
	ClassDB::bind_method(D_METHOD("remove_forwarder", "forwarder"), &SCMachineBase::remove_forwarder);
	ClassDB::bind_method(D_METHOD("press_already_used", "named"), &SCMachineBase::press_already_used);
	ClassDB::bind_method(D_METHOD("use_press", "named"), &SCMachineBase::use_press);

	ClassDB::bind_method(D_METHOD("_core_system_event", "event_name", "data"), &SCMachineBase::core_system_event);
	ClassDB::bind_method(D_METHOD("_core_take_event_deferred", "event_name", "data"), &SCMachineBase::core_take_event_deferred);
	ClassDB::bind_method(D_METHOD("_core_last_event_name"), &SCMachineBase::core_last_event_name);
	ClassDB::bind_method(D_METHOD("_core_listening_for"), &SCMachineBase::core_listening_for);
	ClassDB::bind_method(D_METHOD("_core_register_globals", "design", "global_names"), &SCMachineBase::core_register_globals);
	ClassDB::bind_method(D_METHOD("_core_forget_globals"), &SCMachineBase::core_forget_globals);
	ClassDB::bind_method(D_METHOD("_core_store_event_data", "stored", "data"), &SCMachineBase::core_store_event_data);
	ClassDB::bind_method(D_METHOD("_core_quest_heard", "event_name"), &SCMachineBase::core_quest_heard);
}

void SCMachineBase::bind_values() {
	ClassDB::bind_method(D_METHOD("get_value", "variable_name", "fallback"), &SCMachineBase::get_value, DEFVAL(Variant()));
	ClassDB::bind_method(D_METHOD("has_value", "variable_name"), &SCMachineBase::has_value);
	ClassDB::bind_method(D_METHOD("set_value", "variable_name", "value"), &SCMachineBase::set_value_from_script);
	ClassDB::bind_method(D_METHOD("limits_of", "variable_name"), &SCMachineBase::limits_of);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("_fit_to", "now", "data"), &SCMachineBase::fit_to);
	ClassDB::bind_method(D_METHOD("_write", "variable_name", "value", "limited"), &SCMachineBase::write);
	ClassDB::bind_method(D_METHOD("_share", "variable_name", "value"), &SCMachineBase::share);
	ClassDB::bind_method(D_METHOD("_within_limits", "variable_name", "value"), &SCMachineBase::within_limits);
	ClassDB::bind_method(D_METHOD("_limit_value", "bound"), &SCMachineBase::limit_value);
	ClassDB::bind_method(D_METHOD("_tell_watchers", "variable"), &SCMachineBase::tell_watchers);
	ClassDB::bind_method(D_METHOD("_tell_every_watcher"), &SCMachineBase::tell_every_watcher);
	ClassDB::bind_method(D_METHOD("_tell_pending_watchers"), &SCMachineBase::tell_pending_watchers);
	ClassDB::bind_method(D_METHOD("_send_changed_values"), &SCMachineBase::send_changed_values);
	ClassDB::bind_method(D_METHOD("_core_bind_globals", "global_values", "sharing"), &SCMachineBase::core_bind_globals);
	ClassDB::bind_method(D_METHOD("_core_watches", "variable"), &SCMachineBase::core_watches);
	ClassDB::bind_method(D_METHOD("_core_holding_writes"), &SCMachineBase::core_holding_writes);
	ClassDB::bind_method(D_METHOD("_core_hold_write", "variable"), &SCMachineBase::core_hold_write);
	ClassDB::bind_method(D_METHOD("_core_mark_values_changed"), &SCMachineBase::core_mark_values_changed);
}

void SCMachineBase::bind_timers() {
	ClassDB::bind_method(D_METHOD("finish_after", "index", "seconds", "then", "real_time"), &SCMachineBase::finish_after, DEFVAL(Callable()), DEFVAL(false));
	ClassDB::bind_method(D_METHOD("finish_with_tween", "index", "tween"), &SCMachineBase::finish_with_tween);
	ClassDB::bind_method(D_METHOD("keep_tween", "index", "tween"), &SCMachineBase::keep_tween);
	ClassDB::bind_method(D_METHOD("cancel_timeouts", "which"), &SCMachineBase::cancel_timeouts);
	ClassDB::bind_method(D_METHOD("rest_until", "index", "wakers"), &SCMachineBase::rest_until);
	ClassDB::bind_method(D_METHOD("rest_in_lane", "index", "lane", "job"), &SCMachineBase::rest_in_lane);
	ClassDB::bind_method(D_METHOD("is_resting", "index"), &SCMachineBase::is_resting);
	ClassDB::bind_method(D_METHOD("process_mode_changed"), &SCMachineBase::process_mode_changed);
	ClassDB::bind_method(D_METHOD("_core_count_game_time"), &SCMachineBase::core_count_game_time);
	ClassDB::bind_method(D_METHOD("_core_restart_timeouts"), &SCMachineBase::core_restart_timeouts);
	ClassDB::bind_method(D_METHOD("_core_finish_serial", "serial", "index"), &SCMachineBase::core_finish_serial);
	ClassDB::bind_method(D_METHOD("_core_wake_resting", "serial", "index"), &SCMachineBase::core_wake_resting);
	ClassDB::bind_method(D_METHOD("_core_tween_done", "serial", "index"), &SCMachineBase::core_tween_done);
	ClassDB::bind_method(D_METHOD("_core_time_up", "serial", "index", "then"), &SCMachineBase::core_time_up);
}

void SCMachineBase::bind_moving() {
	using object_arguments::guarded;
	ClassDB::bind_method(
			D_METHOD("move_character", "body", "falls", "gravity", "delta", "fastest_fall"), &SCMachineBase::move_character_from_script, DEFVAL(0.0));
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("core_smooth_moved_in_physics", "node"), guarded<&smoothing::smooth>("core_smooth_moved_in_physics"));
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("core_smoothing_switched_on"), &smoothing::is_switched_on_here);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("core_note_step", "body", "frame"), guarded<&note_step>("core_note_step"));
}

void SCMachineBase::bind_debugging() {
	ClassDB::bind_method(D_METHOD("set_paused", "on"), &SCMachineBase::set_paused);
	ClassDB::bind_method(D_METHOD("is_paused"), &SCMachineBase::is_paused);
	ClassDB::bind_method(D_METHOD("step_once"), &SCMachineBase::step_once);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("set_measuring", "on"), &SCMachineBase::set_measuring);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("get_measuring"), &SCMachineBase::get_measuring);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("get_measured_usec"), &SCMachineBase::get_measured_usec);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("set_measured_usec", "usec"), &SCMachineBase::set_measured_usec);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("get_measured_physics_usec"), &SCMachineBase::get_measured_physics_usec);
	ClassDB::bind_static_method("SCMachineBase", D_METHOD("set_measured_physics_usec", "usec"), &SCMachineBase::set_measured_physics_usec);

	ClassDB::bind_method(D_METHOD("_get_running"), &SCMachineBase::is_running);
	ClassDB::bind_method(D_METHOD("_get_watching"), &SCMachineBase::get_watching_property);
	ADD_PROPERTY(PropertyInfo(Variant::BOOL, "_running", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_NONE), "", "_get_running");
	ADD_PROPERTY(PropertyInfo(Variant::BOOL, "_paused", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_NONE), "", "is_paused");
	ADD_PROPERTY(PropertyInfo(Variant::BOOL, "_watching", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_NONE), "", "_get_watching");
	ADD_PROPERTY(PropertyInfo(Variant::STRING_NAME, "_last_event", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_NONE), "", "_core_last_event_name");
}
