extends Bench

const COPIES: int = 1000
const GUARD: PackedScene = preload("res://bench/guard.tscn")


func title() -> String:
	return "%d copies of a scene with a machine" % COPIES


func measure() -> void:
	# What is compiled once for all is not part of a copy.
	_add(1)
	await clear_stage()
	var bare := await frame_usec()
	var lowest := INF
	for attempt in 3:
		var began := Time.get_ticks_usec()
		_add(COPIES)
		lowest = minf(lowest, float(Time.get_ticks_usec() - began))
		if attempt < 2:
			await clear_stage()
	report("instantiating, adding and starting one", lowest / COPIES, "us", 60.0)
	var crowded := await frame_usec()
	report("all on patrol: a frame", crowded - bare, "us more", 20.0)
	var lowest_turn := INF
	for attempt in ROUNDS:
		var began := Time.get_ticks_usec()
		SCMachine.broadcast_everywhere(&"noise" if attempt % 2 == 0 else &"quiet", null)
		lowest_turn = minf(lowest_turn, float(Time.get_ticks_usec() - began))
		await frames(1)
	report("an event that all of them hear and follow", lowest_turn / COPIES, "us each", 10.0)
	await clear_stage()


func _add(count: int) -> void:
	for i in count:
		stage.add_child(GUARD.instantiate())
