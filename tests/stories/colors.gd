extends Story
## Colours taken apart, changed, picked at random and along a gradient.


func test_a_colour_is_taken_apart() -> void:
	var take := SCGetColorComponentsAction.new()
	take.color = Color.from_hsv(0.25, 0.5, 0.8, 0.4)
	var values := {}
	for part: String in ["red", "green", "blue", "alpha", "hue", "saturation", "brightness"]:
		take.set("store_%s_in" % part, StringName(part))
		values[part] = 0.0
	var owner := start(machine([state("Take", [take], {"FINISHED": "Done"}), state("Done")], {"under": body(), "variables": values}))
	expect_state(owner, "Done")
	for row: Array in [["red", take.color.r], ["green", take.color.g], ["blue", take.color.b], ["alpha", 0.4], ["hue", 0.25], ["saturation", 0.5], ["brightness", 0.8]]:
		expect_near(owner.get_value(row[0]), row[1], 0.001, row[0])


func test_parts_that_nobody_wants() -> void:
	var take := SCGetColorComponentsAction.new()
	take.set(&"color_variable", &"tint")
	expect_equal(take.shown_summary(), "Take [tint] apart: nothing kept")
	start(machine([state("Take", [take])], {"name": "Lamp", "under": body(), "variables": {"tint": Color.RED}}))
	expect_warning("Get Color Components on Lamp: there is nowhere to put any part of the colour")


func test_one_part_is_changed() -> void:
	var rows: Array[Array] = [
		[SCSetColorComponentsAction.ALPHA, SCSetColorComponentsAction.SET, 0.25, Color(1, 0, 0, 0.25)],
		[SCSetColorComponentsAction.RED, SCSetColorComponentsAction.MULTIPLY, 0.5, Color(0.5, 0, 0)],
		[SCSetColorComponentsAction.RED, SCSetColorComponentsAction.ADD, 1.0, Color(2, 0, 0)],
		[SCSetColorComponentsAction.GREEN, SCSetColorComponentsAction.ADD, -3.0, Color(1, 0, 0)],
		[SCSetColorComponentsAction.HUE, SCSetColorComponentsAction.ADD, 4.0 / 3.0, Color(0, 1, 0)],
		[SCSetColorComponentsAction.SATURATION, SCSetColorComponentsAction.SET, 0.0, Color(1, 1, 1)],
		[SCSetColorComponentsAction.BRIGHTNESS, SCSetColorComponentsAction.SET, 0.5, Color(0.5, 0, 0)],
		[SCSetColorComponentsAction.ALPHA, SCSetColorComponentsAction.ADD, 5.0, Color(1, 0, 0, 1)],
	]
	for row in rows:
		var change := _change(row[0], row[1], row[2])
		var owner := start(machine([state("Change", [change])], {"under": body(), "variables": {"tint": Color.RED}}))
		expect((owner.get_value("tint") as Color).is_equal_approx(row[3]), "%s became %s" % [change.summary(), owner.get_value("tint")])


func test_a_part_fades_each_second() -> void:
	var fade := _change(SCSetColorComponentsAction.ALPHA, SCSetColorComponentsAction.ADD, -0.5)
	fade.run_mode = SCMachineAction.EVERY_FRAME
	fade.per_second = true
	expect_equal(fade.shown_summary(), "Add -0.5 to the alpha of tint each second")
	expect_equal(Array(fade.variables_written()), ["tint"])
	expect_equal(Array(fade.variables_read()), ["tint"])
	var owner := start(machine([state("Fade", [fade])], {"under": body(), "variables": {"tint": Color.RED}}))
	await advance(1.0)
	expect_near((owner.get_value("tint") as Color).a, 0.5, 0.02)


func test_what_is_no_colour_is_told_of() -> void:
	var owner := start(machine([state("Change", [_change(SCSetColorComponentsAction.RED, SCSetColorComponentsAction.SET, 1.0)])], {"name": "Lamp", "under": body(), "variables": {"tint": 5}}))
	expect_warning("Set Color Components on Lamp: tint holds an int, which is no colour, so it was left alone.")
	expect_equal(owner.get_value("tint"), 5)
	var nothing := _change(SCSetColorComponentsAction.RED, SCSetColorComponentsAction.SET, 1.0)
	nothing.variable_name = &""
	expect_equal(nothing.shown_summary(), "Set the red of (pick one) to 1")
	start(machine([state("Change", [nothing])], {"name": "Lamp", "under": body()}))
	expect_warning("Set Color Components on Lamp: no variable is picked, so it changed nothing.")
	start(machine([state("Change", [_change(99, SCSetColorComponentsAction.SET, 1.0)])], {"name": "Lamp", "under": body(), "variables": {"tint": Color.BLACK}}))
	expect_warning("Set Color Components on Lamp: its Part is 99, which is none of the choices there are, so it was taken as Red.")


