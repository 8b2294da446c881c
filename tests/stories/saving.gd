extends "res://tests/stories/files/save_story.gd"
## Save Game: what it keeps, what it leaves alone, and what comes back.


func test_a_high_score_is_there_in_the_next_run() -> void:
	var names: Array[StringName] = [&"score", &"player"]
	expect(save({"score": 120, "player": "Ana", "lives": 3}, {"variables": names}))
	expect_equal(text_of(), '{\n\t"player": "s:Ana",\n\t"score": "i:120"\n}')
	expect_equal(saves(), ["save.json"], "nothing else is left behind")
	var held := loaded({"score": 0, "player": "", "lives": 1}, {"variables": names})
	expect_equal(held, {"score": 120, "player": "Ana", "lives": 1})
	expect(save({"score": 130, "player": "Bo"}, {"variables": names}), "it is written again")
	expect_equal(loaded({"score": 0, "player": ""})["player"], "Bo")


func test_every_kind_of_value_comes_back_as_the_kind_it_was() -> void:
	var held := {}
	for value: Variant in [
		true, 7, -9223372036854775808, 9223372036854775807, 2.0, 0.1, -1.5e300, INF, -INF, "", "x", "i:5", &"name", ^"../Door:position", Vector2(0.1, -3),
		Vector2i(1, -2),
		Rect2(1, 2, 3, 4), Rect2i(1, 2, 3, 4), Vector3(1, 2, 3), Vector3i(1, 2, 3), Transform2D(0.3, Vector2(4, 5)), Vector4(1, 2, 3, 4), Vector4i(1, 2, 3, 4),
		Plane(Vector3.UP, 2), Quaternion(Vector3.UP, 1), AABB(Vector3.ONE, Vector3.ONE), Basis(Vector3.UP, 1), Transform3D(Basis(Vector3.UP, 1), Vector3.ONE),
		Projection.create_perspective(60, 1.5, 0.1, 100), Color(0.1, 0.2, 0.3, 0.4), [1, 2.0, "three", &"four", [5, {}], null], [1, 2] as Array[int],
		[[1]] as Array[Array],
		{"gold": 5, 3: Vector2.ONE, &"a": {}}, {&"a": 1.0} as Dictionary[StringName, float], {} as Dictionary[int, Array], PackedByteArray([0, 255]),
		PackedInt32Array([1, -2]), PackedInt64Array([9223372036854775807, -9007199254740993, 3]), PackedFloat32Array([0.1]), PackedFloat64Array([0.1, 1e-9]),
		PackedStringArray(["a", "i:1"]), PackedVector2Array([Vector2(0.1, 2)]), PackedVector3Array([Vector3.ONE]), PackedColorArray([Color.RED]),
		PackedVector4Array([Vector4.ONE]), [PackedInt64Array([9223372036854775807])], Color.RED, PackedByteArray(), {"type": "Vector2", "args": [1, 2]},
	]:
		held["v%d" % held.size()] = value
	expect(save(held))
	var nothing := held.duplicate()
	for name: String in nothing:
		nothing[name] = null
	loaded(nothing)
	for name: String in held:
		expect_equal(var_to_str(nothing[name]), var_to_str(held[name]), name)
	var others := {}
	for name: String in held:
		others[name] = type_convert(null, typeof(held[name]))
	loaded(others)
	for name: String in held:
		expect_equal(var_to_str(others[name]), var_to_str(held[name]), name + " where one of its kind was")


func test_what_no_file_can_keep_is_left_out_and_left_alone() -> void:
	var node := body("Friend")
	var itself := []
	itself.append(itself)
	var table := {}
	table["self"] = table
	var endless: Variant = "x"
	for i in 40:
		endless = [endless, endless]
	var left_out: Array = [
		node, [node], {"friend": node}, [{"deep": [node]}], {node: 1}, Resource.new(), [] as Array[Node], {} as Dictionary[String, Resource], node.get_name,
		[node.get_name],
		node.ready, RID(), {"id": RID()}, itself, table, endless, nested(1100), nested_table(600), Vector2(NAN, 1), Color(INF, 0, 0), PackedFloat64Array([NAN]),
		PackedVector2Array([Vector2(0, INF)]), [Transform3D(Basis(), Vector3(NAN, 0, 0))],
	]
	for value: Variant in left_out:
		var owner := play([], {}, {"variables": {"kept": 1}})
		owner.set_value(&"odd", value)
		owner.send_event(&"none")
		var saver := saving(SCSaveGameAction.SAVE)
		saver.enter(owner, 0)
		expect_equal(text_of(), '{\n\t"kept": "i:1"\n}', str(typeof(value)))
		put_save('{"kept": "i:2", "odd": "i:3"}')
		saving(SCSaveGameAction.LOAD).enter(owner, 0)
		expect_equal(owner.get_value(&"kept"), 2)
		expect(not (value is Object) or owner.get_value(&"odd") == value, "loading overwrites a node")
		owner.set_value(&"odd", null)
		owner.free()
	itself.clear()
	table.clear()


