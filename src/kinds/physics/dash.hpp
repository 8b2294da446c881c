#pragma once

// The kind that sends a character shooting off for a moment.

#include "action/kind_table.hpp"

class SCDashAction : public SCMachineAction {
	SC_KIND(SCDashAction, SCMachineAction)

public:
	SC_ENUM(Way, THE_WAY_IT_IS_MOVING, THE_WAY_IT_IS_FACING, A_DIRECTION, TOWARD_A_NODE)

	NodePath body_path;
	Way way = THE_WAY_IT_IS_MOVING;
	Variant direction = Vector2(0, 0);
	StringName direction_variable;
	NodePath toward_path;
	StringName toward_variable;
	double distance = 4.0;
	StringName distance_variable;
	double seconds = 0.2;
	bool ignores_gravity = true;
	double wait_between = 0.0;
	bool one_until_it_lands = false;
	StringName dashed_event;
	StringName refused_event;

	enum Wrong { NO_CHARACTER, NOBODY, NOWHERE };
	void warn_dash(SCMachineBase *machine, int64_t index, int64_t what, Node *body);

	String summary_default() override;

private:
	String target_in_words(const char *otherwise) const;
};
