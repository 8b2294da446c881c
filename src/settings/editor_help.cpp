#include "settings/editor_help.hpp"

#include "settings/class_rows.hpp"

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

} // namespace

void EditorHelp::remember_interface(GDExtensionInterfaceGetProcAddress get_proc_address) {
	interface_of = get_proc_address;
}

void EditorHelp::hand_over_when_ready() {
	if (Engine::get_singleton()->is_editor_hint()) {
		callable_mp_static(&EditorHelp::hand_over).call_deferred();
	}
}

String EditorHelp::xml_of(const ClassRow &row) {
	String xml = vformat("<class name=\"%s\" inherits=\"%s\">\n", row.class_name, ClassDB::get_parent_class(row.class_name));
	xml += vformat("<brief_description>%s</brief_description>\n<description></description>\n<tutorials></tutorials>\n<members>\n", row.about.xml_escape());
	for (const SettingRow *setting : row.settings) {
		const bool is_enum = (setting->info.usage & PROPERTY_USAGE_CLASS_IS_ENUM) != 0;
		const String enum_of = is_enum ? vformat(" enum=\"%s\"", setting->info.class_name) : String();
		xml += vformat("<member name=\"%s\" type=\"%s\"%s setter=\"%s\" getter=\"%s\">%s</member>\n", setting->info.name, type_words(setting->info), enum_of,
				setting->setter, setting->getter, setting->doc.xml_escape());
	}
	return xml + "</members>\n</class>\n";
}

void EditorHelp::hand_over() {
	const auto load = reinterpret_cast<GDExtensionInterfaceEditorHelpLoadXmlFromUtf8CharsAndLen>(interface_of("editor_help_load_xml_from_utf8_chars_and_len"));
	if (load == nullptr) {
		return;
	}
	for (const ClassRow *row : ClassRows::shared().in_order()) {
		const CharString text = xml_of(*row).utf8();
		load(text.get_data(), text.length());
	}
}
