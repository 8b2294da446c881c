#pragma once

// What pulls a body down: a number of its own, or the project's, times the scale that the body carries.

#include <godot_cpp/classes/node.hpp>

using namespace godot;

namespace gravity {

// Below this an own gravity counts as none.
inline constexpr double LEAST = 0.00001;

// `own` if it is any, else the project's for bodies of that side; in metres a second each second in 3D, in pixels in 2D.
double of(const Node *body, double own);
// The same times the body's scale.
double scaled(const Node *body, double own);
// For an editor that reloads the library.
void forget_project();

} // namespace gravity
