#pragma once

// The kind that eases a property to a value.

#include "action/easing.hpp"

class SCTweenPropertyAction : public SCMachineAction {
	SC_KIND(SCTweenPropertyAction, SCMachineAction)

public:
	NodePath node_path;
	String property;
	Variant to;
	bool relative = false;
	double duration = 1.0;
	Easings::Shape curve = Easings::SINE;
	Easings::Easing easing = Easings::EASE_IN_OUT;

	String summary_default() override;
	void read_variables_default(SCMachineBase *machine) override;
};
