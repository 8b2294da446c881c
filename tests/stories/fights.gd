extends PhysicsStory
## Health taken by Hurt, given back by Heal, and guarded by a Hurt Box.

const HurtBox := preload("res://addons/quillstead/runtime/hurt_box.gd")
const GIVE_IT := "To add one under it, right-click it in the scene and pick QuillStead > Give It > Health."


## A Hurt Box of a game's own, that only writes down what hits it.
class Target:
	extends HurtBox

	var hits: Array = []

	func take_hit(damage: float, attacker: Node, times: float) -> bool:
		hits.append([damage, attacker, times])
		return false


## A goblin with a Hurt Box and a machine that keeps its health and hears what becomes of it.
func goblin(variables: Dictionary = {"health": 10}, settings: Dictionary = {}, name: String = "Goblin") -> Node:
	var body := character(0.0, 0.0, name)
	guard_health(body, settings)
	start(machine([state("Alive", [], [transition("HURT", "Alive", "data"), transition("DIED", "Dead", "data"), transition("HEALED", "Alive", "data")]),
		state("Dead", [], {"HEALED": "Alive"})],
		{"under": body, "name": "Brain", "variables": {"data": null}.merged(variables, true)}))
	return body


func guard_health(body: Node, settings: Dictionary = {}) -> HurtBox:
	return add(HurtBox.new(), "HurtBox", {"under": body, "invincible_seconds": 0.0}.merged(settings, true)) as HurtBox


func brain(of: Node) -> SCMachine:
	return of.get_node("Brain")


func box(of: Node) -> HurtBox:
	return of.get_node("HurtBox")


func health(of: Node) -> Variant:
	return brain(of).get_value(&"health")


## Does one of the two to that node, from a machine beside it.
func to(target: Node, of: Variant, settings: Dictionary = {}) -> void:
	var healer := play(kind(of, {"target_path_variable": &"whom"}.merged(settings, true)), {"FINISHED": "Done"},
		{"variables": {"whom": target}, "name": "Doer"})
	expect_state(healer, "Done")
	healer.free()


func hurt(target: Node, damage: float, settings: Dictionary = {}) -> void:
	to(target, SCHurtAction, {"damage": damage}.merged(settings))


func heal(target: Node, amount: float, settings: Dictionary = {}) -> void:
	to(target, SCHealAction, {"amount": amount}.merged(settings))


func test_what_hits_leave_of_it() -> void:
	# What it starts with, its defence, the hits, what each leaves, and what it hears.
	for row: Array in [
		[10, 0, [3.0, 4.0], [7, 3], ["HURT", "HURT"]],
		[5, 0, [4.0, 4.0, 4.0, 1.0], [1, 0, 0, 0], ["HURT", "DIED"]],
		[10.0, 2.0, [0.5, 2.5, 6.0, 100.0], [9.0, 8.0, 4.0, 0.0], ["HURT", "HURT", "HURT", "DIED"]],
		[10, 1.0, [2.5, 3.5], [8, 5], ["HURT", "HURT"]],
		[10, -3, [1.0], [6], ["HURT"]],
		[3, 0, [INF], [0], ["DIED"]],
	]:
		var hit := goblin({"health": row[0], "armour": row[1]}, {"defence_variable": &"armour"})
		for i: int in (row[2] as Array).size():
			hurt(hit, row[2][i])
			expect_equal(health(hit), row[3][i], "hit %d of %s" % [i, row])
		expect_events(brain(hit), row[4])
		expect_equal(box(hit).is_beaten(), row[3].back() == 0)
		hit.free()


func test_what_the_events_and_signals_carry() -> void:
	var hit := goblin()
	var by := body("Ogre")
	var told: Array = []
	box(hit).store_attacker_in = &"data"
	box(hit).hurt.connect(func(damage: float, attacker: Node) -> void: told.append(["hurt", damage, attacker]))
	box(hit).died.connect(func(attacker: Node) -> void: told.append(["died", attacker]))
	box(hit).healed.connect(func(amount: float) -> void: told.append(["healed", amount]))
	box(hit).revived.connect(func() -> void: told.append(["revived"]))
	hurt(hit, 4.0)
	expect_equal(brain(hit).get_value(&"data"), 4, "HURT carries what was taken")
	box(hit).take_hit(20.0, by, 1.0)
	expect_equal(brain(hit).get_value(&"data"), by, "DIED carries the attacker")
	expect_state(brain(hit), "Dead")
	heal(hit, 3.0, {"revives": true})
	expect_warning("Heal on Doer: Goblin's health has no Max")
	expect_equal(told, [["hurt", 4.0, null], ["hurt", 6.0, by], ["died", by], ["healed", 3.0], ["revived"]])
	expect_state(brain(hit), "Alive")


