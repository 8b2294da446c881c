extends "res://tests/stories/files/page_story.gd"
## The page for somebody's first characters, done as it says: its tables make the scene and the templates, which are those of the
## demo, and the guard goes after who jumps over the wall.

const FOLDER := "res://demo/first_character/"
const LEFT := &"ui_left"
const RIGHT := &"ui_right"
const UP := &"ui_up"
const DOWN := &"ui_down"
const JUMP := &"ui_accept"
const Move := preload("res://addons/quillstead/runtime/quillstead_move.gd")

## Those of the page, compiled once.
static var scripts: Array[GDScript] = []

var yard: Node2D
var player: CharacterBody2D
var guard: CharacterBody2D


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	page = FileAccess.get_file_as_string("res://docs/characters.md")


func close() -> void:
	for input: StringName in [LEFT, RIGHT, UP, DOWN, JUMP]:
		Input.action_release(input)
	await super()


func test_the_tables_of_the_page_make_the_scene_and_the_templates_of_the_demo() -> void:
	_make_all()
	for file: String in made:
		expect_equal(told(made[file]), told(load(FOLDER + file)), file)
		expect_equal(SCMachineTemplate.findings_in(made[file]), [], file)
	var saved: Node = (load(FOLDER + "first_character.tscn") as PackedScene).instantiate()
	expect_equal(told(yard), told(saved))
	saved.free()
	yard.free()


func test_the_character_walks_and_jumps() -> void:
	_play_the_page()
	await advance(0.2)
	var feet := player.position.y
	Input.action_press(RIGHT)
	await advance(0.2)
	expect_near(player.velocity.x, 200.0, 0.01)
	Input.action_press(LEFT)
	Input.action_release(RIGHT)
	await advance(0.3)
	expect_near(player.velocity.x, -200.0, 0.01)
	expect((player.get_node(^"Sprite2D") as Sprite2D).flip_h)
	Input.action_release(LEFT)
	# Held for how many seconds, and how high it gets at least and at most.
	for row: Array in [[0.6, 95.0, 97.0], [0.05, 20.0, 60.0]]:
		await advance(1.0)
		expect_near(player.position.y, feet, 0.1)
		var rise := feet - await _highest_of_a_jump(row[0])
		expect(rise > row[1] and rise < row[2], "held for %s s it rose %s" % [row[0], rise])


func test_the_guard_goes_after_the_character_and_back_to_its_round() -> void:
	_play_the_page()
	var watch := _machine(guard)
	watch.debug_log = true
	# On its round from marker to marker, with the character behind the wall.
	for marker: String in ["Near", "Far", "Near"]:
		expect_state(watch, "Patrol")
		await _until(func() -> bool: return absf(guard.position.x - (yard.get_node(marker) as Node2D).position.x) < 33.0, 10.0)
	# Over the wall, up to the guard and back.
	Input.action_press(RIGHT)
	await advance(0.75)
	Input.action_press(JUMP)
	await _until(func() -> bool: return player.position.x > 470.0, 2.0)
	Input.action_release(JUMP)
	Input.action_release(RIGHT)
	await _until(func() -> bool: return _is_in(watch, "Chase"), 3.0)
	var before := guard.position.x
	await advance(0.3)
	expect(guard.position.x < before and guard.get_meta(&"quillstead_faces_left"), "it does not come")
	Input.action_press(LEFT)
	Input.action_press(JUMP)
	await advance(1.0)
	Input.action_release(JUMP)
	Input.action_release(LEFT)
	expect(player.position.x < 330.0, "it got to %s" % player.position)
	expect_state(watch, "Chase")
	await advance(1.5)
	expect(guard.position.x > 400.0, "the wall did not hold it")
	await _until(func() -> bool: return _is_in(watch, "Search"), 1.5)
	await _until(func() -> bool: return _is_in(watch, "Patrol"), 4.0)
	before = guard.position.x
	await advance(1.0)
	expect(guard.position.x > before + 50.0, "it does not walk on")
	for change: String in all_of(r"`(\w+ -> \w+)`"):
		expect_printed(change)


func test_how_the_jump_feels() -> void:
	var floaty := await _character("How the jump feels", 200.0)
	expect_equal(SCMoveCharacterAction.feels()[SCMoveCharacterAction.FLOATY][0], floaty.get(&"falls_faster_than_it_rises"))
	var feet := player.position.y
	expect_near(feet - await _highest_of_a_jump(1.2), 128.0, 1.5)


