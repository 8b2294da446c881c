extends StoryWords
## The templates of a town, such as a game maker would build. Every ring of states has a Wait in it, which no edit takes
## away, so that no machine ever goes round in one frame.

const Chase := preload("res://tests/soak/soak_chase_action.gd")
const Sway := preload("res://tests/soak/soak_sway_action.gd")

## Every event that something in the town listens for.
const EVENTS: Array[StringName] = [
	&"knock", &"door opened", &"noise", &"blink", &"alarm", &"caught", &"called", &"stuck", &"recall", &"tired", &"dim", &"jump",
]
## Those that no template sends at once, so that a new transition for one of them makes no circle.
const UNSENT: Array[StringName] = [&"knock", &"noise", &"blink", &"caught", &"called", &"stuck", &"recall", &"tired", &"dim", &"jump"]
## Those that reach every machine that listens, wherever they are sent.
const GLOBAL_EVENTS: Array[StringName] = [&"door opened", &"alarm"]
const GLOBALS: Dictionary[StringName, Variant] = {&"gold": 10.0, &"passers by": 0.0}
const RUNNERS: StringName = &"soak_runners"
## Every template declares it, so that any action may use it.
const SPARE: StringName = &"spare"

const PART: NodePath = ^"../Part"
const MATE: NodePath = ^"../Mate"

const ADD: Dictionary = {"operation": SCSetVariableAction.ADD}


## Templates for a node with one machine, which may be swapped.
func for_one() -> Array[SCMachineTemplate]:
	return [_door(), _patrol(), _lift(), _member(), _worker(), _lamp(), traveller()]


## Takes its values along into the next scene.
func traveller() -> SCMachineTemplate:
	return _finished([
		state("Walk", [set_var("steps", 1.0, ADD.merged({"run_mode": SCMachineAction.EVERY_FRAME}))], {"tired": "Rest"}),
		state("Rest", [
			made(SCGetPreviousStateAction.new(), {"store_in": &"came from"}),
			made(SCGetLastEventAction.new(), {"store_in": &"because"}),
			made(SCGetEventDataAction.new(), {"event": &"tired", "store_in": &"by"}),
			made(SCGetStateAction.new(), {"store_in": &"here"}),
			set_var("gold", 1.0, ADD),
			wait(0.05),
			made(SCGoToStateAction.new(), {"state_name": &"Walk", "wait_for_previous": true}),
		]),
	], [
		variable("steps", 0.0), variable("came from", ""), variable("because", ""), variable("here", ""), variable("by", 0.0),
		variable("hp", 8.0, {"never_below": "0", "never_above": "12"}), variable("bag", ["map"]), global_variable("gold", GLOBALS[&"gold"]),
	], {"carries_over": true})


## Runs another template inside a state, and works on a second machine of its node.
func courier() -> SCMachineTemplate:
	var errand := _finished([
		state("Walk", [made(SCTranslateAction.new(), {"direction": Vector2(1, 0), "speed": 20.0}), wait(0.05)], {"FINISHED": "Drop"}),
		state("Drop", [set_var("parcels", 1.0, ADD)], {"FINISHED": "Home"}),
		state("Home", [], {}, {"end": true}),
	], [variable("parcels", 0.0)])
	return _finished([
		state("Sort", [wait(0.05, {"random_extra": 0.05})], {"FINISHED": "Run"}),
		state("Run", [made(SCRunTemplateAction.new(), {"template": errand, "shared_variables": [&"parcels"] as Array[StringName]})],
				{"FINISHED": "Report", "recall": "Sort"}),
		state("Report", [
			made(SCForwardEventsAction.new(), {"machine_path": MATE}),
			made(SCMachineVariableAction.new(), {"machine_path": MATE, "operation": SCMachineVariableAction.WRITE, "variable_there": &"heard", "from_variable": &"parcels"}),
			made(SCEnableMachineAction.new(), {"machine_path": MATE, "turn": SCEnableMachineAction.TURN_OTHER_WAY}),
			wait(0.05),
		], {"FINISHED": "Sort"}),
	], [variable("parcels", 0.0)])


## For the second machine of a courier's node.
func mate() -> SCMachineTemplate:
	return _finished([
		state("Listen", [], {"recall": "Nod", "noise": "Nod"}),
		state("Nod", [wait(0.05)], {"FINISHED": "Listen"}),
	], [variable("heard", 0.0)])


