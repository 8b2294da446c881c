#pragma once

// The kind of the data category that keeps a table of best scores.

#include "action/kind_table.hpp"

class SCHighScoreTableAction : public SCMachineAction {
	SC_KIND(SCHighScoreTableAction, SCMachineAction)

public:
	SC_ENUM(Operation, ENTER, WOULD_ENTER, WRITE_OUT, CLEAR)
	SC_ENUM(Best, LARGEST, SMALLEST)

	StringName table_variable = "scores";
	Operation operation = ENTER;
	Best best_is = LARGEST;
	int64_t keep = 10;
	double score = 0.0;
	String player_name;
	StringName store_place_in;
	StringName made_it_event;
	StringName missed_event;
	StringName store_text_in;
	String line = "{place}.  {name}   {score}";
	String when_empty = "No scores yet";

	String summary_default() override;
};
