extends "res://tests/stories/files/sense_story.gd"

const OwnSenses := preload("res://tests/stories/files/own_senses.gd")


func watch_for(settings: Dictionary = {}) -> Resource:
	return kind(SCLookForTargetAction, settings)


## A machine on the guard that keeps watch and goes where its events lead.
func keep_watch(on: Node, settings: Dictionary = {}, options: Dictionary = {}) -> SCMachine:
	return start(machine([
		state("Watch", [watch_for(settings)], {"Spotted": "Chase", "Lost": "Idle"}, {}),
		state("Chase", [act("chase")], {"Lost": "Idle", "again": "Watch"}),
		state("Idle", [act("idle")], {"again": "Watch"}),
	], {"under": on, "variables": {"target": null}}.merged(options, true)))


func connections_of(of: Senses) -> int:
	return of.spotted.get_connections().size() + of.seen_again.get_connections().size() + of.lost.get_connections().size()


func test_it_takes_longer_to_notice_what_is_far() -> void:
	await on_both_sides(func() -> void:
		# How far off, in shares of the range, and how many frames of a second it takes.
		for row: Array in [[0.25, 15], [0.5, 30], [1.0, 60]]:
			var watcher := senses_of(guard({"see_range": far(8.0), "seconds_to_notice": 1.0}))
			var hero := player(7.99 * row[0])
			await physics_frames(int(row[1] * 0.5))
			expect_near(watcher.suspicion, 0.5, 0.1, "half noticed at %s" % row[0])
			await physics_frames(int(row[1] * 0.5) - 2)
			expect(watcher.target == null, "noticed too soon at %s" % row[0])
			await physics_frames(5)
			expect(watcher.can_see_target and watcher.suspicion == 0.0, "never noticed at %s" % row[0])
			hero.free()
			watcher.get_parent().free())


func test_it_relents_after_a_glimpse() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard({"see_range": far(8.0), "seconds_to_notice": 1.0, "seconds_to_relent": 0.5}))
		var hero := player(4.0)
		await physics_frames(16)
		var glimpsed := watcher.suspicion
		expect_near(glimpsed, 0.5, 0.1)
		hero.set(&"position", at(-4.0, 0.8))
		await physics_frames(6)
		expect_near(watcher.suspicion, glimpsed - 0.2, 0.05)
		await physics_frames(20)
		expect_equal(watcher.suspicion, 0.0)
		# Whom it knows it sees again at once.
		watcher.notice(hero)
		hero.set(&"position", at(4.0, 0.8))
		await physics_frames(2)
		expect(watcher.can_see_target))


func test_a_guard_whose_player_is_in_sight_as_the_state_begins() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard())
		var hero := player(5.0)
		var owner := keep_watch(watcher.get_parent())
		expect_state(owner, "Watch")
		expect_equal(owner.get_value(&"target"), hero)
		expect_events(owner, [])
		await frames(2)
		expect_state(owner, "Chase")
		expect_events(owner, ["Spotted"])
		expect_equal(owner.last_event_data(), hero)
		expect_equal(connections_of(watcher), 0, "it listens on"))


func test_a_guard_whose_player_shows_up_later_and_is_lost() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard({"remember_for": 0.3}))
		var owner := start(machine([state("Watch", [watch_for(), wait(0.1)], {"FINISHED": "Rest"}), state("Rest")], {"under": watcher.get_parent()}))
		await advance(0.2)
		expect_state(owner, "Rest")
		owner.free()
		owner = start(machine([state("Watch", [watch_for()], {"FINISHED": "Watched"}, {"sub_states": []}), state("Watched")], {"under": watcher.get_parent()}))
		expect_state(owner, "Watched")
		owner.free()
		owner = start(machine([state("Watch", [watch_for(), act("on")])], {"under": watcher.get_parent(), "variables": {"target": null}}))
		expect_equal(connections_of(watcher), 3)
		var hero := player(5.0)
		await physics_frames(3)
		expect_events(owner, ["Spotted"])
		expect_equal(owner.get_value(&"target"), hero)
		hero.set(&"position", at(-5.0, 1.0))
		await physics_frames(3)
		hero.set(&"position", at(5.0, 1.0))
		await physics_frames(3)
		expect_events(owner, ["Spotted"])
		hero.set(&"position", at(-5.0, 1.0))
		await physics_frames(25)
		expect_events(owner, ["Lost"])
		expect_equal(String((watcher.lost.get_connections()[0]["callable"] as Callable).get_method()), "")
		expect_equal(str(watcher.spotted.get_connections()[0]["callable"]), "Look For Target (spotted)")
		expect_equal(str(watcher.lost.get_connections()[0]["callable"]), "Look For Target (lost)")
		owner.free()
		watcher.spotted.emit(hero)
		expect(true))


