extends Story
## Actions that are called when a variable they watch has changed, and by nothing else.


func test_a_watcher_hears_of_what_really_changed() -> void:
	var bar := act("bar").watching(["hp"])
	var made := start(machine([state("A", [bar], {"go": "B"}), state("B", [], {"back": "A"})], {
		"variables": [variable("max_hp", 10), variable("hp", 10, {"never_above": "max_hp"}), variable("mp", 5)],
	}))
	expect(not made.is_processing())
	noted.clear()
	made.set_value("hp", 8)
	expect_log(["bar update"])
	expect_equal(bar.deltas, [0.0])
	made.set_value("hp", 8)
	made.set_value("mp", 4)
	await frames(3)
	expect_log([])
	made.set_value("max_hp", 4)
	expect_equal(made.get_value("hp"), 4)
	expect_log(["bar update"])
	for news: Variant in [4.0, "four"]:
		made.set_value("hp", news)
		expect_log(["bar update"])
	made.send_event("go")
	made.set_value("hp", 2)
	expect_log(["bar exit"])
	made.send_event("back")
	made.set_value("hp", 3)
	expect_log(["bar enter", "bar update"])
	made.stop()
	made.set_value("hp", 4)
	expect_log(["bar exit"])
	expect_debug_warning("set_value gave hp words, and it held a number.")


func test_several_watchers_hear_in_order() -> void:
	var made := start(machine([
		state("Outer", [act("a").watching(["hp", "mp"]), act("b"), act("c").watching(["mp"])], {}, {"parallel": {
			"Left": [state("L", [act("l").watching(["hp"])])],
			"Right": [state("R", [act("r").watching(["hp"]).off(), act("r2").then().watching(["hp"]), act("r3").then().watching(["hp"])])],
		}}),
	], {"variables": {"hp": 1, "mp": 1}}))
	noted.clear()
	made.set_value("hp", 2)
	expect_log(["a update", "l update", "r2 update"])
	made.set_value("mp", 2)
	expect_log(["a update", "c update"])


func test_a_watcher_that_writes_what_it_watches_stops_after_fifty_rounds() -> void:
	var count_on := func(m: SCMachine) -> void: m.set_value("n", int(m.get_value("n")) + 1)
	var made := start(machine([state("A", [act("a").watching(["n"]).updating(count_on)])], {"variables": {"n": 0}}))
	noted.clear()
	made.set_value("n", 1)
	expect_equal(noted.size(), 50)
	expect_equal(made.get_value("n"), 51)


func test_a_watcher_may_write_another_that_is_watched() -> void:
	var double := func(m: SCMachine) -> void: m.set_value("twice", 2 * int(m.get_value("n")))
	var made := start(machine([
		state("A", [act("double").watching(["n"]).updating(double), act("show").watching(["twice"]), act("late").watching(["n"])]),
	], {"variables": {"n": 1, "twice": 2}}))
	noted.clear()
	made.set_value("n", 5)
	expect_equal(made.get_value("twice"), 10)
	expect_log(["double update", "show update", "late update"])


func test_a_watcher_that_is_done_lets_the_state_end() -> void:
	var die := func(m: SCMachine, index: int) -> void:
		if int(m.get_value("hp")) <= 0:
			m.finish(index)
	var made := start(machine([
		state("Alive", [act("alive").watching(["hp"]).updating(die), act("last words").then().done()], {"FINISHED": "Dead"}),
		state("Dead", [act("dead")]),
	], {"variables": {"hp": 10}}))
	made.set_value("hp", 5)
	expect_state(made, "Alive")
	noted.clear()
	made.set_value("hp", 0)
	expect_state(made, "Dead")
	expect_log(["alive update", "last words enter", "alive exit", "last words exit", "dead enter"])


func test_writes_of_a_paused_machine_are_told_when_it_goes_on() -> void:
	var made := start(machine([state("A", [act("hp").watching(["hp"]), act("mp").watching(["mp"])])], {"variables": {"hp": 1, "mp": 1}}))
	noted.clear()
	made.set_paused(true)
	made.set_value("hp", 2)
	made.set_value("hp", 3)
	made.set_value("mp", 2)
	expect_log([])
	expect_equal(made.get_value("hp"), 3)
	made.set_paused(false)
	noted.sort()
	expect_log(["hp update", "mp update"])
	made.set_paused(true)
	made.set_value("hp", 4)
	made.step_once()
	expect_log(["hp update"])
	made.set_paused(false)


func test_what_an_event_stored_is_news_only_to_states_older_than_it() -> void:
	var hit := [transition("hit", "Hurt", "hp")]
	var made := start(machine([
		state("Both", [], {}, {"parallel": {
			"Old": [state("Bar", [act("bar").watching(["hp"])])],
			"New": [state("Wait", [], hit), state("Hurt", [act("hurt").watching(["hp"])], hit)],
		}}),
	], {"variables": {"hp": 10}}))
	noted.clear()
	made.send_event("hit", 7)
	expect_log(["hurt enter", "bar update"])
	made.send_event("hit", 7)
	expect_log(["hurt exit", "hurt enter"])
	made.set_value("hp", 1)
	expect_log(["bar update", "hurt update"])


func test_two_that_answer_one_another() -> void:
	expect_passes_alone("""
		var grow := func() -> SCMachineAction:
			return kind(SCFormatStringAction, {"text": "{x}!", "store_in": &"x", "run_mode": SCMachineAction.EVERY_FRAME})
		for shared: bool in [false, true]:
			var variables := [variable("x", "", {"is_global": shared})]
			var made: Array[SCMachine] = []
			for i in 2:
				made.append(play([grow.call(), grow.call(), act("label").watching(["x"])], {"go": "Gone"}, {"variables": variables, "name": "M%d" % i}))
			await frames(3)
			for each in made:
				expect_after(each, "go", "Gone")
				each.free()
	""")


func test_what_is_told_once_the_deepest_has_been_reached() -> void:
	expect_passes_alone("""
		var seen: Array = []
		var count_on := func(m: SCMachine) -> void: m.set_value("n", int(m.get_value("n")) + 1)
		var made := start(machine([state("A", [
			act("a").watching(["n"]).updating(count_on), act("b").watching(["n"]).updating(count_on),
			act("copy").watching(["n"]).updating(func(m: SCMachine) -> void: m.set_value("copied", m.get_value("n"))),
			act("label").watching(["copied"]).updating(func(m: SCMachine) -> void: seen.append(m.get_value("copied"))),
		])], {"variables": {"n": 0, "copied": 0}}))
		for times in 2:
			made.set_value("n", 1)
			expect(noted.count("a update") <= 50 * (times + 1) and noted.count("b update") <= 50 * (times + 1), "they were told %d times" % noted.size())
			expect_equal(seen.back(), made.get_value("n"))
	""")


func test_a_chain_of_fifty_reaches_its_end() -> void:
	var links: Array = []
	var variables := {}
	for i in 51:
		variables["v%d" % i] = 0
		if i < 50:
			links.append(act("link %d" % i).watching(["v%d" % i]).updating(func(m: SCMachine) -> void: m.set_value("v%d" % (i + 1), 1)))
	var made := start(machine([state("A", links)], {"variables": variables}))
	made.set_value("v0", 1)
	expect_values(made, {&"v50": 1})
