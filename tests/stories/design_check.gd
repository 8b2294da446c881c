extends Story
## What the check of a design finds: a row a mistake, with the sentence it gets, and designs in which nothing is wrong.

const SETTING: String = "quillstead/debug/check_designs"


func test_each_mistake_gets_its_sentence() -> void:
	var rows: Array[Array] = [
		["no_states", template([]), "Guard: it has no states, so it does nothing. Give it a template, or add states to it."],
		["no_start", _without_start(), "Guard: it has no state to start in, so it does not start. Pick one under Initial State, such as Rest."],
		["foreign_start", _foreign_start(), "Guard: it starts in Elsewhere, which is not one of its states. Pick one of its own under Initial State."],
		["foreign_start", template([state("Fight", [], {}, {"sub_states": [state("Aim", [], {"ready": "Fire"}), state("Fire")]})]),
			"Guard > Fight: it starts in Nap, which is not one of its sub-states, so the first of them is taken. Pick one of its own under Start Sub State."],
		["missing_state", _two({"seen": "Chse"}),
			"Guard > Rest: its transition on seen leads to Chse, and no state is called that. Did you mean Chase? Pick a state under To State."],
		["missing_state", _two({"seen": "Moon"}), "Guard > Rest: its transition on seen leads to Moon, and no state is called that. Pick a state under To State."],
		["no_destination", _two({"seen": ""}), "Guard > Rest: its transition on seen leads to no state. Pick one under To State."],
		["no_event", _two({"": "Chase"}),
			"Guard > Rest: its transition to Chase waits for no event, so it is never taken. Pick one under Event. FINISHED is sent when all of the state's actions are done."],
		["finished_spelled", _two({"Finished": "Chase"}),
			"Guard > Rest: its transition waits for Finished, and the event of a state that is done is called FINISHED, in capitals. Write FINISHED under Event."],
		["same_name", template([state("Rest", [], {"seen": "Chase"}), state("Chase", [], {}, {"sub_states": [state("Rest")]})]),
			"Guard > Chase > Rest: another state is called Rest as well (Guard > Rest), and a transition to that name always leads to the same one. Give each a name of its own."],
		["nameless_state", template([state("Rest"), state("")]), "Guard > a state without a name: it has no name, so no transition can lead to it. Type one under State Name."],
		["never_reached", template([state("Rest"), state("Attic")]),
			"Guard > Attic: no transition leads to it. Add one, or take the state away. A script or a Go To State may lead there, of course."],
		["empty_row", template([state("Rest"), null]), "Guard: row 2 of its states holds no state. Take the row away."],
		["empty_row", template([state("Rest", [null])]),
			"Guard > Rest: row 1 of its actions holds nothing, so nothing is done there. Pick an action for it, or take the row away."],
		["empty_row", template([state("Rest", [], [null])]), "Guard > Rest: row 1 of its transitions holds nothing. Take the row away."],
		["empty_row", template([state("Rest")], {"variables": [null]}), "Guard: row 1 of its variables holds nothing. Take the row away."],
		["undeclared_variable", template([state("Rest", [set_var(&"scroe", 1)])], {"variables": {"score": 0}}),
			"Guard > Rest > Set Variable: it writes the variable scroe, which is not declared. Did you mean score? Add scroe under Variables, or pick one that is there."],
		["undeclared_variable", template([state("Rest", [wait(1.0, {"seconds_variable": &"pace"})])]),
			"Guard > Rest > Wait: its Seconds is read from the variable pace, which is not declared. Add pace under Variables, or pick one that is there."],
		["missing_limit", template([state("Rest")], {"variables": [variable(&"health", 5.0, {"never_above": "most_helth"}), variable(&"most_health", 9.0)]}),
			"Guard > health: its Never Above is most_helth, which is neither a number nor a variable, so there is no limit. Did you mean most_health? Type a number, or the name of a number variable."],
		["same_variable", template([state("Rest")], {"variables": [variable(&"health", 5.0), variable(&"health", 9.0)]}),
			"Guard > health: another variable has the same name, and the later one wins. Give each a name of its own."],
		["nameless_variable", template([state("Rest")], {"variables": [variable(&"", 5.0)]}),
			"Guard: one of its variables has no name, so nothing can use it. Type one under Name."],
		["unheard_event", template([state("Rest", [send(&"opend")], {"opened": "Chase"}), state("Chase")]),
			"Guard > Rest > Send Event: it sends opend, and no transition here waits for that. Did you mean opened? Give both the same name."],
		["unheard_event", template([state("Rest", [send(&"rang")])]),
			"Guard > Rest > Send Event: it sends rang, and no transition here waits for that. Add a transition for it, unless a script or another machine waits for it."],
	]
	var stray := state("Nap")
	(rows[3][1] as SCMachineTemplate).states[0].start_sub_state = stray
	for row in rows:
		var design: SCMachineTemplate = row[1]
		design.display_name = "Guard"
		var found := SCMachineTemplate.findings_in(design)
		expect_equal(_sentences(found), [row[2]], row[0])
		expect_equal(found[0]["rule"] if not found.is_empty() else &"", StringName(row[0] as String))


