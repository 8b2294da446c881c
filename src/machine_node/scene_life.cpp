// How a machine becomes part of a scene, leaves it, comes back, and is carried about in it.

#include "machine/companion_scripts.hpp"
#include "machine/debugger_channel.hpp"
#include "machine/game_clock.hpp"
#include "machine/machine_run.hpp"
#include "machine_node/place_in_file.hpp"
#include "machine_node/sc_machine.hpp"
#include "machine_node/shared_machine_data.hpp"
#include "machine_node/values_setup.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/variant/signal.hpp>

namespace {

// The watcher of input devices notes from here on what the player plays with. It is put under the root
// when that has time for it, so only a later machine finds it standing.
void ask_for_devices(SceneTree *tree) {
	SharedMachineData &shared = SharedMachineData::shared();
	if (shared.devices_tree == tree->get_instance_id()) {
		return;
	}
	const uint64_t frame = Engine::get_singleton()->get_process_frames() + 1;
	if (shared.devices_asked_at == frame || Engine::get_singleton()->is_editor_hint()) {
		return;
	}
	shared.devices_asked_at = frame;
	CompanionScripts::call("quillstead_devices", "last_used", Array::make(tree));
	const String watcher = CompanionScripts::constant("quillstead_devices", "NAME");
	if (!watcher.is_empty() && tree->get_root()->has_node(watcher)) {
		shared.devices_tree = tree->get_instance_id();
	}
}

// Stands for the engine being in the middle of telling nodes of a change, among them parents that have been ready before.
int changes_under_way = 0;

class WithinChange {
public:
	WithinChange() { changes_under_way++; }
	~WithinChange() { changes_under_way--; }
	WithinChange(const WithinChange &) = delete;
	WithinChange &operator=(const WithinChange &) = delete;
};

} // namespace

bool SCMachine::takes_children_now(const Node *parent) {
	return parent->is_node_ready() && changes_under_way == 0;
}

// By notification and not by the engine's virtual methods, which a script that extends this class may
// define for itself.
void SCMachine::_notification(int what) {
	if (what == NOTIFICATION_PROCESS || what == NOTIFICATION_PHYSICS_PROCESS) {
		if (keeps_callback(what == NOTIFICATION_PHYSICS_PROCESS)) {
			hear_notification(what);
		}
		return;
	}
	hear_notification(what);
	switch (what) {
		case NOTIFICATION_READY:
			become_ready();
			break;
		case NOTIFICATION_EXIT_TREE:
			leave_tree();
			break;
		case NOTIFICATION_ENABLED:
			if (start_held && is_inside_tree() && !is_switched_off()) {
				const WithinChange within;
				start();
			}
			break;
		case NOTIFICATION_PREDELETE:
			// One that runs outside the tree leaves no other way.
			leave_the_scene();
			break;
		default:
			break;
	}
}

void SCMachine::become_ready() {
	if (is_part_of_edited_scene()) {
		set_process(false);
		set_physics_process(false);
		return;
	}
	MachineRun &its_run = run();
	MachineRun::Busy keep(its_run);
	bind_shared_data();
	find_target();
	warm_up_once();
	if (its_run.machine() == nullptr || !is_inside_tree()) {
		return;
	}
	// The two callbacks of a machine keep one place in the frame.
	if (get_physics_process_priority() == 0 && get_process_priority() != 0) {
		set_physics_process_priority(get_process_priority());
	}
	const bool is_to_start = !was_let_go && !is_running() && (autostart || start_wanted);
	if (is_to_start && !is_switched_off()) {
		// Starting registers what it listens for.
		SharedMachineData::shared().machines[this] = true;
	} else {
		join_the_scene();
	}
	DebuggerChannel::listen();
	DebuggerChannel::mark_if_watched(its_run);
	GameClocks::attach_to(get_tree());
	ask_for_devices(get_tree());
	if (its_run.machine() == nullptr) {
		return;
	}
	if (was_let_go) {
		was_let_go = false;
		const WithinChange within;
		come_back();
	} else if (is_running()) {
		connect_system_events();
	} else if (is_to_start) {
		start_or_hold();
	}
	// The engine has turned both callbacks on, as it does for every node that has them.
	if (its_run.machine() != nullptr) {
		its_run.refresh_lanes();
	}
}

