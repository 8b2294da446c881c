extends "res://tests/stories/files/sense_story.gd"
## What a Perception node does in time: it is called only when something of it is due, and its time stands still with it.

const Sight := preload("res://addons/quillstead/runtime/quillstead_sight.gd")


## Whoever is woken is counted.
class Counted:
	extends "res://addons/quillstead/runtime/senses.gd"

	var woken: int = 0

	func wake(slice: int, now: float, may_look: bool) -> int:
		woken += 1
		return super(slice, now, may_look)


func test_it_is_called_only_when_it_is_time() -> void:
	await on_both_sides(func() -> void:
		for row: Array in [[0.1, 9, 11], [0.5, 1, 3], [0.0, 59, 61]]:
			var senses := Counted.new()
			senses.look_every = row[0]
			character().add_child(senses)
			await physics_frames(2)
			senses.woken = 0
			await physics_frames(60)
			expect(senses.woken >= row[1] and senses.woken <= row[2], "looking every %s s it was called %d times" % [row[0], senses.woken])
			senses.get_parent().free())


func test_its_memory_stands_still_with_it() -> void:
	await on_both_sides(func() -> void:
		for how: String in ["paused", "disabled", "taken out"]:
			var watcher := senses_of(guard({"remember_for": 0.5, "look_every": 3.0}))
			var told := heed(watcher)
			var thief := character(-5.0, 0.0, "Thief")
			watcher.notice(thief)
			await physics_frames(20)
			match how:
				"paused":
					tree.paused = true
				"disabled":
					watcher.get_parent().process_mode = Node.PROCESS_MODE_DISABLED
				"taken out":
					stage.remove_child(watcher.get_parent())
			await physics_frames(60)
			expect(watcher.target == thief and told.is_empty(), "%s, it has forgotten" % how)
			tree.paused = false
			if how == "taken out":
				stage.add_child(watcher.get_parent())
			watcher.get_parent().process_mode = Node.PROCESS_MODE_INHERIT
			await physics_frames(8)
			expect(told.is_empty(), "%s, it gives up too soon" % how)
			await physics_frames(5)
			expect_equal(told, ["lost Thief"], how)
			thief.free()
			watcher.get_parent().free())


func test_it_goes_on_while_the_game_is_paused_if_it_may() -> void:
	await on_both_sides(func() -> void:
		var body := guard()
		body.process_mode = Node.PROCESS_MODE_ALWAYS
		tree.paused = true
		player(5.0)
		await physics_frames(3)
		expect(senses_of(body).can_see_target)
		tree.paused = false)


func test_what_is_gone_is_told_at_once_and_a_shorter_memory_counts_at_once() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard({"look_every": 9.0}))
		var told := heed(watcher)
		var hero := player(5.0)
		watcher.look_now()
		hero.free()
		await physics_frames(2)
		expect_equal(told, ["spotted Player", "lost nobody"])
		var thief := character(-5.0, 0.0, "Thief")
		watcher.notice(thief)
		await physics_frames(10)
		watcher.remember_for = 0.1
		await physics_frames(2)
		expect_equal(told.back(), "lost Thief")
		# Its interval, likewise.
		player(5.0, 0.0, 0.0, "Other")
		watcher.look_every = 0.05
		await physics_frames(6)
		expect_equal(told.back(), "spotted Other"))


func test_the_speed_of_time_may_change() -> void:
	Engine.time_scale = 0.01
	var watcher := senses_of(guard({"look_every": 0.5}))
	player(5.0)
	await physics_frames(5)
	Engine.time_scale = 1.0
	await physics_frames(34)
	expect(watcher.can_see_target, "it still waits as if time were slow")
