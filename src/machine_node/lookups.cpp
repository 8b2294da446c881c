// Finding nodes from a machine, and machines from a node.

#include "machine/event_state.hpp"
#include "machine/machine_snapshot.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine.hpp"
#include "machine_node/shared_machine_data.hpp"

#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/core/object.hpp>

namespace {

// The node itself, else its child called Machine, else the first of its children that is a machine.
template <class T>
T *machine_on(Node *node) {
	if (node == nullptr) {
		return nullptr;
	}
	if (T *itself = Object::cast_to<T>(node)) {
		return itself;
	}
	if (T *named = Object::cast_to<T>(node->get_node_or_null(MachineNames::shared().machine_child))) {
		return named;
	}
	for (int i = 0; i < node->get_child_count(); i++) {
		if (T *child = Object::cast_to<T>(node->get_child(i))) {
			return child;
		}
	}
	return nullptr;
}

ObjectID parent_id_of(const Node *node) {
	const Node *parent = node->get_parent();
	return parent != nullptr ? ObjectID(parent->get_instance_id()) : ObjectID();
}

} // namespace

Node *SCMachine::target_node() const {
	return target_id.is_valid() ? Object::cast_to<Node>(ObjectDB::get_instance(target_id)) : nullptr;
}

// Kinds ask for their nodes on every tick, and a path is slow to walk: the answer is kept for as long as
// the node stands where it stood.
Node *SCMachine::node_at(const NodePath &path) {
	if (const KnownNode *known = known_nodes.getptr(path)) {
		Node *node = Object::cast_to<Node>(ObjectDB::get_instance(known->id));
		if (node != nullptr && node->is_inside_tree() && parent_id_of(node) == known->parent && node->get_name() == known->name) {
			return node;
		}
		known_nodes.erase(path);
	}
	Node *node = SCMachineBase::node_at(path);
	if (node != nullptr && node->is_inside_tree()) {
		known_nodes.insert(path, KnownNode{ ObjectID(node->get_instance_id()), parent_id_of(node), node->get_name() });
	}
	return node;
}

TypedArray<SCMachine> SCMachine::machines_in_the_scene() {
	TypedArray<SCMachine> found;
	const Array joined = SharedMachineData::shared().machines.keys();
	for (int64_t i = 0; i < joined.size(); i++) {
		SCMachine *machine = Object::cast_to<SCMachine>(joined[i].get_validated_object());
		if (machine != nullptr && machine->is_inside_tree()) {
			found.push_back(machine);
		}
	}
	return found;
}

int SCMachine::machines_running() {
	int running = 0;
	const Array machines = machines_in_the_scene();
	for (int64_t i = 0; i < machines.size(); i++) {
		const SCMachine *machine = Object::cast_to<SCMachine>(machines[i].get_validated_object());
		running += machine != nullptr && machine->is_running() ? 1 : 0;
	}
	return running;
}

SCMachine *SCMachine::machine_of(Node *node) {
	return machine_on<SCMachine>(node);
}

// What lies above a window is another world, and what lies beside its children is none of their business.
SCMachine *SCMachine::machine_of_or_above(Node *node) {
	for (Node *at = node; at != nullptr; at = at->get_parent()) {
		const bool is_window = Object::cast_to<Window>(at) != nullptr;
		if (is_window && at != node) {
			return nullptr;
		}
		SCMachine *machine = machine_of(at);
		if (machine != nullptr || is_window) {
			return machine;
		}
	}
	return nullptr;
}

void SCMachine::broadcast_event(const StringName &group, const StringName &event_name, const Variant &data) {
	if (event_name.is_empty()) {
		return;
	}
	const StringName event = event_name;
	const Variant carried = data;
	if (is_global_event(event)) {
		EventRegistry::tell_quests(this, event);
		broadcast_everywhere(event, carried);
		return;
	}
	if (!is_inside_tree()) {
		return;
	}
	Array machines;
	const Array members = get_tree()->get_nodes_in_group(group);
	for (int64_t i = 0; i < members.size(); i++) {
		if (SCMachineBase *machine = machine_on<SCMachineBase>(Object::cast_to<Node>(members[i].get_validated_object()))) {
			machines.push_back(machine);
		}
	}
	const MachineSnapshot snapshot(machines);
	if (!machines.is_empty()) {
		EventRegistry::tell_quests(this, event);
	}
	snapshot.each([&](SCMachineBase *machine) { EventRegistry::send_past_quests(machine, event, carried); });
}

bool SCMachine::is_global_event(const StringName &event_name) {
	return EventRegistry::shared().is_global(event_name);
}
