extends Story
## Group and Group Switch.


func test_a_node_is_put_in_and_taken_out() -> void:
	var guard := body("Guard")
	for how: Array in [[SCGroupAction.ADD_A_NODE, true], [SCGroupAction.ADD_A_NODE, true], [SCGroupAction.TAKE_A_NODE_OUT, false],
			[SCGroupAction.TAKE_A_NODE_OUT, false]]:
		expect_state(play(_group(how[0])), "Done")
		play(_group(how[0]), {}, {"under": guard})
		expect_equal(guard.is_in_group(&"guards"), how[1])


func test_who_is_in_it() -> void:
	for in_3d: bool in [false, true]:
		var made: Array[Node] = []
		for at: float in [30.0, 10.0, 20.0]:
			var one: Node = body_3d("At%d" % at, Vector3(at, 0, 0)) if in_3d else body("At%d" % at, Vector2(at, 0))
			one.add_to_group(&"guards")
			made.append(one)
		var dying := body("Dying")
		dying.add_to_group(&"guards")
		dying.queue_free()
		for row: Array in [
			[SCGroupAction.GET_ALL, true, [made[0], made[2]]], [SCGroupAction.GET_ALL, false, made], [SCGroupAction.COUNT, true, 2],
			[SCGroupAction.GET_THE_NEAREST, true, made[2]], [SCGroupAction.GET_THE_NEAREST, false, made[1]],
		]:
			var answer: Variant = result_of(_group(row[0], {"exclude_self": row[1]}), {}, {"under": made[1]})
			expect_equal(Array(answer) if answer is Array else answer, Array(row[2]) if row[2] is Array else row[2], str(row))
		expect(result_of(_group(SCGroupAction.GET_ONE_AT_RANDOM, {}), {}, {"under": made[1]}) in [made[0], made[2]])
		for one in made:
			one.free()
		await frames(1)


func test_nobody_in_it() -> void:
	for row: Array in [[SCGroupAction.GET_ALL, []], [SCGroupAction.COUNT, 0], [SCGroupAction.GET_THE_NEAREST, null], [SCGroupAction.GET_ONE_AT_RANDOM, null]]:
		var made := play(_group(row[0], {"nothing_event": &"none"}), {"none": "None"}, {"variables": {"answer": null}, "under": body("Alone")})
		expect_state(made, "None")
		expect_equal(made.get_value("answer"), row[1])


func test_what_is_missing_is_told() -> void:
	for operation in 6:
		expect_warns(_group(operation, {"group": &""}), "it names no group, so nothing was done. Type one under Group.")
		expect_warns(_group(operation, {"node_path": ^"../Nowhere"}), "there is no node at ../Nowhere")
	var counter := add(Node.new(), "Counter")
	expect_warns(_group(SCGroupAction.GET_THE_NEAREST), "Counter is a Node, which has no place in the world", {"under": counter, "variables": {"answer": null}})
	expect_warns(_group(SCGroupAction.COUNT, {"store_in": &""}), "there is nowhere to put the answer")
	expect_shown(_group(SCGroupAction.COUNT), ["store_in", "nothing_event", "exclude_self"])
	expect_hidden(_group(SCGroupAction.ADD_A_NODE), ["store_in", "nothing_event", "exclude_self"])


func test_a_switch_sends_the_event_of_the_first_group() -> void:
	for row: Array in [[[], "Other"], [["wood"], "Wood"], [["stone"], "Stone"], [["stone", "wood"], "Wood"], [["glass"], "Other"]]:
		var hit := body("Hit")
		for group: StringName in row[0]:
			hit.add_to_group(group)
		var made := play(_switch({"node_path_variable": &"hit"}), {"wood": "Wood", "stone": "Stone", "other": "Other"}, {"variables": {"hit": hit}})
		expect_state(made, row[1])
		made.free()
		hit.free()


func test_every_frame_it_speaks_up_when_the_group_changes() -> void:
	var hit := body("Hit")
	hit.add_to_group(&"wood")
	for only: bool in [true, false]:
		var made := play(_switch({"run_mode": SCMachineAction.EVERY_FRAME, "only_when_it_changes": only}), {}, {"under": hit})
		await frames(3)
		var heard := events_of(made).size()
		expect(heard == 1 if only else heard >= 3, "%d events" % heard)
		expect(events_of(made).all(func(event: String) -> bool: return event == "wood"))
		hit.add_to_group(&"stone")
		hit.remove_from_group(&"wood")
		await frames(2)
		expect_equal(events_of(made).back(), "stone")
		hit.add_to_group(&"wood")
		made.free()


func test_a_switch_that_lacks_something_is_told() -> void:
	var hit := body("Hit")
	hit.add_to_group(&"stone")
	expect_warns(_switch({"groups": [] as Array[StringName]}), "it has no groups to look for.", {"under": hit})
	expect_warns(_switch({"events": [&"wood"] as Array[StringName]}), "Hit is in stone, but that group has no event beside it, so nothing was sent.",
		{"under": hit})
	expect_warns(_switch({"node_path": ^"../Nowhere"}), "there is no node at ../Nowhere")


func test_lines_on_the_graph() -> void:
	for row: Array in [
		[SCGroupAction.ADD_A_NODE, "Put Self into the group guards"], [SCGroupAction.TAKE_A_NODE_OUT, "Take Self out of the group guards"],
		[SCGroupAction.GET_ALL, "Keep all of the group guards in answer"],
		[SCGroupAction.GET_THE_NEAREST, "Keep the one of the group guards nearest to Self in answer"],
		[SCGroupAction.GET_ONE_AT_RANDOM, "Keep a random one of the group guards in answer"],
		[SCGroupAction.COUNT, "Keep how many are in the group guards in answer"],
	]:
		expect_line(_group(row[0]), row[1])
	expect_line(_switch({}), "Switch on the group of Self, wood sends wood, stone sends stone, any other other")


func _group(operation: SCGroupAction.Operation, settings: Dictionary = {}) -> SCGroupAction:
	return kind(SCGroupAction, {"operation": operation, "group": &"guards", "store_in": &"answer"}.merged(settings, true))


func _switch(settings: Dictionary) -> SCGroupSwitchAction:
	return kind(SCGroupSwitchAction, {
		"groups": [&"wood", &"stone"] as Array[StringName], "events": [&"wood", &"stone"] as Array[StringName], "otherwise_event": &"other",
	}.merged(settings, true))