## An action or a question with these settings.
func made(what: Resource, settings: Dictionary) -> Resource:
	_put(what, settings)
	return what


func _door() -> SCMachineTemplate:
	return _finished([
		state("Closed", [], {"knock": "Opening"}),
		state("Opening", [set_var("times opened", 1.0, ADD), set_var("passers by", 1.0, ADD), send("door opened"), wait(0.1)], {"FINISHED": "Open"}),
		state("Open", [wait(0.1, {"random_extra": 0.1})], {"FINISHED": "Closing", "knock": "Open"}),
		state("Closing", [made(SCEaseVariableAction.new(), {"variable_name": &"gap", "to": 0.0, "duration": 0.1})], {"FINISHED": "Closed", "knock": "Opening"}),
	], [variable("times opened", 0.0, {"never_above": "9"}), variable("gap", 1.0), global_variable("passers by", GLOBALS[&"passers by"])])


func _patrol() -> SCMachineTemplate:
	var sees: Resource = made(SCVariableCondition.new(), {"variable_name": &"suspicion", "test": SCVariableCondition.GREATER, "value": 3.0})
	return _finished([
		state("Walk", [], {"seen": "Chase", "alarm": "Chase"}, {"parallel": {
			"Legs": [state("Left", [wait(0.1)], {"FINISHED": "Right"}), state("Right", [wait(0.1)], {"FINISHED": "Left"})],
			"Eyes": [
				state("Look", [_check(sees, {"true_event": &"seen"})], {"blink": "Shut"}),
				state("Shut", [wait(0.05)], {"FINISHED": "Look"}),
			],
			"Ears": [
				state("Listen", [], [transition("noise", "Turn", "suspicion")]),
				state("Turn", [set_var("suspicion", 1.0, ADD), wait(0.05)], {"FINISHED": "Listen"}),
			],
		}}),
		state("Chase", [set_var("suspicion", 0.0), Chase.new()], {"caught": "Catch", "blink": "Walk"}),
		state("Catch", [Sway.new(), wait(0.1)], {"FINISHED": "Walk"}),
	], [variable("suspicion", 0.0), variable("prey", null)])


func _lift() -> SCMachineTemplate:
	return _finished([
		state("Parked", [], {"called": "Ride"}),
		state("Ride", [set_var("rides", 1.0, ADD)], {"FINISHED": "Parked", "stuck": "Broken"}, {"sub_states": [
			state("Shut Doors", [wait(0.05)], {"FINISHED": "Move"}),
			state("Move", [], {"FINISHED": "Arrive"}, {"sub_states": [
				state("Speed Up", [send("hum", {"delay": 0.2}), wait(0.05)], {"FINISHED": "Glide"}),
				state("Glide", [made(SCMoveToAction.new(), {"node_path": PART, "to": Vector2(0, -40), "space": SCMoveToAction.LOCAL, "duration": 0.1})], {"hum": "Stop"}),
				state("Stop", [], {}, {"end": true}),
			]}),
			state("Arrive", [], {}, {"end": true}),
		], "start": "Shut Doors"}),
		state("Broken", [made(SCCancelDelayedEventsAction.new(), {"event": &"hum"}), wait(0.1)], {"FINISHED": "Parked"}),
	], [variable("rides", 0.0)])


## One of a crowd, most of the time in the fast lane alone.
func _member() -> SCMachineTemplate:
	var near: Resource = made(SCDistanceCondition.new(), {"group": RUNNERS, "distance": 100.0})
	return _finished([
		state("Idle", [_check(near, {"true_event": &"near", "false_event": &"far"})], {"near": "Cheer", "door opened": "Cheer"}),
		state("Cheer", [made(SCPunchAction.new(), {"what": SCPunchAction.POSITION, "amount": Vector2(0, -10), "duration": 0.1}), wait(0.05)], {"FINISHED": "Rest"}),
		state("Rest", [wait(0.1, {"random_extra": 0.1})], {"FINISHED": "Idle"}),
	], [])


