extends PhysicsStory
## What machines ask of the allocator while they run: nothing. Every request made within a call of the library counts, also
## the engine's on its behalf; [code]tests/allocations/count_allocations.c[/code] does the counting.

const LIBRARY: String = "libquillstead_core"
const FRAMES: int = 1000
const WARM_UP: int = 5
const Senses := preload("res://addons/quillstead/runtime/senses.gd")


class Push:
	extends SCMachineAction

	@export var strength: float = 1.0
	@export var way: Vector2
	var pushed: int = 0

	func _init() -> void:
		run_mode = SCMachineAction.EVERY_FRAME

	func _update(_m: SCMachine, _index: int, _delta: float) -> void:
		pushed += 1


## Does something in each physics step, from within a call of the library.
class Within:
	extends SCMachineAction

	var work: Callable

	func _init() -> void:
		run_mode = SCMachineAction.EVERY_FRAME

	func _update(_m: SCMachine, _index: int, _delta: float) -> void:
		work.call()


func most_frames() -> int:
	return 4 * FRAMES


func test_the_counter_sees_the_library_and_what_the_engine_does_for_it() -> void:
	if not _can_count():
		return
	var guard := start(machine([state("Look")]))
	AllocationCounter.begin(LIBRARY)
	var states := guard.active_states()
	var made := AllocationCounter.end()
	expect_equal(states.size(), 1)
	expect(made > 0, "an array was made and nothing was counted")
	expect(not AllocationCounter.sites().is_empty(), "a counted request has no place in the library")
	AllocationCounter.begin(LIBRARY)
	var own := range(100)
	expect_equal(AllocationCounter.end(), 0, "an array of the story's own")
	expect_equal(own.size(), 100)


func test_a_tick_asks_for_nothing() -> void:
	var counting := start(machine([
		state("Count", [_each_frame("frames", 1.0)]),
	], {"name": "Counting", "variables": {"frames": 0.0}}))
	var limited := start(machine([
		state("Fill", [_each_frame("level", 0.5, {"per_second": true}), _each_frame("whole", 3, {"update_interval": 0.1})]),
	], {"name": "Limited", "variables": [variable("level", 0.0, {"never_above": "top"}), variable("top", 4.0), variable("whole", 0, {"never_above": "100"})]}))
	var nested := start(machine([
		state("Walk", [_each_frame("steps", 1)], {}, {"parallel": {
			"Legs": [state("Left", [_each_frame("left", 1)])],
			"Arms": [state("Swing", [_each_frame("right", 1)], {}, {"sub_states": [state("Up", [_each_frame("up", true, {"operation": SCSetVariableAction.TOGGLE})])]})],
		}}),
	], {"name": "Nested", "variables": {"steps": 0, "left": 0, "right": 0, "up": false}}))
	var physical := start(machine([
		state("Fall", [_each_frame("ticks", 1)]),
	], {"name": "Physical", "physics_tick": true, "variables": {"ticks": 0}}))
	await _expect_nothing_over(FRAMES)
	expect(counting.get_value("frames") >= float(FRAMES), "the machine that counts did not run: %s" % counting.get_value("frames"))
	expect_equal(limited.get_value("level"), 4.0)
	expect_equal(limited.get_value("whole"), 100)
	for ticked: StringName in [&"steps", &"left", &"right"]:
		expect(nested.get_value(ticked) >= FRAMES, "%s did not count" % ticked)
	expect(physical.get_value("ticks") >= FRAMES - 1, "the physics lane did not run: %s" % physical.get_value("ticks"))


