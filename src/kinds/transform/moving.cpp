#include "kinds/transform/moving.hpp"

#include "action/words.hpp"

void SCMoveToAction::describe(KindTable<Self> &kind) {
	kind.about("transform", "move_to",
			"Move a node to a place over time, then finish. A lift, a sliding door, a coin that flies to the counter, a menu that slides in. It goes through "
			"walls; Move Character and Navigate To do not.");
	kind.runs_for_a_while<&Self::duration, &Self::speed>();
	kind.constants_of<Space>();
	kind.setting<&Self::node_path>("node_path", "The node that moves: a 2D node, a 3D node or a Control. Empty is Self.");
	kind.setting<&Self::to_path>("to_path", "The node it moves to, such as a Marker3D. Empty moves to the place in To.");
	kind.setting<&Self::follow_it>("follow_it",
				"Keep after that node should it move meanwhile, like a coin that flies to the running player. Off goes to where it was at the start.")
			.only_if<&Self::to_path>();
	kind.setting<&Self::to>("to", "The place it moves to. A variable holding a node stands for where that node is.")
			.in_2d(Vector2(0, 0))
			.unless<&Self::goes_to_a_node>();
	kind.setting<&Self::space>("space",
				"How To is meant. Global is a place in the world, and Local one in its parent, the way the inspector shows Position. From Where It Is moves it "
				"by that much, so (0, 4, 0) lifts it 4 metres. Its Own Way does too, along its own front, side and top.")
			.unless<&Self::goes_to_a_node>();
	kind.setting<&Self::duration>("duration", hint::SECONDS, "Seconds the move takes. Zero puts it there at once.").unless<&Self::speed>();
	kind.setting<&Self::speed>("speed", hint::SPEED,
			"How fast it goes, in metres a second in 3D and pixels a second in 2D, so that a longer way takes longer. Zero goes by Duration.");
	Easings::describe<&Self::curve, &Self::easing>(kind);
}

String SCMoveToAction::summary_default() {
	const String name = words::name_in_line(node_path);
	const String pace = speed > 0.0 ? vformat("at %s a second", words::number(speed)) : vformat("in %s s", words::number(duration));
	const bool by = !goes_to_a_node() && (space == FROM_WHERE_IT_IS || space == ITS_OWN_WAY);
	const String where = goes_to_a_node() ? words::name_in_line(to_path) : words::text_of(to);
	return vformat("Move %s %s %s %s%s", name, by ? "by" : "to", where, pace, !goes_to_a_node() && space == ITS_OWN_WAY ? ", its own way" : "");
}

void SCToGlobalAction::describe(KindTable<Self> &kind) {
	kind.about("transform", "to_global",
			"Turn a place in a node's own space into a place in the world, the way Godot's to_global does. Where the tip of a turned sword is, or a spot two "
			"metres in front of a car.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::node_path>("node_path", "The node whose own space it is. Empty is Self.");
	kind.setting<&Self::local_point>("local_point", "The place, seen from the node: (0, 0, -2) is two metres in front of a 3D node, however it is turned.")
			.in_2d(Vector2(0, 0));
	kind.setting<&Self::store_in>("store_in", "The variable that the place in the world goes into.");
}

String SCToGlobalAction::summary_default() {
	return vformat("Keep where %s of %s is in the world as %s", words::text_of(local_point), words::name_in_line(node_path), store_in);
}

void SCToLocalAction::describe(KindTable<Self> &kind) {
	kind.about("transform", "to_local",
			"Turn a place in the world into a place in a node's own space, the way Godot's to_local does. With it a machine can tell whether the player is in "
			"front of it or behind, left or right.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::node_path>("node_path", "The node whose own space it is. Empty is Self.");
	kind.setting<&Self::global_point>("global_point", "The place in the world. A variable holding a node stands for where that node is.").in_2d(Vector2(0, 0));
	kind.setting<&Self::store_in>(
			"store_in", "The variable that the place as the node sees it goes into. In 3D what lies in front has a z below 0, in 2D an x above 0.");
}

String SCToLocalAction::summary_default() {
	return vformat("Keep where %s is, seen from %s, as %s", words::text_of(global_point), words::name_in_line(node_path), store_in);
}

void SCTranslateAction::describe(KindTable<Self> &kind) {
	kind.about("transform", "keep_moving",
			"Keep a node moving at a steady speed for as long as the state runs. A bullet, a cloud, a conveyor belt. It does not hold the state up: what else "
			"the state does decides when it is finished. It goes through walls; Move Character does not.");
	kind.runs(Runs::ON_AND_ON);
	kind.constants_of<Space>();
	kind.setting<&Self::node_path>("node_path", "The node that moves: a 2D node, a 3D node or a Control. Empty is Self.");
	kind.setting<&Self::direction>(
			"direction", "Which way. Only a direction shorter than 1 slows it down, as a stick pushed half way does; a longer one is no faster.");
	kind.setting<&Self::space>("space",
			"Global is a direction in the world. Local is one of its own, so that what is turned flies where it points: (0, 0, -1) is the front in 3D, (1, 0) "
			"in 2D.");
	kind.setting<&Self::speed>("speed", { PROPERTY_HINT_RANGE, "0,100,0.01,or_less,or_greater,hide_slider" },
				"How fast, in metres a second in 3D and pixels a second in 2D. Below zero it goes backward.")
			.px_in_2d();
}

String SCTranslateAction::summary_default() {
	return vformat("Keep %s moving %s at %s a second%s", words::name_in_line(node_path), words::text_of(direction), words::number(speed),
			space == LOCAL ? ", its own way" : "");
}