func test_a_random_colour_keeps_to_its_range() -> void:
	var pick := SCRandomColorAction.new()
	pick.lowest_hue = 0.9
	pick.highest_hue = 0.1
	pick.lowest_saturation = 0.4
	pick.highest_saturation = 0.6
	pick.lowest_brightness = 1.0
	pick.alpha = 0.5
	pick.store_in = &"tint"
	pick.run_mode = SCMachineAction.EVERY_FRAME
	var owner := start(machine([state("Pick", [pick])], {"under": body(), "variables": {"tint": Color.BLACK}}))
	var seen := {}
	for i in 60:
		await frames(1)
		var tint: Color = owner.get_value("tint")
		seen[tint] = true
		expect((tint.h >= 0.899 or tint.h <= 0.101) and tint.s > 0.399 and tint.s < 0.601 and is_equal_approx(tint.v, 1.0) and is_equal_approx(tint.a, 0.5), str(tint))
	expect(seen.size() > 40)


func test_a_random_mix_of_two() -> void:
	var pick := SCRandomColorAction.new()
	pick.pick_from = SCRandomColorAction.BETWEEN_TWO
	pick.first = Color(1, 0, 0, 1)
	pick.second = Color(0, 1, 0, 0)
	pick.store_in = &"tint"
	var owner := start(machine([state("Pick", [pick], {"FINISHED": "Done"}), state("Done")], {"under": body(), "variables": {"tint": Color.BLACK}}))
	expect_state(owner, "Done")
	var tint: Color = owner.get_value("tint")
	expect_near(tint.r + tint.g, 1.0, 0.001)
	expect_near(tint.a, tint.r, 0.001)


func test_a_colour_of_a_list_is_always_another() -> void:
	var pick := SCRandomColorAction.new()
	pick.pick_from = SCRandomColorAction.A_LIST
	pick.colors = [Color.RED, Color.GREEN, Color.BLUE]
	pick.always_another = true
	pick.store_in = &"tint"
	pick.run_mode = SCMachineAction.EVERY_FRAME
	expect_equal(pick.shown_summary(), "Put one of 3 colours into tint")
	var owner := start(machine([state("Pick", [pick])], {"under": body(), "variables": {"tint": Color.RED}}))
	var seen := {}
	var last: Color = owner.get_value("tint")
	for i in 30:
		await frames(1)
		expect(owner.get_value("tint") != last)
		last = owner.get_value("tint")
		seen[last] = true
	expect_equal(seen.size(), 3)


func test_an_empty_list_is_told_of() -> void:
	var pick := SCRandomColorAction.new()
	pick.pick_from = SCRandomColorAction.A_LIST
	pick.store_in = &"tint"
	start(machine([state("Pick", [pick])], {"name": "Lamp", "under": body(), "variables": {"tint": Color.RED}}))
	expect_warning("Random Color on Lamp: its list of colours is empty, so it picked none. Add some under Colors.")


func test_the_colour_of_a_health_bar() -> void:
	var gradient := Gradient.new()
	gradient.set_color(0, Color(1, 0, 0))
	gradient.set_color(1, Color(0, 1, 0))
	for row: Array in [[0.0, Color(1, 0, 0)], [50.0, Color(0.5, 0.5, 0)], [100.0, Color(0, 1, 0)], [250.0, Color(0, 1, 0)], [-9.0, Color(1, 0, 0)]]:
		var pick := SCSampleGradientAction.new()
		pick.gradient = gradient
		pick.set(&"number_variable", &"health")
		pick.at_the_right = 100.0
		pick.store_in = &"tint"
		expect_equal(pick.shown_summary(), "Pick the colour of the gradient for [health] into tint")
		var owner := start(machine([state("Pick", [pick])], {"under": body(), "variables": {"tint": Color.BLACK, "health": row[0]}}))
		expect((owner.get_value("tint") as Color).is_equal_approx(row[1]), "%s is %s" % [row[0], owner.get_value("tint")])


func test_a_gradient_that_cannot_be_used() -> void:
	var none := SCSampleGradientAction.new()
	none.store_in = &"tint"
	var owner := start(machine([state("Pick", [none])], {"name": "Lamp", "under": body(), "variables": {"tint": Color.BLACK}}))
	expect_warning("Sample Gradient on Lamp: it has no gradient, so it picked no colour. Make one under Gradient.")
	expect_equal(owner.get_value("tint"), Color.BLACK)
	none.gradient = Gradient.new()
	none.at_the_right = 0.0
	start(machine([state("Pick", [none])], {"name": "Lamp", "under": body(), "variables": {"tint": Color.BLACK}}))
	expect_warning("Sample Gradient on Lamp: both ends of its gradient stand for 0")


func _change(part: int, operation: int, value: float) -> SCSetColorComponentsAction:
	var made := SCSetColorComponentsAction.new()
	made.variable_name = &"tint"
	made.part = part
	made.operation = operation
	made.value = value
	return made
