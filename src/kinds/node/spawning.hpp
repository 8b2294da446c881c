#pragma once

// The kind of the node category that adds a scene to the running game.

#include "action/kind_table.hpp"

#include <godot_cpp/classes/packed_scene.hpp>

class SCInstantiateAction : public SCMachineAction {
	SC_KIND(SCInstantiateAction, SCMachineAction)

public:
	SC_ENUM(At, SELF, A_NODE, A_PLACE, WHERE_THE_SCENE_SAYS, ONE_OF_THE_NODES_UNDER, SOMEWHERE_INSIDE)

	// What is told once each.
	enum Wrong {
		NO_SCENE,
		NOT_LOADED,
		NO_PARENT,
		NO_PLACE,
		NO_SHAPE,
	};

	Ref<PackedScene> scene;
	String scene_path;
	NodePath parent_path;
	At at = SELF;
	NodePath at_node_path;
	NodePath away_from_path;
	double at_least = 0.0;
	Variant place;
	Variant offset;
	Vector3 stand_on;
	StringName store_in;
	double every_seconds = 0.0;
	Ref<PackedScene> warning_scene;
	double warning_seconds = 0.8;

	String summary_default() override;
	bool finishes_as_it_starts_default() override;
	bool works_after_finishing_default() override;

private:
	bool keeps_spawning() const;
	String place_in_line() const;
};
