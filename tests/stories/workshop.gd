extends Story
## The second demo scene, played as a visitor would: what each bench is for has to happen.

const Workshop := preload("res://demo/workshop/workshop.gd")
const SCENE := "res://demo/workshop/workshop.tscn"
const FOLDER := "res://demo/workshop"

var workshop: Workshop


func open_workshop() -> void:
	workshop = (load(SCENE) as PackedScene).instantiate()
	add(workshop)
	await frames(1)


func at(bench: String) -> SCMachine:
	return workshop.get_node(bench + "/Machine")


func text_of(path: String) -> String:
	return workshop.get_node(path).get("text")


## The states that a machine goes through meanwhile, one after the other.
func states_in(seconds: float, of: SCMachine) -> PackedStringArray:
	var seen := PackedStringArray([String(current(of))])
	for i in roundi(seconds * FPS):
		await frames(1)
		var now := current_states(of)[-1]
		if seen[-1] != now:
			seen.append(now)
	return seen


func test_the_shop_adds_up_and_takes_the_money() -> void:
	await open_workshop()
	var shop := at("ShopCounter")
	workshop.use("ShopCounter/Pay")
	expect_state(shop, "Open")
	expect_equal(shop.get_value("takings"), 0)
	for thing: String in ["Apple", "Tea", "Apple", "Bread"]:
		workshop.use("ShopCounter/" + thing)
	expect_equal(shop.get_value("total"), 3 + 6 + 3 + 4)
	expect_equal(text_of("ShopCounter/Till/Total"), "16")
	expect_equal(text_of("ShopCounter/Receipt/Text"), "Bread for 4\n4 in the basket")
	workshop.use("ShopCounter/Pay")
	expect_state(shop, "Thank You")
	expect_printed("Sold for 16: apple, tea, apple, bread")
	expect_equal(shop.get_value("takings"), 16)
	expect_equal(text_of("ShopCounter/Till/Total"), "0")
	await advance(1.5)
	expect_state(shop, "Open")
	workshop.use("ShopCounter/Tea")
	expect_equal(text_of("ShopCounter/Till/Total"), "6")
	expect_equal(shop.get_value("basket"), ["tea"])


func test_the_light_goes_round_and_the_car_heeds_it() -> void:
	await open_workshop()
	var light := at("TrafficLight")
	var car := at("TrafficLight/Road/Car")
	var housing := workshop.get_node("TrafficLight/Housing")
	var lit := func() -> Array: return ["Red", "Amber", "Green"].filter(func(lamp: String) -> bool: return housing.get_node(lamp).visible)
	expect_states(light, ["Day", "Red"])
	expect_equal(lit.call(), ["Red"])
	await advance(1.8)
	expect_state(car, "At The Line")
	await advance(0.4)
	expect_equal(lit.call(), ["Red", "Amber"])
	await advance(0.7)
	expect_equal(lit.call(), ["Green"])
	expect_state(car, "Leaving")
	await advance(2.2)
	expect_equal(lit.call(), ["Amber"])
	await advance(0.8)
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
	expect_equal(lit.call().has("Red"), false)
	workshop.use("TrafficLight/Night")
	expect_equal(lit.call(), ["Red"])


func test_the_countdown_comes_to_nothing_and_the_rocket_flies() -> void:
	await open_workshop()
	var countdown := at("Countdown")
	var rocket: Node2D = workshop.get_node("Countdown/Sky/Rocket")
	var on_the_pad := rocket.position
	workshop.use("Countdown/Start")
	await advance(2.5)
	expect_equal(text_of("Countdown/Board/Number"), "3")
	await advance(2.3)
	expect_state(countdown, "Counting")
	expect_equal(rocket.position, on_the_pad)
	await advance(0.4)
	expect_state(countdown, "Lift-off")
	expect_equal(countdown.get_value("launches"), 1)
	await advance(1.4)
	expect(rocket.position.y < on_the_pad.y - 100.0, "it flew: %s" % rocket.position)
	await advance(2.2)
	expect_state(countdown, "Ready")
	expect(rocket.position.is_equal_approx(on_the_pad), "it stands again: %s" % rocket.position)


