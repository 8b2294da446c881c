#include "machine_node/sc_machine_base.hpp"

#include "character/body_notes.hpp"
#include "design/sc_machine_state.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/machine_run.hpp"
#include "machine/scoped_timer.hpp"
#include "machine/script_methods.hpp"
#include "settings/object_arguments.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

// A script may hand over any number: one that no list is long enough for is the index of nothing.
int whole_index(int64_t index) {
	return index >= 0 && index <= INT32_MAX ? int(index) : -1;
}

} // namespace

SCMachineBase::SCMachineBase() {
	machine_run = memnew(MachineRun(this));
}

SCMachineBase::~SCMachineBase() {
	machine_run->abandon();
	// Its body goes right after it, as a rule.
	if (bodies_moved.frame >= 0) {
		callable_mp_static(&body_notes::drop_the_gone).call_deferred();
	}
}

Node *SCMachineBase::target_node() const {
	return get_parent();
}

Node *SCMachineBase::node_at(const NodePath &path) {
	return is_inside_tree() || !path.is_absolute() ? get_node_or_null(path) : nullptr;
}

String SCMachineBase::name_in_messages() const {
	return get_name();
}

void SCMachineBase::_process(double delta) {
	machine_run->frame(LANE_FRAME, delta);
}

void SCMachineBase::_physics_process(double delta) {
	machine_run->frame(LANE_PHYSICS, delta);
}

void SCMachineBase::hear_notification(int what) {
	switch (what) {
		case NOTIFICATION_READY:
			machine_run->forget_lanes_known();
			note_taken_callbacks();
			break;
		case NOTIFICATION_PROCESS:
			if (machine_run->is_lane_on(LANE_FRAME)) {
				machine_run->frame(LANE_FRAME, get_process_delta_time());
			}
			break;
		case NOTIFICATION_PHYSICS_PROCESS:
			if (machine_run->is_lane_on(LANE_PHYSICS)) {
				machine_run->frame(LANE_PHYSICS, get_physics_process_delta_time());
			}
			break;
		case NOTIFICATION_ENABLED:
		case NOTIFICATION_DISABLED:
		case NOTIFICATION_ENTER_TREE:
			machine_run->note_can_process(is_inside_tree());
			machine_run->process_mode_changed();
			break;
		case NOTIFICATION_PAUSED:
		case NOTIFICATION_UNPAUSED:
			machine_run->note_can_process(is_inside_tree());
			break;
		case NOTIFICATION_EXIT_TREE:
			machine_run->note_can_process(false);
			break;
		default:
			break;
	}
}

// A script's own callback hides the one of the class it extends, so the machine goes by the notification then.
void SCMachineBase::note_taken_callbacks() {
	takes_process = ScriptMethods::defines(this, "_process");
	takes_physics_process = ScriptMethods::defines(this, "_physics_process");
}

void SCMachineBase::show_while_running(PropertyInfo &property) {
	if (!Engine::get_singleton()->is_editor_hint()) {
		property.usage = PROPERTY_USAGE_EDITOR | PROPERTY_USAGE_READ_ONLY;
	}
}

void SCMachineBase::_validate_property(PropertyInfo &property) const {
	if (property.name == StringName("current_state")) {
		show_while_running(property);
	}
}

bool SCMachineBase::has_begun() const {
	return machine_run->is_running() || machine_run->values.in_use;
}

void SCMachineBase::stop() {
	machine_run->stop();
}

bool SCMachineBase::is_running() const {
	return machine_run->is_running();
}

Ref<Resource> SCMachineBase::get_current_state() const {
	return machine_run->current_state();
}

void SCMachineBase::set_current_state(const Ref<Resource> &state) {
	machine_run->set_current_state(state);
}

Ref<Resource> SCMachineBase::find_state(const StringName &state_name) const {
	return machine_run->find_state(state_name);
}

TypedArray<SCMachineState> SCMachineBase::active_chain() const {
	return machine_run->active_chain();
}

TypedArray<SCMachineState> SCMachineBase::active_states() const {
	return machine_run->active_states();
}

bool SCMachineBase::is_in_state(const Ref<Resource> &state) const {
	return machine_run->row_in(state.ptr()) != nullptr;
}

void SCMachineBase::go_to_state(const Ref<Resource> &state) {
	machine_run->go_to_state(state);
}

void SCMachineBase::restart_state(const Ref<Resource> &state) {
	machine_run->restart_state(state);
}

bool SCMachineBase::go_to(const StringName &state_name) {
	return machine_run->go_to(state_name);
}

