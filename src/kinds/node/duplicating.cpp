#include "kinds/node/duplicating.hpp"

#include "action/places.hpp"
#include "action/words.hpp"

void SCDuplicateAction::describe(KindTable<Self> &kind) {
	kind.about("node", "duplicate", "Make a copy of a node already in the game, beside it, such as another enemy like this one, a second coin or a clone.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::node_path>("node_path",
			"The node to copy, with everything under it. A Machine in the copy starts afresh. Empty is Self, which is only for a state that the copy does not "
			"begin in, as it would copy itself too.");
	kind.setting<&Self::offset>("offset",
				"How far from it the copy stands, in the directions that it faces: x is its front in 2D, and -z its front in 3D. In pixels in 2D and metres in "
				"3D.")
			.in_2d(Vector2())
			.optional();
	kind.setting<&Self::store_in>("store_in", "Keep the copy in this variable.").optional();
}

String SCDuplicateAction::summary_default() {
	return vformat("Duplicate %s", words::name_in_line(node_path));
}
