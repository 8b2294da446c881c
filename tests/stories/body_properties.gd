extends PhysicsStory
## Set Body Properties and Freeze.


## The property by its name in the code.
func set_property(settings: Dictionary) -> SCMachineAction:
	var made := settings.duplicate()
	if made.has("property"):
		made["property"] = ClassDB.class_get_integer_constant(&"SCSetBodyPropertiesAction", made["property"])
	return kind(SCSetBodyPropertiesAction, made)


func freeze(settings: Dictionary = {}) -> SCMachineAction:
	return kind(SCFreezeAction, settings)


func test_each_property_is_set_and_put_back() -> void:
	await on_both_sides(func() -> void:
		var rigid := crate(0.0, 5.0)
		var hero := character(5.0)
		var up: Variant = Vector3(1, 0, 0) if in_3d else Vector2(1, 0)
		var cast: Variant = true if in_3d else RigidBody2D.CCD_MODE_CAST_SHAPE
		var rows := [
			[rigid, "MASS", {"value": 12.0}, "mass", 12.0],
			[rigid, "GRAVITY_SCALE", {"value": -0.5}, "gravity_scale", -0.5],
			[rigid, "LINEAR_DAMP", {"value": 2.0}, "linear_damp", 2.0],
			[rigid, "ANGULAR_DAMP", {"value": 3.0}, "angular_damp", 3.0],
			[rigid, "LOCK_ROTATION", {}, "lock_rotation", true],
			[rigid, "CAN_SLEEP", {"on": false}, "can_sleep", false],
			[rigid, "CONTINUOUS_COLLISION", {}, "continuous_cd", cast],
			[rigid, "MAX_CONTACTS", {"value": 7.0}, "max_contacts_reported", 7],
			[hero, "UP_DIRECTION", {"direction": Vector3(3, 0, 0)}, "up_direction", up],
			[hero, "MOTION_MODE", {"mode": SCSetBodyPropertiesAction.FLOATING}, "motion_mode", 1],
			[hero, "FLOOR_ANGLE", {"value": 60.0}, "floor_max_angle", PI / 3.0],
			[hero, "FLOOR_SNAP", {"value": 0.5}, "floor_snap_length", 0.5],
			[hero, "STOP_ON_SLOPES", {"on": false}, "floor_stop_on_slope", false],
			[hero, "SAME_SPEED_ON_SLOPES", {}, "floor_constant_speed", true],
			[hero, "BLOCK_ON_WALLS", {"on": false}, "floor_block_on_wall", false],
			[hero, "SLIDE_ON_CEILINGS", {"on": false}, "slide_on_ceiling", false],
			[hero, "WALL_ANGLE", {"value": 90.0}, "wall_min_slide_angle", PI / 2.0],
			[hero, "SAFE_MARGIN", {"value": 0.5}, "safe_margin", 0.5],
			[hero, "MAX_SLIDES", {"value": 9.0}, "max_slides", 9],
		]
		for row: Array in rows:
			var body: Node = row[0]
			var before: Variant = body.get(row[3])
			var action := set_property({"property": row[1], "put_back_when_left": true}.merged(row[2]))
			var owner := play([action, act("wait").ticking()], {"leave": "Done"}, {"under": body})
			await physics_frames(1)
			_expect_held(body, row[3], row[4])
			expect_after(owner, &"leave", "Done")
			await physics_frames(1)
			_expect_held(body, row[3], before)
			owner.free()
			play(set_property({"property": row[1]}.merged(row[2])), {}, {"under": body}).free()
			await physics_frames(1)
			_expect_held(body, row[3], row[4])
		var watched := [set_property({"property": "MAX_CONTACTS", "value": 4.0}), set_property({"property": "CONTACT_MONITOR"})]
		play(watched, {}, {"under": rigid})
		await physics_frames(1)
		expect_equal([rigid.get(&"contact_monitor"), rigid.get(&"max_contacts_reported")], [true, 4]))


