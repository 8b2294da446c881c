extends SceneTree
## Plays rounds for a while: [code]-s res://tests/soak/run.gd -- [--seed=N] [--seconds=N] [--machines=N] [--round=N][/code].
## The same seed means the same rounds; the time only decides how many. After each, everything has to be as it was before.
## Ends with 1, and with the way to play that round again, when it is not.

const Round := preload("res://tests/soak/soak_round.gd")
const Census := preload("res://tests/soak/soak_census.gd")
const Rehearsal := preload("res://tests/fuzz/rehearsal.gd")
const OutputCatcher := preload("res://tests/framework/output_catcher.gd")

const MOST_SECONDS: float = 570.0
## A round that is played alone is played so often, to see whether memory grows.
const REPLAYS: int = 8
## Lists and tables that have reached their size are kept.
const WARM_UP: int = 3
const MEMORY_SLACK: int = 16 * 1024

var _options: Dictionary[String, int] = {"seed": 1, "seconds": 300, "machines": 3000, "round": -1}
var _catcher: OutputCatcher = OutputCatcher.new()
var _memory: PackedInt64Array = []


func _initialize() -> void:
	for argument in OS.get_cmdline_user_args():
		var name := argument.get_slice("=", 0).trim_prefix("--")
		if not _options.has(name) or not argument.get_slice("=", 1).is_valid_int():
			print("soak: there is no %s; there are --seed=N, --seconds=N, --machines=N and --round=N" % argument)
			quit(2)
			return
		_options[name] = int(argument.get_slice("=", 1))
	# Nothing of it may depend on when it was begun.
	await process_frame
	OS.add_logger(_catcher)
	var well := await _play_rounds()
	OS.remove_logger(_catcher)
	quit(0 if well else 1)


func _play_rounds() -> bool:
	var stage := Node.new()
	root.add_child(stage)
	# The rehearsal judges what it provokes.
	print("== stories begin")
	await Rehearsal.hold(stage, _catcher)
	print("== stories end")
	stage.free()
	var round := Round.new(self)
	round.machines = maxi(1, _options["machines"])
	var alone: bool = _options["round"] >= 0
	var ends := Time.get_ticks_msec() + int(minf(_options["seconds"], MOST_SECONDS) * 1000.0)
	var played := 0
	var faults: PackedStringArray = []
	while faults.is_empty() and (played < REPLAYS if alone else Time.get_ticks_msec() < ends):
		var number: int = _options["round"] if alone else played
		faults = await round.judge(Round.seed_of(_options["seed"], number))
		_memory.append(Census.memory())
		faults.append_array(_catcher.unclaimed())
		_catcher.forget()
		_catcher.forget_printed()
		played += 1
		if not faults.is_empty():
			_say_fault(number, faults)
	if faults.is_empty():
		faults = _judge_memory()
		if not faults.is_empty():
			_say_fault(played - 1 if not alone else _options["round"], faults)
	print("%d rounds, %d machines made, %d at once, %d events, %d changes of state; memory %d KB after the first round, %d KB after the last" % [
		played, round.made, round.peak, round.events, round.changes, _memory[0] / 1024.0, _memory[-1] / 1024.0])
	return faults.is_empty()


## From the end of the warm-up on, memory may go up and down, but not only up: the least of the last rounds is held against
## the most of as many after the warm-up.
func _judge_memory() -> PackedStringArray:
	var count := mini(5, floori((_memory.size() - WARM_UP) / 2.0))
	if count < 2:
		return []
	var early: Array = Array(_memory.slice(WARM_UP, WARM_UP + count))
	var late: Array = Array(_memory.slice(-count))
	var growth: int = late.min() - early.max()
	if growth <= MEMORY_SLACK:
		return []
	return ["memory grew by %d bytes; after each round: %s" % [growth, _memory]]


func _say_fault(number: int, faults: PackedStringArray) -> void:
	print("FAULT with seed %d in round %d, which ./dev soak --seed=%d --round=%d%s plays alone:" % [_options["seed"], number, _options["seed"],
		number, "" if _options["machines"] == 3000 else " --machines=%d" % _options["machines"]])
	for line in faults:
		print("  %s" % line)
