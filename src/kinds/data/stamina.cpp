#include "kinds/data/stamina.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

namespace {

constexpr Hint MOST = { PROPERTY_HINT_RANGE, "0.01,1000,0.01,or_greater,hide_slider" };
constexpr Hint RATE = { PROPERTY_HINT_RANGE, "0,1000,0.01,or_greater,hide_slider" };

} // namespace

void SCStaminaAction::describe(KindTable<Self> &kind) {
	kind.about("data", "stamina",
			"Keep a meter that empties while something is being done and fills up again while it is not. Put one that spends into the state that tires and one "
			"that does not into the others. It never holds a state up.");
	kind.runs(Runs::ON_AND_ON);
	kind.setting<&Self::variable_name>("variable_name", "The variable that is the meter. It is made, and full, if the machine has none of that name.")
			.written();
	kind.setting<&Self::most>("most", MOST, "What the meter holds when it is full.");
	kind.setting<&Self::spends_here>("spends_here", "Whether this state is one that tires. Off only lets the meter come back.");
	kind.setting<&Self::drains_while_held>(
				"drains_while_held", hint::INPUT, "Spend only while this key, button or control is held. Empty spends all the while.")
			.optional()
			.only_if<&Self::spends_here>();
	kind.setting<&Self::drain_rate>("drain_rate", RATE, "How much is spent in a second.").only_if<&Self::spends_here>();
	kind.setting<&Self::recover_rate>("recover_rate", RATE, "How much comes back in a second.");
	kind.setting<&Self::rests_first>("rests_first", hint::SECONDS, "How long after the last of the spending it begins to come back.");
	kind.setting<&Self::empty_event>("empty_event", "The event to send when the meter has run out.");
	kind.setting<&Self::full_event>("full_event", "The event to send when the meter has filled up.");
	kind.warns<&Self::warn_stamina>("_warn_stamina", "m", "index", "what", "held");
}

String SCStaminaAction::summary_default() {
	if (spends_here) {
		return vformat("Spend %s at %s a second", words::picked(variable_name), words::number(drain_rate));
	}
	return vformat("Let %s come back at %s a second", words::picked(variable_name), words::number(recover_rate));
}

void SCStaminaAction::warn_stamina(SCMachineBase *machine, int64_t, int64_t what, const Variant &held) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (what == 0) {
		verbs::warn_whole(machine, this, int(what),
				vformat("Stamina on %s: no variable is picked, so there is no meter to spend from. Pick one under Variable Name.", name));
	} else {
		verbs::warn_whole(machine, this, int(what),
				vformat("Stamina on %s: %s holds %s, which is no amount, so the meter stands still. Pick a variable that holds a number under Variable Name.",
						name, variable_name, values::kind_in_words(held)));
	}
}
