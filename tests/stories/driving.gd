extends PhysicsStory
## Karts that are character bodies and a vehicle on wheels, driven by the keys.

const GO: StringName = &"ui_up"
const BACK: StringName = &"ui_down"
const LEFT: StringName = &"ui_left"
const RIGHT: StringName = &"ui_right"
const HANDBRAKE: StringName = &"ui_accept"


func close() -> void:
	release()
	await super()


func release() -> void:
	for input: StringName in [GO, BACK, LEFT, RIGHT, HANDBRAKE]:
		Input.action_release(input)


func press(input: StringName) -> void:
	Input.action_press(input)


func drive(settings: Dictionary = {}) -> SCDriveAction:
	return kind(SCDriveAction, {
		"accelerate_input": GO, "reverse_input": BACK, "left_input": LEFT, "right_input": RIGHT, "top_speed": far(20.0), "acceleration": far(10.0),
		"store_speed_in": &"speed", "store_slide_in": &"slide", "store_crash_in": &"crash", "crash_event": &"crashed",
	}.merged(settings, true))


func driving(body: Node, settings: Dictionary = {}) -> SCMachine:
	return walk(body, [drive(settings)], {"variables": {"speed": 0.0, "slide": 0.0, "crash": 0.0}})


## A kart with room all round. Pointing along -z in 3D, and to the right in 2D.
func kart(x: float = 0.0) -> Node:
	var body := character(x, 0.0, "Kart")
	if not in_3d:
		body.set(&"motion_mode", CharacterBody2D.MOTION_MODE_FLOATING)
	return body


func floor_in_3d() -> void:
	if in_3d:
		var made: StaticBody3D = StaticBody3D.new()
		var shape := CollisionShape3D.new()
		shape.shape = BoxShape3D.new()
		(shape.shape as BoxShape3D).size = Vector3(1000, 2, 1000)
		made.add_child(shape)
		made.position.y = -1.0
		stage.add_child(made)


func told(owner: SCMachine, name: StringName = &"speed") -> float:
	return float(owner.get_value(name)) / (1.0 if name == &"slide" else far(1.0))


## How far along the way it pointed at first.
func gone(body: Node) -> float:
	return -where(body).z if in_3d else where(body).x


func heading(body: Node) -> float:
	return -rad_to_deg((body as Node3D).rotation.y) if in_3d else rad_to_deg((body as Node2D).rotation)


func test_it_gathers_speed_brakes_and_backs_up() -> void:
	await on_both_sides(func() -> void:
		floor_in_3d()
		var body := kart()
		var owner := driving(body)
		await physics_frames(5)
		expect_equal(told(owner), 0.0)
		press(GO)
		await physics_frames(61)
		expect_near(told(owner), 10.0, 0.4, "a second at 10")
		await physics_frames(90)
		expect_near(told(owner), 20.0, 0.01, "the top speed")
		release()
		press(BACK)
		var from := gone(body)
		while told(owner) > 0.0:
			await physics_frames(1)
		expect_near(gone(body) - from, 20.0 * 20.0 / (2.0 * 10.0 * 2.0), 0.4, "the way it takes to stop")
		await physics_frames(120)
		expect_near(told(owner), -10.0, 0.01, "backward it is half as fast")
		release()
		await physics_frames(140)
		expect_near(told(owner), 0.0, 0.01, "it rolls out"))


func test_how_fast_it_turns() -> void:
	await on_both_sides(func() -> void:
		# Steering, how much is left at top speed, the pull, degrees in a quarter of a second at top speed.
		for row: Array in [[RIGHT, 1.0, 0.0, 30.0], [LEFT, 0.5, 0.0, -15.0], [&"", 1.0, 0.5, 15.0]]:
			floor_in_3d()
			var body := kart()
			var owner := driving(body, {"turn_at_top_speed": row[1], "pull_variable": &"pull"})
			owner.set_value(&"pull", 0.0)
			if row[0] != &"":
				press(row[0])
			await physics_frames(10)
			expect_near(heading(body), 0.0, 0.001, "it turns on the spot")
			release()
			press(GO)
			await physics_frames(125)
			expect_near(told(owner), 20.0, 0.05)
			var from := heading(body)
			owner.set_value(&"pull", row[2])
			if row[0] != &"":
				press(row[0])
			await physics_frames(15)
			expect_near(heading(body) - from, row[3], 3.0, str(row))
			release()
			owner.free()
			body.free()
		var reversing := kart()
		var backward := driving(reversing)
		press(BACK)
		await physics_frames(60)
		press(RIGHT)
		await physics_frames(15)
		expect(heading(reversing) < -10.0, "backward it turns the other way: %s" % heading(reversing))
		expect(told(backward) < -3.0)
		release())