func test_whom_it_remembered_is_gone_as_the_state_begins() -> void:
	await on_both_sides(func() -> void:
		for how: String in ["freed", "out of sight"]:
			var watcher := senses_of(guard())
			var gone := player(-5.0)
			var owner := start(machine([state("Idle", [act("idle")], {"go": "Watch"}), state("Watch", [watch_for(), act("on")])],
				{"under": watcher.get_parent(), "variables": {"target": null}}))
			owner.set_value(&"target", gone)
			if how == "freed":
				gone.free()
			owner.send_event(&"go")
			expect_events(owner, ["go"])
			await frames(2)
			expect_events(owner, ["Lost"])
			expect(owner.get_value(&"target") == null)
			if how != "freed":
				gone.free()
			watcher.get_parent().free())


func test_leaving_while_being_told_leaves_nothing_behind() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard())
		var owner := keep_watch(watcher.get_parent(), {"look_at_once": false, "look_for": &"thieves"})
		expect_equal(watcher.watch_group, &"thieves")
		var thief := character(5.0, 0.0, "Thief")
		thief.add_to_group(&"thieves")
		expect_equal(connections_of(watcher), 3)
		await physics_frames(3)
		expect_state(owner, "Chase")
		expect_equal(connections_of(watcher), 0)
		# Freed by what it sends.
		owner.send_event(&"again")
		watcher.get_parent().add_child(Node.new())
		owner.event_sent.connect(func(_event: StringName, _data: Variant) -> void: owner.queue_free())
		await physics_frames(3)
		expect_equal(connections_of(watcher), 0)
		watcher.free())


func test_what_is_asked_of_its_senses() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard({"remember_for": 1.0}))
		var owner := asker(watcher.get_parent(), {"variables": {"seen": null}})
		var sees := kind(SCCanSeeCondition, {"store_seen_in": &"seen"})
		var lost := kind(SCTargetLostCondition)
		var forgot := kind(SCTargetLostCondition, {"only_when_forgotten": true})
		expect_answers(owner, [[sees, false], [lost, false], [forgot, false]])
		var hero := player(5.0)
		await physics_frames(2)
		expect_answers(owner, [
			[sees, true], [kind(SCCanSeeCondition, {"group": &"player"}), true], [kind(SCCanSeeCondition, {"group": &"thieves"}), false], [lost, false], [forgot, false],
		])
		hero.set(&"position", at(-5.0, 1.0))
		await physics_frames(25)
		expect_answers(owner, [[sees, false], [lost, false], [kind(SCTargetLostCondition, {"out_of_sight_for": 0.3}), true], [forgot, false]])
		expect_equal(owner.get_value(&"seen"), hero, "the last one it saw is kept")
		await physics_frames(10)
		expect_answers(owner, [[lost, true], [forgot, false]])
		await physics_frames(30)
		expect_answers(owner, [[lost, true], [forgot, true]])
		hero.set(&"position", at(5.0, 1.0))
		await physics_frames(2)
		expect_answers(owner, [[sees, true], [lost, false], [forgot, false]])
		hero.free()
		expect_answers(owner, [[sees, false]]))


func test_a_perception_node_of_a_games_own() -> void:
	var body := character()
	body.add_child(OwnSenses.new())
	var check := kind(SCCheckAction, {"condition": kind(SCTargetLostCondition), "run_mode": SCMachineAction.EVERY_FRAME, "true_event": &"lost"})
	var owner := start(machine([state("Watch", [check], {"lost": "Search"}), state("Search")], {"under": body}))
	await advance(0.4)
	expect_state(owner, "Watch")
	await advance(0.2)
	expect_state(owner, "Search")


func test_without_a_perception_node() -> void:
	var nobody := {"under": character()}
	expect_warns(watch_for(), "Look For Target on Machine has no Perception node under the character.", nobody)
	expect_warns(kind(SCCanSeeCondition), "Can See on Machine has no Perception node under the character, so the answer is no.", nobody)
	expect_warns(kind(SCTargetLostCondition), "Target Lost on Machine has no Perception node under the character, so the answer is no.", nobody)


func test_lines() -> void:
	expect_lines(SCLookForTargetAction, {
		"Look for player, Spotted when found": {}, "Look for thieves": {"look_for": &"thieves", "spotted_event": &""},
		"Look for what its Perception watches for": {"look_for": &"", "spotted_event": &""},
	})
	expect_lines(SCCanSeeCondition, {"Can see something": {}, "Can see a thief": {"group": &"thief"}})
	expect_lines(SCTargetLostCondition, {"Lost sight for 0.5 s": {}, "It has given up": {"only_when_forgotten": true}})
