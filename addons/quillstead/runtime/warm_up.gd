extends RefCounted
## Reads the files that a template will need before it needs them.
##
## Settings may name a file by its path: a sound, a picture, a scene to make copies of. Reading one of them in the
## middle of play would be felt, so all of them are read in the background as the first machine of a template becomes
## ready, and kept.

## Kinds that go on to a whole other scene. That is read when it is gone to, and not kept in memory from the start.
const LEFT_ALONE: Array[StringName] = [&"SCChangeSceneAction", &"SCSaveGameAction"]

# By path; null for one that could not be read.
static var _files: Dictionary[String, Resource] = {}
static var _being_read: PackedStringArray = []


## Begins to read what the states of [param template] name by path, for [param machine], which is about to run it.
static func warm_up(machine: SCMachine, template: SCMachineTemplate) -> void:
	var seen: Dictionary[Object, bool] = {}
	for state: SCMachineState in template.all_states():
		for action: SCMachineAction in state.actions:
			_read_files_of(action, seen)
	if not _being_read.is_empty() and machine.is_inside_tree():
		_collect_in(machine.get_tree())


# Conditions and the like stand in settings of their action, at any depth.
static func _read_files_of(holder: Resource, seen: Dictionary[Object, bool]) -> void:
	if holder == null or seen.has(holder):
		return
	seen[holder] = true
	if LEFT_ALONE.has(StringName(holder.get_class())):
		return
	for property in holder.get_property_list():
		if property.usage & PROPERTY_USAGE_STORAGE == 0:
			continue
		if property.type == TYPE_STRING and property.hint == PROPERTY_HINT_FILE:
			_read(holder.get(property.name))
		elif property.type == TYPE_OBJECT and holder.get(property.name) is SCMachineCondition:
			_read_files_of(holder.get(property.name), seen)


static func _read(path: String) -> void:
	if path.is_empty() or _files.has(path) or not ResourceLoader.exists(path):
		return
	_files[path] = null
	if ResourceLoader.load_threaded_request(path) == OK:
		_being_read.append(path)


# What has been asked for must be fetched, also when the game ends before all of it was read.
static func _collect_in(tree: SceneTree) -> void:
	var collect := _collect.bind(tree, false)
	if not tree.process_frame.is_connected(collect):
		tree.process_frame.connect(collect)
		tree.root.tree_exiting.connect(_collect.bind(tree, true))


static func _collect(tree: SceneTree, waits: bool) -> void:
	for path in _being_read.duplicate():
		if waits or ResourceLoader.load_threaded_get_status(path) != ResourceLoader.THREAD_LOAD_IN_PROGRESS:
			_being_read.remove_at(_being_read.find(path))
			_files[path] = ResourceLoader.load_threaded_get(path)
	if _being_read.is_empty():
		tree.process_frame.disconnect(_collect.bind(tree, false))
		tree.root.tree_exiting.disconnect(_collect.bind(tree, true))
