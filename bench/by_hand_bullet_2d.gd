class_name BenchByHandBullet2D
extends Node2D
## The yardstick of Bullet Pattern in 2D: a bullet with a script of its own that does what one of those does, and no more than it
## must. It looks along its way with a ray that is made once.

var velocity: Vector2
var life: float
var hits_group: StringName
var damage: float = 1.0
var query: PhysicsRayQueryParameters2D


func _ready() -> void:
	query = PhysicsRayQueryParameters2D.new()
	query.collide_with_areas = true
	query.hit_from_inside = true


func _physics_process(delta: float) -> void:
	life -= delta
	if life <= 0.0:
		queue_free()
		return
	var from := global_position
	var to := from + velocity * delta
	query.from = from
	query.to = to
	var hit := get_world_2d().direct_space_state.intersect_ray(query)
	if not hit.is_empty():
		_meet(hit["collider"])
	global_position = to


func _meet(what: Node) -> void:
	if what.is_in_group(hits_group):
		var machine := SCMachine.machine_of(what)
		if machine != null:
			machine.send_event(&"HIT", damage)
		queue_free()
	elif not what is Area2D:
		queue_free()
