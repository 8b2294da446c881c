#include "kinds/ai/make_noise.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"
#include "steering/senses.hpp"

void SCMakeNoiseAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "make_noise",
			"Make a noise that characters hear, such as a gunshot, a bottle thrown to smash round a corner, a door slammed, an alarm bell or footsteps on a "
			"creaking floor. It plays no sound. Everybody with a Perception node that is near enough hears it, also through walls.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<At>();
	kind.setting<&Self::at>("at", "Where the noise comes from: a node, such as the gun, or a place.");
	kind.setting<&Self::at_node_path>("at_node_path", "The 2D or 3D node that the noise comes from. Empty is Self.").only_if<&Self::at, A_NODE>();
	kind.setting<&Self::place>("place", "The place that the noise comes from.").in_2d(Vector2(0, 0)).only_if<&Self::at, A_PLACE>();
	kind.setting<&Self::max_distance>("max_distance", hint::DISTANCE,
				"How far the noise carries, in metres in 3D and pixels in 2D. Somebody with a shorter Hearing Range still has to be within that.")
			.px_in_2d();
	kind.setting<&Self::only_group>("only_group", "Only characters of this group hear it, such as guards. Empty is everybody.").optional();
	kind.setting<&Self::heard_event>("heard_event", "The event that each of those who hear it gets, with the place of the noise.").optional();
	kind.setting<&Self::store_count_in>("store_count_in", "Keep how many heard it in this variable.");
	kind.warns<&Self::warn_noise>("_warn_noise", "m", "index", "what", "names");
	kind.warns<&Self::warn_deaf>("_warn_deaf", "m", "index", "names");
}

String SCMakeNoiseAction::summary_default() {
	const String where = at == A_NODE ? vformat("at %s", words::name_in_line(at_node_path)) : String("at a place");
	const String who = only_group.is_empty() ? String("anybody") : vformat("the %s", only_group);
	return vformat("Make a noise %s that %s within %s hears, sending %s", where, who, words::number(max_distance), words::event_in_words(heard_event));
}

void SCMakeNoiseAction::warn_noise(SCMachineBase *machine, int64_t index, int64_t what, const PackedStringArray &names) {
	if (machine == nullptr) {
		return;
	}
	const String on = machine->name_in_messages();
	if (what == NO_NODE) {
		verbs::warn_whole(machine, this, NO_NODE,
				vformat("Make Noise on %s: there is no node in the world to make the noise at. Pick one under At Node, such as the gun, or choose A Place.",
						on));
	} else if (what == NO_DISTANCE) {
		verbs::warn_whole(machine, this, NO_DISTANCE,
				vformat("Make Noise on %s: Max Distance is %s, so nobody can hear it. Give it how far the noise carries.", on, words::number(max_distance)));
	} else {
		warn_deaf(machine, index, names);
	}
}

void SCMakeNoiseAction::warn_deaf(SCMachineBase *machine, int64_t, const PackedStringArray &names) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, this, ALL_DEAF,
				vformat("Make Noise on %s: %s would hear it, but %s Perception has Hearing Range 0, which is deaf. Give it a Hearing Range.",
						machine->name_in_messages(), senses::listed(names), names.size() > 1 ? "their" : "its"));
	}
}
