extends Story
## Boosts, curses and auras change a number, and it comes back to what it was.

const Stats := preload("res://addons/quillstead/runtime/quillstead_stats.gd")


## Waits for [method change].
func hero(variables: Dictionary, options: Dictionary = {}) -> SCMachine:
	var made := machine([
		state("Wait", [], {"go": "Do"}),
		state("Do", [kind(SCModifyStatAction)], {"FINISHED": "Wait"}),
	], {"variables": variables}.merged(options, true))
	return start(made)


## Does it with Modify Stat.
func change(of: SCMachine, stat: String, how: int, amount: float, source: String, more: Dictionary = {}) -> void:
	var action: SCModifyStatAction = of.states[1].actions[0]
	_put(action, {"variable_name": StringName(stat), "change": how, "amount": amount, "source": source, "stack": false, "for_seconds": 0.0}.merged(more, true))
	of.send_event(&"go")


func test_changes_come_and_go_in_any_order() -> void:
	var made := hero({"power": 10.0, "luck": 1})
	const ADD := SCModifyStatAction.ADD
	const MULTIPLY := SCModifyStatAction.MULTIPLY
	const REMOVE := SCModifyStatAction.REMOVE
	for row: Array in [
		["power", ADD, 5.0, "Sword", 15.0],
		["power", MULTIPLY, 2.0, "Rage", 30.0],
		["power", ADD, 1.0, "Ring", 32.0],
		["power", ADD, 7.0, "Sword", 36.0],
		["power", MULTIPLY, 0.5, "Sword", 18.0],
		["power", REMOVE, 0.0, "Nobody", 18.0],
		["power", REMOVE, 0.0, "  Rage ", 9.0],
		["power", REMOVE, 0.0, "Sword", 11.0],
		["luck", ADD, 2.0, "Ring", 3],
		["luck", MULTIPLY, 1.5, "Clover", 5],
		["luck", MULTIPLY, 0.0, "Curse", 0],
		["luck", REMOVE, 0.0, "Curse", 5],
		["luck", REMOVE, 0.0, "Clover", 3],
		["", REMOVE, 0.0, "Ring", 3],
	]:
		change(made, row[0], row[1], row[2], row[3])
		if not (row[0] as String).is_empty():
			expect_equal(made.get_value(row[0]), row[4], str(row))
	expect_values(made, {"power": 10.0, "luck": 1}, "without a stat it is taken from all: ")


func test_the_same_source_again_replaces_or_piles_up() -> void:
	for stack: bool in [false, true]:
		var made := hero({"power": 10.0})
		for i in 3:
			change(made, "power", SCModifyStatAction.ADD, 5.0, "Fury", {"stack": stack})
		expect_equal(made.get_value(&"power"), 25.0 if stack else 15.0)
		change(made, "power", SCModifyStatAction.REMOVE, 0.0, "Fury")
		expect_equal(made.get_value(&"power"), 10.0)


func test_without_a_name_there_is_one_slot() -> void:
	var made := hero({"power": 10.0})
	change(made, "power", SCModifyStatAction.ADD, 5.0, " ")
	expect_warning("Modify Stat on Machine has no Source, and changes made without one share a single slot, so another change with no Source replaces "
		+ "this one. Name it after the item or the boost making it.")
	change(made, "power", SCModifyStatAction.MULTIPLY, 3.0, "")
	expect_equal(made.get_value(&"power"), 30.0)
	change(made, "power", SCModifyStatAction.REMOVE, 0.0, "")
	expect_equal(made.get_value(&"power"), 10.0)


func test_what_is_set_up_wrong_is_told() -> void:
	var some := {"variables": {"name": "Bo", "power": 1.0}}
	expect_warns(kind(SCModifyStatAction, {"source": "Ring"}),
		"Modify Stat on Machine has no stat picked, so nothing was changed. Pick the number variable to change beside Variable Name.", some)
	expect_warns(kind(SCModifyStatAction, {"source": "Ring", "variable_name": &"pwoer"}), "there is no variable called pwoer", some)
	expect_warns(kind(SCModifyStatAction, {"source": "Ring", "variable_name": &"name"}), "name holds a String, which is not a number", some)
	expect_warns(kind(SCModifyStatAction, {"source": "Ring", "variable_name": &"power", "amount": INF}), "Amount", some)


