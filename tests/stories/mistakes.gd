extends Story
## What goes wrong on somebody's first days, and the sentence that each mistake gets. What the check of designs finds in names
## that lead nowhere is told beside it, in [code]design_check.gd[/code].

const CHECKING := "quillstead/debug/check_designs"


func test_mistakes_in_a_design() -> void:
	var itself := state("Rest")
	itself.sub_states.append(itself)
	var elsewhere := state("Rest", [], {}, {"parallel": {"Lamp": [state("Dark", [], {"lit": "Bright"}), state("Bright")]}})
	elsewhere.parallel_states[0].start_state = state("Dim")
	var blinks := _kind("SCSetVisibleAction", {"blink_every": 0.5})
	var rounds := _kind("SCFollowPathAction", {"at_the_end": SCFollowPathAction.START_OVER})
	var rows: Array[Array] = [
		["a second transition on one event", [state("Rest", [], [transition("seen", "Chase"), transition("seen", "Flee")]), state("Chase"), state("Flee")],
			"Guard > Rest: it has two transitions on seen, and the one to Chase is always taken, never the one to Flee. Take one away, or give each an event of its own."],
		["an event of the engine's, misspelled", [state("Rest", [], {"body_enterd": "Chase"}), state("Chase")],
			"Guard > Rest: its transition waits for body_enterd, and the event that a node sends by itself is called body_entered. Write body_entered under Event, unless a script sends the other."],
		["or in capitals", [state("Rest", [], {"Pressed": "Chase"}), state("Chase")],
			"Guard > Rest: its transition waits for Pressed, and the event that a node sends by itself is called pressed."],
		["an event sent in other letters", [state("Rest", [send("Seen")], {"seen": "Chase"}), state("Chase")],
			"Guard > Rest > Send Event: it sends Seen, and no transition here waits for that. Did you mean seen?"],
		["an event with a blank behind it", [state("Rest", [send("alarm ")], {"alarm": "Chase"}), state("Chase")],
			"no transition here waits for that. Did you mean alarm?"],
		["FINISHED, and an action that never is", [state("Rest", [blinks], {"FINISHED": "Chase"}), state("Chase")],
			"Guard > Rest: its transition on FINISHED is never taken, as Set Visible never finishes."],
		["FINISHED, and a path without an end", [state("Rest", [rounds], {"FINISHED": "Chase"}), state("Chase")],
			"Guard > Rest: its transition on FINISHED is never taken, as Follow Path never finishes. It goes along the path for as long as the state runs. Set At The End to Stop"],
		["FINISHED, and sub-states that do not end", [state("Rest", [], {"FINISHED": "Chase"}, {"sub_states": [state("Nap")]}), state("Chase")],
			"Guard > Rest: its transition on FINISHED is never taken, as none of its sub-states is an end state. Tick Is End State on the last of them, or leave by another event."],
		["FINISHED, and a parallel state that does not end", [state("Rest", [], {"FINISHED": "Chase"}, {"parallel": {"Lamp": [state("Lit")]}}), state("Chase")],
			"Guard > Rest: its transition on FINISHED is never taken, as none of the states of Lamp is an end state."],
		["a parallel state with nothing in it", [state("Rest", [], {}, {"parallel": {"Lamp": []}})],
			"Guard > Rest: its parallel state Lamp has no states, so nothing runs there. Add states to it, or take it away."],
		["a parallel state that starts elsewhere", [elsewhere],
			"Guard > Rest: its parallel state Lamp starts in Dim, which is not one of its states, so the first of them is taken. Pick one of its own under Start State."],
		["sub-states beside parallel states", [state("Rest", [], {}, {"sub_states": [state("Nap")], "parallel": {"Lamp": [state("Lit")]}})],
			"Guard > Rest: it has parallel states, so its sub-states are not entered with it. Put them into a parallel state of their own."],
		["a state inside itself", [itself],
			"Guard > Rest: it is one of its own sub-states, or lies inside one of them. Take that row away, or make a new state in it."],
		["an action of no kind", [state("Rest", [wait(1.0), SCMachineAction.new()])],
			"Guard > Rest: row 2 of its actions is a plain SCMachineAction, which does nothing. Pick a kind of action in its place."],
		["waiting for what never ends", [state("Rest", [blinks, wait(1.0, {"wait_for_previous": true})])],
			"Guard > Rest > Wait: it waits for Set Visible before it, which never finishes. Untick Wait For Previous, or put it first."],
		["a misspelled name in a printed line", [state("Rest", [print_line("{scroe} points")])],
			"Guard > Rest > Print: it reads the variable scroe, which is not declared. Did you mean score?"],
		["limits the wrong way round", [variable("lives", 3, {"never_below": "9", "never_above": "0"})],
			"Guard > lives: its Never Below is 9, which is more than its Never Above, 0. Swap them."],
		["a start above the limit", [variable("lives", 12, {"never_above": "9"})],
			"Guard > lives: its Default Value is 12, and its Never Above is 9, so it starts as that. Change one of them."],
		["a start below the limit", [variable("lives", -1, {"never_below": "0"})],
			"Guard > lives: its Default Value is -1, and its Never Below is 0, so it starts as that."],
	]
	for row in rows:
		var parts: Array = row[1]
		var made: SCMachineTemplate
		if parts[0] is SCMachineVariable:
			made = template([state("Rest")], {"variables": parts})
		else:
			made = template(parts, {"variables": {"score": 0}})
		made.display_name = "Guard"
		_expect_finding(made, row[2], row[0])
	itself.sub_states.clear()


