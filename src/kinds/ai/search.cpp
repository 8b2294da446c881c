#include "kinds/ai/search.hpp"

#include "kinds/ai/mover_settings.hpp"

void SCSearchLastKnownAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "search_last_known",
			"Go and look where it last saw the thing it was chasing. It walks to the place that its Perception node remembers, looks about there, and gives "
			"up. One "
			"that is stuck on the way looks about where it stands.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.wants_physics();
	movers::describe_body(kind);
	movers::describe_speed(kind);
	kind.setting<&Self::arrive_within>("arrive_within", hint::DISTANCE, "How close to the place counts as being there, in metres in 3D and pixels in 2D.")
			.px_in_2d();
	kind.setting<&Self::look_around_for>("look_around_for", movers::SECONDS, "How many seconds it looks about there before it gives up.");
	kind.setting<&Self::gave_up_event>("gave_up_event", "The event to send when it has looked in vain.").optional();
	kind.setting<&Self::arrived_event>("arrived_event", "The event to send as it gets there.").optional();
	movers::describe_turning(kind);
	movers::describe_falls(kind);
	kind.warns<&Self::warn_search>("_warn_search", "m", "index", "what");
}

String SCSearchLastKnownAction::summary_default() {
	return "Search where it was last seen";
}

void SCSearchLastKnownAction::warn_search(SCMachineBase *machine, int64_t, int64_t what) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (what == 0) {
		verbs::warn_whole(machine, this, 0,
				vformat("Search Last Known on %s has no Perception node under the character, so there is no last known place to search and it gives up at "
						"once.",
						name));
	} else {
		verbs::warn_whole(machine, this, 1,
				vformat("Search Last Known on %s: its Perception has never seen anything, so there is no last known place to search and it gives up at once.",
						name));
	}
}
