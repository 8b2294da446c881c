extends Story
## A game under a real debugger: the engine is started once more with [code]tests/debugger/session.tscn[/code], reports to a
## listener on loopback, and takes the orders that the editor's panel would give. The names of messages and the order of
## their fields are those that the panel reads.

const Listener := preload("res://tests/debugger/listener.gd")
const Messages := preload("res://addons/quillstead/runtime/debugger_messages.gd")
const Session := preload("res://tests/debugger/session.gd")

const DOOR: String = "/root/Session/Door/Machine"
const LAMP: String = "/root/Session/Lamp/Machine"
## All that ticks in it does so in the physics frame.
const MAT: String = "/root/Session/Mat/Machine"
## The game runs in real time, and under the sanitizers slowly.
const MOST_SECONDS: float = 60.0

var _listener: Listener
var _game: int = -1


## Frames here are not held to any length while the game next door takes its time.
func most_frames() -> int:
	return 1_000_000_000


func test_what_a_game_reports_and_how_it_is_watched() -> void:
	if not await _begin():
		return
	# Nobody has been picked yet: every machine tells where it is and what its values are.
	var entered := await _hear(Messages.STATE, [DOOR])
	expect_equal(_field(entered, Messages.StateField.STATE), "Shut")
	expect_equal(_field(entered, Messages.StateField.PREVIOUS), "")
	entered = await _hear(Messages.STATE, [LAMP, "On"])
	expect_equal(_field(entered, Messages.StateField.PREVIOUS), "Off")
	for path: String in [DOOR, LAMP]:
		var reported := await _hear(Messages.VALUES, [path])
		expect(not reported.is_empty(), "%s tells no values" % path)
	expect_equal(_listener.count(Messages.ACTIONS), 0, "actions told before anybody asks")

	# A part of the path is enough. From here on only the door tells values and actions.
	await _send(Messages.WATCH, ["Door"])
	var rows := _rows_of(await _hear(Messages.ACTIONS, [DOOR]))
	var statuses: Array = rows.map(func(row: Array) -> String: return row[Messages.ActionField.STATUS])
	expect_equal(statuses, [Messages.STATUS_RUNNING, Messages.STATUS_OFF, Messages.STATUS_DONE, Messages.STATUS_RUNNING, Messages.STATUS_WAITING])
	for i in rows.size():
		expect_equal(rows[i][Messages.ActionField.STATE], "Shut")
		expect_equal(rows[i][Messages.ActionField.INDEX], i)
		expect(rows[i][Messages.ActionField.WORDS] is String, "an action's words are no text")
	_listener.forget()
	await _hear(Messages.ACTIONS, [DOOR])
	await _hear(Messages.ACTIONS, [DOOR])
	var counted := await _hear(Messages.VALUES, [DOOR])
	var values: Dictionary = _field(counted, Messages.ValuesField.VALUES)
	expect_equal(values.get("word"), "shut")
	expect(int(values.get("count", "0") as String) > 0, "the count has not reached the report: %s" % values)
	expect_equal(_listener.count(Messages.VALUES, [LAMP]), 0, "values of a machine that is not watched")
	expect_equal(_listener.count(Messages.ACTIONS, [LAMP]), 0, "actions of a machine that is not watched")
	expect(_listener.count(Messages.STATE, [LAMP]) > 0, "the other machine's states are told all the same")

	# Events, with their data as text.
	await _send(Session.EVENT, [DOOR, &"knock", 3])
	var told := await _hear(Messages.EVENTS, [DOOR, "knock"])
	expect_equal(_field(told, Messages.EventField.DATA), "3")
	expect_equal(_field(told, Messages.EventField.IS_GLOBAL), false)
	await _send(Session.EVENT, [DOOR, &"alarm", null])
	told = await _hear(Messages.EVENTS, [LAMP, "alarm"])
	expect_equal(_field(told, Messages.EventField.DATA), "")
	expect_equal(_field(told, Messages.EventField.IS_GLOBAL), true)

	# With the watch at an end all tell their values again, and nobody what the actions do.
	await _send(Messages.WATCH, [""])
	await _ask(DOOR)
	_listener.forget()
	await _hear(Messages.VALUES, [LAMP])
	await _hear(Messages.VALUES, [LAMP])
	expect_equal(_listener.count(Messages.ACTIONS), 0, "actions told after the watch")
	await _end()


