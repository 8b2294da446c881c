extends Story
## Moving on by chance, by jump, by the clock and by the frame, reading what an event brought, and the two helpers of testing.


func of(made: SCMachineAction, options: Dictionary = {}) -> SCMachineAction:
	_put(made, options)
	return made


func random_event(events: Array[StringName], weights: Array = []) -> SCRandomEventAction:
	var made := SCRandomEventAction.new()
	made.events = events
	made.weights = weights
	return made


## How often each event came in so many goes.
func tally(made: SCRandomEventAction, goes: int) -> Dictionary:
	var counts: Dictionary = {}
	var owner := machine([state("Roll", [made], {"again": "Roll"})])
	owner.event_sent.connect(func(event: StringName, _data: Variant) -> void: counts[event] = counts.get(event, 0) + 1)
	start(owner)
	for i in goes - 1:
		owner.send_event("again")
		if i % 20 == 19:
			await frames(1)
	owner.stop()
	counts.erase(&"again")
	return counts


func test_random_events_come_by_their_weights() -> void:
	var even := await tally(random_event([&"A", &"B"]), 400)
	expect_equal(int(even[&"A"]) + int(even[&"B"]), 400)
	expect(even[&"A"] > 150 and even[&"B"] > 150, str(even))
	var heavy := await tally(random_event([&"A", &"B"], [3, 1]), 400)
	expect(heavy[&"A"] > 250 and heavy[&"B"] > 50, str(heavy))
	var never := await tally(random_event([&"A", &"B"], [-1, 2]), 100)
	expect_equal(never, {&"B": 100})


func test_weights_that_are_missing_or_none() -> void:
	var none := await tally(random_event([&"A", &"B"], [0, 0]), 200)
	expect(none.get(&"A", 0) > 60 and none.get(&"B", 0) > 60, str(none))
	var short := await tally(random_event([&"A", &"B"], [1]), 200)
	expect(short.get(&"A", 0) > 60 and short.get(&"B", 0) > 60, str(short))
	var long := await tally(random_event([&"A"], [1, 50]), 20)
	expect_equal(long, {&"A": 20})


func test_random_event_tells_of_an_empty_list_and_an_empty_name() -> void:
	start(machine([state("Roll", [random_event([])])], {"name": "Dice"}))
	expect_warning("Random Event on Dice has no events to choose between, so it sent nothing.")
	start(machine([state("Roll", [random_event([&""])])], {"name": "Coin"}))
	expect_warning("Random Event on Coin chose a row of its list that names no event, so it sent nothing.")


func test_next_frame_event_breaks_a_circle() -> void:
	var owner := start(machine([
		state("Tick", [of(SCNextFrameEventAction.new())], {"FINISHED": "Tock"}),
		state("Tock", [of(SCNextFrameEventAction.new(), {"event_name": &"again"})], {"again": "Tick"}),
	]))
	expect_state(owner, "Tick")
	await frames(1)
	expect_state(owner, "Tick")
	await frames(1)
	expect_state(owner, "Tock")
	await frames(1)
	expect_state(owner, "Tick")


func test_next_frame_event_on_the_physics_tick() -> void:
	await physics_frames(1)
	var owner := start(machine([
		state("Tick", [of(SCNextFrameEventAction.new())], {"FINISHED": "Tock"}),
		state("Tock"),
	], {"physics_tick": true}))
	expect_state(owner, "Tick")
	await physics_frames(2)
	expect_state(owner, "Tock")


func test_next_frame_event_without_a_name() -> void:
	var owner := start(machine([
		state("Tick", [of(SCNextFrameEventAction.new(), {"event_name": &""})], {"FINISHED": "Tock"}),
		state("Tock"),
	], {"name": "Clock"}))
	await frames(2)
	expect_warning("Next Frame Event on Clock has no event name, so nothing was sent.")
	expect_state(owner, "Tock")


