extends Story
## What the clocks say, and how fast the game runs.


func test_how_long_the_state_has_run() -> void:
	var tell := _get_time(SCGetTimeAction.SINCE_THE_STATE_BEGAN)
	tell.run_mode = SCMachineAction.EVERY_FRAME
	var owner := start(machine([state("Run", [tell])], {"under": body(), "variables": {"time": 0.0}}))
	await advance(0.5)
	expect_near(owner.get_value("time"), 0.5, 0.04)


func test_the_clock_and_the_calendar() -> void:
	for utc: bool in [false, true]:
		var before := Time.get_datetime_dict_from_system(utc)
		var rows: Array[Array] = [[SCGetTimeAction.DAY, "day"], [SCGetTimeAction.MONTH, "month"], [SCGetTimeAction.YEAR, "year"], [SCGetTimeAction.WEEKDAY, "weekday"], [SCGetTimeAction.HOUR, "hour"], [SCGetTimeAction.MINUTE, "minute"]]
		for row in rows:
			var told: Variant = _told(_get_time(row[0], utc), -1)
			var after := Time.get_datetime_dict_from_system(utc)
			# A minute may have turned meanwhile.
			expect(told == before[row[1]] or told == after[row[1]], "%s is %s" % [row[1], told])
		var day: int = _told(_get_time(SCGetTimeAction.SECONDS_OF_THE_DAY, utc), -1)
		var now := Time.get_datetime_dict_from_system(utc)
		expect(absi(day - (now["hour"] * 3600 + now["minute"] * 60 + now["second"])) <= 1)
	var unix: float = _told(_get_time(SCGetTimeAction.SECONDS_SINCE_1970), 0.0)
	expect_near(unix, Time.get_unix_time_from_system(), 1.0)
	var since: float = _told(_get_time(SCGetTimeAction.SINCE_THE_GAME_STARTED), 0.0)
	expect_near(since, Time.get_ticks_msec() / 1000.0, 1.0)
	var clock: String = _told(_get_time(SCGetTimeAction.CLOCK_AS_TEXT), "")
	expect(clock.length() == 8 and clock[2] == ":", clock)
	expect_equal(_told(_get_time(SCGetTimeAction.DATE_AS_TEXT), ""), Time.get_date_string_from_system())


func test_a_time_for_nobody_is_told_of() -> void:
	var tell := SCGetTimeAction.new()
	tell.which = SCGetTimeAction.HOUR
	expect_equal(tell.shown_summary(), "Put the hour into (pick one)")
	start(machine([state("Tell", [tell])], {"name": "Shop", "under": body()}))
	expect_warning("Get Time on Shop: there is nowhere to put the time, so it was lost. Pick a variable under Store In.")


func test_a_slow_motion_that_stays() -> void:
	var owner := start(machine([state("Slow", [_scale({"scale": 0.25})], {"FINISHED": "Later"}), state("Later"), state("Usual", [_scale({"scale": 1.0})])], {"under": body()}))
	expect_state(owner, "Later")
	expect_equal(Engine.time_scale, 0.25)
	owner.go_to("Usual")
	expect_equal(Engine.time_scale, 1.0)


func test_a_slow_motion_while_the_state_runs() -> void:
	Engine.time_scale = 2.0
	var slow := _scale({"scale": 0.5, "put_back_when_left": true})
	expect_equal(slow.shown_summary(), "Run the game at 0.5 times its speed while the state runs")
	var owner := start(machine([state("Slow", [slow]), state("Over")], {"under": body()}))
	expect_equal(Engine.time_scale, 0.5)
	owner.go_to("Over")
	expect_equal(Engine.time_scale, 2.0)
	Engine.time_scale = 1.0


func test_a_hit_stop_lasts_real_seconds() -> void:
	for scale: float in [0.1, 0.0]:
		var owner := start(machine([state("Hit", [_scale({"scale": scale, "lasts": 0.2})], {"FINISHED": "On"}), state("On")], {"under": body()}))
		expect_equal(Engine.time_scale, scale)
		await advance(0.15)
		expect_state(owner, "Hit")
		expect_equal(Engine.time_scale, scale)
		await advance(0.1)
		expect_state(owner, "On")
		expect_equal(Engine.time_scale, 1.0)


