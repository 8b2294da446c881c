extends Bench

const Fast := preload("res://addons/quillstead/runtime/quillstead_fast.gd")
const JOBS: int = 10_000
const GROUP: StringName = &"bench_players"
const FAR: float = 1_000_000.0

var _fields: Dictionary[String, Field] = {}


func number() -> int:
	return 5


func title() -> String:
	return "Fast lane: a step of one of 10,000 jobs"


func contestants(count: int) -> Dictionary[String, Callable]:
	return _takers(_field(count, false), "")


func measure() -> void:
	var turns := BenchTurns.new()
	var in_2d := _field(JOBS, false)
	var in_3d := _field(JOBS, true)
	turns.add_all(_takers(in_2d, ""))
	turns.add_all(_takers(in_3d, "_3d"))
	await turns.play(tree)

	for kind: String in ["chase", "check", "chase_3d", "check_3d"]:
		var what := "a chase" if kind.begins_with("chase") else "a distance check on a group"
		what += " in 3D" if kind.ends_with("3d") else ""
		var name := "fast_lane." + kind
		figure(name, what, "ns a step", turns.samples(kind))
		figure(name + "_bare", "its engine calls alone", "ns a step", turns.samples(kind + "_bare"))
		ratio(name, name + "_bare", INF if kind.ends_with("3d") else 1.3)
		figure(name + "_bindings", "the same calls through the bindings", "ns a step", turns.samples(kind + "_bindings"))
		ratio(name, name + "_bindings")


func close() -> void:
	_fields.clear()
	super()


## Machines, as many bodies, and somebody far away whom they are after.
class Field:
	extends RefCounted

	var bodies: Array[Node] = []
	var machines: Array[SCMachine] = []
	var player: Node
	var bare_lane: Node

	func _init(under: Node, count: int, in_3d: bool) -> void:
		player = _body(under, in_3d)
		player.set("position", Vector3(FAR, 0, FAR) if in_3d else Vector2(FAR, FAR))
		player.add_to_group(GROUP)
		var design := BenchDesigns.waiting([BenchDesigns.variable(&"prey", null)])
		for i in count:
			var body := _body(under, in_3d)
			bodies.append(body)
			var machine := SCMachine.new()
			machine.template = design
			body.add_child(machine)
			machine.set_value(&"prey", player)
			machines.append(machine)
		bare_lane = ClassDB.instantiate(&"BenchBareLane")
		under.add_child(bare_lane)

	func _body(under: Node, in_3d: bool) -> Node:
		var made: Node = Node3D.new() if in_3d else Node2D.new()
		under.add_child(made)
		return made


func _field(count: int, in_3d: bool) -> Field:
	var key := "%d %s" % [count, in_3d]
	if not _fields.has(key):
		_fields[key] = Field.new(stage, count, in_3d)
	return _fields[key]


func _takers(field: Field, suffix: String) -> Dictionary[String, Callable]:
	return {
		"chase%s_bare" % suffix: _bare.bind(field, true, true),
		"chase" + suffix: _ours.bind(field, true),
		"chase%s_bindings" % suffix: _bare.bind(field, true, false),
		"check%s_bare" % suffix: _bare.bind(field, false, true),
		"check" + suffix: _ours.bind(field, false),
		"check%s_bindings" % suffix: _bare.bind(field, false, false),
	}


## With a lane of its own, whose array has held no more jobs than these.
func _ours(field: Field, chases: bool) -> float:
	var lane: SCFastLane = Fast.lane_for(field.machines[0])
	var empty := await frame_nsec()
	for i in field.bodies.size():
		if chases:
			lane.add_chase(false, field.machines[i], field.bodies[i], &"prey", 10.0, 1.0, &"there", false)
		else:
			lane.add_distance_check(false, field.machines[i], field.bodies[i], GROUP, null, 10.0, false, &"near", &"far", 0)
	var full := await frame_nsec()
	lane.free()
	return (full - empty) / field.bodies.size()


func _bare(field: Field, chases: bool, written_out: bool) -> float:
	var empty := await frame_nsec()
	field.bare_lane.call(&"open", field.player is Node3D, written_out)
	for i in field.bodies.size():
		if chases:
			field.bare_lane.call(&"add_chase", field.machines[i], field.bodies[i], field.player)
		else:
			field.bare_lane.call(&"add_check", field.machines[i], field.bodies[i])
	var full := await frame_nsec()
	field.bare_lane.call(&"clear")
	return (full - empty) / field.bodies.size()
