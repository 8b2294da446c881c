extends Story
## Many machines in one loop: an action hands its work to the lane of the tree and rests, the lane sends the events.

const Fast := preload("res://addons/quillstead/runtime/quillstead_fast.gd")

## Long enough for the lane to have begun: it first runs a job in the step after the one in which it was made.
const BEGUN: int = 3
const NEAR: float = 50.0


## A node that runs the story's own code while the lane moves it.
class Watched:
	extends Node2D

	var when_moved: Callable

	func _init() -> void:
		set_notify_local_transform(true)

	func _notification(what: int) -> void:
		if what == NOTIFICATION_LOCAL_TRANSFORM_CHANGED and when_moved.is_valid():
			when_moved.call()


class Deaf:
	extends RefCounted

	var heard: Array[StringName] = []

	func send_event(event: StringName) -> void:
		heard.append(event)


## Jobs run in the order of their numbers, and a lane that has had others gives out their numbers first.
func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	var former := tree.root.get_node_or_null(^"QuillsteadFastLane")
	if former != null:
		former.free()


func test_a_guard_hears_when_somebody_comes_near_and_goes() -> void:
	var thief := body("Thief", Vector2(200, 0))
	var guard := _watching(body("Post"), {"to_node": thief})
	await physics_frames(BEGUN)
	expect(guard.is_resting(0) and not guard.is_processing() and not guard.is_physics_processing(), "the machine is called each frame")
	for row: Array in [[200.0, "far"], [NEAR, "near"], [NEAR, ""], [NEAR + 0.1, "far"], [-NEAR, "near"]]:
		thief.position.x = row[0]
		await physics_frames(2)
		expect_events(guard, [row[1]] if row[1] else [])
	thief.free()
	await physics_frames(2)
	expect_events(guard, ["far"])
	expect_equal(_lane(guard).job_count(), 1)


func test_a_check_keeps_the_answer_that_the_lane_found() -> void:
	for turned: bool in [false, true]:
		var thief := body("Thief", Vector2(200, 0))
		var near := kind(SCDistanceCondition, {"to_node_path": ^"../../Thief", "distance": NEAR, "invert": turned})
		var guard := play(watch(near), {}, {"under": body("Post")})
		await physics_frames(BEGUN)
		expect(guard.is_resting(0))
		for at: float in [0.0, 200.0, 0.0]:
			thief.position.x = at
			await physics_frames(BEGUN)
			expect_equal(guard.slot(0)["check_last"], (at < NEAR) != turned)
		guard.get_parent().free()
		thief.free()


func test_the_nearest_of_a_group_counts_but_not_oneself() -> void:
	var post := body("Post")
	post.add_to_group("thieves")
	var guard := _watching(post, {"group": "thieves"})
	await physics_frames(BEGUN)
	expect_events(guard, ["far"])
	for one: Node in [body("Far", Vector2(0, 500)), body_3d("In Space"), add(Node.new())]:
		one.add_to_group("thieves")
	await physics_frames(3)
	expect_events(guard, [])
	var thief := body("Thief", Vector2(0, 30))
	thief.add_to_group("thieves")
	await physics_frames(2)
	expect_events(guard, ["near"])
	thief.remove_from_group("thieves")
	await physics_frames(2)
	expect_events(guard, ["far"])


func test_what_a_guard_is_told_first() -> void:
	var post := body("Post")
	var deep_post := body_3d("Deep Post")
	var bird := body_3d("Bird", Vector3(30, 60, 40))
	var rows: Dictionary[SCMachine, Array] = {
		_watching(post, {"group": "nobody", "name": "Alone"}): ["far"],
		_watching(post, {"group": "nobody", "false_event": "", "name": "Quiet"}): [],
		_watching(post, {"group": "nobody", "last": 0, "name": "Knows"}): [],
		_watching(post, {"group": "nobody", "last": 1, "name": "Thought Otherwise"}): ["far"],
		_watching(post, {"to_node": post, "last": 1, "name": "Knows It Is Near"}): [],
		_watching(post, {"to_node": post, "distance": -1.0, "name": "Nothing is that near"}): ["far"],
		_watching(post, {"to_node": bird, "name": "Between 2D and 3D"}): ["far"],
		_watching(post, {"to_node": stage, "name": "Nowhere"}): ["far"],
		_watching(deep_post, {"to_node": bird, "name": "Full"}): ["far"],
		_watching(deep_post, {"to_node": bird, "ignore_height": true, "name": "Along the Ground"}): ["near"],
		# Height is for 3D: a 2D node has none to ignore.
		_watching(post, {"to_node": body("Below", Vector2(0, 60)), "ignore_height": true, "name": "Above"}): ["far"],
	}
	await physics_frames(BEGUN)
	for guard in rows:
		expect_events(guard, rows[guard])


