// Compiled runtimes of Copy Folder and Move To Bin.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/files/failing.hpp"
#include "kinds/files/folder_copy.hpp"
#include "kinds/files/folders.hpp"

#include <godot_cpp/classes/file_access.hpp>
#include <godot_cpp/classes/os.hpp>

namespace {

class CopyFolder : public SCNativeAction {
	using Kind = SCCopyFolderAction;

	// A part of a frame that nobody sees.
	static constexpr uint64_t MICROSECONDS_A_FRAME = 4000;

	// False when there is nothing to copy or nowhere to copy it to, which is told.
	static bool begin(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StillHere here(machine);
		const files::Place from = files::place_or_fail<Kind, &Kind::from>(machine, action, files::READ);
		if (!from || !here) {
			return false;
		}
		const files::Place to = files::place_or_fail<Kind, &Kind::to>(machine, action, files::WRITE);
		if (!to || !here) {
			return false;
		}
		if (!files::is_folder(from.path)) {
			const String wrong = vformat(FileAccess::file_exists(from.path) ? "%s is a file, not a folder" : "there is no folder %s", from.path);
			files::fail_or_send<Kind>(machine, action, wrong, "Look at what is beside From.");
			return false;
		}
		const String there = files::on_the_computer(to.path);
		if (files::is_within(there, files::on_the_computer(from.path))) {
			files::fail<Kind>(machine, action, vformat("%s is inside the folder that is copied", to.path), "Name a folder elsewhere beside To.");
			return false;
		}
		const auto if_there = checked::choice<&Kind::if_there>(machine, action, Kind::DO_NOT_COPY);
		if (if_there == Kind::DO_NOT_COPY && (files::is_folder(to.path) || FileAccess::file_exists(to.path))) {
			files::fail_or_send<Kind>(machine, action, vformat("there is something at %s already", to.path), "Pick another choice beside If There.");
			return false;
		}
		files::FolderCopy(machine->slot(index)).begin(from.path, to.path, if_there == Kind::KEEP_FILES);
		return true;
	}

	static void go_on(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StillHere here(machine);
		files::FolderCopy copy(machine->slot(index));
		const String wrong = copy.go_on(MICROSECONDS_A_FRAME);
		if (wrong.is_empty() && copy.is_under_way()) {
			return;
		}
		const int64_t count = copy.count();
		copy.stop();
		verbs::keep_if_named<&Kind::store_count_in>(machine, action, count);
		if (here && !wrong.is_empty()) {
			verbs::warn(machine, action,
					vformat("%s, so the copying ended there, after %d files. Copy to a folder that can be written to and has enough room.", wrong, count));
		}
		if (here && !wrong.is_empty()) {
			files::send_failed<Kind>(machine, action, wrong);
		} else if (here) {
			verbs::send<&Kind::done_event>(machine, action, count);
		}
		if (here) {
			machine->finish(index);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		files::FolderCopy(machine->slot(index)).stop();
		if (begin(machine, action, index)) {
			go_on(machine, action, index);
		} else if (here) {
			machine->finish(index);
		}
	}
	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		if (files::FolderCopy(machine->slot(index)).is_under_way()) {
			go_on(machine, action, index);
		}
	}
	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { files::FolderCopy(machine->slot(index)).stop(); }
};

class MoveToBin : public OnceOrRepeating<MoveToBin> {
	using Kind = SCMoveToBinAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StillHere here(machine);
		const files::Place place = files::place_or_fail<Kind, &Kind::path>(machine, action, files::TAKE_AWAY);
		if (!place || !here) {
			return;
		}
		if (!files::is_folder(place.path) && !FileAccess::file_exists(place.path)) {
			files::fail_or_send<Kind>(
					machine, action, vformat("there is nothing at %s", place.path), "Look at how it is spelled, large and small letters too.");
		} else if (OS::get_singleton()->move_to_trash(files::on_the_computer(place.path)) != OK) {
			files::fail<Kind>(machine, action, vformat("%s could not be moved to the Bin", place.path),
					"Another program may have it open, or the computer has no Bin, as in a browser or on a phone.");
		} else {
			verbs::send<&Kind::done_event>(machine, action);
		}
	}
};

const AddKinds added = {
	add_kind<SCCopyFolderAction, CopyFolder>(),
	add_kind<SCMoveToBinAction, MoveToBin>(),
};

} // namespace
