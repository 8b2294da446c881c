#pragma once

// Questions about where things are: near, on the screen, touching, under the pointer.

#include "action/kind_table.hpp"

class SCDistanceCondition : public SCMachineCondition {
	SC_KIND(SCDistanceCondition, SCMachineCondition)

public:
	NodePath to_node_path;
	StringName group;
	double distance = 5.0;
	bool ignore_height = false;
	StringName store_in;

	String summary_default() override;

protected:
	void _validate_property(PropertyInfo &property) const;

private:
	// Else to a group.
	bool measures_to_a_node() const;
};

class SCOnScreenCondition : public SCMachineCondition {
	SC_KIND(SCOnScreenCondition, SCMachineCondition)

public:
	NodePath node_path;
	double margin = 0.0;

	String summary_default() override;
};

class SCPointerOverUiCondition : public SCMachineCondition {
	SC_KIND(SCPointerOverUiCondition, SCMachineCondition)

public:
	String summary_default() override;
};

class SCTouchingCondition : public SCMachineCondition {
	SC_KIND(SCTouchingCondition, SCMachineCondition)

public:
	SC_ENUM_LABELLED(Test, "Anything,The Ground,A Wall,A Ceiling", ANYTHING, THE_GROUND, A_WALL, A_CEILING)

	NodePath node_path;
	Test test = ANYTHING;
	StringName only_group;
	bool include_areas = false;
	StringName store_touching_in;

	SCTouchingCondition() { can_rest = true; }
	bool check_default(SCMachineBase *machine, const Dictionary &slot) override;
	String summary_default() override;
	bool wants_physics_default() override { return true; }
	Array rest_signals_default(SCMachineBase *machine, const Dictionary &slot) override;

	// Both are told in native_questions_touching.cpp.
	static bool is_touching(SCMachineBase *machine, SCMachineCondition *condition);
	static Array signals_of_touch(SCMachineBase *machine, SCMachineCondition *condition);

protected:
	void _validate_property(PropertyInfo &property) const;
};
