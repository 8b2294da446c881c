#include "kinds/data/texts.hpp"

#include "action/contents.hpp"
#include "action/words.hpp"

namespace {

// A text in a sentence: in quotes, on one line, and not too much of it.
String quoted(const String &text) {
	constexpr int64_t MOST_SHOWN = 40;
	const String line = text.replace("\n", " ");
	return "\"" + (line.length() > MOST_SHOWN ? line.left(MOST_SHOWN - 3) + "..." : line) + "\"";
}

void add_once(PackedStringArray &names, const PackedStringArray &more) {
	for (int64_t i = 0; i < more.size(); i++) {
		if (!names.has(more[i])) {
			names.push_back(more[i]);
		}
	}
}

} // namespace

void SCFormatStringAction::describe(KindTable<Self> &kind) {
	kind.about("data", "build_string", "Put text together into a variable, for a score line, a name or a message.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::text>("text", hint::MULTILINE,
			"The text. A variable's name in braces is replaced by its value, as in \"{coins} of {coins needed}\", and {target} by the name of the node the "
			"machine works on. After a colon comes how to show it: {score:000} writes 007, {speed:0.0} one digit after the point, {coins:,} 12,500, {bonus:+} "
			"+5, {health:%} a share of 1 as a percentage, {left:time} 1:05, and {name:upper}, {name:lower} or {name:title} change its letters.");
	kind.setting<&Self::store_in>("store_in", "The variable the text goes into.");
}

String SCFormatStringAction::summary_default() {
	return vformat("Write %s into %s", quoted(text), store_in);
}

// What a bound text will say is not known beforehand, and a longer interval is the game maker's own choice.
bool SCFormatStringAction::follows_variables() {
	return repeats() && update_interval <= 0.0 && is_typed_in("text");
}

PackedStringArray SCFormatStringAction::variables_to_watch_default() {
	return follows_variables() ? words::names_in(text) : PackedStringArray();
}

PackedStringArray SCFormatStringAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	add_once(names, words::names_in(text));
	return names;
}

