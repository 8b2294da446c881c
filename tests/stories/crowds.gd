extends PhysicsStory
## A crowd that keeps apart.


func apart(settings: Dictionary = {}) -> Resource:
	return kind(SCKeepApartAction, {"crowd_group": &"crowd", "personal_space": far(1.6), "push": far(2.0)}.merged(settings, true))


func member(of: Node) -> Node:
	of.add_to_group("crowd")
	return of


func test_two_give_way_to_each_other_by_how_near_they_are() -> void:
	await on_both_sides(func() -> void:
		var left := member(spot(-0.2, 3.0, "Left"))
		var right := member(spot(0.2, 3.0, "Right"))
		var stranger := spot(0.0, 3.1, "Stranger")
		for one: Node in [left, right]:
			walk(one, [apart()])
		await physics_frames(2)
		# Both see where the other stood as the frame began.
		expect_near(where(right).x, 0.2 + _first_steps(0.4, 1), 0.0001)
		expect_near(where(left).x, -where(right).x, 0.0001)
		expect_equal(where(stranger), Vector3(0, 3.1, 0))
		await physics_frames(600)
		expect_near(where(right).x - where(left).x, 1.6, 0.02)
		expect_near(where(right).y, 3.0, 0.0001))


func test_bodies_are_shoved_and_stop_at_walls() -> void:
	await on_both_sides(func() -> void:
		ground()
		var left := member(character(0.0))
		var right := member(character(0.9, 0.0, "Other"))
		block(-1.0, 1.0, 1.0, 4.0, "Wall")
		for one: Node in [left, right]:
			walk(one, [apart({"push": far(4.0)})])
		await physics_frames(300)
		expect(where(left).x > -0.2, "it was shoved into the wall: %s" % where(left))
		expect_near(where(right).x - where(left).x, 1.6, 0.05)
		expect_near(where(right).y, TALL / 2.0, 0.03)
		expect_near(speed_of(right).x, 0.0, 0.0001, "a shove is no velocity"))


func test_they_fall_while_they_keep_apart() -> void:
	await on_both_sides(func() -> void:
		var hero := member(character(0.0, 30.0))
		walk(hero, [apart()])
		await physics_frames(30)
		expect(where(hero).y < 30.0, "it hangs in the air")
		var floats := member(character(20.0, 30.0))
		walk(floats, [apart({"falls": false})])
		await physics_frames(10)
		expect_near(where(floats).y, 30.81, 0.001))


func test_a_horde_spreads_out() -> void:
	await on_both_sides(func() -> void:
		var crowd: Array[Node] = []
		for i in 120:
			var one := member(spot(randf() * 4.0, randf() * 4.0, "One"))
			if in_3d:
				one.set(&"position", Vector3(randf() * 4.0, 0, randf() * 4.0))
			walk(one, [apart()])
			crowd.append(one)
		var before := _nearest(crowd)
		await physics_frames(240)
		expect(_nearest(crowd) > maxf(before * 2.0, 0.5), "from %s to %s" % [before, _nearest(crowd)])
		crowd.shuffle()
		for i in 60:
			crowd[i].free()
		await physics_frames(2))


func test_each_gives_way_to_all_who_are_near_and_to_nobody_else() -> void:
	await on_both_sides(func() -> void:
		var crowd: Array[Node] = []
		for i in 40:
			for place: Vector2 in [Vector2(randf(), randf()) * 5.0, Vector2(i * 0.6, 50.0), Vector2(-80.0, i * 0.6), Vector2(i * 64.0, i * -37.0)]:
				var one := member(spot(place.x, place.y, "One"))
				if in_3d:
					one.set(&"position", Vector3(place.x, 0, place.y))
				walk(one, [apart()])
				crowd.append(one)
		var before: Array[Vector2] = []
		for one in crowd:
			before.append(_on_the_ground(one))
		await physics_frames(2)
		for i in crowd.size():
			expect_near(_on_the_ground(crowd[i]).distance_to(before[i] + _way_out(before[i], before) * 2.0 / 60.0), 0.0, 0.001, "the one at %s" % before[i]))


