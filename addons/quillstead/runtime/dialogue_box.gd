class_name SCDialogueBox
extends PanelContainer
## Shows the lines of a dialogue a letter at a time, with a button for each answer, for keyboard, gamepad and mouse.
##
## Put one on the screen, under a CanvasLayer, and Start Dialogue finds it. Without anything in it, it makes what it needs and lies
## along the lower edge of the screen. Or lay it out yourself: it uses a RichTextLabel called [code]Words[/code], and if they are
## there a Label called [code]Speaker[/code], a TextureRect called [code]Portrait[/code] and a VBoxContainer called
## [code]Answers[/code], wherever they are below it.
## [br][br]
## It is hidden until something is said. While the words come, a press shows all of them; the next one moves on. A press that it
## takes reaches nothing else. Set its Process Mode to Always or When Paused for a game that pauses while people talk.

## The player moved on from a line with no answers.
signal moved_on
## The player chose the answer at this index.
signal answered(index: int)
## Another dialogue took the box.
signal taken_over
## The player pressed the input that leaves the whole conversation.
signal left_early
## All the words of the line can be seen now.
signal shown_whole
## The language of the game was changed while something is said. Whoever had it said answers with [method reword].
signal language_changed

const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const Inputs := preload("res://addons/quillstead/runtime/quillstead_input.gd")

const MARGIN: int = 16
const LEAST_HEIGHT: float = 96.0
const PORTRAIT_SIZE := Vector2(96, 96)
## A box that is smaller than this was not laid out by anybody.
const LEAST_WIDTH: float = 64.0

# What stands in the words and says how they are typed.
const _MARKS: String = r"\[(wait|speed=([^\]]*)|/speed|pause=([^\]]*))\]"
const _STOPS: String = ".?!…"
# They stand close to the next letter.
const _WIDE_STOPS: String = "。！？"
const _CLOSING: String = "\"'”’»)]"
enum _Mark { WAIT, SPEED, PAUSE }

@export_group("Typing")
## How many letters appear in a second. Zero shows all of them at once.
@export_range(0.0, 200.0, 0.1, "or_greater", "suffix:/s", "hide_slider") var letters_per_second: float = 40.0
## How long it holds on behind a full stop, a question mark or an exclamation mark, but not within a number.
@export_range(0.0, 2.0, 0.01, "or_greater", "suffix:s", "hide_slider") var pause_at_stops: float = 0.3
## How many letters there are to one sound of the actor who speaks.
@export_range(1, 10, 1, "or_greater", "hide_slider") var letters_per_sound: int = 2
## The mixer bus of that sound and of recorded voices.
@export var sound_bus: StringName = &"Master"

@export_group("Going On")
## What the player presses to see the whole line and to move on: a control of the input map, or any other word for an input. The
## answer that has the focus is picked by it too.
@export_custom(PROPERTY_HINT_INPUT_NAME, "show_builtin,loose_mode") var press_action: StringName = &"ui_accept"
## What presses as well: the engine's own accept is on no gamepad. Empty is nothing more.
@export_custom(PROPERTY_HINT_INPUT_NAME, "show_builtin,loose_mode") var press_with: StringName = &"Pad: Bottom Button (A / Cross)"
## Whether a click counts as a press, or a tap: on the box, or anywhere that nothing else takes it.
@export var clicks_count: bool = true
## What the player presses to leave the whole conversation, unless the line forbids that. Empty leaves no way but to hear it out.
@export_custom(PROPERTY_HINT_INPUT_NAME, "show_builtin,loose_mode") var leave_action: StringName = &""
## Moves on by itself when all the words have been there for so long and a recorded voice has ended. Zero waits for a press.
@export_range(0.0, 20.0, 0.1, "or_greater", "suffix:s", "hide_slider") var auto_advance: float = 0.0:
	set(value):
		auto_advance = value
		_stay_awake()

var _speaker: Label
var _words: RichTextLabel
var _portrait: TextureRect
var _answers: Container
var _typing_sound: AudioStreamPlayer
var _voice: AudioStreamPlayer

var _is_talking: bool = false
var _actor: Object
# Handed over ahead of the line it is about.
var _next_can_skip: bool = true
var _next_voice: AudioStream
var _next_refused: PackedInt32Array = []
var _can_skip: bool = true
var _refused: PackedInt32Array = []
var _answer_words: PackedStringArray = []
var _buttons: Array[Button] = []

