#pragma once

// The condition about what an animation, a sound or a video is doing.

#include "action/kind_table.hpp"

class SCPlayingCondition : public SCMachineCondition {
	SC_KIND(SCPlayingCondition, SCMachineCondition)

public:
	SC_ENUM_LABELLED(Test, "Is Playing,Has Ended,Has Got As Far As", IS_PLAYING, HAS_ENDED, HAS_GOT_AS_FAR_AS)

	NodePath node_path;
	Test test = IS_PLAYING;
	double fraction = 0.5;
	StringName animation_name;
	String state_machine;

	String summary_default() override;
};