void SCMachine::come_back() {
	MachineRun &its_run = run();
	if (its_run.has_resume_states()) {
		if (its_run.is_leaving()) {
			its_run.set_resume_when_left(true);
		} else {
			its_run.resume_now();
		}
	} else if (is_running()) {
		connect_system_events();
	} else if (start_held || start_wanted) {
		start_or_hold();
	}
}

void SCMachine::start_or_hold() {
	start_wanted = false;
	if (is_switched_off()) {
		start_held = true;
	} else {
		start();
	}
}

void SCMachine::warm_up_once() {
	if (machine_template.is_null() || machine_template->warmed_up) {
		return;
	}
	machine_template->warmed_up = true;
	CompanionScripts::call("warm_up", "warm_up", Array::make(this, machine_template));
}

void SCMachine::leave_tree() {
	if (being_moved) {
		known_nodes.clear();
		return;
	}
	leave_the_scene();
	let_go();
}

// Keeps the states it is in, to take them up again when it next becomes ready.
void SCMachine::let_go() {
	was_let_go = true;
	known_nodes.clear();
	request_ready();
	if (is_running()) {
		core_let_go();
	}
}

void SCMachine::resume() {
	run().resume_now();
}

void SCMachine::join_the_scene() {
	SharedMachineData::shared().machines[this] = true;
	register_globals(Array());
}

void SCMachine::leave_the_scene() {
	SharedMachineData::shared().machines.erase(this);
	core_forget_globals();
	MachineValues::stop_sharing(this);
}

bool SCMachine::is_switched_off() const {
	return GameClocks::is_switched_off(this);
}

// What the machines wait for, tweens and signals, stays in the engine with the callables in it, and these would lead into a
// library that is there no more.
void SCMachine::stop_all_before_unloading() {
	const Array machines = SharedMachineData::shared().machines.keys();
	for (int64_t i = 0; i < machines.size(); i++) {
		SCMachine *machine = Object::cast_to<SCMachine>(machines[i].get_validated_object());
		if (machine == nullptr) {
			continue;
		}
		const MachineRun::Busy keep(machine->run());
		machine->stop();
		if (machine->run().machine() == nullptr) {
			continue;
		}
		const TypedArray<Dictionary> connections = machine->get_incoming_connections();
		for (int64_t c = 0; c < connections.size(); c++) {
			const Dictionary connection = connections[c];
			const Callable callable = connection["callable"];
			Signal signal = connection["signal"];
			if (callable.is_custom() && signal.is_connected(callable)) {
				signal.disconnect(callable);
			}
		}
	}
}

void SCMachine::on_stopped() {
	start_count++;
	start_wanted = false;
	start_held = false;
	disconnect_system_events();
}

void SCMachine::after_step(double step) {
	CompanionScripts::call("quillstead_movers", "step_machine", Array::make(this, step));
}

// A machine whose target stays with it has no reason to notice that both are put elsewhere.
void SCMachine::collect_moving(Node *moving, Node *at, LocalVector<ObjectID> &machines) {
	const SCMachine *machine = Object::cast_to<SCMachine>(at);
	if (machine != nullptr && machine->is_running() && machine->is_inside_tree()) {
		Node *target = machine->target_node();
		if (target != nullptr && (target == moving || moving->is_ancestor_of(target))) {
			machines.push_back(ObjectID(machine->get_instance_id()));
		}
	}
	for (int i = 0; i < at->get_child_count(true); i++) {
		collect_moving(moving, at->get_child(i, true), machines);
	}
}

void SCMachine::move_node(Node *node, Node *parent, bool keep_global_transform) {
	if (node == nullptr || parent == nullptr || node == parent || node->is_ancestor_of(parent)) {
		return;
	}
	place_in_file::note_moving(node);
	LocalVector<ObjectID> machines;
	collect_moving(node, node, machines);
	for (const ObjectID id : machines) {
		Object::cast_to<SCMachine>(ObjectDB::get_instance(id))->being_moved = true;
	}
	if (node->get_parent() == nullptr) {
		parent->add_child(node);
	} else {
		// Outside the tree there is no global transform to keep.
		node->reparent(parent, keep_global_transform && node->is_inside_tree() && parent->is_inside_tree());
	}
	for (const ObjectID id : machines) {
		SCMachine *machine = Object::cast_to<SCMachine>(ObjectDB::get_instance(id));
		if (machine == nullptr) {
			continue;
		}
		machine->being_moved = false;
		if (!machine->is_inside_tree()) {
			machine->leave_tree();
		}
	}
}