func test_jumping_off_walls() -> void:
	await _character("Jumping off walls", 360.0)
	((yard.get_node(^"Wall/CollisionShape2D") as CollisionShape2D).shape as RectangleShape2D).size.y = 1000.0
	Input.action_press(RIGHT)
	await _highest_of_a_jump(0.5)
	await advance(0.3)
	expect(player.is_on_wall(), "it is on no wall")
	var at := player.position
	await advance(0.25)
	expect_near(player.position.y - at.y, 12.0, 1.0)
	at = player.position
	await _tap(JUMP)
	await advance(0.15)
	expect(player.position.x < at.x - 20.0 and player.position.y < at.y - 20.0, "it went from %s to %s" % [at, player.position])


func test_dash() -> void:
	await _character("Dash", 200.0, 1000.0)
	var at := player.position.x
	await _key(KEY_SHIFT)
	expect_state(_machine(player), "Dash")
	await advance(0.3)
	expect_near(player.position.x - at, 160.0, 1.0)
	expect_states(_machine(player), ["Playing", "Ready"])
	await _key(KEY_SHIFT)
	await advance(0.3)
	expect_near(player.position.x - at, 160.0, 1.0)
	await _key(KEY_SHIFT)
	await advance(0.3)
	expect_near(player.position.x - at, 320.0, 2.0)


func test_crouch() -> void:
	await _character("Crouch", 200.0)
	yard.get_node(^"Wall").set(&"position", Vector2(300, 474))
	Input.action_press(DOWN)
	await advance(0.1)
	expect_states(_machine(player), ["Playing", "Crouch"])
	Input.action_press(RIGHT)
	await advance(0.5)
	Input.action_release(RIGHT)
	Input.action_release(DOWN)
	await advance(0.3)
	expect(absf(player.position.x - 300.0) < 30.0, "it stands at %s" % player.position)
	expect_states(_machine(player), ["Playing", "Crouch"])
	Input.action_press(RIGHT)
	await advance(0.5)
	expect_states(_machine(player), ["Playing", "Ready"])


func test_climbing_a_ledge() -> void:
	await _character("Climbing", 360.0)
	Input.action_press(RIGHT)
	await advance(0.3)
	await _tap(UP)
	expect_state(_machine(player), "Climb")
	Input.action_release(RIGHT)
	await advance(0.6)
	expect_states(_machine(player), ["Playing", "Ready"])
	expect_near(player.position.y + 32.0, 472.0, 1.0)


func test_climbing_a_ladder() -> void:
	await _character("Climbing", 800.0, 1100.0, [2, 3, 4])
	await _tap(UP)
	expect_state(_machine(player), "Ladder")
	var at := player.position.y
	Input.action_press(UP)
	await advance(1.0)
	expect_near(at - player.position.y, 96.0, 5.0)
	Input.action_release(UP)
	at = player.position.y
	await advance(0.5)
	expect_near(player.position.y, at, 0.1)
	Input.action_press(RIGHT)
	await advance(1.0)
	expect_states(_machine(player), ["Playing", "Ready"])
	await _until(func() -> bool: return player.is_on_floor(), 2.0)


func test_swimming() -> void:
	await _character("Swimming", 800.0, 1100.0)
	var sinks: float = (player.get_node(^"Machine") as SCMachine).template.states[0].actions.back().get(&"settles_at")
	Input.action_press(UP)
	await advance(1.0)
	expect_near(player.velocity.y, -64.0, 1.0)
	Input.action_release(UP)
	await advance(0.5)
	expect_near(player.velocity.y, sinks, 1.0)


