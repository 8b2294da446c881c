#include "kinds/physics/overlapping.hpp"

#include "action/words.hpp"

void SCGetOverlappingAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "overlap",
			"Ask an area what is inside it right now and put the answer in a list, such as every enemy in the blast, everything standing on the pressure plate "
			"or "
			"every coin within reach. On Every Frame the events are sent only when the answer changes. Right after a scene has begun it waits a frame for the "
			"physics: tick Wait For Previous on what uses the answer.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.setting<&Self::area_path>("area_path", "The Area2D or Area3D to ask. What it can find is up to its own collision mask. Empty is Self.");
	kind.setting<&Self::collide_with_bodies>("collide_with_bodies", "Find bodies, such as characters, crates and walls.");
	kind.setting<&Self::collide_with_areas>("collide_with_areas", "Find other areas that are monitorable, such as hurt boxes and coins.");
	kind.setting<&Self::exclude_self>(
			"exclude_self", "Leave out the body that the area is a part of, the one the machine works on, and whatever is below them.");
	kind.setting<&Self::exclude_group>("exclude_group", "Leave out what is in this group, such as friends.");
	kind.setting<&Self::only_group>("only_group", "Find only what is in this group, such as enemies. Empty finds everything.");
	kind.setting<&Self::store_list_in>("store_list_in", "Store the nodes that are inside as a list, the nearest to the area's middle first.");
	kind.setting<&Self::store_count_in>("store_count_in", "Store how many there are.");
	kind.setting<&Self::store_node_in>("store_node_in", "Store the nearest of them in this variable. It is emptied when there is none.");
	kind.setting<&Self::hit_event>("hit_event", "The event to send when anything is inside. It carries the list of nodes.");
	kind.setting<&Self::nothing_event>("nothing_event", "The event to send when nothing is inside.");
}

String SCGetOverlappingAction::summary_default() {
	const String what = only_group.is_empty() ? String("what is") : vformat("all %s", only_group);
	return vformat(
			"Find %s inside %s%s", what, words::name_in_line(area_path), store_list_in.is_empty() ? String() : vformat(", keep it in %s", store_list_in));
}
