extends Story
## Going from one scene to the next with machines in flight.

const CarryOver := preload("res://addons/quillstead/runtime/quillstead_carry_over.gd")


func test_machines_go_with_their_scene_and_globals_stay() -> void:
	var variables := [global_variable("gold", 10), variable("own", 1)]
	await _go_to([state("First", [act("first").ticking(), wait(5.0)])], variables)
	var first := _machine()
	first.set_value("gold", 25)
	first.set_value("own", 9)
	noted.clear()
	await _go_to([state("Second", [act("second")])], variables)
	expect(not is_instance_valid(first))
	expect(noted.count("first exit") == 1 and noted.back() == "second enter", "%s" % [noted])
	expect_state(_machine(), "Second")
	expect_values(_machine(), {"gold": 25, "own": 1})
	expect_equal(SCMachine.machines_in_the_scene(), [_machine()])


func test_globals_can_be_put_back_as_the_scene_found_them() -> void:
	var variables := [global_variable("score", 0), global_variable("lives", 3), global_variable("bag", ["map"])]
	await _go_to([state("Level")], variables)
	_machine().set_value("score", 5)
	await _go_to([state("Level")], variables)
	var made := _machine()
	made.set_value("score", 50)
	made.set_value("lives", 2)
	made.get_value("bag").append("key")
	made.set_global_value("late", 1)
	made.put_globals_back([&"lives"])
	for row: Array in [["score", 5], ["lives", 2], ["bag", ["map"]], ["late", null]]:
		expect_equal(made.global_value(row[0]), row[1], row[0])


func test_a_machine_changes_the_scene_from_within_a_state() -> void:
	var next := _scene([state("Next", [act("next")])], [])
	await _go_to([
		state("Here", [act("here")], {"go": "Leave"}),
		state("Leave", [act("leave").entering(func(m: SCMachine) -> void: m.get_tree().change_scene_to_packed(next)), act("after").ticking()]),
	], [])
	_machine().send_event("go")
	await frames(3)
	expect_state(_machine(), "Next")
	# The engine takes the old scene out at once, so the second action never begins.
	expect_log(["here enter", "here exit", "leave enter", "leave exit", "next enter"])


func test_a_machine_that_carries_over_takes_its_values_along() -> void:
	var hero := template([state("Walk"), state("Rest")], {
		"variables": [variable("hp", 10, {"never_above": "20", "starts": SCMachineVariable.FULL}), variable("bag", []), variable("door", null)],
		"carries_over": true,
	})
	var other := template([state("Walk")], {"variables": [variable("hp", 10)], "carries_over": true})
	var old := start(running(hero, {"name": "Hero"}))
	expect_equal(old.get_value("hp"), 20)
	old.set_value("hp", 4)
	old.get_value("bag").append("key")
	old.set_value("door", stage)
	old.go_to("Rest")
	CarryOver.gather()
	old.free()
	expect(CarryOver.is_waiting())
	expect_equal(start(running(other, {"name": "Stranger"})).get_value("hp"), 10)
	var new := start(running(hero, {"name": "Hero"}))
	expect_state(new, "Walk")
	expect_values(new, {"hp": 4, "bag": ["key"], "door": null})
	expect(new.has_meta(CarryOver.ARRIVED_RECORD))
	expect(not CarryOver.is_waiting(), "a record is claimed twice")
	expect_equal(start(running(hero, {"name": "Second"})).get_value("hp"), 20)


func test_a_boost_that_runs_out_is_carried_over_with_the_time_it_has_left() -> void:
	var boost := kind(SCModifyStatAction, {"variable_name": &"pace", "amount": 6.0, "source": "Potion", "for_seconds": 1.0})
	var hero := template([state("Walk", [], {"drink": "Fast"}), state("Fast", [boost])], {"variables": [variable("pace", 10.0)], "carries_over": true})
	var old := start(running(hero, {"name": "Hero"}))
	old.send_event("drink")
	expect_equal(old.get_value("pace"), 16.0)
	await frames(30)
	CarryOver.gather()
	old.free()
	var new := start(running(hero, {"name": "Hero"}))
	expect_equal(new.get_value("pace"), 16.0)
	await frames(20)
	expect_equal(new.get_value("pace"), 16.0)
	await frames(20)
	expect_equal(new.get_value("pace"), 10.0)


## Makes a scene of these the running one, the old one gone.
func _go_to(states: Array, variables: Array) -> void:
	tree.change_scene_to_packed(_scene(states, variables))
	await tree.scene_changed
	await frames(1)


func _scene(states: Array, variables: Array) -> PackedScene:
	var root := Node2D.new()
	root.name = "Level"
	var made := machine(states, {"variables": variables})
	root.add_child(made)
	made.owner = root
	var packed := PackedScene.new()
	packed.pack(root)
	root.free()
	return packed


func _machine() -> SCMachine:
	return tree.current_scene.get_node("Machine")
