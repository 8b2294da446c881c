extends Story
## Lists and tables held in variables: what goes in, what comes out, and who is told when something is not there.


func test_what_each_operation_does_to_a_list() -> void:
	var t := SCArrayAction
	var numbers: Array[int] = [1]
	var nodes: Array[Node2D] = []
	var there := body()
	for row: Array in [
		# the operation, its settings, the list before (null where there is no such variable) and after, the answer
		[t.ADD, {"item": 4}, [1, 2], [1, 2, 4]], [t.ADD, {"item": "x"}, null, ["x"]], [t.ADD, {"item": 2.0}, numbers, [1, 2]],
		[t.ADD, {"item": 2}, PackedFloat64Array([1.5]), PackedFloat64Array([1.5, 2])],
		[t.ADD, {"item": "2"}, PackedStringArray(["1"]), PackedStringArray(["1", "2"])],
		[t.ADD, {"item": there}, nodes, [there]], [t.ADD_IF_MISSING, {"item": 2.0}, [1, 2], [1, 2]], [t.ADD_IF_MISSING, {"item": 1}, [1, 2], [1, 2]],
		[t.ADD_IF_MISSING, {"item": 3}, [1, 2], [1, 2, 3]], [t.ADD_ALL, {"item": [3, 4]}, [1], [1, 3, 4]],
		[t.ADD_ALL, {"item": PackedStringArray(["a", "b"])}, ["z"], ["z", "a", "b"]],
		[t.INSERT, {"item": 9}, [1, 2], [9, 1, 2]], [t.INSERT, {"item": 9, "index": 1}, [1, 2], [1, 9, 2]],
		[t.INSERT, {"item": 9, "index": -1}, [1, 2], [1, 2, 9]], [t.INSERT, {"item": 9, "index": 99}, [1, 2], [1, 2, 9]],
		[t.INSERT, {"item": 9, "index": -99}, [1, 2], [9, 1, 2]], [t.SET_ITEM, {"item": 9, "index": 0}, [1, 2, 3], [9, 2, 3]],
		[t.SET_ITEM, {"item": 9, "index": -1}, [1, 2, 3], [1, 2, 9]], [t.SET_ITEM, {"item": 9, "index": 3}, [1, 2, 3], [1, 2, 3]],
		[t.SET_ITEM, {"item": 9, "index": -4}, [1, 2, 3], [1, 2, 3]], [t.REMOVE_ITEM, {"item": 2}, [1, 2, 3, 2], [1, 3, 2]],
		[t.REMOVE_ITEM, {"item": 5}, [1, 2], [1, 2]], [t.REMOVE_AT, {"index": -2}, [1, 2, 3], [1, 3]],
		[t.REMOVE_AT, {"index": 3}, [1, 2, 3], [1, 2, 3]], [t.CLEAR, {}, [1, 2], []], [t.CLEAR, {}, null, []], [t.SORT, {}, [3, 1.5, 2], [1.5, 2, 3]],
		[t.SORT, {"largest_first": true}, [3, 1.5, 2], [3, 2, 1.5]],
		[t.SORT, {}, ["room 10", "Room 9", "attic"], ["attic", "Room 9", "room 10"]],
		[t.SORT, {}, [null, "b", 2, NAN, Vector2(3, 4), Vector2(1, 0), "a", 1], [1, 2, "a", "b", Vector2(1, 0), Vector2(3, 4), NAN, null]],
		[t.SORT, {"sort_by": "hp"}, [{"hp": 9}, {"hp": 3}], [{"hp": 3}, {"hp": 9}]],
		[t.SORT, {"sort_by": "hp", "largest_first": true}, [{"hp": 3}, {}, {"hp": 9}], [{"hp": 9}, {"hp": 3}, {}]],
		[t.REVERSE, {}, [1, 2, 3], [3, 2, 1]], [t.GET_ITEM, {"index": 1}, ["a", "b", "c"], null, "b"],
		[t.GET_ITEM, {"index": -3}, ["a", "b", "c"], null, "a"], [t.GET_ITEM, {"index": 3}, ["a", "b", "c"], null, null],
		[t.GET_FIRST, {}, ["a", "b"], null, "a"], [t.GET_LAST, {}, ["a", "b"], null, "b"], [t.GET_LAST, {}, [], null, null],
		[t.GET_RANDOM, {}, ["only"], null, "only"], [t.GET_RANDOM, {}, [], null, null], [t.GET_SMALLEST, {}, [4, "x", 2.5, null, 9], null, 2.5],
		[t.GET_LARGEST, {}, ["x", 4, 2.5, NAN, 9, Vector2(90, 0)], null, 9],
		[t.GET_LARGEST, {}, ["b", "a"], null, "b"],
		[t.GET_LARGEST, {"sort_by": "hp"}, [{"hp": 3}, {"hp": 9}], null, {"hp": 9}],
		[t.GET_SMALLEST, {}, [null, NAN], null, null], [t.TAKE_FIRST, {}, ["a", "b"], ["b"], "a"], [t.TAKE_LAST, {}, ["a", "b"], ["a"], "b"],
		[t.TAKE_RANDOM, {}, ["only"], [], "only"], [t.COUNT, {}, [1, 2, 3], null, 3], [t.COUNT, {}, PackedFloat32Array([1, 2]), null, 2],
		[t.HAS, {"item": 2.0}, [1, 2], null, true], [t.HAS, {"item": &"a"}, ["a"], null, true], [t.HAS, {"item": 5}, [1, 2], null, false],
		[t.FIND, {"item": 1}, [1, 2, 2], null, 0], [t.FIND, {"item": 2}, [1, 2, 2], null, 1], [t.FIND, {"item": 5}, [1, 2], null, -1],
	]:
		var settings := {"store_in": &"answer", "not_found_event": &"none"}
		var held := results_of(_array(row[0], settings.merged(row[1])), {} if row[2] == null else {"list": row[2]})
		var after: Variant = row[2] if row[3] == null else row[3]
		expect_equal(str(held[&"list"]), str(after), str(row))
		expect_equal(typeof(held[&"list"]), typeof(after), str(row))
		if row.size() > 4:
			expect_equal(held[&"answer"], row[4], str(row))


