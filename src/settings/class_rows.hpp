#pragma once

// What every registered class says about itself and its settings, kept for the life of the library.
// Filled by ClassTable while classes register, read by the inspector hooks, the editor's help, the
// script table, the pairing of kinds with their runtimes and the sweep over all kinds.

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/core/property_info.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

struct SettingRow;

// Something that is said of a setting and depends on what the others hold.
struct SettingRule {
	// The setting it asks about, which may be declared later. Null when a method of the kind answers.
	const SettingRow *const *about = nullptr;
	bool (*holds)(const Object *object) = nullptr;
};

// How a kind goes about its work, which tells when it is done.
enum class Runs : uint8_t {
	// The kind says it in operations of its own.
	AS_IT_SAYS,
	// By its run mode: done as it enters, or over and over.
	ONCE_OR_REPEATING,
	// Done as it enters, with no choice.
	AT_ONCE,
	// Finishes by itself later, or as it enters when all its times are zero.
	FOR_A_WHILE,
	// Beside whatever else the state does, until it is left. It holds nothing up.
	ON_AND_ON,
};

struct SettingRow {
	PropertyInfo info;
	StringName getter;
	StringName setter;
	String doc;
	// Tells the field behind it from others, null when there is none.
	const void *field = nullptr;
	// Changing it shows or hides other settings, for classes that are no kinds. A kind's rules tell by themselves.
	bool relists = false;
	// Shown while every one of these holds.
	LocalVector<SettingRule> shown_if;
	// May stay empty, while every one of these holds, without the summary lacking something.
	bool optional = false;
	LocalVector<SettingRule> optional_if;
	// Names a variable that is written too, while every one of these holds.
	bool written = false;
	LocalVector<SettingRule> written_if;
	// Takes a value of any type: the inspector offers every one.
	bool any_type = false;
	// Writes the field and tells nobody, for what knows the object's class already and writes at run time. The value is of the
	// setting's own type. False when that can have called user code, by the destructor of what the field held. Null where a class
	// has a setter of its own.
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

	Runs runs = Runs::AS_IT_SAYS;
	bool wants_physics = false;
	// Of a condition: nothing but a variable's change can change its answer.
	bool depends_only_on_variables = false;
	// One for each time of a kind that runs for a while: whether it is set, or read from a variable.
	LocalVector<SettingRule> takes_time_if;
	// The names of the sentences of its own.
	LocalVector<StringName *> warnings;
	// Some setting is shown only now and then.
	bool has_rules = false;

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
