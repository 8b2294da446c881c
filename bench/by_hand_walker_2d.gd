extends CharacterBody2D
## The yardstick of Move Character in 2D: the same character as a script of its own, with the same settings, the same notes for
## whoever asks later and the same regard for what others have left on the body.

const CORNERS: StringName = &"quillstead_corners"
const HANGS_AT_TOP: StringName = &"quillstead_hangs_at_top"
const WALK_GRAVITY: StringName = &"quillstead_walk_gravity"
const GRAVITY_SCALE: StringName = &"quillstead_gravity_scale"
const CUT_SHORT: StringName = &"quillstead_cut_short"
const STEPS_UP: StringName = &"quillstead_steps_up"
const ASKED_SPEED: StringName = &"quillstead_asked_speed"
const PUSH: StringName = &"quillstead_push"
const SIDE_ON: StringName = &"quillstead_side_on"

const Move := preload("res://addons/quillstead/runtime/quillstead_move.gd")

static var driven: Dictionary[int, int] = {}
static var grounded: Dictionary[int, int] = {}
static var headings: Dictionary[int, Vector2] = {}
static var gravity_of_project: float = ProjectSettings.get_setting("physics/2d/default_gravity")

@export var speed: float = 32.0
@export var acceleration: float = 0.0
@export var acceleration_in_the_air: float = 0.0
@export var falls: bool = true
@export var gravity: float = 0.0
@export var falls_faster_than_it_rises: float = 1.0
@export var floats_at_the_top: float = 1.0
@export var fastest_fall: float = 0.0
@export var slips_round_corners: float = 0.0
@export var turn_to_face: bool = false

## What it reads its direction from, as others would set it.
var values: Dictionary[StringName, Variant] = {&"way": Vector2.RIGHT}

var _agent: NavigationAgent2D = null
var _children: int = -1


func _physics_process(delta: float) -> void:
	if not get_tree().physics_interpolation or physics_interpolation_mode == Node.PHYSICS_INTERPOLATION_MODE_INHERIT:
		physics_interpolation_mode = Node.PHYSICS_INTERPOLATION_MODE_ON
	var really_falls := falls and motion_mode != MOTION_MODE_FLOATING
	var way: Vector2 = values[&"way"]
	if really_falls:
		way.y = 0.0
	if way.length_squared() > 1.0:
		way = way.normalized()
	velocity = _next_velocity(way * speed, really_falls, delta)
	if turn_to_face and not way.is_zero_approx():
		rotation = lerp_angle(rotation, way.angle(), 10.0 * delta)
	_keep(CORNERS, slips_round_corners if really_falls else 0.0, 0.0)
	_keep(HANGS_AT_TOP, floats_at_the_top, 1.0)
	_keep(WALK_GRAVITY, gravity, 0.0)
	_step(really_falls, delta)


func _next_velocity(wanted: Vector2, really_falls: bool, delta: float) -> Vector2:
	var now := velocity
	var gained := acceleration_in_the_air if acceleration_in_the_air > 0.0 and not is_on_floor() else acceleration
	if gained <= 0.0:
		return Vector2(wanted.x, now.y) if really_falls else wanted
	if really_falls:
		return Vector2(move_toward(now.x, wanted.x, gained * delta), now.y)
	return now.move_toward(wanted, gained * delta)


func _keep(key: StringName, value: float, otherwise: float) -> void:
	var held: float = get_meta(key) if has_meta(key) else otherwise
	if not is_equal_approx(held, value):
		set_meta(key, value)


func _step(really_falls: bool, delta: float) -> void:
	_note_step()
	if has_meta(CUT_SHORT):
		Move.cut_jump_short(self)
	_pull_down(really_falls, delta)
	var agent := _find_agent()
	if agent != null and agent.avoidance_enabled:
		agent.velocity = velocity
		return
	if has_meta(STEPS_UP):
		set_meta(ASKED_SPEED, velocity)
	if has_meta(PUSH):
		var push: Vector2 = Move.settle_push(self, really_falls)
		velocity += push
		move_and_slide()
		velocity -= push
		return
	if has_meta(CORNERS) and velocity.y < 0.0 and not is_on_floor():
		Move.slip_round_corner(self, delta)
	move_and_slide()
	if motion_mode == MOTION_MODE_FLOATING:
		for i in get_slide_collision_count():
			var normal := get_slide_collision(i).get_normal()
			velocity -= normal * minf(velocity.dot(normal), 0.0)


func _note_step() -> void:
	var id := get_instance_id()
	var frame := Engine.get_physics_frames()
	driven[id] = frame
	if is_on_floor():
		grounded[id] = frame
	if velocity.length_squared() > 1.0:
		headings[id] = velocity.normalized()


func _pull_down(really_falls: bool, delta: float) -> void:
	var next := velocity
	var up := up_direction
	if really_falls and not is_on_floor():
		var times := 1.0
		if falls_faster_than_it_rises != 1.0 or floats_at_the_top != 1.0:
			times = 1.0 if next.dot(up) > 0.0 else falls_faster_than_it_rises
		var scaled: float = get_meta(GRAVITY_SCALE) if has_meta(GRAVITY_SCALE) else 1.0
		next -= up * ((gravity if gravity != 0.0 else gravity_of_project) * times * scaled * delta)
	if fastest_fall > 0.0 and next.dot(up) < -fastest_fall:
		next -= up * (next.dot(up) + fastest_fall)
	velocity = next if next.is_finite() else Vector2.ZERO
	if really_falls and not has_meta(SIDE_ON):
		set_meta(SIDE_ON, true)


func _find_agent() -> NavigationAgent2D:
	if get_child_count() != _children:
		_children = get_child_count()
		_agent = null
		for child in get_children():
			if child is NavigationAgent2D:
				_agent = child
				break
	return _agent
