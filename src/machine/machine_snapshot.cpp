#include "machine/machine_snapshot.hpp"

#include "machine_node/sc_machine_base.hpp"

MachineSnapshot::MachineSnapshot(const StringName &event) : MachineSnapshot() {
	EventRegistry::shared().listeners_of(event, ids.list);
}

MachineSnapshot::MachineSnapshot(const Array &machines) : MachineSnapshot() {
	for (int64_t i = 0; i < machines.size(); i++) {
		const Object *machine = machines[i].get_validated_object();
		if (machine != nullptr) {
			ids.list.push_back(machine->get_instance_id());
		}
	}
}

SCMachineBase *MachineSnapshot::find(uint64_t id) {
	return Object::cast_to<SCMachineBase>(ObjectDB::get_instance(id));
}
