extends PhysicsStory
## Set Joint: connecting, letting go, and the values of each joint.


## What it does and which value by their names in the code.
func set_joint(settings: Dictionary = {}) -> SCMachineAction:
	var made := settings.duplicate()
	for choice: String in ["what", "which"]:
		if made.has(choice):
			made[choice] = ClassDB.class_get_integer_constant(&"SCSetJointAction", made[choice])
	return kind(SCSetJointAction, made)


func joint(x: float, y: float, of: Node = null) -> Node:
	var made: Node = of if of != null else (PinJoint3D.new() if in_3d else PinJoint2D.new())
	made.name = "Joint"
	made.set(&"position", at(x, y))
	stage.add_child(made)
	return made


func test_what_is_connected_hangs_until_it_is_let_go() -> void:
	await on_both_sides(func() -> void:
		var hook := block(0.0, 10.0, 0.5, 0.5, "Hook")
		var weight := crate(0.0, 8.0, 0.5, "Weight")
		var pin := joint(0.0, 9.0)
		var ends := {"joint_path": ^"../../Joint", "first_path": ^"../../Hook", "second_path": ^"../../Weight"}
		var owner := play([set_joint(ends), act("hang").ticking()], {"cut": "Done"}, {"under": hook})
		await physics_frames(60)
		expect_near(where(weight).y, 8.0, 0.1, "it does not hang")
		expect_equal([pin.get(&"node_a"), pin.get(&"node_b")], [^"../Hook", ^"../Weight"])
		expect_after(owner, &"cut", "Done")
		expect_equal(pin.get(&"node_a"), ^"../Hook", "it lets go by itself")
		weight.set(&"linear_velocity", at(0, 0))
		weight.set(&"angular_velocity", Vector3() if in_3d else 0.0)
		weight.set(&"sleeping", true)
		await physics_frames(3)
		expect_equal(weight.get(&"sleeping"), true)
		play(set_joint({"joint_path": ^"../../Joint", "what": "LET_GO"}), {}, {"under": hook})
		await physics_frames(31)
		expect_equal([pin.get(&"node_a"), pin.get(&"node_b")], [^"", ^""])
		expect(where(weight).y < 7.2, "it does not fall"))


func test_for_as_long_as_the_state_runs() -> void:
	await on_both_sides(func() -> void:
		var hook := block(0.0, 10.0, 0.5, 0.5, "Hook")
		var weight := crate(2.0, 10.0, 0.5, "Weight")
		var pin := joint(9.0, 9.0)
		var places := {SCSetJointAction.WHERE_IT_IS: 9.0, SCSetJointAction.AT_THE_FIRST: 0.0, SCSetJointAction.AT_THE_SECOND: 2.0, SCSetJointAction.HALF_WAY: 1.0}
		for place: int in places:
			weight.set(&"freeze", true)
			var ends := {"joint_path": ^"../../Joint", "second_path": ^"../../Weight"}
			var holding := set_joint(ends.merged({"place": place, "put_back_when_left": true}))
			var owner := play([holding, act("hang").ticking()], {"cut": "Done"}, {"under": hook})
			expect_near(where(pin).x, places[place], 0.001)
			expect_equal(pin.get(&"node_b"), ^"../Weight")
			expect_after(owner, &"cut", "Done")
			expect_equal([pin.get(&"node_a"), pin.get(&"node_b")], [^"", ^""])
			expect_near(where(pin).x, 9.0, 0.001))


func test_what_lands_sticks() -> void:
	await on_both_sides(func() -> void:
		block(0.0, -1.0, 20.0, 2.0, "Floor")
		var dart := crate(0.0, 1.0, 0.5, "Dart")
		dart.set(&"contact_monitor", true)
		dart.set(&"max_contacts_reported", 4)
		var pin := joint(0.0, 0.0)
		var stick := set_joint({"joint_path": ^"../../Joint", "second_path": ^"../../Floor", "place": SCSetJointAction.AT_THE_FIRST})
		var owner := start(machine([state("Fall", [act("fall").ticking()], {"landed": "Stick"}), state("Stick", [stick])], {"under": dart}))
		dart.connect(&"body_entered", func(_other: Node) -> void: owner.send_event(&"landed"))
		await physics_frames(40)
		expect_equal([pin.get(&"node_a"), pin.get(&"node_b")], [^"../Dart", ^"../Floor"])
		var there := where(dart)
		play(kind(SCApplyForceAction, {"force": at(0, 6)}), {}, {"under": dart})
		await physics_frames(30)
		expect_near((where(dart) - there).length(), 0.0, 0.3, "it comes off"))


