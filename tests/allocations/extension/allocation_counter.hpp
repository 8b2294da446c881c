#pragma once

// What a script reaches the counting allocator through. It is there only when the engine was started with that allocator
// preloaded; stories and measurements ask is_available first.

#include <godot_cpp/classes/ref_counted.hpp>
#include <godot_cpp/core/binder_common.hpp>

class AllocationCounter : public godot::RefCounted {
	GDCLASS(AllocationCounter, godot::RefCounted)

public:
	static bool is_available();
	// Counts, on this thread, what is allocated within calls of the library whose path holds this text; false when there is none.
	static bool begin(const godot::String &part_of_path);
	static int64_t end();
	// The distinct places in the library that the last count came from, as offsets for addr2line.
	static godot::PackedStringArray sites();

protected:
	static void _bind_methods();
};
