#pragma once

// What a formula does by way of this library instead of the engine: work that would stop the engine or print an engine error on
// numbers that a game may well have, and the way that nodes and resources go through a formula without being reached by it.

#include <godot_cpp/variant/callable.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace formula_work {

// Called from within a formula.
Callable division();
Callable remainder();
Callable positive_remainder();
Callable text();
Callable color();
// rotated(), bounce(), reflect() and slide(), whose axis the engine wants to be of length 1.
Callable turned();

// Told by the last of them that could not do its work, as the end of a sentence.
void forget_problem();
String problem();

// A value of a variable as a formula gets it: for a node or a resource something that can be compared and handed on, and that is
// all. False for what a formula cannot have at all, or that is too deep to look through.
bool let_in(Variant &value);
// The answer as the game gets it: nodes and resources are themselves again, lists and tables are its own.
Variant let_out(const Variant &value);
bool is_endless(const Variant &value);
bool is_no_number(const Variant &value);

} // namespace formula_work