func test_out_of_the_tree_a_node_in_3d_is_nowhere() -> void:
	var post := body_3d("Post")
	var bird := body_3d("Bird")
	var guard := _watching(post, {"to_node": bird})
	await physics_frames(BEGUN)
	expect_events(guard, ["near"])
	stage.remove_child(bird)
	await physics_frames(2)
	expect_events(guard, ["far"])
	stage.add_child(bird)
	await physics_frames(2)
	expect_events(guard, ["near"])
	stage.remove_child(post)
	await physics_frames(2)
	expect_events(guard, [])
	post.free()
	await physics_frames(2)
	expect_equal(_lane(guard).job_count(), 0)


func test_a_chaser_catches_the_same_one_twice() -> void:
	var dog := body("Dog")
	var cat := body("Cat", Vector2(10, 0))
	var chasing := _chasing(dog, {"prey": cat}, {"stop_within": 2.0})
	var caught: Array = []
	chasing.event_sent.connect(func(_event: StringName, data: Variant) -> void: caught.append(data))
	await physics_frames(BEGUN)
	expect(dog.position.x > 0.0 and dog.position.x < 8.0, "at %s" % dog.position)
	await physics_frames(20)
	expect_events(chasing, ["caught"])
	expect_equal(caught, [cat])
	expect_near(dog.position.x, 8.0, 1.001)
	cat.position.x = 20.0
	await physics_frames(30)
	expect_events(chasing, ["caught"])
	expect_equal(dog.position.y, 0.0)
	# One that begins where it ends has been told.
	var there := _chasing(cat, {"prey": cat}, {"there": true, "name": "There"})
	await physics_frames(BEGUN)
	expect_events(there, [])


func test_the_last_step_lands_on_the_place() -> void:
	for row: Array in [[Vector2(3, 4), Vector2.ZERO, Vector2(3, 4)], [Vector3(3, 0, 4), Vector3(0, 5, 0), Vector3(3, 5, 4)]]:
		var dog := body_at(row[1], "Dog")
		var chasing := _chasing(dog, {"prey": body_at(row[0], "Cat")}, {"speed": 100000.0, "stop_within": 0.0})
		await physics_frames(BEGUN + 1)
		# A chaser in 3D keeps its height.
		expect_near(dog.get(&"position"), row[2])
		expect_events(chasing, ["caught"])
		chasing.free()


func test_without_a_target_the_body_stands_still() -> void:
	var dog := body("Dog")
	var cat := body("Cat", Vector2(5, 0))
	var chasing := _chasing(dog, {"prey": cat}, {"stop_within": 8.0})
	await physics_frames(BEGUN)
	expect_events(chasing, ["caught"])
	for nothing: Variant in [null, 3, "cat", add(Node.new()), RefCounted.new()]:
		chasing.set_value("prey", nothing)
		await physics_frames(2)
		expect_events(chasing, [])
		chasing.set_value("prey", cat)
		await physics_frames(2)
		expect_events(chasing, ["caught"])
	cat.free()
	await physics_frames(3)
	expect_equal(dog.position, Vector2.ZERO)
	expect_equal(_lane(chasing).job_count(), 1)


