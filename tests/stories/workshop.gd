extends Story
## The second demo scene, played as a visitor would: what each bench is for has to happen.

const Workshop := preload("res://demo/workshop/workshop.gd")
const SCENE := "res://demo/workshop/workshop.tscn"

var workshop: Workshop


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super.open(in_tree, catcher)
	workshop = add((load(SCENE) as PackedScene).instantiate())


func at(bench: String) -> SCMachine:
	return workshop.get_node(bench + "/Machine")


func text_of(path: String) -> String:
	return workshop.get_node(path).get("text")


## Each step is what the visitor uses at that bench, if anything, the seconds after it, the state that the bench is in then,
## and what its variables hold and its labels show.
func visit(bench: String, steps: Array) -> void:
	for step: Array in steps:
		if step[0] != "":
			workshop.use("%s/%s" % [bench, step[0]])
		await advance(step[1])
		expect_state(at(bench), step[2])
		var told: Dictionary = step[3] if step.size() > 3 else {}
		for name: String in told:
			var path := "%s/%s" % [bench, name]
			expect_equal(text_of(path) if workshop.has_node(path) else at(bench).get_value(name), told[name], "%s after %s" % [path, step[0]])


func test_the_shop_adds_up_and_takes_the_money() -> void:
	await visit("ShopCounter", [
		["Pay", 0.0, "Open", {"takings": 0}],
		["Apple", 0.0, "Open"], ["Tea", 0.0, "Open"], ["Apple", 0.0, "Open"],
		["Bread", 0.0, "Open", {"total": 3 + 6 + 3 + 4, "Till/Total": "16", "Receipt/Text": "Bread for 4\n4 in the basket"}],
		["Pay", 0.0, "Thank You", {"takings": 16, "Till/Total": "0"}],
		["", 1.5, "Open"],
		["Tea", 0.0, "Open", {"Till/Total": "6", "basket": ["tea"]}],
	])
	expect_printed("Sold for 16: apple, tea, apple, bread")


func test_the_light_goes_round_and_the_car_heeds_it() -> void:
	var light := at("TrafficLight")
	var car := at("TrafficLight/Road/Car")
	var housing := workshop.get_node("TrafficLight/Housing")
	var lit := func() -> Array: return ["Red", "Amber", "Green"].filter(func(lamp: String) -> bool: return housing.get_node(lamp).visible)
	expect_states(light, ["Day", "Red"])
	# Seconds, what is lit then, and what the car does where that matters.
	for row: Array in [[0.0, ["Red"]], [1.8, ["Red"], "At The Line"], [0.4, ["Red", "Amber"]], [0.7, ["Green"], "Leaving"], [2.2, ["Amber"]], [0.8, ["Red"]]]:
		await advance(row[0])
		expect_equal(lit.call(), row[1])
		if row.size() > 2:
			expect_state(car, row[2])
	expect_states(light, ["Day", "Red"])
	workshop.use("TrafficLight/Night")
	expect_states(light, ["Night"])
	var flashes := 0
	var was := true
	for i in roundi(2.2 * FPS):
		await frames(1)
		var is_on: bool = housing.get_node("Amber").visible
		flashes += int(is_on and not was)
		was = is_on
	expect_equal(flashes, 2)
	expect(not lit.call().has("Red"))
	workshop.use("TrafficLight/Night")
	expect_equal(lit.call(), ["Red"])


func test_the_countdown_comes_to_nothing_and_the_rocket_flies() -> void:
	var rocket: Node2D = workshop.get_node("Countdown/Sky/Rocket")
	var on_the_pad := rocket.position
	await visit("Countdown", [["Start", 2.5, "Counting", {"Board/Number": "3"}], ["", 2.3, "Counting"]])
	expect_equal(rocket.position, on_the_pad)
	await visit("Countdown", [["", 0.4, "Lift-off", {"launches": 1}]])
	await advance(1.4)
	expect(rocket.position.y < on_the_pad.y - 100.0, "it flew: %s" % rocket.position)
	await visit("Countdown", [["", 2.2, "Ready"]])
	expect_near(rocket.position, on_the_pad, 0.01)


