#include "kinds/conditions/in_water.hpp"

#include "action/words.hpp"

void SCInWaterCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "in_water", "True while someone is in the water, as deep as you choose.");
	kind.wants_physics();
	kind.setting<&Self::node_path>("node_path", "Who is asked about. The feet are the lowest point of their collision shapes. Empty is Self.");
	kind.setting<&Self::water_path>("water_path", "The water: an Area2D or an Area3D with a collision shape, or a node that holds one.");
	kind.setting<&Self::how_deep>("how_deep", hint::DISTANCE,
			"How far below the surface the feet have to be, in metres in 3D and pixels in 2D. Zero is wet feet; half the height of who is asked about tells "
			"wading from swimming, and all of it is a head under water.");
}

String SCInWaterCondition::summary_default() {
	const String deep = how_deep > 0.0 ? vformat("%s deep ", words::number(how_deep)) : String();
	return vformat("%s is %sin %s", words::name_in_line(node_path), deep, words::name_in_line(water_path, "Self", "the water"));
}
