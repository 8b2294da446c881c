#include "kinds/node/spawn_places.hpp"

#include "action/checked.hpp"
#include "action/places.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "action/told_path.hpp"
#include "kinds/node/own_ways.hpp"
#include "kinds/node/spawning.hpp"
#include "space/places_inside.hpp"

#include <godot_cpp/classes/character_body2d.hpp>
#include <godot_cpp/classes/rigid_body2d.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace spawn_places {

namespace {

using Kind = SCInstantiateAction;

// How many places of an area are looked at for one that is far enough away.
constexpr int TRIES = 64;

class Picking {
	SCMachineBase *machine;
	SCMachineAction *action;
	Where &where;
	Kind::At at;
	Variant offset;

	void no_place(const String &why) {
		const char *labels[] = { "Self", "A Node", "A Place", "Where The Scene Says", "One Of The Nodes Under", "Somewhere Inside" };
		where.place = Variant();
		where.problem = vformat("Instantiate on %s is set to %s, but %s, so it appears where its own scene puts it instead. Pick the node under At Node.",
				machine->name_in_messages(), labels[int(at)], why);
	}

	void stand_at(const Node *node) {
		if (!places::has_a_place(node)) {
			no_place(vformat("%s is a %s, which has no place in the world", node->get_name(), node->get_class()));
			return;
		}
		where.place = places::position_of(node);
		where.dimensions = Object::cast_to<Node3D>(node) != nullptr ? 3 : 2;
		if (const CanvasItem *item = Object::cast_to<CanvasItem>(node)) {
			where.turn = own_ways::turn_of(item);
		} else if (const Node3D *node_3d = Object::cast_to<Node3D>(node)) {
			where.turn = own_ways::turn_of(node_3d);
		}
		step_aside(node);
	}

	void step_aside(const Node *from) {
		if (offset.get_type() == Variant::NIL) {
			return;
		}
		const Variant aside = own_ways::to_world(from, offset);
		if (where.place.get_type() == Variant::VECTOR2) {
			where.place = places::as_vector2(where.place) + places::as_vector2(aside);
		} else {
			where.place = places::as_vector3(where.place) + places::as_vector3(aside);
		}
	}

	// The node that the setting leads to; told, and null, when there is none.
	Node *at_node() {
		const NodePath path = setting_of<&Kind::at_node_path>(action);
		if (path.is_empty() && at == Kind::A_NODE) {
			no_place("no node is picked");
			return nullptr;
		}
		Node *node = values::node_of(machine, path);
		if (node == nullptr) {
			no_place(vformat("there is no node at %s", words::told_path(path)));
		}
		return node;
	}

	// Where to keep away from. Nil for nowhere.
	Variant feared() {
		const NodePath path = setting_of<&Kind::away_from_path>(action);
		if (path.is_empty()) {
			return Variant();
		}
		const Node *node = verbs::node_or_warn<&Kind::away_from_path>(machine, action);
		if (node != nullptr && !places::has_a_place(node)) {
			verbs::warn(machine, action, vformat("%s.", places::no_place_words(node, verbs::setting_in_inspector(verbs::name_of<&Kind::away_from_path>()))));
		}
		return places::position_of(node);
	}

	void one_of_the_nodes_under(const Node *above) {
		const Variant away_from = feared();
		const double at_least = checked::number<&Kind::at_least>(machine, action);
		LocalVector<const Node *> open;
		const Node *farthest = nullptr;
		double most = -1.0;
		for (int i = 0; i < above->get_child_count(); i++) {
			const Node *child = above->get_child(i);
			if (!places::has_a_place(child) || child->is_queued_for_deletion()) {
				continue;
			}
			const double distance = away_from.get_type() != Variant::NIL ? places::distance_between(places::position_of(child), away_from) : Math::INF;
			if (distance > most) {
				most = distance;
				farthest = child;
			}
			if (distance >= at_least) {
				open.push_back(child);
			}
		}
		if (farthest == nullptr) {
			no_place(vformat("there is no 2D or 3D node right under %s", above->get_name()));
			return;
		}
		stand_at(open.is_empty() ? farthest : open[uint32_t(UtilityFunctions::randi_range(0, int64_t(open.size()) - 1))]);
	}

