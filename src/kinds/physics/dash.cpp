#include "kinds/physics/dash.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCDashAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "dash",
			"Send a character shooting off in one direction for a moment, as in a dodge roll out of the way of a swing, a dart across a gap or an air dash to "
			"reach "
			"a ledge that is one jump too far. It moves the body itself and holds the state up meanwhile, so it wants a state of its own, without a Move "
			"Character above it.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.wants_physics();
	kind.constants_of<Way>();
	kind.setting<&Self::body_path>("body_path", "The character body that dashes: a CharacterBody2D or a CharacterBody3D. Empty is Self.");
	kind.setting<&Self::way>(
			"way", "Where it dashes to. The way it is moving is nowhere for a body that stands still; the way it is facing is always somewhere.");
	kind.setting<&Self::direction>(
				"direction", "Which way, however long it is. Vector2 (1, 0) is right; in 3D its y is toward the viewer, and a Vector3 is taken as it is.")
			.only_if<&Self::way, A_DIRECTION>();
	kind.setting<&Self::direction_variable>("direction_variable", "Read the direction from this variable, such as the one that Get Input Vector fills.")
			.optional()
			.only_if<&Self::way, A_DIRECTION>();
	kind.setting<&Self::toward_path>("toward_path", "The node it dashes at.").only_if<&Self::way, TOWARD_A_NODE>();
	kind.setting<&Self::toward_variable>("toward_variable", "The variable holding the node it dashes at. It wins over Toward Path.")
			.optional()
			.only_if<&Self::way, TOWARD_A_NODE>();
	kind.setting<&Self::distance>("distance", hint::DISTANCE, "How far it gets when nothing is in its way, in metres in 3D and pixels in 2D.").px_in_2d();
	kind.setting<&Self::distance_variable>("distance_variable", "Read the distance from this variable.").optional();
	kind.setting<&Self::seconds>("seconds", hint::SECONDS, "How long that takes. The shorter, the faster it goes.");
	kind.setting<&Self::ignores_gravity>("ignores_gravity", "It does not fall meanwhile. Off for a roll along the ground that may go over an edge.");
	kind.setting<&Self::wait_between>("wait_between", hint::SECONDS, "So long after the start of a dash this body is refused the next one. Zero is off.");
	kind.setting<&Self::one_until_it_lands>("one_until_it_lands", "In the air it gets one dash, and the next only once it has stood on the floor again.");
	kind.setting<&Self::dashed_event>("dashed_event", "The event to send as it sets off.");
	kind.setting<&Self::refused_event>("refused_event", "The event to send when it may not dash, or has nowhere to dash to.");
	kind.warns<&Self::warn_dash>("_warn_dash", "m", "index", "what", "body");
}

String SCDashAction::target_in_words(const char *otherwise) const {
	return words::variable_or(toward_variable, words::name_in_line(toward_path, "Self", otherwise));
}

String SCDashAction::summary_default() {
	const String far = words::number(distance);
	switch (way) {
		case THE_WAY_IT_IS_FACING:
			return vformat("Dash %s ahead", far);
		case A_DIRECTION:
			return vformat("Dash %s along %s", far, direction.booleanize() ? words::text_of(direction) : String("a direction"));
		case TOWARD_A_NODE:
			return vformat("Dash %s at %s", far, target_in_words("(pick one)"));
		case THE_WAY_IT_IS_MOVING:
			break;
	}
	return vformat("Dash %s the way it is going", far);
}

void SCDashAction::warn_dash(SCMachineBase *machine, int64_t, int64_t what, Node *body) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (what == NOBODY) {
		verbs::warn_whole(machine, this, int(what),
				vformat("Dash on %s: there is no node at %s, so nothing dashes. Pick the character body under Body.", name,
						body_path.is_empty() ? String("Self") : String(body_path)));
	} else if (what == NO_CHARACTER) {
		verbs::warn_whole(machine, this, int(what),
				vformat("Dash on %s: %s is not a character body, and only a CharacterBody2D or CharacterBody3D can dash.", name,
						body != nullptr ? body->get_name() : StringName()));
	} else if (what == NOWHERE) {
		const String ways[] = { "the way it is moving", "the way it is facing", "along a direction", vformat("toward %s", target_in_words("a node")) };
		const char *remedies[] = {
			"One that may dash from a standstill goes The Way It Is Facing: pick that under Way.",
			"Turn the body upright.",
			"Give it one under Direction, or see that its variable holds one.",
			"Pick the node under Toward, and see that it stands somewhere else.",
		};
		const int which = CLAMP(int(way), 0, 3);
		verbs::warn_whole(machine, this, int(what),
				vformat("Dash on %s: there is nowhere to dash. It is set to go %s, and that works out to no direction at all. %s", name, ways[which],
						remedies[which]));
	}
}
