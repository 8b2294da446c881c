#include "settings/class_table.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/core/error_macros.hpp>

namespace {

// "AT_A_SHARE" is shown as "At A Share".
String label_of(const String &constant) {
	return constant.to_lower().replace("_", " ").capitalize();
}

PackedStringArray constants_in(const EnumWords &words) {
	PackedStringArray constants = String(words.constants).split(",", false);
	for (int64_t i = 0; i < constants.size(); i++) {
		constants.set(i, constants[i].strip_edges());
	}
	return constants;
}

} // namespace

ClassTableBase::ClassTableBase(const StringName &name, const StringName &parent, const char *about) :
		row(ClassRows::shared().add(name, parent)), class_name(name) {
	row.about = String::utf8(about);
}

// "path" and the like already have accessors on Resource that must go on working.
StringName ClassTableBase::accessor_name(const char *prefix, const String &name) const {
	const StringName plain = prefix + name;
	if (ClassDB::class_has_method(ClassDB::get_parent_class(class_name), plain)) {
		return prefix + name + "_setting";
	}
	return plain;
}

SettingRow &ClassTableBase::add_row(const PropertyInfo &info, const StringName &setter, const StringName &getter, const char *doc) {
	SettingRow *added = memnew(SettingRow);
	added->info = info;
	added->setter = setter;
	added->getter = getter;
	added->doc = String::utf8(doc);
	row.settings.push_back(added);
	row.by_name.insert(info.name, added);
	ClassDB::add_property(class_name, info, setter, getter);
	return *added;
}

bool ClassTableBase::is_bound_already(const void *field, const char *name) const {
	for (const SettingRow *known : row.settings) {
		if (known->field == field) {
			ERR_PRINT(vformat("The field of %s that is its setting %s cannot be its setting %s too.", class_name, known->info.name, name));
			return true;
		}
	}
	return false;
}

PropertyInfo ClassTableBase::described(PropertyInfo info, const char *name, const Hint &hint) const {
	info.name = name;
	if (hint.hint != PROPERTY_HINT_NONE) {
		info.hint = hint.hint;
		info.hint_string = String::utf8(hint.text);
	}
	if (hint.usage != PROPERTY_USAGE_DEFAULT) {
		info.usage = hint.usage;
	}
	return info;
}

PropertyInfo ClassTableBase::described_enum(const EnumWords &words, const char *name, const Hint &hint) const {
	const PackedStringArray constants = constants_in(words);
	const PackedStringArray labels = words.labels != nullptr ? String::utf8(words.labels).split(",") : PackedStringArray();
	String text;
	for (int64_t i = 0; i < constants.size(); i++) {
		const String label = i < labels.size() ? labels[i].strip_edges() : label_of(constants[i]);
		text += (i > 0 ? "," : "") + label + ":" + String::num_int64(i);
	}
	if (*hint.text != '\0') {
		text = String::utf8(hint.text);
	}
	return PropertyInfo(Variant::INT, name, PROPERTY_HINT_ENUM, text, hint.usage | PROPERTY_USAGE_CLASS_IS_ENUM, String(class_name) + "." + words.name);
}

void ClassTableBase::bind_enum(const EnumWords &words) {
	const PackedStringArray constants = constants_in(words);
	for (int64_t i = 0; i < constants.size(); i++) {
		ClassDB::bind_integer_constant(class_name, words.name, constants[i], i);
		row.constants.push_back(constants[i]);
	}
}

void ClassTableBase::group(const char *name, const char *prefix) {
	ClassDB::add_property_group(class_name, name, prefix);
}
