#pragma once

// Machines are called one after another, in the same order in nearly every frame, and each lies somewhere
// else in memory: with thousands of them most of a short call is waiting for that memory. So each
// remembers where the one called after it had its data, and asks for that while it does its own work.
// The addresses are only ever fetched ahead, which is harmless even when nothing lies there any more.

#include <cstddef>

#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif

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
	static constexpr size_t LINE = 64;

	const char *after[PLACES] = {};

	static void fetch(const char *place) {
#if defined(__GNUC__) || defined(__clang__)
		__builtin_prefetch(place);
#elif defined(_M_X64)
		_mm_prefetch(place, _MM_HINT_T0);
#else
		(void)place;
#endif
	}

public:
	void fetch_next() const {
		fetch(after[NODE]);
		// As much of each as an ordinary frame reads.
		fetch(after[RUN]);
		fetch(after[RUN] + LINE);
		fetch(after[RUN] + 2 * LINE);
		fetch(after[RUN] + 3 * LINE);
		fetch(after[ROW]);
		fetch(after[ROW] + LINE);
		fetch(after[ACTIONS]);
		fetch(after[VALUES]);
	}
	bool is_noted(Place place, const void *where) const {
		return after[place] == where;
	}
	void note(Place place, const void *where) {
		after[place] = static_cast<const char *>(where);
	}
};
