extends RefCounted
## Plays one design in a machine on a flat node and in one on a deep node, with random deeds done to both.

const Design := preload("res://tests/fuzz/random_design.gd")
const Faults := preload("res://tests/fuzz/random_rings.gd")
const Fault := preload("res://tests/fuzz/random_fault.gd")
const Settings := preload("res://tests/fuzz/random_settings.gd")
const Scene := preload("res://tests/fuzz/random_scene.gd")
const Dump := preload("res://tests/fuzz/random_dump.gd")

const FRAMES: int = 4
## Other faults would not come to light beside one of these, or beside the last again in each of its many machines.
const ALONE: Array[String] = [
	"no_state_to_start_in", "a_state_to_start_in_from_elsewhere", "a_loop_limit_that_is_none", "a_template_that_runs_itself",
]
const CIRCLE: String = "error: Machine on %s entered "
## The words of a question that a design makes sure of.
const ASSERTED: String = "error: Assert on "

var made: Design
var faults: PackedStringArray = []

var _story: Story
var _planted: Array[Fault] = []
var _hosts: Array[Node] = []
var _machines: Array[SCMachine] = []
var _core: SCMachineCore = SCMachineCore.new()


func _init(story: Story, with_seed: int, valid: bool) -> void:
	_story = story
	seed(with_seed)
	made = Design.new(with_seed, valid)
	made.settings.live = story.stage
	made.draw()
	if valid:
		return
	var planter := Faults.new(made)
	var names := planter.names()
	var chosen: PackedStringArray = [names[with_seed % names.size()]]
	for i in made.dice.randi_range(0, 2):
		var other: String = made.dice.pick(names)
		if other not in chosen and chosen[0] not in ALONE and other not in ALONE:
			chosen.append(other)
	var rings := 0
	for name in chosen:
		if name.begins_with("a_ring"):
			rings += 1
		if rings < 2 or not name.begins_with("a_ring"):
			_planted.append(planter.plant(name))


func told() -> String:
	var words := ", ".join(_planted.map(func(fault: Fault) -> String: return fault.name.replace("_", " ")))
	return "%s\n%s" % [words if not words.is_empty() else "valid", Dump.of(made.design)]


func play() -> void:
	for flat: bool in [true, false]:
		var host := Scene.host(flat)
		var machine := SCMachine.new()
		machine.name = "FlatMachine" if flat else "DeepMachine"
		if made.dice.one_in(5):
			machine.states = made.design.states
			machine.initial_state = made.design.initial_state
			machine.variables = made.design.variables
		else:
			machine.template = made.design
		host.add_child(machine)
		_story.stage.add_child(host)
		_hosts.append(host)
		_machines.append(machine)
	_core.design = made.design
	_story.stage.add_child(_core)
	await _story.physics_frames(1)
	await _story.frames(1)
	_put_the_game_back()
	for machine in _machines:
		_check_what_is_said(machine)
	# Before anything that may switch a machine off.
	for fault in _planted:
		if not fault.ring.is_empty():
			await _check_ring(made.dice.pick(_machines), fault)
	for machine in _machines:
		await _check_what_holds(machine)
	if made.valid:
		_send_all(Design.BEGIN)
	# Each event would go round and round up to a limit that high.
	for i in FRAMES if made.design.loop_increment_limit <= 1000 else 0:
		_do_something()
		if i % 2 == 1:
			await _story.physics_frames(1)
			_do_something()
		await _story.frames(1)
		_put_the_game_back()
	for machine in _machines:
		if made.valid and not machine.is_running():
			faults.append("%s has stopped" % machine.name)


## What was said belongs to the design; what is left of it goes.
func end() -> void:
	for host in _hosts:
		if made.dice.one_in(2):
			host.free()
		else:
			host.queue_free()
	_core.free()
	await _story.frames(1)
	_put_the_game_back()
	for line in _story.output.unclaimed():
		if not _is_expected(line):
			faults.append(line)
	faults.append_array(made.settings.faults)
	_story.output.forget()
	_story._forget_what_is_shared()
	for action: StringName in [&"ui_accept", &"ui_left"]:
		Input.action_release(action)


