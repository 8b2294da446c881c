extends StoryWords
## Finds out which fillings of which kinds leave nothing to complain of: each is tried in a machine on a node_2d and in one on
## a node_3d. What says nothing there and lets its machine be has to do so in any design.

const Design := preload("res://tests/fuzz/design.gd")
const Filling := preload("res://tests/fuzz/filling.gd")
const Scene := preload("res://tests/fuzz/scene.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const OutputCatcher := preload("res://tests/framework/output_catcher.gd")

const TRIES: int = 16
const MOST_TRIES: int = 32
const ENOUGH: int = 2
const FRAMES: int = 12

var _bad: Dictionary[int, bool] = {}


## Once in a run is enough.
static func hold(stage: Node, catcher: OutputCatcher) -> void:
	if not Design.rehearsed.is_empty():
		return
	for kind in Filling.kinds():
		if kind not in Filling.ENDS_THE_GAME:
			var well: PackedInt64Array = []
			for first in range(1, MOST_TRIES, TRIES):
				if well.size() < ENOUGH:
					well.append_array(await new()._silent_fillings(kind, range(first, first + TRIES), stage, catcher))
			if not well.is_empty():
				Design.rehearsed[kind] = well


func _silent_fillings(kind: StringName, numbers: Array, stage: Node, catcher: OutputCatcher) -> Array:
	var tree := stage.get_tree()
	Engine.print_to_stdout = false
	seed(hash(kind))
	for number: int in numbers:
		for side: Scene.Dimension in [Scene.Dimension.IN_2D, Scene.Dimension.IN_3D]:
			_try(kind, number, side, stage)
	for frame in FRAMES:
		await (tree.physics_frame if frame % 2 == 1 else tree.process_frame)
		for input: StringName in [&"ui_accept", &"ui_left"]:
			if frame % 4 == 2:
				Input.action_press(input)
			else:
				Input.action_release(input)
		for brain: SCMachine in _made:
			match frame:
				1: brain.send_event(&"begin")
				3, 5, 7:
					# What comes with an event is of one type now and of another then.
					brain.send_event(&"go")
					brain.send_event(Filling.AHEAD, [1.0, "a word", null][frame % 3])
				9: brain.restart_state(brain.current_state)
	await tree.process_frame
	for brain: SCMachine in _made:
		_judge(brain)
	for host in stage.get_children():
		host.free()
	tree.paused = false
	Engine.time_scale = 1.0
	await tree.process_frame
	_hear(catcher, numbers)
	Engine.print_to_stdout = true
	return numbers.filter(func(number: int) -> bool: return not _bad.has(number))


func _try(kind: StringName, number: int, side: Scene.Dimension, stage: Node) -> void:
	var host := Scene.host(side, true)
	stage.add_child(host)
	var filling := Design.of_filling(kind, number)
	var action := filling.action_of(kind)
	action.run_mode = SCMachineAction.EVERY_FRAME
	# Or it would be over before anything has been said.
	action.update_interval = 0.0
	var brain := machine([
		state("Start", [], {"begin": "Work", Filling.AHEAD: "Work"}), state("Work", [action], {"go": "Start"}), state(Filling.ANSWERED, [], {"again": "Start"}),
	], {"name": "Try%02d" % number, "variables": filling.declared})
	brain.set_meta(&"number", number)
	host.add_child(brain)
	if filling.wants_mate:
		var mate := machine([state("Listen")], {"name": "Mate", "variables": {"heard": 0.0}})
		_made.erase(mate)
		host.add_child(mate)


func _judge(brain: SCMachine) -> void:
	var number: int = brain.get_meta(&"number")
	var at: SCMachineState = brain.current_state
	if at == null or at.state_name not in [&"Work", Filling.ANSWERED]:
		_bad[number] = true


## What names no machine may be of any.
func _hear(catcher: OutputCatcher, numbers: Array) -> void:
	for line in catcher.unclaimed():
		for number: int in numbers:
			if "Try%02d" % number in line or not "Try" in line:
				_bad[number] = true
	catcher.forget()
	MakerWarnings._said.clear()
