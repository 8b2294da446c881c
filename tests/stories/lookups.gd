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
	var no_machine := Node.new()
	no_machine.name = "Machine"
	door.add_child(no_machine)
	expect_equal(SCMachine.machine_of(door), null)


func test_the_machine_of_a_node_or_one_above_it() -> void:
	var door := body("Door")
	var made := play([], {}, {"under": door})
	var handle := Node.new()
	door.add_child(handle)
	var screw := Node.new()
	handle.add_child(screw)
	expect_equal(SCMachine.machine_of_or_above(screw), made)
	expect_equal(SCMachine.machine_of_or_above(made), made)
	var window := Window.new()
	window.visible = false
	door.add_child(window)
	var button := Button.new()
	window.add_child(button)
	expect_equal(SCMachine.machine_of_or_above(button), null, "a window ends the search")
	expect_equal(SCMachine.machine_of_or_above(null), null)
	expect_equal(SCMachine.machine_of_or_above(body("Alone")), null)


func test_every_machine_of_the_scene_is_known() -> void:
	expect_equal(SCMachine.machines_running(), 0)
	var running_one := play([], {}, {"name": "Running"})
	var idle := machine([state("A")], {"name": "Idle", "autostart": false})
	stage.add_child(idle)
	var known := SCMachine.machines_in_the_scene()
	expect_equal(known.size(), 2)
	expect(known.has(running_one) and known.has(idle))
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
	expect_equal(made.node_at(NodePath("../Door")), door)
	expect_equal(made.node_at(NodePath("../Door")), door)
	door.name = "Gate"
	expect_equal(made.node_at(NodePath("../Door")), null)
	expect_equal(made.node_at(NodePath("../Gate")), door)
	var other := body("Door")
	expect_equal(made.node_at(NodePath("../Door")), other)
	other.free()
	expect_equal(made.node_at(NodePath("../Door")), null)
	door.name = "Door"
	expect_equal(made.node_at(NodePath("../Door")), door)
	var room := body("Room")
	door.reparent(room)
	expect_equal(made.node_at(NodePath("../Door")), null)
	expect_equal(made.node_at(NodePath("../Room/Door")), door)
	expect_equal(made.node_at(NodePath("")), null)


func test_a_machine_that_moves_finds_its_nodes_anew() -> void:
	var left := body("Left")
	var right := body("Right")
	for room: Node in [left, right]:
		var lamp := Node.new()
		lamp.name = "Lamp"
		room.add_child(lamp)
	var made := play([], {}, {"under": left})
	expect_equal(made.node_at(NodePath("../Lamp")), left.get_node("Lamp"))
	made.reparent(right)
	expect_equal(made.node_at(NodePath("../Lamp")), right.get_node("Lamp"))
