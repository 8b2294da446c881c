#include "kinds/files/folders.hpp"

#include "kinds/files/paths.hpp"
#include "kinds/files/shared_settings.hpp"

void SCChooseFolderAction::describe(KindTable<Self> &kind) {
	kind.about("files", "choose_folder",
			"Ask the player to choose a folder on their computer, with the computer's own folder window. Where the computer has none, the game shows one. Its "
			"state is finished when the player has answered.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.setting<&Self::title>("title", "What the window is headed. Write {name} to drop a variable's value in.");
	kind.setting<&Self::start_in>("start_in",
			"The folder it shows at first, such as user://levels or /home/ann. Empty is the player's Documents. A variable's name in braces is replaced by its "
			"value.");
	kind.setting<&Self::store_in>("store_in",
				"The variable that the folder's path goes into. Write it in braces wherever a path is wanted, as in {folder}/my_level.txt, and tick Anywhere "
				"there.")
			.optional_if<&Self::chosen_event>();
	kind.setting<&Self::chosen_event>("chosen_event", "Sent when a folder has been chosen. It carries its path. Empty sends nothing.").optional();
	kind.setting<&Self::canceled_event>("canceled_event", "Sent when the player has closed the window without choosing. Empty sends nothing.").optional();
}

String SCChooseFolderAction::summary_default() {
	return store_in.is_empty() && !chosen_event.is_empty() ? vformat("Ask for a folder and send %s", chosen_event)
														   : vformat("Ask for a folder and keep it in %s", store_in);
}

PackedStringArray SCChooseFolderAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	files::add_names_in(title, names);
	files::add_names_in(start_in, names);
	return names;
}

void SCCopyFolderAction::describe(KindTable<Self> &kind) {
	kind.about("files", "copy_folder",
			"Copy a folder and everything in it to somewhere else on the computer, for example a starter project into the place the player chose, a set of "
			"levels into their own folder, or a backup of their saves. A large folder takes several frames, and the game goes on meanwhile.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.constants_of<IfThere>();
	kind.setting<&Self::from>("from", { PROPERTY_HINT_DIR },
			"The folder that is copied: one shipped with the game, such as res://starter, or one of the game's own, such as user://saves. A variable's name in "
			"braces is replaced by its value. Links in it are left out. Of pictures and sounds, an exported game holds only what was made of them for it.");
	kind.setting<&Self::to>("to",
			"The folder that the copy becomes, such as user://backup or {folder}/starter. It is made when it is not there, and so are the folders above it.");
	kind.setting<&Self::if_there>("if_there",
			"What is done when To is there already. Replace Files writes over files of the same name, Keep Files leaves those as they are, and both leave the "
			"other files in it alone. Do Not Copy fails.");
	kind.setting<&Self::store_count_in>("store_count_in", "Keep how many files were copied in this variable.").optional();
	kind.setting<&Self::done_event>("done_event", "Sent when all is copied. It carries how many files were. Empty sends nothing.").optional();
	kind.setting<&Self::failed_event>("failed_event", files::FAILED_EVENT).optional();
	kind.setting<&Self::anywhere>("anywhere", files::ANYWHERE);
}

String SCCopyFolderAction::summary_default() {
	return vformat("Copy the folder %s to %s", words::picked(from), words::picked(to));
}

PackedStringArray SCCopyFolderAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	files::add_names_in(from, names);
	files::add_names_in(to, names);
	return names;
}

void SCMoveToBinAction::describe(KindTable<Self> &kind) {
	kind.about("files", "move_to_bin",
			"Move a file or a folder, and everything in it, to the computer's Bin (the Recycle Bin on Windows), for example a save the player deletes, or a "
			"whole game in a launcher. The player can take it out of there again, unless the computer is set to have no Bin.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::path>("path", files::A_FILE,
			"The file or the folder, such as user://saves/slot_2.save. A variable's name in braces is replaced by its value, as in "
			"user://saves/slot_{number}.save.");
	kind.setting<&Self::done_event>("done_event", "Sent when it is in the Bin. Empty sends nothing.").optional();
	kind.setting<&Self::failed_event>("failed_event", files::FAILED_EVENT).optional();
	kind.setting<&Self::anywhere>("anywhere", files::ANYWHERE);
}

String SCMoveToBinAction::summary_default() {
	return vformat("Move %s to the Bin", words::picked(path));
}

PackedStringArray SCMoveToBinAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	files::add_names_in(path, names);
	return names;
}