func test_it_slides_on_the_handbrake_in_3d() -> void:
	in_3d = true
	floor_in_3d()
	var body := kart()
	var owner := driving(body, {"handbrake_input": HANDBRAKE})
	press(GO)
	await physics_frames(125)
	press(RIGHT)
	await physics_frames(30)
	expect(told(owner, &"slide") < 0.15, "it slides at %s with all its grip" % told(owner, &"slide"))
	var from := heading(body)
	press(HANDBRAKE)
	await physics_frames(30)
	expect(told(owner, &"slide") > 0.5, "it slides at only %s" % told(owner, &"slide"))
	expect_near(heading(body) - from, 90.0, 6.0, "one and a half times 120 degrees, for half a second")
	expect(told(owner) < 19.0, "sliding takes no speed")
	release()
	press(GO)
	await physics_frames(40)
	expect(told(owner, &"slide") < 0.02)


func test_a_crash_is_told_once_and_a_scrape_is_none() -> void:
	await on_both_sides(func() -> void:
		floor_in_3d()
		var wall := block(30.0, 0.0, 2.0, 100.0, "Wall")
		if in_3d:
			wall.set(&"position", Vector3(0, 0, -30))
		var body := kart()
		var owner := driving(body)
		press(GO)
		await physics_frames(180)
		expect_events(owner, ["crashed"])
		expect_near(told(owner, &"crash"), 20.0, 1.0)
		expect_near(told(owner), 0.0, 0.3)
		release())


func test_another_push_is_taken_up_and_speed_goes_from_state_to_state() -> void:
	await on_both_sides(func() -> void:
		floor_in_3d()
		var body := kart()
		var owner := start(machine([state("Road", [drive()], {"mud": "Mud"}), state("Mud", [drive({"top_speed": far(40.0)})])],
			{"under": body, "variables": {"speed": 0.0, "slide": 0.0, "crash": 0.0}}))
		await physics_frames(3)
		body.set(&"velocity", Vector3(0, 0, -15) if in_3d else Vector2(15, 0) * PX)
		press(GO)
		await physics_frames(7)
		expect_near(told(owner), 16.0, 0.3)
		owner.send_event("mud")
		await physics_frames(7)
		expect_near(told(owner), 17.0, 0.4)
		release())


func test_wheels_roll_and_the_model_leans() -> void:
	in_3d = true
	floor_in_3d()
	var body := kart()
	var model := Node3D.new()
	model.name = "Model"
	body.add_child(model)
	var wheels: Array[Node3D] = []
	for place: Vector3 in [Vector3(0.4, -0.6, -0.5), Vector3(0.4, -0.6, 0.5)]:
		var wheel := MeshInstance3D.new()
		wheel.name = "Wheel%d" % wheels.size()
		wheel.position = place
		model.add_child(wheel)
		wheels.append(wheel)
	var owner := driving(body, {"body_model_path": ^"../Model"})
	press(GO)
	await physics_frames(60)
	expect(absf(wheels[0].rotation.x) + absf(wheels[0].rotation.y) > 0.01, "the wheel does not roll")
	press(RIGHT)
	await physics_frames(60)
	expect_near(model.rotation_degrees.z, 6.0 * told(owner) / 20.0, 0.3)
	expect_near(wheels[0].basis.x.signed_angle_to(Vector3.RIGHT, Vector3.UP), deg_to_rad(30.0), 0.02, "it steers in front")
	expect_near(wheels[1].basis.x, Vector3.RIGHT, 0.01, "and not behind")
	release()
	press(BACK)
	await physics_frames(30)
	expect(model.rotation_degrees.x < -2.0, "it does not dip: %s" % model.rotation_degrees)
	owner.free()
	expect_near(model.rotation, Vector3.ZERO)


