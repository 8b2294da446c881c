#pragma once

// Whether there is a way to a place for somebody who walks with a navigation agent, and whether they are there. The engine's own
// answers take the height of a walker for a miss, and a way that it has not found yet for one that ends at the origin.

#include <godot_cpp/classes/navigation_agent2d.hpp>
#include <godot_cpp/classes/navigation_agent3d.hpp>
#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>

using namespace godot;

namespace reaching {

// Whether the agent's map answers at all.
bool has_a_map(const NavigationAgent2D *agent);
bool has_a_map(const NavigationAgent3D *agent);
// Whether there are regions in it that the engine has not got round to, so that no way does not mean that there is none.
bool is_being_built(const NavigationAgent2D *agent);
bool is_being_built(const NavigationAgent3D *agent);

// Whether the way the agent has found ends where it was sent.
bool is_reachable(NavigationAgent2D *agent);
bool is_reachable(NavigationAgent3D *agent);
// The same for a place it was not sent to, which costs a search.
bool is_reachable(const NavigationAgent2D *agent, const Vector2 &place);
bool is_reachable(const NavigationAgent3D *agent, const Vector3 &place);

// Whether the body is as near as the agent wants to get to the place that the agent was sent to. `falls` leaves out the height of
// a 2D body that cannot change it.
bool is_there(NavigationAgent2D *agent, const Node2D *body, const Vector2 &place, bool falls);
bool is_there(NavigationAgent3D *agent, const Node3D *body, const Vector3 &place, bool falls);
// The same of the node that the agent is under, for any place.
bool is_at(const NavigationAgent2D *agent, const Vector2 &place);
bool is_at(const NavigationAgent3D *agent, const Vector3 &place);

} // namespace reaching
