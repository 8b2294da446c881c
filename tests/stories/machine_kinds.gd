extends Story
## What machines ask of themselves and do to one another.


func of(made: SCMachineAction, options: Dictionary = {}) -> SCMachineAction:
	_put(made, options)
	return made


## A node with a machine of its own beside it, to be acted on.
func other(name: String, states: Array, options: Dictionary = {}) -> SCMachine:
	options["under"] = body(name)
	return start(machine(states, options))


func test_delayed_events_are_called_off() -> void:
	var owner := start(machine([
		state("Fuse", [send("explode", {"delay": 0.2}), send("ring", {"delay": 0.1})], {"explode": "Boom"}, {"sub_states": [
			state("Burning", [], {"cut": "Safe"}),
			state("Safe", [of(SCCancelDelayedEventsAction.new(), {"event": &"explode", "store_count_in": &"cut off"})]),
		]}),
		state("Boom"),
	], {"variables": {"cut off": 0}}))
	var sent: Array[String] = []
	owner.event_sent.connect(func(event: StringName, _data: Variant) -> void: sent.append(String(event)))
	await advance(0.05)
	owner.send_event("cut")
	expect_equal(owner.get_value(&"cut off"), 1)
	await advance(0.4)
	expect_state(owner, "Safe")
	expect_equal(sent, ["cut", "ring"] as Array[String])


func test_an_action_with_nothing_left_to_send_is_done() -> void:
	var owner := start(machine([
		state("Fuse", [send("explode", {"delay": 5.0}), wait(0.05), of(SCCancelDelayedEventsAction.new(), {"wait_for_previous": true})], {"explode": "Boom", "FINISHED": "Safe"}),
		state("Boom"),
		state("Safe"),
	]))
	await advance(0.15)
	expect_state(owner, "Safe")


func test_a_machine_holds_still_and_goes_on() -> void:
	var guard := other("Guard", [
		state("Walk", [wait(0.2)], {"FINISHED": "Turn", "noise": "Look"}),
		state("Turn"),
		state("Look"),
	])
	var owner := start(machine([
		state("Play", [], {"scene": "Scene"}),
		state("Scene", [of(SCEnableMachineAction.new(), {"machine_path": NodePath("../Guard"), "turn": SCEnableMachineAction.TURN_OFF})], {"over": "Back"}),
		state("Back", [of(SCEnableMachineAction.new(), {"machine_path": NodePath("../Guard")})]),
	]))
	await advance(0.1)
	owner.send_event("scene")
	guard.send_event("noise")
	await advance(0.5)
	expect_state(guard, "Walk")
	owner.send_event("over")
	await advance(0.05)
	expect_state(guard, "Walk")
	await advance(0.1)
	expect_state(guard, "Turn")
	expect_equal(guard.process_mode, Node.PROCESS_MODE_INHERIT)


func test_a_machine_switched_on_hears_again() -> void:
	var guard := other("Guard", [state("Walk", [], {"noise": "Look"}), state("Look")])
	var toggle := of(SCEnableMachineAction.new(), {"machine_path": NodePath("../Guard"), "turn": SCEnableMachineAction.TURN_OTHER_WAY})
	var owner := start(machine([state("A", [toggle], {"next": "B"}), state("B", [toggle])]))
	guard.send_event("noise")
	expect_state(guard, "Walk")
	owner.send_event("next")
	guard.send_event("noise")
	expect_state(guard, "Look")


func test_a_machine_stops_and_begins_anew() -> void:
	var trap := other("Trap", [state("Armed", [], {"step": "Sprung"}), state("Sprung")])
	trap.send_event("step")
	var owner := start(machine([
		state("Off", [of(SCEnableMachineAction.new(), {"machine_path": NodePath("../Trap/Machine"), "turn": SCEnableMachineAction.TURN_OFF, "when_off": SCEnableMachineAction.STOPS})], {"lever": "On"}),
		state("On", [of(SCEnableMachineAction.new(), {"machine_path": NodePath("../Trap")})]),
	]))
	expect(not trap.is_running())
	owner.send_event("lever")
	expect_state(trap, "Armed")


func test_no_machine_to_switch_is_told_of() -> void:
	body("Rock")
	start(machine([state("A", [of(SCEnableMachineAction.new())])], {"name": "Lever"}))
	expect_warning("Enable Machine on Lever: no machine is picked, so nothing was switched. Pick the node that has it under Machine Path.")
	start(machine([state("A", [of(SCEnableMachineAction.new(), {"machine_path": NodePath("../Rock")})])], {"name": "Lever", "under": body("Wall")}))
	expect_warning("Enable Machine on Lever: there is no Machine on Rock, nor on anything it sits under, so nothing was switched.")


