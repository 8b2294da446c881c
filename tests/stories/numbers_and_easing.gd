extends Story
## Numbers kept in a range, drawn by lot and moved over time, and properties read from nodes.

const LINEAR: Dictionary = {"curve": SCEaseVariableAction.LINEAR}


func test_a_number_is_kept_inside() -> void:
	# Lowest, highest, before, after.
	for row: Array in [
		[0.0, 10.0, -5.0, 0.0], [0.0, 10.0, 15.0, 10.0], [0.0, 10.0, 5.5, 5.5], [0.0, 10.0, 15, 10],
		[0.5, 3.5, 0, 1], [0.5, 3.5, 9, 3], [0.2, 0.4, 9, 0],
	]:
		var clamp_it := _clamp({"lowest": row[0], "highest": row[1], "run_mode": SCMachineAction.ONCE})
		expect_equal(results_of(clamp_it, {"health": row[2]})[&"health"], row[3], str(row))


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
	expect_values(made, {"health": 0.0, "left": 0.0})
	expect_state(made, "Dead")


func test_an_end_is_told_of_once_until_it_is_left() -> void:
	for starts_as: Variant in [5.0, 5]:
		var heard: Array = []
		var made := play(_clamp({"lowest": 0.0, "highest": 10.0, "lowest_event": &"empty", "highest_event": &"full"}), {}, {"variables": {"health": starts_as}})
		made.event_sent.connect(func(event: StringName, data: Variant) -> void: heard.append([event, data]))
		for value: int in [12, 10, 11, 4, 10, -1, 0, 1]:
			made.set_value("health", type_convert(value, typeof(starts_as)))
		expect_equal(str(heard), str([[&"full", starts_as * 2], [&"full", starts_as * 2], [&"empty", starts_as * 0]]))


func test_a_range_follows_the_variable_it_is_read_from() -> void:
	var made := play(_clamp({"highest_variable": &"most"}), {}, {"variables": {"health": 80.0, "most": 90.0}})
	made.set_value("most", 60.0)
	expect_equal(made.get_value("health"), 60.0)
	made = play(_clamp({"update_interval": 0.2}), {}, {"variables": {"health": 80.0}})
	made.set_value("health", 300.0)
	expect_equal(made.get_value("health"), 300.0)
	await advance(0.25)
	expect_equal(made.get_value("health"), 100.0)


func test_numbers_set_up_wrong_are_told_of() -> void:
	var once := {"run_mode": SCMachineAction.ONCE}
	for row: Array in [
		[{"variable_name": &""}, {}, "no variable is picked, so it changed nothing. Pick one under Variable Name."],
		[{}, {}, "this machine has no variable called health, so there was nothing to keep inside the range."],
		[{}, {"health": "full"}, "health holds a String, which is not a number, so it was left alone."],
	]:
		expect_warns(_clamp(once.merged(row[0])), "Clamp on Machine: %s" % row[2], {"variables": row[1]})
	expect_equal(results_of(_clamp(once.merged({"lowest": 5.0, "highest": 1.0})), {"health": 9.0})[&"health"], 5.0)
	expect_warning("Clamp on Machine: Lowest is 5, which is more than Highest, 1, so the two were taken the other way round. Swap them.")
	expect_warns(_random({"lowest": 4.0, "highest": 2.0, "store_in": &""}), [
		"Random Number on Machine: Lowest is 4, which is more than Highest, 2",
		"Random Number on Machine: there is nowhere to put the number, so it was lost. Pick a variable under Store In.",
	])
	expect_warns(
		kind(SCRandomSeedAction, {"from": SCRandomSeedAction.A_TEXT}),
		"Random Seed on Machine: it has no Text, so every game gets the same seed. Type some words in beside Text, or pick The Clock.")


