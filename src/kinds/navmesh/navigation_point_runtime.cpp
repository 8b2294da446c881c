// The compiled runtime of Get Navigation Point.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "character/body_notes.hpp"
#include "kinds/navmesh/navigation_point.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/navigation_agent2d.hpp>
#include <godot_cpp/classes/navigation_agent3d.hpp>
#include <godot_cpp/classes/navigation_region2d.hpp>
#include <godot_cpp/classes/navigation_region3d.hpp>
#include <godot_cpp/classes/navigation_server2d.hpp>
#include <godot_cpp/classes/navigation_server3d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/time.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/classes/world2d.hpp>
#include <godot_cpp/classes/world3d.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

using Kind = SCGetNavigationPointAction;

// So often a place is drawn before none is thought to be there.
constexpr int MOST_TRIES = 48;
// A mesh that has been there for so long without a point to it is none. The threads that build it know nothing of the game's time.
constexpr int64_t PATIENCE_MSEC = 1000;
constexpr uint32_t EVERYBODYS_LAYER = 1;

struct Names {
	StringName waits_since = "waits_since";
};

const Names &names() {
	return NativeNames::of<Names>();
}

RID map_of(const CanvasItem *item) {
	const Ref<World2D> world = item->get_world_2d();
	return world.is_valid() ? world->get_navigation_map() : RID();
}
RID map_of(const Node3D *node) {
	const Ref<World3D> world = node->get_world_3d();
	return world.is_valid() ? world->get_navigation_map() : RID();
}

Vector2 offset_within(const Vector2 &, double distance) {
	const double turn = UtilityFunctions::randf() * Math::TAU;
	return Vector2(real_t(Math::cos(turn)), real_t(Math::sin(turn))) * real_t(distance * Math::sqrt(UtilityFunctions::randf()));
}
// On the level.
Vector3 offset_within(const Vector3 &, double distance) {
	const Vector2 level = offset_within(Vector2(), distance);
	return Vector3(level.x, 0.0f, level.y);
}

Vector2 on_the_level(const Vector2 &offset) {
	return offset;
}
Vector2 on_the_level(const Vector3 &offset) {
	return Vector2(offset.x, offset.z);
}

enum Outcome {
	FOUND,
	NOTHING,
	NOT_YET,
};

// A level that was loaded in this frame hands its regions to the map in the next.
bool has_regions(const CanvasItem *item) {
	return verbs::first_of<NavigationRegion2D>(item->get_tree()->get_root()) != nullptr;
}
bool has_regions(const Node3D *node) {
	return verbs::first_of<NavigationRegion3D>(node->get_tree()->get_root()) != nullptr;
}

// One look at the mesh of a 2D or a 3D world.
template <class Server, class Vector>
class Look {
	Server *server = Server::get_singleton();
	RID map;
	Vector near;
	uint32_t layers;

	bool can_be_walked_to(const Vector &place, double slack) const {
		const auto path = server->map_get_path(map, near, place, false, layers);
		return !path.is_empty() && double(path[path.size() - 1].distance_to(place)) <= slack;
	}

public:
	Look(const RID &of_map, const Vector &around, uint32_t of_layers) : map(of_map), near(around), layers(of_layers) {}

	template <class World>
	Outcome prepare(const World *node) const {
		if (!map.is_valid()) {
			return NOTHING;
		}
		if (server->map_get_regions(map).is_empty()) {
			return has_regions(node) ? NOT_YET : NOTHING;
		}
		// Right after a mesh was added, the engine still answers with the origin.
		const bool is_built = server->map_get_iteration_id(map) > 0 && server->map_get_closest_point_owner(map, near).is_valid();
		return is_built ? FOUND : NOT_YET;
	}

	Vector nearest() const { return server->map_get_closest_point(map, near); }

	// Drawn in turns from around the near point, which suits a large mesh, and from all of the mesh, which suits a small one.
	bool draw(double within, Vector &place) const {
		const double slack = server->map_get_cell_size(map);
		for (int i = 0; i < MOST_TRIES; i++) {
			if (i % 2 == 0 && Math::is_finite(within)) {
				const Vector aimed = near + offset_within(near, within);
				place = server->map_get_closest_point(map, aimed);
				if (double(on_the_level(place - aimed).length()) > slack) {
					continue;
				}
			} else {
				place = server->map_get_random_point(map, layers, true);
			}
			if (double(place.distance_to(near)) <= within && can_be_walked_to(place, slack)) {
				return true;
			}
		}
		place = nearest();
		return double(place.distance_to(near)) <= within;
	}
};