func test_pushing_boxes() -> void:
	# How far the stick is pushed, how heavy the box is.
	for row: Array in [[1.0, 1.0], [1.0, 30.0], [0.6, 1.0]]:
		await _character("Pushing boxes", 200.0, 1100.0)
		var box := boxed(RigidBody2D.new(), Vector2(48, 48)) as RigidBody2D
		box.mass = row[1]
		box.lock_rotation = true
		box.add_to_group(&"boxes")
		box.position = Vector2(300, 528)
		yard.add_child(box)
		await advance(0.3)
		var at := box.position.x
		expect_near(box.linear_velocity.x, 0.0, 0.5)
		Input.action_press(RIGHT, row[0])
		var fastest := 0.0
		for i in 120:
			await physics_frames(1)
			fastest = maxf(fastest, box.linear_velocity.x)
		var walks: float = 200.0 * row[0]
		expect(fastest > walks * 0.8 and fastest <= walks + 0.5, "%s: the box got %s fast" % [row, fastest])
		expect(box.position.x > at + walks * 0.5, "%s: it got from %s to %s" % [row, at, box.position.x])
		expect(box.position.x > player.position.x + 39.0, "they stand in each other")
		# Away from it, and with a jump beside it.
		Input.action_release(RIGHT)
		await advance(1.0)
		at = box.position.x
		Input.action_press(LEFT)
		await advance(0.5)
		expect_near(box.position.x, at, 1.0)
		Input.action_release(LEFT)
		Input.action_press(RIGHT)
		await advance(0.7)
		var feet := player.position.y
		expect(feet - await _highest_of_a_jump(0.5) > 90.0, "%s: no jump while it pushes" % [row])
		Input.action_release(RIGHT)
		yard.free()


func test_all_of_it_put_together() -> void:
	_make_all()
	guard.free()
	var design := made["player.tres"]
	for recipe: String in ["How the jump feels", "Jumping off walls", "Dash", "Crouch", "Climbing", "Swimming", "Pushing boxes"]:
		_apply(recipe, design)
	add(yard)
	await advance(0.3)
	var feet := player.position.y
	Input.action_press(RIGHT)
	await advance(0.3)
	expect(player.velocity.x > 150.0, "it walks at %s" % player.velocity)
	Input.action_release(RIGHT)
	expect_near(feet - await _highest_of_a_jump(1.2), 128.0, 1.5)


func test_guards_that_find_their_way() -> void:
	for has_a_way: bool in [true, false]:
		_make_all()
		player.free()
		if has_a_way:
			_apply("Guards that find their way", made["guard.tres"])
		else:
			for table: Array in tables("Guards that find their way").slice(1):
				put_in(made["guard.tres"], table)
		guard.motion_mode = CharacterBody2D.MOTION_MODE_FLOATING
		guard.position = Vector2(300, 100)
		(yard.get_node(^"Ground") as Node2D).position.y = 5000.0
		(yard.get_node(^"Wall") as Node2D).position = Vector2(400, 100)
		(yard.get_node(^"Near") as Node2D).position = Vector2(500, 100)
		(yard.get_node(^"Far") as Node2D).position = Vector2(300, 100)
		# Below the wall there is room to pass.
		var mesh := NavigationPolygon.new()
		mesh.vertices = PackedVector2Array([
			Vector2(200, 50), Vector2(330, 50), Vector2(470, 50), Vector2(600, 50),
			Vector2(200, 210), Vector2(330, 210), Vector2(470, 210), Vector2(600, 210),
			Vector2(200, 300), Vector2(600, 300)])
		for polygon: Array in [[0, 1, 5, 4], [2, 3, 7, 6], [4, 5, 6, 7, 9, 8]]:
			mesh.add_polygon(PackedInt32Array(polygon))
		var region := NavigationRegion2D.new()
		region.navigation_polygon = mesh
		yard.add_child(region)
		add(yard)
		_ready_at_once(NavigationServer2D, region, tree.root.find_world_2d().navigation_map)
		await advance(5.0)
		expect_equal(guard.position.x > 440.0, has_a_way, "it stands at %s" % guard.position)
		yard.free()


func test_crowds() -> void:
	for keeps_apart: bool in [true, false]:
		_make_all()
		var design := made["guard.tres"]
		if keeps_apart:
			_apply("Crowds", design)
		(yard.get_node(^"Wall") as Node).free()
		guard.collision_layer = 2
		guard.collision_mask = 1
		guard.add_to_group(&"guards", true)
		_machine(player).free()
		player.collision_layer = 2
		player.position.x = 500.0
		var guards: Array[Node2D] = [guard]
		guard.position.x = 620.0
		for i in 3:
			var another: CharacterBody2D = guard.duplicate()
			another.position.x = 660.0 + 40.0 * i
			yard.add_child(another)
			guards.append(another)
		add(yard)
		for one in guards:
			var senses := one.get_node(^"Perception")
			senses.call(&"notice", player)
			_machine(one).go_to(&"Chase")
		await advance(3.0)
		for one in guards:
			expect_state(_machine(one), "Chase")
			for other in guards:
				if one != other:
					var apart := absf(one.position.x - other.position.x)
					expect(apart > 15.0 if keeps_apart else apart < 15.0, "%s apart, %s" % [apart, keeps_apart])
		yard.free()


