#include "action/values.hpp"

#include "machine/companion_scripts.hpp"
#include "sc_machine_base.hpp"

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/builtin_types.hpp>

namespace values {

namespace {

bool is_text(const Variant &value) {
	return value.get_type() == Variant::STRING || value.get_type() == Variant::STRING_NAME;
}

bool is_vector(const Variant &value) {
	switch (value.get_type()) {
		case Variant::VECTOR2:
		case Variant::VECTOR2I:
		case Variant::VECTOR3:
		case Variant::VECTOR3I:
			return true;
		default:
			return false;
	}
}

bool is_list(const Variant &value) {
	return value.get_type() >= Variant::ARRAY;
}

// A flat place lies on the ground of a 3D world only by its own two numbers: x and y stay x and y.
Vector3 as_vector3(const Variant &value) {
	if (value.get_type() == Variant::VECTOR2 || value.get_type() == Variant::VECTOR2I) {
		const Vector2 flat = value;
		return Vector3(flat.x, flat.y, 0.0);
	}
	return value;
}

Vector2 as_vector2(const Variant &value) {
	if (value.get_type() == Variant::VECTOR3 || value.get_type() == Variant::VECTOR3I) {
		const Vector3 deep = value;
		return Vector2(deep.x, deep.y);
	}
	return value;
}

} // namespace

bool is_number(const Variant &value) {
	return value.get_type() == Variant::INT || value.get_type() == Variant::FLOAT;
}

double as_number(const Variant &value) {
	return is_number(value) || value.get_type() == Variant::BOOL ? double(value) : 0.0;
}

bool as_truth(const Variant &value) {
	return value.get_type() == Variant::OBJECT ? value.get_validated_object() != nullptr : value.booleanize();
}

bool can_fit(const Variant &typed_in, const Variant &held) {
	const bool numbers = (is_number(typed_in) || typed_in.get_type() == Variant::BOOL) && (is_number(held) || held.get_type() == Variant::BOOL);
	return typed_in.get_type() == held.get_type() || typed_in.get_type() == Variant::NIL || numbers || is_text(typed_in) || (is_vector(typed_in) && is_vector(held)) || (is_list(typed_in) && is_list(held));
}

Variant fitted_to(const Variant &typed_in, const Variant &held) {
	if (typed_in.get_type() == held.get_type() || typed_in.get_type() == Variant::NIL) {
		return held;
	}
	if (!can_fit(typed_in, held)) {
		return typed_in;
	}
	switch (typed_in.get_type()) {
		case Variant::BOOL:
			return as_number(held) != 0.0;
		case Variant::INT:
			return int64_t(Math::round(as_number(held)));
		case Variant::FLOAT:
			return as_number(held);
		case Variant::STRING:
			return text_of(held);
		case Variant::STRING_NAME:
			return StringName(text_of(held));
		case Variant::VECTOR2:
			return as_vector2(held);
		case Variant::VECTOR2I:
			return Vector2i(as_vector2(held).round());
		case Variant::VECTOR3:
			return as_vector3(held);
		case Variant::VECTOR3I:
			return Vector3i(as_vector3(held).round());
		case Variant::ARRAY:
			return Array(held);
		default:
			return held;
	}
}

Variant keep_whole(SCMachineBase *machine, const StringName &variable, double answer) {
	if (machine->get_value(variable).get_type() != Variant::INT) {
		return answer;
	}
	const int64_t whole = int64_t(Math::round(answer));
	if (!Math::is_equal_approx(double(whole), answer)) {
		MakerWarnings::once_for(machine, vformat("whole:%s", variable), vformat("%s on %s is an int, so %s was rounded to %d. Make it a float in the Variables tab to keep fractions.", variable, machine->name_in_messages(), number_text(answer), whole));
	}
	return whole;
}

String number_text(double value) {
	if (Math::is_equal_approx(value, Math::round(value)) && Math::abs(value) < 1e15) {
		return String::num_int64(int64_t(Math::round(value)));
	}
	return String::num(value, 4);
}

String text_of(const Variant &value) {
	switch (value.get_type()) {
		case Variant::NIL:
			return "";
		case Variant::FLOAT:
			return number_text(value);
		case Variant::OBJECT: {
			Object *object = value.get_validated_object();
			if (const Node *node = Object::cast_to<Node>(object)) {
				return node->get_name();
			}
			return object != nullptr ? object->to_string() : String();
		}
		default:
			return value.stringify();
	}
}

String kind_in_words(const Variant &value) {
	switch (value.get_type()) {
		case Variant::NIL:
			return "nothing";
		case Variant::BOOL:
			return "a bool";
		case Variant::INT:
			return "an int";
		case Variant::FLOAT:
			return "a float";
		case Variant::STRING:
			return "a String";
		case Variant::VECTOR2:
		case Variant::VECTOR2I:
			return "a Vector2";
		case Variant::VECTOR3:
		case Variant::VECTOR3I:
			return "a Vector3";
		case Variant::COLOR:
			return "a Color";
		case Variant::OBJECT:
			return Object::cast_to<Node>(value.get_validated_object()) != nullptr ? "a Node" : "a Resource";
		case Variant::DICTIONARY:
			return "a Dictionary";
		case Variant::ARRAY:
			return "an Array";
		default:
			return "a " + Variant::get_type_name(value.get_type());
	}
}

String fill_in(const String &line, SCMachineBase *machine) {
	String filled;
	int64_t at = 0;
	while (true) {
		const int64_t open = line.find("{", at);
		const int64_t close = open >= 0 ? line.find("}", open) : -1;
		if (close < 0) {
			return filled + line.substr(at);
		}
		filled += line.substr(at, open - at);
		const String name = line.substr(open + 1, close - open - 1);
		if (name == "target") {
			const Node *target = machine->target_node();
			filled += target != nullptr ? String(target->get_name()) : String();
		} else if (machine->has_value(name)) {
			filled += text_of(machine->get_value(name));
		} else {
			// Braces that name no variable are the line's own.
			filled += line.substr(open, close - open + 1);
		}
		at = close + 1;
	}
}

} // namespace values
