class_name SCBullets
extends Node
## Moves the bullets of the action Bullet Pattern, all of them together, and plays the sounds of shots.
##
## It comes by itself with the first bullet, at the top of the tree, and goes with the last. A bullet is an ordinary node that a game
## may free whenever it likes, for instance every bullet when a boss dies. While it flies the physics know nothing of it: its own area
## sends no signals, and no other notices it.

const STEP: StringName = &"bullets_step"
const REDIRECT: StringName = &"bullets_redirect"
const NODE_NAME: StringName = &"QuillsteadBullets"
## After everything that they may meet has moved.
const LAST: int = 1000
## So many copies of a sound begin in one frame, and so many are heard together.
const MOST_COPIES_AT_ONCE: int = 3
const MOST_COPIES: int = 8
## How long a sound is played that does not say when it ends, or never does.
const LONGEST_SOUND: float = 10.0
const MASTER: StringName = &"Master"

static var _keeper_id: int = 0
# By the id of the sound.
static var _copies: Dictionary[int, Copies] = {}


# The players of one sound.
class Copies:
	extends RefCounted

	var frame: int = -1
	var begun: int = 0
	var players: Array[int] = []

	func drop_the_gone() -> void:
		players = players.filter(func(id: int) -> bool: return is_instance_id_valid(id))


## Sends a bullet that is in flight another way, such as back from where it came: for a sword or a mirror that is hit by it, which
## finds it as the sender of the event, or as the attacker of its Hurt Box. [param direction] is a Vector2 in 2D and a Vector3 in 3D,
## where its height does not count. It now belongs to [param shooter], who is not hit by it any more, and hits [param hits_group];
## null and no name leave these as they were. False when it is no bullet in flight.
static func redirect(bullet: Node, direction: Variant, shooter: Node = null, hits_group: StringName = &"") -> bool:
	return SCMachineBase.native_helper(REDIRECT, [bullet, direction, shooter, hits_group])


## Sees to it that somebody moves the bullets of [param tree]. Called with each shot.
static func look_after(tree: SceneTree) -> void:
	if is_instance_id_valid(_keeper_id) and not (instance_from_id(_keeper_id) as Node).is_queued_for_deletion():
		return
	var keeper := new()
	keeper.name = NODE_NAME
	_keeper_id = keeper.get_instance_id()
	_add_to.call_deferred(tree.root.get_instance_id(), _keeper_id)


## Plays the sound of a shot at a place, under [param parent], unless enough of it is heard already.
static func play(parent: Node, place: Variant, sound: AudioStream, bus: StringName) -> void:
	var copies: Copies = _copies.get(sound.get_instance_id())
	if copies == null:
		_forget_silent()
		copies = Copies.new()
		_copies[sound.get_instance_id()] = copies
	var frame := Engine.get_process_frames()
	if copies.frame != frame:
		copies.frame = frame
		copies.begun = 0
	if copies.begun >= MOST_COPIES_AT_ONCE:
		return
	copies.begun += 1
	copies.drop_the_gone()
	while copies.players.size() >= MOST_COPIES:
		(instance_from_id(copies.players.pop_front()) as Node).queue_free()
	var player := _player_2d(place) if place is Vector2 else _player_3d(place)
	player.set(&"stream", sound)
	player.set(&"bus", bus if AudioServer.get_bus_index(bus) >= 0 else MASTER)
	player.set(&"autoplay", true)
	player.connect(&"finished", player.queue_free)
	player.connect(&"ready", _end_in_time.bind(player, sound))
	copies.players.append(player.get_instance_id())
	_add_to.call_deferred(parent.get_instance_id(), player.get_instance_id())


static func _player_2d(place: Vector2) -> Node:
	var made := AudioStreamPlayer2D.new()
	made.top_level = true
	made.position = place
	return made


static func _player_3d(place: Vector3) -> Node:
	var made := AudioStreamPlayer3D.new()
	made.top_level = true
	made.position = place
	return made


# A sound that goes round and round never says that it has finished.
static func _end_in_time(player: Node, sound: AudioStream) -> void:
	var length := sound.get_length()
	var seconds := minf(length, LONGEST_SOUND) if length > 0.0 else LONGEST_SOUND
	player.create_tween().tween_callback(player.queue_free).set_delay(seconds + 0.1)


static func _forget_silent() -> void:
	for id: int in _copies.keys():
		_copies[id].drop_the_gone()
		if _copies[id].players.is_empty():
			_copies.erase(id)


static func _add_to(parent_id: int, child_id: int) -> void:
	if not is_instance_id_valid(child_id):
		return
	var child := instance_from_id(child_id) as Node
	if child.get_parent() != null or child.is_queued_for_deletion():
		return
	if is_instance_id_valid(parent_id):
		(instance_from_id(parent_id) as Node).add_child(child, true)
	else:
		child.free()


func _init() -> void:
	# Each bullet stands still or flies on as its own process mode says.
	process_mode = Node.PROCESS_MODE_ALWAYS
	process_physics_priority = LAST


func _physics_process(delta: float) -> void:
	if SCMachineBase.native_helper(STEP, [delta]) == 0:
		queue_free()