func test_a_wanderer_stays_around_its_home_and_rests() -> void:
	for home: Variant in [Vector2(100, 50), Vector3(100, 7, 50)]:
		var sheep := body_at(home, "Sheep")
		var wandering := _wandering(sheep, {"home": home, "radius": 20.0, "speed": 300.0, "arrive_within": 1.0, "pause_for": 0.1})
		var stops := 0
		var before: Variant = home
		for i in 240:
			await physics_frames(1)
			var now: Variant = sheep.get(&"position")
			expect(now.distance_to(home) <= 20.01, "too far out: %s" % now)
			expect(not now is Vector3 or now.y == 7.0, "up or down: %s" % now)
			stops += int(now == before)
			before = now
		expect(stops > 60 and stops < 220, "%d stops" % stops)
		wandering.free()


func test_a_wanderer_that_has_nowhere_to_go() -> void:
	var sheep := body("Sheep", Vector2(4, 4))
	_wandering(sheep, {"home": Vector2(4, 4), "radius": 0.0, "pause_for": 0.0})
	var brought := body("Brought", Vector2(40, 4))
	_wandering(brought, {"home": Vector2(4, 4), "radius": 0.0, "arrive_within": 0.5, "speed": 600.0, "pause_for": 0.0, "name": "Brought"})
	await physics_frames(20)
	expect_equal(sheep.position, Vector2(4, 4))
	expect_near(brought.position, Vector2(4, 4), 0.5)


func test_a_wanderer_goes_on_from_where_its_action_stood() -> void:
	var walking := body("Walking")
	var pausing := body("Pausing")
	var tired := body("Tired")
	_wandering(tired, {"place": Vector2(3, 0), "pause_for": 0.0, "extra_pause": 1000.0, "name": "Tired"})
	_wandering(walking, {"place": Vector2(60, 0), "radius": 10.0, "pause": 100.0, "name": "Walking"})
	_wandering(pausing, {"radius": 10.0, "waited": 0.4, "pause": 0.5, "name": "Pausing"})
	await physics_frames(6)
	expect(walking.position.x > 1.0 and walking.position.y == 0.0, "at %s" % walking.position)
	expect_equal(pausing.position, Vector2.ZERO)
	await physics_frames(6)
	expect(pausing.position != Vector2.ZERO, "still pausing")
	# The next pause is as long as chance has it, up to that much more.
	var rested_at := tired.position
	await physics_frames(30)
	expect_near(tired.position, Vector2(3, 0), 0.81)
	expect_equal(tired.position, rested_at)


func test_a_job_is_first_run_in_the_step_after_the_next() -> void:
	var fast := _lane(play([]))
	await frames(2)
	for physics: bool in [false, true]:
		# A job of the same step that keeps counting.
		var clock := fast.add_distance_check(physics, stage, body("Clock"), "nobody", null, 1.0, false, "", "", -1)
		await (tree.physics_frame if physics else tree.process_frame)
		await (tree.physics_frame if physics else tree.process_frame)
		var heard := Deaf.new()
		var job := fast.add_distance_check(physics, heard, stage, "nobody", null, 1.0, false, "", "far", -1)
		var steps := 0
		while heard.heard.is_empty() and steps < 9:
			await (tree.physics_frame if physics else tree.process_frame)
			steps += 1
		# The signal comes at the beginning of a frame: the step of this frame, the step it is run in, and after that.
		expect_equal(steps, 2, "physics" if physics else "frame")
		fast.remove(job)
		fast.remove(clock)


func test_numbers_are_used_again_and_wrong_ones_do_nothing() -> void:
	var fast := _lane(play([]))
	var jobs: Array[int] = []
	var post := body("Post")
	for i in 4:
		jobs.append(fast.add_chase(true, stage, post, "prey", 1.0, 1.0, "", false))
	expect_equal(fast.job_count(), 4)
	for wrong: int in [-1, -100, 4, 1 << 40]:
		fast.remove(wrong)
	expect_equal(fast.job_count(), 4)
	fast.remove(jobs[1])
	fast.remove(jobs[1])
	expect_equal(fast.job_count(), 3)
	var again := fast.add_wander(false, stage, post, "no place", 1.0, 1.0, 1.0, 1.0, 1.0, 0.0, 9.0, [])
	expect_equal(again, jobs[1])
	jobs.append(fast.add_chase(true, stage, post, "prey", 1.0, 1.0, "", false))
	expect_equal(jobs[4], 4)
	for job in jobs:
		fast.remove(job)
	fast.remove(again)
	expect_equal(fast.job_count(), 0)


