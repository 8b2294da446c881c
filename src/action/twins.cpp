#include "action/twins.hpp"

#include "action/inspector.hpp"
#include "action/sc_action.hpp"
#include "action/variable_names.hpp"

#include "settings/setting_edits.hpp"

#include <godot_cpp/core/object.hpp>

namespace twins {

namespace {

constexpr int64_t ENDING = 9; // "_variable"

bool has_a_fitting_type(const PropertyInfo &property) {
	switch (property.type) {
		case Variant::BOOL:
		case Variant::INT:
		case Variant::FLOAT:
		case Variant::STRING:
		case Variant::VECTOR2:
		case Variant::VECTOR3:
		case Variant::COLOR:
		case Variant::NODE_PATH:
			return true;
		case Variant::NIL:
			return (property.usage & PROPERTY_USAGE_NIL_IS_VARIANT) != 0;
		case Variant::STRING_NAME:
			return property.name == ActionShared::get().input_action;
		default:
			return false;
	}
}

void find_out(const Kind &kind, KindTwins &twins) {
	const LocalVector<PropertyInfo> properties = kind.declared_properties();
	const ActionShared &shared = ActionShared::get();
	HashSet<StringName> names;
	for (const PropertyInfo &property : properties) {
		names.insert(property.name);
	}
	for (const PropertyInfo &property : properties) {
		const String name = property.name;
		const StringName twin = name + String("_variable");
		// A kind that has a variable setting of its own beside it keeps that.
		const bool has_its_own = names.has(twin) ||
				(property.type == Variant::NODE_PATH && name.ends_with("_path") && names.has(StringName(name.trim_suffix("_path") + "_variable")));
		if (is_in_editor(property) && has_a_fitting_type(property) && !has_its_own && !ends_in_variable(property.name) &&
				!shared.the_machines_own.has(property.name) && !twins.twin_of_setting.has(property.name)) {
			twins.settings.push_back(property.name);
			twins.twins.push_back(twin);
			twins.setting_of_twin.insert(twin, property.name);
			twins.twin_of_setting.insert(property.name, twin);
		}
	}
}

} // namespace

const KindTwins &of(const Kind &kind) {
	return ActionShared::get().twins.of(kind, [&kind](KindTwins &twins) { find_out(kind, twins); });
}

const KindTwins &of_object(const Object *object) {
	return of(Kind::of(object));
}

bool get(const Object *object, const StringName &property, Variant &value) {
	if (!ends_in_variable(property)) {
		return false;
	}
	const StringName *setting = of_object(object).setting_of_twin.getptr(property);
	if (setting == nullptr) {
		return false;
	}
	value = KindFields::of(const_cast<Object *>(object)).from_variables->get(*setting, StringName());
	return true;
}

bool set(Object *object, const StringName &property, const Variant &value) {
	if (!ends_in_variable(property)) {
		return false;
	}
	const StringName *setting = of_object(object).setting_of_twin.getptr(property);
	if (setting == nullptr) {
		return false;
	}
	const KindFields fields = KindFields::of(object);
	const StringName variable = value;
	const bool listed = setting_edits::is_listed(object);
	const uint64_t shown_before = listed ? setting_edits::shown(object, fields.row) : 0;
	if (!variable.is_empty()) {
		(*fields.from_variables)[*setting] = variable;
		fields.bound->note_names();
	} else {
		fields.from_variables->erase(*setting);
		if (fields.typed_in->has(*setting)) {
			const Variant typed_in = (*fields.typed_in)[*setting];
			fields.typed_in->erase(*setting);
			fields.bound->forget();
			object->set(*setting, typed_in);
		}
	}
	if (SCMachineAction *action = Object::cast_to<SCMachineAction>(object)) {
		action->forget_variables_used();
	}
	if (listed && setting_edits::shown(object, fields.row) != shown_before) {
		object->notify_property_list_changed();
	}
	object->emit_signal(ActionShared::get().changed);
	return true;
}

void list(const Object *object, List<PropertyInfo> *properties) {
	const LocalVector<StringName> &twins_of_object = of_object(object).twins;
	if (!twins_of_object.is_empty()) {
		properties->push_back(PropertyInfo(Variant::NIL, "Read From Variables", PROPERTY_HINT_NONE, String(), PROPERTY_USAGE_GROUP));
	}
	// The engine hands only what a class declares to _validate_property, so a twin's rules are applied here.
	for (const StringName &twin : twins_of_object) {
		PropertyInfo shown = describe(twin);
		inspector::hide_by_rules(object, shown);
		properties->push_back(shown);
	}
}

bool is_read_from_a_variable(const Object *object, const StringName &setting) {
	const KindFields fields = KindFields::of(const_cast<Object *>(object));
	return fields && !StringName(fields.from_variables->get(setting, StringName())).is_empty();
}

PropertyInfo describe(const StringName &twin) {
	return PropertyInfo(Variant::STRING_NAME, twin, PROPERTY_HINT_NONE, String(), PROPERTY_USAGE_EDITOR);
}

Dictionary variables_behind(const Object *object) {
	Dictionary behind;
	const LocalVector<PropertyInfo> properties = properties_of(object);
	HashSet<StringName> names;
	for (const PropertyInfo &property : properties) {
		names.insert(property.name);
	}
	for (const PropertyInfo &property : properties) {
		if (property.type != Variant::STRING_NAME || !ends_in_variable(property.name)) {
			continue;
		}
		const String twin = property.name;
		const StringName setting = twin.substr(0, twin.length() - ENDING);
		const StringName variable = object->get(property.name);
		if (!variable.is_empty() && names.has(setting)) {
			behind[setting] = variable;
		}
	}
	return behind;
}

} // namespace twins
