#pragma once

// Kinds of the input category that listen to other nodes.

#include "action/kind_table.hpp"

class SCEventOnSignalAction : public SCMachineAction {
	SC_KIND(SCEventOnSignalAction, SCMachineAction)

public:
	NodePath node_path;
	StringName signal_name;
	StringName event_name;
	StringName store_argument_in;
	int64_t argument = 1;

	enum WhatIsWrong {
		NO_NODE,
		NO_SUCH_SIGNAL,
	};

	String summary_default() override;
	void warn_signal(SCMachineBase *machine, int index, int what, Node *node);

private:
	bool keeps_what_it_hears() const { return has_some<&Self::store_argument_in>(); }
	bool keeps_nothing() const { return !keeps_what_it_hears(); }
	bool hands_something_on() const { return keeps_what_it_hears() || has_some<&Self::event_name>(); }
};