func test_random_numbers_keep_to_their_range() -> void:
	# Settings, what the variable holds before, what may come and all of which does.
	for row: Array in [
		[{"lowest": 1.0, "highest": 6.0, "whole_number": true}, 0.0, [1.0, 2.0, 3.0, 4.0, 5.0, 6.0]],
		[{"lowest": 0.5, "highest": 2.5}, 9, [1, 2]],
		[{"lowest": 1.0, "highest": 3.0, "whole_number": true, "never_twice_the_same": true}, 1, [2, 3]],
		[{"lowest": 1.0, "highest": 3.0, "whole_number": true, "never_twice_the_same": true}, 2, [1, 3]],
		[{"lowest": 1.0, "highest": 3.0, "whole_number": true, "never_twice_the_same": true}, 3, [1, 2]],
		[{"lowest": 1.0, "highest": 3.0, "whole_number": true, "never_twice_the_same": true}, 0, [1, 2, 3]],
		[{"lowest": 1.0, "highest": 3.0, "whole_number": true, "never_twice_the_same": true}, 4, [1, 2, 3]],
		[{"lowest": 4.0, "highest": 4.0, "whole_number": true, "never_twice_the_same": true}, 4, [4]],
	]:
		var came := {}
		for i in 60:
			came[result_of(_random(row[0]), {"answer": row[1]})] = true
		var numbers := came.keys()
		numbers.sort()
		expect_equal(numbers, row[2], str(row))
	for i in 60:
		var number: float = result_of(_random({"lowest": 2.5, "highest": 3.5}), {"answer": 0.0})
		expect(number >= 2.5 and number <= 3.5, str(number))


func test_a_seed_gives_the_same_game_again() -> void:
	var by_text := kind(SCRandomSeedAction, {"from": SCRandomSeedAction.A_TEXT, "text": "green hills", "store_in": &"answer"})
	var by_number := kind(SCRandomSeedAction, {"number": 77, "store_in": &"answer"})
	var again := kind(SCRandomSeedAction, {"number_variable": &"seed"})
	for seeding: SCRandomSeedAction in [by_number, by_text]:
		var kept: int = result_of(seeding)
		var game := [randi(), randi(), randf()]
		result_of(seeding)
		expect_equal([randi(), randi(), randf()], game)
		result_of(again, {"seed": kept})
		expect_equal(randi(), game[0])


func test_the_clock_makes_every_game_another_one() -> void:
	var by_clock := kind(SCRandomSeedAction, {"from": SCRandomSeedAction.THE_CLOCK, "store_in": &"answer"})
	seed(1)
	var first: int = result_of(by_clock)
	var drawn := randi()
	seed(1)
	expect(first != result_of(by_clock), "both are %d" % first)
	seed(first)
	expect_equal(randi(), drawn)


func test_a_gauge_settles() -> void:
	var made := play(_ease({"to": 10.0, "duration": 0.5}.merged(LINEAR)), {"FINISHED": "Full"}, {"variables": {"fuel": 2.0}})
	expect_equal(made.get_value("fuel"), 2.0)
	await frames(15)
	expect_near(made.get_value("fuel"), 6.0)
	expect_state(made, "Work")
	await frames(15)
	expect_equal(made.get_value("fuel"), 10.0)
	expect_state(made, "Full")
	await frames(1)
	expect(not made.is_processing())
	# No time at all is a jump.
	expect_equal(results_of(_ease({"to": 8.0, "duration": 0.0}), {"fuel": 1.0})[&"fuel"], 8.0)
	expect_equal(results_of(_ease({"to": 8.0, "duration_variable": &"time"}), {"fuel": 1.0, "time": 0.0})[&"fuel"], 8.0)


func test_every_shape_is_the_engine_s_own() -> void:
	for shape: int in 12:
		for easing: int in 4:
			var made := play(_ease({"to": 3.0, "duration": 0.5, "curve": shape, "easing": easing}), {"FINISHED": "Done"}, {"variables": {"fuel": 1.0}})
			await frames(10)
			expect_near(made.get_value("fuel"), Tween.interpolate_value(1.0, 2.0, 10.0 / 60.0, 0.5, shape, easing), 0.00001, "%d, %d" % [shape, easing])
			await frames(20)
			expect_equal(made.get_value("fuel"), 3.0)
			expect_state(made, "Done")
			made.queue_free()


