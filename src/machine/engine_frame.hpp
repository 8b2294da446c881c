#pragma once

// Which frame of which of the engine's two callbacks is under way.

#include <cstdint>

struct EngineFrame {
	uint64_t number = 0;
	bool in_physics = false;

	static EngineFrame now();
	// One number for both: a physics frame never has the stamp of a drawn one.
	uint64_t stamp() const { return number * 2 + (in_physics ? 1 : 0); }
};
