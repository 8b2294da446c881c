extends Story
## The resources a machine is authored in: what they say of themselves, what the inspector shows, and their files.


func test_each_says_what_it_is() -> void:
	for row: Array in [
		[state("Patrol"), "Patrol"], [parallel("Blinking", []), "Blinking"],
		[declared_event("hit"), "hit"], [SCMachineEvent.new(), "Event"],
		[kind(SCMachineNote, {"title": "Doors"}), "Doors"], [kind(SCMachineNote, {"title": ""}), "Note"],
		[template([], {"display_name": "Guard"}), "Guard"], [SCMachineTemplate.new(), "MachineTemplate"],
		[variable("hp", 10), "hp = 10"], [variable("name", "Ann"), "name = Ann"],
		[transition("hit", "Hurt"), "on hit -> Hurt"], [SCMachineTransition.new(), "(nothing) -> (nowhere)"],
	]:
		expect_equal(str(row[0]), row[1])
	expect_equal(SCMachineTransition.finished_event(), &"FINISHED")


func test_walking_a_template() -> void:
	var deep := state("Deep", [], {"go": "Missing", "back": "Top"})
	var region := parallel("Region", [deep])
	var inner := state("Inner", [], [transition("a", "Missing"), transition("b", ""), transition("c", "Also Missing")])
	inner.parallel_states = [null, region]
	var top := state("Top", [], {"x": "Inner", "y": "Gone"}, {"sub_states": [inner]})
	var other := state("Other")
	var design := template([top, null, other, top])
	expect_equal(design.all_states(), [top, inner, deep, other])
	expect_equal(design.parent_of(top), null)
	expect_equal(design.parent_of(inner), top)
	expect_equal(design.parent_of(deep), inner)
	expect_equal(design.parallel_state_of(deep), region)
	expect_equal(design.parallel_state_of(inner), null)
	expect_equal(design.missing_state_names(), PackedStringArray(["Gone", "Missing", "Also Missing"]))
	expect(top.contains(top) and top.contains(deep) and region.contains(deep) and not top.contains(other) and not top.contains(null))
	expect_equal(top.inner_slot_of(deep), 0)
	expect_equal(inner.inner_slot_of(deep), 0)
	expect_equal(top.inner_slot_of(other), -1)
	expect_equal(top.inner_slot_of(top), -1)


func test_a_state_with_both_kinds_of_inner_states_has_its_regions_only() -> void:
	var below := state("Below")
	var side := state("Side")
	var other_side := state("Other Side")
	var both := state("Both", [], {}, {"sub_states": [below], "parallel": {"A": [side], "B": [], "C": [state("C1"), other_side]}})
	both.parallel_states[2].start_state = other_side
	var starts := both.inner_starts()
	expect(starts.size() == 3 and starts[0] == side and starts[1] == null and starts[2] == other_side, "starts in %s" % [starts])
	expect_equal(both.inner_slot_of(below), -1)
	expect_equal(both.inner_slot_of(other_side), 2)
	expect(both.contains(below))
	expect_equal(both.first_sub_state(), below)
	expect_equal(state("Empty").inner_starts(), [])
	expect_equal(state("Empty").first_sub_state(), null)
	var odd := state("Odd", [], {}, {"sub_states": [null, below]})
	odd.start_sub_state = side
	expect_equal(odd.first_sub_state(), below)
	expect_equal(odd.inner_starts(), [below])


func test_states_nested_in_a_ring_end_where_it_closes() -> void:
	var a := state("A")
	var b := state("B", [], {"go": "C"})
	a.sub_states = [b]
	b.sub_states = [a]
	var own := state("Own")
	own.parallel_states = [parallel("Self", [own])]
	var design := template([a, own])
	expect_equal(design.all_states(), [a, b, own])
	expect_equal(design.missing_state_names(), PackedStringArray(["C"]))
	expect(a.contains(b) and b.contains(a))
	expect(not a.contains(own))
	expect_equal(a.inner_slot_of(own), -1)
	b.sub_states = []
	own.parallel_states = []
	# Each holding both of the others, the ways round branch at every step.
	var mesh: Array[SCMachineState] = [state("M1"), state("M2"), state("M3")]
	for one in mesh:
		one.sub_states = mesh.filter(func(other: SCMachineState) -> bool: return other != one)
	expect(mesh[0].contains(mesh[2]) and not mesh[0].contains(own))
	for one in mesh:
		one.sub_states = []


