extends Node2D
## Loot that lies on the ground: an item, some gold, or both. Drop Loot lays it, and a level may hold some from the start.
##
## It slides a little way to rest, glows in the colour of its rarity, and is picked up by whoever of [member picked_up_by] walks over
## it. The item goes into the Inventory that they carry, the gold into a variable of their machine. What does not fit stays lying.

## Somebody took it, or a part of it that fitted.
signal picked_up(by: Node)

const ItemFiles := preload("res://addons/quillstead/runtime/item_files.gd")
const Rules := preload("res://addons/quillstead/runtime/ground_loot_rules.gd")

## The item that lies there. Null is none.
@export var item: SCItem:
	set(value):
		item = value
		queue_redraw()
## How many of the item.
@export_range(1, 100, 1, "or_greater", "hide_slider") var how_many: int = 1:
	set(value):
		how_many = maxi(value, 1)
## How much gold lies there.
@export_range(0, 100, 1, "or_greater", "hide_slider") var gold: int = 0:
	set(value):
		gold = maxi(value, 0)
		queue_redraw()
## The number that the gold is added to, of the machine of whoever takes it.
@export var gold_goes_into: StringName = &"gold"
## The sound of picking it up.
@export var sound: AudioStream

@export_group("Picking Up")
## The group of those who can take it. Empty is everybody who has an Inventory.
@export var picked_up_by: StringName = &"player"
## How near one has to come, in pixels.
@export_range(0.0, 100.0, 0.01, "or_greater", "hide_slider") var reach: float = 18.0

@export_group("Lying")
## The physics layers that stop it as it slides, and that it falls onto: those of the walls and the ground.
@export_flags_2d_physics var stopped_by: int = 1
## Whether it falls to the ground, as in a game seen from the side.
@export var falls: bool = false

## Where to it slides when it comes into the world, from where it is.
var push: Vector2 = Vector2.ZERO
## The instance id of the body that dropped it, 0 for none. Such a body does not pick it up at once.
var laid_by: int = 0

var _rules: Rules


## Lays [param what], [param gold_pieces] of gold, or both beside the body of [param machine], from where it slides by
## [param pushed]. Answers the node, null when the machine is nowhere.
static func lay(machine: SCMachine, place: Vector2, what: SCItem, gold_pieces: int, pushed: Vector2) -> Node2D:
	var loot: Node2D = load("res://addons/quillstead/runtime/ground_loot.gd").new()
	loot.set(&"push", pushed)
	return Rules.lay(loot, machine, what, gold_pieces, Transform2D(0.0, place)) as Node2D


## The item in plain values that a file can hold. [method from_save] takes it back.
func to_save() -> Dictionary:
	return {"item": ItemFiles.to_save(item)}


## Takes back what [method to_save] gave. An item that is nowhere to be found any more is none.
func from_save(saved: Dictionary) -> void:
	var kept: Variant = saved.get("item")
	if kept is Dictionary and not (kept as Dictionary).is_empty():
		item = ItemFiles.from_save(kept as Dictionary)


func _ready() -> void:
	_rules = Rules.new(self, push)
	# Loot may be laid while areas tell of one another, when none can be added.
	_watch.call_deferred()


func _physics_process(delta: float) -> void:
	set_physics_process(_rules.step(delta))


func _draw() -> void:
	if item == null and gold < 1:
		return
	var color := Rules.color_of(item)
	for ring in 4:
		draw_circle(Vector2.ZERO, 18.0 - ring * 4.0, Color(color, 0.12))
	var icon: Texture2D = item.icon if item != null else null
	if icon != null:
		var size := icon.get_size() * 24.0 / maxf(maxf(icon.get_size().x, icon.get_size().y), 1.0)
		draw_texture_rect(icon, Rect2(-size / 2.0, size), false)
	elif item != null:
		draw_colored_polygon([Vector2(0, -6), Vector2(6, 0), Vector2(0, 6), Vector2(-6, 0)], color)
	else:
		for coin: Vector2 in [Vector2(-3, 2), Vector2(3, 2), Vector2(0, -3)]:
			draw_circle(coin, 4.0, color.darkened(0.3))
			draw_circle(coin, 3.0, color)


# The engine finds nothing with a shape of no size.
func _watch() -> void:
	var round_shape := CircleShape2D.new()
	round_shape.radius = maxf(reach, 0.5)
	var shape := CollisionShape2D.new()
	shape.shape = round_shape
	var area := Area2D.new()
	area.name = "Reach"
	area.collision_layer = 0
	area.collision_mask = 0xFFFF_FFFF
	area.monitorable = false
	area.add_child(shape)
	for entered: Signal in [area.body_entered, area.area_entered]:
		entered.connect(_on_entered)
	for exited: Signal in [area.body_exited, area.area_exited]:
		exited.connect(_on_exited)
	add_child(area)


func _on_entered(other: Node) -> void:
	_rules.came(other)
	set_physics_process(true)


func _on_exited(other: Node) -> void:
	_rules.went(other)
