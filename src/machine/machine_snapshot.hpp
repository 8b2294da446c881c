#pragma once

// Machines about to be called one after another: the listeners of a global event, the machines that
// share a variable. Any of them may free the others, so they are held by id and looked up as their
// turn comes. The lists are reused, so that reaching many machines allocates nothing.

#include "machine/event_state.hpp"

class SCMachineBase;

class MachineSnapshot {
	ScratchLists<uint64_t>::Borrowed ids;

	static SCMachineBase *find(uint64_t id);

public:
	MachineSnapshot() : ids(EventRegistry::shared().machine_lists) {}
	// The machines that listen for a global event.
	explicit MachineSnapshot(const StringName &event);
	explicit MachineSnapshot(const Array &machines);

	template <class Work>
	void each(const Work &work) const {
		for (const uint64_t id : ids.list) {
			if (SCMachineBase *machine = find(id)) {
				work(machine);
			}
		}
	}
};
