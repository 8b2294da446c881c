@tool
class_name SCInventory
extends Node
## An Inventory: what somebody or something holds, such as a backpack, a chest, a shop's shelf, a pickup on the ground or the
## clothes that are worn. It goes right under the node it belongs to.
##
## Items lie in slots, several of the same on one stack. Without [member slot_names] it is carried. With them it is worn: every slot
## takes one item, the one whose [member SCItem.equips_to] is the slot's name.
## [br][br]
## Whatever finds no room is left with whoever had it, and every method answers how many went through. [signal changed] and the
## other signals come when everything is in its place already, so whoever hears them may change the inventory again.

## Something in it came, went or moved.
signal changed
## So many of an item came in.
signal item_added(item: SCItem, how_many: int)
## So many of an item went out.
signal item_taken(item: SCItem, how_many: int)

## What an inventory can be sorted by.
enum SortBy {
	## By the name a player sees.
	NAME,
	## By the type, and those of one type by their names.
	TYPE,
	## The rarest first.
	RARITY,
}

## Which inventory of a node is asked for.
enum Which {
	## The one it carries, or else the one it wears.
	EITHER,
	## One without slot names.
	CARRIED,
	## One with slot names.
	WORN,
}

## What [method room_for] answers at most, for an inventory without a limit.
const NO_LIMIT: int = 1_000_000
# An inventory without a limit is meant for a hoard, not for filling the memory.
const _MOST_STACKS: int = 20_000

