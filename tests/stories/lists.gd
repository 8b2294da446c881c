extends Story
## Lists and tables held in variables: what goes in, what comes out, and who is told when something is not there.


func test_what_each_operation_does_to_a_list() -> void:
	# Operation, settings, the list before, the list after.
	for row: Array in [
		[SCArrayAction.ADD, {"item": 4}, [1, 2], [1, 2, 4]],
		[SCArrayAction.ADD, {"item": "x"}, null, ["x"]],
		[SCArrayAction.ADD_IF_MISSING, {"item": 2.0}, [1, 2], [1, 2]],
		[SCArrayAction.ADD_IF_MISSING, {"item": 3}, [1, 2], [1, 2, 3]],
		[SCArrayAction.ADD_ALL, {"item": [3, 4]}, [1], [1, 3, 4]],
		[SCArrayAction.ADD_ALL, {"item": PackedStringArray(["a", "b"])}, ["z"], ["z", "a", "b"]],
		[SCArrayAction.INSERT, {"item": 9}, [1, 2], [9, 1, 2]],
		[SCArrayAction.INSERT, {"item": 9, "index": 1}, [1, 2], [1, 9, 2]],
		[SCArrayAction.INSERT, {"item": 9, "index": -1}, [1, 2], [1, 2, 9]],
		[SCArrayAction.INSERT, {"item": 9, "index": 99}, [1, 2], [1, 2, 9]],
		[SCArrayAction.SET_ITEM, {"item": 9, "index": 1}, [1, 2, 3], [1, 9, 3]],
		[SCArrayAction.SET_ITEM, {"item": 9, "index": -1}, [1, 2, 3], [1, 2, 9]],
		[SCArrayAction.REMOVE_ITEM, {"item": 2}, [1, 2, 3, 2], [1, 3, 2]],
		[SCArrayAction.REMOVE_AT, {"index": -2}, [1, 2, 3], [1, 3]],
		[SCArrayAction.CLEAR, {}, [1, 2], []],
		[SCArrayAction.CLEAR, {}, null, []],
		[SCArrayAction.SORT, {}, [3, 1.5, 2], [1.5, 2, 3]],
		[SCArrayAction.SORT, {"largest_first": true}, [3, 1.5, 2], [3, 2, 1.5]],
		[SCArrayAction.SORT, {}, ["room 10", "Room 9", "attic"], ["attic", "Room 9", "room 10"]],
		[SCArrayAction.SORT, {}, [null, "b", 2, NAN, Vector2(3, 4), Vector2(1, 0), "a", 1], [1, 2, "a", "b", Vector2(1, 0), Vector2(3, 4), NAN, null]],
		[SCArrayAction.SORT, {"sort_by": "hp"}, [{"hp": 9}, {"hp": 3}], [{"hp": 3}, {"hp": 9}]],
		[SCArrayAction.SORT, {"sort_by": "hp", "largest_first": true}, [{"hp": 3}, {}, {"hp": 9}], [{"hp": 9}, {"hp": 3}, {}]],
		[SCArrayAction.REVERSE, {}, [1, 2, 3], [3, 2, 1]],
		[SCArrayAction.TAKE_FIRST, {}, [1, 2, 3], [2, 3]],
		[SCArrayAction.TAKE_LAST, {}, [1, 2, 3], [1, 2]],
	]:
		var made := await _list(row[0], row[1], row[2])
		expect_equal(str(made.get_value("list")), str(row[3]), str(row))


