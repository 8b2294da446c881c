extends Story
## What machines ask of themselves and do to one another.

const SHOP := NodePath("../Shop")


## A machine on a node called Shop, to be acted on.
func shop(states: Array, options: Dictionary = {}) -> SCMachine:
	return start(machine(states, options.merged({"under": body("Shop")})))


func enable(turn: int, options: Dictionary = {}) -> Resource:
	return kind(SCEnableMachineAction, {"machine_path": SHOP, "turn": turn}.merged(options))


func test_delayed_events_are_called_off() -> void:
	# What is called off, how many that are, and what is sent all the same.
	for row: Array in [[&"explode", 1, ["cut", "ring"]], [&"", 2, ["cut"]], [&"other", 0, ["cut", "ring", "explode"]]]:
		var cancels := kind(SCCancelDelayedEventsAction, {"event": row[0], "store_count_in": &"cut off"})
		var owner := start(machine([
			state("Fuse", [send("explode", {"delay": 0.2}), send("ring", {"delay": 0.1})], {}, {"sub_states": [
				state("Burning", [], {"cut": "Safe"}),
				state("Safe", [cancels]),
			]}),
		], {"variables": {"cut off": -1}}))
		await advance(0.05)
		owner.send_event("cut")
		expect_equal(owner.get_value(&"cut off"), row[1])
		await advance(0.4)
		expect_events(owner, row[2])
	# An action with nothing left to send is done, and one that waits for something else is not.
	var cancel := kind(SCCancelDelayedEventsAction, {"wait_for_previous": true})
	var safe := play([send("explode", {"delay": 5.0}), wait(0.05), cancel], {"FINISHED": "Safe"})
	await expect_later(safe, 0.15, "Safe")
	var busy := play([send("explode", {"delay": 5.0}), wait(0.3), wait(0.05), cancel], {"FINISHED": "Safe"})
	await expect_later(busy, 0.15, "Work")


func test_a_machine_holds_still_and_goes_on() -> void:
	var guard := shop([state("Walk", [wait(0.2)], {"FINISHED": "Turn", "noise": "Look"}), state("Turn"), state("Look")])
	var owner := start(machine([
		state("Play", [], {"scene": "Scene"}),
		# Held twice it is let go at once.
		state("Scene", [enable(SCEnableMachineAction.TURN_OFF), enable(SCEnableMachineAction.TURN_OFF)], {"over": "Back"}),
		state("Back", [enable(SCEnableMachineAction.TURN_ON)]),
	]))
	await advance(0.1)
	owner.send_event("scene")
	guard.send_event("noise")
	await expect_later(guard, 0.5, "Walk")
	owner.send_event("over")
	await expect_later(guard, 0.05, "Walk")
	await expect_later(guard, 0.1, "Turn")
	expect_equal(guard.process_mode, Node.PROCESS_MODE_INHERIT)


func test_a_machine_switched_the_other_way_or_stopped() -> void:
	var guard := shop([state("Walk", [], {"noise": "Look"}), state("Look")])
	var toggle := enable(SCEnableMachineAction.TURN_OTHER_WAY)
	var stop := enable(SCEnableMachineAction.TURN_OFF, {"when_off": SCEnableMachineAction.STOPS, "machine_path": NodePath("../Shop/Machine")})
	var owner := start(machine([state("A", [toggle], {"next": "B"}), state("B", [toggle], {"next": "C"}), state("C", [stop], {"next": "B"})]))
	expect_after(guard, "noise", "Walk")
	owner.send_event("next")
	expect_after(guard, "noise", "Look")
	owner.send_event("next")
	expect(not guard.is_running())
	owner.send_event("next")
	expect_state(guard, "Walk")


