#include "machine/run_row.hpp"

#include <godot_cpp/core/memory.hpp>

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

void RunRow::clear() {
	state.unref();
	table = nullptr;
	plan = nullptr;
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
	previous_state.unref();
	entered_by = StringName();
}

RowPool::~RowPool() {
	for (RunRow *row : dead) {
		memdelete(row);
	}
	for (RunRow *row : free) {
		memdelete(row);
	}
}

RunRow *RowPool::take() {
	if (free.is_empty()) {
		return memnew(RunRow);
	}
	RunRow *row = free[free.size() - 1];
	free.resize(free.size() - 1);
	return row;
}

void RowPool::recycle() {
	// Clearing a row lets go of resources, whose end may run a game's code, which may bury more rows.
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
