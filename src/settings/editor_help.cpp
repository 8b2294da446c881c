#include "settings/editor_help.hpp"

#include "settings/class_rows.hpp"
#include "settings/help_texts.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>
#include <godot_cpp/variant/char_string.hpp>

namespace {

GDExtensionInterfaceGetProcAddress interface_of = nullptr;

String type_words(const PropertyInfo &info) {
	if (info.type == Variant::NIL) {
		return "Variant";
	}
	if (info.type == Variant::OBJECT) {
		return info.hint_string.is_empty() ? String("Object") : info.hint_string;
	}
	return Variant::get_type_name(info.type);
}

String text_of(const SettingRow &setting, bool of_a_kind) {
	const bool is_a_path = of_a_kind && setting.info.type == Variant::NODE_PATH;
	return is_a_path ? setting.doc + String(" The path is seen from the Machine.") : setting.doc;
}

String members_of(const ClassRow &row) {
	String xml;
	for (const SettingRow *setting : row.settings) {
		const bool is_enum = (setting->info.usage & PROPERTY_USAGE_CLASS_IS_ENUM) != 0;
		const String enum_of = is_enum ? vformat(" enum=\"%s\"", setting->info.class_name) : String();
		xml += vformat("<member name=\"%s\" type=\"%s\"%s setter=\"%s\" getter=\"%s\">%s</member>\n", setting->info.name, type_words(setting->info), enum_of,
				setting->setter, setting->getter, text_of(*setting, !row.script_path.is_empty()).xml_escape());
	}
	return xml;
}

String line_of(const char *tag, const String &attributes, const String &text) {
	return vformat("<%s %s><description>%s</description></%s>\n", tag, attributes, text.xml_escape(), tag);
}

String constant_of(const String &name, int64_t value, const String &attributes, const String &text) {
	return vformat("<constant name=\"%s\" value=\"%d\"%s>%s</constant>\n", name, value, attributes, text.xml_escape());
}

// A choice of an enum is told by the words that the inspector has for it.
String choices_of(const SettingRow &setting, const StringName &class_name) {
	ClassDBSingleton *classes = ClassDBSingleton::get_singleton();
	const StringName enum_name = String(setting.info.class_name).get_slice(".", 1);
	const PackedStringArray labels = setting.info.hint_string.split(",");
	const PackedStringArray constants = classes->class_get_enum_constants(class_name, enum_name, true);
	String xml;
	for (int64_t i = 0; i < constants.size(); i++) {
		const int64_t value = classes->class_get_integer_constant(class_name, constants[i]);
		const String label = value >= 0 && value < labels.size() ? labels[value].get_slice(":", 0) : String();
		if (!label.is_empty()) {
			xml += constant_of(constants[i], value, vformat(" enum=\"%s\"", enum_name), vformat("%s, of [member %s].", label, setting.info.name));
		}
	}
	return xml;
}

String constants_of(const StringName &class_name, const ClassRow *row) {
	String xml;
	for (const help_texts::Line &line : help_texts::constants_of(class_name)) {
		xml += constant_of(line.member, ClassDBSingleton::get_singleton()->class_get_integer_constant(class_name, line.member), String(), line.text);
	}
	LocalVector<StringName> told;
	for (uint32_t i = 0; row != nullptr && i < row->settings.size(); i++) {
		const SettingRow *setting = row->settings[i];
		const bool is_its_own =
				(setting->info.usage & PROPERTY_USAGE_CLASS_IS_ENUM) != 0 && String(setting->info.class_name).begins_with(String(class_name) + ".");
		if (is_its_own && told.find(setting->info.class_name) < 0) {
			told.push_back(setting->info.class_name);
			xml += choices_of(*setting, class_name);
		}
	}
	return xml;
}

} // namespace

void EditorHelp::remember_interface(GDExtensionInterfaceGetProcAddress get_proc_address) {
	interface_of = get_proc_address;
}

void EditorHelp::hand_over_when_ready() {
	if (Engine::get_singleton()->is_editor_hint()) {
		callable_mp_static(&EditorHelp::hand_over).call_deferred();
	}
}

String EditorHelp::xml_of(const StringName &class_name) {
	const ClassRow *nearest = ClassRows::shared().of(class_name);
	const ClassRow *row = nearest != nullptr && nearest->class_name == class_name ? nearest : nullptr;
	const String description = help_texts::description_of(class_name);
	String xml = vformat("<class name=\"%s\" inherits=\"%s\">\n", class_name, ClassDB::get_parent_class(class_name));
	xml += vformat("<brief_description>%s</brief_description>\n<description>%s</description>\n<tutorials></tutorials>\n",
			(row != nullptr ? row->about : description).xml_escape(), row != nullptr ? description.xml_escape() : String());
	xml += "<methods>\n";
	for (const help_texts::Line &line : help_texts::operations_of(class_name)) {
		xml += line_of("method", vformat("name=\"%s\"", line.member), line.text);
	}
	xml += "</methods>\n<members>\n" + (row != nullptr ? members_of(*row) : String()) + "</members>\n<signals>\n";
	for (const help_texts::Line &line : help_texts::signals_of(class_name)) {
		xml += line_of("signal", vformat("name=\"%s\"", line.member), line.text);
	}
	return xml + "</signals>\n<constants>\n" + constants_of(class_name, row) + "</constants>\n</class>\n";
}

void EditorHelp::hand_over() {
	const auto load = reinterpret_cast<GDExtensionInterfaceEditorHelpLoadXmlFromUtf8CharsAndLen>(interface_of("editor_help_load_xml_from_utf8_chars_and_len"));
	if (load == nullptr) {
		return;
	}
	LocalVector<StringName> classes = help_texts::classes_without_settings();
	for (const ClassRow *row : ClassRows::shared().in_order()) {
		classes.push_back(row->class_name);
	}
	for (const StringName &class_name : classes) {
		const CharString text = xml_of(class_name).utf8();
		load(text.get_data(), text.length());
	}
}