func test_what_each_operation_answers() -> void:
	# Operation, settings, the list, the answer.
	for row: Array in [
		[SCArrayAction.GET_ITEM, {"index": 1}, ["a", "b", "c"], "b"],
		[SCArrayAction.GET_ITEM, {"index": -1}, ["a", "b", "c"], "c"],
		[SCArrayAction.GET_FIRST, {}, ["a", "b"], "a"],
		[SCArrayAction.GET_LAST, {}, ["a", "b"], "b"],
		[SCArrayAction.GET_RANDOM, {}, ["only"], "only"],
		[SCArrayAction.GET_SMALLEST, {}, [4, "x", 2.5, null, 9], 2.5],
		[SCArrayAction.GET_LARGEST, {}, [4, "x", 2.5, null, 9], 9],
		[SCArrayAction.GET_LARGEST, {}, ["b", "a"], "b"],
		[SCArrayAction.GET_LARGEST, {"sort_by": "hp"}, [{"hp": 3}, {"hp": 9}], {"hp": 9}],
		[SCArrayAction.TAKE_FIRST, {}, ["a", "b"], "a"],
		[SCArrayAction.TAKE_LAST, {}, ["a", "b"], "b"],
		[SCArrayAction.TAKE_RANDOM, {}, ["only"], "only"],
		[SCArrayAction.COUNT, {}, [1, 2, 3], 3],
		[SCArrayAction.COUNT, {}, PackedFloat32Array([1, 2]), 2],
		[SCArrayAction.HAS, {"item": 2.0}, [1, 2], true],
		[SCArrayAction.HAS, {"item": &"a"}, ["a"], true],
		[SCArrayAction.HAS, {"item": 5}, [1, 2], false],
		[SCArrayAction.FIND, {"item": 2}, [1, 2, 2], 1],
		[SCArrayAction.FIND, {"item": 5}, [1, 2], -1],
	]:
		var options: Dictionary = row[1]
		options["store_in"] = &"answer"
		var made := await _list(row[0], options, row[2])
		expect_equal(made.get_value("answer"), row[3], str(row))


func test_each_machine_has_a_list_of_its_own() -> void:
	var design := template([
		state("A", [_array(SCArrayAction.ADD, {"item": 1})], {"FINISHED": "B"}),
		state("B"),
	], {"variables": {"list": [0]}})
	var one := start(running(design, {"name": "One"}))
	var two := start(running(design, {"name": "Two"}))
	expect_equal(one.get_value("list"), [0, 1])
	expect_equal(two.get_value("list"), [0, 1])
	expect_equal(design.variables[0].default_value, [0])


func test_a_deck_is_dealt_until_it_is_out() -> void:
	seed(7)
	var dealer := start(machine([
		state("Shuffle", [_array(SCArrayAction.SHUFFLE)], {"FINISHED": "Deal"}),
		state("Deal", [_array(SCArrayAction.TAKE_FIRST, {"store_in": &"card", "found_event": &"dealt", "not_found_event": &"out"})], [transition("dealt", "Keep"), transition("out", "Over")]),
		state("Keep", [_array(SCArrayAction.ADD, {"list_variable": &"hand", "item_variable": &"card"})], {"FINISHED": "Deal"}),
		state("Over"),
	], {"variables": {"list": ["ace", "king", "queen", "jack"], "hand": [], "card": ""}}))
	await frames(3)
	expect_state(dealer, "Over")
	expect_equal(dealer.get_value("list"), [])
	var hand: Array = dealer.get_value("hand")
	expect(hand != ["ace", "king", "queen", "jack"], "it was not shuffled")
	hand = hand.duplicate()
	hand.sort()
	expect_equal(hand, ["ace", "jack", "king", "queen"])


func test_a_random_item_follows_the_seed() -> void:
	var picked: Array = []
	for round in 2:
		seed(99)
		for i in 8:
			picked.append((await _list(SCArrayAction.GET_RANDOM, {"store_in": &"answer"}, range(20))).get_value("answer"))
	expect_equal(picked.slice(0, 8), picked.slice(8))
	expect(picked.max() != picked.min(), "it always picked %s" % picked[0])


func test_a_found_event_carries_the_item() -> void:
	var made := start(machine([
		state("A", [_array(SCArrayAction.HAS, {"item": "key", "found_event": &"has", "not_found_event": &"lacks"})], [transition("has", "B", &"what"), transition("lacks", "C")]),
		state("B"),
		state("C"),
	], {"variables": {"list": ["key"], "what": ""}}))
	await frames(1)
	expect_state(made, "B")
	expect_equal(made.get_value("what"), "key")


