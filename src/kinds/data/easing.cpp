#include "kinds/data/easing.hpp"

#include "action/words.hpp"

namespace {

constexpr char VARIABLE_DOC[] = "The variable to move: a float, an int, a Vector2, a Vector3 or a Color. It starts from what it holds.";
constexpr char TO_DOC[] = "The value it moves to, of the same kind as the variable. Read from a variable that changes meanwhile, it is followed.";
constexpr char DURATION_DOC[] = "Seconds it takes. Zero puts it there at once. It goes slower and stops with the game.";

} // namespace

void SCEaseAlongCurveAction::describe(KindTable<Self> &kind) {
	kind.about("data", "ease_along_curve",
			"Move a variable toward a value over time along a Curve you draw, not one of the ready-made shapes Ease Variable offers. A curve that comes down "
			"again at its end leads the variable back.");
	kind.runs_for_a_while<&Self::duration>();
	kind.setting<&Self::variable_name>("variable_name", VARIABLE_DOC).written();
	kind.setting<&Self::to>("to", TO_DOC);
	kind.setting<&Self::duration>("duration", hint::SECONDS, DURATION_DOC);
	kind.setting<&Self::curve>("curve",
			"How it gets there. From left to right is the time it takes; at the height of 0 it is where it started, at 1 it is at To, and above 1 it goes "
			"past.");
}

String SCEaseAlongCurveAction::summary_default() {
	return vformat("Ease %s to %s along a curve over %s s", variable_name, words::text_of(to), words::number(duration));
}

void SCEaseVariableAction::describe(KindTable<Self> &kind) {
	kind.about("data", "ease_variable",
			"Move a variable toward a value over time instead of jumping to it, for a fuel gauge settling, a difficulty creeping up, a light dimming, a colour "
			"fading or a place drifting.");
	kind.runs_for_a_while<&Self::duration>();
	kind.setting<&Self::variable_name>("variable_name", VARIABLE_DOC).written();
	kind.setting<&Self::to>("to", TO_DOC);
	kind.setting<&Self::duration>("duration", hint::SECONDS, DURATION_DOC);
	Easings::describe<&Self::curve, &Self::easing>(kind);
}

String SCEaseVariableAction::summary_default() {
	return vformat("Ease %s to %s over %s s", variable_name, words::text_of(to), words::number(duration));
}
