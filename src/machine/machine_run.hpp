#pragma once

// The interpreter of a running machine: everything that goes on behind the SCMachineBase node, which
// only passes calls on. Each subject has a source file of its own, named in the sections below.
//
// Re-entrance is the one hazard here. Any call into an action, a signal handler or a script may come
// back into every operation of this class, stop the machine, or free its node. What holds it together:
//
//  - Every operation that calls out first takes a `Busy`. While one is held, rows are only marked
//    dead, never recycled or freed, so a RunRow pointer can be read after any call: `live` tells.
//  - The run itself is freed by the last `Busy` when the node has gone (`machine()` is then null), so
//    the frames of an interrupted operation still have something to look at and simply find their
//    row dead and the machine stopped.
//  - Passes over rows or actions work on a copy of the list and ask each row whether it still lives.
//  - While rows are being left (`leaving` above 0) nothing may enter: changes do nothing, events are
//    dropped, stop and start are noted in `pending` and carried out when leaving has ended.
//  - What comes back later (a timer, a signal, a held event) carries the serial of its row, which
//    no other row ever gets again.

#include "machine/call_order.hpp"
#include "machine/design_index.hpp"
#include "machine/event_state.hpp"
#include "machine/game_clock.hpp"
#include "machine/loop_limiter.hpp"
#include "machine/run_row.hpp"
#include "machine/scratch_lists.hpp"
#include "machine/value_table.hpp"

using namespace godot;

class SCMachineBase;
class SCMachineCondition;

enum Lane {
	LANE_FRAME,
	LANE_PHYSICS,
};

class MachineRun {
	// First what every frame and every event reads.
	SCMachineBase *node = nullptr;
	// Kept by the index, or by `kept_current` when the index does not know it.
	Resource *current = nullptr;
	uint32_t busy = 0;
	int leaving = 0;
	int change_depth = 0;
	bool running = false;
	bool can_process = false;
	bool paused = false;
	bool physics_tick = false;
	bool chain_dirty = false;
	// What the node was last told of each lane, where the engine has not turned it on by itself since.
	bool lane_known[2] = { false, false };
	bool lane_on[2] = { false, false };
	RunRow *root = nullptr;
	RunRow *running_row = nullptr;
	RowList chain;
	CallOrder call_order;
	// The machine that was called last, null when that has gone.
	static MachineRun *called_before;

public:
	GameClock clock;
	ValueTable values;
	EventState events;

private:
	int64_t serial_counter = 0;
	DesignIndex index;

public:
	explicit MachineRun(SCMachineBase *machine_node);
	~MachineRun();
	// The node has gone: frees this run, at once or when the last Busy lets go.
	void abandon();

	// Null once the node has been freed.
	SCMachineBase *machine() const { return node; }
	bool is_running() const { return running; }
	bool is_leaving() const { return leaving > 0; }

	class Busy {
		MachineRun &run;

	public:
		explicit Busy(MachineRun &machine_run) : run(machine_run) { run.busy++; }
		~Busy() {
			if (run.busy > 1 || run.has_nothing_to_end()) {
				run.busy--;
			} else {
				run.end_busy();
			}
		}
		Busy(const Busy &) = delete;
		Busy &operator=(const Busy &) = delete;
	};

	// Sets the row whose action is being called, and puts the former one back.
	class RunningAs {
		MachineRun &run;
		RunRow *former;

	public:
		RunningAs(MachineRun &machine_run, RunRow *row) : run(machine_run), former(machine_run.running_row) { run.running_row = row; }
		~RunningAs() { run.running_row = former; }
		RunningAs(const RunningAs &) = delete;
		RunningAs &operator=(const RunningAs &) = delete;
	};

	// run_begin.cpp: the design and the settings a machine runs with.
	void begin(const Array &design, bool on_physics_tick, bool log, int64_t loop_limit, const Dictionary &start_values);
	// With an index that is there already, and with values that are in the table already.
	void begin(const DesignIndex &design, bool on_physics_tick, bool log, int64_t loop_limit);
	// As register_globals, with what has been read already.
	void listen_for(const LocalVector<StringName> &heard, const LocalVector<StringName> &global_names);
	void set_setting(const StringName &name, const Variant &value);
	Ref<Resource> find_state(const StringName &state_name) const;

