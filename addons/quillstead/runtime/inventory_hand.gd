extends RefCounted
## What the player has taken up in an inventory panel, to put it down in that or in another one.
##
## It stays in its inventory until it is put down. So nothing is lost when a panel is closed, a chest goes or something else happens
## to the stack meanwhile: the hand is empty then.

const Items := preload("res://addons/quillstead/runtime/quillstead_items.gd")

# Where it lies, by the id of its inventory, and what it was when it was taken up.
static var _bag: int = 0
static var _place: int = 0
static var _key: String = ""
static var _how_many: int = 0


## Takes up so many of the stack in a slot, instead of what was taken up before.
static func take_up(from: SCInventory, at: int, count: int) -> void:
	var lying := from.stack_at(at)
	_bag = from.get_instance_id() if lying != null and count > 0 else 0
	_place = at
	_key = lying.item.key() if lying != null else ""
	_how_many = count


## Lets it lie where it is.
static func let_go() -> void:
	_bag = 0


## The inventory that it lies in. Null when the hand is empty.
static func bag() -> SCInventory:
	return instance_from_id(_bag) as SCInventory if stack() != null else null


## The stack that it is of. Null when the hand is empty.
static func stack() -> SCItemStack:
	var from := instance_from_id(_bag) as SCInventory if _bag != 0 and is_instance_id_valid(_bag) else null
	var lying := from.stack_at(_place) if from != null and not from.is_queued_for_deletion() else null
	if lying == null or lying.item.key() != _key:
		_bag = 0
		return null
	_how_many = mini(_how_many, lying.how_many)
	return lying


## In which slot of its inventory it lies.
static func place() -> int:
	return _place


## How many are in the hand, 0 for none.
static func how_many() -> int:
	return _how_many if stack() != null else 0


## Puts so many of what is in the hand into a slot, all of it for 0. Answers how many went there; the others stay in the hand.
static func put(to: SCInventory, to_place: int, count: int = 0) -> int:
	var asked := how_many() if count < 1 else mini(count, how_many())
	if asked < 1:
		return 0
	var from := bag()
	if from == to and to_place == _place:
		_how_many -= asked
		if _how_many < 1:
			let_go()
		return asked
	var went := move(from, _place, to, to_place, asked)
	_how_many -= went
	if _how_many < 1:
		let_go()
	return went


## Moves so many of the stack in a slot into a slot of another inventory. What is put on or taken off by that changes whoever wears
## it, as Equip Item and Unequip Item do.
static func move(from: SCInventory, from_place: int, to: SCInventory, to_place: int, count: int) -> int:
	if from.would_put(from_place, to, to_place, count) < 1:
		return 0
	var item := from.stack_at(from_place).item
	var there := to.stack_at(to_place)
	var back := there.item if there != null and there.item.key() != item.key() else null
	var wearers := _wearers(from, to)
	var went := from.put(from_place, to, to_place, count)
	_change(wearers, item, back)
	return went


## The same to wherever it fits in the other inventory.
static func move_over(from: SCInventory, from_place: int, to: SCInventory, count: int = 0) -> int:
	var lying := from.stack_at(from_place)
	if lying == null:
		return 0
	var item := lying.item
	var wearers := _wearers(from, to)
	var went := from.put_over(from_place, to, count)
	if went > 0:
		_change(wearers, item, null)
	return went


# Whose worn inventories these are: first that of where it comes from.
static func _wearers(from: SCInventory, to: SCInventory) -> Array[SCMachine]:
	var wearers: Array[SCMachine] = [null, null]
	if from != to:
		for at: int in 2:
			var bag_there: SCInventory = [from, to][at]
			wearers[at] = SCMachine.machine_of_or_above(bag_there) if bag_there.is_worn() else null
	return wearers


static func _change(wearers: Array[SCMachine], item: SCItem, back: SCItem) -> void:
	var from: SCMachine = wearers[0]
	var to: SCMachine = wearers[1]
	for row: Array in [[from, item, false], [to, back, false], [to, item, true], [from, back, true]]:
		if not is_instance_valid(row[0]) or row[1] == null:
			continue
		if row[2]:
			Items.apply_changes(row[0] as SCMachine, row[1] as SCItem)
		else:
			Items.undo_changes(row[0] as SCMachine, row[1] as SCItem)
