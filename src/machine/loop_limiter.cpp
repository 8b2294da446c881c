#include "machine/loop_limiter.hpp"

int64_t LoopLimiter::count_entry(uint64_t now) {
	if (now != frame) {
		frame = now;
		chain_count = 1;
		frame_count = 1;
		entered_in_frame = 1;
	} else {
		chain_count++;
		frame_count++;
		entered_in_frame++;
	}
	if (entered_in_frame > MOST_IN_FRAME) {
		return entered_in_frame - 1;
	}
	if (chain_count > loop_limit) {
		return chain_count - 1;
	}
	if (frame_count > loop_limit * FRAME_FACTOR) {
		return frame_count - 1;
	}
	return 0;
}

void LoopLimiter::progress_made(uint64_t walker, int64_t most, uint64_t now) {
	if (now != walkers_frame) {
		walkers_frame = now;
		walkers.clear();
	}
	uint32_t at = 0;
	while (at < walkers.size() && walkers[at].id != walker) {
		at++;
	}
	if (at == walkers.size()) {
		walkers.push_back({ walker, 0 });
	}
	walkers[at].steps++;
	if (walkers[at].steps > most) {
		return;
	}
	walkers.resize(at + 1);
	frame_count = frame_count > chain_count ? frame_count - chain_count : 0;
	chain_count = 0;
}
