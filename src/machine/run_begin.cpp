// The design and the settings that a machine runs with.

#include "machine/compiled_design.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/engine_debugger.hpp>
#include <godot_cpp/classes/scene_tree.hpp>

bool MachineRun::debugger_active = false;

MachineRun::MachineRun(SCMachineBase *machine_node) : node(machine_node) {}

MachineRun::~MachineRun() {
	if (called_before == this) {
		called_before = nullptr;
	}
	if (root != nullptr) {
		detach_and_retire(root);
	}
}

void MachineRun::abandon() {
	{
		Busy keep(*this);
		forget_globals();
		node = nullptr;
		// No exit is called: the node that the actions would work with is half gone already. What
		// could come back later is killed all the same.
		if (root != nullptr) {
			mark_gone(root);
			detach_and_retire(root);
		}
		running = false;
		make_current(nullptr);
		pending = PENDING_NONE;
		events.held.clear();
		events.postponed.clear();
	}
}

void MachineRun::mark_gone(RunRow *row) {
	for (RunRow *child : row->children) {
		if (child != nullptr) {
			mark_gone(child);
			rows.retire(child);
		}
	}
	row->children.clear();
	row->live = false;
	chain_dirty = true;
	let_timers_go(row);
}

void MachineRun::end_busy() {
	// Recycling lets go of resources and can call user code, so it counts as work itself.
	rows.recycle();
	if (!running) {
		rows.forget_states();
	}
	busy--;
	if (node == nullptr) {
		memdelete(this);
	}
}

void MachineRun::begin(const Array &design, bool on_physics_tick, bool log, int64_t loop_limit, const Dictionary &start_values) {
	Busy keep(*this);
	load_values(start_values);
	values.in_use = true;
	DesignIndex fresh;
	fresh.build(design);
	begin(fresh, on_physics_tick, log, loop_limit);
}

void MachineRun::begin(const DesignIndex &design, bool on_physics_tick, bool log, int64_t loop_limit) {
	Busy keep(*this);
	physics_tick = on_physics_tick;
	debug_log = log;
	loop_limiter.set_limit(loop_limit);
	events.forget_last();
	running_row = nullptr;
	// The states of the former design are kept by its index until the current one is kept apart from it.
	const DesignIndex former = index;
	index = design;
	make_current(current);
	if (node == nullptr) {
		return;
	}
	if (node->is_inside_tree() && !Engine::get_singleton()->is_editor_hint()) {
		GameClocks::attach_to(node->get_tree());
	}
	debugger_active = EngineDebugger::get_singleton()->is_active();
	running = true;
}

void MachineRun::listen_for(const LocalVector<StringName> &heard, const LocalVector<StringName> &global_names) {
	forget_globals();
	if (node == nullptr) {
		return;
	}
	EventRegistry &registry = EventRegistry::shared();
	events.registered_as = node->get_instance_id();
	events.listening = heard;
	for (const StringName &event : heard) {
		registry.listen(event, events.registered_as);
	}
	events.own_globals = global_names;
	for (const StringName &event : global_names) {
		registry.use_global(event);
	}
}

void MachineRun::set_setting(const StringName &name, const Variant &value) {
	const MachineNames &names = MachineNames::shared();
	if (name == names.physics_tick) {
		physics_tick = value.booleanize();
		if (running) {
			refresh_lanes();
		}
	} else if (name == names.debug_log) {
		debug_log = value.booleanize();
	} else if (name == names.values && value.get_type() == Variant::DICTIONARY) {
		load_values(value);
	}
}

Ref<Resource> MachineRun::find_state(const StringName &state_name) const {
	if (index.has_names()) {
		return Ref<Resource>(index.find(state_name));
	}
	const MachineNames &names = MachineNames::shared();
	if (node == nullptr || !node->has_method(names.all_states)) {
		return Ref<Resource>();
	}
	const Array states = node->call(names.all_states);
	for (int64_t i = 0; i < states.size(); i++) {
		const Ref<Resource> state = states[i];
		if (state.is_valid() && StringName(state->get(names.state_name)) == state_name) {
			return state;
		}
	}
	return Ref<Resource>();
}

Variant MachineRun::call_node(const StringName &method, const Variant &first, const Variant &second) {
	if (node == nullptr || !node->has_method(method)) {
		return Variant();
	}
	if (second.get_type() != Variant::NIL) {
		return node->call(method, first, second);
	}
	return first.get_type() != Variant::NIL ? node->call(method, first) : node->call(method);
}
