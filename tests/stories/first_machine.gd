extends Story
## The page for somebody's first machine, done as it says: its tables make the template, which is the one beside the scene, and
## the door opens.

const PAGE := "res://docs/first-machine.md"
const SCENE := "res://demo/first_machine/first_machine.tscn"
const DOOR := "res://demo/first_machine/door.tres"

## The runner turns it off, and games have it on.
const CHECKING := "quillstead/debug/check_designs"

var page: String = FileAccess.get_file_as_string(PAGE)


func test_the_tables_of_the_page_make_the_template_of_the_demo() -> void:
	var made := _as_the_page_says()
	var saved: SCMachineTemplate = load(DOOR)
	expect_equal(_told(made), _told(saved))
	expect_equal(SCMachineTemplate.findings_in(made), [])
	expect_equal(SCMachineTemplate.findings_in(saved), [])


func test_the_door_opens_and_closes() -> void:
	for design: SCMachineTemplate in [load(DOOR), _as_the_page_says()]:
		var room := _room(design)
		var door: ColorRect = room.get_node("Door")
		var at: SCMachine = room.get_node("Door/Machine")
		var shut := door.position
		for round in 2:
			expect_state(at, "Closed")
			_click(door)
			expect_state(at, "Opening")
			await advance(0.55)
			expect_state(at, "Open")
			expect(door.position.is_equal_approx(shut + Vector2(0, -180)), "it stands at %s" % door.position)
			expect_printed("Opened %d times" % (round + 1))
			_click(door)
			expect_state(at, "Open")
			await advance(2.1)
			expect(door.position.is_equal_approx(shut), "it stands at %s" % door.position)
		room.queue_free()
		await frames(1)


func test_the_mistake_gets_the_sentence_that_the_page_shows() -> void:
	var made := _as_the_page_says()
	made.states[0].transitions[0].to_state = &"Opning"
	var before: Variant = ProjectSettings.get_setting(CHECKING)
	ProjectSettings.set_setting(CHECKING, true)
	var at: SCMachine = _room(made).get_node("Door/Machine")
	ProjectSettings.set_setting(CHECKING, before)
	var shown := " ".join(Array(page.split("\n")).filter(func(line: String) -> bool: return line.begins_with("> ")).map(
			func(line: String) -> String: return line.trim_prefix("> ")))
	var heading := "The design that Machine runs cannot work as it stands:"
	expect(shown.begins_with(heading), shown)
	# It has no file of its own here.
	expect_debug_warning(heading + "\n" + shown.trim_prefix(heading).strip_edges().replace("door > ", "Template > "))
	_click(at.target as Control)
	expect_state(at, "Closed")


func test_what_the_page_names_is_there() -> void:
	for picture: String in _all(r"\]\((pictures/[^)]+)\)"):
		expect(FileAccess.file_exists("res://docs/" + picture), picture)
	for kind: String in _all(r"\b(SC[A-Z]\w+)"):
		expect(ClassDB.can_instantiate(kind), kind)


func _as_the_page_says() -> SCMachineTemplate:
	var made := SCMachineTemplate.new()
	var last: Resource
	for line in page.split("\n"):
		var cells := line.split("|")
		if cells.size() != 5 or cells[1].strip_edges() in ["Add", "---"]:
			continue
		if not cells[1].strip_edges().is_empty():
			last = ClassDB.instantiate(cells[1].strip_edges())
			# The door is in 2D, and an action added there starts as it should be there.
			SCMachineAction.suit_settings_2d(last)
			_list_for(made, last).append(last)
		_set_as_typed(last, cells[2].strip_edges(), cells[3].strip_edges())
	made.initial_state = made.states[0]
	return made


func _list_for(made: SCMachineTemplate, added: Resource) -> Array:
	if added is SCMachineVariable:
		return made.variables
	if added is SCMachineState:
		return made.states
	return made.states.back().transitions if added is SCMachineTransition else made.states.back().actions


## As the inspector would, which shows a setting by its name and a choice by its label.
func _set_as_typed(on: Resource, label: String, typed: String) -> void:
	for shown: Dictionary in on.get_property_list():
		var name: String = shown["name"]
		if name.capitalize() != label or not shown["usage"] & PROPERTY_USAGE_EDITOR:
			continue
		var now: Variant = on.get(name)
		if shown["hint"] == PROPERTY_HINT_ENUM:
			var labels: Array = Array((shown["hint_string"] as String).split(",")).map(func(one: String) -> String: return one.get_slice(":", 0))
			expect(typed in labels, "%s has no %s" % [label, typed])
			on.set(name, labels.find(typed))
		elif now is String or now is StringName:
			on.set(name, typed)
		elif now is Vector2:
			on.set(name, str_to_var("Vector2" + typed))
		else:
			on.set(name, type_convert(str_to_var(typed), typeof(now)))
		return
	expect(false, "%s has no setting called %s in the inspector" % [on.get_class(), label])


func _click(on: Control) -> void:
	for is_down: bool in [true, false]:
		var click := InputEventMouseButton.new()
		click.button_index = MOUSE_BUTTON_LEFT
		click.pressed = is_down
		click.position = on.get_global_rect().get_center()
		tree.root.push_input(click)


func _room(design: SCMachineTemplate) -> Node:
	var room: Node = (load(SCENE) as PackedScene).instantiate()
	(room.get_node("Door/Machine") as SCMachine).template = design
	return add(room)


## Everything that a design holds, as text without what files call the pieces.
func _told(of: Variant) -> Variant:
	if of is Array:
		return (of as Array).map(_told)
	if not of is Resource:
		return of
	var told := {"class": of.get_class()}
	for property: Dictionary in of.get_property_list():
		var name: String = property["name"]
		if property["usage"] & PROPERTY_USAGE_STORAGE and not name.begins_with("resource_") and not name.begins_with("graph_") and name != "script":
			told[name] = _told(of.get(name))
	return told


func _all(pattern: String) -> Array:
	return RegEx.create_from_string(pattern).search_all(page).map(func(found: RegExMatch) -> String: return found.get_string(1))