func test_go_to_state_jumps() -> void:
	var owner := start(machine([
		state("A", [of(SCGoToStateAction.new(), {"state_name": &"Deep"}), act("after")]),
		state("B", [], {}, {"sub_states": [state("Shallow"), state("Deep", [], {"home": "Home"})]}),
		state("Home", [of(SCGoToStateAction.new(), {"state_name_variable": &"wish"})]),
	], {"variables": {"wish": "Shallow"}}))
	expect_states(owner, ["B", "Deep"])
	expect_log([])
	owner.send_event("home")
	expect_states(owner, ["B", "Shallow"])


func test_go_to_state_tells_of_a_state_that_is_not_there() -> void:
	var owner := start(machine([state("A", [of(SCGoToStateAction.new(), {"state_name": &"Moon"})])], {"name": "Ship"}))
	expect_warning("Go To State on Ship: this machine has no state called Moon, so it stays where it is. Pick one it has beside State Name.")
	expect_state(owner, "A")
	start(machine([state("A", [of(SCGoToStateAction.new())])], {"name": "Raft"}))
	expect_warning("Go To State on Raft: no state is picked, so the machine stays where it is.")


func test_event_data_goes_into_a_variable() -> void:
	var hurt := of(SCGetEventDataAction.new(), {"store_in": &"damage", "if_it_carried_nothing": 1})
	var owner := start(machine([
		state("Walk", [], {"hurt": "Ouch"}),
		state("Ouch", [hurt], {"back": "Walk"}),
	], {"variables": {"damage": 0}}))
	owner.send_event("hurt", 7.4)
	expect_warning("damage on Machine is an int, so 7.4 was rounded to 7.")
	expect_equal(owner.get_value(&"damage"), 7)
	owner.send_event("back")
	owner.send_event("hurt")
	expect_equal(owner.get_value(&"damage"), 1)


func test_event_data_of_one_event_only() -> void:
	var hurt := of(SCGetEventDataAction.new(), {"event": &"hurt", "store_in": &"damage"})
	var owner := start(machine([
		state("Walk", [], {"hurt": "Ouch", "fall": "Ouch"}),
		state("Ouch", [hurt], {"back": "Walk"}),
	], {"variables": {"damage": 0}}))
	owner.send_event("fall", 3)
	expect_equal(owner.get_value(&"damage"), 0)
	owner.send_event("back")
	owner.send_event("hurt", 5)
	expect_equal(owner.get_value(&"damage"), 5)


func test_the_sender_of_an_event() -> void:
	var tower := body("Tower")
	var owner := start(machine([
		state("Wait", [], {"alarm": "Run"}),
		state("Run", [of(SCGetEventDataAction.new(), {"store_sender_in": &"who"})]),
	], {"variables": {"who": null}, "under": body("Guard")}))
	start(machine([state("Shout", [send("alarm", {"reach": SCSendEventAction.A_NODE, "to_node_path": NodePath("../../Guard")})])], {"under": tower}))
	expect_state(owner, "Run")
	expect_equal(owner.get_value(&"who"), tower)


func test_event_data_that_goes_nowhere_or_does_not_fit() -> void:
	start(machine([state("A", [of(SCGetEventDataAction.new())])], {"name": "Box"}))
	expect_warning("Get Event Data on Box: no variable is picked")
	var owner := start(machine([
		state("A", [], {"hit": "B"}),
		state("B", [of(SCGetEventDataAction.new(), {"store_in": &"damage"})]),
	], {"name": "Crate", "variables": {"damage": 2}}))
	owner.send_event("hit", "hard")
	expect_warning("damage on Crate holds an int, so a String was not kept in it.")
	expect_equal(owner.get_value(&"damage"), 2)


func timer(options: Dictionary = {}) -> SCTimerAction:
	var made := SCTimerAction.new()
	made.variable_name = &"left"
	_put(made, options)
	return made


