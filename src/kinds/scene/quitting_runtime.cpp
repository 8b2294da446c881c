// The compiled runtime of Quit Game.

#include "action/add_kind.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/scene/quitting.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/os.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>

namespace {

using Kind = SCQuitGameAction;

struct Names {
	// Of the tree: everybody has been told.
	StringName told = "quillstead_told_of_quitting";
	StringName close_requested = "close_requested";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// What the system keeps of it elsewhere is the rest of a division.
constexpr int64_t HIGHEST_CODE = 255;

void add_below(const Node *node, LocalVector<ObjectID> &nodes) {
	nodes.push_back(ObjectID(node->get_instance_id()));
	for (int i = 0; i < node->get_child_count(true); i++) {
		add_below(node->get_child(i, true), nodes);
	}
}

// Those who hear of it may add and free nodes, or quit as well.
void tell_everybody(SceneTree *tree) {
	if (tree->has_meta(names().told)) {
		return;
	}
	tree->set_meta(names().told, true);
	LocalVector<ObjectID> nodes;
	add_below(tree->get_root(), nodes);
	for (const ObjectID &id : nodes) {
		if (Node *node = Object::cast_to<Node>(ObjectDB::get_instance(id))) {
			node->notification(Node::NOTIFICATION_WM_CLOSE_REQUEST);
		}
	}
	tree->get_root()->emit_signal(names().close_requested);
}

class QuitGame : public SCNativeAction {
	static String what_forbids() {
		const OS *os = OS::get_singleton();
		if (os->has_feature("web")) {
			return "a game in a browser is closed by the player, with its tab";
		}
		return os->has_feature("ios") ? "an app on an iPhone is closed by the player" : "";
	}

	static int64_t code_or_nearest(SCMachineBase *machine, SCMachineAction *action) {
		const int64_t typed = setting_of<&Kind::exit_code>(action);
		const int64_t code = CLAMP(typed, int64_t(0), HIGHEST_CODE);
		if (code != typed) {
			verbs::warn(
					machine, action, vformat("%d is no code that a game can end with, so it ends with %d. Pick one of 0 to 255 under Exit Code.", typed, code));
		}
		return code;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		SceneTree *tree = machine->is_inside_tree() ? machine->get_tree() : nullptr;
		const String forbidden = tree == nullptr ? String("the machine is in no scene") : what_forbids();
		if (!forbidden.is_empty()) {
			verbs::warn(
					machine, action, vformat("%s, so the game goes on. Use Failed Event to show something in its place, such as the title screen.", forbidden));
			verbs::send<&Kind::failed_event>(machine, action, forbidden);
			if (here) {
				machine->finish(index);
			}
			return;
		}
		const int64_t code = code_or_nearest(machine, action);
		if (setting_of<&Kind::tell_everybody_first>(action)) {
			tell_everybody(tree);
		}
		// Whatever came of the machine meanwhile: it has been asked to quit.
		tree->quit(int32_t(code));
	}
};

const AddKinds added = {
	add_kind<SCQuitGameAction, QuitGame>(),
};

} // namespace
