#pragma once

// Numbers that come out the same on every machine, to the last bit: a random generator of our own, and sine, cosine and logarithm
// made of nothing but what every processor rounds alike. To be included last, since what stands after it has to be worked out in
// the same way: where a multiplication is fused with an addition, as some processors do, the result is another.

#include <cmath>
#include <cstdint>

#if defined(__clang__)
#pragma clang fp contract(off)
#elif defined(__GNUC__)
#pragma GCC optimize("fp-contract=off")
#elif defined(_MSC_VER)
#pragma fp_contract(off)
#endif

namespace steady {

inline constexpr double TAU = 6.283185307179586;

// PCG32 with the XSH-RR output.
class Random {
	static constexpr uint64_t MULTIPLIER = 0x5851F42D4C957F2D;
	static constexpr uint64_t INCREMENT = 0x14057B7EF767814F;
	static constexpr uint64_t START = 0x1A08EE1184BA6D32;
	uint64_t state;

public:
	explicit Random(int64_t seed) : state(uint64_t(seed) * MULTIPLIER + START) {}
	uint32_t number() {
		const uint64_t before = state;
		state = before * MULTIPLIER + INCREMENT;
		const auto mixed = uint32_t((before ^ (before >> 18U)) >> 27U);
		const auto turn = uint32_t(before >> 59U);
		return (mixed >> turn) | (mixed << ((32U - turn) & 31U));
	}
	// From 0 up to but not 1.
	double share() { return double(number()) / 4294967296.0; }
};

struct SineCosine {
	double sine;
	double cosine;
};

// The largest whole number that is not above, for one that is within reach. Without a branch, which could not be foreseen.
inline int64_t whole_below(double number) {
	const auto towards_zero = int64_t(number);
	return towards_zero - int64_t(double(towards_zero) > number);
}

// 1, x, x² and so on for eight terms, in two halves that a processor works out side by side.
inline double eight_terms(double x, const double (&by)[8]) {
	const double square = x * x;
	const double even = ((by[6] * square + by[4]) * square + by[2]) * square + by[0];
	const double odd = ((by[7] * square + by[5]) * square + by[3]) * square + by[1];
	return odd * x + even;
}

// Both by their series, for the eighth of a turn nearest to 0 that the angle comes down to.
inline SineCosine sine_cosine(double angle) {
	// A quarter of a turn in two parts, of which the first is short enough to be multiplied without rounding.
	constexpr double QUARTER = 1.570796325802803;
	constexpr double QUARTER_REST = 9.920935796805404e-10;
	constexpr double QUARTERS = 1.0 / (QUARTER + QUARTER_REST);
	constexpr double FARTHEST = 1.0e6;
	// What the next power of the square is divided by: the product of all whole numbers up to it.
	constexpr double OF_SINE[] = { 1.0, -1.0 / 6.0, 1.0 / 120.0, -1.0 / 5040.0, 1.0 / 362880.0, -1.0 / 39916800.0, 1.0 / 6227020800.0, -1.0 / 1307674368000.0 };
	constexpr double OF_COSINE[] = { 1.0, -1.0 / 2.0, 1.0 / 24.0, -1.0 / 720.0, 1.0 / 40320.0, -1.0 / 3628800.0, 1.0 / 479001600.0, -1.0 / 87178291200.0 };
	const double near_angle = std::abs(angle) < FARTHEST ? angle : std::fmod(angle, TAU);
	const int64_t whole = whole_below(near_angle * QUARTERS + 0.5);
	const auto quarters = double(whole);
	const double rest = (near_angle - quarters * QUARTER) - quarters * QUARTER_REST;
	const double square = rest * rest;
	// Looked up, as nobody can foresee which quarter it is.
	constexpr double SIGN_OF_SINE[] = { 1.0, 1.0, -1.0, -1.0 };
	constexpr double SIGN_OF_COSINE[] = { 1.0, -1.0, -1.0, 1.0 };
	const double both[] = { eight_terms(square, OF_SINE) * rest, eight_terms(square, OF_COSINE) };
	const auto quarter = unsigned(whole & 3);
	return { both[quarter & 1U] * SIGN_OF_SINE[quarter], both[(quarter & 1U) ^ 1U] * SIGN_OF_COSINE[quarter] };
}

// The natural logarithm of a number above 0.
inline double logarithm(double number) {
	constexpr double OF_TWO = 0.6931471805599453;
	constexpr double HALF_ROOT = 0.7071067811865476;
	int exponent = 0;
	double part = std::frexp(number, &exponent);
	if (part < HALF_ROOT) {
		part *= 2.0;
		exponent--;
	}
	const double step = (part - 1.0) / (part + 1.0);
	const double square = step * step;
	double sum = 0.0;
	for (int n = 25; n > 0; n -= 2) {
		sum = sum * square + 1.0 / n;
	}
	return exponent * OF_TWO + 2.0 * step * sum;
}

} // namespace steady
