extends SceneTree
## What Screen Settings and System do where there is a screen, however bare.

const SCREEN := Vector2i(1600, 1024)


func _initialize() -> void:
	if DisplayServer.get_name() == "headless":
		print("no window can be opened")
		quit()
		return
	await process_frame
	_expect(DisplayServer.screen_get_size() == SCREEN, "the screen is %s" % DisplayServer.screen_get_size())
	await _apply({"mode": SCScreenSettingsAction.WINDOW, "window_size": Vector2(800, 600)})
	_expect(root.size == Vector2i(800, 600), "a window is %s" % root.size)
	_expect(_is_in_the_middle(), "a window at %s" % root.position)
	await _apply({"window_size": Vector2(640, 480), "center_window": false})
	_expect(root.size == Vector2i(640, 480) and not _is_in_the_middle(), "a window at %s, of %s" % [root.position, root.size])
	await _apply({"window_size": Vector2(9000, 300)})
	_expect(root.size.x <= SCREEN.x and root.size.x > SCREEN.x - 100 and root.size.y == 300, "a wide window is %s" % root.size)
	await _apply({"window_size": Vector2(3, 3)})
	_expect(root.size == Vector2i(64, 64), "a small window is %s" % root.size)
	await _apply({"mode": SCScreenSettingsAction.WINDOW_WITHOUT_FRAME})
	_expect(root.borderless and root.mode == Window.MODE_WINDOWED, "borderless")
	_expect(await _kept() == [SCScreenSettingsAction.WINDOW_WITHOUT_FRAME, false], "kept %s" % [await _kept()])
	await _apply({"mode": SCScreenSettingsAction.TOGGLE_FULLSCREEN, "window_size": Vector2(500, 400)})
	_expect(root.mode == Window.MODE_FULLSCREEN, "fullscreen")
	_expect(await _kept() == [SCScreenSettingsAction.FULLSCREEN, true], "kept %s" % [await _kept()])
	await _apply({"mode": SCScreenSettingsAction.TOGGLE_FULLSCREEN})
	_expect(root.borderless and root.mode == Window.MODE_WINDOWED and root.size == Vector2i(500, 400), "back to %s, of %s" % [root.mode, root.size])
	await _apply({"mode": SCScreenSettingsAction.WINDOW, "screen": SCScreenSettingsAction.THE_NEXT_ONE})
	_expect(not root.borderless and root.size == Vector2i(500, 400), "a frame again")
	await _apply_system({"what": SCSystemAction.COPY_A_TEXT, "text": "seed {mode}"})
	_expect(DisplayServer.clipboard_get() == "seed 0", "copied %s" % DisplayServer.clipboard_get())
	DisplayServer.clipboard_set("another")
	var pasted := await _apply_system({"what": SCSystemAction.PASTE_A_TEXT, "store_in": &"text"})
	_expect(pasted.get_value(&"text") == "another", "pasted %s" % pasted.get_value(&"text"))
	await _apply_system({"what": SCSystemAction.KEEP_THE_SCREEN_ON})
	print("survived")
	quit()


func _apply(settings: Dictionary) -> SCMachine:
	return await _play(SCScreenSettingsAction.new(), settings)


func _apply_system(settings: Dictionary) -> SCMachine:
	return await _play(SCSystemAction.new(), settings)


func _play(action: SCMachineAction, settings: Dictionary) -> SCMachine:
	for name: StringName in settings:
		action.set(name, settings[name])
	var state := SCMachineState.new()
	state.actions = [action]
	var machine := SCMachine.new()
	var held: Dictionary[StringName, Variant] = {&"mode": 0, &"full": false, &"text": ""}
	for name in held:
		var variable := SCMachineVariable.new()
		variable.name = name
		variable.default_value = held[name]
		machine.variables.append(variable)
	machine.states = [state]
	machine.initial_state = state
	root.add_child(machine)
	for i in 10:
		await process_frame
	machine.queue_free()
	return machine


func _kept() -> Array:
	var machine := await _apply({"store_mode_in": &"mode", "store_fullscreen_in": &"full"})
	return [machine.get_value(&"mode"), machine.get_value(&"full")]


func _is_in_the_middle() -> bool:
	var spare := root.position * 2 + root.size - SCREEN
	return absi(spare.x) <= 100 and absi(spare.y) <= 100


func _expect(holds: bool, what: String) -> void:
	if not holds:
		print("FAIL %s" % what)
