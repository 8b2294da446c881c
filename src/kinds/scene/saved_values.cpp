#include "kinds/scene/saved_values.hpp"

#include "kinds/scene/save_text.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/classes/json.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/variant/builtin_types.hpp>

#include <cmath>

namespace {

// Whole numbers that a fraction still tells apart, which is how the engine reads those in packed lists.
constexpr int64_t MOST_WHOLE = int64_t(1) << 53;

// What stands in the list of a value that is written as its kind and a list.
enum Parts {
	NUMBERS,
	TEXTS,
	VALUES,
};

struct Form {
	Variant::Type type;
	int64_t count;
	Parts parts;
	// Any number of times so many.
	bool is_packed;
};

constexpr Form FORMS[] = {
	{ Variant::VECTOR2, 2, NUMBERS, false },
	{ Variant::VECTOR2I, 2, NUMBERS, false },
	{ Variant::RECT2, 4, NUMBERS, false },
	{ Variant::RECT2I, 4, NUMBERS, false },
	{ Variant::VECTOR3, 3, NUMBERS, false },
	{ Variant::VECTOR3I, 3, NUMBERS, false },
	{ Variant::TRANSFORM2D, 6, NUMBERS, false },
	{ Variant::VECTOR4, 4, NUMBERS, false },
	{ Variant::VECTOR4I, 4, NUMBERS, false },
	{ Variant::PLANE, 4, NUMBERS, false },
	{ Variant::QUATERNION, 4, NUMBERS, false },
	{ Variant::AABB, 6, NUMBERS, false },
	{ Variant::BASIS, 9, NUMBERS, false },
	{ Variant::TRANSFORM3D, 12, NUMBERS, false },
	{ Variant::PROJECTION, 16, NUMBERS, false },
	{ Variant::COLOR, 4, NUMBERS, false },
	{ Variant::DICTIONARY, 2, VALUES, true },
	{ Variant::ARRAY, 1, VALUES, true },
	{ Variant::PACKED_BYTE_ARRAY, 1, NUMBERS, true },
	{ Variant::PACKED_INT32_ARRAY, 1, NUMBERS, true },
	{ Variant::PACKED_INT64_ARRAY, 1, NUMBERS, true },
	{ Variant::PACKED_FLOAT32_ARRAY, 1, NUMBERS, true },
	{ Variant::PACKED_FLOAT64_ARRAY, 1, NUMBERS, true },
	{ Variant::PACKED_STRING_ARRAY, 1, TEXTS, true },
	{ Variant::PACKED_VECTOR2_ARRAY, 2, NUMBERS, true },
	{ Variant::PACKED_VECTOR3_ARRAY, 3, NUMBERS, true },
	{ Variant::PACKED_COLOR_ARRAY, 4, NUMBERS, true },
	{ Variant::PACKED_VECTOR4_ARRAY, 4, NUMBERS, true },
};

bool belongs_to_the_running_game(Variant::Type type) {
	return type == Variant::OBJECT || type == Variant::CALLABLE || type == Variant::SIGNAL || type == Variant::RID;
}

struct Names {
	Variant type = String("type");
	Variant args = String("args");
	Variant elem_type = String("elem_type");
	Variant key_type = String("key_type");
	Variant value_type = String("value_type");
	HashMap<String, const Form *> forms;
	HashMap<String, Variant::Type> types;

