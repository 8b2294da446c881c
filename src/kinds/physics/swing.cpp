#include "kinds/physics/swing.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

namespace {

constexpr Hint LOSS = { PROPERTY_HINT_RANGE, "0,1,0.001,hide_slider" };

} // namespace

void SCSwingAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "swing",
			"Swing a character from a point as if on a rope, such as a grappling hook caught on a ring, a vine, or a chain in a dungeon. It moves the body by "
			"itself, so no Move Character goes beside it. Leaving the state lets go, and the body flies on with the speed it has.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.wants_physics();
	kind.setting<&Self::body_path>("body_path", "The character body that swings: a CharacterBody2D or a CharacterBody3D. Empty is Self.");
	kind.setting<&Self::point_path>("point_path", "The node that the rope hangs from. It may move.").optional_if<&Self::point_variable>();
	kind.setting<&Self::point_variable>("point_variable", "The variable that holds the node, or the place, that the rope hangs from. It wins over Point Path.")
			.optional();
	kind.setting<&Self::rope_length>("rope_length", hint::DISTANCE,
			"How long the rope is, in metres in 3D and pixels in 2D. Zero is as long as the way to the point when it catches. A longer way is reeled in.");
	kind.setting<&Self::rope_length_variable>("rope_length_variable", "Read how long the rope is from this variable.").optional();
	kind.setting<&Self::direction>("direction",
				"Which way it is swung, as long as 1 in full. Vector2 (1, 0) is right; in 3D its y is toward the viewer. In 2D up and down climb the rope.")
			.optional();
	kind.setting<&Self::direction_variable>("direction_variable", "Read the direction from this variable, such as the one that Get Input Vector fills.")
			.optional();
	kind.setting<&Self::pump>("pump", hint::SPEED, "The speed that a held direction adds along the swing in each second, in metres in 3D and pixels in 2D.")
			.in_2d(300.0);
	kind.setting<&Self::climb_speed>(
			"climb_speed", hint::SPEED, "How fast up and down shorten and lengthen the rope in 2D, in pixels a second. Zero leaves it as long as it is.");
	kind.setting<&Self::shortest>("shortest", hint::DISTANCE, "Climbing makes the rope no shorter than this, in pixels in 2D.")
			.in_2d(16.0)
			.only_if<&Self::climb_speed>();
	kind.setting<&Self::longest>("longest", hint::DISTANCE, "Climbing makes it no longer than this, in pixels in 2D. Zero is as long as it was at first.")
			.only_if<&Self::climb_speed>();
	kind.setting<&Self::stiff>("stiff", "It hangs on a pole, which never goes slack.");
	kind.setting<&Self::top_speed>(
			"top_speed", hint::SPEED, "It never swings faster than this, in metres a second in 3D and pixels a second in 2D. Zero is no bound.");
	kind.setting<&Self::slows_down>("slows_down", LOSS, "The share of its speed that it loses in each second. 0.05 swings for a good while.");
	kind.setting<&Self::gravity>(
			"gravity", hint::SPEED, "The speed that gravity adds in each second, in metres in 3D and pixels in 2D. Zero uses the project's gravity.");
	kind.setting<&Self::rope_line_path>("rope_line_path", "A Line2D that is drawn from the body to the point as long as it swings. 2D alone.").optional();
	kind.warns<&Self::warn_swing>("_warn_swing", "m", "index", "what", "body");
}

String SCSwingAction::summary_default() {
	const String point =
			point_variable.is_empty() && point_path.is_empty() ? String("(pick one)") : words::variable_or(point_variable, words::name_in_line(point_path));
	String rope;
	if (!rope_length_variable.is_empty()) {
		rope = vformat(stiff ? " on a pole [%s] long" : " on a rope [%s] long", rope_length_variable);
	} else if (rope_length > 0.0) {
		rope = vformat(stiff ? " on a pole %s long" : " on a rope %s long", words::number(rope_length));
	} else if (stiff) {
		rope = " on a pole";
	}
	return vformat("Swing from %s%s%s", point, rope, climb_speed > 0.0 ? ", climbing the rope" : "");
}

String SCSwingAction::holds_its_state_default() {
	return "Move on with an event, such as one sent by Event On Input when the player lets go";
}

void SCSwingAction::warn_swing(SCMachineBase *machine, int64_t, int64_t what, Node *body) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	const StringName who = body != nullptr ? body->get_name() : StringName();
	String nothing;
	switch (what) {
		case NO_CHARACTER:
			verbs::warn_whole(machine, this, int(what),
					vformat("Swing on %s: %s is not a character body, and only a CharacterBody2D or CharacterBody3D can swing.", name, who));
			return;
		case NO_BODY:
			verbs::warn_whole(machine, this, int(what),
					vformat("Swing on %s: there is no node at %s, so nothing swings. Pick the character body under Body.", name,
							body_path.is_empty() ? String("Self") : String(body_path)));
			return;
		case NO_LINE:
			verbs::warn_whole(machine, this, int(what),
					vformat("Swing on %s: there is no Line2D at %s, so no rope is drawn. Pick one under Rope Line Path, or leave it empty.", name,
							rope_line_path));
			return;
		case LINE_IN_3D:
			verbs::warn_whole(
					machine, this, int(what), vformat("Swing on %s: %s is in 3D, where a Line2D draws no rope. Leave Rope Line Path empty.", name, who));
			return;
		case NOTHING_PICKED:
			nothing = "no point is picked";
			break;
		case NO_NODE:
			nothing = vformat("there is no node with a place at %s", point_path);
			break;
		case NO_NODE_IN_VARIABLE:
			nothing = vformat("%s holds %s", point_variable, values::kind_in_words(machine->get_value(point_variable, Variant())));
			break;
		case OTHER_SIDE:
			nothing = vformat("%s and its point are not both in 2D or both in 3D", who);
			break;
		default:
			return;
	}
	verbs::warn_whole(machine, this, int(what),
			vformat("Swing on %s: %s, so there is nothing to swing from. Pick a node under Point, or hold one in its variable.", name, nothing));
}
