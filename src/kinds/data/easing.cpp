#include "kinds/data/easing.hpp"

#include "action/answering.hpp"
#include "action/words.hpp"

namespace {

constexpr char VARIABLE_DOC[] = "The variable to move: a float, an int, a Vector2, a Vector3 or a Color. It starts from what it holds.";
constexpr char TO_DOC[] = "The value it moves to, of the same kind as the variable. Read from a variable that changes meanwhile, it is followed.";
constexpr char DURATION_DOC[] = "Seconds it takes. Zero puts it there at once. It goes slower and stops with the game.";

} // namespace

void SCEaseAlongCurveAction::describe(KindTable<SCEaseAlongCurveAction> &kind) {
	kind.about("data", "ease_along_curve", "Move a variable toward a value over time along a Curve you draw, not one of the ready-made shapes Ease Variable offers. A curve that comes down again at its end leads the variable back.");
	kind.setting<&SCEaseAlongCurveAction::variable_name>("variable_name", VARIABLE_DOC);
	kind.setting<&SCEaseAlongCurveAction::to>("to", TO_DOC);
	kind.setting<&SCEaseAlongCurveAction::duration>("duration", hint::SECONDS, DURATION_DOC);
	kind.setting<&SCEaseAlongCurveAction::curve>("curve", "How it gets there. From left to right is the time it takes; at the height of 0 it is where it started, at 1 it is at To, and above 1 it goes past.");
}

String SCEaseAlongCurveAction::summary_default() {
	return vformat("Ease %s to %s along a curve over %s s", variable_name, words::text_of(to), words::number(duration));
}

bool SCEaseAlongCurveAction::finishes_as_it_starts_default() {
	return duration <= 0.0 && is_typed_in("duration");
}

PackedStringArray SCEaseAlongCurveAction::variables_written_default() {
	return answering::written_with(this, variable_name);
}

void SCEaseVariableAction::describe(KindTable<SCEaseVariableAction> &kind) {
	kind.about("data", "ease_variable", "Move a variable toward a value over time instead of jumping to it, for a fuel gauge settling, a difficulty creeping up, a light dimming, a colour fading or a place drifting.");
	kind.setting<&SCEaseVariableAction::variable_name>("variable_name", VARIABLE_DOC);
	kind.setting<&SCEaseVariableAction::to>("to", TO_DOC);
	kind.setting<&SCEaseVariableAction::duration>("duration", hint::SECONDS, DURATION_DOC);
	Easings::describe<&SCEaseVariableAction::curve, &SCEaseVariableAction::easing>(kind);
}

String SCEaseVariableAction::summary_default() {
	return vformat("Ease %s to %s over %s s", variable_name, words::text_of(to), words::number(duration));
}

bool SCEaseVariableAction::finishes_as_it_starts_default() {
	return duration <= 0.0 && is_typed_in("duration");
}

PackedStringArray SCEaseVariableAction::variables_written_default() {
	return answering::written_with(this, variable_name);
}
