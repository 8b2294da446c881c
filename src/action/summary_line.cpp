#include "action/summary_line.hpp"

#include "action/action_shared.hpp"
#include "action/naming.hpp"
#include "action/sc_action.hpp"
#include "action/sc_condition.hpp"
#include "action/twins.hpp"
#include "action/variable_names.hpp"
#include "action/words.hpp"

#include <godot_cpp/classes/reg_ex_match.hpp>
#include <godot_cpp/variant/builtin_types.hpp>

namespace summary_line {

namespace {

constexpr char32_t GAP_MARKER[] = U"¤gap¤";
constexpr char32_t TEXT_MARKER[] = U"¤marked";
// A part is only swapped in a line that can be taken in at a glance, and only when it is not half of it.
constexpr int64_t SHORT_LINE = 60;
constexpr int64_t LONGEST_PART = 40;
constexpr int64_t NOT_TRUSTED = 15;

// The engine's way of telling that a pattern found nothing is a null match.
struct Found {
	int64_t start = -1;
	int64_t end = -1;
	explicit operator bool() const { return start >= 0; }
};

Found find(const String &line, const String &pattern, int64_t from = 0) {
	const Ref<RegEx> &expression = ActionShared::get().pattern(pattern);
	const Ref<RegExMatch> match = expression.is_valid() ? expression->search(line, from) : Ref<RegExMatch>();
	return match.is_valid() ? Found{ match->get_start(0), match->get_end(0) } : Found{};
}

String replaced(const String &line, const Found &part, const String &by) {
	return line.substr(0, part.start) + by + line.substr(part.end);
}

String in_brackets(const String &name) {
	return "[" + name + "]";
}

String text_marker(int64_t number) {
	return String(TEXT_MARKER) + String::num_int64(number) + U"¤";
}

String summary_of(Object *object) {
	if (SCMachineAction *action = Object::cast_to<SCMachineAction>(object)) {
		return action->summary();
	}
	if (SCMachineCondition *condition = Object::cast_to<SCMachineCondition>(object)) {
		return condition->summary();
	}
	const StringName &summary = ActionShared::get().summary;
	return object->has_method(summary) ? object->call(summary).stringify() : String();
}

TypedArray<StringName> optional_names_of(Object *object) {
	SCMachineAction *action = Object::cast_to<SCMachineAction>(object);
	return action != nullptr ? action->optional_names() : TypedArray<StringName>();
}

// Settings set for as long as the kind is asked. Nobody hears of it, or the inspector would draw itself
// anew for every line that the graph draws.
class Tried {
	Object *object;
	bool were_blocked;
	LocalVector<StringName> settings;
	LocalVector<Variant> before;

public:
	explicit Tried(Object *on) : object(on), were_blocked(on->is_blocking_signals()) { object->set_block_signals(true); }
	~Tried() {
		for (uint32_t i = settings.size(); i > 0; i--) {
			object->set(settings[i - 1], before[i - 1]);
		}
		object->set_block_signals(were_blocked);
	}
	Tried(const Tried &) = delete;
	Tried &operator=(const Tried &) = delete;

	void set(const StringName &setting, const Variant &value) {
		settings.push_back(setting);
		before.push_back(object->get(setting));
		object->set(setting, value);
	}
};

String summary_with(Object *object, const StringName &setting, const Variant &value) {
	Tried tried(object);
	tried.set(setting, value);
	return summary_of(object);
}

// The values to try on a setting, in order; none when its type has no marker.
LocalVector<Variant> candidates_for(Object *object, const StringName &setting, int64_t number) {
	LocalVector<Variant> candidates;
	const Array choices = choices_of(object, setting);
	for (int64_t i = 0; i < choices.size(); i++) {
		candidates.push_back(choices[i]);
	}
	if (!candidates.is_empty()) {
		return candidates;
	}
	const Variant marker = marker_for(object->get(setting), number);
	switch (marker.get_type()) {
		case Variant::NIL:
			break;
		case Variant::INT:
			candidates.push_back(marker);
			candidates.push_back(-int64_t(marker));
			break;
		case Variant::FLOAT:
			candidates.push_back(marker);
			candidates.push_back(-double(marker));
			break;
		case Variant::VECTOR2:
			candidates.push_back(marker);
			candidates.push_back(-Vector2(marker));
			break;
		case Variant::VECTOR3:
			candidates.push_back(marker);
			candidates.push_back(-Vector3(marker));
			break;
		default:
			candidates.push_back(marker);
	}
	return candidates;
}

// Where two lines differ: what they begin with and what they end with alike.
struct Difference {
	int64_t prefix = 0;
	int64_t suffix = 0;

