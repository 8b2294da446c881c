extends Story
## Numbers kept in a range, drawn by lot and moved over time, and properties read from nodes.


func test_a_number_is_kept_inside() -> void:
	# Lowest, highest, before, after.
	for row: Array in [
		[0.0, 10.0, -5.0, 0.0],
		[0.0, 10.0, 15.0, 10.0],
		[0.0, 10.0, 5.5, 5.5],
		[0.0, 10.0, 15, 10],
		[0.5, 3.5, 0, 1],
		[0.5, 3.5, 9, 3],
		[0.2, 0.4, 9, 0],
	]:
		var made := await _run(_clamp({"lowest": row[0], "highest": row[1], "run_mode": SCMachineAction.ONCE}), {"health": row[2]})
		expect_equal(made.get_value("health"), row[3], str(row))


func test_a_health_bar_stays_inside_without_ticking() -> void:
	var made := start(machine([
		state("Alive", [_clamp({"lowest_event": &"dead", "highest_event": &"full"})], [transition("dead", "Dead", &"left")]),
		state("Dead"),
	], {"variables": {"health": 50.0, "left": 9.0}}))
	await frames(2)
	expect(not made.is_processing(), "the machine ticks for a number that does not change")
	made.set_value("health", 170.0)
	expect_equal(made.get_value("health"), 100.0)
	made.set_value("health", -3.0)
	expect_equal(made.get_value("health"), 0.0)
	expect_state(made, "Dead")
	expect_equal(made.get_value("left"), 0.0)


func test_an_end_is_told_of_once_until_it_is_left() -> void:
	var heard: Array = []
	var made := start(machine([state("A", [_clamp({"lowest": 0.0, "highest": 10.0, "highest_event": &"full"})])], {"variables": {"health": 5.0}}))
	made.event_sent.connect(func(event: StringName, data: Variant) -> void: heard.append([event, data]))
	for value: float in [12.0, 10.0, 11.0, 4.0, 10.0]:
		made.set_value("health", value)
	expect_equal(heard, [[&"full", 10.0], [&"full", 10.0]])


func test_a_range_follows_the_variable_it_is_read_from() -> void:
	var made := start(machine([state("A", [_clamp({"highest_variable": &"most"})])], {"variables": {"health": 80.0, "most": 90.0}}))
	made.set_value("most", 60.0)
	expect_equal(made.get_value("health"), 60.0)
	var slow := _clamp({"update_interval": 0.2})
	made = start(machine([state("A", [slow])], {"name": "Slow", "variables": {"health": 80.0}}))
	made.set_value("health", 300.0)
	expect_equal(made.get_value("health"), 300.0)
	await advance(0.25)
	expect_equal(made.get_value("health"), 100.0)


func test_a_clamp_set_up_wrong_is_told_of() -> void:
	var once := {"run_mode": SCMachineAction.ONCE}
	await _run(_clamp(once.merged({"variable_name": &""})))
	expect_warning("Clamp on Machine: no variable is picked, so it changed nothing. Pick one under Variable Name.")
	await _run(_clamp(once))
	expect_warning("Clamp on Machine: this machine has no variable called health, so there was nothing to keep inside the range.")
	await _run(_clamp(once), {"health": "full"})
	expect_warning("Clamp on Machine: health holds a String, which is not a number, so it was left alone.")
	var made := await _run(_clamp(once.merged({"lowest": 5.0, "highest": 1.0})), {"health": 9.0})
	expect_equal(made.get_value("health"), 5.0)
	expect_warning("Clamp on Machine: Lowest is 5, which is more than Highest, 1, so the two were taken the other way round. Swap them.")


func test_random_numbers_keep_to_their_range() -> void:
	var whole := {}
	var previous := -1
	for i in 200:
		var made := await _run(_random({"lowest": 1.0, "highest": 6.0, "whole_number": true}), {"n": 0.0}, false)
		whole[made.get_value("n")] = true
		made = await _run(_random({"lowest": 2.5, "highest": 3.5}), {"n": 0.0}, false)
		expect(made.get_value("n") >= 2.5 and made.get_value("n") <= 3.5)
		made = await _run(_random({"lowest": 0.5, "highest": 2.5}), {"n": 9}, false)
		expect(made.get_value("n") in [1, 2], "%s" % made.get_value("n"))
		made = await _run(_random({"lowest": 1.0, "highest": 3.0, "whole_number": true, "never_twice_the_same": true}), {"n": previous}, false)
		expect(made.get_value("n") != previous)
		previous = made.get_value("n")
	var faces := whole.keys()
	faces.sort()
	expect_equal(faces, [1.0, 2.0, 3.0, 4.0, 5.0, 6.0])


