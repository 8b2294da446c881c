extends "res://tests/stories/files/sense_story.gd"


func in_range(closer: float, further: float = 0.0, settings: Dictionary = {}) -> SCMachineCondition:
	return kind(SCInRangeCondition, {"closer_than": far(closer), "but_further_than": far(further)}.merged(settings, true))


func test_how_near_is_whom_it_deals_with() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard())
		var owner := asker(watcher.get_parent(), {"variables": {"prey": null, "reach": far(4.0), "apart": -1.0}})
		var keeps := {"store_distance_in": &"apart"}
		expect_answers(owner, [[in_range(9.0, 0.0, keeps), false]], "nobody")
		expect_equal(owner.get_value(&"apart"), -1.0)
		player(3.0)
		await physics_frames(2)
		expect_answers(owner, [
			[in_range(3.5, 0.0, keeps), true], [in_range(2.5), false], [in_range(0.0), true], [in_range(9.0, 2.5), true], [in_range(9.0, 3.5), false],
			[in_range(0.0, 3.5), false], [in_range(0.0, 2.5), true], [in_range(1.0, 0.0, {"closer_than_variable": &"reach"}), true],
		])
		expect_near(owner.get_value(&"apart"), far(3.0), 0.001)
		var other := spot(0.0, 20.8, "Other")
		owner.set_value(&"prey", other)
		expect_answers(owner, [[in_range(19.0, 0.0, {"target_variable": &"prey"}.merged(keeps)), false], [in_range(21.0, 0.0, {"target_variable": &"prey"}), true]])
		expect_near(owner.get_value(&"apart"), far(20.0), far(0.05), "a no is measured too")
		other.free()
		expect_answers(owner, [[in_range(99.0, 0.0, {"target_variable": &"prey"}), false]], "freed"))


func test_what_scripts_may_ask() -> void:
	var watcher := senses_of(guard())
	var hero := player(3.0)
	watcher.look_now()
	var near := kind(SCInRangeCondition, {"closer_than": far(9.0)})
	var alert := kind(SCAlertAlliesAction)
	var owner := start(machine([state("Look", [watch(near), alert, act("on")])], {"under": watcher.get_parent()}))
	expect_equal([SCInRangeCondition.dealing_with(owner, 0), SCAlertAlliesAction.dealing_with(owner, 1)], [hero, hero])
	for other: int in [1, 9, -1]:
		expect(SCInRangeCondition.dealing_with(owner, other) == null, "action %d asks for no range" % other)
	expect(SCAlertAlliesAction.dealing_with(owner, 0) == null and SCAlertAlliesAction.dealing_with(null, 1) == null)
	near.target_variable = &"nobody"
	SCInRangeCondition.warn_dealing_with(owner, 0)
	expect_warning("In Range on Machine: there is no variable called nobody, so there is nothing to deal with.")


func test_what_is_set_up_wrong_is_told() -> void:
	var rows: Array = [
		[{}, "In Range on Machine: Hero has no Perception node to find anything with, and no Target Variable is named"],
		[{"target_variable": &"none"}, "there is no variable called none, so there is nothing to deal with"],
		[{"target_variable": &"score"}, "score holds 5, which is not a node"],
		[{"body_path": ^"../Gone"}, "there is no node at ../Gone"],
	]
	for row: Array in rows:
		var hero := character()
		expect_warns(kind(SCInRangeCondition, row[0]), row[1], {"under": hero, "variables": {"score": 5}})
		hero.free()


func test_lines() -> void:
	expect_lines(SCInRangeCondition, {
		"Within 2": {}, "Between 3 and 8 away": {"closer_than": 8.0, "but_further_than": 3.0}, "Within [reach]": {"closer_than_variable": &"reach"},
		"At least 3 away": {"closer_than": 0.0, "but_further_than": 3.0}, "At any distance": {"closer_than": 0.0},
	})