func test_hit_stops_that_overlap() -> void:
	var first := start(machine([state("Hit", [_scale({"scale": 0.1, "lasts": 0.2})], {"FINISHED": "On"}), state("On")], {"under": body()}))
	await advance(0.1)
	var second := start(machine([state("Hit", [_scale({"scale": 0.2, "lasts": 0.2})], {"FINISHED": "On"}), state("On")], {"under": body()}))
	await advance(0.15)
	expect_state(first, "On")
	expect_state(second, "Hit")
	expect_equal(Engine.time_scale, 0.2)
	await advance(0.1)
	expect_state(second, "On")
	expect_equal(Engine.time_scale, 1.0)


func test_a_hit_stop_ends_with_its_machine() -> void:
	var crate := body("Crate")
	start(machine([state("Hit", [_scale({"scale": 0.1, "lasts": 5.0})])], {"under": crate}))
	expect_equal(Engine.time_scale, 0.1)
	crate.free()
	expect_equal(Engine.time_scale, 1.0)


func test_a_speed_that_is_set_meanwhile_is_what_it_goes_back_to() -> void:
	var hit := start(machine([state("Hit", [_scale({"scale": 0.1, "lasts": 0.2})], {"FINISHED": "On"}), state("On")], {"under": body()}))
	start(machine([state("Fast", [_scale({"scale": 3.0})])], {"under": body()}))
	expect_equal(Engine.time_scale, 3.0)
	await advance(0.3)
	expect_state(hit, "On")
	expect_equal(Engine.time_scale, 3.0)
	Engine.time_scale = 1.0


func test_it_gets_slower_little_by_little() -> void:
	var owner := start(machine([state("Slow", [_scale({"scale": 0.0, "duration": 0.4})], {"FINISHED": "Still"}), state("Still")], {"under": body()}))
	await advance(0.2)
	expect(Engine.time_scale > 0.3 and Engine.time_scale < 0.7, str(Engine.time_scale))
	expect_state(owner, "Slow")
	await advance(0.3)
	expect_state(owner, "Still")
	expect_equal(Engine.time_scale, 0.0)
	Engine.time_scale = 1.0


func test_time_does_not_run_backward() -> void:
	start(machine([state("Back", [_scale({"scale": -1.0})])], {"name": "Clock", "under": body()}))
	expect_warning("Set Time Scale on Clock: its Scale is -1, and time cannot run backward, so the game stands still. Type 0 or more under Scale.")
	expect_equal(Engine.time_scale, 0.0)
	Engine.time_scale = 1.0


func test_a_speed_that_no_game_can_run_at() -> void:
	Engine.time_scale = 0.5
	for row: Array in [[NAN, 0.5, "is no number, as 0 divided by 0 is none, so the game goes on as fast as before."], [INF, 1000.0, "is more than 1000, and the physics cannot follow a game that fast, so it was taken as 1000. Type less under Scale."]]:
		var owner := start(machine([state("Set", [_scale({"scale": row[0]})], {"FINISHED": "On"}), state("On")], {"name": "Clock", "under": body()}))
		expect_state(owner, "On")
		expect_equal(Engine.time_scale, row[1])
		expect_warning("Set Time Scale on Clock: its Scale %s" % row[2])
	Engine.time_scale = 1.0


func _get_time(which: int, utc: bool = false) -> SCGetTimeAction:
	var made := SCGetTimeAction.new()
	made.which = which
	made.utc = utc
	made.store_in = &"time"
	return made


func _told(tell: SCGetTimeAction, starts_as: Variant) -> Variant:
	return start(machine([state("Tell", [tell])], {"under": body(), "variables": {"time": starts_as}})).get_value("time")


func _scale(options: Dictionary) -> SCSetTimeScaleAction:
	var made := SCSetTimeScaleAction.new()
	_put(made, options)
	return made
