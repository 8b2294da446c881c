extends Story
## Two states in a ring: For Each, Repeat and Sequence move one step on with every visit.


func for_each(options: Dictionary = {}) -> SCForEachAction:
	var made := SCForEachAction.new()
	_put(made, options)
	return made


func repeat(options: Dictionary = {}) -> SCRepeatAction:
	var made := SCRepeatAction.new()
	_put(made, options)
	return made


func sequence(events: Array[StringName], options: Dictionary = {}) -> SCSequenceAction:
	var made := SCSequenceAction.new()
	made.events = events
	_put(made, options)
	return made


func test_for_each_hands_out_every_item_in_order() -> void:
	var seen: Array = []
	var places: Array = []
	var look := func(m: SCMachine) -> void:
		seen.append(m.get_value(&"item"))
		places.append(m.get_value(&"place"))
	var owner := start(machine([
		state("Pick", [for_each({"store_index_in": &"place"})], {"Next": "Work", "Done": "Home"}),
		state("Work", [act("work").done().entering(look)], {"FINISHED": "Pick"}),
		state("Home"),
	], {"variables": {"list": ["axe", "saw", "nail"], "item": "", "place": -1}}))
	expect_state(owner, "Home")
	expect_equal(seen, ["axe", "saw", "nail"])
	expect_equal(places, [0, 1, 2])
	expect_equal(owner.get_value(&"for each step"), 0)


func test_five_hundred_items_pass_in_one_frame() -> void:
	var owner := start(machine([
		state("Pick", [for_each()], {"Next": "Work", "Done": "Home"}),
		state("Work", [set_var("sum", 1, {"operation": SCSetVariableAction.ADD})], {"FINISHED": "Pick"}),
		state("Home"),
	], {"variables": {"list": range(500), "item": 0, "sum": 0}}))
	expect_state(owner, "Home")
	expect_equal(owner.get_value(&"sum"), 500)


func test_a_list_that_changes_on_the_way_is_read_anew_each_visit() -> void:
	var shorten := func(m: SCMachine) -> void: m.set_value(&"list", ["only"])
	var owner := start(machine([
		state("Pick", [for_each()], {"Next": "Work", "Done": "Home"}),
		state("Work", [act("work").done().entering(shorten)], {"FINISHED": "Pick"}),
		state("Home"),
	], {"variables": {"list": [1, 2, 3], "item": 0}}))
	expect_state(owner, "Home")
	expect_equal(noted.count("work enter"), 1)


func test_two_walks_of_one_name_share_their_place() -> void:
	var owner := start(machine([
		state("First", [for_each()], {"Next": "Second", "Done": "Home"}),
		state("Second", [for_each()], {"Next": "Stay", "Done": "Home"}),
		state("Stay"),
		state("Home"),
	], {"variables": {"list": ["a", "b"], "item": ""}}))
	expect_state(owner, "Stay")
	expect_equal(owner.get_value(&"item"), "b")
	expect_equal(owner.get_value(&"for each step"), 2)


func test_an_empty_list_is_done_at_every_visit() -> void:
	var owner := start(machine([
		state("Pick", [for_each({"start_again_when_done": false})], {"Next": "Work", "Done": "Home"}),
		state("Work"),
		state("Home", [], {"again": "Pick"}),
	], {"variables": {"list": [], "item": ""}}))
	expect_state(owner, "Home")
	owner.send_event("again")
	expect_state(owner, "Home")
	expect(not owner.has_value(&"for each step"), "the place was written")


func test_a_walk_that_does_not_start_again_stays_done() -> void:
	var owner := start(machine([
		state("Pick", [for_each({"start_again_when_done": false})], {"Next": "Work", "Done": "Home"}),
		state("Work", [], {"FINISHED": "Pick"}),
		state("Home", [], {"again": "Pick"}),
	], {"variables": {"list": [1, 2], "item": 0}}))
	expect_state(owner, "Home")
	expect_equal(owner.get_value(&"for each step"), 2)
	owner.send_event("again")
	expect_state(owner, "Home")
	expect_equal(owner.get_value(&"for each step"), 2)


func test_what_is_no_list_is_told_of() -> void:
	var owner := start(machine([
		state("Pick", [for_each()], {"Done": "Home"}),
		state("Home"),
	], {"name": "Shelf", "variables": {"list": 4}}))
	expect_warning("For Each on Shelf: list holds an int, which is not a list, so there was nothing to walk through and it sent Done. Fill it with the Array action, or make it an Array in the Variables tab.")
	expect_state(owner, "Home")
	var lost := start(machine([
		state("Pick", [for_each({"list_variable": &"crates"})], {"Done": "Home"}),
		state("Home"),
	], {"name": "Yard"}))
	expect_warning("For Each on Yard: this machine has no variable called crates, so there was nothing to walk through and it sent Done. Pick the variable holding the list beside List Variable.")
	expect_state(lost, "Home")
	start(machine([state("Pick", [for_each({"list_variable": &""})])], {"name": "Attic"}))
	expect_warning("For Each on Attic has no variable picked")


