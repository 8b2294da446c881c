#pragma once

// Kinds of the ui category: what is shown on the screen.

#include "action/kind_table.hpp"

class SCSetVisibleAction : public SCMachineAction {
	SC_KIND(SCSetVisibleAction, SCMachineAction)

public:
	SC_ENUM(What, SHOW, HIDE, TOGGLE)

	NodePath node_path;
	What what = SHOW;
	double fade_seconds = 0.0;
	bool block_input_when_hidden = false;
	double blink_every = 0.0;

	String summary_default() override;
	bool repeats_default() override { return has_some<&Self::blink_every>() || SCMachineAction::repeats_default(); }
	bool needs_every_tick_default() override { return repeats(); }
	String holds_its_state_default() override;
	void warn_set(SCMachineBase *machine, int index);
};