func test_mistakes_on_the_machine_itself() -> void:
	var score := template([state("Rest")], {"variables": {"score": 0}})
	var rows: Array[Array] = [
		["nothing to run", machine([]), "it has no states, so it does nothing. Give it a template, or add states to it."],
		["a typo among the starting values", running(score, {"starting_values": {&"scroe": 5}}),
			"its Starting Values name scroe, which is not declared. Did you mean score? Write the name of a variable that it has."],
		["a starting value of another kind", running(score, {"starting_values": {&"score": "five"}}),
			"its Starting Values give score a String, and that variable is an int. Give it the right kind of value there."],
		["states beside a template", _with_both(score), "it has a template and states of its own, and only the template is run. Empty its States, or clear its Template."],
		["a target that is not there", _aimed_at(^"../Gone"),
			"its Target Path leads to ../Gone, and there is no node, so it works on none. Pick a node under Target Path, or leave it empty for the node it is put under."],
	]
	for row in rows:
		var made: SCMachine = row[1]
		made.autostart = false
		add(made)
		_expect_finding(made, row[2], row[0])
	var before: Variant = ProjectSettings.get_setting(CHECKING)
	ProjectSettings.set_setting(CHECKING, true)
	start(_aimed_at(^"../Gone"))
	ProjectSettings.set_setting(CHECKING, before)
	expect_debug_warning("its Target Path leads to ../Gone")


