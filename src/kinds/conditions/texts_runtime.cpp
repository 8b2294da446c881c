// Compiled questions about texts and files.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "kinds/conditions/texts.hpp"

#include <godot_cpp/classes/dir_access.hpp>
#include <godot_cpp/classes/file_access.hpp>
#include <godot_cpp/classes/resource_loader.hpp>
#include <godot_cpp/classes/resource_uid.hpp>

namespace {

// What the editor imported is in an exported game under another name, which the loader knows.
bool is_file(const String &path) {
	if (path.begins_with("uid://")) {
		// Asking the loader about one that nobody has is an engine error.
		const ResourceUID *known = ResourceUID::get_singleton();
		return known->has_id(known->text_to_id(path)) && ResourceLoader::get_singleton()->exists(path);
	}
	return FileAccess::file_exists(path) || (path.begins_with("res://") && ResourceLoader::get_singleton()->exists(path));
}

bool is_there(SCMachineBase *machine, SCMachineCondition *condition) {
	const String path = words::fill_in(setting_of<&SCFileExistsCondition::path>(condition), machine).strip_edges();
	if (path.is_empty()) {
		verbs::warn(machine, condition, "there is no path to look at, so the answer is no. Type one under Path, such as user://photo.png.");
		return false;
	}
	const SCFileExistsCondition::What what = setting_of<&SCFileExistsCondition::what>(condition);
	return (what != SCFileExistsCondition::A_FOLDER && is_file(path)) || (what != SCFileExistsCondition::A_FILE && DirAccess::dir_exists_absolute(path));
}

bool is_such_text(SCMachineBase *machine, SCMachineCondition *condition) {
	const StringName variable = setting_of<&SCStringCompareCondition::variable_name>(condition);
	if (!conditions::has_variable(machine, condition, variable)) {
		return false;
	}
	String held = words::text_of(machine->get_value(variable));
	String text = setting_of<&SCStringCompareCondition::text>(condition);
	if (setting_of<&SCStringCompareCondition::ignore_case>(condition)) {
		held = held.to_lower();
		text = text.to_lower();
	}
	switch (setting_of<&SCStringCompareCondition::test>(condition)) {
		case SCStringCompareCondition::EQUALS:
			return held == text;
		case SCStringCompareCondition::NOT_EQUALS:
			return held != text;
		case SCStringCompareCondition::CONTAINS:
			return text.is_empty() || held.contains(text);
		case SCStringCompareCondition::BEGINS_WITH:
			return held.begins_with(text);
		case SCStringCompareCondition::ENDS_WITH:
			return held.ends_with(text);
		case SCStringCompareCondition::MATCHES:
			return held.match(text);
		case SCStringCompareCondition::IS_EMPTY:
			return held.is_empty();
	}
	return false;
}

const AddKinds added = {
	add_condition<SCFileExistsCondition, &is_there>(),
	add_condition<SCStringCompareCondition, &is_such_text>(),
};

} // namespace
