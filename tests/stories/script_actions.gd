extends Story
## Actions and questions that a game maker writes, and scripts that extend a kind.

const FOLDER: String = "res://tests/stories/files/script_actions/"
const CountUp := preload("res://tests/stories/files/script_actions/count_up.gd")
const LongWait := preload("res://tests/stories/files/script_actions/long_wait.gd")
const PlainWait := preload("res://tests/stories/files/script_actions/plain_wait.gd")
const IsEnough := preload("res://tests/stories/files/script_actions/is_enough.gd")


func test_an_action_of_a_script_works_once() -> void:
	var count := CountUp.new()
	count.by = 4
	var guard := start(machine([state("Work", [count], {"FINISHED": "Done"}), state("Done")], {"variables": {"count": 1}}))
	expect_state(guard, "Done")
	expect_equal(guard.get_value("count"), 5)


func test_an_action_of_a_script_works_every_frame() -> void:
	var count := CountUp.new()
	count.run_mode = SCMachineAction.EVERY_FRAME
	var guard := start(machine([state("Work", [count], {"FINISHED": "Done"}), state("Done")], {"variables": {"count": 0}}))
	await frames(3)
	expect_state(guard, "Work")
	expect_equal(guard.get_value("count"), 4)


func test_what_a_script_does_is_known() -> void:
	var count := CountUp.new()
	expect(count.has_enter() and count.has_update() and not count.has_exit())
	expect_equal(count.shown_summary(), "Count count up by 1")
	count.set(&"by_variable", &"step")
	expect_equal(count.shown_summary(), "Count count up by [step]")
	expect_equal(Array(count.variables_written()), ["count"])
	expect_equal(Array(count.variables_read()), ["step"])
	expect_equal(SCMachineAction.kind_of(count), CountUp)
	expect_equal(SCMachineAction.kind_name(count), &"SCMachineAction")
	var bare := SCMachineAction.new()
	expect(not bare.has_enter() and not bare.has_update() and not bare.has_exit())
	expect_equal(SCMachineAction.kind_of(bare), &"SCMachineAction")
	expect(wait(1.0).has_enter() and not wait(1.0).has_update())


func test_a_script_that_extends_a_kind_adds_to_it() -> void:
	var nap := LongWait.new()
	nap.seconds = 0.2
	expect_equal(nap.shown_summary(), "Wait 0.2 s, twice")
	nap.set(&"seconds_variable", &"pause")
	var guard := start(machine([state("Rest", [nap], {"FINISHED": "Up"}), state("Up")], {"variables": {"pause": 0.3}}))
	await advance(0.5)
	expect_state(guard, "Rest")
	await advance(0.2)
	expect_state(guard, "Up")


func test_a_script_that_extends_a_kind_and_changes_only_its_line_still_works() -> void:
	var nap := PlainWait.new()
	nap.seconds = 0.2
	expect_equal(nap.shown_summary(), "Rest a while")
	var guard := start(machine([state("Rest", [nap], {"FINISHED": "Up"}), state("Up")]))
	await advance(0.1)
	expect_state(guard, "Rest")
	await advance(0.2)
	expect_state(guard, "Up")


func test_a_script_of_its_own_has_no_compiled_runtime() -> void:
	var guard := start(machine([state("Idle", [act("a")])]))
	SCMachineBase.native_action(0, PlainWait.new(), guard, 0, 0.0)
	SCMachineBase.native_action(0, wait(1.0), null, 0, 0.0)
	SCMachineBase.native_action(0, null, guard, 0, 0.0)
	SCMachineBase.native_action(1, wait(1.0), guard, 0, 0.1)
	expect_state(guard, "Idle")
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
	await advance(0.3)
	expect_state(guard, "Done")


func test_a_question_of_a_script_is_asked() -> void:
	var enough := IsEnough.new()
	var guard := start(machine([state("Idle", [act("a")])], {"variables": {"count": 2}}))
	expect(not guard.ask(enough, 0, null))
	guard.set_value("count", 3)
	expect(guard.ask(enough, 0, null))
	expect_equal(guard.slot(0)["asked"], 2)
	var record := {}
	expect(guard.ask(enough, 0, record))
	expect_equal(record, {"asked": 1})
	expect(not guard.ask_compiled(enough, 0), "it has no compiled half")


func test_a_question_is_turned_round_and_reads_variables() -> void:
	var enough := IsEnough.new()
	enough.invert = true
	var guard := start(machine([state("Idle", [act("a")])], {"variables": {"count": 2, "wanted": 2}}))
	expect(guard.ask(enough, 0, null))
	enough.set(&"at_least_variable", &"wanted")
	expect(not guard.ask(enough, 0, null))
	expect(not enough.evaluate(guard, {}))
	expect_equal(enough.shown_summary(), "Not: Count is at least [wanted]")
	expect(enough.depends_only_on_variables())
	expect_equal(enough.rest_signals(guard, {}), [])
	expect_equal(Array(enough.variables_read()), ["wanted"])


func test_a_question_asked_within_a_question_leaves_the_outer_record() -> void:
	var outer := Outer.new()
	outer.inner = IsEnough.new()
	var guard := start(machine([state("Idle", [act("a")])], {"variables": {"count": 9}}))
	var record := {}
	expect(guard.ask(outer, 0, record))
	expect_equal(record, {"before": true, "after": true})
	expect_equal(outer.lent, {"asked": 1})
	outer.inner = null


func test_a_bare_question_answers_no() -> void:
	var guard := start(machine([state("Idle", [act("a")])]))
	expect(not guard.ask(SCMachineCondition.new(), 0, null))
	expect(not guard.ask(null, 0, null))
	expect(not SCMachineCondition.new().summary().is_empty())


func test_helpers_by_name() -> void:
	var guard := start(machine([state("Idle")], {"variables": {"score": 1250}}))
	expect_equal(SCMachineBase.native_helper("number", [2.50]), "2.5")
	expect_equal(SCMachineBase.native_helper("text_of", [Vector2(1, 2)]), "(1, 2)")
	expect_equal(SCMachineBase.native_helper("shown_as", [65.0, "time"]), "1:05")
	expect_equal(SCMachineBase.native_helper("fill_in", ["{score:,} points", guard]), "1,250 points")
	expect_equal(SCMachineBase.native_helper("text_of", []), "")
	expect_equal(SCMachineBase.native_helper("no such helper", []), null)
	expect_warning("QuillStead has no compiled helper called no such helper.")


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
