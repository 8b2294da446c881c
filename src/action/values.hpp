#pragma once

// Values as a game maker means them: what counts as a number or as true, what a value becomes where
// another kind of value is needed, and what a kind reads from and writes to the machine's variables.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/variant/node_path.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class SCMachineBase;

namespace values {

bool is_number(const Variant &value);
// Of two or three parts, whole ones or not.
bool is_vector(const Variant &value);
// An Array or a packed one.
bool is_list(const Variant &value);
// True counts as 1; what is no number as 0.
double as_number(const Variant &value);
bool as_truth(const Variant &value);
// The same to a game maker: 1 and 1.0 are, a name and its text are, and so are two kinds of nothing.
bool same_value(const Variant &first, const Variant &second);

bool can_fit(const Variant &typed_in, const Variant &held);
// `held` as the kind of value that `typed_in` is, or `typed_in` when it cannot be.
Variant fitted_to(const Variant &typed_in, const Variant &held);
// "a float", "a Node", "nothing": for messages.
String kind_in_words(const Variant &value);

// The variable's value, or `literal` when none is named. A variable that the machine does not have is
// told of once and answered with `literal` too.
double number_of(SCMachineBase *machine, double literal, const StringName &variable);
Variant value_of(SCMachineBase *machine, const Variant &literal, const StringName &variable);
void say_no_such_variable(SCMachineBase *machine, const StringName &variable);
// An int variable takes a whole number: the answer is rounded, and the game maker told once.
Variant keep_whole(SCMachineBase *machine, const StringName &variable, double answer);
// The item that a variable holds; null, and told once, when it holds something else.
Ref<Resource> item_in(SCMachineBase *machine, const StringName &variable);

// The node at a path from the machine; the node the machine works on when the path is empty.
Node *node_of(SCMachineBase *machine, const NodePath &path);
// The way from the machine to a held node. What node_of() finds nothing at when there is none.
NodePath path_to(SCMachineBase *machine, const Variant &held);

// Reports a null argument of a method that scripts call, the way the engine does.
void report_null(const char *method, const char *argument);

} // namespace values
