extends Story
## What the clocks say, and how fast the game runs.


func test_how_long_the_state_has_run() -> void:
	var owner := play(_get_time(SCGetTimeAction.SINCE_THE_STATE_BEGAN, {"run_mode": SCMachineAction.EVERY_FRAME}), {}, {"variables": {"answer": 0.0}})
	await advance(0.5)
	expect_near(owner.get_value("answer"), 0.5, 0.04)


func test_the_clock_and_the_calendar() -> void:
	var parts: Dictionary[int, String] = {
		SCGetTimeAction.DAY: "day", SCGetTimeAction.MONTH: "month", SCGetTimeAction.YEAR: "year", SCGetTimeAction.WEEKDAY: "weekday",
		SCGetTimeAction.HOUR: "hour", SCGetTimeAction.MINUTE: "minute", SCGetTimeAction.SECOND: "second",
	}
	for utc: bool in [false, true]:
		for which in parts:
			var before := Time.get_datetime_dict_from_system(utc)
			var told: int = result_of(_get_time(which, {"utc": utc}))
			# A minute may have turned meanwhile.
			expect(told in [before[parts[which]], Time.get_datetime_dict_from_system(utc)[parts[which]]], "%s is %s" % [parts[which], told])
		var day: int = result_of(_get_time(SCGetTimeAction.SECONDS_OF_THE_DAY, {"utc": utc}))
		var now := Time.get_datetime_dict_from_system(utc)
		expect_near(day, now["hour"] * 3600 + now["minute"] * 60 + now["second"], 1.0)
	expect_near(result_of(_get_time(SCGetTimeAction.SECONDS_SINCE_1970)), Time.get_unix_time_from_system(), 1.0)
	expect_near(result_of(_get_time(SCGetTimeAction.SINCE_THE_GAME_STARTED)), Time.get_ticks_msec() / 1000.0, 1.0)
	var clock: String = result_of(_get_time(SCGetTimeAction.CLOCK_AS_TEXT))
	expect(clock.length() == 8 and clock[2] == ":", clock)
	expect_equal(result_of(_get_time(SCGetTimeAction.DATE_AS_TEXT)), Time.get_date_string_from_system())
	var for_nobody := _get_time(SCGetTimeAction.HOUR, {"store_in": &""})
	expect_line(for_nobody, "Put the hour into (pick one)")
	expect_warns(for_nobody, "Get Time on Machine: there is nowhere to put the time, so it was lost. Pick a variable under Store In.")


func test_a_slow_motion_that_stays_or_lasts_while_the_state_runs() -> void:
	Engine.time_scale = 2.0
	for stays: bool in [false, true]:
		var slow := kind(SCSetTimeScaleAction, {"scale": 0.5, "put_back_when_left": not stays})
		expect_line(slow, "Run the game at 0.5 times its speed%s" % ("" if stays else " while the state runs"))
		var owner := play([slow, act("slow")], {"over": "Over"})
		expect_equal(Engine.time_scale, 0.5)
		owner.send_event("over")
		expect_equal(Engine.time_scale, 0.5 if stays else 2.0)
	Engine.time_scale = 1.0


func test_a_hit_stop_lasts_real_seconds() -> void:
	for scale: float in [0.1, 0.0]:
		var owner := play(kind(SCSetTimeScaleAction, {"scale": scale, "lasts": 0.2}))
		expect_equal(Engine.time_scale, scale)
		await expect_later(owner, 0.15, "Work")
		expect_equal(Engine.time_scale, scale)
		await expect_later(owner, 0.1, "Done")
		expect_equal(Engine.time_scale, 1.0)
	var crate := body("Crate")
	play(kind(SCSetTimeScaleAction, {"scale": 0.1, "lasts": 5.0}), {}, {"under": crate})
	expect_equal(Engine.time_scale, 0.1)
	crate.free()
	expect_equal(Engine.time_scale, 1.0, "it ends with its machine")


