// The compiled runtime of Change Scene: which scene, and what becomes of global variables. The change itself is a script's.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/scene/changing_scene.hpp"
#include "kinds/scene/mouse_in_pause.hpp"
#include "machine/native_names.hpp"
#include "machine_node/values_setup.hpp"

#include <godot_cpp/classes/resource_loader.hpp>
#include <godot_cpp/classes/resource_uid.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

using Kind = SCChangeSceneAction;

struct Names {
	StringName script = "quillstead_scene_changer";
	StringName go = "go";
	// On the machine, for a load that fails once the kind is done.
	StringName failed_event = "quillstead_failed_event";
};

const Names &names() {
	return NativeNames::of<Names>();
}

bool is_a_scene(const String &path) {
	// Asking the loader about a number that nobody has is an engine error.
	if (path.begins_with("uid://")) {
		return false;
	}
	ResourceLoader *loader = ResourceLoader::get_singleton();
	return loader->exists(path) && loader->get_recognized_extensions_for_type("PackedScene").has(path.get_extension().to_lower());
}

// A file that the editor wrote down by its number.
String path_meant(const String &path) {
	if (!path.begins_with("uid://")) {
		return path;
	}
	ResourceUID *known = ResourceUID::get_singleton();
	const int64_t id = known->text_to_id(path);
	return known->has_id(id) ? known->get_id_path(id) : path;
}

String text_in(const Variant &held) {
	const Ref<Resource> resource = held;
	if (resource.is_valid()) {
		return resource->get_path();
	}
	return held.get_type() == Variant::NIL ? String() : held.stringify();
}

struct Change {
	String path;
	Ref<PackedScene> scene;
	Ref<PackedScene> loading_screen;
	StringName progress_in;
	StringName spot;
	bool reloading = false;
	Callable after_swap;
};

// Everything is read before anything is called, as that may end the state and free the machine.
class Going {
	SCMachineBase *machine;
	SCMachineAction *action;
	int index;
	const StillHere here;
	SceneTree *tree;
	StringName failed_event;
	double fade_seconds;
	Color fade_colour;

	void fail(Kind::Wrong code, const String &path) {
		verbs::say<&Kind::warn_scene>(action, machine, index, int64_t(code), path);
		if (here) {
			verbs::send(machine, failed_event);
		}
	}

	void go(const Change &change) {
		machine->set_meta(names().failed_event, failed_event);
		CompanionScripts::call(names().script, names().go,
				Array::make(tree, change.path, change.scene, fade_seconds, fade_colour, change.loading_screen, change.progress_in, change.spot,
						change.reloading, machine, change.after_swap));
	}

	void start_again() {
		const Node *scene = tree->get_current_scene();
		Change change;
		change.path = scene != nullptr ? scene->get_scene_file_path() : String();
		change.reloading = true;
		if (change.path.is_empty()) {
			fail(Kind::NOT_FROM_A_FILE, String());
			return;
		}
		if (setting_of<&Kind::put_globals_back>(action)) {
			Array keep = Array(setting_of<&Kind::keep_as_they_are>(action)).duplicate(true);
			keep.sort();
			change.after_swap = callable_mp_static(&MachineValues::put_globals_back).bind(keep);
		}
		go(change);
	}

	void go_to_another() {
		const StringName path_variable = setting_of<&Kind::path_variable>(action);
		Change change;
		change.loading_screen = setting_of<&Kind::loading_screen>(action);
		change.progress_in = setting_of<&Kind::store_progress_in>(action);
		bool is_sure = false;
		if (path_variable.is_empty()) {
			change.path = path_meant(setting_of<&Kind::scene_path>(action).strip_edges());
			change.scene = setting_of<&Kind::scene>(action);
			if (change.scene.is_valid() && !change.scene->get_path().is_empty()) {
				change.path = change.scene->get_path();
				is_sure = true;
			}
		} else {
			change.path = path_meant(text_in(values::value_of(machine, Variant(), path_variable)).strip_edges());
		}
		if (change.path.is_empty() && change.scene.is_null()) {
			fail(path_variable.is_empty() ? Kind::NO_SCENE : Kind::NOTHING_IN_THE_VARIABLE, String());
			return;
		}
		if (!is_sure && !change.path.is_empty() && !is_a_scene(change.path)) {
			fail(Kind::NO_SUCH_SCENE, change.path);
			return;
		}
		if (!change.path.is_empty()) {
			change.scene.unref();
		}
		change.spot = setting_of<&Kind::arrive_at>(action);
		const StringName spot_variable = setting_of<&Kind::arrive_at_variable>(action);
		if (!spot_variable.is_empty()) {
			change.spot = text_in(values::value_of(machine, String(change.spot), spot_variable));
		}
		go(change);
	}

public:
	Going(SCMachineBase *of_machine, SCMachineAction *of_action, int of_index) :
			machine(of_machine), action(of_action), index(of_index), here(of_machine), tree(of_machine->is_inside_tree() ? of_machine->get_tree() : nullptr),
			failed_event(setting_of<&Kind::failed_event>(of_action)), fade_seconds(MAX(checked::number<&Kind::fade_seconds>(of_machine, of_action), 0.0)),
			fade_colour(setting_of<&Kind::fade_colour>(of_action)) {}

	void begin() {
		if (tree == nullptr) {
			verbs::warn(machine, action, "the machine is in no scene, so it stays where it is. Add its node to the scene first.");
			verbs::send(machine, failed_event);
			return;
		}
		if (setting_of<&Kind::resume_first>(action)) {
			tree->set_pause(false);
			mouse_in_pause::put_back();
		}
		if (!here) {
			return;
		}
		if (checked::choice<&Kind::go_to>(machine, action, Kind::ANOTHER_SCENE) == Kind::RELOAD_CURRENT_SCENE) {
			start_again();
		} else {
			go_to_another();
		}
	}
};

class ChangeScene : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		// The scene goes away under it.
		machine->finish(index);
		Going(machine, action, index).begin();
	}
};

const AddKinds added = {
	add_kind<SCChangeSceneAction, ChangeScene>(),
};

} // namespace
