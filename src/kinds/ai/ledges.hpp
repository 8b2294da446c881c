#pragma once

// Whether a walker is about to step off the floor it walks on.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace ledges {

// Asked of a character body that falls and stands on the floor; no for any other. A step down that it can take is none.
bool is_ahead(Node *body, const Variant &goal);

} // namespace ledges
