#include "kinds/tiles/terrain.hpp"

#include "kinds/tiles/place_words.hpp"

namespace {

constexpr Hint NUMBER = { PROPERTY_HINT_RANGE, "0,16,1,or_greater,hide_slider" };

} // namespace

void SCPaintTerrainAction::describe(KindTable<Self> &kind) {
	kind.about("tiles", "paint_terrain",
			"Paint the map with a terrain while the game runs, and let the edges look after themselves. A path trodden into the grass, water that spreads, "
			"tunnels dug into the rock. The terrains are those of the tile set, under Terrain Sets.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<At>();
	kind.constants_of<Mode>();
	kind.setting<&Self::layer_path>("layer_path", place_words::LAYER_DOC);
	kind.setting<&Self::at>(
			"at", "What is painted: the cell that a node stands in, the one under the mouse pointer, one that is written down, or a list of them.");
	kind.setting<&Self::at_node_path>("at_node_path", place_words::AT_NODE_DOC).only_if<&Self::at, A_NODE>();
	kind.setting<&Self::cell_offset>("cell_offset", "How many cells further it paints, such as (0, 1) for the one below.")
			.only_if<&Self::at, A_NODE, THE_MOUSE>();
	kind.setting<&Self::cell>("cell", "The cell, counted in cells of the map.").only_if<&Self::at, A_CELL>();
	kind.setting<&Self::cells>("cells",
				"The cells, all painted in one go. Each is a Vector2i, a text such as 3, 4 or a node that stands in it. Press Var to take the list from a "
				"variable, such as the one that Grid Path fills.")
			.only_if<&Self::at, CELLS>();
	kind.setting<&Self::mode>("mode",
				"Connect joins what is painted to every neighbour of the same terrain. Path joins each cell of the list to the next one alone, so that two "
				"roads can run side by side.")
			.unless<&Self::erase>();
	kind.setting<&Self::terrain_set>("terrain_set", NUMBER, "Which terrain set of the tile set, counted from 0.");
	kind.setting<&Self::terrain>("terrain", NUMBER, "Which terrain of that set, counted from 0.").unless<&Self::erase>();
	kind.setting<&Self::erase>("erase", "Take the terrain away there, and let what is around it close its edges.");
}

String SCPaintTerrainAction::summary_default() {
	if (at == CELLS && cells.is_empty() && !from_variables.has(StringName("cells"))) {
		return "Pick the cells to paint";
	}
	String line = erase ? String("Dig out the terrain") : vformat("Paint terrain %d", terrain);
	if (terrain_set != 0) {
		line += vformat(" of set %d", terrain_set);
	}
	if (!layer_path.is_empty()) {
		line += vformat(" on %s", words::name_in_line(layer_path));
	}
	switch (at) {
		case A_CELL:
			return line + vformat(" at cell %d, %d", cell.x, cell.y);
		case CELLS:
			return line + vformat(mode == PATH && !erase ? " along a path of %d cells" : " on %d cells", cells.size());
		case THE_MOUSE:
			return line + " at the mouse";
		case A_NODE:
			break;
	}
	return line + vformat(" at %s", words::name_in_line(at_node_path));
}
