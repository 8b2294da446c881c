#include "machine_node/shared_machine_data.hpp"

#include <godot_cpp/core/memory.hpp>

namespace {

SharedMachineData *shared_data = nullptr;

} // namespace

SharedMachineData &SharedMachineData::shared() {
	if (shared_data == nullptr) {
		shared_data = memnew(SharedMachineData);
	}
	return *shared_data;
}

void SharedMachineData::free_shared() {
	if (shared_data != nullptr) {
		memdelete(shared_data);
		shared_data = nullptr;
	}
}
