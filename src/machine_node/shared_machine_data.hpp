#pragma once

// What all machines of the game have in common: the global variables, the table of machines, and what
// needs to be asked or done only once for all of them.
// Made when the first machine asks for it, freed when the library is unloaded.

#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/hash_set.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/string_name.hpp>

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

	// Event name to whether nodes or the application send it by themselves.
	HashMap<StringName, bool> system_events;
	// The tree in which the watcher of input devices stands, and the frame in which it was last asked for.
	uint64_t devices_tree = 0;
	uint64_t devices_asked_at = 0;

	static SharedMachineData &shared();
	static void free_shared();
};
