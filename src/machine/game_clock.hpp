#pragma once

// Game time of a machine that is not always called. While a machine's main lane is off it is idle:
// instead of counting, it notes where a process-wide clock stood and adds the difference later.

#include <cstdint>

namespace godot {
class Node;
class SceneTree;
} // namespace godot

using namespace godot;

// The four process-wide clocks, attached to one scene tree at a time.
class GameClocks {
public:
	enum Index {
		FRAME,
		FRAME_UNPAUSED,
		PHYSICS,
		PHYSICS_UNPAUSED,
		COUNT,
	};
	static double now(int index);
	// A number that another frame does not have, and that a physics frame does not share with a drawn one. Asked for on every
	// change of state, and therefore counted here.
	static uint64_t frame_serial();
	// Does nothing when this tree is the attached one already, and in the editor.
	static void attach_to(SceneTree *tree);
	// The first process mode other than inherit from this node upward, as Node::ProcessMode; inherit at the top.
	static int process_mode_of(const Node *node);
	// Whether a disabled node stands at or above this one. Never in the editor.
	static bool is_switched_off(const Node *node);
	static void free_shared();
};

struct GameClock {
	// Seconds of the machine's own time, without the idle span under way.
	double seconds = 0.0;
	// What the clock showed when the machine fell idle, -1 when it is not idle.
	double idle_since = -1.0;
	int clock = GameClocks::FRAME;
	// A disabled node's time stands still.
	bool switched_off = false;

	double idle_span() const;
	void end_idle();
};
