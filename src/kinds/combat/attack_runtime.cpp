// The compiled runtime of Attack: with what is swung, which way, and for how long. The hit box that it puts there does the hitting.

#include "kinds/combat/attack.hpp"

#include "action/add_kind.hpp"
#include "action/add_later.hpp"
#include "action/checked.hpp"
#include "action/native_calls.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "inventory/bags.hpp"
#include "inventory/items.hpp"
#include "kinds/combat/swings.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/engine.hpp>

namespace {

using Kind = SCAttackAction;

// Of a swing without a weapon.
constexpr double UNARMED_SECONDS = 0.3;
constexpr double UNARMED_KNOCKBACK = 1.0;
constexpr double LEAST_DAMAGE = 1.0;
// A rest of time that is no time.
constexpr double OVER = 0.000001;

struct Names {
	// In the slot.
	StringName left = "left";
	StringName seconds = "seconds";
	StringName box = "box";
	StringName shown = "shown";
	StringName heading = "heading";
	StringName hits = "hits";

	StringName damage = "damage";
	StringName damage_variable = "damage_variable";
	StringName reach = "reach";
	StringName swing_seconds = "swing_seconds";
	StringName knockback = "knockback";
	StringName icon = "icon";

	StringName hit = "hit";
	StringName send_event = "send_event";
};

const Names &names() {
	return NativeNames::of<Names>();
}

double number_in(const Variant &held, double otherwise) {
	return values::is_number(held) && checked::is_sound(double(held)) ? double(held) : otherwise;
}

// The settings, read before anything that may run a game's code.
struct Wanted {
	StringName slot;
	StringName strength_variable;
	StringName hurts_group;
	double unarmed_damage;
	double unarmed_reach;
	bool show_weapon;
	StringName aim_at_variable;

