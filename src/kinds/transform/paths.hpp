#pragma once

// Kinds of the transform category about paths drawn in the scene.

#include "action/easing.hpp"

class SCFollowPathAction : public SCMachineAction {
	SC_KIND(SCFollowPathAction, SCMachineAction)

public:
	SC_ENUM(AtTheEnd, STOP, START_OVER, GO_BACK)
	SC_ENUM(Start, AT_THE_BEGINNING, WHERE_IT_IS)

	NodePath node_path;
	NodePath along_path;
	double speed = 4.0;
	double duration = 0.0;
	Easings::Shape curve = Easings::LINEAR;
	Easings::Easing easing = Easings::EASE_IN_OUT;
	Start start = AT_THE_BEGINNING;
	AtTheEnd at_the_end = STOP;
	bool backward = false;
	bool turn_to_face = false;
	StringName end_event;

	String summary_default() override;
	String holds_its_state_default() override;
};

class SCPathProgressAction : public SCMachineAction {
	SC_KIND(SCPathProgressAction, SCMachineAction)

public:
	SC_ENUM(Measure, DISTANCE, SHARE, PERCENT)

	NodePath node_path;
	NodePath along_path;
	Measure measure = DISTANCE;
	StringName store_in;
	StringName store_length_in;
	StringName store_place_in;
	StringName store_off_path_in;

	String summary_default() override;
};
