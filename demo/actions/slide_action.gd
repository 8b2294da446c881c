class_name SlideAction
extends OverTimeAction
## Moves a node to a place beside its parent.

## Where it ends up, seen from its parent.
@export var place: Vector2


func _change(tween: Tween, node: CanvasItem) -> void:
	tween.tween_property(node, ^"position", place, seconds)


func _summary() -> String:
	return "Slide %s to %s" % [node_path, place]
