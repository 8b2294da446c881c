extends RefCounted
## What loot that lies on the ground does in 2D and in 3D alike: how it slides to rest, who picks it up, and what it looks like.
##
## [code]ground_loot.gd[/code] and [code]ground_loot_3d.gd[/code] are the nodes. Each has one of these.

const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

const SIDE_ON: StringName = &"quillstead_side_on"
const PLAYER: StringName = &"player"

const PIXELS_PER_METRE: float = 32.0
## How long it slides.
const SLIDES_FOR: float = 0.35
## How deep it looks for the ground, in metres.
const LOOKS_DOWN: float = 100.0
## How far above the ground it lies, and how far from a wall it stops, in metres.
const LIES_ABOVE: float = 0.2
const FALLS_BY: float = 20.0
## How often somebody is asked again who stands on it and had no room.
const ASKS_AGAIN: float = 0.25
## Whoever dropped it is no taker when it comes as early, but has to walk away first.
const STILL_DROPPING: float = 1.0
## So many characters may stand in the way.
const PASSES: int = 6

## Those of common, uncommon, rare and legendary items.
const COLORS: Array[Color] = [Color(0.85, 0.87, 0.9), Color(0.35, 0.85, 0.4), Color(0.35, 0.6, 1.0), Color(1.0, 0.65, 0.15)]
const GOLD: Color = Color(1.0, 0.85, 0.3)

enum _Stage { SLIDES, FALLS, RESTS }

# By id, as the node owns this.
var _loot: int = 0
var _stage: _Stage = _Stage.SLIDES
var _is_begun: bool = false
var _time: float = 0.0
var _asked: float = 0.0
var _laid_in: int = Engine.get_physics_frames()
var _from: Variant
var _by: Variant
var _down: Variant
var _ground: float = 0.0
# The ids of those who stand on it.
var _near: Array[int] = []


func _init(loot: Node, push: Variant) -> void:
	_loot = loot.get_instance_id()
	_by = push
	_down = Vector3.DOWN if loot is Node3D else Vector2.DOWN


## Puts a new piece of loot into the world of [param machine]'s body, where [param transform] says. Null when there is no world.
static func lay(loot: Node, machine: SCMachine, item: SCItem, gold: int, transform: Variant) -> Node:
	var parent := _parent_for(machine)
	if parent == null:
		loot.free()
		return null
	loot.set(&"item", item)
	loot.set(&"gold", maxi(gold, 0))
	loot.set(&"falls", loot is Node3D or is_side_on(machine))
	loot.set(&"laid_by", machine.target.get_instance_id())
	if parent.is_node_ready():
		_put(loot.get_instance_id(), parent.get_instance_id(), transform)
	else:
		# The engine takes no new children while a scene is being set up.
		_put.call_deferred(loot.get_instance_id(), parent.get_instance_id(), transform)
	return loot


## Whether the game is seen from the side, which the body of [param machine] says, or else the player.
static func is_side_on(machine: SCMachine) -> bool:
	var body: Node = machine.target if machine != null else null
	if body == null or not body.is_inside_tree():
		return false
	var player := body.get_tree().get_first_node_in_group(PLAYER)
	return bool(body.get_meta(SIDE_ON, false)) or (player != null and bool(player.get_meta(SIDE_ON, false)))


## The colour that it glows in.
static func color_of(item: SCItem) -> Color:
	return COLORS[clampi(item.rarity, 0, COLORS.size() - 1)] if item != null else GOLD


## Moves it on by a physics frame. False when there is nothing more to do until somebody comes.
func step(delta: float) -> bool:
	var loot := instance_from_id(_loot) as Node
	if not _is_begun:
		_is_begun = true
		_from = loot.get(&"global_position")
		_by = _up_to_a_wall(loot, _by)
	_time += delta
	match _stage:
		_Stage.SLIDES:
			var share := minf(_time / SLIDES_FOR, 1.0)
			# The rest is what it lacks of a parabola.
			loot.set(&"global_position", _from + _by * (1.0 - (1.0 - share) * (1.0 - share)))
			if share >= 1.0:
				_stage = _Stage.FALLS if loot.get(&"falls") and _finds_ground(loot) else _Stage.RESTS
				_time = 0.0
				_from = loot.get(&"global_position")
		_Stage.FALLS:
			var fallen := minf(0.5 * FALLS_BY * _px(loot) * _time * _time, _ground)
			loot.set(&"global_position", _from + _down * fallen)
			if fallen >= _ground:
				_stage = _Stage.RESTS
	_asked += delta
	if _asked >= ASKS_AGAIN:
		_asked = 0.0
		for id: int in _near.duplicate():
			take(id)
	return _stage != _Stage.RESTS or not _near.is_empty()


