#include "kinds/physics/jump_arc.hpp"

#include "kinds/physics/move_character.hpp"

#include <godot_cpp/core/math.hpp>

namespace jump_arc {

namespace {

// Finer than anyone sees, over what a step of gravity and a hang around the top can miss by.
constexpr int TRIES = 200;
constexpr double STEPS_OF_GRAVITY = 2.0;
// A rise of more steps than this is exact enough as it is.
constexpr double MOST_STEPS = 600.0;

double the_top_of(const Pull &pull) {
	return pull.gravity * SCMoveCharacterAction::THE_TOP_LASTS;
}

bool hangs(const Pull &pull) {
	return pull.at_the_top > 0.0 && pull.at_the_top < 1.0 && pull.gravity > 0.0;
}

double rise_in_steps(double rising, const Pull &pull, double delta) {
	double rise = 0.0;
	for (;;) {
		rising -= pull.at(rising) * delta;
		if (!(rising > 0.0)) {
			return rise;
		}
		rise += rising * delta;
	}
}

} // namespace

double Pull::at(double rising) const {
	return hangs(*this) && Math::abs(rising) < the_top_of(*this) ? gravity * at_the_top : gravity;
}

double launch_speed(double height, const Pull &pull) {
	const double plain = 2.0 * pull.gravity * height;
	double squared = plain;
	if (hangs(pull)) {
		const double top = the_top_of(pull) * the_top_of(pull);
		squared = plain - (1.0 / pull.at_the_top - 1.0) * top;
		// All of it lies around the top.
		if (squared < top) {
			squared = pull.at_the_top * plain;
		}
	}
	return squared > 0.0 ? Math::sqrt(squared) : 0.0;
}

double speed_in_steps(double height, double rising, const Pull &pull, double delta) {
	const double slowest = hangs(pull) ? pull.gravity * pull.at_the_top : pull.gravity;
	if (!(delta > 0.0) || !(slowest > 0.0) || !(rising < MOST_STEPS * slowest * delta)) {
		return rising;
	}
	double best = rising;
	double missed = Math::abs(rise_in_steps(rising, pull, delta) - height);
	for (int i = 1; i <= TRIES; i++) {
		const double change = STEPS_OF_GRAVITY * pull.gravity * delta * i / TRIES;
		for (const double speed : { rising - change, rising + change }) {
			const double misses = Math::abs(rise_in_steps(speed, pull, delta) - height);
			if (misses < missed) {
				best = speed;
				missed = misses;
			}
		}
	}
	return best;
}

} // namespace jump_arc