func test_a_tick_that_reads_its_settings_from_variables_asks_for_nothing() -> void:
	var scale := SCVectorAction.new()
	scale.operation = SCVectorAction.SCALE
	scale.store_in = &"scaled"
	scale.run_mode = SCMachineAction.EVERY_FRAME
	for setting: StringName in [&"amount", &"per_second", &"first"]:
		scale.set("%s_variable" % setting, setting)
	var keep := SCClampAction.new()
	keep.variable_name = &"kept"
	keep.run_mode = SCMachineAction.EVERY_FRAME
	# A whole number fits a setting that takes fractions, and a variable that is not there leaves what was typed in.
	keep.from_variables = {&"lowest": &"whole", &"highest": &"nowhere"}
	var push := Push.new()
	push.set(&"strength_variable", &"amount")
	push.set(&"way_variable", &"first")
	var design := state("Work", [scale, keep, push, _ask_each_frame()])
	var busy := start(machine([design], {"variables": {
		"amount": 3.0, "per_second": false, "first": Vector2(2, 1), "scaled": Vector2(), "whole": 7, "kept": 1.0, "low": 4.0,
	}}))
	await _expect_nothing_over(FRAMES)
	expect_equal(busy.get_value("scaled"), Vector2(6, 3))
	expect_equal(busy.get_value("kept"), 7.0)
	expect(push.pushed >= FRAMES, "the script's action did not run")
	expect_equal([push.strength, push.way], [3.0, Vector2(2, 1)])
	busy.set_value("amount", 0.5)
	await frames(1)
	expect_equal(busy.get_value("scaled"), Vector2(1, 0.5))
	expect_equal(push.strength, 0.5)


func test_an_event_that_finds_no_transition_asks_for_nothing() -> void:
	var guard := start(machine([
		state("Patrol", [], {"seen": "Chase"}, {"parallel": {
			"Eyes": [state("Open", [], {"blink": "Shut"}), state("Shut")],
			"Ears": [state("Listen", [], {"noise": "Turn"}), state("Turn")],
		}}),
		state("Chase"),
	]))
	# The story's own note of every event is made within the library's call.
	for connection: Dictionary in guard.event_sent.get_connections():
		guard.event_sent.disconnect(connection["callable"])
	var one := RefCounted.new()
	var sent: Array[int] = [0]
	var send_all := func() -> void:
		guard.send_event(&"nothing")
		guard.send_event(&"carries a number", 1.5)
		guard.send_event(&"carries a thing", one)
		guard.send_event_from_signal(&"from a signal", 3)
		sent[0] += 4
	await _expect_nothing_over(FRAMES, send_all)
	expect_equal(sent[0], 4 * (WARM_UP + FRAMES))
	expect_states(guard, ["Patrol", "Open", "Listen"])


func test_a_change_of_state_three_levels_deep_asks_for_nothing() -> void:
	var inner := state("Inner", [], {}, {"sub_states": [state("Left", [_once("left")], {"on": "Right"}), state("Right", [_once("right")], {"on": "Left"})]})
	var guard := start(machine([state("Outer", [], {}, {"sub_states": [inner]})], {"variables": {"left": 0, "right": 0}}))
	for connection: Dictionary in guard.event_sent.get_connections():
		guard.event_sent.disconnect(connection["callable"])
	for connection: Dictionary in guard.state_changed.get_connections():
		guard.state_changed.disconnect(connection["callable"])
	await _expect_nothing_over(FRAMES, func() -> void: guard.send_event(&"on"))
	expect_equal(guard.get_value("left") + guard.get_value("right"), 1 + WARM_UP + FRAMES)


func test_machines_that_wait_ask_for_nothing() -> void:
	var waiting: Array[SCMachine] = []
	for i in 100:
		waiting.append(start(machine([
			state("Wait", [wait(1000.0)], {"FINISHED": "Go"}),
			state("Go"),
		], {"name": "Waiting%d" % i})))
	await _expect_nothing_over(FRAMES)
	for one in waiting:
		expect(not one.is_processing() and not one.is_physics_processing(), "a waiting machine is called each frame")
		expect_state(one, "Wait")