func test_each_machine_has_a_list_of_its_own() -> void:
	var design := template([state("A", [_array(SCArrayAction.ADD, {"item": 1})])], {"variables": {"list": [0]}})
	for name: String in ["One", "Two"]:
		expect_values(start(running(design, {"name": name})), {"list": [0, 1]})
	expect_equal(design.variables[0].default_value, [0])


func test_a_deck_is_dealt_until_it_is_out() -> void:
	seed(7)
	var dealer := start(machine([
		state("Shuffle", [_array(SCArrayAction.SHUFFLE)], {"FINISHED": "Deal"}),
		state("Deal", [_array(SCArrayAction.TAKE_FIRST, {"store_in": &"card", "found_event": &"dealt", "not_found_event": &"out"})], {"dealt": "Keep", "out": "Over"}),
		state("Keep", [_array(SCArrayAction.ADD, {"list_variable": &"hand", "item_variable": &"card"})], {"FINISHED": "Deal"}),
		state("Over"),
	], {"variables": {"list": ["ace", "king", "queen", "jack"], "hand": [], "card": ""}}))
	expect_state(dealer, "Over")
	expect_values(dealer, {"list": []})
	var hand: Array = dealer.get_value("hand").duplicate()
	expect(hand != ["ace", "king", "queen", "jack"], "it was not shuffled")
	hand.sort()
	expect_equal(hand, ["ace", "jack", "king", "queen"])


