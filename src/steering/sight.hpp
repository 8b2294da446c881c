#pragma once

// The look of a Perception node: which of those it watches for is in its view. When it looks and what it makes of it is its
// script's business.

#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace sight {

// What the script hands over and what it finds there afterwards, in this order.
enum Row {
	BODY,
	RAY,
	RANGE,
	// The cosine of half the angle of its view; below -1 it sees all around.
	WIDEST,
	BLOCKED_BY,
	EYE_OFFSET,
	POINTS,
	// Whom it deals with already, who comes first.
	NOW,
	OTHERS,
	RAYS_LEFT,
	// Below zero to begin a look. Otherwise how many points of somebody have been tried, who that is among the others, below zero
	// the one it deals with, and what the ray to the last point hit.
	POINT,
	AT,
	HIT,
	// The answer: whom it sees, where and how far off, and how many rays that took. Where to cast the next one.
	SEEN,
	PLACE,
	DISTANCE,
	RAYS_CAST,
	SPACE,
	ROW_SIZE,
};

enum Answer {
	OVER,
	// Before it had looked at everybody.
	NO_RAYS_LEFT,
	// The script casts it, and calls again with what it hit. What the engine tells of a ray takes it an allocation, which is not to
	// be one of the library's.
	CAST_A_RAY,
	// It does not see whom it deals with. The script calls again with the others.
	WHO_ELSE,
};

Variant look(const Array &row);
void add_helpers();

} // namespace sight
