extends Story
## The expectations themselves: each must fail when what it expects is not so.


class Inner:
	extends Story

	func try(what: Callable) -> int:
		failures.clear()
		what.call()
		return failures.size()


func test_an_expectation_that_does_not_hold_fails() -> void:
	var inner := Inner.new()
	inner.tree = tree
	inner.stage = stage
	inner.output = output
	var made := start(machine([state("A"), state("B")]))
	inner.noted = ["a enter"]
	var wrong: Dictionary[String, Callable] = {
		"expect": inner.expect.bind(false),
		"values": inner.expect_equal.bind(1, 2),
		"kinds": inner.expect_equal.bind(1, 1.0),
		"nothing": inner.expect_equal.bind(null, 0),
		"lists": inner.expect_equal.bind([1], [1, 2]),
		"near": inner.expect_near.bind(1.0, 1.1, 0.01),
		"state": inner.expect_state.bind(made, "B"),
		"states": inner.expect_states.bind(made, ["A", "B"]),
		"log": inner.expect_log.bind(["b enter"]),
		"warning": inner.expect_warning.bind("nobody says this"),
		"error": inner.expect_error.bind("nobody says this"),
		"printed": inner.expect_printed.bind("nobody says this"),
	}
	for name in wrong:
		expect(inner.try(wrong[name]) > 0, "%s: passed though it is wrong" % name)
	inner.noted = ["a enter"]
	var right: Dictionary[String, Callable] = {
		"expect": inner.expect.bind(true),
		"values": inner.expect_equal.bind([1, {"a": &"b"}], [1, {"a": &"b"}]),
		"texts": inner.expect_equal.bind("a", &"a"),
		"near": inner.expect_near.bind(1.0, 1.005, 0.01),
		"state": inner.expect_state.bind(made, "A"),
		"states": inner.expect_states.bind(made, ["A"]),
		"log": inner.expect_log.bind(["a enter"]),
	}
	for name in right:
		expect_equal(inner.try(right[name]), 0, name)


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
	var inner := Inner.new()
	inner.tree = tree
	inner.stage = stage
	inner.output = output
	var made := inner.start(inner.machine([state("A", [], {"go": "B"}), state("B")], {"name": "Guard", "variables": {"hp": 3}}))
	made.send_event("go", 5)
	inner.expect_state(made, "A")
	var told := "\n".join(inner.failures)
	for part: String in ["Guard is in B, wanted A", "Guard: running, in [\"B\"]", "hp", "event go (5)", "A -> B"]:
		expect(part in told, "%s is not in: %s" % [part, told])
