#include "kinds/data/formula_work.hpp"

#include "action/values.hpp"
#include "action/words.hpp"
#include "machine/own_copy.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/variant/builtin_types.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

#include <cmath>
#include <limits>

namespace formula_work {

namespace {

enum Problem {
	NONE,
	BY_ZERO,
	TOO_LARGE,
	TOO_WIDE,
	NOT_WHOLE,
	NO_SUCH_COLOR,
	NO_DIRECTION,
	NO_SUCH_METHOD,
	WRONG_KINDS,
};

Problem last_problem = NONE;

struct Kinds {
	Variant::Type left = Variant::NIL;
	Variant::Type right = Variant::NIL;
};
Kinds wrong_kinds;

Variant failed(Problem problem) {
	last_problem = problem;
	return Variant();
}

Variant worked_out(Variant::Operator operation, const Variant &left, const Variant &right) {
	Variant answer;
	bool valid = false;
	Variant::evaluate(operation, left, right, answer, valid);
	if (!valid) {
		wrong_kinds = { left.get_type(), right.get_type() };
		return failed(WRONG_KINDS);
	}
	return answer;
}

// What the processor refuses to divide, among whole numbers and places made of them.
struct Divided {
	bool is_whole = false;
	bool has_smallest = false;
	bool has_zero = false;
	bool has_minus_one = false;

	explicit Divided(const Variant &value) {
		switch (value.get_type()) {
			case Variant::INT:
				look_at(value, std::numeric_limits<int64_t>::min());
				break;
			case Variant::VECTOR2I:
				look_at_each(Vector2i(value));
				break;
			case Variant::VECTOR3I:
				look_at_each(Vector3i(value));
				break;
			case Variant::VECTOR4I:
				look_at_each(Vector4i(value));
				break;
			default:
				break;
		}
	}

