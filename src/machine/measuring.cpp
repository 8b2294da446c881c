#include "machine/measuring.hpp"

#include <godot_cpp/classes/time.hpp>

bool Measuring::open = false;
bool Measuring::on = false;
int64_t Measuring::usec = 0;
int64_t Measuring::physics_usec = 0;

uint64_t Measuring::now_usec() {
	return godot::Time::get_singleton()->get_ticks_usec();
}
