class_name BenchByHandBulletArea
extends Area2D
## The same as an area that hears of what it touches. It misses what is thinner than its way from frame to frame.

var velocity: Vector2
var life: float
var hits_group: StringName
var damage: float = 1.0


func _ready() -> void:
	area_entered.connect(_meet)
	body_entered.connect(_meet)


func _physics_process(delta: float) -> void:
	life -= delta
	if life <= 0.0:
		queue_free()
		return
	global_position += velocity * delta


func _meet(what: Node) -> void:
	if what.is_in_group(hits_group):
		var machine := SCMachine.machine_of(what)
		if machine != null:
			machine.send_event(&"HIT", damage)
		queue_free()
	elif not what is Area2D:
		queue_free()