func test_it_dies_again_once_it_has_had_health_again() -> void:
	for heals: bool in [true, false]:
		var hit := goblin({"health": 2})
		for again in 2:
			hurt(hit, 5.0)
			hurt(hit, 5.0)
			expect_events(brain(hit), ["DIED"])
			if heals:
				box(hit).heal(1.0, true)
				expect(box(hit).is_safe(), "it gets up into the next blow")
				await physics_frames(61)
				expect(not box(hit).is_safe())
			else:
				brain(hit).set_value(&"health", 1)
		hit.free()


func test_it_dies_of_what_another_does_about_the_hit() -> void:
	for by_a_hit: bool in [true, false]:
		var hit := goblin({"health": 10}, {"invincible_seconds": 0.0 if by_a_hit else 2.0})
		box(hit).hurt.connect(func(_damage: float, _attacker: Node) -> void:
			if by_a_hit and health(hit) > 0:
				box(hit).take_hit(50.0, null, 1.0)
			else:
				brain(hit).set_value(&"health", 0))
		box(hit).take_hit(1.0, null, 1.0)
		expect_events(brain(hit), ["DIED"])
		expect_equal([box(hit).is_safe(), (hit as Node2D).visibility_layer], [false, 1], "the dead do not blink")
		hit.free()


func test_what_a_goblin_carries_is_not_the_goblin() -> void:
	var hit := goblin()
	var carried := crate(0.0, 3.0)
	carried.reparent(hit)
	var its := guard_health(carried)
	expect(not its.take_hit(3.0, null, 1.0))
	expect_warning("Crate was hit, but it has no machine with a number called health, so no health was taken.")
	expect_equal(health(hit), 10)


func test_what_has_no_health_feels_nothing() -> void:
	for none: Variant in [0, -2, 0.0]:
		var hit := goblin({"health": none})
		for i in 2:
			hurt(hit, 5.0)
			expect_equal(health(hit), none)
		expect_events(brain(hit), [])
		hit.free()


func test_the_bounds_of_the_variable_hold() -> void:
	var dummy := character(0.0, 0.0, "Dummy")
	guard_health(dummy)
	start(machine([state("On", [], [transition("HURT", "On"), transition("HEALED", "On")])],
		{"under": dummy, "name": "Brain", "variables": [variable(&"health", 8, {"never_below": "5", "never_above": "10"})]}))
	# What is done to it, what is left, and what came of it.
	for row: Array in [[1.0, 7], [9.0, 5], [1.0, 5]]:
		hurt(dummy, row[0])
		expect_equal(health(dummy), row[1])
	expect_events(brain(dummy), ["HURT", "HURT", "HURT"])
	heal(dummy, 2.0)
	expect_equal([health(dummy), brain(dummy).event_data(&"HEALED")], [7, 2])
	heal(dummy, 20.0)
	expect_equal([health(dummy), brain(dummy).event_data(&"HEALED")], [10, 3], "what does not fit is not told")
	heal(dummy, 20.0)
	expect_equal([health(dummy), brain(dummy).event_data(&"HEALED")], [10, 0])


func test_safe_time() -> void:
	await on_both_sides(func() -> void:
		# For so many seconds, and how many of 90 hits in a row land, one a physics frame.
		for row: Array in [[0.0, 90], [0.5, 3], [1.0, 2], [5.0, 1]]:
			var hit := goblin({"health": 100}, {"invincible_seconds": row[0], "blinks": false})
			await physics_frames(1)
			for i in 90:
				hurt(hit, 1.0)
				await physics_frames(1)
			expect_equal(100 - health(hit), row[1], "%s s" % row[0])
			hit.free()
		var hit := goblin({"health": 100}, {"invincible_seconds": 0.1})
		hurt(hit, 1.0)
		tree.paused = true
		await advance(0.5)
		expect(box(hit).is_safe(), "it goes on in the pause menu")
		tree.paused = false
		box(hit).can_be_hurt = false
		await advance(0.2)
		hurt(hit, 1.0)
		expect_equal(health(hit), 99))