func test_events_are_passed_on_while_the_state_runs() -> void:
	var sent: Array = []
	var radio := other("Radio", [state("On")])
	radio.event_sent.connect(func(event: StringName, data: Variant) -> void: sent.append([String(event), data]))
	var owner := start(machine([
		state("Tell", [of(SCForwardEventsAction.new(), {"machine_path": NodePath("../Radio")})], {"quiet": "Mute", "hello": "Tell"}),
		state("Mute"),
	]))
	owner.send_event("news", 7)
	owner.send_event("quiet")
	owner.send_event("more")
	expect_state(owner, "Mute")
	expect_equal(sent, [["news", 7], ["quiet", null]])


func test_only_the_listed_events_are_passed_on() -> void:
	var sent: Array = []
	var radio := other("Radio", [state("On")])
	radio.event_sent.connect(func(event: StringName, _data: Variant) -> void: sent.append(String(event)))
	var owner := start(machine([
		state("Tell", [of(SCForwardEventsAction.new(), {"machine_path": NodePath("../Radio"), "only_these": [&"news"] as Array[StringName]})]),
	]))
	owner.send_event("gossip")
	owner.send_event("news")
	expect_equal(sent, ["news"])


func test_two_machines_that_pass_on_to_each_other_stay_calm() -> void:
	var heard := {"A": 0, "B": 0}
	var first := machine([state("Tell", [of(SCForwardEventsAction.new(), {"machine_path": NodePath("../../B")})])], {"under": body("A")})
	var second := machine([state("Tell", [of(SCForwardEventsAction.new(), {"machine_path": NodePath("../../A")})])], {"under": body("B")})
	first.event_sent.connect(func(_event: StringName, _data: Variant) -> void: heard["A"] += 1)
	second.event_sent.connect(func(_event: StringName, _data: Variant) -> void: heard["B"] += 1)
	second.autostart = false
	second.get_meta(&"under").add_child(second)
	start(first)
	second.start()
	first.send_event("ball")
	expect_equal(heard, {"A": 1, "B": 1})


func test_a_machine_does_not_pass_on_to_itself() -> void:
	start(machine([state("A", [of(SCForwardEventsAction.new(), {"machine_path": NodePath("..")})])], {"name": "Parrot", "under": body("Perch")}))
	expect_warning("Forward Events on Parrot: it would pass its events on to itself, so it passes on none.")


func test_names_of_states_and_events() -> void:
	var owner := start(machine([
		state("Calm", [of(SCGetPreviousStateAction.new(), {"store_in": &"from"}), of(SCGetLastEventAction.new(), {"store_in": &"by"})], {"noise": "Alert"}),
		state("Alert", [of(SCGetPreviousStateAction.new(), {"store_in": &"from"}), of(SCGetLastEventAction.new(), {"store_in": &"by"})]),
	], {"variables": {"from": "?", "by": "?"}}))
	expect_equal(owner.get_value(&"from"), "")
	expect_equal(owner.get_value(&"by"), "")
	owner.send_event("noise")
	expect_equal(owner.get_value(&"from"), "Calm")
	expect_equal(owner.get_value(&"by"), "noise")


func test_the_state_of_a_machine_by_its_depth() -> void:
	var guard := other("Guard", [state("Fight", [], {}, {"sub_states": [state("Attack", [], {"hit": "Block"}), state("Block")]})])
	var look := func(which: SCGetStateAction.Which) -> SCMachineAction:
		return of(SCGetStateAction.new(), {"machine_path": NodePath("../Guard"), "which": which, "store_in": StringName("seen %d" % which)})
	var owner := start(machine([
		state("Look", [look.call(SCGetStateAction.INNERMOST), look.call(SCGetStateAction.OUTERMOST), look.call(SCGetStateAction.WHOLE_PATH)], {"again": "Look"}),
	], {"variables": {"seen 0": "", "seen 1": "", "seen 2": ""}}))
	expect_equal([owner.get_value(&"seen 0"), owner.get_value(&"seen 1"), owner.get_value(&"seen 2")], ["Attack", "Fight", "Fight/Attack"])
	guard.send_event("hit")
	owner.send_event("again")
	expect_equal(owner.get_value(&"seen 2"), "Fight/Block")
	guard.stop()
	owner.send_event("again")
	expect_equal(owner.get_value(&"seen 0"), "")


