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
	var post := body("Post")
	var thief := _at(body("Thief"), Vector2(200, 0))
	var guard := start(_watching(post, {"to_node": thief}))
	await physics_frames(BEGUN)
	_expect_events(guard, ["far"])
	expect(guard.is_resting(0) and not guard.is_processing() and not guard.is_physics_processing(), "the machine is called each frame")
	thief.position.x = 50.0
	await physics_frames(2)
	_expect_events(guard, ["near"])
	await physics_frames(5)
	_expect_events(guard, [])
	thief.position.x = 50.1
	await physics_frames(2)
	_expect_events(guard, ["far"])
	thief.free()
	await physics_frames(2)
	_expect_events(guard, [])
	expect_equal(_lane(guard).job_count(), 1)


func test_the_one_it_looks_for_is_freed() -> void:
	var post := body("Post")
	var thief := body("Thief")
	var guard := start(_watching(post, {"to_node": thief}))
	await physics_frames(BEGUN)
	_expect_events(guard, ["near"])
	thief.free()
	await physics_frames(2)
	_expect_events(guard, ["far"])
	expect_equal(_lane(guard).job_count(), 1)


func test_the_nearest_of_a_group_counts_but_not_oneself() -> void:
	var post := body("Post")
	post.add_to_group("thieves")
	var guard := start(_watching(post, {"group": "thieves"}))
	await physics_frames(BEGUN)
	_expect_events(guard, ["far"])
	var in_space := Node3D.new()
	var nowhere := Node.new()
	for one: Node in [_at(body("Far"), Vector2(0, 500)), add(in_space), add(nowhere)]:
		one.add_to_group("thieves")
	await physics_frames(3)
	_expect_events(guard, [])
	var thief := _at(body("Thief"), Vector2(0, 30))
	thief.add_to_group("thieves")
	await physics_frames(2)
	_expect_events(guard, ["near"])
	thief.remove_from_group("thieves")
	await physics_frames(2)
	_expect_events(guard, ["far"])


func test_a_group_of_nobody_and_events_without_a_name() -> void:
	var post := body("Post")
	var alone := start(_watching(post, {"group": "nobody"}))
	var quiet := start(_watching(post, {"group": "nobody", "false_event": "", "name": "Quiet"}))
	var knows := start(_watching(post, {"group": "nobody", "last": 0, "name": "Knows"}))
	await physics_frames(BEGUN)
	_expect_events(alone, ["far"])
	_expect_events(quiet, [])
	_expect_events(knows, [])


func test_height_counts_unless_it_is_ignored() -> void:
	var post: Node3D = add(Node3D.new())
	var bird: Node3D = add(Node3D.new())
	bird.position = Vector3(30, 60, 40)
	var full := start(_watching(post, {"to_node": bird, "name": "Full"}))
	var flat := start(_watching(post, {"to_node": bird, "ignore_height": true, "name": "Flat"}))
	var into_flat := start(_watching(body("Flat"), {"to_node": bird, "name": "Mixed"}))
	await physics_frames(BEGUN)
	_expect_events(full, ["far"])
	_expect_events(flat, ["near"])
	_expect_events(into_flat, ["far"])
	# Height is for 3D: a 2D node has none to ignore.
	var below := start(_watching(body("Above"), {"to_node": _at(body("Below"), Vector2(0, 60)), "ignore_height": true, "name": "Below"}))
	await physics_frames(BEGUN)
	_expect_events(below, ["far"])


func test_out_of_the_tree_a_node_in_3d_is_nowhere() -> void:
	var post: Node3D = add(Node3D.new())
	var bird: Node3D = add(Node3D.new())
	var guard := start(_watching(post, {"to_node": bird}))
	await physics_frames(BEGUN)
	_expect_events(guard, ["near"])
	stage.remove_child(bird)
	await physics_frames(2)
	_expect_events(guard, ["far"])
	stage.add_child(bird)
	await physics_frames(2)
	_expect_events(guard, ["near"])
	stage.remove_child(post)
	await physics_frames(2)
	_expect_events(guard, [])
	post.free()
	await physics_frames(2)
	expect_equal(_lane(guard).job_count(), 0)


