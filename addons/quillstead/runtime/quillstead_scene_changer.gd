extends Node
## Goes from one scene to the next, for the action Change Scene: fades, loads in the background, takes along what carries over, brings
## a scene that was left back as it was, and stands the player at a spot.
##
## The old scene runs on until the new one is loaded, and a load that fails leaves it running. One change goes on at a time: until the
## new scene is there, another one asked for does nothing. One asked for while that fades in comes after.

const Arrival := preload("res://addons/quillstead/runtime/quillstead_arrival.gd")
const CarryOver := preload("res://addons/quillstead/runtime/quillstead_carry_over.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const Record := preload("res://addons/quillstead/runtime/quillstead_scene_record.gd")
const ScenesLeft := preload("res://addons/quillstead/runtime/quillstead_scenes_left.gd")
const ScreenFade := preload("res://addons/quillstead/runtime/quillstead_screen_fade.gd")

## The meta of the machine handed to [method go] that says which event to send when the scene cannot be loaded.
const FAILED_EVENT: StringName = &"quillstead_failed_event"
## What the node under the root is called while a change goes on.
const NAME: StringName = &"QuillSteadSceneChanger"
# A new scene draws itself for the first time under the loading screen.
const _FRAMES_TO_SETTLE: int = 2
# How long a frame waits for the loader, so that frames with nothing to do but that do not outrun it: behind a cover that nobody sees
# a frame less on, and behind a loading screen that may move.
const _WAIT_COVERED_USEC: int = 50_000
const _WAIT_SHOWN_USEC: int = 2_000
const _WORKER_ENDS_USEC: int = 2_000

## How many seconds a load may stand still before it counts as failed.
static var patience: float = 60.0

# The one that is under way, 0 for none.
static var _running: int = 0
# Asked for, and not begun yet.
static var _asked: Order
# The frame in which a scene came.
static var _came_in: int = -1
# Loads that nobody waits for any more.
static var _given_up: PackedStringArray = []


## A change that was asked for.
class Order:
	extends RefCounted

	var tree: SceneTree
	var path: String
	var packed: PackedScene
	var fade_seconds: float
	var fade_colour: Color
	var loading_screen: PackedScene
	var progress_variable: StringName
	var arrive_at: StringName
	var reloading: bool
	var machine_id: int
	var asked_by: String
	var failed_event: StringName
	var after_swap: Callable
	var was_paused: bool

	func is_for_somebody_gone() -> bool:
		return machine_id != 0 and not is_instance_id_valid(machine_id)

	## What the scene is called in a sentence.
	func scene_name() -> String:
		return path if not path.is_empty() else "the scene"

	## Tells the game maker why, and the machine that it failed.
	func fail(why: String) -> void:
		MakerWarnings.say("Change Scene on %s: %s, so the game stays in the scene it is in. Open it in the editor to see what is wrong with it." % [asked_by, why])
		var machine: SCMachine = instance_from_id(machine_id) as SCMachine if is_instance_id_valid(machine_id) else null
		if machine != null and machine.is_running() and not failed_event.is_empty():
			machine.send_event(failed_event)


enum _Phase { FADING_OUT, SETTLING, FADING_IN }

var _order: Order
var _next: Order
var _phase: _Phase = _Phase.FADING_OUT
var _packed: PackedScene
var _is_loading: bool = false
var _has_waited: bool = false
var _is_swapping: bool = false
# The highest that was told, as the engine's own may go back.
var _progress: float = 0.0
var _stands_still_since: int = 0
var _shown: Node
# Somebody else covers the screen, and takes that away again.
var _stays_covered: bool = false
var _frames_left: int = _FRAMES_TO_SETTLE


## Goes to the scene at [param path], or to [param packed] when that is empty. Both fades take [param fade_seconds]; without them,
## without a loading screen and without anybody who has the global variable [param progress_variable], the change is made at the end
## of this frame. [param reloading] begins the same scene anew, and nothing comes along but what came into it. [param machine] is told
## when the scene cannot be loaded, and may be null. [param after_swap], which may be empty, is called when the old scene has gone.
static func go(tree: SceneTree, path: String, packed: PackedScene, fade_seconds: float, fade_colour: Color, loading_screen: PackedScene,
		progress_variable: StringName, arrive_at: StringName, reloading: bool, machine: Node, after_swap: Callable) -> void:
	if tree == null:
		return
	var order := Order.new()
	order.tree = tree
	order.path = path
	order.packed = packed
	order.fade_seconds = fade_seconds if is_finite(fade_seconds) else 0.0
	order.fade_colour = fade_colour
	order.loading_screen = loading_screen
	order.progress_variable = progress_variable
	order.arrive_at = arrive_at
	order.reloading = reloading
	order.after_swap = after_swap
	order.was_paused = tree.paused
	order.asked_by = "the game"
	if machine != null:
		order.machine_id = machine.get_instance_id()
		order.asked_by = machine.name
		order.failed_event = machine.get_meta(FAILED_EVENT, &"")
	var running := _under_way()
	if running != null and running._phase != _Phase.FADING_OUT and running._next == null:
		running._next = order
	elif running == null and _asked == null:
		_ask(order)


## Puts a fresh instance of [param packed] in the place of [param old] at the end of this frame, or beside everything when that is
## null. What [param record] holds of it, unless it is empty, is put back. A change that is under way is given up.
static func swap(tree: SceneTree, old: Node, packed: PackedScene, record: Dictionary, after_swap: Callable) -> void:
	if tree != null:
		_swap.call_deferred(tree, old.get_instance_id() if old != null else 0, packed, record, after_swap)


## Whether a change is under way that has not come to the new scene yet.
static func is_leaving() -> bool:
	var running := _under_way()
	return _asked != null or (running != null and running._phase == _Phase.FADING_OUT)


## Ends whatever is under way, for a game that begins anew.
static func forget() -> void:
	_asked = null
	var running := _under_way()
	if running != null:
		running._next = null
		running._end()
	_tidy_given_up()


func _init() -> void:
	name = NAME
	process_mode = PROCESS_MODE_ALWAYS
	# What the old scene does in its last frame counts.
	process_priority = 1_000_000


func _exit_tree() -> void:
	if _is_loading:
		_is_loading = false
		_given_up.append(_order.path)


# Keys and clicks reach nothing until the new scene is in sight.
func _input(_event: InputEvent) -> void:
	get_viewport().set_input_as_handled()


func _process(_delta: float) -> void:
	match _phase:
		_Phase.FADING_OUT:
			_go_on_leaving()
		_Phase.SETTLING:
			_frames_left -= 1
			if _frames_left <= 0:
				_come_into_sight()
		_Phase.FADING_IN:
			if _is_fade_at_rest():
				_end()


static func _under_way() -> Node:
	var found: Node = instance_from_id(_running) if is_instance_id_valid(_running) else null
	return found if found != null and not found.is_queued_for_deletion() else null


# Not within the call that asked for it: that may be in the middle of a signal, or of setting up the scene. Two scenes that lead to
# each other as they begin have a frame each, and do not freeze the game.
static func _ask(order: Order) -> void:
	_asked = order
	if _came_in == Engine.get_process_frames():
		order.tree.process_frame.connect(_begin.bind(order), CONNECT_ONE_SHOT)
	else:
		_begin.call_deferred(order)


static func _begin(order: Order) -> void:
	# Given up in the meantime.
	if _asked != order:
		return
	_asked = null
	_tidy_given_up()
	if order.fade_seconds > 0.0 or order.loading_screen != null or _is_watched(order.progress_variable):
		var change := new()
		change._order = order
		_running = change.get_instance_id()
		order.tree.root.add_child(change)
		change._set_out()
		return
	var packed := order.packed
	if packed == null:
		packed = load(order.path) as PackedScene
	if packed != null and not order.progress_variable.is_empty():
		SCMachine.set_global_value(order.progress_variable, 1.0)
	if packed == null or not _exchange(order, packed):
		order.fail("%s could not be loaded" % order.scene_name())


static func _swap(tree: SceneTree, old_id: int, packed: PackedScene, record: Dictionary, after_swap: Callable) -> void:
	var old: Node = instance_from_id(old_id) if old_id != 0 and is_instance_id_valid(old_id) else null
	var fresh := _made_of(packed)
	if fresh == null:
		var which := packed.resource_path if packed != null else "the scene"
		MakerWarnings.say("%s could not be made, so the game stays in the scene it is in. Open it in the editor to see what is wrong with it." % which)
		return
	forget()
	_put_in_place_of(tree, old, fresh, record, after_swap, Callable())


static func _is_watched(variable: StringName) -> bool:
	if variable.is_empty():
		return false
	for machine: SCMachine in SCMachine.machines_in_the_scene():
		if machine.has_value(variable) and SCMachine._is_global_in(machine.variables, variable):
			return true
	return false


static func _made_of(packed: PackedScene) -> Node:
	return packed.instantiate() if packed != null and packed.can_instantiate() else null


# False when nothing can be made of the scene, and then nothing has changed.
static func _exchange(order: Order, packed: PackedScene) -> bool:
	var fresh := _made_of(packed)
	if fresh == null:
		return false
	order.tree.paused = order.was_paused
	var old := order.tree.current_scene
	var record := {}
	if order.reloading:
		if old != null:
			CarryOver.gather_again(old)
		ScenesLeft.forget(order.path)
	elif CarryOver.gather(old):
		if old != null:
			ScenesLeft.remember(old)
		record = Arrival.without_those_who_come(fresh, ScenesLeft.record_for(packed.resource_path))
	else:
		ScenesLeft.forget_all()
	var before_it_enters := Callable()
	if not order.arrive_at.is_empty():
		before_it_enters = Arrival.prepare.bind(fresh, order.arrive_at)
	_put_in_place_of(order.tree, old, fresh, record, order.after_swap, before_it_enters)
	if not order.arrive_at.is_empty() and is_instance_valid(fresh) and fresh.is_inside_tree():
		Arrival.finish(fresh, order.arrive_at, order.asked_by)
	return true


static func _put_in_place_of(tree: SceneTree, old: Node, fresh: Node, record: Dictionary, after_swap: Callable, before_it_enters: Callable) -> void:
	var parent: Node = tree.root
	var at := -1
	var is_current := old == null or old == tree.current_scene
	if old != null:
		if old.get_parent() != null:
			parent = old.get_parent()
			at = old.get_index()
			parent.remove_child(old)
		# Whoever leaves may have freed it.
		if is_instance_valid(old):
			old.free()
	_came_in = Engine.get_process_frames()
	if after_swap.is_valid():
		after_swap.call()
	if not is_instance_valid(parent):
		parent = tree.root
	if not record.is_empty():
		Record.prepare(fresh, record)
	if before_it_enters.is_valid():
		before_it_enters.call()
	if is_current and parent == tree.root:
		# Before its machines begin, which ask for it.
		fresh.tree_entered.connect(tree.set.bind(&"current_scene", fresh), CONNECT_ONE_SHOT)
	parent.add_child(fresh)
	if not is_instance_valid(fresh) or fresh.get_parent() != parent:
		return
	if at >= 0:
		parent.move_child(fresh, mini(at, parent.get_child_count() - 1))
	if not record.is_empty():
		Record.put_back(fresh, record)
	if is_current:
		tree.scene_changed.emit()


# Not as it becomes ready, when the root takes no other children.
func _set_out() -> void:
	_packed = _order.packed
	if _packed == null and not _begin_loading():
		_fail("%s could not be loaded" % _order.scene_name())
		return
	if _order.fade_seconds > 0.0:
		var fade := ScreenFade.of(_order.tree)
		_stays_covered = fade.share >= 1.0
		if not _stays_covered:
			fade.take_colour(_order.fade_colour)
			fade.fade(1.0, _order.fade_seconds)
	_tell_progress(0.0 if _is_loading else 1.0)
	if _is_loading and _order.fade_seconds <= 0.0:
		_show_loading_screen()


func _begin_loading() -> bool:
	if ResourceLoader.has_cached(_order.path):
		_packed = load(_order.path) as PackedScene
		return _packed != null
	# Without sub-threads, which have hung.
	_is_loading = ResourceLoader.load_threaded_request(_order.path, "PackedScene", false) == OK
	_stands_still_since = Time.get_ticks_msec()
	return _is_loading


func _go_on_leaving() -> void:
	if _is_swapping:
		return
	var is_fading := not _is_fade_at_rest()
	if _is_loading:
		if not is_fading:
			_wait_for_loader()
		if not _look_at_load():
			return
	if is_fading:
		return
	if _is_loading:
		_show_loading_screen()
		return
	_is_swapping = true
	_change.call_deferred()


func _wait_for_loader() -> void:
	var is_covered := _order.fade_seconds > 0.0 and _shown == null and not _has_waited
	var until := Time.get_ticks_usec() + (_WAIT_COVERED_USEC if is_covered else _WAIT_SHOWN_USEC)
	_has_waited = true
	while Time.get_ticks_usec() < until:
		if ResourceLoader.load_threaded_get_status(_order.path) != ResourceLoader.THREAD_LOAD_IN_PROGRESS:
			return
		OS.delay_usec(100)


# False when it has failed.
func _look_at_load() -> bool:
	var parts: Array = []
	var why := ""
	match ResourceLoader.load_threaded_get_status(_order.path, parts):
		ResourceLoader.THREAD_LOAD_LOADED:
			_packed = _take_loaded(_order.path)
			_is_loading = false
			why = "%s is no scene" % _order.scene_name() if _packed == null else ""
		ResourceLoader.THREAD_LOAD_IN_PROGRESS:
			var share: float = parts[0] if not parts.is_empty() else 0.0
			if share > _progress:
				_stands_still_since = Time.get_ticks_msec()
			elif Time.get_ticks_msec() - _stands_still_since >= patience * 1000.0:
				why = "%s has not been loaded in %s seconds" % [_order.scene_name(), patience]
			if share > _progress and share < 1.0:
				_tell_progress(share)
		var status:
			if status == ResourceLoader.THREAD_LOAD_FAILED:
				_take_loaded(_order.path)
				_is_loading = false
			why = "%s could not be loaded" % _order.scene_name()
	if not why.is_empty():
		_fail(why)
		return false
	if not _is_loading:
		_tell_progress(1.0)
	return true


# Also of what could not be loaded, which stays in the loader's books otherwise. While its worker is about to end, Godot 4.6 loses
# what it keeps of a request.
static func _take_loaded(from: String) -> PackedScene:
	OS.delay_usec(_WORKER_ENDS_USEC)
	return ResourceLoader.load_threaded_get(from) as PackedScene


static func _tidy_given_up() -> void:
	var left: PackedStringArray = []
	for given_up in _given_up:
		match ResourceLoader.load_threaded_get_status(given_up):
			ResourceLoader.THREAD_LOAD_IN_PROGRESS:
				left.append(given_up)
			ResourceLoader.THREAD_LOAD_LOADED, ResourceLoader.THREAD_LOAD_FAILED:
				_take_loaded(given_up)
	_given_up = left


# May run the game's code.
func _tell_progress(share: float) -> void:
	_progress = share
	if not _order.progress_variable.is_empty():
		SCMachine.set_global_value(_order.progress_variable, share)


func _show_loading_screen() -> void:
	if _shown != null or _order.loading_screen == null:
		return
	var screen := _made_of(_order.loading_screen)
	if screen == null:
		MakerWarnings.once_for(null, "no loading screen:%s" % _order.loading_screen.resource_path,
			"Change Scene on %s: nothing can be made of its Loading Screen, so none is shown. Pick another scene there." % _order.asked_by)
		_order.loading_screen = null
		return
	_shown = CanvasLayer.new()
	(_shown as CanvasLayer).layer = ScreenFade.ABOVE_ALL + 1
	_shown.name = "LoadingScreen"
	if screen is CanvasLayer:
		(screen as CanvasLayer).layer = ScreenFade.ABOVE_ALL + 1
	add_child(_shown)
	if screen is Node3D:
		_shown.add_child(_in_a_world_of_its_own(screen))
	else:
		_shown.add_child(screen)


# Else it would stand in the middle of the old scene.
func _in_a_world_of_its_own(screen: Node) -> Node:
	var picture := SubViewportContainer.new()
	picture.set_anchors_preset(Control.PRESET_FULL_RECT)
	picture.stretch = true
	var world := SubViewport.new()
	world.own_world_3d = true
	world.add_child(screen)
	picture.add_child(world)
	return picture


func _change() -> void:
	# Given up in the meantime.
	if _under_way() != self:
		return
	if not _exchange(_order, _packed):
		_fail("nothing can be made of %s" % _order.scene_name())
		return
	_phase = _Phase.SETTLING


func _come_into_sight() -> void:
	_phase = _Phase.FADING_IN
	if is_instance_valid(_shown):
		_shown.queue_free()
	_uncover()


func _uncover() -> void:
	var fade := ScreenFade.there_is()
	if fade != null and _order.fade_seconds > 0.0 and not _stays_covered:
		fade.fade(0.0, _order.fade_seconds)


func _is_fade_at_rest() -> bool:
	var fade := ScreenFade.there_is()
	return fade == null or _order.fade_seconds <= 0.0 or fade.is_at_rest()


# The machine may ask for another change as it hears of it.
func _fail(why: String) -> void:
	_uncover()
	_end()
	_order.fail(why)


func _end() -> void:
	_running = 0
	if _phase == _Phase.FADING_OUT:
		_uncover()
	if _next != null and not _next.is_for_somebody_gone():
		_next.was_paused = _next.tree.paused
		_ask(_next)
	_next = null
	if is_inside_tree():
		queue_free()
	else:
		free()