void SCStringAction::describe(KindTable<Self> &kind) {
	kind.about("data", "string",
			"Work with text. Make a name upper case, cut off its first letter, look for a word in what the player typed, or split a line into a list.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Operation>();
	kind.setting<&Self::text>("text", hint::MULTILINE, "The text to work with, typed in or from a variable.").unless<&Self::operation, JOIN>();
	kind.setting<&Self::operation>("operation",
			"What to do. Trim cuts blanks off both ends. Part takes some letters out of the middle. Split makes a list of the pieces, and Join puts a list "
			"together into one text.");
	kind.setting<&Self::look_for>("look_for", "The words to look for.").only_if<&Self::operation, FIND, COUNT, CONTAINS, BEGINS_WITH, ENDS_WITH, REPLACE>();
	kind.setting<&Self::new_text>("new_text", "The text put in. For Replace, empty takes the words out.").only_if<&Self::operation, REPLACE, INSERT>();
	kind.setting<&Self::ignore_case>("ignore_case", "Take large and small letters for the same, so that yes is found in YES.")
			.only_if<&Self::operation, FIND, COUNT, CONTAINS, BEGINS_WITH, ENDS_WITH, REPLACE>();
	kind.setting<&Self::position>("position",
				"Which letter to begin at. 0 is the first, 1 the second, and -1 the last. Insert puts the text before that letter, and -1 puts it at the end.")
			.only_if<&Self::operation, PART, INSERT>();
	kind.setting<&Self::length>("length", { PROPERTY_HINT_RANGE, "0,100,1,or_greater" },
				"For Part, how many letters to take, where 0 takes all that follow. For Pad, how many letters long it is to be at least.")
			.only_if<&Self::operation, PART, PAD_START, PAD_END>();
	kind.setting<&Self::times>("times", { PROPERTY_HINT_RANGE, "0,100,1,or_greater" }, "How many times to write it, one after another.")
			.only_if<&Self::operation, REPEAT>();
	kind.setting<&Self::fill_with>("fill_with", "The letter that fills it up, such as 0 or a blank.").only_if<&Self::operation, PAD_START, PAD_END>();
	kind.setting<&Self::separator>("separator", "What stands between two pieces. For Split, empty makes a piece of each letter.")
			.only_if<&Self::operation, SPLIT, JOIN>();
	kind.setting<&Self::list_variable>("list_variable", "The variable holding the list to put together.").only_if<&Self::operation, JOIN>();
	kind.setting<&Self::store_in>("store_in",
				"The variable the answer goes into: a text, a number for Length, Find (-1 when it is not there) and Count, true or false for Contains, Begins "
				"With and Ends With, a list for Split.")
			.optional_if<&Self::operation, CONTAINS, BEGINS_WITH, ENDS_WITH>();
	kind.setting<&Self::true_event>("true_event", "Sent when it is so. Empty sends nothing.")
			.only_if<&Self::operation, CONTAINS, BEGINS_WITH, ENDS_WITH>()
			.optional();
	kind.setting<&Self::false_event>("false_event", "Sent when it is not so. Empty sends nothing.")
			.only_if<&Self::operation, CONTAINS, BEGINS_WITH, ENDS_WITH>()
			.optional();
}

String SCStringAction::summary_default() {
	const String what = quoted(text);
	switch (operation) {
		case UPPER_CASE:
			return vformat("Keep %s in upper case in %s", what, store_in);
		case LOWER_CASE:
			return vformat("Keep %s in lower case in %s", what, store_in);
		case TITLE_CASE:
			return vformat("Keep %s with large first letters in %s", what, store_in);
		case TRIM:
			return vformat("Keep %s without blanks around it in %s", what, store_in);
		case LENGTH:
			return vformat("Keep how long %s is in %s", what, store_in);
		case PART:
			return length > 0 ? vformat("Keep %d letters of %s from %d in %s", length, what, position, store_in)
							  : vformat("Keep %s from letter %d in %s", what, position, store_in);
		case FIND:
			return vformat("Keep where %s stands in %s in %s", quoted(look_for), what, store_in);
		case COUNT:
			return vformat("Keep how often %s stands in %s in %s", quoted(look_for), what, store_in);
		case CONTAINS:
		case BEGINS_WITH:
		case ENDS_WITH: {
			const String asked = operation == CONTAINS ? "contain" : (operation == BEGINS_WITH ? "begin with" : "end with");
			return vformat("Does %s %s %s?%s", what, asked, quoted(look_for), contents::into(store_in));
		}
		case REPLACE:
			return vformat("Keep %s with %s for %s in %s", what, quoted(new_text), quoted(look_for), store_in);
		case INSERT:
			return vformat("Keep %s with %s put in at %d in %s", what, quoted(new_text), position, store_in);
		case REPEAT:
			return vformat("Keep %s written %d times in %s", what, times, store_in);
		case REVERSE:
			return vformat("Keep %s backwards in %s", what, store_in);
		case PAD_START:
		case PAD_END:
			return vformat("Keep %s filled up to %d letters in %s", what, length, store_in);
		case SPLIT:
			return vformat("Split %s at %s into %s", what, quoted(separator), store_in);
		case JOIN:
			break;
	}
	return vformat("Join %s with %s into %s", words::picked(list_variable), quoted(separator), store_in);
}

void SCStringToNumberAction::describe(KindTable<Self> &kind) {
	kind.about("data", "string_to_number",
			"Read a number out of text into a float or int variable. It takes the first number there is, so it reads 12 out of \"Level 12\" and -3.5 out of "
			"\"-3.5 degrees\".");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::text>(
			"text", "The text to read, typed in or from a variable, such as what the player typed. A comma between thousands, as in 12,500, is skipped.");
	kind.setting<&Self::store_in>("store_in", "The variable the number goes into. An int variable takes it rounded.");
	kind.setting<&Self::if_there_is_none>("if_there_is_none", "The number kept when the text holds none.");
	kind.setting<&Self::found_event>("found_event", "Sent when there was a number. It carries the number. Empty sends nothing.").optional();
	kind.setting<&Self::not_found_event>("not_found_event", "Sent when there was none, to ask the player again, for example. Empty sends nothing.").optional();
}

String SCStringToNumberAction::summary_default() {
	return vformat("Read the number in %s into %s", quoted(text), store_in);
}