func test_a_random_item_follows_the_seed() -> void:
	var picked: Array = []
	for i in 16:
		if i % 8 == 0:
			seed(99)
		picked.append(result_of(_array(SCArrayAction.GET_RANDOM, {"store_in": &"answer"}), {"list": range(20)}))
	expect_equal(picked.slice(0, 8), picked.slice(8))
	expect(picked.max() != picked.min(), "it always picked %s" % picked[0])


func test_what_was_found_is_carried_by_an_event() -> void:
	for row: Array in [
		[_array(SCArrayAction.HAS, {"item": "key"}), "Found", "key"], [_array(SCArrayAction.HAS, {"item": "axe"}), "Lacks", ""],
		[_array(SCArrayAction.FIND, {"item": "key"}), "Found", "key"], [_array(SCArrayAction.GET_LAST, {"store_in": &"answer"}), "Found", "key"],
		[_table(SCDictionaryAction.GET_ENTRY, {"key": "gold", "store_in": &"answer"}), "Found", "much"], [_table(SCDictionaryAction.GET_ENTRY, {"key": "iron", "store_in": &"answer"}), "Lacks", ""],
		[_table(SCDictionaryAction.HAS_KEY, {"key": "gold"}), "Found", "gold"], [_table(SCDictionaryAction.REMOVE_ENTRY, {"key": "gold"}), "Found", "much"],
	]:
		_put(row[0], {"found_event": &"found", "not_found_event": &"lacks"})
		var made := start(machine([state("A", [row[0]], [transition("found", "Found", &"what"), transition("lacks", "Lacks")]), state("Found"), state("Lacks")],
			{"variables": {"list": ["lamp", "key"], "table": {"gold": "much"}, "what": "", "answer": null}}))
		expect_state(made, row[1])
		expect_values(made, {"what": row[2]}, row[0].shown_summary())
		made.free()


func test_nodes_that_are_gone_do_no_harm() -> void:
	var gone := Node.new()
	var stays := body()
	var list := [gone, stays]
	gone.free()
	expect_equal(results_of(_array(SCArrayAction.SORT, {"sort_by": "name"}), {"list": list})[&"list"][0], stays)
	expect_equal(result_of(_array(SCArrayAction.FIND, {"item": stays, "store_in": &"answer"}), {"list": list}), 1)
	# A node that was not found is let go of, what else the answer holds is kept.
	for row: Array in [[stays, null], [5, 5]]:
		var made := play(_array(SCArrayAction.GET_FIRST, {"store_in": &"answer", "not_found_event": &"none"}), {}, {"variables": {"list": [], "answer": row[0]}})
		expect_values(made, {"answer": row[1]})
		made.free()


func test_watchers_hear_of_a_list_that_changed() -> void:
	var heard := [0]
	play([
		act("watcher").watching(["list"]).updating(func() -> void: heard[0] += 1),
		_array(SCArrayAction.ADD, {"item": 1}),
		_array(SCArrayAction.COUNT, {"store_in": &"answer"}),
		_array(SCArrayAction.ADD_IF_MISSING, {"item": 1}),
	], {}, {"variables": {"list": [], "answer": 0}})
	await frames(1)
	expect_equal(heard[0], 1)


func test_a_machine_that_is_gone_before_the_answer_is_kept() -> void:
	for gone: Callable in [func(m: SCMachine) -> void: m.stop(), func(m: SCMachine) -> void: m.free(), func(m: SCMachine) -> void: m.go_to("B")]:
		for action: SCMachineAction in [
			_array(SCArrayAction.TAKE_FIRST, {"store_in": &"answer", "found_event": &"dealt"}),
			_table(SCDictionaryAction.REMOVE_ENTRY, {"key": "a", "store_in": &"answer", "found_event": &"dealt"}),
		]:
			var made := machine([
				state("A", [act("watcher").watching(["list", "table"]).updating(gone), action], {"dealt": "C"}), state("B"), state("C"),
			], {"variables": {"list": [1, 2], "table": {"a": 1}, "answer": 0}})
			var kept := made.get_instance_id()
			add(made)
			if is_instance_id_valid(kept):
				expect(current(made) != &"C", "it went on in a state that was left")
				expect_values(made, {"answer": 0})
				made.free()


