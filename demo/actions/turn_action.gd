class_name TurnAction
extends OverTimeAction
## Turns a node on from where it is.

## How far, clockwise.
@export_range(-360.0, 360.0, 1.0, "or_less", "or_greater", "suffix:°") var degrees: float = 30.0


func _change(tween: Tween, node: CanvasItem) -> void:
	tween.tween_property(node, ^"rotation_degrees", degrees, seconds).as_relative()


func _summary() -> String:
	return "Turn %s by %s°" % [node_path, degrees]
