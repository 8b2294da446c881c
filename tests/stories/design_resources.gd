extends Story
## The resources a machine is authored in: what they say of themselves, what the inspector shows, and their files.


func test_each_says_what_it_is() -> void:
	var rows: Array[Array] = [
		[state("Patrol"), "Patrol"],
		[parallel("Blinking", []), "Blinking"],
		[declared_event("hit"), "hit"],
		[SCMachineEvent.new(), "Event"],
		[_note("Doors"), "Doors"],
		[_note(""), "Note"],
		[template([], {"display_name": "Guard"}), "Guard"],
		[SCMachineTemplate.new(), "MachineTemplate"],
		[variable("hp", 10), "hp = 10"],
		[variable("name", "Ann"), "name = Ann"],
		[transition("hit", "Hurt"), "on hit -> Hurt"],
		[SCMachineTransition.new(), "(nothing) -> (nowhere)"],
	]
	for row in rows:
		expect_equal(str(row[0]), row[1])
	expect_equal(SCMachineTransition.finished_event(), &"FINISHED")


func test_a_fresh_one_has_the_defaults() -> void:
	expect_equal(SCMachineState.new().state_name, &"State")
	expect_equal(SCMachineParallelState.new().parallel_name, &"Parallel")
	expect_equal(SCMachineTemplate.new().loop_increment_limit, 50)
	var fresh := SCMachineVariable.new()
	expect_equal(fresh.name, &"variable")
	expect_equal(fresh.default_value, 0.0)
	expect_equal(fresh.share, 50.0)
	var box := SCMachineNote.new()
	expect_equal(box.title, "Note")
	expect(box.color.is_equal_approx(Color(0.22, 0.24, 0.3, 0.6)))
	expect_equal(box.graph_size, Vector2(420, 260))
	expect_equal(SCMachineEvent.new().carries, SCMachineEvent.NOTHING)


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
	for i in words.size():
		expect_equal(declared_event("e", {"carries": i}).value_label(), words[i])
		expect_equal(SCMachineEvent.kind_of_carries(i), kinds[i])
	expect_equal(SCMachineEvent.kind_of_carries(10), "")
	expect_equal(SCMachineEvent.kind_of_carries(-1), "")
	expect_equal(declared_event("e", {"carries": SCMachineEvent.FLOAT, "data_name": "  Points "}).value_label(), "Points")


func test_what_the_inspector_shows_of_a_variable() -> void:
	var always := ["name", "description", "is_global"]
	var rows: Array[Array] = [
		# the variable, what is shown beside those
		[variable("x", 1.0), ["default_value", "never_below", "never_above"]],
		[variable("x", 1, {"never_above": "  "}), ["default_value", "never_below", "never_above"]],
		[variable("x", 1, {"never_above": "9"}), ["default_value", "never_below", "never_above", "starts"]],
		[variable("x", 1, {"never_above": "9", "starts": SCMachineVariable.FULL}), ["never_below", "never_above", "starts"]],
		[variable("x", 1, {"never_above": "9", "starts": SCMachineVariable.AT_A_SHARE}), ["never_below", "never_above", "starts", "share"]],
		[variable("x", "text", {"never_above": "9"}), ["default_value"]],
		[variable("x", null), ["starting_node"]],
		[variable("x", []), ["default_value", "items_are"]],
		[variable("x", null, {"holds_resource": true}), ["default_value"]],
	]
	for row in rows:
		var wanted: Array = always + row[1]
		var shown := _shown(row[0])
		shown.sort()
		wanted.sort()
		expect_equal(shown, wanted, str(row[0]))
	var free := _property(variable("x", 1.0), "default_value")
	expect_equal(free["type"], TYPE_NIL)
	expect(free["usage"] & PROPERTY_USAGE_NIL_IS_VARIANT)
	expect_equal(_property(variable("x", 1.0), "starts")["hint_string"], "At Its Starting Value:0,Full:1,At A Share:2")
	expect_equal(_property(variable("x", 1.0), "items_are")["hint_string"], "Values:0,Nodes:1,Files:2")
	expect_equal(_property(variable("x", 1.0), "share")["hint_string"], "0,100,1,suffix:%")


func test_what_the_inspector_shows_of_an_event_and_a_transition() -> void:
	expect_equal(_shown(declared_event("e")), ["event_name", "description", "is_global", "carries"])
	expect_equal(_shown(declared_event("e", {"carries": SCMachineEvent.FLOAT})),
		["event_name", "description", "is_global", "carries", "data_name", "data_description"])
	expect_equal(_property(declared_event("e"), "carries")["hint_string"],
		"Nothing,float,bool,String,Vector2 or Vector3,Node,Array,Color,Variant,Resource")
	expect_equal(_shown(transition("a", "b")), ["event", "to_state", "store_data_in"])
	expect(_property(transition("a", "b"), "graph_position")["usage"] & PROPERTY_USAGE_STORAGE)
	expect(_property(transition("a", "b"), "resource_name")["usage"] & PROPERTY_USAGE_STORAGE)


func test_the_inspector_is_told_to_look_again() -> void:
	var told := [0]
	var count := func() -> void: told[0] += 1
	var number := variable("x", 1)
	number.property_list_changed.connect(count)
	number.never_above = "9"
	expect_equal(told[0], 1)
	number.never_above = "10"
	number.never_below = "1"
	number.share = 3.0
	expect_equal(told[0], 1)
	number.never_above = " "
	number.starts = SCMachineVariable.FULL
	expect_equal(told[0], 3)
	number.items_are = SCMachineVariable.VALUES
	expect_equal(told[0], 3)
	number.items_are = SCMachineVariable.NODES
	expect_equal(told[0], 4)
	var carrying := declared_event("e")
	carrying.property_list_changed.connect(count)
	carrying.carries = SCMachineEvent.NOTHING
	expect_equal(told[0], 5)


