#include "kinds/data/numbers.hpp"

#include "action/words.hpp"

void SCClampAction::describe(KindTable<Self> &kind) {
	kind.about("data", "clamp",
			"Keep a variable inside a range, and optionally send an event when it hits an end, such as a health bar that cannot go below zero or a score "
			"capped at a maximum.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::variable_name>("variable_name", "The variable to keep inside the range, a float or an int.").written();
	kind.setting<&Self::lowest>("lowest", "The least it may be. Pick a variable beside it for an end that moves.");
	kind.setting<&Self::highest>("highest", "The most it may be.");
	kind.setting<&Self::lowest_event>("lowest_event",
				"Sent when it comes to the lowest end, such as Dead at no health. It is sent once until the variable has been away from that end. Empty sends "
				"nothing.")
			.optional();
	kind.setting<&Self::highest_event>("highest_event",
				"Sent when it comes to the highest end, such as Full. It is sent once until the variable has been away from that end. Empty sends nothing.")
			.optional();
}

String SCClampAction::summary_default() {
	String line = vformat("Keep %s from %s to %s", variable_name, words::number(lowest), words::number(highest));
	if (!lowest_event.is_empty()) {
		line += vformat(", the lowest sends %s", lowest_event);
	}
	if (!highest_event.is_empty()) {
		line += vformat(", the highest sends %s", highest_event);
	}
	return line;
}

bool SCClampAction::follows_variables() {
	return repeats() && update_interval <= 0.0 && !variable_name.is_empty();
}

PackedStringArray SCClampAction::variables_to_watch_default() {
	PackedStringArray names;
	if (follows_variables()) {
		names.push_back(variable_name);
		const Array bounds = from_variables.values();
		for (int64_t i = 0; i < bounds.size(); i++) {
			const String bound = bounds[i];
			if (!bound.is_empty() && !names.has(bound)) {
				names.push_back(bound);
			}
		}
	}
	return names;
}

void SCRandomNumberAction::describe(KindTable<Self> &kind) {
	kind.about("data", "random_number",
			"Put a random number into a variable. Use it for a roll of the dice, how long to wait, how much gold the chest holds or which door the monster "
			"comes through.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::lowest>("lowest", "The smallest number it can be.");
	kind.setting<&Self::highest>("highest", "The largest number it can be. A die goes from 1 to 6.");
	kind.setting<&Self::whole_number>(
			"whole_number", "Only whole numbers, each as likely as any other, both ends included. An int variable always gets a whole number.");
	kind.setting<&Self::never_twice_the_same>(
				"never_twice_the_same", "Never the number that the variable holds already, so the same line is not spoken twice in a row.")
			.only_if<&Self::whole_number>();
	kind.setting<&Self::store_in>("store_in", "The variable the number goes into.");
}

String SCRandomNumberAction::summary_default() {
	return vformat("Keep a random %snumber from %s to %s in %s", whole_number ? "whole " : "", words::number(lowest), words::number(highest), store_in);
}

void SCRandomSeedAction::describe(KindTable<Self> &kind) {
	kind.about("data", "random_seed",
			"Set the seed every random choice follows, for dice rolls, chances, random events, loot and floors. The same seed gives the same game again, as in "
			"a daily challenge or a world that a friend can visit.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<From>();
	kind.setting<&Self::from>("from",
			"Where the seed comes from. A Text makes one from any words, such as what the player typed for the name of a world. The Clock makes every game "
			"another one.");
	kind.setting<&Self::number>("number", "The seed. Any whole number will do.").only_if<&Self::from, A_NUMBER>();
	kind.setting<&Self::text>("text", "The words to make the seed from. The same words give the same seed, on every machine.").only_if<&Self::from, A_TEXT>();
	kind.setting<&Self::store_in>("store_in", "Keep the seed in this variable as a whole number, to show it or to save it. Empty keeps it nowhere.").optional();
}

String SCRandomSeedAction::summary_default() {
	const String kept = store_in.is_empty() ? String() : vformat(", kept as %s", store_in);
	switch (from) {
		case A_TEXT:
			return vformat("Seed the random numbers with \"%s\"%s", text, kept);
		case THE_CLOCK:
			return vformat("Seed the random numbers by the clock%s", kept);
		case A_NUMBER:
			break;
	}
	return vformat("Seed the random numbers with %d%s", number, kept);
}
