// Compiled runtimes of the kinds that work with text.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "action/settings_in_use.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "kinds/data/texts.hpp"
#include "machine/value_kinds.hpp"

namespace {

// Longer than any text a player reads; a number out of a variable may be anything.
constexpr int64_t MOST_LETTERS = 1000000;

class FormatString : public OnceOrRepeating<FormatString> {
	static void tell_what_is_missing(SCMachineBase *machine, const SCMachineAction *action, const String &text) {
		const PackedStringArray names = words::names_in(text);
		for (int64_t i = 0; i < names.size(); i++) {
			if (!machine->has_value(names[i])) {
				verbs::warn(machine, action,
						vformat("this machine has no variable called %s, so {%s} was left as it stands. Add it under Variables, or write the name of one "
								"that it has.",
								names[i], names[i]));
			}
		}
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const String text = setting_of<&SCFormatStringAction::text>(action);
		tell_what_is_missing(machine, action, text);
		verbs::keep<&SCFormatStringAction::store_in>(machine, action, words::fill_in(text, machine), "the text");
	}
};

String in_title_case(const String &text) {
	String title;
	bool begins_a_word = true;
	for (int64_t i = 0; i < text.length(); i++) {
		const String letter = text.substr(i, 1);
		title += begins_a_word ? letter.to_upper() : letter;
		begins_a_word = letter.strip_edges().is_empty() || letter == "-";
	}
	return title;
}

String filled_up(const String &text, int64_t length, const String &with, bool at_the_start) {
	const String fill = with.is_empty() ? String(" ") : with.left(1);
	const int64_t missing = CLAMP(length, int64_t(0), MOST_LETTERS) - text.length();
	if (missing <= 0) {
		return text;
	}
	return at_the_start ? fill.repeat(missing) + text : text + fill.repeat(missing);
}

Array pieces_of(const String &text, const String &separator) {
	Array pieces;
	if (separator.is_empty()) {
		for (int64_t i = 0; i < text.length(); i++) {
			pieces.push_back(text.substr(i, 1));
		}
	} else if (!text.is_empty()) {
		const PackedStringArray split = text.split(separator);
		for (int64_t i = 0; i < split.size(); i++) {
			pieces.push_back(split[i]);
		}
	}
	return pieces;
}

class StringWork : public OnceOrRepeating<StringWork> {
	using Kind = SCStringAction;

	static Variant joined(SCMachineBase *machine, const SCMachineAction *action) {
		const StringName name = setting_of<&Kind::list_variable>(action);
		const Variant held = name.is_empty() ? Variant() : machine->get_value(name);
		if (!values::is_list(held)) {
			verbs::warn(machine, action,
					name.is_empty() ? String("no list is picked, so there was nothing to join. Pick the variable holding it beside List Variable.")
									: vformat("%s holds %s, which is not a list, so there was nothing to join. Pick the variable holding the list beside List "
											  "Variable.",
											  name, values::kind_in_words(held)));
			return String();
		}
		const Array list = held;
		PackedStringArray pieces;
		for (int64_t i = 0; i < list.size(); i++) {
			pieces.push_back(words::text_of(list[i]));
		}
		return setting_of<&Kind::separator>(action).join(pieces);
	}

	static Variant searched(const SCMachineAction *action, const String &text) {
		const bool ignore_case = setting_of<&Kind::ignore_case>(action);
		const String look_for = setting_of<&Kind::look_for>(action);
		const String in = ignore_case ? text.to_lower() : text;
		const String what = ignore_case ? look_for.to_lower() : look_for;
		switch (setting_of<&Kind::operation>(action)) {
			case Kind::FIND:
				return in.find(what);
			case Kind::COUNT:
				return in.count(what);
			case Kind::BEGINS_WITH:
				return in.begins_with(what);
			case Kind::ENDS_WITH:
				return in.ends_with(what);
			case Kind::REPLACE: {
				const String new_text = setting_of<&Kind::new_text>(action);
				return ignore_case ? text.replacen(look_for, new_text) : text.replace(look_for, new_text);
			}
			default:
				return in.contains(what);
		}
	}

