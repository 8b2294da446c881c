#include "steering/walking.hpp"

#include "action/places.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "character/body_keys.hpp"
#include "character/body_notes.hpp"
#include "character/facing_along.hpp"
#include "fast_lane/sc_fast_lane.hpp"
#include "machine/names.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/navigation_agent2d.hpp>
#include <godot_cpp/classes/navigation_agent3d.hpp>
#include <godot_cpp/classes/navigation_server3d.hpp>

namespace walking {

namespace {

constexpr double SHORTEST_DELTA = 0.0001;
// A goal handed over this many physics frames ago is no longer the one being followed.
constexpr int64_t AIM_LASTS = 2;
// The share of an agent's path distance by which a goal may move before the way is worked out anew.
constexpr double SAME_WAY = 0.25;
constexpr double LEAST_MOVE = 0.001;
constexpr uint64_t FRAMES_BETWEEN_TRIES = 30;
constexpr double NO_OFFSET = 0.00001;

void tell_of_floating(SCMachineBase *machine, const SCMachineAction *action, const CharacterBody2D *body) {
	const String kind = verbs::kind_in_palette(action);
	MakerWarnings::once_for(machine, vformat("falls_floating:%s:%s", kind, body->get_instance_id()),
			vformat("%s on %s has Falls ticked, but %s has its Motion Mode set to Floating, which is for games seen from above, so it does not fall. Untick "
					"Falls "
					"on the action, or for a side-on game, set the body's Motion Mode to Grounded.",
					kind, machine->name_in_messages(), body->get_name()));
}

double longest_step(double speed, double left, double delta) {
	return MIN(speed, left / MAX(delta, SHORTEST_DELTA));
}

// How high the agent's parent stands above the mesh, measured once and written into the agent. An offset that the game maker set
// is left alone and needs no lift.
real_t lift_of(NavigationAgent3D *agent) {
	const BodyKeys &keys = BodyKeys::shared();
	if (agent->has_meta(keys.height)) {
		return real_t(body_keys::number(agent, keys.height, 0.0));
	}
	const Node3D *parent = Object::cast_to<Node3D>(agent->get_parent());
	if (parent == nullptr || !parent->is_inside_tree() || Math::abs(agent->get_path_height_offset()) > NO_OFFSET) {
		return 0.0f;
	}
	NavigationServer3D *server = NavigationServer3D::get_singleton();
	const RID map = agent->get_navigation_map();
	if (!map.is_valid() || server->map_get_iteration_id(map) == 0) {
		return 0.0f;
	}
	const Vector3 place = parent->get_global_position();
	const Vector3 on_mesh = server->map_get_closest_point(map, place);
	// Godot 4.5 to 4.6: after the first change of a map the answer is the origin for a while.
	if (on_mesh == Vector3()) {
		return 0.0f;
	}
	const real_t height = MAX(place.y - on_mesh.y, real_t(0.0));
	agent->set_path_height_offset(-double(height));
	agent->set_meta(keys.height, double(height));
	return height;
}

Vector2 as_goal(NavigationAgent2D *, const Variant &goal) {
	return places::as_vector2(goal);
}
Vector3 as_goal(NavigationAgent3D *, const Variant &goal) {
	return places::as_vector3(goal);
}
// A way that was asked for before there was a mesh to measure on leads past the walker.
bool is_lifted_anew(NavigationAgent2D *) {
	return false;
}
bool is_lifted_anew(NavigationAgent3D *agent) {
	return !agent->has_meta(BodyKeys::shared().height) && lift_of(agent) > 0.0f;
}
Vector2 lifted(NavigationAgent2D *, const Vector2 &goal) {
	return goal;
}
Vector3 lifted(NavigationAgent3D *agent, const Vector3 &goal) {
	return goal + Vector3(0.0f, lift_of(agent), 0.0f);
}

template <class Agent>
void give_goal(Agent *agent, const Variant &goal) {
	const BodyKeys &keys = BodyKeys::shared();
	const int64_t frame = int64_t(Engine::get_singleton()->get_physics_frames());
	const auto wanted = as_goal(agent, goal);
	using Vector = std::remove_const_t<decltype(wanted)>;
	Array aim = agent->has_meta(keys.aim) ? Array(agent->get_meta(keys.aim)) : Array();
	if (aim.size() == 2) {
		const bool is_fresh = frame - int64_t(aim[0]) < AIM_LASTS;
		const double moved = double(Vector(aim[1]).distance_to(wanted));
		if (is_fresh && moved <= MAX(double(agent->get_path_desired_distance()) * SAME_WAY, LEAST_MOVE)) {
			aim[0] = frame;
			if (is_lifted_anew(agent)) {
				agent->set_target_position(lifted(agent, as_goal(agent, aim[1])));
			}
			return;
		}
		aim[0] = frame;
		aim[1] = wanted;
	} else {
		agent->set_meta(keys.aim, Array::make(frame, wanted));
	}
	agent->set_target_position(lifted(agent, wanted));
}

template <class Agent>
void ask_again(Agent *agent) {
	const uint64_t frame = Engine::get_singleton()->get_physics_frames();
	if ((frame + agent->get_instance_id()) % FRAMES_BETWEEN_TRIES == 0) {
		agent->set_target_position(agent->get_target_position());
	}
}

template <class Agent>
Variant next_of(Agent *agent, const Variant &goal) {
	give_goal(agent, goal);
	if (!agent->is_navigation_finished()) {
		return agent->get_next_path_position();
	}
	ask_again(agent);
	return goal;
}

void set_level_velocity(CharacterBody3D *body, const Vector3 &level) {
	body->set_velocity(Vector3(level.x, body->get_velocity().y, level.z));
}

// The shortcut for most enemies: no agent, so the goal is where to go.
bool steer_straight(SCMachineBase *machine, CharacterBody3D *body, const Vector3 &goal, const Pace &pace, double delta) {
	const Vector3 offset = goal - body->get_global_position();
	const Vector3 level(offset.x, 0.0f, offset.z);
	const double left = double(level.length());
	if (!(left > pace.stop_within)) {
		stand_still(machine, body, pace.falls, delta);
		return true;
	}
	set_level_velocity(body, level.normalized() * real_t(longest_step(pace.speed, left, delta)));
	if (pace.turns) {
		facing_along::turn(body, level, facing_along::weight(pace.turn_speed, delta));
	}
	machine->move_character(body, pace.falls, 0.0, delta);
	return false;
}

bool slides(Node *body) {
	return Object::cast_to<CharacterBody2D>(body) != nullptr || Object::cast_to<CharacterBody3D>(body) != nullptr ||
			body->has_method(MachineNames::shared().move_and_slide);
}

// Moves a node without physics, or sets the velocity of one with.
void push_on(Node2D *node_2d, const Vector2 &offset, double speed, const Pace &pace, double delta) {
	CharacterBody2D *body = Object::cast_to<CharacterBody2D>(node_2d);
	if (body == nullptr) {
		node_2d->set_global_position(node_2d->get_global_position() + offset.normalized() * real_t(speed * delta));
	} else if (pace.falls) {
		body_keys::keep_true(body, BodyKeys::shared().side_on);
		body->set_velocity(Vector2(real_t(SIGN(offset.x) * speed), body->get_velocity().y));
	} else {
		body->set_velocity(offset.normalized() * real_t(speed));
	}
}
void push_on(Node3D *node_3d, const Vector3 &offset, double speed, const Pace &, double delta) {
	const Vector3 level = Vector3(offset.x, 0.0f, offset.z).normalized();
	CharacterBody3D *body = Object::cast_to<CharacterBody3D>(node_3d);
	if (body == nullptr) {
		node_3d->set_global_position(node_3d->get_global_position() + level * real_t(speed * delta));
	} else {
		set_level_velocity(body, level * real_t(speed));
	}
}

bool steer_straight(SCMachineBase *machine, CharacterBody2D *body, const Vector2 &goal, const Pace &pace, double delta) {
	const Vector2 offset = goal - body->get_global_position();
	const double left = pace.falls ? Math::abs(double(offset.x)) : double(offset.length());
	if (!(left > pace.stop_within)) {
		stand_still(machine, body, pace.falls, delta);
		return true;
	}
	push_on(body, offset, longest_step(pace.speed, left, delta), pace, delta);
	if (pace.turns) {
		facing_along::turn(body, offset, facing_along::weight(pace.turn_speed, delta));
	}
	machine->move_character(body, pace.falls, 0.0, delta);
	return false;
}

void finish_step(SCMachineBase *machine, Node *node, bool falls, double delta) {
	if (slides(node)) {
		machine->move_character(node, falls, 0.0, delta);
	} else if (!node->has_meta(BodyKeys::shared().moved_by_position)) {
		SCFastLane::note_moved_by_position(node);
	}
}

} // namespace

Vector2 direction_in_2d(const Variant &given) {
	switch (given.get_type()) {
		case Variant::VECTOR2:
		case Variant::VECTOR2I:
			return given;
		case Variant::VECTOR3:
		case Variant::VECTOR3I: {
			const Vector3 whole = given;
			return Vector2(whole.x, whole.y);
		}
		case Variant::OBJECT: {
			const Object *object = given.get_validated_object();
			if (const Node2D *node_2d = Object::cast_to<Node2D>(object)) {
				return node_2d->get_global_position();
			}
			const Node3D *node_3d = Object::cast_to<Node3D>(object);
			const Vector3 place = node_3d != nullptr && node_3d->is_inside_tree() ? node_3d->get_global_position() : Vector3();
			return Vector2(place.x, place.y);
		}
		default:
			return Vector2();
	}
}

Vector3 direction_in_3d(const Variant &given) {
	if (given.get_type() == Variant::VECTOR3 || given.get_type() == Variant::VECTOR3I) {
		return given;
	}
	const Node3D *node_3d = given.get_type() == Variant::OBJECT ? Object::cast_to<Node3D>(given.get_validated_object()) : nullptr;
	return node_3d != nullptr && node_3d->is_inside_tree() ? node_3d->get_global_position() : Vector3();
}

bool is_in_3d(const Variant &given) {
	return given.get_type() == Variant::VECTOR3 || given.get_type() == Variant::VECTOR3I ||
			(given.get_type() == Variant::OBJECT && Object::cast_to<Node3D>(given.get_validated_object()) != nullptr);
}

bool really_falls(SCMachineBase *machine, const SCMachineAction *action, const CharacterBody2D *body, bool falls) {
	if (!falls) {
		return false;
	}
	if (body->get_motion_mode() != CharacterBody2D::MOTION_MODE_FLOATING) {
		return true;
	}
	tell_of_floating(machine, action, body);
	return false;
}

bool really_falls(SCMachineBase *, const SCMachineAction *, const CharacterBody3D *, bool falls) {
	return falls;
}

bool really_falls(SCMachineBase *machine, const SCMachineAction *action, const Node *node, bool falls) {
	const CharacterBody2D *body = falls ? Object::cast_to<CharacterBody2D>(node) : nullptr;
	return body != nullptr ? really_falls(machine, action, body, falls) : falls;
}

double distance(const Node *body, const Variant &place, bool falls) {
	if (const Node2D *node_2d = Object::cast_to<Node2D>(body)) {
		const Vector2 offset = places::as_vector2(place) - node_2d->get_global_position();
		const bool is_walker = falls && Object::cast_to<CharacterBody2D>(body) != nullptr;
		return is_walker ? Math::abs(double(offset.x)) : double(offset.length());
	}
	const Node3D *node_3d = Object::cast_to<Node3D>(body);
	if (node_3d == nullptr || !node_3d->is_inside_tree()) {
		return Math::INF;
	}
	const Vector3 offset = places::as_vector3(place) - node_3d->get_global_position();
	return double(Vector2(offset.x, offset.z).length());
}

void stand_still(SCMachineBase *machine, Node *body, bool falls, double delta) {
	if (CharacterBody3D *body_3d = Object::cast_to<CharacterBody3D>(body)) {
		set_level_velocity(body_3d, Vector3());
	} else if (CharacterBody2D *body_2d = Object::cast_to<CharacterBody2D>(body)) {
		body_2d->set_velocity(Vector2(0.0f, falls ? body_2d->get_velocity().y : 0.0f));
	}
	if (body != nullptr && slides(body)) {
		machine->move_character(body, falls, 0.0, delta);
	}
}

void send_agent(Node *agent, const Variant &goal) {
	if (NavigationAgent3D *agent_3d = Object::cast_to<NavigationAgent3D>(agent)) {
		give_goal(agent_3d, goal);
	} else if (NavigationAgent2D *agent_2d = Object::cast_to<NavigationAgent2D>(agent)) {
		give_goal(agent_2d, goal);
	}
}

void look_for_a_way_again(Node *agent) {
	if (NavigationAgent3D *agent_3d = Object::cast_to<NavigationAgent3D>(agent)) {
		ask_again(agent_3d);
	} else if (NavigationAgent2D *agent_2d = Object::cast_to<NavigationAgent2D>(agent)) {
		ask_again(agent_2d);
	}
}

Variant next_on_the_way(Node *body, const Variant &goal) {
	Node *agent = body_notes::agent_of(body);
	if (NavigationAgent3D *agent_3d = Object::cast_to<NavigationAgent3D>(agent)) {
		return next_of(agent_3d, goal);
	}
	NavigationAgent2D *agent_2d = Object::cast_to<NavigationAgent2D>(agent);
	return agent_2d != nullptr ? next_of(agent_2d, goal) : goal;
}

void face(Node *body, const Variant &direction, double turn_speed, double delta) {
	const double weight = facing_along::weight(turn_speed, delta);
	if (Node2D *node_2d = Object::cast_to<Node2D>(body)) {
		facing_along::turn(node_2d, places::as_vector2(direction), weight);
	} else if (Node3D *node_3d = Object::cast_to<Node3D>(body)) {
		facing_along::turn(node_3d, places::as_vector3(direction), weight);
	}
}

void step_toward(SCMachineBase *machine, Node *body, const Variant &aim, double left, const Pace &pace, double delta) {
	const double speed = longest_step(pace.speed, left, delta);
	const double weight = facing_along::weight(pace.turn_speed, delta);
	if (Node2D *node_2d = Object::cast_to<Node2D>(body)) {
		const Vector2 offset = places::as_vector2(aim) - node_2d->get_global_position();
		push_on(node_2d, offset, speed, pace, delta);
		if (pace.turns) {
			facing_along::turn(node_2d, offset, weight);
		}
	} else if (Node3D *node_3d = Object::cast_to<Node3D>(body)) {
		const Vector3 offset = places::as_vector3(aim) - node_3d->get_global_position();
		push_on(node_3d, offset, speed, pace, delta);
		if (pace.turns) {
			facing_along::turn(node_3d, offset, weight);
		}
	} else {
		return;
	}
	finish_step(machine, body, pace.falls, delta);
}

bool steer(SCMachineBase *machine, Node *body, const Variant &goal, const Pace &pace, double delta) {
	const bool has_a_place = Object::cast_to<Node2D>(body) != nullptr || Object::cast_to<Node3D>(body) != nullptr;
	if (goal.get_type() == Variant::NIL || !has_a_place || !body->is_inside_tree()) {
		return false;
	}
	if (CharacterBody3D *body_3d = Object::cast_to<CharacterBody3D>(body)) {
		if (goal.get_type() == Variant::VECTOR3 && body_notes::agent_of(body) == nullptr) {
			return steer_straight(machine, body_3d, goal, pace, delta);
		}
	} else if (CharacterBody2D *body_2d = Object::cast_to<CharacterBody2D>(body)) {
		if (goal.get_type() == Variant::VECTOR2 && body_notes::agent_of(body) == nullptr) {
			return steer_straight(machine, body_2d, goal, pace, delta);
		}
	}
	const double left = distance(body, goal, pace.falls);
	if (!(left > pace.stop_within)) {
		stand_still(machine, body, pace.falls, delta);
		return true;
	}
	// The agent tells a game of what it comes by.
	const StillHere here(machine);
	const Weak<Node> walker(body);
	const Variant aim = next_on_the_way(body, goal);
	if (here && walker.get() != nullptr) {
		step_toward(machine, body, aim, left, pace, delta);
	}
	return false;
}

} // namespace walking
