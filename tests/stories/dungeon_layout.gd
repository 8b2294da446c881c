extends Story
## Floors of rooms are laid out: whole ones from every seed, by the same rules, and the same from the same seed.

const Dungeon := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")

const ALL: PackedStringArray = ["boss", "treasure", "shop"]
const LETTERS: Dictionary[String, String] = {"start": "@", "fight": "f", "boss": "B", "treasure": "T", "shop": "S", "secret": "?"}


## How many ways there are from the start to each room, by the shortest.
func steps_to(layout: Dictionary) -> Dictionary:
	var steps := {Vector2i.ZERO: 0}
	var reached: Array[Vector2i] = [Vector2i.ZERO]
	for cell in reached:
		for way: Array in layout["joins"]:
			for at in 2:
				if way[at] == cell and not steps.has(way[1 - at]):
					steps[way[1 - at]] = steps[cell] + 1
					reached.append(way[1 - at])
	return steps


func ways_at(ways: Array, cell: Vector2i) -> int:
	return ways.filter(func(way: Array) -> bool: return cell in way).size()


## What is wrong with a floor; empty for a good one.
func faults_of(layout: Dictionary, fights: int, extras: PackedStringArray, with_secret: bool) -> String:
	var cells: Dictionary = layout["cells"]
	var count := {}
	for cell: Vector2i in cells:
		count[cells[cell]] = count.get(cells[cell], 0) + 1
	var wanted := {"start": 1}
	for kind_of_room: String in extras:
		wanted[kind_of_room] = 1
	if fights > 0:
		wanted["fight"] = fights
	if with_secret:
		wanted["secret"] = 1
	if not count.recursive_equal(wanted, 1) or cells.get(Vector2i.ZERO) != "start":
		return "has %s, wanted %s" % [count, wanted]
	var known := {}
	for way: Array in layout["joins"] + layout["secret"]:
		var first: Vector2i = way[0]
		var second: Vector2i = way[1]
		if not cells.has(first) or not cells.has(second) or (first - second).length_squared() != 1 or known.has(Dungeon._key(first, second)):
			return "has a way %s" % [way]
		known[Dungeon._key(first, second)] = true
	var steps := steps_to(layout)
	if steps.size() != cells.size() - (1 if with_secret else 0):
		return "has rooms nobody reaches, or a secret room with an open way"
	for cell: Vector2i in cells:
		match cells[cell]:
			"boss", "treasure", "shop":
				if ways_at(layout["joins"] as Array, cell) != 1:
					return "%s is no dead end" % cells[cell]
				if cells[cell] == "boss" and steps[cell] != steps.values().max():
					return "there is a room beyond the boss"
			"secret":
				var beside := Dungeon.SIDES.values().filter(func(step: Vector2i) -> bool: return cells.has(cell + step))
				if (layout["secret"] as Array).size() != beside.size() or ways_at(layout["secret"] as Array, cell) != beside.size():
					return "the secret room is not joined to each room it touches"
				if fights > 2 and beside.size() < 2:
					return "the secret room lies at the edge"
				if fights > 2 and beside.any(func(step: Vector2i) -> bool: return cells[cell + step] == "boss"):
					return "the secret room leads to the boss"
	return ""


## The floor as text: rooms by a letter of their kinds, and the ways between them.
func picture(layout: Dictionary) -> String:
	var cells: Dictionary = layout["cells"]
	var low := Vector2i.MAX
	var high := Vector2i.MIN
	for cell: Vector2i in cells:
		low = low.min(cell)
		high = high.max(cell)
	var lines: Array[String] = []
	for y in (high.y - low.y) * 2 + 1:
		lines.append(" ".repeat((high.x - low.x) * 2 + 1))
	for cell: Vector2i in cells:
		var at := (cell - low) * 2
		lines[at.y][at.x] = LETTERS[cells[cell]]
	for ways: String in ["joins", "secret"]:
		for way: Array in layout[ways]:
			var between: Vector2i = way[0] - low + way[1] - low
			lines[between.y][between.x] = ":" if ways == "secret" else "-" if way[0].y == way[1].y else "|"
	return "\n".join(lines.map(func(line: String) -> String: return line.rstrip(" ")))


func test_every_seed_gives_a_whole_floor_of_one_fight_room_and_all_extras() -> void:
	for from_seed in range(1, 1001):
		var wrong := faults_of(Dungeon.lay_out(from_seed, 1, ALL, true), 1, ALL, true)
		expect(wrong.is_empty(), "seed %d: %s" % [from_seed, wrong])


## Even there the secret room touches two rooms, and never the boss.
func test_the_smallest_floor_hides_its_secret_well() -> void:
	for from_seed in range(1, 201):
		var layout := Dungeon.lay_out(from_seed, 1, ALL, true)
		expect((layout["secret"] as Array).size() >= 2, "seed %d" % from_seed)
		for way: Array in layout["secret"]:
			expect(layout["cells"][way[0]] != "boss" and layout["cells"][way[1]] != "boss", "seed %d" % from_seed)


