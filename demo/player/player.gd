class_name Player
extends CharacterBody2D
## Walks and jumps as the keys say, or from stop to stop by itself.

## Pixels a second.
@export var speed: float = 230.0

## How fast a jump leaves the ground, in pixels a second.
@export var jump_speed: float = 430.0

## Seconds spent at each stop on a walk of its own.
@export var rest_at_stops: float = 1.8

var _stops: Array[float] = []
var _next_stop := 0
var _rested := 0.0

@onready var _figure: Node2D = $Figure


func _physics_process(delta: float) -> void:
	var direction := _direction_by_keys() if _stops.is_empty() else _direction_to_stop(delta)
	velocity.x = move_toward(velocity.x, direction * speed, speed * 8.0 * delta)
	velocity += get_gravity() * delta
	if _stops.is_empty() and is_on_floor() and _wants_to_jump():
		velocity.y = -jump_speed
	if direction != 0.0:
		_figure.scale.x = signf(direction)
	move_and_slide()


## From here on it walks to these places in turn, over and over, and no longer listens to the keys.
func walk_by_itself(stops: Array[float]) -> void:
	_stops = stops


func _direction_by_keys() -> float:
	var letters := float(Input.is_physical_key_pressed(KEY_D)) - float(Input.is_physical_key_pressed(KEY_A))
	return clampf(Input.get_axis(&"ui_left", &"ui_right") + letters, -1.0, 1.0)


func _wants_to_jump() -> bool:
	return Input.is_action_pressed(&"ui_up") or Input.is_physical_key_pressed(KEY_W) or Input.is_physical_key_pressed(KEY_SPACE)


func _direction_to_stop(delta: float) -> float:
	var away := _stops[_next_stop] - position.x
	if absf(away) > speed * delta:
		return signf(away)
	_rested += delta
	if _rested >= rest_at_stops:
		_rested = 0.0
		_next_stop = (_next_stop + 1) % _stops.size()
	return 0.0
