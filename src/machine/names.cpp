#include "machine/names.hpp"

#include <godot_cpp/core/memory.hpp>

const MachineNames &MachineNames::make() {
	made = memnew(MachineNames);
	return *made;
}

void MachineNames::free_shared() {
	if (made != nullptr) {
		memdelete(const_cast<MachineNames *>(made));
		made = nullptr;
	}
}
