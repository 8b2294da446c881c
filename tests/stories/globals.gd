extends Story
## Variables that every machine of the game shares.


func test_machines_share_what_they_both_declare_global() -> void:
	var one := _player("One", 10)
	expect_values(one, {"gold": 10})
	one.set_value("gold", 25)
	# A machine that starts later finds it, and so does one after the others have gone.
	var two := _player("Two", 99)
	expect_values(two, {"gold": 25})
	two.set_value("gold", 7)
	expect_values(one, {"gold": 7})
	expect_equal(one.global_value("gold"), 7)
	expect_equal(one.global_value("nothing", 3), 3)
	expect(one.is_global_value("gold") and not one.is_global_value("own"))
	expect_equal(one.global_names(), [&"gold"])
	one.set_value("own", 5)
	expect_values(two, {"own": 1})
	one.free()
	two.set_value("gold", 34)
	expect_equal(two.global_value("gold"), 34)
	two.free()
	expect_values(_player("Three", 1), {"gold": 34})


func test_the_game_can_write_a_global() -> void:
	var one := _player("One", 10)
	var two := _player("Two", 10)
	one.set_global_value("gold", 50)
	one.set_global_value("level", 3)
	for player: SCMachine in [one, two]:
		expect_values(player, {"gold": 50})
		expect_equal(player.global_value("level"), 3)
		expect(not player.has_value("level"), "a machine that does not declare it")


func test_each_machine_keeps_its_own_limits_on_a_global() -> void:
	var poor := play([], {}, {"variables": [global_variable("gold", 0, {"never_above": "50"})], "name": "Poor"})
	var rich := play([], {}, {"variables": [global_variable("gold", 0)], "name": "Rich"})
	for row: Array in [[rich, 80, 80], [poor, 60, 50]]:
		row[0].set_value("gold", row[1])
		expect_values(poor, {"gold": 50})
		expect_values(rich, {"gold": row[2]})


func test_an_action_and_an_event_write_a_global_too() -> void:
	var one := _player("One", 10)
	var two := start(machine([
		state("A", [set_var("gold", 5, {"operation": SCSetVariableAction.ADD})], [transition("pay", "B", "gold")]),
		state("B"),
	], {"variables": [global_variable("gold", 0)], "name": "Two"}))
	expect_values(one, {"gold": 15})
	two.send_event("pay", 2)
	expect_values(one, {"gold": 2})
	expect_equal(one.global_value("gold"), 2)


func test_two_machines_pass_a_global_back_and_forth() -> void:
	var made: Array[SCMachine] = []
	for mine in 2:
		made.append(_watching("ball", func(m: SCMachine) -> void:
			var ball: int = m.get_value("ball")
			if ball % 2 == mine and ball < 30:
				m.set_value("ball", ball + 1)))
	made[0].set_value("ball", 1)
	for one in made:
		expect_values(one, {"ball": 30})
	expect_equal(made[0].global_value("ball"), 30)


func test_machines_that_answer_each_other_for_ever_come_to_an_end() -> void:
	for answer: Callable in [
		func(_m: SCMachine) -> void: SCMachine.set_global_value("echo", SCMachine.global_value("echo", 0) + 1),
		func(m: SCMachine) -> void: m.set_value("echo", m.get_value("echo") + 1),
	]:
		var made: Array[SCMachine] = [_watching("echo", answer), _watching("echo", answer)]
		made[0].set_value("echo", made[0].get_value("echo") + 1)
		expect(made[0].get_value("echo") < 20000, "went round %d times" % made[0].get_value("echo"))
		for one in made:
			one.free()


func test_globals_are_put_back_as_the_scene_found_them() -> void:
	var one := play([], {}, {"variables": [global_variable("score", 0), global_variable("lives", 3), global_variable("bag", ["map"])], "name": "One"})
	one.set_value("score", 10)
	one.set_global_value("late", 1)
	one.get_value("bag").append("key")
	one.put_globals_back([&"lives", &"late"])
	# This scene began before there were any.
	expect_equal(one.global_names().has(&"score"), false)
	expect_equal(one.global_value("lives"), 3)
	expect_equal(one.global_value("late"), 1)


func _player(name: String, gold: int) -> SCMachine:
	return play([], {}, {"variables": [global_variable("gold", gold), variable("own", 1)], "name": name})


func _watching(name: StringName, answer: Callable) -> SCMachine:
	return play(act("watch").watching([name]).updating(answer), {}, {"variables": [global_variable(name, 0)]})