func test_it_blinks_while_it_is_safe() -> void:
	await on_both_sides(func() -> void:
		var hit := goblin({"health": 10}, {"invincible_seconds": 0.45})
		var picture: Node = MeshInstance3D.new() if in_3d else hit
		if in_3d:
			add(picture, "Picture", {"under": hit})
		var layers := &"layers" if in_3d else &"visibility_layer"
		picture.set(layers, 6)
		var seen: Array[int] = []
		hurt(hit, 1.0)
		for i in 32:
			seen.append(picture.get(layers))
			expect(hit.get(&"visible") and (in_3d or (hit as Node2D).modulate == Color.WHITE), "what is the game's own")
			await physics_frames(1)
		var turns := 0
		for i in range(1, seen.size()):
			turns += int(seen[i] != seen[i - 1])
		# A tenth of a second out of sight, one in sight, and so on.
		expect_equal([turns, seen[0], seen.back()], [5, 0, 6], "%s" % [seen])
		expect_near(seen.count(0), 16, 1)
		# Whatever ends it on the way, it is seen again.
		hurt(hit, 1.0)
		expect_equal(picture.get(layers), 0)
		var copy := hit.duplicate()
		stage.add_child(copy)
		var copied: Node = copy.get_node("Picture") if in_3d else copy
		expect_equal(copied.get(layers), 6, "a copy")
		box(hit).free()
		expect_equal(picture.get(layers), 6)
		expect_equal(picture.get_meta_list().size(), 0))


func test_it_is_thrown_back() -> void:
	# The body, where the attacker is, how hard, and how fast it goes.
	await on_both_sides(func() -> void:
		for row: Array in [[at(-1.0, 0.8), 1.0, 5.0], [at(2.0, 0.8), 1.0, -5.0], [at(-1.0, 5.0), 2.0, 10.0], [at(-1.0, 0.8), 0.0, 0.0], [null, 1.0, 0.0]]:
			ground()
			var hit := goblin()
			walk(hit, [kind(SCMoveCharacterAction, {"speed": 0.0})])
			await physics_frames(5)
			var before := where(hit)
			if row[0] != null:
				add(Node3D.new() if in_3d else Node2D.new(), "Ogre", {"position": row[0]})
			hurt(hit, 1.0, {"attacker_path": ^"../Ogre" if row[0] != null else ^"", "knockback": row[1]})
			await physics_frames(6)
			expect_near(where(hit) - before, Vector3(row[2] * 0.1, 0.0, 0.0), 0.06, "%s" % [row])
			for child in stage.get_children():
				child.free())


func test_a_crate_is_thrown_too() -> void:
	await on_both_sides(func() -> void:
		var hit := crate(0.0, 5.0)
		hit.set(&"mass", 7.0)
		hit.set(&"gravity_scale", 0.0)
		guard_health(hit, {"knockback": far(2.0)})
		asker(hit, {"variables": {"health": 3}})
		var by := spot(-3.0, 5.0)
		hit.get_node(^"HurtBox").call(&"take_hit", 1.0, by, 1.0)
		await physics_frames(31)
		expect_near(where(hit).x, 1.0, 0.1))


func test_a_part_that_is_hurt_more_and_what_does_not_hurt() -> void:
	var types: Dictionary[StringName, float] = {&"fire": 2.0, &"frost": 0.5, &"light": 0.0}
	var at_head: Dictionary[StringName, float] = {&"": 3.0}
	var hit := goblin({"health": 100}, {"damage_types": types})
	var head := add(Area2D.new(), "Head", {"under": hit})
	var weak := guard_health(head, {"damage_types": at_head})
	var whole := box(hit)
	for row: Array in [
		[whole, 4.0, &"fire", 8], [whole, 4.0, &"frost", 2], [whole, 1.0, &"frost", 1], [whole, 4.0, &"light", 0], [whole, 4.0, &"", 4], [weak, 4.0, &"", 12],
	]:
		var before: int = health(hit)
		expect_equal(row[0].take_typed_hit(row[2], row[1], null, 1.0), row[3] > 0)
		expect_equal(before - health(hit), row[3], "%s" % [row])
	for row: Array in [[&"spared_by_group", true], [&"hurt_by_group", false]]:
		var by := body("By")
		by.add_to_group(&"goblins")
		box(hit).set(row[0], &"goblins")
		expect_equal([box(hit).take_hit(1.0, by, 1.0), box(hit).take_hit(1.0, body(), 1.0)], [not row[1], row[1]], row[0])
		box(hit).set(row[0], &"")


