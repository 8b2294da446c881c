#include "kinds/data/texts.hpp"

#include "action/action_shared.hpp"
#include "action/showing.hpp"
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

void SCFormatStringAction::describe(KindTable<SCFormatStringAction> &kind) {
	kind.about("data", "build_string", "Put text together into a variable, for a score line, a name or a message.");
	kind.setting<&SCFormatStringAction::text>("text", hint::MULTILINE, "The text. A variable's name in braces is replaced by its value, as in \"{coins} of {coins needed}\", and {target} by the name of the node the machine works on. After a colon comes how to show it: {score:000} writes 007, {speed:0.0} one digit after the point, {coins:,} 12,500, {bonus:+} +5, {health:%} a share of 1 as a percentage, {left:time} 1:05, and {name:upper}, {name:lower} or {name:title} change its letters.");
	kind.setting<&SCFormatStringAction::store_in>("store_in", "The variable the text goes into.");
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

void SCStringAction::describe(KindTable<SCStringAction> &kind) {
	kind.about("data", "string", "Work with text. Make a name upper case, cut off its first letter, look for a word in what the player typed, or split a line into a list.");
	kind.constants_of<Operation>();
	kind.setting<&SCStringAction::text>("text", hint::MULTILINE, "The text to work with, typed in or from a variable.");
	kind.setting<&SCStringAction::operation>("operation", "What to do. Trim cuts blanks off both ends. Part takes some letters out of the middle. Split makes a list of the pieces, and Join puts a list together into one text.").relists();
	kind.setting<&SCStringAction::look_for>("look_for", "The words to look for.");
	kind.setting<&SCStringAction::new_text>("new_text", "The text put in. For Replace, empty takes the words out.");
	kind.setting<&SCStringAction::ignore_case>("ignore_case", "Take large and small letters for the same, so that yes is found in YES.");
	kind.setting<&SCStringAction::position>("position", "Which letter to begin at. 0 is the first, 1 the second, and -1 the last. Insert puts the text before that letter, and -1 puts it at the end.");
	kind.setting<&SCStringAction::length>("length", { PROPERTY_HINT_RANGE, "0,100,1,or_greater" }, "For Part, how many letters to take, where 0 takes all that follow. For Pad, how many letters long it is to be at least.");
	kind.setting<&SCStringAction::times>("times", { PROPERTY_HINT_RANGE, "0,100,1,or_greater" }, "How many times to write it, one after another.");
	kind.setting<&SCStringAction::fill_with>("fill_with", "The letter that fills it up, such as 0 or a blank.");
	kind.setting<&SCStringAction::separator>("separator", "What stands between two pieces. For Split, empty makes a piece of each letter.");
	kind.setting<&SCStringAction::list_variable>("list_variable", "The variable holding the list to put together.");
	kind.setting<&SCStringAction::store_in>("store_in", "The variable the answer goes into: a text, a number for Length, Find (-1 when it is not there) and Count, true or false for Contains, Begins With and Ends With, a list for Split.");
	kind.setting<&SCStringAction::true_event>("true_event", "Sent when it is so. Empty sends nothing.");
	kind.setting<&SCStringAction::false_event>("false_event", "Sent when it is not so. Empty sends nothing.");
}

bool SCStringAction::searches(Operation operation) {
	return operation >= FIND && operation <= REPLACE;
}

bool SCStringAction::asks(Operation operation) {
	return operation == CONTAINS || operation == BEGINS_WITH || operation == ENDS_WITH;
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
			return length > 0 ? vformat("Keep %d letters of %s from %d in %s", length, what, position, store_in) : vformat("Keep %s from letter %d in %s", what, position, store_in);
		case FIND:
			return vformat("Keep where %s stands in %s in %s", quoted(look_for), what, store_in);
		case COUNT:
			return vformat("Keep how often %s stands in %s in %s", quoted(look_for), what, store_in);
		case CONTAINS:
		case BEGINS_WITH:
		case ENDS_WITH: {
			const String asked = operation == CONTAINS ? "contain" : (operation == BEGINS_WITH ? "begin with" : "end with");
			return vformat("Does %s %s %s?%s", what, asked, quoted(look_for), store_in.is_empty() ? String() : vformat(" into %s", store_in));
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
	return vformat("Join %s with %s into %s", list_variable.is_empty() ? ActionShared::get().not_picked : String(list_variable), quoted(separator), store_in);
}

TypedArray<StringName> SCStringAction::optional_names_default() {
	TypedArray<StringName> optional = Array::make(StringName("true_event"), StringName("false_event"));
	if (asks(operation)) {
		optional.push_back(StringName("store_in"));
	}
	return optional;
}

void SCStringAction::_validate_property(PropertyInfo &property) const {
	const bool pads = operation == PAD_START || operation == PAD_END;
	showing::only_if(operation != JOIN, property, { "text" });
	showing::only_if(searches(operation), property, { "look_for", "ignore_case" });
	showing::only_if(operation == REPLACE || operation == INSERT, property, { "new_text" });
	showing::only_if(operation == PART || operation == INSERT, property, { "position" });
	showing::only_if(operation == PART || pads, property, { "length" });
	showing::only_if(operation == REPEAT, property, { "times" });
	showing::only_if(pads, property, { "fill_with" });
	showing::only_if(operation == SPLIT || operation == JOIN, property, { "separator" });
	showing::only_if(operation == JOIN, property, { "list_variable" });
	showing::only_if(asks(operation), property, { "true_event", "false_event" });
}

void SCStringToNumberAction::describe(KindTable<SCStringToNumberAction> &kind) {
	kind.about("data", "string_to_number", "Read a number out of text into a float or int variable. It takes the first number there is, so it reads 12 out of \"Level 12\" and -3.5 out of \"-3.5 degrees\".");
	kind.setting<&SCStringToNumberAction::text>("text", "The text to read, typed in or from a variable, such as what the player typed. A comma between thousands, as in 12,500, is skipped.");
	kind.setting<&SCStringToNumberAction::store_in>("store_in", "The variable the number goes into. An int variable takes it rounded.");
	kind.setting<&SCStringToNumberAction::if_there_is_none>("if_there_is_none", "The number kept when the text holds none.");
	kind.setting<&SCStringToNumberAction::found_event>("found_event", "Sent when there was a number. It carries the number. Empty sends nothing.");
	kind.setting<&SCStringToNumberAction::not_found_event>("not_found_event", "Sent when there was none, to ask the player again, for example. Empty sends nothing.");
}

String SCStringToNumberAction::summary_default() {
	return vformat("Read the number in %s into %s", quoted(text), store_in);
}

TypedArray<StringName> SCStringToNumberAction::optional_names_default() {
	return Array::make(StringName("found_event"), StringName("not_found_event"));
}
