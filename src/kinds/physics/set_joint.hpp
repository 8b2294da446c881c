#pragma once

// The kind that works a joint between two bodies.

#include "action/kind_table.hpp"

class SCSetJointAction : public SCMachineAction {
	SC_KIND(SCSetJointAction, SCMachineAction)

public:
	SC_ENUM(What, CONNECT, LET_GO, SET_A_VALUE)
	SC_ENUM(Place, WHERE_IT_IS, AT_THE_FIRST, AT_THE_SECOND, HALF_WAY)
	SC_ENUM(Which, LENGTH, REST_LENGTH, STIFFNESS, DAMPING, SOFTNESS, BIAS, LIMIT_ON, LOWEST_ANGLE, HIGHEST_ANGLE, LOWEST_DISTANCE, HIGHEST_DISTANCE, SWING,
			TWIST, MOTOR_ON, MOTOR_SPEED, MOTOR_STRENGTH, SPRING_ON, BODIES_COLLIDE)
	SC_ENUM(Axis, X, Y, Z)

	NodePath joint_path;
	What what = CONNECT;
	NodePath first_path;
	NodePath second_path;
	Place place = WHERE_IT_IS;
	bool bodies_collide = false;
	Which which = LENGTH;
	double value = 1.0;
	bool on = true;
	Axis axis = X;
	bool put_back_when_left = false;

	bool sets_a_number() const { return what == SET_A_VALUE && !is_a_switch(); }
	bool sets_a_switch() const { return what == SET_A_VALUE && is_a_switch(); }
	bool is_a_switch() const { return which == LIMIT_ON || which == MOTOR_ON || which == SPRING_ON || which == BODIES_COLLIDE; }

	String summary_default() override;
};