func test_a_list_with_a_type_keeps_it() -> void:
	var numbers: Array[int] = [1]
	var made := await _list(SCArrayAction.ADD, {"item": 2.0}, numbers)
	var held: Array = made.get_value("list")
	expect(held.is_typed() and held == [1, 2], "%s" % [held])
	made = await _list(SCArrayAction.ADD, {"item": "two"}, numbers)
	expect_equal(made.get_value("list"), numbers)
	expect_warning("Array on Machine: a String cannot go into this list, which takes only an int, so it was left out. Change the item, or make the variable an Array that takes anything.")
	made = await _list(SCArrayAction.ADD, {"item": 2}, PackedFloat64Array([1.5]))
	expect_equal(made.get_value("list"), PackedFloat64Array([1.5, 2]))
	var nodes: Array[Node2D] = []
	var there := body()
	made = await _list(SCArrayAction.ADD, {"item": there}, nodes)
	expect_equal(made.get_value("list"), [there])
	made = await _list(SCArrayAction.ADD, {"item": tree.root}, nodes)
	expect_equal(made.get_value("list"), [])
	expect_warning("cannot go into this list, which takes only a Node2D")


func test_nodes_that_are_gone_do_no_harm() -> void:
	var gone := Node.new()
	var stays := body()
	var list := [gone, stays]
	gone.free()
	var made := await _list(SCArrayAction.SORT, {"sort_by": "name"}, list)
	expect_equal(made.get_value("list")[0], stays)
	made = await _list(SCArrayAction.FIND, {"item": stays, "store_in": &"answer"}, list)
	expect_equal(made.get_value("answer"), 1)


func test_a_node_that_was_not_found_is_let_go_of() -> void:
	var there := body()
	var made := await _list(SCArrayAction.GET_FIRST, {"store_in": &"answer", "not_found_event": &"none"}, [], {"answer": there})
	expect_equal(made.get_value("answer"), null)
	made = await _list(SCArrayAction.GET_FIRST, {"store_in": &"answer", "not_found_event": &"none"}, [], {"answer": 5})
	expect_equal(made.get_value("answer"), 5)


func test_watchers_hear_of_a_list_that_changed() -> void:
	var heard := [0]
	var made := start(machine([
		state("A", [
			act("watcher").watching(["list"]).updating(func() -> void: heard[0] += 1),
			_array(SCArrayAction.ADD, {"item": 1}),
			_array(SCArrayAction.COUNT, {"store_in": &"answer"}),
		]),
	], {"variables": {"list": [], "answer": 0}}))
	await frames(1)
	expect_equal(heard[0], 1)
	expect_equal(made.get_value("answer"), 1)


func test_a_machine_that_is_gone_before_the_answer_is_kept() -> void:
	for gone: Callable in [func(m: SCMachine) -> void: m.stop(), func(m: SCMachine) -> void: m.free(), func(m: SCMachine) -> void: m.go_to("B")]:
		var made := machine([
			state("A", [
				act("watcher").watching(["list"]).updating(gone),
				_array(SCArrayAction.TAKE_FIRST, {"store_in": &"answer", "found_event": &"dealt"}),
			], {"dealt": "C"}),
			state("B"),
			state("C"),
		], {"variables": {"list": [1, 2], "answer": 0}})
		var kept := made.get_instance_id()
		stage.add_child(made)
		await frames(1)
		if is_instance_id_valid(kept):
			expect(current(made) != &"C", "it went on in a state that was left")
			expect_equal(made.get_value("answer"), 0)
			made.free()


func test_a_list_set_up_wrong_is_told_of() -> void:
	# Settings, the list, what is said.
	for row: Array in [
		[{"list_variable": &"", "item": 1}, [], "no variable is picked, so there was no list to work with. Pick the variable holding the list beside List Variable."],
		[{"item": 1}, 3.0, "list holds a float, which is not a list, so it was left alone. Make it an Array in the Variables tab, or pick another under List Variable."],
		[{}, [], "it has no Item, so it did nothing. Pick a type and a value beside Item, or a variable to read it from."],
		[{"operation": SCArrayAction.ADD_ALL, "item": 1}, [], "Item holds an int, not a list, so there was nothing to add."],
		[{"operation": SCArrayAction.COUNT}, [], "there is nowhere to put the answer, so it was lost. Pick a variable under Store In."],
		[{"operation": SCArrayAction.COUNT, "store_in": &"answer", "list_variable": &"lsit"}, [], "this machine has no variable called lsit, so the list counts as empty."],
		[{"operation": SCArrayAction.COUNT, "store_in": &"place"}, [], "place holds a Vector2, which cannot become an int, so it was left as it is. Pick another variable under Store In, or change its type in the Variables tab."],
		[{"operation": SCArrayAction.GET_ITEM, "index": 3, "store_in": &"answer"}, [1], "there is no such item in list, so nothing came of it. Name an event under Not Found Event to do something about it."],
	]:
		var options: Dictionary = row[0]
		var made := await _list(options.get("operation", SCArrayAction.ADD), options, row[1], {"place": Vector2.ZERO})
		expect_warning("Array on Machine: %s" % row[2])
		expect_state(made, "B")
		MakerWarnings._said.clear()


