#pragma once

// The kind that changes how a body behaves.

#include "action/kind_table.hpp"

class SCSetBodyPropertiesAction : public SCMachineAction {
	SC_KIND(SCSetBodyPropertiesAction, SCMachineAction)

public:
	SC_ENUM(Property, MASS, FRICTION, BOUNCE, GRAVITY_SCALE, LINEAR_DAMP, ANGULAR_DAMP, LOCK_ROTATION, CAN_SLEEP, CONTINUOUS_COLLISION, CONTACT_MONITOR,
			MAX_CONTACTS, UP_DIRECTION, MOTION_MODE, FLOOR_ANGLE, FLOOR_SNAP, STOP_ON_SLOPES, SAME_SPEED_ON_SLOPES, BLOCK_ON_WALLS, SLIDE_ON_CEILINGS,
			WALL_ANGLE, SAFE_MARGIN, MAX_SLIDES)
	SC_ENUM(Mode, GROUNDED, FLOATING)

	NodePath body_path;
	Property property = MASS;
	double value = 1.0;
	bool on = true;
	Vector3 direction = Vector3(0, 1, 0);
	Mode mode = GROUNDED;
	bool put_back_when_left = false;

	bool is_a_number() const { return !is_a_switch() && property != UP_DIRECTION && property != MOTION_MODE; }
	bool is_a_switch() const;

	String summary_default() override;
};
