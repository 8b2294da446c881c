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

	bool goes_to_a_node() const;

	String summary_default() override;
	bool uses_run_mode_default() override { return false; }
	bool finishes_as_it_starts_default() override;
	bool works_after_finishing_default() override { return false; }
	bool needs_every_tick_default() override;

protected:
	void _validate_property(PropertyInfo &property) const;
};

class SCToGlobalAction : public SCMachineAction {
	SC_KIND(SCToGlobalAction, SCMachineAction)

public:
	NodePath node_path;
	Variant local_point = Vector3(0, 0, 0);
	StringName store_in;

	String summary_default() override;
	bool finishes_as_it_starts_default() override { return !repeats(); }
};

class SCToLocalAction : public SCMachineAction {
	SC_KIND(SCToLocalAction, SCMachineAction)

public:
	NodePath node_path;
	Variant global_point = Vector3(0, 0, 0);
	StringName store_in;

	String summary_default() override;
	bool finishes_as_it_starts_default() override { return !repeats(); }
};

// It stands beside what else the state does: it never holds the state up, and goes on until it is left.
class SCTranslateAction : public SCMachineAction {
	SC_KIND(SCTranslateAction, SCMachineAction)

public:
	SC_ENUM(Space, GLOBAL, LOCAL)

	NodePath node_path;
	Variant direction = Vector3(1, 0, 0);
	Space space = GLOBAL;
	double speed = 5.0;

	String summary_default() override;
	bool uses_run_mode_default() override { return false; }
	bool finishes_as_it_starts_default() override { return true; }
};
