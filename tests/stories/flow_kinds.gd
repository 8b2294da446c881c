extends Story
## Moving on by chance, by jump, by the clock and by the frame, reading what an event brought, and the two helpers of testing.


class Positive:
	extends SCMachineCondition

	func _check(m: SCMachine, _slot: Dictionary) -> bool:
		return m.get_value(&"health") > 0

	func _summary() -> String:
		return "health is above 0"


func test_random_events_come_by_their_weights() -> void:
	for row: Array in [
		# the weights, and how often A comes of 200 times at least and at most
		[[], 75, 125], [[3, 1], 125, 175], [[-1, 2], 0, 0], [[2, 0], 200, 200], [[0, 0], 75, 125], [[1], 75, 125], [[3, 1, 50], 125, 175],
	]:
		var made := play(kind(SCRandomEventAction, {"events": [&"A", &"B"], "weights": row[0]}), {})
		for i in 199:
			await frames(1)
			made.restart_state(made.current_state)
		var came := events_of(made)
		var first := came.count("A")
		expect_equal(first + came.count("B"), 200)
		expect(first >= row[1] and first <= row[2], "%s: %d times A" % [row[0], first])
		made.free()


func test_next_frame_event_breaks_a_circle() -> void:
	for physics: bool in [false, true]:
		await (tree.physics_frame if physics else tree.process_frame)
		var made := start(machine([
			state("Tick", [kind(SCNextFrameEventAction)], {"FINISHED": "Tock"}),
			state("Tock", [kind(SCNextFrameEventAction, {"event_name": &"again"})], {"again": "Tick"}),
		], {"physics_tick": physics}))
		# The signal comes before the nodes have their frame.
		for wanted: String in ["Tick", "Tick", "Tock", "Tick"]:
			expect_state(made, wanted)
			await (tree.physics_frame if physics else tree.process_frame)
		made.free()


func test_go_to_state_jumps() -> void:
	var made := start(machine([
		state("A", [kind(SCGoToStateAction, {"state_name": &"Deep"}), act("after")]),
		state("B", [], {}, {"sub_states": [state("Shallow"), state("Deep", [], {"home": "Home"})]}),
		state("Home", [kind(SCGoToStateAction, {"state_name_variable": &"wish"})]),
	], {"variables": {"wish": "Shallow"}}))
	expect_states(made, ["B", "Deep"])
	expect_log([])
	expect_after(made, "home", ["B", "Shallow"])


func test_event_data_goes_into_a_variable() -> void:
	for row: Array in [
		# the settings, the event and what it carries, what the variable holds then, and what is said
		[{}, "hurt", 7.4, 7, "damage on Machine is an int, so 7.4 was rounded to 7."], [{}, "hurt", null, 2, ""], [{"if_it_carried_nothing": 1}, "hurt", null, 1, ""],
		[{"if_it_carried_nothing": 1}, "hurt", 5, 5, ""], [{"event": &"hurt"}, "fall", 3, 2, ""], [{"event": &"hurt"}, "hurt", 5, 5, ""],
		[{}, "fall", "hard", 2, "damage holds an int, which cannot become a String, so it was left as it is."],
	]:
		var made := start(machine([
			state("Walk", [], {"hurt": "Ouch", "fall": "Ouch"}),
			state("Ouch", [kind(SCGetEventDataAction, {"store_in": &"damage"}.merged(row[0]))]),
		], {"variables": {"damage": 2}}))
		made.send_event(row[1], row[2])
		expect_values(made, {&"damage": row[3]}, str(row))
		if row[4] != "":
			expect_warning(row[4])
		made.free()


func test_the_sender_of_an_event() -> void:
	var tower := body("Tower")
	var made := start(machine([
		state("Wait", [], {"alarm": "Run"}),
		state("Run", [kind(SCGetEventDataAction, {"store_sender_in": &"who"}), kind(SCGetEventDataAction, {"event": &"alarm", "store_sender_in": &"same"})]),
	], {"variables": {"who": null, "same": null}, "under": body("Guard")}))
	play(send("alarm", {"reach": SCSendEventAction.A_NODE, "to_node_path": NodePath("../../Guard")}), {}, {"under": tower})
	expect_values(made, {&"who": tower, &"same": tower})


func test_a_countdown_counts_its_variable_down() -> void:
	for row: Array in [
		# what the variable starts as, the settings, and what it shows at once, after half a second, after nearly a second
		[0.0, {}, 1.0, 0.5, 0.05], [7, {}, 1, 1, 1], [null, {}, 1.0, 0.5, 0.05], [1.0, {"start_over": false, "seconds": 9.0}, 1.0, 0.5, 0.05],
	]:
		var made := play(_timer(row[1]), {"Time Up": "Over"}, {"variables": {"left": row[0]}})
		for i in 3:
			expect_near(made.get_value(&"left"), row[2 + i], 0.04, str(row))
			expect_state(made, "Work")
			await advance([0.5, 0.45, 0.1][i])
		expect_state(made, "Over")
		expect_near(made.get_value(&"left"), 0.0)
		made.free()
	for row: Array in [[{"seconds": 0.0}, 3.0], [{"start_over": false}, 0.0], [{"start_over": false}, -4.0]]:
		expect_equal(results_of(_timer(row[0]), {"left": row[1]}), {&"answer": null, &"left": 0.0}, str(row))