	void look_at(int64_t number, int64_t smallest) {
		is_whole = true;
		has_smallest |= number == smallest || number == std::numeric_limits<int32_t>::min();
		has_zero |= number == 0;
		has_minus_one |= number == -1;
	}
	template <class V>
	void look_at_each(const V &place) {
		for (int axis = 0; axis < V::AXIS_COUNT; axis++) {
			look_at(place[axis], std::numeric_limits<int32_t>::min());
		}
	}
};

bool is_divided_well(const Variant &left, const Variant &right) {
	const Divided divided(left);
	// A place is divided by what is left of a whole number in 32 bits.
	const bool is_cut = divided.is_whole && left.get_type() != Variant::INT && right.get_type() == Variant::INT;
	const Divided by(is_cut ? Variant(int32_t(int64_t(right))) : right);
	if (divided.is_whole && by.is_whole && by.has_zero) {
		failed(BY_ZERO);
		return false;
	}
	if (divided.has_smallest && by.has_minus_one) {
		failed(TOO_LARGE);
		return false;
	}
	return true;
}

Variant divide(const Variant &left, const Variant &right) {
	return is_divided_well(left, right) ? worked_out(Variant::OP_DIVIDE, left, right) : Variant();
}

// A node or a resource stands in a formula as the number it goes by.
Object *object_behind(const Variant &value) {
	return value.get_type() == Variant::RID ? ObjectDB::get_instance(ObjectID(uint64_t(RID(value).get_id()))) : nullptr;
}

String named(const Variant &value) {
	return value.get_type() == Variant::RID ? words::text_of(object_behind(value)) : UtilityFunctions::str(value);
}

// "%99999999d" would fill the memory with blanks.
bool is_narrow(const String &format) {
	constexpr int MOST_DIGITS = 2;
	int digits = 0;
	bool inside = false;
	for (int64_t i = 0; i < format.length(); i++) {
		const char32_t letter = format[i];
		if (letter == '%') {
			inside = !inside;
			digits = 0;
		} else if (inside && letter >= '0' && letter <= '9') {
			digits++;
		} else if (inside && letter == '*') {
			return false;
		} else if (letter == '.') {
			digits = 0;
		} else if (letter != '-' && letter != '+') {
			inside = false;
		}
		if (digits > MOST_DIGITS) {
			return false;
		}
	}
	return true;
}

Variant remain(const Variant &left, const Variant &right) {
	if (left.get_type() == Variant::STRING || left.get_type() == Variant::STRING_NAME) {
		if (!is_narrow(left)) {
			return failed(TOO_WIDE);
		}
		Array shown;
		if (right.get_type() == Variant::ARRAY) {
			shown = Array(right).duplicate();
		} else {
			shown.push_back(right);
		}
		for (int64_t i = 0; i < shown.size(); i++) {
			if (shown[i].get_type() == Variant::RID) {
				shown[i] = named(shown[i]);
			}
		}
		return worked_out(Variant::OP_MODULE, String(left), shown);
	}
	if (values::is_number(left) && values::is_number(right) && (left.get_type() == Variant::FLOAT || right.get_type() == Variant::FLOAT)) {
		return failed(NOT_WHOLE);
	}
	return is_divided_well(left, right) ? worked_out(Variant::OP_MODULE, left, right) : Variant();
}

Variant remain_positive(const Variant &left, const Variant &right) {
	if (!values::is_number(left) || !values::is_number(right)) {
		wrong_kinds = { left.get_type(), right.get_type() };
		return failed(WRONG_KINDS);
	}
	const int64_t by = right;
	if (by == 0) {
		return failed(BY_ZERO);
	}
	return by == -1 ? Variant(int64_t(0)) : Variant(UtilityFunctions::posmod(left, by));
}

Variant in_words(const Variant &values) {
	const Array list = values;
	String said;
	for (int64_t i = 0; i < list.size(); i++) {
		said += named(list[i]);
	}
	return said;
}

Variant colored(const Variant &values) {
	const Array list = values;
	Color made;
	if (list[0].get_type() == Variant::STRING || list[0].get_type() == Variant::STRING_NAME) {
		const Color none(-1, -1, -1, -1);
		made = Color::from_string(list[0], none);
		if (made == none) {
			return failed(NO_SUCH_COLOR);
		}
	} else if (list[0].get_type() == Variant::COLOR) {
		made = list[0];
	} else {
		return failed(NO_SUCH_COLOR);
	}
	if (list.size() > 1) {
		if (!values::is_number(list[1])) {
			return failed(NO_SUCH_COLOR);
		}
		made.a = list[1];
	}
	return made;
}

template <class V>
bool make_direction(Variant &value) {
	const V direction = V(value).normalized();
	value = direction;
	return direction != V();
}

Variant turn(const Variant &base, const Variant &method, const Variant &values) {
	Array arguments = Array(values).duplicate();
	const bool wants_axis = method != Variant("rotated") || arguments.size() == 2;
	Variant from = base;
	if (from.get_type() != Variant::VECTOR2 && from.get_type() != Variant::VECTOR3) {
		return failed(NO_SUCH_METHOD);
	}
	if (wants_axis && !arguments.is_empty()) {
		Variant axis = arguments[0];
		const bool is_2d = axis.get_type() == Variant::VECTOR2;
		if ((!is_2d && axis.get_type() != Variant::VECTOR3) || !(is_2d ? make_direction<Vector2>(axis) : make_direction<Vector3>(axis))) {
			return failed(NO_DIRECTION);
		}
		arguments[0] = axis;
	}
	const Variant first = arguments.is_empty() ? Variant() : arguments[0];
	const Variant second = arguments.size() < 2 ? Variant() : arguments[1];
	const Variant *handed_over[] = { &first, &second };
	Variant answer;
	GDExtensionCallError error = {};
	constexpr int64_t MOST = 2;
	from.callp(method, handed_over, int(MIN(arguments.size(), MOST)), answer, error);
	return error.error == GDEXTENSION_CALL_OK ? answer : failed(NO_SUCH_METHOD);
}

constexpr int DEEPEST = 20;

bool may_hide_something(const Variant &list) {
	if (list.get_type() == Variant::DICTIONARY) {
		return true;
	}
	const Array array = list;
	const auto type = Variant::Type(array.get_typed_builtin());
	return type == Variant::NIL || (type >= Variant::RID && type <= Variant::ARRAY);
}

bool let_in_to(Variant &value, int depth, bool &changed);

bool let_in_list(Variant &value, int depth, bool &changed) {
	const Array list = value;
	int64_t plain = 0;
	while (plain < list.size() && !ValueKinds::may_call_out(list[plain].get_type()) && list[plain].get_type() != Variant::RID) {
		plain++;
	}
	if (plain == list.size()) {
		return true;
	}
	Array inside;
	bool any = false;
	for (int64_t i = 0; i < list.size(); i++) {
		Variant item = list[i];
		if (!let_in_to(item, depth + 1, any)) {
			return false;
		}
		inside.push_back(item);
	}
	if (any) {
		value = inside;
		changed = true;
	}
	return true;
}

bool let_in_table(Variant &value, int depth, bool &changed) {
	const Dictionary table = value;
	const Array keys = table.keys();
	Dictionary inside;
	bool any = false;
	for (int64_t i = 0; i < keys.size(); i++) {
		Variant key = keys[i];
		Variant item = table[keys[i]];
		if (!let_in_to(key, depth + 1, any) || !let_in_to(item, depth + 1, any)) {
			return false;
		}
		inside[key] = item;
	}
	if (any) {
		value = inside;
		changed = true;
	}
	return true;
}

bool let_in_to(Variant &value, int depth, bool &changed) {
	switch (value.get_type()) {
		case Variant::OBJECT: {
			const Object *object = value.get_validated_object();
			value = object != nullptr ? Variant(UtilityFunctions::rid_from_int64(int64_t(uint64_t(object->get_instance_id())))) : Variant();
			changed = true;
			return true;
		}
		case Variant::RID:
		case Variant::CALLABLE:
		case Variant::SIGNAL:
			return false;
		case Variant::ARRAY:
			return !may_hide_something(value) || (depth < DEEPEST && let_in_list(value, depth, changed));
		case Variant::DICTIONARY:
			return depth < DEEPEST && let_in_table(value, depth, changed);
		default:
			return true;
	}
}

bool holds_an_object(const Variant &value) {
	if (value.get_type() == Variant::ARRAY && may_hide_something(value)) {
		const Array list = value;
		for (int64_t i = 0; i < list.size(); i++) {
			if (holds_an_object(list[i])) {
				return true;
			}
		}
	}
	if (value.get_type() == Variant::DICTIONARY) {
		const Dictionary table = value;
		return holds_an_object(table.keys()) || holds_an_object(table.values());
	}
	return value.get_type() == Variant::RID;
}

Variant with_objects(const Variant &value) {
	if (value.get_type() == Variant::RID) {
		return object_behind(value);
	}
	if (value.get_type() == Variant::ARRAY) {
		const Array list = value;
		Array outside;
		for (int64_t i = 0; i < list.size(); i++) {
			outside.push_back(with_objects(list[i]));
		}
		return outside;
	}
	if (value.get_type() == Variant::DICTIONARY) {
		const Dictionary table = value;
		const Array keys = table.keys();
		Dictionary outside;
		for (int64_t i = 0; i < keys.size(); i++) {
			outside[with_objects(keys[i])] = with_objects(table[keys[i]]);
		}
		return outside;
	}
	return value;
}

bool any_part(const Variant &value, bool (*is_so)(double)) {
	switch (value.get_type()) {
		case Variant::FLOAT:
			return is_so(value);
		case Variant::VECTOR2: {
			const Vector2 place = value;
			return is_so(place.x) || is_so(place.y);
		}
		case Variant::VECTOR3: {
			const Vector3 place = value;
			return is_so(place.x) || is_so(place.y) || is_so(place.z);
		}
		default:
			return false;
	}
}

} // namespace

Callable division() {
	return callable_mp_static(&divide);
}

Callable remainder() {
	return callable_mp_static(&remain);
}

Callable positive_remainder() {
	return callable_mp_static(&remain_positive);
}

Callable text() {
	return callable_mp_static(&in_words);
}

Callable color() {
	return callable_mp_static(&colored);
}

Callable turned() {
	return callable_mp_static(&turn);
}

void forget_problem() {
	last_problem = NONE;
}

String problem() {
	switch (last_problem) {
		case NONE:
			break;
		case BY_ZERO:
			return "something in it is divided by zero";
		case TOO_LARGE:
			return "a whole number in it grows too large";
		case TOO_WIDE:
			return "a text in it asks for more than 99 letters with a %, or leaves their number open";
		case NOT_WHOLE:
			return "% is for whole numbers, and for others it is fmod(a, b)";
		case NO_SUCH_COLOR:
			return "Color() takes a name such as \"red\", a code such as \"#ff8800\", or three to four numbers from 0 to 1";
		case NO_DIRECTION:
			return "something in it turns or bounces about a direction that has no length";
		case NO_SUCH_METHOD:
			return "rotated(), bounce(), reflect() and slide() are asked of a Vector2 or a Vector3 only, with a direction or an angle in the brackets";
		case WRONG_KINDS:
			return vformat("%s and %s cannot be divided", Variant::get_type_name(wrong_kinds.left), Variant::get_type_name(wrong_kinds.right));
	}
	return String();
}

bool let_in(Variant &value) {
	bool changed = false;
	return let_in_to(value, 0, changed);
}

Variant let_out(const Variant &value) {
	return holds_an_object(value) ? with_objects(value) : own_copy(value);
}

bool is_endless(const Variant &value) {
	return any_part(value, [](double number) { return std::isinf(number); });
}

bool is_no_number(const Variant &value) {
	return any_part(value, [](double number) { return std::isnan(number); });
}

} // namespace formula_work