func test_declared_events() -> void:
	var alarm := declared_event("alarm", {"is_global": true})
	var design := template([], {"events": [declared_event("quiet"), null, alarm, declared_event("", {"is_global": true}), declared_event("alarm", {"is_global": true}), declared_event("bell", {"is_global": true})]})
	expect_equal(design.global_event_names(), [&"alarm", &"bell"])
	expect_equal(design.event_named("alarm"), alarm)
	expect_equal(design.event_named("unknown"), null)
	var words := ["Nothing", "float", "bool", "String", "Vector2 or Vector3", "Node", "Array", "Color", "Variant", "Resource"]
	var kinds := ["", "number", "bool", "text", "vector", "node", "list", "colour", "", "resource"]
	for i in range(-1, 11):
		var known := i in range(10)
		expect_equal(SCMachineEvent.kind_of_carries(i), kinds[i] if known else "")
		if known:
			expect_equal(declared_event("e", {"carries": i}).value_label(), words[i])
	expect_equal(declared_event("e", {"carries": SCMachineEvent.FLOAT, "data_name": "  Points "}).value_label(), "Points")


func test_what_the_inspector_shows() -> void:
	var limited := {"never_above": "9"}
	var event := ["event_name", "description", "is_global", "carries"]
	var number := ["default_value", "never_below", "never_above"]
	for row: Array in [
		# what it is, and what is shown of it; of a variable beside its name, description and whether it is global
		[variable("x", 1.0), number], [variable("x", 1, {"never_above": "  "}), number], [variable("x", 1, limited), number + ["starts"]],
		[variable("x", 1, limited.merged({"starts": SCMachineVariable.FULL})), ["never_below", "never_above", "starts"]],
		[variable("x", 1, limited.merged({"starts": SCMachineVariable.AT_A_SHARE})), ["never_below", "never_above", "starts", "share"]],
		[variable("x", "text", limited), ["default_value"]], [variable("x", null), ["starting_node"]],
		[variable("x", []), ["default_value", "items_are"]],
		[variable("x", null, {"holds_resource": true}), ["default_value"]],
		[declared_event("e"), event],
		[declared_event("e", {"carries": SCMachineEvent.FLOAT}), event + ["data_name", "data_description"]],
		[transition("a", "b"), ["event", "to_state", "store_data_in"]],
	]:
		var wanted: Array = row[1] + (["name", "description", "is_global"] if row[0] is SCMachineVariable else [])
		var shown := shown_settings(row[0]).filter(func(name: String) -> bool: return property_of(row[0], name)["usage"] & PROPERTY_USAGE_STORAGE)
		shown.sort()
		wanted.sort()
		expect_equal(Array(shown), wanted, str(row[0]))
	var free := property_of(variable("x", 1.0), "default_value")
	expect(free["type"] == TYPE_NIL and free["usage"] & PROPERTY_USAGE_NIL_IS_VARIANT)
	for name: String in ["graph_position", "resource_name"]:
		expect(property_of(transition("a", "b"), name)["usage"] & PROPERTY_USAGE_STORAGE, name)
	expect_equal(property_of(state("A"), "run_facts")["usage"] & PROPERTY_USAGE_DEFAULT, 0)


func test_the_inspector_is_told_to_look_again() -> void:
	var told := [0]
	var number := variable("x", 1)
	var carrying := declared_event("e")
	for one: Resource in [number, carrying]:
		one.property_list_changed.connect(func() -> void: told[0] += 1)
	for row: Array in [
		# what is changed, to what, and whether other settings are shown then
		[number, "never_above", "9", 1], [number, "never_above", "10", 0], [number, "never_below", "1", 0], [number, "share", 3.0, 0], [number, "never_above", " ", 1],
		[number, "starts", SCMachineVariable.FULL, 1], [number, "items_are", SCMachineVariable.VALUES, 0], [number, "items_are", SCMachineVariable.NODES, 1],
		[carrying, "carries", SCMachineEvent.NOTHING, 1],
	]:
		told[0] = 0
		(row[0] as Resource).set(row[1], row[2])
		expect_equal(told[0], row[3], str(row))