func test_nested_as_deep_as_the_engine_reads() -> void:
	for row: Array in [[nested(1000), true], [nested(1022), true], [nested(1023), true], [nested(1024), false], [nested_table(511), true],
			[nested_table(512), false]]:
		var owner := play(act("watch").watching(["deep"]).done().working_on(), {}, {"variables": {"deep": null, "kept": 1}})
		owner.set_value(&"deep", row[0])
		saving(SCSaveGameAction.SAVE).enter(owner, 0)
		for name: StringName in [&"deep", &"kept"]:
			owner.set_value(name, null)
		saving(SCSaveGameAction.LOAD).enter(owner, 0)
		saving(SCSaveGameAction.LOAD).enter(owner, 0)
		expect_equal([owner.get_value(&"kept"), depth(owner.get_value(&"deep"))], [1, depth(row[0]) if row[1] else 0])
	noted.clear()


func test_texts_of_any_letters() -> void:
	var all := ""
	for code: int in [1, 7, 8, 9, 10, 11, 12, 13, 27, 34, 39, 47, 92, 127, 133, 0x2028, 0xFFFE, 0x1F600, 0x10FFFF]:
		all += "a" + String.chr(code)
	var held := {"all": all, "slash": "\\v \\\\v \v \\\v", "long": "x".repeat(65536), all: 1, "k".repeat(65536): 2, "": 3, "global": 4, "\v": "\v",
			"ä ö.1/2": [all, {all: all}]}
	expect(save(held))
	var back := held.duplicate()
	for name: String in back:
		back[name] = null
	expect_equal(loaded(back), held)
	expect_equal(JSON.new().parse(text_of()), OK, "the engine reads it by itself")


func test_numbers_that_are_none_on_their_own() -> void:
	expect(save({"none": NAN, "list": [NAN, INF]}))
	var held := loaded({"none": 1.0, "list": []})
	expect(is_nan(held["none"]) and is_nan(held["list"][0]) and held["list"][1] == INF, str(held))


func test_globals_are_kept_beside() -> void:
	var one := play([], {}, {"variables": [global_variable("gold", 10), global_variable("lives", 3)]})
	SCMachine.set_global_value(&"level", 2)
	SCMachine.set_global_value(&"friend", one)
	expect(save({"gold": 5}))
	expect_equal(JSON.parse_string(text_of()), {"gold": "i:5", "global:level": "i:2", "global:lives": "i:3"})
	for name: StringName in [&"gold", &"lives", &"level"]:
		SCMachine.set_global_value(name, 0)
	expect_equal(loaded({"gold": 1})["gold"], 5)
	expect_equal([SCMachine.global_value(&"gold"), one.get_value(&"lives"), SCMachine.global_value(&"level")], [0, 3, 2])
	expect_equal(SCMachine.global_value(&"friend"), one)
	one.free()


func test_with_variables_named_no_global_is_touched() -> void:
	SCMachine.set_global_value(&"level", 2)
	var named: Array[StringName] = [&"score", &"level", &"global:level"]
	expect(save({"score": 5, "other": 1}, {"variables": named}))
	expect_equal(JSON.parse_string(text_of()), {"global:level": null, "level": null, "score": "i:5"})
	put_save('{"global:level": "i:9", "score": "i:7", "other": "i:8"}')
	expect_equal(loaded({"score": 0, "other": 0}, {"variables": named}), {"score": 7, "other": 0})
	expect_equal(SCMachine.global_value(&"level"), 2)


func test_what_all_machines_share_is_loaded_for_all() -> void:
	var other := play([], {}, {"variables": [global_variable("gold", 10)], "name": "Other"})
	expect(save({"gold": 7}))
	var owner := play(saving(SCSaveGameAction.LOAD), WAYS, {"variables": [global_variable("gold", 0)]})
	expect_state(owner, "Worked")
	expect_equal([owner.get_value(&"gold"), other.get_value(&"gold"), SCMachine.global_value(&"gold")], [7, 7, 7])
	put_save('{"global:gold": "i:8"}')
	SCMachine.set_global_value(&"gold", 1)
	expect(do_it(SCSaveGameAction.LOAD))
	expect_equal(other.get_value(&"gold"), 8)