var _is_typing: bool = false
var _is_waiting: bool = false
# How many letters can be seen, of how many, and the seconds until the next.
var _shown: int = 0
var _total: int = 0
var _left: float = 0.0
var _speed: float = 1.0
# The letters themselves; empty when they do not go by the count.
var _plain: String = ""
# Position, kind and value of each, in order.
var _marks: Array[Array] = []
var _next_mark: int = 0
var _been_there_for: float = 0.0

# What a press has brought about, kept until nobody can take that press for a new one.
var _queued: Callable
var _pressed_in := Vector2i(-1, -1)
# The frame in which the talk began: a press that began it is not one that goes on.
var _opened_in: int = -1


func _ready() -> void:
	_build()
	# The engine turns these on by itself.
	_stay_awake()
	_listen(_is_talking)
	if not _is_talking:
		hide()


func _notification(what: int) -> void:
	if what == NOTIFICATION_TRANSLATION_CHANGED and _is_talking:
		language_changed.emit()


func _process(delta: float) -> void:
	if not _is_talking:
		set_process(false)
		return
	_build()
	if _queued.is_valid():
		if not _is_this_press():
			_send_queued()
	elif _is_typing:
		_type(delta)
	elif auto_advance > 0.0 and not _is_waiting and not _has_a_choice():
		_been_there_for += delta
		if _been_there_for >= auto_advance and not (_voice != null and _voice.playing):
			_been_there_for = 0.0
			moved_on.emit()
	else:
		_stay_awake()


func _input(event: InputEvent) -> void:
	if not _is_talking or not is_visible_in_tree():
		return
	if event.is_pressed() and not event is InputEventMouseMotion:
		_pressed_in = _frames_now()
	if _is_in_a_text_box():
		return
	if _is(event, leave_action):
		_use_up()
		if _can_skip and event.is_pressed() and not event.is_echo() and not _queued.is_valid():
			_go_on(left_early.emit)
	elif _is(event, press_action) or _is(event, press_with):
		_take_press(event, false)
	elif clicks_count and _is_click(event):
		var place: Vector2 = (make_input_local(event) as InputEventMouseButton).position
		if Rect2(Vector2.ZERO, size).has_point(place):
			_take_press(event, true)
	elif _is_a_way(event) and _has_a_choice() and _focused_answer() < 0:
		_use_up()
		_focus_first()


func _unhandled_input(event: InputEvent) -> void:
	if _is_talking and is_visible_in_tree() and clicks_count and _is_click(event):
		_take_press(event, true)


## Shows a line, a letter at a time. [param answers] are the words of the buttons; without any, the player moves on. [param actor]
## is the [SCActor] who speaks, or null.
func show_line(words: String, speaker: String, portrait: Texture2D, answers: PackedStringArray, actor: Resource) -> void:
	_build()
	_forget_line()
	if not _is_talking:
		_opened_in = Engine.get_process_frames()
		_listen(true)
	_is_talking = true
	_actor = actor
	_can_skip = _next_can_skip
	_refused = _next_refused
	_answer_words = answers
	_play_voice(_next_voice)
	prepare(null, [])
	_put_speaker(speaker)
	if _portrait != null:
		_portrait.texture = portrait
		_portrait.visible = portrait != null
	show()
	_read(words)
	_is_typing = true
	_stay_awake()
	# So that what is shown at once is there at once.
	_type(0.0)


## Told ahead of [method show_line]: the [SCDialogueLine] it will be, and which of its answers are shown greyed, by index.
func prepare(line: Object, refused: PackedInt32Array) -> void:
	var can_skip: Variant = line.get(&"can_skip") if line != null else null
	_next_can_skip = can_skip if can_skip is bool else true
	_next_voice = line.get(&"voice_sound") as AudioStream if line != null else null
	_next_refused = refused


## Puts other words in the place of those that are shown, such as the same in another language, without saying the line again.
func reword(words: String, speaker: String, answers: PackedStringArray) -> void:
	if not _is_talking:
		return
	_build()
	var share := float(_shown) / maxi(_total, 1)
	var waits := _is_waiting
	_put_speaker(speaker)
	_read(words)
	if not _is_typing and not waits:
		_see_everything()
	else:
		_shown = roundi(share * _total)
		_words.visible_characters = _shown
		while _next_mark < _marks.size() and _marks[_next_mark][0] <= _shown:
			_next_mark += 1
		_is_waiting = waits
	_answer_words = answers
	for i in mini(_buttons.size(), answers.size()):
		if is_instance_valid(_buttons[i]):
			_buttons[i].text = answers[i]


## Whether something is being said now.
func is_talking() -> bool:
	return _is_talking


