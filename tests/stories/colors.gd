extends Story
## Colours taken apart, changed, picked at random and along a gradient.


func test_a_colour_is_taken_apart() -> void:
	var tint := Color.from_hsv(0.25, 0.5, 0.8, 0.4)
	var parts := {"red": tint.r, "green": tint.g, "blue": tint.b, "alpha": 0.4, "hue": 0.25, "saturation": 0.5, "brightness": 0.8}
	var take := kind(SCGetColorComponentsAction, {"color": tint})
	for part: String in parts:
		take.set("store_%s_in" % part, StringName(part))
	var held := results_of(take, parts.duplicate())
	for part: String in parts:
		expect_near(held[StringName(part)], parts[part], 0.001, part)
	for part: String in parts:
		expect_near(results_of(kind(SCGetColorComponentsAction, {"color": tint, "store_%s_in" % part: "answer"}))[&"answer"], parts[part], 0.001, part)


func test_one_part_is_changed() -> void:
	var t := SCSetColorComponentsAction
	for row: Array in [
		[t.ALPHA, t.SET, 0.25, Color.RED, Color(1, 0, 0, 0.25)], [t.RED, t.MULTIPLY, 0.5, Color.RED, Color(0.5, 0, 0)],
		[t.RED, t.ADD, 1.0, Color.RED, Color(2, 0, 0)], [t.GREEN, t.ADD, -3.0, Color.RED, Color(1, 0, 0)],
		[t.BLUE, t.SET, 0.5, Color.RED, Color(1, 0, 0.5)], [t.HUE, t.ADD, 4.0 / 3.0, Color.RED, Color(0, 1, 0)],
		[t.SATURATION, t.SET, 0.0, Color.RED, Color(1, 1, 1)], [t.SATURATION, t.ADD, -0.5, Color.RED, Color(1, 0.5, 0.5)],
		[t.BRIGHTNESS, t.MULTIPLY, 0.5, Color.RED, Color(0.5, 0, 0)], [t.ALPHA, t.ADD, 5.0, Color.RED, Color(1, 0, 0, 1)],
		[t.GREEN, t.SET, 0.5, null, Color(1, 0.5, 1)],
	]:
		var change := _change(row[0], row[1], row[2])
		expect_near(results_of(change, {"tint": row[3]})[&"tint"], row[4], 0.0001, change.shown_summary())


func test_a_part_fades_each_second() -> void:
	var t := SCSetColorComponentsAction
	for row: Array in [[SCMachineAction.EVERY_FRAME, true, 0.5], [SCMachineAction.ONCE, true, 0.5], [SCMachineAction.EVERY_FRAME, false, 0.0]]:
		var made := play(_change(t.ALPHA, t.ADD, -0.5, {"run_mode": row[0], "per_second": row[1]}), {}, {"variables": {"tint": Color.RED}})
		await advance(1.0)
		expect_near((made.get_value("tint") as Color).a, row[2], 0.02)
		made.free()


func test_a_random_colour_keeps_to_its_range() -> void:
	var pick := kind(SCRandomColorAction, {
		"lowest_hue": 0.9, "highest_hue": 0.1, "lowest_saturation": 0.6, "highest_saturation": 0.4, "lowest_brightness": 1.0, "alpha": 0.5, "store_in": &"answer",
	})
	var seen := {}
	for i in 60:
		var tint: Color = result_of(pick)
		seen[tint] = true
		expect((tint.h >= 0.899 or tint.h <= 0.101) and tint.s > 0.399 and tint.s < 0.601 and is_equal_approx(tint.v, 1.0) and is_equal_approx(tint.a, 0.5), str(tint))
	expect(seen.size() > 40)


func test_a_random_mix_of_two() -> void:
	var tint: Color = result_of(kind(SCRandomColorAction, {"pick_from": SCRandomColorAction.BETWEEN_TWO, "first": Color(1, 0, 0, 1), "second": Color(0, 1, 0, 0), "store_in": &"answer"}))
	expect_near(tint.r + tint.g, 1.0, 0.001)
	expect_near(tint.a, tint.r, 0.001)


