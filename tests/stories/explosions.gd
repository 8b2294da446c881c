extends PhysicsStory
## Explosion: what it reaches, how hard, and whom it tells.


func blast(settings: Dictionary = {}) -> SCMachineAction:
	return kind(SCExplosionAction, {"radius": far(4.0), "strength": far(8.0), "lift": 0.0}.merged(settings, true))


## A box in the air whose middle is so far from where it goes off.
func box(x: float, y: float = 50.0, name: String = "Crate") -> Node:
	var made := crate(x, y, 0.5, name)
	made.set(&"gravity_scale", 0.0)
	made.set(&"linear_damp_mode", RigidBody3D.DAMP_MODE_REPLACE)
	return made


## Where it goes off.
func bomb() -> Node:
	return spot(0.0, 50.0, "Bomb")


func speed(body: Node) -> Variant:
	return body.get(&"velocity") if body is CharacterBody2D or body is CharacterBody3D else body.get(&"linear_velocity")


## Sets it off once the physics know everything there is, and gives them time to take it in.
func go_off(settings: Dictionary, options: Dictionary = {}) -> SCMachine:
	await physics_frames(2)
	var owner := play(blast(settings), {"FINISHED": "Done"}, options)
	await physics_frames(3)
	expect_state(owner, "Done")
	return owner


func test_it_throws_the_harder_the_nearer() -> void:
	await on_both_sides(func() -> void:
		var middle := bomb()
		var bodies := {
			"near": box(1.0), "far": box(0.0, 53.0, "Far"), "edge": box(-4.1, 50.0, "Edge"), "out": box(6.0, 50.0, "Out"), "heavy": box(0.0, 49.0, "Heavy"),
		}
		bodies["heavy"].set(&"mass", 2.0)
		var hero := character(2.0, 50.0 - TALL / 2.0)
		await go_off({}, {"under": middle})
		var wanted := {"near": at(6, 0), "far": at(0, 2), "edge": at(0, 0), "out": at(0, 0), "heavy": at(0, -3)}
		for name: String in wanted:
			expect_near(speed(bodies[name]), wanted[name], far(0.01), name)
		expect_near(speed(hero), at(4, 0), far(0.1), "a character"))


func test_how_it_throws() -> void:
	await on_both_sides(func() -> void:
		var ways := {
			"as strong all over": [{"at_the_edge": 1.0}, at(8, 0)],
			"half of it at the edge": [{"at_the_edge": 0.5}, at(6, 0)],
			"as much up as away": [{"lift": 1.0}, at(4, 4) / sqrt(2.0)],
			"inward": [{"strength": far(-8.0)}, at(-4, 0)],
			"whatever its mass": [{"whatever_its_mass": true}, at(4, 0)],
		}
		for way: String in ways:
			var middle := bomb()
			var body := box(2.0)
			body.set(&"mass", 3.0 if way == "whatever its mass" else 1.0)
			await go_off(ways[way][0], {"under": middle})
			expect_near(speed(body), ways[way][1], far(0.01), way)
			body.free()
			middle.free())


func test_whom_it_spares() -> void:
	await on_both_sides(func() -> void:
		var barrel := box(0.0, 50.0, "Barrel")
		var thrower := box(1.0, 50.0, "Thrower")
		var foe := box(-1.0, 50.0, "Foe")
		foe.add_to_group(&"foes")
		var other := box(0.0, 51.0, "Other")
		other.set(&"collision_layer", 4)
		var rows := [
			[{}, ["Foe", "Other", "Thrower"]],
			[{"spares_self": false}, ["Barrel", "Foe", "Other", "Thrower"]],
			[{"spares_path": ^"../../Thrower"}, ["Foe", "Other"]],
			[{"only_group": &"foes"}, ["Foe"]],
			[{"mask": 4}, ["Other"]],
			[{"radius": far(0.2)}, []],
		]
		for row: Array in rows:
			for body: Node in [barrel, thrower, foe, other]:
				body.set(&"freeze", true)
			var tells := {"store_count_in": &"count", "store_bodies_in": &"bodies", "hit_event": &"hit", "nothing_event": &"nothing"}
			var owner := await go_off(tells.merged(row[0]), {"under": barrel, "variables": {"count": -1, "bodies": []}})
			var names: Array = (owner.get_value(&"bodies") as Array).map(func(body: Node) -> String: return body.name)
			names.sort()
			expect_equal(names, row[1], str(row[0]))
			expect_values(owner, {&"count": names.size()})
			expect_events(owner, ["nothing" if names.is_empty() else "hit"])
			owner.free())


