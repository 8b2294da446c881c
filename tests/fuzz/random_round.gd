extends RefCounted
## Plays one design in a machine on a node_2d and in one on a node_3d, with random deeds done to both. A valid one has to run
## without a word; a broken one has to say what is wrong with it, or to bear it, and to go on.

const Deeds := preload("res://tests/fuzz/deeds.gd")
const Design := preload("res://tests/fuzz/design.gd")
const Faults := preload("res://tests/fuzz/faults.gd")
const Town := preload("res://tests/fuzz/town.gd")

const FRAMES: int = 4
## A sentence that names a variable instead.
const NAMES_NO_MACHINE: String = "Format Time: '"
## Where a design is kept for whoever has to find out what went wrong with it.
const DESIGN: String = "user://random_design.tres"
## Other faults would not come to light beside one of these, or beside the last again in each of its many machines.
const ALONE: Array[String] = [
	"no_state_to_start_in", "a_state_to_start_in_from_elsewhere", "a_loop_limit_that_is_none", "a_template_that_runs_itself",
]
const CIRCLE: String = "error: Machine on %s entered "
## The words of a condition that a design makes sure of.
const ASSERTED: String = "error: Assert on "

var made: Design
var faults: PackedStringArray = []

var _story: Story
var _planted: Array[Faults.Fault] = []
var _town: Town
var _deeds: Deeds


func _init(story: Story, with_seed: int, valid: bool) -> void:
	_story = story
	seed(with_seed)
	made = Design.new(with_seed, valid)
	made.filling.live = story.stage
	made.draw()
	if not valid:
		made.design.initial_state = made.first
		_plant(with_seed)


func told() -> String:
	var words := ", ".join(_planted.map(func(fault: Faults.Fault) -> String: return fault.name.replace("_", " ")))
	ResourceSaver.save(made.design, DESIGN)
	_story.output.forget()
	var deeds := "\n      ".join(_deeds.trail) if _deeds != null else ""
	return "%s; the design is in %s\n      %s" % [words if not words.is_empty() else "valid", ProjectSettings.globalize_path(DESIGN), deeds]


func play() -> void:
	_town = Town.new(_story.stage, made.dice, [made] as Array[Design])
	_town.few_nodes = made.valid
	_deeds = Deeds.new(_town, _on_called)
	for number in 2:
		_town.add().start()
	await _story.physics_frames(1)
	await _story.frames(1)
	_put_the_game_back()
	for fault in _planted:
		for machine in _town.machines():
			_check_what_is_said(machine, fault)
	# Before anything that may switch a machine off.
	for fault in _planted:
		if not fault.ring.is_empty():
			await _check_ring(made.dice.pick(_town.machines()), fault)
		for machine in _town.machines():
			if not fault.silent.is_empty():
				await _check_what_holds(machine, fault)
	for machine in _town.machines():
		machine.send_event(Design.BEGIN)
	# Each event would go round and round up to a limit that high.
	for i in FRAMES if made.design.loop_increment_limit <= 1000 else 0:
		_deeds.do_some(made.dice.randi_range(1, 4))
		if i % 2 == 1:
			await _story.physics_frames(1)
			_deeds.do_some(made.dice.randi_range(1, 4))
		await _story.frames(1)
		_put_the_game_back()
	for machine in _town.machines():
		if made.valid and not machine.is_running() and machine.autostart and machine.is_inside_tree() and machine.can_process() and not _deeds.stopped.has(machine.get_instance_id()):
			faults.append("%s has stopped" % machine.name)


## What was said belongs to the design; what is left of it goes.
func end() -> void:
	_town.close()
	await _story.frames(1)
	# Without a scene being played, what is made goes under the root.
	for child in _story.tree.root.get_children():
		if child.has_meta(&"quillstead_made_by") or child.has_meta(&"quillstead_placed_by"):
			child.free()
	_put_the_game_back()
	for line in _story.output.unclaimed():
		if not _is_expected(line):
			faults.append(line)
	faults.append_array(made.filling.faults)
	_story.output.forget()
	_story._forget_what_is_shared()
	SCMachine.set_measuring(false)


func take_apart() -> void:
	_deeds.forget()
	_town.let_go()
	for fault in _planted:
		fault.holds = Callable()
	_planted.clear()


func _plant(with_seed: int) -> void:
	var planter := Faults.new(made)
	var names := Faults.NAMES
	var chosen: PackedStringArray = [names[with_seed % names.size()]]
	for i in made.dice.randi_range(0, 2):
		var other: String = made.dice.pick(names)
		var rings := other.begins_with("a_ring") and Array(chosen).any(func(name: String) -> bool: return name.begins_with("a_ring"))
		if other not in chosen and chosen[0] not in ALONE and other not in ALONE and not rings:
			chosen.append(other)
	for name in chosen:
		_planted.append(planter.plant(name))


func _on_called(_where: String, _machine: SCMachine, _index: int) -> void:
	pass


## Of a broken design: warnings and the two errors of its own making, each with the name of the machine.
func _is_expected(line: String) -> bool:
	var names := ["Machine0", "Machine1", "TemplateRunning", NAMES_NO_MACHINE].any(line.contains)
	return not made.valid and names and (line.begins_with("warning: ") or line.begins_with(ASSERTED) or line.begins_with(CIRCLE.get_slice("%s", 0)))


func _check_what_is_said(machine: SCMachine, fault: Faults.Fault) -> void:
	var speaker := fault.of_machine if not fault.of_machine.is_empty() else String(machine.name)
	if not fault.said.is_empty() and not _is_said(_story.output.unclaimed(), fault.said + PackedStringArray(["warning: ", speaker])):
		faults.append("%s: no warning of %s says %s" % [fault.name, speaker, fault.said])


func _check_what_holds(machine: SCMachine, fault: Faults.Fault) -> void:
	machine.start()
	await _story.frames(1)
	if not fault.is_borne_by(machine):
		faults.append("%s: %s does not do as it should: %s" % [fault.name, machine.name, fault.silent])


func _is_said(lines: PackedStringArray, parts: PackedStringArray) -> bool:
	return Array(lines).any(func(line: String) -> bool: return Array(parts).all(func(part: String) -> bool: return part in line))


## It ends within its frame, with the one sentence for it, and the machine is as good as new.
func _check_ring(machine: SCMachine, fault: Faults.Fault) -> void:
	machine.start()
	await _story.frames(1)
	var before := _story.output.unclaimed().size()
	machine.send_event(fault.ring)
	if machine.is_running() or not _is_said(_story.output.unclaimed().slice(before), [CIRCLE % machine.name]):
		faults.append("%s: nothing stopped %s" % [fault.name, machine.name])
	await _story.frames(1)
	machine.start()
	machine.send_event("answer")
	if machine.current_state == null or machine.current_state.state_name != &"Answered":
		faults.append("%s: %s does not answer afterwards" % [fault.name, machine.name])


## A design may stop the clock or pause the game. Not called in a physics frame, as the physics of 4.6 complain when they
## go on right before a step.
func _put_the_game_back() -> void:
	_story.tree.paused = false
	Engine.time_scale = 1.0
