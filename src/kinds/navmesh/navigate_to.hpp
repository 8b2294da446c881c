#pragma once

// The kind that walks a character along the navigation mesh.

#include "action/kind_table.hpp"

class SCNavigateToAction : public SCMachineAction {
	SC_KIND(SCNavigateToAction, SCMachineAction)

public:
	// What can be wrong.
	enum Wrong : int64_t {
		NO_BODY,
		NO_AGENT,
		NOT_AN_AGENT,
		NO_NODE_TO_GO_TO,
	};

	NodePath body_path;
	NodePath agent_path;
	Variant to = Vector3(0, 0, 0);
	StringName to_variable;
	NodePath to_node_path;
	StringName to_node_variable;
	double speed = 4.0;
	StringName speed_variable;
	bool turn_to_face = true;
	double turn_speed = 10.0;
	bool falls = true;
	bool finish_on_arrival = true;
	StringName arrived_event;
	StringName no_path_event;

	void warn(SCMachineBase *machine, int64_t index, int64_t what, Node *body);

	String summary_default() override;
	String holds_its_state_default() override;

private:
	bool goes_to_a_node() const;
};