func test_events_are_passed_on_while_the_state_runs() -> void:
	var radio := shop([state("On")])
	var owner := start(machine([
		state("Tell", [kind(SCForwardEventsAction, {"machine_path": SHOP})], {"quiet": "Few"}),
		state("Few", [kind(SCForwardEventsAction, {"machine_path": SHOP, "only_these": [&"more"] as Array[StringName]})], {"quiet": "Mute"}),
		state("Mute"),
	]))
	var data: Array = []
	radio.event_sent.connect(func(_event: StringName, carried: Variant) -> void: data.append(carried))
	owner.send_event("news", 7)
	expect_after(owner, "quiet", "Few")
	owner.send_event("news")
	owner.send_event("more")
	expect_after(owner, "quiet", "Mute")
	owner.send_event("more")
	expect_events(radio, ["news", "quiet", "more"])
	expect_equal(data, [7, null, null])


func test_two_machines_that_pass_on_to_each_other_stay_calm() -> void:
	var first := machine([state("Tell", [kind(SCForwardEventsAction, {"machine_path": NodePath("../../B")})])], {"under": body("A")})
	var second := machine([state("Tell", [kind(SCForwardEventsAction, {"machine_path": NodePath("../../A")})])], {"under": body("B"), "autostart": false})
	second.get_meta(&"under").add_child(second)
	start(first)
	second.start()
	first.send_event("ball")
	expect_events(first, ["ball"])
	expect_events(second, ["ball"])


func test_names_of_states_and_events() -> void:
	var names := [kind(SCGetPreviousStateAction, {"store_in": &"from"}), kind(SCGetLastEventAction, {"store_in": &"by"})]
	var owner := start(machine([state("Calm", names, {"noise": "Alert"}), state("Alert", names)], {"variables": {"from": "?", "by": "?"}}))
	expect_values(owner, {"from": "", "by": ""})
	owner.send_event("noise")
	expect_values(owner, {"from": "Calm", "by": "noise"})


func test_the_state_of_a_machine_by_its_depth() -> void:
	var guard := shop([state("Fight", [], {}, {"sub_states": [state("Attack", [], {"hit": "Block"}), state("Block")]})])
	var looks := [SCGetStateAction.INNERMOST, SCGetStateAction.OUTERMOST, SCGetStateAction.WHOLE_PATH].map(func(which: int) -> Resource:
		return kind(SCGetStateAction, {"machine_path": SHOP, "which": which, "store_in": StringName("seen %d" % which)}))
	var owner := start(machine([state("Look", looks, {"again": "Look"})], {"variables": {"seen 0": "", "seen 1": "", "seen 2": ""}}))
	expect_values(owner, {"seen 0": "Attack", "seen 1": "Fight", "seen 2": "Fight/Attack"})
	guard.send_event("hit")
	owner.send_event("again")
	expect_equal(owner.get_value(&"seen 2"), "Fight/Block")
	guard.stop()
	owner.send_event("again")
	expect_equal(owner.get_value(&"seen 0"), "")
	var own := kind(SCGetStateAction, {"store_in": &"now", "run_mode": SCMachineAction.EVERY_FRAME})
	owner = start(machine([state("Outer", [own], {}, {"sub_states": [state("One", [], {"go": "Two"}), state("Two")]})], {"variables": {"now": ""}}))
	expect_equal(owner.get_value(&"now"), "One")
	owner.send_event("go")
	await frames(1)
	expect_equal(owner.get_value(&"now"), "Two")


func test_going_back_to_where_it_came_from() -> void:
	var back := SCGoToPreviousStateAction.new()
	var owner := start(machine([state("Shop", [], {"leave": "Return"}), state("Menu", [], {"leave": "Return"}), state("Return", [back])], {"initial": "Menu"}))
	expect_after(owner, "leave", "Menu")
	owner.free()
	expect_warns(back, "Go To Previous State on Machine: the machine came from no other state, so it stays where it is.")


