#include "action/contents.hpp"

#include "action/values.hpp"
#include "action/words.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/classes/script.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace contents {

Takes Takes::items_of(const Variant &list) {
	Takes takes;
	switch (list.get_type()) {
		case Variant::ARRAY: {
			const Array typed = list;
			return Takes{ typed.get_typed_builtin(), typed.get_typed_class_name(), typed.get_typed_script() };
		}
		case Variant::PACKED_BYTE_ARRAY:
		case Variant::PACKED_INT32_ARRAY:
		case Variant::PACKED_INT64_ARRAY:
			takes.type = Variant::INT;
			break;
		case Variant::PACKED_FLOAT32_ARRAY:
		case Variant::PACKED_FLOAT64_ARRAY:
			takes.type = Variant::FLOAT;
			break;
		case Variant::PACKED_STRING_ARRAY:
			takes.type = Variant::STRING;
			break;
		case Variant::PACKED_VECTOR2_ARRAY:
			takes.type = Variant::VECTOR2;
			break;
		case Variant::PACKED_VECTOR3_ARRAY:
			takes.type = Variant::VECTOR3;
			break;
		case Variant::PACKED_COLOR_ARRAY:
			takes.type = Variant::COLOR;
			break;
		case Variant::PACKED_VECTOR4_ARRAY:
			takes.type = Variant::VECTOR4;
			break;
		default:
			break;
	}
	return takes;
}

Takes Takes::keys_of(const Dictionary &table) {
	return Takes{ table.get_typed_key_builtin(), table.get_typed_key_class_name(), table.get_typed_key_script() };
}

Takes Takes::values_of(const Dictionary &table) {
	return Takes{ table.get_typed_value_builtin(), table.get_typed_value_class_name(), table.get_typed_value_script() };
}

bool Takes::fit(Variant &value) const {
	if (type == Variant::NIL) {
		return true;
	}
	if (type == Variant::OBJECT) {
		return fits_object(value);
	}
	const Variant sample = UtilityFunctions::type_convert(Variant(), type);
	if (!values::can_fit(sample, value)) {
		return false;
	}
	value = values::fitted_to(sample, value);
	return value.get_type() == type;
}

String Takes::in_words() const {
	if (type == Variant::OBJECT) {
		return class_name.is_empty() ? String("nodes and resources") : "a " + String(class_name);
	}
	return values::kind_in_words(UtilityFunctions::type_convert(Variant(), type));
}

bool Takes::fits_object(Variant &value) const {
	if (ValueKinds::is_nothing(value)) {
		value = Variant();
		return true;
	}
	const Object *object = value.get_type() == Variant::OBJECT ? value.get_validated_object() : nullptr;
	if (object == nullptr || (!class_name.is_empty() && !object->is_class(class_name))) {
		return false;
	}
	const Ref<Script> wanted = script;
	if (wanted.is_null()) {
		return true;
	}
	for (Ref<Script> at = object->get_script(); at.is_valid(); at = at->get_base_script()) {
		if (at == wanted) {
			return true;
		}
	}
	return false;
}

void Outcome::tell_whether(bool is_there, const Variant &wanted, const Variant &told) {
	is_condition = true;
	found = is_there;
	looked_for = wanted;
	answer = told;
}

String shown_or(const Variant &value, const char *otherwise) {
	const String text = words::text_of(value);
	return text.is_empty() ? String(otherwise) : text;
}

String into(const StringName &variable) {
	return variable.is_empty() ? String() : vformat(" into %s", variable);
}

} // namespace contents