func test_floors_of_any_size_follow_the_rules() -> void:
	for round_seed: int in seeds(1, 150, 5000):
		var dice := RandomNumberGenerator.new()
		dice.seed = round_seed
		var fights := dice.randi_range(0, 60) if dice.randi_range(0, 9) > 0 else dice.randi_range(100, 400)
		var extras: PackedStringArray = []
		for kind_of_room in ALL:
			if dice.randi_range(0, 2) > 0:
				extras.append(kind_of_room)
		var with_secret := dice.randi_range(0, 1) == 1
		var from_seed := dice.randi() * (1 if dice.randi_range(0, 1) == 0 else -4294967296)
		var wrong := faults_of(Dungeon.lay_out(from_seed, fights, extras, with_secret), fights, extras, with_secret)
		expect(wrong.is_empty(), "round %d, seed %d with %d rooms, %s: %s" % [round_seed, from_seed, fights, extras, wrong])


## What a player wrote down keeps its worth.
func test_a_seed_gives_the_floor_it_always_gave() -> void:
	var rows := [
		[1, 1, ALL, true, ["?:T", ": |", "f-@-S", "|", "B"]],
		[12, 6, ALL, true, ["    B", "    |", "    f", "    |", "    f-S", "    |", "  f-f", "  | :", "@-f:?", "  | :", "  f-T"]],
		[
			999999, 14, ["boss"], false,
			[
				"        f", "        |", "      f f-f-B", "      | |", "      f-f", "      |", "      f", "      |", "      f", "      |", "      f", "      |",
				"f-f-@-f", "|   |", "f   f",
			],
		],
		[-7, 0, [], false, ["@"]],
	]
	for row: Array in rows:
		var drawn := picture(Dungeon.lay_out(row[0] as int, row[1] as int, PackedStringArray(Array(row[2])), row[3] as bool))
		expect_equal(drawn, "\n".join(row[4] as Array), "seed %d" % row[0])
	var layout := Dungeon.lay_out(12, 6, ALL, true)
	var cells: Dictionary = layout["cells"]
	expect_equal(cells.values(), ["start", "fight", "fight", "fight", "fight", "fight", "fight", "boss", "treasure", "shop", "secret"])
	expect_equal(cells.keys().slice(0, 4), [Vector2i(0, 0), Vector2i(1, 0), Vector2i(1, -1), Vector2i(2, -1)])


func test_it_draws_from_nobody_elses_random_numbers() -> void:
	seed(5)
	var wanted := [randi(), randi()]
	var layout := Dungeon.lay_out(12, 6, ALL, true)
	seed(5)
	var got := [randi()]
	expect_equal(Dungeon.lay_out(12, 6, ALL, true), layout)
	got.append(randi())
	expect_equal(got, wanted)
	var different := {}
	for from_seed in range(1, 101):
		different[picture(Dungeon.lay_out(from_seed, 6, ALL, true))] = true
	expect(different.size() > 90, "a hundred seeds give %d floors" % different.size())


func test_a_pair_of_rooms_has_one_name() -> void:
	var held := {}
	for step: Vector2i in Dungeon.SIDES.values():
		expect_equal(Dungeon._key(Vector2i(2, -3), Vector2i(2, -3) + step), Dungeon._key(Vector2i(2, -3) + step, Vector2i(2, -3)))
		held[Dungeon._key(Vector2i(2, -3), Vector2i(2, -3) + step)] = true
	expect_equal(held.size(), 4)
	expect_equal(Dungeon.SIDES, {"north": Vector2i(0, -1), "south": Vector2i(0, 1), "east": Vector2i(1, 0), "west": Vector2i(-1, 0)})


## Rooms drawn from their corner, and around their middle, which the doors tell.
func test_it_knows_which_room_a_place_is_in() -> void:
	for around_middle: bool in [false, true]:
		var rooms: Dictionary[Vector2i, Node] = {}
		for cell: Vector2i in [Vector2i(0, 0), Vector2i(1, 0)]:
			var room := body("Room %d" % cell.x, Vector2(cell) * Vector2(100, 60) + Vector2(7, 9))
			rooms[cell] = room
			if around_middle:
				body("DoorNorth", Vector2(0, -30), room)
				body("DoorSouth", Vector2(0, 30), room)
		var layout := {"cells": {Vector2i(0, 0): "start", Vector2i(1, 0): "fight"}, "joins": [[Vector2i(0, 0), Vector2i(1, 0)]], "secret": []}
		Dungeon.remember(layout, rooms, Vector2(100, 60), 4)
		var corner := Vector2(7, 9) - (Vector2(50, 30) if around_middle else Vector2.ZERO)
		expect_equal(Dungeon.cell_at(corner + Vector2(1, 1)), Vector2i(0, 0))
		expect_equal(Dungeon.cell_at(corner + Vector2(199, 59)), Vector2i(1, 0))
		expect_equal(Dungeon.cell_at(corner + Vector2(-1, 61)), Vector2i(-1, 1))
		expect_equal([Dungeon.kind_of(Vector2i(1, 0)), Dungeon.kind_of(Vector2i(5, 5)), Dungeon.floor_seed], ["fight", "", 4])
		expect_equal(Dungeon.room_in(Vector2i(1, 0)), rooms[Vector2i(1, 0)])
		expect_equal((Dungeon.cells[Vector2i(1, 0)] as Array)[1], rooms[Vector2i(1, 0)].get_instance_id())
		for cell in rooms:
			rooms[cell].free()
		expect_equal(Dungeon.room_in(Vector2i(1, 0)), null)
		expect_equal(Dungeon.cell_at(Vector2.ZERO), null)
	Dungeon.forget()
	expect_equal(Dungeon.cells, {})
