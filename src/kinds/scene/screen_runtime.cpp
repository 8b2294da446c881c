// The compiled runtime of Screen Settings.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/scene/screen.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/display_server.hpp>
#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/os.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>

namespace {

using Kind = SCScreenSettingsAction;

struct Names {
	// Of the window: what it goes back to from fullscreen, and the size it gets then.
	StringName mode_before = "quillstead_mode_before_fullscreen";
	StringName size_as_window = "quillstead_size_as_window";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// A player finds the way back from that.
constexpr int32_t SMALLEST_WINDOW = 64;
constexpr double SMALLEST_SCALE = 0.25;
constexpr double LARGEST_SCALE = 8.0;
constexpr int64_t HIGHEST_FPS = 100000;

Kind::Mode mode_of(const Window *window) {
	switch (window->get_mode()) {
		case Window::MODE_FULLSCREEN:
			return Kind::FULLSCREEN;
		case Window::MODE_EXCLUSIVE_FULLSCREEN:
			return Kind::EXCLUSIVE_FULLSCREEN;
		case Window::MODE_MAXIMIZED:
			return Kind::MAXIMIZED;
		default:
			return window->get_flag(Window::FLAG_BORDERLESS) ? Kind::WINDOW_WITHOUT_FRAME : Kind::WINDOW;
	}
}

bool is_fullscreen(Kind::Mode mode) {
	return mode == Kind::FULLSCREEN || mode == Kind::EXCLUSIVE_FULLSCREEN;
}

bool is_a_window(Kind::Mode mode) {
	return mode == Kind::WINDOW || mode == Kind::WINDOW_WITHOUT_FRAME;
}

// What is to be done, in the settings' own terms, and what of it cannot be.
struct Wanted {
	Kind::Mode mode = Kind::MODE_AS_IT_IS;
	Vector2i size;
	int32_t screen = -1;
	Kind::VSync vsync = Kind::VSYNC_AS_IT_IS;
	bool centers = true;
	PackedStringArray refused;

