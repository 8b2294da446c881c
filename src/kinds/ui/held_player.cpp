#include "kinds/ui/held_player.hpp"

#include "action/holders.hpp"
#include "action/weak.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/collision_object2d.hpp>
#include <godot_cpp/classes/collision_object3d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/templates/local_vector.hpp>

namespace held_player {

namespace {

struct Names {
	StringName player = "player";
	StringName process_mode = "process_mode";
	StringName disable_mode = "disable_mode";
	// On the player: how many talks hold it.
	StringName held_by = "quillstead_held_by_talks";
};

const Names &names() {
	return NativeNames::of<Names>();
}

int64_t talks_holding(const Node *player) {
	return player->has_meta(names().held_by) ? int64_t(player->get_meta(names().held_by)) : 0;
}

void collect_bodies(Node *node, LocalVector<ObjectID> &bodies) {
	if (Object::cast_to<CollisionObject2D>(node) != nullptr || Object::cast_to<CollisionObject3D>(node) != nullptr) {
		bodies.push_back(ObjectID(node->get_instance_id()));
	}
	for (int i = 0; i < node->get_child_count(); i++) {
		collect_bodies(node->get_child(i), bodies);
	}
}

int64_t put(Node *node, const StringName &property, const SCMachineBase *machine, int64_t value) {
	const int64_t ticket = holders::hold(node, property, machine, value);
	node->set(property, value);
	return ticket;
}

} // namespace

Node *to_hold(SCMachineBase *machine) {
	if (!machine->is_inside_tree()) {
		return nullptr;
	}
	Node *player = machine->get_tree()->get_first_node_in_group(names().player);
	if (player == nullptr || player == machine->target_node()) {
		return nullptr;
	}
	return player->get_process_mode() != Node::PROCESS_MODE_DISABLED || talks_holding(player) > 0 ? player : nullptr;
}

Array hold(SCMachineBase *machine, Node *player, Node *box) {
	const Weak<SCMachineBase> kept_machine(machine);
	const Weak<Node> kept_player(player);
	const Weak<Node> kept_box(box);
	Array tickets;
	player->set_meta(names().held_by, talks_holding(player) + 1);
	LocalVector<ObjectID> bodies;
	collect_bodies(player, bodies);
	for (const ObjectID &id : bodies) {
		Node *body = Object::cast_to<Node>(ObjectDB::get_instance(id));
		if (body != nullptr && kept_machine.get() != nullptr) {
			tickets.push_back(put(body, names().disable_mode, machine, CollisionObject2D::DISABLE_MODE_KEEP_ACTIVE));
		}
	}
	player = kept_player.get();
	box = kept_box.get();
	if (player != nullptr && box != nullptr && kept_machine.get() != nullptr && player->is_ancestor_of(box) &&
			box->get_process_mode() == Node::PROCESS_MODE_INHERIT) {
		tickets.push_back(put(box, names().process_mode, machine, Node::PROCESS_MODE_PAUSABLE));
	}
	player = kept_player.get();
	if (player != nullptr && kept_machine.get() != nullptr) {
		tickets.push_back(put(player, names().process_mode, machine, Node::PROCESS_MODE_DISABLED));
	}
	return tickets;
}

void release(const Variant &player, const Array &tickets) {
	Node *node = player.get_type() == Variant::OBJECT ? Object::cast_to<Node>(player.get_validated_object()) : nullptr;
	if (node != nullptr) {
		const int64_t others = talks_holding(node) - 1;
		if (others > 0) {
			node->set_meta(names().held_by, others);
		} else {
			node->remove_meta(names().held_by);
		}
	}
	// Back to front: the player goes on before its shapes would take part in its standing still.
	for (int64_t i = tickets.size(); i > 0; i--) {
		holders::let_go(tickets[i - 1]);
	}
}

} // namespace held_player