Ref<Resource> SCMachineBase::running_state() const {
	return machine_run->running_state();
}

bool SCMachineBase::still_here() const {
	return machine_run->still_here();
}

Array SCMachineBase::live_rows() const {
	return machine_run->described_live_rows();
}

Dictionary SCMachineBase::slot(int64_t index) {
	return machine_run->slot(whole_index(index));
}

Dictionary SCMachineBase::condition_slot() {
	return machine_run->condition_slot();
}

bool SCMachineBase::ask(Object *condition, int64_t action_index, const Variant &record) {
	return machine_run->ask(condition, whole_index(action_index), record);
}

bool SCMachineBase::ask_compiled(Object *condition, int64_t action_index) {
	return machine_run->ask_compiled(condition, whole_index(action_index));
}

void SCMachineBase::progress_made(Object *walker, int64_t most) {
	machine_run->progress_made(walker != nullptr ? walker->get_instance_id() : 0, most);
}

void SCMachineBase::finish(int64_t index) {
	machine_run->finish(whole_index(index));
}

Callable SCMachineBase::finisher(int64_t index) {
	return machine_run->finisher(whole_index(index));
}

bool SCMachineBase::is_finished(int64_t index) const {
	return machine_run->is_finished(whole_index(index));
}

bool SCMachineBase::actions_done() const {
	return machine_run->actions_done_except(-1);
}

bool SCMachineBase::actions_done_except(int64_t index) const {
	return machine_run->actions_done_except(whole_index(index));
}

double SCMachineBase::state_time() const {
	return machine_run->state_time();
}

bool SCMachineBase::sub_state_finished() const {
	return machine_run->sub_state_finished();
}

Ref<Resource> SCMachineBase::previous_state() const {
	return machine_run->previous_state();
}

StringName SCMachineBase::last_event() const {
	return machine_run->entered_by();
}

void SCMachineBase::send_event(StringName event_name, Variant data) {
	machine_run->send_event(event_name, data);
}

void SCMachineBase::send_event_from_signal(StringName event_name, Variant data) {
	machine_run->send_event_from_signal(event_name, data);
}

void SCMachineBase::send_event_from_script(StringName event_name, Variant data) {
	if (!has_begun() && !is_node_ready()) {
		MakerWarnings::once_for(this, "event before ready",
				vformat("Machine on %s: the event %s was sent before the machine is ready, so no state could take it. Wait for the machine's ready signal, or "
						"send it with call_deferred(\"send_event\", \"%s\").",
						name_in_messages(), event_name, event_name));
	}
	machine_run->send_event(event_name, data);
}

void SCMachineBase::broadcast_everywhere(const StringName &event_name, const Variant &data) {
	EventRegistry::broadcast(event_name, data);
}

bool SCMachineBase::core_is_global_event(const StringName &event_name) {
	return EventRegistry::shared().is_global(event_name);
}

void SCMachineBase::set_quest_events(const Array &quest_events) {
	EventRegistry::shared().set_quest_events(quest_events);
}

Variant SCMachineBase::event_data(const StringName &event_name) const {
	return machine_run->events.last_name == event_name ? machine_run->events.last_data : Variant();
}

Variant SCMachineBase::last_event_data() const {
	return machine_run->events.last_data;
}

Node *SCMachineBase::last_event_sender() const {
	return Object::cast_to<Node>(ObjectDB::get_instance(machine_run->events.last_sender));
}

void SCMachineBase::note_sender(const StringName &sent, Object *from) {
	if (!sent.is_empty() && from != nullptr) {
		EventRegistry::shared().note_sender(sent, from->get_instance_id());
	}
}

SCMachineBase *SCMachineBase::sender_of(const StringName &sent) {
	return Object::cast_to<SCMachineBase>(ObjectDB::get_instance(EventRegistry::shared().sender_of(sent)));
}

void SCMachineBase::add_forwarder(const Callable &forwarder) {
	machine_run->events.add_forwarder(forwarder);
}

void SCMachineBase::remove_forwarder(const Callable &forwarder) {
	machine_run->events.remove_forwarder(forwarder);
}

bool SCMachineBase::press_already_used(const StringName &named) {
	return machine_run->press_already_used(named);
}

void SCMachineBase::use_press(const StringName &named) {
	machine_run->use_press(named);
}

Variant SCMachineBase::get_value(const StringName &variable_name, const Variant &fallback) const {
	return machine_run->get_value(variable_name, fallback);
}

