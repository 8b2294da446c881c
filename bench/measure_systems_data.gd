extends Bench

const LINES: int = 5000
const DIALOGUE: String = "user://bench_dialogue"
const BY_HAND: String = "user://bench_dialogue_by_hand"
## As it lies in a project, and as an exported game has it.
const KINDS_OF_FILE: PackedStringArray = [".tres", ".res"]
const JSON_FILE: String = "user://bench_dialogue.json"
# Where a resource without a script keeps the lines made by hand.
const LINES_BY_HAND: StringName = &"lines"

const SIZES: PackedInt32Array = [100, 10_000]
## So many values are looked for in turn, in a table of either size.
const WANTED: int = 100


func number() -> int:
	return 12


func title() -> String:
	return "Systems: dialogues and tables"


func measure() -> void:
	await _measure_dialogues()
	await _measure_tables()


func close() -> void:
	for file: String in [DIALOGUE + ".tres", DIALOGUE + ".res", BY_HAND + ".tres", BY_HAND + ".res", JSON_FILE]:
		if FileAccess.file_exists(file):
			DirAccess.remove_absolute(file)
	super()


func _measure_dialogues() -> void:
	_save_dialogues()
	var dialogue: SCDialogue = _loaded(DIALOGUE + ".res")
	var by_hand := _loaded_json()
	assert(_walk(1, dialogue) == LINES and _walk_by_hand(1, by_hand) == LINES)
	var turns := BenchTurns.new()
	for suffix in KINDS_OF_FILE:
		turns.add_loop("load" + suffix, _repeat.bind(_loaded.bind(DIALOGUE + suffix)), 1)
		turns.add_loop("load_by_hand" + suffix, _repeat.bind(_loaded.bind(BY_HAND + suffix)), 1)
	turns.add_loop("load_json", _repeat.bind(_loaded_json), 1)
	turns.add_loop("first", _look_first.bind(dialogue), 1)
	turns.add_loop("walk", _walk.bind(dialogue), 1)
	turns.add_loop("walk_by_hand", _walk_by_hand.bind(by_hand), 1)
	await turns.play(tree)
	for suffix in KINDS_OF_FILE:
		var name := "systems.dialogue_load_" + suffix.trim_prefix(".")
		figure(name, "a dialogue of 5,000 lines loaded from a %s" % suffix, "ms", each(turns.samples("load" + suffix), 1e6))
		figure(name + "_by_hand", "as many resources by hand from a %s" % suffix, "ms", each(turns.samples("load_by_hand" + suffix), 1e6))
		ratio(name, name + "_by_hand")
	figure("systems.dialogue_load_json", "as many dictionaries by hand from JSON", "ms", each(turns.samples("load_json"), 1e6))
	ratio("systems.dialogue_load_res", "systems.dialogue_load_json")
	figure("systems.dialogue_first", "the first look-up, which learns where the lines are", "ms", each(turns.samples("first"), 1e6))
	figure("systems.dialogue_line", "a further line looked up and read", "ns", each(turns.samples("walk"), LINES))
	figure("systems.dialogue_line_by_hand", "the same in a dictionary of dictionaries", "ns", each(turns.samples("walk_by_hand"), LINES))
	ratio("systems.dialogue_line", "systems.dialogue_line_by_hand")


func _save_dialogues() -> void:
	var speaker := SCActor.new()
	var lines: Array[SCDialogueLine] = []
	var resources: Array[BenchByHandLine] = []
	var dictionaries := {}
	for i in LINES:
		var line := SCDialogueLine.new()
		line.id = _line_id(i)
		line.actor = speaker
		line.words = "This is what is said in line %d, [b]loud[/b] and clear." % i
		line.next_line = _line_id(i + 1) if i + 1 < LINES else &""
		lines.append(line)
		var by_hand := BenchByHandLine.new()
		for property: StringName in [&"id", &"actor", &"words", &"next_line"]:
			by_hand.set(property, line.get(property))
		resources.append(by_hand)
		dictionaries[String(line.id)] = {"actor": "Wanda", "words": line.words, "next_line": String(line.next_line)}
	var dialogue := SCDialogue.new()
	dialogue.lines = lines
	var holder := Resource.new()
	holder.set_meta(LINES_BY_HAND, resources)
	for suffix in KINDS_OF_FILE:
		var were_saved := ResourceSaver.save(dialogue, DIALOGUE + suffix) == OK and ResourceSaver.save(holder, BY_HAND + suffix) == OK
		assert(were_saved)
	var json := FileAccess.open(JSON_FILE, FileAccess.WRITE)
	json.store_string(JSON.stringify(dictionaries))
	json.close()


# They are not in the order in which they are said.
func _line_id(place: int) -> StringName:
	return StringName("line_%d" % (place * 7 % LINES))


func _loaded(file: String) -> Resource:
	return ResourceLoader.load(file, "", ResourceLoader.CACHE_MODE_IGNORE)


func _loaded_json() -> Dictionary:
	return JSON.parse_string(FileAccess.get_file_as_string(JSON_FILE))


func _repeat(count: int, what: Callable) -> void:
	for i in count:
		what.call()


func _look_first(count: int, dialogue: SCDialogue) -> void:
	for i in count:
		# Written anew, so that it does not know where they are.
		dialogue.lines = dialogue.lines
		dialogue.line(&"line_0")


