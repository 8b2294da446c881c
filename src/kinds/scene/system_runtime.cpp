// The compiled runtime of System.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/native_calls.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/scene/system.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/dir_access.hpp>
#include <godot_cpp/classes/display_server.hpp>
#include <godot_cpp/classes/input.hpp>
#include <godot_cpp/classes/os.hpp>
#include <godot_cpp/classes/project_settings.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/translation_server.hpp>
#include <godot_cpp/classes/window.hpp>

namespace {

using Kind = SCSystemAction;

struct Names {
	// In the slot: what hears the player's answer.
	StringName hears = "hears";
	// Of the tree.
	StringName answered = "on_request_permissions_result";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// What came of it: what was found out, or why there is nothing, and what the game maker can do about that.
struct Answer {
	Variant value;
	String name;
	String wrong;
	String remedy;

	static Answer of(const Variant &found, const String &called = String()) { return { found, called, String(), String() }; }
	static Answer none(const String &why, const String &do_this = String()) {
		return { Variant(), String(), why, do_this.is_empty() ? String("Failed Event tells when that is so.") : do_this };
	}
	// Of a text that the computer may not know.
	static Answer known(const String &found, const char *why) { return found.is_empty() ? none(why) : of(found); }
};

bool is_on(const char *system) {
	return OS::get_singleton()->has_feature(system);
}

bool has_screen() {
	return DisplayServer::get_singleton()->get_name() != String("headless");
}

template <auto Field>
String filled_in(SCMachineBase *machine, const SCMachineAction *action) {
	const String typed = setting_of<Field>(action);
	return action->is_typed_in(verbs::name_of<Field>()) ? words::fill_in(typed, machine) : typed;
}

bool has_control_characters(const String &text) {
	for (int64_t i = 0; i < text.length(); i++) {
		if (text[i] < U' ' || text[i] == U'\x7f') {
			return true;
		}
	}
	return false;
}

bool is_web_or_mail(const String &address) {
	for (const char *beginning : { "https://", "http://", "mailto:" }) {
		if (address.to_lower().begins_with(beginning) && address.length() > String(beginning).length()) {
			return true;
		}
	}
	return false;
}

Answer open_a_web_page(SCMachineBase *machine, SCMachineAction *action) {
	const String address = filled_in<&Kind::address>(machine, action).strip_edges();
	const String shown = address.left(160).c_escape();
	if (address.is_empty()) {
		return Answer::none("there is no address to open", "Type one under Address.");
	}
	if (has_control_characters(address)) {
		return Answer::none(vformat("%s is no address", shown), "Keep it to one line under Address.");
	}
	if (!setting_of<&Kind::any_address>(action) && !is_web_or_mail(address)) {
		return Answer::none(vformat("%s is no address of a web page", shown),
				"Let it begin with https://, http:// or mailto:, or tick Any Address when nobody else has a say in it.");
	}
	const bool opened = OS::get_singleton()->shell_open(address.replace(" ", "%20")) == OK;
	return opened ? Answer::of(address) : Answer::none(vformat("the computer has no program that opens %s", shown));
}

Answer open_the_save_folder(SCMachineAction *action) {
	const String typed = setting_of<&Kind::folder>(action).strip_edges();
	const String folder = typed.simplify_path();
	const String shown = typed.left(160).c_escape();
	if (!folder.begins_with("user://") || typed.contains("..")) {
		return Answer::none(vformat("%s is not in the folder where the game keeps its files", shown), "Let Folder begin with user://.");
	}
	if (is_on("web") || is_on("mobile")) {
		return Answer::none("there is no file manager to show the game's files here");
	}
	if (!DirAccess::dir_exists_absolute(folder)) {
		return Answer::none(vformat("there is no folder %s yet", shown), "It is there once something has been saved in it.");
	}
	const String there = ProjectSettings::get_singleton()->globalize_path(folder);
	const bool opened = OS::get_singleton()->shell_show_in_file_manager(there, true) == OK;
	return opened ? Answer::of(there) : Answer::none("the computer has no file manager that opens by itself");
}

bool has_clipboard() {
	return DisplayServer::get_singleton()->has_feature(DisplayServer::FEATURE_CLIPBOARD);
}

Answer copy_a_text(SCMachineBase *machine, SCMachineAction *action) {
	if (!has_clipboard()) {
		return Answer::none("there is no clipboard here");
	}
	const String text = filled_in<&Kind::text>(machine, action);
	DisplayServer::get_singleton()->clipboard_set(text);
	return Answer::of(text);
}

Answer paste_a_text() {
	return has_clipboard() ? Answer::of(DisplayServer::get_singleton()->clipboard_get()) : Answer::none("there is no clipboard here");
}

Answer keep_the_screen_on(SCMachineAction *action) {
	if (!has_screen()) {
		return Answer::none("there is no screen here to keep on");
	}
	const bool on = setting_of<&Kind::on>(action);
	DisplayServer::get_singleton()->screen_set_keep_on(on);
	return Answer::of(on);
}

Answer vibrate_the_phone(SCMachineBase *machine, SCMachineAction *action) {
	if (!is_on("mobile") && !is_on("web")) {
		return Answer::none("a computer does not vibrate", "Vibrate does it with a gamepad.");
	}
	constexpr double LONGEST = 60.0;
	constexpr double MILLISECONDS = 1000.0;
	const double seconds = CLAMP(checked::number<&Kind::seconds>(machine, action), 0.0, LONGEST);
	const double strength = checked::number<&Kind::strength>(machine, action);
	Input::get_singleton()->vibrate_handheld(int32_t(seconds * MILLISECONDS), strength < 0.0 ? -1.0 : MIN(strength, 1.0));
	return Answer::of(seconds);
}

Answer ask_for_attention() {
	if (!has_screen() || is_on("mobile") || is_on("web")) {
		return Answer::none("there is no window here that could ask for attention");
	}
	DisplayServer::get_singleton()->window_request_attention();
	return Answer::of(true);
}

Answer memory_left() {
	const Dictionary told = OS::get_singleton()->get_memory_info();
	constexpr double MEGABYTE = 1024.0 * 1024.0;
	for (const char *which : { "available", "free" }) {
		const int64_t bytes = told.get(which, -1);
		if (bytes >= 0) {
			return Answer::of(Math::round(double(bytes) / MEGABYTE));
		}
	}
	return Answer::none("this device does not tell how much memory is left");
}

Answer language() {
	const String code = OS::get_singleton()->get_locale_language();
	return Answer::of(code, TranslationServer::get_singleton()->get_language_name(code));
}

bool is_country(const String &part) {
	constexpr int64_t LETTERS = 2;
	return part.length() == LETTERS && part == part.to_upper() && part != part.to_lower();
}

// It stands somewhere behind the language: de_AT, zh_Hant_TW.
Answer country() {
	const PackedStringArray parts = OS::get_singleton()->get_locale().get_slice("@", 0).get_slice(".", 0).replace("-", "_").split("_");
	for (int64_t i = 1; i < parts.size(); i++) {
		if (is_country(parts[i])) {
			return Answer::of(parts[i], TranslationServer::get_singleton()->get_country_name(parts[i]));
		}
	}
	return Answer::none("this computer does not tell in which country it is");
}

// Where the window covers the screen, its edges may be out of sight; elsewhere the player sees all of it.
Answer safe_area(SCMachineBase *machine) {
	const Window *window = machine->get_tree()->get_root();
	const Rect2 all = window->get_visible_rect();
	const bool covers = window->get_mode() == Window::MODE_FULLSCREEN || window->get_mode() == Window::MODE_EXCLUSIVE_FULLSCREEN;
	if (!has_screen() || (!covers && !is_on("mobile"))) {
		return Answer::of(all);
	}
	Rect2 safe = DisplayServer::get_singleton()->get_display_safe_area();
	safe.position -= Vector2(window->get_position());
	const Rect2 drawn = window->get_final_transform().affine_inverse().xform(safe).intersection(all);
	return Answer::of(drawn.has_area() ? drawn : all);
}

Answer dark_mode() {
	const DisplayServer *display = DisplayServer::get_singleton();
	return display->is_dark_mode_supported() ? Answer::of(display->is_dark_mode()) : Answer::none("this computer has no dark mode");
}

Answer feature(SCMachineAction *action) {
	const String name = setting_of<&Kind::feature>(action).strip_edges();
	return name.is_empty() ? Answer::none("no feature is named", "Type one under Feature, such as mobile.")
						   : Answer::of(OS::get_singleton()->has_feature(name));
}

String model() {
	const String told = OS::get_singleton()->get_model_name();
	return told == String("GenericDevice") ? String() : told;
}

// On the web the engine prints an error for asking.
String id() {
	return is_on("web") ? String() : OS::get_singleton()->get_unique_id();
}

Answer ask(SCMachineBase *machine, SCMachineAction *action, Kind::What what) {
	const OS *os = OS::get_singleton();
	switch (what) {
		case Kind::OPEN_A_WEB_PAGE:
			return open_a_web_page(machine, action);
		case Kind::OPEN_THE_SAVE_FOLDER:
			return open_the_save_folder(action);
		case Kind::COPY_A_TEXT:
			return copy_a_text(machine, action);
		case Kind::PASTE_A_TEXT:
			return paste_a_text();
		case Kind::KEEP_THE_SCREEN_ON:
			return keep_the_screen_on(action);
		case Kind::VIBRATE_THE_PHONE:
			return vibrate_the_phone(machine, action);
		case Kind::ASK_FOR_A_PERMISSION:
			break;
		case Kind::ASK_FOR_ATTENTION:
			return ask_for_attention();
		case Kind::SYSTEM_NAME:
			return Answer::known(os->get_name(), "this system does not tell its name");
		case Kind::SYSTEM_VERSION:
			return Answer::known(os->get_version(), "this system does not tell its version");
		case Kind::DEVICE_MODEL:
			return Answer::known(model(), "this computer does not tell its model");
		case Kind::DEVICE_ID:
			return Answer::known(id(), "this computer has no id of its own");
		case Kind::PROCESSORS:
			return Answer::of(int64_t(os->get_processor_count()));
		case Kind::MEMORY_LEFT:
			return memory_left();
		case Kind::LANGUAGE:
			return language();
		case Kind::COUNTRY:
			return country();
		case Kind::GAME_VERSION: {
			const String version = ProjectSettings::get_singleton()->get_setting("application/config/version", String());
			return version.is_empty() ? Answer::none("the game has no version yet", "Type one under Application > Config > Version in the project's settings.")
									  : Answer::of(version);
		}
		case Kind::SAFE_AREA:
			return safe_area(machine);
		case Kind::DARK_MODE:
			return dark_mode();
		case Kind::TOUCHSCREEN:
			return Answer::of(DisplayServer::get_singleton()->is_touchscreen_available());
		case Kind::DEBUG_BUILD:
			return Answer::of(os->is_debug_build());
		case Kind::FEATURE:
			return feature(action);
	}
	return Answer();
}

void stop_hearing(SCMachineBase *machine, int index) {
	Dictionary slot = machine->slot(index);
	const Callable hears = slot.get(names().hears, Callable());
	slot.erase(names().hears);
	if (hears.is_valid() && machine->is_inside_tree() && machine->get_tree()->is_connected(names().answered, hears)) {
		machine->get_tree()->disconnect(names().answered, hears);
	}
}

class System : public SCNativeAction {
	static void fail(SCMachineBase *machine, SCMachineAction *action, const Answer &answer) {
		const StillHere here(machine);
		verbs::warn(machine, action, vformat("%s, so nothing was done. %s", answer.wrong, answer.remedy));
		if (here) {
			verbs::send<&Kind::failed_event>(machine, action, answer.wrong);
		}
	}