func test_a_chaser_catches_the_same_one_twice() -> void:
	var dog := body("Dog")
	var cat := _at(body("Cat"), Vector2(10, 0))
	var chasing := start(_chasing(dog, {"speed": 60.0, "stop_within": 2.0}, {"prey": cat}))
	await physics_frames(BEGUN)
	expect(dog.position.x > 0.0 and dog.position.x < 8.0, "at %s" % dog.position)
	var caught: Array = []
	chasing.event_sent.connect(func(_event: StringName, data: Variant) -> void: caught.append(data))
	await physics_frames(20)
	_expect_events(chasing, ["caught"])
	expect_equal(caught, [cat])
	expect_near(dog.position.x, 8.0, 0.001 + 1.0)
	cat.position.x = 20.0
	await physics_frames(30)
	_expect_events(chasing, ["caught"])
	expect_equal(dog.position.y, 0.0)


func test_the_last_step_lands_on_the_place() -> void:
	var dog := body("Dog")
	var cat := _at(body("Cat"), Vector2(3, 4))
	start(_chasing(dog, {"speed": 100000.0, "stop_within": 0.0}, {"prey": cat}))
	await physics_frames(BEGUN)
	expect(dog.position.is_equal_approx(cat.position), "at %s" % dog.position)


func test_a_chaser_in_3d_keeps_its_height() -> void:
	var dog: Node3D = add(Node3D.new())
	dog.position = Vector3(0, 5, 0)
	var cat: Node3D = add(Node3D.new())
	cat.position = Vector3(3, 0, 4)
	var chasing := start(_chasing(dog, {"speed": 6.0, "stop_within": 0.0}, {"prey": cat}))
	await physics_frames(10)
	expect_near(dog.position.x * 4.0, dog.position.z * 3.0)
	expect(dog.position.x > 0.0)
	await physics_frames(60)
	expect(dog.position.is_equal_approx(Vector3(3, 5, 4)), "at %s" % dog.position)
	_expect_events(chasing, ["caught"])


func test_without_a_target_the_body_stands_still() -> void:
	var dog := body("Dog")
	var cat := _at(body("Cat"), Vector2(5, 0))
	var chasing := start(_chasing(dog, {"speed": 60.0, "stop_within": 8.0}, {"prey": cat}))
	await physics_frames(BEGUN)
	_expect_events(chasing, ["caught"])
	for nothing: Variant in [null, 3, "cat", add(Node.new()), RefCounted.new()]:
		chasing.set_value("prey", nothing)
		await physics_frames(2)
		_expect_events(chasing, [])
		chasing.set_value("prey", cat)
		await physics_frames(2)
		_expect_events(chasing, ["caught"])
	cat.free()
	await physics_frames(3)
	expect_equal(dog.position, Vector2.ZERO)
	expect_equal(_lane(chasing).job_count(), 1)


func test_a_wanderer_stays_around_its_home_and_rests() -> void:
	for home: Variant in [Vector2(100, 50), Vector3(100, 7, 50)]:
		var sheep: Node = _at(body("Sheep"), home) if home is Vector2 else add(Node3D.new())
		if sheep is Node3D:
			(sheep as Node3D).position = home
		var wandering := start(_wandering(sheep, {"home": home, "radius": 20.0, "speed": 300.0, "arrive_within": 1.0, "pause_for": 0.1}))
		var stops := 0
		var steps := 0
		var before: Variant = sheep.get(&"position")
		for i in 240:
			await physics_frames(1)
			var now: Variant = sheep.get(&"position")
			expect(now.distance_to(home) <= 20.01, "too far out: %s" % now)
			if now is Vector3:
				expect_equal(now.y, 7.0)
			stops += int(now == before)
			steps += int(now != before)
			before = now
		expect(stops > 60 and steps > 20, "%d steps and %d stops" % [steps, stops])
		wandering.free()


