#pragma once

// Run Template.

#include "action/kind_table.hpp"

class SCRunTemplateAction : public SCMachineAction {
	SC_KIND(SCRunTemplateAction, SCMachineAction)

public:
	// `template` is no name for a field.
	Ref<SCMachineTemplate> machine_template;
	TypedArray<StringName> shared_variables;
	StringName done_event = "Done";

	String summary_default() override;
	PackedStringArray variables_read_default() override;
	PackedStringArray variables_written_default() override;
	PackedStringArray events_sent_default() override { return PackedStringArray(); }
};
