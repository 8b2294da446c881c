// The compiled runtime of Shape Cast.

#include "action/add_kind.hpp"
#include "action/spaces.hpp"
#include "kinds/physics/raycast_aim.hpp"
#include "kinds/physics/shape_cast.hpp"
#include "space/answers.hpp"

namespace {

using Kind = SCShapeCastAction;

// Thinner than this the engine takes no shape for one.
constexpr double THINNEST = 0.001;

Transform2D pose(const aim::Start &start, bool turned, In2D) {
	const CanvasItem *item = turned ? Object::cast_to<CanvasItem>(start.world) : nullptr;
	return Transform2D(item != nullptr ? spaces::world_of(item).get_rotation() : real_t(0), places::as_vector2(start.place));
}
Transform3D pose(const aim::Start &start, bool turned, In3D) {
	const Node3D *node = turned ? Object::cast_to<Node3D>(start.world) : nullptr;
	const Basis basis = node != nullptr ? spaces::world_of(node).basis : Basis();
	return Transform3D(spaces::has_a_way_back(basis) ? basis.orthonormalized() : Basis(), places::as_vector3(start.place));
}

Vector2 as_vector(const Variant &value, In2D) {
	return places::as_vector2(value);
}
Vector3 as_vector(const Variant &value, In3D) {
	return places::as_vector3(value);
}

double thinnest_of(const Vector2 &size) {
	return MIN(size.x, size.y);
}
double thinnest_of(const Vector3 &size) {
	return MIN(size.x, MIN(size.y, size.z));
}

class ShapeCast : public AnswersFromSpace<ShapeCast> {
	// No shape for a size that is none, of which the game maker is told.
	template <class Side>
	static RID shape_of(SCMachineBase *machine, SCMachineAction *action, const Kind *kind, queries::Query<Side> &query) {
		const StringName *setting = nullptr;
		if (kind->shape == Kind::BOX) {
			setting = &verbs::name_of<&Kind::size>();
			if (!checked::sound_or_warn(machine, action, kind->size, *setting)) {
				return RID();
			}
			const auto size = as_vector(kind->size, Side());
			if (thinnest_of(size) >= THINNEST) {
				return query.box(size);
			}
		} else {
			setting = &verbs::name_of<&Kind::radius>();
			const double radius = checked::number<&Kind::radius>(machine, action);
			if (radius >= THINNEST) {
				return query.round(radius);
			}
		}
		const String shown = verbs::setting_in_inspector(*setting);
		verbs::warn(machine, action,
				vformat("its %s leaves no room inside the shape, so nothing was found. Type more than 0 under %s%s.", shown, shown,
						kind->shape == Kind::BOX ? ", for each of its sides" : ""));
		return RID();
	}

	template <class Vector>
	static void nearest_first(queries::Hits<Vector> &hits, const Variant &from) {
		struct ByDistance {
			bool operator()(const queries::Hit<Vector> &a, const queries::Hit<Vector> &b) const { return a.distance < b.distance; }
		};
		for (queries::Hit<Vector> &hit : hits) {
			const Variant place = places::position_of(hit.get());
			hit.distance = place.get_type() != Variant::NIL ? places::distance_between(from, place) : 0.0;
		}
		hits.template sort_custom<ByDistance>();
		for (queries::Hit<Vector> &hit : hits) {
			hit.distance = 0.0;
		}
	}

	template <class Side>
	static void look(SCMachineBase *machine, SCMachineAction *action, const Kind *kind, const aim::Start &start, const Variant &way,
			queries::Hits<typename Side::Vector> &hits) {
		queries::Filter filter = aim::filter_of(machine, kind, start);
		filter.stopped_by_others = kind->stopped_by_others;
		queries::Query<Side> query(start.world, filter);
		const RID shape = query ? shape_of<Side>(machine, action, kind, query) : RID();
		if (!shape.is_valid()) {
			return;
		}
		const auto at = pose(start, kind->space == Kind::LOCAL, Side());
		const int most = kind->most > 0 ? int(MIN(kind->most, int64_t(queries::MOST))) : queries::MOST;
		query.touching(shape, at, 0.0, hits);
		nearest_first(hits, start.place);
		if (!hits.is_empty() && (!kind->store_place_in.is_empty() || !kind->store_normal_in.is_empty())) {
			query.place_first(shape, at, hits);
		}
		if (way.get_type() != Variant::NIL) {
			query.sweep(shape, at, as_vector(way, Side()), most, hits);
		}
		if (int(hits.size()) > most) {
			hits.resize(uint32_t(most));
		}
	}

	template <class Side>
	static void look_and_tell(SCMachineBase *machine, SCMachineAction *action, int index, const Kind *kind, const aim::Start &start, const Variant &way) {
		const StillHere here(machine);
		queries::Hits<typename Side::Vector> hits;
		if (start.place.get_type() != Variant::NIL) {
			look<Side>(machine, action, kind, start, way, hits);
		}
		const Array nodes = answers::nodes_of(hits);
		verbs::keep_each<&Kind::store_list_in, &Kind::store_count_in>(machine, action, { nodes.duplicate(), int64_t(hits.size()) });
		answers::tell_of_list<Kind>(machine, action, index, hits, nodes, here);
	}

public:
	static void answer(SCMachineBase *machine, SCMachineAction *action, int index) {
		const Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr) {
			return;
		}
		const aim::Start start = aim::start_of(machine, action, kind);
		const bool sweeps = start.place.get_type() != Variant::NIL && kind->distance > 0.0;
		const Variant way = sweeps ? aim::way_of(machine, action, kind, start, false) : Variant();
		if (start.in_2d) {
			look_and_tell<In2D>(machine, action, index, kind, start, way);
		} else {
			look_and_tell<In3D>(machine, action, index, kind, start, way);
		}
	}
};

const AddKinds added = {
	add_kind<SCShapeCastAction, ShapeCast>(),
};

} // namespace
