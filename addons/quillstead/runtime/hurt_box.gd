@tool
class_name SCHurtBox
extends Node
## What can be hurt. It goes right under a character or a thing, and guards the health that a variable of its machine holds.
##
## A hit comes from an [SCHitBox] that touches it, from the actions Attack and Hurt, or from [method take_hit]. It takes health
## away, knocks the body back and sends [member hurt_event] to the machine, or [member died_event] once the health has run out.
## After a hit it is safe for a moment. Once beaten it feels nothing more until it gets health again. Only hits are told of: a
## number that something else takes down to 0 sends nothing.
## [br][br]
## As a plain node it is hit where the body above it is touched. Its script may sit on an [Area2D] or an [Area3D] with a shape of
## its own instead: then it is hit there alone, so that a head can be smaller, or hurt more, than the whole.
## [br][br]
## The Hurt action looks for it right under its target.

## A hit took so much health. [param attacker] may be null.
signal hurt(damage: float, attacker: Node)
## The health has run out. It comes once, until it is brought back.
signal died(attacker: Node)
## So much health was given back by [method heal].
signal healed(amount: float)
## It was beaten and has health again, by [method heal].
signal revived

const Move := preload("res://addons/quillstead/runtime/quillstead_move.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

const SIDE_ON: StringName = &"quillstead_side_on"
## On what blinks: the layers that it is seen on otherwise.
const SEEN_ON: StringName = &"quillstead_seen_on"

const PIXELS_PER_METRE: float = 32.0
## What Knockback is worth that was never set, in metres a second.
const USUAL_KNOCKBACK: float = 5.0
const NOT_SET: float = -1.0
## How long it stays out of sight, and in sight, while it blinks.
const BLINK_SECONDS: float = 0.1
## For how long one that was brought back is safe at least.
const SAFE_AFTER_REVIVAL: float = 1.0
## A rest of safe time that is no time.
const OVER: float = 0.0001

@export_group("Health")
## The number variable of its machine that holds the health.
@export var health_variable: StringName = &"health"
## A number variable of its machine that is taken off every hit, of which at least 1 is left. Empty is no defence.
@export var defence_variable: StringName = &""
## What damage of a type is multiplied by: 2 for what it is weak against, 0.5 for what it stands well, 0 for what does not hurt it
## at all. A type that is not listed hurts as it is.
@export var damage_types: Dictionary[StringName, float] = {}

@export_group("Who Hurts It")
## Off, nothing hurts it: for a dodge, a shield or a cut scene.
@export var can_be_hurt: bool = true
## Only an attacker in this group hurts it. Empty is anybody.
@export var hurt_by_group: StringName = &""
## An attacker in this group does not hurt it, such as those of its own side. Empty is nobody.
@export var spared_by_group: StringName = &""

@export_group("Knockback")
## How fast a hit throws its body away from the attacker, in metres a second in 3D and pixels a second in 2D. Never set, it is 5
## metres or 160 pixels. Each hit multiplies it by its own Knockback. Zero stands fast.
@export_range(0.0, 100.0, 0.01, "or_greater", "hide_slider") var knockback: float = NOT_SET:
	get:
		return knockback if knockback >= 0.0 else _usual_knockback()
	set(value):
		knockback = value
		_knockback_is_set = value >= 0.0

@export_group("Safe Time")
## For how many seconds nothing hurts it after a hit.
@export_range(0.0, 10.0, 0.01, "or_greater", "suffix:s", "hide_slider") var invincible_seconds: float = 0.5
## Its body blinks while it is safe.
@export var blinks: bool = true

@export_group("Telling the Machine")
## Sent to its machine by a hit that it outlives. It carries how much health was taken.
@export var hurt_event: StringName = &"HURT"
## Sent to its machine when the health has run out. It carries the attacker.
@export var died_event: StringName = &"DIED"
## The variable of its machine that keeps who hit it last. Empty keeps nobody.
@export var store_attacker_in: StringName = &""

## How many safe times have come to their end. A hit box that still touches it may hit again then.
var safe_times_over: int = 0

var _knockback_is_set: bool = false
var _safe_left: float = 0.0
var _safe_for: float = 0.0
# Of the damage that take_hit() is about to take.
var _type: StringName
# This hit has ended it, which is told once.
var _is_told: bool = false
# What blinks, by id.
var _blinking: Array[int] = []
var _is_out: bool = false


func _enter_tree() -> void:
	if Engine.is_editor_hint():
		update_configuration_warnings()


func _ready() -> void:
	set_physics_process(_safe_left > 0.0)
	if not Engine.is_editor_hint() and _safe_left <= 0.0:
		# A copy made, or a scene saved, while it was out of sight.
		for node in _pictures():
			_show_again(node)


func _exit_tree() -> void:
	_stop_blinking()


func _physics_process(delta: float) -> void:
	_safe_left -= delta
	if _safe_left <= OVER:
		_end_safe_time()
	elif not _blinking.is_empty():
		_blink(int((_safe_for - _safe_left) / BLINK_SECONDS) % 2 == 0)


func _get_configuration_warnings() -> PackedStringArray:
	if not is_inside_tree() or SCMachine.machine_of_or_above(self) != null:
		return []
	return ["Nobody keeps its health. Add a Machine under %s with a number variable called %s." % [get_parent().name, health_variable]]


func _validate_property(property: Dictionary) -> void:
	# A scene keeps what somebody set: the usual knockback is another one on the other side.
	if property["name"] == &"knockback" and not _knockback_is_set:
		property["usage"] &= ~PROPERTY_USAGE_STORAGE


func _property_can_revert(property: StringName) -> bool:
	return property == &"knockback"


func _property_get_revert(property: StringName) -> Variant:
	return _usual_knockback() if property == &"knockback" else null


## Takes a hit: [param damage] less the defence, but at least 1. It is knocked back from [param attacker], [param times] as fast as
## usual; null is nobody, who knocks nothing back. False when nothing came of it: it is safe or beaten, or that attacker does not
## hurt it. Every hit comes through here, so a script that extends this one may replace it.
func take_hit(damage: float, attacker: Node, times: float) -> bool:
	var type := _type
	_type = &""
	if not can_be_hurt or is_safe() or not _is_hurt_by(attacker):
		return false
	if not damage > 0.0:
		_say("no damage", "%s was hit with a damage of %s, and a hit that does no harm is no hit, so nothing happened. Give it a number above 0." % [
			_name(), damage])
		return false
	var factor: float = damage_types.get(type, 1.0)
	if not factor > 0.0:
		return false
	var machine := machine_with_health()
	if machine == null:
		_say("no health", ("%s was hit, but it has no machine with a number called %s, so no health was taken. "
			+ "Add that variable in the Variables tab, or set Health Variable to the right name.") % [_name(), health_variable])
		return false
	var health: Variant = machine.get_value(health_variable)
	if health <= 0:
		return false
	var taken := maxf(1.0, damage * factor - _defence(machine))
	if health is int:
		taken = roundf(taken)
	# Whoever hears of any of this may do anything, up to freeing this node: what comes first is what needs nobody.
	_is_told = false
	if health > taken:
		_be_safe(invincible_seconds)
	_knock_back(attacker, times)
	_tell_of_hit(machine, health, taken, attacker)
	return true


## Takes a hit of a [param type] of damage, such as fire, by which [member damage_types] multiplies it.
func take_typed_hit(type: StringName, damage: float, attacker: Node, times: float) -> bool:
	_type = type
	return take_hit(damage, attacker, times)


## Whether it is safe from a hit that it took a moment ago.
func is_safe() -> bool:
	return _safe_left > 0.0


## Whether its health has run out.
func is_beaten() -> bool:
	var machine := machine_with_health()
	return machine != null and machine.get_value(health_variable) <= 0


## Makes it safe for so many seconds, for a respawn or a dodge. A safe time that lasts longer goes on.
func be_safe(seconds: float) -> void:
	if seconds > _safe_left:
		_be_safe(seconds)


## Gives health back, up to the variable's Max. What has no health left stays beaten, unless [param revives] is on: then it is
## safe for a moment first. Answers how much was given, as the kind of number that the variable holds.
func heal(amount: float, revives: bool = false) -> Variant:
	var machine := machine_with_health()
	if machine == null:
		return 0
	var health: Variant = machine.get_value(health_variable)
	var nothing: Variant = type_convert(0, typeof(health))
	var was_beaten: bool = health <= 0
	if not amount > 0.0 or (was_beaten and not revives):
		return nothing
	var most: Variant = machine.limits_of(health_variable)[1]
	var goal := float(health) + amount
	if most != null:
		goal = maxf(minf(goal, most), health)
	if not is_finite(goal):
		return nothing
	if was_beaten:
		be_safe(maxf(invincible_seconds, SAFE_AFTER_REVIVAL))
	var id := get_instance_id()
	machine.set_value(health_variable, roundi(goal) if health is int else goal)
	var now: Variant = machine.get_value(health_variable) if is_instance_valid(machine) else null
	var given: Variant = now - health if now is int or now is float else nothing
	if is_instance_id_valid(id):
		healed.emit(given)
	if was_beaten and given > 0 and is_instance_id_valid(id):
		revived.emit()
	return given


## The machine that keeps its health: of its own, of the node above, or of the body that this is a part of. Null when none of them
## has a number of that name.
func machine_with_health() -> SCMachine:
	var at: Node = self
	while at != null and not at is Window:
		for machine in _machines_on(at):
			var health: Variant = machine.get_value(health_variable)
			if health is int or health is float:
				return machine
		if _is_body(at):
			return null
		at = at.get_parent()
	return null


## What is hurt: the node above it, or this node when it has a machine of its own.
func thing() -> Node:
	var above := get_parent()
	return self if above == null or above is Window or SCMachine.machine_of(self) != null else above


# This node may be gone before the last of it.
func _tell_of_hit(machine: SCMachine, health: Variant, damage: float, attacker: Node) -> void:
	var left := maxf(0.0, health - damage)
	var taken: Variant = health
	var id := get_instance_id()
	var by := attacker.get_instance_id() if attacker != null else 0
	var kept_in := store_attacker_in
	machine.set_value(health_variable, roundi(left) if health is int else left)
	if is_instance_id_valid(id) and is_instance_valid(machine):
		taken = health - machine.get_value(health_variable)
	if not kept_in.is_empty() and is_instance_valid(machine):
		_keep_attacker(machine, kept_in, by)
	if not is_instance_id_valid(id):
		return
	hurt.emit(taken, _node_by(by))
	if not is_instance_id_valid(id) or not is_instance_valid(machine):
		return
	if not machine.get_value(health_variable) <= 0:
		if not hurt_event.is_empty():
			machine.send_event(hurt_event, taken)
		return
	if _is_told:
		return
	_is_told = true
	_end_safe_time()
	var event := died_event
	died.emit(_node_by(by))
	if is_instance_valid(machine) and not event.is_empty():
		machine.send_event(event, _node_by(by))


static func _keep_attacker(machine: SCMachine, variable: StringName, by: int) -> void:
	if machine.has_value(variable):
		machine.set_value(variable, _node_by(by))
	else:
		MakerWarnings.once_for(machine, "no attacker:%s" % variable,
			("A Hurt Box on %s keeps its attacker in the variable %s, which that machine does not have. "
			+ "Add it in the Variables tab, or leave Store Attacker In empty.") % [machine.name, variable])


static func _node_by(id: int) -> Node:
	return instance_from_id(id) as Node if is_instance_id_valid(id) else null


static func _machines_on(node: Node) -> Array[SCMachine]:
	var found: Array[SCMachine] = []
	for i in node.get_child_count():
		var machine := node.get_child(i) as SCMachine
		if machine != null:
			found.append(machine)
	return found


static func _is_body(node: Node) -> bool:
	return node is PhysicsBody2D or node is PhysicsBody3D


# The body that this is a part of; null when it is part of none.
func _body() -> Node:
	var at: Node = self
	while at != null and not _is_body(at):
		at = at.get_parent()
	return at


func _is_hurt_by(attacker: Node) -> bool:
	if attacker == null:
		return true
	return (hurt_by_group.is_empty() or attacker.is_in_group(hurt_by_group)) and (spared_by_group.is_empty() or not attacker.is_in_group(spared_by_group))


func _defence(machine: SCMachine) -> float:
	if defence_variable.is_empty():
		return 0.0
	var held: Variant = machine.get_value(defence_variable)
	if (held is int or held is float) and is_finite(held):
		return held
	_say("no defence:%s" % defence_variable, ("%s takes the variable %s off what hits it, but its machine has no number of that name, so nothing is taken off. "
		+ "Is it spelt as in the Variables tab?") % [_name(), defence_variable])
	return 0.0


func _knock_back(attacker: Node, times: float) -> void:
	var speed := knockback * times
	var body := _body()
	if attacker == null or body == null or not is_finite(speed) or is_zero_approx(speed):
		return
	if body is Node2D and attacker is Node2D:
		_push(body, _away_2d(body as Node2D, attacker as Node2D) * speed)
	elif body is Node3D and attacker is Node3D:
		_push(body, _away_3d(body as Node3D, attacker as Node3D) * speed)


static func _away_2d(body: Node2D, attacker: Node2D) -> Vector2:
	var away := body.global_position - attacker.global_position
	# Seen from the side, up and down are for gravity.
	return Vector2(signf(away.x), 0.0) if body.has_meta(SIDE_ON) else away.normalized()


static func _away_3d(body: Node3D, attacker: Node3D) -> Vector3:
	if not body.is_inside_tree() or not attacker.is_inside_tree():
		return Vector3.ZERO
	var away := body.global_position - attacker.global_position
	away.y = 0.0
	return away.normalized()


static func _push(body: Node, push: Variant) -> void:
	if body is CharacterBody2D or body is CharacterBody3D:
		Move.add_push(body, push)
	elif (body is RigidBody2D or body is RigidBody3D) and push.is_finite():
		body.set(&"linear_velocity", body.get(&"linear_velocity") + push)


func _be_safe(seconds: float) -> void:
	if not seconds > OVER:
		return
	_safe_left = seconds
	_safe_for = seconds
	set_physics_process(true)
	if blinks:
		_start_blinking()


func _end_safe_time() -> void:
	if _safe_left != 0.0:
		_safe_left = 0.0
		safe_times_over += 1
	_stop_blinking()
	set_physics_process(false)


func _pictures() -> Array[Node]:
	var shown := _body()
	if shown == null:
		shown = thing()
	var found: Array[Node] = []
	if shown is CanvasItem:
		found.append(shown)
	elif shown is Node3D:
		found.assign(shown.find_children("*", "GeometryInstance3D", true, false))
		if shown is GeometryInstance3D:
			found.append(shown)
	return found


func _start_blinking() -> void:
	if not is_inside_tree():
		return
	_stop_blinking()
	for node in _pictures():
		_blinking.append(node.get_instance_id())
	_blink(true)


func _blink(out: bool) -> void:
	if out == _is_out:
		return
	_is_out = out
	for id in _blinking:
		var node := _node_by(id)
		if node == null:
			continue
		if not out:
			_show_again(node)
		elif not node.has_meta(SEEN_ON):
			# Its layers are nobody's business but the camera's: Visible is the game's, and others are told of its changes.
			var property := _layers_of(node)
			node.set_meta(SEEN_ON, node.get(property))
			node.set(property, 0)


func _stop_blinking() -> void:
	_blink(false)
	_blinking.clear()


static func _show_again(node: Node) -> void:
	if node.has_meta(SEEN_ON):
		if node.get(_layers_of(node)) == 0:
			node.set(_layers_of(node), node.get_meta(SEEN_ON))
		node.remove_meta(SEEN_ON)


static func _layers_of(node: Node) -> StringName:
	return &"visibility_layer" if node is CanvasItem else &"layers"


func _usual_knockback() -> float:
	var on := get_parent() if is_inside_tree() else null
	return USUAL_KNOCKBACK * (PIXELS_PER_METRE if on is CanvasItem or (self as Node) is CanvasItem else 1.0)


func _name() -> StringName:
	return thing().name


func _say(key: String, text: String) -> void:
	MakerWarnings.once_for(self, key, text)
