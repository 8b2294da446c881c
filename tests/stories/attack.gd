extends PhysicsStory
## A character swings what it has in hand.

const HurtBox := preload("res://addons/quillstead/runtime/hurt_box.gd")
const Move := preload("res://addons/quillstead/runtime/quillstead_move.gd")
const SPELT := "Is it spelt as in the Variables tab?"


func foe(x: float, y: float = 0.0, z: float = 0.0, name: String = "Foe") -> Node:
	var made := block(x, y, 0.4, 0.4, name)
	made.set(&"position", at(x, y, z))
	made.add_to_group(&"enemies")
	add(HurtBox.new(), "HurtBox", {"under": made, "invincible_seconds": 0.0, "blinks": false})
	asker(made, {"name": "Brain", "variables": {"health": 1000.0}})
	return made


func lost(of: Node) -> float:
	return 1000.0 - float((of.get_node("Brain") as SCMachine).get_value(&"health"))


func hero() -> Node:
	return _solid(CharacterBody3D.new() if in_3d else CharacterBody2D.new(), at(0.0, 0.0), 0.4, 0.4, "Hero")


func attack(settings: Dictionary = {}) -> Resource:
	return kind(SCAttackAction, {"unarmed_reach": far(2.0), "strength_variable": &"", "hit_event": &"hit"}.merged(settings, true))


## In Stand until "go", then one swing, then in Stand again. Its hits lead nowhere.
func brawler(body: Node, settings: Dictionary = {}, variables: Dictionary = {}) -> SCMachine:
	return start(machine([state("Stand", [], {"go": "Swing"}), state("Swing", [attack(settings)], {"FINISHED": "Stand"})],
		{"under": body, "variables": {"foe": null}.merged(variables, true)}))


func wear(body: Node, settings: Dictionary, slot: StringName = &"Weapon") -> void:
	var item: Resource = (load("res://addons/quillstead/runtime/item.gd") as GDScript).new()
	for name: String in {"equips_to": slot, "damage": 5.0}.merged(settings, true):
		item.set(name, settings.get(name, {"equips_to": slot, "damage": 5.0}.get(name)))
	var bag: Node = (load("res://addons/quillstead/runtime/bag.gd") as GDScript).new()
	var slots: Array[StringName] = [slot]
	bag.set(&"slot_names", slots)
	bag.name = "Worn"
	body.add_child(bag)
	expect_equal(bag.call(&"add", item, 1), 1)


func ahead() -> Vector3:
	return Vector3(0, 0, -1) if in_3d else Vector3(1, 0, 0)


## That far ahead of a hero who never moved.
func foe_ahead(metres: float, name: String = "Foe") -> Node:
	var place := ahead() * metres
	return foe(place.x, place.y, place.z, name)


func test_a_swing() -> void:
	await on_both_sides(func() -> void:
		var who := hero()
		var near := foe_ahead(1.0)
		var behind := foe_ahead(-1.0, "Behind")
		var out := foe_ahead(2.3, "OutOfReach")
		var bystander := foe_ahead(1.0, "Bystander")
		bystander.remove_from_group(&"enemies")
		add(HurtBox.new(), "HurtBox", {"under": who})
		var owner := brawler(who, {"unarmed_damage": 3.0, "strength_variable": &"strength"}, {"strength": 2})
		var told: Array = []
		owner.event_sent.connect(func(event: StringName, data: Variant) -> void:
			if event == &"hit":
				told.append(data))
		await physics_frames(3)
		owner.send_event(&"go")
		expect(who.has_node("Swing") or Engine.is_in_physics_frame())
		await physics_frames(3)
		var box := who.get_node("Swing")
		expect_equal([box.get(&"damage"), box.get(&"on")], [5.0, true])
		expect_equal([lost(near), lost(behind), lost(out), lost(bystander)], [5.0, 0.0, 0.0, 0.0])
		expect_events(owner, ["go", "hit"])
		expect_equal(told, [near])
		await physics_frames(14)
		expect_state(owner, "Swing")
		expect_equal(lost(near), 5.0, "once a swing")
		await physics_frames(4)
		expect_state(owner, "Stand")
		await frames(1)
		expect(not who.has_node("Swing"), "it is left there")
		# The next one is a swing of its own, also right after the last.
		owner.send_event(&"go")
		await physics_frames(5)
		expect_equal(lost(near), 10.0)
		owner.go_to(&"Stand")
		owner.send_event(&"go")
		await physics_frames(5)
		expect_equal(lost(near), 15.0)
		expect(who.has_node("Swing")))


