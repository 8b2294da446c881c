#pragma once

// Kinds of the physics category that set and read how fast a body moves.

#include "action/kind_table.hpp"

class SCGetVelocityAction : public SCMachineAction {
	SC_KIND(SCGetVelocityAction, SCMachineAction)

public:
	SC_ENUM(Space, GLOBAL, LOCAL)

	NodePath body_path;
	Space space = GLOBAL;
	StringName store_velocity_in;
	StringName store_speed_in;
	StringName store_direction_in;
	StringName store_flat_speed_in;
	StringName store_rising_in;
	StringName store_forward_in;
	StringName store_turning_in;

	String summary_default() override;
};

class SCSetVelocityAction : public SCMachineAction {
	SC_KIND(SCSetVelocityAction, SCMachineAction)

public:
	SC_ENUM(What, THE_VELOCITY, A_SPEED_AND_A_DIRECTION, HOW_FAST_IT_TURNS)
	SC_ENUM(How, SET, ADD)
	SC_ENUM(Space, GLOBAL, LOCAL)

	NodePath body_path;
	What what = THE_VELOCITY;
	How how = SET;
	Variant velocity = Vector3(0, 0, 0);
	double speed = 5.0;
	bool set_x = true;
	bool set_y = true;
	bool set_z = true;
	Space space = GLOBAL;
	double turn_speed = 90.0;
	Vector3 turn_axis = Vector3(0, 1, 0);

	String summary_default() override;
};
