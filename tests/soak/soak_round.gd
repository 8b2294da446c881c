extends RefCounted
## One round: a town of machines comes into being, lives through its frames, and goes. What is done to it depends on the seed
## alone. Afterwards everything has to be as it was before.

const CarryOver := preload("res://addons/quillstead/runtime/quillstead_carry_over.gd")
const Census := preload("res://tests/soak/soak_census.gd")
const Deeds := preload("res://tests/fuzz/deeds.gd")
const Design := preload("res://tests/fuzz/design.gd")
const Dice := preload("res://tests/fuzz/dice.gd")
const Filling := preload("res://tests/fuzz/filling.gd")
const Scene := preload("res://tests/fuzz/scene.gd")
const SharedState := preload("res://tests/framework/shared_state.gd")
const Town := preload("res://tests/fuzz/town.gd")

const SCENE_FILE: String = "user://soak_square.tscn"
const DESIGNS: int = 8
## What is made once and kept makes the first play of a round grow; only one that grows every time leaks.
const PLAYS: int = 3

var tree: SceneTree
var machines: int = 3000
var frames: int = 60
## A deed for so many machines in each frame.
var machines_a_deed: int = 20
var left_over: Dictionary[String, int] = {}
## What the machines of a whole run have done.
var made: int = 0
var peak: int = 0
var events: int = 0
var changes: int = 0

var _dice: Dice
var _town: Town
var _deeds: Deeds
# The first design of a round, with nothing in it that a file cannot keep.
var _square: Design


static func seed_of(run_seed: int, number: int) -> int:
	return hash("%d round %d" % [run_seed, number])


func _init(in_tree: SceneTree) -> void:
	tree = in_tree


## Plays it, again when something is left over. What is left over every time, a line each.
func judge(with_seed: int) -> PackedStringArray:
	var lines: PackedStringArray = []
	for i in PLAYS:
		var before := Census.new(tree).counts
		await play(with_seed)
		lines = Census.new(tree).differences_from(before)
		for kind in left_over:
			lines.append("%d %s made in the round" % [left_over[kind], kind])
		if lines.is_empty():
			break
	return lines


func play(with_seed: int) -> void:
	_dice = Dice.new()
	_dice.seed = with_seed
	# For what the machines leave to chance.
	seed(with_seed)
	var stage := Node.new()
	stage.name = "Town"
	tree.root.add_child(stage)
	Engine.print_to_stdout = false
	_town = Town.new(stage, _dice, _draw_designs(with_seed))
	_town.sides = [Scene.Dimension.IN_2D, Scene.Dimension.IN_3D]
	_town.told = _count
	_deeds = Deeds.new(_town, _on_called)
	for i in machines:
		_town.add()
	_town.remember_designs()
	for frame in frames:
		await (tree.physics_frame if frame % 4 == 3 else tree.process_frame)
		_change_world(frame)
		# What one frame meets makes no difference to the next.
		_dice.seed = hash(with_seed + frame)
		_deeds.do_some(maxi(1, floori(float(machines) / machines_a_deed)))
		peak = maxi(peak, SCMachine.machines_in_the_scene().size())
	await _end(stage)
	Engine.print_to_stdout = true
	left_over = _town.left_over()
	_town = null


func _draw_designs(with_seed: int) -> Array[Design]:
	var designs: Array[Design] = []
	for i in DESIGNS:
		var design := Design.new(with_seed + i, true)
		if i > 0:
			design.called = _on_called
			design.own_in_ten = 1
		design.draw()
		designs.append(design)
	_square = designs[0]
	return designs


func _count(machine: SCMachine) -> void:
	made += 1
	machine.event_sent.connect(_on_event)
	machine.state_changed.connect(_on_change)


func _on_event(_event: StringName, _data: Variant) -> void:
	events += 1


func _on_change(_previous: SCMachineState, _current: SCMachineState) -> void:
	changes += 1


## What an action of the game's own leaves behind has to come to an end with it.
func _on_called(what: String, machine: SCMachine, index: int) -> void:
	if what == "enter":
		_deeds.do_to_action(_dice.pick([&"wait", &"tween", &"chase", &"rest"]), machine, index)


## What comes upon the whole town, once or twice in a round each.
func _change_world(frame: int) -> void:
	var part := floori(frame * 12.0 / frames)
	if part == floori((frame - 1) * 12.0 / frames) and frame > 0:
		return
	match part:
		1, 7: _go_to(_town.packed_scene(ceili(machines / 20.0)))
		2: tree.paused = true
		3: tree.paused = false
		4: Engine.time_scale = 2.0
		5: Engine.time_scale = 1.0
		6:
			ResourceSaver.save(_town.packed_scene(3, _square), SCENE_FILE)
			_go_to(null)
		8: SCMachine.broadcast_everywhere(&"alarm", 1.0)
		9: SCMachine.put_globals_back([&"level"] as Array[StringName])
		10: SCMachine.set_measuring(true)
		11: SCMachine.set_measuring(false)


func _go_to(scene: PackedScene) -> void:
	CarryOver.gather()
	if scene != null:
		tree.change_scene_to_packed(scene)
	else:
		tree.change_scene_to_file(SCENE_FILE)


func _end(stage: Node) -> void:
	_put_the_game_back()
	_town.remember_designs()
	_town.close()
	stage.queue_free()
	if tree.current_scene != null:
		tree.unload_current_scene()
	_deeds.forget()
	_deeds = null
	_square = null
	_town.let_go()
	# Lanes notice in their next call that there is nothing to do; what is drawn stays for a while.
	for i in ceili(Filling.LONGEST * 60.0) + 2:
		await tree.process_frame
		_put_the_game_back()
		await tree.physics_frame
	await tree.process_frame
	CarryOver.forget()
	DirAccess.remove_absolute(SCENE_FILE)
	SharedState.forget(tree)


func _put_the_game_back() -> void:
	tree.paused = false
	Engine.time_scale = 1.0
	SCMachine.set_measuring(false)
