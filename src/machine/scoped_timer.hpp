#pragma once

// How long machines take, for whoever asks: one total for all machines of the process and one for
// what of it fell into physics frames. Opened by frame callbacks, by events and by actions finished
// from outside; what happens inside one of these is part of it and not counted again.

#include <cstdint>

class MachineTime {
	friend class ScopedTimer;
	static bool open;
	static uint64_t now_usec();

public:
	static bool on;
	static int64_t usec;
	static int64_t physics_usec;
};

// Counts the time from here to the end of the block.
class ScopedTimer {
	bool counts;
	bool physics;
	uint64_t since = 0;

public:
	explicit ScopedTimer(bool in_physics = false) : counts(MachineTime::on && !MachineTime::open), physics(in_physics) {
		if (counts) {
			MachineTime::open = true;
			since = MachineTime::now_usec();
		}
	}
	~ScopedTimer() {
		if (!counts) {
			return;
		}
		const int64_t taken = int64_t(MachineTime::now_usec() - since);
		MachineTime::usec += taken;
		if (physics) {
			MachineTime::physics_usec += taken;
		}
		MachineTime::open = false;
	}
	ScopedTimer(const ScopedTimer &) = delete;
	ScopedTimer &operator=(const ScopedTimer &) = delete;
};
