extends RefCounted
## The machines of one round, each under a node of its own, with the designs that they run. A machine is known by its number:
## whether it is still there is asked each time.

const Dice := preload("res://tests/fuzz/dice.gd")
const Design := preload("res://tests/fuzz/design.gd")
const Filling := preload("res://tests/fuzz/filling.gd")
const Scene := preload("res://tests/fuzz/scene.gd")

const RUNNERS: StringName = &"runners"
const WIDTH: float = 2000.0

var tree: SceneTree
var dice: Dice
var designs: Array[Design] = []
## Where the nodes stand. Plain ones, as a node that shows or hides cannot have its children changed meanwhile.
var places: Array[Node] = []
## Told of every new machine, not yet in the tree.
var told: Callable
## The sides of its nodes, one after another.
var sides: Array[Scene.Dimension] = [Scene.Dimension.IN_2D, Scene.Dimension.IN_3D, Scene.Dimension.NONE]
var few_nodes: bool = true
## Above 0 while some part of the tree comes or goes.
var tree_changes: int = 0
## Ids of everything that was made, for the search after what is left of it.
var made: Dictionary[int, String] = {}

var _mate: SCMachineTemplate
# Ids, by the machine's number.
var _machines: PackedInt64Array = []
var _hosts: PackedInt64Array = []


func _init(stage: Node, with_dice: Dice, with_designs: Array[Design]) -> void:
	tree = stage.get_tree()
	dice = with_dice
	designs = with_designs
	var words := designs[0]
	_mate = words.template([words.state("Listen", [], {"go": "Nod"}), words.state("Nod", [words.wait(0.05)], {"FINISHED": "Listen"})], {"variables": {"heard": 0.0}})
	for i in 3:
		var place := Node.new()
		place.name = "Place%d" % i
		stage.add_child(place)
		places.append(place)


func size() -> int:
	return _machines.size()


func machine(number: int) -> SCMachine:
	return instance_from_id(_machines[number]) as SCMachine if is_instance_id_valid(_machines[number]) else null


func host(number: int) -> Node:
	return instance_from_id(_hosts[number]) as Node if is_instance_id_valid(_hosts[number]) else null


func number_of(id: int) -> int:
	return _machines.find(id)


func machines() -> Array[SCMachine]:
	var there: Array[SCMachine] = []
	for number in size():
		if machine(number) != null:
			there.append(machine(number))
	return there


func any_place() -> Node:
	return dice.pick(places)


func any_design() -> Design:
	return dice.pick(designs)


## Puts a new node with a machine in the place of one that has gone, or beside them all.
func add(number: int = size()) -> SCMachine:
	if number == size():
		_machines.append(0)
		_hosts.append(0)
	elif host(number) != null:
		host(number).queue_free()
	var under := any_place()
	var built := build(any_design(), number)
	var brain: SCMachine = built.get_node("Machine%d" % number)
	brain.physics_tick = dice.one_in(6)
	brain.process_priority = dice.randi() % 4
	brain.autostart = not dice.one_in(8)
	if dice.one_in(40 if size() > 40 else 2):
		built.add_to_group(RUNNERS)
	_machines[number] = brain.get_instance_id()
	_hosts[number] = built.get_instance_id()
	tree_changes += 1
	under.add_child(built)
	tree_changes -= 1
	return brain


## A node with a machine that runs a design, not yet in the tree.
func build(design: Design, number: int) -> Node:
	var built := Scene.host(sides[number % sides.size()], few_nodes)
	built.name = "Host%d" % number
	if built is Node2D:
		(built as Node2D).position = Vector2(dice.randf(), dice.randf()) * WIDTH
	# There before the one that may ask for it at once.
	if design.wants_mate:
		var mate := SCMachine.new()
		mate.template = _mate
		_put_under(built, mate, "Mate")
	var brain := SCMachine.new()
	if size() < 40 and dice.one_in(5):
		brain.states = design.design.states
		brain.initial_state = design.design.initial_state
		brain.variables = design.design.variables
	else:
		brain.template = design.design
	_put_under(built, brain, "Machine%d" % number)
	made[built.get_instance_id()] = built.get_class()
	return built


## A scene of so many nodes with machines, as a game would have loaded it.
func packed_scene(count: int, design: Design = null) -> PackedScene:
	var root := Node2D.new()
	root.name = "Level"
	for i in count:
		var built := build(design if design != null else any_design(), size() + i)
		root.add_child(built)
		built.owner = root
		for below in built.find_children("*", "", true, false):
			below.owner = root
	var packed := PackedScene.new()
	packed.pack(root)
	root.free()
	return packed


## Takes down the ids of a resource and of all that it holds.
func remember(resource: Resource) -> void:
	if resource == null or resource is Script or made.has(resource.get_instance_id()):
		return
	made[resource.get_instance_id()] = resource.get_class()
	for property in resource.get_property_list():
		var held: Variant = resource.get(property["name"]) if property["usage"] & PROPERTY_USAGE_STORAGE else null
		for item: Variant in held if held is Array else [held]:
			if is_instance_valid(item) and item is Resource:
				remember(item)


func remember_designs() -> void:
	for design in designs:
		remember(design.design)


## Frees everything, in the ways there are.
func close() -> void:
	for number in size():
		if host(number) != null and not host(number).is_inside_tree():
			host(number).free()
	places[0].free()
	places[1].queue_free()
	places[2].get_parent().remove_child(places[2])
	places[2].queue_free()
	places.clear()


func let_go() -> void:
	for design in designs:
		design.take_apart()
	designs.clear()


## By class, how much is left of what was made.
func left_over() -> Dictionary[String, int]:
	var left: Dictionary[String, int] = {}
	for id in made:
		if is_instance_id_valid(id):
			left[made[id]] = left.get(made[id], 0) + 1
	return left


func _put_under(built: Node, brain: SCMachine, name: String) -> void:
	brain.name = name
	made[brain.get_instance_id()] = "SCMachine"
	if told.is_valid():
		told.call(brain)
	built.add_child(brain)
