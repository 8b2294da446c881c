#include "kinds/conditions/touching.hpp"

#include "action/words.hpp"

void SCTouchingCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "touching",
			"True while something is touching, such as a player standing in a trigger, a crate resting on a plate, or a character with its feet on the ground "
			"or its shoulder against a wall.");
	kind.wants_physics();
	kind.constants_of<Test>();
	kind.setting<&Self::node_path>(
			"node_path", "What is touched or touches: an area, a character body, or a rigid body that reports its contacts. Empty is Self.");
	kind.setting<&Self::test>(
			"test", "What it has to touch. The ground, a wall and a ceiling are for character and rigid bodies, and told apart by how steep they are.");
	kind.setting<&Self::only_group>("only_group", "Only what is in this group counts, such as players. Empty counts everything.");
	kind.setting<&Self::include_areas>("include_areas", "For an area, count other areas too, and not bodies alone.").only_if<&Self::test, ANYTHING>();
	kind.setting<&Self::store_touching_in>(
			"store_touching_in", "Keep the node it touches in this variable, the first of several. It stays there when the touching ends.");
}

String SCTouchingCondition::summary_default() {
	const String name = words::name_in_line(node_path);
	const String which = only_group.is_empty() ? String() : vformat(" that is in %s", only_group);
	const char *const touches[] = { "touching something", "on ground", "against a wall", "against a ceiling" };
	return vformat("%s is %s%s", name, touches[CLAMP(int(test), 0, 3)], which);
}
