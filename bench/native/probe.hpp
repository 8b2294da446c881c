#pragma once

// What the measurements ask of the system and no script can.

#include <godot_cpp/classes/ref_counted.hpp>
#include <godot_cpp/core/binder_common.hpp>

class BenchProbe : public godot::RefCounted {
	GDCLASS(BenchProbe, godot::RefCounted)

public:
	// How long this thread has been at work. While the computer gives its time to something else, this clock stands still.
	static double thread_usec();
	// Bytes in use on the C library's heap, or below 0 where that cannot be asked.
	static int64_t heap_in_use();

protected:
	static void _bind_methods();
};