func test_nobody_to_work_for() -> void:
	var fast := _lane(play([]))
	expect_equal(fast.add_chase(true, null, stage, "prey", 1.0, 1.0, "", false), -1)
	expect_error("Parameter \"p_machine\" is null.")
	expect_equal(fast.add_distance_check(true, stage, null, "", null, 1.0, false, "", "", -1), -1)
	expect_error("Parameter \"p_body\" is null.")
	expect_equal(fast.job_count(), 0)
	expect(Fast.lane_for(null) == null)
	expect(Fast.lane_for(machine([state("Any")])) == null, "a machine outside the tree has a lane")


func test_an_idle_lane_costs_nothing() -> void:
	var guard := _watching(body("Post"), {"to_node": stage})
	var dog := _chasing(body("Dog"), {"prey": null}, {"physics": false})
	var fast := _lane(guard)
	await physics_frames(BEGUN)
	expect(fast.is_processing() and fast.is_physics_processing())
	dog.free()
	await physics_frames(2)
	expect(not fast.is_processing() and fast.is_physics_processing())
	guard.stop()
	await physics_frames(2)
	expect(not fast.is_processing() and not fast.is_physics_processing())
	expect_equal(fast.job_count(), 0)


func test_each_job_runs_in_the_frame_it_was_made_for() -> void:
	for physics: bool in [false, true]:
		var seen: Array[bool] = []
		var dog: Watched = add(Watched.new())
		var chasing := _chasing(dog, {"prey": body("Cat", Vector2(500, 0))}, {"physics": physics})
		dog.when_moved = func() -> void: seen.append(Engine.is_in_physics_frame())
		await physics_frames(6)
		dog.when_moved = Callable()
		expect(seen.size() >= 3 and not seen.has(not physics), "moved in these frames: %s" % [seen])
		chasing.free()


func test_a_state_that_is_left_takes_its_job_back() -> void:
	var dog := body("Dog")
	var chasing := _chasing(dog, {"prey": body("Cat", Vector2(500, 0))})
	await physics_frames(BEGUN)
	chasing.go_to("Away")
	var stood := dog.position
	expect_equal(_lane(chasing).job_count(), 0)
	await physics_frames(5)
	expect_equal(dog.position, stood)
	chasing.go_to("Work")
	await physics_frames(BEGUN)
	expect(dog.position.x > stood.x, "the second run of the state does not work")
	chasing.stop()
	expect_equal(_lane(chasing).job_count(), 0)


func test_an_event_hands_over_again_and_again() -> void:
	# Near leads to a state that does the same, with the number that has just come free.
	var job := _check_job(body("Post"), {"to_node": body("Thief")})
	var guard := start(machine([state("A", [job], {"near": "B"}), state("B", [job], {"near": "A"})]))
	await physics_frames(20)
	var count := events_of(guard).size()
	expect(count >= 15 and count <= 20, "%d events in 20 steps: more than one a job, or fewer" % count)
	expect_equal(_lane(guard).job_count(), 1)


func test_whatever_an_event_does_to_the_others() -> void:
	var thief := body("Thief")
	var posts: Array = range(6).map(func(i: int) -> Node: return body("Post%d" % i))
	var others: Array[SCMachine] = []
	for i in 6:
		others.append(_watching(posts[i], {"to_node": thief, "name": "Guard%d" % i}))
	var fast := _lane(others[0])
	var many: Array[int] = []
	others[2].event_sent.connect(func(_event: StringName, _data: Variant) -> void:
		others[1].free()
		others[3].free()
		posts[4].free()
		others[2].stop()
		others[2].queue_free()
		for i in 100:
			many.append(fast.add_chase(true, stage, stage, "", 1.0, 1.0, "", false)))
	await physics_frames(BEGUN + 1)
	for row: Array in [[0, ["near"]], [4, []], [5, ["near"]]]:
		expect_events(others[row[0]], row[1])
	expect_equal(fast.job_count(), 102)
	expect_equal(many.size(), 100)
	for job in many:
		fast.remove(job)


