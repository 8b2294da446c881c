extends Story
## The expectations themselves: each must fail when what it expects is not so.


class Inner:
	extends Story

	func _init(outer: Story) -> void:
		tree = outer.tree
		stage = outer.stage
		output = outer.output

	func fails(expectation: Callable, arguments: Array) -> bool:
		failures.clear()
		noted.assign(["a enter"])
		expectation.callv(arguments)
		return not failures.is_empty()


func test_an_expectation_fails_where_it_does_not_hold() -> void:
	var inner := Inner.new(self)
	var made := start(machine([state("A", [], {"go": "B"}), state("B", [], {"go": "A"})], {"variables": {"score": 3}}))
	var no := kind(SCVariableCondition, {"variable_name": &"score", "value": 4})
	var hurt := func(wanted: Array) -> void:
		made.send_event("hurt")
		inner.expect_events(made, wanted)
	var rows: Array[Array] = [
		# the expectation, with what it must fail, and with what it must not
		[inner.expect, [false], [true]], [inner.expect_equal, [1, 2], [1, 1]], [inner.expect_equal, [1, 1.0], ["a", &"a"]],
		[inner.expect_equal, [null, 0], [null, null]],
		[inner.expect_equal, [[1], [1, 2]], [[1, {"a": &"b"}], [1, {"a": &"b"}]]],
		[inner.expect_near, [1.0, 1.1, 0.01], [1.0, 1.005, 0.01]],
		[inner.expect_near, [Vector3.ZERO, Vector3(0, 0, 0.1)], [Vector3.ZERO, Vector3(0, 0, 0.00005)]],
		[inner.expect_near, [Vector2.ZERO, Vector3.ZERO], [Color.RED, Color.RED]],
		[inner.expect_near, [Color.RED, Color(1, 0, 0, 0.9)], [2, 2]],
		[inner.expect_values, [made, {"score": 4}], [made, {"score": 3}]],
		[inner.expect_state, [made, "B"], [made, "A"]], [inner.expect_states, [made, ["A", "B"]], [made, ["A"]]],
		[inner.expect_after, [made, "go", "A"], [made, "go", "A"]], [inner.expect_after, [made, "go", ["A"]], [made, "go", ["A"]]],
		[hurt, [["go"]], [["hurt"]]], [inner.expect_log, [["b enter"]], [["a enter"]]], [inner.expect_warning, ["nobody says this"]],
		[inner.expect_error, ["nobody says this"]], [inner.expect_printed, ["nobody says this"]],
		[inner.expect_line, [wait(2.0), "Wait"], [wait(2.0), "Wait 2 s"]],
		[inner.expect_lines, [SCWaitAction, {"Wait 1 s": {"seconds": 2.0}}], [SCWaitAction, {"Wait 2 s": {"seconds": 2.0}}]],
		[inner.expect_shown, [wait(2.0), ["run_mode"]], [wait(2.0), ["seconds"]]],
		[inner.expect_hidden, [wait(2.0), ["seconds"]], [wait(2.0), ["run_mode"]]],
		[inner.expect_hidden, [wait(2.0), ["no such setting"]]],
		[inner.expect_answers, [made, [[no, true]]], [made, [[no, false]]]],
		[inner.expect_warns, [act("quiet"), "nobody says this"], [kind(SCVariableCondition), "no variable"]],
		[inner.result_of, [wait(1.0)], [set_var("answer", 1)]],
	]
	for row in rows:
		expect(inner.fails(row[0], row[1]), "%s passes with %s" % [row[0], row[1]])
		if row.size() > 2:
			expect(not inner.fails(row[0], row[2]), "%s fails with %s: %s" % [row[0], row[2], inner.failures])


func test_a_setting_that_is_not_there_fails() -> void:
	kind(SCWaitAction, {"secunds": 2.0})
	expect_error("The story sets secunds, which SCWaitAction does not have")


func test_what_is_printed_is_claimed_once() -> void:
	push_warning("the door is open")
	push_error("the door is gone")
	print("the door is red")
	expect(not output.claim("error", "is open") and not output.claim("warning", "is gone"), "one kind passes for the other")
	expect_warning("is open")
	expect_error("is gone")
	expect_printed("is red")
	expect(not output.claim("warning", "is open") and not output.claim_printed("is red"), "claimed twice")
	expect_equal(output.unclaimed().size(), 0)


func test_a_failure_tells_where_the_machine_stands() -> void:
	var inner := Inner.new(self)
	var made := inner.start(inner.machine([state("A", [], {"go": "B"}), state("B")], {"name": "Guard", "variables": {"hp": 3}}))
	inner.expect_after(made, "go", "A", 5)
	var told := "\n".join(inner.failures)
	for part: String in ["Guard is in B, wanted A", "Guard: running, in [\"B\"]", "hp", "event go (5)", "A -> B"]:
		expect(part in told, "%s is not in: %s" % [part, told])
	# One that came out of a scene file, among others of the scene.
	var loaded: SCMachine = add(SCMachine.new(), "Loaded", {"autostart": false})
	for fault: Callable in [inner.expect_state.bind(loaded, "A"), inner.expect.bind(false)]:
		inner.fails(fault, [])
		expect("Loaded: stopped, in []" in "\n".join(inner.failures), "not in: %s" % inner.failures)
