#include "action/naming.hpp"

#include "action/variable_names.hpp"
#include "settings/class_rows.hpp"
#include "settings/setting_rules.hpp"

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/dictionary.hpp>

namespace naming {

namespace {

void find_out(const Object *object, KindNames &names) {
	const ActionShared &shared = ActionShared::get();
	for (const PropertyInfo &property : properties_of(object)) {
		if (property.type == Variant::ARRAY && property.name == shared.events) {
			names.event_lists.push_back(property.name);
		}
		if (property.type != Variant::STRING_NAME) {
			continue;
		}
		const String name = property.name;
		if (ends_in_variable(property.name) || property.name == shared.variable_name || property.name == shared.list_variable) {
			names.read.push_back(property.name);
		}
		if (name.begins_with("store_") || property.name == shared.progress_variable) {
			names.written.push_back(property.name);
		}
		if (property.name == shared.event_name || name.ends_with("_event")) {
			names.events.push_back(property.name);
		}
	}
}

void add_once(PackedStringArray &names, const String &name) {
	if (!name.is_empty() && !names.has(name)) {
		names.push_back(name);
	}
}

void add_once(TypedArray<StringName> &names, const StringName &name) {
	if (!name.is_empty() && !names.has(name)) {
		names.push_back(name);
	}
}

void add_variables_of(const Object *object, TypedArray<StringName> &names) {
	for (const PropertyInfo &property : properties_of(object)) {
		const bool names_one = property.type == Variant::STRING_NAME && is_in_editor(property) &&
				(ends_in_variable(property.name) || property.name == ActionShared::get().variable_name || String(property.name).begins_with("store"));
		if (names_one) {
			add_once(names, StringName(object->get(property.name)));
		}
	}
}

} // namespace

const KindNames &of_object(const Object *object) {
	return ActionShared::get().naming.of(Kind::of(object), [object](KindNames &names) { find_out(object, names); });
}

LocalVector<StringName> shown(const Object *object, const LocalVector<StringName> &settings) {
	LocalVector<StringName> kept;
	if (settings.is_empty()) {
		return kept;
	}
	HashSet<StringName> in_editor;
	for (const PropertyInfo &property : properties_of(object)) {
		if (is_in_editor(property)) {
			in_editor.insert(property.name);
		}
	}
	for (const StringName &setting : settings) {
		const Variant held = in_editor.has(setting) ? object->get(setting) : Variant();
		if (held.get_type() != Variant::NIL && !held.stringify().is_empty()) {
			kept.push_back(setting);
		}
	}
	return kept;
}

PackedStringArray names_held_in(const Object *object, const LocalVector<StringName> &settings) {
	PackedStringArray names;
	for (const StringName &setting : settings) {
		const Variant held = object->get(setting);
		if (held.get_type() != Variant::NIL) {
			add_once(names, held.stringify());
		}
	}
	return names;
}

PackedStringArray variables_read(const Object *object) {
	return names_held_in(object, shown(object, of_object(object).read));
}

PackedStringArray variables_written(const Object *object) {
	PackedStringArray names = names_held_in(object, of_object(object).written);
	for (const ClassRow *row = KindFields::of(const_cast<Object *>(object)).row; row != nullptr; row = row->parent) {
		for (const SettingRow *setting : row->settings) {
			if (setting->written && setting_rules::all_hold(setting->written_if, object)) {
				add_once(names, object->get(setting->info.name).stringify());
			}
		}
	}
	return names;
}

PackedStringArray events_sent(const Object *object) {
	const KindNames &names = of_object(object);
	PackedStringArray sent = names_held_in(object, shown(object, names.events));
	for (const StringName &setting : names.event_lists) {
		const Variant held = object->get(setting);
		const Array listed = held.get_type() == Variant::ARRAY ? Array(held) : Array();
		for (int64_t i = 0; i < listed.size(); i++) {
			add_once(sent, listed[i].stringify());
		}
	}
	return sent;
}

TypedArray<StringName> variables_used(const Object *action) {
	TypedArray<StringName> names;
	const KindFields fields = KindFields::of(const_cast<Object *>(action));
	if (fields) {
		const Array bound = fields.from_variables->values();
		for (int64_t i = 0; i < bound.size(); i++) {
			add_once(names, StringName(bound[i]));
		}
	}
	add_variables_of(action, names);
	const Variant condition = action->get(ActionShared::get().condition);
	if (const Object *asked = condition.get_type() == Variant::OBJECT ? condition.get_validated_object() : nullptr) {
		add_variables_of(asked, names);
	}
	return names;
}

LocalVector<StringName> list_from(const Array &names) {
	LocalVector<StringName> list;
	for (int64_t i = 0; i < names.size(); i++) {
		if (names[i].get_type() == Variant::STRING_NAME || names[i].get_type() == Variant::STRING) {
			list.push_back(names[i]);
		}
	}
	return list;
}

TypedArray<StringName> array_from(const LocalVector<StringName> &names) {
	TypedArray<StringName> array;
	for (const StringName &name : names) {
		array.push_back(name);
	}
	return array;
}

} // namespace naming