func test_lists_and_references_are_typed() -> void:
	var rows: Array[Array] = [
		[SCMachineTemplate.new(), "states", "24/17:SCMachineState"],
		[SCMachineTemplate.new(), "variables", "24/17:SCMachineVariable"],
		[SCMachineTemplate.new(), "events", "24/17:SCMachineEvent"],
		[SCMachineTemplate.new(), "notes", "24/17:SCMachineNote"],
		[state("A"), "actions", "24/17:SCMachineAction"],
		[state("A"), "transitions", "24/17:SCMachineTransition"],
		[state("A"), "parallel_states", "24/17:SCMachineParallelState"],
		[parallel("A", []), "states", "24/17:SCMachineState"],
		[SCMachineNote.new(), "holds", "21:"],
	]
	for row in rows:
		var property := _property(row[0], row[1])
		expect_equal(property["type"], TYPE_ARRAY)
		expect_equal(property["hint"], PROPERTY_HINT_TYPE_STRING)
		expect_equal(property["hint_string"], row[2], row[1])
		var held: Array = (row[0] as Object).get(row[1])
		expect(held.is_typed(), "%s is not typed" % row[1])
	expect_equal(_property(SCMachineTemplate.new(), "loop_increment_limit")["hint_string"], "1,1000,1,or_greater")
	expect_equal(_property(SCMachineTemplate.new(), "initial_state")["hint_string"], "SCMachineState")
	expect_equal(_property(state("A"), "run_facts")["usage"] & PROPERTY_USAGE_DEFAULT, 0)


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
	var box := _note("Doors")
	box.holds = [&"Outer", &"Split"]
	box.level = &"Outer"
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
	design.notes = [box]
	_expect_saved_equal(design)


func test_a_whole_number_stays_one_in_its_file() -> void:
	var text := FileAccess.get_file_as_string(_saved(variable("count", 3)))
	expect("whole_number = true" in text and "default_value = 3" in text, text)
	expect(not "holds_resource" in text, text)
	text = FileAccess.get_file_as_string(_saved(variable("share", 3.0)))
	expect(not "whole_number" in text, text)
	text = FileAccess.get_file_as_string(_saved(variable("file", null, {"holds_resource": true})))
	expect("holds_resource = true" in text, text)
	for row: Array in [["2.9", 2], ["-2.9", -2], ["5", 5]]:
		var path := "user://story_variable.tres"
		var file := FileAccess.open(path, FileAccess.WRITE)
		file.store_string("[gd_resource type=\"SCMachineVariable\" format=3]\n\n[resource]\nname = &\"n\"\ndefault_value = %s\nwhole_number = true\n" % row[0])
		file.close()
		var loaded: SCMachineVariable = ResourceLoader.load(path, "", ResourceLoader.CACHE_MODE_IGNORE)
		expect_equal(loaded.default_value, row[1])
		DirAccess.remove_absolute(path)
	var number := variable("n", 2.5)
	number.set("whole_number", false)
	expect_equal(number.default_value, 2.5)
	expect_equal(number.get("whole_number"), false)
	number.set("whole_number", true)
	expect_equal(number.default_value, 2)
	expect_equal(number.get("whole_number"), true)


func test_what_a_variable_starts_with() -> void:
	var list := [[1], NodePath("..")]
	var plain := variable("list", list)
	var copy: Array = plain.starting_value_for(stage)
	copy[0].append(2)
	expect_equal(list, [[1], NodePath("..")])
	expect_equal(variable("n", 3).starting_value_for(null), 3)
	expect_equal(variable("door", null, {"starting_node": NodePath("..")}).starting_value_for(stage), tree.root)
	expect_equal(variable("door", null, {"starting_node": NodePath("..")}).starting_value_for(null), null)
	expect_equal(variable("door", null).starting_value_for(stage), null)
	expect_equal(variable("door", null, {"starting_node": NodePath("Nowhere")}).starting_value_for(stage), null)
	expect_warning("Variable door on Stage starts with no node, as nothing is at Nowhere from the machine.")
	expect(variable("n", 1).is_number() and variable("n", 1.5).is_number() and not variable("n", true).is_number())
	expect(variable("n", null).holds_node() and not variable("n", null, {"holds_resource": true}).holds_node() and not variable("n", 1).holds_node())


## What the inspector lists, without what every resource has.
func _shown(of: Object) -> Array:
	var names := []
	for property in of.get_property_list():
		var name: String = property["name"]
		if property["usage"] & PROPERTY_USAGE_EDITOR and property["usage"] & PROPERTY_USAGE_STORAGE and name != "script":
			names.append(name)
	return names


func _property(of: Object, name: String) -> Dictionary:
	for property in of.get_property_list():
		if property["name"] == name:
			return property
	_fail("%s has no %s" % [of, name])
	return {}


func _note(title: String) -> SCMachineNote:
	var made := SCMachineNote.new()
	made.title = title
	return made


func _saved(design: Resource) -> String:
	var path := "user://story_saved.tres"
	expect_equal(ResourceSaver.save(design, path), OK)
	return path


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