func test_a_file_written_by_hand() -> void:
	var rows := [
		['{"a": 3.7}', 1, 3], ['{"a": -3.7}', 1, -3], ['{"a": 1e300}', 1, 9223372036854775807], ['{"a": 3}', 1.5, 3.0], ['{"a": "x"}', &"n", &"x"],
		['{"a": "x", "b": 1}', "n", "x"],
		['{"a": "i:5", "b": 1}', "n", "i:5"], ['{"a": "i:5", "b": 1}', 1, 1], ['{"a": [1, 2]}', [], [1.0, 2.0]], ['{"a": [1]}', [7] as Array[int], [1.0]],
		['{"a": {"args": [1, 2], "type": "Vector2"}, "b": 1}', Vector2(), Vector2(1, 2)], ['{"a": {"args": [1], "type": "Vector2"}, "b": 1}', 5, 5],
		['{"a": {"x": 1}}', {}, {"x": 1.0}], ['{"a": true}', 1, 1], ['{"a": true}', 1.0, 1.0], ['{"a": null}', 1, 1], ['{"a": 1}', null, 1.0],
		['{"a": "f:2.5"}', 1, 2], ['{"a": "i:2"}', 1.5, 2.0],
		['{"a": "i:12.5"}', 1, 12], ['{"a": "i:-9223372036854775808"}', 1, -9223372036854775808], ['{"a": "i:"}', 1, 0],
		['{"a": "i:1-2"}', 1, 12], ['{"a": "i:00009223372036854775807"}', 1, 9223372036854775807], ['{"a": "sn:x"}', "n", "x"], ['\uFEFF{"a": "i:4"}', 1, 4], ['{"a": "i:1", "a": "i:2"}', 0, 2], ['{"unknown": "i:1"}', 3, 3],
		["{}", 3, 3],
		['{"a": {"type": "Node", "args": []}, "b": "i:1"}', null, null], ['{"a": {"type": "Array", "args": [], "elem_type": "Resource"}}', [1], [1]],
		['{"a": {"type": "Callable", "args": []}, "b": "i:1"}', 4, 4],
	]
	for row: Array in rows:
		put_save(row[0])
		expect_equal(loaded({"a": row[1]})["a"], row[2], row[0])


func test_what_is_no_save_changes_nothing() -> void:
	for text: String in [
		"", " ", "[]", "5", "null", '"x"', "{", '{"a": "i:5"', '{"a": "i:5"} x', '{"a" "i:5"}', "[{\"a\": \"i:5\"}]",
		'{"a": "i:5", "b": {"type": "Vector2", "args": [1]}}',
		'{"a": "i:5", "b": "i:99999999999999999999"}', '{"a": "i:5", "b": "i:9223372036854775808"}', '{"a": "i:5", "b": "i:9223372036854775808-"}',
		'{"a": "i:5", "b": "i:-9223372036854775809"}', '{"a": "i:5", "b": "f:1e999"}', '{"a": "i:5", "b": "np:a::b"}',
		'{"a": "i:5", "b": {"type": "Nope", "args": []}}',
		'{"a": "i:5", "b": {"type": "Array", "elem_type": "int", "args": ["s:x"]}}', '{"a": "i:5", "b": {"type": "Dictionary", "args": ["i:1"]}}',
		'{"a": "i:5", "b": {"type": "PackedVector2Array", "args": [1]}}', '{"a": "i:5", "b": {"type": "Vector2", "args": ["x", 1]}}', '{"a": 1e999}',
		'{"a": "x\\u0000"}',
		'{"a": "i:5", "b": {"type": "Dictionary", "key_type": "String", "args": ["i:1", "i:2"]}}',
	]:
		put_save(text)
		var held := {"a": 1, "b": null}
		expect(not do_it(SCSaveGameAction.LOAD, held), text)
		expect_equal(held, {"a": 1, "b": null}, text)


