extends RefCounted
## Finds records and reads and writes their fields, for the library and for scripts.

const Data := preload("res://addons/quillstead/runtime/data.gd")
const DataNode := preload("res://addons/quillstead/runtime/data_node.gd")


## The Data node of a node: itself, or the nearest below it, the children first. Those inside a scene that was put below it are that
## scene's own, unless such a scene is the Data node. Null for none.
static func node_on(node: Node) -> DataNode:
	if node == null or node is DataNode:
		return node
	var level: Array[Node] = [node]
	while not level.is_empty():
		var below: Array[Node] = []
		for above in level:
			for child in above.get_children():
				if child is DataNode:
					return child
				if child.scene_file_path.is_empty() and child.get_child_count() > 0:
					below.append(child)
		level = below
	return null


## The record on a node; null without a Data node, or when that has none.
static func record_on(node: Node) -> Data:
	var found := node_on(node)
	return found.data if found != null else null


static func has_field(record: Data, field: StringName) -> bool:
	return record != null and record.has_field(field)


## What the field holds; null when there is no such field.
static func get_field(record: Data, field: StringName) -> Variant:
	return record.get_field(field) if record != null else null


## Puts a value into a field. Answers why it did not go in, to go into a sentence; empty when it did.
static func set_field(record: Data, field: StringName, value: Variant) -> String:
	return record.try_set_field(field, value) if record != null else "there is no record"
