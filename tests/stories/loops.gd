extends Story
## Two states in a ring: For Each, Repeat and Sequence move one step on with every visit.


## The ring: a state that picks the next step, one that works, and one that it ends in, from where "again" leads back.
func ring(pick: SCMachineAction, work: Array, variables: Dictionary = {}, options: Dictionary = {}) -> SCMachine:
	return start(machine([
		state("Pick", [pick], {"Next": "Work", "Again": "Work", "Done": "Home"}),
		state("Work", work, {"FINISHED": "Pick"}),
		state("Home", [], {"again": "Pick"}),
	], {"variables": {"item": "", "place": -1, "sum": 0}.merged(variables, true)}.merged(options)))


func add_up() -> SCMachineAction:
	return set_var("sum", 1, {"operation": SCSetVariableAction.ADD})


func test_for_each_hands_out_every_item_in_order() -> void:
	for starts_again: bool in [true, false]:
		var seen: Array = []
		var look := func(m: SCMachine) -> void: seen.append([m.get_value(&"item"), m.get_value(&"place")])
		var walk := kind(SCForEachAction, {"store_index_in": &"place", "start_again_when_done": starts_again})
		var made := ring(walk, [act("work").done().entering(look)], {"list": ["axe", "saw", "nail"]})
		var round := [["axe", 0], ["saw", 1], ["nail", 2]]
		expect_state(made, "Home")
		expect_equal(seen, round)
		expect_values(made, {&"for each step": 0 if starts_again else 3})
		expect_after(made, "again", "Home")
		expect_equal(seen, round + round if starts_again else round)
		expect_values(made, {&"for each step": 0 if starts_again else 3})
		made.free()


func test_however_many_pass_in_one_frame() -> void:
	for row: Array in [[kind(SCForEachAction), 500], [kind(SCRepeatAction, {"times": 200}), 200]]:
		var made := ring(row[0], [add_up()], {"list": range(500)})
		expect_state(made, "Home")
		expect_values(made, {&"sum": row[1]})
		made.free()


func test_a_list_that_changes_on_the_way_is_read_anew_each_visit() -> void:
	var made := ring(kind(SCForEachAction), [act("work").done().entering(func(m: SCMachine) -> void: m.set_value(&"list", ["only"]))], {"list": [1, 2, 3]})
	expect_state(made, "Home")
	expect_equal(noted.count("work enter"), 1)


func test_two_walks_of_one_name_share_their_place() -> void:
	var made := start(machine([
		state("First", [kind(SCForEachAction)], {"Next": "Second"}), state("Second", [kind(SCForEachAction)], {"Next": "Stay"}), state("Stay"),
	], {"variables": {"list": ["a", "b"], "item": ""}}))
	expect_state(made, "Stay")
	expect_values(made, {&"item": "b", &"for each step": 2})


func test_an_empty_list_is_done_at_every_visit() -> void:
	var made := ring(kind(SCForEachAction, {"start_again_when_done": false}), [act("never")], {"list": []})
	expect_state(made, "Home")
	expect_after(made, "again", "Home")
	expect(not made.has_value(&"for each step"), "the place was written")


func test_a_place_that_somebody_set_wrong() -> void:
	for place: int in [-1, 3]:
		var made := ring(kind(SCForEachAction), [add_up()], {"list": [1, 2, 3], "for each step": place})
		expect_state(made, "Home")
		expect_values(made, {&"sum": 0, &"for each step": 0})
		made.free()


func test_a_watcher_that_stops_the_machine_ends_the_step() -> void:
	for row: Array in [
		[kind(SCForEachAction), "item", "for each step"], [kind(SCForEachAction, {"store_item_in": &"", "store_index_in": &"place"}), "place", "for each step"],
		[kind(SCForEachAction), "for each step", ""], [kind(SCRepeatAction), "repeat step", ""], [kind(SCSequenceAction, {"events": [&"Next"]}), "sequence step", ""],
	]:
		var made := start(machine([
			state("Pick", [act("watch").watching([row[1]]).updating(func(m: SCMachine) -> void: m.stop()), row[0]], {"Next": "Work", "Again": "Work"}),
			state("Work"),
		], {"variables": {"list": [1], "item": 0, "place": -1}}))
		expect(not made.is_running())
		expect_events(made, [])
		expect(not made.has_value(row[2]), "the step went on")
		made.free()