func test_a_hurt_box_of_a_games_own() -> void:
	await on_both_sides(func() -> void:
		var hit := character()
		var its: Target = add(Target.new(), "HurtBox", {"under": hit})
		var by := spot(1.0, 0.0)
		expect_equal(SCHurtAction.new()._hurt_box_of(hit), its)
		play(kind(SCHurtAction, {"target_path": hit.get_path(), "damage": 2.0, "attacker_path": by.get_path(), "knockback": 3.0}))
		play(kind(SCHurtAction, {"target_path": hit.get_path()}))
		expect_equal(its.hits, [[2.0, by, 3.0], [1.0, null, 1.0]])
		its.hits.clear()
		var box_shape: Resource = BoxShape3D.new() if in_3d else RectangleShape2D.new()
		add(SCHitBox.new(), "HitBox", {"under": by, "shape": box_shape, "damage": 4.0, "damage_type": &"fire", "attacker": by})
		by.set(&"position", hit.get(&"position"))
		await physics_frames(4)
		expect_equal(its.hits.slice(0, 1), [[4.0, by, 1.0]]))


func test_heal_gives_what_fits() -> void:
	# What it has, how much is given, with Revives, what it has then, and what HEALED carries; null for none.
	for row: Array in [
		[5, 3.0, false, 8, 3], [5, 30.0, false, 20, 15], [20, 1.0, false, 20, 0],
		[5.5, 1.25, false, 6.75, 1.25], [0, 4.0, true, 4, 4], [0.0, 40.0, true, 20.0, 20.0],
		[5, INF, false, 20, 15],
	]:
		var hit := character(0.0, 0.0, "Goblin")
		guard_health(hit)
		start(machine([state("On", [], [transition("HEALED", "On")])],
			{"under": hit, "name": "Brain", "variables": [variable(&"health", row[0], {"never_above": "max"}), variable(&"max", 20)]}))
		heal(hit, row[1], {"revives": row[2]})
		expect_equal(health(hit), row[3], "%s" % [row])
		expect_equal(brain(hit).event_data(&"HEALED"), row[4], "%s" % [row])
		hit.free()


func test_a_campfire_mends_a_little_all_the_time() -> void:
	var hit := goblin({"health": 1.0})
	brain(hit).free()
	start(machine([state("On")], {"under": hit, "name": "Brain", "variables": [variable(&"health", 1.0, {"never_above": "3"})]}))
	play(kind(SCHealAction, {"target_path_variable": &"whom", "amount": 0.5, "run_mode": SCMachineAction.EVERY_FRAME, "update_interval": 0.25}), {},
		{"variables": {"whom": hit}})
	await advance(0.05)
	for left: float in [1.5, 2.0, 2.5, 3.0, 3.0]:
		expect_near(health(hit), left, 0.0001)
		await advance(0.25)


func test_lines_and_mistakes() -> void:
	expect_lines(SCHurtAction, {
		"Hurt Self by 1": {},
		"Hurt Goblin by 2.5, from Ogre": {"target_path": ^"../Goblin", "damage": 2.5, "attacker_path": ^"../Ogre"},
		"Hurt Self by [poison]": {"damage_variable": &"poison"},
	})
	expect_lines(SCHealAction, {"Heal Self by 1": {}, "Heal Goblin by 5, reviving it if beaten": {"target_path": ^"../Goblin", "amount": 5.0, "revives": true}})
	var bare := character(0.0, 0.0, "Bare")
	var hurtable := goblin({"mana": 3})
	var beaten := goblin({"health": 0}, {}, "Loser")
	var named := {"variables": {"bare": bare, "hurtable": hurtable, "beaten": beaten}, "name": "Doer"}
	for row: Array in [
		[{"target_path": ^"../Nobody"}, "there is nothing here to hurt. Pick something with a Hurt Box under Target."],
		[{"target_path_variable": &"bare"}, "Bare has no Hurt Box, so no health was taken. " + GIVE_IT],
		[{"target_path_variable": &"hurtable", "damage": 0.0},
			"Damage is 0, and a hit that does no harm is no hit, so nothing happened. Give Damage a number above 0."],
		[{"target_path_variable": &"hurtable", "damage": NAN}, "Damage is nan, and a hit that does no harm is no hit"],
	]:
		expect_warns(kind(SCHurtAction, row[0]), "Hurt on Doer: " + row[1], named)
	for row: Array in [
		[{"target_path": ^"../Nobody"}, "there is nothing here to heal. Pick something with a Hurt Box under Target."],
		[{"target_path_variable": &"bare"}, "Bare has no Hurt Box, so it has no health to give back. " + GIVE_IT],
		[{"target_path_variable": &"beaten", "amount": -1.0}, "Amount is -1, so no health was given. Give Amount a number above 0. Hurt takes health away."],
		[{"target_path_variable": &"hurtable"},
			"Goblin has no machine with a health variable to give health to. Set the Hurt Box's Health Variable to the right name."],
		[{"target_path_variable": &"beaten"}, "Loser's health has run out, so it stays beaten. Turn on Revives to bring it back."],
	]:
		expect_warns(kind(SCHealAction, row[0]), "Heal on Doer: " + row[1], named)
	expect_equal(health(beaten), 0)
	hurt(hurtable, 1.0)
	expect_warning("Goblin was hit, but it has no machine with a number called health, so no health was taken.")
	box(beaten).take_hit(0.0, null, 1.0)
	expect_warning("Loser was hit with a damage of 0.0")
	var unsure := goblin({"health": 5}, {"defence_variable": &"armor", "store_attacker_in": &"foe"})
	hurt(unsure, 1.0)
	expect_warning("takes the variable armor off what hits it, but its machine has no number of that name")
	expect_warning("A Hurt Box on Brain keeps its attacker in the variable foe, which that machine does not have.")


