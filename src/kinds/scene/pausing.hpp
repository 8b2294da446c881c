#pragma once

// The kind that pauses the game.

#include "action/kind_table.hpp"

class SCPauseGameAction : public SCMachineAction {
	SC_KIND(SCPauseGameAction, SCMachineAction)

public:
	SC_ENUM(Mode, PAUSE, RESUME, TOGGLE)

	Mode mode = PAUSE;
	bool show_mouse = true;
	StringName paused_event;
	StringName resumed_event;

	bool may_pause() const { return mode != RESUME; }
	bool may_resume() const { return mode != PAUSE; }

	String summary_default() override;
};
