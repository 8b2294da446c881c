#pragma once

// How long machines take, for whoever asks: one total for all machines of the process and one for
// what of it fell into physics frames. Opened by frame callbacks, by events and by actions finished
// from outside; what happens inside one of these is part of it and not counted again.

#include <cstdint>

class Measuring {
	friend class Measured;
	static bool open;
	static uint64_t now_usec();

public:
	static bool on;
	static int64_t usec;
	static int64_t physics_usec;
};

// Counts the time from here to the end of the block.
class Measured {
	bool counts;
	bool physics;
	uint64_t since = 0;

public:
	explicit Measured(bool in_physics = false) :
			counts(Measuring::on && !Measuring::open), physics(in_physics) {
		if (counts) {
			Measuring::open = true;
			since = Measuring::now_usec();
		}
	}
	~Measured() {
		if (!counts) {
			return;
		}
		const int64_t taken = int64_t(Measuring::now_usec() - since);
		Measuring::usec += taken;
		if (physics) {
			Measuring::physics_usec += taken;
		}
		Measuring::open = false;
	}
	Measured(const Measured &) = delete;
	Measured &operator=(const Measured &) = delete;
};
