#pragma once

// The kind that gets behind something.

#include "action/kind_table.hpp"

class SCTakeCoverAction : public SCMachineAction {
	SC_KIND(SCTakeCoverAction, SCMachineAction)

public:
	NodePath body_path;
	StringName target_variable;
	StringName cover_group = "cover";
	double within = 25.0;
	bool must_be_out_of_sight = true;
	int64_t blocked_by = 1;
	double eye_height = 1.6;
	double speed = 4.0;
	StringName speed_variable;
	double arrive_within = 0.8;
	StringName store_cover_in;
	StringName in_cover_event = "InCover";
	StringName no_cover_event = "NoCover";
	bool turn_to_face = true;
	double turn_speed = 10.0;
	bool falls = true;

	// Whether the threat cannot see somebody who stands at that spot. A script may judge otherwise.
	bool hidden_at(const Variant &spot, const Variant &threat, const Variant &body);
	void warn_dealing(SCMachineBase *machine, int64_t index, Node *body);

	String summary_default() override;
};
