#pragma once

// What the player wants of a vehicle, and what becomes of its speed by that. Nothing here knows of 2D or 3D.

#include "action/shared_verbs.hpp"
#include "kinds/physics/drive.hpp"

namespace drive_speed {

struct Wish {
	// From -1 for all the way back, or left, to 1.
	double throttle = 0.0;
	double steer = 0.0;
	bool handbrake = false;
};

Wish wish_of(const SCDriveAction *kind);
// How fast it may go that way.
double most(const SCDriveAction *kind, bool backward);
double next(const SCDriveAction *kind, const Wish &wish, double speed, double delta);
bool brakes(const Wish &wish, double speed);
// In radians for this step, to the right. None standing still.
double turned(const SCDriveAction *kind, const Wish &wish, double speed, double delta);
// The share of its steering that is left at that speed.
double steering_left(const SCDriveAction *kind, double speed);
// A number that is none counts as nothing.
double sound(double number);

} // namespace drive_speed