func test_a_material_is_changed_for_one_body_alone() -> void:
	await on_both_sides(func() -> void:
		var shared := PhysicsMaterial.new()
		shared.rough = true
		var bodies := [crate(0.0, 5.0), crate(3.0, 5.0, 0.8, "Other"), block(0.0, -1.0, 9.0, 1.0)]
		for body: Node in bodies.slice(0, 2):
			body.set(&"physics_material_override", shared)
		var both := [
			set_property({"property": "BOUNCE", "value": 0.75}),
			set_property({"property": "FRICTION", "value": 0.25, "put_back_when_left": true}),
		]
		for body: Node in [bodies[0], bodies[2]]:
			var owner := play(both + [act("wait").ticking()], {"leave": "Done"}, {"under": body})
			var own: PhysicsMaterial = body.get(&"physics_material_override")
			expect(own != shared and own.rough == (body == bodies[0]), "it has not its own")
			expect_equal([own.bounce, own.friction], [0.75, 0.25])
			expect_after(owner, &"leave", "Done")
			expect_equal([own.bounce, own.friction, body.get(&"physics_material_override") == own], [0.75, 1.0, true])
		expect_equal([shared.bounce, shared.friction, bodies[1].get(&"physics_material_override") == shared], [0.0, 1.0, true], "what others share is changed"))


func test_what_does_not_belong_together_is_told() -> void:
	var hero := character()
	var rigid := crate(5.0, 5.0)
	expect_warns(set_property({}), "Mass belongs to a RigidBody, and Hero is a CharacterBody2D, so nothing was changed", {"under": hero})
	expect_warns(set_property({"property": "FRICTION"}), "Friction belongs to a RigidBody or a StaticBody, and Hero is a", {"under": hero})
	expect_warns(set_property({"property": "FLOOR_SNAP"}), "Floor Snap belongs to a character body, and Crate is a RigidBody2D", {"under": rigid})
	expect_warns(set_property({"value": -3.0}), "Mass cannot be -3, so it was taken as 0.001. Give Value a number of 0.001 or more.", {"under": rigid})
	expect_warns(set_property({"property": "BOUNCE", "value": 2.0}), "Bounce cannot be 2, so it was taken as 1. Give Value a number of 0 to 1.", {"under": rigid})
	expect_warns(set_property({"property": "GRAVITY_SCALE", "value": NAN}), "its Value is no number", {"under": rigid})
	expect_warns(set_property({"property": "UP_DIRECTION", "direction": Vector3(0, 0, 4)}), "Direction leads nowhere", {"under": hero})
	expect_warns(set_property({"property": "CONTACT_MONITOR"}), "has its Max Contacts Reported at 0, so its contacts are watched", {"under": rigid})


func test_freezing_and_letting_go() -> void:
	await on_both_sides(func() -> void:
		var body := crate(0.0, 50.0)
		await physics_frames(20)
		play(freeze(), {}, {"under": body})
		await physics_frames(1)
		var height := where(body).y
		await physics_frames(20)
		expect_near(where(body).y, height, 0.001, "frozen")
		expect_equal([body.get(&"freeze"), body.get(&"freeze_mode")], [true, RigidBody3D.FREEZE_MODE_STATIC])
		var owner := play([freeze({"what": SCFreezeAction.LET_GO, "put_back_when_left": true}), act("wait").ticking()], {"leave": "Done"}, {"under": body})
		await physics_frames(31)
		expect(where(body).y < height - 0.9, "it does not fall")
		owner.send_event(&"leave")
		await physics_frames(1)
		expect_equal(body.get(&"freeze"), true, "not put back")
		play([freeze({"while_frozen": SCFreezeAction.AS_A_MOVER, "put_back_when_left": true})], {"FINISHED": "Done"}, {"under": body})
		expect_equal([body.get(&"freeze"), body.get(&"freeze_mode")], [true, RigidBody3D.FREEZE_MODE_STATIC], "the mode is not put back"))


