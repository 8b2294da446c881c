#pragma once

// A formula as a game maker types it, read once. It is taken apart here, held to the words that are granted, and put together
// anew for the engine's Expression with every operation in brackets of its own. Names, numbers and texts become inputs of the
// Expression, so that nothing that was typed reaches the engine's own reader.

#include <godot_cpp/classes/expression.hpp>
#include <godot_cpp/classes/ref.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/packed_string_array.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

struct Formula {
	String text;
	// Why it cannot be worked out, as the end of a sentence; empty for one that can.
	String problem;
	Ref<Expression> expression;
	// What the Expression is given: numbers and texts of the formula as they are, and places for what variables hold.
	Array inputs;
	struct Place {
		StringName variable;
		int64_t input = 0;
	};
	LocalVector<Place> places;
	bool names_endless = false;

	// Reads another text; the same one again costs nothing.
	void read(const String &formula);
	PackedStringArray variables() const;

private:
	bool is_read = false;
};
