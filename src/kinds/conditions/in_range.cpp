#include "kinds/conditions/in_range.hpp"

#include "action/words.hpp"
#include "steering/dealing.hpp"

void SCInRangeCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "in_range",
			"How near the character is to what it is dealing with. True while that is close enough to strike, say, but not so close that a bow is of no use.");
	kind.setting<&Self::body_path>("body_path", "The character. Empty is Self.");
	kind.setting<&Self::target_variable>("target_variable",
				"The variable holding whom to measure to, such as the one that Look For Target stores. Empty is whatever the character's Perception node has "
				"found.")
			.optional();
	kind.setting<&Self::closer_than>("closer_than", hint::DISTANCE, "How near counts, in metres in 3D and pixels in 2D. Zero is any distance.").px_in_2d();
	kind.setting<&Self::closer_than_variable>("closer_than_variable", "Read how near counts from this variable, such as the reach of the weapon in hand.")
			.optional();
	kind.setting<&Self::but_further_than>(
				"but_further_than", hint::DISTANCE, "What is nearer than this is too near, in metres in 3D and pixels in 2D. Zero has no such bound.")
			.px_in_2d();
	kind.setting<&Self::store_distance_in>(
			"store_distance_in", "Keep how far away it is in this variable. It stays as it is while there is nothing to measure to.");
	dealing::bind(kind);
}

String SCInRangeCondition::summary_default() {
	const bool has_most = closer_than > 0.0 || !closer_than_variable.is_empty();
	const String most = words::number(closer_than);
	const String least = words::number(but_further_than);
	if (!(but_further_than > 0.0)) {
		return has_most ? vformat("Within %s", most) : String("At any distance");
	}
	return has_most ? vformat("Between %s and %s away", least, most) : vformat("At least %s away", least);
}

void SCInRangeCondition::warn_dealing(SCMachineBase *machine, int64_t, Node *body) {
	dealing::warn(machine, this, target_variable, body);
}
