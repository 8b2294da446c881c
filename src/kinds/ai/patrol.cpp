#include "kinds/ai/patrol.hpp"

#include "action/words.hpp"
#include "kinds/ai/mover_settings.hpp"

namespace {

String markers_in_line(const SCPatrolAction *patrol) {
	if (patrol->points.is_empty()) {
		return vformat("the markers in %s", words::variable_or(patrol->route_group_variable, patrol->route_group));
	}
	String line;
	for (int64_t i = 0; i < patrol->points.size(); i++) {
		const String name = words::name_in_line(patrol->points[i]);
		const bool is_last = i + 1 == patrol->points.size();
		line = i == 0 ? name : (is_last ? vformat("%s and %s", line, name) : line + String(", ") + name);
	}
	return line;
}

} // namespace

void SCPatrolAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "patrol",
			"Walk a round from one marker to the next, waiting at each, for ever. It keeps how far it has got in a variable, so that it goes on from there "
			"when it "
			"has been called away. A walker turns back where its floor ends.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.wants_physics();
	kind.constants_of<Order>();
	movers::describe_body(kind);
	kind.setting<&Self::points>("points", "The markers of the round, in the order it walks them.");
	kind.setting<&Self::route_group>("route_group", "The group that the markers are in, for a round without Points. They are walked in the order of the scene.")
			.optional();
	kind.setting<&Self::route_group_variable>(
				"route_group_variable", "Read the name of that group from this variable, so that each character can have a round of its own.")
			.optional();
	kind.setting<&Self::order>("order", "What it does at the end: begin again at the first marker, walk back the way it came, or stop there.");
	movers::describe_speed(kind);
	kind.setting<&Self::arrive_within>("arrive_within", hint::DISTANCE, "How close to a marker counts as being there, in metres in 3D and pixels in 2D.")
			.px_in_2d();
	kind.setting<&Self::wait_at_each>("wait_at_each", movers::SECONDS, "How many seconds it stands at each marker.");
	kind.setting<&Self::progress_variable>("progress_variable",
				"The variable that the number of the marker it is walking to is kept in, 0 for the first. Another of this name with _step behind it keeps "
				"which way it "
				"walks.")
			.optional()
			.written();
	kind.setting<&Self::reached_event>("reached_event", "The event to send at each marker, with the marker.").optional();
	kind.setting<&Self::finished_event>("finished_event", "The event to send at the end of the round.").only_if<&Self::order, ONCE>().optional();
	movers::describe_turning(kind);
	movers::describe_falls(kind);
	kind.warns<&Self::warn_patrol>("_warn_patrol", "m", "index", "what", "number");
}

String SCPatrolAction::summary_default() {
	if (points.is_empty() && route_group.is_empty() && route_group_variable.is_empty()) {
		return "No markers to patrol yet";
	}
	const String markers = markers_in_line(this);
	switch (order) {
		case PING_PONG:
			return vformat("Patrol %s and back", markers);
		case ONCE:
			return vformat("Patrol %s once", markers);
		case LOOP:
			break;
	}
	return vformat("Patrol %s", markers);
}

String SCPatrolAction::holds_its_state_default() {
	return order == ONCE ? "" : "Set Order to Once, move on with an event sent after a Delay";
}

void SCPatrolAction::warn_patrol(SCMachineBase *machine, int64_t, int64_t what, int64_t number) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (what == 0) {
		verbs::warn_whole(
				machine, this, 0, vformat("Patrol on %s has no round to walk. Name the markers in Points, or put them in a group and name that group.", name));
	} else {
		verbs::warn_whole(machine, this, 1,
				vformat("Patrol on %s: marker %d of its round is missing, so the patrol stops here. A marker that was renamed or deleted has to be picked "
						"again.",
						name, number));
	}
}