	Names() {
		for (const Form &form : FORMS) {
			forms[Variant::get_type_name(form.type)] = &form;
		}
		for (int i = Variant::BOOL; i < Variant::VARIANT_MAX; i++) {
			types[Variant::get_type_name(Variant::Type(i))] = Variant::Type(i);
		}
	}
};

const Names &names() {
	return NativeNames::of<Names>();
}

template <class Packed>
bool all_finite(const Variant &value) {
	const Packed list = value;
	const auto *numbers = list.ptr();
	for (int64_t i = 0; i < list.size(); i++) {
		if (!std::isfinite(numbers[i])) {
			return false;
		}
	}
	return true;
}

template <class Packed>
bool all_finite_in(const Variant &value) {
	const Packed list = value;
	const auto *held = list.ptr();
	for (int64_t i = 0; i < list.size(); i++) {
		if (!held[i].is_finite()) {
			return false;
		}
	}
	return true;
}

bool is_finite(const Color &color) {
	return std::isfinite(color.r) && std::isfinite(color.g) && std::isfinite(color.b) && std::isfinite(color.a);
}

bool is_finite(const Projection &projection) {
	for (const Vector4 &column : projection.columns) {
		if (!column.is_finite()) {
			return false;
		}
	}
	return true;
}

bool all_finite_colors(const Variant &value) {
	const PackedColorArray colors = value;
	for (int64_t i = 0; i < colors.size(); i++) {
		if (!is_finite(colors[i])) {
			return false;
		}
	}
	return true;
}

// JSON has no word for what is none or endless but in a number of its own, which is written as a text.
bool has_sound_parts(const Variant &value) {
	switch (value.get_type()) {
		case Variant::VECTOR2:
			return Vector2(value).is_finite();
		case Variant::VECTOR3:
			return Vector3(value).is_finite();
		case Variant::VECTOR4:
			return Vector4(value).is_finite();
		case Variant::RECT2:
			return Rect2(value).is_finite();
		case Variant::PLANE:
			return Plane(value).is_finite();
		case Variant::QUATERNION:
			return Quaternion(value).is_finite();
		case Variant::AABB:
			return AABB(value).is_finite();
		case Variant::BASIS:
			return Basis(value).is_finite();
		case Variant::TRANSFORM2D:
			return Transform2D(value).is_finite();
		case Variant::TRANSFORM3D:
			return Transform3D(value).is_finite();
		case Variant::PROJECTION:
			return is_finite(Projection(value));
		case Variant::COLOR:
			return is_finite(Color(value));
		case Variant::PACKED_FLOAT32_ARRAY:
			return all_finite<PackedFloat32Array>(value);
		case Variant::PACKED_FLOAT64_ARRAY:
			return all_finite<PackedFloat64Array>(value);
		case Variant::PACKED_VECTOR2_ARRAY:
			return all_finite_in<PackedVector2Array>(value);
		case Variant::PACKED_VECTOR3_ARRAY:
			return all_finite_in<PackedVector3Array>(value);
		case Variant::PACKED_VECTOR4_ARRAY:
			return all_finite_in<PackedVector4Array>(value);
		case Variant::PACKED_COLOR_ARRAY:
			return all_finite_colors(value);
		default:
			return true;
	}
}

// How many letters the value takes at least, beside what stands in it.
int64_t least_letters(const Variant &value) {
	switch (value.get_type()) {
		case Variant::STRING:
			return String(value).length();
		case Variant::STRING_NAME:
			return StringName(value).length();
		case Variant::PACKED_BYTE_ARRAY:
			return PackedByteArray(value).size();
		case Variant::PACKED_INT32_ARRAY:
			return PackedInt32Array(value).size();
		case Variant::PACKED_INT64_ARRAY:
			return PackedInt64Array(value).size();
		case Variant::PACKED_FLOAT32_ARRAY:
			return PackedFloat32Array(value).size();
		case Variant::PACKED_FLOAT64_ARRAY:
			return PackedFloat64Array(value).size();
		case Variant::PACKED_STRING_ARRAY:
			return PackedStringArray(value).size();
		case Variant::PACKED_VECTOR2_ARRAY:
			return PackedVector2Array(value).size();
		case Variant::PACKED_VECTOR3_ARRAY:
			return PackedVector3Array(value).size();
		case Variant::PACKED_VECTOR4_ARRAY:
			return PackedVector4Array(value).size();
		case Variant::PACKED_COLOR_ARRAY:
			return PackedColorArray(value).size();
		default:
			return 0;
	}
}

// Whether a value can be kept, all that is in it included.
class Look {
	int64_t letters_taken = 0;
	bool has_large = false;

	bool takes(const Array &list, int levels) {
		for (int64_t i = 0; i < list.size(); i++) {
			if (!takes(list[i], levels)) {
				return false;
			}
		}
		return true;
	}