func test_repeat_goes_round_as_often_as_told() -> void:
	for row: Array in [[{}, 3], [{"times": 0}, 0], [{"times": -2}, 0], [{"times_variable": &"wanted"}, 2], [{"start_again_when_done": false}, 3]]:
		var made := ring(kind(SCRepeatAction, row[0]), [add_up()], {"wanted": 2.9})
		expect_state(made, "Home")
		expect_values(made, {&"sum": row[1]}, str(row))
		expect_after(made, "again", "Home")
		expect_values(made, {&"sum": row[1] * (1 if row[0].has("start_again_when_done") else 2)}, str(row))
		made.free()


func test_sequence_sends_one_event_a_visit() -> void:
	for loops: bool in [true, false]:
		var made := start(machine([
			state("Light", [kind(SCSequenceAction, {"events": [&"Green", &"Amber", &"Red"], "loop": loops})], {"Green": "Go", "Amber": "Careful", "Red": "Stop", "Done": "Out"}),
			state("Go", [], {"tick": "Light"}), state("Careful", [], {"tick": "Light"}), state("Stop", [], {"tick": "Light"}), state("Out", [], {"tick": "Light"}),
		]))
		for wanted: String in ["Go", "Careful", "Stop"] + (["Go", "Careful"] if loops else ["Out", "Out"]):
			expect_state(made, wanted)
			made.send_event("tick")
		expect_values(made, {&"sequence step": 3})
		made.free()


func test_what_is_wrong_is_told() -> void:
	for row: Array in [
		[kind(SCForEachAction), "For Each on Shelf: list holds an int, which is not a list, so there was nothing to walk through and it sent Done. Fill it with the Array action, or make it an Array in the Variables tab."],
		[kind(SCForEachAction, {"list_variable": &"crates"}), "For Each on Shelf: this machine has no variable called crates, so there was nothing to walk through and it sent Done. Pick the variable holding the list beside List Variable."],
		[kind(SCForEachAction, {"list_variable": &""}), "For Each on Shelf has no variable picked"],
		[kind(SCSequenceAction), "Sequence on Shelf has no events in its list, so it sent nothing. Add them beside Events, in the order they are sent."],
	]:
		var made := ring(row[0], [act("never")], {"list": 4}, {"name": "Shelf"})
		expect_warning(row[1])
		expect_state(made, "Home" if row[0] is SCForEachAction else "Pick")
		made.free()
	# A walk without a place of its own still gets on.
	expect_state(ring(kind(SCForEachAction, {"progress_variable": &""}), [add_up()], {"list": [1, 2]}, {"name": "Shelf"}), "Home")
	expect_warning("For Each on Shelf has no Progress Variable")


func test_summaries() -> void:
	expect_lines(SCForEachAction, {
		"For each of list into item, send Next, then Done": {},
		"For each of (pick one), send Next, then Done": {"store_item_in": &"", "list_variable": &""},
	})
	expect_lines(SCRepeatAction, {"Send Again 3 times, then Done": {}, "Send Again 1 time, then Done": {"times": 1}, "Send Again [shots] times, then Done": {"times_variable": &"shots"}})
	expect_lines(SCSequenceAction, {
		"Send the next of Open, Close, round and round": {"events": [&"Open", &"Close"]},
		"Send the next of Open, Close, then Done": {"events": [&"Open", &"Close"], "loop": false},
	})


func test_a_repeat_within_a_repeat() -> void:
	for rounds: Array in [[20, 30, 1], [3, 4, 60]]:
		var picks: Array = []
		for i in 3:
			picks.append(kind(SCRepeatAction, {"times": rounds[i], "progress_variable": StringName("step %d" % i)}))
		var made := start(machine([
			state("Outer", [picks[0]], {"Again": "Middle", "Done": "Home"}), state("Middle", [picks[1]], {"Again": "Inner", "Done": "Outer"}),
			state("Inner", [picks[2]], {"Again": "Work", "Done": "Middle"}), state("Work", [add_up()], {"FINISHED": "Inner"}), state("Home"),
		], {"variables": {"sum": 0}}))
		expect_state(made, "Home")
		expect_values(made, {&"sum": rounds[0] * rounds[1] * rounds[2]})
		made.free()
	# Two that lead into one another for ever are no progress.
	var ring_of_two := start(machine([
		state("A", [kind(SCRepeatAction, {"times": 5, "progress_variable": &"a"})], {"Again": "A2", "Done": "B"}), state("A2", [], {"FINISHED": "A"}),
		state("B", [kind(SCRepeatAction, {"times": 5, "progress_variable": &"b"})], {"Again": "B2", "Done": "A"}), state("B2", [], {"FINISHED": "B"}),
	]))
	expect_error("lead straight back to one another")
	expect(not ring_of_two.is_running())