func test_pausing_and_stepping_from_the_editor() -> void:
	if not await _begin():
		return
	await _send(Messages.WATCH, [DOOR])
	await _hear(Messages.ACTIONS, [DOOR])
	# Without a second field it pauses.
	await _send(Messages.PAUSE, [DOOR])
	var held := await _ask(DOOR)
	expect(held["paused"], "the order to pause did nothing")
	expect(not held["ticks"], "a paused machine has its callbacks on")
	await _hear(Messages.STATE, [LAMP, "On"])
	await _hear(Messages.STATE, [LAMP, "On"])
	expect_equal((await _ask(DOOR))["count"], held["count"], "a paused machine goes on")

	# Each step is one tick, and it stays paused.
	for step in 3:
		await _send(Messages.STEP, [DOOR])
	var stepped := await _ask(DOOR)
	expect_equal(stepped["count"], held["count"] + 3)
	expect(stepped["paused"], "a step ended the pause")

	# An event is heard of at once and taken with the next step. Open pauses, but it is paused already.
	await _send(Session.EVENT, [DOOR, &"open", null])
	await _hear(Messages.EVENTS, [DOOR, "open"])
	expect_equal((await _ask(DOOR))["state"], "Shut")
	_listener.forget()
	await _send(Messages.STEP, [DOOR])
	await _hear(Messages.STATE, [DOOR, "Open", "Shut"])
	expect_equal((await _ask(DOOR))["state"], "Open")
	expect_equal(_listener.count(Messages.PAUSED), 0, "paused what was paused")

	# Off it goes, and stops by itself where the design says so.
	await _send(Session.EVENT, [DOOR, &"close", null])
	await _send(Messages.PAUSE, [DOOR, false])
	await _hear(Messages.STATE, [DOOR, "Shut", "Open"])
	expect(not (await _ask(DOOR))["paused"], "it was not let go")
	await _send(Session.EVENT, [DOOR, &"open", null])
	var paused := await _hear(Messages.PAUSED, [DOOR])
	expect_equal(_field(paused, Messages.PausedField.STATE), "Open")
	expect((await _ask(DOOR))["paused"], "a state that pauses did not")
	await _end()


func test_orders_that_mean_nothing_are_passed_over() -> void:
	if not await _begin():
		return
	for order: Array in [
		[Messages.WATCH, []], [Messages.PAUSE, []], [Messages.STEP, []], [Messages.PAUSE, ["/root/Nobody", true]], [Messages.STEP, ["/root/Nobody"]],
		# A part of a path watches; it does not pause.
		[Messages.PAUSE, ["Door", true]], [Messages.WATCH, [17]], [Messages.STEP, [DOOR]], ["quillstead_control:dance", [DOOR]],
	]:
		await _send(order[0], order[1])
	expect(not (await _ask(DOOR))["paused"], "the wrong machine was paused")
	await _end()


func _begin() -> bool:
	_listener = Listener.new()
	expect_equal(_listener.listen(), OK, "listening on loopback")
	_game = OS.create_process(OS.get_executable_path(), [
		"--headless", "--no-header", "--path", ProjectSettings.globalize_path("res://"),
		"--remote-debug", _listener.address(), "res://tests/debugger/session.tscn",
	])
	expect(_game > 0, "the engine does not start a second time")
	if _game > 0 and not (await _hear(Session.READY)).is_empty():
		return true
	_give_up()
	return false


