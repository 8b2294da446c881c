#pragma once

// What may go into a list or a table that a variable holds, what one piece of work on it came to, and how both read in a summary.
// For the kinds that work with lists and tables.

#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace contents {

// What a typed list, a packed one or a typed table takes. NIL takes anything.
struct Takes {
	int64_t type = Variant::NIL;
	StringName class_name;
	Variant script;

	static Takes items_of(const Variant &list);
	static Takes keys_of(const Dictionary &table);
	static Takes values_of(const Dictionary &table);

	// Makes the value one that goes in; false when it cannot be.
	bool fit(Variant &value) const;
	String in_words() const;

private:
	bool fits_object(Variant &value) const;
};

struct Outcome {
	bool changed = false;
	bool found = true;
	Variant answer;
	// Set when it could not be done at all.
	String problem;
	// Whether something is there was all that was asked, so that not finding it is nothing to tell of.
	bool is_condition = false;
	Variant looked_for;

	// The answer of a condition.
	void tell_whether(bool is_there, const Variant &wanted, const Variant &told);
};

// Nothing typed in reads as what is meant by it, not as a gap.
String shown_or(const Variant &value, const char *otherwise);
// " into gold", or nothing for an answer that is not kept.
String into(const StringName &variable);

} // namespace contents