func test_a_machine_freed_by_its_own_event() -> void:
	# With what it is on: the engine does not let an object go by itself while it is being called.
	var enemy := body("Enemy")
	var guard := start(machine([
		state("Watch", [_check_job(enemy, {"to_node": body("Thief")})], {"near": "Die"}),
		state("Die", [act("die").entering(func() -> void: enemy.free())]),
	], {"under": enemy}))
	var fast := _lane(guard)
	await physics_frames(BEGUN)
	expect(not is_instance_valid(guard))
	expect_equal(fast.job_count(), 0)


func test_the_lane_freed_by_an_event() -> void:
	var thief := body("Thief")
	var first := _watching(body("Post"), {"to_node": thief})
	var second := _watching(body("Other"), {"to_node": thief, "name": "Second"})
	var fast := _lane(first)
	first.event_sent.connect(func(_event: StringName, _data: Variant) -> void: fast.free(), CONNECT_ONE_SHOT)
	await physics_frames(BEGUN)
	expect(not is_instance_valid(fast))
	expect_events(first, ["near"])
	expect_events(second, [])
	first.go_to("Away")
	second.go_to("Away")
	second.go_to("Work")
	await physics_frames(BEGUN)
	expect_events(second, ["near"])


func test_the_lane_freed_as_it_moves_a_node() -> void:
	var dog: Watched = add(Watched.new())
	var fast := _lane(_chasing(dog, {"prey": body("Cat", Vector2(500, 0))}))
	_chasing(body("Other"), {"prey": dog}, {"name": "Second"})
	await physics_frames(1)
	dog.when_moved = func() -> void:
		dog.when_moved = Callable()
		fast.free()
	await physics_frames(BEGUN)
	expect(not is_instance_valid(fast))


func test_a_body_that_goes_ends_the_job_but_not_another_s() -> void:
	var dog := body("Dog")
	var first := _chasing(dog, {"prey": null})
	var fast := _lane(first)
	await physics_frames(BEGUN)
	dog.free()
	await physics_frames(2)
	expect_equal(fast.job_count(), 0)
	var second_dog := body("Second Dog")
	_chasing(second_dog, {"prey": body("Cat", Vector2(500, 0))}, {"name": "Second"})
	# The first machine still knows its job by number.
	first.go_to("Away")
	expect_equal(fast.job_count(), 1)
	await physics_frames(BEGUN)
	expect(second_dog.position.x > 0.0, "its job was taken back by another machine")


func test_numbers_kept_for_machines_that_have_gone_come_back() -> void:
	var fast := _lane(play([]))
	await frames(2)
	var numbers: Array[int] = []
	for i in 3:
		var owner := Node.new()
		var dog := body("Dog")
		add(owner)
		numbers.append(fast.add_chase(true, owner, dog, "", 1.0, 1.0, "", false))
		dog.free()
		await physics_frames(BEGUN)
		owner.free()
	expect_equal(numbers, [numbers[0], numbers[0], numbers[0]] as Array[int])


func test_a_body_that_is_no_node_and_a_machine_that_is_none() -> void:
	var fast := _lane(play([]))
	await frames(2)
	var deaf := Deaf.new()
	var no_body := RefCounted.new()
	var post := body("Post")
	fast.add_distance_check(true, deaf, no_body, "", post, 1.0, false, "near", "far", -1)
	var job := fast.add_distance_check(true, deaf, post, "", post, 1.0, false, "near", "far", -1)
	var chase := fast.add_chase(true, deaf, post, "prey", 1.0, 1.0, "caught", false)
	var nowhere := fast.add_wander(true, deaf, stage, Vector3.ONE, 1.0, 1.0, 0.0, 0.0, 0.0, 0.0, 0.0, null)
	await physics_frames(BEGUN)
	expect_equal(deaf.heard, [&"near"] as Array[StringName])
	expect_equal(fast.job_count(), 3)
	for made: int in [job, chase, nowhere]:
		fast.remove(made)


