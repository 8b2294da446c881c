// Compiler hints, the export marker and the engine's floating-point type: what every other header of the bindings may rely on. Includes nothing of
// the bindings itself.

#ifndef GODOT_CPP_CORE_DEFS_HPP
#define GODOT_CPP_CORE_DEFS_HPP

#include <cstddef>
#include <cstdint>

#if defined(_WIN32)
#define GDE_EXPORT __declspec(dllexport)
#elif defined(__GNUC__)
#define GDE_EXPORT __attribute__((visibility("default")))
#else
#define GDE_EXPORT
#endif

#ifndef _ALWAYS_INLINE_
#if defined(__GNUC__)
#define _ALWAYS_INLINE_ __attribute__((always_inline)) inline
#elif defined(_MSC_VER)
#define _ALWAYS_INLINE_ __forceinline
#else
#define _ALWAYS_INLINE_ inline
#endif
#endif

// Unoptimised builds keep these as calls, so that a debugger can step into them.
#ifndef _FORCE_INLINE_
#ifdef DISABLE_FORCED_INLINE
#define _FORCE_INLINE_ inline
#else
#define _FORCE_INLINE_ _ALWAYS_INLINE_
#endif
#endif

#ifndef _NO_INLINE_
#if defined(__GNUC__)
#define _NO_INLINE_ __attribute__((noinline))
#elif defined(_MSC_VER)
#define _NO_INLINE_ __declspec(noinline)
#else
#define _NO_INLINE_
#endif
#endif

#if defined(__GNUC__)
#ifndef likely
#define likely(m_condition) __builtin_expect(!!(m_condition), 1)
#endif
#ifndef unlikely
#define unlikely(m_condition) __builtin_expect(!!(m_condition), 0)
#endif
#else
#ifndef likely
#define likely(m_condition) (m_condition)
#endif
#ifndef unlikely
#define unlikely(m_condition) (m_condition)
#endif
#endif

#ifndef _STR
#define _STR(m_x) #m_x
#define _MKSTR(m_x) _STR(m_x)
#endif

#if defined(_MSC_VER)
#define GENERATE_TRAP() __debugbreak()
#elif defined(__GNUC__)
#define GENERATE_TRAP() __builtin_trap()
#else
#error "This compiler's trap instruction is not known."
#endif

namespace godot {

// Engines built in double precision are not supported.
typedef float real_t;

} // namespace godot

using godot::real_t;

#endif // GODOT_CPP_CORE_DEFS_HPP
