#pragma once

// Kinds that hold a place with respect to somebody, and that others may drive the same body beside.

#include "action/kind_table.hpp"

class SCKeepDistanceAction : public SCMachineAction {
	SC_KIND(SCKeepDistanceAction, SCMachineAction)

public:
	NodePath body_path;
	StringName target_variable;
	double no_closer_than = 2.0;
	double no_further_than = 3.5;
	double spread = 0.5;
	double speed = 3.0;
	StringName speed_variable;
	StringName settled_event = "InPosition";
	bool turn_to_face = true;
	double turn_speed = 10.0;
	bool falls = true;

	void warn_dealing(SCMachineBase *machine, int64_t index, Node *body);
	void warn_not_character(SCMachineBase *machine, int64_t index, Node *body);

	String summary_default() override;
};

class SCStrafeAroundAction : public SCMachineAction {
	SC_KIND(SCStrafeAroundAction, SCMachineAction)

public:
	// The engine has a CLOCKWISE of its own, which is never meant here.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
	SC_ENUM(Way, EITHER, CLOCKWISE, ANTICLOCKWISE)
#pragma GCC diagnostic pop

	NodePath body_path;
	StringName target_variable;
	Way way = EITHER;
	double radius = 0.0;
	double speed = 2.5;
	StringName speed_variable;
	double change_direction_every = 3.0;
	double random_extra = 2.0;
	bool turn_to_face = true;
	double turn_speed = 10.0;
	bool falls = true;

	void warn_dealing(SCMachineBase *machine, int64_t index, Node *body);
	void warn_not_character(SCMachineBase *machine, int64_t index, Node *body);

	String summary_default() override;
};