func test_a_list_that_repeats_works_every_frame() -> void:
	var made := start(machine([
		state("A", [_array(SCArrayAction.ADD, {"item": 1, "run_mode": SCArrayAction.EVERY_FRAME})], {"FINISHED": "B"}),
		state("B"),
	], {"variables": {"list": []}}))
	await frames(3)
	expect_state(made, "A")
	expect_equal(made.get_value("list").size(), 4)


func test_what_each_operation_does_to_a_table() -> void:
	# Operation, settings, the table before, the table after.
	for row: Array in [
		[SCDictionaryAction.SET_ENTRY, {"key": "a", "value": 1}, null, {"a": 1}],
		[SCDictionaryAction.SET_ENTRY, {"key": "a", "value": 2}, {"a": 1, "b": 5}, {"a": 2, "b": 5}],
		[SCDictionaryAction.SET_ENTRY, {"key": "3", "value": "x"}, {3: "w"}, {3: "x"}],
		[SCDictionaryAction.ADD_TO_ENTRY, {"key": "a", "value": 2}, {"a": 1}, {"a": 3}],
		[SCDictionaryAction.ADD_TO_ENTRY, {"key": "b", "value": 2.5}, {"a": 1}, {"a": 1, "b": 2.5}],
		[SCDictionaryAction.ADD_TO_ENTRY, {"key": "a", "value": Vector2(1, 0)}, {"a": Vector2(1, 1)}, {"a": Vector2(2, 1)}],
		[SCDictionaryAction.ADD_ALL, {"value": {"b": 2, "c": 3}}, {"a": 1, "b": 1}, {"a": 1, "b": 2, "c": 3}],
		[SCDictionaryAction.REMOVE_ENTRY, {"key": "a"}, {"a": 1, "b": 2}, {"b": 2}],
		[SCDictionaryAction.CLEAR, {}, {"a": 1}, {}],
	]:
		var made := await _table(row[0], row[1], row[2])
		expect_equal(made.get_value("table"), row[3], str(row))


func test_what_each_operation_reads_from_a_table() -> void:
	# Operation, settings, the answer.
	var table := {"gold": 12, "wood": 3, 7: "seven"}
	for row: Array in [
		[SCDictionaryAction.GET_ENTRY, {"key": "gold"}, 12],
		[SCDictionaryAction.GET_ENTRY, {"key": "7"}, "seven"],
		[SCDictionaryAction.HAS_KEY, {"key": "wood"}, true],
		[SCDictionaryAction.HAS_KEY, {"key": "iron"}, false],
		[SCDictionaryAction.FIND_KEY, {"value": 3.0}, "wood"],
		[SCDictionaryAction.COUNT, {}, 3],
		[SCDictionaryAction.KEYS, {}, ["gold", "wood", 7]],
		[SCDictionaryAction.VALUES, {}, [12, 3, "seven"]],
	]:
		var options: Dictionary = row[1]
		options["store_in"] = &"answer"
		var made := await _table(row[0], options, table)
		expect_equal(made.get_value("answer"), row[2], str(row))
	var made := await _table(SCDictionaryAction.GET_RANDOM_KEY, {"store_in": &"answer"}, table)
	expect(table.has(made.get_value("answer")))


func test_a_table_tells_what_was_found() -> void:
	for row: Array in [["gold", &"Rich"], ["iron", &"Poor"]]:
		var made := start(machine([
			state("Ask", [_dictionary(SCDictionaryAction.GET_ENTRY, {"key": row[0], "store_in": &"answer", "found_event": &"yes", "not_found_event": &"no"})], {"yes": "Rich", "no": "Poor"}),
			state("Rich"),
			state("Poor"),
		], {"variables": {"table": {"gold": 1}, "answer": null}}))
		await frames(1)
		expect_state(made, row[1])


