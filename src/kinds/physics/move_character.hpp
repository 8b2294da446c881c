#pragma once

// The kind that walks a character body about.

#include "action/kind_table.hpp"

class SCMoveCharacterAction : public SCMachineAction {
	SC_KIND(SCMoveCharacterAction, SCMachineAction)

public:
	SC_ENUM(Heading, A_DIRECTION, TOWARD_A_NODE, TOWARD_A_PLACE, A_VELOCITY)
	SC_ENUM(Space, GLOBAL, LOCAL, CAMERA, SIDE_ON)
	SC_ENUM(Feel, CUSTOM, TIGHT, FLOATY, HEAVY, ARCADE)

	NodePath body_path;
	Heading heading = A_DIRECTION;
	Variant direction = Vector2(0, 0);
	StringName direction_variable;
	Space space = GLOBAL;
	NodePath camera_path;
	NodePath toward_path;
	StringName toward_variable;
	Variant toward_place = Vector3(0, 0, 0);
	double stop_within = 1.0;
	StringName arrived_event;
	double speed = 5.0;
	StringName speed_variable;
	double acceleration = 0.0;
	bool turn_to_face = false;
	double turn_speed = 10.0;
	bool falls = true;
	double gravity = 0.0;
	double falls_faster_than_it_rises = 1.0;
	double floats_at_the_top = 1.0;
	double fastest_fall = 0.0;
	double slips_round_corners = 0.0;
	double acceleration_in_the_air = 0.0;

	// A way to fill in five settings at once, which is not kept: later edits by hand are never written over.
	void set_feel(int64_t feel);
	int64_t get_feel() const { return CUSTOM; }
	// By feel: how many times faster it falls than it rises, its share of gravity at the top, and as multiples of the speed its
	// acceleration, its acceleration in the air and its fastest fall.
	static Dictionary feels();
	// The share of gravity below which a vertical speed counts as being around the top of a jump.
	static double the_top_lasts() { return THE_TOP_LASTS; }
	static constexpr double THE_TOP_LASTS = 0.15;

	void warn_move(SCMachineBase *machine, int64_t index, int64_t what, Node *body);

	String summary_default() override;
};
