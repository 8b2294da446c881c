extends Story
## The small router: events and states, nothing else.


class Router:
	extends SCMachineCore


func test_events_lead_from_state_to_state() -> void:
	var told: Array[String] = []
	var router := _router(template([
		state("Red", [], [transition("next", "Nowhere"), transition("next", "Green"), transition("next", "Dead End")]),
		state("Green", [], {"next": "Red", "break": "Dead End"}),
		state("Dead End"),
	]))
	router.state_changed.connect(func(from: StringName, to: StringName) -> void: told.append("%s > %s" % [from, to]))
	expect_equal(router.get_current_state(), &"Red")
	router.send_event("unknown")
	expect_equal(router.get_changes(), 0)
	router.send_event("next")
	expect_equal(router.get_current_state(), &"Green")
	router.send_event("break")
	router.send_event("next")
	expect_equal(router.get_current_state(), &"Dead End")
	expect_equal(router.get_changes(), 2)
	expect_equal(told, ["Red > Green", "Green > Dead End"])


func test_where_it_starts() -> void:
	var design := template([state("A", [], {"go": "B"}), state("B", [], {"go": "A"})], {"initial": "B"})
	var router := _router(design)
	expect_equal(router.get_current_state(), &"B")
	router.send_event("go")
	stage.remove_child(router)
	stage.add_child(router)
	expect_equal(router.get_current_state(), &"B", "it begins anew in a tree")
	design.initial_state = null
	router.design = design
	expect_equal(router.get_current_state(), &"A")
	design.initial_state = state("Elsewhere")
	router.design = design
	expect_equal(router.get_current_state(), &"A")
	router.design = SCMachineTemplate.new()
	expect_equal(router.get_current_state(), &"")
	router.send_event("go")
	router.design = null
	expect_equal(router.get_current_state(), &"")
	router.send_event("go")
	expect_equal(router.design, null)


func test_a_broadcast_reaches_every_router_that_listens() -> void:
	var design := template([state("A", [], {"go": "B"}), state("B")])
	var routers: Array[Router] = []
	for i in 3:
		routers.append(_router(design))
	var deaf := _router(template([state("A")]))
	stage.remove_child(routers[1])
	routers[2].state_changed.connect(func(_from: StringName, _to: StringName) -> void: routers[1].free())
	SCMachineCore.broadcast_everywhere("go")
	SCMachineCore.broadcast_everywhere("unknown")
	expect_equal(routers[0].get_current_state(), &"B")
	expect_equal(routers[2].get_current_state(), &"B")
	expect(not is_instance_valid(routers[1]))
	expect_equal(deaf.get_current_state(), &"A")
	routers[0].design = null
	SCMachineCore.broadcast_everywhere("go")
	expect_equal(routers[0].get_changes(), 1)


func test_measuring_reads_and_calls() -> void:
	expect(SCMachineCore.time_gets(stage, "name", 1000) > 0.0)
	expect(SCMachineCore.time_calls(stage, "get_child_count", 1000) > 0.0)
	SCMachineCore.time_gets(null, "name", 10)
	SCMachineCore.time_calls(stage, "get_child_count", 0)


func _router(design: Resource) -> Router:
	var router := Router.new()
	router.design = design
	stage.add_child(router)
	return router
