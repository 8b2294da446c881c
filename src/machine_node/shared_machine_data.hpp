#pragma once

// What all machines of the game have in common: the global variables and the table of machines.
// Made when the first machine asks for it, freed when the library is unloaded.

#include <godot_cpp/variant/dictionary.hpp>

#include <cstdint>

using namespace godot;

struct SharedMachineData {
	// Global name to value, and to the Array of machines that share it.
	Dictionary globals;
	Dictionary sharing;
	// Machine to true, for each one that has joined the scene.
	Dictionary machines;

	// The globals as they were when the scene began that is running now.
	Dictionary globals_at_scene_start;
	uint64_t scene_id = 0;
	bool scene_seen = false;

	static SharedMachineData &shared();
	static void free_shared();
};
