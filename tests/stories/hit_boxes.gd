extends PhysicsStory
## What hurts whatever it touches: spikes, bullets, fists.

const HurtBox := preload("res://addons/quillstead/runtime/hurt_box.gd")
const HitBox := preload("res://addons/quillstead/runtime/hit_box.gd")
## What the engine needs until an area has noticed what it touches.
const NOTICED: int = 3


## Something with a Hurt Box that hangs in the air.
func target(x: float = 0.0, settings: Dictionary = {}, name: String = "Target") -> Node:
	var made := block(x, 0.0, 1.0, 1.0, name)
	add(HurtBox.new(), "HurtBox", {"under": made, "invincible_seconds": 0.0, "blinks": false}.merged(settings, true))
	asker(made, {"name": "Brain", "variables": {"health": 1000}})
	return made


func lost(of: Node) -> int:
	return 1000 - int((of.get_node("Brain") as SCMachine).get_value(&"health"))


func square(size: float) -> Resource:
	var made: Resource = BoxShape3D.new() if in_3d else RectangleShape2D.new()
	made.set(&"size", Vector3(size, size, size) if in_3d else Vector2(size, size) * PX)
	return made


## An area with the script, of a size and with its middle there.
func spikes(x: float = 0.0, settings: Dictionary = {}, size: float = 0.5, name: String = "Spikes") -> Node:
	var made: Node = Area3D.new() if in_3d else Area2D.new()
	made.set_script(HitBox)
	return add(made, name, {"position": at(x, 0.0), "shape": square(size), "damage": 1.0}.merged(settings, true))


func test_one_touch_is_one_hit() -> void:
	await on_both_sides(func() -> void:
		var hit := target()
		var near := target(1.2, {}, "Near")
		var told: Array = []
		var made := spikes()
		made.connect(&"hit", func(node: Node) -> void: told.append(node))
		await physics_frames(30)
		expect_equal([lost(hit), lost(near), told], [1, 0, [hit]])
		# Out and in again.
		for i in 2:
			made.set(&"position", at(5.0, 0.0))
			await physics_frames(NOTICED)
			made.set(&"position", at(0.0, 0.0))
			await physics_frames(NOTICED)
		expect_equal(lost(hit), 3)
		made.set(&"on", false)
		await physics_frames(5)
		expect_equal(lost(hit), 3)
		made.set(&"on", true)
		await physics_frames(10)
		expect_equal(lost(hit), 4)
		# Once and for all, until it is switched on anew.
		made.set(&"hit_again", -1.0)
		for x: float in [5.0, 0.0]:
			made.set(&"position", at(x, 0.0))
			await physics_frames(NOTICED)
		expect_equal(lost(hit), 4)
		hit.free()
		await physics_frames(10)
		expect(not made.is_physics_processing(), "it works on for nobody"))


func test_standing_in_spikes() -> void:
	# For how long it is safe, how soon it is hit again, for how many frames it stands there, and how often it is hit.
	await on_both_sides(func() -> void:
		for row: Array in [
			[1.0, 0.0, 149, 3], [0.0, 0.5, 145, 5], [0.0, 0.0, 149, 1], [1.0, 0.5, 149, 3],
			[0.2, 0.5, 145, 5], [0.2, -1.0, 149, 1], [0.0, 1.0 / 60.0, 59, 60],
		]:
			var hit := target(0.0, {"invincible_seconds": row[0]})
			var made := spikes(0.0, {"hit_again": row[1]})
			await physics_frames(row[2] + 1)
			expect_equal(lost(hit), row[3], "%s" % [row])
			hit.free()
			made.free())


func test_a_new_one_hits_at_once() -> void:
	# From where it is added, until nobody would wait any longer.
	await on_both_sides(func() -> void:
		for in_physics: bool in [false, true]:
			var hit := target()
			await physics_frames(3)
			if in_physics:
				await tree.physics_frame
			else:
				await tree.process_frame
			spikes()
			await physics_frames(2)
			expect_equal(lost(hit), 1, "in the physics frame: %s" % in_physics)
			for child in stage.get_children():
				child.free())


