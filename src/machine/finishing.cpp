// Finished actions and finished states: what starts next, and when FINISHED is offered.

#include "machine/engine_frame.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine/run_call.hpp"
#include "machine/scoped_timer.hpp"
#include "machine_node/sc_machine_base.hpp"

// The nearest earlier action that is there and switched on decides; with none the way is free.
bool MachineRun::way_is_free(const RunRow *row, int action) const {
	for (int before = action - 1; before >= 0; before--) {
		if (!is_disabled(row->table->actions[before])) {
			return row->runs[before].finished;
		}
	}
	return true;
}

void MachineRun::start_actions(RunRow *row) {
	RunningAs as(*this, row);
	for (int action = 0; action < row->action_count(); action++) {
		const ActionEntry &entry = row->table->actions[action];
		if (is_disabled(entry)) {
			row->runs[action].finished = true;
			continue;
		}
		// A wait holds up only the action that asks for it: a later one without still starts.
		if (action > 0 && waits_for_previous(entry) && !way_is_free(row, action)) {
			continue;
		}
		// An earlier action may have finished this one's predecessor, and with that started it already.
		if (row->runs[action].started) {
			continue;
		}
		call_enter(row, action);
		if (!row->live) {
			return;
		}
	}
}

// After `finished_index` has finished: starts the ones waiting for it, as long as they finish at once.
void MachineRun::start_next_actions(RunRow *row, int finished_index, Lane lane) {
	RunningAs as(*this, row);
	for (int next = finished_index + 1; next < row->action_count(); next++) {
		const ActionEntry &entry = row->table->actions[next];
		if (is_disabled(entry)) {
			continue;
		}
		if (row->runs[next].started || !waits_for_previous(entry) || !way_is_free(row, next)) {
			return;
		}
		// One of the other lane is entered by that lane, which the next refresh puts it on.
		if (lane_of(entry) != lane) {
			return;
		}
		call_enter(row, next);
		if (current == nullptr || !row->live || !row->runs[next].finished) {
			return;
		}
	}
}

// Walks up from a row in which something has finished, until something stops it.
void MachineRun::check_state_finished(RunRow *row) {
	for (; row != nullptr; row = row->parent) {
		if (!row->live) {
			return;
		}
		// Every region must stand in an end state that has done all its work.
		if (row->has_children()) {
			row->sub_states_finished = true;
			for (const RunRow *child : row->children) {
				const bool done = child != nullptr && child->live && child->plan->end_state && child->all_finished() &&
						(!child->has_children() || child->sub_states_finished);
				row->sub_states_finished = row->sub_states_finished && done;
			}
		}
		// Told once a visit, and not before its own work and that of the regions is done.
		if (row->state_finished_sent || !row->all_finished() || (row->has_children() && !row->sub_states_finished)) {
			continue;
		}
		row->state_finished_sent = true;
		emit(MachineNames::shared().state_finished, row->state);
		// Whoever heard of it may have left the state.
		if (!row->live || leave_finished(row)) {
			return;
		}
	}
}

// True when what is around the state is none of this one's business any more, or not yet.
bool MachineRun::leave_finished(RunRow *row) {
	const StringName &finished = MachineNames::shared().finished_event;
	if (change_depth < MOST_NESTED_CHANGES) {
		return try_transitions(row, finished, Variant());
	}
	postpone(finished, Variant(), true, row);
	return true;
}

void MachineRun::finish(int action) {
	if (running_row != nullptr) {
		// Whoever is calling the action notices as soon as the call returns.
		if (action >= 0 && action < running_row->action_count()) {
			running_row->runs[action].finished = true;
		}
		return;
	}
	for (RunRow *row : live_rows()) {
		if (action >= 0 && action < row->action_count() && row->runs[action].started && !row->runs[action].finished) {
			finish_from_outside(row, action);
			return;
		}
	}
}

void MachineRun::finish_by_serial(int64_t serial, int action) {
	if (RunRow *row = row_of_serial(serial)) {
		finish_from_outside(row, action);
	}
}

void MachineRun::finish_from_outside(RunRow *row, int action) {
	if (!running || !row->live || action < 0 || action >= row->action_count() || row->runs[action].finished) {
		return;
	}
	Busy keep(*this);
	ScopedTimer timer(false);
	{
		RunningAs as(*this, row);
		row->runs[action].finished = true;
		start_next_actions(row, action, EngineFrame::now().in_physics ? LANE_PHYSICS : LANE_FRAME);
		if (row->live) {
			check_state_finished(row);
		}
	}
	if (row->live) {
		refresh_lanes();
	}
}

bool MachineRun::is_finished(int action) {
	const RunRow *row = running_or_last();
	return row != nullptr && action >= 0 && action < row->action_count() && row->runs[action].finished;
}

Callable MachineRun::finisher(int action) {
	const RunRow *row = running_or_last();
	return RunCall::make(RunCall::FINISH, node, row != nullptr ? row->serial : -1, action);
}
