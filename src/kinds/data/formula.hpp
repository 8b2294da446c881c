#pragma once

// The kind of the data category that works out a formula.

#include "action/kind_table.hpp"
#include "kinds/data/formula_reading.hpp"

class SCExpressionAction : public SCMachineAction {
	SC_KIND(SCExpressionAction, SCMachineAction)

public:
	String formula;
	StringName store_in;

	String summary_default() override;
	PackedStringArray variables_read_default() override;
	// The formula as it stands now, read when it is another one than before.
	Formula &read_formula();

private:
	Formula as_read;
};