func test_a_wanderer_that_has_nowhere_to_go() -> void:
	var sheep := _at(body("Sheep"), Vector2(4, 4))
	start(_wandering(sheep, {"home": Vector2(4, 4), "radius": 0.0, "pause_for": 0.0}))
	var brought := _at(body("Brought"), Vector2(40, 4))
	start(_wandering(brought, {"home": Vector2(4, 4), "radius": 0.0, "arrive_within": 0.5, "speed": 600.0, "pause_for": 0.0, "name": "Brought"}))
	await physics_frames(20)
	expect_equal(sheep.position, Vector2(4, 4))
	expect(brought.position.distance_to(Vector2(4, 4)) <= 0.5, "at %s" % brought.position)


func test_a_wanderer_goes_on_from_where_its_action_stood() -> void:
	var walking := body("Walking")
	var pausing := body("Pausing")
	start(_wandering(walking, {"home": Vector2.ZERO, "place": Vector2(60, 0), "radius": 10.0, "speed": 60.0, "pause": 100.0, "name": "Walking"}))
	start(_wandering(pausing, {"home": Vector2.ZERO, "radius": 10.0, "waited": 0.4, "pause": 0.5, "name": "Pausing"}))
	await physics_frames(6)
	expect(walking.position.x > 1.0 and walking.position.y == 0.0, "at %s" % walking.position)
	expect_equal(pausing.position, Vector2.ZERO)
	await physics_frames(6)
	expect(pausing.position != Vector2.ZERO, "still pausing")


func test_a_job_is_first_run_in_the_step_after_the_next() -> void:
	var fast := Fast.lane_for(start(machine([state("Any")])))
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
	var fast := Fast.lane_for(start(machine([state("Any")])))
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
	var fast := Fast.lane_for(start(machine([state("Any")])))
	expect_equal(fast.add_chase(true, null, stage, "prey", 1.0, 1.0, "", false), -1)
	expect_error("Parameter \"p_machine\" is null.")
	expect_equal(fast.add_distance_check(true, stage, null, "", null, 1.0, false, "", "", -1), -1)
	expect_error("Parameter \"p_body\" is null.")
	expect_equal(fast.job_count(), 0)
	expect(Fast.lane_for(null) == null)
	expect(Fast.lane_for(machine([state("Any")])) == null, "a machine outside the tree has a lane")


func test_an_idle_lane_costs_nothing() -> void:
	var guard := start(_watching(body("Post"), {"to_node": stage}))
	var dog := start(_chasing(body("Dog"), {"physics": false}, {"prey": null}))
	var fast := _lane(guard)
	await physics_frames(BEGUN)
	expect(fast.is_processing() and fast.is_physics_processing())
	dog.free()
	await physics_frames(2)
	expect(not fast.is_processing() and fast.is_physics_processing())
	guard.send_event("away")
	await physics_frames(2)
	expect(not fast.is_processing() and not fast.is_physics_processing())
	expect_equal(fast.job_count(), 0)


func test_each_job_runs_in_the_frame_it_was_made_for() -> void:
	var seen: Array[bool] = []
	for physics: bool in [false, true]:
		var dog := Watched.new()
		add(dog)
		var cat := _at(body("Cat"), Vector2(500, 0))
		var chasing := start(_chasing(dog, {"physics": physics}, {"prey": cat}))
		dog.when_moved = func() -> void: seen.append(Engine.is_in_physics_frame())
		await physics_frames(6)
		dog.when_moved = Callable()
		expect(seen.size() >= 3, "moved %d times" % seen.size())
		expect(not seen.has(not physics), "moved in the wrong frame: %s" % [seen])
		seen.clear()
		chasing.free()


func test_a_state_that_is_left_takes_its_job_back() -> void:
	var dog := body("Dog")
	var cat := _at(body("Cat"), Vector2(500, 0))
	var chasing := start(_chasing(dog, {}, {"prey": cat}))
	await physics_frames(BEGUN)
	chasing.send_event("away")
	var stood := dog.position
	expect_equal(_lane(chasing).job_count(), 0)
	await physics_frames(5)
	expect_equal(dog.position, stood)
	chasing.send_event("back")
	await physics_frames(BEGUN)
	expect(dog.position.x > stood.x, "the second run of the state does not work")
	chasing.stop()
	expect_equal(_lane(chasing).job_count(), 0)