func test_the_state_of_this_machine_every_frame() -> void:
	var owner := start(machine([
		state("Outer", [of(SCGetStateAction.new(), {"store_in": &"now", "run_mode": SCMachineAction.EVERY_FRAME})], {}, {"sub_states": [state("One", [], {"go": "Two"}), state("Two")]}),
	], {"variables": {"now": ""}}))
	expect_equal(owner.get_value(&"now"), "One")
	owner.send_event("go")
	await frames(1)
	expect_equal(owner.get_value(&"now"), "Two")


func test_going_back_to_where_it_came_from() -> void:
	var back := of(SCGoToPreviousStateAction.new())
	var owner := start(machine([
		state("Walk", [], {"menu": "Menu"}),
		state("Swim", [], {"menu": "Menu"}),
		state("Menu", [], {"close": "Back"}, {"sub_states": [state("Page")]}),
		state("Shop", [], {"leave": "Return"}),
		state("Return", [back]),
		state("Back"),
	], {"initial": "Shop", "name": "Player"}))
	owner.send_event("leave")
	expect_state(owner, "Shop")
	start(machine([state("Alone", [back])], {"name": "Orphan"}))
	expect_warning("Go To Previous State on Orphan: the machine came from no other state, so it stays where it is.")


func test_variables_of_another_machine() -> void:
	var shop := other("Shop", [state("Open")], {"variables": {"price": 12, "name": "Ann"}})
	var read := of(SCMachineVariableAction.new(), {"machine_path": NodePath("../Shop"), "variable_there": &"price", "store_in": &"cost"})
	var write := of(SCMachineVariableAction.new(), {"machine_path": NodePath("../Shop"), "operation": SCMachineVariableAction.WRITE, "variable_there": &"name", "from_variable": &"me"})
	var owner := start(machine([state("Trade", [read, write])], {"variables": {"cost": 0.0, "me": "Bob"}}))
	expect_equal(owner.get_value(&"cost"), 12.0)
	expect_equal(shop.get_value(&"name"), "Bob")
	expect_equal(read.shown_summary(), "Put price on the machine of Shop into cost")
	expect_equal(write.shown_summary(), "Put me in name on the machine of Shop")
	expect_equal(SCMachineVariableAction.new().shown_summary(), "Put (pick one) on the machine of (pick one) into (pick one)")
	expect_equal(Array(write.variables_read()), ["me"])
	expect_equal(Array(write.variables_written()), [])


func test_variables_that_are_not_there_are_told_of() -> void:
	other("Shop", [state("Open")], {"name": "Till", "variables": {"price": 12}})
	var path := NodePath("../Shop/Till")
	var gone := of(SCMachineVariableAction.new(), {"machine_path": path, "variable_there": &"cost", "store_in": &"cost"})
	var nothing := of(SCMachineVariableAction.new(), {"machine_path": path, "operation": SCMachineVariableAction.WRITE, "variable_there": &"price"})
	var unfit := of(SCMachineVariableAction.new(), {"machine_path": path, "operation": SCMachineVariableAction.WRITE, "variable_there": &"price", "from_variable": &"who"})
	start(machine([state("Trade", [gone, nothing, unfit])], {"name": "Buyer", "variables": {"cost": 0, "who": "Bob"}}))
	expect_warning("Machine Variable on Buyer: Till has no variable called cost, so nothing was read.")
	expect_warning("Machine Variable on Buyer: no variable is picked to take the value from, so nothing was written.")
	expect_warning("Machine Variable on Buyer: price on Till holds an int and cannot take a String, so it was left as it is.")


func test_summaries() -> void:
	expect_equal(SCCancelDelayedEventsAction.new().shown_summary(), "Call off every delayed event")
	expect_equal(of(SCCancelDelayedEventsAction.new(), {"event": &"Boom", "store_count_in": &"count"}).shown_summary(), "Call off delayed Boom, how many into count")
	expect_equal(of(SCEnableMachineAction.new(), {"machine_path": NodePath("../Trap")}).shown_summary(), "Switch the machine of Trap on")
	expect_equal(SCEnableMachineAction.new().shown_summary(), "Switch the machine of (pick one) on")
	expect_equal(of(SCForwardEventsAction.new(), {"machine_path": NodePath("../Radio")}).shown_summary(), "Pass every event on to the machine of Radio")
	expect_equal(SCGetLastEventAction.new().shown_summary(), "Put the event that led here into (pick one)")
	expect_equal(of(SCGetStateAction.new(), {"store_in": &"where"}).shown_summary(), "Put the state of this machine into where")
	expect_equal(SCGoToPreviousStateAction.new().shown_summary(), "Go back to the state it came from")
