// The compiled runtime of Choose Folder. The window is the engine's own, which asks for the computer's where there is one.

#include "action/add_kind.hpp"
#include "action/add_later.hpp"
#include "action/native_calls.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/files/folders.hpp"
#include "kinds/files/paths.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/classes/os.hpp>
#include <godot_cpp/classes/window.hpp>

namespace {

using Kind = SCChooseFolderAction;

struct Names {
	// In the slot: the id of the window.
	StringName window = "window";
	StringName file_dialog = "FileDialog";
	StringName access = "access";
	StringName file_mode = "file_mode";
	StringName mode_overrides_title = "mode_overrides_title";
	StringName use_native_dialog = "use_native_dialog";
	StringName current_dir = "current_dir";
	StringName dir_selected = "dir_selected";
	StringName canceled = "canceled";
	StringName ready = "ready";
	StringName popup_centered_clamped = "popup_centered_clamped";
	String node_name = "ChooseFolder";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// Constants of the engine's FileDialog.
constexpr int64_t ALL_OF_THE_COMPUTER = 2;
constexpr int64_t A_FOLDER = 2;

void take_away(SCMachineBase *machine, int index) {
	Dictionary slot = machine->slot(index);
	const auto id = uint64_t(int64_t(slot.get(names().window, 0)));
	slot.erase(names().window);
	if (Node *window = Object::cast_to<Node>(ObjectDB::get_instance(id))) {
		window->queue_free();
	}
}

void answer(SCMachineBase *machine, SCMachineAction *action, int index, const Variant &folder) {
	const StillHere here(machine);
	const Callable finish = machine->finisher(index);
	take_away(machine, index);
	if (folder.get_type() == Variant::NIL) {
		verbs::send<&Kind::canceled_event>(machine, action);
	} else {
		verbs::keep_if_named<&Kind::store_in>(machine, action, folder);
		if (here) {
			verbs::send<&Kind::chosen_event>(machine, action, folder);
		}
	}
	if (here) {
		finish.call();
	}
}

void hear_chosen(SCMachineBase *machine, SCMachineAction *action, int index, const Array &handed_over) {
	answer(machine, action, index, handed_over.is_empty() ? Variant() : handed_over[0]);
}

void hear_canceled(SCMachineBase *machine, SCMachineAction *action, int index, const Array &) {
	answer(machine, action, index, Variant());
}

void show(Node *window) {
	window->call(names().popup_centered_clamped, Vector2i(800, 560), 0.8);
}

String shown_at_first(SCMachineBase *machine, SCMachineAction *action) {
	const String documents = OS::get_singleton()->get_system_dir(OS::SYSTEM_DIR_DOCUMENTS);
	const String typed = files::filled_in<&Kind::start_in>(machine, action);
	if (typed.strip_edges().is_empty()) {
		return documents;
	}
	const files::Place place = files::place_of(typed, files::READ, true, verbs::setting_in_inspector(verbs::name_of<&Kind::start_in>()));
	if (place && files::is_folder(place.path) && !files::on_the_computer(place.path).is_empty()) {
		return files::on_the_computer(place.path);
	}
	verbs::warn(machine, action,
			vformat("there is no folder %s to begin with, so the player's Documents are shown. Type another under Start In, or leave it empty.",
					files::in_warning(typed)));
	return documents;
}

class ChooseFolder : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		take_away(machine, index);
		if (setting_of<&Kind::store_in>(action).is_empty() && setting_of<&Kind::chosen_event>(action).is_empty()) {
			verbs::warn(machine, action, "nothing would come of the player's choice, so the player was not asked. Pick a variable under Store In.");
			machine->finish(index);
			return;
		}
		Window *window = Object::cast_to<Window>(ClassDBSingleton::get_singleton()->instantiate(names().file_dialog).get_validated_object());
		if (window == nullptr) {
			verbs::warn(machine, action, "the engine was built without a window to choose folders in, so the player was not asked.");
			machine->finish(index);
			return;
		}
		window->set_name(names().node_name);
		window->set(names().access, ALL_OF_THE_COMPUTER);
		window->set(names().mode_overrides_title, false);
		window->set(names().file_mode, A_FOLDER);
		window->set(names().use_native_dialog, true);
		window->set(names().current_dir, shown_at_first(machine, action));
		window->set_title(words::fill_in(setting_of<&Kind::title>(action), machine));
		// Two machines may ask at the same time, and the engine gives way to one such window alone.
		window->set_exclusive(false);
		window->set_process_mode(Node::PROCESS_MODE_ALWAYS);
		window->connect(names().dir_selected, ActionCall::make("Choose Folder: chosen", machine, action, index, hear_chosen));
		window->connect(names().canceled, ActionCall::make("Choose Folder: closed", machine, action, index, hear_canceled));
		window->connect(names().ready, NodeCall::make("Choose Folder: shown", window, show));
		machine->slot(index)[names().window] = int64_t(window->get_instance_id());
		add_later::to(machine, window, Node::INTERNAL_MODE_BACK);
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { take_away(machine, index); }
};

const AddKinds added = {
	add_kind<SCChooseFolderAction, ChooseFolder>(),
};

} // namespace
