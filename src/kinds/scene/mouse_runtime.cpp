// The compiled runtime of Set Mouse Mode.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/holders.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/scene/mouse.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/input.hpp>

namespace {

using Kind = SCSetMouseModeAction;

struct Names {
	StringName mouse_mode = "mouse_mode";
	// In the slot: what the mode is held with, and which pointer was changed.
	StringName ticket = "ticket";
	StringName shape = "shape";
	StringName get_image = "get_image";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// Larger ones the engine refuses.
constexpr int64_t MOST_PIXELS = 256;

void let_go(SCMachineBase *machine, int index) {
	Dictionary slot = machine->slot(index);
	const int64_t ticket = slot.get(names().ticket, 0);
	const int64_t shape = slot.get(names().shape, -1);
	slot.erase(names().ticket);
	slot.erase(names().shape);
	if (ticket != 0) {
		holders::let_go(ticket);
	}
	if (shape >= 0) {
		Input::get_singleton()->set_custom_mouse_cursor(Ref<Resource>(), Input::CursorShape(shape));
	}
}

class SetMouseMode : public OnceOrRepeating<SetMouseMode> {
	static void set_mode(SCMachineBase *machine, SCMachineAction *action, int index) {
		const auto mode = checked::choice<&Kind::mode>(machine, action, Kind::AS_IT_IS);
		Input *input = Input::get_singleton();
		if (mode == Kind::AS_IT_IS) {
			return;
		}
		if (!setting_of<&Kind::put_back_when_left>(action)) {
			holders::change_for_good(input, names().mouse_mode, int64_t(mode));
		} else if (!machine->slot(index).has(names().ticket)) {
			machine->slot(index)[names().ticket] = holders::hold(input, names().mouse_mode, machine, int64_t(mode));
		}
		if (input->get_mouse_mode() != Input::MouseMode(int(mode))) {
			input->set_mouse_mode(Input::MouseMode(int(mode)));
		}
	}

	// Null, and told, when no pointer can be made of it.
	static Ref<Texture2D> picture_or_warn(SCMachineBase *machine, SCMachineAction *action) {
		const Ref<Texture2D> picture = setting_of<&Kind::picture>(action);
		String wrong;
		if (picture.is_null()) {
			wrong = "there is no picture for the pointer";
		} else if (picture->get_width() > MOST_PIXELS || picture->get_height() > MOST_PIXELS) {
			wrong = vformat("%s is of %d by %d pixels, which is too large for a pointer", words::text_of(picture), picture->get_width(), picture->get_height());
		} else if (picture->get_width() < 1 || picture->call(names().get_image).get_validated_object() == nullptr) {
			// The engine prints an error for a texture that has not been drawn yet.
			wrong = vformat("%s has nothing in it to show as a pointer", words::text_of(picture));
		}
		if (!wrong.is_empty()) {
			verbs::warn(machine, action, vformat("%s, so the pointer stays as it is. Pick one of at most 256 by 256 pixels under Picture.", wrong));
			return Ref<Texture2D>();
		}
		return picture;
	}

	static void set_pointer(SCMachineBase *machine, SCMachineAction *action, int index) {
		const auto pointer = checked::choice<&Kind::pointer>(machine, action, Kind::POINTER_AS_IT_IS);
		if (pointer == Kind::POINTER_AS_IT_IS) {
			return;
		}
		const auto shape = Input::CursorShape(int(checked::choice<&Kind::shape>(machine, action, Kind::ARROW)));
		if (pointer == Kind::THE_USUAL_ONE) {
			Input::get_singleton()->set_custom_mouse_cursor(Ref<Resource>(), shape);
			return;
		}
		const Ref<Texture2D> picture = picture_or_warn(machine, action);
		const Vector2 hotspot = setting_of<&Kind::hotspot>(action);
		if (picture.is_null() || !checked::sound_or_warn(machine, action, hotspot, verbs::name_of<&Kind::hotspot>())) {
			return;
		}
		if (setting_of<&Kind::put_back_when_left>(action)) {
			machine->slot(index)[names().shape] = int64_t(shape);
		}
		Input::get_singleton()->set_custom_mouse_cursor(
				picture, shape, hotspot.clamp(Vector2(), Vector2(real_t(picture->get_width() - 1), real_t(picture->get_height() - 1))));
	}

public:
	static constexpr bool HOLDS = true;

	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double delta) {
		set_mode(machine, action, index);
		// A picture is handed to the computer each time; what it was given once it keeps.
		if (delta == 0.0) {
			set_pointer(machine, action, index);
		}
	}
	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { let_go(machine, index); }
};

const AddKinds added = {
	add_kind<SCSetMouseModeAction, SetMouseMode>(),
};

} // namespace