func test_a_job_stands_still_as_long_as_its_machine_does() -> void:
	var cat := body("Cat", Vector2(100000, 0))
	var dog := body("Dog")
	var always := body("Always")
	var made := _chasing(dog, {"prey": cat})
	_chasing(always, {"prey": cat}, {"name": "Always"}).process_mode = Node.PROCESS_MODE_ALWAYS
	await physics_frames(BEGUN)
	for row: Array in [
		[Node.PROCESS_MODE_INHERIT, true, false], [Node.PROCESS_MODE_INHERIT, false, true], [Node.PROCESS_MODE_DISABLED, false, false],
		[Node.PROCESS_MODE_WHEN_PAUSED, true, true], [Node.PROCESS_MODE_WHEN_PAUSED, false, false],
	]:
		made.process_mode = row[0]
		tree.paused = row[1]
		var stood := dog.position
		var went := always.position
		await physics_frames(5)
		tree.paused = false
		expect_equal(dog.position.x > stood.x, row[2], str(row))
		expect(always.position.x > went.x, "a machine that works in the pause stands still")


func test_a_machine_that_is_paused_and_stepped() -> void:
	var cat := body("Cat", Vector2(100000, 0))
	var dog := body("Dog")
	var other_dog := body("Other")
	var made := _chasing(dog, {"prey": cat})
	_chasing(other_dog, {"prey": cat}, {"name": "Other"})
	await physics_frames(BEGUN)
	made.set_paused(true)
	var stood := dog.position
	await physics_frames(5)
	expect_equal(dog.position, stood, "a paused machine moves its body")
	var other_stood := other_dog.position
	for i in 3:
		made.step_once()
	expect_near(dog.position.x, stood.x + 3.0, 0.001)
	expect_equal(other_dog.position, other_stood, "a step of one machine moves another's body")
	made.set_paused(false)
	await physics_frames(3)
	expect(dog.position.x > stood.x + 4.0)


func test_many_machines_in_one_loop() -> void:
	var cat := body("Cat", Vector2(0, 1000))
	cat.add_to_group("prey")
	var crowd: Array[SCMachine] = []
	var design := template([state("Hunt", [
		_job(func(m: SCMachine, fast: SCFastLane) -> int: return fast.add_chase(true, m, m.get_parent(), "prey", 300.0, 5.0, "caught", false)),
		_job(func(m: SCMachine, fast: SCFastLane) -> int: return fast.add_distance_check(false, m, m.get_parent(), "prey", null, 100.0, false, "near", "far", -1)),
	], {"caught": "Home"}), state("Home")], {"variables": {"prey": null}})
	for i in 300:
		crowd.append(start(running(design, {"name": "Machine%d" % i, "under": body("Dog%d" % i, Vector2(i, 0))})))
		crowd[i].set_value("prey", cat)
	expect_equal(_lane(crowd[0]).job_count(), 600)
	await physics_frames(30)
	for i in range(0, 300, 3):
		crowd[i].get_parent().free()
	await physics_frames(240)
	var left := crowd.filter(func(made: Variant) -> bool: return is_instance_valid(made))
	expect_equal(left.size(), 200)
	for made: SCMachine in left:
		expect_state(made, "Home")
		expect_events(made, ["far", "near", "caught"])
	expect_equal(_lane(crowd[1]).job_count(), 0)


