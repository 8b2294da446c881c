#include "steering/reaching.hpp"

#include "character/body_keys.hpp"
#include "steering/walking.hpp"

#include <godot_cpp/classes/navigation_server2d.hpp>
#include <godot_cpp/classes/navigation_server3d.hpp>

namespace reaching {

namespace {

// How high its parent stands above the way that the agent goes.
real_t lift_of(const NavigationAgent3D *agent) {
	return real_t(body_keys::number(agent, BodyKeys::shared().height, Math::abs(double(agent->get_path_height_offset()))));
}

bool is_near(const Vector2 &from, const Vector2 &to, double within, double) {
	return double(from.distance_to(to)) <= within;
}
bool is_near(const Vector3 &from, const Vector3 &to, double within, double lift) {
	const Vector3 offset = to - from;
	return double(Vector2(offset.x, offset.z).length()) <= within && Math::abs(double(offset.y)) <= within + lift;
}

double height_between(const Vector2 &, const Vector2 &) {
	return 0.0;
}
double height_between(const Vector3 &first, const Vector3 &second) {
	return Math::abs(double(first.y) - double(second.y));
}

// Whether the point it makes for is the last one of its way.
template <class Agent>
bool is_on_last_leg(Agent *agent) {
	return !agent->get_current_navigation_path().is_empty() && agent->get_next_path_position().is_equal_approx(agent->get_final_position());
}

template <class Server, class Agent>
bool has_been_built(const Agent *agent) {
	const RID map = agent->get_navigation_map();
	return map.is_valid() && Server::get_singleton()->map_get_iteration_id(map) > 0;
}

// The regions are built first, and the map out of them afterwards, each on a thread of its own.
template <class Server, class Agent, class Vector>
bool awaits_regions(const Agent *agent, const Vector &anywhere) {
	Server *server = Server::get_singleton();
	const RID map = agent->get_navigation_map();
	if (!map.is_valid()) {
		return false;
	}
	const TypedArray<RID> regions = server->map_get_regions(map);
	for (int64_t i = 0; i < regions.size(); i++) {
		const RID region = regions[i];
		if (server->region_get_enabled(region) && server->region_get_iteration_id(region) == 0) {
			return true;
		}
	}
	return !regions.is_empty() && (!has_been_built<Server>(agent) || !server->map_get_closest_point_owner(map, anywhere).is_valid());
}

template <class Server, class Parent, class Agent, class Vector>
bool finds_a_way(const Agent *agent, const Vector &place) {
	const Parent *parent = Object::cast_to<Parent>(agent->get_parent());
	if (parent == nullptr || !parent->is_inside_tree() || !place.is_finite() || !has_been_built<Server>(agent)) {
		return false;
	}
	const Vector from = parent->get_global_position();
	const auto path = Server::get_singleton()->map_get_path(agent->get_navigation_map(), from, place, false, agent->get_navigation_layers());
	return !path.is_empty() && is_near(path[path.size() - 1], place, agent->get_target_desired_distance(), height_between(path[0], from));
}

// How high its parent stands above the mesh, also when the agent was never sent anywhere.
double height_of(const NavigationAgent3D *agent, const Node3D *parent) {
	const real_t lift = lift_of(agent);
	if (lift > 0.0f || !has_been_built<NavigationServer3D>(agent)) {
		return double(lift);
	}
	NavigationServer3D *server = NavigationServer3D::get_singleton();
	const RID map = agent->get_navigation_map();
	const Vector3 from = parent->get_global_position();
	// Without an owner the answer is no point of any mesh.
	return server->map_get_closest_point_owner(map, from).is_valid() ? height_between(server->map_get_closest_point(map, from), from) : 0.0;
}

} // namespace

bool has_a_map(const NavigationAgent2D *agent) {
	return has_been_built<NavigationServer2D>(agent);
}

bool has_a_map(const NavigationAgent3D *agent) {
	return has_been_built<NavigationServer3D>(agent);
}

bool is_being_built(const NavigationAgent2D *agent) {
	return awaits_regions<NavigationServer2D>(agent, Vector2());
}

bool is_being_built(const NavigationAgent3D *agent) {
	return awaits_regions<NavigationServer3D>(agent, Vector3());
}

bool is_reachable(NavigationAgent2D *agent) {
	const bool ends_there = agent->is_target_reachable();
	return ends_there && !agent->get_current_navigation_path().is_empty();
}

bool is_reachable(NavigationAgent3D *agent) {
	const bool ends_there = agent->is_target_reachable();
	return !agent->get_current_navigation_path().is_empty() &&
			(ends_there || is_near(agent->get_final_position(), agent->get_target_position(), agent->get_target_desired_distance(), double(lift_of(agent))));
}

bool is_reachable(const NavigationAgent2D *agent, const Vector2 &place) {
	return finds_a_way<NavigationServer2D, Node2D>(agent, place);
}

bool is_reachable(const NavigationAgent3D *agent, const Vector3 &place) {
	return finds_a_way<NavigationServer3D, Node3D>(agent, place);
}

bool is_there(NavigationAgent2D *agent, const Node2D *body, const Vector2 &place, bool falls) {
	const double within = agent->get_target_desired_distance();
	return double(body->get_global_position().distance_to(place)) <= within ||
			(falls && walking::distance(body, place, true) <= within && is_on_last_leg(agent));
}

bool is_there(NavigationAgent3D *agent, const Node3D *body, const Vector3 &place, bool) {
	const double within = agent->get_target_desired_distance();
	const Vector3 from = body->get_global_position();
	return is_near(from, place, within, 0.0) || (is_near(from, place, within, double(lift_of(agent))) && is_on_last_leg(agent));
}

bool is_at(const NavigationAgent2D *agent, const Vector2 &place) {
	const Node2D *parent = Object::cast_to<Node2D>(agent->get_parent());
	return parent != nullptr && is_near(parent->get_global_position(), place, agent->get_target_desired_distance(), 0.0);
}

bool is_at(const NavigationAgent3D *agent, const Vector3 &place) {
	const Node3D *parent = Object::cast_to<Node3D>(agent->get_parent());
	return parent != nullptr && parent->is_inside_tree() &&
			is_near(parent->get_global_position(), place, agent->get_target_desired_distance(), height_of(agent, parent));
}

} // namespace reaching