bool SCMachineBase::has_value(const StringName &variable_name) const {
	return machine_run->has_value(variable_name);
}

void SCMachineBase::set_value(const StringName &variable_name, const Variant &value) {
	machine_run->set_value(variable_name, value);
}

#ifdef DEBUG_ENABLED
namespace {

bool is_text(const Variant &value) {
	return value.get_type() == Variant::STRING || value.get_type() == Variant::STRING_NAME;
}

bool is_number(const Variant &value) {
	return value.get_type() == Variant::INT || value.get_type() == Variant::FLOAT;
}

// A variable takes any value. Words where a number was, or a number where words were, are nearly always a slip, though.
void tell_of_another_kind(SCMachineBase *machine, const StringName &variable, const Variant &held, const Variant &given) {
	if ((is_text(held) && is_number(given)) || (is_number(held) && is_text(given))) {
		MakerWarnings::once_for(machine, vformat("another kind:%s", variable),
				vformat("Machine on %s: set_value gave %s %s, and it held %s. It holds the new value now. Give it the kind of value that it was declared with, "
						"or declare it with another.",
						machine->name_in_messages(), variable, is_text(given) ? "words" : "a number", is_text(held) ? "words" : "a number"));
	}
}

} // namespace
#endif

void SCMachineBase::set_value_from_script(const StringName &variable_name, const Variant &value) {
	if (!has_begun()) {
		MakerWarnings::once_for(this, "value before start",
				vformat("Machine on %s: set_value(\"%s\") came before the machine has started, and starting gives every variable the value it starts with. Put "
						"the value into starting_values, or set it once the machine runs.",
						name_in_messages(), variable_name));
	}
#ifdef DEBUG_ENABLED
	tell_of_another_kind(this, variable_name, get_value(variable_name, Variant()), value);
#endif
	machine_run->set_value(variable_name, value);
}

Array SCMachineBase::limits_of(const StringName &variable_name) {
	return machine_run->limits_of(variable_name);
}

void SCMachineBase::write(const StringName &variable_name, const Variant &value, bool limited) {
	machine_run->write_value(variable_name, value, limited);
}

void SCMachineBase::share(const StringName &variable_name, const Variant &value) {
	machine_run->share_value(variable_name, value);
}

Variant SCMachineBase::within_limits(const StringName &variable_name, const Variant &value) {
	return machine_run->within_limits(variable_name, value);
}

Variant SCMachineBase::limit_value(const Variant &bound) {
	return machine_run->limit_value(bound);
}

void SCMachineBase::tell_watchers(const StringName &variable) {
	machine_run->tell_watchers(variable);
}

void SCMachineBase::tell_every_watcher() {
	machine_run->tell_every_watcher();
}

void SCMachineBase::tell_pending_watchers() {
	machine_run->tell_pending_watchers();
}

void SCMachineBase::finish_after(int64_t index, double seconds, const Callable &then, bool real_time) {
	machine_run->finish_after(whole_index(index), seconds, then, real_time);
}

void SCMachineBase::finish_with_tween(int64_t index, const Ref<Tween> &tween) {
	machine_run->finish_with_tween(whole_index(index), tween);
}

void SCMachineBase::keep_tween(int64_t index, const Ref<Tween> &tween) {
	machine_run->keep_tween(whole_index(index), tween);
}

int SCMachineBase::cancel_timeouts(const Callable &which) {
	return machine_run->cancel_timeouts(which);
}

void SCMachineBase::rest_until(int64_t index, const Array &wakers) {
	machine_run->rest_until(whole_index(index), wakers);
}

void SCMachineBase::rest_in_lane(int64_t index, Object *lane, int64_t job) {
	machine_run->rest_in_lane(whole_index(index), lane, job);
}

bool SCMachineBase::is_resting(int64_t index) const {
	return machine_run->is_resting(whole_index(index));
}

void SCMachineBase::process_mode_changed() {
	machine_run->process_mode_changed();
}

void SCMachineBase::set_paused(bool on) {
	machine_run->set_paused(on);
}

bool SCMachineBase::is_paused() const {
	return machine_run->is_paused();
}

void SCMachineBase::step_once() {
	machine_run->step_once();
}

void SCMachineBase::set_measuring(bool on) {
	MachineTime::on = on;
}

bool SCMachineBase::get_measuring() {
	return MachineTime::on;
}

int64_t SCMachineBase::get_measured_usec() {
	return MachineTime::usec;
}