	bool has_size() const { return size != Vector2i(); }
	void refuse(const StringName &setting) { refused.push_back(verbs::setting_in_inspector(setting)); }
};

// What the place where the game runs does not let it do. A window is the game's own on a computer alone.
struct Place {
	String reason;
	String remedy;
	bool has_modes = true;
	bool has_window = true;
	bool has_vsync = true;
};

Place place_it_runs_in() {
	const OS *os = OS::get_singleton();
	Place place;
	if (DisplayServer::get_singleton()->get_name() == String("headless")) {
		place.reason = "the game runs without a screen";
		place.remedy = "Start it without --headless.";
		place.has_modes = place.has_window = place.has_vsync = false;
	} else if (Engine::get_singleton()->is_embedded_in_editor()) {
		place.reason = "the game is shown inside of the editor";
		place.remedy = "Untick Embed Game on Next Play in the editor's Game tab to see it.";
		place.has_modes = place.has_window = false;
	} else if (os->has_feature("web")) {
		place.reason = "a game in a browser has no window of its own";
		place.remedy = "There, offer fullscreen alone.";
		place.has_window = place.has_vsync = false;
	} else if (os->has_feature("mobile")) {
		place.reason = "a game on a phone has no window of its own";
		place.remedy = "There, leave these out of the menu.";
		place.has_window = false;
	}
	return place;
}

// Takes out what the place does not have.
void leave_out(Wanted &wanted, const Place &place) {
	const bool needs_window = wanted.mode == Kind::WINDOW_WITHOUT_FRAME || wanted.mode == Kind::MAXIMIZED;
	if (wanted.mode != Kind::MODE_AS_IT_IS && (needs_window ? !place.has_window : !place.has_modes)) {
		wanted.refuse(verbs::name_of<&Kind::mode>());
		wanted.mode = Kind::MODE_AS_IT_IS;
	}
	if (wanted.has_size() && !place.has_window) {
		wanted.refuse(verbs::name_of<&Kind::window_size>());
		wanted.size = Vector2i();
	}
	if (wanted.screen >= 0 && !place.has_window) {
		wanted.refuse(verbs::name_of<&Kind::screen>());
		wanted.screen = -1;
	}
	if (wanted.vsync != Kind::VSYNC_AS_IT_IS && !place.has_vsync) {
		wanted.refuse(verbs::name_of<&Kind::vsync>());
		wanted.vsync = Kind::VSYNC_AS_IT_IS;
	}
}

Kind::Mode mode_to_go_to(const Window *window, Kind::Mode wanted) {
	if (wanted != Kind::TOGGLE_FULLSCREEN) {
		return wanted;
	}
	if (!is_fullscreen(mode_of(window))) {
		return Kind::FULLSCREEN;
	}
	const int64_t before = window->get_meta(names().mode_before, int64_t(Kind::WINDOW));
	return before == Kind::MAXIMIZED || before == Kind::WINDOW_WITHOUT_FRAME ? Kind::Mode(int(before)) : Kind::WINDOW;
}

void set_mode(Window *window, Kind::Mode mode) {
	const Kind::Mode now = mode_of(window);
	if (mode == Kind::MODE_AS_IT_IS || mode == now) {
		return;
	}
	if (is_fullscreen(mode) && !is_fullscreen(now)) {
		window->set_meta(names().mode_before, int64_t(now));
	}
	switch (mode) {
		case Kind::FULLSCREEN:
			window->set_mode(Window::MODE_FULLSCREEN);
			return;
		case Kind::EXCLUSIVE_FULLSCREEN:
			window->set_mode(Window::MODE_EXCLUSIVE_FULLSCREEN);
			return;
		case Kind::MAXIMIZED:
			window->set_flag(Window::FLAG_BORDERLESS, false);
			window->set_mode(Window::MODE_MAXIMIZED);
			return;
		default:
			window->set_mode(Window::MODE_WINDOWED);
			window->set_flag(Window::FLAG_BORDERLESS, mode == Kind::WINDOW_WITHOUT_FRAME);
	}
}

// What the frame adds to the window.
Vector2i frame_of(const Window *window) {
	return (window->get_size_with_decorations() - window->get_size()).max(Vector2i());
}

Rect2i room_on_its_screen(const Window *window) {
	const int32_t screen = window->get_current_screen();
	const Rect2i usable = DisplayServer::get_singleton()->screen_get_usable_rect(screen);
	if (usable.size.x > 0 && usable.size.y > 0) {
		return usable;
	}
	return Rect2i(DisplayServer::get_singleton()->screen_get_position(screen), DisplayServer::get_singleton()->screen_get_size(screen));
}

void set_size(Window *window, const Vector2i &size) {
	const Vector2i room = room_on_its_screen(window).size - frame_of(window);
	window->set_size(size.min(room).max(Vector2i(SMALLEST_WINDOW, SMALLEST_WINDOW)));
}

void put_in_the_middle(Window *window) {
	const Rect2i room = room_on_its_screen(window);
	const Vector2i frame = frame_of(window);
	const Vector2i corner = window->get_position() - window->get_position_with_decorations();
	const Vector2i spare = (room.size - window->get_size() - frame).max(Vector2i());
	window->set_position(room.position + spare / 2 + corner);
}

void set_window(Window *window, const Wanted &wanted) {
	if (wanted.screen >= 0 && wanted.screen != window->get_current_screen()) {
		window->set_current_screen(wanted.screen);
	}
	const Kind::Mode before = mode_of(window);
	set_mode(window, mode_to_go_to(window, wanted.mode));
	const Kind::Mode now = mode_of(window);
	if (!is_a_window(now)) {
		if (wanted.has_size()) {
			window->set_meta(names().size_as_window, wanted.size);
		}
		return;
	}
	const Vector2i size = wanted.has_size() ? wanted.size : Vector2i(window->get_meta(names().size_as_window, Vector2i()));
	window->remove_meta(names().size_as_window);
	if (size != Vector2i()) {
		set_size(window, size);
	}
	if (wanted.centers && (size != Vector2i() || now != before || wanted.screen >= 0)) {
		put_in_the_middle(window);
	}
}

class ScreenSettings : public OnceOrRepeating<ScreenSettings> {
	// The screen's number; below 0, with the reason told, when there is none.
	static int32_t screen_wanted(SCMachineBase *machine, SCMachineAction *action, const Window *window, String &wrong) {
		const DisplayServer *display = DisplayServer::get_singleton();
		const int32_t count = display->get_screen_count();
		switch (checked::choice<&Kind::screen>(machine, action, Kind::SCREEN_AS_IT_IS)) {
			case Kind::THE_NEXT_ONE:
				return count > 0 ? (window->get_current_screen() + 1) % count : 0;
			case Kind::THE_MAIN_ONE:
				return MAX(display->get_primary_screen(), 0);
			case Kind::SCREEN_AS_IT_IS:
				return -1;
			case Kind::BY_NUMBER:
				break;
		}
		const int64_t number = setting_of<&Kind::screen_number>(action);
		if (number >= 0 && number < MAX(count, 1)) {
			return int32_t(number);
		}
		wrong = vformat("there is no screen %d, as the computer has %d", number, count);
		return -1;
	}