## Answers how many lines were said.
func _walk(count: int, dialogue: SCDialogue) -> int:
	var said := 0
	for i in count:
		var line := dialogue.first_line()
		while line != null:
			said += mini(line.words.length(), 1)
			line = dialogue.line(line.next_line)
	return said


func _walk_by_hand(count: int, lines: Dictionary) -> int:
	var said := 0
	for i in count:
		var id := String(_line_id(0))
		while not id.is_empty():
			var line: Dictionary = lines[id]
			said += mini((line["words"] as String).length(), 1)
			id = line["next_line"]
	return said


func _measure_tables() -> void:
	var turns := BenchTurns.new()
	for size in SIZES:
		var table := _table(size)
		var rows: Array[Dictionary] = []
		var by_code: Dictionary[String, Dictionary] = {}
		for i in size:
			rows.append({"code": _code(i), "damage": i})
			by_code[_code(i)] = rows[i]
		var wanted := PackedStringArray()
		for i in WANTED:
			wanted.append(_code(floori(float(size) / WANTED * (i * 7 % WANTED))))
		var machine := _finder(table)
		machine.set_value(&"wanted", wanted[3])
		machine.restart_state(machine.current_state)
		assert((machine.get_value(&"found") as SCData).get_field(&"Damage") == by_code[wanted[3]]["damage"])
		turns.add_loop("row%d" % size, _find_row.bind(machine, wanted), 10)
		turns.add_loop("find%d" % size, _find.bind(table, wanted), 10)
		turns.add_loop("dictionary%d" % size, _find_in_dictionary.bind(by_code, wanted))
		turns.add_loop("scan%d" % size, _scan.bind(rows, wanted), 10)
		turns.add_loop("changed%d" % size, _change_and_find.bind(_table(size)), 1)
	await turns.play(tree)
	for size in SIZES:
		var among := "100 rows" if size == 100 else "10,000 rows"
		figure("systems.row_%d" % size, "Find Row by a text among %s" % among, "us", each(turns.samples("row%d" % size), 1000.0))
		figure("systems.row_find_%d" % size, "find from a script among %s" % among, "us", each(turns.samples("find%d" % size), 1000.0))
		figure("systems.row_dictionary_%d" % size, "a dictionary by that text", "us", each(turns.samples("dictionary%d" % size), 1000.0))
		ratio("systems.row_find_%d" % size, "systems.row_dictionary_%d" % size)
		figure("systems.row_scan_%d" % size, "a loop over rows that are dictionaries", "us", each(turns.samples("scan%d" % size), 1000.0))
		ratio("systems.row_find_%d" % size, "systems.row_scan_%d" % size)
		figure("systems.row_changed_%d" % size, "find after the field has changed in one of %s" % among, "ms", each(turns.samples("changed%d" % size), 1e6))
	ratio("systems.row_%d" % SIZES[1], "systems.row_%d" % SIZES[0], 1.2)
	ratio("systems.row_find_%d" % SIZES[1], "systems.row_find_%d" % SIZES[0], 1.2)


func _table(size: int) -> SCDataTable:
	var definition := SCDataDefinition.new()
	definition.add_field(&"Code", SCDataField.Type.STRING)
	definition.add_field(&"Damage", SCDataField.Type.INT)
	var rows: Array[SCData] = []
	for i in size:
		var row := SCData.new()
		row.definition = definition
		row.set_field(&"Code", _code(i))
		row.set_field(&"Damage", i)
		rows.append(row)
	var made := SCDataTable.new()
	made.definition = definition
	made.rows = rows
	return made


func _code(place: int) -> String:
	return "item_%d" % place


func _finder(table: SCDataTable) -> SCMachine:
	var action := SCFindRowAction.new()
	action.table = table
	action.how = SCFindRowAction.WHERE_FIELD_IS
	action.field = &"Code"
	action.equals_variable = &"wanted"
	action.store_in = &"found"
	var design := BenchDesigns.template([BenchDesigns.state(&"Find", [action])],
			[BenchDesigns.variable(&"wanted", _code(0)), BenchDesigns.variable(&"found", null)])
	add_machines(stage, 1, design)
	return stage.get_child(-1)


func _find_row(count: int, machine: SCMachine, wanted: PackedStringArray) -> void:
	var state := machine.current_state
	for i in count:
		machine.set_value(&"wanted", wanted[i % WANTED])
		machine.restart_state(state)


func _find(count: int, table: SCDataTable, wanted: PackedStringArray) -> void:
	for i in count:
		table.find(&"Code", wanted[i % WANTED])


func _find_in_dictionary(count: int, rows: Dictionary[String, Dictionary], wanted: PackedStringArray) -> void:
	for i in count:
		var _found: Dictionary = rows.get(wanted[i % WANTED], {})


func _scan(count: int, rows: Array[Dictionary], wanted: PackedStringArray) -> void:
	for i in count:
		var text := wanted[i % WANTED]
		for row in rows:
			if row["code"] == text:
				break


func _change_and_find(count: int, table: SCDataTable) -> void:
	for i in count:
		var row := table.rows[0]
		row.set_field(&"Code", _code(-1) if row.get_field(&"Code") == _code(0) else _code(0))
		table.find(&"Code", _code(1))
