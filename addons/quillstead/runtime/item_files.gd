extends RefCounted
## Items as plain values that a file can hold, and back.
##
## An item with a file is its path, so a newer version of the game brings its newer numbers. A copy that was made with numbers of
## its own is the path of the original and these numbers. One that was made while playing is written down whole.

const GameFiles := preload("res://addons/quillstead/runtime/quillstead_game_files.gd")
const ITEM_SCRIPT: Script = preload("res://addons/quillstead/runtime/item.gd")
const CHANGE_SCRIPT: Script = preload("res://addons/quillstead/runtime/item_change.gd")

# What knows the numbers of copies; a game may run without it.
const _NUMBERS_OF: StringName = &"SCDropLootAction"


## What [param item] is, for [method from_save].
static func to_save(item: SCItem) -> Dictionary:
	if item == null:
		return {}
	if item.has_meta(SCItem.VARIED_FROM) and _knows_numbers():
		var original := str(item.get_meta(SCItem.VARIED_FROM))
		if not original.is_empty():
			return {"varied_from": original, "numbers": ClassDB.class_call_static(_NUMBERS_OF, &"numbers_of", item), "key": item.key()}
	var path := item.resource_path
	if not path.is_empty() and not path.contains("::"):
		return {"path": path}
	var saved := {"members": _members_of(item), "key": item.key()}
	if not path.is_empty():
		saved["path"] = path
	if item.get_script() != ITEM_SCRIPT:
		saved["script"] = (item.get_script() as Script).resource_path
	if item.has_meta(SCItem.VARIED_FROM):
		saved["varied"] = str(item.get_meta(SCItem.VARIED_FROM))
	return saved


## The item that was saved. Null when it is nowhere to be found.
static func from_save(saved: Dictionary) -> SCItem:
	var key := str(saved.get("key", ""))
	if saved.has("varied_from"):
		var original := _item_at(saved["varied_from"])
		var numbers: Variant = saved.get("numbers")
		if original == null or not numbers is Dictionary or not _knows_numbers():
			return original
		var copy: SCItem = ClassDB.class_call_static(_NUMBERS_OF, &"with_numbers", original, numbers)
		if copy == null:
			return original
		copy.remember_key(key)
		return copy
	var found := _item_at(saved.get("path"))
	var members: Variant = saved.get("members")
	return found if found != null or not members is Dictionary else _made_from(saved, members as Dictionary, key)


static func _knows_numbers() -> bool:
	return ClassDB.class_exists(_NUMBERS_OF) and ClassDB.class_has_method(_NUMBERS_OF, &"with_numbers")


static func _item_at(path: Variant) -> SCItem:
	return load(str(path)) as SCItem if GameFiles.may_load(path) else null


static func _made_from(saved: Dictionary, members: Dictionary, key: String) -> SCItem:
	var script := ITEM_SCRIPT
	if GameFiles.may_load(saved.get("script")):
		script = load(str(saved["script"])) as Script
	var made: Variant = script.new() if script != null and script.can_instantiate() else null
	var item := made as SCItem
	if item == null:
		return null
	for member: Variant in members:
		_put_back(item, str(member), members[member])
	if saved.has("varied"):
		item.set_meta(SCItem.VARIED_FROM, str(saved["varied"]))
	item.remember_key(key)
	return item


static func _put_back(item: SCItem, member: String, value: Variant) -> void:
	var now: Variant = item.get(member)
	if now is Array[SCItemChange]:
		var rows: Array[SCItemChange] = []
		for row: Variant in value if value is Array else []:
			rows.append(_change_from(row))
		item.set(member, rows)
	elif value is Dictionary and (value as Dictionary).has("resource"):
		var path := str((value as Dictionary)["resource"])
		if GameFiles.may_load(path):
			item.set(member, load(path))
	elif not now is Object:
		item.set(member, value)


static func _members_of(item: SCItem) -> Dictionary:
	var members := {}
	for property in item.get_property_list():
		var usage: int = property["usage"]
		if usage & PROPERTY_USAGE_STORAGE == 0 or usage & PROPERTY_USAGE_SCRIPT_VARIABLE == 0:
			continue
		var value: Variant = item.get(str(property["name"]))
		if value is Array[SCItemChange]:
			members[property["name"]] = (value as Array[SCItemChange]).filter(_is_there).map(_change_to_save)
		elif value is Resource:
			var path := (value as Resource).resource_path
			if not path.is_empty():
				members[property["name"]] = {"resource": path}
		elif not value is Object:
			members[property["name"]] = value
	return members


static func _is_there(change: SCItemChange) -> bool:
	return change != null


static func _change_to_save(change: SCItemChange) -> Array:
	return [String(change.stat), int(change.change), change.amount]


static func _change_from(row: Variant) -> SCItemChange:
	var parts: Array = row if row is Array and (row as Array).size() == 3 else ["", 0, 0.0]
	var change: SCItemChange = CHANGE_SCRIPT.new()
	change.stat = StringName(str(parts[0]))
	change.change = clampi(int(parts[1]), 0, SCItemChange.Change.SET) as SCItemChange.Change
	change.amount = float(parts[2])
	return change