	Wanted(SCMachineBase *machine, SCMachineAction *action) :
			slot(setting_of<&Kind::slot>(action)), strength_variable(setting_of<&Kind::strength_variable>(action)),
			hurts_group(setting_of<&Kind::hurts_group>(action)), unarmed_damage(checked::number<&Kind::unarmed_damage>(machine, action)),
			unarmed_reach(checked::number<&Kind::unarmed_reach>(machine, action)), show_weapon(setting_of<&Kind::show_weapon>(action)),
			aim_at_variable(setting_of<&Kind::aim_at_variable>(action)) {}
};

Ref<Resource> worn_in(Node *swinger, const StringName &slot) {
	Node *bag = slot.is_empty() ? nullptr : bags::on(swinger, bags::WORN);
	const Ref<Resource> item = bag != nullptr ? bags::worn(bag, slot) : Ref<Resource>();
	return items::is_item(item.ptr()) ? item : Ref<Resource>();
}

double damage_of(SCMachineBase *machine, const Ref<Resource> &item) {
	const double own = number_in(items::ask(item, names().damage), 0.0);
	const StringName variable = items::ask(item, names().damage_variable);
	return variable.is_empty() || !machine->has_value(variable) ? own : number_in(machine->get_value(variable), own);
}

swings::Weapon weapon_of(SCMachineBase *machine, Node *swinger, const Wanted &wanted, const StillHere &here) {
	swings::Weapon weapon;
	weapon.damage = wanted.unarmed_damage;
	weapon.reach = wanted.unarmed_reach;
	weapon.seconds = UNARMED_SECONDS;
	weapon.knockback = UNARMED_KNOCKBACK;
	weapon.hurts_group = wanted.hurts_group;
	const Ref<Resource> item = worn_in(swinger, wanted.slot);
	const double damage = here && item.is_valid() ? damage_of(machine, item) : 0.0;
	if (damage > 0.0) {
		const double reach = number_in(items::ask(item, names().reach), 0.0);
		weapon.damage = damage;
		weapon.reach = reach > 0.0 ? reach : wanted.unarmed_reach;
		weapon.seconds = MAX(0.0, number_in(items::ask(item, names().swing_seconds), UNARMED_SECONDS));
		weapon.knockback = number_in(items::ask(item, names().knockback), UNARMED_KNOCKBACK);
		if (wanted.show_weapon) {
			weapon.icon = Object::cast_to<Texture2D>(items::ask(item, names().icon).get_validated_object());
		}
	}
	return weapon;
}

// Of a swing under way. Everything in the slot may be gone by now.
Node *node_in(const Dictionary &slot, const StringName &key) {
	return Object::cast_to<Node>(slot.get(key, Variant()).get_validated_object());
}

void end_swing(SCMachineBase *machine, int index) {
	Dictionary slot = machine->slot(index);
	if (Node *box = node_in(slot, names().box)) {
		swings::switch_off(box);
	}
	if (Node *shown = node_in(slot, names().shown)) {
		swings::take_away(shown);
	}
	slot.erase(names().box);
	slot.erase(names().shown);
	slot.erase(names().left);
}

// Told by the next update: sent from the box's signal, which comes within the physics frame, the last hits of a swing would come
// after its end.
void on_hit(SCMachineBase *machine, SCMachineAction *, int index, const Array &handed_over) {
	Dictionary slot = machine->slot(index);
	Array hits = slot.get(names().hits, Array());
	hits.push_back(handed_over.is_empty() ? Variant() : handed_over[0]);
	slot[names().hits] = hits;
}

// All of them, also when the first leads to another state. Later, for a swing that another event ends: it has hit what it hit.
void tell_of_hits(SCMachineBase *machine, SCMachineAction *action, int index, bool later = false) {
	Dictionary slot = machine->slot(index);
	if (!slot.has(names().hits)) {
		return;
	}
	const Array hits = slot[names().hits];
	slot.erase(names().hits);
	const StringName event = setting_of<&Kind::hit_event>(action);
	const Weak<SCMachineBase> telling(machine);
	for (int i = 0; i < hits.size() && !event.is_empty() && telling.get() != nullptr; i++) {
		if (later) {
			machine->call_deferred(names().send_event, event, hits[i]);
		} else {
			verbs::send(machine, event, hits[i].get_validated_object());
		}
	}
}

// While the physics tell of what they found, the engine takes no areas; and a parent that is about to be ready takes no children.
void put_under(Node *swinger, Node *node) {
	if (Engine::get_singleton()->is_in_physics_frame() || !SCMachine::takes_children_now(swinger)) {
		add_later::to(swinger, node);
	} else {
		swinger->add_child(node, true);
	}
}

class Attack : public SCNativeAction {
	static double strength(SCMachineBase *machine, SCMachineAction *action, int index, const StringName &variable) {
		if (variable.is_empty()) {
			return 0.0;
		}
		if (!machine->has_value(variable)) {
			verbs::say<&Kind::warn_attack>(action, machine, index, int64_t(Kind::NO_STRENGTH), Variant());
			return 0.0;
		}
		return number_in(machine->get_value(variable), 0.0);
	}

	static Node *aimed_at(SCMachineBase *machine, SCMachineAction *action, int index, const StringName &variable) {
		if (variable.is_empty()) {
			return nullptr;
		}
		if (!machine->has_value(variable)) {
			verbs::say<&Kind::warn_attack>(action, machine, index, int64_t(Kind::NO_AIM), Variant());
			return nullptr;
		}
		return Object::cast_to<Node>(machine->get_value(variable).get_validated_object());
	}

