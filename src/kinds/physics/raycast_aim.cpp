#include "kinds/physics/raycast_aim.hpp"

#include "action/sides.hpp"
#include "action/spaces.hpp"

namespace aim {

namespace {

// What a variable holds, as a node or as a place. Nothing, of which nobody is told, for an empty one.
void read(SCMachineBase *machine, SCMachineAction *action, const StringName &variable, const StringName &setting, const Node *&node, Variant &place) {
	const Variant held = values::value_of(machine, Variant(), variable);
	if (values::is_vector(held)) {
		place = held;
	} else if (held.get_type() == Variant::OBJECT) {
		node = Object::cast_to<Node>(held.get_validated_object());
	} else if (held.get_type() != Variant::NIL) {
		verbs::warn(machine, action,
				vformat("the variable %s holds %s, which is no place, so nothing was looked for. Put a node or a place into it, or pick another under %s.",
						variable, values::kind_in_words(held), verbs::setting_in_inspector(setting)));
	}
}

bool is_in_2d(const Variant &place) {
	return place.get_type() == Variant::VECTOR2 || place.get_type() == Variant::VECTOR2I;
}

} // namespace

Start start_of(SCMachineBase *machine, SCMachineAction *action, const NodePath &path, const StringName &variable, const StringName &path_setting,
		const StringName &variable_setting) {
	Start start;
	if (variable.is_empty()) {
		start.node = spaces::placed_or_warn(machine, action, path, path_setting);
	} else {
		read(machine, action, variable, variable_setting, start.node, start.place);
	}
	if (start.node != nullptr) {
		if (!places::has_a_place(start.node)) {
			verbs::warn(machine, action, vformat("%s.", places::no_place_words(start.node, verbs::setting_in_inspector(path_setting))));
			return Start();
		}
		if (!start.node->is_inside_tree()) {
			return Start();
		}
		start.place = places::position_of(start.node);
		start.world = start.node;
	} else if (start.place.get_type() != Variant::NIL) {
		const Node *target = machine->target_node();
		start.world = target != nullptr && target->is_inside_tree() ? target : machine;
	}
	start.in_2d = is_in_2d(start.place);
	if (start.place.get_type() != Variant::NIL && !checked::is_sound(start.place)) {
		checked::sound_or_warn(machine, action, start.place, variable.is_empty() ? path_setting : variable_setting);
		return Start();
	}
	return start;
}

Variant direction_of(SCMachineAction *action, SCMachineBase *machine, const Start &start, const Variant &direction, bool local, const StringName &setting) {
	if (!checked::sound_or_warn(machine, action, direction, setting)) {
		return Variant();
	}
	Variant way;
	if (start.in_2d) {
		way = places::as_vector2(direction);
	} else {
		way = places::as_vector3(direction);
	}
	if (local && places::is_2d(start.world) == start.in_2d) {
		way = spaces::own_direction(start.world, way);
	}
	const Variant unit = as_long_as(way, 1.0);
	if (unit.get_type() == Variant::NIL && action->is_typed_in(setting)) {
		verbs::warn(machine, action,
				vformat("its %s is zero, which leads nowhere, so nothing was looked for. Type one under %s, such as down or to the right.",
						verbs::setting_in_inspector(setting), verbs::setting_in_inspector(setting)));
	}
	return unit;
}

Variant way_toward(
		SCMachineBase *machine, SCMachineAction *action, const Start &start, const NodePath &path, const StringName &variable, const StringName &path_setting) {
	const Node *node = nullptr;
	Variant place;
	const String shown = verbs::setting_in_inspector(path_setting);
	if (!variable.is_empty()) {
		read(machine, action, variable, path_setting, node, place);
	} else if (path.is_empty()) {
		verbs::warn(machine, action,
				vformat("it is set to go Toward A Node, but no node is picked, so nothing was looked for. Pick one under %s, or read it from a variable.",
						shown));
	} else {
		node = verbs::node_or_warn(machine, action, path, path_setting);
	}
	if (node != nullptr) {
		if (!places::has_a_place(node)) {
			verbs::warn(machine, action, vformat("%s.", places::no_place_words(node, shown)));
			return Variant();
		}
		if (!node->is_inside_tree() ||
				(start.node != nullptr && !sides::same_or_warn(machine, action, start.node, node, "so nothing was looked for", path_setting))) {
			return Variant();
		}
		place = places::position_of(node);
	}
	if (place.get_type() == Variant::NIL || !checked::is_sound(place)) {
		return Variant();
	}
	if (start.in_2d) {
		return places::as_vector2(place) - places::as_vector2(start.place);
	}
	return places::as_vector3(place) - places::as_vector3(start.place);
}

Variant as_long_as(const Variant &way, double length) {
	if (way.get_type() == Variant::VECTOR2) {
		const Vector2 vector = way;
		return vector.is_zero_approx() ? Variant() : Variant(vector.normalized() * real_t(length));
	}
	if (way.get_type() == Variant::VECTOR3) {
		const Vector3 vector = way;
		return vector.is_zero_approx() ? Variant() : Variant(vector.normalized() * real_t(length));
	}
	return Variant();
}

void leave_out_own(SCMachineBase *machine, const Start &start, queries::Filter &filter) {
	filter.own[0] = queries::collider_above(start.node);
	filter.own[1] = queries::collider_above(machine->target_node());
}

String in_words(const Variant &direction, bool local) {
	struct Row {
		Variant way;
		const char *words;
	};
	const Row rows[] = {
		{ Vector3(0, -1, 0), "down" },
		{ Vector3(0, 1, 0), "up" },
		{ Vector2(0, 1), "down" },
		{ Vector2(0, -1), "up" },
		{ Vector2(1, 0), "right" },
		{ Vector2(-1, 0), "left" },
		{ Vector3(1, 0, 0), "right" },
		{ Vector3(-1, 0, 0), "left" },
	};
	for (const Row &row : rows) {
		if (!local && row.way == direction) {
			return row.words;
		}
	}
	return vformat(local ? "its own %s" : "%s", words::text_of(direction));
}

} // namespace aim
