// The engine's error macros: check, report where and what, and leave. Reports name the source file as the build names it, relative to the root of the
// repository (-fmacro-prefix-map), the function and the line. Used everywhere; safe before the interface is loaded, when reports go to stderr.

#ifndef GODOT_CPP_CORE_ERROR_MACROS_HPP
#define GODOT_CPP_CORE_ERROR_MACROS_HPP

#include <godot_cpp/core/defs.hpp>

#include <cstdint>

namespace godot {

class String;

_NO_INLINE_ void _err_print_error(
		const char *p_function, const char *p_file, int p_line, const char *p_error, bool p_editor_notify = false, bool p_is_warning = false);
_NO_INLINE_ void _err_print_error(
		const char *p_function, const char *p_file, int p_line, const String &p_error, bool p_editor_notify = false, bool p_is_warning = false);
_NO_INLINE_ void _err_print_error(const char *p_function, const char *p_file, int p_line, const char *p_error, const char *p_message,
		bool p_editor_notify = false, bool p_is_warning = false);
_NO_INLINE_ void _err_print_error(const char *p_function, const char *p_file, int p_line, const String &p_error, const char *p_message,
		bool p_editor_notify = false, bool p_is_warning = false);
_NO_INLINE_ void _err_print_error(const char *p_function, const char *p_file, int p_line, const char *p_error, const String &p_message,
		bool p_editor_notify = false, bool p_is_warning = false);
_NO_INLINE_ void _err_print_error(const char *p_function, const char *p_file, int p_line, const String &p_error, const String &p_message,
		bool p_editor_notify = false, bool p_is_warning = false);
_NO_INLINE_ void _err_print_index_error(const char *p_function, const char *p_file, int p_line, int64_t p_index, int64_t p_size, const char *p_index_str,
		const char *p_size_str, const char *p_message = "", bool p_editor_notify = false, bool p_fatal = false);
_NO_INLINE_ void _err_print_index_error(const char *p_function, const char *p_file, int p_line, int64_t p_index, int64_t p_size, const char *p_index_str,
		const char *p_size_str, const String &p_message, bool p_editor_notify = false, bool p_fatal = false);
_NO_INLINE_ void _err_flush_stdout();

} // namespace godot

// Reports can be made from where the namespace is not in reach of an unqualified name.
#define _ERR_PRINT_(...) ::godot::_err_print_error(__FUNCTION__, __FILE__, __LINE__, __VA_ARGS__)
#define _ERR_PRINT_INDEX_(...) ::godot::_err_print_index_error(__FUNCTION__, __FILE__, __LINE__, __VA_ARGS__)
#define _ERR_CRASH_()                                                                                                                                          \
	::godot::_err_flush_stdout();                                                                                                                              \
	GENERATE_TRAP()

// Index checks: outside [0, size).

#define ERR_FAIL_INDEX(m_index, m_size)                                                                                                                        \
	if (unlikely((m_index) < 0 || (m_index) >= (m_size))) {                                                                                                    \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size));                                           \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_INDEX_MSG(m_index, m_size, m_msg)                                                                                                             \
	if (unlikely((m_index) < 0 || (m_index) >= (m_size))) {                                                                                                    \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), m_msg);                                    \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_INDEX_EDMSG(m_index, m_size, m_msg)                                                                                                           \
	if (unlikely((m_index) < 0 || (m_index) >= (m_size))) {                                                                                                    \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), m_msg, true);                              \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_INDEX_V(m_index, m_size, m_retval)                                                                                                            \
	if (unlikely((m_index) < 0 || (m_index) >= (m_size))) {                                                                                                    \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size));                                           \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_INDEX_V_MSG(m_index, m_size, m_retval, m_msg)                                                                                                 \
	if (unlikely((m_index) < 0 || (m_index) >= (m_size))) {                                                                                                    \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), m_msg);                                    \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_INDEX_V_EDMSG(m_index, m_size, m_retval, m_msg)                                                                                               \
	if (unlikely((m_index) < 0 || (m_index) >= (m_size))) {                                                                                                    \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), m_msg, true);                              \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

#define CRASH_BAD_INDEX(m_index, m_size)                                                                                                                       \
	if (unlikely((m_index) < 0 || (m_index) >= (m_size))) {                                                                                                    \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), "", false, true);                          \
		_ERR_CRASH_();                                                                                                                                         \
	} else                                                                                                                                                     \
		((void)0)

