extends FileStory

const WAYS := {"done": "Done", "failed": "Failed", "yes": "Yes", "no": "No"}

var _path: String = OS.get_environment("PATH")


func close() -> void:
	OS.set_environment("PATH", _path)
	await super()


func ask_system(what: SCSystemAction.What, settings: Dictionary = {}, variables: Dictionary = {}) -> SCMachine:
	var options := {"what": what, "done_event": &"done", "failed_event": &"failed", "yes_event": &"yes", "no_event": &"no"}
	return play(kind(SCSystemAction, options.merged(settings, true)), WAYS, {"variables": {"answer": null}.merged(variables)})


func told(what: SCSystemAction.What, variables: Dictionary = {}) -> Variant:
	return result_of(kind(SCSystemAction, {"what": what, "store_in": &"answer"}), variables)


## Puts a program in place of the computer's own, which writes down what it is asked to open.
func open_with_a_note() -> void:
	put("bin/xdg-open", "#!/bin/sh\nprintf '%%s\\n' \"$1\" >>'%s'\n" % whole("opened"))
	FileAccess.set_unix_permissions(mine("bin/xdg-open"), 0x1ED)
	OS.set_environment("PATH", "%s:%s" % [whole("bin"), _path])


## What has been opened so far, once so much has been; another program writes it down.
func opened(count: int) -> Array:
	for i in 500:
		var lines := held_in("opened").split("\n", false)
		if lines.size() >= count and FileAccess.file_exists(mine("opened")):
			return Array(lines)
		OS.delay_msec(2)
	return []


func test_a_page_is_opened_and_nothing_else() -> void:
	open_with_a_note()
	var rows := {
		"https://example.com/help": "https://example.com/help", " HTTP://example.com/a b ": "HTTP://example.com/a%20b", "mailto:me@example.com": "mailto:me@example.com",
		"https://example.com/{level}": "https://example.com/7",
	}
	var was := []
	for address: String in rows:
		expect_state(ask_system(SCSystemAction.OPEN_A_WEB_PAGE, {"address": address}, {"level": 7}), "Done")
		was.append(rows[address])
		expect_equal(opened(was.size()), was)
	var refused := {
		"": "there is no address to open, so nothing was done. Type one under Address.", "example.com": "example.com is no address of a web page",
		"file:///etc/passwd": "Let it begin with https://, http:// or mailto:", "https://": "https:// is no address of a web page",
		"https://a\nb": "https://a\\nb is no address", "--help": "--help is no address of a web page", "{typed}": "/bin/sh is no address of a web page",
	}
	for address: String in refused:
		expect_state(ask_system(SCSystemAction.OPEN_A_WEB_PAGE, {"address": address}, {"typed": "/bin/sh"}), "Failed")
		expect_warning(refused[address])
	expect_equal(opened(was.size()), was)
	expect_state(ask_system(SCSystemAction.OPEN_A_WEB_PAGE, {"address_variable": &"typed"}, {"typed": "https://example.com/{level}"}), "Done")
	expect_equal(opened(was.size() + 1).back(), "https://example.com/{level}")
	expect_state(ask_system(SCSystemAction.OPEN_A_WEB_PAGE, {"address": "steam://run/480", "any_address": true}), "Done")
	expect_equal(opened(was.size() + 2).back(), "steam://run/480")


func test_the_save_folder_is_shown() -> void:
	open_with_a_note()
	var folders := ["user://", FOLDER]
	for i in folders.size():
		expect_state(ask_system(SCSystemAction.OPEN_THE_SAVE_FOLDER, {"folder": folders[i]}), "Done")
		var told_to_open: String = opened(i + 1).back()
		expect_equal(told_to_open.trim_prefix("file://").uri_decode().trim_suffix("/"), ProjectSettings.globalize_path(folders[i]).trim_suffix("/"))
	var refused := {"res://": "is not in the folder where the game keeps its files", "user://../..": "Let Folder begin with user://.", "/etc": "/etc is not in the folder", "user://nowhere": "there is no folder user://nowhere yet"}
	for folder: String in refused:
		expect_state(ask_system(SCSystemAction.OPEN_THE_SAVE_FOLDER, {"folder": folder}), "Failed")
		expect_warning(refused[folder])


func test_what_the_computer_is() -> void:
	var rows := {
		SCSystemAction.SYSTEM_NAME: OS.get_name(), SCSystemAction.PROCESSORS: OS.get_processor_count(), SCSystemAction.LANGUAGE: OS.get_locale_language(), SCSystemAction.DEBUG_BUILD: OS.is_debug_build(),
		SCSystemAction.TOUCHSCREEN: DisplayServer.is_touchscreen_available(), SCSystemAction.SAFE_AREA: tree.root.get_visible_rect(), SCSystemAction.FEATURE: OS.has_feature("mobile"),
	}
	for what: SCSystemAction.What in rows:
		expect_equal(told(what), rows[what], str(what))
	expect((told(SCSystemAction.MEMORY_LEFT) as float) > 1.0)
	var named := results_of(kind(SCSystemAction, {"what": SCSystemAction.LANGUAGE, "store_name_in": &"answer"}))
	expect_equal(named[&"answer"], TranslationServer.get_language_name(OS.get_locale_language()))
	var version: Variant = ProjectSettings.get_setting("application/config/version")
	ProjectSettings.set_setting("application/config/version", "1.2")
	expect_equal(told(SCSystemAction.GAME_VERSION), "1.2")
	ProjectSettings.set_setting("application/config/version", null)
	expect_state(ask_system(SCSystemAction.GAME_VERSION), "Failed")
	expect_warning("the game has no version yet, so nothing was done. Type one under Application > Config > Version")
	ProjectSettings.set_setting("application/config/version", version)


