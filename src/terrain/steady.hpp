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

// Both by their series, for the eighth of a turn nearest to 0 that the angle comes down to.
inline SineCosine sine_cosine(double angle) {
	// A quarter of a turn in two parts, of which the first is short enough to be multiplied without rounding.
	constexpr double QUARTER = 1.570796325802803;
	constexpr double QUARTER_REST = 9.920935796805404e-10;
	constexpr double FARTHEST = 1.0e6;
	const double near_angle = std::abs(angle) < FARTHEST ? angle : std::fmod(angle, TAU);
	const double quarters = std::floor(near_angle / (QUARTER + QUARTER_REST) + 0.5);
	const double rest = (near_angle - quarters * QUARTER) - quarters * QUARTER_REST;
	const double square = rest * rest;
	double sine = 1.0;
	double cosine = 1.0;
	for (int n = 17; n > 1; n -= 2) {
		sine = 1.0 - square / (n * (n - 1)) * sine;
		cosine = 1.0 - square / ((n - 1) * (n - 2)) * cosine;
	}
	sine *= rest;
	switch (int64_t(quarters) & 3) {
		case 0:
			return { sine, cosine };
		case 1:
			return { cosine, -sine };
		case 2:
			return { -sine, -cosine };
		default:
			return { -cosine, sine };
	}
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
	double sum = 0.0;
	for (int n = 25; n > 0; n -= 2) {
		sum = sum * step * step + 1.0 / n;
	}
	return exponent * OF_TWO + 2.0 * step * sum;
}

} // namespace steady