func test_time_added_on_the_way_counts() -> void:
	for row: Array in [[1.0, 1.25], [-0.1, 0.15]]:
		var made := play(_timer({"seconds": 0.5}), {"Time Up": "Over"}, {"variables": {"left": 0.0}})
		await advance(0.25)
		made.set_value(&"left", float(made.get_value(&"left")) + row[0])
		await expect_later(made, row[1] - 0.05, "Work")
		await expect_later(made, 0.1, "Over")
		made.free()


func test_a_countdown_that_goes_on_where_it_was() -> void:
	var made := start(machine([
		state("Fuse", [_timer({"start_over": false})], {"wet": "Wet", "Time Up": "Boom"}),
		state("Wet", [], {"dry": "Fuse"}),
		state("Boom"),
	], {"variables": {"left": 0.5}}))
	await advance(0.3)
	made.send_event("wet")
	await advance(1.0)
	made.send_event("dry")
	await expect_later(made, 0.1, "Fuse")
	await expect_later(made, 0.2, "Boom")


func test_an_assert_pauses_the_game_when_it_fails() -> void:
	for row: Array in [
		["{target} has {health} health and is still walking", "Assert on Brain failed in state Work: Ogre has 0 health and is still walking"],
		["", "Assert on Brain failed in state Work: it is not so that: health is above 0."],
	]:
		var check := kind(SCAssertAction, {"condition": Positive.new(), "message": row[0], "stop_by": SCAssertAction.PAUSING})
		var made := play(check, {}, {"under": body("Ogre"), "name": "Brain", "variables": {"health": 2}})
		await frames(3)
		expect(not tree.paused, "it stopped for nothing")
		made.set_value(&"health", 0)
		await frames(2)
		expect(tree.paused, "the game goes on")
		expect_error(row[1])
		tree.paused = false
		await frames(2)
		expect(not tree.paused, "it was said twice in a visit")
		stage.get_node(^"Ogre").free()


func test_an_assert_holds_no_state_up() -> void:
	var made := play([kind(SCAssertAction), wait(0.05)], {"FINISHED": "Rest"}, {"name": "Brain"})
	expect_warning("Assert on Brain: it has no question to ask, so it makes sure of nothing.")
	await expect_later(made, 0.15, "Rest")


func test_a_line_follows_its_nodes_and_goes_with_the_state() -> void:
	var from := body("From")
	body("To", Vector2(30, 40))
	var made := play(_draw(SCDrawDebugAction.LINE, {"to_path": NodePath("../../To")}), {"hide": "Gone"}, {"under": from})
	for at: Vector2 in [Vector2.ZERO, Vector2(5, 5)]:
		from.position = at
		await frames(2)
		expect_equal(_drawn(true), PackedVector2Array([at, Vector2(30, 40)]))
	made.send_event("hide")
	await frames(2)
	expect_equal(_drawn(true), null)


func test_the_shapes() -> void:
	var flat := body("Flat", Vector2(100, 0))
	flat.rotation = PI / 2
	var deep := body_3d("Deep", Vector3(0, 2, 0))
	deep.rotation.y = PI / 2
	for row: Array in [
		# the shape, its settings, how many ends of lines it has in 2D and 3D, and how far they are from the middle, turned
		[SCDrawDebugAction.LINE, {"to_point": Vector2(7, 3)}, 2, Vector2(93, 3)], [SCDrawDebugAction.LINE, {"to_point": Vector3(7, 3, 2)}, 2, Vector3(7, 1, 2)],
		[SCDrawDebugAction.RAY, {"target_position": Vector2(0, 50)}, 2, Vector2(50, 0)], [SCDrawDebugAction.RAY, {"target_position": Vector3(0, -1, 3)}, 2, Vector3(3, 1, 0)],
		[SCDrawDebugAction.BOX, {"size": Vector2(20, 10)}, 8, Vector2(5, 10)], [SCDrawDebugAction.BOX, {"size": Vector3(2, 4, 6)}, 24, Vector3(3, 2, 1)],
		[SCDrawDebugAction.CIRCLE, {"size": Vector2(64, 64)}, 64, 32.0], [SCDrawDebugAction.CIRCLE, {"size": Vector3(-4, 1, 1)}, 192, 2.0],
	]:
		var is_flat: bool = (row[1] as Dictionary).values()[0] is Vector2
		var made := play(kind(SCDrawDebugAction, {"shape": row[0]}.merged(row[1])), {}, {"under": flat if is_flat else deep})
		await frames(2)
		var ends := Array(_drawn(is_flat))
		expect_equal(ends.size(), row[2])
		var middle: Variant = flat.position if is_flat else deep.position
		# Lines that begin in the middle show where they end.
		for end: Variant in ends.slice(1) if row[2] == 2 else ends:
			expect_near((end - middle).length() if row[3] is float else (end - middle).abs(), row[3], 0.01, str(row))
		expect(row[2] > 2 or ends[0] == middle, str(ends))
		made.free()
		await frames(2)
		expect_equal(_drawn(is_flat), null)


