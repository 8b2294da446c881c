#pragma once

// How fast a body has to leave the ground to rise so high.

namespace jump_arc {

// What slows a rise down: gravity, and the share of it that is left around the top, which lengthens a jump when it is below 1.
struct Pull {
	double gravity = 0.0;
	double at_the_top = 1.0;

	// For the next step of a body that rises so fast.
	double at(double rising) const;
};

double launch_speed(double height, const Pull &pull);
// The speed nearest to `rising` with which steps of `delta` lift a body by so much.
double speed_in_steps(double height, double rising, const Pull &pull, double delta);

} // namespace jump_arc