	Difference(const String &said, const String &marked) {
		const int64_t shorter = MIN(said.length(), marked.length());
		while (prefix < shorter && said[prefix] == marked[prefix]) {
			prefix++;
		}
		while (suffix < shorter - prefix && said[said.length() - 1 - suffix] == marked[marked.length() - 1 - suffix]) {
			suffix++;
		}
	}
	String in(const String &line) const { return line.substr(prefix, line.length() - prefix - suffix); }
};

bool is_digit(char32_t character) {
	return character >= '0' && character <= '9';
}

bool ends_a_word(char32_t character) {
	return character <= ' ' || String(",;:()[]\"'").contains(String::chr(character));
}

// Within a word when it goes on at both sides of `at`.
bool cuts_a_word(const String &line, int64_t at) {
	return at > 0 && at < line.length() && !ends_a_word(line[at - 1]) && !ends_a_word(line[at]);
}

// The match is a whole number of the line, no stretch of a longer one.
bool stands_alone(const String &line, const Found &part) {
	return !(part.start > 0 && is_digit(line[part.start - 1])) && !(part.end < line.length() && is_digit(line[part.end]));
}

String part_named(const String &said, const String &marked, const String &name, const String &marker_text) {
	Difference difference(said, marked);
	const String changed = difference.in(marked);
	if (said == marked) {
		return String();
	}
	if (marked.length() <= SHORT_LINE) {
		Found number = find(changed, "-?99\\d\\d[123](\\.\\d+)?");
		if (number) {
			number.start += difference.prefix;
			number.end += difference.prefix;
			if (stands_alone(marked, number)) {
				return replaced(marked, number, in_brackets(name));
			}
		}
		const int64_t at = marker_text.is_empty() ? -1 : changed.find(marker_text);
		const Found text = { difference.prefix + at, difference.prefix + at + marker_text.length() };
		if (at >= 0 && stands_alone(marked, text)) {
			return replaced(marked, text, in_brackets(name));
		}
	}
	int64_t &prefix = difference.prefix;
	int64_t &suffix = difference.suffix;
	while (cuts_a_word(said, prefix) || cuts_a_word(marked, prefix)) {
		prefix--;
	}
	while (cuts_a_word(said, said.length() - suffix) || cuts_a_word(marked, marked.length() - suffix)) {
		suffix--;
	}
	if (prefix > 0 && suffix > 0 && said[prefix - 1] == '(' && said[said.length() - suffix] == ')') {
		prefix--;
		suffix--;
	}
	const int64_t span = said.length() - prefix - suffix;
	if (span < 1 || span > LONGEST_PART) {
		return String();
	}
	return replaced(said, { prefix, said.length() - suffix }, in_brackets(name));
}

bool is_markers_number(const Variant &candidate) {
	switch (candidate.get_type()) {
		case Variant::INT:
		case Variant::FLOAT:
		case Variant::VECTOR2:
		case Variant::VECTOR3:
			return true;
		default:
			return false;
	}
}

// What else came of the marker: the number said once more, or a sum with it, "[pace] to [pace] + 1 s". Empty when something
// stays that cannot be told by the name.
String rest_named(const String &named, const String &said, const Variant &candidate, const String &name) {
	constexpr char NUMBER[] = "(?<![\\w.])-?\\d+(\\.\\d+)?";
	if (named.contains(TEXT_MARKER)) {
		return String();
	}
	if (!is_markers_number(candidate)) {
		return named;
	}
	HashSet<String> there_before;
	for (Found number = find(said, NUMBER); number; number = find(said, NUMBER, number.end)) {
		there_before.insert(said.substr(number.start, number.end - number.start));
	}
	String line = named;
	for (Found number = find(line, NUMBER); number; number = find(line, NUMBER, number.end)) {
		const String text = line.substr(number.start, number.end - number.start);
		if (there_before.has(text)) {
			continue;
		}
		if (candidate.get_type() != Variant::INT && candidate.get_type() != Variant::FLOAT) {
			return String();
		}
		const double marker = candidate;
		const double more = text.to_float() - marker;
		if (ABS(more) > ABS(marker) / 2.0) {
			return String();
		}
		const String sum = more == 0.0 ? String() : vformat(more > 0.0 ? " + %s" : " - %s", words::number(ABS(more)));
		line = replaced(line, number, in_brackets(name) + sum);
		number.end = number.start + name.length() + 2 + sum.length();
	}
	return line;
}

// `said` with the name put in, or empty, when the setting has this value instead.
String named_by(Object *object, const StringName &setting, const Variant &candidate, int64_t number, const String &said, const String &name) {
	const String marked = summary_with(object, setting, candidate);
	if (marked == said) {
		return String();
	}
	const String named = marker_named(marked, number, name);
	if (named != marked) {
		return rest_named(named, said, candidate, name);
	}
	if (candidate.get_type() == Variant::BOOL) {
		const String answer = yes_or_no_that_changed(said, marked, name);
		if (!answer.is_empty()) {
			return answer;
		}
	}
	// A single letter or digit turns up by chance.
	const String marker_text = words::text_of(candidate);
	const String part = part_named(said, marked, name, marker_text.length() > 1 && candidate.get_type() != Variant::BOOL ? marker_text : String());
	return rest_named(part, said, candidate, name);
}

struct Change {
	int64_t start = 0;
	int64_t end = 0;
	String by;
	StringName setting;
	// Counts the bound settings: of two at one place the first stands.
	int64_t order = 0;

