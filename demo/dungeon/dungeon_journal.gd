class_name DungeonJournal
extends Journal
## Prints what the machines of a run do that a player would tell of, through all of its scenes, and what is found, paid and kept.

## The states that are told of. Whoever runs about has too many others.
const TOLD: Array[StringName] = [
	&"Starting", &"Continuing", &"Building", &"Exploring", &"Fighting", &"Cleared", &"Opening", &"Saving", &"Saved", &"Not Saved", &"Resuming", &"Loading",
	&"Sold", &"Refusing", &"Leaving", &"Crumbling", &"Rising", &"Rings", &"Fans", &"Spirals", &"Dying", &"Drinking", &"Dashing", &"Putting It On", &"Beaten",
]
## Those that a machine begins in.
const BEGINS: Array[StringName] = [&"Building", &"Rising"]
const GLOBALS: Array[StringName] = [&"seed", &"floor", &"gold", &"rooms cleared", &"kings beaten"]

var _globals: Dictionary[StringName, Variant] = {}


func _ready() -> void:
	process_priority = -1
	process_mode = Node.PROCESS_MODE_ALWAYS
	get_tree().node_added.connect(_on_node_added)
	for node: Node in get_tree().root.find_children("*", "", true, false):
		_on_node_added(node)


func _process(delta: float) -> void:
	super(delta)
	for of in GLOBALS:
		var held: Variant = SCMachine.global_value(of)
		if held != null and held != _globals.get(of):
			_globals[of] = held
			_tell(String(of).capitalize(), str(held))


## Prints where the run has come to.
func summary() -> void:
	print("\nAfter %.2f s (%d frames):" % [_seconds, _frames])
	for of in GLOBALS:
		print("  %-13s %s" % [String(of).capitalize(), SCMachine.global_value(of)])
	for bag: SCInventory in get_tree().root.find_children("*", "SCInventory", true, false):
		print("  %-13s %s" % [bag.name, ", ".join(bag.held.map(func(stack: SCItemStack) -> String: return "%d %s" % [stack.how_many, stack.item.shown_name()]))])


func _on_node_added(node: Node) -> void:
	if node is SCMachine:
		var machine: SCMachine = node
		machine.state_changed.connect(_on_changed.bind(machine))
	elif node is SCInventory:
		var bag: SCInventory = node
		bag.item_added.connect(func(item: SCItem, how_many: int) -> void: _tell(bag.name, "+%d %s" % [how_many, item.shown_name()]))
		bag.item_taken.connect(func(item: SCItem, how_many: int) -> void: _tell(bag.name, "-%d %s" % [how_many, item.shown_name()]))


# Without a state before it, a machine begins, or goes on as it was saved.
func _on_changed(before: SCMachineState, now: SCMachineState, machine: SCMachine) -> void:
	if now != null and now.state_name in TOLD and (before != null or now.state_name in BEGINS):
		_tell(String(machine.get_parent().name), now.state_name)
