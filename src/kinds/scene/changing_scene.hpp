#pragma once

// The kind that goes to another scene, or starts this one again.

#include "action/kind_table.hpp"

#include <godot_cpp/classes/packed_scene.hpp>

class SCChangeSceneAction : public SCMachineAction {
	SC_KIND(SCChangeSceneAction, SCMachineAction)

public:
	SC_ENUM(GoTo, ANOTHER_SCENE, RELOAD_CURRENT_SCENE)

	enum Wrong : int64_t {
		NOT_FROM_A_FILE,
		NO_SCENE,
		NOTHING_IN_THE_VARIABLE,
		NO_SUCH_SCENE,
	};

	GoTo go_to = ANOTHER_SCENE;
	Ref<PackedScene> scene;
	String scene_path;
	StringName path_variable;
	StringName arrive_at;
	StringName arrive_at_variable;
	bool put_globals_back = true;
	TypedArray<StringName> keep_as_they_are;
	StringName failed_event = "LoadFailed";
	bool resume_first = true;
	double fade_seconds = 0.0;
	Color fade_colour = Color(0, 0, 0, 1);
	Ref<PackedScene> loading_screen;
	StringName store_progress_in = "loading";

	void warn_scene(SCMachineBase *machine, int64_t index, int64_t code, const String &path);

	String summary_default() override;
	PackedStringArray variables_written_default() override;
};