func test_a_swing_of_no_time_still_hits() -> void:
	await on_both_sides(func() -> void:
		for in_physics: bool in [false, true]:
			var who := hero()
			wear(who, {"swing_seconds": 0.0, "reach": far(2.0)})
			var near := foe_ahead(1.0)
			var owner := brawler(who)
			await physics_frames(4)
			if not in_physics:
				await tree.process_frame
			owner.send_event(&"go")
			expect_state(owner, "Swing")
			await physics_frames(2)
			expect_state(owner, "Stand")
			expect_equal([lost(near), who.has_node("Swing")], [5.0, false])
			for child in stage.get_children():
				child.free()
			await frames(1))


func test_a_hit_is_told_before_the_swing_ends() -> void:
	await on_both_sides(func() -> void:
		for seconds: float in [0.0, 0.02, 0.04]:
			var who := hero()
			wear(who, {"swing_seconds": seconds, "reach": far(2.0)})
			foe_ahead(1.0)
			await physics_frames(4)
			var owner := start(doing(attack(), {"hit": "Landed", "FINISHED": "Missed"}, {"under": who}))
			await physics_frames(6)
			expect_state(owner, "Landed")
			for child in stage.get_children():
				child.free()
			await frames(1))


func test_a_hit_is_told_though_another_event_ends_the_swing() -> void:
	await on_both_sides(func() -> void:
		var who := hero()
		var near := foe_ahead(1.0)
		await physics_frames(4)
		var owner := start(doing(attack(), {"away": "Gone"}, {"under": who}))
		while lost(near) == 0.0:
			await frames(1)
		owner.send_event(&"away")
		await frames(1)
		events_of(owner).sort()
		expect_events(owner, ["away", "hit"]))


func test_the_weapon_that_is_worn() -> void:
	# The item, the variables, what a hit takes from a foe at 1.5 metres, and how many frames the swing takes.
	await on_both_sides(func() -> void:
		for row: Array in [
			[{"damage": 5.0, "reach": far(2.0), "swing_seconds": 0.1}, {}, 5.0, 6],
			[{"damage": 5.0, "reach": far(1.0)}, {}, 0.0, 18],
			[{"damage": 5.0}, {}, 5.0, 18],
			[{"damage": 0.0}, {}, 1.0, 18],
			[{"damage": 5.0, "damage_variable": &"level"}, {"level": 7}, 7.0, 18],
			[{"damage": 5.0, "damage_variable": &"level"}, {}, 5.0, 18],
			[{"damage": 0.0, "damage_variable": &"level", "swing_seconds": 0.2}, {"level": 7}, 7.0, 12],
			[{"damage": 5.0, "knockback": 2.5}, {"strength": -9.0}, 1.0, 18],
		]:
			var who := hero()
			wear(who, row[0])
			var near := foe_ahead(1.5)
			var owner := brawler(who, {"strength_variable": &"strength" if row[1].has("strength") else &""}, row[1])
			await physics_frames(3)
			owner.send_event(&"go")
			var taken := 0
			while current(owner) == &"Swing" and taken < 60:
				await physics_frames(1)
				taken += 1
				if taken == 3:
					expect_equal(who.get_node("Swing").get(&"knockback"), row[0].get("knockback", 1.0))
			expect_equal([lost(near), taken], [row[2], row[3]], "%s" % [row])
			for child in stage.get_children():
				child.free()
			await frames(1))


