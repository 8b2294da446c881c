// The debugger's hold on one machine: pausing it, stepping it, and telling what its actions do.

#include "action/sc_action.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine/row_records.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/tween.hpp>

// With references, because stepping one tween may end the row that held the next.
void MachineRun::collect_tweens(LocalVector<Ref<Tween>> &tweens) {
	for (RunRow *row : live_rows()) {
		for (const KeyValue<int, TimerRecord> &timer : row->timers) {
			if (timer.value.tween.is_valid()) {
				tweens.push_back(timer.value.tween);
			}
		}
		for (const KeyValue<int, KeptTween> &kept : row->kept_tweens) {
			if (kept.value.tween.is_valid()) {
				tweens.push_back(kept.value.tween);
			}
		}
	}
}

// One that has run out takes no further orders, and the tree clears it away only with its own next step.
void MachineRun::forget_kept_tween(const Ref<Tween> &tween) {
	for (RunRow *row : live_rows()) {
		for (const KeyValue<int, KeptTween> &kept : row->kept_tweens) {
			if (kept.value.tween == tween) {
				KeptTween forgotten;
				row_records::take(row->kept_tweens, kept.key, forgotten);
				return;
			}
		}
	}
}

void MachineRun::set_paused(bool on) {
	if (paused == on) {
		return;
	}
	Busy keep(*this);
	paused = on;
	LocalVector<Ref<Tween>> tweens;
	collect_tweens(tweens);
	for (const Ref<Tween> &tween : tweens) {
		if (!tween->is_valid()) {
			continue;
		}
		if (on) {
			tween->pause();
		} else {
			tween->play();
		}
	}
	refresh_lanes();
	if (on) {
		return;
	}
	run_queued_events();
	// An event may have led to a state that pauses the machine again.
	if (!paused) {
		values.pending_watchers.clear();
		tell_every_watcher();
	}
}

void MachineRun::step_once() {
	// An action that steps its own machine would step for ever.
	if (!running || stepping) {
		return;
	}
	Busy keep(*this);
	stepping = true;
	LocalVector<Ref<Tween>> tweens;
	collect_tweens(tweens);
	run_queued_events();
	tell_pending_watchers();
	const double step = 1.0 / MAX(Engine::get_singleton()->get_physics_ticks_per_second(), 1);
	for (const Ref<Tween> &tween : tweens) {
		if (!tween->is_valid()) {
			continue;
		}
		tween->custom_step(step);
		// The step that brings it to its end still answers true; only the next one says that there is nothing left.
		if (!tween->custom_step(0.0)) {
			forget_kept_tween(tween);
		}
	}
	if (current != nullptr) {
		clock.seconds += step;
		run_lane(main_lane(), step);
		if (!physics_tick && current != nullptr) {
			run_lane(LANE_PHYSICS, step);
		}
		call_node(MachineNames::shared().after_step, step);
	}
	stepping = false;
	refresh_lanes();
}

// One row an action: the state's name, the action's index, what it is doing, and its own words.
Array MachineRun::described_live_rows() {
	Busy keep(*this);
	const StringName &live_words = MachineNames::shared().live_words;
	ScratchLists<RunRow *>::Borrowed copy(RunScratch::shared().rows);
	for (RunRow *row : live_rows()) {
		copy.list.push_back(row);
	}
	Array described;
	for (RunRow *row : copy.list) {
		for (int i = 0; i < row->action_count() && row->live && node != nullptr; i++) {
			const ActionEntry &entry = row->table->actions[i];
			if (entry.object == nullptr) {
				continue;
			}
			String status = "running";
			if (is_disabled(entry)) {
				status = "off";
			} else if (!row->runs[i].started) {
				status = "waiting";
			} else if (row->runs[i].finished) {
				status = "done";
			}
			Variant words = String();
			if (entry.compiled != nullptr) {
				words = entry.compiled->live_words(node, String());
			} else if (entry.object->has_method(live_words)) {
				const bool adds_to_a_line = entry.object->get_method_argument_count(live_words) > 1;
				words = adds_to_a_line ? entry.object->call(live_words, node, String()) : entry.object->call(live_words, node);
			}
			Array line;
			line.push_back(row->plan->name);
			line.push_back(i);
			line.push_back(status);
			line.push_back(words);
			described.push_back(line);
		}
	}
	return described;
}
