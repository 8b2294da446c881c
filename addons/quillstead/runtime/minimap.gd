@tool
class_name SCMinimap
extends Control
## Shows the floor that Build Dungeon built: the rooms the player has been in by their kinds, those next door, the ways between them
## and the one the player is in.
##
## It finds the floor by itself, also one that is built later, and keeps which rooms have been seen for as long as the floor stands,
## so another scene's Minimap goes on from there.
## [br][br]
## A theme gives it other colours, under the type [code]Minimap[/code]: [code]start[/code], [code]fight[/code],
## [code]treasure[/code], [code]shop[/code], [code]boss[/code] and [code]secret[/code] for the rooms, [code]unseen[/code] for a room
## next door, [code]way[/code] for what lies between two rooms and [code]here[/code] for the frame around the room the player is in.

## The player came into a room, for the first time or again.
signal room_entered(cell: Vector2i, kind: String)

## Which rooms are shown.
enum Shows {
	## Those the player has been in.
	SEEN,
	## Those, and the rooms one can go to from them. A secret room shows when the player has been in it.
	SEEN_AND_NEXT,
	## The whole floor, as for somebody who has found a map.
	ALL,
}

const Dungeon := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

## The theme type of its colours.
const THEME_TYPE: StringName = &"Minimap"
## What is shown of a room whose kind the player cannot know yet.
const UNSEEN: String = "unseen"

const _COLORS: Dictionary[StringName, Color] = {
	&"start": Color(0.55, 0.75, 0.55), &"fight": Color(0.62, 0.64, 0.7), &"treasure": Color(0.95, 0.8, 0.3), &"shop": Color(0.4, 0.65, 0.95),
	&"boss": Color(0.85, 0.3, 0.3), &"secret": Color(0.7, 0.5, 0.9), &"unseen": Color(0.62, 0.64, 0.7, 0.3), &"way": Color(0.62, 0.64, 0.7, 0.6),
	&"here": Color(1.0, 1.0, 1.0),
}
const _WAY: float = 0.3
const _FRAME: float = 2.0
# What the editor shows, where there is no floor.
const _EXAMPLE_SEED: int = 12

@export_group("Player")
## The player, whose room is marked. Empty is the first node in [member player_group].
@export_node_path("Node2D") var player_path: NodePath
## The group of the player, for when [member player_path] is empty.
@export var player_group: StringName = &"player"

@export_group("Look")
## Which rooms are shown.
@export var shows: Shows = Shows.SEEN_AND_NEXT:
	set(value):
		shows = value
		queue_redraw()
## How wide and high a room is on the map.
@export var cell_size: Vector2 = Vector2(20.0, 12.0):
	set(value):
		cell_size = value.max(Vector2.ONE) if value.is_finite() else cell_size
		update_minimum_size()
		queue_redraw()
## How far apart the rooms are on the map.
@export_range(0.0, 32.0, 1.0, "or_greater", "suffix:px") var gap: float = 4.0:
	set(value):
		gap = maxf(value, 0.0) if is_finite(value) else gap
		update_minimum_size()
		queue_redraw()
## Whether the room the player is in stays in the middle of the map. Off, the whole floor is in the middle.
@export var follows_player: bool = true:
	set(value):
		follows_player = value
		queue_redraw()

## The cell the player is in. Where it was last, while it is between rooms.
var player_cell: Vector2i = Vector2i.ZERO
## Whether the player has been in a room of this floor.
var has_player: bool = false

var _floors: int = -1
var _kinds: Dictionary[Vector2i, String] = {}
var _ways: Array = []
var _next_to: Dictionary[Vector2i, Array] = {}


func _init() -> void:
	clip_contents = true
	mouse_filter = MOUSE_FILTER_IGNORE


func _ready() -> void:
	if Engine.is_editor_hint():
		_take_floor(Dungeon.lay_out(_EXAMPLE_SEED, 6, ["boss", "treasure", "shop"], true))
		set_process(false)
	else:
		look()


func _process(_delta: float) -> void:
	look()


func _notification(what: int) -> void:
	if what == NOTIFICATION_THEME_CHANGED:
		queue_redraw()


# The room the player is in, and those around it.
func _get_minimum_size() -> Vector2:
	return cell_size * 3.0 + Vector2(gap, gap) * 2.0


func _draw() -> void:
	for way: Array in ways_shown():
		draw_rect(_way_rect(way[0] as Vector2i, way[1] as Vector2i), _color(&"way"))
	for cell in _kinds:
		var shown := kind_shown(cell)
		if not shown.is_empty():
			draw_rect(rect_of(cell), _color(shown))
	if has_player and not Engine.is_editor_hint():
		draw_rect(rect_of(player_cell).grow(_FRAME / 2.0), _color(&"here"), false, _FRAME)


