extends "res://tests/stories/files/page_story.gd"
## The page for somebody's first dialogue, done as it says: its tables make the scene, the templates and the dialogue, which are
## those of the demo, and the keeper is talked with.

const FOLDER := "res://demo/first_dialogue/"
const Conversation := preload("res://addons/quillstead/runtime/conversation.gd")

## Those of the page, compiled once.
static var scripts: Array[GDScript] = []

var road: Node2D
## What the page makes but templates, by the names of the files.
var files: Dictionary[String, Resource] = {}


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	page = FileAccess.get_file_as_string("res://docs/dialogue.md")


func close() -> void:
	Input.action_release(&"ui_right")
	await super()


func test_the_tables_of_the_page_make_what_the_demo_holds() -> void:
	_make_all()
	for file: String in made:
		expect_equal(told(made[file]), told(load(FOLDER + file)), file)
		# What is used hears of it, not the player's own machine.
		var findings := SCMachineTemplate.findings_in(made[file]).filter(func(found: Dictionary) -> bool: return found["rule"] != &"unheard_event")
		expect_equal(findings, [], file)
	for file: String in files:
		expect_equal(told(files[file]), told(load(FOLDER + file)), file)
	expect_equal((files["gate_talk.tres"] as SCDialogue).problems(), PackedStringArray())
	var saved: Node = (load(FOLDER + "first_dialogue.tscn") as PackedScene).instantiate()
	expect_equal(told(road), told(saved))
	saved.free()
	road.free()


func test_who_pays_is_let_through() -> void:
	await _walk_up()
	var box: SCDialogueBox = road.get_node("Screen/Box")
	await _tap(KEY_E)
	expect_state(_machine("Keeper"), "Talk")
	expect(road.get_node_or_null("Keeper/Prompt") == null, "the words to talk stay over who is talking")
	expect_equal(_speaker(box), "The keeper")
	await _tap(KEY_ENTER)
	expect_equal([_words(box), _answers(box)], ["Halt! This road costs 3 gold.", ["Why?", "Here you are.", "Another time."]])
	var at: Vector2 = (road.get_node("Player") as Node2D).position
	await _tap(KEY_ENTER)
	await _tap(KEY_ENTER)
	expect_equal(_words(box), "Somebody has to grease the hinges.")
	for times in 2:
		await _tap(KEY_ENTER)
	expect_equal(_answers(box), ["Here you are.", "Another time."])
	await _tap(KEY_ENTER)
	await _tap(KEY_ENTER)
	expect_equal(_words(box), "Thank you. The gate is open.")
	await _tap(KEY_ENTER)
	expect_state(_machine("Keeper"), "Open")
	expect_equal(_machine("Keeper").get_value(&"gold"), 2)
	expect(not (road.get_node("Gate") as CanvasItem).visible)
	expect_near((road.get_node("Player") as Node2D).position, at, 0.01)
	(road.get_node("Player") as Node2D).position = Vector2(640, 400)
	Input.action_press(&"ui_right")
	await advance(1.0)
	expect((road.get_node("Player") as Node2D).position.x > 750.0, "the gate is still shut")


func test_who_cannot_pay_is_not() -> void:
	await _walk_up(2)
	var box: SCDialogueBox = road.get_node("Screen/Box")
	await _tap(KEY_E)
	await _tap(KEY_ENTER)
	expect_equal(_answers(box), ["Why?", "Here you are. (You have 2.)", "Another time."])
	await _tap(KEY_DOWN)
	await _tap(KEY_ENTER)
	expect_state(_machine("Keeper"), "Idle")
	expect(not box.is_talking() and (road.get_node("Gate") as CanvasItem).visible)
	await _tap(KEY_E)
	expect_state(_machine("Keeper"), "Talk")


