#include "action/words.hpp"

#include "action/action_shared.hpp"
#include "action/values.hpp"
#include "machine/native_names.hpp"
#include "machine/value_kinds.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/classes/script.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/builtin_types.hpp>

namespace words {

namespace {

// Above this a double has no fraction left to show.
constexpr double MOST_EXACT = 1e15;
// Half of the last digit that is shown.
constexpr double TOO_SMALL_TO_SHOW = 0.00005;
constexpr int64_t MOST_DIGITS = 18;

String listed(std::initializer_list<double> parts) {
	String text;
	for (const double part : parts) {
		text += (text.is_empty() ? "(" : ", ") + number(part);
	}
	return text + ")";
}

struct WordNames {
	StringName shown_name = "shown_name";
};

// The editor runs the scripts that ask for it and no others.
bool runs_here(const Object *object) {
	const Ref<Script> script = object->get_script();
	return script.is_valid() && (script->is_tool() || !Engine::get_singleton()->is_editor_hint());
}

String name_of(Object *object) {
	if (const Node *node = Object::cast_to<Node>(object)) {
		return node->get_name();
	}
	Resource *resource = Object::cast_to<Resource>(object);
	if (resource == nullptr) {
		return object != nullptr ? object->to_string() : String();
	}
	// What a script declares may know better, as an item does.
	const StringName &shown_name = NativeNames::of<WordNames>().shown_name;
	if (resource->has_method(shown_name) && runs_here(resource)) {
		const Variant said = resource->call(shown_name);
		if (said.get_type() == Variant::STRING) {
			return said;
		}
	}
	const Variant display_name = resource->get(ActionShared::get().display_name);
	if ((display_name.get_type() == Variant::STRING || display_name.get_type() == Variant::STRING_NAME) && !String(display_name).is_empty()) {
		return display_name;
	}
	if (!resource->get_name().is_empty()) {
		return resource->get_name();
	}
	const String file = resource->get_path();
	return file.is_empty() || file.contains("::") ? resource->to_string() : file.get_file().get_basename().capitalize();
}

String two_digits(int64_t value) {
	return String::num_int64(value).pad_zeros(2);
}

String as_time(double seconds) {
	const int64_t whole = ValueKinds::whole_part(Math::floor(Math::abs(seconds)));
	const String sign = seconds <= -1.0 ? "-" : "";
	const int64_t hours = whole / 3600;
	const int64_t minutes = whole / 60 % 60;
	if (hours > 0) {
		return vformat("%s%d:%s:%s", sign, hours, two_digits(minutes), two_digits(whole % 60));
	}
	return vformat("%s%d:%s", sign, minutes, two_digits(whole % 60));
}

String in_thousands(double value) {
	const String text = number(Math::abs(value));
	const int64_t point = text.find(".");
	const int64_t end = point < 0 ? text.length() : point;
	String apart = text.substr(end);
	for (int64_t at = end; at > 0; at -= 3) {
		const int64_t from = MAX(at - 3, int64_t(0));
		apart = text.substr(from, at - from) + (at < end ? "," : "") + apart;
	}
	return (value < 0.0 ? "-" : "") + apart;
}

bool is_all_zeros(const String &text) {
	return !text.is_empty() && text.length() <= MOST_DIGITS && text.replace("0", "").is_empty();
}

// False when `how` is no form for numbers.
bool number_as(double value, const String &how, String &shown) {
	const int64_t point = how.find(".");
	if (is_all_zeros(how)) {
		const int64_t whole = ValueKinds::whole_part(Math::round(value));
		shown = (whole < 0 ? "-" : "") + String::num_uint64(whole < 0 ? 0 - uint64_t(whole) : uint64_t(whole)).pad_zeros(how.length());
	} else if (point >= 0 && (point == 0 || is_all_zeros(how.substr(0, point))) && is_all_zeros(how.substr(point + 1))) {
		shown = String::num(value, how.length() - point - 1).pad_decimals(how.length() - point - 1);
	} else if (how == ",") {
		shown = in_thousands(value);
	} else if (how == "+") {
		shown = (value > 0.0 ? "+" : "") + number(value);
	} else if (how == "%") {
		shown = number(Math::round(value * 100.0)) + "%";
	} else if (how == "time") {
		shown = as_time(value);
	} else {
		return false;
	}
	return true;
}

bool is_finite(double value) {
	return !Math::is_nan(value) && !Math::is_inf(value);
}

// The name and the form of a field, without its braces.
struct Field {
	String name;
	String how;

