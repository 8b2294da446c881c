extends PhysicsStory
## The arena, played by its recording: what its guards are for has to happen, with either physics engine for 3D.

const Arena := preload("res://demo/arena/arena.gd")
const SCENE: String = "res://demo/arena/arena.tscn"

var arena: Arena
## What each machine has gone through, innermost states alone, by the name of the thing it is on.
var gone_through: Dictionary[String, Array] = {}


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	arena = add((load(SCENE) as PackedScene).instantiate())
	for machine: SCMachine in SCMachine.machines_in_the_scene():
		_follow(machine)
		var states: Array[StringName] = []
		gone_through[String(machine.get_parent().name)] = states
		machine.state_changed.connect(func(_from: SCMachineState, _to: SCMachineState) -> void: states.append(_innermost(machine)))


func on(thing: String) -> SCMachine:
	return arena.get_node(thing + "/Machine")


func place_of(thing: String) -> Vector3:
	return (arena.get_node(thing) as Node3D).global_position


func _innermost(machine: SCMachine) -> StringName:
	var states := machine.active_states()
	return &"" if states.is_empty() else (states.back() as SCMachineState).state_name


## It has been in these states one after the other, whatever else came in between.
func expect_went(thing: String, states: Array) -> void:
	var at := 0
	for state: StringName in gone_through[thing]:
		at += int(at < states.size() and state == states[at])
	expect(at == states.size(), "%s did not come to %s (number %d) on its way: %s" % [thing, states[mini(at, states.size() - 1)], at + 1, gone_through[thing]])


func test_the_recording_tells_the_whole_story() -> void:
	var recording := arena.play_by_itself()
	var highest := 0.0
	var fastest := 0.0
	var driven := 0.0
	var car := place_of("Car")
	while recording.is_playing():
		await physics_frames(1)
		highest = maxf(highest, place_of("Player").y)
		fastest = maxf(fastest, on("Car").get_value(&"speed"))
		driven += place_of("Car").distance_to(car)
		car = place_of("Car")
	# The first bang is looked into by the one who is near enough, and by nobody else. Who is the first to see the player by the
	# chest depends on who looks when.
	expect_went("WestGuard", ["Investigating", "Helping", "Chasing", "Taking Cover", "Behind Cover", "Chasing", "Searching", "On Rounds"])
	expect_went("GateGuard", ["Calling", "Chasing", "Circling", "Taking Cover", "Behind Cover", "Searching", "On Rounds", "Fleeing", "On Rounds"])
	expect_went("VaultGuard", ["Helping", "Chasing", "Taking Cover", "Chasing", "Searching", "On Rounds", "Chasing", "Circling"])
	var calls := ["WestGuard", "GateGuard", "VaultGuard"].map(func(guard: String) -> int: return gone_through[guard].count(&"Calling"))
	expect(calls[0] + calls[1] + calls[2] >= 2, "it is seen a second time on its way to the chest: %s" % [calls])
	expect(not gone_through["GateGuard"].has(&"Investigating") and not gone_through["VaultGuard"].has(&"Investigating"))
	expect_went("Player", ["Banging", "Jumping", "Banging", "Jumping", "In The Car", "Walking", "In The Car"])
	expect(highest > 1.2 and highest < 1.45, "it jumped %.2f high" % highest)
	expect_equal(gone_through["Gate"], [&"Opening", &"Open"])
	expect_equal(gone_through["Lever"], [&"Pulling Down", &"Down"])
	expect_equal(gone_through["Chest"], [&"Opening", &"Open"])
	expect_near((arena.get_node("Gate/Leaf") as Node3D).position.y, -2.45, 0.01)
	expect_equal(gone_through["Car"], [&"Driven", &"Left", &"Parked", &"Driven"], "it is driven, and crashes into nothing")
	expect(fastest > 7.9 and driven > 45.0, "it went %.1f m at up to %.1f m/s" % [driven, fastest])
	expect(not (arena.get_node("Player") as Node3D).visible)


func test_a_gamepad_will_do() -> void:
	var player: Node3D = arena.get_node("Player")
	var prompt: Label = arena.get_node("Words/Prompt")
	player.global_position = place_of("Car") + Vector3(-5, 0, 0)
	await _push(JOY_AXIS_LEFT_Y, 1.0, 40)
	expect(player.global_position.distance_to(place_of("Car")) < 2.8, "down on the stick is toward the one who looks: %s" % player.global_position)
	expect_equal([prompt.visible, prompt.text], [true, "Top Button (Y / Triangle) to drive"])
	await _tap(JOY_BUTTON_Y)
	expect_state(on("Player"), "In The Car")
	var parked := place_of("Car")
	await _push(JOY_AXIS_TRIGGER_RIGHT, 1.0, 60)
	expect(place_of("Car").z < parked.z - 2.0, "it went from %s to %s" % [parked, place_of("Car")])
	await _tap(JOY_BUTTON_Y)
	await physics_frames(20)
	expect_states(on("Player"), ["On Foot", "Walking"])
	expect_state(on("Car"), "Parked")


func _push(axis: JoyAxis, how_far: float, for_frames: int) -> void:
	for value: float in [how_far, 0.0]:
		var motion := InputEventJoypadMotion.new()
		motion.axis = axis
		motion.axis_value = value
		Input.parse_input_event(motion)
		await physics_frames(for_frames if value != 0.0 else 2)


func _tap(button: JoyButton) -> void:
	for is_down: bool in [true, false]:
		var event := InputEventJoypadButton.new()
		event.button_index = button
		event.pressed = is_down
		Input.parse_input_event(event)
		await physics_frames(3)


func test_a_wall_is_a_crash() -> void:
	on("Car").send_event(&"USED", arena.get_node("Player"))
	await physics_frames(2)
	expect_state(on("Player"), "In The Car")
	(arena.get_node("Car") as Node3D).rotate_y(PI)
	Input.action_press(&"Key: W or Key: Up or Pad: Right Trigger (RT / R2)")
	await physics_frames(120)
	Input.action_release(&"Key: W or Key: Up or Pad: Right Trigger (RT / R2)")
	expect_went("Car", ["Driven", "Crashing", "Driven"])
	expect(place_of("Car").z < 18.0, "it went through the wall: %s" % place_of("Car"))


func test_nobody_gets_through_the_gate_while_it_is_shut() -> void:
	var guard: Node3D = arena.get_node("VaultGuard")
	var player: Node3D = arena.get_node("Player")
	player.global_position = Vector3(0, 0.02, -6)
	on("VaultGuard").send_event(&"Alerted", player)
	(guard.get_node("Perception") as Node).call(&"notice", player)
	await physics_frames(150)
	expect(guard.global_position.z < -9.5, "it stands at %s" % guard.global_position)


func test_the_designs_hold_no_mistake_and_no_script() -> void:
	var designs: Dictionary[SCMachineTemplate, bool] = {}
	for machine: SCMachine in SCMachine.machines_in_the_scene():
		designs[machine.template] = true
	expect_equal(designs.size(), 6)
	for design in designs:
		expect_equal(SCMachineTemplate.findings_in(design), [])
		for one: SCMachineState in design.all_states():
			for action: SCMachineAction in one.actions:
				expect(action.get_script() == null, "%s has an action made from a script" % design)
