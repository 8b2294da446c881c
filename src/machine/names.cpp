#include "machine/names.hpp"

#include <godot_cpp/core/memory.hpp>

namespace {

MachineNames *shared_names = nullptr;

} // namespace

const MachineNames &MachineNames::shared() {
	if (shared_names == nullptr) {
		shared_names = memnew(MachineNames);
	}
	return *shared_names;
}

void MachineNames::free_shared() {
	if (shared_names != nullptr) {
		memdelete(shared_names);
		shared_names = nullptr;
	}
}
