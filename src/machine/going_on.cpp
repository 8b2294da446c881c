// A running machine written down, and taken up again: with a scene that was left, or a game that was saved.
//
// What an action remembers lies in its slot, its timer and its tween, and these come back as they were. An action that also
// has something to undo when it is left (exit) has made that thing in its world, which is not there any more, so it is entered
// anew. The same goes for one that waits for something that cannot be written down.

#include "action/sc_action.hpp"
#include "action/sc_native_actions.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/tween.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

// A timer whose action is called in another way than natives are.
constexpr int64_t CALLS_SOMETHING_ELSE = -1;
constexpr int64_t CALLS_NOTHING = 0;

String kind_of(const ActionEntry &entry) {
	return entry.object != nullptr ? entry.object->get_class() : String();
}

// Which of its operations a timer calls as it ends.
int64_t called_by(const TimerRecord &timer, const ActionEntry &entry) {
	if (!timer.then.is_valid()) {
		return CALLS_NOTHING;
	}
	const Array bound = timer.then.get_bound_arguments();
	const bool is_native = bound.size() == 5 && bound[0].get_type() == Variant::INT && bound[1].get_validated_object() == entry.object;
	return is_native && entry.runtime != nullptr && entry.runtime->has_other ? int64_t(bound[0]) : CALLS_SOMETHING_ELSE;
}

Dictionary timer_written_down(const TimerRecord &timer, const ActionEntry &entry) {
	Dictionary written;
	written["seconds"] = timer.seconds;
	written["elapsed"] = timer.tween.is_valid() && timer.tween->is_valid() ? timer.tween->get_total_elapsed_time() : 0.0;
	written["real_time"] = timer.real_time;
	written["calls"] = called_by(timer, entry);
	return written;
}

Variant tween_written_down(const KeptTween &kept) {
	if (!kept.does.node.is_valid() || !kept.tween->is_valid()) {
		return false;
	}
	Dictionary written;
	written["node"] = int64_t(uint64_t(kept.does.node));
	written["property"] = kept.does.property;
	written["from"] = kept.does.from;
	written["to"] = kept.does.to;
	written["seconds"] = kept.does.seconds;
	written["transition"] = kept.does.transition;
	written["ease"] = kept.does.ease;
	written["elapsed"] = kept.tween->get_total_elapsed_time();
	return written;
}

Dictionary action_written_down(const RunRow *row, int index) {
	const ActionEntry &entry = row->table->actions[index];
	const ActionRun &run = row->runs[index];
	Dictionary written;
	written["kind"] = kind_of(entry);
	if (!run.started) {
		return written;
	}
	written["started"] = true;
	written["finished"] = run.finished;
	if (run.interval_sum > 0.0) {
		written["interval"] = run.interval_sum;
	}
	if (run.slot.get_type() == Variant::DICTIONARY && !Dictionary(run.slot).is_empty()) {
		written["slot"] = Dictionary(run.slot).duplicate(true);
	}
	if (const TimerRecord *timer = row->timers.getptr(index)) {
		written["timer"] = timer_written_down(*timer, entry);
	}
	const KeptTween *kept = row->kept_tweens.getptr(index);
	if (kept != nullptr && kept->finishes && kept->tween.is_valid()) {
		written["tween"] = tween_written_down(*kept);
	}
	return written;
}

// Regions may be without states.
bool holds_a_state(const RunRow *row) {
	for (const RunRow *child : row->children) {
		if (child != nullptr && child->live) {
			return true;
		}
	}
	return false;
}

Dictionary dictionary_in(const Dictionary &record, const char *name) {
	const Variant found = record.get(name, Variant());
	return found.get_type() == Variant::DICTIONARY ? Dictionary(found) : Dictionary();
}

Array array_in(const Dictionary &record, const char *name) {
	const Variant found = record.get(name, Variant());
	return found.get_type() == Variant::ARRAY ? Array(found) : Array();
}

// Numbers from a file may be of either kind, or none at all.
double number_in(const Dictionary &record, const char *name) {
	const Variant found = record.get(name, Variant());
	const bool is_number = found.get_type() == Variant::FLOAT || found.get_type() == Variant::INT;
	return is_number && Math::is_finite(double(found)) ? double(found) : 0.0;
}

bool flag_in(const Dictionary &record, const char *name) {
	return record.get(name, Variant()).booleanize();
}