	// change_state.cpp: entering, leaving, going from state to state.
	void go_to_state(const Ref<Resource> &state);
	void restart_state(const Ref<Resource> &state);
	bool go_to(const StringName &state_name);
	void stop();
	void want_start() { pending = PENDING_START; }
	Array let_go();
	void resume(const Array &leaves);
	void resume_now();
	bool has_resume_states() const { return resume_list.get_type() == Variant::ARRAY && !Array(resume_list).is_empty(); }
	void clear_resume_states() { resume_list = Variant(); }
	void set_resume_when_left(bool on) { resume_when_left = on; }
	void progress_made(uint64_t walker, int64_t most);

	// rows.cpp: asking about the rows.
	Ref<Resource> current_state() const { return Ref<Resource>(current); }
	void set_current_state(const Ref<Resource> &state) { make_current(state.ptr()); }
	const RowList &live_rows() {
		if (chain_dirty) {
			list_rows();
		}
		return chain;
	}
	void list_rows();
	// The row whose action is being called, else the deepest row of the last region; null when there is none.
	RunRow *running_or_last();
	RunRow *row_being_run() { return running_row; }
	RunRow *row_of_serial(int64_t serial);
	RunRow *row_in(const Resource *state);
	Array active_chain();
	Array active_states();
	Ref<Resource> running_state();
	bool still_here() const { return running && running_row != nullptr && running_row->live; }
	Dictionary slot(int index);
	Dictionary slot_of(RunRow *row, int index);
	bool actions_done_except(int index);
	Ref<Resource> previous_state();
	StringName entered_by();
	bool sub_state_finished();
	double state_time();

	// asking.cpp: conditions.
	Dictionary condition_slot();
	bool ask(Object *condition, int index, const Variant &record);
	bool ask_compiled(Object *condition, int index);
	// The action that asks the condition being checked; -1 for one asked from outside.
	int action_asking() const { return condition_index; }

	// finishing.cpp: finished actions and finished states.
	void finish(int index);
	bool is_finished(int index);
	Callable finisher(int index);
	void finish_by_serial(int64_t serial, int index);
	void finish_from_outside(RunRow *row, int index);

	// lanes.cpp: what is called each frame.
	void frame(Lane lane, double delta);
	void refresh_lanes();

	// events.cpp
	// The caller sees to it that neither changes while the event is being heard.
	void send_event(const StringName &event, const Variant &data);
	void send_event_from_signal(const StringName &event, const Variant &data);
	void system_event(const StringName &event, const Variant &data);
	void take_event(const StringName &name, const Variant &carried, bool global);
	bool store_event_data(const StringName &stored, const Variant &data);
	void run_queued_events();
	void register_globals(const Array &design, const Array &global_names);
	void forget_globals();
	bool press_already_used(const StringName &named);
	void use_press(const StringName &named);

	// values.cpp and watchers.cpp
	Variant get_value(const StringName &name, const Variant &fallback) const;
	bool has_value(const StringName &name) const;
	void set_value(const StringName &name, const Variant &value);
	void write_value(const StringName &name, const Variant &value, bool limited);
	void share_value(const StringName &name, const Variant &value);
	// To every machine that shares it, the writer (0 for none) left out at first: it has its value.
	static void share_everywhere(const Dictionary &globals, const Dictionary &sharing, const StringName &name, const Variant &value, uint64_t writer);
	Variant within_limits(const StringName &name, const Variant &value) const;
	Array limits_of(const StringName &name) const;
	Variant limit_value(const Variant &bound) const;
	Dictionary values_dictionary() const;
	void load_values(const Dictionary &from);
	// The stored value itself, null when there is none or the table is not in use yet. Good until the next write.
	const Variant *find_value(const StringName &name) const { return values.in_use ? values.find(name) : nullptr; }
	// The stored value itself when nobody has to hear of a write to it, else null: for what counts in every frame. After the
	// write comes mark_values_changed().
	Variant *unguarded_value(const StringName &name) { return values.in_use && !values.guarded && !values.watching ? values.table.getptr(name) : nullptr; }
	void mark_values_changed() {
		// Only ever set together with the call that reports it.
		if (debugger_active && !values.changed) {
			values.changed = true;
			report_values_later();
		}
	}
	void report_values_later();
	void send_changed_values() {
		if (values.changed) {
			values.changed = false;
			if (debugger_active) {
				report_values_now();
			}
		}
	}
	void report_values_now();
	bool holds_writes() const { return paused && !stepping; }
	void tell_watchers(const StringName &name, int64_t up_to_serial = -1);
	void tell_every_watcher();
	void tell_pending_watchers();