func test_walls_shield_and_bodies_do_not() -> void:
	await on_both_sides(func() -> void:
		var middle := bomb()
		block(2.0, 50.0, 0.4, 4.0, "Wall")
		var behind_wall := box(3.0, 50.0, "BehindWall")
		var crowd := box(-1.0, 50.0, "Front")
		var behind_crowd := box(-2.0, 50.0, "BehindCrowd")
		await go_off({"walls_shield": true}, {"under": middle})
		expect_near(speed(behind_wall), at(0, 0), far(0.001), "behind a wall")
		expect_near(speed(crowd), at(-6, 0), far(0.01))
		expect_near(speed(behind_crowd), at(-4, 0), far(0.01), "behind a crate")
		await go_off({"walls_shield": true, "walls_mask": 8}, {"under": middle})
		expect_near(speed(behind_wall), at(2, 0), far(0.01), "a wall on another layer"))


func test_those_it_reaches_are_told() -> void:
	await on_both_sides(func() -> void:
		var middle := bomb()
		var told: Array = []
		for body: Node in [box(1.0), character(-2.0, 50.0 - TALL / 2.0), box(7.0, 50.0, "Out")]:
			told.append(start(machine([state("Here", [act("wait").ticking()], {"blown": "Blown"}), state("Blown")], {"under": body})))
		var owner := await go_off({"reached_event": &"blown"}, {"under": middle})
		for i: int in 3:
			expect_state(told[i], ["Blown", "Blown", "Here"][i])
		expect_near(told[0].event_data(&"blown"), far(6.0), far(0.01), "how strong it was there")
		expect_near(told[1].event_data(&"blown"), far(4.0), far(0.1))
		expect(told[0].last_event_sender() in [owner, middle], "it does not know whose it was"))


func test_it_goes_off_in_the_frame_that_everything_comes_in() -> void:
	await on_both_sides(func() -> void:
		var middle := bomb()
		var body := box(2.0)
		var owner := play(blast(), {"FINISHED": "Done"}, {"under": middle})
		await physics_frames(4)
		expect_state(owner, "Done")
		expect_near(speed(body), at(4, 0), far(0.01)))


func test_a_bomb_that_goes_off_as_it_lands() -> void:
	await on_both_sides(func() -> void:
		ground()
		var falling := crate(0.0, 2.0, 0.5, "Falling")
		falling.set(&"contact_monitor", true)
		falling.set(&"max_contacts_reported", 4)
		var hero := character(1.5)
		var target := asker(hero)
		var blow := blast({"hit_event": &"hit"})
		var owner := start(machine([
			state("Fall", [act("fall").ticking()], {"landed": "Blow"}), state("Blow", [blow], {"hit": "Gone"}), state("Gone"),
		], {"under": falling}))
		falling.connect(&"body_entered", func(_other: Node) -> void: owner.send_event(&"landed"))
		await physics_frames(60)
		expect_state(owner, "Gone")
		expect(target.is_running() and speed_of(hero).x > 2.0, "nothing is thrown"))


func test_who_is_told_may_do_anything() -> void:
	await on_both_sides(func() -> void:
		var middle := bomb()
		var bodies := [box(1.0), box(-1.5, 50.0, "Second"), box(0.0, 52.0, "Third")]
		var owner := doing(blast({"reached_event": &"blown", "hit_event": &"hit"}), {"FINISHED": "Done"}, {"under": middle})
		var free_them := func() -> void:
			for body: Node in bodies:
				if is_instance_valid(body) and body.name != &"Crate":
					body.free()
			owner.stop()
		for body: Node in bodies:
			start(machine([state("Here", [act("wait").ticking()], {"blown": "Gone"}), state("Gone", [act("gone").entering(free_them)])], {"under": body}))
		await physics_frames(2)
		start(owner)
		await physics_frames(3)
		expect(not owner.is_running() and not is_instance_valid(bodies[1]) and not is_instance_valid(bodies[2]), "nobody was told"))


func test_what_cannot_go_off_is_told() -> void:
	var none := {"under": bomb()}
	await expect_warns_in_physics(blast({"radius": 0.0}), "its Radius is 0, so it reaches nothing. Give Radius a number above 0.", none)
	await expect_warns_in_physics(blast({"radius": NAN}), "Radius holds a number that is none", none)
	await expect_warns_in_physics(blast({"center_path": ^"../Nobody"}), "there is no node at ../Nobody", none)
	await expect_warns_in_physics(blast({"spares_path": ^"../Nobody"}), "there is no node at ../Nobody. Pick one under Spares Path.", none)
	await expect_warns_in_physics(blast(), "not a 2D or 3D node", {"under": add(Timer.new(), "Fuse")})


func test_lines() -> void:
	expect_lines(SCExplosionAction, {
		"Explode at Self with 10, 5 far": {},
		"Explode at Bomb with 3, 2 far, only foes, telling them blown": {
			"center_path": ^"../Bomb", "strength": 3.0, "radius": 2.0, "only_group": &"foes", "reached_event": &"blown",
		},
	})
	expect_hidden(kind(SCExplosionAction), ["walls_mask"])
	expect_shown(kind(SCExplosionAction, {"walls_shield": true}), ["walls_mask"])
