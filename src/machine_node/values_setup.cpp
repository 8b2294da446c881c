#include "machine_node/values_setup.hpp"

#include "design/sc_machine_variable.hpp"
#include "machine/machine_run.hpp"
#include "machine/machine_snapshot.hpp"
#include "machine/value_kinds.hpp"
#include "machine_node/shared_machine_data.hpp"
#include "sc_machine.hpp"

#include <godot_cpp/classes/scene_tree.hpp>

#include <cmath>

namespace {

// The variables of a list, without what is no variable. A copy: reading a starting value may run a game's code.
LocalVector<Ref<SCMachineVariable>> declared_in(const Array &variables) {
	LocalVector<Ref<SCMachineVariable>> declared;
	for (int64_t i = 0; i < variables.size(); i++) {
		const Ref<SCMachineVariable> variable = variables[i];
		if (variable.is_valid()) {
			declared.push_back(variable);
		}
	}
	return declared;
}

Ref<SCMachineVariable> find_in(const Array &variables, const StringName &named) {
	for (const Ref<SCMachineVariable> &variable : declared_in(variables)) {
		if (variable->name == named) {
			return variable;
		}
	}
	return Ref<SCMachineVariable>();
}

// So that neither holder can change the other's list or dictionary.
Variant deep_copy(const Variant &value) {
	switch (value.get_type()) {
		case Variant::ARRAY:
			return Array(value).duplicate(true);
		case Variant::DICTIONARY:
			return Dictionary(value).duplicate(true);
		default:
			return value;
	}
}

void take_handed_value(SCMachine *machine, Dictionary &values, const StringName &name, const Variant &given) {
	const Array variables = machine->variables;
	if (!values.has(name) || MachineValues::is_global_in(variables, name)) {
		return;
	}
	if (given.get_type() == Variant::NODE_PATH && MachineValues::holds_node_in(variables, name)) {
		Node *found = machine->get_node_or_null(given);
		values[name] = found != nullptr ? Variant(found) : Variant();
	} else if (MachineValues::same_kind(given, values[name])) {
		values[name] = deep_copy(given);
	}
}

} // namespace

Dictionary MachineValues::starting_values_of(SCMachine *machine) {
	Dictionary values;
	Dictionary globals = SharedMachineData::shared().globals;
	for (const Ref<SCMachineVariable> &variable : declared_in(machine->variables)) {
		Variant value = variable->starting_value_for(machine);
		if (variable->is_global) {
			if (!globals.has(variable->name)) {
				globals[variable->name] = value;
			}
			value = globals[variable->name];
		}
		values[variable->name] = value;
	}
	const Dictionary handed = machine->handed_values;
	const Array handed_names = handed.keys();
	for (int64_t i = 0; i < handed_names.size(); i++) {
		take_handed_value(machine, values, handed_names[i], handed[handed_names[i]]);
	}
	values.merge(machine->starting_values, true);
	return values;
}

void MachineValues::learn_limits(SCMachine *machine) {
	MachineRun &run = machine->run();
	MachineRun::Busy keep(run);
	run.values.forget_limits();
	const LocalVector<Ref<SCMachineVariable>> declared = declared_in(machine->variables);
	for (const Ref<SCMachineVariable> &variable : declared) {
		const Variant low = bound_of(variable->never_below);
		const Variant high = bound_of(variable->never_above);
		if (variable->is_number() && (low.get_type() != Variant::NIL || high.get_type() != Variant::NIL)) {
			run.values.limit(variable->name, low, high);
		}
	}
	for (const Ref<SCMachineVariable> &variable : declared) {
		if (!run.has_value(variable->name)) {
			continue;
		}
		const Variant now = run.get_value(variable->name, Variant());
		const Variant limited = run.within_limits(variable->name, now);
		if (!ValueKinds::is_same(now, limited)) {
			run.write_value(variable->name, limited, true);
		}
	}
}

void MachineValues::start_attributes(SCMachine *machine) {
	MachineRun &run = machine->run();
	MachineRun::Busy keep(run);
	const Dictionary put_in = machine->starting_values;
	for (const Ref<SCMachineVariable> &variable : declared_in(machine->variables)) {
		if (variable->starts == SCMachineVariable::AT_ITS_STARTING_VALUE || !variable->is_number() || variable->is_global || put_in.has(variable->name)) {
			continue;
		}
		const Array limits = run.limits_of(variable->name);
		if (limits[1].get_type() == Variant::NIL) {
			continue;
		}
		const double low = limits[0].get_type() == Variant::NIL ? 0.0 : double(limits[0]);
		const double high = limits[1];
		const double fraction = variable->starts == SCMachineVariable::FULL ? 1.0 : CLAMP(variable->share / 100.0, 0.0, 1.0);
		const double value = low + (high - low) * fraction;
		const bool whole = run.get_value(variable->name, Variant()).get_type() == Variant::INT;
		run.write_value(variable->name, whole ? Variant(ValueKinds::whole_part(std::round(value))) : Variant(value), false);
	}
}