func test_the_only_number_there_is_may_come_again() -> void:
	var made := await _run(_random({"lowest": 4.0, "highest": 4.0, "whole_number": true, "never_twice_the_same": true}), {"n": 4})
	expect_equal(made.get_value("n"), 4)
	await _run(_random({"lowest": 4.0, "highest": 2.0, "store_in": &""}))
	expect_warning("Random Number on Machine: Lowest is 4, which is more than Highest, 2")
	expect_warning("Random Number on Machine: there is nowhere to put the number, so it was lost. Pick a variable under Store In.")


func test_a_seed_gives_the_same_game_again() -> void:
	var by_text := SCRandomSeedAction.new()
	by_text.from = SCRandomSeedAction.A_TEXT
	by_text.text = "green hills"
	by_text.store_in = &"seed"
	var by_number := SCRandomSeedAction.new()
	by_number.number = 77
	for seeding: SCRandomSeedAction in [by_number, by_text]:
		var games: Array = []
		for i in 2:
			var made := await _run(seeding, {"seed": 0})
			games.append([randi(), randi(), randf(), made.get_value("seed")])
		expect_equal(games[0], games[1])
	var again := SCRandomSeedAction.new()
	again.number_variable = &"seed"
	var made := await _run(by_text, {"seed": 0})
	var wanted := randi()
	await _run(again, {"seed": made.get_value("seed")})
	expect_equal(randi(), wanted)


func test_the_clock_makes_every_game_another_one() -> void:
	var by_clock := SCRandomSeedAction.new()
	by_clock.from = SCRandomSeedAction.THE_CLOCK
	by_clock.store_in = &"seed"
	seed(1)
	var first: int = (await _run(by_clock, {"seed": 0})).get_value("seed")
	var drawn := randi()
	seed(1)
	var second: int = (await _run(by_clock, {"seed": 0})).get_value("seed")
	expect(first != second, "both are %d" % first)
	seed(first)
	expect_equal(randi(), drawn)
	var empty := SCRandomSeedAction.new()
	empty.from = SCRandomSeedAction.A_TEXT
	await _run(empty)
	expect_warning("Random Seed on Machine: it has no Text, so every game gets the same seed. Type some words in beside Text, or pick The Clock.")


func test_a_gauge_settles() -> void:
	var made := start(machine([
		state("Fill", [_ease({"to": 10.0, "duration": 0.5, "curve": SCEaseVariableAction.LINEAR})], {"FINISHED": "Full"}),
		state("Full"),
	], {"variables": {"fuel": 2.0}}))
	expect_equal(made.get_value("fuel"), 2.0)
	await frames(15)
	expect_near(made.get_value("fuel"), 6.0)
	expect_state(made, "Fill")
	await frames(15)
	expect_equal(made.get_value("fuel"), 10.0)
	expect_state(made, "Full")
	await frames(1)
	expect(not made.is_processing())


func test_every_shape_is_the_engine_s_own() -> void:
	for shape: int in 12:
		for easing: int in 4:
			var made := start(machine([state("A", [_ease({"to": 3.0, "duration": 0.5, "curve": shape, "easing": easing})], {"FINISHED": "B"}), state("B")], {"variables": {"fuel": 1.0}}))
			await frames(10)
			var wanted: float = Tween.interpolate_value(1.0, 2.0, 10.0 / 60.0, 0.5, shape, easing)
			expect_near(made.get_value("fuel"), wanted, 0.00001, "%d, %d" % [shape, easing])
			await frames(20)
			expect_equal(made.get_value("fuel"), 3.0)
			expect_state(made, "B")
			made.queue_free()


