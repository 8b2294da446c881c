#include "kinds/physics/explosion.hpp"

#include "action/words.hpp"

void SCExplosionAction::describe(KindTable<Self> &kind) {
	constexpr Hint LAYERS = { PROPERTY_HINT_LAYERS_3D_PHYSICS };
	constexpr Hint LIFT = { PROPERTY_HINT_RANGE, "0,3,0.01,or_less,or_greater,hide_slider" };
	constexpr Hint STRENGTH = { PROPERTY_HINT_RANGE, "0,100,0.01,or_less,or_greater,hide_slider" };
	kind.about("physics", "blast",
			"An explosion's reach. Everything that can be pushed is thrown away from its middle, the harder the nearer it is: crates, barrels, characters. "
			"Their "
			"machines can be told, to lose health or to fall over.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.setting<&Self::center_path>("center_path", "The node at whose place it goes off. Empty is Self.");
	kind.setting<&Self::radius>("radius", hint::DISTANCE, "How far it reaches, in metres in 3D and pixels in 2D, where it takes hundreds.");
	kind.setting<&Self::strength>("strength", STRENGTH,
			"How hard it throws at its middle. 10 gives a body of 1 kg 10 metres a second in 3D, or pixels in 2D, where it takes hundreds; a character body "
			"gets it "
			"as speed. Below zero it pulls things in.");
	kind.setting<&Self::at_the_edge>("at_the_edge", hint::SHARE, "The share of its strength that is left where its reach ends. 1 is as strong all over.");
	kind.setting<&Self::lift>("lift", LIFT, "How much it throws things up besides. 0 is straight away from the middle, 1 as much up as away.");
	kind.setting<&Self::whatever_its_mass>("whatever_its_mass", "A heavy body is thrown so much harder, so that each gets the same speed.");
	kind.setting<&Self::only_group>("only_group", "Only bodies in this group are reached. Empty is all of them.").optional();
	kind.setting<&Self::mask>("mask", LAYERS, "Only bodies on these layers are reached.");
	kind.setting<&Self::spares_self>("spares_self", "The body that the machine works on is not reached.");
	kind.setting<&Self::spares_path>(
			"spares_path", "Another node that is not reached, such as whoever threw the bomb, with everything under it. Empty is none.");
	kind.setting<&Self::walls_shield>("walls_shield", "What stands still in between keeps it off, so that there is cover behind a wall.");
	kind.setting<&Self::walls_mask>("walls_mask", LAYERS, "Only what is on these layers shields.").only_if<&Self::walls_shield>();
	kind.setting<&Self::reached_event>(
			"reached_event", "The event that the machine of each body is sent that it reaches, such as one that hurts it. It carries how strong it was there.");
	kind.setting<&Self::store_count_in>("store_count_in", "The variable for how many bodies it reached.").optional();
	kind.setting<&Self::store_bodies_in>("store_bodies_in", "The variable for a list of the bodies it reached, the nearest first.").optional();
	kind.setting<&Self::hit_event>("hit_event", "The event to send when it reached something. It carries how many.");
	kind.setting<&Self::nothing_event>("nothing_event", "The event to send when it reached nothing.");
}

String SCExplosionAction::summary_default() {
	String line = vformat("Explode at %s with %s, %s far", words::name_in_line(center_path), words::number(strength), words::number(radius));
	if (!only_group.is_empty()) {
		line += vformat(", only %s", only_group);
	}
	if (!reached_event.is_empty()) {
		line += vformat(", telling them %s", reached_event);
	}
	return line;
}
