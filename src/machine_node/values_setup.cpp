#include "machine_node/values_setup.hpp"

#include "design/sc_machine_variable.hpp"
#include "machine/machine_run.hpp"
#include "machine/machine_snapshot.hpp"
#include "machine/own_copy.hpp"
#include "machine/value_kinds.hpp"
#include "machine_node/sc_machine.hpp"
#include "machine_node/shared_machine_data.hpp"

#include <godot_cpp/classes/scene_tree.hpp>

#include <cmath>

namespace {

Ref<SCMachineVariable> find_in(const Array &variables, const StringName &named) {
	for (const Ref<SCMachineVariable> &variable : MachineValues::declared_in(variables)) {
		if (variable->name == named) {
			return variable;
		}
	}
	return Ref<SCMachineVariable>();
}

void take_handed_value(SCMachine *machine, NamedValues &values, const StringName &name, const Variant &given) {
	const Array variables = machine->get_variables();
	Variant *value = values.getptr(name);
	if (value == nullptr || MachineValues::is_global_in(variables, name)) {
		return;
	}
	if (given.get_type() == Variant::NODE_PATH && MachineValues::holds_node_in(variables, name)) {
		Node *found = machine->get_node_or_null(given);
		*value = found != nullptr ? Variant(found) : Variant();
	} else if (MachineValues::same_kind(given, *value)) {
		*value = own_copy(given);
	}
}

} // namespace

MachineValues::Declared MachineValues::declared_in(const Array &variables) {
	Declared declared;
	for (int64_t i = 0; i < variables.size(); i++) {
		const Ref<SCMachineVariable> variable = variables[i];
		if (variable.is_valid()) {
			declared.push_back(variable);
		}
	}
	return declared;
}

NamedValues MachineValues::starting_values_of(SCMachine *machine, const Declared &declared) {
	NamedValues values;
	for (const Ref<SCMachineVariable> &variable : declared) {
		Variant value = variable->starting_value_for(machine);
		if (variable->is_global) {
			Dictionary globals = SharedMachineData::shared().globals;
			if (!globals.has(variable->name)) {
				globals[variable->name] = value;
			}
			value = globals[variable->name];
		}
		values.insert(variable->name, value);
	}
	if (machine->handed_values.is_made()) {
		const Dictionary handed = machine->handed_values.get();
		const Array handed_names = handed.keys();
		for (int64_t i = 0; i < handed_names.size(); i++) {
			take_handed_value(machine, values, handed_names[i], handed[handed_names[i]]);
		}
	}
	if (machine->starting_values.is_made()) {
		const Dictionary put_in = machine->starting_values.get();
		const Array names = put_in.keys();
		for (int64_t i = 0; i < names.size(); i++) {
			values.insert(names[i], own_copy(put_in[names[i]]));
		}
	}
	return values;
}

void MachineValues::learn_limits(SCMachine *machine, const Declared &declared) {
	MachineRun &run = machine->run();
	MachineRun::Busy keep(run);
	run.values.forget_limits();
	for (const Ref<SCMachineVariable> &variable : declared) {
		if (!variable->is_number()) {
			continue;
		}
		const Variant low = bound_of(variable->never_below);
		const Variant high = bound_of(variable->never_above);
		if (low.get_type() != Variant::NIL || high.get_type() != Variant::NIL) {
			run.values.limit(variable->name, low, high);
		}
	}
	if (run.values.limits.is_empty()) {
		return;
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

void MachineValues::start_attributes(SCMachine *machine, const Declared &declared) {
	MachineRun &run = machine->run();
	MachineRun::Busy keep(run);
	for (const Ref<SCMachineVariable> &variable : declared) {
		if (variable->starts == SCMachineVariable::AT_ITS_STARTING_VALUE || !variable->is_number() || variable->is_global ||
				(machine->starting_values.is_made() && machine->starting_values->has(variable->name))) {
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
	if (typed.is_empty()) {
		return Variant();
	}
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
	const Ref<SCMachineVariable> variable = find_in(machine->get_variables(), named);
	return variable.is_valid() && variable->default_value.get_type() == Variant::INT;
}

void MachineValues::share_globals(SCMachine *machine, const Declared &declared) {
	stop_sharing(machine);
	HashSet<StringName> &shares = machine->run().values.shares;
	for (const Ref<SCMachineVariable> &variable : declared) {
		if (!variable->is_global || shares.has(variable->name)) {
			continue;
		}
		shares.insert(variable->name);
		Dictionary sharing = SharedMachineData::shared().sharing;
		Array machines = sharing.get(variable->name, Array());
		machines.push_back(machine);
		sharing[variable->name] = machines;
	}
	machine->run().values.note_guards();
}

void MachineValues::stop_sharing(SCMachineBase *machine) {
	HashSet<StringName> &shares = machine->run().values.shares;
	if (shares.is_empty()) {
		return;
	}
	Dictionary sharing = SharedMachineData::shared().sharing;
	for (const StringName &name : shares) {
		Array machines = sharing.get(name, Array());
		// A scene that ends takes its last machine out first: found at once, however many share the name.
		if (!machines.is_empty() && machines.back().get_validated_object() == machine) {
			machines.pop_back();
		} else {
			machines.erase(machine);
		}
		if (machines.is_empty()) {
			sharing.erase(name);
		}
	}
	shares.clear();
	machine->run().values.note_guards();
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
			shared.globals[name] = own_copy(shared.globals_at_scene_start[name]);
		} else {
			shared.globals.erase(name);
		}
	}
}