func test_the_slot_machine_pays_for_alike_reels() -> void:
	await open_workshop()
	var slots := at("SlotMachine")
	var purse: int = slots.get_value("coins")
	var pays := {1: 0, 2: 2, 3: 10}
	var results: Dictionary[int, bool] = {}
	for pull in 12:
		workshop.use("SlotMachine/Lever")
		await advance(2.4)
		expect_state(slots, "Idle")
		var faces := [text_of("SlotMachine/Reels/Left"), text_of("SlotMachine/Reels/Middle"), text_of("SlotMachine/Reels/Right")]
		var alike := int(faces.map(func(face: String) -> int: return faces.count(face)).max())
		results[alike] = true
		purse += int(pays[alike]) - 1
		expect_equal(slots.get_value("coins"), purse, "after %s" % [faces])
	expect(results.size() > 1, "chance has its say: %s" % results)


func test_a_flower_grows_at_every_spawn_point() -> void:
	await open_workshop()
	var garden := at("Garden")
	var beds := workshop.get_node("Garden/Beds").get_children()
	var grown := func() -> int: return beds.filter(func(flower: Node2D) -> bool: return is_equal_approx(flower.scale.x, 1.0)).size()
	expect_equal(grown.call(), 0)
	await advance(1.5)
	expect_equal(grown.call(), 2)
	await advance(2.0)
	expect_state(garden, "In Bloom")
	expect_equal(grown.call(), 5)
	var colors: Dictionary[Color, bool] = {}
	for flower: Polygon2D in beds:
		colors[flower.color] = true
	expect_equal(colors.size(), 5)
	await advance(1.8)
	expect_state(garden, "Cutting")
	await advance(0.8)
	expect_state(garden, "Sowing")
	expect_equal(grown.call(), 0)


func test_the_platform_goes_there_and_back_and_the_owl_watches() -> void:
	await open_workshop()
	var ferry := at("Ferry")
	var owl := at("Ferry/Owl")
	var platform: Node2D = workshop.get_node("Ferry/Platform")
	expect_state(owl, "Dozing")
	await advance(3.5)
	expect_state(ferry, "Yonder")
	expect(platform.position.is_equal_approx(Vector2(216, 62)), "%s" % platform.position)
	expect_state(owl, "Watching")
	await advance(1.8)
	expect_state(ferry, "Coming Back")
	var percent: float = ferry.get_value("percent")
	expect(percent > 5.0 and percent < 95.0, "under way at %s" % percent)
	expect_equal(text_of("Ferry/Percent"), "%d %% of the way" % roundi(percent))
	await advance(2.0)
	expect_state(ferry, "Here")
	expect(platform.position.is_equal_approx(Vector2(36, 100)), "%s" % platform.position)
	expect_state(owl, "Dozing")


func test_the_lamp_fades_and_the_moth_goes_by_it() -> void:
	await open_workshop()
	var lamp := at("MoodLamp")
	var moth := at("MoodLamp/Moth")
	var light: Node2D = workshop.get_node("MoodLamp/Light")
	var first := light.modulate
	await advance(1.0)
	var second := light.modulate
	await advance(1.0)
	expect(first != second and second != light.modulate)
	expect_state(moth, "Fluttering")
	var turns := await states_in(5.0, lamp)
	expect(turns.has("Warming") and turns.has("Cooling"), "%s" % [turns])
	workshop.use("MoodLamp/Switch")
	expect(not light.visible)
	await advance(2.0)
	expect_state(moth, "Resting")
	workshop.use("MoodLamp/Switch")
	await advance(0.2)
	expect(light.visible)
	expect_state(moth, "Fluttering")