void SCMachineBase::set_measured_usec(int64_t usec) {
	MachineTime::usec = usec;
}

int64_t SCMachineBase::get_measured_physics_usec() {
	return MachineTime::physics_usec;
}

void SCMachineBase::set_measured_physics_usec(int64_t usec) {
	MachineTime::physics_usec = usec;
}

void SCMachineBase::core_begin(const Array &design, bool physics_tick, bool debug_log, int64_t loop_limit, const Dictionary &values) {
	machine_run->begin(design, physics_tick, debug_log, loop_limit, values);
}

void SCMachineBase::core_setting(const StringName &name, const Variant &value) {
	machine_run->set_setting(name, value);
}

void SCMachineBase::core_want_start() {
	machine_run->want_start();
}

Array SCMachineBase::core_let_go() {
	return machine_run->let_go();
}

void SCMachineBase::core_resume(const Array &leaves) {
	machine_run->resume(leaves);
}

void SCMachineBase::core_resume_now() {
	machine_run->resume_now();
}

bool SCMachineBase::core_has_resume_states() const {
	return machine_run->has_resume_states();
}

void SCMachineBase::core_clear_resume_states() {
	machine_run->clear_resume_states();
}

bool SCMachineBase::core_leaving() const {
	return machine_run->is_leaving();
}

void SCMachineBase::core_set_resume_when_left(bool on) {
	machine_run->set_resume_when_left(on);
}

void SCMachineBase::core_system_event(StringName event_name, Variant data) {
	machine_run->system_event(event_name, data);
}

void SCMachineBase::core_take_event_deferred(StringName event_name, Variant data) {
	machine_run->take_event(event_name, data, false);
}

StringName SCMachineBase::core_last_event_name() const {
	return machine_run->events.last_name;
}

Array SCMachineBase::core_listening_for() const {
	Array listening;
	for (const StringName &event : machine_run->events.listening) {
		listening.push_back(event);
	}
	return listening;
}

void SCMachineBase::core_register_globals(const Array &design, const Array &global_names) {
	machine_run->register_globals(design, global_names);
}

void SCMachineBase::core_forget_globals() {
	machine_run->forget_globals();
}

bool SCMachineBase::core_store_event_data(const StringName &stored, const Variant &data) {
	return machine_run->store_event_data(stored, data);
}

void SCMachineBase::core_bind_globals(const Dictionary &global_values, const Dictionary &sharing) {
	machine_run->values.globals = global_values;
	machine_run->values.sharing = sharing;
}

bool SCMachineBase::core_watches(const StringName &variable) const {
	return machine_run->values.watching && machine_run->values.watched.has(variable);
}

bool SCMachineBase::core_holding_writes() const {
	return machine_run->holds_writes();
}

void SCMachineBase::core_hold_write(const StringName &variable) {
	machine_run->values.pending_watchers.insert(variable);
}

void SCMachineBase::core_mark_values_changed() {
	machine_run->mark_values_changed();
}

void SCMachineBase::core_count_game_time() {
	if (is_inside_tree()) {
		GameClocks::attach_to(get_tree());
	}
}

void SCMachineBase::core_restart_timeouts() {
	machine_run->restart_timeouts();
}

void SCMachineBase::core_finish_serial(int64_t serial, int64_t index) {
	machine_run->finish_by_serial(serial, whole_index(index));
}

void SCMachineBase::core_wake_resting(int64_t serial, int64_t index) {
	machine_run->wake_resting(serial, whole_index(index));
}

void SCMachineBase::core_tween_done(int64_t serial, int64_t index) {
	machine_run->tween_done(serial, whole_index(index));
}

void SCMachineBase::core_time_up(int64_t serial, int64_t index, const Callable &then) {
	machine_run->time_up(serial, whole_index(index), then);
}

int SCMachineBase::core_live_runs() const {
	return int(machine_run->live_rows().size());
}

void SCMachineBase::send_changed_values() {
	machine_run->send_changed_values();
}

bool SCMachineBase::get_watching_property() const {
	return machine_run->values.watching;
}

bool SCMachineBase::move_character(Node *body, bool falls, double gravity, double delta, double fastest_fall) {
	return body != nullptr && move_step::move(this, body, falls, gravity, delta, fastest_fall);
}

bool SCMachineBase::move_character_from_script(const Variant &body, bool falls, double gravity, double delta, double fastest_fall) {
	bool fits = true;
	return move_character(object_arguments::taken<Node>(body, "move_character", 1, fits), falls, gravity, delta, fastest_fall);
}
