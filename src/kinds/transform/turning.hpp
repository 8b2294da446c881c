#pragma once

// Kinds of the transform category that turn things.

#include "action/easing.hpp"

namespace turning {

// In 2D there is only one axis to turn round, and no level to keep.
bool may_be_in_3d(const Object *action);

} // namespace turning

class SCLookAtAction : public SCMachineAction {
	SC_KIND(SCLookAtAction, SCMachineAction)

public:
	SC_ENUM(Face, A_NODE, THE_MOUSE, A_PLACE, A_DIRECTION)
	SC_ENUM(Space, GLOBAL, LOCAL)

	NodePath node_path;
	Face face = A_NODE;
	NodePath at_path;
	Variant place = Vector3(0, 0, 0);
	Variant direction = Vector3(1, 0, 0);
	Space space = GLOBAL;
	double turned_by = 0.0;
	bool keep_level = false;
	double duration = 0.0;
	Easings::Shape curve = Easings::SINE;
	Easings::Easing easing = Easings::EASE_IN_OUT;
	double turn_speed = 0.0;

	bool may_be_in_3d() const { return turning::may_be_in_3d(this); }

	String summary_default() override;
	bool finishes_as_it_starts_default() override { return !repeats() && !has_some<&Self::duration>(); }
	bool needs_every_tick_default() override { return repeats(); }
};

class SCRotateAction : public SCMachineAction {
	SC_KIND(SCRotateAction, SCMachineAction)

public:
	SC_ENUM(Axis, X, Y, Z)
	SC_ENUM(Space, GLOBAL, LOCAL)

	NodePath node_path;
	double speed = 90.0;
	Axis axis = Y;
	Space space = LOCAL;

	bool may_be_in_3d() const { return turning::may_be_in_3d(this); }

	String summary_default() override;
};

class SCRotateToAction : public SCMachineAction {
	SC_KIND(SCRotateToAction, SCMachineAction)

public:
	SC_ENUM(Axis, X, Y, Z)
	SC_ENUM(Space, GLOBAL, LOCAL, FROM_WHERE_IT_IS)
	SC_ENUM(Way, THE_SHORT_WAY, AS_TYPED)

	NodePath node_path;
	double degrees = 90.0;
	Axis axis = Y;
	Space space = LOCAL;
	Way way = THE_SHORT_WAY;
	double duration = 0.5;
	double speed = 0.0;
	Easings::Shape curve = Easings::SINE;
	Easings::Easing easing = Easings::EASE_IN_OUT;

	bool may_be_in_3d() const { return turning::may_be_in_3d(this); }

	String summary_default() override;
};