func test_gravity_off_and_on_again() -> void:
	await on_both_sides(func() -> void:
		var body := crate(0.0, 50.0)
		body.set(&"gravity_scale", 0.5)
		for what: int in [SCFreezeAction.GRAVITY_OFF, SCFreezeAction.GRAVITY_OFF, SCFreezeAction.GRAVITY_ON, SCFreezeAction.GRAVITY_ON]:
			play(freeze({"what": what}), {}, {"under": body})
			expect_equal(body.get(&"gravity_scale"), 0.0 if what == SCFreezeAction.GRAVITY_OFF else 0.5)
		var owner := play([freeze({"what": SCFreezeAction.GRAVITY_OFF, "put_back_when_left": true}), act("wait").ticking()], {"leave": "Done"}, {"under": body})
		expect_equal(body.get(&"gravity_scale"), 0.0)
		expect_after(owner, &"leave", "Done")
		expect_equal(body.get(&"gravity_scale"), 0.5)
		var balloon := crate(5.0, 50.0, 0.8, "Balloon")
		balloon.set(&"gravity_scale", 0.0)
		await physics_frames(3)
		balloon.set(&"sleeping", true)
		await physics_frames(3)
		expect_equal(balloon.get(&"sleeping"), true)
		play(freeze({"what": SCFreezeAction.GRAVITY_ON}), {}, {"under": balloon})
		await physics_frames(20)
		expect(balloon.get(&"gravity_scale") == 1.0 and where(balloon).y < 49.8, "it sleeps on in the air"))


func test_in_the_moment_of_a_contact() -> void:
	await on_both_sides(func() -> void:
		ground()
		var body := crate(0.0, 1.0)
		body.set(&"contact_monitor", true)
		body.set(&"max_contacts_reported", 4)
		var held: SCMachineState = state("Held", [
			freeze(), set_property({"property": "LOCK_ROTATION", "put_back_when_left": true}),
			set_property({"property": "CONTACT_MONITOR", "on": false}), act("wait").ticking(),
		], {"on": "Done"})
		var owner := start(machine([state("Fall", [act("fall").ticking()], {"landed": "Held"}), held, state("Done")], {"under": body}))
		body.connect(&"body_entered", func(_other: Node) -> void: owner.send_event(&"landed"))
		await physics_frames(60)
		expect_state(owner, "Held")
		expect_equal([body.get(&"freeze"), body.get(&"lock_rotation"), body.get(&"contact_monitor")], [true, true, false])
		expect_after(owner, &"on", "Done")
		await physics_frames(1)
		expect_equal([body.get(&"freeze"), body.get(&"lock_rotation")], [true, false]))


func test_what_cannot_be_frozen_is_told() -> void:
	expect_warns(freeze(), "there is nothing to freeze. Leave the state that walks it, or use Set Gravity for its gravity.", {"under": character()})
	expect_warns(freeze(), "Spot is a Marker2D, not a RigidBody2D or a RigidBody3D", {"under": spot(0.0, 0.0)})


func test_lines() -> void:
	expect_lines(SCFreezeAction, {
		"Freeze Self": {}, "Let Bridge go": {"what": 1, "body_path": ^"../Bridge"},
		"Switch gravity off for Self while here": {"what": 2, "put_back_when_left": true}, "Switch gravity on for Self": {"what": 3},
	})
	expect_hidden(freeze({"what": 1}), ["while_frozen"])
	expect_line(set_property({}), "Set the Mass of Self to 1")
	expect_line(set_property({"property": "LOCK_ROTATION", "put_back_when_left": true}), "Set the Lock Rotation of Self to on while here")
	expect_line(set_property({"property": "UP_DIRECTION", "body_path": ^"../Hero"}), "Set the Up Direction of Hero to (0, 1, 0)")
	expect_line(set_property({"property": "MOTION_MODE", "mode": 1}), "Set the Motion Mode of Self to Floating")
	expect_hidden(set_property({}), ["on", "direction", "mode"])
	expect_hidden(set_property({"property": "CAN_SLEEP"}), ["value", "direction", "mode"])


func _expect_held(body: Node, property: String, wanted: Variant) -> void:
	if wanted is bool or wanted is int:
		expect_equal(body.get(property), wanted, property)
	else:
		expect_near(body.get(property), wanted, 0.0001, property)
