#include "action/kind.hpp"

#include "action/action_shared.hpp"
#include "action/sc_action.hpp"
#include "action/sc_condition.hpp"
#include "settings/class_rows.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/object.hpp>

Kind Kind::of(const Object *object) {
	Kind kind;
	if (object == nullptr) {
		return kind;
	}
	kind.script = object->get_script();
	const KindFields fields = KindFields::of(const_cast<Object *>(object));
	kind.native_class = fields.row != nullptr ? fields.row->class_name : StringName(object->get_class());
	return kind;
}

Kind Kind::from(const Variant &key) {
	Kind kind;
	if (key.get_type() == Variant::OBJECT) {
		kind.script = Ref<Script>(Object::cast_to<Script>(key.get_validated_object()));
		kind.native_class = kind.script.is_valid() ? kind.script->get_instance_base_type() : StringName();
	} else if (key.get_type() == Variant::STRING || key.get_type() == Variant::STRING_NAME) {
		kind.native_class = key;
	}
	return kind;
}

Variant Kind::key() const {
	return script.is_valid() ? Variant(script) : Variant(native_class);
}

StringName Kind::name() const {
	const StringName global_name = script.is_valid() ? script->get_global_name() : StringName();
	return global_name.is_empty() ? native_class : global_name;
}

bool Kind::is_action_or_condition() const {
	const ActionShared &shared = ActionShared::get();
	for (StringName at = native_class; !at.is_empty(); at = ClassDB::get_parent_class(at)) {
		if (at == shared.action_base || at == shared.condition_base) {
			return true;
		}
	}
	return false;
}

uint32_t Kind::stamp() const {
	if (script.is_null() || !Engine::get_singleton()->is_editor_hint()) {
		return 0;
	}
	uint32_t stamp = 0;
	for (Ref<Script> at = script; at.is_valid(); at = at->get_base_script()) {
		stamp = stamp * 31 + at->get_source_code().hash();
	}
	return stamp;
}

bool Kind::is_a_base(const Ref<Script> &script) {
	if (script.is_null()) {
		return false;
	}
	const StringName name = script->get_global_name();
	return name == ActionShared::get().action_base || name == ActionShared::get().condition_base;
}

LocalVector<PropertyInfo> Kind::declared_properties() const {
	LocalVector<PropertyInfo> properties;
	if (!is_action_or_condition()) {
		return properties;
	}
	const auto append = [&properties](const TypedArray<Dictionary> &described) {
		for (int64_t i = 0; i < described.size(); i++) {
			properties.push_back(property_from(described[i]));
		}
	};
	for (Ref<Script> at = script; at.is_valid() && !is_a_base(at); at = at->get_base_script()) {
		append(at->get_script_property_list());
	}
	const ActionShared &shared = ActionShared::get();
	for (StringName at = native_class; at != shared.action_base && at != shared.condition_base; at = ClassDB::get_parent_class(at)) {
		append(ClassDB::class_get_property_list(at, true));
	}
	return properties;
}

KindFields KindFields::of(Object *object) {
	KindFields fields;
	if (SCMachineAction *action = Object::cast_to<SCMachineAction>(object)) {
		fields.from_variables = &action->from_variables;
		fields.typed_in = &action->typed_in;
		fields.bound = &action->bound_settings;
		fields.row = action->class_row();
	} else if (SCMachineCondition *condition = Object::cast_to<SCMachineCondition>(object)) {
		fields.from_variables = &condition->from_variables;
		fields.typed_in = &condition->typed_in;
		fields.bound = &condition->bound_settings;
		fields.row = condition->class_row();
	}
	return fields;
}

PropertyInfo property_from(const Dictionary &described) {
	PropertyInfo property;
	property.name = described.get("name", StringName());
	property.class_name = described.get("class_name", StringName());
	property.type = Variant::Type(int64_t(described.get("type", 0)));
	property.hint = uint32_t(int64_t(described.get("hint", 0)));
	property.hint_string = described.get("hint_string", String());
	property.usage = uint32_t(int64_t(described.get("usage", int64_t(PROPERTY_USAGE_DEFAULT))));
	return property;
}

Dictionary dictionary_from(const PropertyInfo &property) {
	Dictionary described;
	described["name"] = String(property.name);
	described["class_name"] = property.class_name;
	described["type"] = int64_t(property.type);
	described["hint"] = int64_t(property.hint);
	described["hint_string"] = property.hint_string;
	described["usage"] = int64_t(property.usage);
	return described;
}

LocalVector<PropertyInfo> properties_of(const Object *object) {
	LocalVector<PropertyInfo> properties;
	if (object == nullptr) {
		return properties;
	}
	const TypedArray<Dictionary> described = object->get_property_list();
	for (int64_t i = 0; i < described.size(); i++) {
		properties.push_back(property_from(described[i]));
	}
	return properties;
}

bool is_in_editor(const PropertyInfo &property) {
	return (property.usage & PROPERTY_USAGE_EDITOR) != 0;
}