uint32_t layers_of(const Node *node) {
	const Node *agent = body_notes::agent_of(node);
	if (const NavigationAgent2D *agent_2d = Object::cast_to<NavigationAgent2D>(agent)) {
		return agent_2d->get_navigation_layers();
	}
	const NavigationAgent3D *agent_3d = Object::cast_to<NavigationAgent3D>(agent);
	return agent_3d != nullptr ? agent_3d->get_navigation_layers() : EVERYBODYS_LAYER;
}

bool is_given(const Variant &near) {
	return near.get_type() == Variant::OBJECT ? near.get_validated_object() != nullptr : values::is_vector(near) && places::as_vector3(near) != Vector3();
}

class GetNavigationPoint : public SCNativeAction {
	// The node whose world it is; null, of which the game maker is told, when there is none.
	static Node *node_from(SCMachineBase *machine, Kind *kind, int index) {
		Node *node = values::node_of(machine, kind->from_path);
		if (node != nullptr && places::has_a_place(node)) {
			return node;
		}
		verbs::say<&Kind::warn>(kind, machine, index, node != nullptr ? Kind::NO_PLACE : Kind::NO_NODE, node);
		return nullptr;
	}

	template <class Server, class Vector, class World>
	static Outcome look(SCMachineBase *machine, const Kind *kind, const World *node, const Vector &near, Variant &found) {
		const Look<Server, Vector> look(map_of(node), near, layers_of(node));
		const Outcome outcome = look.prepare(node);
		if (outcome != FOUND) {
			return outcome;
		}
		Vector place;
		if (kind->pick == Kind::THE_NEAREST_SPOT) {
			place = look.nearest();
		} else if (!look.draw(values::number_of(machine, kind->within, kind->within_variable), place)) {
			return NOTHING;
		}
		found = place;
		return FOUND;
	}

	static Outcome pick(SCMachineBase *machine, const Kind *kind, const Node *node, Variant &found) {
		const Variant given = values::value_of(machine, kind->near, kind->near_variable);
		const Variant near = is_given(given) ? given : places::position_of(node);
		if (!spaces::place_or_warn(machine, kind, near, verbs::name_of<&Kind::near>())) {
			return NOTHING;
		}
		if (const Node3D *node_3d = Object::cast_to<Node3D>(node)) {
			return look<NavigationServer3D>(machine, kind, node_3d, places::as_vector3(near), found);
		}
		return look<NavigationServer2D>(machine, kind, Object::cast_to<CanvasItem>(node), places::as_vector2(near), found);
	}

	static bool still_waits(SCMachineBase *machine, int index) {
		Dictionary slot = machine->slot(index);
		const int64_t present = int64_t(Time::get_singleton()->get_ticks_msec());
		// Another run of the game may have saved it.
		const int64_t since = MIN(int64_t(slot.get(names().waits_since, present)), present);
		slot[names().waits_since] = since;
		return present - since < PATIENCE_MSEC;
	}

	static void work(SCMachineBase *machine, SCMachineAction *action, int index) {
		Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr) {
			machine->finish(index);
			return;
		}
		const Ref<Kind> held(kind);
		const StillHere here(machine);
		if (kind->store_in.is_empty()) {
			verbs::say<&Kind::warn>(kind, machine, index, Kind::NOWHERE_TO_PUT_IT, Variant());
		}
		const Node *node = here ? node_from(machine, kind, index) : nullptr;
		if (!here) {
			return;
		}
		Variant found;
		const Outcome outcome = node != nullptr && node->is_inside_tree() ? pick(machine, kind, node, found) : NOTHING;
		if (outcome == NOT_YET && still_waits(machine, index)) {
			return;
		}
		if (outcome == FOUND) {
			verbs::keep_if_named<&Kind::store_in>(machine, action, found);
		} else {
			verbs::send(machine, kind->nothing_event);
		}
		if (here) {
			machine->finish(index);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->slot(index).erase(names().waits_since);
		work(machine, action, index);
	}
	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override { work(machine, action, index); }
};

const AddKinds added = {
	add_kind<SCGetNavigationPointAction, GetNavigationPoint>(),
};

} // namespace
