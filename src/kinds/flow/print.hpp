#pragma once

// Print.

#include "action/kind_table.hpp"

class SCPrintAction : public SCMachineAction {
	SC_KIND(SCPrintAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(Loudness, "Line,Warning,Error", AS_LINE, AS_WARNING, AS_ERROR)

	String text;
	Loudness loudness = AS_LINE;

	String summary_default() override;
	PackedStringArray variables_read_default() override;
};