func test_what_works_is_left_alone() -> void:
	var door := template([
		state("Closed", [], {"called": "Open"}, {"parallel": {"Lamp": [state("Lit", [], {"dim": "Dark"}), state("Dark")]}}),
		state("Open", [set_var(&"opened", 1, {"operation": SCSetVariableAction.ADD}), wait(0.5, {"seconds_variable": &"pause"})], {"FINISHED": "Closed"}, {
			"sub_states": [state("Opening", [], {"done": "Wide"}), state("Wide", [], {}, {"end": true})],
		}),
	], {"variables": [variable(&"opened", 0, {"never_above": "most"}), variable(&"most", 3), variable(&"pause", 0.5)]})
	expect_equal(SCMachineTemplate.findings_in(door), [])
	var off := wait(1.0, {"seconds_variable": &"nobody", "disabled": true})
	expect_equal(SCMachineTemplate.findings_in(template([state("Rest", [off])])), [])
	# What a write makes may be read.
	var counts := machine([state("Rest", [set_var(&"seen", 1), wait(1.0, {"seconds_variable": &"seen"})])], {"starting_values": {&"bonus": 2}})
	expect_equal(_severities(SCMachineTemplate.findings_in(counts)), [0])
	expect_equal(SCMachineTemplate.findings_in(machine([state("Rest", [set_var(&"bonus", 1)])], {"starting_values": {&"bonus": 2}})), [])


func test_a_global_has_one_default() -> void:
	var lamp := template([state("Rest")], {"display_name": "Lamp", "variables": [global_variable(&"gold_in_all", 5)]})
	var door := template([state("Rest")], {"display_name": "Door", "variables": [global_variable(&"gold_in_all", 7)]})
	expect_equal(SCMachineTemplate.findings_in(lamp), [])
	expect_equal(_sentences(SCMachineTemplate.findings_in(door)), [
		"Door > gold_in_all: this global starts as 7 here and as 5 in Lamp, and whichever machine comes first decides. Give it the same Default Value in both."])


func test_a_start_tells_once_for_a_design() -> void:
	var design := _two({"seen": "Chse"})
	var before: Variant = ProjectSettings.get_setting(SETTING)
	ProjectSettings.set_setting(SETTING, true)
	var first := start(running(design, {"name": "Guard"}))
	start(running(design, {"name": "Other"}))
	ProjectSettings.set_setting(SETTING, before)
	expect_debug_warning("The design that Guard runs cannot work as it stands:\nTemplate > Rest: its transition on seen leads to Chse, and no state is called that.")
	expect_equal(SCMachineTemplate.findings_in(first).size(), 1)


func test_the_demos_have_nothing_wrong() -> void:
	for path in _designs_in("res://demo"):
		var design: SCMachineTemplate = load(path)
		var wrong := SCMachineTemplate.findings_in(design).filter(func(found: Dictionary) -> bool: return found["severity"] == 1)
		expect_equal(_sentences(wrong), [], path)


func _two(ways: Dictionary) -> SCMachineTemplate:
	var resting := state("Rest", [], ways)
	resting.transitions.append(transition(&"heard", &"Chase"))
	return template([resting, state("Chase", [], {"lost": "Rest"})])


func _without_start() -> SCMachineTemplate:
	var made := template([state("Rest", [], {"seen": "Chase"}), state("Chase", [], {"lost": "Rest"})])
	made.initial_state = null
	return made


func _foreign_start() -> SCMachineTemplate:
	var made := template([state("Rest", [], {"seen": "Chase"}), state("Chase", [], {"lost": "Rest"})])
	made.initial_state = state("Elsewhere")
	return made


func _sentences(found: Array) -> Array:
	return found.map(func(one: Dictionary) -> String: return "%s: %s %s" % [one["place"], one["text"], one["remedy"]])


func _severities(found: Array) -> Array:
	return found.map(func(one: Dictionary) -> int: return one["severity"])


func _designs_in(folder: String) -> PackedStringArray:
	var found: PackedStringArray = []
	for name in DirAccess.get_files_at(folder):
		if name.get_extension() == "tres" and load(folder.path_join(name)) is SCMachineTemplate:
			found.append(folder.path_join(name))
	for name in DirAccess.get_directories_at(folder):
		found.append_array(_designs_in(folder.path_join(name)))
	return found