func test_a_table_set_up_wrong_is_told_of() -> void:
	var typed: Dictionary[String, int] = {"a": 1}
	# Settings, the table, what is said.
	for row: Array in [
		[{"table_variable": &"", "key": "a", "value": 1}, {}, "no variable is picked, so there was no table to work with. Pick the variable holding the table beside Table Variable."],
		[{"key": "a", "value": 1}, [], "table holds an Array, which is not a table, so it was left alone."],
		[{"value": 1}, {}, "it has no Key, so it did nothing. Type in the word that the value is kept under beside Key."],
		[{"key": "a"}, {}, "it has no Value, so it did nothing."],
		[{"key": "a", "value": "x"}, typed, "a String cannot go into this table, which takes only an int, so it was left out."],
		[{"operation": SCDictionaryAction.ADD_TO_ENTRY, "key": "a", "value": "x"}, {"a": 1}, "a String cannot be added to an int, so the entry a was left as it is. Add a number to a number."],
		[{"operation": SCDictionaryAction.ADD_ALL, "value": 3}, {}, "Value holds an int, not a table, so there was nothing to add."],
		[{"operation": SCDictionaryAction.GET_ENTRY, "key": "b", "store_in": &"answer"}, {"a": 1}, "there is no such entry in table, so nothing came of it. Name an event under Not Found Event to do something about it."],
		[{"operation": SCDictionaryAction.KEYS}, {}, "there is nowhere to put the answer, so it was lost. Pick a variable under Store In."],
	]:
		var options: Dictionary = row[0]
		var made := await _table(options.get("operation", SCDictionaryAction.SET_ENTRY), options, row[1])
		expect_warning("Dictionary on Machine: %s" % row[2])
		expect_state(made, "B")
		if row[1] is Dictionary:
			expect_equal(made.get_value("table"), row[1])
		MakerWarnings._said.clear()


func test_a_table_with_a_type_is_asked_for_its_own_keys_only() -> void:
	var levels: Dictionary[int, String] = {7: "seven"}
	var prices: Dictionary[float, int] = {1.0: 1}
	var places: Dictionary[Vector2i, int] = {Vector2i(1, 1): 1}
	# Operation, settings, the table, the table after, the answer.
	for row: Array in [
		[SCDictionaryAction.GET_ENTRY, {"key": "7"}, levels, {7: "seven"}, "seven"],
		[SCDictionaryAction.HAS_KEY, {"key": "gold"}, levels, {7: "seven"}, false],
		[SCDictionaryAction.REMOVE_ENTRY, {"key": "7"}, levels, {}, null],
		[SCDictionaryAction.REMOVE_ENTRY, {"key": "gold", "not_found_event": &"none"}, levels, {7: "seven"}, null],
		[SCDictionaryAction.SET_ENTRY, {"key": "8", "value": "x"}, levels, {7: "seven", 8: "x"}, null],
		[SCDictionaryAction.ADD_TO_ENTRY, {"key": "1", "value": 2}, prices, {1.0: 3}, null],
		[SCDictionaryAction.GET_ENTRY, {"key": "gold", "not_found_event": &"none"}, places, {Vector2i(1, 1): 1}, null],
	]:
		var options: Dictionary = row[1]
		options["store_in"] = &"answer"
		var made := await _table(row[0], options, row[2])
		expect_equal(str(made.get_value("table")), str(row[3]), str(row))
		expect_equal(made.get_value("answer"), row[4], str(row))


func test_what_was_typed_in_stays_as_it_is() -> void:
	var add := _array(SCArrayAction.ADD, {"item": [1]})
	var made := start(machine([state("A", [add])], {"variables": {"list": []}}))
	(made.get_value("list")[0] as Array).append(2)
	expect_equal(add.item, [1])
	var put := _dictionary(SCDictionaryAction.SET_ENTRY, {"key": "a", "value": {"b": 1}})
	made = start(machine([state("A", [put])], {"variables": {"table": {}}}))
	made.get_value("table")["a"]["b"] = 2
	expect_equal(put.value, {"b": 1})


