#pragma once

// The kind of the data category that writes a time the way a clock shows it.

#include "action/kind_table.hpp"

class SCFormatTimeAction : public SCMachineAction {
	SC_KIND(SCFormatTimeAction, SCMachineAction)

public:
	SC_ENUM(Style, MINUTES_SECONDS, MINUTES_TENTHS, MINUTES_HUNDREDTHS, SECONDS_TENTHS, SECONDS_HUNDREDTHS, HOURS_MINUTES_SECONDS)

	StringName seconds_variable = "time";
	Style style = MINUTES_TENTHS;
	bool with_sign = false;
	StringName store_in = "clock";

	SCFormatTimeAction() { run_mode = EVERY_FRAME; }

	String summary_default() override;
};
