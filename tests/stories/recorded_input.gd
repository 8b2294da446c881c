extends Story
## Recordings that play in place of somebody who sits there.

const Inputs := preload("res://addons/quillstead/runtime/quillstead_input.gd")


func play_lines(lines: String) -> RecordedInput:
	var player: RecordedInput = add(RecordedInput.new())
	player.play_text(lines)
	return player


func test_inputs_go_down_and_up_in_their_frames() -> void:
	var player := play_lines("# A step and a hop.\n2 down Key: D\n3\ttap Key: Space # a hop\n4 down Pad: Left Stick Up\n6 up Key: D\n8 end")
	var words: Array[StringName] = [&"Key: D", &"Key: Space", &"Pad: Left Stick Up"]
	var held: Array[String] = ["", "", "", "", "", "", "", "", "", ""]
	var over := [false]
	player.ended.connect(func() -> void: over[0] = true)
	for word in words:
		expect(not Inputs.is_held(word))
	for at in held.size():
		await physics_frames(1)
		await frames(1)
		for word in words:
			held[at] += "x" if Inputs.is_held(word) else "."
		if over[0]:
			break
	expect_equal(" ".join(held.filter(func(row: String) -> bool: return not row.is_empty())), "... ... x.. xx. x.x x.x ..x ..x ...")
	expect(over[0] and not player.is_playing())


func test_what_is_held_is_let_go_of_when_it_is_stopped_or_goes() -> void:
	var held := func() -> Array: return [Inputs.is_held(&"Key: D"), Inputs.is_held(&"Mouse: Left Button")]
	for ends: Callable in [func(of: RecordedInput) -> void: of.stop(), func(of: RecordedInput) -> void: of.free()]:
		expect_equal(held.call(), [false, false])
		var player := play_lines("0 down Key: D\n0 down Mouse: Left Button\n90 end")
		await physics_frames(3)
		expect_equal(held.call(), [true, true])
		ends.call(player)
		expect_equal(held.call(), [false, false])


func test_lines_that_say_nothing_are_told_of_and_nothing_is_played() -> void:
	for line: String in ["5 down", "now down Key: D", "5 push Key: D", "5 down Key: Nowhere", "1 up Key: D"]:
		var player := play_lines("2 down Key: D\n%s" % line)
		expect_error("The recording, line 2: \"%s\" is no frame, no earlier than the last, with down, up or tap and an input." % line)
		expect(not player.is_playing())
	expect(not (add(RecordedInput.new()) as RecordedInput).play("res://demo/nowhere.txt"))
	expect_error("There is no recording at res://demo/nowhere.txt.")
