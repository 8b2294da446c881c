#pragma once

// Kinds that go after somebody, or away from them.

#include "action/kind_table.hpp"

class SCChaseAction : public SCMachineAction {
	SC_KIND(SCChaseAction, SCMachineAction)

public:
	NodePath body_path;
	StringName target_variable;
	double speed = 4.0;
	StringName speed_variable;
	double stop_within = 1.5;
	StringName reached_event = "Reached";
	bool finish_on_arrival = false;
	bool turn_to_face = true;
	double turn_speed = 10.0;
	bool falls = true;

	void warn_dealing(SCMachineBase *machine, int64_t index, Node *body);

	String summary_default() override;
	String holds_its_state_default() override;
};

class SCFleeAction : public SCMachineAction {
	SC_KIND(SCFleeAction, SCMachineAction)

public:
	NodePath body_path;
	StringName target_variable;
	double speed = 5.0;
	StringName speed_variable;
	double safe_distance = 15.0;
	double look_ahead = 6.0;
	StringName safe_event = "Safe";
	bool finish_when_safe = true;
	bool turn_to_face = true;
	double turn_speed = 10.0;
	bool falls = true;

	void warn_dealing(SCMachineBase *machine, int64_t index, Node *body);

	String summary_default() override;
	String holds_its_state_default() override;
};
