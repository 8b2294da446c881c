extends Story
## Events where several states run side by side.


func test_regions_hear_before_their_parent() -> void:
	var made := start(machine([
		state("Top", [], {"go": "Wrong", "leave": "Away"}, {"parallel": {
			"Left": [state("L", [], {"go": "Wrong"}, {"parallel": {
				"L1": [state("LA", [act("la")], {"go": "LB"}), state("LB", [act("lb")])],
				"L2": [state("LC", [act("lc")], {"go": "LD"}), state("LD", [act("ld")])],
			}})],
			"Right": [state("R", [act("r")], {}, {"sub_states": [state("R1", [act("r1")], {"go": "R2"}), state("R2", [act("r2")])]})],
			"Deaf": [state("D", [act("d")])],
		}}),
		state("Wrong"),
		state("Away"),
	]))
	expect_states(made, ["Top", "L", "LA", "LC", "R", "R1", "D"])
	noted.clear()
	expect_after(made, "go", ["Top", "L", "LB", "LD", "R", "R2", "D"])
	expect_log(["la exit", "lb enter", "lc exit", "ld enter", "r1 exit", "r2 enter"])
	made.go_to("LA")
	expect_states(made, ["Top", "L", "LA", "LD", "R", "R2", "D"])
	expect_after(made, "leave", ["Away"])


func test_a_region_that_leads_out_ends_the_others_before_they_hear() -> void:
	var made := start(machine([
		state("Both", [], {}, {"parallel": {
			"A": [state("A1", [act("a")], {"alarm": "Away"})],
			"B": [state("B1", [act("b")], {"alarm": "B2"}), state("B2", [act("b2")])],
		}}),
		state("Away", [act("away")]),
	]))
	noted.clear()
	made.send_event("alarm")
	expect_log(["a exit", "b exit", "away enter"])
	expect_states(made, ["Away"])


func test_a_region_moves_another_and_passes_over_what_is_running() -> void:
	var ways := [transition("go", "B1"), transition("go", "Both"), transition("go", "A2"), transition("push", "B2")]
	var made := start(machine([
		state("Both", [], {}, {"parallel": {
			"A": [state("A1", [act("a")], ways), state("A2")],
			"B": [state("B1", [act("b")]), state("B2", [act("b2")])],
		}}),
	]))
	noted.clear()
	expect_after(made, "push", ["Both", "A1", "B2"])
	expect_log(["b exit", "b2 enter"])
	made.go_to("B1")
	noted.clear()
	expect_after(made, "go", ["Both", "A2", "B1"])
	expect_log(["a exit"])


func test_two_regions_that_answer_one_another_in_one_event() -> void:
	var tell := func(event: StringName) -> Recorder: return act(event).done().entering(func(m: SCMachine) -> void: m.send_event(event))
	var made := start(machine([
		state("Game", [], {}, {"parallel": {
			"Ball": [state("Left", [tell.call("at_left")], {"hit": "Right"}), state("Right", [tell.call("at_right")], {"hit": "Left"})],
			"Score": [state("Even", [], {"at_right": "Odd"}), state("Odd", [], {"at_left": "Even"})],
		}}),
	]))
	expect_states(made, ["Game", "Left", "Even"])
	expect_after(made, "hit", ["Game", "Right", "Odd"])
	expect_after(made, "hit", ["Game", "Left", "Even"])
