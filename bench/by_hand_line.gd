class_name BenchByHandLine
extends Resource
## The yardstick of a line of a dialogue, as one writes it in GDScript: what has to be kept of it, and nothing else.

@export var id: StringName = &""
@export var actor: Resource
@export_multiline var words: String = ""
@export var next_line: StringName = &""
