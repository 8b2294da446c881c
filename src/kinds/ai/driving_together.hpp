#pragma once

// Several kinds may each want one body to go at a speed of their own along a direction of their own, in the same frame. Each sets
// that part of the body's velocity alone.

#include "character/body_sides.hpp"

namespace driving_together {

// `direction` has the length 1, or 0 for nothing to set. Downward speed is left to gravity where it is told so.
void drive(CharacterBody2D *body, const Vector2 &direction, double speed, bool falls);
void drive(CharacterBody3D *body, const Vector3 &direction, double speed, bool falls);

} // namespace driving_together
