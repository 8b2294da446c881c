// The compiled runtime of Carry. What is held is followed and let go by the addon's script.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/sides.hpp"
#include "action/spaces.hpp"
#include "action/told_path.hpp"
#include "action/weak.hpp"
#include "kinds/node/carrying.hpp"
#include "kinds/node/own_ways.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/character_body2d.hpp>
#include <godot_cpp/classes/character_body3d.hpp>
#include <godot_cpp/classes/rigid_body2d.hpp>
#include <godot_cpp/classes/rigid_body3d.hpp>

namespace {

using Kind = SCCarryAction;

struct Names {
	StringName script = "quillstead_carried";
	StringName hand_of = "hand_of";
	StringName hangs_on = "hangs_on";
	StringName pick_up = "pick_up";
	StringName let_go = "let_go";
};

const Names &names() {
	return NativeNames::of<Names>();
}

Node *hand_of(Node *thing) {
	const Variant hand = CompanionScripts::call(names().script, names().hand_of, Array::make(thing));
	return hand.get_type() == Variant::OBJECT ? Object::cast_to<Node>(hand.get_validated_object()) : nullptr;
}

bool can_fly(const Node *thing) {
	return Object::cast_to<RigidBody2D>(thing) != nullptr || Object::cast_to<RigidBody3D>(thing) != nullptr ||
			Object::cast_to<CharacterBody2D>(thing) != nullptr || Object::cast_to<CharacterBody3D>(thing) != nullptr;
}

bool is_2d_or_3d(const Node *node) {
	return Object::cast_to<Node2D>(node) != nullptr || Object::cast_to<Node3D>(node) != nullptr;
}

class Carry : public OnceOrRepeating<Carry> {
	static void nothing_to(SCMachineBase *machine, SCMachineAction *action, Kind::Change change, const String &why) {
		const char *done[] = { "pick up", "put down", "throw" };
		verbs::warn_whole(machine, action, Kind::NO_THING,
				vformat("Carry on %s: %s, so there is nothing to %s. Pick it under Node, often a node variable such as the thing just touched.",
						machine->name_in_messages(), why, done[int(change)]));
	}

	// Null, and told, when it cannot be carried about.
	static Node *thing_of(SCMachineBase *machine, SCMachineAction *action, Kind::Change change) {
		const NodePath path = setting_of<&Kind::node_path>(action);
		Node *thing = values::node_of(machine, path);
		if (thing == nullptr) {
			nothing_to(machine, action, change, vformat("there is no node at %s", words::told_path(path)));
		} else if (!is_2d_or_3d(thing)) {
			nothing_to(machine, action, change, vformat("%s is a %s, which is no 2D or 3D node", thing->get_name(), thing->get_class()));
		} else if (!thing->is_inside_tree()) {
			nothing_to(machine, action, change, vformat("%s is not in the scene yet", thing->get_name()));
		} else {
			return thing;
		}
		return nullptr;
	}

	// Null, and told, when there is no hand. `what` is what it would hold.
	static Node *hand_of_setting(SCMachineBase *machine, SCMachineAction *action, const String &what) {
		const NodePath path = setting_of<&Kind::carried_by_path>(action);
		Node *hand = values::node_of(machine, path);
		if (hand == nullptr || !hand->is_inside_tree()) {
			verbs::warn_whole(machine, action, Kind::NO_HAND,
					vformat("Carry on %s: there is no node at %s to carry %s, so it is not picked up. Pick the hand under Carried By, or leave it empty for "
							"Self.",
							machine->name_in_messages(), words::told_path(path), what));
			return nullptr;
		}
		if (!places::has_a_place(hand)) {
			verbs::warn_wrong_class(machine, action, hand, "a 2D or 3D node", verbs::name_of<&Kind::carried_by_path>());
			return nullptr;
		}
		return hand;
	}

	static bool can_hold(SCMachineBase *machine, SCMachineAction *action, Node *hand, Node *thing) {
		const bool nothing_is_picked =
				NodePath(setting_of<&Kind::node_path>(action)).is_empty() && NodePath(setting_of<&Kind::carried_by_path>(action)).is_empty();
		if (hand == thing && nothing_is_picked) {
			nothing_to(machine, action, Kind::PICK_UP, "no node is picked");
			return false;
		}
		if (CompanionScripts::call(names().script, names().hangs_on, Array::make(hand, thing)).booleanize()) {
			verbs::warn_whole(machine, action, Kind::ITSELF,
					vformat("Carry on %s: %s cannot carry itself, so it is not picked up. Pick something else under Carried By.", machine->name_in_messages(),
							thing->get_name()));
			return false;
		}
		return sides::same_or_warn(machine, action, thing, hand, "so it is not picked up", verbs::name_of<&Kind::carried_by_path>());
	}

	static void pick_up(SCMachineBase *machine, SCMachineAction *action) {
		Node *thing = thing_of(machine, action, Kind::PICK_UP);
		const bool hand_is_picked = !NodePath(setting_of<&Kind::carried_by_path>(action)).is_empty();
		if (thing == nullptr && !hand_is_picked) {
			return;
		}
		Node *hand = hand_of_setting(machine, action, thing != nullptr ? String(thing->get_name()) : words::told_path(setting_of<&Kind::node_path>(action)));
		if (thing != nullptr && hand != nullptr && can_hold(machine, action, hand, thing)) {
			const bool snap = setting_of<&Kind::snap_to_the_hand>(action);
			CompanionScripts::call(names().script, names().pick_up, Array::make(thing, hand, snap));
		}
	}

	static void throw_it(SCMachineBase *machine, SCMachineAction *action, Node *thing) {
		Variant velocity;
		if (!can_fly(thing)) {
			verbs::warn_whole(machine, action, Kind::CANNOT_FLY,
					vformat("Carry on %s: %s is a %s, which has no speed of its own, so it is let go but cannot fly. Throw a RigidBody or a CharacterBody.",
							machine->name_in_messages(), thing->get_name(), thing->get_class()));
		} else if (spaces::place_or_warn<&Kind::throw_at>(machine, action)) {
			const Node *hand = hand_of(thing);
			velocity = setting_of<&Kind::throw_at>(action);
			velocity = own_ways::to_world(hand != nullptr ? hand : machine->target_node(), velocity);
			velocity = spaces::on_side_of(thing, velocity);
		}
		CompanionScripts::call(names().script, names().let_go, Array::make(thing, velocity));
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const auto change = checked::choice<&Kind::change>(machine, action, Kind::PICK_UP);
		if (change == Kind::PICK_UP) {
			pick_up(machine, action);
			return;
		}
		Node *thing = thing_of(machine, action, change);
		if (thing == nullptr) {
			return;
		}
		if (change == Kind::THROW) {
			throw_it(machine, action, thing);
		} else if (hand_of(thing) == nullptr) {
			nothing_to(machine, action, change, vformat("nobody carries %s", thing->get_name()));
		} else {
			CompanionScripts::call(names().script, names().let_go, Array::make(thing));
		}
	}
};

const AddKinds added = {
	add_kind<SCCarryAction, Carry>(),
};

} // namespace
