#pragma once

// Kinds of the node category that call methods and send signals.

#include "action/kind_table.hpp"

class SCCallMethodAction : public SCMachineAction {
	SC_KIND(SCCallMethodAction, SCMachineAction)

public:
	NodePath node_path;
	StringName method_name;
	Variant argument_1;
	Variant argument_2;
	StringName store_in;

	String summary_default() override;
	void read_variables_default(SCMachineBase *machine) override;
};

class SCCallStaticMethodAction : public SCMachineAction {
	SC_KIND(SCCallStaticMethodAction, SCMachineAction)

public:
	// No twin: a class is not picked while a game runs.
	StringName of_class;
	StringName method_name;
	Variant argument_1;
	Variant argument_2;
	StringName store_in;

	String summary_default() override;
	void read_variables_default(SCMachineBase *machine) override;
};

class SCEmitSignalAction : public SCMachineAction {
	SC_KIND(SCEmitSignalAction, SCMachineAction)

public:
	NodePath node_path;
	StringName signal_name;
	Variant argument_1;
	Variant argument_2;

	String summary_default() override;
	void read_variables_default(SCMachineBase *machine) override;
};