func test_a_number_that_is_written_again_asks_for_nothing() -> void:
	var guard := start(machine([state("Look")], {"variables": {"health": 10.0, "armour": 3}}))
	var written: Array[int] = [0]
	var write := func() -> void:
		written[0] += 1
		guard.set_value(&"health", float(written[0]))
		guard.set_value(&"armour", written[0])
	await _expect_nothing_over(FRAMES, write)
	expect_equal(guard.get_value("armour"), WARM_UP + FRAMES)


func test_a_step_of_a_character_asks_for_nothing() -> void:
	await on_both_sides(func() -> void:
		ground()
		var flag := spot(90.0, 0.0, "Flag")
		var rows: Array[Dictionary] = [
			{"direction": Vector2(1, 0)},
			{"direction_variable": &"way", "speed_variable": &"pace"},
			{"direction": Vector2(1, 0), "acceleration_variable": &"gain", "falls_variable": &"falls", "turn_speed_variable": &"turn", "turn_to_face": true},
			{"direction": Vector2(1, 0), "acceleration": far(3.0), "acceleration_in_the_air": far(2.0), "fastest_fall": far(9.0)},
			{"direction": Vector2(1, 0), "falls_faster_than_it_rises": 2.0, "floats_at_the_top": 0.5},
			{"direction": Vector2(1, 0), "falls": false},
			{"heading": SCMoveCharacterAction.TOWARD_A_NODE, "toward_path": ^"../../Flag"},
			{"heading": SCMoveCharacterAction.TOWARD_A_NODE, "toward_variable": &"flag"},
			{"heading": SCMoveCharacterAction.TOWARD_A_PLACE, "toward_place": at(90.0, 0.0)},
		]
		var heroes: Array[Node] = []
		for i in rows.size():
			# None stands in another's way, though they share a floor.
			var hero := _apart_from_others(character(float(-i), 0.0, "Hero%d" % i))
			walk(hero, [kind(SCMoveCharacterAction, {"speed": far(4.0)}.merged(rows[i], true))],
				{"variables": {"way": Vector2(1, 0), "pace": far(4.0), "gain": far(9.0), "falls": true, "turn": 4.0, "flag": flag}})
			heroes.append(hero)
		await _expect_nothing_over(FRAMES, Callable(), await _asked_by_slides(heroes))
		for hero in heroes:
			expect(where(hero).x > 50.0, "%s did not walk: %s" % [hero.name, where(hero)]))


func test_a_step_of_a_chase_asks_for_nothing() -> void:
	await on_both_sides(func() -> void:
		ground()
		var prey := spot(95.0, TALL / 2.0 + 0.01, "Prey")
		prey.add_to_group(&"player")
		var rows: Array[Dictionary] = [
			{"target_variable": &"prey"},
			{"target_variable": &"prey", "stop_within_variable": &"stop", "turn_to_face_variable": &"turns", "speed_variable": &"pace"},
			{},
			{"stop_within_variable": &"stop", "falls": false},
		]
		var guards: Array[Node] = []
		for i in rows.size():
			var guard := _apart_from_others(character(float(-i), 0.0, "Guard%d" % i))
			var eyes := Senses.new()
			eyes.see_range = far(200.0)
			eyes.view_angle = 360.0
			guard.add_child(eyes)
			eyes.notice(prey)
			walk(guard, [kind(SCChaseAction, {"speed": far(4.0)}.merged(rows[i], true))],
				{"variables": {"prey": prey, "stop": far(1.0), "turns": true, "pace": far(4.0)}})
			guards.append(guard)
		await _expect_nothing_over(FRAMES, Callable(), await _asked_by_slides(guards))
		for guard in guards:
			expect(where(guard).x > 50.0, "%s did not chase: %s" % [guard.name, where(guard)]))


