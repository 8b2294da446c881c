#pragma once

// Tells a machine whose states lead straight back to one another from one that is getting
// somewhere. One event may pass through `loop_limit` states, a frame as a whole through a hundred
// times that many.

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/templates/local_vector.hpp>

#include <cstdint>

using namespace godot;

class LoopLimiter {
	static constexpr int64_t FRAME_FACTOR = 100;
	static constexpr int64_t MOST_STATES = 100'000;
	// Not even what gets somewhere goes on for ever: a loop over a list may be what makes the list longer.
	static constexpr int64_t MOST_IN_FRAME = 250'000;

	int64_t chain_count = 0;
	int64_t frame_count = 0;
	// With those that were forgiven.
	int64_t entered_in_frame = 0;
	uint64_t frame = 0;
	struct Walker {
		uint64_t id;
		int64_t steps;
	};
	// Those that moved on in this frame, in the order in which they first did: an outer one before those inside it.
	LocalVector<Walker> walkers;
	uint64_t walkers_frame = 0;

	int64_t loop_limit = 50;

public:
	// At least one state has to be entered. No design goes through more than the most within a frame, and a circle that is
	// stopped only there still ends within a fraction of a second.
	void set_limit(int64_t states) { loop_limit = CLAMP(states, int64_t(1), MOST_STATES); }

	// Counts one entry in the frame `now`, where a physics frame is one of its own. Answers 0 when it is allowed, else how
	// many states were entered before it.
	int64_t count_entry(uint64_t now);
	// An event from outside starts a fresh count, and so does its end.
	void begin_chain() { chain_count = 0; }
	// A ring of states that moved `walker` one step on is forgiven, `most` times a frame. Where rings lie in one another, an
	// inner one begins anew with every step of the one around it.
	void progress_made(uint64_t walker, int64_t most, uint64_t now);
};
