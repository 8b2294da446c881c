#include "kinds/combat/attack.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCAttackAction::describe(KindTable<Self> &kind) {
	kind.about("combat", "attack",
			"Swing whatever weapon is worn, across its reach in front of the character, the way they are heading, for its swing time. "
			"What has a Hurt Box there is hit once.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.wants_physics();
	kind.setting<&Self::slot>("slot",
			"The slot of the character's worn Inventory that the weapon is in. Its item says the damage, the reach, the swing time and the knockback. With "
			"nothing in it that does damage, the swing is unarmed.");
	kind.setting<&Self::strength_variable>("strength_variable", "A number of this machine that is added to the damage. Empty adds nothing.").optional();
	kind.setting<&Self::hurts_group>("hurts_group", "Only what is in this group is hurt. Empty is anything with a Hurt Box but the character itself.")
			.optional();
	kind.setting<&Self::unarmed_damage>("unarmed_damage", hint::HEALTH, "The damage of a swing without a weapon.");
	kind.setting<&Self::unarmed_reach>(
				"unarmed_reach", hint::DISTANCE, "How far a swing without a weapon reaches from the middle of the character, in metres in 3D and pixels in 2D.")
			.px_in_2d();
	kind.setting<&Self::hit_event>("hit_event", "The event to send for each thing that is hit. It carries what was hit.");
	kind.setting<&Self::show_weapon>("show_weapon", "In 2D, shows the weapon's picture as it is swung.");
	kind.setting<&Self::aim_at_variable>("aim_at_variable",
				"A variable that names a node to swing at. Within reach, the character turns to it first. Empty swings the way it last moved.")
			.optional();
	kind.warns<&Self::warn_attack>("_warn_attack", "m", "index", "what", "node");
}

String SCAttackAction::summary_default() {
	return vformat("Attack with the %s", slot);
}

void SCAttackAction::warn_attack(SCMachineBase *machine, int64_t index, int64_t what, Node *node) {
	if (machine == nullptr) {
		return;
	}
	const String on = machine->name_in_messages();
	switch (what) {
		case NO_SWINGER:
			verbs::warn_whole(machine, this, int(what),
					vformat("Attack on %s needs a 2D or 3D character to swing from, and %s.", on,
							node != nullptr ? vformat("%s is a %s", node->get_name(), node->get_class()) : String("there is none")));
			break;
		case NO_STRENGTH:
			MakerWarnings::once_for(machine, vformat("attack strength:%d", index),
					vformat("Attack on %s adds a variable called %s to its damage, but this machine has no variable of that name, so nothing is added. Is it "
							"spelt as in the Variables tab?",
							on, strength_variable));
			break;
		case NO_AIM:
			MakerWarnings::once_for(machine, vformat("attack aim:%d", index),
					vformat("Attack on %s swings at whoever %s names, but this machine has no variable of that name, so it swings the way it last moved. Is it "
							"spelt as in the Variables tab?",
							on, aim_at_variable));
			break;
		default:
			break;
	}
}
