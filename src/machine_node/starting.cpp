// Starting a machine: what it runs, what its variables hold, what it carried over from the last scene.

#include "design/state_walk.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine_node/design_hooks.hpp"
#include "machine_node/sc_machine.hpp"
#include "machine_node/shared_machine_data.hpp"
#include "machine_node/values_setup.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

#include <utility>

namespace {

// An engine's Dictionary is one pointer to what all its copies share.
bool is_same_storage(const Dictionary &left, const Dictionary &right) {
	return *static_cast<void *const *>(left._native_ptr()) == *static_cast<void *const *>(right._native_ptr());
}

// The game may have gone on elsewhere meanwhile.
void tell_what_changed(MachineRun &run, const Dictionary &record) {
	const Variant kept = record.get("shared", Variant());
	const Dictionary shared = kept.get_type() == Variant::DICTIONARY ? Dictionary(kept) : Dictionary();
	const Array names = shared.keys();
	for (int64_t i = 0; i < names.size() && run.is_running(); i++) {
		const StringName name = names[i].stringify();
		if (run.values.shares.has(name) && run.values.get(name, Variant()) != shared[names[i]]) {
			run.tell_watchers(name);
		}
	}
}

} // namespace

void SCMachine::start() {
	MachineRun &its_run = run();
	MachineRun::Busy keep(its_run);
	// While states are being left nothing may begin: it is done as soon as they have been.
	if (its_run.is_leaving()) {
		its_run.want_start();
		return;
	}
	// A running machine begins anew, unless its last actions have seen to that, or will not have it.
	if (its_run.is_running()) {
		its_run.stop();
		if (its_run.machine() == nullptr || its_run.is_running()) {
			return;
		}
	}

	// Nearly every step below can call user code, and that may free this node, or stop or start it
	// for itself: the later word stands.
	const uint32_t this_start = ++start_count;
	const auto goes_on = [&] { return its_run.machine() != nullptr && start_count == this_start; };
	// What is replaced goes last, as its destructor can call user code as well.
	const OnFirstUse<TypedArray<SCMachineState>> former_states = states;
	const OnFirstUse<TypedArray<SCMachineVariable>> former_variables = variables;
	const Held<TemplateReading> former_reading = started_with;
	const Ref<SCMachineState> former_initial_state = initial_state;

	const Dictionary written = starting_from != nullptr ? *starting_from : Dictionary();
	starting_from = nullptr;

	// What is left of former runs goes.
	start_held = false;
	start_wanted = false;
	its_run.clear_resume_states();
	bind_shared_data();
	if (target_node() == nullptr) {
		find_target();
	}
	if (!is_inside_tree() && !target_path.is_empty()) {
		start_wanted = true;
		return;
	}
	// The first machine to start in a scene notes the globals as they are.
	MachineValues::note_scene_start(this);

	// The design, from the template or from the machine itself.
	int64_t loop_limit = LOOP_INCREMENT_LIMIT;
	Held<TemplateReading> reading;
	DesignIndex design;
	MachineValues::Declared own_variables;
	const Ref<SCMachineTemplate> its_template = machine_template;
	if (its_template.is_valid()) {
		reading = its_template->reading();
		if (!goes_on()) {
			return;
		}
		design = reading->index;
		loop_limit = its_template->loop_increment_limit;
		initial_state = its_template->initial_state;
		states.forget();
		variables.forget();
		started_with = reading;
		template_waits = false;
		its_run.listen_for(reading->listening, reading->global_events);
	} else {
		const Array all = all_states();
		design.build(all);
		own_variables = MachineValues::declared_in(get_variables());
		core_register_globals(all, Array());
	}
	const MachineValues::Declared &declared = reading.is_valid() ? reading->variables : own_variables;
	MachineValues::share_globals(this, declared);
	NamedValues starting = MachineValues::starting_values_of(this, declared);
	if (!goes_on()) {
		return;
	}
	its_run.values.load(std::move(starting));

	// What was written down of this machine, or the record of the one that it goes on from.
	if (goes_on() && !written.is_empty()) {
		take_in_values(written);
	}
	const Dictionary record = goes_on() && written.is_empty() ? claim_carried_record() : Dictionary();
	if (!goes_on()) {
		return;
	}
	const MachineNames &names = MachineNames::shared();
	if (!record.is_empty()) {
		CompanionScripts::call(names.carry_over_script, names.take_in, Array::make(this, record));
		const StringName arrived = CompanionScripts::constant(names.carry_over_script, "ARRIVED_RECORD");
		if (goes_on() && !arrived.is_empty()) {
			set_meta(arrived, record);
		}
	}

	// Limits. What was carried over keeps its values; else some start full.
	if (goes_on()) {
		MachineValues::learn_limits(this, declared);
	}
	if (goes_on() && record.is_empty() && written.is_empty()) {
		MachineValues::start_attributes(this, declared);
	}
	if (!goes_on()) {
		return;
	}

	if (design_hooks::tell_at_start != nullptr) {
		design_hooks::tell_at_start(this);
		if (!goes_on()) {
			return;
		}
	}

	// The first state is entered, once what enters with it can be heard.
	const Ref<SCMachineState> first = initial_state;
	if (first.is_null()) {
		UtilityFunctions::push_warning(vformat("Machine on %s has no state to start in.", name_in_messages()));
		return;
	}
	its_run.begin(design, physics_tick, debug_log, loop_limit);
	if (goes_on() && MachineRun::debugger_active) {
		its_run.call_node(names.report_values);
	}
	if (goes_on()) {
		connect_system_events();
	}
	if (goes_on() && !record.is_empty()) {
		CompanionScripts::call(names.carry_over_script, names.start_timers, Array::make(this, record));
	}
	if (!goes_on()) {
		return;
	}
	if (written.is_empty() || !its_run.go_on_from(written)) {
		its_run.go_to_state(first);
		return;
	}
	tell_what_changed(its_run, written);
}

