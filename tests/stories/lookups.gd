extends Story
## Finding machines from nodes, and nodes from machines.


func test_the_machine_of_a_node() -> void:
	var door := body("Door")
	door.add_child(Node.new())
	expect_equal(SCMachine.machine_of(door), null)
	expect_equal(SCMachine.machine_of(null), null)
	var first := play([], {}, {"under": door, "name": "First"})
	var second := play([], {}, {"under": door, "name": "Second"})
	expect_equal(SCMachine.machine_of(door), first)
	expect_equal(SCMachine.machine_of(second), second)
	second.name = "Machine"
	expect_equal(SCMachine.machine_of(door), second)
	first.free()
	second.free()
	add(Node.new(), "Machine", {"under": door})
	expect_equal(SCMachine.machine_of(door), null)


func test_the_machine_of_a_node_or_one_above_it() -> void:
	var door := body("Door")
	var made := play([], {}, {"under": door})
	var screw := body("Screw", Vector2.ZERO, body("Handle", Vector2.ZERO, door))
	var button := add(Button.new(), "", {"under": add(Window.new(), "", {"under": door, "visible": false})})
	# A window ends the search.
	for row: Array in [[screw, made], [made, made], [button, null], [null, null], [body("Alone"), null]]:
		expect_equal(SCMachine.machine_of_or_above(row[0]), row[1])


func test_every_machine_of_the_scene_is_known() -> void:
	expect_equal(SCMachine.machines_running(), 0)
	var running_one := play([], {}, {"name": "Running"})
	var idle: SCMachine = add(doing([], {}, {"name": "Idle", "autostart": false}))
	var known := SCMachine.machines_in_the_scene()
	expect(known.size() == 2 and known.has(running_one) and known.has(idle))
	expect_equal(SCMachine.machines_running(), 1)
	idle.start()
	expect_equal(SCMachine.machines_running(), 2)
	stage.remove_child(idle)
	expect_equal(SCMachine.machines_in_the_scene(), [running_one])
	running_one.free()
	expect_equal(SCMachine.machines_in_the_scene(), [])
	expect_equal(SCMachine.machines_running(), 0)


func test_a_node_found_once_is_found_again_only_where_it_is() -> void:
	var door := body("Door")
	var made := play([])
	for again in 2:
		expect_equal(made.node_at(^"../Door"), door)
	door.name = "Gate"
	expect_equal(made.node_at(^"../Door"), null)
	expect_equal(made.node_at(^"../Gate"), door)
	var other := body("Door")
	expect_equal(made.node_at(^"../Door"), other)
	other.free()
	expect_equal(made.node_at(^"../Door"), null)
	door.name = "Door"
	expect_equal(made.node_at(^"../Door"), door)
	door.reparent(body("Room"))
	expect_equal(made.node_at(^"../Door"), null)
	expect_equal(made.node_at(^"../Room/Door"), door)
	expect_equal(made.node_at(^""), null)


func test_a_machine_that_moves_finds_its_nodes_anew() -> void:
	var rooms: Array[Node2D] = [body("Left"), body("Right")]
	for room in rooms:
		body("Lamp", Vector2.ZERO, room)
	var made := play([], {}, {"under": rooms[0]})
	expect_equal(made.node_at(^"../Lamp"), rooms[0].get_node(^"Lamp"))
	made.reparent(rooms[1])
	expect_equal(made.node_at(^"../Lamp"), rooms[1].get_node(^"Lamp"))
