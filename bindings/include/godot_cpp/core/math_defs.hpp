// Constants of the engine's arithmetic: tolerances and the named numbers. Included by core/math.hpp; nothing else needs it directly.
#ifndef GODOT_CPP_CORE_MATH_DEFS_HPP
#define GODOT_CPP_CORE_MATH_DEFS_HPP

#include <godot_cpp/core/defs.hpp>

#include <limits>

#define CMP_EPSILON 0.00001
#define CMP_EPSILON2 (CMP_EPSILON * CMP_EPSILON)
#define CMP_NORMALIZE_TOLERANCE 0.000001
#define CMP_POINT_IN_PLANE_EPSILON 0.00001
#define UNIT_EPSILON 0.001

namespace godot::Math {

constexpr double SQRT2 = 1.4142135623730950488016887242;
constexpr double SQRT3 = 1.7320508075688772935274463415059;
constexpr double SQRT12 = 0.7071067811865475244008443621048490;
constexpr double SQRT13 = 0.57735026918962576450914878050196;
constexpr double LN2 = 0.6931471805599453094172321215;
constexpr double PI = 3.1415926535897932384626433833;
constexpr double TAU = 6.2831853071795864769252867666;
constexpr double E = 2.7182818284590452353602874714;
constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

} // namespace godot::Math

// The engine checks its arguments (normalized vectors, invertible matrices) in debug builds only.
#if defined(DEBUG_ENABLED) && !defined(MATH_CHECKS)
#define MATH_CHECKS
#endif

// The members of a vector can be read by name and by index; unnamed structs inside unions are an extension that every supported compiler has.
#if defined(__GNUC__)
#define _UNNAMED_MEMBERS_ __extension__
#else
#define _UNNAMED_MEMBERS_
#endif

#endif // GODOT_CPP_CORE_MATH_DEFS_HPP
