#pragma once

// The kind of the data category that does arithmetic.

#include "action/kind_table.hpp"

class SCMathAction : public SCMachineAction {
	SC_KIND(SCMathAction, SCMachineAction)

public:
	SC_ENUM(Operation, ADD, SUBTRACT, MULTIPLY, DIVIDE, MIN, MAX, POW, ABS, ROUND, FLOOR, CEIL, MODULO, SQRT, SIGN, LERP, MOVE_TOWARD, WRAP, ANGLE_DIFFERENCE,
			SINE, COSINE, TANGENT, ANGLE_OF_DIRECTION)

	Operation operation = ADD;
	double first = 0.0;
	StringName first_variable;
	double second = 1.0;
	StringName second_variable;
	double amount = 0.5;
	StringName store_in;
	bool per_second = false;

	String summary_default() override;
	void warn_nowhere_to_store(SCMachineBase *machine, int index);
	// What a division by zero comes to.
	double by_zero(SCMachineBase *machine, double divided);
};
