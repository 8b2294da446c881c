@abstract
class_name Story
extends StoryWords
## A scenario that a game maker would build, played in the real engine. Each [code]test_...[/code] method is one; it starts
## from an empty tree right after the frame's signal, so [code]await frames(1)[/code] lets every node have one frame.

const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const OutputCatcher := preload("res://tests/framework/output_catcher.gd")

## The frames of a second: what [code]--fixed-fps[/code] is given.
const FPS: int = 60

## Long stories run in full only when asked to.
static var long: bool = false
## Stories that draw what they do from seeds play this one alone; below 0 all of theirs.
static var only_seed: int = -1

var tree: SceneTree
## Everything a story adds to the scene goes under this node.
var stage: Node
var output: OutputCatcher
var failures: PackedStringArray = []


## How long a test may play, in frames of game time.
func most_frames() -> int:
	return 60 * FPS


## The seeds for a test to draw from, each on its own.
func seeds(first: int, rounds: int, long_rounds: int) -> Array:
	return [only_seed] if only_seed >= 0 else range(first, first + (long_rounds if long else rounds))


## Called by the runner around each test.
func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	tree = in_tree
	output = catcher
	output.forget_printed()
	seed(12345)
	stage = Node.new()
	stage.name = "Stage"
	tree.root.add_child(stage)


func close() -> void:
	if Engine.time_scale != 1.0 or tree.paused:
		_fail("left the game paused or at another speed")
	Engine.time_scale = 1.0
	tree.paused = false
	for made in _made:
		if not is_instance_valid(made):
			continue
		if not made.is_inside_tree():
			made.free()
		elif not stage.is_ancestor_of(made):
			_fail("left %s at %s" % [made.name, made.get_path()])
			made.queue_free()
	_made.clear()
	if tree.current_scene != null:
		tree.current_scene.queue_free()
	if is_instance_valid(stage):
		stage.queue_free()
	else:
		_fail("freed the stage")
	await frames(2)
	# A callable of an action may hold the story, which holds the action.
	for recorder in _acts:
		recorder.forget()
	_acts.clear()
	_forget_what_is_shared()
	await frames(1)
	for line in output.unclaimed():
		_fail("nobody expected the %s" % line, false)
	output.forget()


## Adds the machine to the scene and starts it, if that did not start it by itself.
func start(made: SCMachine) -> SCMachine:
	if made.get_parent() != null:
		made.start()
		return made
	var under: Node = made.get_meta(&"under", stage)
	under.add_child(made)
	if not made.autostart:
		made.start()
	return made


## Adds a node to the scene.
func add(node: Node) -> Node:
	stage.add_child(node)
	return node


## An empty node of the scene, for a machine to work on.
func body(name: String = "Body") -> Node2D:
	var made := Node2D.new()
	made.name = name
	stage.add_child(made)
	return made


## Lets that much game time pass.
func advance(seconds: float) -> void:
	await frames(roundi(seconds * FPS))


func frames(count: int) -> void:
	for i in count:
		await tree.process_frame


## Ends within a physics frame.
func physics_frames(count: int) -> void:
	for i in count:
		await tree.physics_frame


func expect(holds: bool, what: String = "") -> void:
	if not holds:
		_fail(what if not what.is_empty() else "does not hold")


## Kinds must be the same too, but for the two kinds of text; an object that is not there is nothing.
func expect_equal(got: Variant, wanted: Variant, what: String = "") -> void:
	if got == null and wanted == null:
		return
	if typeof(got) != typeof(wanted) and not (_is_text(got) and _is_text(wanted)):
		_fail("%sgot %s (%s), wanted %s (%s)" % [_prefix(what), var_to_str(got), type_string(typeof(got)), var_to_str(wanted), type_string(typeof(wanted))])
	elif got != wanted:
		_fail("%sgot %s, wanted %s" % [_prefix(what), got, wanted])


func expect_near(got: float, wanted: float, within: float = 0.0001, what: String = "") -> void:
	if absf(got - wanted) > within:
		_fail("%sgot %s, wanted %s, give or take %s" % [_prefix(what), got, wanted, within])


## The machine's current state; an empty name when it has none.
func expect_state(of: SCMachine, name: StringName) -> void:
	var got := current(of)
	if got != name:
		_fail("%s is in %s, wanted %s" % [of.name, _quoted(got), _quoted(name)], true, of)


## Every state it is in, outermost first.
func expect_states(of: SCMachine, names: Array) -> void:
	var got := current_states(of)
	if got != PackedStringArray(names):
		_fail("%s is in %s, wanted %s" % [of.name, got, names], true, of)


## What the story's actions did since it was asked last.
func expect_log(wanted: Array) -> void:
	if noted != wanted:
		_fail("the log is %s, wanted %s" % [noted, wanted])
	noted.clear()


func expect_warning(part: String) -> void:
	if not output.claim("warning", part):
		_fail("no warning says \"%s\"" % part)


func expect_error(part: String) -> void:
	if not output.claim("error", part):
		_fail("no error says \"%s\"" % part)


func expect_printed(part: String) -> void:
	if not output.claim_printed(part):
		_fail("nothing printed says \"%s\"" % part)


func expect_not_printed(part: String) -> void:
	if output.claim_printed(part):
		_fail("something printed says \"%s\"" % part)


func current(of: SCMachine) -> StringName:
	var at: SCMachineState = of.current_state
	return at.state_name if at != null else &""


func current_states(of: SCMachine) -> PackedStringArray:
	var names: PackedStringArray = []
	for at: SCMachineState in of.active_states():
		names.append(at.state_name)
	return names


## Puts everything that machines share back as it is when a game begins.
func _forget_what_is_shared() -> void:
	var machines := SCMachine.machines_in_the_scene()
	if not machines.is_empty():
		_fail("left machines in the table: %s" % [machines], false)
	var any := SCMachine.new()
	any._core_global_values().clear()
	any.free()
	SCMachine.set_quest_events([])
	MakerWarnings._said.clear()


func _fail(why: String, tell: bool = true, of: SCMachine = null) -> void:
	var place := ""
	for frame: Dictionary in get_stack():
		var source: String = frame["source"]
		if not source.begins_with("res://tests/framework/"):
			place = "line %d: " % frame["line"]
			break
	failures.append(place + why)
	if tell and failures.size() == 1:
		for line in _report(of):
			failures.append("    " + line)


## Where the machines of the story stand: the one in question, else all.
func _report(of: SCMachine) -> PackedStringArray:
	var lines: PackedStringArray = []
	for made in _made:
		if not is_instance_valid(made) or not made is SCMachine:
			continue
		var told: SCMachine = made
		if of != null and told != of:
			continue
		lines.append("%s: %s, in %s" % [told.name, "running" if told.is_running() else "stopped", current_states(told)])
		lines.append("  values %s" % [told.values])
		var trail: Trail = told.get_meta(&"trail", null)
		if trail != null and not trail.lines.is_empty():
			lines.append("  last %s" % ", ".join(trail.lines))
	return lines


func _is_text(value: Variant) -> bool:
	return value is String or value is StringName


func _prefix(what: String) -> String:
	return "" if what.is_empty() else what + ": "


func _quoted(name: StringName) -> String:
	return "no state" if name.is_empty() else String(name)