func test_the_slot_machine_pays_for_alike_reels() -> void:
	var purse: int = at("SlotMachine").get_value("coins")
	var pays := {1: 0, 2: 2, 3: 10}
	var results: Dictionary[int, bool] = {}
	for pull in 12:
		await visit("SlotMachine", [["Lever", 2.4, "Idle"]])
		var faces := ["Left", "Middle", "Right"].map(func(reel: String) -> String: return text_of("SlotMachine/Reels/" + reel))
		var alike := int(faces.map(func(face: String) -> int: return faces.count(face)).max())
		results[alike] = true
		purse += int(pays[alike]) - 1
		expect_equal(at("SlotMachine").get_value("coins"), purse, "after %s" % [faces])
	expect(results.size() > 1, "chance has its say: %s" % results)


func test_a_flower_grows_at_every_spawn_point() -> void:
	var beds := workshop.get_node("Garden/Beds").get_children()
	var grown := func() -> int: return beds.filter(func(flower: Node2D) -> bool: return is_equal_approx(flower.scale.x, 1.0)).size()
	for row: Array in [[0.0, "Sowing", 0], [1.5, "Sowing", 2], [2.0, "In Bloom", 5], [1.8, "Cutting", -1], [0.8, "Sowing", 0]]:
		await expect_later(at("Garden"), row[0], row[1])
		expect(row[2] < 0 or grown.call() == row[2], "%s: %d are grown" % [row, grown.call()])
	var colors: Dictionary[Color, bool] = {}
	for flower: Polygon2D in beds:
		colors[flower.color] = true
	expect_equal(colors.size(), 5)


func test_the_platform_goes_there_and_back_and_the_owl_watches() -> void:
	var ferry := at("Ferry")
	var owl := at("Ferry/Owl")
	var platform: Node2D = workshop.get_node("Ferry/Platform")
	expect_state(owl, "Dozing")
	await expect_later(ferry, 3.5, "Yonder")
	expect_near(platform.position, Vector2(216, 62), 0.01)
	expect_state(owl, "Watching")
	await expect_later(ferry, 1.8, "Coming Back")
	var percent: float = ferry.get_value("percent")
	expect(percent > 5.0 and percent < 95.0, "under way at %s" % percent)
	expect_equal(text_of("Ferry/Percent"), "%d %% of the way" % roundi(percent))
	await expect_later(ferry, 2.0, "Here")
	expect_near(platform.position, Vector2(36, 100), 0.01)
	expect_state(owl, "Dozing")


func test_the_lamp_fades_and_the_moth_goes_by_it() -> void:
	var moth := at("MoodLamp/Moth")
	var light: Node2D = workshop.get_node("MoodLamp/Light")
	var first := light.modulate
	await advance(1.0)
	var second := light.modulate
	await expect_later(moth, 1.0, "Fluttering")
	expect(first != second and second != light.modulate)
	var turns: Array[StringName] = []
	at("MoodLamp").state_changed.connect(func(_from: SCMachineState, to: SCMachineState) -> void: turns.append(to.state_name))
	await advance(5.0)
	expect(turns.has(&"Warming") and turns.has(&"Cooling"), "%s" % [turns])
	workshop.use("MoodLamp/Switch")
	expect(not light.visible)
	await expect_later(moth, 2.0, "Resting")
	workshop.use("MoodLamp/Switch")
	await expect_later(moth, 0.2, "Fluttering")
	expect(light.visible)


