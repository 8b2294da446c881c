#pragma once

// Values, paths and settings as they read in a line of text: in summaries, in warnings and in what a
// game shows its player.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/node_path.hpp>
#include <godot_cpp/variant/packed_string_array.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class SCMachineBase;

namespace words {

// Without needless digits: 2, 0.5, 3.1416.
String number(double value);
// A node by its name, a resource by its own name or its file's, nothing by no text at all.
String text_of(const Variant &value);
// A value in the form asked for after the colon of {name:form}:
//	0, 00, 000      a whole number of at least that many digits
//	0.0, 0.00       that many digits after the point
//	,               thousands apart: 12,500
//	+               with its sign: +5
//	%               a share of 1 as a percentage
//	time            seconds as minutes and seconds: 1:05, 1:02:05
//	upper, lower, title
// Any other form changes nothing.
String shown_as(const Variant &value, const String &how);
// `line` with each {name} and {name:form} replaced: from `also` first, then {target} by the name of
// `target` (without one, of the node the machine works on), then by the machine's variables. Braces
// that name nothing stay as they are.
String fill_in(const String &line, SCMachineBase *machine, Node *target = nullptr, const Dictionary &also = Dictionary());
// The names in braces, each once, without `target`.
PackedStringArray names_in(const String &line);

// The node a path leads to, as a summary names it. `otherwise` stands for an empty path, and `self`
// for the node the machine sits under.
String name_in_line(const NodePath &path, const String &self = "Self", const String &otherwise = "Self");
// "body_path" reads "body path".
String property_in_line(const StringName &property);
// An event as a sentence names it: "nothing" when there is none.
String event_in_words(const StringName &event);
// A name in a summary: "(pick one)" when there is none. The drawn line fills such a gap by itself, but for a setting that
// ends in "_variable".
String picked(const StringName &name);
// "[pace]" for a setting that is read from a variable, and the words for what is typed in otherwise.
String variable_or(const StringName &variable, const String &typed_in);
// A list of names in a summary.
String listed(const Array &names);

} // namespace words