func test_lists_are_typed() -> void:
	for row: Array in [
		[SCMachineTemplate, {"states": SCMachineState, "variables": SCMachineVariable, "events": SCMachineEvent, "notes": SCMachineNote}],
		[SCMachineState, {"actions": SCMachineAction, "transitions": SCMachineTransition, "parallel_states": SCMachineParallelState, "sub_states": SCMachineState}],
		[SCMachineParallelState, {"states": SCMachineState}],
	]:
		for list: String in row[1]:
			var held: Array = kind(row[0]).get(list)
			var of: StringName = row[1][list].new().get_class()
			expect_equal(held.get_typed_class_name(), of, list)
			expect(String(property_of(kind(row[0]), list)["hint_string"]).ends_with(":" + of), list)


func test_a_file_as_the_editor_writes_it() -> void:
	var design: SCMachineTemplate = load("res://tests/stories/files/guard.tres")
	expect_equal(design.display_name, "Guard")
	expect_equal(design.initial_state.state_name, &"Watch")
	expect_equal(design.states.size(), 2)
	expect_equal(design.states[1].start_sub_state, design.states[1].sub_states[1])
	expect_equal(design.variables[0].default_value, 0)
	expect(design.variables[1].holds_node())
	expect_equal((design.states[0].actions[1] as SCSetVariableAction).operation, SCSetVariableAction.ADD)
	expect_equal(design.global_event_names(), [&"alarm_raised", &"all_clear"])
	_expect_saved_equal(design)


func test_everything_that_is_set_is_saved_and_loaded() -> void:
	var inner := state("Inner", [wait(0.5, {"random_extra": 0.25, "real_time": true})], {"FINISHED": "Outer"}, {"end": true, "pause_here": true})
	var outer := state("Outer", [
		set_var("score", Vector2(3, 4), {"operation": SCSetVariableAction.ADD, "update_interval": 0.5, "display_name": "Add", "disabled": true}),
		print_line("two\nlines", {"loudness": SCPrintAction.AS_WARNING, "run_mode": SCMachineAction.EVERY_FRAME}),
		send("hit", {"data": [1, "two"], "reach": SCSendEventAction.A_GROUP, "to_group": &"guards", "wait_for_previous": true}),
	], [transition("hit", "Inner", "who")], {"sub_states": [inner, state("Second")], "start": "Second", "graph_color": Color.RED})
	var split := state("Split", [], {}, {"parallel": {"A": [state("A1"), state("A2")], "B": []}})
	split.parallel_states[0].start_state = split.parallel_states[0].states[1]
	var design := template([outer, split], {
		"initial": "Split",
		"display_name": "All",
		"loop_increment_limit": 1200,
		"carries_over": true,
		"variables": [
			variable("score", 3, {"never_below": "0", "never_above": "top", "starts": SCMachineVariable.AT_A_SHARE, "share": 25.0}),
			variable("door", null, {"starting_node": NodePath("../Door")}),
			variable("file", null, {"holds_resource": true}),
			variable("list", [NodePath("../A"), 2], {"items_are": SCMachineVariable.NODES}),
			global_variable("gold", 2.5),
		],
		"events": [declared_event("hit", {"carries": SCMachineEvent.NODE, "data_name": "Who", "is_global": true})],
	})
	design.notes = [kind(SCMachineNote, {"title": "Doors", "holds": [&"Outer", &"Split"], "level": &"Outer"})]
	_expect_saved_equal(design)


