#pragma once

// Kinds of the flow category that help while a game is being made, and do nothing in an exported one.
// Neither holds up the state it stands in: it is finished from the start and works on.

#include "action/kind_table.hpp"

class SCAssertAction : public SCMachineAction {
	SC_KIND(SCAssertAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(StopBy, "Quitting The Game,Pausing The Game", QUITTING, PAUSING)

	Ref<SCMachineCondition> condition;
	String message;
	StopBy stop_by = QUITTING;

	SCAssertAction() { run_mode = EVERY_FRAME; }
	String summary_default() override;
	bool wants_physics_default() override;
	bool finishes_as_it_starts_default() override { return true; }
};

class SCDrawDebugAction : public SCMachineAction {
	SC_KIND(SCDrawDebugAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(Shape, "A Line,A Ray,A Circle,A Box", LINE, RAY, CIRCLE, BOX)

	Shape shape = LINE;
	NodePath from_path;
	NodePath to_path;
	Variant to_point = Vector3(0, 0, 0);
	Variant target_position = Vector3(0, -1, 0);
	Variant size = Vector3(1, 1, 1);
	Color color = Color(1.0f, 0.3f, 0.1f, 1.0f);
	double seconds = 0.0;

	SCDrawDebugAction() { run_mode = EVERY_FRAME; }
	String summary_default() override;
	bool finishes_as_it_starts_default() override { return true; }

private:
	bool goes_to_a_place() const { return !has_some<&Self::to_path>(); }
};