	void note_large(const Variant &value) {
		const PackedInt64Array list = value;
		for (int64_t i = 0; i < list.size() && !has_large; i++) {
			has_large = list[i] > MOST_WHOLE || list[i] < -MOST_WHOLE;
		}
	}

public:
	// Some whole number in a packed list is too large for a fraction.
	bool has_large_whole_numbers() const { return has_large; }
	int64_t letters() const { return letters_taken; }

	// `levels` is what stands around it, in brackets.
	bool takes(const Variant &value, int levels) {
		const Variant::Type type = value.get_type();
		// A list that holds another twice, which holds another twice, and so on, is short, and endless once written down.
		letters_taken += 4 + levels + least_letters(value);
		if (letters_taken > saved_values::MOST_LETTERS || belongs_to_the_running_game(type) || !has_sound_parts(value)) {
			return false;
		}
		if (type < Variant::VECTOR2 || type == Variant::STRING_NAME || type == Variant::NODE_PATH) {
			return true;
		}
		if (type == Variant::PACKED_INT64_ARRAY) {
			note_large(value);
		}
		if (type == Variant::ARRAY) {
			const Array list = value;
			const int around = levels + (list.is_typed() ? 2 : 1);
			return around <= save_text::MOST_LEVELS && !belongs_to_the_running_game(Variant::Type(list.get_typed_builtin())) && takes(list, around);
		}
		// Its kind and a list.
		levels += 2;
		if (type != Variant::DICTIONARY) {
			return levels <= save_text::MOST_LEVELS;
		}
		const Dictionary table = value;
		return levels <= save_text::MOST_LEVELS && !belongs_to_the_running_game(Variant::Type(table.get_typed_key_builtin())) &&
				!belongs_to_the_running_game(Variant::Type(table.get_typed_value_builtin())) && takes(table.keys(), levels) && takes(table.values(), levels);
	}
};

// In an encoded value: in packed lists, whole numbers that are too large for a fraction are put as texts, which are read as well.
void keep_whole(const Variant &encoded) {
	if (encoded.get_type() == Variant::ARRAY) {
		const Array list = encoded;
		for (int64_t i = 0; i < list.size(); i++) {
			keep_whole(list[i]);
		}
	} else if (encoded.get_type() == Variant::DICTIONARY) {
		const Dictionary described = encoded;
		Array list = described.get(names().args, Array());
		if (String(described.get(names().type, String())) != Variant::get_type_name(Variant::PACKED_INT64_ARRAY)) {
			keep_whole(list);
			return;
		}
		for (int64_t i = 0; i < list.size(); i++) {
			const int64_t number = list[i];
			if (number > MOST_WHOLE || number < -MOST_WHOLE) {
				list[i] = String::num_int64(number);
			}
		}
	}
}

// What a text says that it is by the letters it begins with, NIL for none of these; `letters` is how many they are.
Variant::Type kind_said_by(const String &text, int64_t &letters) {
	const int64_t length = text.length();
	const char32_t *at = text.ptr();
	letters = length > 1 && at[1] == ':' ? 2 : 3;
	if (letters == 2) {
		return at[0] == 'i' ? Variant::INT : at[0] == 'f' ? Variant::FLOAT : at[0] == 's' ? Variant::STRING : Variant::NIL;
	}
	if (length < 3 || at[2] != ':') {
		return Variant::NIL;
	}
	return at[0] == 's' && at[1] == 'n' ? Variant::STRING_NAME : at[0] == 'n' && at[1] == 'p' ? Variant::NODE_PATH : Variant::NIL;
}

bool is_digit(char32_t letter) {
	return letter >= '0' && letter <= '9';
}

// As the engine reads a whole number from `from` on: digits up to a point, whatever stands between them. It prints an error for one
// that is too large.
bool is_whole_number(const String &text, int64_t from) {
	constexpr uint64_t TOO_MUCH = uint64_t(1) << 63;
	const char32_t *letters = text.ptr();
	const int64_t length = text.length();
	uint64_t number = 0;
	bool is_negative = false;
	for (int64_t i = from; i < length && letters[i] != '.'; i++) {
		if (letters[i] == '-' && number == 0) {
			is_negative = !is_negative;
		} else if (is_digit(letters[i])) {
			const uint64_t digit = letters[i] - '0';
			if (number > ((is_negative ? TOO_MUCH : TOO_MUCH - 1) - digit) / 10) {
				return false;
			}
			number = number * 10 + digit;
		}
	}
	return true;
}

// Not of so many places that the engine warns.
bool is_fraction(const String &text, int64_t from) {
	const char32_t *letters = text.ptr();
	const int64_t length = text.length();
	int64_t places = 0;
	int64_t at = from;
	while (at < length && letters[at] != 'e' && letters[at] != 'E') {
		places++;
		at++;
	}
	int64_t exponent = 0;
	for (; at < length; at++) {
		if (is_digit(letters[at])) {
			exponent = MIN(exponent * 10 + int64_t(letters[at] - '0'), save_text::MOST_PLACES + 1);
		}
	}
	return places + exponent <= save_text::MOST_PLACES;
}

// An empty part behind the node's is an engine error.
bool is_path(const String &text, int64_t from) {
	const char32_t *letters = text.ptr();
	for (int64_t i = from; i + 1 < text.length(); i++) {
		if (letters[i] == ':' && letters[i + 1] == ':') {
			return false;
		}
	}
	return true;
}

// What the engine would read an encoded value as, found without asking it: it prints an error for what it cannot read, and lets a
// value into a typed list that does not belong there.
class Reading {
public:
	static constexpr int IS_BROKEN = -2;
	static constexpr int IS_REFUSED = -1;

