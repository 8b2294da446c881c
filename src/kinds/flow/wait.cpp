#include "kinds/flow/wait.hpp"

#include "action/words.hpp"

void SCWaitAction::describe(KindTable<Self> &kind) {
	kind.about("flow", "wait", "Wait a number of seconds, then finish.");
	kind.runs_for_a_while<&Self::seconds, &Self::random_extra>();
	kind.setting<&Self::seconds>("seconds", hint::SECONDS, "How long to wait.");
	kind.setting<&Self::random_extra>("random_extra", hint::SECONDS, "Up to this many extra seconds, picked at random each time.");
	kind.setting<&Self::real_time>("real_time", "Count real seconds, whatever speed the game runs at.");
}

String SCWaitAction::summary_default() {
	const String unit = real_time ? " of real time" : "";
	if (random_extra > 0.0) {
		return vformat("Wait %s to %s s%s", words::number(seconds), words::number(seconds + random_extra), unit);
	}
	return vformat("Wait %s s%s", words::number(seconds), unit);
}