func test_who_is_hit() -> void:
	await on_both_sides(func() -> void:
		var all := {}
		for name: String in ["Body", "Own", "Zone", "Sided", "Headed", "Sleeping", "Bare"]:
			all[name] = target(0.0, {}, name)
		(all["Zone"] as Node).free()
		# An area that is one itself, with a machine of its own.
		var itself: Node = zone(0.0, 0.0, 1.0, 1.0, "Zone")
		itself.set_script(HurtBox)
		asker(itself, {"name": "Brain", "variables": {"health": 1000}})
		all["Zone"] = itself
		# A shield in the hands of whoever hits.
		var shield := target(0.0, {}, "Shield")
		all["Shield"] = shield
		shield.reparent(all["Own"])
		# An area without a shape, which is as good as a plain node.
		var bare: Node = all["Bare"]
		bare.get_node("HurtBox").free()
		var shapeless: Node = Area3D.new() if in_3d else Area2D.new()
		shapeless.set_script(HurtBox)
		add(shapeless, "HurtBox", {"under": bare})
		(all["Sided"] as Node).add_to_group(&"ours")
		# One that is hit at its head alone, which is out of reach.
		var headed: Node = all["Headed"]
		headed.get_node("HurtBox").free()
		var head: Node = zone(0.0, 3.0, 0.2, 0.2, "HurtBox")
		head.set_script(HurtBox)
		head.reparent(headed)
		(all["Sleeping"] as Node).get_node("HurtBox").set(&"can_be_hurt", false)
		var own: Node = all["Own"]
		var made := spikes(0.0, {"attacker": own})
		await physics_frames(5)
		for name: String in all:
			expect_equal(lost(all[name]), 1 if name in ["Body", "Zone", "Sided", "Bare"] else 0, name)
		made.set(&"position", at(0.0, 3.0))
		await physics_frames(5)
		expect_equal(lost(headed), 1, "the head")
		made.set(&"hurts_group", &"ours")
		made.set(&"position", at(0.0, 0.0))
		await physics_frames(5)
		expect_equal([lost(all["Body"]), lost(all["Sided"])], [1, 2], "by group"))


func test_where_it_sits() -> void:
	await on_both_sides(func() -> void:
		# Right under an area with a shape, under a node with none, and under a body it makes its own.
		for above: String in ["area", "place", "body"]:
			var hit := target()
			var parent: Node
			match above:
				"area":
					parent = zone(0.0, 0.0, 0.5, 0.5)
				"place":
					parent = spot(0.0, 0.0)
				"body":
					parent = crate(0.0, 0.0, 0.2)
					parent.set(&"freeze", true)
			var made: Node = add(HitBox.new(), "HitBox", {"under": parent, "shape": null if above == "area" else square(0.5), "damage": 2.0})
			await physics_frames(6)
			expect_equal(lost(hit), 2, above)
			expect_equal(made.call(&"whose"), parent if above == "body" else made.get(&"_area"), above)
			expect_equal(made._get_configuration_warnings().size(), 0)
			# What it made goes along with the parent, and goes with it.
			var apart := parent.duplicate()
			stage.add_child(apart)
			await physics_frames(6)
			expect_equal(lost(hit), 4, "a copy of what stands under %s" % above)
			made.free()
			await physics_frames(3)
			for left in parent.get_children(true):
				expect(left.name == "Shape" or above == "area", "left %s" % left)
			for child in stage.get_children():
				child.free())


func test_what_it_makes_is_not_saved() -> void:
	var made := spikes()
	var scene := PackedScene.new()
	expect_equal(scene.pack(made), OK)
	expect_equal(scene.get_state().get_node_count(), 1)
	var copy := made.duplicate()
	expect_equal(copy.get_child_count(true), 0)
	copy.free()
	var hit := target()
	var again := scene.instantiate()
	made.free()
	stage.add_child(again)
	await physics_frames(6)
	expect_equal(lost(hit), 1)