	template <class Side>
	static void swing(SCMachineBase *machine, SCMachineAction *action, int index, typename Side::Placed *swinger, const swings::Weapon &weapon,
			const Weak<Node> &aim, const StillHere &here) {
		const Weak<Node> swinging(swinger);
		const auto heading = swings::turn_and_head<Side>(swinger, aim.get(), weapon.reach);
		Node *box = swings::make<Side>(swinger, weapon, heading);
		if (box == nullptr) {
			return;
		}
		Node *shown = swings::make_picture(swinger, weapon, heading);
		Dictionary slot = machine->slot(index);
		slot[names().box] = box;
		slot[names().heading] = heading;
		box->connect(names().hit, ActionCall::make("Attack: hit", machine, action, index, &on_hit));
		if (shown != nullptr) {
			slot[names().shown] = shown;
			put_under(swinger, shown);
		}
		if (!here || swinging.get() == nullptr) {
			swings::take_away(box);
			return;
		}
		put_under(swinger, box);
	}

	static bool can_swing(SCMachineBase *machine, SCMachineAction *action, int index, Node *swinger) {
		if (Object::cast_to<Node2D>(swinger) == nullptr && Object::cast_to<Node3D>(swinger) == nullptr) {
			verbs::say<&Kind::warn_attack>(action, machine, index, int64_t(Kind::NO_SWINGER), swinger);
			return false;
		}
		if (!swinger->is_inside_tree()) {
			verbs::warn(machine, action, vformat("%s is not in the scene, so there is nothing to swing at. Attack once it is there.", swinger->get_name()));
			return false;
		}
		return true;
	}

	// False when it cannot be swung.
	static bool begin(SCMachineBase *machine, SCMachineAction *action, int index, const StillHere &here) {
		const Weak<Node> swinger(machine->target_node());
		const Wanted wanted(machine, action);
		if (!can_swing(machine, action, index, swinger.get()) || !here) {
			return false;
		}
		swings::Weapon weapon = weapon_of(machine, swinger.get(), wanted, here);
		weapon.damage += here ? strength(machine, action, index, wanted.strength_variable) : 0.0;
		if (!(weapon.damage > 0.0)) {
			weapon.damage = LEAST_DAMAGE;
		}
		const Weak<Node> aim(here ? aimed_at(machine, action, index, wanted.aim_at_variable) : nullptr);
		Node *now = swinger.get();
		if (!here || now == nullptr || !now->is_inside_tree()) {
			return false;
		}
		Dictionary slot = machine->slot(index);
		slot[names().left] = weapon.seconds;
		slot[names().seconds] = weapon.seconds;
		if (auto *node_2d = Object::cast_to<Node2D>(now)) {
			swing<In2D>(machine, action, index, node_2d, weapon, aim, here);
		} else if (auto *node_3d = Object::cast_to<Node3D>(now)) {
			swing<In3D>(machine, action, index, node_3d, weapon, aim, here);
		}
		return true;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		machine->slot(index).clear();
		if (!begin(machine, action, index, here) && here) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		Dictionary slot = machine->slot(index);
		if (!slot.has(names().left)) {
			return;
		}
		const StillHere here(machine);
		const double left = double(slot[names().left]) - delta;
		const double seconds = slot[names().seconds];
		slot[names().left] = left;
		if (auto *shown = Object::cast_to<Sprite2D>(node_in(slot, names().shown))) {
			swings::sweep(shown, seconds > 0.0 ? CLAMP(1.0 - left / seconds, 0.0, 1.0) : 1.0);
		}
		Node *box = node_in(slot, names().box);
		Node *swinger = machine->target_node();
		if (box != nullptr && box->get_parent() == nullptr && swinger != nullptr && SCMachine::takes_children_now(swinger)) {
			// Between the engine's own calls, so it may join at once.
			swinger->add_child(box, true);
		}
		const bool is_over = left <= OVER;
		// The box itself may not have had its turn yet.
		box = is_over && here ? node_in(slot, names().box) : nullptr;
		if (box != nullptr) {
			swings::strike(box);
		}
		if (here) {
			tell_of_hits(machine, action, index);
		}
		if (is_over && here) {
			end_swing(machine, index);
			machine->finish(index);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *action, int index) override {
		end_swing(machine, index);
		tell_of_hits(machine, action, index, true);
	}
};

const AddKinds added = {
	add_kind<SCAttackAction, Attack>(),
};

} // namespace