func test_what_can_be_eased() -> void:
	# From, to, half way.
	for row: Array in [
		[0, 5, 3],
		[10, 0, 5],
		[0.0, 5, 2.5],
		[Vector2(0, 2), Vector2(4, 4), Vector2(2, 3)],
		[Vector2i(0, 2), Vector2i(4, 5), Vector2i(2, 4)],
		[Vector3.ZERO, Vector3(2, 4, 6), Vector3(1, 2, 3)],
		[Color.BLACK, Color(1, 0.5, 0, 1), Color(0.5, 0.25, 0, 1)],
		[Quaternion.IDENTITY, Quaternion.IDENTITY, Quaternion.IDENTITY],
	]:
		var made := start(machine([state("A", [_ease({"to": row[1], "duration": 1.0 / 3.0, "curve": SCEaseVariableAction.LINEAR})])], {"variables": {"fuel": row[0]}}))
		await frames(10)
		expect_equal(typeof(made.get_value("fuel")), typeof(row[0]))
		expect(is_same(made.get_value("fuel"), row[2]) or made.get_value("fuel").is_equal_approx(row[2]), "%s: %s" % [row, made.get_value("fuel")])
		await frames(10)
		expect(made.get_value("fuel") == type_convert(row[1], typeof(row[0])), "%s ends at %s" % [row, made.get_value("fuel")])
		made.queue_free()


func test_easing_stops_with_the_game() -> void:
	var made := start(machine([state("A", [_ease({"to": 60.0, "curve": SCEaseVariableAction.LINEAR})])], {"variables": {"fuel": 0.0}}))
	await frames(10)
	expect_near(made.get_value("fuel"), 10.0)
	tree.paused = true
	await frames(5)
	expect_near(made.get_value("fuel"), 10.0)
	tree.paused = false
	Engine.time_scale = 0.5
	await frames(10)
	Engine.time_scale = 1.0
	expect_near(made.get_value("fuel"), 15.0, 1.1)
	made.set_paused(true)
	var held: float = made.get_value("fuel")
	await frames(5)
	expect_near(made.get_value("fuel"), held)
	made.set_paused(false)
	await frames(5)
	expect_near(made.get_value("fuel"), held + 5.0, 1.1)


func test_leaving_the_state_leaves_the_variable_where_it_is() -> void:
	var made := start(machine([
		state("A", [_ease({"to": 60.0, "curve": SCEaseVariableAction.LINEAR})], {"go": "B"}),
		state("B", [], {"back": "A"}),
	], {"variables": {"fuel": 0.0}}))
	await frames(6)
	made.send_event("go")
	await frames(10)
	expect_near(made.get_value("fuel"), 6.0)
	# It starts from where the variable is, and takes its whole time again.
	made.send_event("back")
	await frames(30)
	expect_near(made.get_value("fuel"), 33.0, 0.01)


func test_a_target_that_moves_is_followed() -> void:
	var made := start(machine([state("A", [_ease({"to_variable": &"goal", "duration": 0.5, "curve": SCEaseVariableAction.LINEAR})], {"FINISHED": "B"}), state("B")], {"variables": {"fuel": 0.0, "goal": 10.0}}))
	await frames(15)
	expect_near(made.get_value("fuel"), 5.0)
	made.set_value("goal", 20.0)
	await frames(15)
	expect_equal(made.get_value("fuel"), 20.0)
	expect_state(made, "B")


func test_no_time_at_all_is_a_jump() -> void:
	var made := start(machine([state("A", [_ease({"to": 8.0, "duration": 0.0})], {"FINISHED": "B"}), state("B")], {"variables": {"fuel": 1.0}}))
	expect_equal(made.get_value("fuel"), 8.0)
	expect_state(made, "B")
	made = start(machine([state("A", [_ease({"to": 8.0, "duration_variable": &"time"})], {"FINISHED": "B"}), state("B")], {"name": "Bound", "variables": {"fuel": 1.0, "time": 0.0}}))
	expect_equal(made.get_value("fuel"), 8.0)
	expect_state(made, "B")


