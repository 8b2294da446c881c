// The compiled runtime of Reparent.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "action/spaces.hpp"
#include "kinds/node/parents.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

// Empty when the node can go there, and why not otherwise.
String why_not(const Node *node, Node *parent) {
	if (node == parent) {
		return vformat("%s cannot be its own parent", node->get_name());
	}
	if (node->is_ancestor_of(parent)) {
		return vformat("%s sits under %s itself", parent->get_name(), node->get_name());
	}
	if (node->get_parent() == nullptr) {
		return vformat("%s is under no node, so it is not in the scene", node->get_name());
	}
	return String();
}

// Out of a size of zero there is no way back into the world.
bool can_keep_place(const Node *node, const Node *parent) {
	if (Object::cast_to<CanvasItem>(node) != nullptr) {
		const CanvasItem *above = Object::cast_to<CanvasItem>(parent);
		return above == nullptr || spaces::has_a_way_back(spaces::world_of(above));
	}
	const Node3D *above = Object::cast_to<Node3D>(parent);
	return Object::cast_to<Node3D>(node) == nullptr || above == nullptr || spaces::has_a_way_back(spaces::world_of(above).basis);
}

void move_later(int64_t node_id, int64_t parent_id, bool keep_place) {
	Node *node = Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(node_id)));
	Node *parent = Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(parent_id)));
	if (node != nullptr && parent != nullptr && why_not(node, parent).is_empty()) {
		SCMachine::move_node(node, parent, keep_place);
	}
}

// The engine moves nothing in or out while a scene is being set up, nor bodies and areas while it tells of touches.
bool has_to_wait(const Node *node, const Node *parent) {
	return Engine::get_singleton()->is_in_physics_frame() || !SCMachine::takes_children_now(parent) || !SCMachine::takes_children_now(node->get_parent());
}

class Reparent : public SCNativeAction {
	using Kind = SCReparentAction;

	static void move(SCMachineBase *machine, SCMachineAction *action) {
		Node *node = verbs::node_or_warn<&Kind::node_path>(machine, action);
		Node *parent = node != nullptr ? verbs::node_or_warn<&Kind::parent_path>(machine, action) : nullptr;
		if (node == nullptr || parent == nullptr || node->get_parent() == parent) {
			return;
		}
		const String why = why_not(node, parent);
		if (!why.is_empty()) {
			verbs::warn(machine, action, vformat("%s, so it stays where it is. Pick another node under Parent Path.", why));
			return;
		}
		bool keep_place = setting_of<&Kind::keep_place>(action);
		if (keep_place && !can_keep_place(node, parent)) {
			keep_place = false;
			verbs::warn(machine, action,
					vformat("%s has a size of 0, so %s could not keep its place and keeps its own Position instead. Give it a size, or tick Keep Place off.",
							parent->get_name(), node->get_name()));
		}
		if (has_to_wait(node, parent)) {
			callable_mp_static(&move_later).call_deferred(int64_t(node->get_instance_id()), int64_t(parent->get_instance_id()), keep_place);
		} else {
			SCMachine::move_node(node, parent, keep_place);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		move(machine, action);
		if (here) {
			machine->finish(index);
		}
	}
};

const AddKinds added = {
	add_kind<SCReparentAction, Reparent>(),
};

} // namespace
