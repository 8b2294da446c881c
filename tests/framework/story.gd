@abstract
class_name Story
extends StoryWords
## A scenario that a game maker would build, played in the real engine. Each [code]test_...[/code] method is one; it starts
## from an empty tree right after the frame's signal, so [code]await frames(1)[/code] lets every node have one frame.

const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const OutputCatcher := preload("res://tests/framework/output_catcher.gd")
const SharedState := preload("res://tests/framework/shared_state.gd")

## The frames of a second: what [code]--fixed-fps[/code] is given.
const FPS: int = 60
## How long a second engine may take, also where it is slow.
const SECONDS_TO_SURVIVE: int = 60

## Long stories run in full only when asked to.
static var long: bool = false
## Stories that draw what they do from seeds play this one alone; below 0 all of theirs.
static var only_seed: int = -1
## Whether the library is the one that ships, which leaves out what is said to somebody who makes a game.
static var released: bool = false

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


## A machine as [method StoryWords.doing] makes it, started.
func play(actions: Variant, ways: Dictionary = {"FINISHED": "Done"}, options: Dictionary = {}) -> SCMachine:
	return start(doing(actions, ways, options))


## What the variables hold after the action has run once, which it must do at once. There is always one called "answer".
## Options as for [method StoryWords.machine].
func results_of(action: SCMachineAction, variables: Dictionary = {}, options: Dictionary = {}) -> Dictionary:
	var made := play(action, {"FINISHED": "Done"}, {"variables": {"answer": null}.merged(variables, true)}.merged(options, true))
	expect_state(made, "Done")
	var held: Dictionary = made.values.duplicate()
	made.free()
	return held


## What it puts into "answer".
func result_of(action: SCMachineAction, variables: Dictionary = {}, options: Dictionary = {}) -> Variant:
	return results_of(action, variables, options)[&"answer"]


## A running machine that does nothing of its own. Options as for [method StoryWords.machine].
func asker(under: Node = stage, options: Dictionary = {}) -> SCMachine:
	return start(machine([state("Asking", [act("asking")])], {"under": under}.merged(options, true)))


## Asks with a memory of its own, or with the one handed over.
func ask(of: SCMachine, asked: SCMachineCondition, memory: Dictionary = {}) -> bool:
	return of.ask(asked, -1, memory)


## Adds a node to the scene, or to [code]under[/code]. Further settings are its properties.
func add(node: Node, name: String = "", settings: Dictionary = {}) -> Node:
	if not name.is_empty():
		node.name = name
	_put(node, settings, ["under"])
	(settings.get("under", stage) as Node).add_child(node)
	return node


## An empty node for a machine to work on.
func body(name: String = "Body", at: Vector2 = Vector2.ZERO, under: Node = stage) -> Node2D:
	return body_at(at, name, under)


func body_3d(name: String = "Body", at: Vector3 = Vector3.ZERO, under: Node = stage) -> Node3D:
	return body_at(at, name, under)


## The same in 2D or 3D, as the place says.
func body_at(at: Variant, name: String = "Body", under: Node = stage) -> Node:
	return add(Node3D.new() if at is Vector3 else Node2D.new(), name, {"position": at, "under": under})


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


## Numbers, vectors or colours.
func expect_near(got: Variant, wanted: Variant, within: float = 0.0001, what: String = "") -> void:
	if not (typeof(got) == typeof(wanted) or (_is_number(got) and _is_number(wanted))) or _distance(got, wanted) > within:
		_fail("%sgot %s, wanted %s, give or take %s" % [_prefix(what), got, wanted, within])


## What variables of the machine hold, by name.
func expect_values(of: SCMachine, wanted: Dictionary, what: String = "") -> void:
	for name: StringName in wanted:
		expect_equal(of.get_value(name), wanted[name], _prefix(what) + name)


## What an action or a condition says of itself in the graph.
func expect_line(of: Resource, line: String) -> void:
	expect_equal(of.call(&"shown_summary"), line)


## Lines of one class, each with the settings that make it.
func expect_lines(of: Variant, rows: Dictionary) -> void:
	for line: String in rows:
		expect_line(kind(of, rows[line]), line)


## The inspector shows these settings, whatever else it shows.
func expect_shown(of: Object, names: Array) -> void:
	for name: String in names:
		expect(name in shown_settings(of), "%s is not shown of %s" % [name, of])


func expect_hidden(of: Object, names: Array) -> void:
	for name: String in names:
		expect(name not in shown_settings(of) and not property_of(of, name).is_empty(), "%s is not hidden of %s" % [name, of])


## The action or condition complains in these words, a text or a list of them, and a condition says no. Options as for
## [method StoryWords.machine].
func expect_warns(of: Resource, texts: Variant, options: Dictionary = {}) -> void:
	var made := asker(stage, options) if of is SCMachineCondition else play(of, {}, options)
	if of is SCMachineCondition:
		for times in 2:
			expect(not ask(made, of), "it says yes")
	for text: String in texts if texts is Array else [texts]:
		expect_warning(text)
	made.free()


## Each row is a condition and its answer.
func expect_answers(of: SCMachine, rows: Array, what: String = "") -> void:
	for row: Array in rows:
		var asked: SCMachineCondition = row[0]
		expect_equal(ask(of, asked), row[1], _prefix(what) + asked.shown_summary())


## The events that reached the machine since it was asked last, but for FINISHED.
func expect_events(of: SCMachine, wanted: Array) -> void:
	var got := events_of(of)
	if got != wanted:
		_fail("%s got the events %s, wanted %s" % [of.name, got, wanted], true, of)
	got.clear()


