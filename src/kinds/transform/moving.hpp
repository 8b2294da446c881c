#pragma once

// Kinds of the transform category that move things, and that tell a place in one space as a place in another.

#include "action/easing.hpp"

class SCMoveToAction : public SCMachineAction {
	SC_KIND(SCMoveToAction, SCMachineAction)

public:
	SC_ENUM(Space, GLOBAL, LOCAL, FROM_WHERE_IT_IS, ITS_OWN_WAY)

	NodePath node_path;
	NodePath to_path;
	bool follow_it = false;
	Variant to = Vector3(0, 0, 0);
	Space space = GLOBAL;
	double duration = 1.0;
	double speed = 0.0;
	Easings::Shape curve = Easings::SINE;
	Easings::Easing easing = Easings::EASE_IN_OUT;

	bool goes_to_a_node() const { return has_some<&Self::to_path>(); }

	String summary_default() override;
	// Only keeping after a node is done by updates; any other move is a tween's.
	bool needs_every_tick_default() override { return goes_to_a_node() && has_some<&Self::follow_it>(); }
};

class SCToGlobalAction : public SCMachineAction {
	SC_KIND(SCToGlobalAction, SCMachineAction)

public:
	NodePath node_path;
	Variant local_point = Vector3(0, 0, 0);
	StringName store_in;

	String summary_default() override;
};

class SCToLocalAction : public SCMachineAction {
	SC_KIND(SCToLocalAction, SCMachineAction)

public:
	NodePath node_path;
	Variant global_point = Vector3(0, 0, 0);
	StringName store_in;

	String summary_default() override;
};

class SCTranslateAction : public SCMachineAction {
	SC_KIND(SCTranslateAction, SCMachineAction)

public:
	SC_ENUM(Space, GLOBAL, LOCAL)

	NodePath node_path;
	Variant direction = Vector3(1, 0, 0);
	Space space = GLOBAL;
	double speed = 5.0;

	String summary_default() override;
};
