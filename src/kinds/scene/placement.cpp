#include "kinds/scene/placement.hpp"

#include "action/shared_verbs.hpp"
#include "machine/companion_scripts.hpp"

namespace {

String scene_in_line(const String &path) {
	return words::picked(path.get_file().get_basename());
}

} // namespace

void SCProceduralPlacementAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "procedural_placement",
			"Put many copies of a scene over an area at once, such as trees in a forest, rocks on a hillside, grass tufts, crates in a warehouse or enemies "
			"across an arena.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<Layout>();
	kind.constants_of<By>();
	kind.setting<&Self::scene_path>("scene_path", { PROPERTY_HINT_FILE_PATH, "*.tscn,*.scn" }, "The file of the scene to put down.");
	kind.setting<&Self::area_path>("area_path",
			"The collision shape that marks out the area, or a node with one below it. Empty is Self. In 3D everything stands at the height of the shape's "
			"middle.");
	kind.setting<&Self::parent_path>("parent_path", "The node that they are added under. Empty is the scene being played.");
	kind.setting<&Self::layout>("layout", "Scatter puts them anywhere in the area, Grid in rows and columns.");
	kind.setting<&Self::count>("count", { PROPERTY_HINT_RANGE, "0,100,1,or_greater,hide_slider" }, "How many to put down, 5000 at most.")
			.only_if<&Self::layout, SCATTER>();
	kind.setting<&Self::cell_size>(
				"cell_size", { PROPERTY_HINT_RANGE, "0.01,100,0.01,or_greater,hide_slider" }, "How far they are apart, in metres in 3D and pixels in 2D.")
			.px_in_2d()
			.only_if<&Self::layout, GRID>();
	kind.setting<&Self::jitter>("jitter", { PROPERTY_HINT_RANGE, "0,1,0.01,hide_slider" },
				"How far each may be off the middle of its cell, so that the rows do not show. Zero is straight rows, and 1 puts it anywhere in its cell.")
			.only_if<&Self::layout, GRID>();
	kind.setting<&Self::by>("by", "Chance spreads them evenly. Noise leaves clearings and gathers them in clumps.");
	kind.setting<&Self::chance>("chance", { PROPERTY_HINT_RANGE, "0,1,0.01,hide_slider" }, "The share of cells that get one: 0.5 leaves half of them empty.")
			.only_if<&Self::layout, GRID>()
			.only_if<&Self::by, CHANCE>();
	kind.setting<&Self::frequency>("frequency", { PROPERTY_HINT_RANGE, "0.001,1,0.001,or_greater,hide_slider" },
				"How close together the clumps lie. Twice as much makes them half as big.")
			.in_2d(0.004)
			.only_if<&Self::by, NOISE>();
	kind.setting<&Self::threshold>("threshold", { PROPERTY_HINT_RANGE, "-1,1,0.01,hide_slider" },
				"How much of the area stays empty. Zero is about half of it, and the clumps get smaller toward 1 and grow together toward -1.")
			.only_if<&Self::by, NOISE>();
	kind.setting<&Self::random_rotation>("random_rotation", "Turn each of them a random way.");
	kind.setting<&Self::placement_seed>(
			"placement_seed", "The same seed puts them in the same places every time. Zero picks another one each time that the state is entered.");
	kind.setting<&Self::store_seed_in>("store_seed_in", "Keep the seed that was used in this variable, so that the same places can be had again.").optional();
	kind.setting<&Self::clear_first>("clear_first", "Take away the copies of this scene that were put under the same parent before.");
	kind.warns<&Self::warn_placement>("_warn_placement", "m", "index", "code", "a", "b", "most");
}

String SCProceduralPlacementAction::summary_default() {
	const String scene = scene_in_line(scene_path);
	const String area = words::name_in_line(area_path);
	const String clumps = by == NOISE ? " in clumps" : "";
	if (layout != GRID) {
		return vformat("Scatter %d %s over %s%s", count, scene, area, clumps);
	}
	const String chances = by == CHANCE && chance < 1.0 ? vformat(", %d%% chance each", Math::round(chance * 100.0)) : String();
	return vformat("Fill %s with %s, %s apart%s%s", area, scene, words::number(cell_size), clumps, chances);
}

void SCProceduralPlacementAction::warn_placement(SCMachineBase *machine, int64_t, int64_t code, const Variant &a, const Variant &b, int64_t most) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	switch (code) {
		case NO_SCENE:
			verbs::warn_whole(
					machine, this, NO_SCENE, vformat("Procedural Placement on %s: %s, so nothing is placed. Pick the scene under Scene Path.", name, a));
			break;
		case NO_AREA:
			verbs::warn_whole(machine, this, NO_AREA,
					vformat("Procedural Placement on %s: %s has no box, sphere, cylinder, capsule, rectangle or circle collision shape marking out the area, "
							"so "
							"nothing is placed. Pick one under Area, or add a CollisionShape under it.",
							name, a));
			break;
		case NO_COUNT:
			verbs::warn_whole(
					machine, this, NO_COUNT, vformat("Procedural Placement on %s: Count is %d, so nothing is placed. Set how many to put down.", name, a));
			break;
		case NO_CELL_SIZE:
			verbs::warn_whole(machine, this, NO_CELL_SIZE,
					vformat("Procedural Placement on %s: Cell Size is %s, and a grid needs cells of some size, so nothing is placed.", name,
							words::number(values::as_number(a))));
			break;
		case TOO_MANY_CELLS:
			verbs::warn_whole(machine, this, TOO_MANY_CELLS,
					vformat("Procedural Placement on %s: a grid of %s cells across %s has %d cells, and %d is the most at once, so nothing is placed. Make the "
							"cells bigger or the area smaller.",
							name, words::number(cell_size), b, a, most));
			break;
		case TOO_MANY:
			verbs::warn_whole(machine, this, TOO_MANY,
					vformat("Procedural Placement on %s: Count is %d, and %d is the most at once, so %d are placed.", name, a, most, most));
			break;
		case NO_PARENT:
			verbs::warn_whole(machine, this, NO_PARENT,
					vformat("Procedural Placement on %s: Parent points at nothing, so they are added under the current scene instead. Pick the node to add "
							"them "
							"under.",
							name));
			break;
		default:
			// For each copy, not once.
			MakerWarnings::say(
					vformat("Procedural Placement on %s: %s is %s scene and the area is %s, so it cannot be put in place. Use a %s scene, or an area "
							"of its kind.",
							name, scene_path.get_file(), a, b, b));
			break;
	}
}
