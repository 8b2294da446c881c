@tool
class_name SCItem
extends Resource
## Something that can be carried, worn, bought, sold, used or dropped. Save each as a file of its own, so that whoever has one
## has the same.
##
## Inventories ([SCInventory]) put items of the same [method key] on one stack. A copy that was made with numbers of its own, such
## as a sword of a dropped treasure, has a key of its own, so it never vanishes among others.

## How rare it is, and by that how often it turns up.
enum Rarity {
	COMMON,
	UNCOMMON,
	RARE,
	LEGENDARY,
}

# Not by its global name: the library loads this script as soon as a kind has a list of items, which in a project that is opened
# for the first time is before the editor knows of such names.
const ItemChange := preload("res://addons/quillstead/runtime/item_change.gd")

## The metadata of a copy with numbers of its own: the path of the item that it was made from.
const VARIED_FROM: StringName = &"quillstead_varied_from"

## What the player reads. Empty is the name of its file. It is translated, when the game has a translation of it.
@export var item_name: String
## What tells it from other items: two with the same key are the same thing. Empty is its file, which is right for most. Fill it
## in for items that are to survive being moved to another folder when games are saved.
@export var item_key: StringName
## What sort of thing it is, such as [code]weapon[/code] or [code]food[/code]. Inventories can be sorted by it, and hold only
## some types.
@export var type: StringName
## How rare it is.
@export var rarity: Rarity = Rarity.COMMON

@export_group("Shown")
## Its picture.
@export var icon: Texture2D
## What it does, in a sentence for the player.
@export_multiline var line: String
## What it costs in a shop.
@export_range(0.0, 1000.0, 0.01, "or_greater", "hide_slider") var price: float = 0.0

@export_group("Carried")
## How many of it lie in one slot of an inventory. 1 is one to a slot.
@export_range(1, 99, 1, "or_greater", "hide_slider") var most_in_a_stack: int = 99

@export_group("Worn")
## The slot it is worn in, such as [code]hand[/code] or [code]head[/code]: one of the Slot Names of an inventory. Empty is
## something that is not worn.
@export var equips_to: StringName
## What it changes about whoever wears it, or was given it, for as long as that is so.
@export var changes: Array[ItemChange] = []

@export_group("Weapon")
## The damage of a hit with it. Zero is no weapon.
@export_range(0.0, 1000.0, 0.1, "or_greater", "hide_slider") var damage: float = 0.0
## A number of the machine of whoever swings it, to be the damage instead, such as one that grows with the level.
@export var damage_variable: StringName
## How far it reaches, in metres in 3D and pixels in 2D. Zero is as far as without a weapon.
@export_range(0.0, 100.0, 0.01, "or_greater", "hide_slider") var reach: float = 0.0
## How long a swing of it takes.
@export_range(0.0, 10.0, 0.01, "or_greater", "suffix:s", "hide_slider") var swing_seconds: float = 0.3
## How hard it pushes back what it hits, as a share of the usual push. Zero does not push.
@export_range(0.0, 10.0, 0.01, "or_greater", "hide_slider") var knockback: float = 1.0

@export_group("Used")
## It is an active item: used with a button, when it is charged.
@export var active: bool = false
## How many charges an active item needs before it can be used again, such as rooms that were cleared.
@export_range(0, 20, 1, "or_greater", "hide_slider") var charge: int = 0
## It is used up when it is used, like a potion.
@export var used_up: bool = false
## Whether one comes out of the inventory when it is used up.
@export var leaves_the_bag: bool = true
## What using it up changes about the user, for good.
@export var when_used: Array[ItemChange] = []
## The event that is sent to the machine of the user when an active item is used. It carries the item.
@export var use_event: StringName

# The key of an item that has neither one of its own nor a file. It is not stored, so a copy gets another.
var _made_key: String = ""


## The name that a player sees: [member item_name], or else that of its file.
func shown_name() -> String:
	if not item_name.is_empty():
		return tr(item_name)
	if not resource_name.is_empty():
		return tr(resource_name)
	if not resource_path.is_empty() and not resource_path.contains("::"):
		return resource_path.get_file().get_basename().capitalize()
	return "an item"


## What tells it from other items: [member item_key], or else its file. An item made while playing, and a copy with numbers of its
## own, has one that no other item has.
func key() -> String:
	if not has_meta(VARIED_FROM):
		if not item_key.is_empty():
			return item_key
		if not resource_path.is_empty():
			return resource_path
	if _made_key.is_empty():
		_made_key = "made:%d" % ResourceUID.create_id()
	return _made_key


## Gives an item that is made anew, as when a game is loaded, the key that it had.
func remember_key(made_key: String) -> void:
	_made_key = made_key


## How many of it lie in one slot, at least 1.
func stack_size() -> int:
	return maxi(most_in_a_stack, 1)