func test_whoever_hears_of_a_hit_may_do_anything() -> void:
	# What is connected to which signal of the Hurt Box, or to a change of the variable.
	var ends: Array[Callable] = [
		func(hit: Node) -> void: hit.queue_free(),
		func(hit: Node) -> void: hit.remove_child(box(hit)),
		func(hit: Node) -> void: hit.remove_child(brain(hit)),
		func(hit: Node) -> void: brain(hit).stop(),
		func(hit: Node) -> void: box(hit).take_hit(1.0, null, 1.0),
		func(hit: Node) -> void: stage.remove_child(hit),
		func(hit: Node) -> void: box(hit).heal(100.0, true),
	]
	for what in ends:
		for when: StringName in [&"hurt", &"died", &"HURT", &"DIED", &"write"]:
			for damage: float in [1.0, 50.0]:
				var hit := goblin({"health": 10})
				var kept: Array = [box(hit), brain(hit)]
				var once: Array = []
				var act_once := func() -> void:
					if once.is_empty():
						once.append(true)
						what.call(hit)
				match when:
					&"hurt":
						box(hit).hurt.connect(func(_damage: float, _attacker: Node) -> void: act_once.call())
					&"died":
						box(hit).died.connect(func(_attacker: Node) -> void: act_once.call())
					&"write":
						kept.pop_back().free()
						var acts := act("watch").watching(["health"]).updating(func() -> void: act_once.call())
						kept.append(start(machine([state("On", [acts])], {"under": hit, "name": "Brain", "variables": {"health": 10}})))
					_:
						brain(hit).event_sent.connect(func(event: StringName, _data: Variant) -> void:
							if event == when:
								act_once.call())
				box(hit).take_hit(damage, stage, 1.0)
				expect_equal(once.size(), 0 if damage < 10.0 and when in [&"died", &"DIED"] or damage > 10.0 and when == &"HURT" else 1, "%s by %s" % [when, damage])
				kept.append(hit)
				for node: Node in kept:
					if is_instance_valid(node):
						node.free()
	var mended := goblin({"health": 2})
	box(mended).hurt.connect(func(_damage: float, _attacker: Node) -> void: box(mended).heal(3.0, true))
	hurt(mended, 5.0)
	expect_events(brain(mended), ["HURT"])
	expect_equal(health(mended), 3, "a last-moment potion")


func test_its_settings_as_the_inspector_keeps_them() -> void:
	await on_both_sides(func() -> void:
		var fresh := guard_health(character())
		expect_near(fresh.knockback, far(5.0), 0.001)
		expect(not property_of(fresh, "knockback")["usage"] & PROPERTY_USAGE_STORAGE, "what nobody set is stored")
		fresh.knockback = 0.0
		expect_equal(fresh.knockback, 0.0)
		expect(property_of(fresh, "knockback")["usage"] & PROPERTY_USAGE_STORAGE)
		expect_equal(fresh._get_configuration_warnings().size(), 1, "nobody keeps its health")
		asker(fresh.get_parent())
		expect_equal(fresh._get_configuration_warnings().size(), 0))
