// The compiled runtime of Explosion. What it reaches is looked for first, then all of it is thrown, and only then is anybody told.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "action/weak.hpp"
#include "kinds/physics/explosion.hpp"
#include "kinds/physics/velocity_bodies.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"
#include "space/queries.hpp"

#include <godot_cpp/classes/collision_shape2d.hpp>
#include <godot_cpp/classes/collision_shape3d.hpp>

#include <algorithm>

namespace {

using Kind = SCExplosionAction;

struct Names {
	StringName waits = "waits";
};

const Names &names() {
	return NativeNames::of<Names>();
}

struct Reached {
	ObjectID body;
	double distance = 0.0;
	double strength = 0.0;

	bool operator<(const Reached &other) const { return distance < other.distance; }
};

struct Outcome {
	LocalVector<Reached> reached;

	Array bodies() const {
		Array list;
		for (const Reached &one : reached) {
			if (Object *body = ObjectDB::get_instance(one.body)) {
				list.push_back(body);
			}
		}
		return list;
	}
};

Vector2 place_of(const Node2D *node) {
	return node->get_global_position();
}
Vector3 place_of(const Node3D *node) {
	return node->get_global_position();
}

// The middle of its first shape: the place of a character itself is often at its feet.
Vector2 middle_of(Node2D *body) {
	if (const CollisionShape2D *shape = verbs::first_of<CollisionShape2D>(body)) {
		return place_of(shape);
	}
	return place_of(body);
}
Vector3 middle_of(Node3D *body) {
	if (const CollisionShape3D *shape = verbs::first_of<CollisionShape3D>(body)) {
		return place_of(shape);
	}
	return place_of(body);
}

double mass_of(const RigidBody2D *body) {
	return body->get_mass();
}
double mass_of(const RigidBody3D *body) {
	return body->get_mass();
}
double mass_of(const Node *) {
	return 1.0;
}

template <class Side>
struct Blast {
	using Vector = typename Side::Vector;
	using Placed = typename Side::Placed;

	const Kind *kind;
	const Placed *center;
	Vector from;
	queries::Filter filter;

	Blast(SCMachineBase *machine, const Kind *of_kind, const Placed *at) : kind(of_kind), center(at), from(place_of(at)) {
		filter.mask = kind->mask;
		filter.only_group = kind->only_group;
		filter.own[0] = kind->spares_self ? queries::collider_above(machine->target_node()) : nullptr;
	}

	// Bodies that move do not shield, however many lie on the line.
	static bool is_shielded(queries::Query<Side> &query, const Vector &from, const Vector &to) {
		queries::Hit<Vector> hit;
		for (int i = 0; i < queries::MOST && query.ray(from, to, hit); i++) {
			if (!moving::is_one(hit.get())) {
				return true;
			}
			query.leave_out(hit.rid);
		}
		return false;
	}

	void leave_out_the_shielded(queries::Hits<Vector> &hits) const {
		queries::Filter walls;
		walls.mask = kind->walls_mask;
		walls.own[0] = filter.own[0];
		walls.own[1] = filter.own[1];
		queries::Query<Side> query(center, walls);
		for (uint32_t i = hits.size(); query && i > 0; i--) {
			Placed *body = Object::cast_to<Placed>(hits[i - 1].get());
			if (body == nullptr || is_shielded(query, from, middle_of(body))) {
				hits.remove_at(i - 1);
			}
		}
	}

	template <class Body>
	Reached throw_away(Body *body) const {
		const Vector way = middle_of(body) - from;
		Reached reached;
		reached.body = ObjectID(body->get_instance_id());
		reached.distance = double(way.length());
		const double share = CLAMP(reached.distance / kind->radius, 0.0, 1.0);
		reached.strength = kind->strength * (1.0 + (kind->at_the_edge - 1.0) * share);
		const Vector up = moving::up_of(body);
		Vector direction = (way.normalized() + up * real_t(kind->lift)).normalized();
		if (direction == Vector()) {
			direction = up;
		}
		if (!moving::is_frozen(body)) {
			moving::shove(body, direction * real_t(reached.strength * (kind->whatever_its_mass ? mass_of(body) : 1.0)));
		}
		return reached;
	}