	static Wanted wanted_of(SCMachineBase *machine, SCMachineAction *action) {
		Wanted wanted;
		wanted.mode = checked::choice<&Kind::mode>(machine, action, Kind::MODE_AS_IT_IS);
		wanted.vsync = checked::choice<&Kind::vsync>(machine, action, Kind::VSYNC_AS_IT_IS);
		wanted.centers = setting_of<&Kind::center_window>(action);
		const Vector2 size = setting_of<&Kind::window_size>(action);
		if (size == Vector2() || !checked::sound_or_warn(machine, action, size, verbs::name_of<&Kind::window_size>())) {
			return wanted;
		}
		if (size.x <= 0 || size.y <= 0) {
			verbs::warn(machine, action,
					vformat("a window cannot be of %s by %s pixels, so it keeps its size. Type two numbers above 0 under Window Size, or two zeros to leave it "
							"alone.",
							words::number(size.x), words::number(size.y)));
		} else {
			constexpr real_t MOST = 1 << 20;
			wanted.size = Vector2i(size.clamp(Vector2(1, 1), Vector2(MOST, MOST)).round());
		}
		return wanted;
	}

	static void set_the_rest(SCMachineBase *machine, SCMachineAction *action, Window *window, const Wanted &wanted) {
		if (wanted.vsync != Kind::VSYNC_AS_IT_IS) {
			DisplayServer::get_singleton()->window_set_vsync_mode(DisplayServer::VSyncMode(int(wanted.vsync) - int(Kind::VSYNC_OFF)));
		}
		const int64_t fps = setting_of<&Kind::max_fps>(action);
		if (fps >= 0) {
			Engine::get_singleton()->set_max_fps(int32_t(MIN(fps, HIGHEST_FPS)));
		}
		const double scale = checked::number<&Kind::interface_scale>(machine, action);
		if (scale > 0.0) {
			window->set_content_scale_factor(real_t(CLAMP(scale, SMALLEST_SCALE, LARGEST_SCALE)));
		}
	}

	static void tell_how_it_is(SCMachineBase *machine, SCMachineAction *action, const Window *window) {
		const Kind::Mode mode = mode_of(window);
		const int64_t vsync = int64_t(DisplayServer::get_singleton()->window_get_vsync_mode()) + int64_t(Kind::VSYNC_OFF);
		verbs::keep_each<&Kind::store_mode_in, &Kind::store_fullscreen_in, &Kind::store_size_in, &Kind::store_screen_in, &Kind::store_vsync_in>(
				machine, action, { int64_t(mode), is_fullscreen(mode), Vector2(window->get_size()), int64_t(window->get_current_screen()), vsync });
	}

	static bool names_anything(SCMachineAction *action) {
		const Kind *kind = as_kind<Kind>(action);
		return kind == nullptr || kind->sets_something() || kind->stores_something();
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StillHere here(machine);
		if (!machine->is_inside_tree()) {
			verbs::warn(machine, action, "it is on no screen, so nothing was set. Put the machine into the scene.");
			return;
		}
		if (!names_anything(action)) {
			verbs::warn(machine, action, "nothing is to be set, so the screen stays as it is. Pick something under Mode or below.");
		}
		Window *window = machine->get_tree()->get_root();
		Wanted wanted = wanted_of(machine, action);
		String wrong;
		String remedy = "Pick one of those that there are under Screen Number.";
		wanted.screen = screen_wanted(machine, action, window, wrong);
		const Place place = place_it_runs_in();
		leave_out(wanted, place);
		if (!wanted.refused.is_empty()) {
			wrong = place.reason;
			remedy = place.remedy;
		}
		set_window(window, wanted);
		if (here) {
			set_the_rest(machine, action, window, wanted);
		}
		if (here) {
			tell_how_it_is(machine, action, window);
		}
		if (!here) {
			return;
		}
		if (wrong.is_empty()) {
			verbs::send<&Kind::changed_event>(machine, action);
			return;
		}
		const String left = wanted.refused.is_empty() ? String("Screen") : String(" and ").join(wanted.refused);
		verbs::warn(machine, action, vformat("%s, so nothing was done about %s. %s", wrong, left, remedy));
		verbs::send<&Kind::failed_event>(machine, action, wrong);
	}
};

const AddKinds added = {
	add_kind<SCScreenSettingsAction, ScreenSettings>(),
};

} // namespace