func test_variables_of_another_machine() -> void:
	var there := shop([state("Open")], {"variables": {"price": 12, "name": "Ann"}})
	var read := kind(SCMachineVariableAction, {"machine_path": SHOP, "variable_there": &"price", "store_in": &"cost"})
	var write := kind(SCMachineVariableAction, {"machine_path": SHOP, "operation": SCMachineVariableAction.WRITE, "variable_there": &"name", "from_variable": &"me"})
	var owner := play([read, write], {}, {"variables": {"cost": 0.0, "me": "Bob"}})
	expect_equal(owner.get_value(&"cost"), 12.0)
	expect_equal(there.get_value(&"name"), "Bob")
	expect_line(read, "Put price on the machine of Shop into cost")
	expect_line(write, "Put me in name on the machine of Shop")
	expect_equal(Array(write.variables_read()), ["me"])
	expect_equal(Array(write.variables_written()), [])


func test_what_is_not_there_is_told_of() -> void:
	var till := shop([state("Open")], {"name": "Till", "variables": {"price": 12}})
	# A machine beside them would stand above them too.
	var rock := NodePath("../../Rock")
	var shop_path := NodePath("../../Shop")
	var write := {"operation": SCMachineVariableAction.WRITE, "variable_there": &"price", "machine_path": shop_path}
	body("Rock")
	body("Wall")
	for row: Array in [
		[SCEnableMachineAction, {}, "Enable Machine on Buyer: no machine is picked, so nothing was switched. Pick the node that has it under Machine Path."],
		[SCEnableMachineAction, {"machine_path": rock}, "Enable Machine on Buyer: there is no Machine on Rock, nor on anything it sits under, so nothing was switched."],
		[SCForwardEventsAction, {"machine_path": rock}, "Forward Events on Buyer: there is no Machine on Rock, nor on anything it sits under, so no event is passed on."],
		[SCForwardEventsAction, {"machine_path": NodePath(".")}, "Forward Events on Buyer: it would pass its events on to itself, so it passes on none."],
		[SCGetStateAction, {"machine_path": rock, "store_in": &"who"}, "so it found no state."],
		[SCGetLastEventAction, {}, "there is nowhere to put what it found, so it was lost. Pick a variable under Store In."],
		[SCMachineVariableAction, {"machine_path": shop_path, "variable_there": &"cost", "store_in": &"cost"}, "Machine Variable on Buyer: Till has no variable called cost, so nothing was read."],
		[SCMachineVariableAction, write.merged({"variable_there": &"cost", "from_variable": &"cost"}, true), "Machine Variable on Buyer: Till has no variable called cost, so nothing was written."],
		[SCMachineVariableAction, write, "Machine Variable on Buyer: no variable is picked to take the value from, so nothing was written."],
		[SCMachineVariableAction, write.merged({"from_variable": &"me"}), "Machine Variable on Buyer: Buyer has no variable called me, so nothing was written."],
		[SCMachineVariableAction, write.merged({"from_variable": &"who"}), "Machine Variable on Buyer: price on Till holds an int and cannot take a String, so it was left as it is."],
	]:
		expect_warns(kind(row[0], row[1]), row[2], {"name": "Buyer", "under": stage.get_node(^"Wall"), "variables": {"cost": 0, "who": "Bob"}})
	expect_equal(till.values, {&"price": 12})


func test_summaries() -> void:
	expect_lines(SCCancelDelayedEventsAction, {
		"Call off every delayed event": {},
		"Call off delayed Boom, how many into count": {"event": &"Boom", "store_count_in": &"count"},
	})
	expect_lines(SCEnableMachineAction, {"Switch the machine of Trap on": {"machine_path": NodePath("../Trap")}, "Switch the machine of (pick one) on": {}})
	expect_line(kind(SCForwardEventsAction, {"machine_path": NodePath("../Radio")}), "Pass every event on to the machine of Radio")
	expect_line(SCGetLastEventAction.new(), "Put the event that led here into (pick one)")
	expect_line(kind(SCGetStateAction, {"store_in": &"where"}), "Put the state of this machine into where")
	expect_line(SCGoToPreviousStateAction.new(), "Go back to the state it came from")
	expect_line(SCMachineVariableAction.new(), "Put (pick one) on the machine of (pick one) into (pick one)")
