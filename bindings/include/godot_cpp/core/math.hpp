// The engine's scalar arithmetic, in the engine's order of operations: a result must equal what a script gets for the same numbers.
// Used by the math types, the templates and by every source that computes.
#ifndef GODOT_CPP_CORE_MATH_HPP
#define GODOT_CPP_CORE_MATH_HPP

#include <godot_cpp/core/math_defs.hpp>

#include <cmath>
#include <cstdint>
#include <type_traits>
#include <utility>

namespace godot {

template <typename A, typename B>
constexpr auto MIN(const A a, const B b) {
	return a < b ? a : b;
}

template <typename A, typename B>
constexpr auto MAX(const A a, const B b) {
	return a > b ? a : b;
}

template <typename T, typename L, typename H>
constexpr auto CLAMP(const T value, const L low, const H high) {
	return value < low ? low : (value > high ? high : value);
}

template <typename T>
constexpr T ABS(const T value) {
	return value < T(0) ? T(-value) : value;
}

template <typename T>
constexpr T SIGN(const T value) {
	return value > T(0) ? T(1) : (value < T(0) ? T(-1) : T(0));
}

template <typename T>
inline void SWAP(T &a, T &b) {
	T held = std::move(a);
	a = std::move(b);
	b = std::move(held);
}

// Powers of two round up: 0 stays 0, and a number that has no larger power wraps to 0.
template <typename T>
constexpr T next_power_of_2(T value) {
	if (value == 0) {
		return 0;
	}
	typename std::make_unsigned<T>::type bits = value;
	--bits;
	for (unsigned shift = 1; shift < sizeof(T) * 8; shift <<= 1) {
		bits |= bits >> shift;
	}
	return T(bits + 1);
}

namespace Math {

namespace detail {

// One type for all arguments: floats alone stay float, doubles alone double, and integers go along with either. There is none for floats beside
// doubles, nor for integers alone, where a float and a double overload would be equally good.
template <bool HAS_FLOAT, bool HAS_DOUBLE>
struct RealOf {};
template <>
struct RealOf<true, false> {
	using Type = float;
};
template <>
struct RealOf<false, true> {
	using Type = double;
};

template <typename... T>
using Real = typename RealOf<(std::is_same_v<T, float> || ...), (std::is_same_v<T, double> || ...)>::Type;

} // namespace detail

inline double sin(double x) {
	return std::sin(x);
}
inline float sin(float x) {
	return std::sin(x);
}
inline double cos(double x) {
	return std::cos(x);
}
inline float cos(float x) {
	return std::cos(x);
}
inline double tan(double x) {
	return std::tan(x);
}
inline float tan(float x) {
	return std::tan(x);
}
inline double sinh(double x) {
	return std::sinh(x);
}
inline float sinh(float x) {
	return std::sinh(x);
}
inline double cosh(double x) {
	return std::cosh(x);
}
inline float cosh(float x) {
	return std::cosh(x);
}
inline double tanh(double x) {
	return std::tanh(x);
}
inline float tanh(float x) {
	return std::tanh(x);
}

inline double sinc(double x) {
	return x == 0 ? 1 : sin(x) / x;
}
inline float sinc(float x) {
	return x == 0 ? 1 : sin(x) / x;
}
inline double sincn(double x) {
	return sinc(PI * x);
}
inline float sincn(float x) {
	return sinc(float(PI) * x);
}

// Outside their range the inverse functions answer with the nearest end, never NaN.
inline double asin(double x) {
	return x < -1 ? -PI / 2 : (x > 1 ? PI / 2 : std::asin(x));
}
inline float asin(float x) {
	return x < -1 ? float(-PI / 2) : (x > 1 ? float(PI / 2) : std::asin(x));
}
inline double acos(double x) {
	return x < -1 ? PI : (x > 1 ? 0 : std::acos(x));
}
inline float acos(float x) {
	return x < -1 ? float(PI) : (x > 1 ? 0 : std::acos(x));
}
inline double acosh(double x) {
	return x < 1 ? 0 : std::acosh(x);
}
inline float acosh(float x) {
	return x < 1 ? 0 : std::acosh(x);
}
inline double atanh(double x) {
	return x <= -1 ? -INF : (x >= 1 ? INF : std::atanh(x));
}
inline float atanh(float x) {
	return x <= -1 ? float(-INF) : (x >= 1 ? float(INF) : std::atanh(x));
}
inline double asinh(double x) {
	return std::asinh(x);
}
inline float asinh(float x) {
	return std::asinh(x);
}
inline double atan(double x) {
	return std::atan(x);
}
inline float atan(float x) {
	return std::atan(x);
}
inline double atan2(double y, double x) {
	return std::atan2(y, x);
}
inline float atan2(float y, float x) {
	return std::atan2(y, x);
}

inline double sqrt(double x) {
	return std::sqrt(x);
}
inline float sqrt(float x) {
	return std::sqrt(x);
}
inline double fmod(double x, double y) {
	return std::fmod(x, y);
}
inline float fmod(float x, float y) {
	return std::fmod(x, y);
}
inline double modf(double x, double *whole) {
	return std::modf(x, whole);
}
inline float modf(float x, float *whole) {
	return std::modf(x, whole);
}
inline double floor(double x) {
	return std::floor(x);
}
inline float floor(float x) {
	return std::floor(x);
}
inline double ceil(double x) {
	return std::ceil(x);
}
inline float ceil(float x) {
	return std::ceil(x);
}
inline double round(double x) {
	return std::round(x);
}
inline float round(float x) {
	return std::round(x);
}
inline double pow(double x, double y) {
	return std::pow(x, y);
}
inline float pow(float x, float y) {
	return std::pow(x, y);
}
inline double log(double x) {
	return std::log(x);
}
inline float log(float x) {
	return std::log(x);
}
inline double log1p(double x) {
	return std::log1p(x);
}
inline float log1p(float x) {
	return std::log1p(x);
}
inline double log2(double x) {
	return std::log2(x);
}
inline float log2(float x) {
	return std::log2(x);
}
inline double exp(double x) {
	return std::exp(x);
}
inline float exp(float x) {
	return std::exp(x);
}
inline bool is_nan(double x) {
	return std::isnan(x);
}
inline bool is_nan(float x) {
	return std::isnan(x);
}
inline bool is_inf(double x) {
	return std::isinf(x);
}
inline bool is_inf(float x) {
	return std::isinf(x);
}
inline bool is_finite(double x) {
	return std::isfinite(x);
}
inline bool is_finite(float x) {
	return std::isfinite(x);
}

inline double abs(double x) {
	return std::fabs(x);
}
inline float abs(float x) {
	return std::fabs(x);
}
constexpr int8_t abs(int8_t x) {
	return x > 0 ? x : int8_t(-x);
}
constexpr int16_t abs(int16_t x) {
	return x > 0 ? x : int16_t(-x);
}
inline int32_t abs(int32_t x) {
	return std::abs(x);
}
inline int64_t abs(int64_t x) {
	return x > 0 ? x : -x;
}

constexpr double sign(double x) {
	return SIGN(x);
}
constexpr float sign(float x) {
	return SIGN(x);
}

constexpr double deg_to_rad(double degrees) {
	return degrees * (PI / 180.0);
}
constexpr float deg_to_rad(float degrees) {
	return degrees * (float(PI) / 180.0f);
}
constexpr double rad_to_deg(double radians) {
	return radians * (180.0 / PI);
}
constexpr float rad_to_deg(float radians) {
	return radians * (180.0f / float(PI));
}

inline double linear_to_db(double linear) {
	return log(linear) * 8.6858896380650365530225783783321;
}
inline float linear_to_db(float linear) {
	return log(linear) * 8.6858896380650365530225783783321f;
}
inline double db_to_linear(double db) {
	return exp(db * 0.11512925464970228420089957273422);
}
inline float db_to_linear(float db) {
	return exp(db * 0.11512925464970228420089957273422f);
}

template <typename X, typename Y, typename R = detail::Real<X, Y>>
inline R fposmod(X x_value, Y y_value) {
	const R y = y_value;
	R rest = fmod(R(x_value), y);
	if ((rest < 0 && y > 0) || (rest > 0 && y < 0)) {
		rest += y;
	}
	// Turns a negative zero into a positive one.
	return rest + R(0);
}

// As fposmod, for a divisor that is known to be positive.
template <typename X, typename Y, typename R = detail::Real<X, Y>>
inline R fposmodp(X x, Y y) {
	R rest = fmod(R(x), R(y));
	if (rest < 0) {
		rest += y;
	}
	return rest + R(0);
}

int64_t posmod_by_zero();

inline int64_t posmod(int64_t x, int64_t y) {
	if (unlikely(y == 0)) {
		return posmod_by_zero();
	}
	// The smallest integer divided by -1 has no quotient, and the hardware traps on it.
	int64_t rest = y == -1 ? 0 : x % y;
	if ((rest < 0 && y > 0) || (rest > 0 && y < 0)) {
		rest += y;
	}
	return rest;
}

inline bool is_equal_approx(double a, double b, double tolerance) {
	return a == b || abs(a - b) < tolerance;
}
inline bool is_equal_approx(float a, float b, float tolerance) {
	return a == b || abs(a - b) < tolerance;
}
inline bool is_equal_approx(double a, double b) {
	return is_equal_approx(a, b, MAX(CMP_EPSILON * abs(a), CMP_EPSILON));
}
inline bool is_equal_approx(float a, float b) {
	return is_equal_approx(a, b, MAX(float(CMP_EPSILON) * abs(a), float(CMP_EPSILON)));
}
inline bool is_same(double a, double b) {
	return a == b || (is_nan(a) && is_nan(b));
}
inline bool is_same(float a, float b) {
	return a == b || (is_nan(a) && is_nan(b));
}
inline bool is_zero_approx(double x) {
	return abs(x) < CMP_EPSILON;
}
inline bool is_zero_approx(float x) {
	return abs(x) < float(CMP_EPSILON);
}

template <typename A, typename B, typename W, typename R = detail::Real<A, B, W>>
constexpr R lerp(A from, B to, W weight) {
	return R(from) + (R(to) - R(from)) * R(weight);
}

template <typename A, typename B, typename X, typename R = detail::Real<A, B, X>>
constexpr R inverse_lerp(A from, B to, X value) {
	return (R(value) - R(from)) / (R(to) - R(from));
}

template <typename V, typename A, typename B, typename C, typename D, typename R = detail::Real<V, A, B, C, D>>
constexpr R remap(V value, A from_start, B from_stop, C to_start, D to_stop) {
	return lerp(R(to_start), R(to_stop), inverse_lerp(R(from_start), R(from_stop), R(value)));
}

template <typename A, typename B, typename C, typename D, typename W, typename R = detail::Real<A, B, C, D, W>>
constexpr R cubic_interpolate(A from_value, B to_value, C pre_value, D post_value, W weight_value) {
	const R from = from_value, to = to_value, pre = pre_value, post = post_value, weight = weight_value;
	return R(0.5) *
			((from * R(2)) + (-pre + to) * weight + (R(2) * pre - R(5) * from + R(4) * to - post) * (weight * weight) +
					(-pre + R(3) * from - R(3) * to + post) * (weight * weight * weight));
}

// Times are relative to `from`; equal times would divide by zero, and fall back to a fixed share.
template <typename R>
inline R cubic_interpolate_in_time(R from, R to, R pre, R post, R weight, R to_t, R pre_t, R post_t) {
	const R t = lerp(R(0), to_t, weight);
	const R a1 = lerp(pre, from, pre_t == 0 ? R(0) : (t - pre_t) / -pre_t);
	const R a2 = lerp(from, to, to_t == 0 ? R(0.5) : t / to_t);
	const R a3 = lerp(to, post, post_t - to_t == 0 ? R(1) : (t - to_t) / (post_t - to_t));
	const R b1 = lerp(a1, a2, to_t - pre_t == 0 ? R(0) : (t - pre_t) / (to_t - pre_t));
	const R b2 = lerp(a2, a3, post_t == 0 ? R(1) : t / post_t);
	return lerp(b1, b2, to_t == 0 ? R(0.5) : t / to_t);
}

namespace detail {

// The angle congruent to `angle` that is nearest to `origin`.
template <typename R>
inline R near_angle(R angle, R origin) {
	const R turn = R(TAU);
	const R difference = fmod(angle - origin, turn);
	return origin + fmod(R(2) * difference, turn) - difference;
}

} // namespace detail

template <typename R>
inline R cubic_interpolate_angle(R from, R to, R pre, R post, R weight) {
	const R start = fmod(from, R(TAU));
	const R end = detail::near_angle(to, start);
	return cubic_interpolate(start, end, detail::near_angle(pre, start), detail::near_angle(post, end), weight);
}

template <typename R>
inline R cubic_interpolate_angle_in_time(R from, R to, R pre, R post, R weight, R to_t, R pre_t, R post_t) {
	const R start = fmod(from, R(TAU));
	const R end = detail::near_angle(to, start);
	return cubic_interpolate_in_time(start, end, detail::near_angle(pre, start), detail::near_angle(post, end), weight, to_t, pre_t, post_t);
}

template <typename R>
constexpr R bezier_interpolate(R start, R control_1, R control_2, R end, R t) {
	const R rest = R(1) - t;
	const R rest2 = rest * rest;
	const R rest3 = rest2 * rest;
	const R t2 = t * t;
	const R t3 = t2 * t;
	return start * rest3 + control_1 * rest2 * t * R(3) + control_2 * rest * t2 * R(3) + end * t3;
}

template <typename R>
constexpr R bezier_derivative(R start, R control_1, R control_2, R end, R t) {
	const R rest = R(1) - t;
	const R rest2 = rest * rest;
	const R t2 = t * t;
	return (control_1 - start) * R(3) * rest2 + (control_2 - control_1) * R(6) * rest * t + (end - control_2) * R(3) * t2;
}

template <typename A, typename B, typename R = detail::Real<A, B>>
inline R angle_difference(A from, B to) {
	const R difference = fmod(R(to) - R(from), R(TAU));
	return fmod(R(2) * difference, R(TAU)) - difference;
}

template <typename A, typename B, typename W, typename R = detail::Real<A, B, W>>
inline R lerp_angle(A from, B to, W weight) {
	return R(from) + angle_difference(R(from), R(to)) * R(weight);
}

template <typename A, typename B, typename X, typename R = detail::Real<A, B, X>>
inline R smoothstep(A from_value, B to_value, X value) {
	const R from = from_value, to = to_value, x = value;
	if (is_equal_approx(from, to)) {
		return from <= to ? (x <= from ? R(0) : R(1)) : (x <= to ? R(1) : R(0));
	}
	const R share = CLAMP((x - from) / (to - from), R(0), R(1));
	return share * share * (R(3) - R(2) * share);
}

template <typename A, typename B, typename D, typename R = detail::Real<A, B, D>>
inline R move_toward(A from_value, B to_value, D delta) {
	const R from = from_value, to = to_value;
	return abs(to - from) <= R(delta) ? to : from + SIGN(to - from) * R(delta);
}

// A negative delta turns away, and stops at the opposite angle.
template <typename A, typename B, typename D, typename R = detail::Real<A, B, D>>
inline R rotate_toward(A from, B to, D delta) {
	const R difference = angle_difference(R(from), R(to));
	const R distance = abs(difference);
	return R(from) + CLAMP(R(delta), distance - R(PI), distance) * (difference >= 0 ? R(1) : R(-1));
}

inline int64_t wrapi(int64_t value, int64_t min, int64_t max) {
	const int64_t range = max - min;
	return range == 0 ? min : min + ((((value - min) % range) + range) % range);
}

template <typename V, typename L, typename H, typename R = detail::Real<V, L, H>>
inline R wrapf(V value_given, L min_value, H max_value) {
	const R value = value_given, min = min_value, max = max_value;
	const R range = max - min;
	if (is_zero_approx(range)) {
		return min;
	}
	const R result = value - (range * floor((value - min) / range));
	return is_equal_approx(result, max) ? min : result;
}

inline double fract(double x) {
	return x - floor(x);
}
inline float fract(float x) {
	return x - floor(x);
}

template <typename V, typename L, typename R = detail::Real<V, L>>
inline R pingpong(V value_given, L length_given) {
	const R value = value_given, length = length_given;
	return length != 0 ? abs(fract((value - length) / (length * R(2))) * length * R(2) - length) : R(0);
}

inline double snapped(double value, double step) {
	return step != 0 ? floor(value / step + 0.5) * step : value;
}

inline int64_t snapped_int(double value, int64_t step) {
	return int64_t(snapped(value, double(step)));
}

double ease(double x, double curve);
int step_decimals(double step);
int range_step_decimals(double step);
inline float ease(float x, float curve) {
	return float(ease(double(x), double(curve)));
}

// Halves count away from zero.
inline int64_t fast_ftoi(float x) {
	return lrintf(x);
}

} // namespace Math

} // namespace godot

#endif // GODOT_CPP_CORE_MATH_HPP
