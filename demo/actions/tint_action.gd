class_name TintAction
extends OverTimeAction
## Fades a node, and all that is drawn inside it, to a colour.

## The colour that everything is multiplied by in the end. White leaves it as it was drawn.
@export var color: Color = Color.WHITE


func _change(tween: Tween, node: CanvasItem) -> void:
	tween.tween_property(node, ^"modulate", color, seconds)


func _summary() -> String:
	return "Tint %s" % node_path
