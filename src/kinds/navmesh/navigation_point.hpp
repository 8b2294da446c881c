#pragma once

// The kind that picks a place on the navigation mesh.

#include "action/kind_table.hpp"

class SCGetNavigationPointAction : public SCMachineAction {
	SC_KIND(SCGetNavigationPointAction, SCMachineAction)

public:
	SC_ENUM(Pick, SOMEWHERE_RANDOM, THE_NEAREST_SPOT)
	// What can be wrong.
	enum Wrong : int64_t {
		NO_NODE,
		NO_PLACE,
		NOWHERE_TO_PUT_IT,
	};

	Pick pick = SOMEWHERE_RANDOM;
	NodePath from_path;
	double within = 10.0;
	StringName within_variable;
	Variant near = Vector3(0, 0, 0);
	StringName near_variable;
	StringName store_in = "somewhere";
	StringName nothing_event;

	void warn(SCMachineBase *machine, int64_t index, int64_t what, Node *node);

	String summary_default() override;
	bool finishes_as_it_starts_default() override;
};