func test_an_event_of_a_job_leads_out_of_its_state() -> void:
	var posts: Array[SCMachine] = []
	var thief := body("Thief")
	for i in 5:
		posts.append(start(_watching(body("Post%d" % i), {"to_node": thief, "name": "Guard%d" % i}, {"near": "Caught", "far": "Caught"})))
	await physics_frames(BEGUN)
	for guard in posts:
		expect_state(guard, "Caught")
		_expect_events(guard, ["near"])
	expect_equal(_lane(posts[0]).job_count(), 0)


func test_an_event_hands_over_again_and_again() -> void:
	# Near leads to a state that does the same, with the number that has just come free.
	var thief := body("Thief")
	var post := body("Post")
	var design := [
		state("A", [_job(func(m: SCMachine, fast: SCFastLane) -> int: return _ask(fast, m, post, {"to_node": thief}))], {"near": "B"}),
		state("B", [_job(func(m: SCMachine, fast: SCFastLane) -> int: return _ask(fast, m, post, {"to_node": thief}))], {"near": "A"}),
	]
	var guard := start(machine(design))
	await physics_frames(20)
	var count := _events(guard).size()
	expect(count >= 6 and count <= 10, "%d events in 20 steps: more than one a job, or fewer" % count)
	expect_equal(_lane(guard).job_count(), 1)


func test_whatever_an_event_does_to_the_others() -> void:
	var thief := body("Thief")
	var others: Array[SCMachine] = []
	for i in 6:
		others.append(start(_watching(body("Post%d" % i), {"to_node": thief, "name": "Guard%d" % i})))
	var fast := _lane(others[0])
	var many: Array[int] = []
	others[2].event_sent.connect(func(_event: StringName, _data: Variant) -> void:
		others[1].free()
		others[3].free()
		others[4].get_meta(&"post").free()
		others[2].stop()
		others[2].queue_free()
		for i in 100:
			many.append(fast.add_chase(true, stage, stage, "", 1.0, 1.0, "", false)))
	await physics_frames(BEGUN + 1)
	_expect_events(others[0], ["near"])
	_expect_events(others[4], [])
	_expect_events(others[5], ["near"])
	expect_equal(fast.job_count(), 102)
	expect_equal(many.size(), 100)
	for job in many:
		fast.remove(job)


func test_a_machine_freed_by_its_own_event() -> void:
	var thief := body("Thief")
	# With what it is on: the engine does not let an object go by itself while it is being called.
	var enemy := body("Enemy")
	var guard := start(machine([
		state("Watch", [_job(func(m: SCMachine, fast: SCFastLane) -> int: return _ask(fast, m, enemy, {"to_node": thief}))], {"near": "Die"}),
		state("Die", [act("die").entering(func() -> void: enemy.free())]),
	], {"under": enemy}))
	var fast := _lane(guard)
	await physics_frames(BEGUN)
	expect(not is_instance_valid(guard))
	expect_equal(fast.job_count(), 0)


func test_the_lane_freed_by_an_event() -> void:
	var thief := body("Thief")
	var first := start(_watching(body("Post"), {"to_node": thief}))
	var second := start(_watching(body("Other"), {"to_node": thief, "name": "Second"}))
	var fast := _lane(first)
	first.event_sent.connect(func(_event: StringName, _data: Variant) -> void: fast.free(), CONNECT_ONE_SHOT)
	await physics_frames(BEGUN)
	expect(not is_instance_valid(fast))
	_expect_events(first, ["near"])
	_expect_events(second, [])
	first.send_event("away")
	second.send_event("away")
	second.send_event("back")
	await physics_frames(BEGUN)
	_expect_events(second, ["away", "back", "near"])


func test_the_lane_freed_as_it_moves_a_node() -> void:
	var dog := Watched.new()
	add(dog)
	var chasing := start(_chasing(dog, {}, {"prey": _at(body("Cat"), Vector2(500, 0))}))
	start(_chasing(body("Other"), {}, {"prey": dog}, "Second"))
	var fast := _lane(chasing)
	await physics_frames(1)
	dog.when_moved = func() -> void:
		dog.when_moved = Callable()
		fast.free()
	await physics_frames(BEGUN)
	expect(not is_instance_valid(fast))