func test_a_list_that_repeats_works_every_frame() -> void:
	var made := play(_array(SCArrayAction.ADD, {"item": 1, "run_mode": SCArrayAction.EVERY_FRAME}), {"FINISHED": "B"}, {"variables": {"list": []}})
	await expect_later(made, 0.05, "Work")
	expect_values(made, {"list": [1, 1, 1, 1]})


func test_what_each_operation_does_to_a_table() -> void:
	var t := SCDictionaryAction
	var goods := {"gold": 12, "wood": 3, 7: "seven", 0.5: "half"}
	for row: Array in [
		# the operation, its settings, the table before and after, the answer
		[t.SET_ENTRY, {"key": "a", "value": 1}, null, {"a": 1}],
		[t.SET_ENTRY, {"key": "a", "value": 2}, {"a": 1, "b": 5}, {"a": 2, "b": 5}],
		[t.SET_ENTRY, {"key": "3", "value": "x"}, {3: "w"}, {3: "x"}],
		[t.SET_ENTRY, {"key": "4", "value": "x"}, {3: "w"}, {3: "w", "4": "x"}],
		[t.ADD_TO_ENTRY, {"key": "a", "value": 2}, {"a": 1}, {"a": 3}],
		[t.ADD_TO_ENTRY, {"key": "b", "value": 2.5}, {"a": 1}, {"a": 1, "b": 2.5}],
		[t.ADD_TO_ENTRY, {"key": "a", "value": Vector2(1, 0)}, {"a": Vector2(1, 1)}, {"a": Vector2(2, 1)}],
		[t.ADD_ALL, {"value": {"b": 2, "c": 3}}, {"a": 1, "b": 1}, {"a": 1, "b": 2, "c": 3}],
		[t.REMOVE_ENTRY, {"key": "a"}, {"a": 1, "b": 2}, {"b": 2}], [t.REMOVE_ENTRY, {"key": "c"}, {"a": 1, "b": 2}, null],
		[t.CLEAR, {}, {"a": 1}, {}], [t.CLEAR, {}, null, {}], [t.GET_ENTRY, {"key": "gold"}, goods, null, 12],
		[t.GET_ENTRY, {"key": "7"}, goods, null, "seven"], [t.GET_ENTRY, {"key": "0.5"}, goods, null, "half"],
		[t.GET_ENTRY, {"key": "iron"}, goods, null, null], [t.HAS_KEY, {"key": "wood"}, goods, null, true],
		[t.HAS_KEY, {"key": "iron"}, goods, null, false], [t.FIND_KEY, {"value": 3.0}, goods, null, "wood"],
		[t.FIND_KEY, {"value": 4.0}, goods, null, null], [t.COUNT, {}, goods, null, 4], [t.KEYS, {}, goods, null, ["gold", "wood", 7, 0.5]],
		[t.VALUES, {}, goods, null, [12, 3, "seven", "half"]], [t.GET_RANDOM_KEY, {}, {"only": 1}, null, "only"],
		[t.GET_RANDOM_KEY, {}, {}, null, null],
	]:
		var action := _table(row[0], {"store_in": &"answer"}.merged(row[1]))
		# Where an event may tell of it, the answer need not be kept.
		if row[0] != t.HAS_KEY:
			action.not_found_event = &"none"
		var held := results_of(action, {} if row[2] == null else {"table": row[2]})
		expect_equal(held[&"table"], row[2] if row[3] == null else row[3], str(row))
		if row.size() > 4:
			expect_equal(held[&"answer"], row[4], str(row))