## Whether the words are still appearing.
func is_typing() -> bool:
	return _is_talking and (_is_typing or _is_waiting)


## Does what a press does: shows the whole line, or goes on where it waits, or moves on if there are no answers.
func press() -> void:
	if not _is_talking or _queued.is_valid():
		return
	if _is_typing:
		if _can_skip:
			_show_on()
	elif _is_waiting:
		_is_waiting = false
		_is_typing = true
		_left = 0.0
		_stay_awake()
	elif not _has_a_choice():
		_go_on(moved_on.emit)


## Picks the answer at [param index], as its button does.
func pick(index: int) -> void:
	if _is_talking and not _queued.is_valid() and index >= 0 and index < _answer_words.size() and not index in _refused:
		_go_on(answered.emit.bind(index))


## Closes the box.
func close() -> void:
	_is_talking = false
	_forget_line()
	_play_voice(null)
	if is_instance_valid(_typing_sound):
		_typing_sound.stop()
	_actor = null
	hide()
	set_process(false)
	_listen(false)


func _forget_line() -> void:
	_queued = Callable()
	_is_typing = false
	_is_waiting = false
	_been_there_for = 0.0
	for button in _buttons:
		if is_instance_valid(button):
			# A clicked one would keep the focus unseen.
			if button.has_focus():
				button.release_focus()
			button.hide()
			button.queue_free()
	_buttons.clear()
	_answer_words = []


func _put_speaker(speaker: String) -> void:
	if _speaker == null:
		return
	_speaker.text = speaker
	_speaker.visible = not speaker.is_empty()
	var color: Variant = _actor.get(&"color") if _actor != null else null
	_speaker.self_modulate = color if color is Color else Color.WHITE


# Takes the marks out of the words, and notes at which letter each stood.
func _read(words: String) -> void:
	_marks.clear()
	_next_mark = 0
	_speed = 1.0
	_left = 0.0
	_shown = 0
	var clean := ""
	var from := 0
	for found in RegEx.create_from_string(_MARKS).search_all(words):
		clean += words.substr(from, found.get_start() - from)
		from = found.get_end()
		_words.text = clean
		var at := _words.get_total_character_count()
		match found.get_string(1).get_slice("=", 0):
			"wait":
				_marks.append([at, _Mark.WAIT, 0.0])
			"pause":
				_marks.append([at, _Mark.PAUSE, clampf(found.get_string(3).to_float(), 0.0, 60.0)])
			_:
				var speed := found.get_string(2).to_float()
				_marks.append([at, _Mark.SPEED, speed if speed > 0.0 else 1.0])
	clean += words.substr(from)
	# Pictures stay away until their turn only then, but whole words jump to the next line as they grow.
	_words.visible_characters_behavior = TextServer.VC_CHARS_BEFORE_SHAPING if "[img" in clean else TextServer.VC_CHARS_AFTER_SHAPING
	_words.text = clean
	# A new text keeps the count of the one before.
	_words.visible_characters = 0
	_total = _words.get_total_character_count()
	_plain = _words.get_parsed_text()
	if _plain.length() != _total:
		_plain = ""


func _type(delta: float) -> void:
	_left -= delta
	while _is_typing and _left <= 0.0:
		if _take_mark():
			continue
		if _shown >= _total:
			_see_everything()
			return
		_shown += 1
		_words.visible_characters = _shown
		if letters_per_second > 0.0:
			_left += 1.0 / (letters_per_second * _speed) + _pause_behind(_shown - 1)
			_make_a_sound()


# True when there was one at this letter.
func _take_mark() -> bool:
	if _next_mark >= _marks.size() or _marks[_next_mark][0] > _shown:
		return false
	var mark := _marks[_next_mark]
	_next_mark += 1
	match mark[1]:
		_Mark.WAIT:
			_is_typing = false
			_is_waiting = true
		_Mark.SPEED:
			_speed = mark[2]
		_Mark.PAUSE:
			if letters_per_second > 0.0:
				_left += mark[2]
	return true


# As far as the next wait, or everything.
func _show_on() -> void:
	for i in range(_next_mark, _marks.size()):
		if _marks[i][1] == _Mark.WAIT:
			_next_mark = i + 1
			_shown = _marks[i][0]
			_words.visible_characters = _shown
			_is_typing = false
			_is_waiting = true
			return
	_see_everything()


