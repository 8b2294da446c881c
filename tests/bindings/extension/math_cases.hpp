// One operation of a math type, written once: compiled here, and handed to the engine as text to be worked out there on the same arguments.

#pragma once

#include <godot_cpp/variant/variant.hpp>

namespace bindings_test {

struct MathCase {
	static constexpr int MAX_ARGUMENTS = 5;

	const char *expression;
	// Of the arguments a, b, c, d and e; the test makes random ones by these names.
	const char *types;
	godot::Variant (*compute)(const godot::Variant *arguments);
};

extern const MathCase MATH_CASES[];
extern const int64_t MATH_CASE_COUNT;

} // namespace bindings_test
