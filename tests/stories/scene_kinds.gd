extends Story

const WAYS := {"changed": "Changed", "failed": "Failed"}

var _added: Array[Translation] = []


func close() -> void:
	for made in _added:
		TranslationServer.remove_translation(made)
	_added.clear()
	TranslationServer.set_locale("en")
	Input.mouse_mode = Input.MOUSE_MODE_VISIBLE
	await super()


func translations(words: Dictionary) -> void:
	for locale: String in words:
		var made := Translation.new()
		made.locale = locale
		made.add_message("HELLO", words[locale])
		TranslationServer.add_translation(made)
		_added.append(made)
	TranslationServer.set_locale("en")


func test_a_language_button_steps_through_what_there_is() -> void:
	translations({"de": "Hallo", "en": "Hello", "fr": "Salut"})
	var label := add(Label.new(), "Label") as Label
	label.text = "HELLO"
	var step := kind(SCSetLanguageAction, {"what": SCSetLanguageAction.THE_NEXT_ONE, "store_in": &"code", "store_name_in": &"name"})
	expect_line(step, "Show the game in the next language")
	for row: Array in [["fr", "French", "Salut"], ["de", "German", "Hallo"], ["en", "English", "Hello"]]:
		var held := results_of(step, {"code": "", "name": ""})
		expect_equal(held[&"code"], row[0])
		expect_equal(held[&"name"], row[1])
		expect_equal(label.tr(label.text), row[2])
	var back := kind(SCSetLanguageAction, {"what": SCSetLanguageAction.THE_ONE_BEFORE, "store_in": &"answer"})
	expect_equal([result_of(back), result_of(back)], ["de", "fr"])


func test_a_language_is_chosen_by_name() -> void:
	translations({"de": "Hallo", "pt_BR": "Oi"})
	for row: Array in [["de", "de"], ["de_AT", "de"], ["pt", "pt_BR"], [" en ", "en"], ["en_GB", "en"]]:
		var choose := kind(SCSetLanguageAction, {"language": row[0], "store_in": &"answer", "changed_event": &"changed"})
		var owner := play(choose, WAYS, {"variables": {"answer": ""}})
		expect_state(owner, "Changed")
		expect_equal(owner.get_value(&"answer"), row[1])
		expect_equal(TranslationServer.get_locale(), row[1])
	expect_equal(result_of(kind(SCSetLanguageAction, {"what": SCSetLanguageAction.THE_COMPUTERS, "store_in": &"answer"})), "de" if OS.get_locale_language() == "de" else "pt_BR" if OS.get_locale_language() == "pt" else "en")
	var nobody := play(kind(SCSetLanguageAction, {"language_variable": &"typed", "failed_event": &"failed"}), WAYS, {"variables": {"typed": "ja"}})
	expect_state(nobody, "Failed")
	expect_warning("there is no translation for ja, so the language stays as it is. The project has de, en, pt_BR; more are added under")
	expect_warns(kind(SCSetLanguageAction, {"language": ""}), "no language is named, so the language stays as it is")
	expect_equal(TranslationServer.get_locale(), "en")


func test_the_scene_that_runs_is_told() -> void:
	var scene := Node2D.new()
	scene.name = "Level2"
	scene.scene_file_path = "res://levels/level_2.tscn"
	tree.root.add_child(scene)
	tree.current_scene = scene
	for row: Array in [[SCGetSceneAction.NAME, "Level2"], [SCGetSceneAction.FILE, "res://levels/level_2.tscn"], [SCGetSceneAction.FILE_NAME, "level_2"]]:
		expect_equal(result_of(kind(SCGetSceneAction, {"what": row[0], "store_in": &"answer"})), row[1])
	expect_line(kind(SCGetSceneAction, {"what": SCGetSceneAction.FILE, "store_in": &"answer"}), "Put the scene's file into answer")
	scene.free()
	expect_warns(kind(SCGetSceneAction, {"store_in": &"answer"}), "no scene is running just now, so nothing was kept", {"variables": {"answer": ""}})


