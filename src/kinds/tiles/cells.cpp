#include "kinds/tiles/cells.hpp"

#include "kinds/tiles/place_words.hpp"

void SCGetCellAction::describe(KindTable<Self> &kind) {
	kind.about("tiles", "get_tile",
			"Ask a tile map what is at a place. Is the ground here ice, lava or grass, is there a wall to the right, what did the player just click on? What a "
			"tile is like is written into the tile set, under Custom Data Layers.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<At>();
	kind.setting<&Self::layer_path>("layer_path", place_words::LAYER_DOC);
	kind.setting<&Self::at>("at", place_words::AT_DOC);
	kind.setting<&Self::at_node_path>("at_node_path", place_words::AT_NODE_DOC).only_if<&Self::at, A_NODE>();
	kind.setting<&Self::cell_offset>(
			"cell_offset", "How many cells further it looks, such as (0, 1) for the one below. The cells are those of the map, however big they are.");
	kind.setting<&Self::data_name>("data_name", "The custom data of the tile set that goes into Store In, such as ground. Empty asks for none.").optional();
	kind.setting<&Self::store_in>("store_in", "The variable that the tile's custom data goes into. It stays as it is where there is no tile.")
			.optional_if<&Self::asks_for_no_data>();
	kind.setting<&Self::store_has_tile_in>("store_has_tile_in", "The variable that becomes true where there is a tile, and false where there is none.")
			.optional();
	kind.setting<&Self::store_cell_in>("store_cell_in", "The variable that the cell goes into, as a Vector2i counted in cells.").optional();
	kind.setting<&Self::found_event>("found_event", "Sent when there is a tile. Empty sends nothing.").optional();
	kind.setting<&Self::empty_event>("empty_event", "Sent when there is none. Empty sends nothing.").optional();
}

bool SCGetCellAction::asks_for_no_data() const {
	return data_name.is_empty();
}

String SCGetCellAction::summary_default() {
	if (!data_name.is_empty()) {
		return vformat("%s = the %s of the tile%s", store_in, data_name, place_words::under(at == THE_MOUSE, at_node_path));
	}
	const String where = place_words::under(at == THE_MOUSE, at_node_path).strip_edges();
	return vformat("Look at the tile %s", where.is_empty() ? String("under it") : where);
}

void SCSetCellAction::describe(KindTable<Self> &kind) {
	kind.about("tiles", "set_tile",
			"Change the map while the game runs. Dig out a block, open a door made of tiles, leave burnt ground behind, build with the mouse. The edges of the "
			"tiles around it stay as they are: Paint Terrain looks after those.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<At>();
	kind.setting<&Self::layer_path>("layer_path", place_words::LAYER_DOC);
	kind.setting<&Self::at>("at", place_words::AT_DOC);
	kind.setting<&Self::at_node_path>("at_node_path", place_words::AT_NODE_DOC).only_if<&Self::at, A_NODE>();
	kind.setting<&Self::cell_offset>("cell_offset", "How many cells further it works, such as (0, 1) for the one below.");
	kind.setting<&Self::erase>("erase", "Take away the tile that is there instead of putting one down.");
	kind.setting<&Self::source>("source", { PROPERTY_HINT_RANGE, "0,16,1,or_greater,hide_slider" },
				"Which sheet or collection of the tile set the tile is from, by the number that the tile set lists it under.")
			.unless<&Self::erase>();
	kind.setting<&Self::tile_in_the_sheet>(
				"tile_in_the_sheet", "Which tile of that sheet: its column and its row, counted from 0. It stays (0, 0) for a collection of scenes.")
			.unless<&Self::erase>();
	kind.setting<&Self::alternative>("alternative", { PROPERTY_HINT_RANGE, "0,16,1,or_greater,hide_slider" },
				"Which alternative of the tile, such as a turned or a tinted one. 0 is the tile itself. Of a collection of scenes it is the scene's number.")
			.unless<&Self::erase>();
}

String SCSetCellAction::summary_default() {
	const String where = place_words::under(at == THE_MOUSE, at_node_path);
	if (erase) {
		return vformat("Take the tile away%s", where);
	}
	return vformat("Put tile %d, %d down%s", tile_in_the_sheet.x, tile_in_the_sheet.y, where);
}
