#include "kinds/ai/random_places.hpp"

#include "action/places.hpp"
#include "character/body_notes.hpp"
#include "fast_lane/spots.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/navigation_agent2d.hpp>
#include <godot_cpp/classes/navigation_agent3d.hpp>
#include <godot_cpp/classes/navigation_server2d.hpp>
#include <godot_cpp/classes/navigation_server3d.hpp>
#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/classes/world2d.hpp>
#include <godot_cpp/classes/world3d.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace random_places {

namespace {

// What is drawn off the mesh may be moved out of reach.
constexpr int TRIES = 8;
constexpr uint32_t EVERY_LAYER = 1;

struct MeshNames {
	StringName script = "quillstead_move";
	StringName has_mesh_2d = "has_mesh_2d";
	StringName has_mesh_3d = "has_mesh_3d";
};

bool ask_script(const StringName &method, const RID &map) {
	return CompanionScripts::call(NativeNames::of<MeshNames>().script, method, Array::make(map)).booleanize();
}

struct In2D {
	using Vector = Vector2;
	using Agent = NavigationAgent2D;
	static constexpr spots::Side SIDE = spots::IN_2D;
	static NavigationServer2D *server() { return NavigationServer2D::get_singleton(); }
	static RID world_map(const Node2D *node) { return node->get_world_2d().is_valid() ? node->get_world_2d()->get_navigation_map() : RID(); }
	static bool has_mesh(const RID &map) { return ask_script(NativeNames::of<MeshNames>().has_mesh_2d, map); }
	static Vector2 from_spot(const Vector3 &spot) { return Vector2(spot.x, spot.y); }
	static Vector3 as_spot(const Vector2 &place) { return Vector3(place.x, place.y, 0.0f); }
};

struct In3D {
	using Vector = Vector3;
	using Agent = NavigationAgent3D;
	static constexpr spots::Side SIDE = spots::IN_3D;
	static NavigationServer3D *server() { return NavigationServer3D::get_singleton(); }
	static RID world_map(const Node3D *node) { return node->get_world_3d().is_valid() ? node->get_world_3d()->get_navigation_map() : RID(); }
	static bool has_mesh(const RID &map) { return ask_script(NativeNames::of<MeshNames>().has_mesh_3d, map); }
	static Vector3 from_spot(const Vector3 &spot) { return spot; }
	static Vector3 as_spot(const Vector3 &place) { return place; }
};

// The end of the way there, or as near as it leads.
template <class Side, class Vector>
bool reached_on_mesh(const RID &map, uint32_t layers, const Vector &from, const Vector &wanted, Vector &reached) {
	auto *server = Side::server();
	if (server->map_get_iteration_id(map) == 0) {
		return false;
	}
	const Vector on_mesh = server->map_get_closest_point(map, wanted);
	// Godot 4.5 to 4.6: after the first change of a map the answer is the origin for a while.
	if (on_mesh == Vector()) {
		return false;
	}
	const auto way = server->map_get_path(map, from, on_mesh, true, layers);
	reached = way.is_empty() ? on_mesh : way[way.size() - 1];
	return true;
}

template <class Side, class Body>
Variant draw(Body *body, const Vector3 &home, double radius) {
	const auto *agent = Object::cast_to<typename Side::Agent>(body_notes::agent_of(body));
	const RID map = agent != nullptr ? agent->get_navigation_map() : Side::world_map(body);
	const uint32_t layers = agent != nullptr ? agent->get_navigation_layers() : EVERY_LAYER;
	Vector3 spot = spots::random_around(home, radius, Side::SIDE);
	if (!Side::has_mesh(map)) {
		return Side::from_spot(spot);
	}
	const auto from = body->get_global_position();
	typename Side::Vector reached;
	for (int i = 0; i < TRIES; i++) {
		if (!reached_on_mesh<Side>(map, layers, from, Side::from_spot(spot), reached)) {
			return Side::from_spot(spot);
		}
		if (spots::ground_distance(home, Side::as_spot(reached), Side::SIDE) <= radius) {
			break;
		}
		spot = spots::random_around(home, radius, Side::SIDE);
	}
	return reached;
}

} // namespace

Variant near(Node *body, const Variant &home, double radius, bool on_a_line) {
	Vector3 middle;
	if (body == nullptr || !body->is_inside_tree() || !spots::from_value(home, middle)) {
		return Variant();
	}
	if (auto *node_2d = Object::cast_to<Node2D>(body)) {
		if (on_a_line) {
			return Vector2(middle.x + real_t(UtilityFunctions::randf_range(-radius, radius)), middle.y);
		}
		return draw<In2D>(node_2d, middle, radius);
	}
	auto *node_3d = Object::cast_to<Node3D>(body);
	return node_3d != nullptr ? draw<In3D>(node_3d, middle, radius) : Variant();
}

bool has_mesh(const Node *body) {
	if (body == nullptr || !body->is_inside_tree()) {
		return false;
	}
	if (const auto *node_2d = Object::cast_to<Node2D>(body)) {
		return In2D::has_mesh(In2D::world_map(node_2d));
	}
	const auto *node_3d = Object::cast_to<Node3D>(body);
	return node_3d != nullptr && In3D::has_mesh(In3D::world_map(node_3d));
}

} // namespace random_places
