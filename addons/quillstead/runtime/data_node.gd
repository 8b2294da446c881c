@tool
class_name SCDataNode
extends Node
## A Data node: it gives the node it is under a record of its own, such as each enemy's own Health. Get Data, Set Data and the Data
## condition find it with From set to Data On A Node.
##
## What is picked under [member data] is what the node starts with. In the game that is copied, so that twenty enemies made from one
## file do not share their Health.

## A field of its record holds something else now.
signal field_changed(field: StringName, value: Variant)

const Data := preload("res://addons/quillstead/runtime/data.gd")

## The record it starts with. While the game runs this is the node's own copy of it, and putting another record here copies that one.
@export var data: Data:
	set(value):
		if data != null and data.field_changed.is_connected(_on_field_changed):
			data.field_changed.disconnect(_on_field_changed)
		data = value if value == null or Engine.is_editor_hint() else value.own_copy()
		if data != null and not Engine.is_editor_hint():
			data.field_changed.connect(_on_field_changed)
		update_configuration_warnings()


func _get_configuration_warnings() -> PackedStringArray:
	if data == null:
		return ["%s has no record, so there is nothing to read from it. Pick one under Data, or make one there." % name]
	if data.definition == null:
		return ["The record of %s has no Data Definition, so it has no fields. Pick one under Definition." % name]
	return data.definition.findings()


func has_field(field: StringName) -> bool:
	return data != null and data.has_field(field)


## What the field holds; null when there is none, or no record.
func get_field(field: StringName) -> Variant:
	return data.get_field(field) if data != null else null


## As [method SCData.set_field].
func set_field(field: StringName, value: Variant) -> bool:
	return data != null and data.set_field(field, value)


## Its record in plain values that a file can hold. [method from_save] takes it back.
func to_save() -> Dictionary:
	return data.to_save() if data != null else {}


## Takes back what [method to_save] gave, into the record that it has.
func from_save(saved: Dictionary) -> void:
	if data != null:
		data.from_save(saved)


func _on_field_changed(field: StringName, value: Variant) -> void:
	field_changed.emit(field, value)
