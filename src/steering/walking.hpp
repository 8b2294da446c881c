#pragma once

// What every kind that walks a character needs: whether it falls, how it stands still, and how it steers toward a goal, along its
// navigation agent's way when it has one. Only for runtimes; nothing here is bound.

#include "action/kind_table.hpp"
#include "character/body_sides.hpp"

namespace walking {

// Of a speed of which 10 has a character round in about a fifth of a second.
inline constexpr Hint TURN_SPEED = { PROPERTY_HINT_RANGE, "0,30,0.1,or_greater,hide_slider" };

// A direction as a stick, a place or a node gives it; zero for anything else.
Vector2 direction_in_2d(const Variant &given);
Vector3 direction_in_3d(const Variant &given);
bool is_in_3d(const Variant &given);

inline bool is_2d(const CharacterBody2D *) {
	return true;
}
inline bool is_2d(const CharacterBody3D *) {
	return false;
}

// A 2D body set to float is seen from above and does not fall, of which the game maker is told once for each body and kind.
bool really_falls(SCMachineBase *machine, const SCMachineAction *action, const CharacterBody2D *body, bool falls);
bool really_falls(SCMachineBase *machine, const SCMachineAction *action, const CharacterBody3D *body, bool falls);
// Any other node falls as it is told, which means nothing.
bool really_falls(SCMachineBase *machine, const SCMachineAction *action, const Node *node, bool falls);

// How one kind walks in this step.
struct Pace {
	double speed = 0.0;
	double stop_within = 0.0;
	bool turns = false;
	double turn_speed = 0.0;
	bool falls = false;
};

// How far it is to a place on the ground it walks on: along x alone for a 2D body that falls, without height in 3D.
double distance(const Node *body, const Variant &place, bool falls);

void stand_still(SCMachineBase *machine, Node *body, bool falls, double delta);
// One step toward a goal, which is a place. True once it is there, and then it stands. Nothing is done without a goal or a place
// of its own.
bool steer(SCMachineBase *machine, Node *body, const Variant &goal, const Pace &pace, double delta);
// Toward a point of the way that an agent found, `left` before the end of it.
void step_toward(SCMachineBase *machine, Node *body, const Variant &aim, double left, const Pace &pace, double delta);
// Turns it toward a direction in the world by one step.
void face(Node *body, const Variant &direction, double turn_speed, double delta);

// Where the agent under the body is to be sent next for this goal, the goal itself without an agent or when it has arrived.
Variant next_on_the_way(Node *body, const Variant &goal);
// For an agent that has finished away from its goal, called on each step: it asks for no other way by itself, though a door may
// have opened meanwhile.
void look_for_a_way_again(Node *agent);
// The agent is given the goal, unless it has it already or one so near that the way would be the same.
void send_agent(Node *agent, const Variant &goal);

} // namespace walking