#define CRASH_BAD_INDEX_MSG(m_index, m_size, m_msg)                                                                                                            \
	if (unlikely((m_index) < 0 || (m_index) >= (m_size))) {                                                                                                    \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), m_msg, false, true);                       \
		_ERR_CRASH_();                                                                                                                                         \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_UNSIGNED_INDEX(m_index, m_size)                                                                                                               \
	if (unlikely((m_index) >= (m_size))) {                                                                                                                     \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size));                                           \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_UNSIGNED_INDEX_MSG(m_index, m_size, m_msg)                                                                                                    \
	if (unlikely((m_index) >= (m_size))) {                                                                                                                     \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), m_msg);                                    \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_UNSIGNED_INDEX_EDMSG(m_index, m_size, m_msg)                                                                                                  \
	if (unlikely((m_index) >= (m_size))) {                                                                                                                     \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), m_msg, true);                              \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_UNSIGNED_INDEX_V(m_index, m_size, m_retval)                                                                                                   \
	if (unlikely((m_index) >= (m_size))) {                                                                                                                     \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size));                                           \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_UNSIGNED_INDEX_V_MSG(m_index, m_size, m_retval, m_msg)                                                                                        \
	if (unlikely((m_index) >= (m_size))) {                                                                                                                     \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), m_msg);                                    \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_UNSIGNED_INDEX_V_EDMSG(m_index, m_size, m_retval, m_msg)                                                                                      \
	if (unlikely((m_index) >= (m_size))) {                                                                                                                     \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), m_msg, true);                              \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

#define CRASH_BAD_UNSIGNED_INDEX(m_index, m_size)                                                                                                              \
	if (unlikely((m_index) >= (m_size))) {                                                                                                                     \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), "", false, true);                          \
		_ERR_CRASH_();                                                                                                                                         \
	} else                                                                                                                                                     \
		((void)0)

#define CRASH_BAD_UNSIGNED_INDEX_MSG(m_index, m_size, m_msg)                                                                                                   \
	if (unlikely((m_index) >= (m_size))) {                                                                                                                     \
		_ERR_PRINT_INDEX_(static_cast<int64_t>(m_index), static_cast<int64_t>(m_size), _STR(m_index), _STR(m_size), m_msg, false, true);                       \
		_ERR_CRASH_();                                                                                                                                         \
	} else                                                                                                                                                     \
		((void)0)

// Null checks.

#define ERR_FAIL_NULL(m_param)                                                                                                                                 \
	if (unlikely((m_param) == nullptr)) {                                                                                                                      \
		_ERR_PRINT_("Parameter \"" _STR(m_param) "\" is null.");                                                                                               \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_NULL_MSG(m_param, m_msg)                                                                                                                      \
	if (unlikely((m_param) == nullptr)) {                                                                                                                      \
		_ERR_PRINT_("Parameter \"" _STR(m_param) "\" is null.", m_msg);                                                                                        \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_NULL_EDMSG(m_param, m_msg)                                                                                                                    \
	if (unlikely((m_param) == nullptr)) {                                                                                                                      \
		_ERR_PRINT_("Parameter \"" _STR(m_param) "\" is null.", m_msg, true);                                                                                  \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_NULL_V(m_param, m_retval)                                                                                                                     \
	if (unlikely((m_param) == nullptr)) {                                                                                                                      \
		_ERR_PRINT_("Parameter \"" _STR(m_param) "\" is null.");                                                                                               \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_NULL_V_MSG(m_param, m_retval, m_msg)                                                                                                          \
	if (unlikely((m_param) == nullptr)) {                                                                                                                      \
		_ERR_PRINT_("Parameter \"" _STR(m_param) "\" is null.", m_msg);                                                                                        \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_NULL_V_EDMSG(m_param, m_retval, m_msg)                                                                                                        \
	if (unlikely((m_param) == nullptr)) {                                                                                                                      \
		_ERR_PRINT_("Parameter \"" _STR(m_param) "\" is null.", m_msg, true);                                                                                  \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

// Conditions: the macro acts when the condition holds.

#define ERR_FAIL_COND(m_cond)                                                                                                                                  \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true.");                                                                                                \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_COND_MSG(m_cond, m_msg)                                                                                                                       \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true.", m_msg);                                                                                         \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_COND_EDMSG(m_cond, m_msg)                                                                                                                     \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true.", m_msg, true);                                                                                   \
		return;                                                                                                                                                \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_COND_V(m_cond, m_retval)                                                                                                                      \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true. Returning: " _STR(m_retval));                                                                     \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_COND_V_MSG(m_cond, m_retval, m_msg)                                                                                                           \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true. Returning: " _STR(m_retval), m_msg);                                                              \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_FAIL_COND_V_EDMSG(m_cond, m_retval, m_msg)                                                                                                         \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true. Returning: " _STR(m_retval), m_msg, true);                                                        \
		return m_retval;                                                                                                                                       \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_CONTINUE(m_cond)                                                                                                                                   \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true. Continuing.");                                                                                    \
		continue;                                                                                                                                              \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_CONTINUE_MSG(m_cond, m_msg)                                                                                                                        \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true. Continuing.", m_msg);                                                                             \
		continue;                                                                                                                                              \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_CONTINUE_EDMSG(m_cond, m_msg)                                                                                                                      \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true. Continuing.", m_msg, true);                                                                       \
		continue;                                                                                                                                              \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_BREAK(m_cond)                                                                                                                                      \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true. Breaking.");                                                                                      \
		break;                                                                                                                                                 \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_BREAK_MSG(m_cond, m_msg)                                                                                                                           \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true. Breaking.", m_msg);                                                                               \
		break;                                                                                                                                                 \
	} else                                                                                                                                                     \
		((void)0)

#define ERR_BREAK_EDMSG(m_cond, m_msg)                                                                                                                         \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("Condition \"" _STR(m_cond) "\" is true. Breaking.", m_msg, true);                                                                         \
		break;                                                                                                                                                 \
	} else                                                                                                                                                     \
		((void)0)

