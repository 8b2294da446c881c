#include "machine/scoped_timer.hpp"

#include <godot_cpp/classes/time.hpp>

bool MachineTime::open = false;
bool MachineTime::on = false;
int64_t MachineTime::usec = 0;
int64_t MachineTime::physics_usec = 0;

uint64_t MachineTime::now_usec() {
	return godot::Time::get_singleton()->get_ticks_usec();
}