func test_the_pinwheel_whirls_and_comes_to_its_old_speed() -> void:
	await open_workshop()
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
	await open_workshop()
	var door := at("PasswordDoor")
	var leaf: Node2D = workshop.get_node("PasswordDoor/Leaf")
	workshop.use("PasswordDoor/Word=feather")
	expect_state(door, "Refusing")
	expect_equal(text_of("PasswordDoor/Answer"), "“feather” is wrong (1)")
	await advance(0.6)
	(workshop.get_node("PasswordDoor/Word") as LineEdit).text = "  Quill "
	workshop.use("PasswordDoor/Knock")
	expect_equal(text_of("PasswordDoor/Word"), "")
	await advance(1.0)
	expect_state(door, "Open")
	expect_near(leaf.scale.x, 0.12)
	await advance(2.5)
	expect_state(door, "Locked")
	expect_near(leaf.scale.x, 1.0)


func test_the_game_slows_down_and_goes_on() -> void:
	await open_workshop()
	await advance(1.0)
	expect_near(text_of("SlowMotion/Clock/Time").to_float(), 1.0, 0.11)
	workshop.use("SlowMotion/Slow")
	expect_near(Engine.time_scale, 0.25)
	await advance(1.5)
	expect_near(Engine.time_scale, 0.25)
	await advance(1.0)
	expect_near(Engine.time_scale, 1.0)
	expect_state(at("SlowMotion"), "Usual Speed")


func test_tea_is_made_by_a_template_inside_a_state() -> void:
	await open_workshop()
	var kitchen := at("TeaKitchen")
	workshop.use("TeaKitchen/Brew")
	var inner: SCMachine = workshop.get_node("TeaKitchen/BrewRunning")
	expect_state(inner, "Boiling")
	expect(workshop.get_node("TeaKitchen/Steam").get("visible"))
	await advance(1.5)
	expect_state(inner, "Steeping")
	await advance(1.2)
	expect_state(kitchen, "Served")
	expect_equal(kitchen.get_value("cups"), 1)
	expect_equal(text_of("TeaKitchen/Told"), "Cup 1 is ready")
	expect(not is_instance_valid(inner))


func test_the_safe_takes_both_keys() -> void:
	await open_workshop()
	var safe := at("Safe")
	workshop.use("Safe/LeftKey")
	await advance(0.3)
	expect_state(safe, "Shut")
	workshop.use("Safe/RightKey")
	await advance(0.8)
	expect_state(safe, "Open")
	expect_near(workshop.get_node("Safe/Inside/Hatch").get("position").y, -84.0)
	workshop.use("Safe/LeftKey")
	await advance(0.8)
	expect_state(safe, "Shut")


func test_the_notice_board_tells_of_other_benches() -> void:
	await open_workshop()
	expect_equal(text_of("NoticeBoard/Text"), "The light shows red.")
	workshop.use("ShopCounter/Tea")
	workshop.use("ShopCounter/Pay")
	await advance(2.6)
	expect_equal(text_of("NoticeBoard/Text"), "The shop has taken 6 coins today.")
	await advance(2.4)
	expect_equal(text_of("NoticeBoard/Text"), "12 coins are left for the slot machine.")
	await advance(2.4)
	expect_equal(text_of("NoticeBoard/Text"), "The light shows red.")
	expect_printed("Sold for 6: tea")


func test_at_least_forty_kinds_are_at_work_and_none_is_a_script() -> void:
	var kinds: Dictionary[StringName, bool] = {}
	for design in _designs_in(FOLDER):
		for one: SCMachineState in design.all_states():
			for action: SCMachineAction in one.actions:
				expect(action.get_script() == null, "%s has an action made from a script" % design)
				kinds[action.get_class()] = true
				var asked: Variant = action.get("condition")
				if asked is SCMachineCondition:
					kinds[(asked as SCMachineCondition).get_class()] = true
	expect(kinds.size() >= 40, "%d kinds: %s" % [kinds.size(), ", ".join(kinds.keys())])


func _designs_in(folder: String) -> Array[SCMachineTemplate]:
	var found: Array[SCMachineTemplate] = []
	for file in DirAccess.get_files_at(folder):
		if file.ends_with(".tres"):
			var design := load(folder.path_join(file)) as SCMachineTemplate
			if design != null:
				found.append(design)
	for inner in DirAccess.get_directories_at(folder):
		found.append_array(_designs_in(folder.path_join(inner)))
	return found
