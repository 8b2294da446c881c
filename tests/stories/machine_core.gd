extends Story
## The small router: events and states, nothing else.


class Router:
	extends SCMachineCore


func test_events_lead_from_state_to_state() -> void:
	var told: Array[String] = []
	var router := _router(template([
		null,
		state("Red", [], [null, transition("next", "Nowhere"), transition("", "Dead End"), transition("next", "Green"), transition("next", "Dead End")]),
		state("Green", [], {"next": "Red", "break": "Dead End"}),
		state("Dead End"),
		state("Red", [], {"next": "Dead End"}),
	], {"initial": "Red"}))
	router.state_changed.connect(func(from: StringName, to: StringName) -> void: told.append("%s > %s" % [from, to]))
	# The event, where it leads, and how often the router has changed by then.
	for row: Array in [["unknown", &"Red", 0], ["", &"Red", 0], ["next", &"Green", 1], ["next", &"Red", 2], ["next", &"Green", 3], ["break", &"Dead End", 4], ["next", &"Dead End", 4]]:
		router.send_event(row[0])
		expect_equal([router.get_current_state(), router.get_changes()], [row[1], row[2]], row[0])
	expect_equal(told, ["Red > Green", "Green > Red", "Red > Green", "Green > Dead End"])


func test_where_it_starts() -> void:
	var design := template([state("A", [], {"go": "B"}), state("B", [], {"go": "A"})], {"initial": "B"})
	var router := _router(design)
	expect_equal(router.get_current_state(), &"B")
	router.send_event("go")
	stage.remove_child(router)
	stage.add_child(router)
	expect_equal(router.get_current_state(), &"B", "it begins anew in a tree")
	for initial: SCMachineState in [null, state("Elsewhere")]:
		design.initial_state = initial
		router.design = design
		expect_equal(router.get_current_state(), &"A")
	for nothing: SCMachineTemplate in [SCMachineTemplate.new(), null]:
		router.design = nothing
		expect_equal(router.get_current_state(), &"")
		router.send_event("go")
	expect_equal(router.design, null)


func test_a_broadcast_reaches_every_router_that_listens() -> void:
	var design := template([state("A", [], {"go": "B"}), state("B")])
	var routers: Array[Router] = [_router(design), _router(design), _router(design)]
	var deaf := _router(template([state("A")]))
	stage.remove_child(routers[1])
	routers[2].state_changed.connect(func(_from: StringName, _to: StringName) -> void: routers[1].free())
	SCMachineCore.broadcast_everywhere("go")
	SCMachineCore.broadcast_everywhere("unknown")
	expect_equal([routers[0], routers[2], deaf].map(func(one: Router) -> StringName: return one.get_current_state()), [&"B", &"B", &"A"])
	expect(not is_instance_valid(routers[1]))
	routers[0].design = null
	SCMachineCore.broadcast_everywhere("go")
	expect_equal(routers[0].get_changes(), 1)


func test_measuring_reads_and_calls() -> void:
	expect(SCMachineCore.time_gets(stage, "name", 1000) > 0.0)
	expect(SCMachineCore.time_calls(stage, "get_child_count", 1000) > 0.0)
	expect_equal(SCMachineCore.time_gets(null, "name", 10), 0.0)
	expect_equal(SCMachineCore.time_calls(stage, "get_child_count", 0), 0.0)


func _router(design: Resource) -> Router:
	return add(Router.new(), "", {"design": design})