func test_a_countdown_counts_its_variable_down() -> void:
	var owner := start(machine([
		state("Round", [timer({"seconds": 1.0})], {"Time Up": "Over"}),
		state("Over"),
	], {"variables": {"left": 0.0}}))
	expect_near(owner.get_value(&"left"), 1.0)
	await advance(0.5)
	expect_near(owner.get_value(&"left"), 0.5, 0.04)
	await advance(0.45)
	expect_state(owner, "Round")
	await advance(0.1)
	expect_state(owner, "Over")
	expect_near(owner.get_value(&"left"), 0.0)


func test_an_int_shows_the_seconds_begun() -> void:
	var owner := start(machine([
		state("Round", [timer({"seconds": 2.0})], {"FINISHED": "Over"}),
		state("Over"),
	], {"variables": {"left": 0}}))
	expect_equal(owner.get_value(&"left"), 2)
	await advance(0.5)
	expect_equal(owner.get_value(&"left"), 2)
	await advance(0.7)
	expect_equal(owner.get_value(&"left"), 1)
	await advance(0.9)
	expect_state(owner, "Over")
	expect_equal(owner.get_value(&"left"), 0)


func test_time_added_on_the_way_counts() -> void:
	var owner := start(machine([
		state("Round", [timer({"seconds": 0.5})], {"Time Up": "Over"}),
		state("Over"),
	], {"variables": {"left": 0.0}}))
	await advance(0.25)
	owner.set_value(&"left", float(owner.get_value(&"left")) + 1.0)
	await advance(1.0)
	expect_state(owner, "Round")
	await advance(0.4)
	expect_state(owner, "Over")


func test_a_countdown_that_goes_on_where_it_was() -> void:
	var owner := start(machine([
		state("Fuse", [timer({"start_over": false})], {"wet": "Wet", "Time Up": "Boom"}),
		state("Wet", [], {"dry": "Fuse"}),
		state("Boom"),
	], {"variables": {"left": 0.5}}))
	await advance(0.3)
	owner.send_event("wet")
	await advance(1.0)
	owner.send_event("dry")
	await advance(0.1)
	expect_state(owner, "Fuse")
	await advance(0.2)
	expect_state(owner, "Boom")


func test_a_countdown_follows_the_speed_of_the_game() -> void:
	var owner := start(machine([
		state("Round", [timer({"seconds": 0.5})], {"Time Up": "Over"}),
		state("Over"),
	], {"variables": {"left": 0.0}}))
	Engine.time_scale = 0.5
	await frames(40)
	expect_state(owner, "Round")
	await frames(30)
	Engine.time_scale = 1.0
	expect_state(owner, "Over")


func test_a_countdown_of_nothing_is_up_at_once() -> void:
	var owner := start(machine([
		state("Round", [timer({"seconds": 0.0})], {"Time Up": "Over"}),
		state("Over"),
	], {"variables": {"left": 3.0}}))
	expect_state(owner, "Over")


func test_a_countdown_without_a_variable_counts_unseen() -> void:
	var owner := start(machine([
		state("Round", [timer({"variable_name": &"", "seconds": 0.1})], {"Time Up": "Over"}),
		state("Over"),
	], {"name": "Clock"}))
	expect_warning("Timer on Clock: no variable is picked, so it counts unseen.")
	await advance(0.2)
	expect_state(owner, "Over")
	var wrong := start(machine([
		state("Round", [timer({"seconds": 0.1})], {"Time Up": "Over"}),
		state("Over"),
	], {"name": "Watch", "variables": {"left": "late"}}))
	expect_warning("Timer on Watch: left holds a String, which cannot be counted down")
	await advance(0.2)
	expect_state(wrong, "Over")
	expect_equal(wrong.get_value(&"left"), "late")


class Positive:
	extends SCMachineCondition

	func _check(m: SCMachine, _slot: Dictionary) -> bool:
		return m.get_value(&"health") > 0

	func _summary() -> String:
		return "health is above 0"