func test_slots() -> void:
	for slot: String in ["slot1", "slot2", "a/b/c", "with space", "..", "ä.ö", "a/../d", ".hidden", "", "x.json", "C", "1:2"]:
		expect(not do_it(SCSaveGameAction.EXISTS, {}, {"slot": slot}), slot)
		expect(save({"here": slot}, {"slot": slot}), slot)
		expect(do_it(SCSaveGameAction.EXISTS, {}, {"slot": slot}), slot)
		expect_equal(loaded({"here": null}, {"slot": slot})["here"], slot)
	expect(do_it(SCSaveGameAction.DELETE, {}, {"slot": "slot1"}))
	expect(not do_it(SCSaveGameAction.DELETE, {}, {"slot": "slot1"}))
	expect(not do_it(SCSaveGameAction.LOAD, {}, {"slot": "slot1"}))
	expect_equal(loaded({"here": ""}, {"slot": "slot2"})["here"], "slot2")
	put_save("{}", "slot3.scene")
	expect(do_it(SCSaveGameAction.EXISTS, {}, {"slot": "slot3"}), "a scene is a save")
	expect(not do_it(SCSaveGameAction.LOAD, {}, {"slot": "slot3"}))
	expect(do_it(SCSaveGameAction.DELETE, {}, {"slot": "slot3"}))
	expect(not FileAccess.file_exists(file_of("slot3.scene")))


func test_a_slot_outside_of_the_folder_is_none() -> void:
	FileAccess.open("user://outside.json", FileAccess.WRITE).store_string("{}")
	for slot: String in ["../outside", "a/../../outside", "..\\outside", "/tmp/quillstead_outside", "user://outside", "res://outside", "C:/outside",
			"C:\\outside", "\\outside", "a/../../outside/../../b", "../quillstead_other/x"]:
		for what: int in 6:
			expect(not do_it(what, {"a": 1}, {"slot": slot}), "%d %s" % [what, slot])
	expect_equal(FileAccess.get_file_as_string("user://outside.json"), "{}")
	expect(not DirAccess.dir_exists_absolute(SAVES), "nothing was made")
	DirAccess.remove_absolute("user://outside.json")


func test_the_slot_that_was_clicked() -> void:
	for row: Array in [[2, "2"], ["b", "b"], [&"c", "c"], [3.0, "3"]]:
		expect(save({"clicked": row[0], "gold": row[0]}, {"slot": "other", "slot_variable": &"clicked"}))
		expect_equal(saves(), [row[1] + ".json"])
		expect(do_it(SCSaveGameAction.DELETE, {"clicked": row[0]}, {"slot_variable": &"clicked"}))


func test_whether_it_worked() -> void:
	var quiet := {"worked_event": &"", "failed_event": &"", "store_worked_in": &"answer"}
	expect_equal(result_of(saving(SCSaveGameAction.LOAD, quiet)), false)
	expect_equal(result_of(saving(SCSaveGameAction.SAVE, quiet)), true)
	expect_equal(result_of(saving(SCSaveGameAction.LOAD, quiet)), true, "it is not what was loaded")
	expect_equal(result_of(saving(SCSaveGameAction.EXISTS, quiet)), true)
	expect_equal(result_of(saving(SCSaveGameAction.DELETE, quiet)), true)
	expect_equal(result_of(saving(SCSaveGameAction.EXISTS, quiet)), false)
	expect_equal(result_of(saving(99, quiet)), true, "as Save")
	expect_equal(result_of(saving(-1, quiet)), true)
	expect_equal(saves(), ["save.json"])


func test_what_it_says_and_shows() -> void:
	expect_lines(SCSaveGameAction, {
		"Save every variable to save": {}, "Load every variable from save": {"what": 1}, "Save score, name to a": {"variables": [&"score",
		&"name"] as Array[StringName], "slot": "a"},
		"Load score from a": {"what": 1, "variables": [&"score"] as Array[StringName], "slot": "a"}, "Delete save": {"what": 2}, "Is there a save?": {"what": 3},
		"Save the scene to save": {"what": 4}, "Load the scene from save": {"what": 5}, "Is there a [clicked]?": {"what": 3, "slot_variable": &"clicked"},
	})
	expect_shown(saving(0), ["what", "slot", "variables"])
	expect_hidden(saving(3), ["variables"])
	expect_hidden(saving(0, {"slot_variable": &"x"}), ["slot"])
	var names: Array[StringName] = [&"score"]
	expect_equal(saving(0, {"variables": names}).variables_read(), PackedStringArray(["score"]))
	expect_equal(saving(1, {"variables": names, "store_worked_in": &"ok"}).variables_written(), PackedStringArray(["ok", "score"]))


func test_a_limit_that_is_loaded_too() -> void:
	expect(save({"health": 150, "most": 200, "shield": 20}))
	var variables := [variable("health", 50, {"never_above": "most"}), variable("most", 100), variable("shield", 30, {"never_above": "10"})]
	var owner := play(saving(SCSaveGameAction.LOAD), WAYS, {"variables": variables})
	expect_values(owner, {"health": 150, "most": 200, "shield": 10})
	put_save('{"most": "i:60"}')
	owner.go_to(&"Work")
	expect_values(owner, {"health": 60, "most": 60})


