#include "kinds/physics/drive_speed.hpp"

#include "action/input_words.hpp"

namespace drive_speed {

namespace {

constexpr double BACKWARD = 0.5;
// The share of Acceleration that it loses in each second when it just rolls.
constexpr double ROLLS_OUT = 0.5;
// From this share of Top Speed on it turns as it is told; slower, it turns less.
constexpr double TURNS_FROM = 0.1;
constexpr double LEAST_WISH = 0.01;

double strength(const StringName &input) {
	return input.is_empty() ? 0.0 : CLAMP(input_words::strength(input), 0.0, 1.0);
}

} // namespace

double sound(double number) {
	return Math::is_finite(number) ? number : 0.0;
}

Wish wish_of(const SCDriveAction *kind) {
	Wish wish;
	wish.throttle = strength(kind->accelerate_input) - strength(kind->reverse_input);
	wish.steer = CLAMP(strength(kind->right_input) - strength(kind->left_input) + sound(kind->pull), -1.0, 1.0);
	wish.handbrake = !kind->handbrake_input.is_empty() && input_words::is_held(kind->handbrake_input);
	return wish;
}

double most(const SCDriveAction *kind, bool backward) {
	const double top = MAX(sound(kind->top_speed), 0.0);
	return backward ? top * BACKWARD : top;
}

bool brakes(const Wish &wish, double speed) {
	return wish.throttle * speed < 0.0 || (wish.handbrake && Math::abs(wish.throttle) < LEAST_WISH);
}

double next(const SCDriveAction *kind, const Wish &wish, double speed, double delta) {
	const double gain = MAX(sound(kind->acceleration), 0.0) * delta;
	if (brakes(wish, speed)) {
		const double pressed = wish.handbrake ? 1.0 : Math::abs(wish.throttle);
		return Math::move_toward(speed, 0.0, gain * MAX(sound(kind->brake_strength), 0.0) * pressed);
	}
	if (Math::abs(wish.throttle) < LEAST_WISH) {
		return Math::move_toward(speed, 0.0, gain * ROLLS_OUT);
	}
	return Math::move_toward(speed, wish.throttle * most(kind, wish.throttle < 0.0), gain);
}

double steering_left(const SCDriveAction *kind, double speed) {
	const double top = most(kind, false);
	const double share = top > 0.0 ? CLAMP(Math::abs(speed) / top, 0.0, 1.0) : 0.0;
	return Math::lerp(1.0, MAX(sound(kind->turn_at_top_speed), 0.0), share);
}

double turned(const SCDriveAction *kind, const Wish &wish, double speed, double delta) {
	const double top = most(kind, false);
	if (top <= 0.0) {
		return 0.0;
	}
	const double underway = CLAMP(speed / (top * TURNS_FROM), -1.0, 1.0);
	const double sharper = wish.handbrake ? MAX(sound(kind->handbrake_turn), 0.0) : 1.0;
	return Math::deg_to_rad(sound(kind->turn_speed)) * wish.steer * underway * steering_left(kind, speed) * sharper * delta;
}

} // namespace drive_speed
