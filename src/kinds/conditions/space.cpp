#include "kinds/conditions/space.hpp"

#include "action/shared_verbs.hpp"

void SCDistanceCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "distance", "True when another node, or the nearest member of a group, is within a distance of the node the Machine works on.");
	kind.setting<&Self::to_node_path>("to_node_path", "The node to measure to. Empty measures to a group.");
	kind.setting<&Self::group>("group", "The group whose nearest member is measured to, such as players. The machine's own node does not count.")
			.unless<&Self::measures_to_a_node>();
	kind.setting<&Self::distance>("distance", hint::DISTANCE, "How near counts, in metres in 3D and pixels in 2D.").px_in_2d();
	kind.setting<&Self::ignore_height>("ignore_height", "In 3D, measure along the ground, so that somebody on a roof counts as near the door below.");
	kind.setting<&Self::store_in>("store_in", "Keep how far away it is in this variable. It stays as it is while there is nothing to measure to.");
}

bool SCDistanceCondition::measures_to_a_node() const {
	return !to_node_path.is_empty() || from_variables.has(verbs::name_of<&Self::to_node_path>());
}

String SCDistanceCondition::summary_default() {
	if (measures_to_a_node()) {
		return vformat("%s is within %s of Self", words::name_in_line(to_node_path), words::number(distance));
	}
	return vformat("anything in %s is within %s of Self", group, words::number(distance));
}

void SCOnScreenCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "on_screen", "True while a node is on the screen.");
	kind.setting<&Self::node_path>("node_path",
			"The node. What has a size, such as a sprite, a control or a mesh, is on the screen while any part of it is, anything else while its middle is; "
			"what is hidden is not. Whether something stands in front of it makes no difference. Empty is Self.");
	kind.setting<&Self::margin>("margin", { PROPERTY_HINT_RANGE, "-200,200,1,or_less,or_greater,suffix:px" },
			"How many pixels past the edge of the screen still count. Below zero, how far inside it has to be.");
}

String SCOnScreenCondition::summary_default() {
	const String name = words::name_in_line(node_path);
	if (margin > 0.0) {
		return vformat("%s is within %s px of the screen", name, words::number(margin));
	}
	if (margin < 0.0) {
		return vformat("%s is %s px inside the screen", name, words::number(-margin));
	}
	return vformat("%s is on the screen", name);
}

void SCPointerOverUiCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "pointer_over_ui",
			"True while the mouse pointer, or a finger, is over something on the screen that takes clicks, such as a button, a slider, a text box, a panel or "
			"an open inventory.");
}

String SCPointerOverUiCondition::summary_default() {
	return "the pointer is over the interface";
}
