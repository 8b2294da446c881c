extends Story
## The side-on level of the demo, played as its recording plays it, and what befalls somebody who plays worse.

const Platformer := preload("res://demo/platformer/platformer.gd")
const FOLDER: String = "res://demo/platformer/"

const ABILITIES: Array[String] = [
	"Running", "Jumping", "In The Air", "On The Wall", "Catching A Ledge", "Crouching", "Dashing", "Diving", "Leaping", "Swinging", "Cheering",
]

var level: Platformer
var hero: CharacterBody2D
var machine_of_hero: SCMachine
## What each machine has been in since the story began, in order.
var been_in: Dictionary[String, Array] = {}


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super.open(in_tree, catcher)
	level = add((load(FOLDER + "platformer.tscn") as PackedScene).instantiate())
	hero = level.get_node("Player")
	machine_of_hero = hero.get_node("Machine")
	for of: SCMachine in SCMachine.machines_in_the_scene():
		var name: String = of.get_parent().name
		been_in[name] = []
		of.state_changed.connect(func(_before: SCMachineState, _now: SCMachineState) -> void: been_in[name].append_array(current_states(of)))


## Plays lines as a recording has them, until [param over], for so many seconds at most.
func play_until(over: Callable, lines: String, seconds: float) -> void:
	var player: RecordedInput = add(RecordedInput.new())
	expect(player.play_text(lines))
	for i in roundi(seconds * FPS):
		await physics_frames(1)
		if over.call():
			break
	expect(over.call(), "not within %s s: the player is at %s, in %s" % [seconds, hero.position, current_states(machine_of_hero)])
	player.free()


func hero_is(name: String) -> Callable:
	return func() -> bool: return name in current_states(machine_of_hero)


func test_each_template_is_sound() -> void:
	for file: String in ["player/player", "guard/guard", "critter/critter", "lift/lift", "lantern/lantern", "flag/flag", "hud/hud"]:
		expect_equal(SCMachineTemplate.findings_in(load("%s%s.tres" % [FOLDER, file])), [], file)


func test_the_recorded_run_reaches_the_flag() -> void:
	var player := level.play_by_itself()
	var bar: Range = level.get_node("Hud/Stamina")
	var least_stamina := 100.0
	var rode := 0.0
	var was := hero.position
	while player.is_playing():
		await physics_frames(1)
		least_stamina = minf(least_stamina, bar.value)
		if current(machine_of_hero) == &"Standing":
			rode += (hero.position - was).length()
		was = hero.position
	for ability in ABILITIES:
		expect(ability in been_in["Player"], "it never was in %s" % ability)
	expect(been_in["Flag"] == ["Hoisting", "Flying"] and (level.get_node("Flag/Cloth") as Node2D).position.y < -100.0, "the flag is up")
	expect(least_stamina < 90.0, "the bar never went below %s" % least_stamina)
	expect(rode > 450.0, "lifts carried it %s pixels" % rode)
	expect_equal(been_in["Guard1"], ["Chase", "Search", "Patrol"])
	expect("Gloat" not in been_in["Guard1"] + been_in["Guard2"] + been_in["Guard3"], "nobody caught it")
	expect_equal(been_in["Player"].has("Coming Back"), false)
	for number in range(1, 6):
		expect_equal(been_in["Lantern%d" % number], ["Lit"], "lantern %d" % number)


func test_critters_keep_apart_and_shy_away() -> void:
	var critters := level.get_node("Critters").get_children()
	hero.position = Vector2(300, 0)
	await advance(1.5)
	expect(critters.any(func(one: Node) -> bool: return "Scurrying" in been_in[one.name]), "none shied away")
	hero.position = Vector2(900, 0)
	await advance(6.0)
	for one: Node2D in critters:
		expect(one.position.x > 130.0 and one.position.x < 500.0 and one.position.y < 1.0, "%s is at %s" % [one.name, one.position])
		for other: Node2D in critters:
			expect(one == other or absf(one.position.x - other.position.x) > 8.0, "%s stands in %s" % [one.name, other.name])


func test_a_fall_leads_back_to_the_last_lantern() -> void:
	hero.position = Vector2(690, 0)
	await play_until(func() -> bool: return "Lit" in been_in["Lantern1"], "10 end", 1.0)
	hero.position = Vector2(570, 60)
	await play_until(hero_is("Coming Back"), "300 end", 3.0)
	await play_until(hero_is("Standing"), "300 end", 2.0)
	expect_near(hero.position, Vector2(696, 0), 1.0)


func test_a_guard_that_catches_somebody_sends_them_back_and_goes_on_with_its_round() -> void:
	var guard: Node2D = level.get_node("Guard1")
	hero.position = guard.position + Vector2(-90, 0)
	await play_until(hero_is("Coming Back"), "300 end", 3.0)
	expect_equal(been_in["Guard1"], ["Chase", "Gloat"])
	await play_until(hero_is("Standing"), "300 end", 2.0)
	expect_near(hero.position, Vector2(40, 0), 1.0)
	await advance(2.0)
	expect_state(guard.get_node("Machine"), "Patrol")


func test_who_clings_too_long_grows_tired_and_slips() -> void:
	machine_of_hero.set_value("stamina", 40.0)
	hero.position = Vector2(1738, -340)
	await play_until(hero_is("Slipping"), "0 down Key: D\n300 end", 4.0)
	expect("On The Wall" in been_in["Player"])
	expect_equal(machine_of_hero.get_value("stamina"), 0.0)
	await play_until(hero_is("Standing"), "300 end", 2.0)
	await advance(1.0)
	expect(machine_of_hero.get_value("stamina") > 20.0, "it does not come back")


func test_a_dash_takes_stamina_and_is_refused_without() -> void:
	# The stamina it has, and how far the dash leads.
	for row: Array in [[100.0, 128.0], [5.0, 0.0]]:
		hero.position = Vector2(300, 0)
		await advance(0.5)
		machine_of_hero.set_value("stamina", row[0])
		var player: RecordedInput = add(RecordedInput.new())
		player.play_text("0 tap Key: Shift\n20 end")
		await advance(0.25)
		expect_near(hero.position.x - 300.0, row[1], 1.0, str(row))
		expect(machine_of_hero.get_value("stamina") < 85.0, "it costs nothing")
		await advance(0.5)
		player.free()


func test_a_jump_just_after_a_ledge_and_just_before_the_ground() -> void:
	# Off the edge of the meadow at 520, and pressed three frames later; then pressed five frames before it is down again.
	for row: Array in [[Vector2(500, 0), "0 down Key: D\n9 tap Key: Space\n90 end"], [Vector2(300, -60), "16 tap Key: Space\n90 end"]]:
		hero.position = row[0]
		hero.velocity = Vector2.ZERO
		been_in["Player"].clear()
		var highest := [0.0]
		await play_until(
			func() -> bool:
				highest[0] = hero.velocity.y if hero.velocity.y < highest[0] else highest[0]
				return highest[0] < -300.0,
			row[1], 1.0)
		expect("Jumping" in been_in["Player"], str(row))


func test_it_starts_again_from_the_flag() -> void:
	hero.position = Vector2(5050, -580)
	await play_until(hero_is("Cheering"), "300 end", 1.0)
	await advance(1.0)
	await play_until(hero_is("Standing"), "2 tap Key: R\n300 end", 4.0)
	expect_near(hero.position, Vector2(40, 0), 1.0)
	await advance(1.0)
	expect_state(level.get_node("Flag/Machine"), "Waiting")
