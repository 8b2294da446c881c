extends Bench

const COUNTS: Dictionary[int, String] = {100: "100", 1000: "1,000", 10_000: "10,000"}
const SUBJECTS: Dictionary[String, GDScript] = {
	"tick": preload("res://bench/measure_tick.gd"),
	"idle": preload("res://bench/measure_idle.gd"),
	"start": preload("res://bench/measure_start.gd"),
	"fast_lane": preload("res://bench/measure_fast_lane.gd"),
}
## The contestants that are ours, each with what it is called and the unit of its figure.
const OURS: Dictionary[String, PackedStringArray] = {
	"tick.machine": ["a tick", "ns a frame"],
	"idle.machine": ["a machine that waits", "ns a frame"],
	"start.machine": ["a start", "us"],
	"fast_lane.chase": ["a chase", "ns a step"],
	"fast_lane.check": ["a distance check", "ns a step"],
}
const YARDSTICKS: Dictionary[String, PackedStringArray] = {
	"tick.gdscript": ["a GDScript node", "ns a frame"],
	"tick.extension": ["an extension node", "ns a frame"],
	"start.node": ["a plain node's start", "us"],
	"start.by_hand": ["a GDScript machine's start", "us"],
	"fast_lane.chase_bare": ["a chase's engine calls", "ns a step"],
	"fast_lane.check_bare": ["a check's engine calls", "ns a step"],
}
## Whose growth that of ours is held against.
const GROWS_BESIDE: Dictionary[String, String] = {
	"tick.machine": "tick.extension",
	"start.machine": "start.by_hand",
	"fast_lane.chase": "fast_lane.chase_bare",
	"fast_lane.check": "fast_lane.check_bare",
}
const MOST_GROWTH: float = 1.3
## A figure that is next to nothing at any size has no growth.
const NEXT_TO_NOTHING: PackedStringArray = ["idle.machine"]


func number() -> int:
	return 9


func title() -> String:
	return "Scale: what one more costs among 100, 1,000 and 10,000"


func measure() -> void:
	var turns := BenchTurns.new()
	var opened: Array[Bench] = []
	for subject in SUBJECTS:
		var bench: Bench = SUBJECTS[subject].new()
		bench.open(tree)
		opened.append(bench)
		for count in COUNTS:
			var takers := bench.contestants(count)
			for contestant in takers:
				var name := "%s.%s" % [subject, contestant]
				if name in OURS or name in YARDSTICKS:
					turns.add(_sized(name, count), takers[contestant])
	await turns.play(tree)
	for bench in opened:
		bench.close()
	for name in YARDSTICKS:
		_report(turns, name, YARDSTICKS[name])
	for name in OURS:
		_report(turns, name, OURS[name])


func _report(turns: BenchTurns, name: String, words: PackedStringArray) -> void:
	var smaller := 0
	for count in COUNTS:
		figure("scale." + _sized(name, count), "%s among %s" % [words[0], COUNTS[count]], words[1], turns.samples(_sized(name, count)))
		if smaller > 0 and not name in NEXT_TO_NOTHING:
			var sizes := _scaled(name, count, smaller)
			ratio(sizes[0], sizes[1])
			if name in GROWS_BESIDE:
				growth(sizes[0], sizes[1], _scaled(GROWS_BESIDE[name], count, smaller), MOST_GROWTH)
		smaller = count


func _scaled(name: String, larger: int, smaller: int) -> PackedStringArray:
	return ["scale." + _sized(name, larger), "scale." + _sized(name, smaller)]


func _sized(name: String, count: int) -> String:
	return "%s.%d" % [name, count]
