#include "kinds/tiles/grid_map.hpp"

#include "kinds/tiles/place_words.hpp"

void SCGridMapCellAction::describe(KindTable<Self> &kind) {
	kind.about("tiles", "grid_cell",
			"Change or look at one cell of a GridMap, Godot's 3D grid of pieces. Build a wall where the mouse points, blow one up, find out what the player "
			"stands on.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Change>();
	kind.constants_of<At>();
	kind.constants_of<Turn>();
	kind.setting<&Self::grid_path>("grid_path", "The GridMap. Empty is Self when that is one, and otherwise the first one of the scene.");
	kind.setting<&Self::change>("change", "Set puts a piece into the cell, Clear takes out what is in it, Get only looks.");
	kind.setting<&Self::at>("at",
			"Whose cell it is: the one that a node stands in, or that of the first piece under the mouse pointer, and of the grid's floor where there is "
			"none.");
	kind.setting<&Self::at_node_path>("at_node_path", place_words::AT_NODE_DOC).only_if<&Self::at, A_NODE>();
	kind.setting<&Self::cell_offset>("cell_offset", "How many cells further it works, such as (0, -1, 0) for the one below. The cells are those of the grid.");
	kind.setting<&Self::piece>("piece", { PROPERTY_HINT_RANGE, "0,64,1,or_greater,hide_slider" }, "Which piece, by its number in the grid's mesh library.")
			.only_if<&Self::change, SET>();
	kind.setting<&Self::turn>("turn", "How far the piece is turned about the grid's upright axis, in degrees.").only_if<&Self::change, SET>();
	kind.setting<&Self::store_name_in>(
				"store_name_in", "The variable that the name of the piece goes into, as the mesh library has it. It becomes an empty text where there is none.")
			.optional()
			.only_if<&Self::change, GET>();
	kind.setting<&Self::store_has_piece_in>("store_has_piece_in", "The variable that becomes true where there is a piece, and false where there is none.")
			.optional()
			.only_if<&Self::change, GET>();
	kind.setting<&Self::found_event>("found_event", "Sent when there is a piece. Empty sends nothing.").optional().only_if<&Self::change, GET>();
	kind.setting<&Self::empty_event>("empty_event", "Sent when there is none. Empty sends nothing.").optional().only_if<&Self::change, GET>();
}

String SCGridMapCellAction::summary_default() {
	const String where = place_words::under(at == THE_MOUSE, at_node_path);
	switch (change) {
		case CLEAR:
			return vformat("Clear the grid cell%s", where);
		case GET:
			return vformat("Get the grid cell%s", where);
		case SET:
			break;
	}
	return vformat("Set item %d in the grid cell%s", piece, where);
}
