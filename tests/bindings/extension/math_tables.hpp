// The tables of operations by subject, put together by all_math_cases().

#pragma once

#include "math_case.hpp"

namespace bindings_test {

template <size_t COUNT>
void append(const MathCase (&table)[COUNT], godot::LocalVector<const MathCase *> &cases) {
	for (const MathCase &math_case : table) {
		cases.push_back(&math_case);
	}
}

void append_vectors(godot::LocalVector<const MathCase *> &cases);
void append_flat(godot::LocalVector<const MathCase *> &cases);
void append_spatial(godot::LocalVector<const MathCase *> &cases);

} // namespace bindings_test