	// timers.cpp and rests.cpp
	void finish_after(int index, double seconds, const Callable &then, bool real_time);
	void finish_with_tween(int index, const Ref<Tween> &tween);
	void keep_tween(int index, const Ref<Tween> &tween);
	// What the tween that an action has just handed over does.
	void note_tweened(int index, const PropertyTween &does);
	int cancel_timeouts(const Callable &which);
	void restart_timeouts();
	void time_up(int64_t serial, int index, const Callable &then);
	void tween_done(int64_t serial, int index);
	void rest_until(int index, const Array &wakers);
	void rest_in_lane(int index, Object *fast_lane, int64_t job);
	bool is_resting(int index);
	void wake_resting(int64_t serial, int index);

	// For work that others do for this machine each frame: whether it would be called itself. Kept up by the notifications
	// of the node, as asking the engine for each machine costs more than the work.
	bool lane_goes_on() const { return can_process && !paused; }
	void note_can_process(bool inside_tree);
	// Whether the machine's own work asks for this lane, whatever the node is called for besides.
	bool is_lane_on(Lane lane) const { return lane_known[lane] && lane_on[lane]; }
	// The engine turns both callbacks of a node on as it becomes ready.
	void forget_lanes_known() { lane_known[LANE_FRAME] = lane_known[LANE_PHYSICS] = false; }

	// clock.cpp
	void process_mode_changed();
	double game_time_now() const;
	// Called as the lanes are refreshed: notes when the machine falls idle, and ends that when it is called again.
	void keep_clock_honest(bool main_lane_has_rows);

	// going_on.cpp: a machine written down, to go on from there in another scene or another run of the game.
	Dictionary written_down();
	// In place of entering the first state. False when the design no longer has the states it was in.
	bool go_on_from(const Dictionary &record);

	// stepping.cpp: the debugger's pause and step.
	void set_paused(bool on);
	bool is_paused() const { return paused; }
	void step_once();
	Array described_live_rows();
	// The editor's panel looks at this machine.
	bool watched = false;
	// The machine that runs this one as part of a state, 0 for none.
	uint64_t run_by = 0;

	// Read by the debugger, once a frame written by the clocks.
	static bool debugger_active;
	// Calls `method` on the node when it has it: the machine node above answers, or a script that extends it.
	Variant call_node(const StringName &method, const Variant &first = Variant(), const Variant &second = Variant());

private:
	enum Pending {
		PENDING_NONE,
		PENDING_STOP,
		PENDING_START,
	};

	bool has_nothing_to_end() const { return running && !rows.has_dead() && node != nullptr; }
	void end_busy();
	void mark_gone(RunRow *row);

	// change_state.cpp
	// The states that are to be entered within what is being entered.
	struct Targets {
		Resource *const *states = nullptr;
		uint32_t count = 0;
	};
	bool may_enter(Resource *target);
	void go_from_here(Resource *state);
	void begin_again(Resource *state);
	void changed_state();
	void change_state(Resource *target);
	RunRow *enter_row(Resource *state, RunRow *parent, int slot, const Targets &targets, LocalVector<RunRow *> &fresh);
	void finish_entering(const LocalVector<RunRow *> &fresh, Resource *previous);
	void enter_inner_rows(RunRow *row, const Array &starts, const Targets &targets, LocalVector<RunRow *> &fresh);
	void tell_of_change(Resource *entered, Resource *left, const LocalVector<RunRow *> &fresh);
	void pause_where_told(const LocalVector<RunRow *> &fresh);
	void make_current(Resource *state);
	void forget_event();
	void leave_row(RunRow *row);
	void detach_and_retire(RunRow *row);
	bool act_on_pending();
	void stop_now();
	bool is_heard(const StringName &signal) const;
	void emit(const StringName &signal, const Variant &first, const Variant &second = Variant());
	bool tell_of_event(const StringName &name, const Variant &carried);
	void emit_heard(const StringName &signal, const Variant &first, const Variant &second);
	String owner_name() const;
	void enter_as_root(Resource *top, const Targets &targets, LocalVector<RunRow *> &fresh);
	void restart_row(RunRow *row, LocalVector<RunRow *> &fresh);