void SCMachine::start_from(const Dictionary &record) {
	MachineRun &its_run = run();
	const MachineRun::Busy keep(its_run);
	const Dictionary held = record;
	starting_from = &held;
	start();
	if (its_run.machine() != nullptr) {
		starting_from = nullptr;
	}
}

Dictionary SCMachine::written_down() {
	Dictionary record = run().written_down();
	record["held"] = start_held;
	Dictionary own;
	Dictionary shared;
	for (const auto &value : run().values.table) {
		Dictionary &of = run().values.shares.has(value.key) ? shared : own;
		of[value.key] = value.value;
	}
	record["values"] = own;
	record["shared"] = shared;
	return record;
}

// What the game shares is not one machine's to bring back.
void SCMachine::take_in_values(const Dictionary &record) {
	const Variant values = record.get("values", Variant());
	if (values.get_type() != Variant::DICTIONARY) {
		return;
	}
	const Dictionary own = values;
	const Array names = own.keys();
	const MachineRun &its_run = run();
	for (int64_t i = 0; i < names.size() && its_run.machine() != nullptr; i++) {
		const StringName name = names[i].stringify();
		// Also one that only came into being while the machine ran.
		if (!name.is_empty() && !run().values.shares.has(name)) {
			run().write_value(name, own[names[i]], false);
		}
	}
}

TypedArray<SCMachineState> SCMachine::all_states() const {
	StateWalk walk;
	walk.visit_all(get_states());
	walk.visit(initial_state);
	return walk.found;
}

// A machine listens, and shares its globals, from the moment it joins the scene, running or not.
void SCMachine::register_globals(const Array &design) {
	Array listened_by = design;
	if (design.is_empty()) {
		listened_by = machine_template.is_valid() ? machine_template->all_states() : all_states();
	}
	core_register_globals(listened_by, machine_template.is_valid() ? Array(machine_template->global_event_names()) : Array());
	MachineValues::share_globals(this, MachineValues::declared_in(get_variables()));
}

void SCMachine::bind_shared_data() {
	const SharedMachineData &shared = SharedMachineData::shared();
	const ValueTable &values = run().values;
	if (!values.globals.is_made() || !is_same_storage(values.globals.get(), shared.globals) || !is_same_storage(values.sharing.get(), shared.sharing)) {
		core_bind_globals(shared.globals, shared.sharing);
	}
}

void SCMachine::find_target() {
	set_target(target_path.is_empty() ? get_parent() : SCMachineBase::node_at(target_path));
}

Dictionary SCMachine::claim_carried_record() {
	// Only a template that carries over leaves a record behind, and only its machines take one up.
	if (machine_template.is_null() || !machine_template->carries_over) {
		return Dictionary();
	}
	const MachineNames &names = MachineNames::shared();
	if (!CompanionScripts::call(names.carry_over_script, names.is_waiting, Array()).booleanize()) {
		return Dictionary();
	}
	const Variant record = CompanionScripts::call(names.carry_over_script, names.claim, Array::make(this));
	return record.get_type() == Variant::DICTIONARY ? Dictionary(record) : Dictionary();
}
