#pragma once

// What the editor's help says of operations, signals and constants, and at length of a class. Settings tell their own text where
// they are declared. A story holds this list to what is registered, in both directions.

#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>

struct HelpText {
	const char *class_name;
	// Empty for the class itself.
	const char *member;
	const char *text;
};

namespace help_texts {

struct Line {
	godot::String member;
	godot::String text;
};

// Classes that have operations but no settings.
godot::LocalVector<godot::StringName> classes_without_settings();
godot::String description_of(const godot::StringName &class_name);
// A line per operation. One that a script may replace has three forms: `_name` in the script, `name` that is called, and
// `name_default` that is done without a script.
godot::LocalVector<Line> operations_of(const godot::StringName &class_name);
godot::LocalVector<Line> signals_of(const godot::StringName &class_name);
godot::LocalVector<Line> constants_of(const godot::StringName &class_name);

} // namespace help_texts
