extends Story
## Inventories that are played with at random, next to a model of them that moves one thing at a time: whatever fits or does not,
## nothing is lost and nothing is there twice.

const LOOSE: int = 300

var dice: RandomNumberGenerator


## What a bag should hold: for each slot nothing, or an item and how many.
class Model:
	var cells: Array = []
	var names: Array[StringName] = []
	var only: Array[StringName] = []

	func takes(item: SCItem, at: int) -> bool:
		return (only.is_empty() or item.type in only) and (names.is_empty() or names[at] == item.equips_to)

	func cap(item: SCItem) -> int:
		return item.most_in_a_stack if names.is_empty() else 1

	func add_one(item: SCItem) -> bool:
		for cell: Variant in cells:
			if cell != null and cell[0] == item and cell[1] < cap(item):
				cell[1] += 1
				return true
		for at in cells.size():
			if cells[at] == null and takes(item, at):
				cells[at] = [item, 1]
				return true
		return false

	func take_one(item: SCItem) -> bool:
		for at in range(cells.size() - 1, -1, -1):
			if cells[at] != null and cells[at][0] == item:
				cells[at][1] -= 1
				if cells[at][1] == 0:
					cells[at] = null
				return true
		return false

	func has_one(item: SCItem) -> bool:
		return cells.any(func(cell: Variant) -> bool: return cell != null and cell[0] == item)

	## How many of [param n] go from a slot here to one of another. A swap moves all of them.
	func put(from: int, other: Model, to: int, n: int) -> int:
		var here: Variant = cells[from]
		var there: Variant = other.cells[to]
		if here == null or (self == other and from == to):
			return 0
		var asked: int = mini(n, here[1]) if n > 0 else here[1]
		if there != null and there[0] != here[0]:
			if asked < here[1] or asked > other.cap(here[0] as SCItem) or there[1] > cap(there[0] as SCItem):
				return 0
			if not other.takes(here[0] as SCItem, to) or not takes(there[0] as SCItem, from):
				return 0
			cells[from] = there
			other.cells[to] = here
			return asked
		var went := 0
		while went < asked and other.takes(here[0] as SCItem, to) and (other.cells[to] == null or other.cells[to][1] < other.cap(here[0] as SCItem)):
			other.cells[to] = [here[0], 1 if other.cells[to] == null else other.cells[to][1] + 1]
			here[1] -= 1
			went += 1
		if here[1] == 0:
			cells[from] = null
		return went

	func sort_by(order: SCInventory.SortBy) -> void:
		var sorted: Array = []
		for cell: Variant in cells:
			if cell == null:
				continue
			var at := sorted.size()
			while at > 0 and is_before(cell[0] as SCItem, sorted[at - 1][0] as SCItem, order):
				at -= 1
			sorted.insert(at, cell)
		sorted.resize(cells.size())
		cells = sorted

	func is_before(a: SCItem, b: SCItem, order: SCInventory.SortBy) -> bool:
		if order == SCInventory.SortBy.RARITY:
			return a.rarity > b.rarity
		if order == SCInventory.SortBy.TYPE and a.type != b.type:
			return String(a.type) < String(b.type)
		return a.item_name < b.item_name


func items() -> Array[SCItem]:
	var made: Array[SCItem] = []
	# The name, the type, the slot, the rarity and the stack.
	for row: Array in [["arrow", "ammo", "", 0, 20], ["bolt", "ammo", "", 1, 3], ["sword", "weapon", "hand", 2, 1], ["club", "weapon", "hand", 0, 4],
			["ring", "charm", "finger", 3, 1], ["hat", "clothes", "head", 1, 2]]:
		var item := SCItem.new()
		item.item_name = row[0]
		item.type = row[1]
		item.equips_to = row[2]
		item.rarity = row[3]
		item.most_in_a_stack = row[4]
		made.append(item)
	return made


## A pack, a hoard, a quiver and what is worn.
func bags() -> Array[SCInventory]:
	var made: Array[SCInventory] = []
	for row: Dictionary in [{"slots": 4}, {"slots": 0}, {"slots": 2, "holds_only": [&"ammo"] as Array[StringName]},
			{"slot_names": [&"hand", &"finger", &"finger", &"head"] as Array[StringName]}]:
		made.append(add(SCInventory.new(), "Bag%d" % made.size(), row) as SCInventory)
	return made


func model_of(bag: SCInventory) -> Model:
	var made := Model.new()
	made.cells.resize(bag.slots if bag.slots > 0 else LOOSE)
	made.names = bag.slot_names
	made.only = bag.holds_only
	return made


