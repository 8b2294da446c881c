#pragma once

// What is seen of driving: wheels that roll and steer, and a model that leans. Also the grip of a vehicle's wheels, which is put
// back when the handbrake is let go. All of it lies in metadata of the body, and is found once.

#include "machine/native_names.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/vehicle_body3d.hpp>

using namespace godot;

struct DriveKeys {
	StringName speed = "quillstead_driving_speed";
	StringName last_speed = "quillstead_driving_last_speed";
	// The way it travels, which in 3D need not be the way it points.
	StringName travel = "quillstead_driving_travel";
	StringName lean = "quillstead_driving_lean";
	// It had speed when its state was left.
	StringName left_moving = "quillstead_driving_left_moving";
	StringName model_rest = "quillstead_driving_model_rest";
	StringName wheels = "quillstead_driving_wheels";
	StringName wheel_grip = "quillstead_driving_wheel_grip";
	StringName wheel_rest = "quillstead_driving_wheel_rest";
	StringName wheel_roll = "quillstead_driving_wheel_roll";
	StringName wheel_steer = "quillstead_driving_wheel_steer";

	static const DriveKeys &shared() { return NativeNames::of<DriveKeys>(); }
};

namespace drive_visuals {

// What is called a wheel below a character body rolls by the way it goes and steers in front. `steer` is in radians to the right.
void turn_wheels(Node *body, double way, double steer, double delta);
// The share of its own grip that each wheel behind has left.
void grip_wheels(VehicleBody3D *vehicle, double share);
// `corner` is the share of a full lean to the left of the way it goes, `braking` that of a full dip.
void lean(Node *body, Node *model, double degrees, double corner, double braking, double delta);
void stand_straight(Node *body, Node *model);

} // namespace drive_visuals
