#pragma once

// The tests that conditions about a value offer, in the order in which each of those kinds lists them in an enum of its own.

#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace comparing {

// A file may hold any number for one.
enum Test : int {
	EQUALS,
	NOT_EQUALS,
	GREATER,
	GREATER_OR_EQUAL,
	LESS,
	LESS_OR_EQUAL,
	IS_TRUE,
	IS_FALSE,
};

// Only what can be told greater from smaller passes the tests that ask for it: numbers, and texts by the alphabet.
bool passes(const Variant &held, Test test, const Variant &value);
// "is above 5", "is true".
String in_words(Test test, const Variant &value);

} // namespace comparing