func test_an_int_sent_to_a_fraction_is_told_of_at_its_end() -> void:
	var made := start(machine([state("A", [_ease({"to": 2.5, "duration": 0.1})], {"FINISHED": "B"}), state("B")], {"variables": {"fuel": 0}}))
	await frames(4)
	await frames(4)
	expect_equal(made.get_value("fuel"), 3)
	expect_warning("fuel on Machine is an int, so 2.5 was rounded to 3.")


func test_a_drawn_curve_leads_the_way() -> void:
	var curve := Curve.new()
	curve.add_point(Vector2(0, 0))
	curve.add_point(Vector2(0.5, 1))
	curve.add_point(Vector2(1, 0))
	var along := _along({"to": 10.0, "duration": 0.5, "curve": curve})
	var made := start(machine([state("A", [along], {"FINISHED": "B"}), state("B")], {"variables": {"fuel": 2.0}}))
	var most := 0.0
	for i in 30:
		await frames(1)
		most = maxf(most, made.get_value("fuel"))
	expect_near(most, 10.0, 0.05)
	expect_near(made.get_value("fuel"), 2.0)
	expect_state(made, "B")
	var straight := Curve.new()
	straight.max_domain = 4.0
	straight.add_point(Vector2(0, 0), 0, 1, Curve.TANGENT_LINEAR, Curve.TANGENT_LINEAR)
	straight.add_point(Vector2(4, 1), 1, 0, Curve.TANGENT_LINEAR, Curve.TANGENT_LINEAR)
	made = start(machine([state("A", [_along({"to": Color.WHITE, "duration": 0.5, "curve": straight})], {"FINISHED": "B"}), state("B")], {"name": "Wide", "variables": {"fuel": Color.BLACK}}))
	await frames(15)
	expect_near(made.get_value("fuel").r, 0.5, 0.01)
	await frames(15)
	expect_equal(made.get_value("fuel"), Color.WHITE)


func test_easing_set_up_wrong_is_told_of() -> void:
	# Settings, variables, what is said.
	for row: Array in [
		[{"variable_name": &""}, {}, "no variable is picked, so there was nothing to ease. Pick one under Variable Name."],
		[{}, {}, "this machine has no variable called fuel, so there was nothing to ease."],
		[{}, {"fuel": null}, "fuel holds nothing, so there is nowhere to start from and it was left alone. Give it a starting value in the Variables tab."],
		[{}, {"fuel": "full"}, "fuel holds a String and To is a float, so there is no way from one to the other and it was left alone. Give To the same type as the variable."],
		[{"to": Color.RED}, {"fuel": 1.0}, "fuel holds a float and To is a Color"],
	]:
		var made := await _run(_ease(row[0]), row[1])
		expect_warning("Ease Variable on Machine: %s" % row[2])
		if row[1].has("fuel"):
			expect_equal(made.get_value("fuel"), row[1]["fuel"])
		MakerWarnings._said.clear()
	# No time at all, and a shape that there is not.
	for row: Array in [[{"duration": NAN}, "its Duration is no number, as 0 divided by 0 is none, so it was taken as 0."], [{"duration": 0.1, "curve": 99}, "its Curve is 99, which is none of the choices there are, so it was taken as Linear."]]:
		var eased := start(machine([state("A", [_ease(row[0])])], {"variables": {"fuel": 0.0}}))
		await frames(10)
		expect_equal(eased.get_value("fuel"), 1.0)
		expect_warning("Ease Variable on Machine: %s" % row[1])
		eased.free()
	var made := start(machine([state("A", [_along({"to": 10.0, "duration": 0.5})])], {"variables": {"fuel": 0.0}}))
	await frames(15)
	expect_near(made.get_value("fuel"), 5.0)
	expect_warning("Ease Along Curve on Machine: it has no Curve, so it goes straight there at one speed.")


func test_properties_are_read() -> void:
	var there := body("There")
	there.position = Vector2(3, 4)
	there.modulate = Color.RED
	# Property, value.
	for row: Array in [
		["position", Vector2(3, 4)],
		["position:y", 4.0],
		["modulate:r", 1.0],
		["visible", true],
		["name", &"There"],
		["material", null],
	]:
		var made := await _run(_property({"property": row[0]}), {"answer": null}, true, there)
		expect_equal(made.get_value("answer"), row[1], row[0])


