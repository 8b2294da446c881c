#include "action/property_paths.hpp"

#include "action/kind.hpp"
#include "action/values.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/builtin_types.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace property_paths {

namespace {

Object *object_in(const Variant &value) {
	return value.get_type() == Variant::OBJECT ? value.get_validated_object() : nullptr;
}

// Metadata is listed only once it is there, and a script may answer for properties it does not list.
Wanted wanted_of(Object *object, const StringName &name) {
	Wanted wanted;
	for (const PropertyInfo &property : properties_of(object)) {
		const uint32_t headings = PROPERTY_USAGE_CATEGORY | PROPERTY_USAGE_GROUP | PROPERTY_USAGE_SUBGROUP;
		if (property.name != name || (property.usage & headings) != 0) {
			continue;
		}
		wanted.is_there = true;
		wanted.type = property.type;
		const bool names_its_class = property.hint == PROPERTY_HINT_RESOURCE_TYPE || property.hint == PROPERTY_HINT_NODE_TYPE;
		wanted.class_name = names_its_class ? StringName(property.hint_string) : property.class_name;
		return wanted;
	}
	const Variant held = object->get(name);
	wanted.is_there = held.get_type() != Variant::NIL || String(name).begins_with("metadata/");
	wanted.type = String(name).begins_with("metadata/") ? Variant::NIL : held.get_type();
	return wanted;
}

NodePath without_last(const NodePath &path, int64_t count) {
	String joined;
	for (int64_t i = 0; i < count - 1; i++) {
		joined += ":" + String(path.get_subname(i));
	}
	return NodePath(joined);
}

// The hint may name several, as in "Texture2D,-AtlasTexture". A class that only scripts know is let through.
bool is_one_of(const Object *object, const String &classes) {
	const PackedStringArray names = classes.split(",", false);
	bool told = false;
	for (int64_t i = 0; i < names.size(); i++) {
		const String name = names[i].strip_edges();
		if (name.begins_with("-")) {
			continue;
		}
		if (!ClassDB::class_exists(name) || object->is_class(name)) {
			return true;
		}
		told = true;
	}
	return !told;
}

bool spread(Variant::Type type, double number, Variant &spread_out) {
	const auto part = real_t(number);
	switch (type) {
		case Variant::VECTOR2:
			spread_out = Vector2(part, part);
			return true;
		case Variant::VECTOR2I:
			spread_out = Vector2i(Vector2(part, part).round());
			return true;
		case Variant::VECTOR3:
			spread_out = Vector3(part, part, part);
			return true;
		case Variant::VECTOR3I:
			spread_out = Vector3i(Vector3(part, part, part).round());
			return true;
		case Variant::VECTOR4:
			spread_out = Vector4(part, part, part, part);
			return true;
		case Variant::COLOR:
			spread_out = Color(float(number), float(number), float(number), float(number));
			return true;
		default:
			return false;
	}
}

// A name that is empty, between two colons, is an engine error.
bool is_path(const String &text) {
	return !text.contains("::");
}

bool is_text(const Variant &value) {
	return value.get_type() == Variant::STRING || value.get_type() == Variant::STRING_NAME;
}

} // namespace

NodePath path_of(const String &property) {
	return is_path(property) ? NodePath(property).get_as_property_path() : NodePath();
}

Wanted wanted_at(Object *object, const NodePath &path) {
	const int64_t count = path.get_subname_count();
	if (object == nullptr || count == 0) {
		return Wanted();
	}
	const StringName last = path.get_subname(count - 1);
	if (count == 1) {
		return wanted_of(object, last);
	}
	const Variant around = object->get_indexed(without_last(path, count));
	if (Object *inner = object_in(around)) {
		return wanted_of(inner, last);
	}
	Wanted wanted;
	if (around.get_type() == Variant::NIL || around.get_type() == Variant::OBJECT) {
		wanted.empty_part = String(path.get_subname(count - 2));
		return wanted;
	}
	const Variant part = object->get_indexed(path);
	wanted.is_there = part.get_type() != Variant::NIL || around.get_type() == Variant::DICTIONARY;
	// An entry of a table takes anything.
	wanted.type = around.get_type() == Variant::DICTIONARY ? Variant::NIL : part.get_type();
	return wanted;
}

bool fit(const Wanted &wanted, const Variant &value, Node *node, Variant &fitted) {
	if (wanted.type == Variant::NIL) {
		fitted = value;
		return true;
	}
	if (wanted.type == Variant::OBJECT) {
		const Object *object = object_in(value);
		fitted = object != nullptr ? value : Variant();
		return object != nullptr ? is_one_of(object, wanted.class_name) : ValueKinds::is_nothing(value);
	}
	if (value.get_type() == wanted.type) {
		fitted = value;
		return true;
	}
	if (values::is_number(value) && spread(wanted.type, values::as_number(value), fitted)) {
		return true;
	}
	if (wanted.type == Variant::NODE_PATH) {
		Node *other = Object::cast_to<Node>(object_in(value));
		if (other != nullptr && other->is_inside_tree() && node->is_inside_tree()) {
			fitted = node->get_path_to(other);
			return true;
		}
		const bool readable = is_text(value) && is_path(value);
		fitted = readable ? Variant(NodePath(String(value))) : Variant();
		return readable;
	}
	if (wanted.type == Variant::COLOR && is_text(value) && Color::html_is_valid(value)) {
		fitted = Color::html(value);
		return true;
	}
	const Variant sample = UtilityFunctions::type_convert(Variant(), wanted.type);
	if (!values::can_fit(sample, value)) {
		return false;
	}
	fitted = values::fitted_to(sample, value);
	return true;
}

String in_words(const Wanted &wanted) {
	if (wanted.type == Variant::OBJECT) {
		return wanted.class_name.is_empty() ? String("a Resource or a Node") : "a " + String(wanted.class_name);
	}
	return values::kind_in_words(UtilityFunctions::type_convert(Variant(), wanted.type));
}

} // namespace property_paths