func test_the_pinwheel_whirls_and_comes_to_its_old_speed() -> void:
	var pinwheel := at("Pinwheel")
	var wheel: Node2D = workshop.get_node("Pinwheel/Wheel")
	var from := wheel.rotation_degrees
	await advance(1.0)
	expect_near(wheel.rotation_degrees - from, 45.0, 1.0)
	workshop.use("Pinwheel/Blow")
	from = wheel.rotation_degrees
	await advance(0.5)
	expect_states(pinwheel, ["Turning", "Whirling"])
	expect(absf(wheel.rotation_degrees - from) > 90.0 or pinwheel.get_value("speed") > 200.0)
	await advance(2.7)
	expect_states(pinwheel, ["Turning", "Idling"])
	expect_near(pinwheel.get_value("speed"), 45.0)


func test_the_door_opens_to_the_right_word_only() -> void:
	var leaf: Node2D = workshop.get_node("PasswordDoor/Leaf")
	await visit("PasswordDoor", [["Word=feather", 0.0, "Refusing", {"Answer": "“feather” is wrong (1)"}]])
	await advance(0.6)
	(workshop.get_node("PasswordDoor/Word") as LineEdit).text = "  Quill "
	await visit("PasswordDoor", [["Knock", 1.0, "Open", {"Word": ""}]])
	expect_near(leaf.scale.x, 0.12)
	await visit("PasswordDoor", [["", 2.5, "Locked"]])
	expect_near(leaf.scale.x, 1.0)


func test_the_game_slows_down_and_goes_on() -> void:
	await advance(1.0)
	expect_near(text_of("SlowMotion/Clock/Time").to_float(), 1.0, 0.11)
	workshop.use("SlowMotion/Slow")
	for row: Array in [[0.0, 0.25], [1.5, 0.25], [1.0, 1.0]]:
		await advance(row[0])
		expect_near(Engine.time_scale, row[1])
	expect_state(at("SlowMotion"), "Usual Speed")


func test_tea_is_made_by_a_template_inside_a_state() -> void:
	workshop.use("TeaKitchen/Brew")
	var inner: SCMachine = workshop.get_node("TeaKitchen/BrewRunning")
	expect_state(inner, "Boiling")
	expect(workshop.get_node("TeaKitchen/Steam").get("visible"))
	await expect_later(inner, 1.5, "Steeping")
	await visit("TeaKitchen", [["", 1.2, "Served", {"cups": 1, "Told": "Cup 1 is ready"}]])
	expect(not is_instance_valid(inner))


func test_the_safe_takes_both_keys() -> void:
	await visit("Safe", [["LeftKey", 0.3, "Shut"], ["RightKey", 0.8, "Open"]])
	expect_near(workshop.get_node("Safe/Inside/Hatch").get("position").y, -84.0)
	await visit("Safe", [["LeftKey", 0.8, "Shut"]])


func test_the_notice_board_tells_of_other_benches() -> void:
	expect_equal(text_of("NoticeBoard/Text"), "The light shows red.")
	workshop.use("ShopCounter/Tea")
	workshop.use("ShopCounter/Pay")
	expect_printed("Sold for 6: tea")
	await advance(0.2)
	for news: String in ["The shop has taken 6 coins today.", "12 coins are left for the slot machine.", "The light shows red."]:
		await advance(2.4)
		expect_equal(text_of("NoticeBoard/Text"), news)


func test_at_least_forty_kinds_are_at_work_and_none_is_a_script() -> void:
	var kinds: Dictionary[StringName, bool] = {}
	var designs: Array = SCMachine.machines_in_the_scene().map(func(made: SCMachine) -> SCMachineTemplate: return made.template)
	for design: SCMachineTemplate in designs:
		for one: SCMachineState in design.all_states():
			for action: SCMachineAction in one.actions:
				expect(action.get_script() == null, "%s has an action made from a script" % design)
				for used: Resource in [action, action.get("condition")]:
					kinds[used.get_class() if used != null else action.get_class()] = true
				if action is SCRunTemplateAction:
					designs.append(action.get("template"))
	expect(kinds.size() >= 40, "%d kinds: %s" % [kinds.size(), ", ".join(kinds.keys())])