	// A Variant::Type, or one of these.
	static int kind_of(const Variant &json, int levels) {
		switch (json.get_type()) {
			case Variant::NIL:
				return Variant::NIL;
			case Variant::BOOL:
				return Variant::BOOL;
			case Variant::STRING:
				return kind_of_text(json);
			case Variant::ARRAY: {
				const int wrong = levels < save_text::MOST_LEVELS ? wrong_in(json, levels + 1) : IS_BROKEN;
				return wrong < 0 ? wrong : Variant::ARRAY;
			}
			case Variant::DICTIONARY:
				return levels + 1 < save_text::MOST_LEVELS ? kind_of_described(json, levels + 2) : IS_BROKEN;
			default:
				return IS_BROKEN;
		}
	}

private:
	static int kind_of_text(const String &text) {
		int64_t from = 0;
		const Variant::Type kind = kind_said_by(text, from);
		switch (kind) {
			case Variant::NIL:
				return IS_BROKEN;
			case Variant::INT:
				return is_whole_number(text, from) ? kind : IS_BROKEN;
			case Variant::FLOAT:
				return is_fraction(text, from) ? kind : IS_BROKEN;
			case Variant::NODE_PATH:
				return is_path(text, from) ? kind : IS_BROKEN;
			default:
				return kind;
		}
	}

	// 0 when nothing is wrong. Of a typed list, every so many values from one on have to be of its kind.
	static int wrong_in(const Array &list, int levels, int64_t from = 0, int64_t step = 1, int wanted = Variant::NIL) {
		int worst = 0;
		for (int64_t i = from; i < list.size(); i += step) {
			const int kind = kind_of(list[i], levels);
			if (kind == IS_BROKEN || (kind >= 0 && wanted != Variant::NIL && kind != wanted)) {
				return IS_BROKEN;
			}
			worst = MIN(worst, kind);
		}
		return worst;
	}

	// The kind that a typed list or table is of, NIL for any.
	static int kind_named(const Dictionary &described, const Variant &key) {
		const Variant name = described.get(key, Variant());
		if (name.get_type() != Variant::STRING) {
			return name.get_type() == Variant::NIL && !described.has(key) ? int(Variant::NIL) : IS_BROKEN;
		}
		const Variant::Type *type = names().types.getptr(name);
		if (type != nullptr) {
			return belongs_to_the_running_game(*type) ? IS_REFUSED : int(*type);
		}
		return String(name).begins_with("res://") ? IS_REFUSED : refused_if_a_class(name);
	}

	static int refused_if_a_class(const StringName &name) { return ClassDBSingleton::get_singleton()->class_exists(name) ? IS_REFUSED : IS_BROKEN; }

