#include "kinds/physics/shape_cast.hpp"

#include "action/words.hpp"
#include "kinds/physics/raycast_aim.hpp"

void SCShapeCastAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "shape_cast",
			"Ask the physics world what is inside a circle or a box, with no Area needed. For whoever stands around a bomb, or with a Distance for what a "
			"thick "
			"beam or a charging bull would run into. On Every Frame the events are sent only when the answer changes. Right after a scene has begun it waits a "
			"frame for the physics: tick Wait For Previous on what uses the answer.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.constants_of<Shape>();
	kind.constants_of<Aim>();
	kind.constants_of<Space>();
	aim::describe_start(kind, "The node in the middle of the shape. Empty is Self.",
			"The variable holding the node or the place in the middle of the shape. It wins over From Path.");
	kind.setting<&Self::shape>("shape", "A circle, which is a sphere in 3D, or a box.");
	kind.setting<&Self::radius>("radius", hint::DISTANCE, "From its middle to its rim, in metres in 3D and pixels in 2D.")
			.px_in_2d()
			.only_if<&Self::shape, CIRCLE>();
	kind.setting<&Self::size>("size", "How wide, tall and, in 3D, deep the box is, in metres in 3D and pixels in 2D.")
			.in_2d(Vector2(32, 32))
			.only_if<&Self::shape, BOX>();
	kind.setting<&Self::space>("space", "Global keeps the box level and takes the direction as one in the world. Local turns both with the node.")
			.only_if<&Self::turns>();
	kind.setting<&Self::distance>(
				"distance", hint::DISTANCE, "How far the shape is swept along, in metres in 3D and pixels in 2D. Zero only looks where it stands.")
			.px_in_2d();
	kind.setting<&Self::aim>("aim", "Whether it is swept in a direction or toward a node.").only_if<&Self::distance>();
	kind.setting<&Self::direction>("direction", "Which way it is swept. How long it is here does not matter: see Distance.")
			.in_2d(Vector2(0, 1))
			.only_if<&Self::distance>()
			.only_if<&Self::aim, A_DIRECTION>();
	kind.setting<&Self::toward_path>("toward_path", "The node it is swept toward.").only_if<&Self::distance>().only_if<&Self::aim, TOWARD_A_NODE>();
	kind.setting<&Self::toward_variable>("toward_variable", "The variable holding the node or the place it is swept toward. It wins over Toward Path.")
			.optional()
			.only_if<&Self::distance>()
			.only_if<&Self::aim, TOWARD_A_NODE>();
	aim::describe_filter(kind);
	aim::describe_groups(kind);
	kind.setting<&Self::stopped_by_others>("stopped_by_others", "Anything else it meets on its way ends the sweep, such as a wall before an enemy.")
			.only_if<&Self::only_group>()
			.only_if<&Self::distance>();
	kind.setting<&Self::most>("most", aim::MOST, "Find at most so many, the nearest. Zero finds all.");
	kind.setting<&Self::store_list_in>("store_list_in",
			"Store the nodes that were found as a list, each once: first what is inside where the shape stands, the nearest first, then what it meets on its "
			"way.");
	kind.setting<&Self::store_count_in>("store_count_in", "Store how many there are.");
	kind.setting<&Self::store_node_in>("store_node_in", "Store the first of them in this variable. It is emptied when there is none.");
	kind.setting<&Self::store_place_in>("store_place_in", "Store the place where the shape touches the first.");
	kind.setting<&Self::store_normal_in>("store_normal_in", "Store which way the surface faces there, as a direction as long as 1.");
	kind.setting<&Self::store_distance_in>("store_distance_in",
				"Store how far the shape gets before it touches the first, in metres in 3D and pixels in 2D. Zero when that is inside it at once.")
			.only_if<&Self::distance>();
	kind.setting<&Self::hit_event>("hit_event", "The event to send when anything is found. It carries the list of nodes.");
	kind.setting<&Self::nothing_event>("nothing_event", "The event to send when nothing is found.");
}

String SCShapeCastAction::summary_default() {
	const String what = only_group.is_empty() ? String("what is") : vformat("all %s", only_group);
	const String from = words::variable_or(from_variable, words::name_in_line(from_path));
	const String round =
			shape == CIRCLE ? vformat("within %s of %s", words::number(radius), from) : vformat("in a box of %s at %s", words::text_of(size), from);
	if (!has_some<&Self::distance>()) {
		return vformat("Find %s %s", what, round);
	}
	const String way = aim == TOWARD_A_NODE ? vformat("toward %s", words::variable_or(toward_variable, words::name_in_line(toward_path, "Self", "nothing yet")))
											: aim::in_words(direction, space == LOCAL);
	return vformat("Find %s %s, swept %s %s", what, round, words::number(distance), way);
}
