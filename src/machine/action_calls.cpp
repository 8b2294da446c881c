// How the core calls an action: its compiled runtime first, then the compiled class's own operation,
// and for any other object the script's methods by name.

#include "action/sc_action.hpp"
#include "action/sc_native_actions.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine_base.hpp"

namespace {

void read_variables_of(const ActionEntry &entry, SCMachineBase *machine) {
	if (entry.compiled != nullptr) {
		if (entry.compiled->reads_variables()) {
			entry.compiled->read_variables(machine);
		}
		return;
	}
	const MachineNames &names = MachineNames::shared();
	const Variant named = entry.object->get(names.from_variables);
	if (named.get_type() == Variant::DICTIONARY && !Dictionary(named).is_empty() && entry.object->has_method(names.read_variables)) {
		entry.object->call(names.read_variables, machine);
	}
}

} // namespace

// A game may change these three while the machine runs, so they are read at each use.
bool MachineRun::says_it_is_disabled(const ActionEntry &entry) const {
	return entry.object == nullptr || entry.object->get(MachineNames::shared().disabled).booleanize();
}

bool MachineRun::waits_for_previous(const ActionEntry &entry) const {
	if (entry.compiled != nullptr) {
		return entry.compiled->wait_for_previous;
	}
	return entry.object != nullptr && entry.object->get(MachineNames::shared().wait_for_previous).booleanize();
}

double MachineRun::interval_of(const ActionEntry &entry) const {
	if (entry.compiled != nullptr) {
		return entry.compiled->update_interval;
	}
	const Variant interval = entry.object->get(MachineNames::shared().update_interval);
	return interval.get_type() == Variant::INT || interval.get_type() == Variant::FLOAT ? double(interval) : 0.0;
}

void MachineRun::call_enter(RunRow *row, int action) {
	const ActionEntry &entry = row->table->actions[action];
	if (node != nullptr) {
		read_variables_of(entry, node);
	}
	// Reading may have called user code, which may have left the state or entered this very action.
	if (node == nullptr || !row->live || row->runs[action].started) {
		return;
	}
	row->runs[action].started = true;
	if (entry.compiled == nullptr) {
		if (entry.object->has_method(MachineNames::shared().enter)) {
			entry.object->call(MachineNames::shared().enter, node, action);
		}
	} else if (entry.runtime != nullptr) {
		entry.runtime->runtime->enter(node, entry.compiled, action);
	} else {
		entry.compiled->enter(node, action);
		if (entry.finishes_as_it_starts && row->live) {
			row->runs[action].finished = true;
		}
	}
}

void MachineRun::call_update(RunRow *row, int action, double delta) {
	const ActionEntry &entry = row->table->actions[action];
	if (node != nullptr) {
		read_variables_of(entry, node);
	}
	if (node == nullptr || !row->live) {
		return;
	}
	if (entry.compiled == nullptr) {
		if (entry.object->has_method(MachineNames::shared().update)) {
			entry.object->call(MachineNames::shared().update, node, action, delta);
		}
	} else if (entry.runtime == nullptr) {
		entry.compiled->update(node, action, delta);
	} else if (entry.runtime->has_update) {
		entry.runtime->runtime->update(node, entry.compiled, action, delta);
	}
}

void MachineRun::call_exit(RunRow *row, int action) {
	const ActionEntry &entry = row->table->actions[action];
	read_variables_of(entry, node);
	if (node == nullptr) {
		return;
	}
	if (entry.compiled == nullptr) {
		entry.object->call(MachineNames::shared().exit, node, action);
	} else if (entry.runtime == nullptr) {
		entry.compiled->exit(node, action);
	} else if (entry.runtime->has_exit) {
		entry.runtime->runtime->exit(node, entry.compiled, action);
	}
}
