// What is called each frame, and keeping it to what must be.

#include "action/sc_action.hpp"
#include "action/sc_native_actions.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine/scoped_timer.hpp"
#include "machine_node/sc_machine_base.hpp"

MachineRun *MachineRun::called_before = nullptr;

void MachineRun::frame(Lane lane, double delta) {
	call_order.prefetch_next();
	ScopedTimer timer(lane == LANE_PHYSICS);
	if (current == nullptr || paused) {
		return;
	}
	Busy keep(*this);
	if (lane != main_lane()) {
		run_lane(lane, delta);
		note_call_order();
		return;
	}
	clock.seconds += delta;
	run_lane(lane, delta);
	send_changed_values();
	note_call_order();
}

void MachineRun::note_call_order() {
	MachineRun *before = called_before;
	called_before = this;
	if (before == nullptr || before == this || node == nullptr || root == nullptr) {
		return;
	}
	CallOrder &order = before->call_order;
	// In nearly every frame the same one as in the last, in the same state.
	if (order.is_noted(CallOrder::RUN, this) && order.is_noted(CallOrder::ROW, root)) {
		return;
	}
	order.note(CallOrder::NODE, node);
	order.note(CallOrder::RUN, this);
	order.note(CallOrder::ROW, root);
	order.note(CallOrder::ACTIONS, root->runs.ptr());
	order.note(CallOrder::VALUES, values.table.begin());
}

// A pass works on copies: of the rows, and of each row's list of actions. A change of state during
// the pass adds rows that are not in it and kills rows that it then skips.
void MachineRun::run_lane(Lane lane, double delta) {
	RunScratch &scratch = RunScratch::shared();
	const ScratchLists<RunRow *>::Copy<RowList> pass(scratch.rows, live_rows());
	bool something_finished = false;
	bool something_started = false;
	for (RunRow *row : pass) {
		if (!row->live || row->lanes[lane].is_empty()) {
			continue;
		}
		const ScratchLists<int>::Copy<ActionList> actions(scratch.actions, row->lanes[lane]);
		RunningAs as(*this, row);
		for (const int action : actions) {
			const ActionEntry &entry = row->table->actions[action];
			ActionRun &memory = row->runs[action];
			if (is_disabled(entry)) {
				continue;
			}
			const bool was_finished = memory.finished;
			if (!memory.started) {
				// Its turn has come: the one before it has finished in the other lane.
				call_enter(row, action);
				something_started = true;
			} else {
				if (was_finished && !entry.works_after_finishing) {
					continue;
				}
				double elapsed = delta;
				const double interval = entry.compiled != nullptr ? entry.compiled->update_interval : interval_of(entry);
				if (interval > 0.0) {
					memory.interval_sum += delta;
					if (memory.interval_sum < interval) {
						continue;
					}
					elapsed = memory.interval_sum;
					memory.interval_sum = 0.0;
				}
				// What nearly all are: a compiled kind.
				if (entry.runtime != nullptr && entry.compiled != nullptr) {
					if (entry.compiled->reads_variables()) {
						entry.compiled->read_variables(node);
					}
					if (entry.runtime->has_update && node != nullptr && row->live) {
						entry.runtime->runtime->update(node, entry.compiled, action, elapsed);
					}
				} else {
					call_update(row, action, elapsed);
				}
			}
			if (current == nullptr) {
				return;
			}
			if (!row->live) {
				break;
			}
			if (was_finished || !memory.finished) {
				continue;
			}
			something_finished = true;
			start_next_actions(row, action, lane);
			if (current == nullptr) {
				return;
			}
			if (!row->live) {
				break;
			}
			check_state_finished(row);
			if (current == nullptr) {
				return;
			}
			if (!row->live) {
				break;
			}
		}
	}
	if ((something_finished || something_started) && running) {
		refresh_lanes();
	}
}

void MachineRun::switch_lane(Lane lane, bool on) {
	if (lane_known[lane] && lane_on[lane] == on) {
		return;
	}
	// A script that has the callback for itself goes on getting it.
	if (!node->keeps_callback(lane == LANE_PHYSICS)) {
		if (lane == LANE_FRAME) {
			node->set_process(on);
		} else {
			node->set_physics_process(on);
		}
	}
	lane_known[lane] = true;
	lane_on[lane] = on;
}

// Called after anything that can change what must tick, never per frame.
void MachineRun::refresh_lanes() {
	values.watching = false;
	values.watched.clear();
	bool wanted[2] = { false, false };
	for (RunRow *row : live_rows()) {
		for (const KeyValue<StringName, LocalVector<int>> &watch : row->table->watches) {
			values.watching = true;
			values.watched.insert(watch.key);
		}
		row->lanes[LANE_FRAME].clear();
		row->lanes[LANE_PHYSICS].clear();
		for (int action = 0; action < row->action_count(); action++) {
			const ActionEntry &entry = row->table->actions[action];
			if (is_disabled(entry)) {
				continue;
			}
			const ActionRun &memory = row->runs[action];
			const bool ticks = entry.needs_every_tick && (!memory.finished || entry.works_after_finishing) && !row->rests_at(action);
			const bool may_start = action > 0 && way_is_free(row, action);
			if (memory.started ? ticks : may_start) {
				const Lane lane = lane_of(entry);
				row->lanes[lane].push_back(action);
				wanted[lane] = true;
			}
		}
	}
	if (node != nullptr) {
		switch_lane(LANE_FRAME, wanted[LANE_FRAME] && !paused);
		switch_lane(LANE_PHYSICS, wanted[LANE_PHYSICS] && !paused);
	}
	keep_clock_honest(wanted[main_lane()]);
}