func test_what_can_be_eased() -> void:
	# From, to, half way.
	for row: Array in [
		[0, 5, 3], [10, 0, 5], [0.0, 5, 2.5], [0.0, true, 0.5],
		[Vector2(0, 2), Vector2(4, 4), Vector2(2, 3)], [Vector2i(0, 2), Vector2i(4, 5), Vector2i(2, 4)],
		[Vector3.ZERO, Vector3(2, 4, 6), Vector3(1, 2, 3)], [Vector3i.ZERO, Vector3i(2, 4, 5), Vector3i(1, 2, 3)],
		[Color.BLACK, Color(1, 0.5, 0, 1), Color(0.5, 0.25, 0, 1)],
		[Quaternion.IDENTITY, Quaternion(Vector3.UP, 1.0), Quaternion(Vector3.UP, 0.5)],
	]:
		var made := play(_ease({"to": row[1], "duration": 1.0 / 3.0}.merged(LINEAR)), {}, {"variables": {"fuel": row[0]}})
		await frames(10)
		expect_equal(typeof(made.get_value("fuel")), typeof(row[0]))
		expect(is_same(made.get_value("fuel"), row[2]) or made.get_value("fuel").is_equal_approx(row[2]), "%s: %s" % [row, made.get_value("fuel")])
		await frames(10)
		expect(made.get_value("fuel") == type_convert(row[1], typeof(row[0])), "%s ends at %s" % [row, made.get_value("fuel")])
		made.queue_free()


func test_leaving_the_state_leaves_the_variable_where_it_is() -> void:
	var made := start(machine([state("A", [_ease({"to": 60.0}.merged(LINEAR))], {"go": "B"}), state("B", [], {"back": "A"})], {"variables": {"fuel": 0.0}}))
	await frames(6)
	made.send_event("go")
	await frames(10)
	expect_near(made.get_value("fuel"), 6.0)
	# It starts from where the variable is, and takes its whole time again.
	made.send_event("back")
	await frames(30)
	expect_near(made.get_value("fuel"), 33.0, 0.01)


func test_a_target_that_moves_is_followed() -> void:
	var to_goal := _ease({"to_variable": &"goal", "duration": 0.5}.merged(LINEAR))
	var made := play(to_goal, {"FINISHED": "Done"}, {"variables": {"fuel": 0.0, "goal": 10.0}})
	await frames(15)
	expect_near(made.get_value("fuel"), 5.0)
	made.set_value("goal", 20.0)
	await frames(15)
	expect_equal(made.get_value("fuel"), 20.0)
	expect_state(made, "Done")


func test_a_drawn_curve_leads_the_way() -> void:
	var hill := Curve.new()
	for point: Vector2 in [Vector2(0, 0), Vector2(0.5, 1), Vector2(1, 0)]:
		hill.add_point(point)
	var made := play(_along({"to": 10.0, "duration": 0.5, "curve": hill}), {"FINISHED": "Done"}, {"variables": {"fuel": 2.0}})
	var most := 0.0
	for i in 30:
		await frames(1)
		most = maxf(most, made.get_value("fuel"))
	expect_near(most, 10.0, 0.05)
	expect_near(made.get_value("fuel"), 2.0)
	expect_state(made, "Done")
	var straight := Curve.new()
	straight.max_domain = 4.0
	straight.add_point(Vector2(0, 0), 0, 1, Curve.TANGENT_LINEAR, Curve.TANGENT_LINEAR)
	straight.add_point(Vector2(4, 1), 1, 0, Curve.TANGENT_LINEAR, Curve.TANGENT_LINEAR)
	made = play(_along({"to": Color.WHITE, "duration": 0.5, "curve": straight}), {}, {"variables": {"fuel": Color.BLACK}})
	await frames(15)
	expect_near(made.get_value("fuel").r, 0.5, 0.01)
	await frames(15)
	expect_equal(made.get_value("fuel"), Color.WHITE)


func test_easing_set_up_wrong_is_told_of() -> void:
	# Settings, variables, what is said.
	for row: Array in [
		[{"variable_name": &""}, {}, "no variable is picked, so there was nothing to ease. Pick one under Variable Name."],
		[{}, {}, "this machine has no variable called fuel, so there was nothing to ease."],
		[{}, {"fuel": null}, "fuel holds nothing, so there is nowhere to start from and it was left alone. Give it a starting value under Variables."],
		[{}, {"fuel": "full"}, "fuel holds a String and To is a float, so there is no way from one to the other and it was left alone. Give To the same type as the variable."],
		[{"to": Color.RED}, {"fuel": 1.0}, "fuel holds a float and To is a Color"],
	]:
		expect_equal(results_of(_ease(row[0]), row[1]).get(&"fuel"), row[1].get("fuel"))
		expect_warning("Ease Variable on Machine: %s" % row[2])
	# Settings, from where, after ten frames.
	for row: Array in [
		[_ease({"duration": NAN}), 0.0, 1.0, "Ease Variable on Machine: its Duration is no number, as 0 divided by 0 is none, so it was taken as 0."],
		[_ease({"duration": 0.1, "curve": 99}), 0.0, 1.0, "Ease Variable on Machine: its Curve is 99, which is none of the choices there are, so it was taken as Linear."],
		[_ease({"duration": 0.1, "to": 2.5}), 0, 3, "fuel on Machine is an int, so 2.5 was rounded to 3."],
		[_along({"to": 10.0, "duration": 1.0 / 3.0}), 0.0, 5.0, "Ease Along Curve on Machine: it has no Curve, so it goes straight there at one speed."],
	]:
		var made := play(row[0], {}, {"variables": {"fuel": row[1]}})
		await frames(10)
		expect_near(made.get_value("fuel"), row[2])
		expect_warning(row[3])
		made.free()


