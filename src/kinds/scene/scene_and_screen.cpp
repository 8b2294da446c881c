#include "kinds/scene/scene_and_screen.hpp"

#include "action/words.hpp"

void SCGetSceneAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "get_scene", "Put the name of the scene that is running now, or its file, into a String variable.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<What>();
	kind.setting<&Self::what>("what",
			"Name is that of the scene's top node, such as Level2. File is where it is kept, such as res://levels/level_2.tscn, and File Name just level_2. A "
			"scene that was put together by a script has no file.");
	kind.setting<&Self::store_in>("store_in", "The variable it goes into.");
}

String SCGetSceneAction::summary_default() {
	const char *things[] = { "name of the scene", "scene's file", "scene's file name" };
	return vformat("Put the %s into %s", things[CLAMP(int(what), 0, int(FILE_NAME))], store_in);
}

void SCGetScreenSizeAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "get_screen_size", "Put the size of the screen into Vector2 variables, in pixels.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::store_in>("store_in",
				"The size of what the game draws on goes into this variable. Places of buttons and pictures are counted in these pixels, however large the "
				"window is.")
			.optional_if<&Self::stores_another>();
	kind.setting<&Self::store_middle_in>("store_middle_in", "Keep the place of its middle in this variable.").optional();
	kind.setting<&Self::store_window_in>("store_window_in", "Keep the size of the window in this variable, in the monitor's pixels.").optional();
	kind.setting<&Self::store_monitor_in>("store_monitor_in", "Keep the size of the monitor that the window is on in this variable.").optional();
}

bool SCGetScreenSizeAction::stores_another() const {
	return has_some<&Self::store_middle_in>() || has_some<&Self::store_window_in>() || has_some<&Self::store_monitor_in>();
}

String SCGetScreenSizeAction::summary_default() {
	PackedStringArray parts;
	if (!store_in.is_empty() || !stores_another()) {
		parts.push_back(vformat("the size of the screen into %s", words::picked(store_in)));
	}
	if (!store_middle_in.is_empty()) {
		parts.push_back(vformat("its middle into %s", store_middle_in));
	}
	if (!store_window_in.is_empty()) {
		parts.push_back(vformat("the window's size into %s", store_window_in));
	}
	if (!store_monitor_in.is_empty()) {
		parts.push_back(vformat("the monitor's size into %s", store_monitor_in));
	}
	return vformat("Put %s", String(", ").join(parts));
}
