#include "kinds/physics/drive.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

namespace {

constexpr Hint TIMES = { PROPERTY_HINT_RANGE, "0,10,0.01,or_greater,hide_slider" };
constexpr Hint TURN_SPEED = { PROPERTY_HINT_RANGE, "0,360,0.1,or_greater,hide_slider,suffix:°/s" };
constexpr Hint FORCE = { PROPERTY_HINT_RANGE, "0,10000,0.1,or_greater,hide_slider" };
constexpr Hint STEERING = { PROPERTY_HINT_RANGE, "0,90,0.1,hide_slider,suffix:°" };
constexpr Hint PULL = { PROPERTY_HINT_RANGE, "-1,1,0.01,hide_slider" };

} // namespace

void SCDriveAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "drive",
			"Drive a car, a kart, a boat or a tank with the keys or a gamepad. A VehicleBody3D is driven by its wheels, a character body the arcade way. It "
			"moves the body by itself and never holds a state up.");
	kind.runs(Runs::ON_AND_ON);
	kind.wants_physics();
	kind.setting<&Self::body_path>("body_path", "What is driven: a VehicleBody3D, a CharacterBody2D or a CharacterBody3D. Empty is Self.");
	kind.setting<&Self::accelerate_input>("accelerate_input", hint::INPUT, "The key, button or trigger to go forward with.").optional();
	kind.setting<&Self::reverse_input>("reverse_input", hint::INPUT, "The one to brake with and then go backward.").optional();
	kind.setting<&Self::left_input>("left_input", hint::INPUT, "The one to steer left with.").optional();
	kind.setting<&Self::right_input>("right_input", hint::INPUT, "The one to steer right with.").optional();
	kind.setting<&Self::top_speed>(
				"top_speed", hint::SPEED, "How fast it goes, in metres a second in 3D and pixels a second in 2D. Backward it is half as fast.")
			.px_in_2d();
	kind.setting<&Self::acceleration>("acceleration", hint::SPEED, "The speed a character body gains in each second, in metres in 3D and pixels in 2D.")
			.px_in_2d();
	kind.setting<&Self::turn_speed>("turn_speed", TURN_SPEED, "How many degrees a character body turns in a second when it is steered all the way.");
	kind.setting<&Self::turn_at_top_speed>("turn_at_top_speed", hint::SHARE,
			"The share of its steering that is left at Top Speed. 1 steers alike at any speed, 0.5 half as sharply when it goes flat out.");
	kind.setting<&Self::engine_force>("engine_force", FORCE, "How hard the engine of a VehicleBody3D pushes at each of its driven wheels.");
	kind.setting<&Self::steering_degrees>("steering_degrees", STEERING, "How far the wheels that steer turn to a side, in degrees.");
	kind.setting<&Self::handbrake_input>("handbrake_input", hint::INPUT, "The key or button of the handbrake, which makes it slide. Empty has none.")
			.optional();
	kind.setting<&Self::grip>("grip", TIMES, "How fast the way it travels comes round to where it points, in 3D. 20 holds the road, 2 is ice.");
	kind.setting<&Self::handbrake_grip>("handbrake_grip", TIMES, "The same while the handbrake is held.").only_if<&Self::handbrake_input>();
	kind.setting<&Self::brake_strength>("brake_strength", TIMES, "How many times as fast it brakes as it gathers speed.");
	kind.setting<&Self::sideways_scrub>("sideways_scrub", TIMES, "The share of its speed that going fully sideways takes off in each second, in 3D.");
	kind.setting<&Self::handbrake_turn>("handbrake_turn", TIMES, "How many times as sharply it turns while the handbrake is held.")
			.only_if<&Self::handbrake_input>();
	kind.setting<&Self::body_model_path>("body_model_path", "The model below a 3D character body that leans in corners. Empty leans nothing.").optional();
	kind.setting<&Self::lean_degrees>("lean_degrees", STEERING, "How far the model leans in a corner, in degrees. Under braking it dips half as far.")
			.only_if<&Self::body_model_path>();
	kind.setting<&Self::store_speed_in>(
				"store_speed_in", "Keep its speed in this variable, below zero when it goes backward. In metres a second in 3D and pixels a second in 2D.")
			.optional();
	kind.setting<&Self::store_slide_in>("store_slide_in", "Keep in this variable how much it slides, from 0 for straight on to 1 for fully sideways.")
			.optional();
	kind.setting<&Self::pull>("pull", PULL, "Steering of its own on top of the player's: -1 all the way to the left, 1 to the right. For damage or a slope.");
	kind.setting<&Self::crash_share>("crash_share", hint::SHARE, "A hit that takes this share of Top Speed at once counts as a crash. Zero has none.");
	kind.setting<&Self::crash_event>("crash_event", "The event to send at a crash. It carries the speed that was lost.");
	kind.setting<&Self::store_crash_in>(
				"store_crash_in", "Keep the speed that a crash took in this variable, in metres a second in 3D and pixels a second in 2D.")
			.optional();
	kind.warns<&Self::warn_drive>("_warn_drive", "m", "index", "what", "body");
}

String SCDriveAction::summary_default() {
	return vformat("Drive at up to %s", words::number(top_speed));
}

void SCDriveAction::warn_drive(SCMachineBase *machine, int64_t, int64_t what, Node *body) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (what == 0 && body != nullptr) {
		verbs::warn_whole(machine, this, int(what),
				vformat("Drive on %s: %s is a %s, and Drive drives a VehicleBody3D, a CharacterBody2D or a CharacterBody3D, so it does not move. Pick one of "
						"those under Body.",
						name, body->get_name(), body->get_class()));
	} else if (what == 2) {
		verbs::warn_whole(machine, this, int(what),
				vformat("Drive on %s: there is no Node3D at %s, so no model leans. Pick the model under Body Model Path, or leave it empty.", name,
						body_model_path));
	} else {
		verbs::warn_whole(machine, this, int(what), vformat("Drive on %s: there is no vehicle at Body to drive. Pick one, or leave it empty for Self.", name));
	}
}
