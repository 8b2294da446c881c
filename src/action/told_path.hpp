#pragma once

// How a warning names a node path that leads to nothing.

#include "action/action_shared.hpp"
#include "action/words.hpp"

namespace words {

// As it was typed in; an empty one is Self.
inline String told_path(const NodePath &path) {
	return path.is_empty() || path == ActionShared::get().no_node ? name_in_line(path) : String(path);
}

} // namespace words
