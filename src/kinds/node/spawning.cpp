#include "kinds/node/spawning.hpp"

#include "action/action_shared.hpp"
#include "action/places.hpp"
#include "action/shared_verbs.hpp"

void SCInstantiateAction::describe(KindTable<Self> &kind) {
	kind.about("node", "spawn", "Add a scene to the running game, such as an effect, a pickup, a bullet or an enemy.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<At>();
	kind.setting<&Self::scene>("scene",
			"The scene to add. A scene that makes copies of itself cannot hold itself like this: leave it empty there, and pick the file under Scene Path.");
	kind.setting<&Self::scene_path>("scene_path", { PROPERTY_HINT_FILE_PATH, "*.tscn,*.scn" },
				"The file of the scene to add, which is loaded the first time that it is needed. A scene may make copies of itself this way.")
			.unless<&Self::scene>()
			.optional_if<&Self::scene>();
	kind.setting<&Self::parent_path>("parent_path", "The node that it goes under. Empty is the scene being played.");
	kind.setting<&Self::at>("at",
			"Where it appears: at Self or at a node, turned the way that node faces; at a place; where its own scene puts it; at one of the nodes right under "
			"a node, a different one each time; or anywhere inside a collision shape.");
	kind.setting<&Self::at_node_path>("at_node_path",
				"The node that it appears at. For One Of The Nodes Under, the node that the places lie under, and for Somewhere Inside the collision shape, or "
				"a "
				"node with one below it: empty is Self for these two.")
			.only_if<&Self::at, A_NODE, ONE_OF_THE_NODES_UNDER, SOMEWHERE_INSIDE>()
			.optional();
	kind.setting<&Self::away_from_path>("away_from_path",
				"Take only places that are far enough from this node, such as the player, so that nothing appears on top of it. Empty takes any.")
			.only_if<&Self::at, ONE_OF_THE_NODES_UNDER, SOMEWHERE_INSIDE>()
			.optional();
	kind.setting<&Self::at_least>("at_least", hint::DISTANCE,
				"How far from that node a place has to be, in metres in 3D and pixels in 2D. When they are all nearer than that, the farthest is taken.")
			.only_if<&Self::at, ONE_OF_THE_NODES_UNDER, SOMEWHERE_INSIDE>()
			.only_if<&Self::away_from_path>();
	kind.setting<&Self::place>("place", "Where in the world it appears: a Vector2 in a 2D game, a Vector3 in a 3D one, or a variable that holds a node.")
			.in_2d(Vector2())
			.only_if<&Self::at, A_PLACE>()
			.optional();
	kind.setting<&Self::offset>("offset",
				"How far from there, in the directions that the node there faces: x is its front in 2D, and -z its front in 3D. In pixels in 2D and metres in "
				"3D.")
			.in_2d(Vector2())
			.optional();
	kind.setting<&Self::stand_on>(
			"stand_on", "In 3D, turn it so that its up points this way, such as away from the wall that was hit. Zero leaves it the turn it has.");
	kind.setting<&Self::store_in>("store_in", "Keep the new node in this variable.").optional();
	kind.setting<&Self::every_seconds>("every_seconds", hint::SECONDS,
			"Add another one every so many seconds, for as long as the state is active. Zero adds one alone. There is no limit to how many there come to be: "
			"for "
			"no more than five at once, leave it at zero, keep count of them in a variable, and come back to this state after a Wait while the count is below "
			"five.");
	kind.setting<&Self::warning_scene>("warning_scene", "What shows at the place first, such as a red circle on the floor, and goes as the scene appears.");
	kind.setting<&Self::warning_seconds>("warning_seconds", hint::SECONDS, "How long that shows, in seconds of game time.").only_if<&Self::warning_scene>();
}

bool SCInstantiateAction::keeps_spawning() const {
	return every_seconds > 0.0 || from_variables.has(verbs::name_of<&Self::every_seconds>());
}

bool SCInstantiateAction::finishes_as_it_starts_default() {
	const bool may_warn = warning_scene.is_valid() && (warning_seconds > 0.0 || from_variables.has(verbs::name_of<&Self::warning_seconds>()));
	return keeps_spawning() || !may_warn;
}

bool SCInstantiateAction::works_after_finishing_default() {
	return keeps_spawning();
}

String SCInstantiateAction::place_in_line() const {
	switch (at) {
		case A_NODE:
			return " at " + words::name_in_line(at_node_path, "Self", ActionShared::get().not_picked);
		case A_PLACE:
			return " at " + (place.get_type() == Variant::NIL ? String("the middle of the world") : words::text_of(place));
		case WHERE_THE_SCENE_SAYS:
			return " where it says";
		case ONE_OF_THE_NODES_UNDER:
			return " at one of the nodes under " + words::name_in_line(at_node_path);
		case SOMEWHERE_INSIDE:
			return " somewhere inside " + words::name_in_line(at_node_path);
		default:
			return " at Self";
	}
}

String SCInstantiateAction::summary_default() {
	String named = ActionShared::get().not_picked;
	if (scene.is_valid()) {
		named = scene->get_path().is_empty() ? String("a scene") : scene->get_path().get_file().get_basename();
	} else if (!scene_path.is_empty()) {
		named = scene_path.get_file().get_basename();
	}
	const String again = every_seconds > 0.0 ? vformat(" every %s s", words::number(every_seconds)) : String();
	return vformat("Add %s%s%s", named, place_in_line(), again);
}
