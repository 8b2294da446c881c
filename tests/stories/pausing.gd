extends Story
## Pause Game: freezing the game, letting it run again, and the mouse meanwhile.


class StopsMachine:
	extends Node

	var stopped: SCMachine

	func _notification(what: int) -> void:
		if what == NOTIFICATION_PAUSED:
			stopped.stop()


func close() -> void:
	Input.mouse_mode = Input.MOUSE_MODE_VISIBLE
	await super()


func pausing(mode: SCPauseGameAction.Mode, settings: Dictionary = {}) -> SCPauseGameAction:
	return kind(SCPauseGameAction, {"mode": mode}.merged(settings))


func test_what_it_says_and_shows() -> void:
	expect_lines(SCPauseGameAction, {
		"Pause the game": {}, "Resume the game": {"mode": SCPauseGameAction.RESUME}, "Pause or resume the game": {"mode": SCPauseGameAction.TOGGLE},
	})
	expect_hidden(pausing(SCPauseGameAction.RESUME), ["show_mouse", "paused_event"])
	expect_hidden(pausing(SCPauseGameAction.PAUSE), ["resumed_event"])
	expect_shown(pausing(SCPauseGameAction.TOGGLE), ["show_mouse", "paused_event", "resumed_event"])


func test_each_mode_from_a_game_that_runs_and_one_that_stands_still() -> void:
	var rows: Array[Array] = [
		[SCPauseGameAction.PAUSE, false, true, ["stands"]], [SCPauseGameAction.PAUSE, true, true, []],
		[SCPauseGameAction.RESUME, false, false, []], [SCPauseGameAction.RESUME, true, false, ["runs"]],
		[SCPauseGameAction.TOGGLE, false, true, ["stands"]], [SCPauseGameAction.TOGGLE, true, false, ["runs"]],
	]
	for row in rows:
		tree.paused = row[1]
		var made := play(pausing(row[0] as SCPauseGameAction.Mode, {"paused_event": &"stands", "resumed_event": &"runs"}))
		expect_state(made, "Done")
		expect_equal(tree.paused, row[2], "%s" % [row])
		expect_events(made, row[3] as Array)
		made.free()
	tree.paused = false


func test_a_menu_that_goes_on_while_the_level_stands_still() -> void:
	var level := body("Level")
	var counted: Array[int] = []
	start(machine([state("Runs", [act("level").ticking().updating(func() -> void: counted.append(1))])], {"under": level}))
	var menu := body("Menu")
	menu.process_mode = Node.PROCESS_MODE_ALWAYS
	var made := start(machine([
		state("Playing", [pausing(SCPauseGameAction.RESUME)], {"escape": "Paused"}),
		state("Paused", [pausing(SCPauseGameAction.PAUSE), wait(0.2)], {"FINISHED": "Playing"}),
	], {"under": menu}))
	made.send_event("escape")
	await frames(2)
	var before := counted.size()
	await frames(8)
	expect_equal(counted.size(), before)
	await frames(6)
	expect_state(made, "Playing")
	await frames(2)
	expect(counted.size() > before)


func test_a_machine_that_stops_itself_is_told_of_once() -> void:
	var stuck := "the game stands still now, and so does %s, which is to let it run again, so it notices no key and no time. Set its Process Mode to Always."
	var rows: Array[Array] = [
		["Waits", state("Paused", [pausing(SCPauseGameAction.PAUSE), wait(1.0)], {"FINISHED": "Playing"}), true],
		["Asks", state("Paused", [pausing(SCPauseGameAction.TOGGLE), act("asks").ticking()], {"again": "Playing"}), true],
		# A button of a menu that goes on sends it an event.
		["Hears", state("Paused", [pausing(SCPauseGameAction.PAUSE)], {"chosen": "Playing"}), false],
		["Finishes", state("Paused", [pausing(SCPauseGameAction.PAUSE), send(&"again")], {"again": "Playing"}), false],
	]
	for row in rows:
		var made := start(machine([state("Playing", [pausing(SCPauseGameAction.RESUME)], {"escape": "Paused"}), row[1]], {"name": row[0]}))
		for times in 2:
			made.send_event("escape")
			await frames(2)
			if row[2] and times == 0:
				expect_warning(stuck % row[0])
			made.go_to("Playing")
		expect(not tree.paused)
		made.free()
	# Another machine lets it run again.
	var player := start(machine([
		state("Playing", [act("walks").ticking()], {"escape": "Paused"}), state("Paused", [pausing(SCPauseGameAction.PAUSE), wait(1.0)]),
	]))
	player.send_event("escape")
	await frames(2)
	tree.paused = false


