// Game time of one machine, which goes on while the machine sleeps.

#include "machine/machine_run.hpp"
#include "machine_node/sc_machine_base.hpp"

namespace {

// The lane whose callback counts game time is off, so a process-wide clock counts instead: the one
// that stands still whenever this node would.
int clock_for(const Node *node, bool physics) {
	const Node::ProcessMode mode = Node::ProcessMode(GameClocks::process_mode_of(node));
	const bool runs_while_paused = mode == Node::PROCESS_MODE_WHEN_PAUSED || mode == Node::PROCESS_MODE_ALWAYS;
	if (physics) {
		return runs_while_paused ? GameClocks::PHYSICS : GameClocks::PHYSICS_UNPAUSED;
	}
	return runs_while_paused ? GameClocks::FRAME : GameClocks::FRAME_UNPAUSED;
}

} // namespace

double MachineRun::game_time_now() const {
	return clock.seconds + clock.idle_span();
}

void MachineRun::note_can_process(bool inside_tree) {
	can_process = inside_tree && node != nullptr && node->can_process();
}

void MachineRun::process_mode_changed() {
	if (node == nullptr || !running) {
		return;
	}
	const bool off = GameClocks::is_switched_off(node);
	if (clock.idle_since < 0.0 && off == clock.switched_off) {
		return;
	}
	Busy keep(*this);
	clock.end_idle();
	clock.switched_off = off;
	refresh_lanes();
}

void MachineRun::keep_clock_honest(bool main_lane_has_rows) {
	if (main_lane_has_rows || paused || !running || node == nullptr) {
		clock.end_idle();
		return;
	}
	if (clock.idle_since >= 0.0) {
		return;
	}
	// Asked anew, because nobody notes a node being enabled while its machine is stopped.
	clock.switched_off = GameClocks::is_switched_off(node);
	if (clock.switched_off) {
		return;
	}
	clock.clock = clock_for(node, physics_tick);
	clock.idle_since = GameClocks::now(clock.clock);
}
