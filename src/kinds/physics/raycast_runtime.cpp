// The compiled runtimes of Raycast and Raycast All.

#include "action/add_kind.hpp"
#include "kinds/physics/raycast.hpp"
#include "kinds/physics/raycast_aim.hpp"
#include "space/answers.hpp"

namespace {

// Calls `look` with what is asked of which line. False when there is no line to look along.
template <class Kind, class Look>
bool along_line(SCMachineBase *machine, SCMachineAction *action, const Kind *kind, Look look) {
	const aim::Start start = aim::start_of(machine, action, kind);
	if (start.place.get_type() == Variant::NIL) {
		return false;
	}
	if (kind->aim == Kind::A_DIRECTION && kind->distance <= 0.0) {
		verbs::warn(machine, action, "its Distance is 0, so there is no line to look along and nothing was found. Type how far it looks under Distance.");
		return false;
	}
	const Variant way = aim::way_of(machine, action, kind, start, true);
	if (way.get_type() == Variant::NIL) {
		return false;
	}
	queries::Filter filter = aim::filter_of(machine, kind, start);
	filter.from_inside = kind->hit_from_inside;
	filter.stopped_by_others = kind->stopped_by_others;
	if (start.in_2d) {
		queries::Query<In2D> query(start.world, filter);
		const Vector2 from = places::as_vector2(start.place);
		look(query, from, from + places::as_vector2(way));
	} else {
		queries::Query<In3D> query(start.world, filter);
		const Vector3 from = places::as_vector3(start.place);
		look(query, from, from + places::as_vector3(way));
	}
	return true;
}

class Raycast : public AnswersFromSpace<Raycast> {
	using Kind = SCRaycastAction;

	template <class Vector>
	static void tell(SCMachineBase *machine, SCMachineAction *action, int index, const queries::Hit<Vector> *hit) {
		const StillHere here(machine);
		verbs::keep_each<&Kind::store_hit_in>(machine, action, { hit != nullptr });
		if (here && hit != nullptr) {
			verbs::keep_each<&Kind::store_distance_in>(machine, action, { hit->distance });
		}
		if (here) {
			answers::keep_first<Kind>(machine, action, hit);
		}
		if (here) {
			Node *node = hit != nullptr ? hit->get() : nullptr;
			answers::tell<&Kind::hit_event, &Kind::nothing_event>(machine, action, index, hit != nullptr ? hit->key() : 0, node);
		}
	}

public:
	static void answer(SCMachineBase *machine, SCMachineAction *action, int index) {
		const Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr) {
			return;
		}
		const bool asked = along_line(machine, action, kind, [&](auto &query, const auto &from, const auto &to) {
			using Vector = std::decay_t<decltype(from)>;
			queries::Hit<Vector> hit;
			const bool found = query && query.ray(from, to, hit);
			tell(machine, action, index, found ? &hit : nullptr);
		});
		if (!asked) {
			tell<Vector3>(machine, action, index, nullptr);
		}
	}
};

class RaycastAll : public AnswersFromSpace<RaycastAll> {
	using Kind = SCRaycastAllAction;

	template <class Vector>
	static void tell(SCMachineBase *machine, SCMachineAction *action, int index, const queries::Hits<Vector> &hits, bool farthest_first) {
		const StillHere here(machine);
		Array nodes = answers::nodes_of(hits);
		Array places;
		for (const queries::Hit<Vector> &hit : hits) {
			places.push_back(hit.place);
		}
		if (farthest_first) {
			nodes.reverse();
			places.reverse();
		}
		verbs::keep_each<&Kind::store_list_in, &Kind::store_count_in, &Kind::store_places_in>(
				machine, action, { nodes.duplicate(), int64_t(hits.size()), places });
		answers::tell_of_list<Kind>(machine, action, index, hits, nodes, here);
	}

public:
	static void answer(SCMachineBase *machine, SCMachineAction *action, int index) {
		const Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr) {
			return;
		}
		const int most = kind->most > 0 ? int(MIN(kind->most, int64_t(queries::MOST))) : queries::MOST;
		const bool farthest_first = kind->order == Kind::FARTHEST_FIRST;
		const bool asked = along_line(machine, action, kind, [&](auto &query, const auto &from, const auto &to) {
			using Vector = std::decay_t<decltype(from)>;
			queries::Hits<Vector> hits;
			if (query) {
				query.rays(from, to, most, hits);
			}
			tell(machine, action, index, hits, farthest_first);
		});
		if (!asked) {
			tell(machine, action, index, queries::Hits<Vector3>(), farthest_first);
		}
	}
};

const AddKinds added = {
	add_kind<SCRaycastAction, Raycast>(),
	add_kind<SCRaycastAllAction, RaycastAll>(),
};

} // namespace
