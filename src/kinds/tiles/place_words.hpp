#pragma once

// What the kinds of this category say of the cell they work on.

#include "action/words.hpp"

namespace place_words {

inline constexpr char LAYER_DOC[] = "The TileMapLayer. Empty is Self when that is one, and otherwise the first layer of the scene that has a tile set.";
inline constexpr char AT_DOC[] = "Whose cell it is: the one that a node stands in, or the one under the mouse pointer.";
inline constexpr char AT_NODE_DOC[] = "The node whose cell it is. Empty is Self.";

// " under Hero": nothing for the cell that Self stands in.
inline String under(bool mouse, const NodePath &node_path) {
	if (mouse) {
		return " under the mouse";
	}
	return node_path.is_empty() ? String() : vformat(" under %s", words::name_in_line(node_path));
}

} // namespace place_words