func test_shapes_without_a_size_and_of_the_wrong_side() -> void:
	await on_both_sides(func() -> void:
		var hit := target()
		var flat := spikes(0.0, {}, 0.0)
		var ball: Resource = SphereShape3D.new() if in_3d else CircleShape2D.new()
		ball.set(&"radius", 0.0)
		flat.name = "Flat"
		spikes(0.0, {"shape": ball})
		await physics_frames(6)
		expect_equal(lost(hit), 2)
		expect_equal(ball.get(&"radius"), 0.0, "the game's own shape")
		# Another one while it plays.
		flat.set(&"on", false)
		flat.set(&"position", at(3.0, 0.0))
		flat.set(&"shape", square(8.0))
		await physics_frames(6)
		flat.set(&"on", true)
		await physics_frames(3)
		expect_equal(lost(hit), 3)
		flat.set(&"shape", CircleShape2D.new() if in_3d else SphereShape3D.new())
		await physics_frames(2)
		expect_warning("which does not go into an Area%s, so it hits nothing with it. Pick a shape of the same side." % ("3D" if in_3d else "2D")))
	add(HitBox.new(), "Lost")
	expect_warning("Hit Box Lost sits under Stage, which has no place in the world, so it hits nothing.")
	add(HitBox.new(), "Bare", {"under": body("Somewhere")})
	expect_warning("Hit Box Bare under Somewhere has no area to touch anything with, so it hits nothing. Pick a Shape, or put it right under")


func test_many_at_once() -> void:
	await on_both_sides(func() -> void:
		var all: Array[Node] = []
		for i in 40:
			all.append(target(0.0, {}, "Target%d" % i))
		await physics_frames(2)
		spikes()
		await physics_frames(1)
		expect(all.all(func(one: Node) -> bool: return lost(one) == 1), "not all of them were hit at once")
		await physics_frames(10)
		expect(all.all(func(one: Node) -> bool: return lost(one) == 1), "some of them were hit twice"))


func test_damage_types_and_knockback_go_along() -> void:
	await on_both_sides(func() -> void:
		var hit := character(0.0, 0.0)
		var types: Dictionary[StringName, float] = {&"fire": 3.0}
		add(HurtBox.new(), "HurtBox", {"under": hit, "damage_types": types})
		walk(hit, [kind(SCMoveCharacterAction, {"falls": false, "speed": 0.0})], {"name": "Brain", "variables": {"health": 1000}})
		spikes(0.6, {"damage": 4.0, "damage_type": &"fire", "knockback": 2.0, "position": at(0.6, 0.8)})
		await physics_frames(8)
		expect_equal(lost(hit), 12)
		expect(where(hit).x < -0.5, "at %s" % where(hit)))


func test_whoever_hears_of_a_hit_may_do_anything() -> void:
	var fresh := func(_made: Node, _hit: Node) -> void:
		target(5.0, {}, "Fresh")
		spikes(5.0, {}, 0.5, "Fresh")
	var ends: Array[Callable] = [
		func(made: Node, _hit: Node) -> void: made.queue_free(),
		func(_made: Node, hit: Node) -> void: hit.queue_free(),
		func(_made: Node, hit: Node) -> void: stage.remove_child(hit),
		func(made: Node, _hit: Node) -> void: made.set(&"on", false),
		func(made: Node, _hit: Node) -> void: made.call(&"strike"),
		func(made: Node, _hit: Node) -> void: stage.remove_child(made),
		fresh,
	]
	for what in ends:
		for hears: String in ["hit", "hurt", "HURT"]:
			await on_both_sides(func() -> void:
				var all := [target(), target(0.1, {}, "Second")]
				var made := spikes()
				var once: Array = []
				var act_once := func(_any: Variant = null, _more: Variant = null) -> void:
					if once.is_empty():
						once.append(true)
						what.call(made, all[0])
				match hears:
					"hit":
						made.connect(&"hit", act_once)
					"hurt":
						(all[0] as Node).get_node("HurtBox").connect(&"hurt", act_once)
					_:
						((all[0] as Node).get_node("Brain") as SCMachine).event_sent.connect(act_once)
				await physics_frames(8)
				expect_equal(once, [true])
				if hears == "hit":
					expect_equal(lost(all[1]), 1, "what is touched in the same moment is hit")
				for node: Variant in [made, all[0]]:
					if is_instance_valid(node) and node.get_parent() == null:
						node.free())