	static Variant answer_of(SCMachineBase *machine, const SCMachineAction *action, const String &text) {
		const auto operation = setting_of<&Kind::operation>(action);
		const int64_t length = setting_of<&Kind::length>(action);
		int64_t position = setting_of<&Kind::position>(action);
		if (position < 0) {
			position += text.length() + (operation == Kind::INSERT ? 1 : 0);
		}
		position = CLAMP(position, int64_t(0), text.length());
		switch (operation) {
			case Kind::UPPER_CASE:
				return text.to_upper();
			case Kind::LOWER_CASE:
				return text.to_lower();
			case Kind::TITLE_CASE:
				return in_title_case(text);
			case Kind::TRIM:
				return text.strip_edges();
			case Kind::LENGTH:
				return text.length();
			case Kind::PART:
				return text.substr(position, length > 0 ? MIN(length, text.length()) : int64_t(-1));
			case Kind::INSERT:
				return text.insert(position, setting_of<&Kind::new_text>(action));
			case Kind::REPEAT: {
				const int64_t most = MOST_LETTERS / MAX(text.length(), int64_t(1));
				return text.repeat(CLAMP(setting_of<&Kind::times>(action), int64_t(0), most));
			}
			case Kind::REVERSE:
				return text.reverse();
			case Kind::PAD_START:
			case Kind::PAD_END:
				return filled_up(text, length, setting_of<&Kind::fill_with>(action), operation == Kind::PAD_START);
			case Kind::SPLIT:
				return pieces_of(text, setting_of<&Kind::separator>(action));
			case Kind::JOIN:
				return joined(machine, action);
			default:
				return searched(action, text);
		}
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		if (verbs::applies<&Kind::look_for>(action) && setting_of<&Kind::look_for>(action).is_empty()) {
			verbs::warn(machine, action, "there is nothing to look for, so it did nothing. Type the words in beside Look For.");
			return;
		}
		const Variant answer = answer_of(machine, action, setting_of<&Kind::text>(action));
		if (!verbs::applies<&Kind::true_event>(action)) {
			verbs::keep<&Kind::store_in>(machine, action, answer, "the answer");
			return;
		}
		const StillHere here(machine);
		verbs::keep_or_tell<&Kind::store_in, &Kind::true_event, &Kind::false_event>(machine, action, answer);
		if (here) {
			verbs::send_either<&Kind::true_event, &Kind::false_event>(machine, action, bool(answer));
		}
	}
};

bool is_digit(const String &text, int64_t at) {
	return at >= 0 && at < text.length() && text[at] >= '0' && text[at] <= '9';
}

bool is_letter(const String &text, int64_t at) {
	return at >= 0 && at < text.length() && text.substr(at, 1).to_upper() != text.substr(at, 1).to_lower();
}

// The first number that stands in the text, nil when there is none.
Variant number_in(const String &text) {
	int64_t at = 0;
	while (at < text.length() && !is_digit(text, at)) {
		at++;
	}
	if (at == text.length()) {
		return Variant();
	}
	String digits;
	bool whole = true;
	int64_t begins = at;
	if (at > 0 && text[at - 1] == '.' && !is_letter(text, at - 2)) {
		begins = at - 1;
		digits = "0.";
		whole = false;
	}
	// A dash after a letter is a hyphen, as in "room-7". The typographer's minus counts as well.
	const bool has_dash = begins > 0 && (text[begins - 1] == '-' || text[begins - 1] == 0x2212);
	if (has_dash && !is_letter(text, begins - 2) && !is_digit(text, begins - 2)) {
		digits = "-" + digits;
	}
	while (at < text.length()) {
		if (is_digit(text, at)) {
			digits += text.substr(at, 1);
		} else if (text[at] == '.' && whole && is_digit(text, at + 1)) {
			digits += ".";
			whole = false;
		} else if (!(text[at] == ',' && whole && is_digit(text, at + 1) && is_digit(text, at + 2) && is_digit(text, at + 3) && !is_digit(text, at + 4))) {
			break;
		}
		at++;
	}
	const bool has_power = at < text.length() && (text[at] == 'e' || text[at] == 'E');
	const int64_t power_sign = has_power && at + 1 < text.length() && (text[at + 1] == '-' || text[at + 1] == '+') ? 1 : 0;
	if (has_power && is_digit(text, at + 1 + power_sign)) {
		int64_t end = at + 1 + power_sign;
		while (is_digit(text, end)) {
			end++;
		}
		digits += text.substr(at, end - at);
		whole = false;
	}
	// More digits than a whole number has room for.
	constexpr int64_t MOST_DIGITS = 18;
	if (whole && digits.length() <= MOST_DIGITS) {
		return digits.to_int();
	}
	return digits.to_float();
}

class StringToNumber : public OnceOrRepeating<StringToNumber> {
	using Kind = SCStringToNumberAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const String text = setting_of<&Kind::text>(action);
		const Variant found = number_in(text);
		const bool has_one = found.get_type() != Variant::NIL;
		const Variant kept = has_one ? found : Variant(setting_of<&Kind::if_there_is_none>(action));
		if (!has_one && setting_of<&Kind::not_found_event>(action).is_empty()) {
			verbs::warn(machine, action,
					vformat("there is no number in \"%s\", so it kept %s. Name an event under Not Found Event to do something about it.", text,
							words::number(kept)));
		}
		const StillHere here(machine);
		verbs::keep<&Kind::store_in>(machine, action, kept, "the number");
		if (here) {
			verbs::send_either<&Kind::found_event, &Kind::not_found_event>(machine, action, has_one, found);
		}
	}
};

const AddKinds added = {
	add_kind<SCFormatStringAction, FormatString>(),
	add_kind<SCStringAction, StringWork>(),
	add_kind<SCStringToNumberAction, StringToNumber>(),
};

} // namespace
