#include "action/values.hpp"

#include "action/action_shared.hpp"
#include "action/places.hpp"
#include "action/words.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/value_kinds.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/script.hpp>
#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/builtin_types.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace values {

namespace {

// What arithmetic leaves of a whole number.
constexpr double AS_GOOD_AS_WHOLE = 0.000001;

bool counts(const Variant &value) {
	return is_number(value) || value.get_type() == Variant::BOOL;
}

bool is_text(const Variant &value) {
	return value.get_type() == Variant::STRING || value.get_type() == Variant::STRING_NAME;
}

Node *as_node(const Variant &value) {
	return value.get_type() == Variant::OBJECT ? Object::cast_to<Node>(value.get_validated_object()) : nullptr;
}

} // namespace

bool is_number(const Variant &value) {
	return ValueKinds::is_number(value);
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
	return value.get_type() >= Variant::ARRAY && value.get_type() < Variant::VARIANT_MAX;
}

double as_number(const Variant &value) {
	return counts(value) ? double(value) : 0.0;
}

bool as_truth(const Variant &value) {
	return value.get_type() == Variant::OBJECT ? value.get_validated_object() != nullptr : value.booleanize();
}

bool same_value(const Variant &first, const Variant &second) {
	if (ValueKinds::is_nothing(first) || ValueKinds::is_nothing(second)) {
		return ValueKinds::is_nothing(first) && ValueKinds::is_nothing(second);
	}
	if (counts(first) && counts(second)) {
		// Whole numbers are told apart however big they are; a fraction may have come through single precision.
		if (first.get_type() == Variant::INT && second.get_type() == Variant::INT) {
			return int64_t(first) == int64_t(second);
		}
		const double one = as_number(first);
		const double other = as_number(second);
		return one == other || Math::abs(one - other) <= MAX(0.00001, 0.0000002 * Math::abs(one));
	}
	if (is_text(first) && is_text(second)) {
		return String(first) == String(second);
	}
	if (is_vector(first) && is_vector(second)) {
		return places::as_vector3(first).is_equal_approx(places::as_vector3(second));
	}
	return first.get_type() == second.get_type() && first == second;
}

bool can_fit(const Variant &typed_in, const Variant &held) {
	if (typed_in.get_type() == held.get_type() || typed_in.get_type() == Variant::NIL || is_text(typed_in)) {
		return true;
	}
	if (is_vector(typed_in)) {
		return is_vector(held) || as_node(held) != nullptr;
	}
	return (counts(typed_in) && counts(held)) || (is_list(typed_in) && is_list(held));
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
			return ValueKinds::whole_part(Math::round(as_number(held)));
		case Variant::FLOAT:
			return as_number(held);
		case Variant::STRING:
			return words::text_of(held);
		case Variant::STRING_NAME:
			return StringName(words::text_of(held));
		case Variant::VECTOR2:
			return places::as_vector2(held);
		case Variant::VECTOR2I:
			return Vector2i(places::as_vector2(held).round());
		case Variant::VECTOR3:
			return places::as_vector3(held);
		case Variant::VECTOR3I:
			return Vector3i(places::as_vector3(held).round());
		default:
			return UtilityFunctions::type_convert(held, typed_in.get_type());
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
			return as_node(value) != nullptr ? "a Node" : "a Resource";
		case Variant::DICTIONARY:
			return "a Dictionary";
		case Variant::ARRAY:
			return "an Array";
		default:
			return "a " + Variant::get_type_name(value.get_type());
	}
}

double number_of(SCMachineBase *machine, double literal, const StringName &variable) {
	if (variable.is_empty()) {
		return literal;
	}
	if (machine == nullptr) {
		report_null("number_of", "p_machine");
		return literal;
	}
	const Variant held = machine->get_value(variable);
	if (held.get_type() == Variant::NIL && !machine->has_value(variable)) {
		say_no_such_variable(machine, variable);
		return literal;
	}
	return as_number(held);
}

Variant value_of(SCMachineBase *machine, const Variant &literal, const StringName &variable) {
	if (variable.is_empty()) {
		return literal;
	}
	if (machine == nullptr) {
		report_null("value_of", "p_machine");
		return literal;
	}
	const Variant held = machine->get_value(variable);
	if (held.get_type() == Variant::NIL && !machine->has_value(variable)) {
		say_no_such_variable(machine, variable);
		return literal;
	}
	return held;
}

void say_no_such_variable(SCMachineBase *machine, const StringName &variable) {
	if (machine == nullptr) {
		report_null("_no_such_variable", "p_machine");
		return;
	}
	MakerWarnings::once_for(machine, vformat("no_variable:%s", variable),
			vformat("%s reads the variable %s, which it does not have, so the value typed in beside that setting is used instead. Add %s in its Variables tab, "
					"or pick a variable it has.",
					machine->name_in_messages(), variable, variable));
}

Variant keep_whole(SCMachineBase *machine, const StringName &variable, double answer) {
	if (machine == nullptr) {
		report_null("keep_whole", "p_machine");
		return answer;
	}
	if (machine->get_value(variable).get_type() != Variant::INT) {
		return answer;
	}
	const int64_t whole = ValueKinds::whole_part(Math::round(answer));
	if (Math::abs(double(whole) - answer) > AS_GOOD_AS_WHOLE) {
		MakerWarnings::once_for(machine, vformat("whole:%s", variable),
				vformat("%s on %s is an int, so %s was rounded to %d. Make it a float in the Variables tab to keep fractions.", variable,
						machine->name_in_messages(), words::number(answer), whole));
	}
	return whole;
}

Ref<Resource> item_in(SCMachineBase *machine, const StringName &variable) {
	if (machine == nullptr) {
		report_null("item_in", "p_machine");
		return Ref<Resource>();
	}
	const Variant held = machine->get_value(variable);
	if (held.get_type() == Variant::NIL) {
		return Ref<Resource>();
	}
	const Ref<Resource> resource = Object::cast_to<Resource>(held.get_type() == Variant::OBJECT ? held.get_validated_object() : nullptr);
	if (CompanionScripts::is_one(resource.ptr(), "item")) {
		return resource;
	}
	MakerWarnings::once_for(machine, vformat("not an item:%s", variable),
			vformat("%s on %s holds %s, not an item, so the item actions reading it have no item to work with. Put an item in it, with Pick Item or Set "
					"Variable.",
					variable, machine->name_in_messages(), kind_in_words(held)));
	return Ref<Resource>();
}

Node *node_of(SCMachineBase *machine, const NodePath &path) {
	if (machine == nullptr) {
		report_null("node_of", "p_machine");
		return nullptr;
	}
	if (path.is_empty()) {
		return machine->target_node();
	}
	if (path == ActionShared::get().no_node) {
		return nullptr;
	}
	return Engine::get_singleton()->is_editor_hint() ? machine->get_node_or_null(path) : machine->node_at(path);
}

NodePath path_to(SCMachineBase *machine, const Variant &held) {
	Node *node = as_node(held);
	if (machine == nullptr || node == nullptr || !machine->is_inside_tree() || !node->is_inside_tree()) {
		return ActionShared::get().no_node;
	}
	return machine->get_path_to(node);
}

void report_null(const char *method, const char *argument) {
	_err_print_error(method, "src/sc_action.cpp", 0, vformat("Parameter \"%s\" is null.", argument));
}

} // namespace values