	// finishing.cpp
	bool way_is_free(const RunRow *row, int index) const;
	void start_actions(RunRow *row);
	void start_next_actions(RunRow *row, int finished_index, Lane lane);
	void check_state_finished(RunRow *row);
	bool leave_finished(RunRow *row);
	void postpone(const StringName &event, const Variant &data, bool of_finished_state, const RunRow *row);

	// action_calls.cpp
	bool is_disabled(const ActionEntry &entry) const { return entry.disabled != nullptr ? *entry.disabled : says_it_is_disabled(entry); }
	bool says_it_is_disabled(const ActionEntry &entry) const;
	bool waits_for_previous(const ActionEntry &entry) const;
	double interval_of(const ActionEntry &entry) const;
	void call_enter(RunRow *row, int index);
	void call_update(RunRow *row, int index, double delta);
	void call_exit(RunRow *row, int index);

	// lanes.cpp
	void run_lane(Lane lane, double delta);
	void switch_lane(Lane lane, bool on);
	void note_call_order();
	Lane lane_of(const ActionEntry &entry) const { return entry.wants_physics || physics_tick ? LANE_PHYSICS : LANE_FRAME; }
	Lane main_lane() const { return physics_tick ? LANE_PHYSICS : LANE_FRAME; }

	// events.cpp
	void send_past_quests(const StringName &event, const Variant &data);
	void dispatch_counted(const StringName &event, const Variant &data);
	void dispatch_postponed();
	bool dispatch(const StringName &event, const Variant &data);
	bool dispatch_finished(const Variant &data);
	bool offer_to_forwarders(const StringName &event, const Variant &data);
	bool offer(RunRow *row, const StringName &event, const Variant &data);
	bool try_transitions(RunRow *row, const StringName &event, const Variant &data);
	void take_transition(Resource *target, bool again, const StringName &store_data_in, const Variant &data, const StringName &event);

	// values.cpp and watchers.cpp
	bool find_bound(const ValueBound &bound, double &number) const;
	void limit_dependents(const StringName &name);
	bool tell_row(RunRow *row, const LocalVector<int> &watchers);
	void tell_watchers_of(const LocalVector<StringName> &names);

	// going_on.cpp
	Resource *state_in(const Dictionary &written) const;
	void go_on_with(RunRow *row, const Array &actions);
	bool take_up_action(RunRow *row, int index, const Dictionary &record);

	// timers.cpp
	// The row that a request with this action's index is meant for, null when there is none.
	RunRow *waiting_row(int action);
	void start_timer(RunRow *row, int action, double seconds, const Callable &then, bool real_time, double elapsed = 0.0);
	void hold_tween(int action, const Ref<Tween> &tween, bool finishes);
	void let_timers_go(RunRow *row);

	// rests.cpp
	bool may_rest(int action) const;
	void cancel_rest(Rest &rest);

	// stepping.cpp
	void collect_tweens(LocalVector<Ref<Tween>> &tweens);
	void forget_kept_tween(const Ref<Tween> &tween);

	RowPool rows;
	Ref<Resource> kept_current;
	bool stopping = false;
	Pending pending = PENDING_NONE;
	bool resume_when_left = false;
	// Nil, or the Array of states to take up again.
	Variant resume_list;
	// The next change of state was caused by an event, whose name and data stay readable.
	bool keep_event = false;
	// What would nest deeper than this waits for its turn.
	static constexpr int MOST_NESTED_CHANGES = 100;
	LoopLimiter loop_limiter;

	bool debug_log = false;
	bool stepping = false;

	// What the condition being asked remembers by.
	Variant condition_record;
	int condition_index = -1;
};
