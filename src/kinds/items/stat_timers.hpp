#pragma once

// Changes of stats that are taken away again after a while. They run out while the game goes on, not while it is paused.

#include "machine_node/sc_machine_base.hpp"

namespace stat_timers {

// A timer that runs already for this source of this stat starts again.
void run_out_later(SCMachineBase *machine, const StringName &stat, const String &source, double seconds);
// A row for each timer of the machine: stat, source, seconds left.
Array running_out(SCMachineBase *machine);
// Without a stat, those of every stat.
void forget_time(SCMachineBase *machine, const StringName &stat, const String &source);
void forget_timers(SCMachineBase *machine);

} // namespace stat_timers