func told(bag: SCInventory) -> Array:
	return bag.held.map(func(stack: SCItemStack) -> String: return "%d: %s %d" % [stack.place, stack.item.item_name, stack.how_many])


func told_of_model(model: Model) -> Array:
	var rows: Array = []
	for at in model.cells.size():
		if model.cells[at] != null:
			rows.append("%d: %s %d" % [at, (model.cells[at][0] as SCItem).item_name, model.cells[at][1]])
	return rows


func most_frames() -> int:
	return 120 * FPS


func test_nothing_is_lost_or_doubled() -> void:
	for play_seed: int in seeds(1, 8, 200):
		dice = RandomNumberGenerator.new()
		dice.seed = play_seed
		var all := items()
		var played := bags()
		var models: Array[Model] = []
		for bag in played:
			models.append(model_of(bag))
		for turn in 150:
			var did := one_turn(played, models, all)
			for at in played.size():
				var got := told(played[at])
				if got != told_of_model(models[at]):
					expect_equal(got, told_of_model(models[at]), "seed %d, turn %d, bag %d, after %s" % [play_seed, turn, at, did])
					return
			check_answers(played, models, all, "seed %d, turn %d" % [play_seed, turn])
		for bag in played:
			bag.free()


func check_answers(played: Array[SCInventory], models: Array[Model], all: Array[SCItem], when: String) -> void:
	var at := dice.randi_range(0, played.size() - 1)
	var item: SCItem = all[dice.randi_range(0, all.size() - 1)]
	var counted := 0
	for cell: Variant in models[at].cells:
		counted += cell[1] if cell != null and cell[0] == item else 0
	expect_equal(played[at].count(item), counted, when)
	expect_equal(played[at].has(item, 2), counted >= 2, when)
	expect_equal(played[at].stacks(), models[at].cells.size() - models[at].cells.count(null), when)
	if played[at].slots > 0:
		var room := 0
		for place in models[at].cells.size():
			var cell: Variant = models[at].cells[place]
			if models[at].takes(item, place) and (cell == null or cell[0] == item):
				room += models[at].cap(item) - (0 if cell == null else cell[1])
		expect_equal(played[at].room_for(item), room, when)
		expect_equal(played[at].is_full(), not models[at].cells.has(null), when)


func one_turn(played: Array[SCInventory], models: Array[Model], all: Array[SCItem]) -> String:
	var from := dice.randi_range(0, played.size() - 1)
	var to := dice.randi_range(0, played.size() - 1)
	var item: SCItem = all[dice.randi_range(0, all.size() - 1)]
	var n := dice.randi_range(-1, 12)
	var place := dice.randi_range(0, models[from].cells.size() - 1) if dice.randf() < 0.5 else mini(dice.randi_range(0, 5), models[from].cells.size() - 1)
	var to_place := dice.randi_range(0, mini(6, models[to].cells.size()) - 1)
	var went := 0
	match dice.randi_range(0, 9):
		0, 1, 2:
			while went < n and models[from].add_one(item):
				went += 1
			expect_equal(played[from].add(item, n), went)
			return "add %d %s" % [n, item.item_name]
		3:
			while went < n and models[from].take_one(item):
				went += 1
			expect_equal(played[from].take(item, n), went)
			return "take %d %s" % [n, item.item_name]
		4, 5:
			while from != to and went < n and models[from].has_one(item) and models[to].add_one(item):
				models[from].take_one(item)
				went += 1
			expect_equal(played[from].move_to(played[to], item, n), went)
			return "move %d %s" % [n, item.item_name]
		6, 7:
			went = models[from].put(place, models[to], to_place, n)
			expect_equal(played[from].put(place, played[to], to_place, n), went)
			return "put %d from %d of %d to %d of %d" % [n, place, from, to_place, to]
		8:
			var cell: Variant = models[from].cells[place]
			var half: int = cell[1] / 2 if cell != null else 0
			var free := models[from].cells.find(null)
			if half > 0 and free >= 0 and models[from].names.is_empty():
				models[from].cells[free] = [cell[0], half]
				cell[1] -= half
			else:
				free = -1
			expect_equal(played[from].split(place), free)
			return "split %d of %d" % [place, from]
	if models[from].names.is_empty():
		models[from].sort_by(n % 3 as SCInventory.SortBy)
	played[from].sort_by(n % 3 as SCInventory.SortBy)
	return "sort %d" % from