	static void tell(SCMachineBase *machine, SCMachineAction *action, Kind::What what, const Answer &answer) {
		const StillHere here(machine);
		const Kind *kind = as_kind<Kind>(action);
		const bool needs_a_variable = kind == nullptr || (kind->stores_by_choice() && !kind->tells_yes_or_no());
		if (needs_a_variable && setting_of<&Kind::done_event>(action).is_empty() && setting_of<&Kind::store_name_in>(action).is_empty()) {
			verbs::keep<&Kind::store_in>(machine, action, answer.value, "it");
		} else if (kind == nullptr || kind->stores_by_choice()) {
			verbs::keep_if_named<&Kind::store_in>(machine, action, answer.value);
		}
		if (here && (what == Kind::LANGUAGE || what == Kind::COUNTRY)) {
			verbs::keep_if_named<&Kind::store_name_in>(machine, action, answer.name);
		}
		const bool is_yes_or_no = what == Kind::ASK_FOR_A_PERMISSION || (what >= Kind::DARK_MODE && what <= Kind::FEATURE);
		if (here && is_yes_or_no) {
			verbs::send_either<&Kind::yes_event, &Kind::no_event>(machine, action, answer.value.booleanize());
		}
		if (here) {
			verbs::send<&Kind::done_event>(machine, action, answer.value);
		}
	}

