#include "kinds/physics/water_depth.hpp"

#include "action/words.hpp"

void SCGetWaterDepthAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "get_water_depth",
			"Read how deep someone is in the water, from the surface down to their feet, into a variable. It is 0 out of the water, little for who wades and "
			"more "
			"than their own height for who dives.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.setting<&Self::node_path>("node_path", "Who is in the water. The feet are the lowest point of their collision shapes. Empty is Self.");
	kind.setting<&Self::water_path>("water_path", "The water: an Area2D or an Area3D with a collision shape, or a node that holds one.");
	kind.setting<&Self::store_in>("store_in", "The variable the depth goes into, in metres in 3D and pixels in 2D.");
}

String SCGetWaterDepthAction::summary_default() {
	return vformat("Put the depth of %s in %s into %s", words::name_in_line(node_path), words::name_in_line(water_path, "Self", "the water"), store_in);
}
