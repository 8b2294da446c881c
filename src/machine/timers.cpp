// Waiting on time: an action that waits hands over a timer or a tween and is not called meanwhile.

#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine/row_records.hpp"
#include "machine/run_call.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/interval_tweener.hpp>
#include <godot_cpp/classes/tween.hpp>

void (*PropertyTween::start_again)(SCMachineBase *, int, const PropertyTween &, double) = nullptr;

namespace {

void kill_if_valid(const Ref<Tween> &tween) {
	if (tween.is_valid() && tween->is_valid()) {
		tween->kill();
	}
}

} // namespace

RunRow *MachineRun::waiting_row(int action) {
	RunRow *row = running_or_last();
	return row != nullptr && action >= 0 && action < row->action_count() ? row : nullptr;
}

void MachineRun::finish_after(int action, double seconds, const Callable &then, bool real_time) {
	RunRow *row = waiting_row(action);
	if (row == nullptr) {
		return;
	}
	Busy keep(*this);
	if (seconds <= 0.0) {
		if (then.is_valid()) {
			then.call();
		}
		if (row->live) {
			finish(action);
		}
		return;
	}
	if (!row->live || node == nullptr) {
		return;
	}
	if (node->is_inside_tree()) {
		start_timer(row, action, seconds, then, real_time);
		return;
	}
	TimerRecord unstarted;
	unstarted.seconds = seconds;
	unstarted.then = then;
	unstarted.real_time = real_time;
	const TimerRecord former = row_records::put(row->timers, action, unstarted);
	const MachineNames &names = MachineNames::shared();
	const Callable restart(node, names.restart_timeouts);
	if (!node->is_connected(names.tree_entered, restart)) {
		node->connect(names.tree_entered, restart, Object::CONNECT_ONE_SHOT);
	}
}

// A timer that this one replaces runs on: whoever restarts a wait cancels the former one first.
void MachineRun::start_timer(RunRow *row, int action, double seconds, const Callable &then, bool real_time, double elapsed) {
	TimerRecord timer;
	timer.tween = node->create_tween();
	if (timer.tween.is_null()) {
		return;
	}
	if (physics_tick) {
		timer.tween->set_process_mode(Tween::TWEEN_PROCESS_PHYSICS);
	}
	timer.tween->set_ignore_time_scale(real_time);
	timer.tween->tween_interval(seconds);
	timer.tween->connect(MachineNames::shared().tween_finished, RunCall::make(RunCall::TIME_UP, node, row->serial, action, then));
	if (elapsed > 0.0) {
		// By a step and not by a shorter time, so that the end comes in the same frame.
		timer.tween->custom_step(elapsed);
	}
	if (paused) {
		timer.tween->pause();
	}
	timer.seconds = seconds;
	timer.then = then;
	timer.real_time = real_time;
	const TimerRecord former = row_records::put(row->timers, action, timer);
}

void MachineRun::restart_timeouts() {
	if (node == nullptr || !node->is_inside_tree()) {
		return;
	}
	Busy keep(*this);
	ScratchLists<RunRow *>::Borrowed copy(RunScratch::shared().rows);
	for (RunRow *row : live_rows()) {
		copy.list.push_back(row);
	}
	ScratchLists<int>::Borrowed unstarted(RunScratch::shared().actions);
	for (RunRow *row : copy.list) {
		unstarted.list.clear();
		for (const KeyValue<int, TimerRecord> &timer : row->timers) {
			if (timer.value.tween.is_null()) {
				unstarted.list.push_back(timer.key);
			}
		}
		for (const int action : unstarted.list) {
			const TimerRecord *found = row->live && node != nullptr ? row->timers.getptr(action) : nullptr;
			if (found != nullptr && found->tween.is_null()) {
				const TimerRecord timer = *found;
				start_timer(row, action, timer.seconds, timer.then, timer.real_time);
			}
		}
	}
}