func test_which_way_it_swings() -> void:
	# What the body is like, and where the one of four foes stands that is hit.
	var rows_2d: Array = [
		[{}, Vector2(1, 0)],
		[{"rotation": PI / 2.0}, Vector2(0, 1)],
		[{"heading": Vector2(-1, 0)}, Vector2(-1, 0)],
		[{"heading": Vector2(0, 1), "quillstead_side_on": true}, Vector2(1, 0)],
		[{"heading": Vector2(-0.6, 0.8), "quillstead_side_on": true}, Vector2(-1, 0)],
		[{"heading": Vector2(1, 0), "quillstead_side_on": true, "quillstead_faces_left": true}, Vector2(-1, 0)],
		[{"scale": Vector2(3, 0.5)}, Vector2(1, 0)],
	]
	var places: Array[Vector2] = [Vector2(1, 0), Vector2(-1, 0), Vector2(0, 1), Vector2(0, -1)]
	for row: Array in rows_2d:
		var who := hero()
		for name: String in row[0]:
			if name == "heading":
				Move._heading[who.get_instance_id()] = row[0][name]
			elif name.begins_with("quillstead"):
				who.set_meta(name, row[0][name])
			else:
				who.set(name, row[0][name])
		var foes: Array = places.map(func(place: Vector2) -> Node: return foe(place.x * 1.5, -place.y * 1.5, 0.0, "Foe"))
		var owner := brawler(who)
		await physics_frames(3)
		owner.send_event(&"go")
		await physics_frames(4)
		for i in places.size():
			expect_equal(lost(foes[i]), 1.0 if places[i] == row[1] else 0.0, "%s at %s" % [row[0], places[i]])
		Move._heading.erase(who.get_instance_id())
		for child in stage.get_children():
			child.free()


func test_it_aims() -> void:
	await on_both_sides(func() -> void:
		# Who is named, where it stands, and whether it is swung at.
		for row: Array in [["foe", Vector2(-1.5, 0), true], ["foe", Vector2(0, 1.5), true], ["foe", Vector2(-3, 0), false], ["self", Vector2(-1.5, 0), false],
				["other side", Vector2(-1.5, 0), false], ["nobody", Vector2(-1.5, 0), false]]:
			var who := hero()
			var place: Vector2 = row[1]
			var near := foe(place.x, 0.0, -place.y) if in_3d else foe(place.x, place.y)
			var named := {"foe": near, "self": who, "nobody": null, "other side": null}
			named["other side"] = body("There") if in_3d else body_3d("There")
			var owner := brawler(who, {"aim_at_variable": &"foe"}, {"foe": named[row[0]]})
			await physics_frames(3)
			owner.send_event(&"go")
			var heading := (Vector3(place.x, 0.0, -place.y) if in_3d else Vector3(place.x, -place.y, 0.0)).normalized()
			if row[2] and in_3d:
				expect_near(-(who as Node3D).global_basis.z, heading, 0.001)
			elif row[2]:
				expect_near(Vector2.from_angle((who as Node2D).rotation), Vector2(heading.x, heading.y), 0.001)
			await physics_frames(4)
			expect_equal(lost(near), 1.0 if row[2] else 0.0, "%s" % [row])
			for child in stage.get_children():
				child.free()
			await frames(1))
	in_3d = false
	var sided := hero()
	sided.set_meta(&"quillstead_side_on", true)
	var left := foe(-1.0)
	var owner := brawler(sided, {"aim_at_variable": &"foe"}, {"foe": left})
	await physics_frames(3)
	owner.send_event(&"go")
	expect_equal([sided.get_meta(&"quillstead_faces_left"), (sided as Node2D).rotation], [true, 0.0])
	await physics_frames(3)
	expect_equal(lost(left), 1.0)


