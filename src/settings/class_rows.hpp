#pragma once

// What every registered class says about itself and its settings, kept for the life of the library.
// Filled by ClassTable while classes register, read by the inspector hooks, the editor's help, the
// script table, the pairing of kinds with their runtimes and the sweep over all kinds.

#include <godot_cpp/core/property_info.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

struct SettingRow {
	PropertyInfo info;
	StringName getter;
	StringName setter;
	String doc;
	// Changing it shows or hides other settings.
	bool relists = false;
	// Takes a value of any type: the inspector offers every one.
	bool any_type = false;
	// Writes the field as the setter does, for what knows the object's class already. The value is of the setting's own type. False
	// when that can have called user code: by telling of the change, or by the destructor of what the field held. Null where a
	// class has a setter of its own.
	using Assign = bool (*)(Object *object, const Variant &value);
	Assign assign = nullptr;
	// How the default, which is written for 3D in metres, is suited to a 2D machine.
	bool px_in_2d = false;
	Variant in_2d;
};

struct ClassRow {
	StringName class_name;
	String about;
	const ClassRow *parent = nullptr;

	// Of a kind only: the folder it is listed under and the word its files and runtime are named by.
	String category;
	StringName word;
	String script_path;

	LocalVector<SettingRow *> settings;
	HashMap<StringName, SettingRow *> by_name;
	// Names and texts of the enums' constants, "Enum.CONSTANT" first, for the editor's help.
	LocalVector<StringName> constants;

	~ClassRow();
	// Climbs the parents, as a setting declared by a base is a setting of every kind below it.
	const SettingRow *setting(const StringName &name) const;
	bool is_or_extends(const ClassRow *other) const { return this == other || extends(other); }
	bool extends(const ClassRow *other) const;
};

class ClassRows {
	LocalVector<ClassRow *> rows;
	HashMap<StringName, ClassRow *> by_class;

public:
	~ClassRows();

	ClassRow &add(const StringName &class_name, const StringName &parent);
	// Of a class without a row of its own the nearest parent's, null when none has one.
	const ClassRow *of(const StringName &class_name) const;
	const LocalVector<ClassRow *> &in_order() const { return rows; }

	// The text for a setting, or for the class itself when `setting` is empty.
	String doc_of(const StringName &class_name, const StringName &setting) const;
	// The addon script that a compiled class stands for, empty when it is no kind.
	String script_path_of(const StringName &class_name) const;
	bool takes_any_type(const StringName &class_name, const StringName &setting) const;

	static ClassRows &shared();
	static void free_shared();
};
