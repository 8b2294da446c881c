#pragma once

// Values as a game maker means them: what counts as a number or as true, what a value becomes where
// another kind of value is needed, and how it reads in a line of text.

#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class SCMachineBase;

namespace values {

bool is_number(const Variant &value);
// 0 for what is no number.
double as_number(const Variant &value);
bool as_truth(const Variant &value);
bool can_fit(const Variant &typed_in, const Variant &held);
// `held` as the kind of value that `typed_in` is, or `typed_in` when it cannot be.
Variant fitted_to(const Variant &typed_in, const Variant &held);
// An int variable takes a whole number: the answer is rounded, and the game maker told once.
Variant keep_whole(SCMachineBase *machine, const StringName &variable, double answer);

// A number without needless digits: 2, 0.5, 3.1416.
String number_text(double value);
String text_of(const Variant &value);
// "a float", "a Node", "nothing": for messages.
String kind_in_words(const Variant &value);
// `line` with each {variable} replaced by what the machine's variable holds, {target} by the target's name.
String fill_in(const String &line, SCMachineBase *machine);

} // namespace values
