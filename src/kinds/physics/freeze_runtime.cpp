// The compiled runtime of Freeze.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "character/body_sides.hpp"
#include "kinds/physics/body_properties_put.hpp"
#include "kinds/physics/freeze.hpp"
#include "kinds/physics/velocity_bodies.hpp"
#include "machine/native_names.hpp"

namespace {

using Kind = SCFreezeAction;

struct Names {
	StringName freeze = "freeze";
	StringName freeze_mode = "freeze_mode";
	StringName gravity_scale = "gravity_scale";
	StringName sleeping = "sleeping";
	// On a body whose gravity is off: its scale before.
	StringName gravity_before = "quillstead_gravity_before";
	StringName held_freeze = "held_freeze";
	StringName held_mode = "held_mode";
	StringName held_gravity = "held_gravity";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// What one visit of the state does to a body. Setting a property may run a game's code.
struct Change {
	SCMachineBase *machine;
	Weak<Node> body;
	Dictionary slot;
	bool for_a_while;
	StillHere here;

	Change(SCMachineBase *of_machine, const Node *node, int index, bool for_a_while_alone) :
			machine(of_machine), body(node), slot(of_machine->slot(index)), for_a_while(for_a_while_alone), here(of_machine) {}

	void put(const StringName &property, const Variant &value, const StringName &ticket) {
		Node *node = body.get();
		if (!here || node == nullptr) {
			return;
		}
		if (for_a_while) {
			slot[ticket] = body_properties::put_for_a_while(node, property, value, machine);
		} else {
			body_properties::put(node, property, value);
		}
	}

	void wake() {
		if (Node *node = body.get()) {
			node->set(names().sleeping, false);
		}
	}

	void switch_gravity(bool on) {
		Node *node = body.get();
		if (node == nullptr) {
			return;
		}
		const double now = node->get(names().gravity_scale);
		const double before = node->get_meta(names().gravity_before, 1.0);
		if (on && now == 0.0) {
			put(names().gravity_scale, before, names().held_gravity);
		} else if (!on) {
			if (now != 0.0) {
				node->set_meta(names().gravity_before, now);
			}
			put(names().gravity_scale, 0.0, names().held_gravity);
		}
		wake();
	}
};

class Freeze : public SCNativeAction {
	static void work(SCMachineBase *machine, SCMachineAction *action, int index) {
		Node *node = verbs::node_or_warn<&Kind::body_path>(machine, action);
		if (node == nullptr) {
			return;
		}
		if (bodies::is_character(node)) {
			verbs::warn(machine, action,
					vformat("%s is a %s, which only moves when something moves it, so there is nothing to freeze. Leave the state that walks it, or use Set "
							"Gravity "
							"for its gravity.",
							node->get_name(), node->get_class()));
			return;
		}
		if (!moving::visit_rigid(node, [](auto *) {})) {
			verbs::warn_wrong_class(machine, action, node, "a RigidBody2D or a RigidBody3D", verbs::name_of<&Kind::body_path>());
			return;
		}
		const auto what = checked::choice<&Kind::what>(machine, action, Kind::FREEZE);
		Change change(machine, node, index, setting_of<&Kind::put_back_when_left>(action));
		if (what == Kind::FREEZE) {
			const auto as = checked::choice<&Kind::while_frozen>(machine, action, Kind::AS_A_WALL);
			change.put(names().freeze_mode, int64_t(as == Kind::AS_A_MOVER ? RigidBody2D::FREEZE_MODE_KINEMATIC : RigidBody2D::FREEZE_MODE_STATIC),
					names().held_mode);
			change.put(names().freeze, true, names().held_freeze);
		} else if (what == Kind::LET_GO) {
			change.put(names().freeze, false, names().held_freeze);
			change.wake();
		} else {
			change.switch_gravity(what == Kind::GRAVITY_ON);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		work(machine, action, index);
		if (here) {
			machine->finish(index);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override {
		Dictionary slot = machine->slot(index);
		for (const auto &[ticket, property] : { std::pair(names().held_freeze, names().freeze), std::pair(names().held_mode, names().freeze_mode),
					 std::pair(names().held_gravity, names().gravity_scale) }) {
			const int64_t held = slot.get(ticket, 0);
			if (held != 0) {
				slot.erase(ticket);
				body_properties::let_go(held, property);
			}
		}
	}
};

const AddKinds added = {
	add_kind<SCFreezeAction, Freeze>(),
};

} // namespace