func _end() -> void:
	if not _listener.is_connected_to_game():
		_give_up()
		return
	_listener.send(Session.QUIT, [])
	var ended := await _until(func() -> bool: return not OS.is_process_running(_game))
	if ended:
		expect_equal(OS.get_process_exit_code(_game), 0, "the game's exit status")
	else:
		_fail("the game does not end")
	for error in _listener.errors:
		_fail("the game says %s" % [error])
	_give_up()


func _give_up() -> void:
	if _game > 0 and OS.is_process_running(_game):
		OS.kill(_game)
	_game = -1
	_listener.stop()


func _send(message: String, fields: Array) -> void:
	# Between two orders the game has a frame.
	_listener.poll()
	_listener.send(message, fields)
	await frames(1)


## Waits for that message and returns its fields; a failure, and no fields, when it does not come.
func _hear(message: String, first_fields: Array = []) -> Array:
	var found: Array[Array] = [[]]
	await _until(func() -> bool:
		found[0] = _listener.take(message, first_fields)
		return not found[0].is_empty())
	if found[0].is_empty():
		_fail("did not hear %s %s" % [message, first_fields])
		return []
	return found[0]


func _field(heard: Array, field: int) -> Variant:
	if heard.is_empty():
		return null
	var fields: Array = heard[1]
	return fields[field] if field < fields.size() else null


func _rows_of(heard: Array) -> Array:
	var rows: Variant = _field(heard, Messages.ActionsField.ROWS)
	return rows if rows is Array else []


## What the game itself says of a machine.
func _ask(path: String) -> Dictionary:
	while not _listener.take(Session.TOLD).is_empty():
		pass
	_listener.send(Session.ASK, [path])
	var told := await _hear(Session.TOLD, [path])
	if told.is_empty():
		return {"paused": false, "state": "", "count": -1, "ticks": false}
	var fields: Array = told[1]
	return {"paused": fields[1], "state": fields[2], "count": (fields[3] as Dictionary).get(&"count", -1), "ticks": fields[4]}


## Waits in real time until it holds, for as long as the game lives.
func _until(holds: Callable) -> bool:
	var began := Time.get_ticks_msec()
	while Time.get_ticks_msec() - began < MOST_SECONDS * 1000.0:
		_listener.poll()
		for said in _listener.heard:
			if said[0] == Listener.BROKE:
				_fail("the game has run into a script error: %s" % [said[1]])
				return false
		if holds.call():
			return true
		if not OS.is_process_running(_game):
			_listener.poll()
			return holds.call()
		OS.delay_usec(500)
		await frames(1)
	return false


func test_a_write_is_told_though_no_frame_of_the_machine_follows_it() -> void:
	if not await _begin():
		return
	for word: String in ["one", "two"]:
		await _send(Session.SET, [DOOR, &"word", word, true])
		var told := await _until(func() -> bool:
			var values: Variant = _field(_listener.take(Messages.VALUES, [DOOR]), Messages.ValuesField.VALUES)
			return values is Dictionary and (values as Dictionary).get("word") == word)
		expect(told, "nobody was told of %s" % word)
	for weight: int in [3, 4]:
		await _send(Session.SET, [MAT, &"weight", weight, false])
		var told := await _until(func() -> bool:
			var values: Variant = _field(_listener.take(Messages.VALUES, [MAT]), Messages.ValuesField.VALUES)
			return values is Dictionary and (values as Dictionary).get("weight") == str(weight))
		expect(told, "nobody was told of the weight %d" % weight)
	await _end()


func test_a_state_with_others_inside_pauses_and_says_so() -> void:
	if not await _begin():
		return
	await _send(Session.EVENT, [DOOR, &"hall", null])
	expect_equal(_field(await _hear(Messages.PAUSED, [DOOR]), Messages.PausedField.STATE), "Hall")
	expect((await _ask(DOOR))["paused"], "a state with others inside did not pause")
	expect(await _until(func() -> bool: return "paused in Hall" in str(_listener.heard)), "the game says nothing of its pause")
	await _end()