func test_it_says_what_it_does() -> void:
	expect_lines(SCModifyStatAction, {
		"power + 2 (Ring)": {"variable_name": &"power", "amount": 2.0, "source": " Ring "},
		"power - 2": {"variable_name": &"power", "amount": -2.0},
		"power × 1.5 for 3 s (Rage)": {"variable_name": &"power", "amount": 1.5, "change": 1, "for_seconds": 3.0, "source": "Rage"},
		"Take away Rage from power": {"variable_name": &"power", "change": 2, "source": "Rage"},
		"Take away the unnamed change from power": {"variable_name": &"power", "change": 2},
		"(pick one) + [bonus]": {"amount_variable": &"bonus"},
	})
	expect_hidden(kind(SCModifyStatAction, {"change": 2}), ["amount", "stack", "for_seconds"])


func test_a_number_that_is_larger_than_fractions_go() -> void:
	var made := hero({"score": 9007199254740993})
	Stats.add(made, &"score", "Bonus", 5.0)
	Stats.take_away(made, &"score", "Bonus")
	expect_equal(made.get_value(&"score"), 9007199254740993)


## What the game writes meanwhile becomes what it started as.
func test_the_game_writes_it_too() -> void:
	for row: Array in [
		[10.0, [], 15.0, 20.0, 15.0],
		[10.0, [2.0], 30.0, 40.0, 15.0],
		[10.0, [2.0, 0.0], 0.0, 4.0, 14.0],
		[10, [1.5], 23, 24, 11],
	]:
		var made := hero({"power": row[0]})
		Stats.add(made, &"power", "Sword", 5.0)
		for factor: float in row[1]:
			Stats.multiply(made, &"power", "Aura", factor, true)
		expect_equal(made.get_value(&"power"), row[2], str(row))
		made.set_value(&"power", row[3])
		Stats.take_away(made, &"power", "Nobody")
		Stats.add(made, &"power", "Nothing", 0.0)
		Stats.take_away(made, &"power", "Nothing")
		if row[1] != [2.0, 0.0]:
			expect_equal(made.get_value(&"power"), row[3], "it does not jump: %s" % [row])
		Stats.take_away(made, &"power", "Aura")
		Stats.take_away(made, &"power", "Sword")
		expect_equal(made.get_value(&"power"), row[4], str(row))


func test_it_stays_within_its_limits_and_comes_back() -> void:
	var made := start(machine([state("Rest")], {"variables": [variable(&"health", 90.0, {"never_above": "100"})]}))
	Stats.add(made, &"health", "Potion", 20.0)
	expect_equal(made.get_value(&"health"), 100.0)
	Stats.add(made, &"health", "Ring", 1.0)
	expect_equal(made.get_value(&"health"), 100.0)
	Stats.take_away(made, &"health", "Potion")
	expect_equal(made.get_value(&"health"), 91.0)
	Stats.take_away(made, &"health", "Ring")
	expect_equal(made.get_value(&"health"), 90.0)


## Random changes to two machines in different orders, beside a model.
func test_any_order_gives_the_same_number() -> void:
	for number: int in seeds(1, 15, 400):
		var dice := RandomNumberGenerator.new()
		dice.seed = number
		var first := dice.randi_range(-10000, 10000) / 100.0
		var whole := dice.randi_range(-100, 100)
		var made: Array[SCMachine] = [hero({"a": first, "b": whole}), hero({"a": first, "b": whole})]
		var model: Array[Array] = []
		for step in 60:
			var stat: StringName = [&"a", &"b"][dice.randi_range(0, 1)]
			if dice.randf() < 0.35 and not model.is_empty():
				var source: String = model.pick_random()[1]
				for each in made:
					Stats.take_away(each, stat, source)
				model = model.filter(func(row: Array) -> bool: return row[0] != stat or row[1] != source)
			else:
				var row := [stat, "Source %d" % dice.randi_range(0, 12), dice.randi_range(0, 1), dice.randi_range(-300, 300) / 100.0, dice.randf() < 0.3]
				if row[2] == 0:
					row[3] *= [1.0, 1000000.0, 0.001][dice.randi_range(0, 2)]
				if not row[4]:
					model = model.filter(func(other: Array) -> bool: return other.slice(0, 3) != row.slice(0, 3))
				model.append(row)
				make(made[0], row)
		# The second gets what is left, in another order.
		var shuffled := model.duplicate()
		shuffled.shuffle()
		for row: Array in shuffled:
			make(made[1], row.slice(0, 4) + [true])
		for stat: StringName in [&"a", &"b"]:
			var sum := first if stat == &"a" else float(whole)
			var largest := absf(sum)
			var product := 1.0
			for row in model:
				if row[0] == stat and row[2] == 0:
					sum += row[3]
					largest = maxf(largest, absf(row[3]))
				elif row[0] == stat:
					product *= row[3]
			var got: Variant = made[0].get_value(stat)
			expect_equal(got, made[1].get_value(stat), "seed %d: %s in another order" % [number, stat])
			expect_near(got, sum * product, 1.0e-12 * largest * absf(product) + (0.5 if stat == &"b" else 1.0e-9), "seed %d: %s" % [number, stat])
			for row: Array in shuffled:
				for each in made:
					Stats.take_away(each, stat, row[1])
			for each in made:
				expect_equal(each.get_value(stat), first if stat == &"a" else whole, "seed %d: %s at the end" % [number, stat])
		for each in made:
			each.free()


