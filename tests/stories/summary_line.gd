extends Story
## The line the graph draws: names of variables in place of values, and gaps for what is not picked.


class Teller:
	extends SCMachineAction

	enum Pace { SLOW, QUICK, WILD }

	@export var seconds: float = 2.0
	@export var times: int = 3
	@export var loud: bool = false
	@export var words: String = "hey"
	@export var place: Vector3 = Vector3(0, 0, 0)
	@export var spot: Vector2 = Vector2(1, 2)
	@export var tint: Color = Color.RED
	@export var body_path: NodePath
	@export var pace: Pace = Pace.SLOW
	@export var event_name: StringName = &"go"
	@export_file var sound: String = "res://a.ogg"
	var line: Callable
	var may_be_empty: Array[StringName] = []

	func _summary() -> String:
		return line.call(self)

	func _optional_names() -> Array[StringName]:
		return may_be_empty


func test_names_stand_in_place_of_values() -> void:
	# Settings and the variables they are read from, how the action says it, and what is shown.
	for row: Array in [
		[{}, func(t: Teller) -> String: return "Wait %s s" % _n(t.seconds), "Wait 2 s"],
		[{"seconds": "pause"}, func(t: Teller) -> String: return "Wait %s s" % _n(t.seconds), "Wait [pause] s"],
		[{"seconds": "pause"}, func(t: Teller) -> String: return "Wait %.1f s" % t.seconds, "Wait [pause] s"],
		[{"seconds": "pause"}, func(t: Teller) -> String: return "Turn %s" % _n(-t.seconds), "Turn [pause]"],
		[{"seconds": "pause"}, func(t: Teller) -> String: return "Wait %s" % ("no time" if t.seconds > 0.0 else _n(t.seconds)), "Wait [pause]"],
		[{"seconds": "pause"}, func(t: Teller) -> String: return "Wait %s to %s s" % [_n(t.seconds), _n(t.seconds + 1.5)], "Wait [pause] to [pause] + 1.5 s"],
		[{"seconds": "pause"}, func(t: Teller) -> String: return "%s s, %s s" % [_n(t.seconds), _n(t.seconds)], "[pause] s, [pause] s"],
		[{"times": "count"}, func(t: Teller) -> String: return "%d times, %d left" % [t.times, t.times - 1], "[count] times, [count] - 1 left"],
		[{"seconds": "pause"}, func(t: Teller) -> String: return "%s or %s s" % [_n(t.seconds), _n(t.seconds * 2.0)], "2 or 4 s (seconds: [pause])"],
		[{"seconds": "pause"}, func(t: Teller) -> String: return "Wait %d ms" % roundi(t.seconds * 1000.0), "Wait [pause] ms"],
		[
			{"seconds": "pause"}, func(t: Teller) -> String: return "Walk round the whole yard, look behind each barrel, and then wait %s s" % _n(t.seconds),
			"Walk round the whole yard, look behind each barrel, and then wait [pause] s",
		],
		[{"times": "count"}, func(t: Teller) -> String: return "Knock %d times" % t.times, "Knock [count] times"],
		[{"times": "count"}, func(t: Teller) -> String: return "Knock %d time%s" % [t.times, "" if t.times == 3 else "s"], "Knock [count] times"],
		[{"loud": "shout"}, func(t: Teller) -> String: return "Sing, loud %s today" % ("yes" if t.loud else "no"), "Sing, loud [shout] today"],
		[{"loud": "shout"}, func(t: Teller) -> String: return "Sing%s" % (" out loud" if t.loud else ""), "Sing (loud: [shout])"],
		[{"words": "speech"}, func(t: Teller) -> String: return "Say \"%s\"" % t.words, "Say \"[speech]\""],
		[{"words": "speech"}, func(_t: Teller) -> String: return "Say something", "Say something (words: [speech])"],
		[{"place": "home"}, func(t: Teller) -> String: return "Go to %s" % SCMachineAction.text_of(t.place), "Go to [home]"],
		[{"place": "home"}, func(t: Teller) -> String: return "Go to %s now" % str(t.place), "Go to (0.0, 0.0, 0.0) now (place: [home])"],
		[{"spot": "home"}, func(t: Teller) -> String: return "Go to (%s, %s)" % [_n(t.spot.x), _n(t.spot.y)], "Go to [home]"],
		[{"tint": "hue"}, func(t: Teller) -> String: return "Paint it %s" % SCMachineAction.text_of(t.tint), "Paint it [hue]"],
		[{"body_path": "victim"}, func(t: Teller) -> String: return "Hit %s" % SCMachineAction.name_in_line(t.body_path), "Hit [victim]"],
		[{"body_path": "victim"}, func(_t: Teller) -> String: return "Hit", "Hit (body: [victim])"],
		[{"pace": "mood"}, func(t: Teller) -> String: return "Walk %s on" % ["slowly", "quickly", "wildly"][t.pace], "Walk [mood] on"],
		[{"seconds": "pause", "times": "count"}, func(t: Teller) -> String: return "Knock %d times in %s s" % [t.times, _n(t.seconds)], "Knock [count] times in [pause] s"],
		[{"seconds": "pause", "times": "count"}, func(t: Teller) -> String: return "Wait %s s" % _n(t.seconds * t.times), "Wait [pause] s (times: [count])"],
	]:
		var teller: Teller = kind(Teller, {"line": row[1]})
		for setting: String in row[0]:
			teller.set(setting + "_variable", row[0][setting])
		var before := _values_of(teller)
		expect_line(teller, row[2])
		expect_equal(_values_of(teller), before, "%s is left as it was" % row[2])