func test_mistakes_that_show_while_it_runs() -> void:
	var door := body("Door")
	var rock: Node = add(_named_node(RigidBody2D.new(), "Rock"))
	add(_named_node(Node3D.new(), "Crate"))
	var own := template([state("Rest")])
	own.states[0].actions.append(_kind("SCRunTemplateAction", {"template": own}))
	var rows: Array[Array] = [
		["a check with nothing to do", _asking("SCChanceCondition", {}, false),
			"Check on Guard: nothing is done with the answer. Type an event under True Event or False Event, or pick a variable under Store In."],
		["a signal that sends nothing", _kind("SCEventOnSignalAction", {"signal_name": &"hidden"}),
			"Event On Signal on Guard: it hears hidden and has nothing to send. Type an event under Event Name, or pick a variable under Store Argument In."],
		["a misspelled signal", _kind("SCEventOnSignalAction", {"signal_name": &"hiden", "event_name": &"gone"}),
			"Event On Signal on Guard: Door is a Node2D, which has no signal called hiden, so nothing is heard. Type one that it has under Signal Name."],
		["an input that is not in the Input Map", _kind("SCEventOnInputAction", {"input_action": &"Jump", "event_name": &"up"}),
			"Event On Input on Guard: nothing is called \"Jump\", so it sends nothing. Pick an input under Input Action, or add it to the Input Map."],
		["a number compared with a word", _asking("SCVariableCondition", {"variable_name": &"score", "value": "many"}),
			"Variable on Guard: score holds an int and is compared with a String, which is never the same. Give Value the right kind of value, or pick another variable under Variable Name."],
		["a word where a number belongs", _asking("SCCompareCondition", {"first_variable": &"title"}),
			"Compare on Guard cannot use title for first, because title holds a String, and first needs a float. It used the value typed in instead."],
		["sums with a word", _kind("SCMathAction", {"first_variable": &"title", "store_in": &"sum"}),
			"Math on Guard: title holds a String, which is no number, so it was taken as 0. Pick a number variable in its place."],
		["text made larger by a number", set_var(&"title", 1, {"operation": SCSetVariableAction.ADD}),
			"Set Variable on Guard: an int cannot be added to title, which holds a String, so it changed nothing."],
		["a number made a word", set_var(&"score", "five"),
			"Set Variable on Guard: score holds an int and cannot be set to a String, so it changed nothing."],
		["no variable picked", set_var(&"", 1), "Set Variable on Guard has no variable picked, so it changed nothing. Pick one in its Variable Name."],
		["a loop that asks for nothing", _kind("SCRepeatAction", {"again_event": &""}),
			"Repeat on Guard: it has no event to send each time, so it stays at the first. Type one under Again Event."],
		["time that runs backward", wait(-1.0),
			"Wait on Guard: its Seconds is -1, so it does not wait. Type 0 or more under Seconds, or look at the variable that it reads."],
		["time divided by nothing", wait(NAN), "Wait on Guard: its Seconds is no number, as 0 divided by 0 is none, so it was taken as 0."],
		["seconds from a word", wait(1.0, {"seconds_variable": &"title"}),
			"Wait on Guard cannot use title for seconds, because title holds a String, and seconds needs a float. It used the value typed in instead."],
		["no event to send", send(&""), "Send Event on Guard: it has no event, so nothing was sent. Type one under Event Name."],
		["no group to send to", send(&"alarm", {"reach": SCSendEventAction.A_GROUP}),
			"Send Event on Guard: it has no group to send alarm to, so nothing was sent. Type one under To Group."],
		["no machine to send to", send(&"alarm", {"reach": SCSendEventAction.A_NODE, "to_node_path": ^"../../Rock"}), "Send Event on Guard: "],
		["a node that is not there", _kind("SCMoveToAction", {"node_path": ^"../Leaf"}),
			"there is no node at ../Leaf. Pick one under Node Path."],
		["a 2D thing sent to a 3D one", _kind("SCMoveToAction", {"to_path": ^"../../Crate", "duration": 0.0}),
			"Move To on Guard: Door is in 2D and Crate in 3D, where places mean something else, so its x and y were taken as they are. Pick a 2D node under To Path."],
		["a 2D thing facing a 3D one", _kind("SCLookAtAction", {"at_path": ^"../../Crate"}),
			"Look At on Guard: Door is in 2D and Crate in 3D, where places mean something else, so it was not turned. Pick a 2D node under At Path."],
		["how far from 2D to 3D", _asking("SCDistanceCondition", {"to_node_path": ^"../../Crate"}),
			"Distance on Guard: Door is in 2D and Crate in 3D, where places mean something else, so the answer is no. Pick a 2D node under To Node Path."],
		["no path to follow", _kind("SCFollowPathAction"),
			"Follow Path on Guard: Door lies in no path, so there is nothing to go along. Pick a Path2D or a Path3D under Along Path."],
		["a property as the inspector spells it", _kind("SCSetPropertyAction", {"property": "Visible", "value": false}),
			"Set Property on Guard: it could not set Visible of Door, because a Node2D has no such property, so nothing was set."],
		["a property of another kind", _kind("SCSetPropertyAction", {"property": "position", "value": "left"}),
			"Set Property on Guard: it could not set position of Door, because it takes a Vector2 and was given a String, so nothing was set."],
		["a state that is not there", _kind("SCGoToStateAction", {"state_name": &"Rset"}),
			"Go To State on Guard: this machine has no state called Rset, so it stays where it is. Pick one it has beside State Name."],
		["asking for a state that is not there", _asking("SCInStateCondition", {"state_name": &"Rset"}),
			"In State on Guard: Guard has no state called Rset, so the answer is no. Check the name under State Name."],
		["another machine's variable, misspelled", _kind("SCMachineVariableAction", {"machine_path": ^".", "variable_there": &"scroe", "store_in": &"score"}),
			"Machine Variable on Guard: Guard has no variable called scroe, so nothing was read."],
		["a template that runs itself", _kind("SCRunTemplateAction", {"template": own}), "which means that a template runs itself, so no further one was begun"],
		["a body that physics moves", _kind("SCMoveToAction", {"to": Vector2(9, 9)}),
			"Move To on Guard: Rock is a RigidBody2D, which the physics moves too, so the two fight over where it is. Tick Freeze on it", rock],
		["what has no place", _kind("SCMoveToAction"),
			"Move To on Guard: Stage is a Node, not a Node2D, a Node3D or a Control. Pick a Node2D, a Node3D or a Control under Node Path.", stage],
	]
	for row in rows:
		var at := start(machine([state("Rest", [row[1]])], {"name": "Guard", "under": row[3] if row.size() > 3 else door,
			"variables": {"score": 0, "title": "Captain", "sum": 0.0}}))
		await frames(2)
		expect_warning(row[2])
		at.queue_free()
		await frames(1)
		for line in output.unclaimed():
			expect(false, "%s: %s" % [row[0], line])
		output.forget()
	own.states[0].actions[0].set(&"template", null)