func test_what_is_wrong_is_told() -> void:
	var typed: Dictionary[String, int] = {"a": 1}
	var whole: Array[int] = [1]
	var nodes: Array[Node2D] = []
	var no_answer := "there is nowhere to put the answer, so it was lost. Pick a variable under Store In."
	for row: Array in [
		# the operation, its settings, the list, what is said
		[SCArrayAction.ADD, {"list_variable": &"", "item": 1}, [], "no variable is picked, so there was no list to work with. Pick the variable holding the list beside List Variable."],
		[SCArrayAction.ADD, {"item": 1}, 3.0, "list holds a float, which is not a list, so it was left alone. Make it an Array under Variables, or pick another under List Variable."],
		[SCArrayAction.ADD, {}, [], "it has no Item, so it did nothing. Pick a type and a value beside Item, or a variable to read it from."],
		[SCArrayAction.ADD, {"item": "two"}, whole, "a String cannot go into this list, which takes only an int, so it was left out. Change the item, or make the variable an Array that takes anything."],
		[SCArrayAction.INSERT, {"item": "two"}, whole, "a String cannot go into this list"],
		[SCArrayAction.SET_ITEM, {"item": "two"}, whole, "a String cannot go into this list"],
		[SCArrayAction.ADD_ALL, {"item": [1, "two"]}, whole, "a String cannot go into this list"],
		[SCArrayAction.ADD, {"item": tree.root}, nodes, "cannot go into this list, which takes only a Node2D"],
		[SCArrayAction.ADD_ALL, {"item": 1}, [], "Item holds an int, not a list, so there was nothing to add."],
		[SCArrayAction.COUNT, {}, [], no_answer],
		[SCArrayAction.COUNT, {"store_in": &"answer", "list_variable": &"lsit"}, [], "this machine has no variable called lsit, so the list counts as empty."],
		[SCArrayAction.COUNT, {"store_in": &"place"}, [], "place holds a Vector2, which cannot become an int, so it was left as it is. Pick another variable under Store In, or change its type under Variables."],
		[SCArrayAction.GET_ITEM, {"index": 3, "store_in": &"answer"}, [1], "there is no such item in list, so nothing came of it. Name an event under Not Found Event to do something about it."],
	]:
		_expect_told(_array(row[0], row[1]), &"list", row[2], "Array on Machine", row[3])
	var t := SCDictionaryAction
	for row: Array in [
		[t.SET_ENTRY, {"table_variable": &"", "key": "a", "value": 1}, {}, "no variable is picked, so there was no table to work with. Pick the variable holding the table beside Table Variable."],
		[t.SET_ENTRY, {"key": "a", "value": 1}, [], "table holds an Array, which is not a table, so it was left alone."],
		[t.SET_ENTRY, {"value": 1}, {}, "it has no Key, so it did nothing. Type in the word that the value is kept under beside Key."],
		[t.SET_ENTRY, {"key": "a"}, {}, "it has no Value, so it did nothing."],
		[t.SET_ENTRY, {"key": "a", "value": "x"}, typed, "a String cannot go into this table, which takes only an int, so it was left out."],
		[t.ADD_TO_ENTRY, {"key": "a", "value": "x"}, {"a": 1}, "a String cannot be added to an int, so the entry a was left as it is. Add a number to a number."],
		[t.ADD_ALL, {"value": 3}, {}, "Value holds an int, not a table, so there was nothing to add."],
		[t.GET_ENTRY, {"key": "b", "store_in": &"answer"}, {"a": 1}, "there is no such entry in table, so nothing came of it. Name an event under Not Found Event to do something about it."],
		[t.KEYS, {}, {}, no_answer],
		[t.KEYS, {"store_in": &"answer", "table_variable": &"tabel"}, {}, "this machine has no variable called tabel, so the table counts as empty."],
	]:
		_expect_told(_table(row[0], row[1]), &"table", row[2], "Dictionary on Machine", row[3])