func test_a_step_of_a_crowd_asks_for_nothing() -> void:
	await on_both_sides(func() -> void:
		ground()
		var walkers: Array[Node] = []
		for i in 40:
			var walks := i < 4
			var member := character(i * 0.5, 0.0, "Member%d" % i) if walks else spot(i * 0.5, 0.0, "Member%d" % i)
			if walks:
				walkers.append(_apart_from_others(member))
			member.add_to_group(&"crowd")
			# Too weak to part them while the story lasts.
			var apart := kind(SCKeepApartAction, {"crowd_group": &"crowd", "personal_space": far(1.6), "push": 0.001})
			if i % 2 == 0:
				apart.set(&"push_variable", &"push")
				apart.set(&"personal_space_variable", &"space")
			walk(member, [apart], {"variables": {"push": 0.001, "space": far(1.6)}})
		await _expect_nothing_over(200, Callable(), await _asked_by_slides(walkers, true)))


# What the engine asks for itself in a frame in which these bodies slide: it lists what each has touched. In Jolt one that moves
# along the floor touches nothing.
func _asked_by_slides(bodies: Array[Node], standing: bool = false) -> int:
	var slider := _apart_from_others(character(-20.0))
	var landing := walk(slider, [kind(SCMoveCharacterAction)])
	await physics_frames(5)
	landing.free()
	slider.set(&"velocity", at(0.0 if standing else 1.0, 0.0))
	var asked := await _asked_by(func() -> void: slider.call(&"move_and_slide"))
	slider.free()
	await physics_frames(2)
	return asked * bodies.filter(func(body: Node) -> bool: return body.call(&"is_on_floor")).size()


# By the engine, in one physics frame in which it does that within a call of the library.
func _asked_by(work: Callable) -> int:
	if not AllocationCounter.is_available():
		return 0
	var asked: PackedInt64Array = []
	for done: Callable in [func() -> void: pass, work]:
		var action := Within.new()
		action.work = done
		var made := start(machine([state("Work", [action])], {"physics_tick": true}))
		await _play(WARM_UP, Callable())
		AllocationCounter.begin(LIBRARY)
		await _play(100, Callable())
		asked.append(AllocationCounter.end())
		made.free()
	return roundi((asked[1] - asked[0]) / 100.0)


func _apart_from_others(body: Node) -> Node:
	body.set(&"collision_layer", 2)
	return body


func _once(name: StringName) -> SCSetVariableAction:
	return set_var(name, 1, {"operation": SCSetVariableAction.ADD})


## Whether 1 is greater than what a variable holds, asked every frame and told once.
func _ask_each_frame() -> SCCheckAction:
	var condition := SCCompareCondition.new()
	condition.first = 1.0
	condition.test = SCCompareCondition.GREATER
	condition.from_variables = {&"second": &"low"}
	var made := SCCheckAction.new()
	made.condition = condition
	made.true_event = &"above"
	made.run_mode = SCMachineAction.EVERY_FRAME
	return made


func _each_frame(name: StringName, value: Variant, options: Dictionary = {}) -> SCSetVariableAction:
	return set_var(name, value, {"run_mode": SCMachineAction.EVERY_FRAME, "operation": SCSetVariableAction.ADD}.merged(options, true))


## Lets the first frames pass, in which names are looked up and lists reach their size. [param by_engine] is what the engine asks
## for in each frame, whoever calls it.
func _expect_nothing_over(count: int, each_frame: Callable = Callable(), by_engine: int = 0) -> void:
	await _play(WARM_UP, each_frame)
	if not _can_count():
		await _play(count, each_frame)
		return
	expect(AllocationCounter.begin(LIBRARY), "%s is not loaded" % LIBRARY)
	await _play(count, each_frame)
	var made := AllocationCounter.end() - count * by_engine
	expect(made == 0, "%d allocations in %d frames, from %s in %s" % [made, count, ", ".join(AllocationCounter.sites()), LIBRARY])


func _play(count: int, each_frame: Callable) -> void:
	for i in count:
		if each_frame.is_valid():
			each_frame.call()
		await frames(1)


func _can_count() -> bool:
	if AllocationCounter.is_available():
		return true
	# The sanitizers have an allocator of their own.
	expect(OS.has_environment("ASAN_OPTIONS"), "the counting allocator is not preloaded; ./dev test does it")
	return false