func test_properties_are_read() -> void:
	var there := body("There", Vector2(3, 4))
	there.modulate = Color.RED
	# Property, value.
	for row: Array in [["position", Vector2(3, 4)], ["position:y", 4.0], ["modulate:r", 1.0], ["visible", true], ["name", &"There"], ["material", null]]:
		expect_equal(result_of(_property({"property": row[0]}), {}, {"under": there}), row[1], row[0])
	var reads := _property({"property_variable": &"which", "run_mode": SCMachineAction.EVERY_FRAME})
	var made := play(reads, {}, {"under": there, "variables": {"which": "position:x"}})
	for row: Array in [["position:x", 5.0], ["position:x", 7.0], ["position:y", 4.0]]:
		there.position.x += 2.0
		made.set_value("which", row[0])
		await frames(1)
		expect_equal(made.get_value("answer"), row[1])


func test_a_property_set_up_wrong_is_told_of() -> void:
	# Settings, what is said; the variable is left alone.
	for row: Array in [
		[{}, "no property is named, so there was nothing to read. Type one in beside Property, such as visible."],
		[{"property": "visibel"}, "Body has nothing called visibel, so nothing was read. Check the name under Property against Godot's help for Node2D."],
		[{"property": "position:q"}, "Body has nothing called position:q"],
		[{"property": "::"}, "Body has nothing called ::, so nothing was read."],
		[{"property": "name", "node_path": NodePath("../Nobody")}, "there is no node at ../Nobody. Pick one under Node Path."],
		[{"property": "name", "store_in": &""}, "there is nowhere to put the value, so it was lost. Pick a variable under Store In."],
	]:
		var there := body()
		expect_equal(result_of(_property(row[0]), {"answer": 1}, {"under": there}), 1)
		expect_warning("Get Property on Machine: %s" % row[1])
		there.free()


func test_what_numbers_say() -> void:
	expect_line(_clamp({"lowest_event": &"Dead"}), "Keep health from 0 to 100, the lowest sends Dead")
	expect_line(_clamp({"variable_name": &"", "highest_variable": &"most"}), "Keep (pick one) from 0 to [most]")
	expect_line(_random({"lowest": 1.0, "highest": 6.0, "whole_number": true}), "Keep a random whole number from 1 to 6 in answer")
	expect_line(_ease({"to": 5.0, "duration": 0.5}), "Ease fuel to 5 over 0.5 s")
	expect_line(_ease({"to_variable": &"goal"}), "Ease fuel to [goal] over 1 s")
	expect_line(_along({"to": 5.0}), "Ease fuel to 5 along a curve over 1 s")
	expect_line(SCRandomSeedAction.new(), "Seed the random numbers with 1")
	expect_line(_property({"property": "visible", "node_path": NodePath("../Door")}), "Keep visible of Door in answer")
	expect_line(SCGetPropertyAction.new(), "Keep (pick one) of Self in (pick one)")


func _clamp(options: Dictionary) -> SCClampAction:
	return kind(SCClampAction, {"variable_name": &"health"}.merged(options, true))


func _random(options: Dictionary) -> SCRandomNumberAction:
	return kind(SCRandomNumberAction, {"store_in": &"answer"}.merged(options, true))


func _ease(options: Dictionary) -> SCEaseVariableAction:
	return kind(SCEaseVariableAction, {"variable_name": &"fuel"}.merged(options, true))


func _along(options: Dictionary) -> SCEaseAlongCurveAction:
	return kind(SCEaseAlongCurveAction, {"variable_name": &"fuel"}.merged(options, true))


func _property(options: Dictionary) -> SCGetPropertyAction:
	return kind(SCGetPropertyAction, {"store_in": &"answer"}.merged(options, true))
