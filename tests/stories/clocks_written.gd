extends Story
## Times as a clock shows them, for a label.


func test_a_time_in_every_style() -> void:
	# Seconds, then what each style makes of them, in order.
	for row: Array in [
		[0, "0:00", "0:00.0", "0:00.00", "0.0", "0.00", "0:00:00"],
		[63.456, "1:03", "1:03.4", "1:03.45", "63.4", "63.45", "0:01:03"],
		[1.1, "0:01", "0:01.1", "0:01.10", "1.1", "1.10", "0:00:01"],
		[59.999, "0:59", "0:59.9", "0:59.99", "59.9", "59.99", "0:00:59"],
		[60, "1:00", "1:00.0", "1:00.00", "60.0", "60.00", "0:01:00"],
		[58.9, "0:58", "0:58.9", "0:58.90", "58.9", "58.90", "0:00:58"],
		[725, "12:05", "12:05.0", "12:05.00", "725.0", "725.00", "0:12:05"],
		[3599.995, "59:59", "59:59.9", "59:59.99", "3599.9", "3599.99", "0:59:59"],
		[36061.25, "601:01", "601:01.2", "601:01.25", "36061.2", "36061.25", "10:01:01"],
		[-2.5, "0:02", "0:02.5", "0:02.50", "2.5", "2.50", "0:00:02"],
	]:
		for style in 6:
			expect_equal(_written(row[0], {"style": style}), row[style + 1], "%s in style %d" % [row[0], style])
			var sign_of := "-" if row[0] < 0 else "+"
			expect_equal(_written(row[0], {"style": style, "with_sign": true}), sign_of + row[style + 1], "%s with its sign" % row[0])


func test_every_hundredth_reads_as_it_is_and_no_clock_shows_sixty() -> void:
	var last := ""
	for hundredths in range(0, 12100, 7):
		var written: String = _written(hundredths / 100.0, {"style": SCFormatTimeAction.MINUTES_HUNDREDTHS})
		@warning_ignore("integer_division")
		expect_equal(written, "%d:%02d.%02d" % [hundredths / 6000, hundredths / 100 % 60, hundredths % 100])
		expect(written != last and not written.contains(":60"), written)
		last = written


func test_a_clock_that_counts_stays_right() -> void:
	var clock: SCFormatTimeAction = kind(SCFormatTimeAction)
	expect_equal([clock.run_mode, clock.style], [SCMachineAction.EVERY_FRAME, SCFormatTimeAction.MINUTES_TENTHS])
	var owner := play(clock, {}, {"variables": {"time": 58.0, "clock": ""}})
	for row: Array in [[59.95, "0:59.9"], [60.0, "1:00.0"], [61.26, "1:01.2"], [-0.6, "0:00.6"]]:
		owner.set_value(&"time", row[0])
		await frames(1)
		expect_values(owner, {"clock": row[1]})
	owner.set_value(&"clock", "over")
	await frames(1)
	expect_values(owner, {"clock": "0:00.6"})


func test_what_is_no_time_is_told_of() -> void:
	var no_number := "Format Time: '%s' does not hold a number, so there is no time to write."
	for held: Variant in ["1:00", null, true, Vector2.ONE, [1]]:
		expect_equal(_written(held), "--")
		expect_warning(no_number % "seconds")
	expect_warns(kind(SCFormatTimeAction), no_number % "time")
	for held: float in [NAN, INF, -INF]:
		expect_equal(_written(held), "--")
		expect_warning("seconds holds a number that is none or is endless")
	expect_warns(kind(SCFormatTimeAction, {"store_in": &""}),
			"Format Time on Machine: there is nowhere to put the time, so it was lost. Pick a variable under Store In.", {"variables": {"time": 1.0}})
	expect_warns(kind(SCFormatTimeAction), "clock holds an int, which cannot become a String", {"variables": {"time": 1.0, "clock": 3}})
	expect_warns(kind(SCFormatTimeAction, {"style_variable": &"look"}), "Style", {"variables": {"time": 1.0, "look": 9}})
	expect(_written(1e300) != "--", "a huge one is written all the same")


func test_the_line() -> void:
	expect_lines(SCFormatTimeAction, {
		"Write time as a clock into clock": {},
		"Write (pick one) as a clock into (pick one)": {"seconds_variable": &"", "store_in": &""},
	})


func _written(seconds: Variant, settings: Dictionary = {}) -> Variant:
	var clock: SCFormatTimeAction = kind(SCFormatTimeAction, {"seconds_variable": &"seconds", "store_in": &"answer", "run_mode": SCMachineAction.ONCE})
	for setting: String in settings:
		clock.set(setting, settings[setting])
	return result_of(clock, {"seconds": seconds, "answer": "--"})