func test_the_mouse_is_shown_and_given_back() -> void:
	if DisplayServer.get_name() == "headless":
		_play_on_a_screen("test_the_mouse_is_shown_and_given_back")
		return
	Input.mouse_mode = Input.MOUSE_MODE_CAPTURED
	expect_equal(Input.mouse_mode, Input.MOUSE_MODE_CAPTURED)
	play(pausing(SCPauseGameAction.PAUSE))
	expect_equal(Input.mouse_mode, Input.MOUSE_MODE_VISIBLE)
	play(pausing(SCPauseGameAction.PAUSE))
	play(pausing(SCPauseGameAction.RESUME))
	expect_equal(Input.mouse_mode, Input.MOUSE_MODE_CAPTURED)
	play(pausing(SCPauseGameAction.PAUSE))
	expect_equal(Input.mouse_mode, Input.MOUSE_MODE_VISIBLE)
	play(kind(SCChangeSceneAction, {"scene_path": "res://nowhere.tscn"}))
	expect_warning("there is no scene at")
	expect_equal([Input.mouse_mode, tree.paused], [Input.MOUSE_MODE_CAPTURED, false], "leaving from the menu")
	play(pausing(SCPauseGameAction.TOGGLE))
	Input.mouse_mode = Input.MOUSE_MODE_HIDDEN
	play(pausing(SCPauseGameAction.TOGGLE))
	expect_equal(Input.mouse_mode, Input.MOUSE_MODE_HIDDEN, "changed by the game meanwhile")
	play(pausing(SCPauseGameAction.TOGGLE, {"show_mouse": false}))
	expect_equal(Input.mouse_mode, Input.MOUSE_MODE_HIDDEN)
	play(pausing(SCPauseGameAction.TOGGLE))


func test_from_outside_the_scene_and_stopped_by_the_pause() -> void:
	var apart := machine([state("A", [], {"go": "B"}), state("B", [pausing(SCPauseGameAction.PAUSE)], {"FINISHED": "Done"}), state("Done")])
	start(apart)
	stage.remove_child(apart)
	apart.start()
	apart.send_event("go")
	expect_warning("the machine is in no scene, so nothing is paused or resumed.")
	expect_state(apart, "Done")
	apart.free()
	var made := start(machine([state("Playing", [], {"go": "Paused"}), state("Paused", [pausing(SCPauseGameAction.PAUSE, {"paused_event": &"stands"})])]))
	var stops := StopsMachine.new()
	stops.stopped = made
	add(stops, "Stops")
	made.send_event("go")
	expect(tree.paused)
	expect_events(made, ["go"])
	tree.paused = false


# In an engine of its own, with a screen that is drawn nowhere, where there is one to be had.
func _play_on_a_screen(test: String) -> void:
	# What goes before the engine to check its memory, the programs beside it do not bear.
	if OS.has_environment("ASAN_OPTIONS") or OS.has_environment("LSAN_OPTIONS") or OS.execute("sh", ["-c", "command -v xvfb-run xauth"]) != 0:
		return
	var printed: Array = []
	var status := OS.execute("timeout", [
		str(SECONDS_TO_SURVIVE), "xvfb-run", "-a", OS.get_executable_path(), "--rendering-driver", "opengl3", "--audio-driver", "Dummy", "--no-header",
		"--fixed-fps", str(FPS), "--path", ProjectSettings.globalize_path("res://"), "-s", "res://tests/framework/run.gd", "--", test,
	], printed, true)
	var said := "\n".join(printed)
	# There may be no driver to draw with.
	if "== stories begin" in said:
		expect(status == 0 and "1 passed, 0 failed" in said, said.right(1500))
