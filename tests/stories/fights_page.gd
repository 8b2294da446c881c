extends "res://tests/stories/files/page_story.gd"
## The page for somebody's first fight, done as it says: its tables make the scene, the sword and the templates, which are those of
## the demo, and three blows end the slime.

const FOLDER := "res://demo/first_fight/"
const LEFT := &"ui_left"
const RIGHT := &"ui_right"
const ATTACK := &"ui_accept"

## That of the page, compiled once.
static var compiled: GDScript

var meadow: Node2D
var player: CharacterBody2D
var slime: CharacterBody2D
var sword: Resource


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	page = FileAccess.get_file_as_string("res://docs/fights.md")


func close() -> void:
	for input: StringName in [LEFT, RIGHT, ATTACK]:
		Input.action_release(input)
	sword = null
	await super()


func test_the_tables_of_the_page_make_the_demo() -> void:
	_make_all()
	for file: String in made:
		expect_equal(told(made[file]), told(load(FOLDER + file)), file)
		expect_equal(SCMachineTemplate.findings_in(made[file]), [], file)
	expect_equal(told(sword), told(load(FOLDER + "sword.tres")))
	var saved: Node = (load(FOLDER + "first_fight.tscn") as PackedScene).instantiate()
	expect_equal(told(meadow), told(saved))
	saved.free()
	meadow.free()


func test_three_blows_end_the_slime() -> void:
	await _play()
	var from := slime.position.x
	expect_equal(_health(slime), 9.0)
	for blow in 3:
		await _walk_up()
		await _tap(ATTACK)
		expect_state(_machine(player), "Attacking")
		expect(player.has_node(^"SwungWeapon"), "no sword is to be seen")
		var has_blinked := false
		for i in 40:
			await frames(1)
			has_blinked = has_blinked or slime.visibility_layer == 0
		expect_equal([_health(slime), has_blinked], [6.0 - 3.0 * blow, blow < 2])
		expect_state(_machine(player), "Walking")
		expect(blow == 2 or slime.position.x > from + 30.0, "it is not thrown back: from %s to %s" % [from, slime.position.x])
		from = slime.position.x
	expect_state(_machine(slime), "Gone")
	expect(not slime.visible)
	expect_events(_machine(slime), ["HURT", "HURT", "DIED"])


func test_it_hurts_to_touch_and_the_player_comes_back() -> void:
	await _play(func() -> void:
		build(meadow, tables("It hurts to touch")[0])
		for table: Array in tables("Getting health back"):
			put_in(made["player.tres"], table))
	expect_equal(SCMachineTemplate.findings_in(made["player.tres"]), [])
	player.position.x = slime.position.x - 34.0
	# Into it again and again, as it throws the player back.
	Input.action_press(RIGHT)
	for i in 600:
		await physics_frames(1)
		if current(_machine(player)) == &"Beaten":
			break
	Input.action_release(RIGHT)
	expect_equal(_health(player), 0.0)
	expect_events(_machine(player), ["HURT", "HURT", "HURT", "HURT", "DIED"])
	expect(not player.visible)
	player.position.x = 100.0
	await _tap(ATTACK)
	expect_state(_machine(player), "Walking")
	expect_equal([_health(player), player.visible], [5.0, true])


func test_poison() -> void:
	await _play(func() -> void: put_in(made["player.tres"], tables("Poison, hunger, lava")[0]))
	_machine(player).go_to(&"Poisoned")
	await advance(2.5)
	expect_equal(_health(player), 2.0)


func test_what_the_script_of_the_page_does() -> void:
	await _play()
	if compiled == null:
		compiled = GDScript.new()
		compiled.source_code = all_of(r"```gdscript\n([\s\S]+?)```")[0]
		expect_equal(compiled.reload(), OK)
	var cloud: Node = add(compiled.new() as Node)
	cloud.call(&"strike_by_lightning", slime)
	expect_equal(cloud.get(&"beaten"), 1)
	expect_state(_machine(slime), "Gone")
	var box := slime.get_node(^"HurtBox")
	for method: String in all_of(r"`([a-z]+_[a-z]+|heal)`"):
		expect(box.has_method(method), method)


func test_what_the_page_names_is_there() -> void:
	var classes := ProjectSettings.get_global_class_list().map(func(row: Dictionary) -> String: return row["class"])
	for name: String in all_of(r"\b(SC[A-Z]\w+)"):
		expect(ClassDB.class_exists(name) or name in classes, name)
	var box := SCHurtBox.new()
	var shown := shown_settings(box).map(_as_shown)
	box.free()
	for setting: String in ["Health Variable", "Defence Variable", "Damage Types", "Knockback", "Invincible Seconds", "Blinks", "Store Attacker In", "Can Be Hurt"]:
		expect(setting in shown and "**%s**" % setting in page.replace("\n  ", " "), setting)


func _make_all() -> void:
	var made_by := tables("2. A sword")[0] as Array
	sword = SCItem.new()
	for row: Array in made_by.slice(1):
		set_as_typed(sword, row[1], row[2])
	meadow = Node2D.new()
	meadow.name = "Meadow"
	build(meadow, tables("1. The meadow")[0])
	player = meadow.get_node(^"Player")
	slime = meadow.get_node(^"Slime")
	var stack := SCItemStack.new()
	stack.item = sword
	var held: Array[SCItemStack] = [stack]
	player.get_node(^"Worn").set(&"held", held)
	for row: Array in [["player.tres", "3. The player", player], ["slime.tres", "4. The slime", slime]]:
		var design := SCMachineTemplate.new()
		put_in(design, tables(row[1])[0])
		design.initial_state = design.states[0]
		made[row[0]] = design
		_machine(row[2]).template = design


func _play(change: Callable = Callable()) -> void:
	_make_all()
	if change.is_valid():
		change.call()
	add(meadow)
	for of: Node in [player, slime]:
		_follow(_machine(of))
	await advance(0.1)


func _walk_up() -> void:
	Input.action_press(RIGHT)
	for i in 120:
		await physics_frames(1)
		if slime.position.x - player.position.x < 70.0:
			break
	Input.action_release(RIGHT)
	await frames(2)


func _machine(of: Node) -> SCMachine:
	return of.get_node(^"Machine")


func _health(of: Node) -> float:
	return _machine(of).get_value(&"health")


func _tap(input: StringName) -> void:
	Input.action_press(input)
	await frames(2)
	Input.action_release(input)
	await frames(1)


func _script_class(of: String) -> GDScript:
	for global in ProjectSettings.get_global_class_list():
		if global["class"] == of:
			return load(global["path"])
	return null


func _instantiated(of: String) -> Object:
	var script := _script_class(of)
	return script.new() if script != null else super(of)


func _meant(on: Object, shown: Dictionary, typed: String) -> Variant:
	if shown["name"] == "slot_names":
		var names: Array[StringName] = [typed]
		return names
	return super(on, shown, typed)
