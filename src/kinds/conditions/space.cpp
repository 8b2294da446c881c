#include "kinds/conditions/space.hpp"

#include "action/words.hpp"
#include "settings/plumbing.hpp"

void SCDistanceCondition::describe(KindTable<SCDistanceCondition> &kind) {
	kind.about("conditions", "distance", "True when another node, or the nearest member of a group, is within a distance of the node the Machine works on.");
	kind.setting<&SCDistanceCondition::to_node_path>("to_node_path", "The node to measure to. Empty measures to a group.").relists();
	kind.setting<&SCDistanceCondition::group>("group", "The group whose nearest member is measured to, such as players. The machine's own node does not count.");
	kind.setting<&SCDistanceCondition::distance>("distance", hint::DISTANCE, "How near counts, in metres in 3D and pixels in 2D.").px_in_2d();
	kind.setting<&SCDistanceCondition::ignore_height>("ignore_height", "In 3D, measure along the ground, so that somebody on a roof counts as near the door below.");
	kind.setting<&SCDistanceCondition::store_in>("store_in", "Keep how far away it is in this variable. It stays as it is while there is nothing to measure to.");
}

bool SCDistanceCondition::measures_to_a_node() const {
	return !to_node_path.is_empty() || from_variables.has("to_node_path");
}

String SCDistanceCondition::summary_default() {
	if (measures_to_a_node()) {
		return vformat("%s is within %s of Self", words::name_in_line(to_node_path), words::number(distance));
	}
	return vformat("anything in %s is within %s of Self", group, words::number(distance));
}

void SCDistanceCondition::_validate_property(PropertyInfo &property) const {
	if (measures_to_a_node() && property.name == StringName("group")) {
		hide_from_inspector(property);
	}
}

void SCOnScreenCondition::describe(KindTable<SCOnScreenCondition> &kind) {
	kind.about("conditions", "on_screen", "True while a node is on the screen.");
	kind.setting<&SCOnScreenCondition::node_path>("node_path", "The node. What has a size, such as a sprite, a control or a mesh, is on the screen while any part of it is, anything else while its middle is; what is hidden is not. Whether something stands in front of it makes no difference. Empty is Self.");
	kind.setting<&SCOnScreenCondition::margin>("margin", { PROPERTY_HINT_RANGE, "-200,200,1,or_less,or_greater,suffix:px" }, "How many pixels past the edge of the screen still count. Below zero, how far inside it has to be.");
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

void SCPointerOverUiCondition::describe(KindTable<SCPointerOverUiCondition> &kind) {
	kind.about("conditions", "pointer_over_ui", "True while the mouse pointer, or a finger, is over something on the screen that takes clicks, such as a button, a slider, a text box, a panel or an open inventory.");
}

String SCPointerOverUiCondition::summary_default() {
	return "the pointer is over the interface";
}

void SCTouchingCondition::describe(KindTable<SCTouchingCondition> &kind) {
	kind.about("conditions", "touching", "True while something is touching, such as a player standing in a trigger, a crate resting on a plate, or a character with its feet on the ground or its shoulder against a wall.");
	kind.constants_of<Test>();
	kind.setting<&SCTouchingCondition::node_path>("node_path", "What is touched or touches: an area, a character body, or a rigid body that reports its contacts. Empty is Self.");
	kind.setting<&SCTouchingCondition::test>("test", "What it has to touch. The ground, a wall and a ceiling are for character and rigid bodies, and told apart by how steep they are.").relists();
	kind.setting<&SCTouchingCondition::only_group>("only_group", "Only what is in this group counts, such as players. Empty counts everything.");
	kind.setting<&SCTouchingCondition::include_areas>("include_areas", "For an area, count other areas too, and not bodies alone.");
	kind.setting<&SCTouchingCondition::store_touching_in>("store_touching_in", "Keep the node it touches in this variable, the first of several. It stays there when the touching ends.");
}

bool SCTouchingCondition::check_default(SCMachineBase *machine, const Dictionary &) {
	return is_touching(machine, this);
}

Array SCTouchingCondition::rest_signals_default(SCMachineBase *machine, const Dictionary &) {
	return signals_of_touch(machine, this);
}

String SCTouchingCondition::summary_default() {
	const String name = words::name_in_line(node_path);
	const String which = only_group.is_empty() ? String() : vformat(" that is in %s", only_group);
	switch (test) {
		case ANYTHING:
			return vformat("%s is touching something%s", name, which);
		case THE_GROUND:
			return vformat("%s is on ground%s", name, which);
		case A_WALL:
			return vformat("%s is against a wall%s", name, which);
		case A_CEILING:
			break;
	}
	return vformat("%s is against a ceiling%s", name, which);
}

void SCTouchingCondition::_validate_property(PropertyInfo &property) const {
	if (test != ANYTHING && property.name == StringName("include_areas")) {
		hide_from_inspector(property);
	}
}