func test_in_3d_it_may_be_tied_to_the_world() -> void:
	in_3d = true
	var weight := crate(1.0, 10.0, 0.5, "Weight")
	joint(0.0, 10.0)
	play(set_joint({"joint_path": ^"../../Joint"}), {}, {"under": weight})
	await physics_frames(90)
	expect_near((where(weight) - Vector3(0, 10, 0)).length(), 1.0, 0.1, "it is not on its string")
	expect(where(weight).y < 9.9, "it does not swing")


func test_the_values_of_each_joint() -> void:
	var rows := {
		&"PinJoint2D": {
			"SOFTNESS": ["softness", 3.0, 3.0],
			"MOTOR_SPEED": ["motor_target_velocity", 90.0, PI / 2.0],
			"LOWEST_ANGLE": ["angular_limit_lower", -90.0, -PI / 2.0],
			"HIGHEST_ANGLE": ["angular_limit_upper", 45.0, PI / 4.0],
			"BIAS": ["bias", 0.5, 0.5],
		},
		&"GrooveJoint2D": {
			"LENGTH": ["length", 80.0, 80.0],
		},
		&"DampedSpringJoint2D": {
			"LENGTH": ["length", 80.0, 80.0],
			"REST_LENGTH": ["rest_length", 30.0, 30.0],
			"STIFFNESS": ["stiffness", 9.0, 9.0],
			"DAMPING": ["damping", 2.0, 2.0],
		},
		&"PinJoint3D": {
			"BIAS": ["params/bias", 0.5, 0.5],
			"DAMPING": ["params/damping", 2.0, 2.0],
		},
		&"HingeJoint3D": {
			"MOTOR_SPEED": ["motor/target_velocity", 180.0, PI],
			"MOTOR_STRENGTH": ["motor/max_impulse", 5.0, 5.0],
			"LOWEST_ANGLE": ["angular_limit/lower", -45.0, -PI / 4.0],
			"HIGHEST_ANGLE": ["angular_limit/upper", 30.0, PI / 6.0],
			"SOFTNESS": ["angular_limit/softness", 0.5, 0.5],
		},
		&"SliderJoint3D": {
			"LOWEST_DISTANCE": ["linear_limit/lower_distance", -3.0, -3.0],
			"HIGHEST_DISTANCE": ["linear_limit/upper_distance", 2.0, 2.0],
			"LOWEST_ANGLE": ["angular_limit/lower_angle", -90.0, -PI / 2.0],
			"DAMPING": ["linear_limit/damping", 2.0, 2.0],
		},
		&"ConeTwistJoint3D": {
			"SWING": ["swing_span", 60.0, PI / 3.0],
			"TWIST": ["twist_span", 90.0, PI / 2.0],
		},
		&"Generic6DOFJoint3D": {
			"HIGHEST_DISTANCE": ["linear_limit_y/upper_distance", 2.0, 2.0],
			"MOTOR_SPEED": ["angular_motor_y/target_velocity", 90.0, PI / 2.0],
			"STIFFNESS": ["linear_spring_y/stiffness", 4.0, 4.0],
			"REST_LENGTH": ["linear_spring_y/equilibrium_point", 1.0, 1.0],
		},
	}
	var switches := {
		&"PinJoint2D": {
			"MOTOR_ON": ["motor_enabled", true],
			"LIMIT_ON": ["angular_limit_enabled", true],
			"BODIES_COLLIDE": ["disable_collision", false],
		},
		&"HingeJoint3D": {
			"MOTOR_ON": ["motor/enable", true],
			"LIMIT_ON": ["angular_limit/enable", true],
			"BODIES_COLLIDE": ["exclude_nodes_from_collision", false],
		},
		&"Generic6DOFJoint3D": {
			"MOTOR_ON": ["angular_motor_y/enabled", true],
			"SPRING_ON": ["linear_spring_y/enabled", true],
		},
	}
	for of: StringName in rows:
		in_3d = String(of).ends_with("3D")
		var made := joint(0.0, 0.0, ClassDB.instantiate(of))
		for which: String in rows[of]:
			var row: Array = rows[of][which]
			play(set_joint({"what": "SET_A_VALUE", "which": which, "value": row[1], "axis": SCSetJointAction.Y}), {}, {"under": made}).free()
			expect_near(made.get(row[0]), row[2], 0.0001, "%s %s" % [of, row[0]])
		var switched: Dictionary = switches.get(of, {})
		for which: String in switched:
			var row: Array = switched[which]
			for on: bool in [false, true]:
				play(set_joint({"what": "SET_A_VALUE", "which": which, "on": on, "axis": SCSetJointAction.Y}), {}, {"under": made}).free()
				expect_equal(made.get(row[0]), row[1] == on, "%s %s" % [of, row[0]])
		var which: String = rows[of].keys()[0]
		var property: String = rows[of][which][0]
		var before: float = made.get(property)
		var held := set_joint({"what": "SET_A_VALUE", "which": which, "value": 0.8 if in_3d else 40.0, "axis": SCSetJointAction.Y, "put_back_when_left": true})
		var owner := play([held, act("wait").ticking()], {"leave": "Done"}, {"under": made})
		expect(made.get(property) != before, "%s %s is not held" % [of, property])
		expect_after(owner, &"leave", "Done")
		expect_near(made.get(property), before, 0.0001, "%s %s is not put back" % [of, property])
		made.free()


