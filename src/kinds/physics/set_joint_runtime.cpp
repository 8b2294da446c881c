// The compiled runtime of Set Joint.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/holders.hpp"
#include "action/runtime_shapes.hpp"
#include "action/sides.hpp"
#include "action/spaces.hpp"
#include "action/weak.hpp"
#include "kinds/physics/set_joint.hpp"
#include "kinds/physics/set_joint_values.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/joint2d.hpp>
#include <godot_cpp/classes/joint3d.hpp>
#include <godot_cpp/classes/physics_body2d.hpp>
#include <godot_cpp/classes/physics_body3d.hpp>
#include <godot_cpp/core/math.hpp>

namespace {

using Kind = SCSetJointAction;

struct Names {
	StringName node_a = "node_a";
	StringName node_b = "node_b";
	StringName disable_collision = "disable_collision";
	StringName exclude_nodes_from_collision = "exclude_nodes_from_collision";
	StringName position = "position";
	// By property, the ticket of what is put back, all of one joint.
	StringName tickets = "tickets";
	StringName tickets_of = "tickets_of";
};

const Names &names() {
	return NativeNames::of<Names>();
}

bool is_joint(const Node *node) {
	return Object::cast_to<Joint2D>(node) != nullptr || Object::cast_to<Joint3D>(node) != nullptr;
}
bool is_body(const Node *node) {
	return Object::cast_to<PhysicsBody2D>(node) != nullptr || Object::cast_to<PhysicsBody3D>(node) != nullptr;
}

void put_back(SCMachineBase *machine, int index) {
	Dictionary slot = machine->slot(index);
	const Dictionary tickets = slot.get(names().tickets, Dictionary());
	slot.erase(names().tickets);
	const Array each = tickets.values();
	for (int64_t i = each.size(); i > 0; i--) {
		holders::let_go(each[i - 1]);
	}
}

// Changes one joint, for good or for as long as the state runs.
struct Change {
	SCMachineBase *machine;
	const Kind *kind;
	int index;
	Weak<Node> joint;
	StillHere here;

	Change(SCMachineBase *of_machine, const Kind *of_kind, int of_index, const Node *node) :
			machine(of_machine), kind(of_kind), index(of_index), joint(node), here(of_machine) {}

	void hold(const Node *node, const StringName &property, const Variant &value) const {
		Dictionary slot = machine->slot(index);
		const auto id = int64_t(node->get_instance_id());
		if (slot.get(names().tickets_of, 0) != Variant(id)) {
			put_back(machine, index);
		}
		if (!here || joint.get() == nullptr) {
			return;
		}
		if (!slot.has(names().tickets)) {
			slot[names().tickets] = Dictionary();
			slot[names().tickets_of] = id;
		}
		Dictionary tickets = slot[names().tickets];
		if (!tickets.has(property)) {
			tickets[property] = holders::hold(node, property, machine, value);
		}
	}

	void hold_if_asked(const StringName &property, const Variant &value) const {
		const Node *node = here ? joint.get() : nullptr;
		if (node != nullptr && kind->put_back_when_left) {
			hold(node, property, value);
		}
	}

	// What is so already is left alone: the engine would make the joint anew, in the place where its bodies are by now.
	void set(const StringName &property, const Variant &value) const {
		Node *node = here ? joint.get() : nullptr;
		if (node != nullptr && node->get(property) != value) {
			node->set(property, value);
		}
	}

	void put(const StringName &property, const Variant &value) const {
		hold_if_asked(property, value);
		set(property, value);
	}
};

class SetJoint : public OnceOrRepeating<SetJoint> {
	template <auto Path>
	static Node *body_or_warn(SCMachineBase *machine, const Kind *kind, const Node *joint) {
		Node *body = verbs::node_or_warn<Path>(machine, kind);
		if (body == nullptr || !sides::same_or_warn(machine, kind, joint, body, "so nothing was connected", verbs::name_of<Path>())) {
			return nullptr;
		}
		if (!is_body(body)) {
			verbs::warn_wrong_class(machine, kind, body, "a physics body, such as a RigidBody or a StaticBody", verbs::name_of<Path>());
			return nullptr;
		}
		if (!body->is_inside_tree() || !joint->is_inside_tree()) {
			verbs::warn(machine, kind, vformat("%s is not in the scene, so nothing was connected.", (joint->is_inside_tree() ? body : joint)->get_name()));
			return nullptr;
		}
		return body;
	}

	static void move_joint(const Change &change, const Kind *kind, const Node *first, const Node *second) {
		Node *joint = change.joint.get();
		const Variant one = places::position_of(first);
		const Variant other = places::position_of(second != nullptr ? second : first);
		Variant place;
		switch (checked::choice<&Kind::place>(change.machine, kind, Kind::WHERE_IT_IS)) {
			case Kind::WHERE_IT_IS:
				return;
			case Kind::AT_THE_FIRST:
				place = one;
				break;
			case Kind::AT_THE_SECOND:
				place = other;
				break;
			case Kind::HALF_WAY:
				place = spaces::with_vectors(joint, one, other, [](auto from, auto to) { return (from + to) / real_t(2.0); });
				break;
		}
		change.hold_if_asked(names().position, joint->get(names().position));
		if (Node *still = change.joint.get()) {
			places::set_position_of(still, place);
		}
	}

