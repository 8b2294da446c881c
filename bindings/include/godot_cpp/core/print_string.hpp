// Printing to the engine's console and log: what a developer reads, not what the error macros report. Called from anywhere once the
// extension is initialised.

#ifndef GODOT_CPP_CORE_PRINT_STRING_HPP
#define GODOT_CPP_CORE_PRINT_STRING_HPP

#include <godot_cpp/variant/utility_functions.hpp>
#include <godot_cpp/variant/variant.hpp>

namespace godot {

bool is_print_verbose_enabled();

template <typename... Args>
void print_line(const Variant &p_value, const Args &...p_args) {
	UtilityFunctions::print(p_value, p_args...);
}

template <typename... Args>
void print_line_rich(const Variant &p_value, const Args &...p_args) {
	UtilityFunctions::print_rich(p_value, p_args...);
}

template <typename... Args>
void print_error(const Variant &p_value, const Args &...p_args) {
	UtilityFunctions::printerr(p_value, p_args...);
}

// A macro, so that a text nobody wants to see is not put together.
#define print_verbose(m_text)                                                                                                                                  \
	do {                                                                                                                                                       \
		if (::godot::is_print_verbose_enabled()) {                                                                                                             \
			::godot::print_line(m_text);                                                                                                                       \
		}                                                                                                                                                      \
	} while (false)

} // namespace godot

#endif // GODOT_CPP_CORE_PRINT_STRING_HPP
