#pragma once

// The values that joints have, each class its own, by the names that one kind of value goes by in all of them.

#include "kinds/physics/set_joint.hpp"

namespace joint_values {

enum class Form { NUMBER, DEGREES, SWITCH, SWITCH_REVERSED };

struct Value {
	// Empty when the joint has no such value.
	StringName property;
	Form form = Form::NUMBER;
	double least = 0.0;
	double most = 0.0;
};

Value of(const Node *joint, SCSetJointAction::Which which, SCSetJointAction::Axis axis);
// "Stiffness, Damping": the names of those that it has.
String listed(const Node *joint);
String name_of(SCSetJointAction::Which which);

} // namespace joint_values