#define CRASH_COND(m_cond)                                                                                                                                     \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("FATAL: Condition \"" _STR(m_cond) "\" is true.", "");                                                                                     \
		_ERR_CRASH_();                                                                                                                                         \
	} else                                                                                                                                                     \
		((void)0)

#define CRASH_COND_MSG(m_cond, m_msg)                                                                                                                          \
	if (unlikely(m_cond)) {                                                                                                                                    \
		_ERR_PRINT_("FATAL: Condition \"" _STR(m_cond) "\" is true.", m_msg);                                                                                  \
		_ERR_CRASH_();                                                                                                                                         \
	} else                                                                                                                                                     \
		((void)0)

// Without a condition.

#define ERR_FAIL()                                                                                                                                             \
	do {                                                                                                                                                       \
		_ERR_PRINT_("Method/function failed.");                                                                                                                \
		return;                                                                                                                                                \
	} while (false)

#define ERR_FAIL_MSG(m_msg)                                                                                                                                    \
	do {                                                                                                                                                       \
		_ERR_PRINT_("Method/function failed.", m_msg);                                                                                                         \
		return;                                                                                                                                                \
	} while (false)

#define ERR_FAIL_EDMSG(m_msg)                                                                                                                                  \
	do {                                                                                                                                                       \
		_ERR_PRINT_("Method/function failed.", m_msg, true);                                                                                                   \
		return;                                                                                                                                                \
	} while (false)

#define ERR_FAIL_V(m_retval)                                                                                                                                   \
	do {                                                                                                                                                       \
		_ERR_PRINT_("Method/function failed. Returning: " _STR(m_retval));                                                                                     \
		return m_retval;                                                                                                                                       \
	} while (false)

#define ERR_FAIL_V_MSG(m_retval, m_msg)                                                                                                                        \
	do {                                                                                                                                                       \
		_ERR_PRINT_("Method/function failed. Returning: " _STR(m_retval), m_msg);                                                                              \
		return m_retval;                                                                                                                                       \
	} while (false)

#define ERR_FAIL_V_EDMSG(m_retval, m_msg)                                                                                                                      \
	do {                                                                                                                                                       \
		_ERR_PRINT_("Method/function failed. Returning: " _STR(m_retval), m_msg, true);                                                                        \
		return m_retval;                                                                                                                                       \
	} while (false)

#define ERR_PRINT(m_msg)                                                                                                                                       \
	do {                                                                                                                                                       \
		_ERR_PRINT_(m_msg, false, false);                                                                                                                      \
	} while (false)

