extends Bench

const VARIABLES: int = 10_000
const SLOT: String = "bench_of_variables"
const BY_HAND: String = "user://bench_save_by_hand.json"
const WHOLE: String = "user://bench_save_whole.json"


func number() -> int:
	return 15


func title() -> String:
	return "World: saved games"


func measure() -> void:
	var values := _values()
	var saving := _machine(values, SCSaveGameAction.SAVE)
	var loading := _machine(values, SCSaveGameAction.LOAD)
	# As it was written, so that whatever loads one of these loads as much as the others do.
	_do(1, saving)
	_save_by_hand(1, values)
	_save_whole(1, values)
	for name in values:
		loading.set_value(name, type_convert(null, typeof(values[name])))
	_do(1, loading)
	for name in values:
		assert(loading.get_value(name) == values[name])
	var read := values.duplicate(true)
	assert(_load_by_hand(1, read) == VARIABLES and _load_whole(1, read) == VARIABLES)
	var turns := BenchTurns.new()
	turns.add_loop("save", _do.bind(saving), 1)
	turns.add_loop("save_by_hand", _save_by_hand.bind(values), 1)
	turns.add_loop("save_whole", _save_whole.bind(values), 1)
	turns.add_loop("load", _do.bind(loading), 1)
	turns.add_loop("load_by_hand", _load_by_hand.bind(read), 1)
	turns.add_loop("load_whole", _load_whole.bind(read), 1)
	await turns.play(tree)
	for way: String in ["save", "load"]:
		figure("world.%s_variables" % way, "10,000 variables %s by Save Game" % ("saved" if way == "save" else "loaded"), "ms", each(turns.samples(way), 1e6))
		figure("world.%s_variables_by_hand" % way, "the same by hand in GDScript", "ms", each(turns.samples(way + "_by_hand"), 1e6))
		figure("world.%s_variables_whole" % way, "the engine's own calls on one dictionary", "ms", each(turns.samples(way + "_whole"), 1e6))
		ratio("world.%s_variables" % way, "world.%s_variables_by_hand" % way)
		ratio("world.%s_variables" % way, "world.%s_variables_whole" % way)


func close() -> void:
	for file: String in ["user://quillstead/%s.json" % SLOT, BY_HAND, WHOLE]:
		if FileAccess.file_exists(file):
			DirAccess.remove_absolute(file)
	super()


func _values() -> Dictionary[StringName, Variant]:
	var values: Dictionary[StringName, Variant] = {}
	for i in VARIABLES:
		var each_kind: Array = [i, i * 0.5, "text number %d" % i, Vector2(i, -i), i % 2 == 0, [i, "a", Vector3(i, 0, 1)], {"count": i}, &"name"]
		values[StringName("variable_%d" % i)] = each_kind[i % each_kind.size()]
	return values


func _machine(values: Dictionary[StringName, Variant], what: SCSaveGameAction.What) -> SCMachine:
	var action := SCSaveGameAction.new()
	action.what = what
	action.slot = SLOT
	add_machines(stage, 1, BenchDesigns.template([BenchDesigns.state(&"Work", [action])]))
	var machine: SCMachine = stage.get_child(-1)
	for name in values:
		machine.set_value(name, values[name])
	return machine


func _do(count: int, machine: SCMachine) -> void:
	for i in count:
		machine.restart_state(machine.current_state)


func _save_by_hand(count: int, values: Dictionary[StringName, Variant]) -> void:
	for i in count:
		var held := {}
		for name in values:
			if not values[name] is Object:
				held[name] = JSON.from_native(values[name])
		var file := FileAccess.open(BY_HAND + ".new", FileAccess.WRITE)
		file.store_string(JSON.stringify(held, "\t"))
		file.close()
		DirAccess.rename_absolute(BY_HAND + ".new", BY_HAND)


## How many were loaded.
func _load_by_hand(count: int, values: Dictionary[StringName, Variant]) -> int:
	var loaded := 0
	for i in count:
		var held: Variant = JSON.parse_string(FileAccess.get_file_as_string(BY_HAND))
		loaded = 0
		if held is Dictionary:
			for name: String in held:
				var value: Variant = JSON.to_native(held[name])
				if values.has(name) and typeof(values[name]) == typeof(value):
					values[name] = value
					loaded += 1
	return loaded


func _save_whole(count: int, values: Dictionary[StringName, Variant]) -> void:
	for i in count:
		var file := FileAccess.open(WHOLE, FileAccess.WRITE)
		file.store_string(JSON.stringify(JSON.from_native(values), "\t"))
		file.close()


func _load_whole(count: int, _values_before: Dictionary[StringName, Variant]) -> int:
	var loaded := 0
	for i in count:
		var held: Dictionary = JSON.to_native(JSON.parse_string(FileAccess.get_file_as_string(WHOLE)))
		loaded = held.size()
	return loaded