## Somebody, or an area of theirs, has come.
func came(node: Node) -> void:
	var taker := _taker_of(node)
	var loot := instance_from_id(_loot) as Node
	if taker == null or (taker.get_instance_id() == loot.get(&"laid_by") and _is_just_laid()):
		return
	_near.append(node.get_instance_id())
	# An inventory that fills may make the game add things that may not be added while areas tell of one another.
	take.call_deferred(node.get_instance_id())


func _is_just_laid() -> bool:
	return Engine.get_physics_frames() - _laid_in < STILL_DROPPING * Engine.physics_ticks_per_second


func went(node: Node) -> void:
	_near.erase(node.get_instance_id())


## Hands over what fits.
func take(id: int) -> void:
	var loot := instance_from_id(_loot) as Node
	var node := instance_from_id(id) as Node
	if node == null or not node.is_inside_tree():
		_near.erase(id)
		return
	if loot == null or loot.is_queued_for_deletion() or not loot.is_inside_tree() or id not in _near:
		return
	var taker := _taker_of(node)
	if taker == null:
		return
	var parent := loot.get_parent()
	var place: Variant = loot.get(&"global_position")
	var took_gold := _hand_over_gold(loot, taker)
	var took_item := _is_there() and _hand_over_item(loot, taker)
	if not took_gold and not took_item:
		return
	if is_instance_valid(parent) and parent.is_inside_tree() and _is_there():
		_play(parent, loot.get(&"sound"), place)
	if not _is_there():
		return
	var is_all: bool = loot.get(&"item") == null and loot.get(&"gold") == 0
	if is_instance_valid(taker):
		loot.emit_signal(&"picked_up", taker)
	if is_all and _is_there():
		loot.queue_free()


func _is_there() -> bool:
	var loot := instance_from_id(_loot) as Node
	return loot != null and not loot.is_queued_for_deletion()


# Nothing is on the ground and in a bag at once, whatever happens in between.
func _hand_over_item(loot: Node, taker: Node) -> bool:
	var item: SCItem = loot.get(&"item")
	var how_many: int = loot.get(&"how_many")
	if item == null:
		return false
	var bag := SCInventory.on(taker, SCInventory.Which.CARRIED)
	if bag == null and (loot.get(&"picked_up_by") as StringName).is_empty():
		return false
	if bag == null:
		MakerWarnings.once("ground loot without a bag:%d" % taker.get_instance_id(),
			"%s walks over %s and has no Inventory to put it in, so it stays on the ground. Add an Inventory node under %s."
			% [taker.name, item.shown_name(), taker.name])
		return false
	var fits := clampi(bag.room_for(item), 0, how_many)
	if fits < 1:
		return false
	if fits == how_many:
		loot.set(&"item", null)
	else:
		loot.set(&"how_many", how_many - fits)
	var went_in := bag.add(item, fits)
	if went_in < fits and _is_there():
		loot.set(&"how_many", how_many - went_in)
		loot.set(&"item", item)
	return went_in > 0


func _hand_over_gold(loot: Node, taker: Node) -> bool:
	var gold: int = loot.get(&"gold")
	var into: StringName = loot.get(&"gold_goes_into")
	if gold < 1:
		return false
	for machine in _machines_of(taker):
		var held: Variant = machine.get_value(into)
		if held is int or held is float:
			# A purse that is full leaves the rest.
			var fits := clampi(floori(float(machine._within_limits(into, held + gold)) - float(held)), 0, gold)
			loot.set(&"gold", gold - fits)
			if fits > 0:
				machine.set_value(into, held + fits)
			return fits > 0
	if SCMachine.is_global_value(into):
		var held: Variant = SCMachine.global_value(into)
		if held is int or held is float:
			loot.set(&"gold", 0)
			SCMachine.set_global_value(into, held + gold)
			return true
	if (loot.get(&"picked_up_by") as StringName).is_empty():
		return false
	MakerWarnings.once("ground gold:%d:%s" % [taker.get_instance_id(), into],
		"%s walks over gold and no machine of its has a number called %s, so it stays on the ground. Add %s in the Variables tab of its machine."
		% [taker.name, into, into])
	return false


