#pragma once

// Where a line or a shape that is cast starts and which way it goes, and what it is to find, as the kinds that cast one share it:
// their settings of that are named alike.

#include "action/checked.hpp"
#include "action/kind_table.hpp"
#include "space/queries.hpp"

namespace aim {

inline constexpr Hint LAYERS = { PROPERTY_HINT_LAYERS_3D_PHYSICS };
inline constexpr Hint MOST = { PROPERTY_HINT_RANGE, "0,32,1,or_greater" };

struct Start {
	// The node it starts at, null when it starts at a place.
	const Node *node = nullptr;
	// Nil when there is nowhere to start from.
	Variant place;
	bool in_2d = false;
	// Whose world and whose directions they are.
	const Node *world = nullptr;
};

// Which node or place that is. Tells what is wrong with it.
Start start_of(SCMachineBase *machine, SCMachineAction *action, const NodePath &path, const StringName &variable, const StringName &path_setting,
		const StringName &variable_setting);
// As long as 1, nil when it leads nowhere.
Variant direction_of(SCMachineAction *action, SCMachineBase *machine, const Start &start, const Variant &direction, bool local, const StringName &setting);
// The whole way to it, nil when there is no way.
Variant way_toward(
		SCMachineBase *machine, SCMachineAction *action, const Start &start, const NodePath &path, const StringName &variable, const StringName &path_setting);
// A direction or a way to be as long as that.
Variant as_long_as(const Variant &way, double length);
// What is below the one who asks is passed by.
void leave_out_own(SCMachineBase *machine, const Start &start, queries::Filter &filter);
// "down", "(1, 0)", "toward Door".
String in_words(const Variant &direction, bool local);

template <class Kind>
Start start_of(SCMachineBase *machine, SCMachineAction *action, const Kind *kind) {
	return start_of(
			machine, action, kind->from_path, kind->from_variable, FieldOf<&Kind::from_path>::row->info.name, FieldOf<&Kind::from_variable>::row->info.name);
}

// As long as it is to go, with `zero_reaches` for a distance of 0 that goes all the way to a node. Nil for nowhere.
template <class Kind>
Variant way_of(SCMachineBase *machine, SCMachineAction *action, const Kind *kind, const Start &start, bool zero_reaches) {
	const double distance = checked::number<&Kind::distance>(machine, action);
	if (kind->aim == Kind::TOWARD_A_NODE) {
		const Variant way = way_toward(machine, action, start, kind->toward_path, kind->toward_variable, FieldOf<&Kind::toward_path>::row->info.name);
		return zero_reaches && distance <= 0.0 ? way : as_long_as(way, distance);
	}
	return as_long_as(direction_of(action, machine, start, kind->direction, kind->space == Kind::LOCAL, FieldOf<&Kind::direction>::row->info.name), distance);
}

template <class Kind>
queries::Filter filter_of(SCMachineBase *machine, const Kind *kind, const Start &start) {
	queries::Filter filter;
	filter.mask = kind->collision_mask;
	filter.bodies = kind->collide_with_bodies;
	filter.areas = kind->collide_with_areas;
	filter.only_group = kind->only_group;
	filter.except_group = kind->exclude_group;
	if (kind->exclude_self) {
		leave_out_own(machine, start, filter);
	}
	return filter;
}

template <class Kind>
void describe_start(KindTable<Kind> &kind, const char *path_text, const char *variable_text) {
	kind.template setting<&Kind::from_path>("from_path", path_text);
	kind.template setting<&Kind::from_variable>("from_variable", variable_text).optional();
}

template <class Kind>
void describe_filter(KindTable<Kind> &kind) {
	kind.template setting<&Kind::collision_mask>("collision_mask", LAYERS, "The physics layers that are looked at.");
	kind.template setting<&Kind::collide_with_bodies>(
			"collide_with_bodies", "Find bodies: the ground, walls, characters, rigid bodies, and tiles that have collision.");
	kind.template setting<&Kind::collide_with_areas>("collide_with_areas", "Find areas, such as hurt boxes and trigger zones.");
}

template <class Kind>
void describe_groups(KindTable<Kind> &kind) {
	kind.template setting<&Kind::exclude_self>(
			"exclude_self", "Pass by the body or area it starts from, the one the machine works on, and whatever is below them.");
	kind.template setting<&Kind::exclude_group>("exclude_group", "Pass by what is in this group, such as friends.");
	kind.template setting<&Kind::only_group>("only_group", "Find only what is in this group, such as enemies. Empty finds everything.");
}

} // namespace aim