	explicit Field(const String &inside) {
		const int64_t colon = inside.find(":");
		name = colon < 0 ? inside : inside.substr(0, colon);
		how = colon < 0 ? String() : inside.substr(colon + 1);
	}
};

bool find_value(const String &name, SCMachineBase *machine, Node *target, const Dictionary &also, Variant &value) {
	if (also.has(name) || also.has(StringName(name))) {
		value = also.has(name) ? also[name] : also[StringName(name)];
		return true;
	}
	if (name == "target") {
		value = target != nullptr ? target : (machine != nullptr ? machine->target_node() : nullptr);
		return true;
	}
	if (machine == nullptr || !machine->has_value(name)) {
		return false;
	}
	value = machine->get_value(name);
	return true;
}

} // namespace

String number(double value) {
	if (is_finite(value) && Math::abs(value) < MOST_EXACT && Math::abs(value - Math::round(value)) < TOO_SMALL_TO_SHOW) {
		return String::num_int64(int64_t(Math::round(value)));
	}
	return String::num(value, 4);
}

String text_of(const Variant &value) {
	switch (value.get_type()) {
		case Variant::NIL:
			return "";
		case Variant::FLOAT:
			return number(value);
		case Variant::VECTOR2: {
			const Vector2 vector = value;
			return listed({ vector.x, vector.y });
		}
		case Variant::VECTOR3: {
			const Vector3 vector = value;
			return listed({ vector.x, vector.y, vector.z });
		}
		case Variant::COLOR: {
			const Color color = value;
			return "#" + color.to_html(color.a < 1.0);
		}
		case Variant::OBJECT:
			return name_of(value.get_validated_object());
		default:
			return value.stringify();
	}
}

String shown_as(const Variant &value, const String &how) {
	const String form = how.strip_edges();
	const bool counts = values::is_number(value) || value.get_type() == Variant::BOOL;
	String shown;
	if (counts && is_finite(value) && number_as(value, form, shown)) {
		return shown;
	}
	const String text = text_of(value);
	if (form == "upper") {
		return text.to_upper();
	}
	if (form == "lower") {
		return text.to_lower();
	}
	return form == "title" ? text.capitalize() : text;
}

String fill_in(const String &line, SCMachineBase *machine, Node *target, const Dictionary &also) {
	String filled;
	int64_t at = 0;
	while (true) {
		const int64_t close = line.find("}", at);
		const int64_t open = close >= 0 ? line.rfind("{", close) : -1;
		if (close < 0) {
			return filled + line.substr(at);
		}
		if (open < at) {
			filled += line.substr(at, close + 1 - at);
			at = close + 1;
			continue;
		}
		const Field field(line.substr(open + 1, close - open - 1));
		Variant value;
		filled += line.substr(at, open - at);
		filled += find_value(field.name, machine, target, also, value) ? shown_as(value, field.how) : line.substr(open, close + 1 - open);
		at = close + 1;
	}
}

PackedStringArray names_in(const String &line) {
	PackedStringArray names;
	int64_t at = 0;
	for (int64_t close = line.find("}"); close >= 0; close = line.find("}", at)) {
		const int64_t open = line.rfind("{", close);
		if (open >= at) {
			const String name = Field(line.substr(open + 1, close - open - 1)).name;
			if (!name.is_empty() && name != "target" && !names.has(name)) {
				names.push_back(name);
			}
		}
		at = close + 1;
	}
	return names;
}

String name_in_line(const NodePath &path, const String &self, const String &otherwise) {
	if (path.is_empty()) {
		return otherwise;
	}
	if (path == ActionShared::get().no_node) {
		return "an empty node variable";
	}
	const int64_t count = path.get_name_count();
	if (count == 0) {
		return String(path);
	}
	const StringName last = path.get_name(count - 1);
	if (last != StringName("..")) {
		return last;
	}
	int64_t steps = 0;
	for (int64_t i = 0; i < count; i++) {
		steps += path.get_name(i) == last ? 1 : 0;
	}
	switch (steps) {
		case 1:
			return self.is_empty() ? String("Self") : self;
		case 2:
			return "Parent";
		case 3:
			return "Parent's parent";
		default:
			return vformat("the node %d up", steps - 1);
	}
}

String property_in_line(const StringName &property) {
	return String(" ").join(String(property).split("_", false));
}

String event_in_words(const StringName &event) {
	return event.is_empty() ? String("nothing") : String(event);
}

String picked(const StringName &name) {
	return name.is_empty() ? ActionShared::get().not_picked : String(name);
}

String listed(const Array &names) {
	PackedStringArray shown;
	for (int64_t i = 0; i < names.size(); i++) {
		shown.push_back(picked(text_of(names[i])));
	}
	return String(", ").join(shown);
}

String variable_or(const StringName &variable, const String &typed_in) {
	return variable.is_empty() ? typed_in : vformat("[%s]", variable);
}

} // namespace words