func make(of: SCMachine, row: Array) -> void:
	if row[2] == 0:
		Stats.add(of, row[0], row[1], row[3], row[4])
	else:
		Stats.multiply(of, row[0], row[1], row[3], row[4])


func test_a_thousand_sources() -> void:
	var made := hero({"power": 0.1})
	var order := range(1000)
	order.shuffle()
	for i: int in order:
		Stats.add(made, &"power", "Add %d" % i, 0.1 * i)
		Stats.multiply(made, &"power", "Times %d" % i, 1.0 + i * 0.00001)
	expect_equal(Stats.sources_of(made, &"power").size(), 2000)
	expect_near(Stats.base_of(made, &"power"), 0.1, 0.0)
	order.shuffle()
	for i: int in order:
		Stats.take_away(made, &"power", "Add %d" % i)
		Stats.take_away(made, &"power", "Times %d" % i)
	expect_equal(made.get_value(&"power"), 0.1)


## Each run in game time, and one that is over leaves what others changed.
func test_a_boost_runs_out() -> void:
	var made := hero({"speed": 4.0})
	change(made, "speed", SCModifyStatAction.MULTIPLY, 2.0, "Boots", {"for_seconds": 0.5})
	change(made, "speed", SCModifyStatAction.ADD, 1.0, "Ring")
	expect_equal(made.get_value(&"speed"), 10.0)
	var rows := SCModifyStatAction.running_out(made)
	expect_equal(rows.size(), 1)
	expect_equal(rows[0].slice(0, 2), [&"speed", "Boots"])
	expect_near(rows[0][2], 0.5)
	await advance(0.4)
	expect_equal(made.get_value(&"speed"), 10.0)
	change(made, "speed", SCModifyStatAction.MULTIPLY, 2.0, "Boots", {"for_seconds": 0.5})
	await advance(0.4)
	expect_equal(made.get_value(&"speed"), 10.0, "made again, its time starts again")
	await advance(0.15)
	expect_equal(made.get_value(&"speed"), 5.0)
	expect_equal(SCModifyStatAction.running_out(made), [])


func test_a_boost_without_a_time_stays() -> void:
	var made := hero({"speed": 4.0})
	change(made, "speed", SCModifyStatAction.ADD, 2.0, "Boots", {"for_seconds": 0.2})
	change(made, "speed", SCModifyStatAction.ADD, 3.0, "Boots")
	expect_equal(SCModifyStatAction.running_out(made), [])
	await advance(0.3)
	expect_equal(made.get_value(&"speed"), 7.0)
	change(made, "speed", SCModifyStatAction.ADD, 2.0, "Boots", {"for_seconds": 0.2})
	change(made, "speed", SCModifyStatAction.REMOVE, 0.0, "Boots")
	change(made, "speed", SCModifyStatAction.ADD, 5.0, "Boots")
	await advance(0.3)
	expect_equal(made.get_value(&"speed"), 9.0, "what was taken away takes nothing with it later")
	change(made, "speed", SCModifyStatAction.ADD, 2.0, "Boots", {"for_seconds": 0.2})
	SCModifyStatAction.forget_timers(made)
	await advance(0.3)
	expect_equal(made.get_value(&"speed"), 6.0)


func test_a_boost_waits_in_the_pause_menu() -> void:
	var made := hero({"speed": 4.0})
	change(made, "speed", SCModifyStatAction.ADD, 2.0, "Boots", {"for_seconds": 0.2})
	tree.paused = true
	await advance(1.0)
	tree.paused = false
	expect_equal(made.get_value(&"speed"), 6.0)
	await advance(0.25)
	expect_equal(made.get_value(&"speed"), 4.0)


