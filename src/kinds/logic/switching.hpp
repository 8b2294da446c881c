#pragma once

// Kinds of the logic category that look at values: sums of true and false, and branching on what a variable holds.

#include "action/kind_table.hpp"

class SCBoolOperatorAction : public SCMachineAction {
	SC_KIND(SCBoolOperatorAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(Operation, "Both Of These,Either Of These,Not This,One But Not Both", BOTH, EITHER, NOT_THIS, ONE_BUT_NOT_BOTH)

	Operation operation = BOTH;
	bool first = false;
	bool second = false;
	StringName store_in;

	String summary_default() override;
};

class SCSwitchAction : public SCMachineAction {
	SC_KIND(SCSwitchAction, SCMachineAction)

public:
	SC_ENUM(Test, IS_EQUAL_TO, IS_BELOW)

	StringName variable_name;
	Test test = IS_EQUAL_TO;
	Array cases;
	TypedArray<StringName> events;
	StringName otherwise_event;
	bool only_when_it_changes = true;

	// The text that a value of the list is compared by.
	static String case_text(const Variant &given);

	String summary_default() override;
	// `which` tells the things that can be wrong apart, `what` says it.
	void warn_switch(SCMachineBase *machine, int index, int which, const String &what);

private:
	String never_reached() const;
};
