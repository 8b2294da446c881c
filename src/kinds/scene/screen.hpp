#pragma once

// Screen Settings of the scene category.

#include "action/kind_table.hpp"

class SCScreenSettingsAction : public SCMachineAction {
	SC_KIND(SCScreenSettingsAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(Mode, "As It Is,Window,Window Without Frame,Maximized,Fullscreen,Exclusive Fullscreen,Toggle Fullscreen", MODE_AS_IT_IS, WINDOW,
			WINDOW_WITHOUT_FRAME, MAXIMIZED, FULLSCREEN, EXCLUSIVE_FULLSCREEN, TOGGLE_FULLSCREEN)
	SC_ENUM_LABELLED(Screen, "As It Is,By Number,The Next One,The Main One", SCREEN_AS_IT_IS, BY_NUMBER, THE_NEXT_ONE, THE_MAIN_ONE)
	// From Off on as the engine counts them, one later.
	SC_ENUM_LABELLED(VSync, "As It Is,Off,On,Adaptive,Mailbox", VSYNC_AS_IT_IS, VSYNC_OFF, VSYNC_ON, VSYNC_ADAPTIVE, VSYNC_MAILBOX)

	Mode mode = MODE_AS_IT_IS;
	Vector2 window_size;
	bool center_window = true;
	Screen screen = SCREEN_AS_IT_IS;
	int64_t screen_number = 0;
	VSync vsync = VSYNC_AS_IT_IS;
	int64_t max_fps = -1;
	double interface_scale = 0.0;
	StringName store_mode_in;
	StringName store_fullscreen_in;
	StringName store_size_in;
	StringName store_screen_in;
	StringName store_vsync_in;
	StringName changed_event;
	StringName failed_event;

	bool sets_something() const;
	bool stores_something() const;
	bool moves_the_window() const;

	String summary_default() override;
};
