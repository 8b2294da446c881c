#include "kinds/transform/sizing.hpp"

void SCPunchAction::describe(KindTable<Self> &kind) {
	kind.about("transform", "punch",
			"Kick a node's position, rotation or scale and let it spring back to where it was, wobbling as it settles. A button that was pressed, a crate that "
			"was hit, a coin that was collected.");
	kind.runs_for_a_while<&Self::is_waited_for>();
	kind.constants_of<What>();
	kind.setting<&Self::node_path>("node_path", "The node that is kicked: a 2D node, a 3D node or a Control. Empty is Self.");
	kind.setting<&Self::what>("what", "What is kicked.");
	kind.setting<&Self::amount>("amount",
				"How hard, in each direction. For the position this far, in metres in 3D and pixels in 2D; for the rotation so many degrees, in 2D the first "
				"number; for the scale this much larger, so 0.3 on a thing of size 1 reaches 1.3. Below zero it is kicked the other way.")
			.in_2d(Vector2(0.3f, 0.3f));
	kind.setting<&Self::duration>("duration", hint::SECONDS, "Seconds until it has settled.");
	kind.setting<&Self::wobbles>("wobbles", { PROPERTY_HINT_RANGE, "1,20,1,or_greater" }, "How many times it swings there and back.");
	kind.setting<&Self::wait_for_end>(
			"wait_for_end", "Finish only when it has settled. Off finishes at once and lets it wobble on. Leaving the state puts it back where it was.");
}

String SCPunchAction::summary_default() {
	const char *part = what == POSITION ? "position" : (what == ROTATION ? "rotation" : "scale");
	return vformat("Punch %s, its %s, by %s for %s s", words::name_in_line(node_path), part, words::text_of(amount), words::number(duration));
}

void SCScaleToAction::describe(KindTable<Self> &kind) {
	kind.about("transform", "scale_to",
			"Grow or shrink a node to a size over time, then finish. A mushroom that makes the player big, a balloon, a picked up coin that shrinks away.");
	kind.runs_for_a_while<&Self::duration>();
	kind.constants_of<Measure>();
	kind.setting<&Self::node_path>("node_path", "The node that grows or shrinks: a 2D node, a 3D node or a Control. Empty is Self.");
	kind.setting<&Self::to>("to", "The size it gets to, where 1 is as it was made, 2 twice as large and 0 nothing. A single number goes for every direction.")
			.in_2d(Vector2(1, 1));
	kind.setting<&Self::measure>("measure", "Whether that is the size itself, or how many times the size it has now.");
	kind.setting<&Self::duration>("duration", hint::SECONDS, "Seconds it takes. Zero does it at once.");
	Easings::describe<&Self::curve, &Self::easing>(kind);
}

String SCScaleToAction::summary_default() {
	const String size = words::text_of(to);
	return vformat(
			"Scale %s to %s%s in %s s", words::name_in_line(node_path), size, measure == TIMES_ITS_SIZE ? " times its size" : "", words::number(duration));
}