func test_who_hears_of_a_loaded_value_finds_all_of_them() -> void:
	expect(save({"a": 1, "b": 2, "c": 3}))
	var watcher := act("watch").watching(["a", "b", "c"])
	watcher.on_update = func(m: SCMachine) -> void: watcher.told.append("%s %s %s" % [m.get_value(&"a"), m.get_value(&"b"), m.get_value(&"c")])
	var owner := play([watcher.done().working_on(), saving(SCSaveGameAction.LOAD)], WAYS, {"variables": {"a": 0, "b": 2, "c": 0}})
	expect_state(owner, "Worked")
	expect_log(["watch enter", "watch update", "1 2 3", "watch update", "1 2 3", "watch exit"])


func test_whatever_they_do_then_all_is_loaded() -> void:
	expect(save({"a": 1, "b": 2, "z": 26}))
	var rows := {
		"leave": func(m: SCMachine) -> void: m.go_to(&"Away"), "stop": func(m: SCMachine) -> void: m.stop(),
		"again": func(m: SCMachine) -> void: m.go_to(&"Work") if m.get_value(&"z") == 0 else null,
		"save": func(m: SCMachine) -> void: saving(SCSaveGameAction.SAVE, {"slot": "other"}).enter(m, 0), "out": func(m: SCMachine) -> void: stage.remove_child(m),
	}
	for named: String in rows:
		var watcher := act("watch").watching(["a"]).done().working_on().updating(rows[named])
		var owner := play([watcher, saving(SCSaveGameAction.LOAD, {"store_worked_in": &"ok"})], WAYS.merged({"away": "Away"}),
				{"variables": {"a": 0, "b": 0, "z": 0, "ok": false}})
		expect_values(owner, {"a": 1, "b": 2, "z": 26, "ok": true}, named)
		owner.free()
	noted.clear()


func test_a_machine_that_is_freed_or_begins_anew_as_it_loads() -> void:
	SCMachine.set_global_value(&"level", 1)
	expect(save({"a": 1, "b": 2}))
	SCMachine.set_global_value(&"level", 0)
	var watcher := act("watch").watching(["a"]).done().working_on().updating(func(m: SCMachine) -> void: m.free())
	stage.add_child(doing([watcher, saving(SCSaveGameAction.LOAD)], WAYS, {"variables": {"a": 0, "b": 0}}))
	expect_equal(SCMachine.global_value(&"level"), 1)
	var times := [0]
	var starter := act("start").watching(["a"]).done().working_on()
	starter.on_update = func(m: SCMachine) -> void:
		times[0] += 1
		if times[0] == 1:
			put_save("{}")
			m.start()
	var owner := play([starter, saving(SCSaveGameAction.LOAD)], WAYS, {"variables": {"a": 0, "b": 0}})
	expect_state(owner, "Worked")
	expect_values(owner, {"a": 0, "b": 0}, "the new run is as it began")
	noted.clear()


func test_what_was_left_beside_where_renaming_is_two_steps() -> void:
	put_save('{"a": "i:1"}')
	DirAccess.rename_absolute(file_of(), file_of() + ".new")
	expect(do_it(SCSaveGameAction.EXISTS))
	expect_equal(loaded({"a": 0})["a"], 1)
	expect(save({"a": 2}))
	expect_equal([loaded({"a": 0})["a"], saves()], [2, ["save.json"]])
	DirAccess.rename_absolute(file_of(), file_of() + ".new")
	expect(do_it(SCSaveGameAction.DELETE))
	expect(not do_it(SCSaveGameAction.EXISTS))
	put_save('{"a": "i:')
	DirAccess.rename_absolute(file_of(), file_of() + ".new")
	expect(not do_it(SCSaveGameAction.EXISTS) and not do_it(SCSaveGameAction.LOAD, {"a": 0}), "it was not finished")
	expect(save({"a": 3}))
	expect_equal([loaded({"a": 0})["a"], saves()], [3, ["save.json"]])


func nested(levels: int) -> Array:
	var held := []
	for i in levels - 1:
		held = [held]
	return held


func nested_table(levels: int) -> Dictionary:
	var held := {}
	for i in levels - 1:
		held = {"in": held}
	return held


func depth(of: Variant) -> int:
	var levels := 0
	while of is Array or of is Dictionary:
		levels += 1
		var inner: Array = of if of is Array else (of as Dictionary).values()
		of = inner[0] if not inner.is_empty() else null
	return levels
