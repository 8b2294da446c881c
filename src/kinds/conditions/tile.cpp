#include "kinds/conditions/tile.hpp"

#include "action/comparing.hpp"
#include "action/words.hpp"

void SCTileCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "tile", "Ask about the tile at a place. Is there ground ahead, does the player stand on ice, is that door locked?");
	kind.constants_of<Test>();
	kind.setting<&Self::layer_path>(
			"layer_path", "The TileMapLayer. Empty is Self when that is one, and otherwise the first layer of the scene that has a tile set.");
	kind.setting<&Self::at_node_path>("at_node_path", "The node whose cell is asked about. Empty is Self.");
	kind.setting<&Self::cell_offset>("cell_offset", "How many cells further it looks, such as (0, 1) for the one below or (1, 0) for the one to the right.");
	kind.setting<&Self::test>("test",
			"There Is A Tile needs no more than a tile. The others compare what the tile carries as custom data with the value; where there is no tile, the "
			"answer is no.");
	kind.setting<&Self::data_name>("data_name", "The custom data of the tile set to ask about, such as ground or locked.")
			.unless<&Self::test, THERE_IS_A_TILE>();
	kind.setting<&Self::value>("value", "What it is compared with. Greater and Less work on numbers, and on texts by the alphabet.")
			.unless<&Self::test, THERE_IS_A_TILE, IS_TRUE, IS_FALSE>();
}

String SCTileCondition::summary_default() {
	const String where = at_node_path.is_empty() ? String("under it") : vformat("under %s", words::name_in_line(at_node_path));
	if (test == THERE_IS_A_TILE) {
		return vformat("there is a tile %s", where);
	}
	return vformat("the %s of the tile %s %s", data_name, where, comparing::in_words(comparing::Test(int(test) - int(EQUALS)), value));
}