func test_in_3d() -> void:
	in_2d = false
	var walker := _template("player.tres", tables("2. A character"))
	walker.states[0].start_sub_state = walker.states[0].sub_states[0]
	for table: Array in tables("In 3D"):
		put_in(walker, table)
	expect_equal(SCMachineTemplate.findings_in(walker), [])
	var ground := boxed(StaticBody3D.new(), Vector3(40, 2, 40)) as StaticBody3D
	ground.position.y = -1.0
	add(ground)
	var body := boxed(CharacterBody3D.new(), Vector3(0.8, 1.6, 0.8)) as CharacterBody3D
	body.position.y = 0.81
	add(body)
	var camera := Camera3D.new()
	camera.position = Vector3(5, 4, 0)
	camera.rotation = Vector3(-0.4, PI / 2.0, 0)
	add(camera)
	camera.make_current()
	start(running(walker, {"under": body}))
	await advance(0.3)
	Input.action_press(UP)
	await advance(0.5)
	expect_near(body.velocity, Vector3(-5, 0, 0), 0.01)
	Input.action_release(UP)
	await advance(0.5)
	var feet := body.position.y
	var highest := feet
	Input.action_press(JUMP)
	for i in 60:
		await physics_frames(1)
		highest = maxf(highest, body.position.y)
	expect_near(highest - feet, 2.0, 0.05)


func test_what_the_scripts_of_the_page_do() -> void:
	if scripts.is_empty():
		for text: String in all_of(r"```gdscript\n([\s\S]+?)```"):
			scripts.append(GDScript.new())
			scripts.back().source_code = text
			expect_equal(scripts.back().reload(), OK)
	_make_all()
	guard.free()
	yard.get_node(^"Wall").free()
	var walks: SCMachineAction = scripts[0].new()
	_machine(player).free()
	var walker := running(template([state("Walk", [walks])]), {"under": player})
	add(yard)
	start(walker)
	await advance(0.5)
	expect_near(player.velocity, Vector2(120, 0), 0.01)
	var trampoline: Area2D = boxed(Area2D.new(), Vector2(40, 40))
	trampoline.set_script(scripts[1])
	trampoline.position = player.position + Vector2(80, 0)
	yard.add_child(trampoline)
	var at := player.position
	await _until(func() -> bool: return player.has_meta(&"quillstead_push"), 1.0)
	await advance(0.1)
	expect(player.position.y < at.y - 15.0, "it rose to %s" % player.position)
	at = player.position
	await advance(0.05)
	expect_near(player.position.x - at.x, 420.0 * 0.05, 1.0)
	await advance(0.5)
	expect(not player.has_meta(&"quillstead_push"))


func test_what_the_page_says_is_noted_on_a_body() -> void:
	var told_of := all_of(r"`(quillstead_[a-z_]+)`").filter(func(key: String) -> bool: return not key.ends_with("quillstead_move"))
	var seen := {}
	var look := func() -> void:
		for node: Node in stage.find_children("*", "", true, false):
			for key in node.get_meta_list():
				seen[String(key)] = true
	# A character that swims, steps and jumps, and is blown about.
	var p := await _character("How the jump feels", 800.0, 1100.0)
	p.set(&"gravity", 900.0)
	build(yard, tables("Swimming")[0])
	put_in(_machine(player).template, tables("Swimming")[1])
	_machine(player).template.states[0].actions.push_front(SCStepUpAction.new())
	_machine(player).start()
	Input.action_press(LEFT)
	await advance(0.2)
	look.call()
	Input.action_press(JUMP)
	await advance(0.1)
	Move.add_push(player, Vector2(50, 0))
	await physics_frames(2)
	look.call()
	(player.get_node(^"Sprite2D") as Sprite2D).set_meta(&"quillstead_art_faces_left", true)
	await advance(0.1)
	expect(not (player.get_node(^"Sprite2D") as Sprite2D).flip_h, "a picture that is drawn facing left was flipped to face left")
	look.call()
	yard.free()
	# A guard in 3D, on a mesh.
	var mesh := NavigationMesh.new()
	mesh.vertices = PackedVector3Array([Vector3(-5, 0, -5), Vector3(-5, 0, 5), Vector3(5, 0, 5), Vector3(5, 0, -5)])
	mesh.add_polygon(PackedInt32Array([0, 1, 2, 3]))
	var region := NavigationRegion3D.new()
	region.navigation_mesh = mesh
	add(region)
	_ready_at_once(NavigationServer3D, region, tree.root.find_world_3d().navigation_map)
	var body := boxed(CharacterBody3D.new(), Vector3.ONE)
	body.set(&"position", Vector3(-1, 0.9, -1))
	body.add_child(NavigationAgent3D.new())
	add(body)
	start(machine([state("Go", [kind(SCNavigateToAction, {"to": Vector3(3, 0, 3), "falls": false})])], {"under": body}))
	await _until(func() -> bool: return body.get_child(1).has_meta(&"quillstead_height"), 2.0)
	look.call()
	for key: String in told_of:
		expect(seen.has(key), "%s is not noted" % key)


