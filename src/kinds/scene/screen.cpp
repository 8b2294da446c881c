#include "kinds/scene/screen.hpp"

#include "action/words.hpp"

void SCScreenSettingsAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "screen_settings",
			"What an Options menu does to the screen, which covers fullscreen or a window, the window's size, and V-Sync. What is not set here is left alone.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<Mode>();
	kind.constants_of<Screen>();
	kind.constants_of<VSync>();
	kind.setting<&Self::mode>("mode",
			"Fullscreen covers the screen and lets the player change quickly to other programs. Exclusive Fullscreen has the screen to itself, which is a "
			"little faster on some computers. Toggle Fullscreen goes to fullscreen and back to what was there before. In a browser, fullscreen takes a key or "
			"a click of the player's.");
	kind.setting<&Self::window_size>("window_size", { PROPERTY_HINT_NONE, "suffix:px" },
			"How large the window gets, in pixels of the screen, without its frame. One that does not fit on the screen is made to fit. When the window covers "
			"the screen just then, it gets this size as it becomes a window again. Zero leaves it alone.");
	kind.setting<&Self::center_window>("center_window", "Put the window in the middle of its screen afterwards.").only_if<&Self::moves_the_window>();
	kind.setting<&Self::screen>("screen", "Which of the player's screens the game goes to, where there are several.");
	kind.setting<&Self::screen_number>("screen_number", { PROPERTY_HINT_RANGE, "0,7,1,or_greater,hide_slider" }, "The number of the screen. The first is 0.")
			.only_if<&Self::screen, BY_NUMBER>();
	kind.setting<&Self::vsync>("vsync",
			"On waits for the screen with each picture, so that none is torn. Off does not wait, for the least delay. Adaptive waits only while the game is "
			"fast enough. Mailbox draws on without waiting, and shows the newest picture. What the player's graphics card does not know becomes On.");
	kind.setting<&Self::max_fps>("max_fps", { PROPERTY_HINT_RANGE, "-1,240,1,or_greater,hide_slider,suffix:FPS" },
			"The most pictures a second, to spare a battery. 0 sets no limit, and -1 leaves it alone.");
	kind.setting<&Self::interface_scale>("interface_scale", { PROPERTY_HINT_RANGE, "0,4,0.05,or_greater,hide_slider" },
			"How large texts, buttons and everything else in 2D is drawn, for players who want them larger. 1 is as it was made. Zero leaves it alone.");
	kind.setting<&Self::store_mode_in>("store_mode_in",
				"Keep the mode that it then is in, as its number, in this variable: 1 is Window, 4 is Fullscreen. It can be kept in a save, and Mode be read "
				"from "
				"it when the game starts.")
			.optional();
	kind.setting<&Self::store_fullscreen_in>("store_fullscreen_in", "Keep whether it then is fullscreen, of either kind, in this variable, for a tick box.")
			.optional();
	kind.setting<&Self::store_size_in>("store_size_in", "Keep the size that the window then has in this variable.").optional();
	kind.setting<&Self::store_screen_in>("store_screen_in", "Keep the number of the screen that it then is on in this variable.").optional();
	kind.setting<&Self::store_vsync_in>("store_vsync_in", "Keep the number of the V-Sync mode in this variable: 1 is Off, 2 is On.").optional();
	kind.setting<&Self::changed_event>("changed_event", "Sent when everything has been set. Empty sends nothing.").optional();
	kind.setting<&Self::failed_event>("failed_event", "Sent when some of it could not be done here. It carries the reason. Empty sends nothing.").optional();
}

bool SCScreenSettingsAction::sets_something() const {
	return has_some<&Self::mode>() || has_some<&Self::screen>() || has_some<&Self::vsync>() || has_some<&Self::interface_scale>() || window_size != Vector2() ||
			max_fps >= 0;
}

bool SCScreenSettingsAction::stores_something() const {
	return has_some<&Self::store_mode_in>() || has_some<&Self::store_fullscreen_in>() || has_some<&Self::store_size_in>() ||
			has_some<&Self::store_screen_in>() || has_some<&Self::store_vsync_in>();
}

bool SCScreenSettingsAction::moves_the_window() const {
	return window_size != Vector2() || has_some<&Self::mode>() || has_some<&Self::screen>();
}

String SCScreenSettingsAction::summary_default() {
	const char *modes[] = { "", "a window", "a window without a frame", "maximized", "fullscreen", "exclusive fullscreen", "fullscreen or back" };
	const char *screens[] = { "", "on screen", "on the next screen", "on the main screen" };
	const char *vsyncs[] = { "", "V-Sync off", "V-Sync on", "adaptive V-Sync", "mailbox V-Sync" };
	PackedStringArray parts;
	const auto add = [&parts](const String &part) {
		if (!part.is_empty()) {
			parts.push_back(part);
		}
	};
	add(modes[CLAMP(int(mode), 0, int(TOGGLE_FULLSCREEN))]);
	if (window_size != Vector2()) {
		add(vformat("%s by %s pixels", words::number(window_size.x), words::number(window_size.y)));
	}
	add(screen == BY_NUMBER ? vformat("on screen %d", screen_number) : String(screens[CLAMP(int(screen), 0, int(THE_MAIN_ONE))]));
	add(vsyncs[CLAMP(int(vsync), 0, int(VSYNC_MAILBOX))]);
	if (max_fps >= 0) {
		add(max_fps == 0 ? String("no limit of pictures a second") : vformat("at most %d pictures a second", max_fps));
	}
	if (interface_scale > 0.0) {
		add(vformat("drawn %s times as large", words::number(interface_scale)));
	}
	if (!parts.is_empty()) {
		return vformat("Set the screen: %s", String(", ").join(parts));
	}
	return stores_something() ? "Look how the screen is set" : "Leave the screen as it is";
}