func test_the_sizes_of_the_screen() -> void:
	var all := kind(SCGetScreenSizeAction, {"store_in": &"size", "store_middle_in": &"middle", "store_window_in": &"window", "store_monitor_in": &"monitor"})
	var held := results_of(all, {"size": Vector2.ZERO, "middle": Vector2.ZERO, "window": Vector2.ZERO, "monitor": Vector2(1, 1)})
	var visible := tree.root.get_visible_rect()
	expect_equal(held[&"size"], visible.size)
	expect_equal(held[&"middle"], visible.size / 2.0)
	expect_equal(held[&"window"], Vector2(tree.root.size))
	expect_equal(held[&"monitor"], Vector2(DisplayServer.screen_get_size(tree.root.current_screen)))
	var inner := add(SubViewport.new(), "Map", {"size": Vector2i(120, 80)})
	expect_equal(result_of(kind(SCGetScreenSizeAction, {"store_in": &"answer"}), {}, {"under": inner}), Vector2(120, 80))
	expect_lines(SCGetScreenSizeAction, {
		"Put the size of the screen into (pick one)": {},
		"Put the size of the screen into a, its middle into b": {"store_in": &"a", "store_middle_in": &"b"},
		"Put the monitor's size into m": {"store_monitor_in": &"m"},
	})
	expect_warns(kind(SCGetScreenSizeAction), "Store In")


func test_the_mouse_is_put_back_whatever_overlaps() -> void:
	expect_lines(SCSetMouseModeAction, {
		"Show the mouse": {},
		"Capture the mouse while the state runs": {"mode": SCSetMouseModeAction.CAPTURED, "put_back_when_left": true},
		"Leave the mouse as it is, with (pick one) for a pointer": {"mode": SCSetMouseModeAction.AS_IT_IS, "pointer": SCSetMouseModeAction.A_PICTURE},
	})
	expect_hidden(kind(SCSetMouseModeAction), ["picture", "hotspot", "shape"])
	play(kind(SCSetMouseModeAction, {"mode": SCSetMouseModeAction.CAPTURED}))
	if Input.mouse_mode != Input.MOUSE_MODE_CAPTURED:
		# A computer without a screen has no mouse to capture.
		return
	var menus: Array[SCMachine] = []
	for mode: int in [SCSetMouseModeAction.VISIBLE, SCSetMouseModeAction.CONFINED]:
		menus.append(play(kind(SCSetMouseModeAction, {"mode": mode, "put_back_when_left": true}), {"close": "Closed"}))
	expect_equal(Input.mouse_mode, Input.MOUSE_MODE_CONFINED)
	expect_after(menus[0], &"close", "Closed")
	expect_equal(Input.mouse_mode, Input.MOUSE_MODE_CONFINED)
	expect_after(menus[1], &"close", "Closed")
	expect_equal(Input.mouse_mode, Input.MOUSE_MODE_CAPTURED)


func test_a_pointer_of_the_games_own() -> void:
	var small := PlaceholderTexture2D.new()
	small.size = Vector2(16, 16)
	var large := PlaceholderTexture2D.new()
	large.size = Vector2(300, 16)
	var rows := {"there is no picture for the pointer, so the pointer stays as it is": null, "has nothing in it to show as a pointer": small, "is of 300 by 16 pixels, which is too large for a pointer": large}
	for text: String in rows:
		expect_warns(kind(SCSetMouseModeAction, {"pointer": SCSetMouseModeAction.A_PICTURE, "picture": rows[text]}), text)
	var crosshair := ImageTexture.create_from_image(Image.create_empty(16, 16, false, Image.FORMAT_RGBA8))
	var owner := play(kind(SCSetMouseModeAction, {"pointer": SCSetMouseModeAction.A_PICTURE, "picture": crosshair, "hotspot": Vector2(99, -5), "put_back_when_left": true}), {"close": "Closed"})
	expect_after(owner, &"close", "Closed")
	play(kind(SCSetMouseModeAction, {"pointer": SCSetMouseModeAction.THE_USUAL_ONE}))
	expect_warns(kind(SCSetMouseModeAction, {"pointer": SCSetMouseModeAction.A_PICTURE, "picture": crosshair, "hotspot": Vector2(NAN, 0)}), "Hotspot")
