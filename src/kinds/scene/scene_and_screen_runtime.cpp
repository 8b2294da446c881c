// Compiled runtimes of Get Scene and Get Screen Size.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/scene/scene_and_screen.hpp"

#include <godot_cpp/classes/display_server.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/viewport.hpp>
#include <godot_cpp/classes/window.hpp>

namespace {

class GetScene : public OnceOrRepeating<GetScene> {
	using Kind = SCGetSceneAction;

	static String told_of(SCMachineBase *machine, SCMachineAction *action, const Node *scene) {
		switch (checked::choice<&Kind::what>(machine, action, Kind::NAME)) {
			case Kind::FILE:
				return scene->get_scene_file_path();
			case Kind::FILE_NAME:
				return scene->get_scene_file_path().get_file().get_basename();
			case Kind::NAME:
				break;
		}
		return scene->get_name();
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		// While one scene takes the place of another there is none.
		const Node *scene = machine->is_inside_tree() ? machine->get_tree()->get_current_scene() : nullptr;
		if (scene == nullptr) {
			verbs::warn(machine, action, "no scene is running just now, so nothing was kept. A frame after a change of scene there is one again.");
			return;
		}
		verbs::keep<&Kind::store_in>(machine, action, told_of(machine, action, scene), "it");
	}
};

class GetScreenSize : public OnceOrRepeating<GetScreenSize> {
	using Kind = SCGetScreenSizeAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const Viewport *viewport = machine->is_inside_tree() ? machine->get_viewport() : nullptr;
		if (viewport == nullptr) {
			verbs::warn(machine, action, "it is on no screen, so nothing was kept. Put the machine into the scene.");
			return;
		}
		const Rect2 visible = viewport->get_visible_rect();
		const Window *window = machine->get_tree()->get_root();
		const Vector2 monitor = DisplayServer::get_singleton()->screen_get_size(window->get_current_screen());
		const bool any = verbs::keep_each<&Kind::store_in, &Kind::store_middle_in, &Kind::store_window_in, &Kind::store_monitor_in>(
				machine, action, { visible.size, visible.get_center(), Vector2(window->get_size()), monitor });
		if (!any) {
			verbs::keep<&Kind::store_in>(machine, action, visible.size, "the size");
		}
	}
};

const AddKinds added = {
	add_kind<SCGetSceneAction, GetScene>(),
	add_kind<SCGetScreenSizeAction, GetScreenSize>(),
};

} // namespace
