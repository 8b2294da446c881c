#pragma once

// One thing that the check of a design has found: how sure it is, where it is, what is wrong and what to change.

#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

struct DesignFinding {
	enum Severity {
		// It may be meant: a script may send that event.
		HINT,
		// It cannot work as it stands.
		WARNING,
	};
	Severity severity = WARNING;
	// Which rule found it: "missing_state".
	const char *rule = "";
	// "Guard > Patrol > Follow Path".
	String place;
	// A sentence without its end, and one that says what to do.
	String what;
	String remedy;
	// The state, transition, variable or action it is about.
	Variant about;

	String sentence() const { return vformat("%s: %s. %s", place, what, remedy); }
	Dictionary as_dictionary() const;
};