func test_what_is_set_up_wrong_is_told() -> void:
	var pin := joint(0.0, 0.0)
	var body := crate(0.0, 5.0)
	block(0.0, -5.0, 4.0, 1.0, "Floor")
	expect_warns(set_joint(), "Crate is a RigidBody2D, not a joint, such as a PinJoint2D or a HingeJoint3D. Pick", {"under": body})
	var rows := [
		[{"first_path": ^"../../Crate"}, "no second one is picked, so nothing was connected. Pick one under Second Path"],
		[{"first_path": ^"../../Crate", "second_path": ^"../../Crate"}, "Crate cannot be connected with itself"],
		[{"first_path": ^"../../Crate", "second_path": ^"../../Nobody"}, "there is no node at ../../Nobody. Pick one under Second Path."],
		[{"second_path": ^"../../Floor"}, "Joint is a PinJoint2D, not a physics body"],
		[{"what": "SET_A_VALUE", "which": "SWING"}, "Joint is a PinJoint2D, which has no Swing, so nothing was changed. It has Bias, Bodies Collide"],
		[{"what": "SET_A_VALUE", "which": "BIAS", "value": 4.0}, "the Bias of Joint cannot be 4, so it was taken as 0.9"],
		[{"what": "SET_A_VALUE", "which": "BIAS", "value": NAN}, "its Value is no number"],
	]
	for row: Array in rows:
		expect_warns(set_joint(row[0]), row[1], {"under": pin})
	var deep := RigidBody3D.new()
	add(deep, "Deep")
	var mixed := set_joint({"first_path": ^"../../Deep", "second_path": ^"../../Floor"})
	expect_warns(mixed, "so nothing was connected. Pick a 2D node under First Path.", {"under": pin})


func test_lines() -> void:
	var rope := {"joint_path": ^"../Rope"}
	var lines := {
		"Connect Hook and Weight by Rope": rope.merged({"first_path": ^"../Hook", "second_path": ^"../Weight"}),
		"Connect Self and the world by Rope while here": rope.merged({"put_back_when_left": true}),
		"Let go of what Rope connects": rope.merged({"what": "LET_GO"}),
		"Set the Stiffness of Self to 4": {"what": "SET_A_VALUE", "which": "STIFFNESS", "value": 4.0},
		"Set the Motor On of Self to off": {"what": "SET_A_VALUE", "which": "MOTOR_ON", "on": false},
	}
	for line: String in lines:
		expect_line(set_joint(lines[line]), line)
	expect_hidden(set_joint(), ["which", "value", "on", "axis"])
	expect_hidden(set_joint({"what": "SET_A_VALUE", "which": "MOTOR_ON"}), ["value", "first_path", "place", "bodies_collide"])