## Looks at once which floor there is and where the player is, which it does by itself in every frame.
func look() -> void:
	if _floors != Dungeon.floors:
		_floors = Dungeon.floors
		has_player = false
		var kinds := {}
		for cell: Vector2i in Dungeon.cells:
			kinds[cell] = Dungeon.kind_of(cell)
		_take_floor({"cells": kinds, "joins": Dungeon.joins, "secret": Dungeon.secret})
	var player := _player()
	var cell: Variant = Dungeon.cell_at(player.global_position) if player != null and not _kinds.is_empty() else null
	if cell == null or not _kinds.has(cell) or (has_player and cell == player_cell):
		return
	player_cell = cell
	has_player = true
	Dungeon.seen[player_cell] = true
	queue_redraw()
	room_entered.emit(player_cell, _kinds[player_cell])


## What is shown of the room in a cell: its kind, [constant UNSEEN], or nothing at all.
func kind_shown(cell: Vector2i) -> String:
	if not _kinds.has(cell):
		return ""
	if _is_seen(cell):
		return _kinds[cell]
	return UNSEEN if shows == Shows.SEEN_AND_NEXT and (_next_to[cell] as Array).any(_is_seen) else ""


## The ways between two rooms that are both shown, each a pair of cells.
func ways_shown() -> Array:
	return _ways.filter(_is_way_shown)


## Where the room in a cell is drawn, in the space of the map.
func rect_of(cell: Vector2i) -> Rect2:
	var pitch := cell_size + Vector2(gap, gap)
	var middle := Vector2(player_cell)
	if not follows_player or not has_player:
		var around := _bounds()
		middle = around.position + (around.size - Vector2.ONE) / 2.0
	return Rect2(size / 2.0 + (Vector2(cell) - middle) * pitch - cell_size / 2.0, cell_size)


func _take_floor(floor_plan: Dictionary) -> void:
	_kinds.assign(floor_plan["cells"] as Dictionary)
	_ways.clear()
	_next_to.clear()
	for cell in _kinds:
		_next_to[cell] = []
	for way: Array in floor_plan["joins"]:
		if _kinds.has(way[0]) and _kinds.has(way[1]):
			_ways.append(way)
			_next_to[way[0]].append(way[1])
			_next_to[way[1]].append(way[0])
	for way: Array in floor_plan["secret"]:
		if _kinds.has(way[0]) and _kinds.has(way[1]):
			_ways.append(way)
	queue_redraw()


func _is_seen(cell: Vector2i) -> bool:
	return shows == Shows.ALL or Engine.is_editor_hint() or Dungeon.seen.has(cell)


# A way out of a room that was seen is seen, but for one into a secret room that nobody has found.
func _is_way_shown(way: Array) -> bool:
	var first: Vector2i = way[0]
	var second: Vector2i = way[1]
	return not kind_shown(first).is_empty() and not kind_shown(second).is_empty() and (_is_seen(first) or _is_seen(second))


func _bounds() -> Rect2:
	if _kinds.is_empty():
		return Rect2(0.0, 0.0, 1.0, 1.0)
	var low := Vector2i.MAX
	var high := Vector2i.MIN
	for cell in _kinds:
		low = low.min(cell)
		high = high.max(cell)
	return Rect2(low, high - low + Vector2i.ONE)


# What lies between the two, and not upon them: a room may be drawn half transparent.
func _way_rect(first: Vector2i, second: Vector2i) -> Rect2:
	var from := rect_of(first if first < second else second)
	var thick := minf(cell_size.x, cell_size.y) * _WAY
	if first.y == second.y:
		return Rect2(from.end.x, from.get_center().y - thick / 2.0, gap, thick)
	return Rect2(from.get_center().x - thick / 2.0, from.end.y, thick, gap)


func _color(name_of_it: StringName) -> Color:
	if has_theme_color(name_of_it, THEME_TYPE):
		return get_theme_color(name_of_it, THEME_TYPE)
	return _COLORS.get(name_of_it, _COLORS[&"fight"])


func _player() -> Node2D:
	var found: Node = null
	if not player_path.is_empty():
		found = get_node_or_null(player_path)
		if found == null:
			_warn("there is no node at %s, so the player's room is not marked. Pick the player under Player Path." % player_path)
	elif not player_group.is_empty() and is_inside_tree():
		found = get_tree().get_first_node_in_group(player_group)
	if found != null and not found is Node2D:
		_warn("%s is not a 2D node, so its room is not marked. Pick the player itself, which moves through the rooms." % found.name)
	return found as Node2D


func _warn(what: String) -> void:
	MakerWarnings.once_for(self, what, "Minimap %s: %s" % [name, what])