	static void work(SCMachineBase *machine, SCMachineAction *action, Kind::What what) {
		const Answer answer = machine->is_inside_tree() ? ask(machine, action, what) : Answer::none("the machine is in no scene");
		if (answer.wrong.is_empty()) {
			tell(machine, action, what, answer);
		} else {
			fail(machine, action, answer);
		}
	}

	static void hear_answer(SCMachineBase *machine, SCMachineAction *action, int index, const Array &handed_over) {
		const String asked = setting_of<&Kind::permission>(action).strip_edges();
		const String about = handed_over.size() > 1 ? words::text_of(handed_over[0]) : String();
		// Typed in short, it comes back in full.
		if (about != asked && about.get_extension() != asked) {
			return;
		}
		const StillHere here(machine);
		const Callable finish = machine->finisher(index);
		stop_hearing(machine, index);
		tell(machine, action, Kind::ASK_FOR_A_PERMISSION, Answer::of(values::as_truth(handed_over[1])));
		if (here) {
			finish.call();
		}
	}

	// True when the player's answer is to come.
	static bool ask_for_a_permission(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StillHere here(machine);
		const String permission = setting_of<&Kind::permission>(action).strip_edges();
		if (permission.is_empty() || !machine->is_inside_tree()) {
			fail(machine, action, Answer::none("no permission is named", "Type one under Permission, such as android.permission.RECORD_AUDIO."));
			return false;
		}
		const bool answers_later = is_on("android") || is_on("ios");
		if (answers_later) {
			const Callable hears = ActionCall::make("System: the player's answer", machine, action, index, hear_answer);
			machine->slot(index)[names().hears] = hears;
			machine->get_tree()->connect(names().answered, hears);
		}
		const bool granted = OS::get_singleton()->request_permission(permission);
		if (!here || (answers_later && !machine->slot(index).has(names().hears))) {
			return true;
		}
		if (answers_later && !granted) {
			return true;
		}
		stop_hearing(machine, index);
		tell(machine, action, Kind::ASK_FOR_A_PERMISSION, Answer::of(granted));
		return false;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		stop_hearing(machine, index);
		const auto what = checked::choice<&Kind::what>(machine, action, Kind::SYSTEM_NAME);
		if (what == Kind::ASK_FOR_A_PERMISSION) {
			if (ask_for_a_permission(machine, action, index)) {
				return;
			}
		} else {
			work(machine, action, what);
		}
		verbs::finish_unless_repeating(machine, action, index, here);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double) override {
		const Kind *kind = as_kind<Kind>(action);
		// What it is may be read from a variable, and no page is opened sixty times a second.
		if (action->repeats() && (kind == nullptr || kind->tells_something())) {
			work(machine, action, checked::choice<&Kind::what>(machine, action, Kind::SYSTEM_NAME));
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { stop_hearing(machine, index); }
};

const AddKinds added = {
	add_kind<SCSystemAction, System>(),
};

} // namespace