	static bool is_number(const Variant &part, Variant::Type of) {
		switch (part.get_type()) {
			case Variant::FLOAT:
			case Variant::INT:
			// What the engine writes for what is no number.
			case Variant::NIL:
				return true;
			case Variant::STRING:
				return of == Variant::PACKED_INT64_ARRAY && String(part).is_valid_int() && is_whole_number(part, 0);
			default:
				return false;
		}
	}

	static bool are_parts_of(const Array &list, const Form &form) {
		for (int64_t i = 0; i < list.size(); i++) {
			const Variant &part = list[i];
			if (form.parts == TEXTS ? part.get_type() != Variant::STRING : !is_number(part, form.type)) {
				return false;
			}
		}
		return true;
	}

	static int kind_of_described(const Dictionary &described, int levels) {
		const Variant name = described.get(names().type, Variant());
		if (name.get_type() != Variant::STRING) {
			return IS_BROKEN;
		}
		const Form *const *found = names().forms.getptr(name);
		if (found == nullptr) {
			const Variant::Type *type = names().types.getptr(name);
			return type == nullptr ? refused_if_a_class(name) : belongs_to_the_running_game(*type) ? IS_REFUSED : IS_BROKEN;
		}
		const Form &form = **found;
		const Variant held = described.get(names().args, Variant());
		if (held.get_type() != Variant::ARRAY) {
			return IS_BROKEN;
		}
		const Array list = held;
		if (form.is_packed ? list.size() % form.count != 0 : list.size() != form.count) {
			return IS_BROKEN;
		}
		if (form.parts != VALUES) {
			return are_parts_of(list, form) ? int(form.type) : IS_BROKEN;
		}
		const bool is_table = form.type == Variant::DICTIONARY;
		const int first = kind_named(described, is_table ? names().key_type : names().elem_type);
		const int second = is_table ? kind_named(described, names().value_type) : first;
		int worst = MIN(first, second) < 0 ? MIN(first, second) : 0;
		for (int64_t part = 0; part < form.count && worst != IS_BROKEN; part++) {
			const int wanted = part == 0 ? first : second;
			const int wrong = wrong_in(list, levels, part, form.count, MAX(wanted, 0));
			worst = wrong == IS_BROKEN ? wrong : MIN(worst, wrong);
		}
		return worst < 0 ? worst : int(form.type);
	}
};

} // namespace

namespace saved_values {

bool encode(const Variant &value, Variant &encoded, int64_t &letters) {
	Look look;
	// The file is an object itself.
	if (!look.takes(value, 1)) {
		return false;
	}
	letters += look.letters();
	encoded = JSON::from_native(value, false);
	if (look.has_large_whole_numbers()) {
		keep_whole(encoded);
	}
	return true;
}

bool looks_encoded(const Variant &json) {
	switch (json.get_type()) {
		case Variant::NIL:
		case Variant::BOOL:
			return true;
		case Variant::STRING: {
			int64_t letters = 0;
			return kind_said_by(json, letters) != Variant::NIL;
		}
		case Variant::DICTIONARY: {
			const Dictionary table = json;
			return table.get(names().type, Variant()).get_type() == Variant::STRING && table.get(names().args, Variant()).get_type() == Variant::ARRAY;
		}
		case Variant::ARRAY: {
			const Array list = json;
			for (int64_t i = 0; i < list.size(); i++) {
				if (!looks_encoded(list[i])) {
					return false;
				}
			}
			return true;
		}
		default:
			return false;
	}
}

Answer decode(const Variant &json, Variant &value) {
	const int kind = Reading::kind_of(json, 1);
	if (kind < 0) {
		return kind == Reading::IS_REFUSED ? REFUSED : BROKEN;
	}
	value = JSON::to_native(json, false);
	return DECODED;
}

// A yes or no becomes no number here.
Variant fitted_to(const Variant &now, const Variant &loaded) {
	const bool is_truth_for_number = now.get_type() == Variant::FLOAT && loaded.get_type() == Variant::BOOL;
	return is_truth_for_number ? Variant() : SCMachineBase::fit_to(now, loaded);
}

} // namespace saved_values
