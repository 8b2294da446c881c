// The argument checks of the math types' sources. As in the engine, debug builds report a wrong argument and answer with a neutral value.
#ifndef GODOT_CPP_SRC_VARIANT_MATH_CHECKS_HPP
#define GODOT_CPP_SRC_VARIANT_MATH_CHECKS_HPP

#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/variant.hpp>

#ifdef MATH_CHECKS
#define CHECK_MATH(m_condition, m_result, m_message) ERR_FAIL_COND_V_MSG(!(m_condition), m_result, m_message)
#else
#define CHECK_MATH(m_condition, m_result, m_message) ((void)0)
#endif

#define CHECK_NORMALIZED(m_value, m_name, m_result)                                                                                                            \
	CHECK_MATH((m_value).is_normalized(), m_result, String("The " m_name " ") + String(m_value) + String(" must be normalized."))

#endif // GODOT_CPP_SRC_VARIANT_MATH_CHECKS_HPP