func test_settings_that_mean_nothing_are_hidden() -> void:
	var list := _array(SCArrayAction.COUNT)
	for row: Array in [["item", false], ["store_in", true], ["found_event", false]]:
		expect_equal(_is_shown(list, row[0]), row[1], str(row))
	list.operation = SCArrayAction.HAS
	for row: Array in [["item", true], ["index", false], ["found_event", true]]:
		expect_equal(_is_shown(list, row[0]), row[1], str(row))
	list.set(&"operation_variable", &"choice")
	expect(_is_shown(list, "index"), "the variable may choose an operation that takes one")


func test_what_lists_and_tables_say() -> void:
	for row: Array in [
		[_array(SCArrayAction.ADD, {"item": "sword"}), "Add sword to list"],
		[_array(SCArrayAction.ADD, {"item_variable": &"loot"}), "Add an item to list (item: [loot])"],
		[_array(SCArrayAction.ADD, {"list_variable": &"", "item": "sword"}), "Add sword to (pick one)"],
		[_array(SCArrayAction.COUNT, {}), "Keep how many are in list in (pick one)"],
		[_array(SCArrayAction.TAKE_LAST, {}), "Take the last off list"],
		[_array(SCArrayAction.SORT, {"sort_by": "score", "largest_first": true}), "Sort list by score, largest first"],
		[_array(SCArrayAction.HAS, {"item": "key", "store_in": &"got it"}), "Is key in list? into got it"],
		[_dictionary(SCDictionaryAction.SET_ENTRY, {"key": "gold", "value": 5}), "Set gold of table to 5"],
		[_dictionary(SCDictionaryAction.SET_ENTRY, {"key_variable": &"ore", "value": 5}), "Set [ore] of table to 5"],
		[_dictionary(SCDictionaryAction.GET_ENTRY, {"key": "gold"}), "Keep gold of table in (pick one)"],
	]:
		var kind: SCMachineAction = row[0]
		expect_equal(kind.shown_summary(), row[1])


func test_which_variables_a_list_writes() -> void:
	expect_equal(_array(SCArrayAction.ADD, {}).variables_written(), PackedStringArray(["list"]))
	expect_equal(_array(SCArrayAction.COUNT, {"store_in": &"n"}).variables_written(), PackedStringArray(["n"]))
	expect_equal(_array(SCArrayAction.TAKE_FIRST, {"store_in": &"n"}).variables_written(), PackedStringArray(["n", "list"]))
	expect_equal(_dictionary(SCDictionaryAction.KEYS, {"store_in": &"n"}).variables_written(), PackedStringArray(["n"]))


func _is_shown(object: Object, setting: String) -> bool:
	return object.get_property_list().any(func(property: Dictionary) -> bool: return property["name"] == setting and property["usage"] & PROPERTY_USAGE_EDITOR)


func _array(operation: SCArrayAction.Operation, options: Dictionary = {}) -> SCArrayAction:
	var made := SCArrayAction.new()
	made.operation = operation
	_put(made, options)
	return made


func _dictionary(operation: SCDictionaryAction.Operation, options: Dictionary = {}) -> SCDictionaryAction:
	var made := SCDictionaryAction.new()
	made.operation = operation
	_put(made, options)
	return made


## Runs it once on a list. Without one the machine has no such variable.
func _list(operation: SCArrayAction.Operation, options: Dictionary, list: Variant, variables: Dictionary = {}) -> SCMachine:
	return await _run(_array(operation, options), &"list", list, variables)


func _table(operation: SCDictionaryAction.Operation, options: Dictionary, table: Variant, variables: Dictionary = {}) -> SCMachine:
	return await _run(_dictionary(operation, options), &"table", table, variables)


func _run(action: SCMachineAction, name: StringName, held: Variant, variables: Dictionary) -> SCMachine:
	var declared := variables.duplicate()
	declared.get_or_add("answer", null)
	if held != null:
		declared[name] = held
	var made := machine([state("A", [action], {"FINISHED": "B"}), state("B")], {"variables": declared})
	stage.add_child(made)
	if not made.is_running():
		made.start()
	await frames(1)
	made.name = "Done"
	return made
