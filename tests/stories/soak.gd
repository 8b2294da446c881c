extends Story
## A short piece of [code]./dev soak[/code]: a town of machines lives, is treated roughly and goes, and nothing of it is left.

const Round := preload("res://tests/soak/soak_round.gd")
const Rehearsal := preload("res://tests/fuzz/rehearsal.gd")
const Census := preload("res://tests/soak/soak_census.gd")

const MACHINES: int = 200
const FRAMES: int = 40
const SEED: int = 20_262


func test_nothing_is_left_of_a_town() -> void:
	var round := await _round()
	for number in 2:
		var left := await round.judge(Round.seed_of(SEED, number))
		expect(left.is_empty(), "round %d: %s" % [number, ", ".join(left)])
	expect(round.peak >= MACHINES and round.changes > 1000 and round.events > 1000, "%d machines at once, %d changes, %d events" % [
		round.peak, round.changes, round.events])


func test_the_same_seed_does_the_same() -> void:
	var made: Array[int] = []
	for i in 2:
		var round := await _round()
		await round.play(SEED)
		made.append(round.made)
	expect_equal(made[0], made[1])


func test_whatever_is_left_is_found() -> void:
	var left := Node.new()
	var file := Resource.new()
	var kept := Node.new()
	kept.name = "Kept"
	var keep := func() -> void: pass
	# What is done, the words of the census for it, and how it is undone.
	for row: Array in [
		[func() -> void: left.set_meta(&"kept", RefCounted.new()), "+1 objects", func() -> void: left.remove_meta(&"kept")],
		[func() -> void: file.take_over_path("res://kept.tres"), "+1 resources", func() -> void: file.resource_path = ""],
		[func() -> void: tree.physics_frame.connect(keep), "connection SceneTree.physics_frame", func() -> void: tree.physics_frame.disconnect(keep)],
		[func() -> void: tree.node_added.connect(left.queue_free.unbind(1)), "to Node.queue_free", func() -> void: tree.node_added.disconnect(left.queue_free.unbind(1))],
		[func() -> void: tree.root.add_child(kept), "node /root/Kept", func() -> void: tree.root.remove_child(kept)],
		[func() -> void: stage.set_process(true), "frame callback of /root/Stage", func() -> void: stage.set_process(false)],
		[func() -> void: stage.add_to_group(&"kept"), "group kept of /root/Stage", func() -> void: stage.remove_from_group(&"kept")],
		[func() -> void: SCMachine.set_global_value(&"kept", 1), "global kept", func() -> void: SCMachine._core_global_values().erase(&"kept")],
		[func() -> void: SCMachine.set_measuring(true), "measuring", func() -> void: SCMachine.set_measuring(false)],
	]:
		var before := Census.new(tree).counts
		(row[0] as Callable).call()
		var lines := Census.new(tree).differences_from(before)
		expect(row[1] in ", ".join(lines), "%s is not found: %s" % [row[1], lines])
		(row[2] as Callable).call()
		lines = Census.new(tree).differences_from(before)
		expect(lines.is_empty(), "once it is gone: %s" % lines)
	left.free()
	kept.free()


func _round() -> Round:
	await Rehearsal.hold(stage, output)
	var round := Round.new(tree)
	round.machines = MACHINES
	round.frames = FRAMES
	return round
