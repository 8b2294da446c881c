#pragma once

// The node behind every machine, without the properties a game maker edits: SCMachine adds those.
// It owns a MachineRun and binds its operations to scripts; the run does the work and outlives the
// node for as long as one of its own calls is under way.

#include "character/move_step.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/classes/tween.hpp>
#include <godot_cpp/core/binder_common.hpp>
#include <godot_cpp/variant/typed_array.hpp>

using namespace godot;

class MachineRun;
class SCMachineState;

class SCMachineBase : public Node {
	GDCLASS(SCMachineBase, Node)

public:
	// What becomes of a machine whose node is carried out of the scene.
	enum WhenLeft {
		NOTHING,
		STOP,
		START,
	};

	SCMachineBase();
	~SCMachineBase() override;

	// Always there while the node is. Take a MachineRun::Busy before calling anything that may free the node.
	MachineRun &run() const { return *machine_run; }
	// The node this machine works on. Here the parent; SCMachine has a target of its own.
	virtual Node *target_node() const;
	virtual Node *node_at(const NodePath &path);
	// The signals of a machine are declared by SCMachine; here only a script may have added them.
	virtual bool offers(const StringName &signal) const { return has_signal(signal); }
	// The name used in messages for a game maker.
	String name_in_messages() const;

	// Whether the node is called in this lane for another reason than the machine's own.
	bool keeps_callback(bool physics) const { return physics ? takes_physics_process : takes_process; }

	void _process(double delta) override;
	void _physics_process(double delta) override;

	void stop();
	bool is_running() const;
	Ref<Resource> get_current_state() const;
	void set_current_state(const Ref<Resource> &state);
	Ref<Resource> find_state(const StringName &state_name) const;
	TypedArray<SCMachineState> active_chain() const;
	TypedArray<SCMachineState> active_states() const;
	bool is_in_state(const Ref<Resource> &state) const;
	void go_to_state(const Ref<Resource> &state);
	void restart_state(const Ref<Resource> &state);
	bool go_to(const StringName &state_name);
	Ref<Resource> running_state() const;
	bool still_here() const;
	Array live_rows() const;
	Dictionary slot(int64_t index);
	Dictionary condition_slot();
	bool ask(Object *condition, int64_t action_index, const Variant &record);
	bool ask_compiled(Object *condition, int64_t action_index);
	void progress_made(Object *walker, int64_t most);
	void finish(int64_t index);
	Callable finisher(int64_t index);
	bool is_finished(int64_t index) const;
	bool actions_done() const;
	bool actions_done_except(int64_t index) const;
	double state_time() const;
	bool sub_state_finished() const;
	Ref<Resource> previous_state() const;
	StringName last_event() const;

	// By value, as whoever sends an event may change what it was sent with while it is being heard.
	void send_event(StringName event_name, Variant data = Variant());
	void send_event_from_signal(StringName event_name, Variant data = Variant());
	static void broadcast_everywhere(const StringName &event_name, const Variant &data = Variant());
	static bool core_is_global_event(const StringName &event_name);
	static void set_quest_events(const Array &quest_events);
	Variant event_data(const StringName &event_name) const;
	Variant last_event_data() const;
	Node *last_event_sender() const;
	static void note_sender(const StringName &sent, Object *from);
	static SCMachineBase *sender_of(const StringName &sent);
	void add_forwarder(const Callable &forwarder);
	void remove_forwarder(const Callable &forwarder);
	bool press_already_used(const StringName &named);
	void use_press(const StringName &named);

	Variant get_value(const StringName &variable_name, const Variant &fallback = Variant()) const;
	bool has_value(const StringName &variable_name) const;
	void set_value(const StringName &variable_name, const Variant &value);
	Array limits_of(const StringName &variable_name);
	void write(const StringName &variable_name, const Variant &value, bool limited);
	void share(const StringName &variable_name, const Variant &value);
	Variant within_limits(const StringName &variable_name, const Variant &value);
	Variant limit_value(const Variant &bound);
	void tell_watchers(const StringName &variable);
	void tell_every_watcher();
	void tell_pending_watchers();
	// `data` as the kind of value that `now` is, nil when it cannot be.
	static Variant fit_to(const Variant &now, const Variant &data);

