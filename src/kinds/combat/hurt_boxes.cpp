#include "kinds/combat/hurt_boxes.hpp"

#include "machine/companion_scripts.hpp"
#include "machine/native_names.hpp"

namespace hurt_boxes {

namespace {

struct HurtBoxNames {
	StringName script = "hurt_box";
	StringName health_variable = "health_variable";
	StringName machine_with_health = "machine_with_health";
	StringName take_hit = "take_hit";
	StringName heal = "heal";
};

const HurtBoxNames &names() {
	return NativeNames::of<HurtBoxNames>();
}

} // namespace

Node *under(const Node *node) {
	return CompanionScripts::first_child(node, names().script);
}

bool is_one(const Node *node) {
	return CompanionScripts::is_one(node, names().script);
}

StringName health_variable(Node *hurt_box) {
	const Variant held = hurt_box->get(names().health_variable);
	return held.get_type() == Variant::STRING_NAME || held.get_type() == Variant::STRING ? StringName(held) : StringName();
}

SCMachine *machine_of(Node *hurt_box) {
	return Object::cast_to<SCMachine>(hurt_box->call(names().machine_with_health).get_validated_object());
}

void take_hit(Node *hurt_box, double damage, Node *attacker, double knockback) {
	hurt_box->call(names().take_hit, damage, attacker != nullptr ? Variant(attacker) : Variant(), knockback);
}

Variant heal(Node *hurt_box, double amount, bool revives) {
	return hurt_box->call(names().heal, amount, revives);
}

} // namespace hurt_boxes