func test_a_colour_of_a_list_may_always_be_another() -> void:
	for row: Array in [[[Color.RED, Color.GREEN, Color.BLUE], true], [[Color.RED, Color.GREEN, Color.BLUE], false], [[Color.RED], true]]:
		var pick := kind(SCRandomColorAction, {"pick_from": SCRandomColorAction.A_LIST, "colors": PackedColorArray(row[0]), "always_another": row[1], "store_in": &"answer"})
		var seen := {}
		var again := 0
		var last := Color.RED
		for i in 30:
			var tint: Color = result_of(pick, {"answer": last})
			again += int(tint == last)
			last = tint
			seen[last] = true
		expect_equal(seen.size(), row[0].size())
		expect(again == 30 if seen.size() == 1 else (again == 0) == row[1], "%d times the same again" % again)


func test_the_colour_of_a_health_bar() -> void:
	var gradient := Gradient.new()
	gradient.colors = [Color.RED, Color(0, 1, 0)]
	for row: Array in [[0.0, 0.0, 100.0, 0.0], [50.0, 0.0, 100.0, 0.5], [100.0, 0.0, 100.0, 1.0], [250.0, 0.0, 100.0, 1.0], [-9.0, 0.0, 100.0, 0.0], [12.0, 10.0, 20.0, 0.2], [12.0, 20.0, 10.0, 0.8]]:
		var pick := kind(SCSampleGradientAction, {"gradient": gradient, "number_variable": &"health", "at_the_left": row[1], "at_the_right": row[2], "store_in": &"answer"})
		expect_near(result_of(pick, {"health": row[0]}), Color(1.0 - row[3], row[3], 0), 0.01, str(row))


func test_what_is_wrong_is_told() -> void:
	var t := SCSetColorComponentsAction
	for row: Array in [
		[kind(SCGetColorComponentsAction), "Get Color Components on Lamp: there is nowhere to put any part of the colour"],
		[_change(t.RED, t.SET, 1.0, {"variable_name": &"size"}), "Set Color Components on Lamp: size holds an int, which is no colour, so it was left alone."],
		[_change(t.RED, t.SET, 1.0, {"variable_name": &""}), "Set Color Components on Lamp: no variable is picked, so it changed nothing."],
		[_change(99, t.SET, 1.0), "Set Color Components on Lamp: its Part is 99, which is none of the choices there are, so it was taken as Red."],
		[kind(SCRandomColorAction, {"pick_from": SCRandomColorAction.A_LIST, "store_in": &"tint"}), "Random Color on Lamp: its list of colours is empty, so it picked none. Add some under Colors."],
		[kind(SCSampleGradientAction, {"store_in": &"tint"}), "Sample Gradient on Lamp: it has no gradient, so it picked no colour. Make one under Gradient."],
		[kind(SCSampleGradientAction, {"store_in": &"tint", "gradient": Gradient.new(), "at_the_right": 0.0}), "Sample Gradient on Lamp: both ends of its gradient stand for 0"],
	]:
		expect_warns(row[0], row[1], {"name": "Lamp", "variables": {"tint": Color.BLACK, "size": 5}})


func test_lines_on_the_graph() -> void:
	var t := SCSetColorComponentsAction
	expect_lines(SCGetColorComponentsAction, {"Take [tint] apart: nothing kept": {"color_variable": &"tint"}})
	expect_lines(SCRandomColorAction, {"Put one of 3 colours into tint": {"pick_from": SCRandomColorAction.A_LIST, "colors": PackedColorArray([0, 0, 0]), "store_in": &"tint"}})
	expect_lines(SCSampleGradientAction, {"Pick the colour of the gradient for [health] into tint": {"gradient": Gradient.new(), "number_variable": &"health", "store_in": &"tint"}})
	var fade := _change(t.ALPHA, t.ADD, -0.5, {"run_mode": SCMachineAction.EVERY_FRAME, "per_second": true})
	expect_line(fade, "Add -0.5 to the alpha of tint each second")
	expect_equal(Array(fade.variables_written()), ["tint"])
	expect_equal(Array(fade.variables_read()), ["tint"])
	expect_line(_change(t.RED, t.SET, 1.0, {"variable_name": &""}), "Set the red of (pick one) to 1")


func _change(part: int, operation: int, value: float, options: Dictionary = {}) -> SCSetColorComponentsAction:
	return kind(SCSetColorComponentsAction, {"variable_name": &"tint", "part": part, "operation": operation, "value": value}.merged(options, true))
