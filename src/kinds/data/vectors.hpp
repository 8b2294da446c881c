#pragma once

// Kinds of the data category that work with directions and places, in 2D and in 3D.

#include "action/kind_table.hpp"

class SCGetVectorComponentsAction : public SCMachineAction {
	SC_KIND(SCGetVectorComponentsAction, SCMachineAction)

public:
	Variant vector = Vector3();
	StringName store_x_in;
	StringName store_y_in;
	StringName store_z_in;
	StringName store_length_in;

	String summary_default() override;
};

class SCRandomVectorAction : public SCMachineAction {
	SC_KIND(SCRandomVectorAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(What, "A Direction,A Place In A Circle,A Place On A Circle,A Place In A Box", DIRECTION, IN_A_CIRCLE, ON_A_CIRCLE, IN_A_BOX)

	What what = DIRECTION;
	Variant center = Vector3();
	double radius = 5.0;
	Variant size = Vector3(10, 0, 10);
	bool keep_level = true;
	StringName store_in;

	String summary_default() override;
};

class SCSetVectorComponentsAction : public SCMachineAction {
	SC_KIND(SCSetVectorComponentsAction, SCMachineAction)

public:
	SC_ENUM(Part, X, Y, Z)
	SC_ENUM(Operation, SET, ADD, MULTIPLY)

	StringName variable_name;
	Part part = X;
	Operation operation = SET;
	double value = 0.0;
	bool per_second = false;

	String summary_default() override;
};

class SCVectorAction : public SCMachineAction {
	SC_KIND(SCVectorAction, SCMachineAction)

public:
	SC_ENUM(Operation, ADD, SUBTRACT, MULTIPLY, DIVIDE, SCALE, LENGTH, DISTANCE, DIRECTION_TO, NORMALIZE, SET_LENGTH, LIMIT_LENGTH, LERP, MOVE_TOWARD, TURN,
			ANGLE_BETWEEN, DOT, CROSS, BOUNCE, SLIDE, SNAP)

	Operation operation = ADD;
	Variant first = Vector3();
	Variant second = Vector3();
	double amount = 1.0;
	bool per_second = false;
	StringName store_in;

	String summary_default() override;
};
