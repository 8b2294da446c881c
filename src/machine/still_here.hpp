#pragma once

// For a runtime that calls something that can call user code and then wants to go on: taken
// before the call, it tells afterwards whether the machine, and the run of the state it was taken
// in, are still there. It also keeps the run itself readable meanwhile.

#include "machine/machine_run.hpp"
#include "machine_node/sc_machine_base.hpp"

class StillHere {
	MachineRun &run;
	MachineRun::Busy busy;
	RunRow *row;

public:
	explicit StillHere(SCMachineBase *machine) : run(machine->run()), busy(run), row(run.row_being_run()) {}
	explicit operator bool() const { return run.machine() != nullptr && run.is_running() && (row == nullptr || row->live); }
};