func vehicle() -> VehicleBody3D:
	var body := VehicleBody3D.new()
	body.name = "Car"
	body.mass = 60.0
	boxed(body, Vector3(1.6, 0.5, 3.0))
	for place: Vector3 in [Vector3(0.8, -0.2, 1.2), Vector3(-0.8, -0.2, 1.2), Vector3(0.8, -0.2, -1.2), Vector3(-0.8, -0.2, -1.2)]:
		var wheel := VehicleWheel3D.new()
		wheel.position = place
		wheel.use_as_steering = place.z > 0.0
		wheel.use_as_traction = place.z < 0.0
		wheel.wheel_radius = 0.3
		wheel.wheel_rest_length = 0.1
		wheel.suspension_stiffness = 40.0
		body.add_child(wheel)
	body.position = Vector3(0, 0.8, 0)
	stage.add_child(body)
	return body


func test_a_vehicle_on_wheels() -> void:
	in_3d = true
	floor_in_3d()
	var car := vehicle()
	var owner := driving(car, {"top_speed": 8.0, "handbrake_input": HANDBRAKE})
	await physics_frames(30)
	press(GO)
	await physics_frames(10)
	expect_equal([car.engine_force, car.brake], [300.0, 0.0])
	await physics_frames(240)
	expect_near(car.linear_velocity.length(), 8.0, 0.8, "it is not held to its top speed")
	expect_near(told(owner), car.linear_velocity.length(), 0.3, "forward is above zero")
	press(RIGHT)
	await physics_frames(20)
	expect_near(car.steering, -deg_to_rad(30.0), 0.001)
	press(HANDBRAKE)
	await physics_frames(2)
	expect_near((car.get_child(3) as VehicleWheel3D).wheel_friction_slip, 10.5 * 1.6 / 20.0, 0.001)
	expect_near((car.get_child(1) as VehicleWheel3D).wheel_friction_slip, 10.5, 0.001)
	release()
	await physics_frames(2)
	expect_near((car.get_child(3) as VehicleWheel3D).wheel_friction_slip, 10.5, 0.001)
	press(BACK)
	await physics_frames(2)
	expect(car.brake > 0.0 and car.engine_force == 0.0, "it does not brake")
	release()
	owner.free()
	expect_equal([car.engine_force, car.brake, car.steering], [0.0, 0.0, 0.0])


func test_numbers_that_are_none_and_bodies_that_go_harm_nobody() -> void:
	await on_both_sides(func() -> void:
		press(GO)
		press(RIGHT)
		for setting: String in ["top_speed", "acceleration", "turn_speed", "turn_at_top_speed", "grip", "brake_strength", "sideways_scrub", "pull", "crash_share"]:
			for number: float in [NAN, INF, -1.0, 1.0e30]:
				var body := kart()
				driving(body, {setting: number})
				await physics_frames(3)
				expect((body.get(&"position") as Variant).is_finite() and (body.get(&"velocity") as Variant).is_finite(), "%s %s" % [setting, number])
				body.free()
		var body := kart()
		body.set(&"velocity", at(NAN, 0.0))
		var owner := start(machine([state("Road", [drive({"body_path": ^"../Kart"})])], {"under": stage, "variables": {"speed": 0.0, "slide": 0.0, "crash": 0.0}}))
		await physics_frames(2)
		body.free()
		await physics_frames(2)
		expect_warning("there is no vehicle at Body to drive")
		owner.free()
		release())
	in_3d = true
	var car := vehicle()
	press(GO)
	for number: float in [NAN, -1.0]:
		var owner := driving(car, {"engine_force": number, "steering_degrees": number, "brake_strength": number})
		await physics_frames(3)
		owner.free()
	expect(car.position.is_finite())


func test_what_it_says() -> void:
	expect_lines(SCDriveAction, {"Drive at up to 20": {}})
	expect_warns(kind(SCDriveAction),
		"Drive on Machine: Stage is a Node, and Drive drives a VehicleBody3D, a CharacterBody2D or a CharacterBody3D, so it does not move. Pick one of those")
	expect_warns(kind(SCDriveAction, {"body_path": ^"../Nobody"}), "Drive on Machine: there is no vehicle at Body to drive. Pick one, or leave it empty for Self.")
