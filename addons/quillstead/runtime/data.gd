@tool
class_name SCData
extends Resource
## A record: values under the names that its [SCDataDefinition] gives, such as the Damage, Speed and Rarity of a sword. It is a file
## of its own, a row of an [SCDataTable], or what an [SCDataNode] owns.
##
## The inspector shows each field as a property, and scripts can read and write it as one: [code]sword.get("Damage")[/code].
## [br][br]
## A record that is a file is shared by everything that uses the file. What is changed in it while the game runs is changed for all of
## them until the game stops, and is not saved into the file.

## A field holds something else now.
signal field_changed(field: StringName, value: Variant)

const DataDefinition := preload("res://addons/quillstead/runtime/data_definition.gd")
const DataField := preload("res://addons/quillstead/runtime/data_field.gd")
const GameFiles := preload("res://addons/quillstead/runtime/quillstead_game_files.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

# On the root of the tree: the records of files that were changed, so that a file is not read anew while nothing else holds it.
const CHANGED: StringName = &"quillstead_changed_data"

## What the record is called. A row of a table is found by it.
@export_custom(PROPERTY_HINT_NONE, "", PROPERTY_USAGE_EDITOR) var record_name: String:
	get:
		return resource_name
	set(value):
		resource_name = value
## Which fields it has.
@export var definition: DataDefinition:
	set(value):
		if definition != null and definition.changed.is_connected(_on_definition_changed):
			definition.changed.disconnect(_on_definition_changed)
		definition = value
		if definition != null and Engine.is_editor_hint():
			definition.changed.connect(_on_definition_changed)
		_on_definition_changed()
## What it holds that differs from the defaults of its definition, by field. Written with [method set_field].
@export_storage var values: Dictionary = {}:
	set(value):
		values = value
		_tell_tables(&"")

# The tables that have looked for something in it, by id.
var _tables: PackedInt64Array = []


func _get(property: StringName) -> Variant:
	return get_field(property) if has_field(property) else null


func _set(property: StringName, value: Variant) -> bool:
	if definition == null or not definition.has_field(property):
		return false
	set_field(property, value)
	return true


func _get_property_list() -> Array[Dictionary]:
	var shown: Array[Dictionary] = []
	if definition == null:
		return shown
	for name in definition.names():
		if not DataDefinition.TAKEN.has(name):
			var property := definition.field(name).as_property(name)
			property["usage"] = PROPERTY_USAGE_EDITOR
			shown.append(property)
	return shown


func _property_can_revert(property: StringName) -> bool:
	return definition != null and definition.has_field(property)


func _property_get_revert(property: StringName) -> Variant:
	return definition.field(property).starts_as() if _property_can_revert(property) else null


func _to_string() -> String:
	return shown_name()


## Its own name, that of its file, or "a record".
func shown_name() -> String:
	return DataDefinition.name_of(self, "a record")


## The names of its fields. Without a definition, of what it holds.
func field_names() -> PackedStringArray:
	return definition.names() if definition != null else PackedStringArray(values.keys())


func has_field(field: StringName) -> bool:
	return definition.has_field(field) if definition != null else values.has(field)


## What the field holds: its default when nothing was set, and null when there is no such field. A list or a table comes as a copy;
## put it back with [method set_field].
func get_field(field: StringName) -> Variant:
	if definition == null:
		return DataField.copied(values.get(field))
	var found := definition.field(field)
	if found == null:
		return null
	return found.read(values[field]) if values.has(field) else found.starts_as()


## Puts a value into a field, as the kind of value that the field holds and within its limits. False, and the game maker is told, when it
## does not go in.
func set_field(field: StringName, value: Variant) -> bool:
	var problem := try_set_field(field, value)
	if not problem.is_empty():
		MakerWarnings.once_for(self, "%s: %s" % [field, problem], "%s of %s was not changed: %s." % [field, shown_name(), problem])
	return problem.is_empty()


## As [method set_field], but it answers why it did not go in, to go into a sentence, and tells nobody. Empty when it did.
func try_set_field(field: StringName, value: Variant) -> String:
	var problem := missing(field)
	if not problem.is_empty():
		return problem
	var found := definition.field(field) if definition != null else null
	problem = found.refusal(value) if found != null else ""
	if not problem.is_empty():
		return problem
	var held: Variant = found.fitted(value) if found != null else DataField.copied(value)
	var before: Variant = get_field(field)
	if typeof(before) == typeof(held) and before == held:
		return ""
	values[field] = held
	_keep_alive()
	_tell_tables(field, before)
	field_changed.emit(field, DataField.copied(held))
	emit_changed()
	return ""


## Why there is no such field, to go into a sentence; empty when there is.
func missing(field: StringName) -> String:
	if has_field(field):
		return ""
	if definition == null:
		return "%s has no Data Definition, so there is no field called %s. Pick one under Definition" % [shown_name(), field]
	var names := definition.names()
	if names.is_empty():
		return "%s has no fields yet. Add %s to its Data Definition" % [shown_name(), field]
	return "%s has no field called %s. It has %s" % [shown_name(), field, DataField.listed(names)]


## Why the field cannot hold that value, to go into a sentence; empty when it can.
func refusal(field: StringName, value: Variant) -> String:
	var found := definition.field(field) if definition != null else null
	return found.refusal(value) if found != null else missing(field)


## Which of the field's choices that text is, from 0: for telling Common from Legendary. Below 0 when it is none, or the field has none.
func place_among_choices(field: StringName, text: Variant) -> int:
	var found := definition.field(field) if definition != null else null
	return found.place_of(text) if found != null and found.type == DataField.Type.STRING else -1


## Puts every field back to its default.
func reset() -> void:
	for field: StringName in values.keys():
		var found := definition.field(field) if definition != null else null
		if found != null:
			try_set_field(field, found.starts_as())


## A record that holds the same and is nobody else's. Records that it holds are copied with it; other resources are the same.
func own_copy() -> SCData:
	return _copied({})


## What it holds, for a file of saved games: a resource as the path of its file, and one without a file not at all.
func to_save() -> Dictionary:
	var saved := {}
	for field: StringName in values:
		var value: Variant = get_field(field)
		if not value is Object:
			saved[String(field)] = value
		elif not (value as Resource).resource_path.is_empty():
			saved[String(field)] = (value as Resource).resource_path
	return saved


## Puts back what [method to_save] told. Every other field gets its default.
func from_save(saved: Dictionary) -> void:
	for field in field_names():
		var found := definition.field(field) if definition != null else null
		var value: Variant = saved.get(field, found.starts_as() if found != null else null)
		if found != null and found.type == DataField.Type.RESOURCE and value is String:
			value = load(value) if GameFiles.may_load(value) else null
		if found != null or saved.has(field):
			set_field(field, value)


## Called by a table that looks something up by what the fields hold: it is told when that changes.
func tell_table(table: Resource) -> void:
	if not _tables.has(table.get_instance_id()):
		_tables.append(table.get_instance_id())


func _copied(made: Dictionary) -> SCData:
	if made.has(self):
		return made[self]
	var copy: SCData = (get_script() as GDScript).new()
	made[self] = copy
	copy.definition = definition
	var name := DataDefinition.name_of(self, "")
	copy.resource_name = name
	var held := {}
	for field: StringName in values:
		var value: Variant = DataField.copied(values[field])
		held[field] = (value as SCData)._copied(made) if value is SCData else value
	copy.values = held
	return copy


func _on_definition_changed() -> void:
	_tell_tables(&"")
	notify_property_list_changed()


# An empty name is for all fields.
func _tell_tables(field: StringName, before: Variant = null) -> void:
	for i in range(_tables.size() - 1, -1, -1):
		var table := instance_from_id(_tables[i])
		if table == null:
			_tables.remove_at(i)
		elif field.is_empty():
			table.call(&"forget_fields")
		else:
			table.call(&"move_row", self, field, before)


func _keep_alive() -> void:
	var tree := Engine.get_main_loop() as SceneTree
	if resource_path.is_empty() or tree == null or Engine.is_editor_hint():
		return
	if not tree.root.has_meta(CHANGED):
		tree.root.set_meta(CHANGED, {})
	var changed_records: Dictionary = tree.root.get_meta(CHANGED)
	changed_records[resource_path] = self
