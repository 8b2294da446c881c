extends PhysicsStory
## Words for stories in which people talk: dialogues as a game maker writes them, the box that shows them, and presses.

const Conversation := preload("res://addons/quillstead/runtime/conversation.gd")

var _size_before := Vector2i.ZERO


## On a screen of a usual size.
func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	_size_before = tree.root.size
	tree.root.size = Vector2i(1152, 648)


func close() -> void:
	tree.root.size = _size_before
	await super()


func line(id: StringName, words: String, settings: Dictionary = {}) -> SCDialogueLine:
	return kind(SCDialogueLine, {"id": id, "words": words}.merged(settings))


func answer(words: String, to_line: StringName = &"", settings: Dictionary = {}) -> SCDialogueAnswer:
	return kind(SCDialogueAnswer, {"words": words, "to_line": to_line}.merged(settings))


## A line with these answers.
func asked(id: StringName, words: String, answers: Array, settings: Dictionary = {}) -> SCDialogueLine:
	var made := line(id, words, settings)
	made.answers.assign(answers)
	return made


func dialogue(lines: Array, settings: Dictionary = {}) -> SCDialogue:
	var made: SCDialogue = kind(SCDialogue, settings)
	made.lines.assign(lines)
	return made


## Shows everything at once, but for what the settings say.
func dialogue_box(settings: Dictionary = {}, name: String = "Box") -> SCDialogueBox:
	return add(SCDialogueBox.new(), name, {"letters_per_second": 0.0}.merged(settings, true))


## A machine that has the dialogue in the state Talk, and then waits in Done.
func talk(of: SCDialogue, settings: Dictionary = {}, ways: Dictionary = {"FINISHED": "Done"}, options: Dictionary = {}) -> SCMachine:
	return play(kind(SCStartDialogueAction, {"conversation": of}.merged(settings)), ways, options)


func words_in(box: SCDialogueBox) -> String:
	return (box.find_child("Words", true, false) as RichTextLabel).get_parsed_text() if box.is_talking() else ""


func letters_in(box: SCDialogueBox) -> String:
	var shown: RichTextLabel = box.find_child("Words", true, false)
	return shown.get_parsed_text().left(shown.visible_characters) if shown.visible_characters >= 0 else shown.get_parsed_text()


func buttons_in(box: Node) -> Array[Button]:
	var found: Array[Button] = []
	for button: Button in box.find_children("*", "Button", true, false):
		if not button.is_queued_for_deletion() and not button.get_parent().is_queued_for_deletion():
			found.append(button)
	return found


func answers_in(box: Node) -> Array:
	return buttons_in(box).map(func(button: Button) -> String: return button.text)


## A key goes down and up again, a frame each.
func tap(key: Key) -> void:
	for down: bool in [true, false]:
		var event := InputEventKey.new()
		event.keycode = key
		event.physical_keycode = key
		event.pressed = down
		Input.parse_input_event(event)
		await frames(1)
	await frames(2)


func click(at: Vector2) -> void:
	for down: bool in [true, false]:
		var event := InputEventMouseButton.new()
		event.button_index = MOUSE_BUTTON_LEFT
		event.position = at
		event.global_position = at
		event.pressed = down
		Input.parse_input_event(event)
		await frames(1)
	await frames(2)
