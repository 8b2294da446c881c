extends RefCounted
## Counts everything that could be left behind, so that two moments can be compared. What an awaiting function holds on to
## is left out: it is the run's own.

const CarryOver := preload("res://addons/quillstead/runtime/quillstead_carry_over.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const Filling := preload("res://tests/fuzz/filling.gd")
const Town := preload("res://tests/fuzz/town.gd")

const COMPANIONS: String = "res://addons/quillstead/runtime"
const AWAITING: String = "GDScriptFunctionState"

var counts: Dictionary[String, int] = {}


func _init(tree: SceneTree) -> void:
	counts["objects"] = int(Performance.get_monitor(Performance.OBJECT_COUNT))
	counts["resources"] = int(Performance.get_monitor(Performance.OBJECT_RESOURCE_COUNT))
	counts["nodes"] = int(Performance.get_monitor(Performance.OBJECT_NODE_COUNT))
	counts["orphans"] = int(Performance.get_monitor(Performance.OBJECT_ORPHAN_NODE_COUNT))
	for id in Node.get_orphan_node_ids():
		_count("orphan %s" % instance_from_id(id).get_class())
	_count_connections(tree)
	_count_nodes(tree.root)
	for name in Engine.get_singleton_list():
		_count_connections(Engine.get_singleton(name))
	for file in DirAccess.get_files_at(COMPANIONS):
		var path := COMPANIONS.path_join(file)
		if file.get_extension() == "gd" and ResourceLoader.has_cached(path):
			_count_connections(load(path))
	_count_game(tree)


## How many bytes are in use. Not among the counts, as what is kept for later use makes it go up and down.
static func memory() -> int:
	return OS.get_static_memory_usage()


## A line for everything there is more or less of than in [param before].
func differences_from(before: Dictionary[String, int]) -> PackedStringArray:
	var lines: PackedStringArray = []
	for what: String in before.merged(counts):
		var change: int = counts.get(what, 0) - before.get(what, 0)
		if change != 0:
			lines.append("%+d %s" % [change, what])
	return lines


func _count(what: String, times: int = 1) -> void:
	counts[what] = counts.get(what, 0) + times


func _count_nodes(node: Node) -> void:
	var path := node.get_path()
	_count("node %s (%s)" % [path, node.get_class()])
	if node.is_processing():
		_count("frame callback of %s" % path)
	if node.is_physics_processing():
		_count("physics callback of %s" % path)
	if node is SCFastLane:
		_count("jobs in the lane", (node as SCFastLane).job_count())
	for group in node.get_groups():
		_count("group %s of %s" % [group, path])
	_count_connections(node)
	for child in node.get_children(true):
		_count_nodes(child)


func _count_connections(source: Object) -> void:
	var name := str((source as Node).get_path()) if source is Node else (source as Script).resource_path.get_file() if source is Script else source.get_class()
	for told in source.get_signal_list():
		for connection: Dictionary in source.get_signal_connection_list(told["name"]):
			var callable: Callable = connection["callable"]
			var listener := callable.get_object()
			if listener == null or listener.get_class() != AWAITING:
				_count("connection %s.%s to %s" % [name, told["name"], _words_for(listener, callable.get_method())])
	for connection in source.get_incoming_connections():
		var heard: Signal = connection["signal"]
		_count("connection to %s from %s" % [name, _words_for(heard.get_object(), heard.get_name())])


## Without the id, which is another one every time.
func _words_for(of: Object, name: StringName) -> String:
	return "%s.%s" % ["a function" if of == null else of.get_class(), name]


func _count_game(tree: SceneTree) -> void:
	_count("tweens", tree.get_processed_tweens().size())
	_count("machines running", SCMachine.machines_running())
	_count("machines in the scene", SCMachine.machines_in_the_scene().size())
	_count("records to carry over", int(CarryOver.is_waiting()))
	_count("warnings said", MakerWarnings._said.size())
	_count("measuring", int(SCMachine.get_measuring()))
	_count("paused", int(tree.paused))
	_count("time scale in percent", roundi(Engine.time_scale * 100.0))
	for name: StringName in SCMachine.global_names():
		_count("global %s" % name)
	for event in Filling.EVENTS:
		_count("event %s for everybody" % event, int(SCMachine.is_global_event(event)))
	_count("group of runners", int(tree.has_group(Town.RUNNERS)))