func test_a_walk_without_a_place_of_its_own_still_gets_on() -> void:
	var owner := start(machine([
		state("Pick", [for_each({"progress_variable": &""})], {"Next": "Work", "Done": "Home"}),
		state("Work", [], {"FINISHED": "Pick"}),
		state("Home"),
	], {"name": "Shelf", "variables": {"list": [1, 2], "item": 0}}))
	expect_warning("For Each on Shelf has no Progress Variable")
	expect_state(owner, "Home")


func test_a_watcher_that_stops_the_machine_ends_the_step() -> void:
	var stop := func(m: SCMachine) -> void: m.stop()
	var owner := start(machine([
		state("Pick", [act("watch").watching(["item"]).updating(stop), for_each()], {"Next": "Work"}),
		state("Work"),
	], {"variables": {"list": [1], "item": 0}}))
	expect(not owner.is_running())
	expect(not owner.has_value(&"for each step"), "the step went on")


func test_repeat_goes_round_as_often_as_told() -> void:
	var owner := start(machine([
		state("Count", [repeat()], {"Again": "Shoot", "Done": "Rest"}),
		state("Shoot", [set_var("shots", 1, {"operation": SCSetVariableAction.ADD})], {"FINISHED": "Count"}),
		state("Rest", [], {"fire": "Count"}),
	], {"variables": {"shots": 0}}))
	expect_state(owner, "Rest")
	expect_equal(owner.get_value(&"shots"), 3)
	owner.send_event("fire")
	expect_equal(owner.get_value(&"shots"), 6)


func test_repeat_reads_how_often_and_cuts_the_fraction() -> void:
	var owner := start(machine([
		state("Count", [repeat({"times_variable": &"wanted"})], {"Again": "Shoot", "Done": "Rest"}),
		state("Shoot", [set_var("shots", 1, {"operation": SCSetVariableAction.ADD})], {"FINISHED": "Count"}),
		state("Rest"),
	], {"variables": {"shots": 0, "wanted": 2.9}}))
	expect_equal(owner.get_value(&"shots"), 2)
	expect_state(owner, "Rest")


func test_repeat_no_times_is_done_at_once() -> void:
	var owner := start(machine([
		state("Count", [repeat({"times": 0})], {"Again": "Shoot", "Done": "Rest"}),
		state("Shoot"),
		state("Rest"),
	]))
	expect_state(owner, "Rest")


func test_a_ring_above_the_loop_limit_ends_within_a_frame() -> void:
	var owner := start(machine([
		state("Count", [repeat({"times": 200})], {"Again": "Empty", "Done": "Rest"}),
		state("Empty", [], {"FINISHED": "Count"}),
		state("Rest"),
	]))
	expect_state(owner, "Rest")


func test_sequence_sends_one_event_a_visit_and_begins_again() -> void:
	var owner := start(machine([
		state("Light", [sequence([&"Green", &"Amber", &"Red"])], {"Green": "Go", "Amber": "Careful", "Red": "Stop"}),
		state("Go", [], {"tick": "Light"}),
		state("Careful", [], {"tick": "Light"}),
		state("Stop", [], {"tick": "Light"}),
	]))
	var seen: Array = []
	for i in 4:
		seen.append(String(current(owner)))
		owner.send_event("tick")
	expect_equal(seen, ["Go", "Careful", "Stop", "Go"])


func test_a_sequence_without_loop_stops_at_its_end() -> void:
	var owner := start(machine([
		state("Say", [sequence([&"First"], {"loop": false})], {"First": "Talk", "Done": "Shrug"}),
		state("Talk", [], {"tick": "Say"}),
		state("Shrug", [], {"tick": "Say"}),
	]))
	expect_state(owner, "Talk")
	owner.send_event("tick")
	expect_state(owner, "Shrug")
	expect_equal(owner.get_value(&"sequence step"), 1)
	owner.send_event("tick")
	expect_state(owner, "Shrug")
	expect_equal(owner.get_value(&"sequence step"), 1)


func test_an_empty_sequence_is_told_of() -> void:
	start(machine([state("Say", [sequence([])])], {"name": "Parrot"}))
	expect_warning("Sequence on Parrot has no events in its list, so it sent nothing. Add them beside Events, in the order they are sent.")


func test_summaries() -> void:
	expect_equal(for_each().shown_summary(), "For each of list into item, send Next, then Done")
	expect_equal(for_each({"store_item_in": &"", "list_variable": &""}).shown_summary(), "For each of (pick one), send Next, then Done")
	expect_equal(repeat().shown_summary(), "Send Again 3 times, then Done")
	expect_equal(repeat({"times": 1}).shown_summary(), "Send Again 1 time, then Done")
	expect_equal(repeat({"times_variable": &"shots"}).shown_summary(), "Send Again [shots] times, then Done")
	expect_equal(sequence([&"Open", &"Close"]).shown_summary(), "Send the next of Open, Close, round and round")
	expect_equal(sequence([&"Open", &"Close"], {"loop": false}).shown_summary(), "Send the next of Open, Close, then Done")
