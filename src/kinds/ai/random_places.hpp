#pragma once

// Places to stroll to: near a spot, where a walker can get.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace random_places {

// No farther from `home` than `radius`, on the navigation mesh if there is one, and level with `home` for a body that walks on a
// line. Nil without a home or for a body without a place.
Variant near(Node *body, const Variant &home, double radius, bool on_a_line);
// Whether there is anything to walk on in the navigation map of the body's world.
bool has_mesh(const Node *body);

} // namespace random_places
