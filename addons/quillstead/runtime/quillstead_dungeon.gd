@tool
extends RefCounted
## Lays out a floor of rooms on a grid, and remembers the floor that was built last: for Build Dungeon, for the Minimap, and for a
## game's own scripts.
##
## The same seed gives the same floor, whatever version of the engine a game runs in: nothing here draws from the engine's random
## numbers.

const Growth := preload("res://addons/quillstead/runtime/dungeon_growth.gd")

## A step to each side, by the word of the side.
const SIDES: Dictionary[String, Vector2i] = {
	"north": Vector2i(0, -1),
	"south": Vector2i(0, 1),
	"east": Vector2i(1, 0),
	"west": Vector2i(-1, 0),
}

# Each of them is a whole floor. What comes after the first is for a floor that leaves something to be wished for.
const _MOST_TRIES: int = 24

## What was built last: the cell of each room to an [Array] of its kind, the instance id of its node and its cell.
static var cells: Dictionary = {}
## The open ways of that floor, each a pair of cells.
static var joins: Array = []
## The ways into its secret room, each a pair of cells.
static var secret: Array = []
## The cells that a Minimap has seen the player in, each to [code]true[/code].
static var seen: Dictionary = {}
## How wide and high a room of it is.
static var room_size: Vector2 = Vector2.ZERO
## The seed it was built from.
static var floor_seed: int = 0
## How many floors have been remembered, for whoever shows one to see that there is another.
static var floors: int = 0

# The middle of a room, in its own space.
static var _middle: Vector2 = Vector2.ZERO


## A floor of a start room, [param fight_rooms] rooms to fight in, one room of each kind in [param extras] and, with
## [param with_secret], a secret one. Answers a [Dictionary] of "cells", from the place of each room on the grid to its kind in the
## order in which they are built; "joins", the open ways between two rooms; and "secret", the ways into the secret room.
static func lay_out(from_seed: int, fight_rooms: int, extras: PackedStringArray, with_secret: bool) -> Dictionary:
	var dice := Growth.Dice.new(from_seed)
	var best: Growth = null
	for attempt in _MOST_TRIES:
		var grown := Growth.new(dice)
		grown.grow(maxi(fight_rooms, 0), extras, with_secret)
		if best == null or grown.faults < best.faults:
			best = grown
		if best.faults == 0:
			break
	return {"cells": best.cells, "joins": best.joins, "secret": best.secret}


## Keeps the floor that was built: what [method lay_out] answered, and the node of each room by its cell.
static func remember(layout: Dictionary, rooms: Dictionary, size: Vector2, from_seed: int) -> void:
	var kinds: Dictionary = layout.get("cells", {})
	cells = {}
	for cell: Vector2i in kinds:
		var room: Variant = rooms.get(cell)
		if is_instance_valid(room) and room is Node:
			cells[cell] = [kinds[cell], (room as Node).get_instance_id(), cell]
	joins = (layout.get("joins", []) as Array).duplicate(true)
	secret = (layout.get("secret", []) as Array).duplicate(true)
	seen = {}
	room_size = size
	floor_seed = from_seed
	_middle = _middle_of(size)
	floors += 1


## Forgets the floor. Its rooms stay where they are.
static func forget() -> void:
	remember({}, {}, Vector2.ZERO, 0)


## Whether the floor was built in [param scene].
static func stands_in(scene: Node) -> bool:
	for cell: Vector2i in cells:
		var room := room_in(cell)
		if room != null:
			return scene == room or scene.is_ancestor_of(room)
	return false


## The floor, with its rooms by their instance ids. [method from_save] takes it back.
static func to_save() -> Dictionary:
	return {
		"cells": cells.duplicate(true), "joins": joins.duplicate(true), "secret": secret.duplicate(true), "seen": seen.duplicate(), "size": room_size,
		"seed": floor_seed, "floors": floors,
	}


## Takes back what [method to_save] gave. A room that is not there any more is left out.
static func from_save(saved: Dictionary) -> void:
	var layout := {"cells": {}, "joins": saved.get("joins", []), "secret": saved.get("secret", [])}
	var rooms := {}
	var kept: Variant = saved.get("cells")
	for cell: Variant in kept if kept is Dictionary else {}:
		var row: Variant = kept[cell]
		if cell is Vector2i and row is Array and (row as Array).size() == 3 and row[0] is String and row[1] is int:
			layout["cells"][cell] = row[0]
			rooms[cell] = instance_from_id(row[1] as int)
	remember(layout, rooms, saved["size"] if saved.get("size") is Vector2 else Vector2.ZERO, saved["seed"] if saved.get("seed") is int else 0)
	if saved.get("seen") is Dictionary:
		seen.assign(saved["seen"] as Dictionary)
	if saved.get("floors") is int:
		floors = saved["floors"]


## The node of the room in a cell. [code]null[/code] when there is none, or it has gone.
static func room_in(cell: Vector2i) -> Node:
	return instance_from_id((cells[cell] as Array)[1] as int) as Node if cells.has(cell) else null


## The kind of the room in a cell; empty when there is none.
static func kind_of(cell: Vector2i) -> String:
	return (cells[cell] as Array)[0] if cells.has(cell) else ""


## The cell that a place in the world lies in, whether there is a room in it or not. [code]null[/code] when there is no floor.
static func cell_at(place: Vector2) -> Variant:
	if room_size.x <= 0.0 or room_size.y <= 0.0 or not place.is_finite():
		return null
	for cell: Vector2i in cells:
		var room := room_in(cell) as Node2D
		if room != null and room.is_inside_tree() and not is_zero_approx(room.global_transform.determinant()):
			var from_middle := room.global_transform.affine_inverse() * place - _middle
			return cell + Vector2i((from_middle / room_size + Vector2(0.5, 0.5)).floor())
	return null


# A value for a pair of cells that is the same whichever of them comes first.
static func _key(a: Vector2i, b: Vector2i) -> Vector4i:
	return Growth.key_of(a, b)


# A room may be drawn from its corner or around its middle. Its doors tell, as they stand in the middle of each side.
static func _middle_of(size: Vector2) -> Vector2:
	for cell: Vector2i in cells:
		var room := room_in(cell)
		for pair: Array in [["DoorWest", "DoorEast"], ["DoorNorth", "DoorSouth"]]:
			var first := room.get_node_or_null(NodePath(pair[0] as String)) as Node2D
			var second := room.get_node_or_null(NodePath(pair[1] as String)) as Node2D
			if first != null and second != null:
				return (first.position + second.position) / 2.0
	return size / 2.0
