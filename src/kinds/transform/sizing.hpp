#pragma once

// Kinds of the transform category that give a thing another size, or shake it for a moment.

#include "action/easing.hpp"

class SCPunchAction : public SCMachineAction {
	SC_KIND(SCPunchAction, SCMachineAction)

public:
	SC_ENUM(What, POSITION, ROTATION, SCALE)

	NodePath node_path;
	What what = SCALE;
	Variant amount = Vector3(0.3f, 0.3f, 0.3f);
	double duration = 0.5;
	int64_t wobbles = 3;
	bool wait_for_end = true;

	bool is_waited_for() const { return has_some<&Self::duration>() && has_some<&Self::wait_for_end>(); }

	String summary_default() override;
};

class SCScaleToAction : public SCMachineAction {
	SC_KIND(SCScaleToAction, SCMachineAction)

public:
	SC_ENUM(Measure, A_SIZE, TIMES_ITS_SIZE)

	NodePath node_path;
	Variant to = Vector3(1, 1, 1);
	Measure measure = A_SIZE;
	double duration = 0.5;
	Easings::Shape curve = Easings::SINE;
	Easings::Easing easing = Easings::EASE_IN_OUT;

	String summary_default() override;
};
