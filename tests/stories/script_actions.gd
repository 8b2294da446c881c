extends Story
## Actions and questions that a game maker writes, and scripts that extend a kind.

const FOLDER: String = "res://tests/stories/files/script_actions/"
const CountUp := preload("res://tests/stories/files/script_actions/count_up.gd")
const LongWait := preload("res://tests/stories/files/script_actions/long_wait.gd")
const PlainWait := preload("res://tests/stories/files/script_actions/plain_wait.gd")
const IsEnough := preload("res://tests/stories/files/script_actions/is_enough.gd")


class Outer:
	extends SCMachineCondition

	var inner: SCMachineCondition
	var lent: Dictionary

	func _check(m: SCMachine, slot: Dictionary) -> bool:
		slot["before"] = true
		lent = {}
		var answer := m.ask(inner, 0, lent)
		m.condition_slot()["after"] = true
		return answer


func test_an_action_of_a_script_works_once_and_every_frame() -> void:
	expect_equal(results_of(kind(CountUp, {"by": 4}), {"count": 1})[&"count"], 5)
	var guard := play(kind(CountUp, {"run_mode": SCMachineAction.EVERY_FRAME}), {"FINISHED": "Done"}, {"variables": {"count": 0}})
	await frames(3)
	expect_state(guard, "Work")
	expect_equal(guard.get_value("count"), 4)


func test_what_a_script_does_is_known() -> void:
	# What it has of an enter, an update and an exit, its kind and the name of that.
	for row: Array in [
		[CountUp.new(), [true, true, false], CountUp, &"SCMachineAction"],
		[SCMachineAction.new(), [false, false, false], &"SCMachineAction", &"SCMachineAction"],
		[wait(1.0), [true, false, false], &"SCWaitAction", &"SCWaitAction"],
	]:
		var action: SCMachineAction = row[0]
		expect_equal([action.has_enter(), action.has_update(), action.has_exit()], row[1], row[3])
		expect_equal(SCMachineAction.kind_of(action), row[2])
		expect_equal(SCMachineAction.kind_name(action), row[3])
	var count: SCMachineAction = kind(CountUp, {"by_variable": &"step"})
	expect_line(CountUp.new(), "Count count up by 1")
	expect_line(count, "Count count up by [step]")
	expect_equal(Array(count.variables_written()), ["count"])
	expect_equal(Array(count.variables_read()), ["step"])


func test_a_script_that_extends_a_kind_adds_to_it() -> void:
	expect_line(kind(LongWait, {"seconds": 0.2}), "Wait 0.2 s, twice")
	expect_line(PlainWait.new(), "Rest a while")
	# One that changes nothing but its line still works.
	for row: Array in [[kind(LongWait, {"seconds_variable": &"pause"}), 0.5], [kind(PlainWait, {"seconds": 0.3}), 0.2]]:
		var guard := play(row[0], {"FINISHED": "Up"}, {"variables": {"pause": 0.3}})
		await expect_later(guard, row[1], "Work")
		await expect_later(guard, 0.2, "Up")


func test_whoever_runs_another_action_has_its_variables_read() -> void:
	for run: Callable in [
		func(m: SCMachine, inner: SCMachineAction) -> void: inner.enter(m, 0),
		func(m: SCMachine, inner: SCMachineAction) -> void: SCMachineBase.native_action(0, inner, m, 0, 0.0),
	]:
		var inner := set_var(&"score", 1, {"value_variable": &"bonus"})
		var guard := play(act("a"), {}, {"variables": {"score": 0, "bonus": 7}})
		run.call(guard, inner)
		expect_equal(guard.get_value("score"), 7)
		guard.free()


func test_a_script_of_its_own_has_no_compiled_runtime() -> void:
	var guard := play(act("a"), {"FINISHED": "Wrong"})
	SCMachineBase.native_action(0, PlainWait.new(), guard, 0, 0.0)
	SCMachineBase.native_action(0, wait(1.0), null, 0, 0.0)
	SCMachineBase.native_action(0, null, guard, 0, 0.0)
	SCMachineBase.native_action(1, wait(1.0), guard, 0, 0.1)
	expect_state(guard, "Work")
	expect_log(["a enter"])


func test_a_design_of_a_file_with_a_script_and_one_whose_script_is_gone() -> void:
	# As the editor does it; a game refuses the whole file.
	ResourceLoader.set_abort_on_missing_resources(false)
	var design: SCMachineTemplate = load(FOLDER + "counter.tres")
	ResourceLoader.set_abort_on_missing_resources(true)
	for part: String in ["Attempt to open script", "Failed loading resource", "Cannot set object script"]:
		expect_error(part)
	var guard := start(running(design, {"variables": {"step": 7, "count": 0}, "starting_values": {&"step": 7, &"count": 0}}))
	expect_equal(guard.get_value("count"), 7)
	expect_state(guard, "Work")
	await expect_later(guard, 0.3, "Done")


func test_a_question_of_a_script_is_asked_turned_round_and_reads_variables() -> void:
	var enough := IsEnough.new()
	var guard := asker(stage, {"variables": {"count": 2, "wanted": 2}})
	expect(not guard.ask(enough, 0, null))
	guard.set_value("count", 3)
	expect(guard.ask(enough, 0, null))
	expect_equal(guard.slot(0)["asked"], 2)
	var record := {}
	expect(guard.ask(enough, 0, record))
	expect_equal(record, {"asked": 1})
	expect(not guard.ask_compiled(enough, 0), "it has no compiled half")
	guard.set_value("count", 2)
	enough.invert = true
	expect(guard.ask(enough, 0, null))
	enough.set(&"at_least_variable", &"wanted")
	expect(not guard.ask(enough, 0, null) and not enough.evaluate(guard, {}))
	expect_line(enough, "Not: Count is at least [wanted]")
	expect(enough.depends_only_on_variables())
	expect_equal(enough.rest_signals(guard, {}), [])
	expect_equal(Array(enough.variables_read()), ["wanted"])
	expect(not guard.ask(SCMachineCondition.new(), 0, null), "a bare one answers no")
	expect(not guard.ask(null, 0, null))
	expect(not SCMachineCondition.new().summary().is_empty())


func test_a_question_asked_within_a_question_leaves_the_outer_record() -> void:
	var outer: Outer = kind(Outer, {"inner": IsEnough.new()})
	var record := {}
	expect(asker(stage, {"variables": {"count": 9}}).ask(outer, 0, record))
	expect_equal(record, {"before": true, "after": true})
	expect_equal(outer.lent, {"asked": 1})
	outer.inner = null


func test_helpers_by_name() -> void:
	var guard := asker(stage, {"variables": {"score": 1250}})
	for row: Array in [
		["number", [2.50], "2.5"], ["text_of", [Vector2(1, 2)], "(1, 2)"], ["text_of", [], ""], ["shown_as", [65.0, "time"], "1:05"],
		["fill_in", ["{score:,} points", guard], "1,250 points"], ["no such helper", [], null],
	]:
		expect_equal(SCMachineBase.native_helper(row[0], row[1]), row[2])
	expect_warning("QuillStead has no compiled helper called no such helper.")