func test_a_drawing_made_once_has_its_time() -> void:
	var made := play(_draw(SCDrawDebugAction.CIRCLE, {"run_mode": SCMachineAction.ONCE, "seconds": 0.3}), {"FINISHED": "Gone"}, {"under": body("At")})
	expect_state(made, "Gone")
	await advance(0.2)
	expect(_drawn(true) != null, "it went too soon")
	await advance(0.2)
	expect_equal(_drawn(true), null)


func test_what_is_wrong_is_told() -> void:
	for row: Array in [
		[kind(SCRandomEventAction), "Random Event on It has no events to choose between, so it sent nothing."],
		[kind(SCRandomEventAction, {"events": [&""]}), "Random Event on It chose a row of its list that names no event, so it sent nothing."],
		[kind(SCGoToStateAction, {"state_name": &"Moon"}), "Go To State on It: this machine has no state called Moon, so it stays where it is. Pick one it has beside State Name."],
		[kind(SCGoToStateAction), "Go To State on It: no state is picked, so the machine stays where it is."],
		[kind(SCGetEventDataAction), "Get Event Data on It: no variable is picked"],
		[kind(SCDrawDebugAction), "Draw Debug on It: Stage is a Node, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under From Path."],
	]:
		expect_warns(row[0], row[1], {"name": "It"})
	expect_warns(_draw(SCDrawDebugAction.LINE, {"to_path": NodePath("../Nobody")}), "Draw Debug on It: there is no node at ../Nobody.", {"name": "It", "under": body("At")})
	var nameless := play(kind(SCNextFrameEventAction, {"event_name": &""}), {"FINISHED": "Done"}, {"name": "Clock"})
	await expect_later(nameless, 0.04, "Done")
	expect_warning("Next Frame Event on Clock has no event name, so nothing was sent.")
	# A timer that cannot count in its variable goes on unseen.
	for row: Array in [[&"", "no variable is picked, so it counts unseen."], [&"label", "label holds a String, which cannot be counted down"]]:
		var made := play(_timer({"variable_name": row[0], "seconds": 0.1}), {"Time Up": "Over"}, {"name": "Watch", "variables": {"label": "late"}})
		expect_warning("Timer on Watch: " + row[1])
		await expect_later(made, 0.2, "Over")
		expect_values(made, {&"label": "late"})
		made.free()


func test_what_is_said_and_shown() -> void:
	for row: Array in [
		[{"shape": SCDrawDebugAction.LINE}, ["to_path", "to_point"], ["target_position", "size", "seconds"]],
		[{"shape": SCDrawDebugAction.LINE, "to_path": ^"../To"}, ["to_path"], ["to_point"]],
		[{"shape": SCDrawDebugAction.RAY}, ["target_position"], ["to_path", "to_point", "size"]],
		[{"shape": SCDrawDebugAction.BOX, "run_mode": SCMachineAction.ONCE}, ["size", "seconds", "color", "from_path"], ["to_path", "target_position"]],
	]:
		expect_shown(kind(SCDrawDebugAction, row[0]), row[1])
		expect_hidden(kind(SCDrawDebugAction, row[0]), row[2])
	expect_lines(SCRandomEventAction, {"Send one of Dodge, Hit": {"events": [&"Dodge", &"Hit"]}, "Send one of Dodge (2.5), Hit (1)": {"events": [&"Dodge", &"Hit"], "weights": [2.5]}})
	expect_lines(SCNextFrameEventAction, {"Send FINISHED next frame": {}})
	expect_lines(SCGoToStateAction, {"Go to Home": {"state_name": &"Home"}, "Go to (pick one)": {}})
	expect_lines(SCGetEventDataAction, {
		"Put the value of the last event into damage": {"store_in": &"damage"},
		"Put the sender of Hurt into who": {"event": &"Hurt", "store_sender_in": &"who"},
	})
	expect_lines(SCTimerAction, {"Count left down from 90 s, then send Time Up": {"variable_name": &"left", "seconds": 90.0}})
	expect_line(_draw(SCDrawDebugAction.BOX), "Draw a box round Self, (64, 64) in size")
	expect_lines(SCAssertAction, {"Make sure that: health is above 0": {"condition": Positive.new()}})


func _timer(options: Dictionary) -> SCTimerAction:
	return kind(SCTimerAction, {"variable_name": &"left", "seconds": 1.0}.merged(options, true))


func _draw(shape: int, options: Dictionary = {}) -> SCDrawDebugAction:
	var made: SCDrawDebugAction = kind(SCDrawDebugAction, {"shape": shape})
	made.suit_2d()
	_put(made, options)
	return made


## The ends of the lines drawn in this viewport, and nothing when none are.
func _drawn(is_2d: bool) -> Variant:
	for child in tree.root.get_children(true):
		if child.get_class() == ("SCDebugDrawings2D" if is_2d else "SCDebugDrawings3D") and not child.is_queued_for_deletion():
			return child.call(&"lines")
	return null
