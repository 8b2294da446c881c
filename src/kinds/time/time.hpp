#pragma once

// Kinds of the time category: what the clocks say, and how fast the game runs.

#include "action/kind_table.hpp"

class SCGetTimeAction : public SCMachineAction {
	SC_KIND(SCGetTimeAction, SCMachineAction)

public:
	SC_ENUM(Which, SINCE_THE_STATE_BEGAN, SINCE_THE_GAME_STARTED, SECONDS_OF_THE_DAY, HOUR, MINUTE, SECOND, DAY, MONTH, YEAR, WEEKDAY, SECONDS_SINCE_1970,
			CLOCK_AS_TEXT, DATE_AS_TEXT)

	Which which = SINCE_THE_STATE_BEGAN;
	bool utc = false;
	StringName store_in;

	String summary_default() override;
};

class SCSetTimeScaleAction : public SCMachineAction {
	SC_KIND(SCSetTimeScaleAction, SCMachineAction)

public:
	double scale = 0.5;
	double duration = 0.0;
	double lasts = 0.0;
	bool put_back_when_left = false;

	String summary_default() override;
};