func test_timers_of_what_has_gone() -> void:
	for i in 40:
		var short_lived := hero({"speed": 4.0})
		for source: String in ["Boots", "Ring"]:
			change(short_lived, "speed", SCModifyStatAction.ADD, 2.0, source, {"for_seconds": 60.0})
		short_lived.free()
	await frames(2)
	expect_equal(SCModifyStatAction.running_out(null), [])
	expect_error("Parameter \"p_machine\" is null.")
	var outside := machine([], {"variables": {"speed": 1.0}})
	SCModifyStatAction.run_out_later(outside, &"speed", "Boots", 1.0)
	expect_error("Parameter \"tree\" is null.")
	expect_equal(SCModifyStatAction.running_out(outside), [])


func test_what_starts_anew_is_as_it_was() -> void:
	var made := hero({"speed": 4.0})
	Stats.add(made, &"speed", "Boots", 2.0)
	made.stop()
	expect_equal(made.get_value(&"speed"), 6.0)
	made.start()
	expect_equal(made.get_value(&"speed"), 4.0)
	Stats.take_away(made, &"speed", "Boots")
	expect_equal(made.get_value(&"speed"), 4.0)
	Stats.add(made, &"speed", "Boots", 2.0)
	var copy: SCMachine = made.duplicate()
	_made.append(copy)
	start(copy)
	Stats.take_away(copy, &"speed", "Boots")
	expect_values(copy, {"speed": 4.0}, "a copy has no changes: ")
	expect_values(made, {"speed": 6.0})


func test_changes_are_saved() -> void:
	var made := hero({"speed": 4.0, "luck": 2})
	Stats.add(made, &"speed", "Boots", 0.1, true)
	Stats.add(made, &"speed", "Boots", 0.2, true)
	Stats.multiply(made, &"luck", "Clover", 1.3)
	var saved: Variant = JSON.to_native(JSON.parse_string(JSON.stringify(JSON.from_native(Stats.to_save(made)))))
	var other := hero({"speed": made.get_value(&"speed"), "luck": made.get_value(&"luck")})
	Stats.from_save(other, saved)
	expect_equal(Stats.sources_of(other, &"speed"), PackedStringArray(["Boots"]))
	Stats.take_away(other, &"speed", "Boots")
	Stats.take_away(other, &"luck", "Clover")
	expect_values(other, {"speed": 4.0, "luck": 2})
	for rubbish: Variant in [{}, {"stats": 3}, {"stats": {"speed": 1}}, {"stats": {"speed": {"changes": [1, ["a", 0, NAN]]}}, "notes": []}]:
		Stats.from_save(other, rubbish)
		expect_equal(Stats.sources_of(other, &"speed"), PackedStringArray())


## What hears of a change at once takes it away, makes another one, or ends the machine.
func test_whoever_hears_of_it_may_do_anything() -> void:
	for row: Array in [
		[func(m: SCMachine) -> void: Stats.take_away(m, &"speed", "Boots"), 4.0, []],
		[func(m: SCMachine) -> void: Stats.add(m, &"speed", "Fear", 1.0), 7.0, ["Boots", "Fear"]],
		[func(m: SCMachine) -> void: m.get_parent().free(), null, []],
		[func(m: SCMachine) -> void: m.set_value(&"speed", 10.0), 10.0, ["Boots"]],
	]:
		var heard: Recorder = act("hears").watching(["speed"])
		var made := start(machine([state("Hears", [heard])], {"under": body(), "variables": {"speed": 4.0}}))
		heard.updating(func(m: SCMachine) -> void:
			heard.forget()
			(row[0] as Callable).call(m))
		Stats.add(made, &"speed", "Boots", 2.0)
		if row[1] == null:
			expect(not is_instance_valid(made))
			continue
		expect_equal(made.get_value(&"speed"), row[1])
		expect_equal(Stats.sources_of(made, &"speed"), PackedStringArray(row[2]))
		Stats.take_away(made, &"speed", "Boots")
		Stats.take_away(made, &"speed", "Fear")
		expect_equal(made.get_value(&"speed"), 4.0 if row[1] != 10.0 else 8.0)


func test_nobody_has_no_stats() -> void:
	Stats.add(null, &"speed", "Boots", 1.0)
	Stats.take_away(null, &"speed", "Boots")
	Stats.from_save(null, {"stats": {}})
	expect_equal(Stats.to_save(null), {})
	expect_equal(Stats.sources_of(null, &"speed"), PackedStringArray())
	expect_equal(Stats.base_of(null, &"speed"), null)