func test_a_body_that_goes_ends_the_job_but_not_another_s() -> void:
	var first := start(_chasing(body("Dog"), {}, {"prey": null}))
	var fast := _lane(first)
	await physics_frames(BEGUN)
	(first.get_meta(&"post") as Node).free()
	await physics_frames(2)
	expect_equal(fast.job_count(), 0)
	var cat := _at(body("Cat"), Vector2(500, 0))
	var second_dog := body("Second Dog")
	start(_chasing(second_dog, {}, {"prey": cat}, "Second"))
	# The first machine still knows its job by number.
	first.send_event("away")
	expect_equal(fast.job_count(), 1)
	await physics_frames(BEGUN)
	expect(second_dog.position.x > 0.0, "its job was taken back by another machine")


func test_numbers_kept_for_machines_that_have_gone_come_back() -> void:
	var fast := Fast.lane_for(start(machine([state("Any")])))
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
	var fast := Fast.lane_for(start(machine([state("Any")])))
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
	var cat := _at(body("Cat"), Vector2(100000, 0))
	var dog := body("Dog")
	var always := body("Always")
	var made := start(_chasing(dog, {}, {"prey": cat}))
	var other := start(_chasing(always, {}, {"prey": cat}, "Always"))
	other.process_mode = Node.PROCESS_MODE_ALWAYS
	await physics_frames(BEGUN)
	tree.paused = true
	var stood := dog.position
	var went := always.position
	await physics_frames(5)
	expect_equal(dog.position, stood, "it moves in a paused game")
	expect(always.position.x > went.x, "a machine that works in the pause stands still")
	tree.paused = false
	await physics_frames(3)
	expect(dog.position.x > stood.x, "it does not go on after the pause")
	made.process_mode = Node.PROCESS_MODE_DISABLED
	stood = dog.position
	await physics_frames(5)
	expect_equal(dog.position, stood, "a disabled machine moves its body")
	made.process_mode = Node.PROCESS_MODE_WHEN_PAUSED
	tree.paused = true
	await physics_frames(5)
	expect(dog.position.x > stood.x, "it stands still in the pause that it works in")
	tree.paused = false
	stood = dog.position
	await physics_frames(5)
	expect_equal(dog.position, stood)


func test_a_machine_that_is_paused_and_stepped() -> void:
	var cat := _at(body("Cat"), Vector2(100000, 0))
	var dog := body("Dog")
	var other_dog := body("Other")
	var made := start(_chasing(dog, {"speed": 60.0}, {"prey": cat}))
	start(_chasing(other_dog, {"speed": 60.0}, {"prey": cat}, "Other"))
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
	var cat := _at(body("Cat"), Vector2(0, 1000))
	cat.add_to_group("prey")
	var crowd: Array[SCMachine] = []
	var design := template([state("Hunt", [
		_job(func(m: SCMachine, fast: SCFastLane) -> int: return fast.add_chase(true, m, m.get_parent(), "prey", 300.0, 5.0, "caught", false)),
		_job(func(m: SCMachine, fast: SCFastLane) -> int: return fast.add_distance_check(false, m, m.get_parent(), "prey", null, 100.0, false, "near", "far", -1)),
	], {"caught": "Home"}), state("Home")], {"variables": {"prey": null}})
	for i in 300:
		var dog := _at(body("Dog%d" % i), Vector2(i, 0))
		crowd.append(start(running(design, {"name": "Machine%d" % i, "under": dog})))
		crowd[i].set_value("prey", cat)
	expect_equal(_lane(crowd[0]).job_count(), 600)
	await physics_frames(30)
	for i in range(0, 300, 3):
		crowd[i].get_parent().free()
	await physics_frames(240)
	var caught := 0
	for i in 300:
		if is_instance_valid(crowd[i]):
			expect_state(crowd[i], "Home")
			_expect_events(crowd[i], ["far", "near", "caught"])
			caught += 1
	expect_equal(caught, 200)
	expect_equal(Fast.lane_for(crowd[1]).job_count(), 0)