func test_what_lists_and_tables_say() -> void:
	for row: Array in [
		[_array(SCArrayAction.ADD, {"item": "sword"}), "Add sword to list", ["list"]],
		[_array(SCArrayAction.ADD, {"item_variable": &"loot"}), "Add an item to list (item: [loot])", ["list"]],
		[_array(SCArrayAction.ADD, {"list_variable": &"", "item": "sword"}), "Add sword to (pick one)", []],
		[_array(SCArrayAction.COUNT, {"store_in": &"n"}), "Keep how many are in list in n", ["n"]],
		[_array(SCArrayAction.TAKE_LAST, {"store_in": &"n"}), "Take the last off list into n", ["n", "list"]],
		[_array(SCArrayAction.SORT, {"sort_by": "score", "largest_first": true}), "Sort list by score, largest first", ["list"]],
		[_array(SCArrayAction.HAS, {"item": "key", "store_in": &"got it"}), "Is key in list? into got it", ["got it"]],
		[_table(SCDictionaryAction.SET_ENTRY, {"key": "gold", "value": 5}), "Set gold of table to 5", ["table"]],
		[_table(SCDictionaryAction.SET_ENTRY, {"key_variable": &"ore", "value": 5}), "Set [ore] of table to 5", ["table"]],
		[_table(SCDictionaryAction.GET_ENTRY, {"key": "gold"}), "Keep gold of table in (pick one)", []],
	]:
		expect_line(row[0], row[1])
		expect_equal(row[0].variables_written(), PackedStringArray(row[2]), row[1])


func _array(operation: int, options: Dictionary = {}) -> SCArrayAction:
	return kind(SCArrayAction, {"operation": operation}.merged(options))


func _table(operation: int, options: Dictionary = {}) -> SCDictionaryAction:
	return kind(SCDictionaryAction, {"operation": operation}.merged(options))


## What it works on is left as it is.
func _expect_told(action: SCMachineAction, name: StringName, held: Variant, who: String, what: String) -> void:
	var after := results_of(action, {name: held, "place": Vector2.ZERO})
	expect_equal(after[name], held, what)
	expect_warning("%s: " % who + what if not what.begins_with("cannot") else what)
	MakerWarnings._said.clear()


func test_a_table_with_a_type_is_asked_for_its_own_keys_only() -> void:
	var t := SCDictionaryAction
	var levels: Dictionary[int, String] = {7: "seven"}
	var prices: Dictionary[float, int] = {1.0: 1}
	var places: Dictionary[Vector2i, int] = {Vector2i(1, 1): 1}
	for row: Array in [
		# the operation, its settings, the table before and after, the answer
		[t.GET_ENTRY, {"key": "7"}, levels, {7: "seven"}, "seven"], [t.HAS_KEY, {"key": "gold"}, levels, {7: "seven"}, false],
		[t.REMOVE_ENTRY, {"key": "7"}, levels, {}, null], [t.REMOVE_ENTRY, {"key": "gold"}, levels, {7: "seven"}, null],
		[t.SET_ENTRY, {"key": "8", "value": "x"}, levels, {7: "seven", 8: "x"}, null],
		[t.ADD_TO_ENTRY, {"key": "1", "value": 2}, prices, {1.0: 3}, null], [t.GET_ENTRY, {"key": "gold"}, places, {Vector2i(1, 1): 1}, null],
	]:
		var action := _table(row[0], {"store_in": &"answer", "not_found_event": &"none"}.merged(row[1]))
		var held := results_of(action, {"table": row[2]})
		expect_equal(str(held[&"table"]), str(row[3]), str(row))
		expect_equal(held.get(&"answer"), row[4], str(row))


func test_what_was_typed_in_stays_as_it_is() -> void:
	var add := kind(SCArrayAction, {"list_variable": &"list", "operation": SCArrayAction.ADD, "item": [1]})
	(results_of(add, {"list": []})[&"list"][0] as Array).append(2)
	expect_equal(add.item, [1])
	var put := _table(SCDictionaryAction.SET_ENTRY, {"key": "a", "value": {"b": 1}})
	results_of(put, {"table": {}})[&"table"]["a"]["b"] = 2
	expect_equal(put.value, {"b": 1})