	static bool leads_to(const Node *joint, const StringName &property, const Node *body) {
		const NodePath path = joint->get(property);
		return path.is_empty() ? body == nullptr : body != nullptr && joint->get_node_or_null(path) == body;
	}

	static void connect(SCMachineBase *machine, const Kind *kind, int index, Node *joint) {
		Node *first = body_or_warn<&Kind::first_path>(machine, kind, joint);
		if (first == nullptr) {
			return;
		}
		Node *second = nullptr;
		if (!kind->second_path.is_empty()) {
			second = body_or_warn<&Kind::second_path>(machine, kind, joint);
			if (second == nullptr) {
				return;
			}
		} else if (places::is_2d(joint)) {
			verbs::warn(machine, kind,
					vformat("%s connects two bodies, and no second one is picked, so nothing was connected. Pick one under Second Path, such as a "
							"StaticBody2D.",
							joint->get_name()));
			return;
		}
		if (first == second) {
			verbs::warn(
					machine, kind, vformat("%s cannot be connected with itself, so nothing was done. Pick another body under Second Path.", first->get_name()));
			return;
		}
		if (leads_to(joint, names().node_a, first) && leads_to(joint, names().node_b, second)) {
			return;
		}
		const Change change(machine, kind, index, joint);
		const Weak<Node> weak_first(first);
		const Weak<Node> weak_second(second);
		const NodePath to_first = joint->get_path_to(first);
		const NodePath to_second = second != nullptr ? joint->get_path_to(second) : NodePath();
		change.hold_if_asked(names().node_a, to_first);
		change.hold_if_asked(names().node_b, to_second);
		if (change.joint.get() == nullptr || weak_first.get() == nullptr || (second != nullptr && weak_second.get() == nullptr)) {
			return;
		}
		move_joint(change, kind, first, second);
		change.put(places::is_2d(first) ? names().disable_collision : names().exclude_nodes_from_collision, !kind->bodies_collide);
		change.set(names().node_a, to_first);
		change.set(names().node_b, to_second);
	}

	static void let_go(SCMachineBase *machine, const Kind *kind, int index, Node *joint) {
		const Change change(machine, kind, index, joint);
		change.put(names().node_a, NodePath());
		change.put(names().node_b, NodePath());
	}

	static void set_a_value(SCMachineBase *machine, const Kind *kind, int index, Node *joint) {
		const auto which = checked::choice<&Kind::which>(machine, kind, Kind::LENGTH);
		const joint_values::Value found = joint_values::of(joint, which, checked::choice<&Kind::axis>(machine, kind, Kind::X));
		if (found.property.is_empty()) {
			verbs::warn(machine, kind,
					vformat("%s is a %s, which has no %s, so nothing was changed. It has %s: pick one of these under Which.", joint->get_name(),
							joint->get_class(), joint_values::name_of(which), joint_values::listed(joint)));
			return;
		}
		const Change change(machine, kind, index, joint);
		if (found.form == joint_values::Form::SWITCH || found.form == joint_values::Form::SWITCH_REVERSED) {
			change.put(found.property, kind->on == (found.form == joint_values::Form::SWITCH));
			return;
		}
		const double number = checked::number<&Kind::value>(machine, kind);
		const double taken = CLAMP(number, found.least, found.most);
		if (taken != number) {
			verbs::warn(machine, kind,
					vformat("the %s of %s cannot be %s, so it was taken as %s. Type another under Value.", joint_values::name_of(which), joint->get_name(),
							words::number(number), words::number(taken)));
		}
		change.put(found.property, found.form == joint_values::Form::DEGREES ? Math::deg_to_rad(taken) : taken);
	}

public:
	static constexpr bool HOLDS = true;

	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const Kind *kind = as_kind<Kind>(action);
		Node *joint = kind != nullptr ? verbs::node_or_warn<&Kind::joint_path>(machine, kind) : nullptr;
		if (joint == nullptr) {
			return;
		}
		if (!is_joint(joint)) {
			verbs::warn_wrong_class(machine, kind, joint, "a joint, such as a PinJoint2D or a HingeJoint3D", verbs::name_of<&Kind::joint_path>());
			return;
		}
		switch (checked::choice<&Kind::what>(machine, kind, Kind::CONNECT)) {
			case Kind::CONNECT:
				connect(machine, kind, index, joint);
				break;
			case Kind::LET_GO:
				let_go(machine, kind, index, joint);
				break;
			case Kind::SET_A_VALUE:
				set_a_value(machine, kind, index, joint);
				break;
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { put_back(machine, index); }
};

const AddKinds added = {
	add_kind<SCSetJointAction, SetJoint>(),
};

} // namespace