## Lists, sums, texts and the loops.
func _worker() -> SCMachineTemplate:
	return _finished([
		state("Pick", [made(SCForEachAction.new(), {"list_variable": &"tools", "store_item_in": &"tool"})], {"Next": "Work", "Done": "Tally"}),
		state("Work", [
			made(SCMathAction.new(), {"first_variable": &"sum", "second": 2.0, "store_in": &"sum"}),
			wait(0.03, {"from_variables": {&"seconds": &"pace"} as Dictionary[StringName, StringName]}),
		], {"FINISHED": "Pick"}),
		state("Tally", [
			made(SCFormatStringAction.new(), {"text": "{tool}: {sum}", "store_in": &"line"}),
			made(SCRandomNumberAction.new(), {"lowest": 0.0, "highest": 5.0, "store_in": &"level"}),
			made(SCArrayAction.new(), {"list_variable": &"tools", "operation": SCArrayAction.SHUFFLE}),
			made(SCDictionaryAction.new(), {"table_variable": &"book", "operation": SCDictionaryAction.ADD_TO_ENTRY, "key": "visits", "value": 1.0}),
		], {"FINISHED": "Drink"}),
		state("Drink", [
			made(SCEaseVariableAction.new(), {"variable_name": &"level", "to": 0.0, "duration": 0.5}),
			made(SCClampAction.new(), {"variable_name": &"level", "lowest": 0.5, "highest": 4.0, "lowest_event": &"enough"}),
			made(SCTimerAction.new(), {"variable_name": &"clock", "seconds": 0.1}),
		], {"Time Up": "Choose", "enough": "Choose"}),
		state("Choose", [made(SCRandomEventAction.new(), {"events": [&"again", &"rest"] as Array[StringName]})], {"again": "Laps", "rest": "Sleep"}),
		state("Laps", [made(SCRepeatAction.new(), {"times": 3})], {"Again": "Lap", "Done": "Sleep"}),
		state("Lap", [SCNextFrameEventAction.new()], {"FINISHED": "Laps"}),
		state("Sleep", [wait(0.1)], {"FINISHED": "Pick"}),
	], [
		variable("tools", ["axe", "saw"]), variable("tool", ""), variable("book", {}), variable("line", ""), variable("sum", 0.0),
		variable("level", 0.0), variable("clock", 0.0), variable("pace", 0.02),
	])


## What is seen, what the node signals by itself, and the tweens that stay with the node.
func _lamp() -> SCMachineTemplate:
	return _finished([
		state("On", [
			made(SCRotateAction.new(), {"node_path": PART}),
			made(SCEventOnSignalAction.new(), {"node_path": PART, "signal_name": &"visibility_changed", "event_name": &"flick"}),
			made(SCGetPropertyAction.new(), {"node_path": PART, "property": "rotation", "store_in": &"angle"}),
		], {"hidden": "Off", "dim": "Dim", "flick": "Glow"}),
		state("Off", [], {"shown": "On"}),
		state("Dim", [
			made(SCSetVisibleAction.new(), {"node_path": PART, "what": SCSetVisibleAction.HIDE, "fade_seconds": 0.1}),
			made(SCSetPropertyAction.new(), {"node_path": PART, "property": "z_index", "value": 2}),
			wait(0.1),
		], {"FINISHED": "Glow"}),
		state("Glow", [
			made(SCSetVisibleAction.new(), {"node_path": PART, "what": SCSetVisibleAction.SHOW, "fade_seconds": 0.1}),
			made(SCScaleToAction.new(), {"node_path": PART, "to": Vector2(2, 2), "duration": 0.1}),
			made(SCLookAtAction.new(), {"node_path": PART, "face": SCLookAtAction.A_PLACE, "place": Vector2(50, 50), "duration": 0.05}),
			wait(0.05, {"real_time": true}),
			wait(0.05),
		], {"FINISHED": "On"}),
	], [variable("angle", 0.0)])


## Asks every frame, and sends the events of [param settings] when the answer changes.
func _check(condition: Resource, settings: Dictionary) -> SCCheckAction:
	return made(SCCheckAction.new(), settings.merged({"condition": condition, "run_mode": SCMachineAction.EVERY_FRAME, "only_when_it_changes": true}))


func _finished(states: Array, variables: Array, options: Dictionary = {}) -> SCMachineTemplate:
	var events := GLOBAL_EVENTS.map(func(name: StringName) -> SCMachineEvent: return declared_event(name, {"is_global": true}))
	return template(states, {"variables": variables + [variable(SPARE, 0.0)], "events": events}.merged(options))