func test_a_property_is_read_every_frame() -> void:
	var there := body()
	var reads := _property({"property": "position:x", "run_mode": SCMachineAction.EVERY_FRAME})
	var made := start(machine([state("A", [reads])], {"under": there, "variables": {"answer": 0}}))
	there.position.x = 7.0
	await frames(1)
	expect_equal(made.get_value("answer"), 7)
	there.position.x = 9.0
	await frames(1)
	expect_equal(made.get_value("answer"), 9)


func test_a_property_set_up_wrong_is_told_of() -> void:
	await _run(_property({}), {"answer": 1})
	expect_warning("Get Property on Machine: no property is named, so there was nothing to read. Type one in beside Property, such as visible.")
	var made := await _run(_property({"property": "visibel"}), {"answer": 1}, true, body())
	expect_equal(made.get_value("answer"), 1)
	expect_warning("Get Property on Machine: Body has nothing called visibel, so nothing was read. Check the name under Property against Godot's help for Node2D.")
	await _run(_property({"property": "position:q"}), {"answer": 1}, true, body("Other"))
	expect_warning("Get Property on Machine: Other has nothing called position:q")
	await _run(_property({"property": "::"}), {"answer": 1}, true, body("Second"))
	expect_warning("Get Property on Machine: Second has nothing called ::, so nothing was read.")
	await _run(_property({"property": "name", "node_path": NodePath("../Nobody")}), {"answer": 1})
	expect_warning("Get Property on Machine: there is no node at Nobody. Pick one under Node Path.")
	await _run(_property({"property": "name", "store_in": &""}), {}, true, body("Third"))
	expect_warning("Get Property on Machine: there is nowhere to put the value, so it was lost. Pick a variable under Store In.")


func test_what_numbers_say() -> void:
	for row: Array in [
		[_clamp({"lowest_event": &"Dead"}), "Keep health from 0 to 100, the lowest sends Dead"],
		[_clamp({"variable_name": &"", "highest_variable": &"most"}), "Keep (pick one) from 0 to [most]"],
		[_random({"lowest": 1.0, "highest": 6.0, "whole_number": true}), "Keep a random whole number from 1 to 6 in n"],
		[_ease({"to": 5.0, "duration": 0.5}), "Ease fuel to 5 over 0.5 s"],
		[_ease({"to_variable": &"goal"}), "Ease fuel to [goal] over 1 s"],
		[_along({"to": 5.0}), "Ease fuel to 5 along a curve over 1 s"],
		[SCRandomSeedAction.new(), "Seed the random numbers with 1"],
		[_property({"property": "visible", "node_path": NodePath("../Door")}), "Keep visible of Door in answer"],
		[SCGetPropertyAction.new(), "Keep (pick one) of Self in (pick one)"],
	]:
		var kind: SCMachineAction = row[0]
		expect_equal(kind.shown_summary(), row[1])


func _clamp(options: Dictionary) -> SCClampAction:
	var made := SCClampAction.new()
	made.variable_name = &"health"
	_put(made, options)
	return made


func _random(options: Dictionary) -> SCRandomNumberAction:
	var made := SCRandomNumberAction.new()
	made.store_in = &"n"
	_put(made, options)
	return made


func _ease(options: Dictionary) -> SCEaseVariableAction:
	var made := SCEaseVariableAction.new()
	made.variable_name = &"fuel"
	_put(made, options)
	return made


func _along(options: Dictionary) -> SCEaseAlongCurveAction:
	var made := SCEaseAlongCurveAction.new()
	made.variable_name = &"fuel"
	_put(made, options)
	return made


func _property(options: Dictionary) -> SCGetPropertyAction:
	var made := SCGetPropertyAction.new()
	made.store_in = &"answer"
	_put(made, options)
	return made


func _run(action: SCMachineAction, variables: Dictionary = {}, in_a_frame: bool = true, under: Node = stage) -> SCMachine:
	var made := machine([state("A", [action], {"FINISHED": "B"}), state("B")], {"variables": variables})
	under.add_child(made)
	if not made.is_running():
		made.start()
	if in_a_frame:
		await frames(1)
	expect_state(made, "B")
	made.name = "Done"
	if not in_a_frame:
		made.queue_free()
	return made
