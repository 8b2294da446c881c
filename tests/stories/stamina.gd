extends Story
## A meter that empties while something is done, rests, and fills up again.


func _stamina(settings: Dictionary = {}) -> SCStaminaAction:
	return kind(SCStaminaAction, {"empty_event": &"empty", "full_event": &"full"}.merged(settings, true))


func _key(down: bool) -> void:
	var press := InputEventKey.new()
	press.keycode = KEY_SHIFT
	press.physical_keycode = KEY_SHIFT
	press.pressed = down
	Input.parse_input_event(press)


func test_a_sprint_tires_rests_and_comes_back() -> void:
	var runner := start(machine([state("Move", [_stamina({"drains_while_held": &"Key: Shift"})], {"FINISHED": "Beside"}), state("Beside", [
		_stamina({"drains_while_held": &"Key: Shift"}),
	])]))
	expect_state(runner, "Beside")
	expect_near(runner.get_value("stamina"), 100.0, 0.001, "one that is made is full")
	_key(true)
	await advance(2.0)
	_key(false)
	expect_near(runner.get_value("stamina"), 50.0, 1.0, "two seconds at 25")
	var tired: float = runner.get_value("stamina")
	await advance(0.45)
	expect_near(runner.get_value("stamina"), tired, 0.5, "it rests first")
	tired = runner.get_value("stamina")
	await advance(1.05)
	expect_near(runner.get_value("stamina"), tired + 15.0, 0.8, "a second at 15, after half a second of rest")
	expect_events(runner, [])
	await advance(3.0)
	expect_near(runner.get_value("stamina"), 100.0, 0.001)
	await advance(0.5)
	expect_events(runner, ["full"])
	_key(true)
	await advance(3.95)
	expect_events(runner, [])
	await advance(0.5)
	expect_events(runner, ["empty"])
	_key(false)
	await frames(2)


func test_spending_in_one_state_and_resting_in_the_next() -> void:
	var runner := start(machine([
		state("Run", [_stamina({"drain_rate": 60.0, "most": 30.0})], {"empty": "Rest"}),
		state("Rest", [_stamina({"spends_here": false, "recover_rate": 30.0, "most": 30.0, "rests_first": 0.25})], {"full": "Run"}),
	], {"variables": {"stamina": 30.0}}))
	await expect_later(runner, 0.45, "Run")
	await expect_later(runner, 0.1, "Rest")
	await advance(0.75)
	expect_near(runner.get_value("stamina"), 16.5, 2.0, "a quarter of a second of rest, and half a second at 30")
	await expect_later(runner, 0.6, "Run")


func test_what_never_spent_comes_back_at_once_and_small_or_whole_meters_count() -> void:
	var slow := start(machine([state("Rest", [_stamina({"spends_here": false, "recover_rate": 0.0003, "variable_name": &"slow"})])], {"variables": {"slow": 0.5}}))
	var whole := start(machine([state("Run", [_stamina({"drain_rate": 10.0, "variable_name": &"whole"})])], {"variables": {"whole": 20}}))
	await advance(1.0)
	expect_near(slow.get_value("slow"), 0.5003, 0.00003)
	expect_equal(whole.get_value("whole"), 10)
	await advance(1.2)
	expect_equal(whole.get_value("whole"), 0)
	expect_events(whole, ["empty"])
	var spent := start(machine([state("Run", [_stamina()], {"empty": "Rest"}), state("Rest")], {"variables": {"stamina": 0.0}}))
	await frames(2)
	expect_state(spent, "Rest")


func test_what_it_says() -> void:
	expect_lines(SCStaminaAction, {
		"Spend stamina at 25 a second": {},
		"Let breath come back at 15 a second": {"spends_here": false, "variable_name": &"breath"},
	})
	expect_warns(_stamina({"variable_name": &""}), "no variable is picked, so there is no meter to spend from")
	expect_warns(_stamina({"variable_name": &"name"}), "name holds a String, which is no amount", {"variables": {"name": "Ann"}})