const ItemFiles := preload("res://addons/quillstead/runtime/item_files.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

## What is in it, in the order of the slots. In the inspector, what it starts with. Change it with the methods.
@export var held: Array[SCItemStack] = []:
	set(value):
		held = value if Engine.is_editor_hint() else _own_rows(value)
		update_configuration_warnings()
		if is_node_ready():
			changed.emit()
## How many slots it has, each for one stack. Zero is no limit. One that is worn has as many as it has slot names.
@export_range(0, 100, 1, "or_greater", "hide_slider") var slots: int = 0:
	get:
		return slots if slot_names.is_empty() else slot_names.size()
	set(value):
		slots = maxi(value, 0)
		update_configuration_warnings()
## The slots of clothes and weapons, such as [code]head[/code] and [code]hand[/code]. Filled in, this is what somebody wears. A name
## that is there twice is two slots, as for rings.
@export var slot_names: Array[StringName] = []:
	set(value):
		slot_names = value
		for stack in held:
			if stack != null:
				stack.place = -1
		notify_property_list_changed()
		update_configuration_warnings()
## The types of items it takes, such as [code]ammo[/code] for a quiver. Empty takes all.
@export var holds_only: Array[StringName] = []


func _ready() -> void:
	if not Engine.is_editor_hint():
		_tidy()


func _validate_property(property: Dictionary) -> void:
	if property["name"] == &"slots" and not slot_names.is_empty():
		property["usage"] = (property["usage"] | PROPERTY_USAGE_READ_ONLY) & ~PROPERTY_USAGE_STORAGE


func _get_configuration_warnings() -> PackedStringArray:
	var wrong := PackedStringArray()
	var names: Array[String] = []
	for stack in held:
		if stack == null or stack.item == null:
			names.append("a row without an item, which is left out")
		elif not _takes(stack.item):
			names.append("%s, which does not belong into it" % stack.item.shown_name())
	if not names.is_empty():
		wrong.append("Held has %s." % ", ".join(names))
	if &"" in slot_names:
		wrong.append("Slot Names has an empty one, which nothing goes into. Name it, or take it away.")
	if slots > 0 and held.size() > slots:
		wrong.append("It starts with %d stacks and has %d slots. Nothing more will fit until some have gone." % [held.size(), slots])
	return wrong


## The inventory on [param node]: the node itself, or the first under it. [param which] is one of [enum Which]. Null when there is
## none.
static func on(node: Node, which: Which = Which.EITHER) -> SCInventory:
	if node == null:
		return null
	if node is SCInventory:
		return node if which == Which.EITHER or (node as SCInventory).is_worn() == (which == Which.WORN) else null
	var other: SCInventory = null
	for child in node.get_children():
		var bag := child as SCInventory
		if bag == null or bag.is_queued_for_deletion():
			continue
		if bag.is_worn() == (which == Which.WORN):
			return bag
		if which == Which.EITHER and other == null:
			other = bag
	return other


## Whether this is what somebody wears, which is so with slot names.
func is_worn() -> bool:
	return not slot_names.is_empty()


## Puts so many of an item in, on stacks it has of it first. Answers how many fitted.
func add(item: SCItem, how_many: int = 1) -> int:
	if item == null or how_many < 1:
		return 0
	var went := _put_in(item, how_many, _cap_of(item))
	_tell_added(self, item, went)
	return went


## Takes so many of an item out, from its last stack first. Answers how many there were.
func take(item: SCItem, how_many: int = 1) -> int:
	if item == null or how_many < 1:
		return 0
	var went := _take_out(item, how_many)
	_tell_taken(self, item, went)
	return went


## Puts so many of an item that was just taken out in again. Unlike with [method add], what does not fit any more is kept too.
func put_back(item: SCItem, how_many: int = 1) -> void:
	if item == null or how_many < 1:
		return
	var left := how_many - _put_in(item, how_many, _cap_of(item))
	if left > 0:
		held.append(_new_stack(item, left, -1))
		_tidy()
	_tell_added(self, item, how_many)


## Whether there are so many of an item in it.
func has(item: SCItem, how_many: int = 1) -> bool:
	return count(item) >= maxi(how_many, 1)


## How many there are of an item.
func count(item: SCItem) -> int:
	if item == null:
		return 0
	_tidy()
	var key := item.key()
	var sum := 0
	for stack in held:
		if stack.item.key() == key:
			sum += stack.how_many
	return sum


## How many stacks there are, which is how many slots are in use.
func stacks() -> int:
	_tidy()
	return held.size()


## How many more of an item would fit.
func room_for(item: SCItem) -> int:
	if item == null or not _takes(item):
		return 0
	_tidy()
	var cap := _cap_of(item)
	var key := item.key()
	var room := 0
	for stack in held:
		if stack.item.key() == key:
			room += maxi(cap - stack.how_many, 0)
	return mini(room + _free_slots_for(item) * cap, NO_LIMIT)


## Moves so many of an item to another inventory. Answers how many fitted there; the others stay.
func move_to(other: SCInventory, item: SCItem, how_many: int = 1) -> int:
	if other == null or other == self or item == null or how_many < 1:
		return 0
	var goes := mini(how_many, mini(count(item), other.room_for(item)))
	if goes < 1:
		return 0
	# The very item that lies here: an equal one may differ in what does not tell it apart.
	var lying := _stack_of(item.key()).item
	_take_out(item, goes)
	other._put_in(lying, goes, other._cap_of(lying))
	_tell_moved(self, other, lying, goes)
	return goes


## Moves everything to another inventory, as far as it fits there. Answers how many items went; the others stay.
func move_all_to(other: SCInventory) -> int:
	_tidy()
	var each: Dictionary[String, SCItem] = {}
	for stack in held:
		each[stack.item.key()] = stack.item
	var went := 0
	for key in each:
		went += _move_all_of(self, other, each[key])
	return went


# Whoever heard of the last move may have freed either.
static func _move_all_of(from: SCInventory, to: SCInventory, item: SCItem) -> int:
	return from.move_to(to, item, from.count(item)) if is_instance_valid(from) and is_instance_valid(to) else 0


## What is worn in a slot. Null for nothing, and in an inventory that is carried.
func worn(slot: StringName) -> SCItem:
	if slot_names.is_empty() or slot.is_empty():
		return null
	_tidy()
	for stack in held:
		if _slot_of(stack) == slot:
			return stack.item
	return null


## Whether every slot is in use. There may still be room on stacks: [method room_for] knows of an item.
func is_full() -> bool:
	return slots > 0 and stacks() >= slots


## Whether there is nothing in it.
func is_empty() -> bool:
	return stacks() == 0


## Puts the stacks in order, from the first slot on. What is worn stays in its slots. Equal ones keep the order they have.
func sort_by(order: SortBy) -> void:
	_tidy()
	if is_worn() or held.is_empty():
		return
	var before := held.duplicate()
	var rows: Array[Array] = []
	for at in held.size():
		rows.append(_sorts_as(held[at].item, order) + [at, held[at]])
	rows.sort_custom(_comes_before)
	var is_other := false
	for at in rows.size():
		var stack: SCItemStack = rows[at].back()
		held[at] = stack
		is_other = is_other or stack != before[at] or stack.place != at
		stack.place = at
	if is_other:
		changed.emit()


## The stack that lies in a slot, counted from 0. Null for none.
func stack_at(place: int) -> SCItemStack:
	_tidy()
	for stack in held:
		if stack.place == place:
			return stack
	return null


## How many of the stack in a slot could be put into a slot of another inventory, or of this one, with [method put]: all of them
## when it would change places with what lies there.
func would_put(place: int, other: SCInventory, to_place: int, how_many: int = 0) -> int:
	var stack := stack_at(place)
	if stack == null or other == null or to_place < 0 or (other == self and to_place == place):
		return 0
	var asked := stack.how_many if how_many < 1 else mini(how_many, stack.how_many)
	if not other._takes_at(stack.item, to_place):
		return 0
	var cap := other._cap_of(stack.item)
	var there := other.stack_at(to_place)
	if there == null:
		return mini(asked, cap) if other == self or other.held.size() < other._most_stacks() else 0
	if there.item.key() == stack.item.key():
		return clampi(cap - there.how_many, 0, asked)
	var can_swap := asked == stack.how_many and asked <= cap and _takes_at(there.item, place) and there.how_many <= _cap_of(there.item)
	return asked if can_swap else 0


## Moves so many of the stack in a slot into a slot of another inventory, or of this one: onto an empty slot, onto a stack of the
## same, or in exchange for what lies there. Zero moves all of it. Answers how many fitted; the others stay.
func put(place: int, other: SCInventory, to_place: int, how_many: int = 0) -> int:
	var goes := would_put(place, other, to_place, how_many)
	if goes < 1:
		return 0
	var stack := stack_at(place)
	var there := other.stack_at(to_place)
	var item := stack.item
	if there != null and there.item.key() != item.key():
		_exchange(stack, other, there)
		_tell_swapped(self, other, item, goes, there.item, there.how_many)
		return goes
	_take_from(stack, goes)
	if there != null:
		there.how_many += goes
	else:
		other._lay(item, goes, to_place)
	if other == self:
		changed.emit()
	else:
		_tell_moved(self, other, item, goes)
	return goes


## Moves so many of the stack in a slot to another inventory, wherever it fits there. Zero moves all of it. Answers how many
## fitted; the others stay.
func put_over(place: int, other: SCInventory, how_many: int = 0) -> int:
	var stack := stack_at(place)
	if stack == null or other == null or other == self:
		return 0
	var item := stack.item
	var asked := stack.how_many if how_many < 1 else mini(how_many, stack.how_many)
	var goes := mini(asked, other.room_for(item))
	if goes < 1:
		return 0
	_take_from(stack, goes)
	other._put_in(item, goes, other._cap_of(item))
	_tell_moved(self, other, item, goes)
	return goes


## Puts so many of the stack in a slot into the first free one. Zero takes half of it; of an odd number the odd one stays behind.
## Answers in which slot they lie now, -1 when there is none.
func split(place: int, how_many: int = 0) -> int:
	var stack := stack_at(place)
	if stack == null or is_worn() or held.size() >= _most_stacks():
		return -1
	var goes := floori(stack.how_many / 2.0) if how_many < 1 else how_many
	if goes < 1 or goes >= stack.how_many:
		return -1
	var to_place := _first_free()
	_take_from(stack, goes)
	_lay(stack.item, goes, to_place)
	changed.emit()
	return to_place


## Everything in it, in plain values that a file can hold. [method from_save] takes it back.
func to_save() -> Dictionary:
	_tidy()
	var rows: Array[Dictionary] = []
	for stack in held:
		rows.append({"item": ItemFiles.to_save(stack.item), "how_many": stack.how_many, "place": stack.place})
	return {"held": rows}


## Holds what was saved, and nothing else. What cannot be found any more is left out, and told of.
func from_save(saved: Dictionary) -> void:
	var rows: Array[SCItemStack] = []
	var given: Variant = saved.get("held", [])
	for row: Variant in given if given is Array else []:
		var stack := _stack_from(row)
		if stack != null:
			rows.append(stack)
	held = rows
	if not is_node_ready():
		changed.emit()


# Rows of its own: instances of one scene share those that were filled in for it.
func _own_rows(rows: Array[SCItemStack]) -> Array[SCItemStack]:
	var own: Array[SCItemStack] = []
	for row in rows:
		if row != null:
			var stack: SCItemStack = row.duplicate()
			stack.place = row.place
			own.append(stack)
	return own


# Before anything is asked or done: rows may have been written from outside.
func _tidy() -> void:
	var last := -1
	for stack in held:
		if stack == null or stack.item == null or stack.how_many < 1 or stack.place <= last:
			_tidy_rows()
			return
		last = stack.place


func _tidy_rows() -> void:
	var in_use: Dictionary[int, bool] = {}
	var placed: Array[SCItemStack] = []
	var homeless: Array[SCItemStack] = []
	for row in held:
		if row == null or row.item == null:
			_warn("empty row", "%s has a row without an item, which is left out. Pick an item there, or take the row away.")
			continue
		if row.how_many < 1:
			continue
		if not _takes(row.item):
			_warn("does not belong", "%%s holds %s, which does not belong into it. It is kept, and nothing like it can be put in." % row.item.shown_name())
		for stack in _in_stacks(row):
			if stack.place >= 0 and not in_use.has(stack.place) and _takes_at(stack.item, stack.place):
				in_use[stack.place] = true
				placed.append(stack)
			else:
				homeless.append(stack)
	var next := 0
	for stack in homeless:
		stack.place = _worn_place_for(stack.item, in_use) if is_worn() else -1
		if stack.place < 0:
			next = maxi(next, slot_names.size())
			while in_use.has(next):
				next += 1
			stack.place = next
		in_use[stack.place] = true
		placed.append(stack)
	placed.sort_custom(func(a: SCItemStack, b: SCItemStack) -> bool: return a.place < b.place)
	held.assign(placed)
	if slots > 0 and held.size() > slots:
		_warn("too full", "%%s holds %d stacks and has %d slots. They are kept, and nothing more fits until some have gone." % [held.size(), slots])


# A row with more than a stack takes, as several.
func _in_stacks(row: SCItemStack) -> Array[SCItemStack]:
	var cap := _cap_of(row.item)
	var all: Array[SCItemStack] = [row]
	while row.how_many > cap and all.size() < _MOST_STACKS:
		var goes := mini(row.how_many - cap, cap)
		row.how_many -= goes
		all.append(_new_stack(row.item, goes, -1))
	return all


func _worn_place_for(item: SCItem, in_use: Dictionary[int, bool]) -> int:
	for place in slot_names.size():
		if not in_use.has(place) and _takes_at(item, place):
			return place
	return -1


func _warn(key: String, text: String) -> void:
	MakerWarnings.once_for(self, key, text % _name_in_messages())


func _name_in_messages() -> String:
	var above := get_parent()
	return "%s on %s" % [name, above.name] if above != null else String(name)


func _cap_of(item: SCItem) -> int:
	return 1 if is_worn() else item.stack_size()


func _most_stacks() -> int:
	return slots if slots > 0 else _MOST_STACKS


func _takes(item: SCItem) -> bool:
	if not holds_only.is_empty() and item.type not in holds_only:
		return false
	return slot_names.is_empty() or (not item.equips_to.is_empty() and item.equips_to in slot_names)


func _takes_at(item: SCItem, place: int) -> bool:
	return _takes(item) and place < _most_stacks() and (slot_names.is_empty() or slot_names[place] == item.equips_to)


func _slot_of(stack: SCItemStack) -> StringName:
	return slot_names[stack.place] if stack.place < slot_names.size() else &""


func _free_slots_for(item: SCItem) -> int:
	if not is_worn():
		return maxi(_most_stacks() - held.size(), 0)
	return slot_names.count(item.equips_to) - held.filter(func(stack: SCItemStack) -> bool: return _slot_of(stack) == item.equips_to).size()


func _stack_of(key: String) -> SCItemStack:
	for stack in held:
		if stack.item.key() == key:
			return stack
	return null


func _first_free() -> int:
	var place := 0
	for stack in held:
		if stack.place != place:
			break
		place += 1
	return place


static func _new_stack(item: SCItem, how_many: int, place: int) -> SCItemStack:
	var stack := SCItemStack.new()
	stack.item = item
	stack.how_many = how_many
	stack.place = place
	return stack


func _lay(item: SCItem, how_many: int, place: int) -> void:
	var at := 0
	while at < held.size() and held[at].place < place:
		at += 1
	held.insert(at, _new_stack(item, how_many, place))


func _take_from(stack: SCItemStack, how_many: int) -> void:
	stack.how_many -= how_many
	if stack.how_many < 1:
		held.erase(stack)


func _put_in(item: SCItem, how_many: int, cap: int) -> int:
	_tidy()
	if not _takes(item):
		return 0
	var key := item.key()
	var left := how_many
	for stack in held:
		if left > 0 and stack.item.key() == key:
			var fits := clampi(cap - stack.how_many, 0, left)
			stack.how_many += fits
			left -= fits
	var at := 0
	var place := 0
	while left > 0 and held.size() < _most_stacks():
		if at < held.size() and held[at].place <= place:
			place = held[at].place + 1
			at += 1
		elif not is_worn() or _takes_at(item, place):
			held.insert(at, _new_stack(item, mini(left, cap), place))
			left -= mini(left, cap)
		elif place < slot_names.size():
			place += 1
		else:
			break
	return how_many - left


func _take_out(item: SCItem, how_many: int) -> int:
	_tidy()
	var key := item.key()
	var left := how_many
	for at in range(held.size() - 1, -1, -1):
		var stack := held[at]
		if left > 0 and stack.item.key() == key:
			var goes := mini(left, stack.how_many)
			left -= goes
			_take_from(stack, goes)
	return how_many - left


func _exchange(stack: SCItemStack, other: SCInventory, there: SCItemStack) -> void:
	var place := stack.place
	var to_place := there.place
	held.erase(stack)
	other.held.erase(there)
	other._lay(stack.item, stack.how_many, to_place)
	_lay(there.item, there.how_many, place)


func _stack_from(row: Variant) -> SCItemStack:
	var saved: Dictionary = row if row is Dictionary else {}
	var of_item: Variant = saved.get("item")
	var how_many: Variant = saved.get("how_many")
	var place: Variant = saved.get("place")
	var item := ItemFiles.from_save(of_item if of_item is Dictionary else {})
	if item == null or not (how_many is int or how_many is float):
		_warn("not saved", "%%s was saved with something that cannot be found any more, so it is left out: %s." % of_item)
		return null
	return _new_stack(item, int(how_many), int(place) if place is int or place is float else -1)


static func _sorts_as(item: SCItem, order: SortBy) -> Array:
	match order:
		SortBy.TYPE:
			return [1 if item.type.is_empty() else 0, String(item.type), item.shown_name()]
		SortBy.RARITY:
			return [-item.rarity, "", ""]
	return [0, "", item.shown_name()]


static func _comes_before(a: Array, b: Array) -> bool:
	if a[0] != b[0]:
		return a[0] < b[0]
	for at: int in [1, 2]:
		var compared := (a[at] as String).naturalnocasecmp_to(b[at] as String)
		if compared != 0:
			return compared < 0
	return a[3] < b[3]


# Whoever hears of it may free either inventory.
static func _tell_added(bag: SCInventory, item: SCItem, how_many: int) -> void:
	if how_many > 0 and is_instance_valid(bag):
		bag.item_added.emit(item, how_many)
		if is_instance_valid(bag):
			bag.changed.emit()


static func _tell_taken(bag: SCInventory, item: SCItem, how_many: int) -> void:
	if how_many > 0 and is_instance_valid(bag):
		bag.item_taken.emit(item, how_many)
		if is_instance_valid(bag):
			bag.changed.emit()


static func _tell_moved(from: SCInventory, to: SCInventory, item: SCItem, how_many: int) -> void:
	_tell_taken(from, item, how_many)
	if is_instance_valid(to):
		_tell_added(to, item, how_many)


static func _tell_swapped(from: SCInventory, to: SCInventory, item: SCItem, how_many: int, back: SCItem, how_many_back: int) -> void:
	if from == to:
		from.changed.emit()
		return
	_tell_moved(from, to, item, how_many)
	if is_instance_valid(to) and is_instance_valid(from):
		_tell_moved(to, from, back, how_many_back)
