#pragma once

// Who of a crowd stands near whom. The whole crowd is read once in a physics frame and laid into cells as wide as the space each
// wants, so that each member looks at the cells about it alone.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/vector2.hpp>

using namespace godot;

namespace crowd_grid {

// The way out of the crowd for one that may be a member: from each neighbour nearer than `space` it is led straight away, by 1 when
// they all but touch and by nothing at the edge of that space. In 3D y stands for z. `on_a_line` for those who walk along x.
Vector2 way_out(const Node *member, const StringName &group, double space, bool on_a_line);

} // namespace crowd_grid