	bool operator<(const Change &other) const { return start != other.start ? start > other.start : order < other.order; }
};

// What it takes to get from `said` to `named`; false when it takes too much to be trusted.
bool change_between(const String &said, const String &named, Change &change) {
	if (named.is_empty() || named == said) {
		return false;
	}
	const Difference difference(said, named);
	change.start = difference.prefix;
	change.end = said.length() - difference.suffix;
	change.by = difference.in(named);
	return change.end - change.start < NOT_TRUSTED;
}

bool find_change(Object *object, const StringName &setting, const String &variable, const String &said, Change &change) {
	const Variant now = object->get(setting);
	if (now.get_type() == Variant::COLOR) {
		const String text = words::text_of(now);
		const int64_t at = said.find(text);
		if (at >= 0 && change_between(said, replaced(said, { at, at + text.length() }, in_brackets(variable)), change)) {
			return true;
		}
	}
	for (const Variant &candidate : candidates_for(object, setting, change.order)) {
		if (change_between(said, named_by(object, setting, candidate, change.order, said, variable), change)) {
			return true;
		}
	}
	return false;
}

} // namespace

String shown_line(Object *object) {
	if (object == nullptr) {
		return String();
	}
	const String line = with_variables(object, summary_of(object));
	if (!has_a_hole(line)) {
		return line;
	}
	const TypedArray<StringName> optional = optional_names_of(object);
	const ActionShared &shared = ActionShared::get();
	Tried tried(object);
	for (const PropertyInfo &property : properties_of(object)) {
		const bool may_gape = property.type == Variant::STRING_NAME ||
				(property.type == Variant::STRING && (property.hint == PROPERTY_HINT_FILE || property.hint == PROPERTY_HINT_FILE_PATH));
		if (may_gape && is_in_editor(property) && property.name != shared.display_name && !ends_in_variable(property.name) && !optional.has(property.name) &&
				String(object->get(property.name)).is_empty()) {
			tried.set(property.name, String(GAP_MARKER));
		}
	}
	const String marked = with_variables(object, summary_of(object));
	return marked.contains(GAP_MARKER) ? marked.replace(GAP_MARKER, shared.not_picked) : line;
}

bool has_a_hole(const String &line) {
	return line.contains("  ") || line.contains(" ,") || line.begins_with(" ") || line.ends_with(" ") || find(line, "\\s(sends|to|at|of|by|in|on|their|=)$");
}

// 1. Find, for each bound setting on its own, what its name would replace in the line.
// 2. Put the names in from the end of the line to its start, so that places found before stay good;
//    one that reaches into another already put in is left out.
// 3. What found no place is listed behind, unless the kind itself has named it in its line.
String with_variables(Object *object, const String &said) {
	if (object == nullptr || said.is_empty()) {
		return said;
	}
	const Dictionary behind = twins::variables_behind(object);
	const Array settings = behind.keys();
	LocalVector<Change> changes;
	LocalVector<StringName> placed;
	for (int64_t i = 0; i < settings.size(); i++) {
		if (said.contains(in_brackets(behind[settings[i]]))) {
			placed.push_back(settings[i]);
			continue;
		}
		Change change;
		change.setting = settings[i];
		change.order = i + 1;
		if (find_change(object, change.setting, behind[settings[i]], said, change)) {
			changes.push_back(change);
		}
	}
	changes.sort();
	String line = said;
	int64_t untouched = said.length() + 1;
	for (const Change &change : changes) {
		if (change.end <= untouched && change.start < untouched) {
			line = line.substr(0, change.start) + change.by + line.substr(change.end);
			untouched = change.start;
			placed.push_back(change.setting);
		}
	}
	PackedStringArray rest;
	for (int64_t i = 0; i < settings.size(); i++) {
		if (!placed.has(settings[i])) {
			rest.push_back(vformat("%s: %s", String(settings[i]).trim_suffix("_path"), in_brackets(behind[settings[i]])));
		}
	}
	return rest.is_empty() ? line : vformat("%s (%s)", line, String(", ").join(rest));
}

String line_marked(Object *object, const StringName &setting, int64_t number) {
	if (object == nullptr) {
		return String();
	}
	const String said = summary_of(object);
	for (const Variant &candidate : candidates_for(object, setting, number)) {
		const String marked = summary_with(object, setting, candidate);
		if (marked != said) {
			return marked;
		}
	}
	return said;
}

Variant marker_for(const Variant &like, int64_t number) {
	const int64_t base = 99000 + number % 100 * 10;
	switch (like.get_type()) {
		case Variant::BOOL:
			return !bool(like);
		case Variant::INT:
			return base + 1;
		case Variant::FLOAT:
			return double(base) + 1.0;
		case Variant::STRING:
			return text_marker(number);
		case Variant::STRING_NAME:
			return StringName(text_marker(number));
		case Variant::VECTOR2:
			return Vector2(base + 1, base + 2);
		case Variant::VECTOR3:
			return Vector3(base + 1, base + 2, base + 3);
		case Variant::COLOR:
			return Color(0.123456f, 0.654321f, 0.111111f, 0.987654f);
		case Variant::NODE_PATH:
			return NodePath(text_marker(number));
		default:
			return Variant();
	}
}

Array choices_of(Object *object, const StringName &setting) {
	Array choices;
	if (object == nullptr) {
		return choices;
	}
	for (const PropertyInfo &property : properties_of(object)) {
		if (property.name != setting || property.type != Variant::INT || property.hint != PROPERTY_HINT_ENUM) {
			continue;
		}
		const int64_t now = object->get(setting);
		const PackedStringArray hinted = property.hint_string.split(",", false);
		int64_t next = 0;
		for (int64_t i = 0; i < hinted.size(); i++) {
			const int64_t colon = hinted[i].rfind(":");
			const int64_t choice = colon >= 0 ? hinted[i].substr(colon + 1).to_int() : next;
			next = choice + 1;
			if (choice != now) {
				choices.push_back(choice);
			}
		}
		break;
	}
	return choices;
}

bool has_setting(Object *object, const StringName &setting) {
	for (const PropertyInfo &property : properties_of(object)) {
		if (property.name == setting) {
			return true;
		}
	}
	return false;
}

String marker_named(const String &line, int64_t number, const String &name) {
	const String text = text_marker(number);
	if (line.contains(text)) {
		return line.replace(text, in_brackets(name));
	}
	const String digits = vformat("99%02d", number % 100);
	const Found vector = find(line, vformat("\\(-?%s1(\\.\\d+)?, -?%s2[^()]*\\)", digits, digits));
	if (vector) {
		return replaced(line, vector, in_brackets(name));
	}
	const Found lone = find(line, vformat("(?<![\\d.])-?%s1(\\.0+)?(?![\\d.])", digits));
	return lone ? replaced(line, lone, in_brackets(name)) : line;
}

String yes_or_no_that_changed(const String &said, const String &marked, const String &name) {
	constexpr const char *OPPOSITES[][2] = { { "true", "false" }, { "yes", "no" }, { "on", "off" } };
	PackedStringArray before = said.split(" ");
	const PackedStringArray after = marked.split(" ");
	if (before.size() != after.size()) {
		return String();
	}
	int64_t changed = -1;
	for (int64_t i = 0; i < before.size(); i++) {
		if (before[i] != after[i]) {
			if (changed >= 0) {
				return String();
			}
			changed = i;
		}
	}
	if (changed < 0) {
		return String();
	}
	for (const auto &pair : OPPOSITES) {
		if ((before[changed] == pair[0] && after[changed] == pair[1]) || (before[changed] == pair[1] && after[changed] == pair[0])) {
			before.set(changed, in_brackets(name));
			return String(" ").join(before);
		}
	}
	return String();
}

String part_that_changed(const String &said, const String &marked, const String &name) {
	return part_named(said, marked, name, String());
}

String swap_the_part_that_changed(const String &said, const String &marked, const String &name) {
	const String named = part_that_changed(said, marked, name);
	return named.is_empty() ? said : named;
}

} // namespace summary_line
