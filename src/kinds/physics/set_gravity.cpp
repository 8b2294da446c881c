#include "kinds/physics/set_gravity.hpp"

#include "action/words.hpp"

void SCSetGravityAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "set_gravity",
			"Change gravity for one character or physics body: lighter for a feather or the moon, heavier for a stomp, none for floating, or upside down to "
			"walk on "
			"the ceiling. It stays so until another Set Gravity changes it, unless it is put back.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::body_path>(
			"body_path", "The body: a character body that a Move Character or another mover of this addon lets fall, or a RigidBody. Empty is Self.");
	kind.setting<&Self::scale>("scale", { PROPERTY_HINT_RANGE, "-4,4,0.01,or_less,or_greater" },
			"How many times its usual gravity pulls at it. 1 is as usual, 0.5 half as much, and 0 not at all. Below zero it falls upward, and a character then "
			"stands on ceilings and jumps down from them.");
	kind.setting<&Self::turn_picture>("turn_picture", "Turn the sprites of a 2D character upside down while it falls upward. Off leaves them as they are.");
	kind.setting<&Self::put_back_when_left>("put_back_when_left", "Put the gravity back when the state is left.");
}

String SCSetGravityAction::summary_default() {
	return vformat("Pull at %s with %s times its gravity%s", words::name_in_line(body_path), words::number(scale),
			put_back_when_left ? String(" while the state runs") : String());
}
