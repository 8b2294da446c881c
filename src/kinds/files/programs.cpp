#include "kinds/files/programs.hpp"

#include "kinds/files/paths.hpp"
#include "kinds/files/shared_settings.hpp"

void SCRunProgramAction::describe(KindTable<Self> &kind) {
	kind.about("files", "run_program",
			"Start another program on the computer and carry on. It is given its arguments one by one, as they are, and no shell has a look at them, so that "
			"nothing a player types is taken for a command. On phones and in browsers there are no other programs.");
	kind.runs_for_a_while<&Self::wait_for_end>();
	kind.setting<&Self::program>("program", files::A_FILE,
			"The program: its name, such as git, when the computer knows where it is, a whole path, such as /usr/bin/git or user://tools/convert, or a path "
			"beside the game's own program, such as tools/convert. A variable's name in braces is replaced by its value.");
	kind.setting<&Self::arguments>("arguments",
			"What the program is told, one argument to a row. Blanks and quotes need nothing around them. Write {name} anywhere to drop a variable's value "
			"in. Write user:// paths as {folder}, from a variable that holds a whole path: other programs do not know user://.");
	kind.setting<&Self::open_console>("open_console", "On Windows, give it a console window to write in. Elsewhere this changes nothing.");
	kind.setting<&Self::wait_for_end>("wait_for_end", "Finish when the program has ended, not when it has been started. The game goes on meanwhile.");
	kind.setting<&Self::store_process_id_in>("store_process_id_in", "Keep the number by which the computer knows the running program in this variable.")
			.optional();
	kind.setting<&Self::store_exit_code_in>(
				"store_exit_code_in", "Keep the number that the program ended with in this variable. With most programs 0 means that all went well.")
			.only_if<&Self::wait_for_end>()
			.optional();
	kind.setting<&Self::done_event>("done_event",
				"Sent when it has been started, or, with Wait For End, when it has ended; then it carries the number that it ended with. Empty sends nothing.")
			.optional();
	kind.setting<&Self::failed_event>("failed_event", "Sent when it could not be started. It carries the reason. Empty sends nothing.").optional();
}

String SCRunProgramAction::summary_default() {
	String line = vformat("Run %s", words::picked(program));
	for (int64_t i = 0; i < arguments.size(); i++) {
		line += vformat(" %s", files::in_line(arguments[i]));
	}
	return wait_for_end ? vformat("%s and wait for its end", line) : line;
}

PackedStringArray SCRunProgramAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	files::add_names_in(program, names);
	for (int64_t i = 0; i < arguments.size(); i++) {
		files::add_names_in(arguments[i], names);
	}
	return names;
}