	void finish_after(int64_t index, double seconds, const Callable &then = Callable(), bool real_time = false);
	void finish_with_tween(int64_t index, const Ref<Tween> &tween);
	void keep_tween(int64_t index, const Ref<Tween> &tween);
	int cancel_timeouts(const Callable &which);
	void rest_until(int64_t index, const Array &wakers);
	void rest_in_lane(int64_t index, Object *lane, int64_t job);
	bool is_resting(int64_t index) const;
	void process_mode_changed();

	// Moves a character body as Move Character does: with gravity, and once a physics frame whoever asks. False when it was not
	// moved by this call.
	bool move_character(Node *body, bool falls, double gravity, double delta, double fastest_fall = 0.0);
	MovedBodies &moved_bodies() { return bodies_moved; }

	void set_paused(bool on);
	bool is_paused() const;
	void step_once();
	static void set_measuring(bool on);
	static bool get_measuring();
	static int64_t get_measured_usec();
	static void set_measured_usec(int64_t usec);
	static int64_t get_measured_physics_usec();
	static void set_measured_physics_usec(int64_t usec);

	// For the library's own scripts and the node above.
	void core_begin(const Array &design, bool physics_tick, bool debug_log, int64_t loop_limit, const Dictionary &values);
	void core_setting(const StringName &name, const Variant &value);
	void core_want_start();
	Array core_let_go();
	void core_resume(const Array &leaves);
	void core_resume_now();
	bool core_has_resume_states() const;
	void core_clear_resume_states();
	bool core_leaving() const;
	void core_set_resume_when_left(bool on);
	void core_system_event(StringName event_name, Variant data);
	void core_take_event_deferred(StringName event_name, Variant data);
	StringName core_last_event_name() const;
	Array core_listening_for() const;
	void core_register_globals(const Array &design, const Array &global_names);
	void core_forget_globals();
	bool core_store_event_data(const StringName &stored, const Variant &data);
	void core_quest_heard(const StringName &event_name);
	void core_bind_globals(const Dictionary &global_values, const Dictionary &sharing);
	bool core_watches(const StringName &variable) const;
	bool core_holding_writes() const;
	void core_hold_write(const StringName &variable);
	void core_mark_values_changed();
	void core_count_game_time();
	void core_restart_timeouts();
	void core_finish_serial(int64_t serial, int64_t index);
	void core_wake_resting(int64_t serial, int64_t index);
	void core_tween_done(int64_t serial, int64_t index);
	void core_time_up(int64_t serial, int64_t index, const Callable &then);
	int core_live_runs() const;
	void send_changed_values();

protected:
	static void _bind_methods();
	void _validate_property(PropertyInfo &property) const;
	// From the notification of the class above: one of its own would be one call more for every machine in every frame.
	void hear_notification(int what);
	// In a running game the editor's remote inspector shows it, and nothing else ever does.
	static void show_while_running(PropertyInfo &property);

private:
	static void bind_running();
	static void bind_events();
	static void bind_values();
	static void bind_timers();
	static void bind_moving();
	static void bind_debugging();

	bool get_watching_property() const;
	// What scripts call, answered when it comes too early to have any effect.
	void send_event_from_script(StringName event_name, Variant data);
	void set_value_from_script(const StringName &variable_name, const Variant &value);
	bool has_begun() const;
	void note_taken_callbacks();

	bool move_character_from_script(const Variant &body, bool falls, double gravity, double delta, double fastest_fall);

	MachineRun *machine_run = nullptr;
	MovedBodies bodies_moved;
	// A script that extends the machine has this callback for itself.
	bool takes_process = false;
	bool takes_physics_process = false;
};

VARIANT_ENUM_CAST(SCMachineBase::WhenLeft);
