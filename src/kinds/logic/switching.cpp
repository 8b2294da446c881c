#include "kinds/logic/switching.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"
#include "machine_node/sc_machine_base.hpp"
#include "settings/plumbing.hpp"

void SCBoolOperatorAction::describe(KindTable<SCBoolOperatorAction> &kind) {
	kind.about("logic", "bool", "True-or-false sums into a variable, such as 'both of these', 'either of these', 'not this' or 'one of these but not both'.");
	kind.constants_of<Operation>();
	kind.setting<&SCBoolOperatorAction::operation>("operation", "What has to be so for the answer to be true. For example, Both Of These for a door that needs the key and the lever.").relists();
	kind.setting<&SCBoolOperatorAction::first>("first", "The first true or false, typed in or from a variable. A number counts as true unless it is 0.");
	kind.setting<&SCBoolOperatorAction::second>("second", "The second true or false. Not This looks at the first alone.");
	kind.setting<&SCBoolOperatorAction::store_in>("store_in", "The variable the answer goes into, as true or false.");
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

void SCBoolOperatorAction::_validate_property(PropertyInfo &property) const {
	if (operation == NOT_THIS && (property.name == StringName("second") || property.name == StringName("second_variable"))) {
		hide_from_inspector(property);
	}
}

void SCSwitchAction::describe(KindTable<SCSwitchAction> &kind) {
	kind.about("logic", "switch", "Send one of several events, picked by what a variable holds.");
	kind.constants_of<Test>();
	kind.setting<&SCSwitchAction::variable_name>("variable_name", "The variable to look at, which can be a Number, a Whole number or Text.");
	kind.setting<&SCSwitchAction::test>("test", "How a case matches. Is Below takes the first case that the variable is below, so list them from lowest to highest: 25, 50, 100.");
	kind.setting<&SCSwitchAction::cases>("cases", "The values to match, one per case, in order, as numbers or as words for a String variable.");
	kind.setting<&SCSwitchAction::events>("events", "The event each case sends, in the same order as the cases.");
	kind.setting<&SCSwitchAction::otherwise_event>("otherwise_event", "Sent when no case matches. Empty sends nothing.");
	kind.setting<&SCSwitchAction::only_when_it_changes>("only_when_it_changes", "While it runs every frame, send an event only when the case that matches changes, not every frame it stays the same.");
	ClassDB::bind_method(D_METHOD("_warn_switch", "m", "index", "which", "what"), &SCSwitchAction::warn_switch);
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

TypedArray<StringName> SCSwitchAction::optional_names_default() {
	return Array::make(StringName("otherwise_event"));
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

void SCSwitchAction::_validate_property(PropertyInfo &property) const {
	if (property.name == StringName("only_when_it_changes") && run_mode != EVERY_FRAME) {
		hide_from_inspector(property);
	}
}
