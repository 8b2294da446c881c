#include "kinds/scene/mouse_in_pause.hpp"

#include <godot_cpp/classes/input.hpp>

using namespace godot;

namespace mouse_in_pause {

namespace {

constexpr int NONE = -1;
int before = NONE;

} // namespace

void show() {
	Input *input = Input::get_singleton();
	const Input::MouseMode mode = input->get_mouse_mode();
	if (mode == Input::MOUSE_MODE_VISIBLE) {
		before = NONE;
		return;
	}
	before = int(mode);
	input->set_mouse_mode(Input::MOUSE_MODE_VISIBLE);
}

void put_back() {
	Input *input = Input::get_singleton();
	const int mode = before;
	before = NONE;
	if (mode != NONE && input->get_mouse_mode() == Input::MOUSE_MODE_VISIBLE) {
		input->set_mouse_mode(Input::MouseMode(mode));
	}
}

} // namespace mouse_in_pause
