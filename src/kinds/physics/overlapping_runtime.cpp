// The compiled runtime of Get Overlapping. It asks the world with the area's own shapes, as an area itself learns of what is inside
// it only a frame or two later.

#include "action/add_kind.hpp"
#include "kinds/physics/overlapping.hpp"
#include "space/answers.hpp"

namespace {

using Kind = SCGetOverlappingAction;

class GetOverlapping : public AnswersFromSpace<GetOverlapping> {
	// False when no shape of it is switched on, which the game maker is told unless it was done on purpose.
	template <class Side>
	static bool has_a_shape(SCMachineBase *machine, SCMachineAction *action, typename Side::Area *area) {
		const PackedInt32Array owners = area->get_shape_owners();
		for (const int32_t owner : owners) {
			if (area->shape_owner_get_shape_count(uint32_t(owner)) > 0) {
				return true;
			}
		}
		verbs::warn(machine, action,
				vformat("%s has no shape, so nothing can be inside it. Add a CollisionShape%s below it and pick a shape there.", area->get_name(),
						Side::IS_2D ? "2D" : "3D"));
		return false;
	}

	template <class Side>
	static void find(SCMachineBase *machine, SCMachineAction *action, const Kind *kind, typename Side::Area *area, queries::Hits<typename Side::Vector> &hits) {
		using Hit = queries::Hit<typename Side::Vector>;
		if (!area->is_inside_tree() || !has_a_shape<Side>(machine, action, area)) {
			return;
		}
		queries::Filter filter;
		filter.mask = area->get_collision_mask();
		filter.bodies = kind->collide_with_bodies;
		filter.areas = kind->collide_with_areas;
		filter.only_group = kind->only_group;
		filter.except_group = kind->exclude_group;
		// No area is inside itself.
		filter.own[0] = area;
		if (kind->exclude_self) {
			const Node *whole = queries::collider_above(area->get_parent());
			filter.own[0] = whole != nullptr ? whole : area;
			filter.own[1] = queries::collider_above(machine->target_node());
		}
		queries::Query<Side> query(area, filter);
		if (!query) {
			return;
		}
		query.leave_out(area->get_rid());
		query.touching(area, 0.0, hits);
		const typename Side::Vector middle = area->get_global_position();
		for (uint32_t i = hits.size(); i > 0; i--) {
			Hit &hit = hits[i - 1];
			Node *node = hit.get();
			const auto *other = Object::cast_to<typename Side::Area>(node);
			if (node == nullptr || (other != nullptr && !other->is_monitorable())) {
				hits.remove_at(i - 1);
				continue;
			}
			const auto *placed = Object::cast_to<typename Side::Placed>(node);
			hit.distance = placed != nullptr ? double(middle.distance_to(placed->get_global_position())) : 0.0;
		}
		struct ByDistance {
			bool operator()(const Hit &a, const Hit &b) const { return a.distance < b.distance; }
		};
		hits.template sort_custom<ByDistance>();
	}

	template <class Side>
	static void find_and_tell(SCMachineBase *machine, SCMachineAction *action, int index, const Kind *kind, typename Side::Area *area) {
		const StillHere here(machine);
		queries::Hits<typename Side::Vector> hits;
		if (area != nullptr) {
			find<Side>(machine, action, kind, area, hits);
		}
		const Array nodes = answers::nodes_of(hits);
		verbs::keep_each<&Kind::store_list_in, &Kind::store_count_in>(machine, action, { nodes.duplicate(), nodes.size() });
		if (here && hits.is_empty()) {
			verbs::let_go(machine, setting_of<&Kind::store_node_in>(action));
		} else if (here) {
			verbs::keep_if_named<&Kind::store_node_in>(machine, action, hits[0].get());
		}
		if (here) {
			answers::tell<&Kind::hit_event, &Kind::nothing_event>(machine, action, index, answers::answer_of(hits), nodes);
		}
	}

public:
	static void answer(SCMachineBase *machine, SCMachineAction *action, int index) {
		const Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr) {
			return;
		}
		Node *node = verbs::node_or_warn<&Kind::area_path>(machine, action);
		if (auto *area_2d = Object::cast_to<Area2D>(node)) {
			find_and_tell<In2D>(machine, action, index, kind, area_2d);
			return;
		}
		auto *area_3d = Object::cast_to<Area3D>(node);
		if (node != nullptr && area_3d == nullptr) {
			verbs::warn_wrong_class(machine, action, node, "an Area2D or Area3D", verbs::name_of<&Kind::area_path>());
		}
		find_and_tell<In3D>(machine, action, index, kind, area_3d);
	}
};

const AddKinds added = {
	add_kind<SCGetOverlappingAction, GetOverlapping>(),
};

} // namespace
