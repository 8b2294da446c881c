#pragma once

// Kinds of the machine category: what one machine does to itself and to others.

#include "action/kind_table.hpp"

class SCCancelDelayedEventsAction : public SCMachineAction {
	SC_KIND(SCCancelDelayedEventsAction, SCMachineAction)

public:
	StringName event;
	StringName store_count_in;

	String summary_default() override;
};

class SCEnableMachineAction : public SCMachineAction {
	SC_KIND(SCEnableMachineAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(Turn, "On,Off,The Other Way", TURN_ON, TURN_OFF, TURN_OTHER_WAY)
	SC_ENUM_LABELLED(WhenOff, "Holds Still,Stops", HOLDS_STILL, STOPS)

	NodePath machine_path;
	Turn turn = TURN_ON;
	WhenOff when_off = HOLDS_STILL;

	String summary_default() override;
};

class SCForwardEventsAction : public SCMachineAction {
	SC_KIND(SCForwardEventsAction, SCMachineAction)

public:
	NodePath machine_path;
	TypedArray<StringName> only_these;

	String summary_default() override;
};

class SCGetLastEventAction : public SCMachineAction {
	SC_KIND(SCGetLastEventAction, SCMachineAction)

public:
	StringName store_in;

	String summary_default() override;
};

class SCGetPreviousStateAction : public SCMachineAction {
	SC_KIND(SCGetPreviousStateAction, SCMachineAction)

public:
	StringName store_in;

	String summary_default() override;
};

class SCGetStateAction : public SCMachineAction {
	SC_KIND(SCGetStateAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(Which, "The Innermost State,The Outermost State,The Whole Path", INNERMOST, OUTERMOST, WHOLE_PATH)

	NodePath machine_path;
	Which which = INNERMOST;
	StringName store_in;

	String summary_default() override;
};

class SCGoToPreviousStateAction : public SCMachineAction {
	SC_KIND(SCGoToPreviousStateAction, SCMachineAction)

public:
	String summary_default() override;
};

class SCMachineVariableAction : public SCMachineAction {
	SC_KIND(SCMachineVariableAction, SCMachineAction)

public:
	SC_ENUM(Operation, READ, WRITE)

	NodePath machine_path;
	Operation operation = READ;
	// Not named as a variable of this machine would be, as it is none.
	StringName variable_there;
	StringName store_in;
	StringName from_variable;

	String summary_default() override;
};
