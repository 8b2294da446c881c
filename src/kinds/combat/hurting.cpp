#include "kinds/combat/hurting.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"
#include "kinds/combat/hurt_boxes.hpp"
#include "settings/object_arguments.hpp"

namespace {

String name_of(const Node *node) {
	return node != nullptr ? String(node->get_name()) : String("nothing");
}

Node *taken_hurt_box(const Variant &node) {
	bool fits = true;
	Node *on = object_arguments::taken<Node>(node, "_hurt_box_of", 1, fits);
	return fits ? hurt_boxes::under(on) : nullptr;
}

} // namespace

void SCHurtAction::describe(KindTable<Self> &kind) {
	kind.about("combat", "hurt",
			"Take health off something without anything touching it. It is for poison, hunger, a curse or a fall. What it hurts has a Hurt Box, which sees to "
			"defence and to the events HURT and DIED.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::target_path>("target_path", "Who is hurt. Empty is Self. It needs a Hurt Box right under it.");
	kind.setting<&Self::damage>("damage", hint::HEALTH, "How much health it takes, less the target's defence. A hit takes at least 1.");
	kind.setting<&Self::attacker_path>("attacker_path", "Whose hit it is. The target is knocked back from there. Empty is nobody, who knocks nothing back.")
			.optional();
	kind.setting<&Self::knockback>("knockback", { PROPERTY_HINT_RANGE, "0,10,0.01,or_greater,hide_slider" },
			"How many times the Knockback of the target's Hurt Box it is thrown back. Zero leaves it where it is.");
	kind.warns<&Self::warn_hurt>("_warn_hurt", "m", "index", "what", "node");
	ClassDB::bind_method(D_METHOD("_hurt_box_of", "node"), &Self::hurt_box_of);
}

String SCHurtAction::summary_default() {
	const String from = attacker_path.is_empty() ? String() : vformat(", from %s", words::name_in_line(attacker_path));
	return vformat("Hurt %s by %s%s", words::name_in_line(target_path), words::number(damage), from);
}

Node *SCHurtAction::hurt_box_of(const Variant &node) {
	return taken_hurt_box(node);
}

void SCHurtAction::warn_hurt(SCMachineBase *machine, int64_t, int64_t what, Node *node) {
	if (machine == nullptr) {
		return;
	}
	const String on = machine->name_in_messages();
	switch (what) {
		case NO_TARGET:
			verbs::warn_whole(machine, this, int(what), vformat("Hurt on %s: there is nothing here to hurt. Pick something with a Hurt Box under Target.", on));
			break;
		case NO_DAMAGE:
			verbs::warn_whole(machine, this, int(what),
					vformat("Hurt on %s: Damage is %s, and a hit that does no harm is no hit, so nothing happened. Give Damage a number above 0.", on,
							words::number(damage)));
			break;
		case NO_HURT_BOX:
			verbs::warn_whole(machine, this, int(what),
					vformat("Hurt on %s: %s has no Hurt Box, so no health was taken. To add one under it, right-click it in the scene and pick QuillStead > "
							"Give It > Health.",
							on, name_of(node)));
			break;
		default:
			break;
	}
}

void SCHealAction::describe(KindTable<Self> &kind) {
	kind.about("combat", "heal",
			"Give health back, for a potion drunk, a first-aid kit picked up, a healer's spell, a campfire that mends a little every second, or a checkpoint "
			"that puts the player back on their feet.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::target_path>("target_path", "Who is healed. Empty is Self. It needs a Hurt Box right under it.");
	kind.setting<&Self::amount>("amount", hint::HEALTH, "How much health it gives. What goes beyond the Max of the health variable is lost.");
	kind.setting<&Self::healed_event>("healed_event", "The event sent to the target's machine. It carries how much health was given.");
	kind.setting<&Self::revives>("revives", "Also what has no health left is healed: it gets up, and is safe for a moment first.");
	kind.warns<&Self::warn_heal>("_warn_heal", "m", "index", "what", "node");
	ClassDB::bind_method(D_METHOD("_hurt_box_of", "node"), &Self::hurt_box_of);
}

String SCHealAction::summary_default() {
	return vformat("Heal %s by %s%s", words::name_in_line(target_path), words::number(amount), revives ? ", reviving it if beaten" : "");
}

Node *SCHealAction::hurt_box_of(const Variant &node) {
	return taken_hurt_box(node);
}

void SCHealAction::warn_heal(SCMachineBase *machine, int64_t, int64_t what, Node *node) {
	if (machine == nullptr) {
		return;
	}
	const String on = machine->name_in_messages();
	Node *hurt_box = hurt_boxes::under(node);
	const StringName health = hurt_box != nullptr ? hurt_boxes::health_variable(hurt_box) : StringName("health");
	switch (what) {
		case NO_TARGET:
			verbs::warn_whole(machine, this, int(what), vformat("Heal on %s: there is nothing here to heal. Pick something with a Hurt Box under Target.", on));
			break;
		case NO_AMOUNT:
			verbs::warn_whole(machine, this, int(what),
					vformat("Heal on %s: Amount is %s, so no health was given. Give Amount a number above 0. Hurt takes health away.", on,
							words::number(amount)));
			break;
		case NO_HURT_BOX:
			verbs::warn_whole(machine, this, int(what),
					vformat("Heal on %s: %s has no Hurt Box, so it has no health to give back. To add one under it, right-click it in the scene and pick "
							"QuillStead > Give It > Health.",
							on, name_of(node)));
			break;
		case NO_HEALTH:
			verbs::warn_whole(machine, this, int(what),
					vformat("Heal on %s: %s has no machine with a %s variable to give health to. Set the Hurt Box's Health Variable to the right name.", on,
							name_of(node), health));
			break;
		case NO_MAX:
			MakerWarnings::once_for(machine, vformat("heal without a max:%s", health),
					vformat("Heal on %s: %s's %s has no Max, so nothing stops it going up and up. Give it a Max in the Variables tab, such as max_health.", on,
							name_of(node), health));
			break;
		case BEATEN:
			verbs::warn_whole(machine, this, int(what),
					vformat("Heal on %s: %s's health has run out, so it stays beaten. Turn on Revives to bring it back.", on, name_of(node)));
			break;
		default:
			break;
	}
}