func test_one_who_leaves_as_another_joins_is_not_met_any_more() -> void:
	await on_both_sides(func() -> void:
		for leave: Callable in [
			func(one: Node) -> void: one.remove_from_group("crowd"),
			func(one: Node) -> void: stage.remove_child(one),
			func(one: Node) -> void: one.free(),
		]:
			var between := member(spot(0.0, 0.0, "Between"))
			var leaver := member(spot(1.0, 0.0, "Leaver"))
			var joiner := spot(-1.0, 0.0, "Joiner")
			walk(between, [apart()])
			await physics_frames(2)
			var pushed := where(between).x
			expect(pushed < 0.0, "it is not pushed away from the first")
			leave.call(leaver)
			member(joiner)
			await physics_frames(1)
			expect(where(between).x > pushed, "it is not pushed away from the other")
			for one: Variant in [between, leaver, joiner]:
				if is_instance_valid(one):
					(one as Node).free())


func test_each_member_is_met_by_another_space_and_another_side() -> void:
	var narrow := member(spot(0.0, 0.0, "Narrow"))
	var wide := member(spot(3.0, 0.0, "Wide"))
	in_3d = true
	var in_space := member(spot(0.1, 0.0, "In Space"))
	in_3d = false
	walk(narrow, [apart()])
	walk(wide, [apart({"personal_space": far(8.0)})])
	await physics_frames(3)
	expect_equal(where(narrow), Vector3.ZERO)
	expect(where(wide).x > 3.01, "it does not see as far as its space: %s" % where(wide))
	in_3d = true
	expect_equal(where(in_space), Vector3(0.1, 0, 0))


func test_without_a_crowd_nothing_is_done() -> void:
	await on_both_sides(func() -> void:
		for row: Dictionary in [{"crowd_group": &""}, {"personal_space": 0.0}, {"personal_space": -1.0}]:
			var one := member(spot(0.0, 0.0, "One"))
			var two := member(spot(0.1, 0.0, "Two"))
			walk(one, [apart(row)])
			await physics_frames(3)
			expect_equal(where(one), Vector3.ZERO, str(row))
			if row.has("crowd_group"):
				expect_warning("no group is picked, so it keeps apart from nobody. Pick the group that the crowd is in under Crowd Group.")
			one.free()
			two.free()
		var far_off := member(spot(0.0, 0.0, "Nowhere"))
		far_off.set(&"position", Vector3(NAN, 0, 0) if in_3d else Vector2(INF, NAN))
		member(add(Node.new()))
		var here := member(spot(0.5, 0.0, "Here"))
		walk(here, [apart()])
		await physics_frames(3)
		expect_equal(where(here), Vector3(0.5, 0, 0)))


func test_the_line() -> void:
	expect_lines(SCKeepApartAction, {"Keep 1.6 clear of the enemies": {"crowd_group": &"enemies"}})
	expect("(pick one)" in kind(SCKeepApartAction).shown_summary())


func _on_the_ground(one: Node) -> Vector2:
	var place := where(one)
	return Vector2(place.x, place.z if in_3d else place.y)


func _way_out(from: Vector2, others: Array[Vector2]) -> Vector2:
	var way := Vector2.ZERO
	for other in others:
		var apart_by := from.distance_to(other)
		if apart_by > 0.0 and apart_by <= 1.6:
			way += (from - other) / apart_by * (1.0 - apart_by / 1.6)
	return way


# How far one of two comes in so many frames, each moving away from where the other was as the frame began.
func _first_steps(apart_by: float, count: int) -> float:
	var moved := 0.0
	for i in count:
		moved += 2.0 / 60.0 * (1.0 - (apart_by + 2.0 * moved) / 1.6)
	return moved


func _nearest(crowd: Array[Node]) -> float:
	var least := INF
	for one in crowd:
		for other in crowd:
			if one != other:
				least = minf(least, where(one).distance_to(where(other)))
	return least
