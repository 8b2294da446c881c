#include "kinds/physics/set_joint_values.hpp"

#include "action/checked.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/cone_twist_joint3d.hpp>
#include <godot_cpp/classes/damped_spring_joint2d.hpp>
#include <godot_cpp/classes/generic6_dof_joint3d.hpp>
#include <godot_cpp/classes/groove_joint2d.hpp>
#include <godot_cpp/classes/hinge_joint3d.hpp>
#include <godot_cpp/classes/joint2d.hpp>
#include <godot_cpp/classes/joint3d.hpp>
#include <godot_cpp/classes/pin_joint2d.hpp>
#include <godot_cpp/classes/pin_joint3d.hpp>
#include <godot_cpp/classes/slider_joint3d.hpp>

namespace joint_values {

namespace {

using Kind = SCSetJointAction;

constexpr double ANY = checked::LARGEST;
// A spring or a groove of no length divides by it.
constexpr double LEAST_LENGTH = 1.0;

template <class Joint>
bool is(const Node *node) {
	return Object::cast_to<Joint>(node) != nullptr;
}

struct Row {
	bool (*is_of)(const Node *node);
	Kind::Which which;
	// A % stands for the axis.
	const char *property;
	Form form;
	double least;
	double most;
};

constexpr Row ROWS[] = {
	{ &is<Joint2D>, Kind::BIAS, "bias", Form::NUMBER, 0.0, 0.9 },
	{ &is<Joint2D>, Kind::BODIES_COLLIDE, "disable_collision", Form::SWITCH_REVERSED, 0.0, 1.0 },
	{ &is<Joint3D>, Kind::BODIES_COLLIDE, "exclude_nodes_from_collision", Form::SWITCH_REVERSED, 0.0, 1.0 },
	{ &is<PinJoint2D>, Kind::SOFTNESS, "softness", Form::NUMBER, 0.0, ANY },
	{ &is<PinJoint2D>, Kind::LIMIT_ON, "angular_limit_enabled", Form::SWITCH, 0.0, 1.0 },
	{ &is<PinJoint2D>, Kind::LOWEST_ANGLE, "angular_limit_lower", Form::DEGREES, -ANY, ANY },
	{ &is<PinJoint2D>, Kind::HIGHEST_ANGLE, "angular_limit_upper", Form::DEGREES, -ANY, ANY },
	{ &is<PinJoint2D>, Kind::MOTOR_ON, "motor_enabled", Form::SWITCH, 0.0, 1.0 },
	{ &is<PinJoint2D>, Kind::MOTOR_SPEED, "motor_target_velocity", Form::DEGREES, -ANY, ANY },
	{ &is<GrooveJoint2D>, Kind::LENGTH, "length", Form::NUMBER, LEAST_LENGTH, ANY },
	{ &is<DampedSpringJoint2D>, Kind::LENGTH, "length", Form::NUMBER, LEAST_LENGTH, ANY },
	{ &is<DampedSpringJoint2D>, Kind::REST_LENGTH, "rest_length", Form::NUMBER, 0.0, ANY },
	{ &is<DampedSpringJoint2D>, Kind::STIFFNESS, "stiffness", Form::NUMBER, 0.0, ANY },
	{ &is<DampedSpringJoint2D>, Kind::DAMPING, "damping", Form::NUMBER, 0.0, ANY },
	{ &is<PinJoint3D>, Kind::BIAS, "params/bias", Form::NUMBER, 0.01, 0.99 },
	{ &is<PinJoint3D>, Kind::DAMPING, "params/damping", Form::NUMBER, 0.01, ANY },
	{ &is<HingeJoint3D>, Kind::BIAS, "params/bias", Form::NUMBER, 0.0, 0.99 },
	{ &is<HingeJoint3D>, Kind::LIMIT_ON, "angular_limit/enable", Form::SWITCH, 0.0, 1.0 },
	{ &is<HingeJoint3D>, Kind::LOWEST_ANGLE, "angular_limit/lower", Form::DEGREES, -180.0, 180.0 },
	{ &is<HingeJoint3D>, Kind::HIGHEST_ANGLE, "angular_limit/upper", Form::DEGREES, -180.0, 180.0 },
	{ &is<HingeJoint3D>, Kind::SOFTNESS, "angular_limit/softness", Form::NUMBER, 0.01, ANY },
	{ &is<HingeJoint3D>, Kind::MOTOR_ON, "motor/enable", Form::SWITCH, 0.0, 1.0 },
	{ &is<HingeJoint3D>, Kind::MOTOR_SPEED, "motor/target_velocity", Form::DEGREES, -ANY, ANY },
	{ &is<HingeJoint3D>, Kind::MOTOR_STRENGTH, "motor/max_impulse", Form::NUMBER, 0.0, ANY },
	{ &is<SliderJoint3D>, Kind::LOWEST_DISTANCE, "linear_limit/lower_distance", Form::NUMBER, -ANY, ANY },
	{ &is<SliderJoint3D>, Kind::HIGHEST_DISTANCE, "linear_limit/upper_distance", Form::NUMBER, -ANY, ANY },
	{ &is<SliderJoint3D>, Kind::LOWEST_ANGLE, "angular_limit/lower_angle", Form::DEGREES, -180.0, 180.0 },
	{ &is<SliderJoint3D>, Kind::HIGHEST_ANGLE, "angular_limit/upper_angle", Form::DEGREES, -180.0, 180.0 },
	{ &is<SliderJoint3D>, Kind::SOFTNESS, "linear_limit/softness", Form::NUMBER, 0.01, ANY },
	{ &is<SliderJoint3D>, Kind::DAMPING, "linear_limit/damping", Form::NUMBER, 0.0, ANY },
	{ &is<ConeTwistJoint3D>, Kind::SWING, "swing_span", Form::DEGREES, 0.0, 180.0 },
	{ &is<ConeTwistJoint3D>, Kind::TWIST, "twist_span", Form::DEGREES, 0.0, ANY },
	{ &is<ConeTwistJoint3D>, Kind::BIAS, "bias", Form::NUMBER, 0.01, ANY },
	{ &is<ConeTwistJoint3D>, Kind::SOFTNESS, "softness", Form::NUMBER, 0.01, ANY },
	{ &is<Generic6DOFJoint3D>, Kind::LOWEST_DISTANCE, "linear_limit_%/lower_distance", Form::NUMBER, -ANY, ANY },
	{ &is<Generic6DOFJoint3D>, Kind::HIGHEST_DISTANCE, "linear_limit_%/upper_distance", Form::NUMBER, -ANY, ANY },
	{ &is<Generic6DOFJoint3D>, Kind::LOWEST_ANGLE, "angular_limit_%/lower_angle", Form::DEGREES, -180.0, 180.0 },
	{ &is<Generic6DOFJoint3D>, Kind::HIGHEST_ANGLE, "angular_limit_%/upper_angle", Form::DEGREES, -180.0, 180.0 },
	{ &is<Generic6DOFJoint3D>, Kind::LIMIT_ON, "angular_limit_%/enabled", Form::SWITCH, 0.0, 1.0 },
	{ &is<Generic6DOFJoint3D>, Kind::SOFTNESS, "linear_limit_%/softness", Form::NUMBER, 0.01, ANY },
	{ &is<Generic6DOFJoint3D>, Kind::MOTOR_ON, "angular_motor_%/enabled", Form::SWITCH, 0.0, 1.0 },
	{ &is<Generic6DOFJoint3D>, Kind::MOTOR_SPEED, "angular_motor_%/target_velocity", Form::DEGREES, -ANY, ANY },
	{ &is<Generic6DOFJoint3D>, Kind::MOTOR_STRENGTH, "angular_motor_%/force_limit", Form::NUMBER, 0.0, ANY },
	{ &is<Generic6DOFJoint3D>, Kind::SPRING_ON, "linear_spring_%/enabled", Form::SWITCH, 0.0, 1.0 },
	{ &is<Generic6DOFJoint3D>, Kind::STIFFNESS, "linear_spring_%/stiffness", Form::NUMBER, 0.0, ANY },
	{ &is<Generic6DOFJoint3D>, Kind::DAMPING, "linear_spring_%/damping", Form::NUMBER, 0.0, ANY },
	{ &is<Generic6DOFJoint3D>, Kind::REST_LENGTH, "linear_spring_%/equilibrium_point", Form::NUMBER, -ANY, ANY },
};

constexpr int COUNT = sizeof(ROWS) / sizeof(ROWS[0]);
constexpr int AXES = 3;

// As the engine is asked for them, made once.
struct RowNames {
	StringName properties[COUNT][AXES];

	RowNames() {
		const char *axes[AXES] = { "x", "y", "z" };
		for (int i = 0; i < COUNT; i++) {
			for (int axis = 0; axis < AXES; axis++) {
				properties[i][axis] = String(ROWS[i].property).replace("%", axes[axis]);
			}
		}
	}
};

} // namespace

Value of(const Node *joint, SCSetJointAction::Which which, SCSetJointAction::Axis axis) {
	Value found;
	for (int i = 0; i < COUNT; i++) {
		const Row &row = ROWS[i];
		if (row.which == which && row.is_of(joint)) {
			found = { NativeNames::of<RowNames>().properties[i][axis], row.form, row.least, row.most };
		}
	}
	return found;
}

String name_of(SCSetJointAction::Which which) {
	return String(enum_words_of(Kind::Which()).constants).split(",")[which].strip_edges().capitalize();
}

String listed(const Node *joint) {
	PackedStringArray names;
	for (const Row &row : ROWS) {
		if (row.is_of(joint)) {
			names.push_back(name_of(row.which));
		}
	}
	return String(", ").join(names);
}

} // namespace joint_values
