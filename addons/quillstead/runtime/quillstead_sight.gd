extends RefCounted
## What all Perception nodes share: the clock they go by, who of them has something to do in a physics frame, and how many rays
## the frame may cast for them together.
##
## A game with more watchers than its frames can carry turns [member rays_per_frame] down. Everybody still gets a turn in the
## order in which they asked, only later.

## How many rays all Perception nodes together cast at most in one physics frame.
static var rays_per_frame: int = 120
## Seconds of the physics frames there were. Whoever is paused takes the time off that it stood still.
static var now: float = 0.0

const SLICES_A_SECOND: float = 512.0
const SLICES: int = 2048
## What sums of seconds may be wrong by.
const ROUNDING: float = 0.0001
## A watcher that comes too early by so little is on time, in seconds: it is woken at the beginning of a slice.
const ON_TIME: float = 1.0 / SLICES_A_SECOND + ROUNDING

# Of this physics frame.
static var _frame: int = -1
static var _cast: int = 0
static var _most_cast: int = 0
# Ids of the watchers whose look is due, and how many of them have had it.
static var _waiting: PackedInt64Array = []
static var _served: int = 0
static var _is_serving: bool = false
# The members of a group, asked for once in a physics frame.
static var _members: Dictionary[StringName, Array] = {}
static var _members_frame: int = -1
# Ids by the slice of time in which they have something to do; the ring comes round to a slice after a few seconds. Who put off
# what it was woken for is found in its old slice as well, and knows that itself.
static var _slices: Array[PackedInt64Array] = []
static var _slice: int = 0
# Of those whose time has come already, and who are woken in the next frame.
static var _overdue: PackedInt64Array = []
# By the id of a target, the ids of those who keep it in mind.
static var _minded: Dictionary[int, Dictionary] = {}
static var _tree: SceneTree
static var _watchers: int = 0


## A watcher came into the tree.
static func enter(tree: SceneTree) -> void:
	_watchers += 1
	if _slices.is_empty():
		_slices.resize(SLICES)
	if _tree != tree or not tree.physics_frame.is_connected(_step):
		_tree = tree
		tree.physics_frame.connect(_step)


## A watcher left the tree.
static func leave() -> void:
	_watchers -= 1
	if _watchers == 0 and _tree.physics_frame.is_connected(_step):
		_tree.physics_frame.disconnect(_step)


## The slice of time in which to wake a watcher that has something to do at [param time], which may be sooner than that.
static func slice_at(time: float) -> int:
	return int(clampf((time - ROUNDING) * SLICES_A_SECOND, _slice, _slice + SLICES - 1))


## Wakes a watcher in that slice.
static func wake_in(slice: int, watcher: Node) -> void:
	if slice <= _slice:
		_overdue.append(watcher.get_instance_id())
	else:
		_slices[slice & (SLICES - 1)].append(watcher.get_instance_id())


## Tells a watcher when [param target] has been freed.
static func mind(target: int, watcher: Node) -> void:
	if not _minded.has(target):
		_minded[target] = {}
	_minded[target][watcher.get_instance_id()] = true


static func mind_no_more(target: int, watcher: Node) -> void:
	if _minded.has(target):
		_minded[target].erase(watcher.get_instance_id())
		if _minded[target].is_empty():
			_minded.erase(target)


## Whether the physics can be asked just now: not between its frames where they run on a thread of their own.
static func may_ask_now(in_3d: bool) -> bool:
	return Engine.is_in_physics_frame() or not ProjectSettings.get_setting_with_override(
		&"physics/3d/run_on_separate_thread" if in_3d else &"physics/2d/run_on_separate_thread")


## How many rays are left in this physics frame.
static func rays_left() -> int:
	var frame := Engine.get_physics_frames()
	if frame != _frame:
		_frame = frame
		_cast = 0
	return maxi(rays_per_frame, 1) - _cast


static func count_rays(count: int) -> void:
	_cast += count
	_most_cast = maxi(_most_cast, _cast)


## Puts a watcher at the end of the row.
static func wait_for_turn(watcher: Node) -> void:
	_waiting.append(watcher.get_instance_id())


## Gives those who wait their look, the first of them first, for as many rays as are left.
static func serve() -> void:
	if _is_serving or _waiting.is_empty():
		return
	_is_serving = true
	rays_left()
	while _served < _waiting.size() and _cast < maxi(rays_per_frame, 1):
		var watcher := instance_from_id(_waiting[_served])
		_served += 1
		if watcher != null and not watcher.take_turn():
			_served -= 1
			break
	if _served >= _waiting.size():
		_waiting.clear()
		_served = 0
	_is_serving = false


static func members_of(group: StringName, tree: SceneTree) -> Array:
	var frame := Engine.get_physics_frames()
	if frame != _members_frame or not Engine.is_in_physics_frame():
		_members_frame = frame
		_members.clear()
	if not _members.has(group):
		_members[group] = tree.get_nodes_in_group(group)
	return _members[group]


# Before the scene's own physics frame. A tree that stands still altogether, as when the editor holds it, has no time.
static func _step() -> void:
	if not _tree.root.can_process() and not _tree.paused:
		return
	now += _tree.root.get_physics_process_delta_time()
	var first := _slice + 1
	_slice = floori(now * SLICES_A_SECOND)
	rays_left()
	if not _overdue.is_empty():
		var overdue := _overdue
		_overdue = []
		_wake(overdue)
	for slice in range(maxi(first, _slice - SLICES + 1), _slice + 1):
		var place := slice & (SLICES - 1)
		if not _slices[place].is_empty():
			var due := _slices[place]
			_slices[place] = []
			_wake(due)
	_tell_of_the_gone()
	serve()


static func _wake(watchers: PackedInt64Array) -> void:
	var slice := _slice
	for id in watchers:
		var watcher := instance_from_id(id)
		if watcher == null:
			continue
		var next: int = watcher.wake(slice, now, _waiting.is_empty() and _cast < rays_per_frame)
		if next <= slice:
			_overdue.append(id)
		elif next < slice + SLICES:
			_slices[next & (SLICES - 1)].append(id)


static func _tell_of_the_gone() -> void:
	var gone: PackedInt64Array = []
	for target in _minded:
		if not is_instance_id_valid(target):
			gone.append(target)
	for target in gone:
		var minders := _minded[target]
		_minded.erase(target)
		for id: int in minders:
			var watcher := instance_from_id(id)
			if watcher != null:
				watcher.lose_the_gone()
