#include "kinds/conditions/playing.hpp"

#include "action/words.hpp"

void SCPlayingCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "playing", "Ask what an animation or a sound is doing.");
	kind.constants_of<Test>();
	kind.setting<&Self::node_path>("node_path",
			"What plays: an AnimationPlayer, an AnimationTree, an animated sprite, a sound or a video. For any other node, the first of these under it. Empty "
			"is Self.");
	kind.setting<&Self::test>("test",
			"What to ask. Has Ended: it has stopped at its end, for an animation, or plays no more, for a sound. Has Got As Far As: it has come to the "
			"fraction below, or has ended.");
	kind.setting<&Self::fraction>("fraction", hint::SHARE, "How far it has to be: 0.5 is half way, 1 the end. A sound that has ended no longer counts.")
			.only_if<&Self::test, HAS_GOT_AS_FAR_AS>();
	kind.setting<&Self::animation_name>(
			"animation_name", "The animation it has to be, such as walk, or the state of an AnimationTree's state machine. Empty is any. A sound has none.");
	kind.setting<&Self::state_machine>("state_machine",
			"Which state machine of an AnimationTree to ask, by its name in the tree, such as Attacks. Empty is the tree itself. Only for an AnimationTree.");
}

String SCPlayingCondition::summary_default() {
	const String name = words::name_in_line(node_path);
	const String what = animation_name.is_empty() ? String() : " " + String(animation_name);
	switch (test) {
		case IS_PLAYING:
			return vformat("%s is playing%s", name, what);
		case HAS_ENDED:
			return vformat("%s has ended%s", name, what);
		case HAS_GOT_AS_FAR_AS:
			break;
	}
	return vformat(
			"%s has got as far as %s of %s", name, words::number(fraction), animation_name.is_empty() ? String("what it plays") : String(animation_name));
}
