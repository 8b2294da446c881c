#include "machine/run_row.hpp"

#include "design/sc_machine_state.hpp"

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>

#include <utility>

bool RunRow::all_finished() const {
	return all_finished_except(-1);
}

bool RunRow::all_finished_except(int index) const {
	for (int i = 0; i < action_count(); i++) {
		if (i != index && !runs[i].finished) {
			return false;
		}
	}
	return true;
}

RunRow *RunRow::deepest_first() {
	RunRow *row = this;
	while (row->has_children() && row->children[0] != nullptr) {
		row = row->children[0];
	}
	return row;
}

bool RunRow::in_a_branch() const {
	for (const RunRow *row = this; row != nullptr; row = row->parent) {
		if (row->slot_in_parent != 0) {
			return true;
		}
	}
	return false;
}

bool RunRow::beside_others() const {
	for (const RunRow *row = this; row->parent != nullptr; row = row->parent) {
		if (row->parent->children.size() > 1) {
			return true;
		}
	}
	return false;
}

void RunRow::stand_for(Resource *entered) {
	if (state.ptr() == entered) {
		return;
	}
	table = nullptr;
	plan = nullptr;
	kept_by_index = 0;
	compiled = Object::cast_to<SCMachineState>(entered);
	state = Ref<Resource>(entered);
}

void RunRow::clear() {
	entered_at = 0.0;
	// The lists keep their room: entering a state like the last one allocates nothing.
	runs.clear();
	timers.clear();
	kept_tweens.clear();
	rests.clear();
	lanes[0].clear();
	lanes[1].clear();
	live = false;
	sub_states_finished = false;
	state_finished_sent = false;
	parent = nullptr;
	slot_in_parent = 0;
	children.clear();
	serial = 0;
}

void RunRow::forget_state() {
	table = nullptr;
	plan = nullptr;
	kept_by_index = 0;
	compiled = nullptr;
	entered_by = StringName();
	// What can call user code goes last.
	const Ref<Resource> former_previous = std::move(previous_state);
	const Ref<Resource> former = std::move(state);
}

RowPool::~RowPool() {
	for (RunRow *row : dead) {
		memdelete(row);
	}
	for (RunRow *row : free) {
		memdelete(row);
	}
}

RunRow *RowPool::take(Resource *state) {
	uint32_t at = free.size();
	while (at > 0 && free[at - 1]->state.ptr() != state) {
		at--;
	}
	if (at == 0) {
		if (free.size() < ENOUGH) {
			RunRow *made = memnew(RunRow);
			made->stand_for(state);
			return made;
		}
		at = 1;
	}
	RunRow *row = free[at - 1];
	free.remove_at(at - 1);
	row->stand_for(state);
	return row;
}

void RowPool::recycle_dead() {
	// Clearing a row lets go of what a game left in it, whose destructor can call user code, which may retire more rows.
	while (!dead.is_empty()) {
		RunRow *row = dead[dead.size() - 1];
		dead.resize(dead.size() - 1);
		row->clear();
		if (free.size() < KEPT) {
			free.push_back(row);
		} else {
			memdelete(row);
		}
	}
}

void RowPool::forget_states() {
	for (uint32_t i = 0; i < free.size(); i++) {
		free[i]->forget_state();
	}
}