void MachineRun::time_up(int64_t serial, int action, const Callable &then) {
	RunRow *row = row_of_serial(serial);
	if (row == nullptr || action < 0 || action >= row->action_count()) {
		return;
	}
	Busy keep(*this);
	TimerRecord spent;
	row_records::take(row->timers, action, spent);
	if (then.is_valid() && row->live && running) {
		const bool was_finished = row->runs[action].finished;
		{
			RunningAs as(*this, row);
			then.call();
		}
		// Finishing inside `then` only sets the flag, and no lane is running that would notice it.
		if (row->live && !was_finished) {
			row->runs[action].finished = false;
		}
	}
	if (row->live) {
		finish_from_outside(row, action);
	}
}

void MachineRun::finish_with_tween(int action, const Ref<Tween> &tween) {
	hold_tween(action, tween, true);
}

void MachineRun::keep_tween(int action, const Ref<Tween> &tween) {
	hold_tween(action, tween, false);
}

// The tween ends with the row. One that finds no row to belong to is killed, lest it act alone.
void MachineRun::hold_tween(int action, const Ref<Tween> &tween, bool finishes) {
	if (tween.is_null()) {
		return;
	}
	RunRow *row = waiting_row(action);
	if (row == nullptr || !row->live || node == nullptr) {
		tween->kill();
		return;
	}
	Busy keep(*this);
	if (tween->is_valid()) {
		if (physics_tick) {
			tween->set_process_mode(Tween::TWEEN_PROCESS_PHYSICS);
		}
		if (paused) {
			tween->pause();
		}
	}
	if (finishes) {
		const StringName &finished = MachineNames::shared().tween_finished;
		const Callable done = RunCall::make(RunCall::TWEEN_DONE, node, row->serial, action);
		if (!tween->is_connected(finished, done)) {
			tween->connect(finished, done);
		}
	}
	KeptTween held;
	held.tween = tween;
	held.finishes = finishes;
	const KeptTween former = row_records::put(row->kept_tweens, action, held);
}

void MachineRun::note_tweened(int action, const PropertyTween &does) {
	RunRow *row = waiting_row(action);
	KeptTween *kept = row != nullptr ? row->kept_tweens.getptr(action) : nullptr;
	if (kept != nullptr) {
		kept->does = does;
	}
}

void MachineRun::tween_done(int64_t serial, int action) {
	RunRow *row = row_of_serial(serial);
	if (row == nullptr) {
		return;
	}
	Busy keep(*this);
	KeptTween done;
	row_records::take(row->kept_tweens, action, done);
	finish_from_outside(row, action);
}

int MachineRun::cancel_timeouts(const Callable &which) {
	struct Waiting {
		int64_t serial;
		int action;
		Variant object;
	};
	if (!which.is_valid()) {
		return 0;
	}
	Busy keep(*this);
	LocalVector<Waiting> waiting;
	for (RunRow *row : live_rows()) {
		for (const KeyValue<int, TimerRecord> &timer : row->timers) {
			waiting.push_back({ row->serial, timer.key, row->table->actions[timer.key].object });
		}
	}
	LocalVector<Waiting> chosen;
	for (const Waiting &timer : waiting) {
		if (which.call(timer.object).booleanize()) {
			chosen.push_back(timer);
		}
	}
	int cancelled = 0;
	for (const Waiting &timer : chosen) {
		RunRow *row = row_of_serial(timer.serial);
		TimerRecord ended;
		if (row != nullptr && row_records::take(row->timers, timer.action, ended)) {
			kill_if_valid(ended.tween);
			cancelled++;
		}
	}
	return cancelled;
}

// Called once the row is dead, so that nothing new can be put into the tables being emptied.
void MachineRun::let_timers_go(RunRow *row) {
	Busy keep(*this);
	TimerRecord timer;
	while (row_records::take_any(row->timers, timer)) {
		kill_if_valid(timer.tween);
	}
	KeptTween kept;
	while (row_records::take_any(row->kept_tweens, kept)) {
		kill_if_valid(kept.tween);
	}
	Rest rest;
	while (row_records::take_any(row->rests, rest)) {
		cancel_rest(rest);
	}
}