func test_a_pass_asks_the_allocator_for_nothing() -> void:
	var cat := _at(body("Cat"), Vector2(1000000, 0))
	var far: Node3D = add(Node3D.new())
	far.position = Vector3(1000000, 0, 0)
	var dogs: Array[Node] = []
	for i in 20:
		var dog: Node = body("Dog%d" % i) if i % 2 == 0 else add(Node3D.new())
		var target: Node = cat if i % 2 == 0 else far
		dogs.append(dog)
		start(_chasing(dog, {}, {"prey": target}, "Chasing%d" % i))
		start(_watching(dog, {"to_node": target, "name": "Watching%d" % i, "physics": i % 4 < 2}))
		var sheep: Node = body("Sheep%d" % i) if i % 2 == 0 else add(Node3D.new())
		start(_wandering(sheep, {"home": Vector2.ZERO if i % 2 == 0 else Vector3.ZERO, "pause_for": 0.1, "name": "Wandering%d" % i}))
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
	var first := Fast.lane_for(start(machine([state("Any")])))
	expect_equal(Fast.lane_for(start(machine([state("Any")], {"name": "Second"}))), first)
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


func _ask(fast: SCFastLane, m: SCMachine, post: Node, options: Dictionary) -> int:
	return fast.add_distance_check(options.get("physics", true), m, post, options.get("group", ""), options.get("to_node"), NEAR,
			options.get("ignore_height", false), "near", options.get("false_event", "far"), options.get("last", -1))


func _watching(post: Node, options: Dictionary, ways: Dictionary = {}) -> SCMachine:
	return _working(post, func(m: SCMachine, fast: SCFastLane) -> int: return _ask(fast, m, post, options), ways, {"name": options.get("name", "Guard")})


func _chasing(dog: Node, options: Dictionary, variables: Dictionary, name: String = "Chasing") -> SCMachine:
	return _working(dog, func(m: SCMachine, fast: SCFastLane) -> int: return fast.add_chase(options.get("physics", true), m, dog, "prey",
			options.get("speed", 60.0), options.get("stop_within", 1.0), "caught", false), {}, {"variables": variables, "name": name})


func _wandering(sheep: Node, options: Dictionary) -> SCMachine:
	return _working(sheep, func(m: SCMachine, fast: SCFastLane) -> int: return fast.add_wander(true, m, sheep, options["home"],
			options.get("radius", 8.0), options.get("speed", 60.0), options.get("arrive_within", 0.8), options.get("pause_for", 1.0), 0.0,
			options.get("waited", 0.0), options.get("pause", 0.0), options.get("place")), {}, {"name": options.get("name", "Wandering")})


func _working(post: Node, hand_over: Callable, ways: Dictionary, options: Dictionary) -> SCMachine:
	var made := machine([
		state("Work", [_job(hand_over)], {"away": "Away"}.merged(ways)),
		state("Away", [], {"back": "Work"}),
		state("Caught"),
	], options)
	made.set_meta(&"post", post)
	var heard: Array[String] = []
	made.set_meta(&"heard", heard)
	made.event_sent.connect(func(event: StringName, _data: Variant) -> void:
		if event != &"FINISHED":
			heard.append(String(event)))
	return made


func _events(of: SCMachine) -> Array[String]:
	if not of.has_meta(&"heard"):
		var heard: Array[String] = []
		for line in (of.get_meta(&"trail") as Trail).lines:
			if line.begins_with("event "):
				heard.append(line.trim_prefix("event ").get_slice(" (", 0))
		return heard
	return of.get_meta(&"heard")


func _expect_events(of: SCMachine, wanted: Array[String]) -> void:
	var heard := _events(of)
	expect(heard == wanted, "%s got %s, wanted %s" % [of.name, heard, wanted])
	heard.clear()


func _at(node: Node2D, place: Vector2) -> Node2D:
	node.position = place
	return node
