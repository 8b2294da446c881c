#pragma once

// How things lie to each other on the ground that characters walk on, and which bodies are no more than a place on it.

#include "character/body_sides.hpp"

#include <godot_cpp/variant/variant.hpp>

namespace ground {

// Without height between two nodes in 3D. Endless for a node without a place.
double distance(const Node *from, const Node *to);
// Of length 1, or 0 for none: along x alone for a 2D body that falls, without height in 3D.
Vector2 toward(const CharacterBody2D *body, const Variant &place, bool falls);
Vector3 toward(const CharacterBody3D *body, const Variant &place, bool falls);
// Moved by its position alone: neither a physics body nor one with a navigation agent.
bool is_plain(const Node *body);

} // namespace ground