func test_what_is_missing_is_asked_for() -> void:
	var sends := func(t: Teller) -> String: return "Send %s to all" % t.event_name
	expect_lines(Teller, {
		"Send go to all": {"line": sends},
		"Send (pick one) to all": {"line": sends, "event_name": &""},
		"Send  to all": {"line": sends, "event_name": &"", "may_be_empty": [&"event_name"] as Array[StringName]},
	})
	var plays: Teller = kind(Teller, {"line": func(t: Teller) -> String: return "Play " + t.sound, "sound": ""})
	expect_line(plays, "Play (pick one)")
	expect_equal(plays.sound, "")
	expect_line(kind(Question, {"closer_than_variable": &"reach"}), "Nearer than [reach]")
	expect_line(kind(Question, {"closer_than_variable": &"reach", "invert": true}), "Not: Nearer than [reach]")
	expect_equal(SCMachineAction.shown_line(null), "")
	expect_equal(SCMachineAction.shown_line(Resource.new()), "")
	expect_equal(SCMachineAction.summary_with_variables(null, "Wait"), "Wait")


func test_what_a_hole_is() -> void:
	for line: String in ["Send  to all", "Wait ,then go", " Wait", "Wait ", "He sends", "Go to", "Look at", "All of", "Go by", "Put it in", "Put it on", "Break their", "Set x ="]:
		expect(SCMachineAction.has_a_hole(line), line)
	for line: String in ["", "Wait 2 s", "Goto", "Button", "Set x = 2"]:
		expect(not SCMachineAction.has_a_hole(line), line)


func test_drawing_a_line_is_not_heard() -> void:
	var gain := set_var(&"score", 5.0, {"value_variable": &"bonus", "per_second_variable": &"steadily"})
	var told := [0]
	for heard: Signal in [gain.property_list_changed, gain.changed]:
		heard.connect(func() -> void: told[0] += 1)
	expect_line(gain, "Set score to [bonus] (per_second: [steadily])")
	expect_equal(told[0], 0)
	expect(not gain.is_blocking_signals())


func test_markers() -> void:
	for row: Array in [[1.0, 3, 99031.0], [1, 103, 99031], [true, 1, false], [Vector2(), 1, Vector2(99011, 99012)], ["", 2, "¤marked2¤"], [[], 1, null]]:
		expect_equal(SCMachineAction._marker_for(row[0], row[1]), row[2])
	expect_equal(SCMachineAction._marker_named("Go to (99011, 99012.5, 7)", 1, "home"), "Go to [home]")
	expect_equal(SCMachineAction._marker_named("Wait 990110 s", 1, "pause"), "Wait 990110 s")
	expect_equal(SCMachineAction._yes_or_no_that_changed("Fade on now", "Fade off now", "soft"), "Fade [soft] now")
	expect_equal(SCMachineAction._yes_or_no_that_changed("Fade on now", "Fade off later", "soft"), "")
	expect_equal(SCMachineAction._part_that_changed("Walk slowly on", "Walk quickly on", "pace"), "Walk [pace] on")
	expect_equal(SCMachineAction._choices_of(SCSetVariableAction.new(), &"operation"), [1, 2, 3, 4])


class Question:
	extends SCMachineCondition

	@export var closer_than: float = 3.0

	func _summary() -> String:
		return "Nearer than %s" % SCMachineCondition.number(closer_than)


static func _n(value: float) -> String:
	return SCMachineAction.number(value)


func _values_of(teller: Teller) -> Array:
	return [teller.seconds, teller.times, teller.loud, teller.words, teller.place, teller.spot, teller.tint, teller.body_path, teller.pace]
