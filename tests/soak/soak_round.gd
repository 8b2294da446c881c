extends RefCounted
## One round: a town comes into being, lives through its frames, and goes. What is done to it depends on the seed alone.

const Town := preload("res://tests/soak/soak_town.gd")
const Deeds := preload("res://tests/soak/soak_deeds.gd")
const Edits := preload("res://tests/soak/soak_edits.gd")
const Census := preload("res://tests/soak/soak_census.gd")
const CarryOver := preload("res://addons/quillstead/runtime/quillstead_carry_over.gd")

const SCENE_FILE: String = "res://tests/soak/soak_square.tscn"
## What is made once and kept makes the first play of a round grow; only one that grows every time leaks.
const PLAYS: int = 3

var tree: SceneTree
var tally: Town.Tally = Town.Tally.new()
var machines: int = 3000
var frames: int = 60
## A deed for so many machines in each frame.
var machines_a_deed: int = 20
var left_over: Dictionary[String, int] = {}


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
	var random := RandomNumberGenerator.new()
	random.seed = with_seed
	# For what the machines leave to chance.
	seed(with_seed)
	var stage := Node.new()
	stage.name = "Town"
	tree.root.add_child(stage)
	var town := Town.new(stage, random, tally, machines)
	var deeds := Deeds.new(town, with_seed)
	var edits := Edits.new(town)
	for frame in frames:
		if frame % 4 == 3:
			await tree.physics_frame
		else:
			await tree.process_frame
		_change_world(town, frame)
		deeds.do_some(maxi(1, floori(float(machines) / machines_a_deed)))
		for i in 3:
			edits.edit()
		town.note_peak()
	deeds = null
	edits = null
	await _end(town, stage)
	left_over = town.left_over()


## What comes upon the whole town, once or twice in a round each.
func _change_world(town: Town, frame: int) -> void:
	var part := floori(frame * 12.0 / frames)
	if part == floori((frame - 1) * 12.0 / frames) and frame > 0:
		return
	match part:
		1, 7: _go_to_packed(town)
		2: tree.paused = true
		3: tree.paused = false
		4: Engine.time_scale = 2.0
		5: Engine.time_scale = 1.0
		6: _go_to_file()
		8: SCMachine.broadcast_everywhere(&"alarm", 1.0)
		9: SCMachine.put_globals_back([&"gold"] as Array[StringName])
		10: SCMachine.set_measuring(true)
		11: SCMachine.set_measuring(false)


func _go_to_packed(town: Town) -> void:
	CarryOver.gather()
	tree.change_scene_to_packed(town.packed_scene(floori(machines / 20.0)))


func _go_to_file() -> void:
	CarryOver.gather()
	tree.change_scene_to_file(SCENE_FILE)


func _end(town: Town, stage: Node) -> void:
	tree.paused = false
	Engine.time_scale = 1.0
	SCMachine.set_measuring(false)
	town.close()
	stage.queue_free()
	if tree.current_scene != null:
		tree.unload_current_scene()
	CarryOver.forget()
	# Lanes notice in their next call that there is nothing to do.
	for i in 2:
		await tree.process_frame
		await tree.physics_frame
	await tree.process_frame
	SCMachine._core_global_values().clear()
