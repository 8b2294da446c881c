extends SceneTree
## Takes the measurements of this folder whose file name holds one of the words, all of them without words, and prints lines of
## JSON for [code]bench/report.py[/code]. [code]./dev bench[/code] puts the two together.

const FOLDER: String = "res://bench"


func _initialize() -> void:
	var words := OS.get_cmdline_user_args()
	await process_frame
	if not ClassDB.class_exists(&"BenchProbe"):
		printerr("bench: the extension that holds the yardsticks is not loaded")
		quit(1)
		return
	var wanted: Array[Bench] = []
	for name in DirAccess.get_files_at(FOLDER):
		if name.begins_with("measure_") and name.ends_with(".gd") and _is_wanted(name, words):
			wanted.append((load(FOLDER.path_join(name)) as GDScript).new())
	wanted.sort_custom(func(one: Bench, other: Bench) -> bool: return one.number() < other.number())
	for bench in wanted:
		print(JSON.stringify({"subject": bench.number(), "title": bench.title()}))
		bench.open(self)
		await bench.measure()
		bench.close()
		await process_frame
	quit()


func _is_wanted(name: String, words: PackedStringArray) -> bool:
	for word in words:
		if word in name:
			return true
	return words.is_empty()
