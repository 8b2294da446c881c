#include "kinds/logic/switching.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCBoolOperatorAction::describe(KindTable<Self> &kind) {
	kind.about("logic", "bool", "True-or-false sums into a variable, such as 'both of these', 'either of these', 'not this' or 'one of these but not both'.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Operation>();
	kind.setting<&Self::operation>(
			"operation", "What has to be so for the answer to be true. For example, Both Of These for a door that needs the key and the lever.");
	kind.setting<&Self::first>("first", "The first true or false, typed in or from a variable. A number counts as true unless it is 0.");
	kind.setting<&Self::second>("second", "The second true or false. Not This looks at the first alone.").unless<&Self::operation, NOT_THIS>();
	kind.setting<&Self::store_in>("store_in", "The variable the answer goes into, as true or false.");
}

String SCBoolOperatorAction::summary_default() {
	const String a = first ? "true" : "false";
	const String b = second ? "true" : "false";
	switch (operation) {
		case BOTH:
			return vformat("Set %s to %s and %s", store_in, a, b);
		case EITHER:
			return vformat("Set %s to %s or %s", store_in, a, b);
		case NOT_THIS:
			return vformat("Set %s to not %s", store_in, a);
		case ONE_BUT_NOT_BOTH:
			break;
	}
	return vformat("Set %s to one of %s and %s but not both", store_in, a, b);
}

void SCSwitchAction::describe(KindTable<Self> &kind) {
	kind.about("logic", "switch", "Send one of several events, picked by what a variable holds.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Test>();
	kind.setting<&Self::variable_name>("variable_name", "The variable to look at, which can be a Number, a Whole number or Text.");
	kind.setting<&Self::test>(
			"test", "How a case matches. Is Below takes the first case that the variable is below, so list them from lowest to highest: 25, 50, 100.");
	kind.setting<&Self::cases>("cases", "The values to match, one per case, in order, as numbers or as words for a String variable.");
	kind.setting<&Self::events>("events", "The event each case sends, in the same order as the cases.");
	kind.setting<&Self::otherwise_event>("otherwise_event", "Sent when no case matches. Empty sends nothing.").optional();
	kind.setting<&Self::only_when_it_changes>(
				"only_when_it_changes", "While it runs every frame, send an event only when the case that matches changes, not every frame it stays the same.")
			.only_if<&Self::run_mode, EVERY_FRAME>();
	kind.warns<&Self::warn_switch>("_warn_switch", "m", "index", "which", "what");
}

String SCSwitchAction::case_text(const Variant &given) {
	return words::text_of(given).strip_edges();
}

String SCSwitchAction::summary_default() {
	String line = vformat("Switch on %s", variable_name);
	const String is = test == IS_BELOW ? "below " : "";
	for (int64_t i = 0; i < cases.size(); i++) {
		const StringName event = i < events.size() ? StringName(events[i]) : StringName();
		line += vformat(", %s%s sends %s", is, case_text(cases[i]), words::event_in_words(event));
	}
	if (!otherwise_event.is_empty()) {
		line += vformat(", anything else %s", otherwise_event);
	}
	const String lost = never_reached();
	return lost.is_empty() ? line : vformat("%s (its cases are not from lowest to highest, so %s is never reached)", line, lost);
}

// Whatever is below a case is below an earlier and higher one too.
String SCSwitchAction::never_reached() const {
	if (test != IS_BELOW) {
		return String();
	}
	bool any = false;
	double highest = 0.0;
	for (int64_t i = 0; i < cases.size(); i++) {
		const String text = case_text(cases[i]);
		if (!text.is_valid_float()) {
			continue;
		}
		const double bound = text.to_float();
		if (any && bound <= highest) {
			return text;
		}
		highest = bound;
		any = true;
	}
	return String();
}

void SCSwitchAction::warn_switch(SCMachineBase *machine, int, int which, const String &what) {
	verbs::warn_whole(machine, this, which, what);
}
