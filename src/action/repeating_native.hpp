#pragma once

// What every kind runs on that does one piece of work: as its state is entered and, when its run mode
// is Every Frame, on every update. It finishes at once, unless it repeats.

#include "machine/still_here.hpp"
#include "sc_action.hpp"
#include "sc_native_actions.hpp"

class RepeatingNative : public SCNativeAction {
protected:
	// May run a game's code: it is not asked for anything afterwards.
	virtual void work(SCMachineBase *machine, SCMachineAction *action, int index) = 0;

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		StillHere here(machine);
		work(machine, action, index);
		if (here && !action->repeats()) {
			machine->finish(index);
		}
	}

	// A variable that wakes a finished action calls this too.
	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		if (action->repeats()) {
			work(machine, action, index);
		}
	}
};
