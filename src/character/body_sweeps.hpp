#pragma once

// Where a character body could go from here, asked without moving it. Only within the tree.

#include "character/body_sides.hpp"

namespace sweeps {

template <class Vector>
struct Sweep {
	bool is_blocked = false;
	// How far it gets. The rest is zero unless something is in the way.
	Vector travel;
	Vector normal;
	Vector point;
};

// From where it is, or from `offset` away from there.
Sweep<Vector2> sweep(CharacterBody2D *body, const Vector2 &offset, const Vector2 &motion);
Sweep<Vector3> sweep(CharacterBody3D *body, const Vector3 &offset, const Vector3 &motion);

// Whether it may stand on what faces that way.
bool is_floor(const CharacterBody2D *body, const Vector2 &normal);
bool is_floor(const CharacterBody3D *body, const Vector3 &normal);

} // namespace sweeps
