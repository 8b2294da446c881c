extends Node3D
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
		_show()
## How many of the item.
@export_range(1, 100, 1, "or_greater", "hide_slider") var how_many: int = 1:
	set(value):
		how_many = maxi(value, 1)
## How much gold lies there.
@export_range(0, 100, 1, "or_greater", "hide_slider") var gold: int = 0:
	set(value):
		gold = maxi(value, 0)
		_show()
## The number that the gold is added to, of the machine of whoever takes it.
@export var gold_goes_into: StringName = &"gold"
## The sound of picking it up.
@export var sound: AudioStream

@export_group("Picking Up")
## The group of those who can take it. Empty is everybody who has an Inventory.
@export var picked_up_by: StringName = &"player"
## How near one has to come, in metres.
@export_range(0.0, 100.0, 0.01, "or_greater", "hide_slider") var reach: float = 0.6

@export_group("Lying")
## The physics layers that stop it as it slides, and that it falls onto: those of the walls and the ground.
@export_flags_3d_physics var stopped_by: int = 1
## Whether it falls to the ground.
@export var falls: bool = true

## Where to it slides when it comes into the world, from where it is.
var push: Vector3 = Vector3.ZERO
## The instance id of the body that dropped it, 0 for none. Such a body does not pick it up at once.
var laid_by: int = 0

var _rules: Rules


## Lays [param what], [param gold_pieces] of gold, or both beside the body of [param machine], from where it slides by
## [param pushed]. Answers the node, null when the machine is nowhere.
static func lay(machine: SCMachine, place: Vector3, what: SCItem, gold_pieces: int, pushed: Vector3) -> Node3D:
	var loot: Node3D = load("res://addons/quillstead/runtime/ground_loot_3d.gd").new()
	loot.set(&"push", pushed)
	return Rules.lay(loot, machine, what, gold_pieces, Transform3D(Basis.IDENTITY, place)) as Node3D


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
	_show()
	# Loot may be laid while areas tell of one another, when none can be added.
	_watch.call_deferred()


func _physics_process(delta: float) -> void:
	set_physics_process(_rules.step(delta))


# What it looks like, anew.
func _show() -> void:
	if not is_node_ready():
		return
	var before := get_node_or_null(^"Looks")
	if before != null:
		remove_child(before)
		before.queue_free()
	if item == null and gold < 1:
		return
	var looks := Node3D.new()
	looks.name = "Looks"
	var color := Rules.color_of(item)
	looks.add_child(_ball(0.3, Color(color, 0.25)))
	if item != null and item.icon != null:
		var picture := Sprite3D.new()
		picture.texture = item.icon
		picture.billboard = BaseMaterial3D.BILLBOARD_ENABLED
		picture.pixel_size = 0.5 / maxf(maxf(item.icon.get_size().x, item.icon.get_size().y), 1.0)
		looks.add_child(picture)
	else:
		looks.add_child(_ball(0.12, color))
	add_child(looks)


static func _ball(radius: float, color: Color) -> MeshInstance3D:
	var material := StandardMaterial3D.new()
	material.albedo_color = color
	material.shading_mode = BaseMaterial3D.SHADING_MODE_UNSHADED
	if color.a < 1.0:
		material.transparency = BaseMaterial3D.TRANSPARENCY_ALPHA
		material.blend_mode = BaseMaterial3D.BLEND_MODE_ADD
	var mesh := SphereMesh.new()
	mesh.radius = radius
	mesh.height = radius * 2.0
	mesh.radial_segments = 16
	mesh.rings = 8
	mesh.material = material
	var ball := MeshInstance3D.new()
	ball.mesh = mesh
	ball.cast_shadow = GeometryInstance3D.SHADOW_CASTING_SETTING_OFF
	return ball


# The engine finds nothing with a shape of no size.
func _watch() -> void:
	var round_shape := SphereShape3D.new()
	round_shape.radius = maxf(reach, 0.01)
	var shape := CollisionShape3D.new()
	shape.shape = round_shape
	var area := Area3D.new()
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