Variant MachineValues::bound_of(const String &typed) {
	const String text = typed.strip_edges();
	if (text.is_empty()) {
		return Variant();
	}
	if (text.is_valid_float()) {
		return text.to_float();
	}
	return StringName(text);
}

bool MachineValues::same_kind(const Variant &value, const Variant &was) {
	if (ValueKinds::is_nothing(was)) {
		return value.get_type() == Variant::NIL || value.get_type() == Variant::OBJECT;
	}
	return value.get_type() == was.get_type() || (ValueKinds::is_number(value) && ValueKinds::is_number(was));
}

bool MachineValues::is_global_in(const Array &variables, const StringName &named) {
	const Ref<SCMachineVariable> variable = find_in(variables, named);
	return variable.is_valid() && variable->is_global;
}

bool MachineValues::holds_node_in(const Array &variables, const StringName &named) {
	const Ref<SCMachineVariable> variable = find_in(variables, named);
	return variable.is_valid() && variable->holds_node();
}

bool MachineValues::holds_whole(SCMachine *machine, const StringName &named) {
	const Ref<SCMachineVariable> variable = find_in(machine->variables, named);
	return variable.is_valid() && variable->default_value.get_type() == Variant::INT;
}

void MachineValues::share_globals(SCMachine *machine) {
	stop_sharing(machine);
	Dictionary sharing = SharedMachineData::shared().sharing;
	for (const Ref<SCMachineVariable> &variable : declared_in(machine->variables)) {
		if (!variable->is_global) {
			continue;
		}
		machine->run().values.shares.insert(variable->name);
		Array machines = sharing.get(variable->name, Array());
		if (!machines.has(machine)) {
			machines.push_back(machine);
		}
		sharing[variable->name] = machines;
	}
}

void MachineValues::stop_sharing(SCMachineBase *machine) {
	Dictionary sharing = SharedMachineData::shared().sharing;
	HashSet<StringName> &shares = machine->run().values.shares;
	for (const StringName &name : shares) {
		Array machines = sharing.get(name, Array());
		machines.erase(machine);
		if (machines.is_empty()) {
			sharing.erase(name);
		}
	}
	shares.clear();
}

bool MachineValues::is_global_value(const StringName &named) {
	return SharedMachineData::shared().globals.has(named);
}

Variant MachineValues::global_value(const StringName &named, const Variant &fallback) {
	return SharedMachineData::shared().globals.get(named, fallback);
}

void MachineValues::set_global_value(const StringName &named, const Variant &value) {
	const SharedMachineData &shared = SharedMachineData::shared();
	MachineRun::share_everywhere(shared.globals, shared.sharing, named, value, 0);
}

Array MachineValues::global_names() {
	return SharedMachineData::shared().globals.keys();
}

void MachineValues::note_scene_start(SCMachine *machine) {
	if (!machine->is_inside_tree()) {
		return;
	}
	const Node *scene = machine->get_tree()->get_current_scene();
	const uint64_t scene_id = scene != nullptr ? scene->get_instance_id() : 0;
	SharedMachineData &shared = SharedMachineData::shared();
	if (shared.scene_seen && shared.scene_id == scene_id) {
		return;
	}
	shared.scene_seen = true;
	shared.scene_id = scene_id;
	shared.globals_at_scene_start = shared.globals.duplicate(true);
}

void MachineValues::put_globals_back(const Array &keep) {
	SharedMachineData &shared = SharedMachineData::shared();
	Dictionary kept;
	for (int64_t i = 0; i < keep.size(); i++) {
		kept[keep[i]] = true;
	}
	const Array names = shared.globals.keys();
	for (int64_t i = 0; i < names.size(); i++) {
		const Variant &name = names[i];
		// Text and StringName are one key to a Dictionary.
		if (kept.has(name)) {
			continue;
		}
		if (shared.globals_at_scene_start.has(name)) {
			shared.globals[name] = deep_copy(shared.globals_at_scene_start[name]);
		} else {
			shared.globals.erase(name);
		}
	}
}
