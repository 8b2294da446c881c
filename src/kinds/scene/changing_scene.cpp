#include "kinds/scene/changing_scene.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCChangeSceneAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "change_scene",
			"Go to another scene to start the game from a menu, go back to the menu, load the next level, or start this level again. Global variables stay, "
			"and "
			"a machine whose template has Carries Over ticked goes on in the next scene with its variables and inventories.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<GoTo>();
	kind.setting<&Self::go_to>("go_to", "Another Scene leaves this one. Reload Current Scene starts it again from its beginning.");
	kind.setting<&Self::scene>("scene",
				"The scene to go to. Of two scenes that go to each other only one can be picked here, as neither could be loaded before the other: pick the "
				"file "
				"of the other one under Scene Path.")
			.only_if<&Self::go_to, ANOTHER_SCENE>()
			.unless<&Self::path_variable>()
			.optional_if<&Self::scene_path>();
	kind.setting<&Self::scene_path>("scene_path", { PROPERTY_HINT_FILE_PATH, "*.tscn" },
				"The file of the scene to go to. Only its path is kept, so a title screen and its levels can go to each other.")
			.only_if<&Self::go_to, ANOTHER_SCENE>()
			.unless<&Self::path_variable>()
			.unless<&Self::scene>()
			.optional_if<&Self::scene>();
	kind.setting<&Self::path_variable>("path_variable", "Go to the scene whose path is in this variable, such as one that each door of a level has.")
			.only_if<&Self::go_to, ANOTHER_SCENE>()
			.optional();
	kind.setting<&Self::arrive_at>("arrive_at",
				"Where the player stands in the new scene: the name of a node there, such as a Marker2D or a Marker3D called CaveDoor. That is the player who "
				"is carried over, or else the one the new scene has. Empty leaves the player where the new scene puts it.")
			.only_if<&Self::go_to, ANOTHER_SCENE>()
			.unless<&Self::arrive_at_variable>()
			.optional();
	kind.setting<&Self::arrive_at_variable>("arrive_at_variable", "Read the name of that node from this text variable.")
			.only_if<&Self::go_to, ANOTHER_SCENE>()
			.optional();
	kind.setting<&Self::put_globals_back>("put_globals_back",
				"Give the global variables the values that they had when this scene began, so that starting again undoes what was done in it.")
			.only_if<&Self::go_to, RELOAD_CURRENT_SCENE>();
	kind.setting<&Self::keep_as_they_are>("keep_as_they_are", { PROPERTY_HINT_TYPE_STRING, "21:" },
				"Global variables that stay as they are all the same, such as the lives that are left.")
			.only_if<&Self::go_to, RELOAD_CURRENT_SCENE>()
			.only_if<&Self::put_globals_back>();
	kind.setting<&Self::failed_event>("failed_event", "Sent when the scene could not be loaded. The game goes on in this one then.").optional();
	kind.setting<&Self::resume_first>(
			"resume_first", "Let a game that is paused run again first, as it is when this is done from a pause menu. Otherwise the new scene starts frozen.");
	kind.setting<&Self::fade_seconds>("fade_seconds", { PROPERTY_HINT_RANGE, "0,10,0.001,or_greater,suffix:s,hide_slider" },
			"How long the picture takes to fade out, and then to fade in again. Zero goes straight across.");
	kind.setting<&Self::fade_colour>("fade_colour", "What it fades to.").only_if<&Self::fade_seconds>();
	kind.setting<&Self::loading_screen>("loading_screen",
				"A scene to show while the next one is loaded in the background, such as a picture with a bar on it. It goes when the next one is there.")
			.only_if<&Self::go_to, ANOTHER_SCENE>()
			.optional();
	kind.setting<&Self::store_progress_in>("store_progress_in",
				"The global variable that tells how much of the next scene has been loaded, from 0 to 1. A machine of the loading screen that has it can show "
				"it.")
			.only_if<&Self::go_to, ANOTHER_SCENE>()
			.optional();
	kind.warns<&Self::warn_scene>("_warn_scene", "m", "index", "code", "path");
}

String SCChangeSceneAction::summary_default() {
	if (go_to == RELOAD_CURRENT_SCENE) {
		return "Start this scene again";
	}
	String spot = arrive_at_variable.is_empty() ? String(arrive_at) : vformat("[%s]", arrive_at_variable);
	if (!spot.is_empty()) {
		spot = vformat(", arriving at %s", spot);
	}
	if (!path_variable.is_empty()) {
		return vformat("Go to [%s]%s", path_variable, spot);
	}
	const String file = scene.is_valid() ? words::text_of(scene) : scene_path.get_file();
	return vformat("Go to %s%s", file.is_empty() ? String("(pick one)") : file, spot);
}

// The variable of the progress belongs to no machine: whoever shows it declares it.
PackedStringArray SCChangeSceneAction::variables_written_default() {
	PackedStringArray names = SCMachineAction::variables_written_default();
	const int64_t at = names.find(store_progress_in);
	if (at >= 0) {
		names.remove_at(at);
	}
	return names;
}

void SCChangeSceneAction::warn_scene(SCMachineBase *machine, int64_t, int64_t code, const String &path) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	String text;
	switch (code) {
		case NOT_FROM_A_FILE:
			text = "Change Scene: the scene running now was not opened from a file, so it cannot be started again.";
			break;
		case NO_SCENE:
			text = vformat("Change Scene on %s: no scene is picked to go to, so it stays where it is. Pick one in its Scene setting.", name);
			break;
		case NOTHING_IN_THE_VARIABLE:
			text = vformat(
					"Change Scene on %s: no scene is picked to go to, so it stays where it is. It reads the scene from %s, so give that a scene (a Level "
					"Exit's is Goes To, in its Inspector).",
					name, path_variable);
			break;
		default:
			text = vformat("Change Scene on %s: there is no scene at \"%s\".", name, path);
			break;
	}
	verbs::warn_whole(machine, this, int(code), text);
}