func _see_everything() -> void:
	_is_typing = false
	_is_waiting = false
	_shown = _total
	_next_mark = _marks.size()
	_words.visible_characters = -1
	_been_there_for = 0.0
	if _buttons.is_empty():
		_make_buttons()
	_stay_awake()
	shown_whole.emit()


func _pause_behind(at: int) -> float:
	if pause_at_stops <= 0.0 or at + 1 >= _plain.length():
		return 0.0
	var letter := _plain[at]
	if letter in _WIDE_STOPS:
		return 0.0 if _plain[at + 1] in _WIDE_STOPS else pause_at_stops
	var next := _plain[at + 1]
	if letter in _STOPS and (next in _CLOSING or next.strip_edges().is_empty()):
		return pause_at_stops
	return 0.0


func _make_a_sound() -> void:
	var sound: AudioStream = _actor.get(&"typing_sound") as AudioStream if is_instance_valid(_actor) else null
	if sound == null or not is_inside_tree() or _shown % maxi(letters_per_sound, 1) != 0:
		return
	if _plain.length() >= _shown and _plain[_shown - 1].strip_edges().is_empty():
		return
	_typing_sound = _player(_typing_sound, "TypingSound")
	if _typing_sound.stream != sound:
		_typing_sound.stream = sound
	_typing_sound.play()


func _play_voice(voice: AudioStream) -> void:
	if voice == null:
		if is_instance_valid(_voice):
			_voice.stop()
			_voice.stream = null
	elif is_inside_tree():
		_voice = _player(_voice, "Voice")
		_voice.stream = voice
		_voice.play()


func _player(made: AudioStreamPlayer, called: String) -> AudioStreamPlayer:
	if not is_instance_valid(made):
		made = AudioStreamPlayer.new()
		made.name = called
		add_child(made, false, INTERNAL_MODE_BACK)
	made.bus = sound_bus
	return made


func _make_buttons() -> void:
	for i in _answer_words.size():
		var button := Button.new()
		button.text = _answer_words[i]
		button.auto_translate_mode = Node.AUTO_TRANSLATE_MODE_DISABLED
		button.autowrap_mode = TextServer.AUTOWRAP_WORD_SMART
		button.alignment = HORIZONTAL_ALIGNMENT_LEFT
		# Beside one another, wrapped ones shrink to a letter's width without it.
		button.size_flags_horizontal = Control.SIZE_EXPAND_FILL
		button.disabled = i in _refused
		button.focus_mode = Control.FOCUS_NONE if button.disabled else Control.FOCUS_ALL
		button.pressed.connect(pick.bind(i))
		_answers.add_child(button)
		_buttons.append(button)
	_lead_round()
	_focus_first()


# Up and down stay among the answers, and go round.
func _lead_round() -> void:
	var free_ones := _buttons.filter(func(button: Button) -> bool: return not button.disabled)
	for i in free_ones.size():
		var button: Button = free_ones[i]
		var above := button.get_path_to(free_ones[i - 1])
		var below := button.get_path_to(free_ones[(i + 1) % free_ones.size()])
		button.focus_neighbor_top = above
		button.focus_neighbor_left = above
		button.focus_previous = above
		button.focus_neighbor_bottom = below
		button.focus_neighbor_right = below
		button.focus_next = below


func _has_a_choice() -> bool:
	return _refused.size() < _answer_words.size()


func _focus_first() -> void:
	for button in _buttons:
		if is_instance_valid(button) and not button.disabled and button.is_visible_in_tree():
			button.grab_focus()
			return


func _focused_answer() -> int:
	for i in _buttons.size():
		if is_instance_valid(_buttons[i]) and _buttons[i].has_focus():
			return i
	return -1


func _take_press(event: InputEvent, is_click: bool) -> void:
	var goes_on := _is_typing or _is_waiting or _queued.is_valid() or not _has_a_choice()
	if not goes_on and is_click:
		return
	var focused := _focused_answer()
	# The engine presses the button that has the focus.
	if not goes_on and focused >= 0 and event.is_action(&"ui_accept"):
		return
	_use_up()
	if not event.is_pressed() or event.is_echo() or Engine.get_process_frames() == _opened_in:
		return
	if goes_on:
		press()
	elif focused >= 0:
		pick(focused)
	else:
		_focus_first()


# At once, but behind a press only when that is over: whoever is let go by this asks whether something was just pressed, too.
func _go_on(what: Callable) -> void:
	if _is_this_press():
		_queued = what
		_stay_awake()
	else:
		what.call()


func _send_queued() -> void:
	var what := _queued
	_queued = Callable()
	what.call()


