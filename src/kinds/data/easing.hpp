#pragma once

// Kinds of the data category that move a variable to a value over time.

#include "action/easing.hpp"
#include "action/kind_table.hpp"

#include <godot_cpp/classes/curve.hpp>

class SCEaseAlongCurveAction : public SCMachineAction {
	SC_KIND(SCEaseAlongCurveAction, SCMachineAction)

public:
	StringName variable_name;
	Variant to = 1.0;
	double duration = 1.0;
	Ref<Curve> curve;

	String summary_default() override;
};

class SCEaseVariableAction : public SCMachineAction {
	SC_KIND(SCEaseVariableAction, SCMachineAction)

public:
	StringName variable_name;
	Variant to = 1.0;
	double duration = 1.0;
	Easings::Shape curve = Easings::SINE;
	Easings::Easing easing = Easings::EASE_IN_OUT;

	String summary_default() override;
};
