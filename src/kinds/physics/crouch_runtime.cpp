// The compiled runtime of Crouch.

#include "action/add_kind.hpp"
#include "action/holders.hpp"
#include "action/input_words.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "character/body_sweeps.hpp"
#include "kinds/physics/crouch.hpp"
#include "kinds/physics/crouch_shapes.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

using Kind = SCCrouchAction;

struct Names {
	StringName shape = "shape";
	StringName position = "position";
	StringName body = "body";
	StringName shape_node = "shape_node";
	StringName was_shape = "was_shape";
	StringName was_where = "was_where";
	StringName had_room = "had_room";
	StringName lost = "lost";
	StringName holds_shape = "holds_shape";
	StringName holds_position = "holds_position";
};

const Names &names() {
	return NativeNames::of<Names>();
}

Node *node_in(const Dictionary &slot, const StringName &key) {
	const int64_t id = slot.get(key, 0);
	return id != 0 ? Object::cast_to<Node>(ObjectDB::get_instance(ObjectID(uint64_t(id)))) : nullptr;
}

// Whether the height that it lost is free above its head.
bool has_room(Node *node, double lost) {
	bool room = true;
	bodies::visit(node, [&](auto *body) { room = !body->is_inside_tree() || !sweeps::sweep(body, {}, body->get_up_direction() * real_t(lost)).is_blocked; });
	return room;
}

Variant down_of(Node *node) {
	Variant down;
	bodies::visit(node, [&](auto *body) { down = -body->get_up_direction(); });
	return down;
}

void tell_of_no_room(const Variant &kind_then, const Variant &machine_then, int index, const Variant &body_then) {
	Kind *kind = Object::cast_to<Kind>(kind_then.get_validated_object());
	SCMachineBase *machine = Object::cast_to<SCMachineBase>(machine_then.get_validated_object());
	Node *body = Object::cast_to<Node>(body_then.get_validated_object());
	if (kind != nullptr && machine != nullptr && body != nullptr && body->is_inside_tree() && !body->is_queued_for_deletion()) {
		verbs::say<&Kind::warn_crouch>(kind, machine, index, 3, body);
	}
}

class Crouch : public SCNativeAction {
	// What is wrong with it, below zero for nothing.
	static int fault_of(Node *node, Node *shape_node, double height) {
		const Ref<Resource> shape = crouch_shapes::held_by(shape_node);
		if (node == nullptr) {
			return 4;
		}
		if (shape.is_null()) {
			return 0;
		}
		if (!bodies::is_character(node)) {
			return 5;
		}
		const double tall = crouch_shapes::height_of(shape);
		if (tall < 0.0) {
			return 1;
		}
		if (!(height > 0.0)) {
			return 6;
		}
		return height < tall ? -1 : 2;
	}

	static void lower(SCMachineBase *machine, int index, Node *node, Node *shape_node, double height) {
		const StillHere here(machine);
		const Weak<Node> body(node);
		const Weak<Node> holder(shape_node);
		const Ref<Resource> was = crouch_shapes::held_by(shape_node);
		// A shape may have a script.
		const Ref<Resource> shorter = was->duplicate();
		if (shorter.is_null() || !here || body.get() == nullptr || holder.get() == nullptr) {
			return;
		}
		const double lost = crouch_shapes::height_of(was) - height;
		crouch_shapes::set_height_of(shorter, height);
		const Variant was_where = shape_node->get(names().position);
		const Variant moved = crouch_shapes::lowered(shape_node, lost, down_of(node));
		Variant where;
		if (was_where.get_type() == Variant::VECTOR2) {
			where = Vector2(was_where) + Vector2(moved);
		} else {
			where = Vector3(was_where) + Vector3(moved);
		}
		Dictionary slot = machine->slot(index);
		slot[names().body] = int64_t(node->get_instance_id());
		slot[names().shape_node] = int64_t(shape_node->get_instance_id());
		slot[names().was_shape] = was;
		slot[names().was_where] = was_where;
		slot[names().lost] = lost;
		slot[names().holds_shape] = holders::hold(shape_node, names().shape, machine, shorter);
		slot[names().holds_position] = holders::hold(shape_node, names().position, machine, where);
		shape_node->set(names().shape, shorter);
		if (Node *still_there = holder.get()) {
			still_there->set(names().position, where);
		}
	}

	static void stand_up(Dictionary slot) {
		const int64_t shape = slot.get(names().holds_shape, 0);
		const int64_t position = slot.get(names().holds_position, 0);
		slot.erase(names().shape_node);
		slot.erase(names().holds_shape);
		slot.erase(names().holds_position);
		holders::let_go(shape);
		holders::let_go(position);
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		Dictionary slot = machine->slot(index);
		slot.clear();
		Kind *kind = as_kind<Kind>(action);
		if (kind != nullptr) {
			Node *node = values::node_of(machine, kind->body_path);
			Node *shape_node = nullptr;
			bool is_picked = true;
			if (kind->shape_path.is_empty()) {
				shape_node = crouch_shapes::below(node);
			} else {
				shape_node = verbs::node_or_warn<&Kind::shape_path>(machine, action);
				is_picked = crouch_shapes::is_shape_node(shape_node);
				if (shape_node != nullptr && !is_picked) {
					verbs::warn_wrong_class(machine, action, shape_node, "a CollisionShape2D or a CollisionShape3D", verbs::name_of<&Kind::shape_path>());
				}
			}
			const double height = values::number_of(machine, kind->crouched_height, kind->crouched_height_variable);
			const int fault = is_picked || node == nullptr ? fault_of(node, shape_node, height) : -1;
			if (fault >= 0) {
				verbs::say<&Kind::warn_crouch>(kind, machine, index, fault, node);
			} else if (is_picked) {
				lower(machine, index, node, shape_node, height);
			}
		}
		if (here) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		Kind *kind = as_kind<Kind>(action);
		Dictionary slot = machine->slot(index);
		Node *node = node_in(slot, names().body);
		if (kind == nullptr || node == nullptr || node_in(slot, names().shape_node) == nullptr) {
			return;
		}
		const StillHere here(machine);
		const bool room = has_room(node, slot[names().lost]);
		const StringName control = kind->stays_while_held;
		const StringName stood_up_event = kind->stood_up_event;
		const Variant had_room = slot.get(names().had_room, Variant());
		if (had_room.get_type() == Variant::NIL || bool(had_room) != room) {
			slot[names().had_room] = room;
			verbs::send(machine, room ? kind->room_above_event : kind->no_room_above_event);
			if (!here) {
				return;
			}
		}
		if (room && !control.is_empty() && !input_words::is_held(control)) {
			stand_up(slot);
			if (here) {
				verbs::send(machine, stood_up_event);
			}
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Dictionary slot = machine->slot(index);
		Node *node = node_in(slot, names().body);
		const Node *shape_node = node_in(slot, names().shape_node);
		if (shape_node == nullptr) {
			return;
		}
		const bool room = node == nullptr || has_room(node, slot[names().lost]);
		stand_up(slot);
		Kind *kind = as_kind<Kind>(action);
		// Whether it is the whole scene that goes is known only afterwards.
		if (!room && kind != nullptr) {
			callable_mp_static(&tell_of_no_room).bind(kind, machine, index, node).call_deferred();
		}
	}
};

const AddKinds added = {
	add_kind<SCCrouchAction, Crouch>(),
};

} // namespace