#define ERR_PRINT_ED(m_msg)                                                                                                                                    \
	do {                                                                                                                                                       \
		_ERR_PRINT_(m_msg, true, false);                                                                                                                       \
	} while (false)

#define WARN_PRINT(m_msg)                                                                                                                                      \
	do {                                                                                                                                                       \
		_ERR_PRINT_(m_msg, false, true);                                                                                                                       \
	} while (false)

#define WARN_PRINT_ED(m_msg)                                                                                                                                   \
	do {                                                                                                                                                       \
		_ERR_PRINT_(m_msg, true, true);                                                                                                                        \
	} while (false)

#define ERR_PRINT_ONCE(m_msg)                                                                                                                                  \
	do {                                                                                                                                                       \
		static bool first_time = true;                                                                                                                         \
		if (first_time) {                                                                                                                                      \
			first_time = false;                                                                                                                                \
			_ERR_PRINT_(m_msg, false, false);                                                                                                                  \
		}                                                                                                                                                      \
	} while (false)

#define ERR_PRINT_ONCE_ED(m_msg)                                                                                                                               \
	do {                                                                                                                                                       \
		static bool first_time = true;                                                                                                                         \
		if (first_time) {                                                                                                                                      \
			first_time = false;                                                                                                                                \
			_ERR_PRINT_(m_msg, true, false);                                                                                                                   \
		}                                                                                                                                                      \
	} while (false)

#define WARN_PRINT_ONCE(m_msg)                                                                                                                                 \
	do {                                                                                                                                                       \
		static bool first_time = true;                                                                                                                         \
		if (first_time) {                                                                                                                                      \
			first_time = false;                                                                                                                                \
			_ERR_PRINT_(m_msg, false, true);                                                                                                                   \
		}                                                                                                                                                      \
	} while (false)

#define WARN_PRINT_ONCE_ED(m_msg)                                                                                                                              \
	do {                                                                                                                                                       \
		static bool first_time = true;                                                                                                                         \
		if (first_time) {                                                                                                                                      \
			first_time = false;                                                                                                                                \
			_ERR_PRINT_(m_msg, true, true);                                                                                                                    \
		}                                                                                                                                                      \
	} while (false)

#define WARN_DEPRECATED_MSG(m_msg)                                                                                                                             \
	do {                                                                                                                                                       \
		static bool warning_shown = false;                                                                                                                     \
		if (!warning_shown) {                                                                                                                                  \
			warning_shown = true;                                                                                                                              \
			_ERR_PRINT_("This method has been deprecated and will be removed in the future.", m_msg, false, true);                                             \
		}                                                                                                                                                      \
	} while (false)

#define WARN_DEPRECATED WARN_DEPRECATED_MSG("")

#define CRASH_NOW()                                                                                                                                            \
	do {                                                                                                                                                       \
		_ERR_PRINT_("FATAL: Method/function failed.");                                                                                                         \
		_ERR_CRASH_();                                                                                                                                         \
	} while (false)

#define CRASH_NOW_MSG(m_msg)                                                                                                                                   \
	do {                                                                                                                                                       \
		_ERR_PRINT_("FATAL: Method/function failed.", m_msg);                                                                                                  \
		_ERR_CRASH_();                                                                                                                                         \
	} while (false)

// Checks of our own reasoning: only in development builds, so nothing may hang on them.
#ifdef DEV_ENABLED
#define DEV_ASSERT(m_cond)                                                                                                                                     \
	if (unlikely(!(m_cond))) {                                                                                                                                 \
		_ERR_PRINT_("FATAL: DEV_ASSERT failed  \"" _STR(m_cond) "\" is false.");                                                                               \
		_ERR_CRASH_();                                                                                                                                         \
	} else                                                                                                                                                     \
		((void)0)

#define DEV_CHECK_ONCE(m_cond)                                                                                                                                 \
	if (unlikely(!(m_cond))) {                                                                                                                                 \
		ERR_PRINT_ONCE("DEV_CHECK_ONCE failed  \"" _STR(m_cond) "\" is false.");                                                                               \
	} else                                                                                                                                                     \
		((void)0)

#else
#define DEV_ASSERT(m_cond) ((void)0)
#define DEV_CHECK_ONCE(m_cond) ((void)0)
#endif

#endif // GODOT_CPP_CORE_ERROR_MACROS_HPP