func test_a_pass_asks_the_allocator_for_nothing() -> void:
	var dogs: Array[Node] = []
	for i in 20:
		var home: Variant = Vector2.ZERO if i % 2 == 0 else Vector3.ZERO
		var far: Variant = Vector2(1000000, 0) if i % 2 == 0 else Vector3(1000000, 0, 0)
		var target := body_at(far, "Target%d" % i)
		dogs.append(body_at(home, "Dog%d" % i))
		_chasing(dogs[i], {"prey": target}, {"name": "Chasing%d" % i})
		_watching(dogs[i], {"to_node": target, "name": "Watching%d" % i, "physics": i % 4 < 2})
		_wandering(body_at(home, "Sheep%d" % i), {"home": home, "pause_for": 0.1, "name": "Wandering%d" % i})
	await physics_frames(10)
	var before: float = dogs[0].get(&"position").x
	# A class of the tests' own, which is there only where the allocator that counts is.
	var counts: bool = ClassDB.class_exists(&"AllocationCounter") and ClassDB.class_call_static(&"AllocationCounter", &"is_available")
	if counts:
		expect(ClassDB.class_call_static(&"AllocationCounter", &"begin", "libquillstead_core"), "the library is not found")
	await physics_frames(300)
	if counts:
		var made: int = ClassDB.class_call_static(&"AllocationCounter", &"end")
		var sites: PackedStringArray = ClassDB.class_call_static(&"AllocationCounter", &"sites")
		expect(made == 0, "%d allocations in 300 steps, from %s" % [made, ", ".join(sites)])
	for dog in dogs:
		expect(dog.get(&"position").x >= before + 290.0, "at %s" % dog.get(&"position"))


func test_a_node_moved_by_its_position_is_marked() -> void:
	var dog := body("Dog")
	Fast.note_moved_by_position(dog)
	Fast.note_moved_by_position(null)
	expect_equal(dog.get_meta(&"quillstead_moved_by_position"), true)


func test_one_lane_serves_the_tree() -> void:
	var first := _lane(play([]))
	expect_equal(_lane(play([], {}, {"name": "Second"})), first)
	await frames(2)
	expect_equal(first.get_parent(), tree.root)
	first.queue_free()
	var fresh := Fast.lane_for(stage.get_node("Machine") as SCMachine)
	expect(fresh != first, "a lane that is on its way out was handed out")
	await frames(2)
	expect_equal(fresh.get_parent(), tree.root)
	expect(not ClassDB.class_has_method(&"SCFastLane", &"lane_for"))


func _lane(of: SCMachine) -> SCFastLane:
	return Fast.lane_for(of)


## An action that hands over the job that [param hand_over] makes, and rests.
func _job(hand_over: Callable) -> Recorder:
	return act("job").ticking().entering(func(m: SCMachine, index: int) -> void:
		var fast := Fast.lane_for(m)
		m.rest_in_lane(index, fast, hand_over.call(m, fast)))


func _check_job(post: Node, options: Dictionary) -> Recorder:
	return _job(func(m: SCMachine, fast: SCFastLane) -> int: return fast.add_distance_check(options.get("physics", true), m, post,
			options.get("group", ""), options.get("to_node"), options.get("distance", NEAR), options.get("ignore_height", false),
			"near", options.get("false_event", "far"), options.get("last", -1)))


func _watching(post: Node, options: Dictionary, ways: Dictionary = {}) -> SCMachine:
	return play(_check_job(post, options), {"away": "Away"}.merged(ways), {"name": options.get("name", "Guard")})


func _chasing(dog: Node, variables: Dictionary, options: Dictionary = {}) -> SCMachine:
	return play(_job(func(m: SCMachine, fast: SCFastLane) -> int: return fast.add_chase(options.get("physics", true), m, dog, "prey",
			options.get("speed", 60.0), options.get("stop_within", 1.0), "caught", options.get("there", false))),
			{"away": "Away"}, {"variables": variables, "name": options.get("name", "Chasing")})


func _wandering(sheep: Node, options: Dictionary) -> SCMachine:
	return play(_job(func(m: SCMachine, fast: SCFastLane) -> int: return fast.add_wander(true, m, sheep, options.get("home", Vector2.ZERO),
			options.get("radius", 8.0), options.get("speed", 60.0), options.get("arrive_within", 0.8), options.get("pause_for", 1.0),
			options.get("extra_pause", 0.0), options.get("waited", 0.0), options.get("pause", 0.0), options.get("place"))), {}, {"name": options.get("name", "Wandering")})
