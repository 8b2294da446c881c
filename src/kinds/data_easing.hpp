#pragma once

// Kinds of the data category that move a variable to a value over time.

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
	bool uses_run_mode_default() override { return false; }
	bool finishes_as_it_starts_default() override;
	bool works_after_finishing_default() override { return false; }
	PackedStringArray variables_written_default() override;
};

class SCEaseVariableAction : public SCMachineAction {
	SC_KIND(SCEaseVariableAction, SCMachineAction)

public:
	// In the engine's own order, as they are handed to its tweens.
	SC_ENUM(Shape, LINEAR, SINE, QUINT, QUART, QUAD, EXPO, ELASTIC, CUBIC, CIRC, BOUNCE, BACK, SPRING)
	SC_ENUM(Easing, EASE_IN, EASE_OUT, EASE_IN_OUT, EASE_OUT_IN)

	StringName variable_name;
	Variant to = 1.0;
	double duration = 1.0;
	Shape curve = SINE;
	Easing easing = EASE_IN_OUT;

	String summary_default() override;
	bool uses_run_mode_default() override { return false; }
	bool finishes_as_it_starts_default() override;
	bool works_after_finishing_default() override { return false; }
	PackedStringArray variables_written_default() override;
};
