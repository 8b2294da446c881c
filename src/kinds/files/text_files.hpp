#pragma once

// Text files as the files category reads and writes them: UTF-8, told in words when one cannot be.

#include <godot_cpp/variant/string.hpp>

using namespace godot;

namespace files {

struct TextRead {
	String text;
	// The part of a sentence before ", so nothing was done"; empty when it was read.
	String wrong;
	String remedy;
	// It is not there at all, which somebody who asks for an event then may well expect.
	bool is_missing = false;
	// It is so large that reading it takes a while, during which the game stands still.
	bool is_large = false;

	explicit operator bool() const { return wrong.is_empty(); }
};

TextRead read_text(const String &path);
// Why it could not be written, as above; the file is as it was then. Missing folders are made.
String write_text(const String &path, const String &text);
String add_text(const String &path, const String &text, bool on_a_new_line);

} // namespace files