func test_a_whole_number_stays_one_in_its_file() -> void:
	var path := "user://story_variable.tres"
	for row: Array in [
		[variable("count", 3), ["whole_number = true", "default_value = 3"], ["holds_resource"]], [variable("share", 3.0), [], ["whole_number"]],
		[variable("file", null, {"holds_resource": true}), ["holds_resource = true"], []],
	]:
		expect_equal(ResourceSaver.save(row[0], path), OK)
		var text := FileAccess.get_file_as_string(path)
		for part: String in row[1]:
			expect(part in text, text)
		for part: String in row[2]:
			expect(not part in text, text)
	for row: Array in [["2.9", 2], ["-2.9", -2], ["5", 5]]:
		var file := FileAccess.open(path, FileAccess.WRITE)
		file.store_string("[gd_resource type=\"SCMachineVariable\" format=3]\n\n[resource]\nname = &\"n\"\ndefault_value = %s\nwhole_number = true\n" % row[0])
		file.close()
		expect_equal((ResourceLoader.load(path, "", ResourceLoader.CACHE_MODE_IGNORE) as SCMachineVariable).default_value, row[1])
	DirAccess.remove_absolute(path)
	var number := variable("n", 2.5)
	for whole: bool in [false, true]:
		number.set("whole_number", whole)
		expect_equal(number.default_value, 2 if whole else 2.5)
		expect_equal(number.get("whole_number"), whole)


func test_what_a_variable_starts_with() -> void:
	var list := [[1], NodePath("..")]
	variable("list", list).starting_value_for(stage)[0].append(2)
	expect_equal(list, [[1], NodePath("..")])
	var door := variable("door", null, {"starting_node": NodePath("..")})
	for row: Array in [
		[variable("n", 3), null, 3], [door, stage, tree.root], [door, null, null], [variable("door", null), stage, null],
		[variable("door", null, {"starting_node": NodePath("Nowhere")}), stage, null],
	]:
		expect_equal((row[0] as SCMachineVariable).starting_value_for(row[1]), row[2])
	expect_warning("Variable door on Stage starts with no node, as nothing is at Nowhere from the machine.")
	for row: Array in [[1, true, false], [1.5, true, false], [true, false, false], [null, false, true]]:
		expect_equal(variable("n", row[0]).is_number(), row[1])
		expect_equal(variable("n", row[0]).holds_node(), row[2])
	expect(not variable("n", null, {"holds_resource": true}).holds_node())


## Saves it, loads it anew, saves that again: the files are the same and so is what they hold.
func _expect_saved_equal(design: Resource) -> void:
	var first := "user://story_first.tres"
	var second := "user://story_second.tres"
	var own: Resource = design.duplicate(true)
	expect_equal(ResourceSaver.save(own, first), OK)
	var loaded := ResourceLoader.load(first, "", ResourceLoader.CACHE_MODE_IGNORE)
	expect_equal(ResourceSaver.save(loaded, second), OK)
	var wanted := _without_ids(FileAccess.get_file_as_string(first))
	var got := _without_ids(FileAccess.get_file_as_string(second))
	expect(got == wanted, "saved again it differs:\n%s\nfrom:\n%s" % [got, wanted])
	_expect_same(loaded, design, design.get_class(), [])
	DirAccess.remove_absolute(first)
	DirAccess.remove_absolute(second)


func _without_ids(text: String) -> String:
	var ids := RegEx.create_from_string("_[a-z0-9]{5}\"")
	return RegEx.create_from_string(" uid=\"[^\"]*\"").sub(ids.sub(text, "\"", true), "", true)


func _expect_same(got: Variant, wanted: Variant, where: String, seen: Array) -> void:
	if wanted is Resource and got is Resource:
		if wanted in seen:
			return
		seen.append(wanted)
		for property: Dictionary in (wanted as Resource).get_property_list():
			var name: String = property["name"]
			if property["usage"] & PROPERTY_USAGE_STORAGE and not name.begins_with("resource_") and name != "script":
				_expect_same((got as Resource).get(name), (wanted as Resource).get(name), "%s.%s" % [where, name], seen)
	elif wanted is Array and got is Array and (wanted as Array).size() == (got as Array).size():
		for i in (wanted as Array).size():
			_expect_same((got as Array)[i], (wanted as Array)[i], "%s[%d]" % [where, i], seen)
	else:
		expect_equal(got, wanted, where)