StringName name_in(const Dictionary &record, const char *name) {
	const Variant found = record.get(name, Variant());
	return found.get_type() == Variant::STRING_NAME || found.get_type() == Variant::STRING ? StringName(found.stringify()) : StringName();
}

uint64_t id_in(const Dictionary &record, const char *name) {
	const Variant found = record.get(name, Variant());
	return found.get_type() == Variant::INT ? uint64_t(int64_t(found)) : 0;
}

PropertyTween tween_in(const Dictionary &record) {
	PropertyTween does;
	does.node = ObjectID(id_in(record, "node"));
	does.property = NodePath(record.get("property", Variant()).stringify());
	does.from = record.get("from", Variant());
	does.to = record.get("to", Variant());
	does.seconds = number_in(record, "seconds");
	does.transition = CLAMP(int(number_in(record, "transition")), 0, int(Tween::TRANS_SPRING));
	does.ease = CLAMP(int(number_in(record, "ease")), 0, int(Tween::EASE_OUT_IN));
	return does;
}

} // namespace

Dictionary MachineRun::written_down() {
	Busy keep(*this);
	Dictionary record;
	record["running"] = running;
	if (!running) {
		return record;
	}
	record["time"] = game_time_now();
	record["current"] = index.place_of(current);
	record["last_event"] = events.last_name;
	record["last_data"] = events.last_data;
	record["last_sender"] = int64_t(events.last_sender);
	Array written_rows;
	for (const RunRow *row : live_rows()) {
		Dictionary written;
		written["state"] = index.place_of(row->state.ptr());
		written["name"] = row->plan->name;
		written["innermost"] = !holds_a_state(row);
		written["entered_at"] = row->entered_at;
		written["previous"] = index.place_of(row->previous_state.ptr());
		written["entered_by"] = row->entered_by;
		written["inside_finished"] = row->sub_states_finished;
		written["finished_sent"] = row->state_finished_sent;
		Array actions;
		for (int action = 0; action < row->action_count(); action++) {
			actions.push_back(action_written_down(row, action));
		}
		written["actions"] = actions;
		written_rows.push_back(written);
	}
	record["states"] = written_rows;
	return record;
}

// By place, and by name where the design has been edited since.
Resource *MachineRun::state_in(const Dictionary &written) const {
	const StringName name = name_in(written, "name");
	Resource *state = index.at(int64_t(number_in(written, "state")));
	if (state != nullptr && StringName(state->get(MachineNames::shared().state_name)) == name) {
		return state;
	}
	return index.find(name);
}

bool MachineRun::go_on_from(const Dictionary &record) {
	Busy keep(*this);
	const DesignIndex held = index;
	const Array written_rows = array_in(record, "states");
	HashMap<const Resource *, Dictionary> written;
	LocalVector<Resource *> innermost;
	for (int64_t i = 0; i < written_rows.size(); i++) {
		const Dictionary row = written_rows[i].get_type() == Variant::DICTIONARY ? Dictionary(written_rows[i]) : Dictionary();
		Resource *state = state_in(row);
		if (state == nullptr) {
			continue;
		}
		written[state] = row;
		if (flag_in(row, "innermost")) {
			innermost.push_back(state);
		}
	}
	if (innermost.is_empty() || leaving > 0 || !running || !may_enter(innermost[0])) {
		return false;
	}
	clock.end_idle();
	clock.seconds = MAX(number_in(record, "time"), 0.0);
	LocalVector<Resource *> path;
	index.path_to(innermost[0], path);
	ScratchLists<RunRow *>::Borrowed fresh(RunScratch::shared().rows);
	change_depth++;
	enter_as_root(path[0], { innermost.ptr(), innermost.size() }, fresh.list);
	if (!fresh.list.is_empty() && root != nullptr && root->live) {
		Resource *was_current = index.at(int64_t(number_in(record, "current")));
		make_current(was_current != nullptr && row_in(was_current) != nullptr ? was_current : root->deepest_first()->state.ptr());
		events.remember(name_in(record, "last_event"), record.get("last_data", Variant()), id_in(record, "last_sender"));
		for (RunRow *row : fresh.list) {
			if (const Dictionary *kept = written.getptr(row->state.ptr())) {
				row->entered_at = MIN(number_in(*kept, "entered_at"), clock.seconds);
				row->previous_state = Ref<Resource>(index.at(int64_t(number_in(*kept, "previous"))));
				row->entered_by = name_in(*kept, "entered_by");
				row->sub_states_finished = flag_in(*kept, "inside_finished");
				row->state_finished_sent = flag_in(*kept, "finished_sent");
			}
		}
		tell_of_change(current, nullptr, fresh.list);
		for (RunRow *row : fresh.list) {
			const Dictionary *kept = written.getptr(row->state.ptr());
			if (row->live && kept != nullptr) {
				go_on_with(row, array_in(*kept, "actions"));
			}
		}
		for (RunRow *row : fresh.list) {
			if (row->live) {
				start_actions(row);
			}
		}
		for (uint32_t i = fresh.list.size(); i-- > 0;) {
			if (fresh.list[i]->live) {
				check_state_finished(fresh.list[i]);
			}
		}
		refresh_lanes();
	}
	changed_state();
	return true;
}