func test_an_assert_pauses_the_game_when_it_fails() -> void:
	var check := SCAssertAction.new()
	check.condition = Positive.new()
	check.message = "{target} has {health} health and is still walking"
	check.stop_by = SCAssertAction.PAUSING
	var owner := start(machine([state("Walk", [check])], {"under": body("Ogre"), "name": "Brain", "variables": {"health": 2}}))
	await frames(3)
	expect(not tree.paused, "it stopped for nothing")
	owner.set_value(&"health", 0)
	await frames(2)
	expect(tree.paused, "the game goes on")
	expect_error("Assert on Brain failed in state Walk: Ogre has 0 health and is still walking")
	tree.paused = false
	await frames(2)
	expect(not tree.paused, "it was said twice in a visit")


func test_an_assert_holds_no_state_up() -> void:
	var check := SCAssertAction.new()
	var owner := start(machine([
		state("Walk", [check, wait(0.05)], {"FINISHED": "Rest"}),
		state("Rest"),
	], {"name": "Brain"}))
	expect_warning("Assert on Brain: it has no question to ask, so it makes sure of nothing.")
	await advance(0.15)
	expect_state(owner, "Rest")
	check.condition = Positive.new()
	expect_equal(check.shown_summary(), "Make sure that: health is above 0")
	expect_equal(check.run_mode, SCMachineAction.EVERY_FRAME)


## The ends of the lines drawn in this viewport, and nothing when none are.
func drawn(kind: String) -> Variant:
	for child in tree.root.get_children(true):
		if child.get_class() == kind and not child.is_queued_for_deletion():
			return child.call(&"lines")
	return null


func draw(shape: SCDrawDebugAction.Shape, options: Dictionary = {}) -> SCDrawDebugAction:
	var made := SCDrawDebugAction.new()
	made.shape = shape
	made.suit_2d()
	_put(made, options)
	return made


func test_a_line_follows_its_nodes_and_goes_with_the_state() -> void:
	var from := body("From")
	var to := body("To")
	to.position = Vector2(30, 40)
	var owner := start(machine([
		state("Show", [draw(SCDrawDebugAction.LINE, {"to_path": NodePath("../../To")})], {"hide": "Gone"}),
		state("Gone"),
	], {"under": from}))
	await frames(2)
	expect_equal(drawn("SCDebugDrawings2D"), PackedVector2Array([Vector2.ZERO, Vector2(30, 40)]))
	from.position = Vector2(5, 5)
	await frames(2)
	expect_equal(drawn("SCDebugDrawings2D"), PackedVector2Array([Vector2(5, 5), Vector2(30, 40)]))
	owner.send_event("hide")
	await frames(2)
	expect_equal(drawn("SCDebugDrawings2D"), null)


func test_shapes_in_2d() -> void:
	var at := body("At")
	at.position = Vector2(100, 0)
	at.rotation = PI / 2
	var owner := start(machine([
		state("Ray", [draw(SCDrawDebugAction.RAY)], {"next": "Circle"}),
		state("Circle", [draw(SCDrawDebugAction.CIRCLE)], {"next": "Box"}),
		state("Box", [draw(SCDrawDebugAction.BOX, {"size": Vector2(20, 10)})]),
	], {"under": at}))
	await frames(2)
	var ray: PackedVector2Array = drawn("SCDebugDrawings2D")
	expect(ray[1].is_equal_approx(Vector2(50, 0)), str(ray))
	owner.send_event("next")
	await frames(2)
	var circle: PackedVector2Array = drawn("SCDebugDrawings2D")
	expect_equal(circle.size(), 64)
	for end in circle:
		expect_near(end.distance_to(Vector2(100, 0)), 32.0, 0.01)
	owner.send_event("next")
	await frames(2)
	var box: PackedVector2Array = drawn("SCDebugDrawings2D")
	expect_equal(box.size(), 8)
	for end in box:
		expect_near(absf(end.x - 100.0), 5.0, 0.01)
		expect_near(absf(end.y), 10.0, 0.01)
	owner.stop()
	await frames(2)


