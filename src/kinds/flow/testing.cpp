#include "kinds/flow/testing.hpp"

#include "action/words.hpp"

void SCAssertAction::describe(KindTable<Self> &kind) {
	kind.about("flow", "assert",
			"Make sure something that must always be true is true, and stop the game as soon as it is not, with a message in the Output panel saying what went "
			"wrong and where.");
	kind.constants_of<StopBy>();
	kind.setting<&Self::condition>("condition",
			"The question whose answer must be yes. It is asked every frame, or once as the state is entered. An exported game does not ask it, so players "
			"never meet it.");
	kind.setting<&Self::message>("message", hint::MULTILINE,
			"What the Output panel says went wrong, such as \"{target} has {health} health and is still walking\". A variable's name in braces is replaced by "
			"its value. Empty says the question itself.");
	kind.setting<&Self::stop_by>("stop_by", "How the game is stopped. Pausing leaves it on the screen to be looked at.");
}

String SCAssertAction::summary_default() {
	if (condition.is_null()) {
		return "Make sure of nothing: no question is picked";
	}
	return vformat("Make sure that: %s", condition->shown_summary());
}

bool SCAssertAction::wants_physics_default() {
	return condition.is_valid() && condition->wants_physics();
}

void SCDrawDebugAction::describe(KindTable<Self> &kind) {
	kind.about("flow", "draw_debug", "Draw a line, a ray, a circle or a box in the running game, to see what a template is doing while you test it.");
	kind.constants_of<Shape>();
	kind.setting<&Self::shape>("shape",
			"What to draw. A line goes to a node or a place; a ray goes a way off from where it begins, and turns with its node; a circle and a box lie round "
			"their node. An exported game draws nothing.");
	kind.setting<&Self::from_path>("from_path", "The node it begins at, or lies round. Empty is Self.");
	kind.setting<&Self::to_path>("to_path", "The node the line goes to. Empty goes to the To Point below.").only_if<&Self::shape, LINE>();
	kind.setting<&Self::to_point>("to_point", "The place in the world the line goes to.")
			.in_2d(Vector2(0, 0))
			.only_if<&Self::shape, LINE>()
			.only_if<&Self::goes_to_a_place>();
	kind.setting<&Self::target_position>("target_position", "Where the ray ends, seen from its node, the way a RayCast's Target Position is.")
			.in_2d(Vector2(0, 50))
			.only_if<&Self::shape, RAY>();
	kind.setting<&Self::size>("size", "How large the box is from side to side. A circle is as wide as the first of these numbers.")
			.in_2d(Vector2(64, 64))
			.only_if<&Self::shape, CIRCLE, BOX>();
	kind.setting<&Self::color>("color", "The colour of the lines.");
	kind.setting<&Self::seconds>(
				"seconds", hint::SECONDS, "How long a drawing made once stays, also when its state is left sooner. Zero keeps it until the state is left.")
			.only_if<&Self::run_mode, ONCE>();
}

String SCDrawDebugAction::summary_default() {
	const String from = words::name_in_line(from_path);
	switch (shape) {
		case LINE:
			return vformat("Draw a line from %s to %s", from, words::name_in_line(to_path, "Self", words::text_of(to_point)));
		case RAY:
			return vformat("Draw a ray from %s, going %s", from, words::text_of(target_position));
		case CIRCLE:
			return vformat("Draw a circle round %s, %s wide", from, words::text_of(size));
		case BOX:
			break;
	}
	return vformat("Draw a box round %s, %s in size", from, words::text_of(size));
}
