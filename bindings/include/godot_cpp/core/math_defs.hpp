// Constants of the engine's arithmetic: tolerances and the named numbers. Included by core/math.hpp; nothing else needs it directly.
#pragma once

#include <godot_cpp/core/defs.hpp>

#define CMP_EPSILON 0.00001
#define CMP_EPSILON2 (CMP_EPSILON * CMP_EPSILON)
#define CMP_NORMALIZE_TOLERANCE 0.000001
#define CMP_POINT_IN_PLANE_EPSILON 0.00001
#define UNIT_EPSILON 0.001

#define Math_SQRT12 0.7071067811865475244008443621048490
#define Math_SQRT2 1.4142135623730950488016887242
#define Math_LN2 0.6931471805599453094172321215
#define Math_PI 3.1415926535897932384626433833
#define Math_TAU 6.2831853071795864769252867666
#define Math_E 2.7182818284590452353602874714
#define Math_INF INFINITY
#define Math_NAN NAN

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
