// Asking about the rows of a machine.

#include "design/sc_machine_state.hpp"
#include "machine/machine_run.hpp"

namespace {

void append_live(RunRow *row, RowList &into) {
	if (row == nullptr || !row->live) {
		return;
	}
	into.push_back(row);
	for (RunRow *child : row->children) {
		append_live(child, into);
	}
}

} // namespace

void MachineRun::list_rows() {
	chain_dirty = false;
	chain.clear();
	append_live(root, chain);
}

RunRow *MachineRun::running_or_last() {
	if (running_row != nullptr) {
		return running_row;
	}
	const RowList &live = live_rows();
	return live.is_empty() ? nullptr : live[live.size() - 1];
}

// A serial is given once and never again, so a row that has been left is not found, nor is the one
// that the same state was entered with afterwards.
RunRow *MachineRun::row_of_serial(int64_t serial) {
	if (serial < 1) {
		return nullptr;
	}
	for (RunRow *row : live_rows()) {
		if (row->serial == serial) {
			return row;
		}
	}
	return nullptr;
}

RunRow *MachineRun::row_in(const Resource *state) {
	for (RunRow *row : live_rows()) {
		if (row->state.ptr() == state) {
			return row;
		}
	}
	return nullptr;
}

Array MachineRun::active_chain() {
	TypedArray<SCMachineState> states;
	for (const RunRow *row = root; row != nullptr && row->live; row = row->has_children() ? row->children[0] : nullptr) {
		if (row->compiled != nullptr) {
			states.push_back(row->state);
		}
	}
	return states;
}

Array MachineRun::active_states() {
	TypedArray<SCMachineState> states;
	for (const RunRow *row : live_rows()) {
		// A state of a script's own does not fit in here.
		if (row->compiled != nullptr) {
			states.push_back(row->state);
		}
	}
	return states;
}

Ref<Resource> MachineRun::running_state() {
	const RunRow *row = running_or_last();
	return row != nullptr ? row->state : Ref<Resource>();
}

Dictionary MachineRun::slot(int action_index) {
	RunRow *row = running_or_last();
	return row != nullptr ? slot_of(row, action_index) : Dictionary();
}

Dictionary MachineRun::slot_of(RunRow *row, int action_index) {
	if (action_index < 0 || action_index >= row->action_count()) {
		return Dictionary();
	}
	Variant &memory = row->runs[action_index].slot;
	if (memory.get_type() != Variant::DICTIONARY) {
		memory = Dictionary();
	}
	return memory;
}

bool MachineRun::actions_done_except(int action_index) {
	const RunRow *row = running_or_last();
	return row == nullptr || row->all_finished_except(action_index);
}

Ref<Resource> MachineRun::previous_state() {
	const RunRow *row = running_or_last();
	return row != nullptr ? row->previous_state : Ref<Resource>();
}

StringName MachineRun::entered_by() {
	const RunRow *row = running_or_last();
	return row != nullptr ? row->entered_by : StringName();
}

bool MachineRun::sub_state_finished() {
	const RunRow *row = running_or_last();
	return row != nullptr && row->sub_states_finished;
}

double MachineRun::state_time() {
	const RunRow *row = running_or_last();
	return row != nullptr ? game_time_now() - row->entered_at : 0.0;
}
