extends Story
## Events where several states run side by side.


func test_every_region_hears_an_event() -> void:
	var made := start(machine([
		state("Both", [], {"go": "Wrong"}, {"parallel": {
			"A": [state("A1", [act("a")], {"go": "A2"}), state("A2")],
			"B": [state("B1", [act("b")], {"go": "B2"}), state("B2")],
			"C": [state("C1", [act("c")])],
		}}),
		state("Wrong"),
	]))
	noted.clear()
	made.send_event("go")
	expect_states(made, ["Both", "A2", "B2", "C1"])
	expect_log(["a exit", "b exit"])


func test_the_parent_takes_what_no_region_did() -> void:
	var made := start(machine([
		state("Both", [], {"leave": "Away", "go": "Away"}, {"parallel": {
			"A": [state("A1", [], {"go": "A2"}), state("A2")],
			"B": [state("B1")],
		}}),
		state("Away"),
	]))
	made.send_event("go")
	expect_states(made, ["Both", "A2", "B1"])
	made.send_event("leave")
	expect_states(made, ["Away"])


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


func test_a_way_to_what_is_already_running_is_passed_over() -> void:
	var made := start(machine([
		state("Both", [], {}, {"parallel": {
			"A": [state("A1", [act("a")], [transition("go", "B1"), transition("go", "Both"), transition("go", "A2")]), state("A2")],
			"B": [state("B1", [act("b")])],
		}}),
	]))
	noted.clear()
	made.send_event("go")
	expect_states(made, ["Both", "A2", "B1"])
	expect_log(["a exit"])


func test_one_region_can_move_another() -> void:
	var made := start(machine([
		state("Both", [], {}, {"parallel": {
			"A": [state("A1", [act("a")], {"push": "B2"})],
			"B": [state("B1", [act("b")]), state("B2", [act("b2")])],
		}}),
	]))
	noted.clear()
	made.send_event("push")
	expect_states(made, ["Both", "A1", "B2"])
	expect_log(["b exit", "b2 enter"])


func test_regions_within_regions() -> void:
	var made := start(machine([
		state("Top", [], {"go": "Wrong"}, {"parallel": {
			"Left": [state("L", [], {"go": "Wrong"}, {"parallel": {
				"L1": [state("LA", [act("la")], {"go": "LB"}), state("LB", [act("lb")])],
				"L2": [state("LC", [act("lc")], {"go": "LD"}), state("LD", [act("ld")])],
			}})],
			"Right": [state("R", [act("r")], {}, {"sub_states": [state("R1", [act("r1")], {"go": "R2"}), state("R2", [act("r2")])]})],
		}}),
		state("Wrong"),
	]))
	expect_states(made, ["Top", "L", "LA", "LC", "R", "R1"])
	noted.clear()
	made.send_event("go")
	expect_states(made, ["Top", "L", "LB", "LD", "R", "R2"])
	expect_log(["la exit", "lb enter", "lc exit", "ld enter", "r1 exit", "r2 enter"])
	made.go_to("LA")
	expect_states(made, ["Top", "L", "LA", "LD", "R", "R2"])


func test_two_regions_that_answer_one_another_in_one_event() -> void:
	var made := start(machine([
		state("Game", [], {}, {"parallel": {
			"Ball": [
				state("Left", [act("left").done().entering(func(m: SCMachine) -> void: m.send_event("at_left"))], {"hit": "Right"}),
				state("Right", [act("right").done().entering(func(m: SCMachine) -> void: m.send_event("at_right"))], {"hit": "Left"}),
			],
			"Score": [
				state("Even", [], {"at_right": "Odd"}),
				state("Odd", [], {"at_left": "Even"}),
			],
		}}),
	]))
	expect_states(made, ["Game", "Left", "Even"])
	made.send_event("hit")
	expect_states(made, ["Game", "Right", "Odd"])
	made.send_event("hit")
	expect_states(made, ["Game", "Left", "Even"])
