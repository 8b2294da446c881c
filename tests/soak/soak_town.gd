extends RefCounted
## The machines of one round, each under a node of its own, and what was counted of them. A machine is known by its number:
## whether it is still there is asked each time.

const Designs := preload("res://tests/soak/soak_designs.gd")

const WIDTH: float = 2000.0


## What the machines of a whole run have done.
class Tally:
	extends RefCounted

	var machines: int = 0
	var events: int = 0
	var changes: int = 0
	var finished: int = 0
	var peak: int = 0

	func on_event(_event: StringName, _data: Variant) -> void:
		events += 1

	func on_change(_previous: SCMachineState, _current: SCMachineState) -> void:
		changes += 1

	func on_finish(_state: SCMachineState) -> void:
		finished += 1


var tree: SceneTree
var random: RandomNumberGenerator
var designs: Designs = Designs.new()
var tally: Tally
var templates: Array[SCMachineTemplate] = []
var traveller: SCMachineTemplate
## Where the nodes stand.
var places: Array[Node2D] = []

var _courier: SCMachineTemplate
var _mate: SCMachineTemplate
# Ids, by the machine's number.
var _machines: PackedInt64Array = []
var _hosts: PackedInt64Array = []
# Ids of everything that was made, for the search after what is left of it.
var _made: Dictionary[int, String] = {}


func _init(stage: Node, with_random: RandomNumberGenerator, count_in: Tally, count: int) -> void:
	tree = stage.get_tree()
	random = with_random
	tally = count_in
	templates = designs.for_one()
	traveller = templates[-1]
	_courier = designs.courier()
	_mate = designs.mate()
	for i in 3:
		var place := Node2D.new()
		place.name = "Place%d" % i
		stage.add_child(place)
		places.append(place)
	for i in count:
		_machines.append(0)
		_hosts.append(0)
		add(i)
	for template: SCMachineTemplate in templates + [_courier, _mate]:
		remember(template)


func size() -> int:
	return _machines.size()


func machine(number: int) -> SCMachine:
	return instance_from_id(_machines[number]) as SCMachine if is_instance_id_valid(_machines[number]) else null


func host(number: int) -> Node2D:
	return instance_from_id(_hosts[number]) as Node2D if is_instance_id_valid(_hosts[number]) else null


func any_place() -> Node2D:
	return places[random.randi() % places.size()]


func any_template() -> SCMachineTemplate:
	return templates[random.randi() % templates.size()]


## Puts a new node with a machine in the place of one that has gone.
func add(number: int) -> void:
	var under := any_place()
	var left := host(number)
	if left != null:
		left.queue_free()
	var kind := random.randi() % (templates.size() + 1)
	var made := build(_courier if kind == templates.size() else templates[kind], "Host%d" % number)
	var brain: SCMachine = made.get_node(^"Machine")
	if kind == templates.size():
		_add_machine(made, "Mate", _mate)
	brain.physics_tick = random.randi() % 8 == 0
	brain.process_priority = random.randi() % 4
	brain.autostart = random.randi() % 8 != 0
	if random.randi() % 40 == 0:
		made.add_to_group(Designs.RUNNERS)
	_machines[number] = brain.get_instance_id()
	_hosts[number] = made.get_instance_id()
	under.add_child(made)


## A node with a machine that runs [param template], not yet in the tree.
func build(template: SCMachineTemplate, name: String) -> Node2D:
	var made := Node2D.new()
	made.name = name
	made.position = Vector2(random.randf() * WIDTH, random.randf() * WIDTH)
	var part := Node2D.new()
	part.name = "Part"
	made.add_child(part)
	_add_machine(made, "Machine", template)
	_made[made.get_instance_id()] = made.get_class()
	return made


## A scene of so many nodes with machines, as a game would have loaded it.
func packed_scene(count: int) -> PackedScene:
	var root := Node2D.new()
	root.name = "Level"
	for i in count:
		var built := build(traveller if i % 2 == 0 else any_template(), "Guest%d" % i)
		root.add_child(built)
		built.owner = root
		for child in built.get_children():
			child.owner = root
	var packed := PackedScene.new()
	packed.pack(root)
	root.free()
	return packed


func note_peak() -> void:
	tally.peak = maxi(tally.peak, SCMachine.machines_in_the_scene().size())


## Takes down the ids of a resource and of all that it holds.
func remember(resource: Resource) -> void:
	if resource == null or resource is Script or _made.has(resource.get_instance_id()):
		return
	_made[resource.get_instance_id()] = resource.get_class()
	for property in resource.get_property_list():
		if property["usage"] & PROPERTY_USAGE_STORAGE == 0:
			continue
		var held: Variant = resource.get(property["name"])
		if held is Resource:
			remember(held)
		elif held is Array:
			for item: Variant in held:
				if item is Resource:
					remember(item)


## Frees everything, in the ways there are.
func close() -> void:
	for template: SCMachineTemplate in templates + [_courier, _mate]:
		remember(template)
	for number in size():
		var left := host(number)
		if left != null and not left.is_inside_tree():
			left.free()
	places[0].free()
	places[1].queue_free()
	places[2].get_parent().remove_child(places[2])
	places[2].queue_free()
	places.clear()
	templates.clear()
	traveller = null
	_courier = null
	_mate = null


## By class, how much is left of what was made.
func left_over() -> Dictionary[String, int]:
	var left: Dictionary[String, int] = {}
	for id in _made:
		if is_instance_id_valid(id):
			left[_made[id]] = left.get(_made[id], 0) + 1
	return left


func _add_machine(under: Node, name: String, template: SCMachineTemplate) -> void:
	var made := SCMachine.new()
	made.name = name
	made.template = template
	made.event_sent.connect(tally.on_event)
	made.state_changed.connect(tally.on_change)
	tally.machines += 1
	_made[made.get_instance_id()] = "SCMachine"
	under.add_child(made)
