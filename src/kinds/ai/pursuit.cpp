#include "kinds/ai/pursuit.hpp"

#include "action/words.hpp"
#include "kinds/ai/mover_settings.hpp"
#include "steering/dealing.hpp"

void SCChaseAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "chase",
			"Go after whatever the Perception node is dealing with, keeping after it as it moves. It stops a little short of it, and goes on when it gets "
			"away. "
			"With a navigation agent under the character it finds its way round walls.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.wants_physics();
	movers::describe_body(kind);
	movers::describe_target(kind);
	movers::describe_speed(kind);
	kind.setting<&Self::stop_within>("stop_within", hint::DISTANCE, "How far short of the target it stops, in metres in 3D and pixels in 2D.").px_in_2d();
	kind.setting<&Self::reached_event>("reached_event",
				"The event to send when it gets that close, with the target. It is sent again when the target got away and is caught once more.")
			.optional();
	kind.setting<&Self::finish_on_arrival>(
			"finish_on_arrival", "Finish the first time it gets there, so that the state can go on. Off keeps after it for ever.");
	movers::describe_turning(kind);
	movers::describe_falls(kind);
	dealing::bind(kind);
}

String SCChaseAction::summary_default() {
	return vformat("Chase %s, stopping %s short", words::variable_or(target_variable, "what it senses"), words::number(stop_within));
}

String SCChaseAction::holds_its_state_default() {
	return finish_on_arrival ? "" : "Tick Finish On Arrival, move on with an event sent after a Delay";
}

void SCChaseAction::warn_dealing(SCMachineBase *machine, int64_t, Node *body) {
	dealing::warn(machine, this, target_variable, body);
}

void SCFleeAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "flee",
			"Run away from whatever the Perception node is dealing with. It heads straight away from it until it is far enough off, and again when it comes "
			"nearer. "
			"With a navigation agent under the character it finds its way round walls.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.wants_physics();
	movers::describe_body(kind);
	movers::describe_target(kind);
	movers::describe_speed(kind);
	kind.setting<&Self::safe_distance>("safe_distance", hint::DISTANCE, "How far off counts as safe, in metres in 3D and pixels in 2D.").px_in_2d();
	kind.setting<&Self::look_ahead>("look_ahead", hint::DISTANCE,
				"How far ahead it aims as it runs, in metres in 3D and pixels in 2D. More lets a navigation agent find open ground beyond a wall.")
			.px_in_2d();
	kind.setting<&Self::safe_event>("safe_event", "The event to send when it has got away.").optional();
	kind.setting<&Self::finish_when_safe>("finish_when_safe", "Finish once it has got away, so that the state can go on. Off keeps it wary for ever.");
	movers::describe_turning(kind);
	movers::describe_falls(kind);
	dealing::bind(kind);
}

String SCFleeAction::summary_default() {
	return vformat("Run away until %s clear", words::number(safe_distance));
}

String SCFleeAction::holds_its_state_default() {
	return finish_when_safe ? "" : "Tick Finish When Safe, move on with an event sent after a Delay";
}

void SCFleeAction::warn_dealing(SCMachineBase *machine, int64_t, Node *body) {
	dealing::warn(machine, this, target_variable, body);
}