	void go_off(Outcome &outcome) const {
		queries::Hits<Vector> hits;
		{
			queries::Query<Side> query(center, filter);
			if (!query) {
				return;
			}
			typename Side::Transform at;
			at.set_origin(from);
			query.touching(query.round(kind->radius), at, 0.0, hits);
		}
		for (uint32_t i = hits.size(); i > 0; i--) {
			if (!moving::is_one(hits[i - 1].get())) {
				hits.remove_at(i - 1);
			}
		}
		if (kind->walls_shield) {
			leave_out_the_shielded(hits);
		}
		for (const queries::Hit<Vector> &hit : hits) {
			moving::visit(hit.get(), [&](auto *body) {
				if constexpr (std::is_base_of_v<Placed, std::remove_pointer_t<decltype(body)>>) {
					outcome.reached.push_back(throw_away(body));
				}
			});
		}
		std::sort(outcome.reached.ptr(), outcome.reached.ptr() + outcome.reached.size());
	}
};

class Explosion : public SCNativeAction {
	static bool is_sound(SCMachineBase *machine, const Kind *kind) {
		const bool sound = checked::sound_or_warn(machine, kind, kind->radius, verbs::name_of<&Kind::radius>()) &&
				checked::sound_or_warn(machine, kind, kind->strength, verbs::name_of<&Kind::strength>()) &&
				checked::sound_or_warn(machine, kind, kind->at_the_edge, verbs::name_of<&Kind::at_the_edge>()) &&
				checked::sound_or_warn(machine, kind, kind->lift, verbs::name_of<&Kind::lift>());
		if (sound && kind->radius <= 0.0) {
			verbs::warn(machine, kind, vformat("its Radius is %s, so it reaches nothing. Give Radius a number above 0.", words::number(kind->radius)));
			return false;
		}
		return sound;
	}

	template <class Side>
	static void go_off(SCMachineBase *machine, const Kind *kind, const typename Side::Placed *center, Outcome &outcome) {
		Blast<Side> blast(machine, kind, center);
		if (!kind->spares_path.is_empty()) {
			blast.filter.own[1] = verbs::node_or_warn<&Kind::spares_path>(machine, kind);
		}
		blast.go_off(outcome);
	}

	// Nothing is reached by one that cannot go off, so that whoever waits to hear of it does.
	static void go_off(SCMachineBase *machine, const Kind *kind, Outcome &outcome) {
		Node *node = verbs::node_or_warn<&Kind::center_path>(machine, kind);
		if (node == nullptr || !is_sound(machine, kind)) {
			return;
		}
		const Node2D *node_2d = Object::cast_to<Node2D>(node);
		const Node3D *node_3d = Object::cast_to<Node3D>(node);
		if (node_2d == nullptr && node_3d == nullptr) {
			verbs::warn_wrong_class(machine, kind, node, "a 2D or 3D node", verbs::name_of<&Kind::center_path>());
		} else if (!node->is_inside_tree()) {
			verbs::warn(
					machine, kind, vformat("%s is not in the scene, so it has no place to go off at. Pick another node under Center Path.", node->get_name()));
		} else if (node_2d != nullptr) {
			go_off<In2D>(machine, kind, node_2d, outcome);
		} else {
			go_off<In3D>(machine, kind, node_3d, outcome);
		}
	}

	static void tell_the_reached(SCMachineBase *machine, const StringName &event, const Outcome &outcome, const StillHere &here) {
		for (const Reached &one : outcome.reached) {
			SCMachine *of_body = SCMachine::machine_of(Object::cast_to<Node>(ObjectDB::get_instance(one.body)));
			if (of_body != nullptr) {
				SCMachineBase::note_sender(event, machine);
				of_body->send_event(event, one.strength);
			}
			if (!here) {
				return;
			}
		}
	}

	static void work(SCMachineBase *machine, SCMachineAction *action) {
		const Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr) {
			return;
		}
		const StillHere here(machine);
		Outcome outcome;
		go_off(machine, kind, outcome);
		const auto count = int64_t(outcome.reached.size());
		const StringName told = kind->reached_event;
		verbs::keep_if_named<&Kind::store_count_in>(machine, action, count);
		if (here && !setting_of<&Kind::store_bodies_in>(action).is_empty()) {
			verbs::keep_if_named<&Kind::store_bodies_in>(machine, action, outcome.bodies());
		}
		if (here && !told.is_empty()) {
			tell_the_reached(machine, told, outcome, here);
		}
		if (here) {
			verbs::send_either<&Kind::hit_event, &Kind::nothing_event>(machine, action, count > 0, count);
		}
	}

	static bool can_be_asked(SCMachineBase *machine) { return !queries::is_fresh(machine) && queries::are_answered_now(places::is_2d(machine)); }

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		if (!can_be_asked(machine)) {
			machine->slot(index)[names().waits] = true;
			return;
		}
		const StillHere here(machine);
		work(machine, action);
		verbs::finish_unless_repeating(machine, action, index, here);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		const bool waited = machine->slot(index).erase(names().waits);
		if (waited || action->repeats()) {
			const StillHere here(machine);
			work(machine, action);
			verbs::finish_unless_repeating(machine, action, index, here);
		}
	}
};

const AddKinds added = {
	add_kind<SCExplosionAction, Explosion>(),
};

} // namespace