func test_what_the_page_names_is_there() -> void:
	for picture: String in all_of(r"\]\((pictures/[^)]+)\)"):
		expect(FileAccess.file_exists("res://docs/" + picture), picture)
	for kind: String in all_of(r"\b(SC[A-Z]\w+)"):
		expect(ClassDB.class_exists(kind), kind)


func _is_in(of: SCMachine, state_name: String) -> bool:
	return state_name in current_states(of)


func _machine(of: Node) -> SCMachine:
	return of.get_node(^"Machine")


func _make_all() -> void:
	yard = Node2D.new()
	yard.name = "Yard"
	build(yard, tables("1. The yard")[0])
	var walker := _template("player.tres", tables("2. A character"))
	walker.states[0].start_sub_state = walker.states[0].sub_states[0]
	var guard_tables := tables("3. A guard")
	build(yard, guard_tables[0])
	_template("guard.tres", guard_tables.slice(1))
	player = yard.get_node(^"Player")
	guard = yard.get_node(^"Guard")
	_machine(player).template = made["player.tres"]
	_machine(guard).template = made["guard.tres"]


func _template(file: String, from: Array) -> SCMachineTemplate:
	var design := SCMachineTemplate.new()
	for table: Array in from:
		put_in(design, table)
	design.initial_state = design.states[0]
	made[file] = design
	return design


func _play_the_page() -> void:
	_make_all()
	add(yard)


## Does all that stands under a heading, or only some of its tables, to the scene and to that template.
func _apply(heading: String, design: SCMachineTemplate, only: Array = []) -> void:
	var all := tables(heading)
	for i in all.size():
		if not only.is_empty() and i not in only:
			continue
		if "Below" in all[i][0]:
			build(yard, all[i])
		else:
			put_in(design, all[i])
	expect_equal(SCMachineTemplate.findings_in(design), [], heading)


## The character of the page with a recipe, on the ground at that place, alone. Answers its Move Character.
func _character(recipe: String, x: float, wall: float = 400.0, only: Array = []) -> SCMachineAction:
	_make_all()
	guard.free()
	player.position.x = x
	(yard.get_node(^"Wall") as Node2D).position.x = wall
	_apply(recipe, made["player.tres"], only)
	add(yard)
	await advance(0.3)
	return action_of(made["player.tres"].states[0], "SCMoveCharacterAction")


## Meshes are made ready on other threads, which know nothing of the time of a story.
func _ready_at_once(server: Object, region: Node, map: RID) -> void:
	server.call(&"map_set_use_async_iterations", map, false)
	server.call(&"region_set_use_async_iterations", region.call(&"get_rid"), false)


func _highest_of_a_jump(held: float) -> float:
	var highest := player.position.y
	Input.action_press(JUMP)
	for i in 90:
		await physics_frames(1)
		highest = minf(highest, player.position.y)
		if i >= held * FPS:
			Input.action_release(JUMP)
			if player.velocity.y >= 0.0:
				break
	return highest


func _tap(input: StringName) -> void:
	Input.action_press(input)
	await frames(2)
	Input.action_release(input)
	await frames(1)


func _key(code: Key) -> void:
	for is_down: bool in [true, false]:
		var event := InputEventKey.new()
		event.keycode = code
		event.physical_keycode = code
		event.pressed = is_down
		Input.parse_input_event(event)
		await frames(2)


func _until(what: Callable, seconds: float) -> void:
	for i in int(seconds * FPS):
		if what.call():
			return
		await physics_frames(1)
	expect(false, "it did not come to that within %s s" % seconds)
