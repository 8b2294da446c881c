extends RefCounted
## What the player has coming from quests that are done. It is written down first and given out as soon as that is possible, so a
## game that is saved in between neither loses nor doubles anything.

const ItemFiles := preload("res://addons/quillstead/runtime/item_files.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

## What is owed of one thing: an item, or a number of the player's machine.
class Debt:
	extends RefCounted

	var quest_title: String = ""
	var item: SCItem
	var how_many: int = 0
	var variable: StringName
	var amount: float = 0.0
	## Whether somebody was told that it has to wait.
	var is_told: bool = false


var debts: Array[Debt] = []


## Writes down what [param quest] is worth.
func owe(quest: SCQuest) -> void:
	for stack in quest.reward_items:
		if stack == null or stack.item == null:
			MakerWarnings.once("reward row:%d" % quest.get_instance_id(),
					"The quest \"%s\" has a row without an item under Reward Items, which was left out. Pick an item in it, or remove it." % quest.shown_title())
		elif stack.how_many > 0:
			var debt := _new_debt(quest)
			debt.item = stack.item
			debt.how_many = stack.how_many
	if quest.reward_variable.is_empty() or quest.reward_amount == 0.0:
		return
	if not is_finite(quest.reward_amount):
		MakerWarnings.once("reward amount:%d" % quest.get_instance_id(),
				"The quest \"%s\" is worth %s of %s, which is no number to add. Type another under Reward Amount."
				% [quest.shown_title(), quest.reward_amount, quest.reward_variable])
		return
	var number := _new_debt(quest)
	number.variable = quest.reward_variable
	number.amount = quest.reward_amount


## Gives out what can be given. Answers the debts of which nobody was told yet that they have to wait.
func give(bag: SCInventory, machine: SCMachine) -> Array[Debt]:
	var waits: Array[Debt] = []
	for debt: Debt in debts.duplicate():
		if debt not in debts:
			continue
		var is_there := is_instance_valid(bag) if debt.item != null else is_instance_valid(machine)
		if is_there and debt.item != null:
			_give_items(debt, bag)
		elif is_there:
			_give_number(debt, machine)
		if debt in debts and not debt.is_told:
			debt.is_told = true
			waits.append(debt)
			_tell_who_is_missing(debt, is_there)
	return waits


## In plain values that a file can hold.
func to_save() -> Array[Dictionary]:
	var saved: Array[Dictionary] = []
	for debt in debts:
		if debt.item != null:
			saved.append({"of": debt.quest_title, "item": ItemFiles.to_save(debt.item), "how_many": debt.how_many})
		else:
			saved.append({"of": debt.quest_title, "variable": String(debt.variable), "amount": debt.amount})
	return saved


## What [method to_save] wrote, and nothing else.
func from_save(saved: Variant) -> void:
	debts.clear()
	for row: Variant in saved if saved is Array else []:
		var held: Dictionary = row if row is Dictionary else {}
		var debt := Debt.new()
		debt.quest_title = str(held.get("of", ""))
		debt.variable = StringName(str(held.get("variable", "")))
		var amount: Variant = held.get("how_many", held.get("amount"))
		if not (amount is int or amount is float) or not is_finite(amount as float):
			continue
		debt.how_many = roundi(amount as float)
		debt.amount = amount
		var item: Variant = held.get("item")
		if item is Dictionary:
			debt.item = ItemFiles.from_save(item as Dictionary)
			if debt.item == null:
				MakerWarnings.say("The saved game owes the player %d of an item for the quest \"%s\", but there is no such item any more, so it was left out."
						% [debt.how_many, debt.quest_title])
		if (debt.item != null and debt.how_many > 0) or (not item is Dictionary and not debt.variable.is_empty()):
			debts.append(debt)


func _new_debt(quest: SCQuest) -> Debt:
	var debt := Debt.new()
	debt.quest_title = quest.shown_title()
	debts.append(debt)
	return debt


# Taken off before it is given, as giving may run a game's code.
func _give_items(debt: Debt, bag: SCInventory) -> void:
	var goes := mini(debt.how_many, bag.room_for(debt.item))
	if goes < 1:
		return
	debt.how_many -= goes
	if debt.how_many < 1:
		debts.erase(debt)
	var back := goes - bag.add(debt.item, goes)
	if back > 0:
		debt.how_many += back
		if debt not in debts:
			debts.append(debt)


func _give_number(debt: Debt, machine: SCMachine) -> void:
	if not machine.has_value(debt.variable):
		return
	var held: Variant = machine.get_value(debt.variable)
	debts.erase(debt)
	if held is int:
		machine.set_value(debt.variable, (held as int) + roundi(debt.amount))
	elif held is float or held == null:
		machine.set_value(debt.variable, (held as float if held is float else 0.0) + debt.amount)
	else:
		MakerWarnings.once_for(machine, "quest reward:%s" % debt.variable,
				"The reward of the quest \"%s\" was not given: the variable %s of the player's machine holds %s, not a number. Pick another under Reward Variable."
				% [debt.quest_title, debt.variable, type_string(typeof(held))])


func _tell_who_is_missing(debt: Debt, is_there: bool) -> void:
	var why := ""
	if debt.item != null and not is_there:
		why = "no node in the group player carries an Inventory. Put one under the player"
	elif debt.item == null and not is_there:
		why = "no node in the group player has a machine. Put the player into that group"
	elif debt.item == null:
		why = "the player's machine has no variable called %s. Add it, or pick another under Reward Variable" % debt.variable
	if not why.is_empty():
		MakerWarnings.once("quest reward:%s:%s" % [debt.quest_title, why], "The reward of the quest \"%s\" has to wait: %s." % [debt.quest_title, why])
