#include "kinds/physics/freeze.hpp"

#include "action/words.hpp"

void SCFreezeAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "freeze",
			"Hold a RigidBody still where it is, or let it go again, or switch gravity off and on for it. A bridge that falls once it is stepped on, a crate "
			"that "
			"is carried, an astronaut.");
	kind.runs(Runs::AT_ONCE);
	kind.wants_physics();
	kind.constants_of<What>();
	kind.constants_of<While>();
	kind.setting<&Self::body_path>("body_path", "The RigidBody2D or RigidBody3D it is about. Empty is Self.");
	kind.setting<&Self::what>("what",
			"Freeze stops it and holds it where it is, and Let Go leaves it to the physics again, at rest. Gravity Off has it float on as it moves; Gravity On "
			"gives back the gravity it had.");
	kind.setting<&Self::while_frozen>("while_frozen",
				"What it is for the others meanwhile. As A Wall stands there like a StaticBody. As A Mover pushes them aside when an animation or a machine "
				"moves "
				"it.")
			.only_if<&Self::what, FREEZE>();
	kind.setting<&Self::put_back_when_left>("put_back_when_left", "When the state is left, it becomes again what it was before.");
}

String SCFreezeAction::summary_default() {
	const String name = words::name_in_line(body_path);
	const char *end = put_back_when_left ? " while here" : "";
	switch (what) {
		case LET_GO:
			return vformat("Let %s go%s", name, end);
		case GRAVITY_OFF:
			return vformat("Switch gravity off for %s%s", name, end);
		case GRAVITY_ON:
			return vformat("Switch gravity on for %s%s", name, end);
		case FREEZE:
			break;
	}
	return vformat("Freeze %s%s", name, end);
}