// First all of what they were, so that none is entered for want of knowing that another has finished.
void MachineRun::go_on_with(RunRow *row, const Array &actions) {
	RunningAs as(*this, row);
	LocalVector<Dictionary> written;
	for (int action = 0; action < row->action_count(); action++) {
		const ActionEntry &entry = row->table->actions[action];
		Dictionary kept = action < actions.size() && actions[action].get_type() == Variant::DICTIONARY ? Dictionary(actions[action]) : Dictionary();
		if (kept.get("kind", Variant()) != Variant(kind_of(entry)) || !flag_in(kept, "started") || is_disabled(entry)) {
			kept = Dictionary();
		}
		written.push_back(kept);
		if (kept.is_empty()) {
			continue;
		}
		ActionRun &run = row->runs[action];
		run.finished = flag_in(kept, "finished");
		run.interval_sum = MAX(number_in(kept, "interval"), 0.0);
		const Dictionary slot = dictionary_in(kept, "slot");
		const bool holds = entry.runtime != nullptr && entry.runtime->holds && !slot.is_empty();
		run.started = !run.finished || !holds;
		if (run.started && !slot.is_empty()) {
			run.slot = slot;
		}
		run.finished = run.finished && run.started;
	}
	for (int action = 0; action < row->action_count() && row->live && node != nullptr; action++) {
		const ActionRun &run = row->runs[action];
		if (!run.started || run.finished || written[action].is_empty() || take_up_action(row, action, written[action]) || !row->live) {
			continue;
		}
		row->runs[action].started = false;
		row->runs[action].interval_sum = 0.0;
		row->runs[action].slot = Variant();
	}
}

// False for one that is to be entered anew.
bool MachineRun::take_up_action(RunRow *row, int action, const Dictionary &written) {
	const ActionEntry &entry = row->table->actions[action];
	if (entry.runtime == nullptr || entry.compiled == nullptr || flag_in(written, "torn")) {
		return false;
	}
	if (entry.compiled->reads_variables()) {
		entry.compiled->read_variables(node);
		if (node == nullptr || !row->live) {
			return true;
		}
	}
	if (entry.runtime->runtime->take_up(node, entry.compiled, action) || node == nullptr || !row->live) {
		return true;
	}
	if (entry.runtime->has_exit) {
		return false;
	}
	const Dictionary timer = dictionary_in(written, "timer");
	if (!timer.is_empty()) {
		const int64_t calls = int64_t(number_in(timer, "calls"));
		const double seconds = number_in(timer, "seconds");
		const double elapsed = CLAMP(number_in(timer, "elapsed"), 0.0, seconds);
		if (calls == CALLS_SOMETHING_ELSE || !(seconds > 0.0) || !node->is_inside_tree()) {
			return false;
		}
		Callable then;
		if (calls != CALLS_NOTHING) {
			then = callable_mp_static(&SCNativeActions::call).bind(calls, entry.object, node, action, 0.0);
		}
		start_timer(row, action, seconds, then, flag_in(timer, "real_time"), elapsed);
		return true;
	}
	if (written.has("tween")) {
		const PropertyTween does = tween_in(dictionary_in(written, "tween"));
		if (!does.node.is_valid() || PropertyTween::start_again == nullptr) {
			return false;
		}
		PropertyTween::start_again(node, action, does, MAX(number_in(dictionary_in(written, "tween"), "elapsed"), 0.0));
		return true;
	}
	return entry.runtime->has_update;
}
