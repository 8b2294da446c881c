#pragma once

// The kind of the node category that fires bullets.

#include "action/kind_table.hpp"

#include <godot_cpp/classes/audio_stream.hpp>
#include <godot_cpp/classes/packed_scene.hpp>

class SCBulletPatternAction : public SCMachineAction {
	SC_KIND(SCBulletPatternAction, SCMachineAction)

public:
	SC_ENUM(Aim, THE_WAY_IT_FACES, AT_A_NODE, ALONG_A_DIRECTION, AN_ANGLE)

	// What is told once each.
	enum Wrong {
		NO_SCENE,
		NO_COUNT,
		NO_FROM,
		NO_GROUP,
		NO_TARGET,
		NO_DIRECTION,
		GAP_TOO_WIDE,
		NO_BULLET,
		OTHER_SIDE,
		TOO_MANY_AT_ONCE,
		TOO_MANY_IN_FLIGHT,
		NO_LIFETIME,
	};

	Ref<PackedScene> scene;
	NodePath from_path;
	Aim aim = THE_WAY_IT_FACES;
	NodePath target_path;
	Vector2 direction = Vector2(1, 0);
	double angle = 0.0;
	int64_t count = 1;
	double spread = 0.0;
	double turn_each_shot = 0.0;
	double wobble = 0.0;
	int64_t gap = 0;
	double start_out = 0.0;
	double homing = 0.0;
	int64_t bounces = 0;
	int64_t pierce = 0;
	double speed = 120.0;
	double lifetime = 4.0;
	StringName hits_group;
	StringName hit_event = "HIT";
	double damage = 1.0;
	double every_seconds = 0.0;
	Ref<AudioStream> sound;
	StringName sound_bus = "Effects";

	String summary_default() override;
	bool works_after_finishing_default() override;

private:
	bool keeps_firing() const;
	bool is_a_pattern() const;
	String aim_in_line() const;
};
