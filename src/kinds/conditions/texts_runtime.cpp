// Compiled conditions about texts and files.

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
	using Kind = SCFileExistsCondition;
	const String path = words::fill_in(setting_of<&Kind::path>(condition), machine).strip_edges();
	if (path.is_empty()) {
		verbs::warn(machine, condition, "there is no path to look at, so the answer is no. Type one under Path, such as user://photo.png.");
		return false;
	}
	const Kind::What what = setting_of<&Kind::what>(condition);
	return (what != Kind::A_FOLDER && is_file(path)) || (what != Kind::A_FILE && DirAccess::dir_exists_absolute(path));
}

bool is_such_text(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCStringCompareCondition;
	Variant value;
	if (!conditions::read<&Kind::variable_name>(machine, condition, value)) {
		return false;
	}
	String held = words::text_of(value);
	String text = setting_of<&Kind::text>(condition);
	if (setting_of<&Kind::ignore_case>(condition)) {
		held = held.to_lower();
		text = text.to_lower();
	}
	switch (setting_of<&Kind::test>(condition)) {
		case Kind::EQUALS:
			return held == text;
		case Kind::NOT_EQUALS:
			return held != text;
		case Kind::CONTAINS:
			return text.is_empty() || held.contains(text);
		case Kind::BEGINS_WITH:
			return held.begins_with(text);
		case Kind::ENDS_WITH:
			return held.ends_with(text);
		case Kind::MATCHES:
			return held.match(text);
		case Kind::IS_EMPTY:
			return held.is_empty();
	}
	return false;
}

const AddKinds added = {
	add_condition<SCFileExistsCondition, &is_there>(),
	add_condition<SCStringCompareCondition, &is_such_text>(),
};

} // namespace
