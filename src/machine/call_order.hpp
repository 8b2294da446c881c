#pragma once

// Machines are called one after another, in the same order in nearly every frame, and each lies somewhere
// else in memory: with thousands of them most of a short call is waiting for that memory. So each
// remembers where the one called after it had its data, and asks for that while it does its own work.
// The addresses are only ever fetched ahead, which is harmless even when nothing lies there any more.

#include "machine/fetching.hpp"

#include <cstdint>

class CallOrder {
public:
	enum Place {
		NODE,
		RUN,
		ROW,
		ACTIONS,
		VALUES,
		PLACES,
	};

private:
	// Numbers, because nothing may lie there any more.
	uintptr_t after[PLACES] = {};

public:
	void fetch_next() const {
		constexpr uintptr_t LINE = 64;
		fetching::ahead(after[NODE]);
		// As much of each as an ordinary frame reads.
		fetching::ahead(after[RUN]);
		fetching::ahead(after[RUN] + LINE);
		fetching::ahead(after[RUN] + 2 * LINE);
		fetching::ahead(after[RUN] + 3 * LINE);
		fetching::ahead(after[ROW]);
		fetching::ahead(after[ROW] + LINE);
		fetching::ahead(after[ACTIONS]);
		fetching::ahead(after[VALUES]);
	}
	bool is_noted(Place place, const void *where) const { return after[place] == uintptr_t(where); }
	void note(Place place, const void *where) { after[place] = uintptr_t(where); }
};