func test_yes_and_no_lead_to_states() -> void:
	for row: Array in [["linux", OS.has_feature("linux")], ["template", OS.has_feature("template")], ["nothing_like_it", false]]:
		expect_state(ask_system(SCSystemAction.FEATURE, {"feature": row[0]}), "Yes" if row[1] else "No")
	expect_state(ask_system(SCSystemAction.FEATURE, {"feature": ""}), "Failed")
	expect_warning("no feature is named, so nothing was done. Type one under Feature")
	expect_state(ask_system(SCSystemAction.ASK_FOR_A_PERMISSION), "Yes")
	expect_state(ask_system(SCSystemAction.ASK_FOR_A_PERMISSION, {"permission": " "}), "Failed")
	expect_warning("no permission is named")
	var looks := play(kind(SCSystemAction, {"what": SCSystemAction.FEATURE, "feature_variable": &"name", "store_in": &"answer", "run_mode": SCMachineAction.EVERY_FRAME}), {}, {"variables": {"answer": true, "name": "web"}})
	expect_values(looks, {"answer": false})
	looks.set_value(&"name", "linux")
	await frames(2)
	expect_values(looks, {"answer": OS.has_feature("linux")})


func test_what_a_computer_without_a_screen_lacks() -> void:
	expect_state(ask_system(SCSystemAction.VIBRATE_THE_PHONE), "Failed")
	expect_warning("a computer does not vibrate, so nothing was done. Vibrate does it with a gamepad.")
	var rows := {
		SCSystemAction.COPY_A_TEXT: "there is no clipboard here", SCSystemAction.PASTE_A_TEXT: "there is no clipboard here", SCSystemAction.KEEP_THE_SCREEN_ON: "there is no screen here to keep on",
		SCSystemAction.ASK_FOR_ATTENTION: "there is no window here that could ask for attention", SCSystemAction.DEVICE_MODEL: "this computer does not tell its model",
		SCSystemAction.DARK_MODE: "this computer has no dark mode",
	}
	if DisplayServer.get_name() != "headless":
		return
	for what: SCSystemAction.What in rows:
		expect_state(ask_system(what), "Failed")
		expect_warning(rows[what])
	expect_warns(kind(SCSystemAction, {"what": SCSystemAction.SYSTEM_NAME}), "Store In")


func test_what_it_says_and_shows() -> void:
	expect_lines(SCSystemAction, {
		"Open (pick one)": {}, "Open https://example.com": {"address": "https://example.com"}, "Show user:// in the file manager": {"what": SCSystemAction.OPEN_THE_SAVE_FOLDER},
		"Copy \"{name}\"": {"what": SCSystemAction.COPY_A_TEXT, "text": "{name}"}, "Let the screen dim": {"what": SCSystemAction.KEEP_THE_SCREEN_ON, "on": false},
		"Put the player's country into land": {"what": SCSystemAction.COUNTRY, "store_in": &"land"}, "Look whether there is web": {"what": SCSystemAction.FEATURE, "feature": "web"},
		"Look whether dark mode is on": {"what": SCSystemAction.DARK_MODE}, "Put whether this is a debug build into it": {"what": SCSystemAction.DEBUG_BUILD, "store_in": &"it"},
		"Ask for the permission CAMERA": {"what": SCSystemAction.ASK_FOR_A_PERMISSION, "permission": "android.permission.CAMERA"},
	})
	var shown: Dictionary[SCSystemAction.What, Array] = {
		SCSystemAction.OPEN_A_WEB_PAGE: ["address", "any_address"], SCSystemAction.COPY_A_TEXT: ["text"], SCSystemAction.VIBRATE_THE_PHONE: ["seconds", "strength"],
		SCSystemAction.COUNTRY: ["store_in", "store_name_in", "run_mode"], SCSystemAction.DARK_MODE: ["store_in", "yes_event", "no_event", "run_mode"], SCSystemAction.FEATURE: ["feature"],
	}
	for what in shown:
		var of := kind(SCSystemAction, {"what": what})
		expect_shown(of, shown[what])
		expect_hidden(of, ["folder", "on", "permission"] + ([] if what == SCSystemAction.COPY_A_TEXT else ["text"]) + ([] if "run_mode" in shown[what] or what == SCSystemAction.FEATURE else ["store_in"]))
