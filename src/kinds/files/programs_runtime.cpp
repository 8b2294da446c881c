// The compiled runtime of Run Program.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/files/failing.hpp"
#include "kinds/files/programs.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/file_access.hpp>
#include <godot_cpp/classes/os.hpp>

namespace {

using Kind = SCRunProgramAction;

struct Names {
	// In the slot: what the computer knows the running program by.
	StringName process = "process";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// A program, or why there is none: the part of a sentence before ", so nothing was done".
struct Found {
	String path;
	String wrong;
};

bool is_on(const char *system) {
	return OS::get_singleton()->has_feature(system);
}

// Windows hands these to its command shell, which takes arguments for commands.
bool is_batch_file(const String &path) {
	const String name = path.rstrip(" .").to_lower();
	return name.ends_with(".bat") || name.ends_with(".cmd");
}

bool may_be_run(const String &path) {
	constexpr int64_t MAY_BE_RUN = 0111;
	if (is_on("macos") && path.ends_with(".app")) {
		return files::is_folder(path);
	}
	return FileAccess::file_exists(path) && !files::is_folder(path) &&
			(is_on("windows") || (int64_t(FileAccess::get_unix_permissions(path)) & MAY_BE_RUN) != 0);
}

// The file itself, or the one that Windows means by it.
String program_at(const String &path) {
	if (may_be_run(path)) {
		return path;
	}
	return is_on("windows") && may_be_run(path + String(".exe")) ? path + String(".exe") : String();
}

String program_on_path(const String &name) {
	const PackedStringArray folders = OS::get_singleton()->get_environment("PATH").split(is_on("windows") ? ";" : ":", false);
	for (int64_t i = 0; i < folders.size(); i++) {
		const String found = folders[i].is_absolute_path() ? program_at(folders[i].replace("\\", "/").path_join(name)) : String();
		if (!found.is_empty()) {
			return found;
		}
	}
	return String();
}

// The engine starts a copy of the game first and only then looks for the program, so it never says that there is none.
Found find_program(const String &typed) {
	const String name = typed.strip_edges().replace("\\", "/");
	const String shown = files::in_warning(typed);
	if (name.is_empty()) {
		return { String(), "Program is empty" };
	}
	if (is_on("web") || is_on("mobile")) {
		return { String(), "other programs cannot be started here" };
	}
	if (is_batch_file(name)) {
		return { String(), vformat("%s is a batch file, which goes through a command shell", shown) };
	}
	String path = name;
	if (name.begins_with("user://") || name.begins_with("res://")) {
		path = files::on_the_computer(name);
	} else if (!name.contains("/")) {
		const String found = program_on_path(name);
		return { found, found.is_empty() ? vformat("this computer knows no program called %s", shown) : String() };
	} else if (!name.is_absolute_path()) {
		path = (is_on("editor") ? files::on_the_computer("res://") : OS::get_singleton()->get_executable_path().get_base_dir()).path_join(name);
	}
	const String found = path.is_empty() ? path : program_at(path);
	if (!found.is_empty()) {
		return { found, String() };
	}
	const bool is_there = FileAccess::file_exists(path);
	return { String(), vformat(is_there ? "%s is a file that may not be run as a program" : "there is no program %s", shown) };
}

PackedStringArray arguments_of(SCMachineBase *machine, const SCMachineAction *action) {
	const TypedArray<String> typed = setting_of<&Kind::arguments>(action);
	PackedStringArray arguments;
	for (int64_t i = 0; i < typed.size(); i++) {
		arguments.push_back(words::fill_in(typed[i], machine));
	}
	return arguments;
}

class RunProgram : public SCNativeAction {
	// The number of the process; 0 when it was not started, which is told.
	static int64_t start(SCMachineBase *machine, SCMachineAction *action) {
		Found program = find_program(files::filled_in<&Kind::program>(machine, action));
		if (program.wrong.is_empty()) {
			const PackedStringArray arguments = arguments_of(machine, action);
			const int64_t process = OS::get_singleton()->create_process(program.path, arguments, setting_of<&Kind::open_console>(action));
			if (process > 0) {
				return process;
			}
			program.wrong = vformat("the computer would not start %s", program.path);
		}
		files::fail<Kind>(machine, action, program.wrong, "Look at what is beside Program.");
		return 0;
	}

	static void ended(SCMachineBase *machine, SCMachineAction *action, int index, int64_t process) {
		const StillHere here(machine);
		machine->slot(index).erase(names().process);
		const int64_t code = OS::get_singleton()->get_process_exit_code(int32_t(process));
		verbs::keep_if_named<&Kind::store_exit_code_in>(machine, action, code);
		if (here) {
			verbs::send<&Kind::done_event>(machine, action, code);
		}
		if (here) {
			machine->finish(index);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		machine->slot(index).erase(names().process);
		const bool waits = setting_of<&Kind::wait_for_end>(action);
		const int64_t process = start(machine, action);
		if (process != 0 && here) {
			verbs::keep_if_named<&Kind::store_process_id_in>(machine, action, process);
		}
		if (process != 0 && here && waits) {
			machine->slot(index)[names().process] = process;
			return;
		}
		if (process != 0 && here) {
			verbs::send<&Kind::done_event>(machine, action);
		}
		if (here) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		const int64_t process = machine->slot(index).get(names().process, 0);
		if (process > 0 && !OS::get_singleton()->is_process_running(int32_t(process))) {
			ended(machine, action, index, process);
		}
	}
};

const AddKinds added = {
	add_kind<SCRunProgramAction, RunProgram>(),
};

} // namespace
