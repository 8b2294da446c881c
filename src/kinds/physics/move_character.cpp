#include "kinds/physics/move_character.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"
#include "steering/walking.hpp"

namespace {

struct FeelRow {
	SCMoveCharacterAction::Feel feel;
	// In the order of feels().
	double numbers[5];
};

constexpr FeelRow FEELS[] = {
	{ SCMoveCharacterAction::TIGHT, { 2.0, 0.5, 12.0, 8.0, 4.0 } },
	{ SCMoveCharacterAction::FLOATY, { 1.2, 0.25, 6.0, 4.0, 2.5 } },
	{ SCMoveCharacterAction::HEAVY, { 2.4, 0.9, 8.0, 2.0, 5.0 } },
	{ SCMoveCharacterAction::ARCADE, { 1.0, 1.0, 0.0, 0.0, 0.0 } },
};

constexpr Hint TIMES = { PROPERTY_HINT_RANGE, "0,4,0.01,or_greater,hide_slider" };
constexpr Hint SHARE_AT_TOP = { PROPERTY_HINT_RANGE, "0,2,0.01,or_greater,hide_slider" };

} // namespace

void SCMoveCharacterAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "move_character",
			"Walk a character about, such as a player driven by the keys, an enemy closing in or an NPC on its rounds. It is what actually moves the body: "
			"Jump, "
			"Dash and Set Velocity only set its speed. It never holds a state up, so it stands beside what else the state does, or on the state above.");
	kind.runs(Runs::ON_AND_ON);
	kind.wants_physics();
	kind.constants_of<Heading>();
	kind.constants_of<Space>();
	kind.constants_of<Feel>();
	kind.setting<&Self::body_path>("body_path", "The character body that walks: a CharacterBody2D or a CharacterBody3D. Empty is Self.");
	kind.setting<&Self::heading>(
			"heading", "What it follows: a direction such as the player's stick, a node it walks up to, a place, or a velocity worked out elsewhere.");
	kind.setting<&Self::direction>("direction",
				"Which way, as long as 1 at full speed. Vector2 (1, 0) is right; in 3D its y is toward the viewer, so that a stick can be used as it is. In 3D "
				"a "
				"Vector3 is taken as it is, with its height only for what does not fall.")
			.unless<&Self::heading, TOWARD_A_NODE, TOWARD_A_PLACE>();
	kind.setting<&Self::direction_variable>(
				"direction_variable", "Read the direction from this variable, such as the one that Get Input Vector fills. A node in it counts as where it is.")
			.optional()
			.unless<&Self::heading, TOWARD_A_NODE, TOWARD_A_PLACE>();
	kind.setting<&Self::space>("space",
				"Whose directions they are. Global are the world's, Local those of the body itself, Camera those of the one who looks: up on the stick is away "
				"from "
				"the camera. Side On is for a 3D game seen from the side: right and up are x and y, and it never leaves its z.")
			.unless<&Self::heading, TOWARD_A_NODE, TOWARD_A_PLACE>();
	kind.setting<&Self::camera_path>("camera_path", "The camera for Camera. Empty is the one that shows the game just now.")
			.only_if<&Self::space, CAMERA>()
			.unless<&Self::heading, TOWARD_A_NODE, TOWARD_A_PLACE>();
	kind.setting<&Self::toward_path>("toward_path", "The node it walks up to.").only_if<&Self::heading, TOWARD_A_NODE>();
	kind.setting<&Self::toward_variable>("toward_variable", "The variable holding the node it walks up to. It wins over Toward Path.")
			.optional()
			.only_if<&Self::heading, TOWARD_A_NODE>();
	kind.setting<&Self::toward_place>("toward_place", "The place it walks to.").in_2d(Vector2(0, 0)).only_if<&Self::heading, TOWARD_A_PLACE>();
	kind.setting<&Self::stop_within>("stop_within", hint::DISTANCE, "How far short of it it stops, in metres in 3D and pixels in 2D.")
			.px_in_2d()
			.only_if<&Self::heading, TOWARD_A_NODE, TOWARD_A_PLACE>();
	kind.setting<&Self::arrived_event>("arrived_event", "The event to send the first time it gets that close.")
			.only_if<&Self::heading, TOWARD_A_NODE, TOWARD_A_PLACE>();
	kind.setting<&Self::speed>("speed", hint::SPEED, "Its full speed, in metres a second in 3D and pixels a second in 2D.")
			.px_in_2d()
			.unless<&Self::heading, A_VELOCITY>();
	kind.setting<&Self::speed_variable>("speed_variable", "Read the speed from this variable.").optional().unless<&Self::heading, A_VELOCITY>();
	PropertyInfo feel = kind.enum_info<Feel>("feel");
	feel.usage = PROPERTY_USAGE_EDITOR | PROPERTY_USAGE_CLASS_IS_ENUM;
	kind.property("feel", feel, &Self::set_feel, &Self::get_feel,
			"Fills in how it starts, stops and falls from one of four ready feels, the speeds among them by the speed it has now, and goes back to Custom. "
			"What "
			"you change afterwards stays as you set it.");
	kind.setting<&Self::acceleration>(
			"acceleration", hint::SPEED, "The speed it gains or loses in each second, in metres in 3D and pixels in 2D. Zero starts and stops on the spot.");
	kind.setting<&Self::turn_to_face>("turn_to_face",
			"Turn the body to face the way it goes. A 2D body that falls is seen from the side: its sprites flip instead, and it does not turn.");
	kind.setting<&Self::turn_speed>("turn_speed", walking::TURN_SPEED, "How fast it turns. 10 has it round in about a fifth of a second.")
			.only_if<&Self::turn_to_face>();
	kind.setting<&Self::falls>("falls", "Gravity pulls it down while it is off the ground. Off for a game seen from above, and for what flies or swims.");
	kind.setting<&Self::gravity>(
				"gravity", hint::SPEED, "The speed it gains in each second of a fall, in metres in 3D and pixels in 2D. Zero uses the project's gravity.")
			.only_if<&Self::falls>();
	kind.setting<&Self::falls_faster_than_it_rises>(
				"falls_faster_than_it_rises", TIMES, "How many times its gravity pulls while it is not rising. 2 makes a jump snappy.")
			.only_if<&Self::falls>();
	kind.setting<&Self::floats_at_the_top>(
				"floats_at_the_top", SHARE_AT_TOP, "The share of its gravity around the top of a jump. 0.5 hangs a little, which makes aiming easier.")
			.only_if<&Self::falls>();
	kind.setting<&Self::fastest_fall>(
				"fastest_fall", hint::SPEED, "It never falls faster than this, in metres a second in 3D and pixels a second in 2D. Zero is no bound.")
			.only_if<&Self::falls>();
	kind.setting<&Self::slips_round_corners>("slips_round_corners", hint::DISTANCE,
				"When its head just catches the corner of a ceiling it is moved aside by up to this much, so that the jump goes on. In metres in 3D, where it "
				"is for "
				"Side On only, and in whole pixels in 2D. Zero is off.")
			.only_if<&Self::falls>();
	kind.setting<&Self::acceleration_in_the_air>(
				"acceleration_in_the_air", hint::SPEED, "The same as Acceleration while it is off the floor. Zero uses Acceleration there too.")
			.only_if<&Self::falls>();
	kind.warns<&Self::warn_move>("_warn_move", "m", "index", "what", "body");
	ClassDB::bind_static_method(get_class_static(), D_METHOD("feels"), &Self::feels);
	ClassDB::bind_static_method(get_class_static(), D_METHOD("the_top_lasts"), &Self::the_top_lasts);
}