func _stay_awake() -> void:
	set_process(_is_talking and (_is_typing or _queued.is_valid() or (auto_advance > 0.0 and not _is_waiting and not _has_a_choice())))


func _listen(on: bool) -> void:
	set_process_input(on)
	set_process_unhandled_input(on)


func _is_this_press() -> bool:
	var now := _frames_now()
	return now.x == _pressed_in.x or now.y == _pressed_in.y


func _frames_now() -> Vector2i:
	return Vector2i(Engine.get_process_frames(), Engine.get_physics_frames())


func _use_up() -> void:
	get_viewport().set_input_as_handled()


func _is(event: InputEvent, word: StringName) -> bool:
	if word.is_empty():
		return false
	var action := Inputs.action_for(word)
	if action == Inputs.ANY:
		return event is InputEventKey or event is InputEventJoypadButton
	if action.is_empty():
		MakerWarnings.once_for(self, "no input:%s" % word,
			"The Dialogue Box %s: nothing is called \"%s\", so no press of it counts. Pick another one for it, or add it to the Input Map." % [
				name, word])
		return false
	return event.is_action(action)


func _is_click(event: InputEvent) -> bool:
	var click := event as InputEventMouseButton
	return click != null and click.button_index == MOUSE_BUTTON_LEFT and click.pressed


func _is_a_way(event: InputEvent) -> bool:
	for action: StringName in [&"ui_up", &"ui_down", &"ui_left", &"ui_right", &"ui_focus_next", &"ui_focus_prev"]:
		if event.is_action_pressed(action, true):
			return true
	return false


# Somebody types, and means the letters.
func _is_in_a_text_box() -> bool:
	var focused := get_viewport().gui_get_focus_owner()
	return focused is LineEdit or focused is TextEdit


func _build() -> void:
	if is_instance_valid(_words) and is_instance_valid(_answers):
		return
	var words := find_child("Words", true, false)
	if words != null and not words is RichTextLabel:
		MakerWarnings.once_for(self, "words", "The Dialogue Box %s: %s is a %s, not a RichTextLabel, so it made one of its own. Change its type." % [
			name, words.name, words.get_class()])
	_words = words as RichTextLabel
	_speaker = find_child("Speaker", true, false) as Label
	_portrait = find_child("Portrait", true, false) as TextureRect
	_answers = find_child("Answers", true, false) as Container
	if _words == null:
		_lay_out()
	if _answers == null:
		_answers = VBoxContainer.new()
		_answers.name = "Answers"
		_words.get_parent().add_child(_answers)
	_words.bbcode_enabled = true
	for shown: Control in [_words, _speaker]:
		if shown != null:
			# What is put there has been translated.
			shown.auto_translate_mode = Node.AUTO_TRANSLATE_MODE_DISABLED


func _lay_out() -> void:
	var margin := MarginContainer.new()
	for side: String in ["left", "top", "right", "bottom"]:
		margin.add_theme_constant_override("margin_" + side, MARGIN)
	var row := HBoxContainer.new()
	row.add_theme_constant_override(&"separation", MARGIN)
	var column := VBoxContainer.new()
	column.size_flags_horizontal = Control.SIZE_EXPAND_FILL
	_words = RichTextLabel.new()
	_words.name = "Words"
	_words.fit_content = true
	_words.scroll_active = false
	_words.custom_minimum_size.y = LEAST_HEIGHT
	_words.mouse_filter = Control.MOUSE_FILTER_PASS
	if _portrait == null:
		_portrait = TextureRect.new()
		_portrait.name = "Portrait"
		_portrait.custom_minimum_size = PORTRAIT_SIZE
		_portrait.expand_mode = TextureRect.EXPAND_IGNORE_SIZE
		_portrait.stretch_mode = TextureRect.STRETCH_KEEP_ASPECT_CENTERED
		_portrait.size_flags_vertical = Control.SIZE_SHRINK_BEGIN
		row.add_child(_portrait)
	if _speaker == null:
		_speaker = Label.new()
		_speaker.name = "Speaker"
		column.add_child(_speaker)
	column.add_child(_words)
	row.add_child(column)
	margin.add_child(row)
	add_child(margin)
	if anchor_right == 0.0 and anchor_bottom == 0.0 and size.x < LEAST_WIDTH + get_combined_minimum_size().x and not get_parent() is Container:
		grow_vertical = Control.GROW_DIRECTION_BEGIN
		set_anchors_and_offsets_preset(Control.PRESET_BOTTOM_WIDE, Control.PRESET_MODE_MINSIZE, MARGIN)