func test_hit_stops_that_overlap() -> void:
	var first := play(kind(SCSetTimeScaleAction, {"scale": 0.1, "lasts": 0.2}))
	await advance(0.1)
	var second := play(kind(SCSetTimeScaleAction, {"scale": 0.2, "lasts": 0.2}))
	await expect_later(first, 0.15, "Done")
	expect_state(second, "Work")
	expect_equal(Engine.time_scale, 0.2)
	await expect_later(second, 0.1, "Done")
	expect_equal(Engine.time_scale, 1.0)
	# A speed that is set meanwhile is what it goes back to.
	var hit := play(kind(SCSetTimeScaleAction, {"scale": 0.1, "lasts": 0.2}))
	play(kind(SCSetTimeScaleAction, {"scale": 3.0}))
	expect_equal(Engine.time_scale, 3.0)
	await expect_later(hit, 0.3, "Done")
	expect_equal(Engine.time_scale, 3.0)
	Engine.time_scale = 1.0


func test_a_hit_stop_within_slow_motion_leaves_the_slow_motion() -> void:
	# Who lets go, in which order, and the speed after each: the last that still holds has its way.
	for row: Array in [[[1, 0], [0.5, 1.0]], [[0, 1], [0.1, 1.0]], [[2, 0, 1], [0.1, 0.1, 1.0]], [[1, 2, 0], [0.25, 0.5, 1.0]]]:
		var held: Array[SCMachine] = []
		for scale: float in [0.5, 0.1, 0.25].slice(0, (row[0] as Array).size()):
			held.append(play([kind(SCSetTimeScaleAction, {"scale": scale, "put_back_when_left": true}), act("slow")], {"over": "Over"}))
		if row[0] == [2, 0, 1]:
			expect_equal(Engine.time_scale, 0.25)
		for i in held.size():
			held[row[0][i]].send_event("over")
			expect_equal(Engine.time_scale, row[1][i], "%s, after %d" % [row[0], i])
	var slow := play([kind(SCSetTimeScaleAction, {"scale": 0.5, "put_back_when_left": true}), act("slow")], {"over": "Over"})
	var hit := play(kind(SCSetTimeScaleAction, {"scale": 0.05, "lasts": 0.05}))
	await expect_later(hit, 0.1, "Done")
	expect_equal(Engine.time_scale, 0.5)
	slow.get_parent().remove_child(slow)
	slow.free()
	expect_equal(Engine.time_scale, 1.0)


func test_it_gets_slower_little_by_little() -> void:
	# For good, or until it has lasted a while.
	for lasts: float in [0.0, 0.2]:
		var owner := play(kind(SCSetTimeScaleAction, {"scale": 0.0, "duration": 0.4, "lasts": lasts}))
		await expect_later(owner, 0.2, "Work")
		expect_near(Engine.time_scale, 0.5, 0.2)
		await expect_later(owner, 0.3, "Done" if lasts == 0.0 else "Work")
		expect_equal(Engine.time_scale, 0.0)
		await expect_later(owner, 0.2, "Done")
		expect_equal(Engine.time_scale, 0.0 if lasts == 0.0 else 1.0)
		Engine.time_scale = 1.0


func test_a_speed_that_no_game_can_run_at() -> void:
	for row: Array in [
		[NAN, 0.5, "is no number, as 0 divided by 0 is none, so the game goes on as fast as before."],
		[INF, 1000.0, "is more than 1000, and the physics cannot follow a game that fast, so it was taken as 1000. Type less under Scale."],
		[-1.0, 0.0, "is -1, and time cannot run backward, so the game stands still. Type 0 or more under Scale."],
	]:
		Engine.time_scale = 0.5
		result_of(kind(SCSetTimeScaleAction, {"scale": row[0]}))
		expect_equal(Engine.time_scale, row[1])
		expect_warning("Set Time Scale on Machine: its Scale %s" % row[2])
	Engine.time_scale = 1.0


func _get_time(which: int, options: Dictionary = {}) -> SCGetTimeAction:
	return kind(SCGetTimeAction, {"which": which, "store_in": &"answer"}.merged(options, true))
