#include "math_case.hpp"

#include "math_tables.hpp"

namespace bindings_test {

godot::LocalVector<const MathCase *> all_math_cases() {
	godot::LocalVector<const MathCase *> cases;
	append_vectors(cases);
	append_flat(cases);
	append_spatial(cases);
	return cases;
}

} // namespace bindings_test
