#include <godot_cpp/core/math.hpp>

#include <godot_cpp/core/error_macros.hpp>

namespace godot {
namespace Math {

int64_t posmod_by_zero() {
	ERR_FAIL_V_MSG(0, "Division by zero in posmod is undefined. Returning 0 as fallback.");
}

double ease(double x, double curve) {
	x = CLAMP(x, 0.0, 1.0);
	if (curve > 0) {
		return curve < 1 ? 1.0 - pow(1.0 - x, 1.0 / curve) : pow(x, curve);
	}
	if (curve < 0) {
		// In-out: the curve twice at half size, the second time turned around.
		return x < 0.5 ? pow(x * 2.0, -curve) * 0.5 : (1.0 - pow(1.0 - (x - 0.5) * 2.0, -curve)) * 0.5 + 0.5;
	}
	return 0;
}

int step_decimals(double step) {
	static const double SMALLEST[] = { 0.9999, 0.09999, 0.009999, 0.0009999, 0.00009999, 0.000009999, 0.0000009999, 0.00000009999, 0.000000009999,
		0.0000000009999 };
	const double part = abs(step) - double(int64_t(abs(step)));
	for (int i = 0; i < 10; i++) {
		if (part >= SMALLEST[i]) {
			return i;
		}
	}
	return 0;
}

int range_step_decimals(double step) {
	// A range without steps shows whatever digits there are.
	return step < 0.0000000000001 ? 16 : step_decimals(step);
}

} // namespace Math
} // namespace godot
