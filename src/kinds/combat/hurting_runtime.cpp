// The compiled runtimes of Hurt and Heal: whose health it is and what keeps it from changing. The Hurt Box does the rest.

#include "kinds/combat/hurting.hpp"

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "kinds/combat/hurt_boxes.hpp"
#include "machine/native_names.hpp"

namespace {

struct Names {
	StringName hurt_box_of = "_hurt_box_of";
};

// Through the method, which a script that extends the kind may have replaced; what answers no Hurt Box finds none.
Node *hurt_box_of(SCMachineAction *action, Node *target) {
	Node *found = Object::cast_to<Node>(action->call(NativeNames::of<Names>().hurt_box_of, target).get_validated_object());
	return hurt_boxes::is_one(found) ? found : nullptr;
}

class Hurt : public OnceOrRepeating<Hurt> {
	using Kind = SCHurtAction;

	static void wrong(SCMachineBase *machine, SCMachineAction *action, int index, Kind::Wrong what, Node *node) {
		verbs::say<&Kind::warn_hurt>(action, machine, index, int64_t(what), node);
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const double damage = setting_of<&Kind::damage>(action);
		const double knockback = setting_of<&Kind::knockback>(action);
		const NodePath attacker_path = setting_of<&Kind::attacker_path>(action);
		const Weak<Node> target(values::node_of(machine, setting_of<&Kind::target_path>(action)));
		if (target.get() == nullptr) {
			wrong(machine, action, index, Kind::NO_TARGET, nullptr);
			return;
		}
		const StillHere here(machine);
		Node *hurt_box = hurt_box_of(action, target.get());
		if (!here) {
			return;
		}
		if (hurt_box == nullptr) {
			wrong(machine, action, index, Kind::NO_HURT_BOX, target.get());
		} else if (!(damage > 0.0)) {
			wrong(machine, action, index, Kind::NO_DAMAGE, target.get());
		} else {
			Node *attacker = attacker_path.is_empty() ? nullptr : values::node_of(machine, attacker_path);
			hurt_boxes::take_hit(hurt_box, damage, attacker, knockback);
		}
	}
};

class Heal : public OnceOrRepeating<Heal> {
	using Kind = SCHealAction;

	struct Dose {
		double amount;
		bool revives;
	};

	// What keeps the target from being healed, of which the game maker is told. No Max does not.
	static bool can_be_healed(const Weak<Node> &hurt_box, const Dose &dose, Kind::Wrong &wrong) {
		if (hurt_box.get() == nullptr) {
			wrong = Kind::NO_HURT_BOX;
			return false;
		}
		if (!(dose.amount > 0.0)) {
			wrong = Kind::NO_AMOUNT;
			return false;
		}
		SCMachine *its = hurt_boxes::machine_of(hurt_box.get());
		if (its == nullptr || hurt_box.get() == nullptr) {
			wrong = Kind::NO_HEALTH;
			return false;
		}
		const StringName variable = hurt_boxes::health_variable(hurt_box.get());
		if (values::as_number(its->get_value(variable)) <= 0.0 && !dose.revives) {
			wrong = Kind::BEATEN;
			return false;
		}
		wrong = its->limits_of(variable)[1].get_type() == Variant::NIL ? Kind::NO_MAX : Kind::NOTHING_WRONG;
		return true;
	}

	static void give(SCMachineBase *machine, Node *hurt_box, const Dose &dose, const StringName &event, const StillHere &here) {
		const Weak<SCMachine> its(hurt_boxes::machine_of(hurt_box));
		const Variant given = hurt_boxes::heal(hurt_box, dose.amount, dose.revives);
		SCMachine *healed = its.get();
		if (healed != nullptr && !event.is_empty()) {
			if (here) {
				SCMachineBase::note_sender(event, machine);
			}
			healed->send_event(event, given);
		}
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const Dose dose = { setting_of<&Kind::amount>(action), setting_of<&Kind::revives>(action) };
		const StringName event = setting_of<&Kind::healed_event>(action);
		const Weak<Node> target(values::node_of(machine, setting_of<&Kind::target_path>(action)));
		if (target.get() == nullptr) {
			verbs::say<&Kind::warn_heal>(action, machine, index, int64_t(Kind::NO_TARGET), Variant());
			return;
		}
		const StillHere here(machine);
		const Weak<Node> hurt_box(hurt_box_of(action, target.get()));
		Kind::Wrong wrong = Kind::NOTHING_WRONG;
		const bool can = here && can_be_healed(hurt_box, dose, wrong);
		if (here && wrong != Kind::NOTHING_WRONG) {
			verbs::say<&Kind::warn_heal>(action, machine, index, int64_t(wrong), target.get());
		}
		if (can && here && hurt_box.get() != nullptr) {
			give(machine, hurt_box.get(), dose, event, here);
		}
	}
};

const AddKinds added = {
	add_kind<SCHurtAction, Hurt>(),
	add_kind<SCHealAction, Heal>(),
};

} // namespace
