#pragma once

// The line the graph draws for an action or a condition: its summary, with the name of the variable in
// square brackets where a setting is read from one, and "(pick one)" where something is missing.
//
// No kind knows about that. A bound setting is given a value that nothing else has, the summary is
// asked again, and where the line shows that value, the name goes.

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace summary_line {

String shown_line(Object *object);
// Two blanks together, a blank at an end, or a last word such as "to" after which something should follow.
bool has_a_hole(const String &line);
String with_variables(Object *object, const String &said);

// The steps of with_variables(), known to scripts too.

// The summary with the setting's marker in it; `said` as it is when there is no marker for it.
String line_marked(Object *object, const StringName &setting, int64_t number);
// Nil for a type that has none.
Variant marker_for(const Variant &like, int64_t number);
// The values a setting with an enum's choices does not have now.
Array choices_of(Object *object, const StringName &setting);
bool has_setting(Object *object, const StringName &setting);
// `line` with the marker replaced by the name in brackets, as it is when it has no marker.
String marker_named(const String &line, int64_t number, const String &name);
// `said` with the name where one word turned to its opposite; empty when that is not what happened.
String yes_or_no_that_changed(const String &said, const String &marked, const String &name);
// `said` with the name in place of what differs; empty when that cannot be told apart well enough.
String part_that_changed(const String &said, const String &marked, const String &name);
// The same, or `said` itself.
String swap_the_part_that_changed(const String &said, const String &marked, const String &name);

} // namespace summary_line
