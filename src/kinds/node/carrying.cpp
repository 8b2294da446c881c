#include "kinds/node/carrying.hpp"

#include "action/words.hpp"

void SCCarryAction::describe(KindTable<Self> &kind) {
	kind.about("node", "carry", "Pick something up and carry it, then put it down or throw it.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<Change>();
	kind.setting<&Self::change>("change",
			"Pick Up takes it into the hand, where it stays, and bumps into nothing, until another Carry puts it down or throws it. Put Down lets it go where "
			"it is, and Throw lets it fly.");
	kind.setting<&Self::node_path>("node_path", "The 2D or 3D node to pick up, put down or throw, often one that a variable holds. Empty is Self.").optional();
	kind.setting<&Self::carried_by_path>("carried_by_path", "The hand that it goes into: whoever carries it, or a marker on them. Empty is Self.")
			.only_if<&Self::change, PICK_UP>();
	kind.setting<&Self::snap_to_the_hand>("snap_to_the_hand", "Put it right where the hand is. Off carries it from where it lies.")
			.only_if<&Self::change, PICK_UP>();
	kind.setting<&Self::throw_at>("throw",
				"How fast it flies off, in the directions that the hand faces. In 3D a Vector3 in metres a second, with forward as -z and up as y. In 2D a "
				"Vector2 "
				"in pixels a second, with forward as x and down as y.")
			.in_2d(Vector2(200, -120))
			.only_if<&Self::change, THROW>();
}

String SCCarryAction::summary_default() {
	const String what = words::name_in_line(node_path);
	switch (change) {
		case PUT_DOWN:
			return "Put down " + what;
		case THROW:
			return vformat("Throw %s at %s", what, words::text_of(throw_at));
		default:
			return vformat("Pick up %s with %s", what, words::name_in_line(carried_by_path));
	}
}