Dictionary SCMoveCharacterAction::feels() {
	Dictionary rows;
	for (const FeelRow &row : FEELS) {
		Array numbers;
		for (const double number : row.numbers) {
			numbers.push_back(number);
		}
		rows[int64_t(row.feel)] = numbers;
	}
	return rows;
}

void SCMoveCharacterAction::set_feel(int64_t feel) {
	for (const FeelRow &row : FEELS) {
		if (int64_t(row.feel) == feel) {
			put_field<&Self::falls_faster_than_it_rises>(row.numbers[0]);
			put_field<&Self::floats_at_the_top>(row.numbers[1]);
			put_field<&Self::acceleration>(row.numbers[2] * speed);
			put_field<&Self::acceleration_in_the_air>(row.numbers[3] * speed);
			put_field<&Self::fastest_fall>(row.numbers[4] * speed);
			notify_property_list_changed();
		}
	}
}

String SCMoveCharacterAction::summary_default() {
	switch (heading) {
		case TOWARD_A_PLACE:
			return vformat("Walk to %s", words::text_of(toward_place));
		case TOWARD_A_NODE:
			return vformat("Walk toward %s", words::variable_or(toward_variable, words::name_in_line(toward_path, "Self", "nothing yet")));
		case A_VELOCITY:
			return vformat("Walk at a velocity of %s", words::variable_or(direction_variable, words::text_of(direction)));
		case A_DIRECTION:
			break;
	}
	return vformat(
			"Walk %s at %s", words::variable_or(direction_variable, words::text_of(direction)), words::variable_or(speed_variable, words::number(speed)));
}

void SCMoveCharacterAction::warn_move(SCMachineBase *machine, int64_t, int64_t what, Node *body) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	switch (what) {
		case 0:
			verbs::warn_whole(machine, this, int(what),
					vformat("Move Character on %s: %s is not a character body (CharacterBody2D or CharacterBody3D), so it cannot walk. Use a ready-made "
							"player, or "
							"Translate or Move To for anything else.",
							name, body != nullptr ? body->get_name() : StringName()));
			break;
		case 1:
			verbs::warn_whole(machine, this, int(what),
					vformat("Move Character on %s: there is no node at %s, so nothing walks. Pick the character body under Body.", name,
							body_path.is_empty() ? String("Self") : String(body_path)));
			break;
		case 2:
			verbs::warn_whole(machine, this, int(what),
					vformat("Move Character on %s: it is set to head Toward A Node, but no node is picked, so it stands still. Pick the node under Toward, or "
							"read it "
							"from a variable.",
							name));
			break;
		case 3:
			verbs::warn_whole(machine, this, int(what),
					vformat("Move Character on %s: it is set to head toward %s, but there is no node there, so it stands still.", name, toward_path));
			break;
		default:
			break;
	}
}