## The event leads to that state, or to those states when it is a list of them.
func expect_after(of: SCMachine, event: StringName, wanted: Variant, data: Variant = null) -> void:
	of.send_event(event, data)
	if wanted is Array:
		expect_states(of, wanted)
	else:
		expect_state(of, wanted)


## It is in that state when so much game time has passed.
func expect_later(of: SCMachine, seconds: float, wanted: StringName) -> void:
	await advance(seconds)
	expect_state(of, wanted)


## Plays a script that extends SceneTree in an engine of its own, which must quit by itself, with 0, and print no errors but
## those whose texts hold one of [param errors], of which each must come. It may warn.
func expect_survives(script: String, errors: Array = []) -> void:
	var printed: Array = []
	var status := OS.execute("timeout", [
		str(SECONDS_TO_SURVIVE), OS.get_executable_path(), "--headless", "--no-header", "--fixed-fps", str(FPS), "--quit-after", "600", "--path", ProjectSettings.globalize_path("res://"), "-s", script,
	], printed, true)
	var missing := errors.duplicate()
	for line in ("\n".join(printed)).split("\n"):
		var is_error := line.begins_with("ERROR: ") or line.begins_with("SCRIPT ERROR: ") or line.begins_with("FAIL")
		if is_error and not errors.any(func(part: String) -> bool: return part in line):
			_fail("%s: %s" % [script.get_file(), line], false)
		missing = missing.filter(func(part: String) -> bool: return not (is_error and part in line))
	expect_equal(missing, [], "%s does not say" % script.get_file())
	expect("survived" in "\n".join(printed), "%s does not come to its end" % script.get_file())
	expect_equal(status, 0, "the exit status of %s" % script.get_file())


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


## Of a debug build alone.
func expect_debug_warning(part: String) -> void:
	if not released:
		expect_warning(part)


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


## A test of these lines passes in an engine of its own: for what would end or freeze this one if it went wrong.
func expect_passes_alone(lines: String) -> void:
	var path := "user://survives.gd"
	var file := FileAccess.open(path, FileAccess.WRITE)
	file.store_string("extends Story\n\n\nfunc test_it_survives() -> void:\n%s\n" % lines.dedent().strip_edges().indent("\t"))
	file.close()
	var said: Array[String] = []
	var exit_code := OS.execute("timeout", [
		str(SECONDS_TO_SURVIVE), OS.get_executable_path(), "--headless", "--no-header", "--fixed-fps", str(FPS), "--path", ProjectSettings.globalize_path("res://"),
		"-s", "res://tests/framework/run.gd", "--", "--file=%s" % path,
	], said, true)
	DirAccess.remove_absolute(path)
	if exit_code != 0:
		_fail("another engine ended with %d: %s" % [exit_code, "".join(said).right(2000)])


func current(of: SCMachine) -> StringName:
	var at: SCMachineState = of.current_state
	return at.state_name if at != null else &""


func current_states(of: SCMachine) -> PackedStringArray:
	var names: PackedStringArray = []
	for at: SCMachineState in of.active_states():
		names.append(at.state_name)
	return names


## The list that [method expect_events] looks at. It grows as events come.
func events_of(of: SCMachine) -> Array[String]:
	return (of.get_meta(&"trail") as Trail).events


## What the inspector lists, but for the script.
func shown_settings(of: Object) -> Array[String]:
	var names: Array[String] = []
	for property in of.get_property_list():
		var is_shown: bool = property["usage"] & PROPERTY_USAGE_EDITOR and not property["usage"] & (PROPERTY_USAGE_GROUP | PROPERTY_USAGE_SUBGROUP)
		if is_shown and property["name"] != "script":
			names.append(property["name"])
	return names


## What the engine says of one property; empty when there is none.
func property_of(of: Object, name: String) -> Dictionary:
	for property in of.get_property_list():
		if property["name"] == name:
			return property
	return {}


## Puts everything that machines share back as it is when a game begins.
func _forget_what_is_shared() -> void:
	var machines := SCMachine.machines_in_the_scene()
	if not machines.is_empty():
		_fail("left machines in the table: %s" % [machines], false)
	SharedState.forget(tree)


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


## Where the machine in question stands, else all of the scene.
func _report(of: SCMachine) -> PackedStringArray:
	var lines: PackedStringArray = []
	for told: SCMachine in SCMachine.machines_in_the_scene() if of == null else [of]:
		lines.append("%s: %s, in %s" % [told.name, "running" if told.is_running() else "stopped", current_states(told)])
		lines.append("  values %s" % [told.values])
		var trail: Trail = told.get_meta(&"trail") if told.has_meta(&"trail") else null
		if trail != null and not trail.lines.is_empty():
			lines.append("  last %s" % ", ".join(trail.lines))
	return lines


func _is_number(value: Variant) -> bool:
	return value is float or value is int


func _distance(a: Variant, b: Variant) -> float:
	if _is_number(a):
		return absf(a - b)
	if a is Color:
		return Vector4(a.r, a.g, a.b, a.a).distance_to(Vector4(b.r, b.g, b.b, b.a))
	return a.distance_to(b)


func _is_text(value: Variant) -> bool:
	return value is String or value is StringName


func _prefix(what: String) -> String:
	return "" if what.is_empty() else what + ": "


func _quoted(name: StringName) -> String:
	return "no state" if name.is_empty() else String(name)