static func _machines_of(taker: Node) -> Array[SCMachine]:
	var machines: Array[SCMachine] = []
	for child in taker.get_children():
		if child is SCMachine:
			machines.append(child)
	var elsewhere := SCMachine.machine_of_or_above(taker)
	if elsewhere != null and elsewhere not in machines:
		machines.append(elsewhere)
	return machines


# What touches it may be a part of whoever walks there.
func _taker_of(node: Node) -> Node:
	var loot := instance_from_id(_loot) as Node
	if loot == null:
		return null
	var group: StringName = loot.get(&"picked_up_by")
	if group.is_empty():
		return node
	var taker := node
	while taker != null and not taker.is_in_group(group):
		taker = taker.get_parent()
	return taker


static func _put(loot_id: int, parent_id: int, transform: Variant) -> void:
	var loot := instance_from_id(loot_id) as Node
	var parent := instance_from_id(parent_id) as Node
	if loot == null:
		return
	if parent == null or not parent.is_inside_tree():
		loot.free()
		return
	parent.add_child(loot)
	loot.set(&"global_transform", transform)


static func _parent_for(machine: SCMachine) -> Node:
	var body: Node = machine.target if machine != null else null
	if body == null or not body.is_inside_tree():
		return null
	var tree := body.get_tree()
	# With its level it goes, and it is sorted among those it lies among.
	if body != tree.current_scene and body.get_parent() != null and body.get_parent() != tree.root:
		return body.get_parent()
	return tree.current_scene if tree.current_scene != null else tree.root


static func _play(parent: Node, sound: AudioStream, place: Variant) -> void:
	if sound == null:
		return
	var player: Node = AudioStreamPlayer3D.new() if place is Vector3 else AudioStreamPlayer2D.new()
	player.set(&"stream", sound)
	player.connect(&"finished", player.queue_free)
	parent.add_child(player)
	player.set(&"global_position", place)
	player.call(&"play")
	# A sound that was made to loop never ends by itself.
	parent.get_tree().create_timer(maxf(sound.get_length(), 0.1) + 0.5).timeout.connect(player.queue_free)


func _up_to_a_wall(loot: Node, push: Variant) -> Variant:
	if push.is_zero_approx():
		return push
	var hit := _hit(loot, _from, _from + push)
	if hit.is_empty():
		return push
	var gap: float = _from.distance_to(hit["position"]) - LIES_ABOVE * _px(loot)
	return push.normalized() * maxf(gap, 0.0)


func _finds_ground(loot: Node) -> bool:
	var at: Variant = loot.get(&"global_position")
	var hit := _hit(loot, at, at + _down * LOOKS_DOWN * _px(loot))
	if hit.is_empty():
		return false
	_ground = at.distance_to(hit["position"]) - LIES_ABOVE * _px(loot)
	return _ground > 0.0


# Characters and crates move on, so they neither stop it nor carry it.
static func _hit(loot: Node, from: Variant, to: Variant) -> Dictionary:
	var mask: int = loot.get(&"stopped_by")
	var passed: Array[RID] = []
	for i in PASSES:
		var hit: Dictionary
		if loot is Node3D:
			var world := (loot as Node3D).get_world_3d().direct_space_state
			hit = world.intersect_ray(PhysicsRayQueryParameters3D.create(from, to, mask, passed)) if world != null else {}
		else:
			var world := (loot as Node2D).get_world_2d().direct_space_state
			hit = world.intersect_ray(PhysicsRayQueryParameters2D.create(from, to, mask, passed)) if world != null else {}
		var what: Object = hit.get("collider")
		if hit.is_empty() or not (what is CharacterBody2D or what is CharacterBody3D or what is RigidBody2D or what is RigidBody3D):
			return hit
		passed.append(hit["rid"])
	return {}


static func _px(loot: Node) -> float:
	return 1.0 if loot is Node3D else PIXELS_PER_METRE
