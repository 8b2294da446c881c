#include "kinds/navmesh/grid_path.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCGridPathAction::describe(KindTable<Self> &kind) {
	kind.about("navmesh", "grid_path",
			"Find the shortest way across a grid of tiles, going round the walls, and walk it cell by cell, like a unit in a tactics game crossing the board, "
			"a "
			"piece in a puzzle, a mouse in a maze or a monster in a dungeon of tiles.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.constants_of<To>();
	kind.constants_of<Solid>();
	kind.constants_of<DiagonalMode>();
	kind.setting<&Self::layer_path>(
			"layer_path", "The TileMapLayer to cross. Empty is Self when that is one, and otherwise the first layer of the scene that has a tile set.");
	kind.setting<&Self::node_path>("node_path", "Who walks, a 2D node. The way begins at the cell it stands in. Empty is Self.");
	kind.setting<&Self::to>("to", "Where it leads: to a cell that is written down, to the cell a node stands in, or to the one under the mouse pointer.");
	kind.setting<&Self::to_cell>("to_cell", "The cell, counted in cells of the map.").only_if<&Self::to, A_CELL>();
	kind.setting<&Self::to_node_path>("to_node_path", "The 2D node to whose cell it goes, as that stands when the search begins.").only_if<&Self::to, A_NODE>();
	kind.setting<&Self::solid>("solid",
			"What is a wall: tiles that have a collision shape, tiles whose custom data says so, any tile, or the cells without one. In the first two a cell "
			"without a tile is off the map, and nobody walks there.");
	kind.setting<&Self::data_name>("data_name", "The custom data of the tile set that is true on a wall.").only_if<&Self::solid, CUSTOM_DATA>();
	kind.setting<&Self::solid_cells_variable>("solid_cells_variable",
				"A variable with a list of further cells that are in the way: Vector2i cells, or nodes that stand in them, such as the other units.")
			.optional();
	kind.setting<&Self::diagonal_mode>(
			"diagonal_mode", "Whether it may go from corner to corner: always, never, past at most one wall, or only where both cells beside it are free.");
	kind.setting<&Self::move_along>("move_along", "Walk the way once it is found. Off, the way is only looked for.");
	kind.setting<&Self::cells_per_second>("cells_per_second", { PROPERTY_HINT_RANGE, "0,20,0.1,or_greater,hide_slider" },
				"How many cells it walks in a second. Zero puts it at the end at once.")
			.only_if<&Self::move_along>();
	kind.setting<&Self::store_path_in>("store_path_in",
				"The variable that the way goes into, as a list of Vector2i cells from the first to the last. It becomes empty where there is none.")
			.optional_if<&Self::move_along>();
	kind.setting<&Self::no_path_event>("no_path_event", "Sent when there is no way. Empty sends nothing.").optional();
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "layer", "from", "goal");
	kind.warns<&Self::warn_blocked>("_warn_blocked", "m", "index", "list");
}

bool SCGridPathAction::finishes_as_it_starts_default() {
	return !move_along || cells_per_second <= 0.0;
}

String SCGridPathAction::summary_default() {
	String goal = "the cell under the mouse";
	if (to == A_CELL) {
		goal = vformat("cell %s", to_cell);
	} else if (to == A_NODE) {
		goal = vformat("%s's cell", words::name_in_line(to_node_path, "Self", "(pick one)"));
	}
	const String walker = words::name_in_line(node_path);
	if (move_along) {
		return vformat("Walk %sto %s on the grid", node_path.is_empty() ? String() : vformat("%s ", walker), goal);
	}
	const String from = node_path.is_empty() ? String() : vformat(" from %s", walker);
	return vformat("Find a grid path%s to %s, into %s", from, goal, store_path_in);
}

void SCGridPathAction::warn(SCMachineBase *machine, int64_t, int64_t what, Node *layer, const Vector2i &from, const Vector2i &goal) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	const String map = layer != nullptr ? String(layer->get_name()) : String("the map");
	const auto say = [&](const String &sentence) { verbs::warn_whole(machine, this, int(what), sentence); };
	const auto no_way = [&](const char *why) {
		say(vformat("Grid Path on %s: there is no way from cell %s to cell %s on %s: %s.", name, from, goal, map, why));
	};
	switch (what) {
		case NO_LAYER:
			say(vformat("Grid Path on %s: there is no TileMapLayer with a tile set here to find a way across. Pick one under Layer.", name));
			break;
		case NO_GRID:
			say(vformat("Grid Path on %s: %s's tiles are not laid out in rows and columns (square, or diamonds laid out Diamond Right or Diamond Down), so its "
						"cells do not join up the way a grid does. Set its tile set's Tile Shape or Tile Layout.",
					name, map));
			break;
		case NO_GOAL:
			say(vformat("Grid Path on %s: there is no 2D node to go to. Pick one under To Node.", name));
			break;
		case NO_CUSTOM_DATA: {
			const String lacks = data_name.is_empty() ? String("Data Name is empty") : vformat("%s's tile set has no custom data called %s", map, data_name);
			say(vformat(
					"Grid Path on %s: Solid is Custom Data, and %s, so it cannot tell a wall from a floor. Set Data Name to the tile set's custom data that is "
					"true on a wall.",
					name, lacks));
			break;
		}
		case NO_WAY:
			no_way("set No Path Event to hear of it and choose what to do instead");
			break;
		case NO_WAY_OUT_OF_A_WALL:
			no_way("the cell it stands on counts as a wall, so check Solid is right for this layer");
			break;
		default:
			break;
	}
}

void SCGridPathAction::warn_blocked(SCMachineBase *machine, int64_t, const Variant &list) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, this, -1,
				vformat("Grid Path on %s: %s holds %s, not a list of cells, so it blocks nothing. Give it an Array, or empty Solid Cells Variable.",
						machine->name_in_messages(), solid_cells_variable, values::kind_in_words(list)));
	}
}