func test_the_picture() -> void:
	var picture := PlaceholderTexture2D.new()
	picture.size = Vector2(128, 32)
	for shows: bool in [true, false]:
		var who := hero()
		wear(who, {"icon": picture, "reach": 64.0, "swing_seconds": 0.2})
		var owner := brawler(who, {"show_weapon": shows})
		await frames(2)
		owner.send_event(&"go")
		await frames(1)
		var shown: Sprite2D = who.get_node_or_null(^"SwungWeapon")
		expect_equal(shown != null, shows)
		if shows:
			expect_equal(shown.texture, picture)
			var turned := shown.rotation
			expect_near(shown.to_global(shown.get_rect().get_center()).distance_to((who as Node2D).global_position), 32.0, 0.1)
			await physics_frames(6)
			expect(shown.rotation > turned + 0.5, "it does not swing")
		await advance(0.3)
		expect_state(owner, "Stand")
		expect(not who.has_node("SwungWeapon"))
		who.free()


func test_a_hit_that_ends_the_swing() -> void:
	await on_both_sides(func() -> void:
		var who := hero()
		var both := [foe_ahead(1.0), foe_ahead(1.2, "Second")]
		var owner := start(machine([state("Stand", [], {"go": "Swing"}), state("Swing", [attack()], [transition("hit", "Stand", "whom")])],
			{"under": who, "variables": {"whom": null}}))
		await physics_frames(3)
		owner.send_event(&"go")
		await physics_frames(6)
		expect_state(owner, "Stand")
		expect(owner.get_value(&"whom") in both)
		expect_equal([lost(both[0]), lost(both[1])], [1.0, 1.0], "it went through both")
		expect(not who.has_node("Swing"))
		# It is answered by another one, and in the middle of the engine's own signals.
		var trap := zone(0.0, 0.0, 1.0, 1.0)
		trap.connect(&"body_entered", func(_body: Node) -> void: owner.send_event(&"go"))
		await physics_frames(8)
		expect_equal([lost(both[0]), lost(both[1])], [2.0, 2.0]))


func test_whatever_goes_on_the_way() -> void:
	await on_both_sides(func() -> void:
		var ends: Array[Callable] = [
			func(who: Node, _near: Node) -> void: who.free(),
			func(who: Node, _near: Node) -> void: who.get_node("Machine").free(),
			func(who: Node, _near: Node) -> void: who.get_node("Swing").free(),
			func(_who: Node, near: Node) -> void: near.free(),
			func(who: Node, _near: Node) -> void: stage.remove_child(who),
		]
		for what in ends:
			for waits: int in [0, 1, 2, 5]:
				var who := hero()
				wear(who, {"icon": PlaceholderTexture2D.new()})
				var near := foe_ahead(1.0)
				brawler(who)
				await frames(3)
				(who.get_node("Machine") as SCMachine).send_event(&"go")
				await frames(waits)
				what.call(who, near)
				await frames(2)
				if is_instance_valid(who):
					who.free()
				for child in stage.get_children():
					child.free())


func test_one_that_begins_as_the_scene_does() -> void:
	await on_both_sides(func() -> void:
		var near := foe_ahead(1.0)
		await physics_frames(2)
		var who: Node = CharacterBody3D.new() if in_3d else CharacterBody2D.new()
		who.add_child(doing(attack(), {}))
		stage.add_child(who)
		await physics_frames(5)
		expect_equal(lost(near), 1.0))


func test_lines_and_mistakes() -> void:
	expect_lines(SCAttackAction, {"Attack with the Weapon": {}, "Attack with the Claw": {"slot": &"Claw"}, "Attack with the (pick one)": {"slot": &""}})
	expect_warns(attack(), "Attack on Machine needs a 2D or 3D character to swing from, and Stage is a Node.")
	expect_warns(attack(), "Attack on Nowhere needs a 2D or 3D character to swing from, and", {"name": "Nowhere", "target_path": ^"../Gone", "under": body()})
	var who := hero()
	expect_warns(attack({"strength_variable": &"might"}),
		"Attack on Hero adds a variable called might to its damage, but this machine has no variable of that name, so nothing is added. " + SPELT,
		{"under": who, "name": "Hero"})
	expect_warns(attack({"aim_at_variable": &"prey"}),
		"Attack on Hero swings at whoever prey names, but this machine has no variable of that name, so it swings the way it last moved. " + SPELT,
		{"under": who, "name": "Hero"})