func test_what_the_scripts_of_the_page_do() -> void:
	if scripts.is_empty():
		for text: String in all_of(r"```gdscript\n([\s\S]+?)```"):
			scripts.append(GDScript.new())
			scripts.back().source_code = text
			expect_equal(scripts.back().reload(), OK)
	_make_all()
	road.free()
	var box: SCDialogueBox = add(SCDialogueBox.new(), "Box")
	var teller: Node = add(scripts[0].new(), "Teller", {"box": box})
	teller.call(&"tell", "To the sea")
	expect_equal([_words(box), _speaker(box)], ["To the sea", "A sign"])
	await _tap(KEY_ENTER)
	await _tap(KEY_ENTER)
	expect(not box.is_talking())
	var talk := files["gate_talk.tres"]
	Conversation.heard[Conversation.heard_key(talk, &"why")] = true
	var saved: Dictionary = scripts[1].call(&"to_save")
	scripts[1].call(&"new_game")
	expect(not scripts[1].call(&"knows_about_the_hinges", talk))
	scripts[1].call(&"from_save", saved)
	expect(scripts[1].call(&"knows_about_the_hinges", talk))


func _make_all() -> void:
	made.clear()
	files.clear()
	_make_talk()
	made["player.tres"] = _template(tables("3. Who talks")[0])
	made["keeper.tres"] = _template(tables("3. Who talks")[1])
	road = Node2D.new()
	road.name = "Road"
	build(road, tables("1. The gate")[0])
	(road.get_node("Player/Machine") as SCMachine).template = made["player.tres"]
	(road.get_node("Keeper/Machine") as SCMachine).template = made["keeper.tres"]


func _template(table: Array) -> SCMachineTemplate:
	var design := SCMachineTemplate.new()
	put_in(design, table)
	design.initial_state = design.states[0]
	return design


# Tables of actors, lines and answers: the first column is what each is called.
func _make_talk() -> void:
	var actor := SCActor.new()
	_fill(tables("2. What is said")[0], func(_name: String) -> Resource: return actor)
	files["gatekeeper.tres"] = actor
	var talk := SCDialogue.new()
	files["gate_talk.tres"] = talk
	_fill(tables("2. What is said")[1], func(name: String) -> Resource:
		var line := SCDialogueLine.new()
		line.id = name
		talk.lines.append(line)
		return line)
	_fill(tables("2. What is said")[2], func(name: String) -> Resource:
		var answer := SCDialogueAnswer.new()
		answer.words = name
		talk.lines[0].answers.append(answer)
		return answer)


func _fill(table: Array, make: Callable) -> void:
	var last: Resource
	for row: Array in table.slice(1):
		if not row[0].is_empty():
			last = make.call(row[0])
		if not row[1].is_empty():
			set_as_typed(last, row[1], row[2])


func _meant(on: Object, shown: Dictionary, typed: String) -> Variant:
	return files[typed] if files.has(typed) else super(on, shown, typed)


func _walk_up(gold: int = 5) -> void:
	_make_all()
	made["keeper.tres"].variables[0].default_value = gold
	add(road)
	Input.action_press(&"ui_right")
	await advance(2.0)
	Input.action_release(&"ui_right")
	await frames(2)
	expect_equal((road.get_node("Keeper/Prompt") as Label).text, "E to talk")


func _machine(of: String) -> SCMachine:
	return road.get_node(NodePath(of + "/Machine"))


func _words(box: SCDialogueBox) -> String:
	return (box.find_child("Words", true, false) as RichTextLabel).get_parsed_text()


func _speaker(box: SCDialogueBox) -> String:
	return (box.find_child("Speaker", true, false) as Label).text


func _answers(box: SCDialogueBox) -> Array:
	return box.find_child("Answers", true, false).get_children().map(func(button: Button) -> String: return button.text)


func _tap(key: Key) -> void:
	for down: bool in [true, false]:
		var event := InputEventKey.new()
		event.keycode = key
		event.physical_keycode = key
		event.pressed = down
		Input.parse_input_event(event)
		await frames(2)
	await frames(2)
