#include "settings/class_rows.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/memory.hpp>

namespace {

ClassRows *shared_rows = nullptr;

} // namespace

ClassRow::~ClassRow() {
	for (SettingRow *row : settings) {
		memdelete(row);
	}
	for (StringName *name : warnings) {
		memdelete(name);
	}
}

const SettingRow *ClassRow::setting(const StringName &name) const {
	for (const ClassRow *row = this; row != nullptr; row = row->parent) {
		if (SettingRow *const *found = row->by_name.getptr(name)) {
			return *found;
		}
	}
	return nullptr;
}

bool ClassRow::extends(const ClassRow *other) const {
	for (const ClassRow *row = parent; row != nullptr; row = row->parent) {
		if (row == other) {
			return true;
		}
	}
	return false;
}

ClassRows::~ClassRows() {
	for (ClassRow *row : rows) {
		memdelete(row);
	}
}

ClassRow &ClassRows::add(const StringName &class_name, const StringName &parent) {
	ClassRow *row = memnew(ClassRow);
	row->class_name = class_name;
	if (ClassRow *const *found = by_class.getptr(parent)) {
		row->parent = *found;
	}
	rows.push_back(row);
	by_class.insert(class_name, row);
	return *row;
}

const ClassRow *ClassRows::of(const StringName &class_name) const {
	StringName name = class_name;
	while (!name.is_empty()) {
		// A script's class has no row, and the engine prints an error when asked for its parent.
		if (ClassRow *const *found = by_class.getptr(name)) {
			return *found;
		}
		name = ClassDB::class_exists(name) ? ClassDB::get_parent_class(name) : StringName();
	}
	return nullptr;
}

String ClassRows::doc_of(const StringName &class_name, const StringName &setting) const {
	const ClassRow *row = of(class_name);
	if (setting.is_empty()) {
		return row != nullptr ? row->about : String();
	}
	const SettingRow *found = row != nullptr ? row->setting(setting) : nullptr;
	return found != nullptr ? found->doc : String();
}

String ClassRows::script_path_of(const StringName &class_name) const {
	for (const ClassRow *row = of(class_name); row != nullptr; row = row->parent) {
		if (!row->script_path.is_empty()) {
			return row->script_path;
		}
	}
	return String();
}

bool ClassRows::takes_any_type(const StringName &class_name, const StringName &setting) const {
	const ClassRow *row = of(class_name);
	const SettingRow *found = row != nullptr ? row->setting(setting) : nullptr;
	return found != nullptr && found->any_type;
}

ClassRows &ClassRows::shared() {
	if (shared_rows == nullptr) {
		shared_rows = memnew(ClassRows);
	}
	return *shared_rows;
}

void ClassRows::free_shared() {
	if (shared_rows != nullptr) {
		memdelete(shared_rows);
		shared_rows = nullptr;
	}
}
