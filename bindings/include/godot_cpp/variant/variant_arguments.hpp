#ifndef GODOT_CPP_VARIANT_VARIANT_ARGUMENTS_HPP
#define GODOT_CPP_VARIANT_VARIANT_ARGUMENTS_HPP

// The arguments of a call that takes any number of them, as the engine wants them: Variants, and pointers to them. Used by
// the templates of Callable, Signal, Array and the utility functions. Variant is a template parameter only so that their
// headers need not have it whole.

#include <cstddef>

namespace godot {

class Variant;

namespace internal {

template <size_t COUNT, typename V = Variant>
class VariantArguments {
	static constexpr size_t CAPACITY = COUNT > 0 ? COUNT : 1;

	V values[CAPACITY];
	const V *addresses[CAPACITY];

public:
	template <typename... Args>
	explicit VariantArguments(const Args &...p_arguments) : values{ V(p_arguments)... } {
		for (size_t index = 0; index < CAPACITY; index++) {
			addresses[index] = &values[index];
		}
	}

	VariantArguments(const VariantArguments &) = delete;
	VariantArguments &operator=(const VariantArguments &) = delete;

	const V **pointers() { return addresses; }
	static constexpr int count() { return int(COUNT); }
};

} // namespace internal
} // namespace godot

#endif // GODOT_CPP_VARIANT_VARIANT_ARGUMENTS_HPP
