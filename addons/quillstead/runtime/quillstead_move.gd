extends RefCounted
## What the move step of character bodies leaves to a script, and what it notes of every body it has moved.
##
## The library calls all of these with a [CharacterBody2D] or a [CharacterBody3D] that it is about to move. A game's own
## script may call [method add_push] for a blow, a gust of wind or a trampoline: it acts for a moment, whatever the body's
## machine makes of its velocity meanwhile.

const Inputs := preload("res://addons/quillstead/runtime/quillstead_input.gd")

const PUSH: StringName = &"quillstead_push"
const CUT_SHORT: StringName = &"quillstead_cut_short"
const CUT_FROM: StringName = &"quillstead_cut_from"
const CORNERS: StringName = &"quillstead_corners"

## What is left of a jump's first speed once its input is let go.
const CUT_TO: float = 0.4
## A push acts in full for so many seconds, against the body's own steering.
const PUSH_HOLDS: float = 0.15
## And fades away in so many more.
const PUSH_FADES: float = 0.15
## How finely a way round a corner is looked for in 3D: so many tries to each side.
const CORNER_TRIES: int = 8

# By a body's instance id: the physics frame in which it was last moved.
static var _driven: Dictionary = {}
# The way it last really went, of length 1. 2D alone.
static var _heading: Dictionary = {}
# The physics frame in which it last stood on the floor.
static var _grounded: Dictionary = {}


## Ends the rise of a jump early once the input it was begun with is let go. Called on each step while
## [constant CUT_SHORT] is on the body.
static func cut_jump_short(body: Node) -> void:
	var up: Variant = body.get(&"up_direction")
	var velocity: Variant = body.get(&"velocity")
	var rising: float = velocity.dot(up)
	if rising > 0.0 and Inputs.is_held(body.get_meta(CUT_SHORT)):
		return
	var most: float = float(body.get_meta(CUT_FROM, rising)) * CUT_TO
	if rising > most:
		body.set(&"velocity", velocity - up * (rising - most))
	body.remove_meta(CUT_SHORT)
	body.remove_meta(CUT_FROM)


## Pushes [param body] with a velocity of its own, in metres a second in 3D and pixels a second in 2D, for a moment. Another
## push that is still acting is replaced.
static func add_push(body: Node, push: Variant) -> void:
	if not (body is CharacterBody2D and push is Vector2) and not (body is CharacterBody3D and push is Vector3):
		push_error("add_push takes a character body and a velocity of its side, and was given %s and %s." % [body, push])
		return
	if push.is_finite() and not push.is_zero_approx():
		body.set_meta(PUSH, [push, 0.0])


## The velocity that an outside push adds to [param body] in this step. It ends by itself.
static func settle_push(body: Node, falls: bool) -> Variant:
	var acting: Array = body.get_meta(PUSH)
	var push: Variant = acting[0]
	if falls:
		push = _hand_over_the_rise(body, push)
		acting[0] = push
	var since: float = acting[1]
	acting[1] = since + 1.0 / Engine.physics_ticks_per_second
	if since >= PUSH_HOLDS + PUSH_FADES:
		body.remove_meta(PUSH)
		return push * 0.0
	if since >= PUSH_HOLDS:
		return push * (1.0 - (since - PUSH_HOLDS) / PUSH_FADES)
	# While it holds, steering against it does nothing.
	var along: Variant = push.normalized()
	return push - along * minf(body.get(&"velocity").dot(along), 0.0)


# What lifts a body that falls is for gravity to end, so it goes into the velocity that gravity works on.
static func _hand_over_the_rise(body: Node, push: Variant) -> Variant:
	var up: Variant = body.get(&"up_direction")
	var rise: float = push.dot(up)
	if absf(rise) <= 0.0001:
		return push
	body.set(&"velocity", body.get(&"velocity") + up * rise)
	return push - up * rise


## Moves a rising 2D body aside by as few pixels as its head needs to pass the corner of a ceiling, within
## [constant CORNERS].
static func slip_round_corner(body: CharacterBody2D, delta: float) -> void:
	var rise := Vector2(0.0, body.velocity.y * delta)
	if not body.test_move(body.global_transform, rise):
		return
	var side := _first_side(body.velocity.x)
	for pixels in range(1, int(body.get_meta(CORNERS)) + 1):
		for way: float in [side, -side]:
			var aside := Vector2(way * pixels, 0.0)
			if not body.test_move(body.global_transform, aside) and not body.test_move(body.global_transform.translated(aside), rise):
				body.global_position += aside
				return


## The same for a 3D body that is seen from the side, along x.
static func slip_round_corner_3d(body: CharacterBody3D, delta: float) -> void:
	var rise := Vector3(0.0, body.velocity.y * delta, 0.0)
	if not body.test_move(body.global_transform, rise):
		return
	var side := _first_side(body.velocity.x)
	var most: float = body.get_meta(CORNERS)
	for attempt in range(1, CORNER_TRIES + 1):
		for way: float in [side, -side]:
			var aside := Vector3(way * most * attempt / CORNER_TRIES, 0.0, 0.0)
			if not body.test_move(body.global_transform, aside) and not body.test_move(body.global_transform.translated(aside), rise):
				body.global_position += aside
				return


static func _first_side(speed: float) -> float:
	return -1.0 if speed < 0.0 else 1.0


## Turns a body seen from above a share of the way toward a direction: [param weight] 1 turns it there at once.
static func face_along(body: Node2D, direction: Variant, weight: float) -> void:
	var way: Vector2 = Vector2(direction.x, direction.y)
	if not way.is_zero_approx() and way.is_finite():
		body.global_rotation = lerp_angle(body.global_rotation, way.angle(), weight)


## Whether anything can be walked on in a 2D navigation map.
static func has_mesh_2d(map: RID) -> bool:
	return map.is_valid() and not NavigationServer2D.map_get_regions(map).is_empty()


## Whether anything can be walked on in a 3D navigation map.
static func has_mesh_3d(map: RID) -> bool:
	return map.is_valid() and not NavigationServer3D.map_get_regions(map).is_empty()
