// Telling actions that a variable they watch has been written.

#include "machine/engine_frame.hpp"
#include "machine/machine_run.hpp"

namespace {

// A watcher that writes what it watches is told again from within; this is where that ends.
constexpr int MOST_NESTED_TELLINGS = 50;

} // namespace

// Rows made after `up_to_serial` are left out; a negative one leaves out none.
void MachineRun::tell_watchers(const StringName &name, int64_t up_to_serial) {
	if (values.tell_depth >= MOST_NESTED_TELLINGS) {
		return;
	}
	Busy keep(*this);
	values.tell_depth++;
	bool something_finished = false;
	{
		ScratchLists<RunRow *>::Borrowed pass(RunScratch::shared().rows);
		for (RunRow *row : live_rows()) {
			if (row->table->watches.has(name) && (up_to_serial < 0 || row->serial <= up_to_serial)) {
				pass.list.push_back(row);
			}
		}
		for (RunRow *row : pass.list) {
			if (!running) {
				break;
			}
			if (row->live) {
				// A table never changes and outlives its rows, so its list of watchers needs no copy.
				something_finished = tell_row(row, *row->table->watches.getptr(name)) || something_finished;
			}
		}
	}
	values.tell_depth--;
	if (something_finished && running) {
		refresh_lanes();
	}
}

// Answers whether an action has finished by it.
bool MachineRun::tell_row(RunRow *row, const LocalVector<int> &watchers) {
	RunningAs as(*this, row);
	bool something_finished = false;
	for (const int action : watchers) {
		const bool was_finished = row->runs[action].finished;
		if (!row->runs[action].started || is_disabled(row->table->actions[action])) {
			continue;
		}
		call_update(row, action, 0.0);
		if (!running || !row->live) {
			return something_finished;
		}
		if (was_finished || !row->runs[action].finished) {
			continue;
		}
		something_finished = true;
		start_next_actions(row, action, EngineFrame::now().in_physics ? LANE_PHYSICS : LANE_FRAME);
		if (!running || !row->live) {
			return something_finished;
		}
		check_state_finished(row);
		if (!running || !row->live) {
			return something_finished;
		}
	}
	return something_finished;
}

void MachineRun::tell_every_watcher() {
	LocalVector<StringName> names;
	for (const RunRow *row : live_rows()) {
		for (const KeyValue<StringName, LocalVector<int>> &watch : row->table->watches) {
			if (!names.has(watch.key)) {
				names.push_back(watch.key);
			}
		}
	}
	tell_watchers_of(names);
}

void MachineRun::tell_pending_watchers() {
	LocalVector<StringName> names;
	for (const StringName &name : values.pending_watchers) {
		names.push_back(name);
	}
	values.pending_watchers.clear();
	tell_watchers_of(names);
}

void MachineRun::tell_watchers_of(const LocalVector<StringName> &names) {
	Busy keep(*this);
	for (const StringName &name : names) {
		if (!running || holds_writes()) {
			return;
		}
		tell_watchers(name);
	}
}
