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
	// The answer: whom it sees, how far off, and how many rays that took.
	SEEN,
	DISTANCE,
	RAYS_CAST,
	ROW_SIZE,
};

// False when the rays ran out before it had looked at everybody.
Variant look(const Array &row);
void add_helpers();

} // namespace sight