func test_a_node_that_goes_while_it_moves_holds_nothing_up() -> void:
	var leaf := body("Leaf")
	var at := start(machine([
		state("Opening", [_kind("SCMoveToAction", {"node_path": ^"../../Leaf", "to": Vector2(0, -90), "duration": 1.0})], {"FINISHED": "Open"}),
		state("Open"),
	], {"under": body("Door")}))
	await advance(0.3)
	leaf.queue_free()
	await advance(0.9)
	expect_state(at, "Open")


func test_states_that_lead_round_in_a_circle() -> void:
	start(machine([state("On", [], {"FINISHED": "Off"}), state("Off", [], {"FINISHED": "On"})], {"name": "Lamp"}))
	expect_error("Machine on Lamp entered 50 states in one frame, which means its states lead straight back to one another, so it has stopped.")


func _expect_finding(of: Object, sentence: String, mistake: String) -> void:
	var found := SCMachineTemplate.findings_in(of).map(func(one: Dictionary) -> String: return "%s: %s %s" % [one["place"], one["text"], one["remedy"]])
	expect(found.any(func(one: String) -> bool: return sentence in one), "%s: found %s" % [mistake, found])


func _kind(named: StringName, settings: Dictionary = {}) -> Resource:
	var made: Resource = ClassDB.instantiate(named)
	_put(made, settings)
	return made


func _asking(condition: StringName, settings: Dictionary = {}, tells: bool = true) -> Resource:
	return _kind("SCCheckAction", {"condition": _kind(condition, settings), "true_event": &"yes" if tells else &""})


func _named_node(node: Node, named: String) -> Node:
	node.name = named
	return node


func _with_both(design: SCMachineTemplate) -> SCMachine:
	var made := machine([state("Own")])
	made.template = design
	return made


func _aimed_at(path: NodePath) -> SCMachine:
	var made := machine([state("Rest")])
	made.target_path = path
	return made