	// False when there is no such area.
	bool somewhere_inside(const Node *node) {
		const Variant away_from = feared();
		const places_inside::Area area = places_inside::at(node);
		if (!area) {
			verbs::warn_whole(machine, action, Kind::NO_SHAPE,
					vformat("Instantiate on %s is set to Somewhere Inside, but %s has no box, sphere, cylinder, capsule, rectangle or circle collision shape "
							"to pick "
							"a place in, so nothing appears.",
							machine->name_in_messages(), node->get_name()));
			return false;
		}
		Ref<RandomNumberGenerator> random;
		random.instantiate();
		// So that a game that seeds the engine's own numbers gets the same places again.
		random->set_seed(uint64_t(UtilityFunctions::randi()));
		where.place = area.place_of(places_inside::draw(area, random.ptr()));
		if (away_from.get_type() != Variant::NIL) {
			const double at_least = checked::number<&Kind::at_least>(machine, action);
			for (int i = 1; i < TRIES && places::distance_between(where.place, away_from) < at_least; i++) {
				where.place = area.place_of(places_inside::draw(area, random.ptr()));
			}
			if (places::distance_between(where.place, away_from) < at_least) {
				where.place = area.place_of(area.farthest_from(away_from));
			}
		}
		where.dimensions = area.in_2d ? 2 : 3;
		step_aside(area.shape);
		return true;
	}

	void at_a_place() {
		const Variant place = setting_of<&Kind::place>(action);
		if (place.get_type() == Variant::NIL) {
			where.place = Vector3();
		} else if (spaces::place_or_warn<&Kind::place>(machine, action)) {
			where.place = place.get_type() == Variant::OBJECT ? places::position_of(Object::cast_to<Node>(place.get_validated_object())) : place;
			const bool in_2d = where.place.get_type() == Variant::VECTOR2 || where.place.get_type() == Variant::VECTOR2I;
			where.place = in_2d ? Variant(places::as_vector2(where.place)) : Variant(places::as_vector3(where.place));
		} else {
			return;
		}
		step_aside(nullptr);
	}

public:
	Picking(SCMachineBase *of_machine, SCMachineAction *of_action, Where &into) :
			machine(of_machine), action(of_action), where(into), at(checked::choice<&Kind::at>(of_machine, of_action, Kind::SELF)),
			offset(setting_of<&Kind::offset>(of_action)) {
		if (offset.get_type() != Variant::NIL && !spaces::place_or_warn<&Kind::offset>(machine, action)) {
			offset = Variant();
		}
		const Vector3 up = setting_of<&Kind::stand_on>(action);
		if (checked::sound_or_warn(machine, action, up, verbs::name_of<&Kind::stand_on>())) {
			where.up = up;
		}
	}

