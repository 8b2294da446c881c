#pragma once

// The kind that drives a vehicle or a character body about.

#include "action/kind_table.hpp"

class SCDriveAction : public SCMachineAction {
	SC_KIND(SCDriveAction, SCMachineAction)

public:
	NodePath body_path;
	StringName accelerate_input = "Key: W";
	StringName reverse_input = "Key: S";
	StringName left_input = "Key: A";
	StringName right_input = "Key: D";
	double top_speed = 20.0;
	double acceleration = 10.0;
	double turn_speed = 120.0;
	double turn_at_top_speed = 1.0;
	double engine_force = 300.0;
	double steering_degrees = 30.0;
	StringName handbrake_input;
	double grip = 20.0;
	double handbrake_grip = 1.6;
	double brake_strength = 2.0;
	double sideways_scrub = 1.2;
	double handbrake_turn = 1.5;
	NodePath body_model_path;
	double lean_degrees = 6.0;
	StringName store_speed_in;
	StringName store_slide_in;
	double pull = 0.0;
	double crash_share = 0.25;
	StringName crash_event;
	StringName store_crash_in;

	void warn_drive(SCMachineBase *machine, int64_t index, int64_t what, Node *body);

	String summary_default() override;
};