func take_apart() -> void:
	made.take_apart()
	for fault in _planted:
		fault.holds = Callable()
	_planted.clear()
	_hosts.clear()
	_machines.clear()


## Of a broken design: warnings and the two errors of its own making, each with the name of the machine.
func _is_expected(line: String) -> bool:
	if made.valid:
		return false
	var names := line.contains("FlatMachine") or line.contains("DeepMachine") or line.contains("TemplateRunning")
	return names and (line.begins_with("warning: ") or line.begins_with(ASSERTED) or line.begins_with(CIRCLE.get_slice("%s", 0)))


func _check_what_is_said(machine: SCMachine) -> void:
	var lines := _story.output.unclaimed()
	for fault in _planted:
		var speaker := fault.of_machine if not fault.of_machine.is_empty() else String(machine.name)
		if not fault.said.is_empty() and not _is_said(lines, fault.said + PackedStringArray(["warning: ", speaker])):
			faults.append("%s: no warning of %s says %s" % [fault.name, speaker, fault.said])


func _check_what_holds(machine: SCMachine) -> void:
	for fault in _planted:
		if fault.holds.is_valid():
			machine.start()
			await _story.frames(1)
			if not fault.holds.call(machine):
				faults.append("%s: %s does not do as it should: %s" % [fault.name, machine.name, fault.silent])


func _is_said(lines: PackedStringArray, parts: PackedStringArray) -> bool:
	for line in lines:
		if Array(parts).all(func(part: String) -> bool: return part in line):
			return true
	return false


## It ends within its frame, with the one sentence for it, and the machine is as good as new.
func _check_ring(machine: SCMachine, fault: Fault) -> void:
	machine.start()
	await _story.frames(1)
	var before := _story.output.unclaimed().size()
	machine.send_event(fault.ring)
	if machine.is_running() or not _is_said(_story.output.unclaimed().slice(before), [CIRCLE % machine.name]):
		faults.append("%s: nothing stopped %s" % [fault.name, machine.name])
	await _story.frames(1)
	machine.start()
	machine.send_event("answer")
	if not Faults.is_in(machine, &"Answered"):
		faults.append("%s: %s does not answer afterwards" % [fault.name, machine.name])


func _do_something() -> void:
	var dice := made.dice
	for i in dice.randi_range(1, 4):
		var machine: SCMachine = dice.pick(_machines)
		match dice.randi() % 12:
			0, 1, 2: _send_all(dice.pick(Settings.EVENTS + ([Design.BEGIN, Design.AHEAD] as Array[StringName])), _value())
			3: machine.go_to("S%d" % dice.randi_range(0, 4))
			4: machine.send_event(dice.pick(Settings.EVENTS), _value())
			5, 6: _write(machine)
			7: machine.restart_state(machine.current_state)
			8: _start_anew(machine)
			9: SCMachine.broadcast_everywhere(dice.pick(Settings.EVENTS), _value())
			10: Input.action_press(dice.pick([&"ui_accept", &"ui_left"]))
			11: _take_a_node_away(machine)


func _send_all(event: StringName, data: Variant = null) -> void:
	for machine in _machines:
		machine.send_event(event, data)
	_core.send_event(event)


func _value() -> Variant:
	return null if made.valid else made.settings.odd()


func _write(machine: SCMachine) -> void:
	var name: StringName = made.dice.pick(Settings.VARIABLES.keys())
	if made.valid:
		machine.set_value(name, Settings.VARIABLES[name])
	elif made.dice.one_in(6):
		SCMachine.set_global_value(&"level", made.settings.odd())
	else:
		machine.set_value(name, made.settings.odd())


func _start_anew(machine: SCMachine) -> void:
	if made.dice.one_in(2):
		machine.stop()
	machine.start()
	machine.send_event(Design.BEGIN)


func _take_a_node_away(machine: SCMachine) -> void:
	var children := machine.get_parent().get_children()
	var child: Node = made.dice.pick(children)
	if not made.valid and not child is SCMachine:
		child.free()


## A design may stop the clock or pause the game. Not called in a physics frame, as the physics of 4.6 complain when they
## go on right before a step.
func _put_the_game_back() -> void:
	_story.tree.paused = false
	Engine.time_scale = 1.0
