#include "kinds/files/texts.hpp"

#include "kinds/files/paths.hpp"
#include "kinds/files/shared_settings.hpp"

void SCChangeTextInFileAction::describe(KindTable<Self> &kind) {
	kind.about("files", "change_text_in_file",
			"Change some words inside a text file on the computer. What else is in the file stays as it is, and a file that does not hold the words is not "
			"touched.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Which>();
	kind.setting<&Self::path>("path", files::A_FILE,
			"The text file, such as user://settings.txt. A variable's name in braces is replaced by its value, as in user://note_{number}.txt.");
	kind.setting<&Self::find>("find", hint::MULTILINE, "The words to change. Write {name} to drop a variable's value in.");
	kind.setting<&Self::replace_with>(
			"replace_with", hint::MULTILINE, "The words that take their place. Empty takes them out. Write {name} to drop a variable's value in.");
	kind.setting<&Self::which>("which", "Whether the words are changed everywhere in the file, or only where they come first or last.");
	kind.setting<&Self::ignore_case>("ignore_case", "Take large and small letters for the same, so that name is found in NAME.");
	kind.setting<&Self::store_count_in>("store_count_in", "Keep how many places were changed in this variable.").optional();
	kind.setting<&Self::done_event>("done_event", "Sent when the file has been changed. It carries how many places were. Empty sends nothing.").optional();
	kind.setting<&Self::not_found_event>("not_found_event", "Sent when the file does not hold the words. Empty sends nothing.").optional();
	kind.setting<&Self::failed_event>("failed_event", files::FAILED_EVENT).optional();
	kind.setting<&Self::anywhere>("anywhere", files::ANYWHERE);
}

String SCChangeTextInFileAction::summary_default() {
	const char *const where[] = { "", "the first ", "the last " };
	return vformat("Change %s%s to %s in %s", which >= ALL && which <= LAST ? where[which] : "", files::in_line(find), files::in_line(replace_with), path);
}

PackedStringArray SCChangeTextInFileAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	files::add_names_in(path, names);
	files::add_names_in(find, names);
	files::add_names_in(replace_with, names);
	return names;
}

void SCReadFileAction::describe(KindTable<Self> &kind) {
	kind.about("files", "read_file",
			"Read a text file into a String variable, such as a list of names to pick from, the words of a letter or a sign, a level laid out in letters, or "
			"notes the player wrote with Write File.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::path>("path", files::A_FILE,
			"The text file: one shipped with the game, such as res://names.txt, or one of the game's own, such as user://notes.txt. A variable's name in "
			"braces is replaced by its value, as in user://note_{number}.txt. For the exported game to have those in res://, add *.txt under Project > Export "
			"> Resources.");
	kind.setting<&Self::store_in>("store_in", "The variable that all of the text goes into.").optional_if<&Self::keeps_lines>();
	kind.setting<&Self::store_lines_in>("store_lines_in", "Keep the lines as a list in this variable, one item for each line.").optional();
	kind.setting<&Self::store_line_count_in>("store_line_count_in", "Keep how many lines there are in this variable.").optional();
	kind.setting<&Self::done_event>("done_event", "Sent when it has been read. Empty sends nothing.").optional();
	kind.setting<&Self::failed_event>("failed_event", files::FAILED_EVENT).optional();
	kind.setting<&Self::anywhere>("anywhere", files::ANYWHERE);
}

String SCReadFileAction::summary_default() {
	if (store_in.is_empty() && keeps_lines()) {
		return vformat("Read %s into %s", path, store_lines_in.is_empty() ? store_line_count_in : store_lines_in);
	}
	return vformat("Read %s into %s", path, store_in);
}

PackedStringArray SCReadFileAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	files::add_names_in(path, names);
	return names;
}

void SCWriteFileAction::describe(KindTable<Self> &kind) {
	kind.about("files", "write_file",
			"Write words into a text file, or add them to its end. Folders on the way to it that are not there are made. A file that is replaced stays whole "
			"until the new one is, so that a full disk or a power cut does not lose it.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<How>();
	kind.setting<&Self::path>("path", files::A_FILE,
			"The text file, such as user://notes.txt. A variable's name in braces is replaced by its value, as in user://note_{number}.txt.");
	kind.setting<&Self::text>("text", hint::MULTILINE,
			"The words. Write {name} to drop a variable's value in. Words that come from a variable are written as they are, braces and all.");
	kind.setting<&Self::how>("how", "Replace writes the file anew. Add To End keeps what is in it and writes behind that.");
	kind.setting<&Self::on_a_new_line>("on_a_new_line", "Begin on a line of its own.").only_if<&Self::how, ADD_TO_END>();
	kind.setting<&Self::done_event>("done_event", "Sent when it has been written. Empty sends nothing.").optional();
	kind.setting<&Self::failed_event>("failed_event", files::FAILED_EVENT).optional();
	kind.setting<&Self::anywhere>("anywhere", files::ANYWHERE);
}

String SCWriteFileAction::summary_default() {
	return vformat(how == ADD_TO_END ? "Add %s to %s" : "Write %s into %s", files::in_line(text), path);
}

PackedStringArray SCWriteFileAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	files::add_names_in(path, names);
	files::add_names_in(text, names);
	return names;
}