func test_shapes_in_3d() -> void:
	var at := Node3D.new()
	add(at)
	at.position = Vector3(0, 2, 0)
	var box := SCDrawDebugAction.new()
	box.shape = SCDrawDebugAction.BOX
	box.size = Vector3(2, 4, 6)
	var ray := SCDrawDebugAction.new()
	ray.shape = SCDrawDebugAction.RAY
	var owner := start(machine([state("Box", [box], {"next": "Ray"}), state("Ray", [ray])], {"under": at}))
	await frames(2)
	var edges: PackedVector3Array = drawn("SCDebugDrawings3D")
	expect_equal(edges.size(), 24)
	for end in edges:
		expect_equal((end - at.position).abs(), Vector3(1, 2, 3))
	owner.send_event("next")
	await frames(2)
	expect_equal(drawn("SCDebugDrawings3D"), PackedVector3Array([Vector3(0, 2, 0), Vector3(0, 1, 0)]))
	owner.stop()
	await frames(2)
	expect_equal(drawn("SCDebugDrawings3D"), null)


func test_a_drawing_made_once_has_its_time() -> void:
	var made := draw(SCDrawDebugAction.CIRCLE, {"run_mode": SCMachineAction.ONCE, "seconds": 0.3})
	var owner := start(machine([state("Flash", [made], {"FINISHED": "Gone"}), state("Gone")], {"under": body("At")}))
	expect_state(owner, "Gone")
	await advance(0.2)
	expect(drawn("SCDebugDrawings2D") != null, "it went too soon")
	await advance(0.2)
	expect_equal(drawn("SCDebugDrawings2D"), null)


func test_what_cannot_be_drawn_is_told_of() -> void:
	start(machine([state("Show", [SCDrawDebugAction.new()])], {"name": "Brain"}))
	expect_warning("Draw Debug on Brain: Stage is a Node, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under From Path.")
	start(machine([state("Show", [draw(SCDrawDebugAction.LINE, {"to_path": NodePath("../Nobody")})])], {"name": "Eye", "under": body("At")}))
	expect_warning("Draw Debug on Eye: there is no node at Nobody.")
	await frames(2)


func test_settings_show_when_they_matter() -> void:
	var made := SCDrawDebugAction.new()
	expect_equal(shown(made), ["shape", "from_path", "to_path", "to_point", "color"])
	made.to_path = NodePath("../To")
	expect_equal(shown(made), ["shape", "from_path", "to_path", "color"])
	made.shape = SCDrawDebugAction.BOX
	made.run_mode = SCMachineAction.ONCE
	expect_equal(shown(made), ["shape", "from_path", "size", "color", "seconds"])


func shown(made: SCDrawDebugAction) -> Array:
	var names: Array = []
	for property in made.get_property_list():
		var name: String = property["name"]
		if property["usage"] & PROPERTY_USAGE_EDITOR and name in ["shape", "from_path", "to_path", "to_point", "target_position", "size", "color", "seconds"]:
			names.append(name)
	return names


func test_summaries() -> void:
	expect_equal(random_event([&"Dodge", &"Hit"]).shown_summary(), "Send one of Dodge, Hit")
	expect_equal(random_event([&"Dodge", &"Hit"], [2.5]).shown_summary(), "Send one of Dodge (2.5), Hit (1)")
	expect_equal(SCNextFrameEventAction.new().shown_summary(), "Send FINISHED next frame")
	expect_equal(of(SCGoToStateAction.new(), {"state_name": &"Home"}).shown_summary(), "Go to Home")
	expect_equal(SCGoToStateAction.new().shown_summary(), "Go to (pick one)")
	expect_equal(of(SCGetEventDataAction.new(), {"store_in": &"damage"}).shown_summary(), "Put the value of the last event into damage")
	expect_equal(of(SCGetEventDataAction.new(), {"event": &"Hurt", "store_sender_in": &"who"}).shown_summary(), "Put the sender of Hurt into who")
	expect_equal(timer({"seconds": 90.0}).shown_summary(), "Count left down from 90 s, then send Time Up")
	expect_equal(draw(SCDrawDebugAction.BOX).shown_summary(), "Draw a box round Self, (64, 64) in size")
