#pragma once

// System of the scene category.

#include "action/kind_table.hpp"

class SCSystemAction : public SCMachineAction {
	SC_KIND(SCSystemAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(What,
			"Open a Web Page,Open the Save Folder,Copy a Text,Paste a Text,Keep the Screen On,Vibrate the Phone,Ask for a Permission,Ask for Attention,"
			"Name of the System,Version of the System,Model of the Device,Id of the Device,Number of Processors,Memory Left,Language,Country,"
			"Version of the Game,Safe Area,Is Dark Mode On,Has It a Touchscreen,Is It a Debug Build,Has It a Feature",
			OPEN_A_WEB_PAGE, OPEN_THE_SAVE_FOLDER, COPY_A_TEXT, PASTE_A_TEXT, KEEP_THE_SCREEN_ON, VIBRATE_THE_PHONE, ASK_FOR_A_PERMISSION, ASK_FOR_ATTENTION,
			SYSTEM_NAME, SYSTEM_VERSION, DEVICE_MODEL, DEVICE_ID, PROCESSORS, MEMORY_LEFT, LANGUAGE, COUNTRY, GAME_VERSION, SAFE_AREA, DARK_MODE, TOUCHSCREEN,
			DEBUG_BUILD, FEATURE)

	What what = OPEN_A_WEB_PAGE;
	String address;
	bool any_address = false;
	String folder = "user://";
	String text;
	bool on = true;
	double seconds = 0.2;
	double strength = -1.0;
	String permission = "android.permission.RECORD_AUDIO";
	String feature = "mobile";
	StringName store_in;
	StringName store_name_in;
	StringName yes_event;
	StringName no_event;
	StringName done_event;
	StringName failed_event;

	bool tells_something() const;
	bool tells_yes_or_no() const;
	bool stores_by_choice() const;

	String summary_default() override;
	bool uses_run_mode_default() override { return tells_something(); }
	bool finishes_as_it_starts_default() override;
	bool works_after_finishing_default() override { return repeats(); }
	PackedStringArray variables_read_default() override;
};