	bool pick() {
		const bool appears = pick_place();
		if (!checked::is_sound(where.place)) {
			no_place("the place there is no number, or lies beyond the engine's numbers");
		}
		return appears;
	}

private:
	bool pick_place() {
		if (at == Kind::A_PLACE) {
			at_a_place();
			return true;
		}
		if (at == Kind::WHERE_THE_SCENE_SAYS) {
			where.shift = offset;
			return true;
		}
		const Node *node = at == Kind::SELF ? machine->target_node() : at_node();
		if (node == nullptr) {
			return true;
		}
		if (at == Kind::SOMEWHERE_INSIDE) {
			return somewhere_inside(node);
		}
		if (at == Kind::ONE_OF_THE_NODES_UNDER) {
			one_of_the_nodes_under(node);
		} else {
			stand_at(node);
		}
		return true;
	}
};

// What may not be mirrored stands upright instead: the physics lose it, and movers mirror the pictures of characters.
bool may_be_mirrored(const Node2D *made) {
	return Object::cast_to<CharacterBody2D>(made) == nullptr && Object::cast_to<RigidBody2D>(made) == nullptr;
}

const CanvasItem *space_2d_of(const CanvasItem *made, const Node *parent) {
	return made->is_set_as_top_level() ? nullptr : Object::cast_to<CanvasItem>(parent);
}

void put_2d(CanvasItem *made, const Node *parent, const Where &where) {
	const CanvasItem *above = space_2d_of(made, parent);
	const Transform2D world = above != nullptr ? spaces::world_of(above) : Transform2D();
	const auto local = [&world](const Vector2 &place) { return spaces::has_a_way_back(world) ? world.affine_inverse().xform(place) : place; };
	if (Control *control = Object::cast_to<Control>(made)) {
		control->set_position(local(places::as_vector2(where.place)));
		return;
	}
	Node2D *node_2d = Object::cast_to<Node2D>(made);
	if (node_2d == nullptr) {
		return;
	}
	if (where.turn.get_type() == Variant::TRANSFORM2D) {
		const Transform2D turn = where.turn;
		const Transform2D parents = own_ways::turn_of(world);
		if (may_be_mirrored(node_2d)) {
			node_2d->set_transform(parents.affine_inverse() * turn * node_2d->get_transform());
		} else {
			node_2d->set_rotation(real_t(own_ways::upright(turn) - own_ways::upright(parents) + node_2d->get_rotation()));
		}
	}
	node_2d->set_position(local(places::as_vector2(where.place)));
}

void put_3d(Node3D *made, const Node *parent, const Where &where) {
	const Node3D *above = made->is_set_as_top_level() ? nullptr : Object::cast_to<Node3D>(parent);
	if (where.turn.get_type() == Variant::QUATERNION) {
		const Quaternion parents = above != nullptr ? own_ways::turn_of(above) : Quaternion();
		made->set_basis(Basis(parents.inverse() * Quaternion(where.turn)) * made->get_basis());
	}
	const Transform3D world = above != nullptr ? spaces::world_of(above) : Transform3D();
	const Vector3 place = places::as_vector3(where.place);
	made->set_position(spaces::has_a_way_back(world.basis) ? world.affine_inverse().xform(place) : place);
}

// By the shortest way from where its up points.
void stand_on(Node3D *made, const Node *parent, const Vector3 &wanted) {
	const Node3D *above = made->is_set_as_top_level() ? nullptr : Object::cast_to<Node3D>(parent);
	const Quaternion parents = above != nullptr ? own_ways::turn_of(above) : Quaternion();
	const Vector3 up = wanted.normalized();
	const Basis own = made->get_basis();
	if (!up.is_normalized() || !spaces::has_a_way_back(own)) {
		return;
	}
	const Quaternion turned = parents * own.get_rotation_quaternion();
	const Vector3 now = turned.xform(Vector3(0, 1, 0));
	Vector3 axis = now.cross(up);
	if (axis.length() < real_t(CMP_EPSILON)) {
		axis = turned.xform(Vector3(1, 0, 0));
	}
	const Quaternion round(axis.normalized(), now.angle_to(up));
	made->set_basis(Basis(parents.inverse() * round * parents) * own);
}

} // namespace

bool pick(SCMachineBase *machine, SCMachineAction *action, Where &where) {
	return Picking(machine, action, where).pick();
}

void put(SCMachineBase *machine, SCMachineAction *action, Node *made, const Node *parent, const Where &where) {
	CanvasItem *item = Object::cast_to<CanvasItem>(made);
	Node3D *node_3d = Object::cast_to<Node3D>(made);
	const bool has_place = where.place.get_type() != Variant::NIL;
	if (!where.problem.is_empty() && places::has_a_place(made)) {
		verbs::warn_whole(machine, action, Kind::NO_PLACE, where.problem);
	} else if ((item != nullptr && where.dimensions == 3) || (node_3d != nullptr && where.dimensions == 2)) {
		verbs::warn(machine, action,
				vformat("the scene is a %s one and the node that it is to appear at is in %s, so it appears where its own scene puts it. Pick a scene, or a "
						"node under At Node, that fits the other.",
						item != nullptr ? "2D" : "3D", item != nullptr ? "3D" : "2D"));
	} else if (item != nullptr && has_place) {
		put_2d(item, parent, where);
	} else if (node_3d != nullptr && has_place) {
		put_3d(node_3d, parent, where);
	} else if (where.shift.get_type() != Variant::NIL) {
		spaces::visit(made, [&where](auto *placed) {
			using Vector = decltype(placed->get_position());
			if constexpr (std::is_same_v<Vector, Vector2>) {
				placed->set_position(placed->get_position() + places::as_vector2(where.shift));
			} else {
				placed->set_position(placed->get_position() + places::as_vector3(where.shift));
			}
		});
	}
	if (node_3d != nullptr && where.up != Vector3()) {
		stand_on(node_3d, parent, where.up);
	}
}

} // namespace spawn_places
