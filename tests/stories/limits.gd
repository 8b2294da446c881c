extends Story
## Variables that stay between a lowest and a highest value.


func test_a_value_stays_within_its_limits() -> void:
	for row: Array in [
		# starts as, never below, never above, written, held then
		[5, "0", "9", 12, 9], [5, "0", "9", -3, 0], [5, "0", "9", 4, 4], [5, "0", "9", 0, 0], [5, "0", "9", 9, 9],
		[5, "1.5", "9", 0, 2], [5, "", "9", -100, -100], [5, "0", "", 1000, 1000],
		[5.0, " 0.5 ", "9", 0.25, 0.5], [5.0, "0", "9", 20, 9], [5.0, "0", "100", 100.0005, 100.0005], [5.0, "0", "100", 100.1, 100.0],
		[5, "0", "9", "text", "text"], [5, "none", "9", -4, -4], [5, "0", "nowhere", 50, 50],
	]:
		var made := play([], {}, {"variables": [variable("held", row[0], {"never_below": row[1], "never_above": row[2]})]})
		made.set_value("held", row[3])
		expect_equal(made.get_value("held"), row[4], "%s between %s and %s" % [row[3], row[1], row[2]])
		made.free()
	expect_debug_warning("set_value gave held words, and it held a number.")


func test_a_limit_may_be_another_variable() -> void:
	var rows: Array[Array] = [
		# the variables, what is written one after the other, and what they hold after each
		[[variable("top", 100), variable("hp", 80, {"never_below": "0", "never_above": "top"})],
			[["hp", 150, {"hp": 100}], ["top", 60, {"hp": 60}], ["top", 90, {"hp": 60}], ["top", "lots", {"hp": 60}], ["hp", 500, {"hp": 500}]]],
		# A chain follows the first of it.
		[[variable("cap", 100), variable("a", 100, {"never_above": "cap"}), variable("b", 100, {"never_above": "a"}), variable("c", 100, {"never_above": "b"})],
			[["cap", 10, {"cap": 10, "a": 10, "b": 10, "c": 10}]]],
		# Rings, and two that push each other, come to an end.
		[[variable("a", 1, {"never_above": "b"}), variable("b", 1, {"never_above": "a"}), variable("own", 5, {"never_above": "own"})],
			[["a", 10, {"a": 1}], ["b", -5, {"a": -5, "b": -5}], ["own", 9, {"own": 5}]]],
		[[variable("low", 0.0, {"never_below": "high"}), variable("high", 0.0, {"never_below": "low"})], [["low", 5.0, {"low": 5.0, "high": 5.0}]]],
	]
	for row in rows:
		var made := play([], {}, {"variables": row[0]})
		for step: Array in row[1]:
			made.set_value(step[0], step[1])
			expect_values(made, step[2], str(step))
		made.free()
	var limited := play([], {}, {"variables": rows[0][0]})
	for row: Array in [["hp", [0.0, 100]], ["top", [null, null]], ["nothing", [null, null]]]:
		expect_equal(limited.limits_of(row[0]), row[1])
	expect_debug_warning("set_value gave top words, and it held a number.")


func test_the_starting_values_are_brought_within_limits() -> void:
	var made := play([], {}, {
		"variables": [variable("low", -5, {"never_below": "0"}), variable("handed", 5, {"never_above": "9"}), variable("starting", 5, {"never_above": "9"})],
		"handed_values": {&"handed": 50},
		"starting_values": {&"starting": 50},
	})
	expect_equal(made.values, {&"low": 0, &"handed": 9, &"starting": 9})


func test_starting_full_or_at_a_share() -> void:
	var full := {"starts": SCMachineVariable.FULL}
	var made := play([], {}, {
		"variables": [
			variable("full", 3, full.merged({"never_below": "0", "never_above": "20"})),
			variable("no_low", 3, full.merged({"never_above": "8"})),
			variable("no_high", 3, full.merged({"never_below": "1"})),
			variable("quarter", 3.0, {"starts": SCMachineVariable.AT_A_SHARE, "share": 25.0, "never_below": "10", "never_above": "20"}),
			variable("rounded", 1, {"starts": SCMachineVariable.AT_A_SHARE, "share": 25.0, "never_above": "10"}),
			variable("too_much", 3, {"starts": SCMachineVariable.AT_A_SHARE, "share": 400.0, "never_above": "10"}),
			variable("as_it_is", 3, {"share": 25.0, "never_above": "10"}),
			variable("named", 3, full.merged({"never_above": "top"})),
			variable("top", 50),
			variable("given", 3, full.merged({"never_above": "10"})),
			global_variable("shared", 3, full.merged({"never_above": "10"})),
		],
		"starting_values": {&"given": 4},
	})
	expect_values(made, {"full": 20, "no_low": 8, "no_high": 3, "quarter": 12.5, "rounded": 3, "too_much": 10, "as_it_is": 3, "named": 50, "given": 4, "shared": 3})


func test_an_action_cannot_go_past_a_limit() -> void:
	var made := start(machine([
		state("A", [set_var("health", 30, {"operation": SCSetVariableAction.ADD})], {"FINISHED": "B"}),
		state("B", [set_var("health", 100, {"operation": SCSetVariableAction.SUBTRACT})], {"hit": "C"}),
		state("C"),
	], {"variables": [variable("health", 80, {"never_below": "0", "never_above": "100"})]}))
	expect_values(made, {"health": 0})
