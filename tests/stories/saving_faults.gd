extends "res://tests/stories/files/save_story.gd"
## Saved games as a database would be tested: whatever becomes of a file or of the disk, a machine gets all of a save or nothing,
## and the save that was there stands until the next one is whole.

const START := {"gold": 1, "name": "Nobody", "place": Vector2.ZERO, "speed": 1.5, "list": [], "table": {}}
## As large as a save may be, in bytes.
const MOST: int = 128 * 1024 * 1024

## What is saved, in place of each of [constant START].
var game := {"gold": 120, "name": "Ana é\n", "place": Vector2(3, -4.5), "speed": 2.25, "list": [1, &"a", [null]],
		"table": {"keys": PackedInt64Array([7]), 3: ^"../Door"}}
var owner: SCMachine


func most_frames() -> int:
	return super() * (60 if long else 1)


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	owner = play([], {}, {"variables": START.merged({"worked": null})})


func test_a_save_cut_at_every_byte() -> void:
	var whole := saved_game()
	for size in whole.size():
		put_save(whole.slice(0, size))
		expect(not load_it(), "cut at byte %d" % size)
		expect_equal(held(), START, "cut at byte %d" % size)
	put_save(whole)
	expect(load_it())
	expect_equal(held(), game)


func test_every_byte_flipped_in_turn() -> void:
	var whole := saved_game()
	for at in whole.size():
		for flip: int in range(1, 256) if long else [1, 0x10, 0x20, 0x80, whole[at]]:
			var broken := whole.duplicate()
			broken[at] ^= flip
			load_broken(broken, "byte %d of %d" % [at, broken[at]])


func test_files_that_are_broken_in_any_way() -> void:
	var whole := saved_game()
	for round: int in seeds(1, 200, 20000):
		var random := RandomNumberGenerator.new()
		random.seed = round
		load_broken(broken_by(random, whole), "seed %d" % round)
	for text: String in [
		"{\"gold\": ".repeat(5000), "[".repeat(100000), "{\"a\":".repeat(1023) + "1" + "}".repeat(1023), "{\"a\":" + "[".repeat(1023) + "]".repeat(1023) + "}",
		"{\"a\":" + "[".repeat(1024) + "]".repeat(1024) + "}", "{\"list\":" + "[".repeat(1000) + "]".repeat(1000) + "}", "{\"%s\": \"i:1\"}" % "k".repeat(65536),
		"{\"gold\": \"i:%s\"}" % "9".repeat(100000),
		"{\"speed\": \"f:%s\"}" % "9".repeat(100000), "{\"gold\": %s}" % "9".repeat(100000), "{\"gold\": -0.%s1}" % "0".repeat(5000),
		"{\"table\": {\"type\": \"Dictionary\", \"args\": [[], [], {}, []]}}",
		"{\"list\": {\"type\": \"Array\", \"args\": [{\"type\": \"Object\", \"args\": []}]}}",
		"{\"list\": {\"type\": \"Array\", \"elem_type\": \"res://demo/demo.tscn\", \"args\": []}}",
		"{\"list\": [\"i:1\", {\"type\": \"GDScript\", \"args\": [], \"source_code\": \"s:func _init(): print('run')\"}]}",
		"{\"table\": {\"type\": \"Dictionary\", \"args\": [\"i:1\", \"i:1\", \"i:1\", \"i:2\"]}}",
	]:
		load_broken(text.to_utf8_buffer(), text.left(40))
	expect_not_printed("run")


func test_what_the_engine_cannot_read_as_a_text() -> void:
	for bytes: Array in [[0], [0xFF], [0xC0, 0x80], [0xE0, 0x80, 0x80], [0xED, 0xA0, 0x80], [0xF4, 0x90, 0x80, 0x80], [0xF0, 0x8F, 0xBF, 0xBF], [0x80],
			[0xC3], [0xE2, 0x82]]:
		for around: Array in [['{"name": "s:', '"}'], ['{ ', '"name": "s:x"}'], ["", "{}"], ['{"name": "s:\\', '"}'], ["{}", ""]]:
			var text := (around[0] as String).to_utf8_buffer()
			text.append_array(PackedByteArray(bytes))
			text.append_array((around[1] as String).to_utf8_buffer())
			put_save(text)
			expect(not load_it(), str(bytes))
			expect_equal(held(), START)


func test_folders_and_files_in_the_way() -> void:
	expect(save_it(), "the folder is made")
	_remove(SAVES)
	FileAccess.open(SAVES, FileAccess.WRITE).store_string("in the way")
	expect_all_fail("save")
	expect_all_fail("below/save")
	DirAccess.remove_absolute(SAVES)
	expect(save_it("taken"))
	expect_all_fail("taken.json/deep")
	DirAccess.make_dir_recursive_absolute(file_of("folder"))
	expect_all_fail("folder")
	expect(DirAccess.dir_exists_absolute(file_of("folder")))
	put_save("{}")
	DirAccess.make_dir_recursive_absolute(file_of() + ".new")
	expect(not save_it(), "what it would write into is a folder")
	expect_equal(text_of(), "{}")
	expect(load_it("taken"))
	expect_all_fail("x".repeat(300))


func test_a_disk_that_is_full() -> void:
	if OS.get_name() != "Linux":
		return
	for size: int in [3, 100000]:
		expect(save_it())
		DirAccess.open(SAVES).create_link("/dev/full", ProjectSettings.globalize_path(file_of() + ".new"))
		owner.set_value(&"name", "n".repeat(size))
		expect(not save_it(), "the disk takes nothing")
		owner.set_value(&"name", "")
		expect(load_it())
		expect_equal(held(), game)
		DirAccess.remove_absolute(file_of() + ".new")


func test_a_limit_on_how_much_may_be_written() -> void:
	if OS.get_name() != "Linux":
		return
	# A program is told that it may not, or ended.
	for row: Array in [["trap '' XFSZ\n", "worked: false"], ["", ""]]:
		expect(save_it())
		var said := another_engine("%sulimit -c 0\nulimit -f 256\n" % row[0], ["save", "1000000"])
		expect((row[1].is_empty() or row[1] in said) and not "worked: true" in said, said)
		expect(load_it())
		expect_equal(held(), game)
		expect(save_it() and saves() == ["save.json"], "what was left of the other is in nobody's way")
	expect("worked: true" in another_engine("", ["save", "1000"]))
	expect_equal(JSON.parse_string(text_of())["who"], "s:a")


func test_a_game_that_is_killed_while_it_saves() -> void:
	var random := RandomNumberGenerator.new()
	for round: int in seeds(1, 2, 40):
		random.seed = round
		_remove(SAVES)
		var letters := random.randi_range(1, 3_000_000)
		var process := OS.create_process(OS.get_executable_path(), engine_words(["save", str(letters), "again"]))
		for i in 10000:
			if FileAccess.file_exists(file_of()) or not OS.is_process_running(process):
				break
			OS.delay_msec(1)
		OS.delay_usec(random.randi_range(0, 100_000))
		OS.kill(process)
		owner.set_value(&"who", "")
		owner.set_value(&"text", "")
		expect(load_it(), "seed %d: %s" % [round, saves()])
		var who := owner.values
		expect(who[&"who"] in ["a", "b"] and who[&"text"] == (who[&"who"] as String).repeat(letters),
				"seed %d: it holds %d letters of %s" % [round, who[&"text"].length(), who[&"who"]])
		for name: StringName in [&"who", &"text"]:
			owner.set_value(name, null)
		expect(save_it() and saves() == ["save.json"], "seed %d" % round)


func test_what_is_too_large() -> void:
	expect(save_it())
	var owned := [&"name"] as Array[StringName]
	owner.set_value(&"name", "x".repeat(MOST + 10))
	expect(save_it("save", owned), "it is left out")
	expect_equal(JSON.parse_string(text_of()), {})
	if not long:
		var file := FileAccess.open(file_of(), FileAccess.WRITE)
		file.store_string('{"gold": "i:5"}')
		file.seek(MOST)
		file.store_8(32)
		file.close()
		expect(not load_it(), "the file is larger than any save")
		return
	var began := Time.get_ticks_msec()
	owner.set_value(&"name", "x".repeat(100_000_000))
	expect(save_it("save", owned))
	owner.set_value(&"name", "")
	expect(load_it("save", owned))
	expect_equal((owner.get_value(&"name") as String).length(), 100_000_000)
	owner.set_value(&"second", owner.get_value(&"name"))
	expect(not save_it("save", [&"name", &"second"]), "the two do not fit")
	for name: StringName in [&"name", &"second"]:
		owner.set_value(name, "")
	expect(load_it(), "the former one stands")
	put_save("{\"list\": [%s1]}" % "1,".repeat(40_000_000))
	expect(load_it())
	expect_equal((owner.get_value(&"list") as Array).size(), 40_000_001)
	put_save("{\"list\": [%s[]]}" % "[],".repeat(10_000_000))
	expect(load_it())
	owner.set_value(&"list", [])
	expect(Time.get_ticks_msec() - began < 120_000, "it takes %d s" % ((Time.get_ticks_msec() - began) / 1000.0))


func test_texts_for_a_file_of_the_games_own() -> void:
	var path := file_of("own/one")
	for text: String in ["", "[]", "{", "{\"a\": 1e999}", "{\"a\": \"\\u0000\"}", "{}}"]:
		expect_equal(SCMachineBase.native_helper(&"write_save", [path, text]), false, text)
	expect_equal(SCMachineBase.native_helper(&"read_save", [path]), null)
	expect_equal(SCMachineBase.native_helper(&"write_save", [path, JSON.stringify({"a": "\v"})]), true)
	expect_equal(SCMachineBase.native_helper(&"read_save", [path]), {"a": "\v"})
	for arguments: Array in [[], [1], [path, 5, 6], [null, null], [path, null], [Vector2.ONE, "{}"]]:
		expect(not SCMachineBase.native_helper(&"write_save", arguments))
		SCMachineBase.native_helper(&"read_save", arguments.slice(0, 1) if arguments.size() != 2 else arguments)
	for value: Variant in [null, 5, "x", Vector2.ONE, [1, {2: 3}]]:
		var encoded: Array = SCMachineBase.native_helper(&"encode_saved", [value])
		expect_equal(SCMachineBase.native_helper(&"decode_saved", encoded), [value])
	expect_equal(SCMachineBase.native_helper(&"encode_saved", [owner]), null)
	expect_equal(SCMachineBase.native_helper(&"decode_saved", ["x"]), null)


func expect_all_fail(slot: String) -> void:
	expect(not save_it(slot), "Save %s" % slot.left(20))
	expect(not load_it(slot), "Load %s" % slot.left(20))
	for what: int in [SCSaveGameAction.DELETE, SCSaveGameAction.EXISTS]:
		expect(not do_it(what, {}, {"slot": slot}), "%d %s" % [what, slot.left(20)])


func load_broken(bytes: PackedByteArray, what: String) -> void:
	put_save(bytes)
	if not load_it():
		expect_equal(held(), START, what)
	for name: StringName in START:
		expect_equal(typeof(owner.get_value(name)), typeof(START[name]), "%s: %s" % [what, name])
		owner.set_value(name, START[name])


func broken_by(random: RandomNumberGenerator, whole: PackedByteArray) -> PackedByteArray:
	const TOKENS: Array[String] = [
		"{", "}", "[", "]", ",", ":", "\"", "\\", "null", "true", "1", "-1e5", "1e600", "\"i:9\"", "\"f:1\"", "\"type\"", "\"args\"", "\"Vector2\"", "\"Array\"",
		"\"Dictionary\"", "\"Object\"",
		"\"elem_type\"", "\"gold\"", "\"list\"", "\"table\"", "\"global:x\"", "\\u0000", "\\uD800", "\\v", " ", "\n",
	]
	if random.randf() < 0.3:
		var text := "{" if random.randf() < 0.8 else ""
		for i in random.randi_range(0, 60):
			text += TOKENS[random.randi() % TOKENS.size()]
		return text.to_utf8_buffer()
	var broken := whole.duplicate()
	for i in random.randi_range(1, 4):
		var at := random.randi_range(0, broken.size())
		var upto := random.randi_range(at, mini(broken.size(), at + 20))
		match random.randi() % 3:
			0:
				broken = broken.slice(0, at) + broken.slice(upto)
			1:
				broken = broken.slice(0, at) + TOKENS[random.randi() % TOKENS.size()].to_utf8_buffer() + broken.slice(at)
			2:
				broken = broken.slice(0, at) + broken.slice(at, upto) + broken.slice(at)
	return broken


## The bytes of a save of [member game]; the machine is as it began again.
func saved_game() -> PackedByteArray:
	expect(save_it("game", START.keys()))
	return bytes_of("game")


func save_it(slot: String = "save", names: Array = START.keys()) -> bool:
	var now := owner.values.duplicate()
	for name: StringName in game:
		if typeof(now[name]) == typeof(START[name]) and now[name] == START[name]:
			owner.set_value(name, game[name])
	var done := does(SCSaveGameAction.SAVE, slot, names)
	for name: StringName in START:
		owner.set_value(name, START[name])
	return done


func load_it(slot: String = "save", names: Array = []) -> bool:
	return does(SCSaveGameAction.LOAD, slot, names)


func does(what: SCSaveGameAction.What, slot: String, names: Array) -> bool:
	var named: Array[StringName] = []
	named.assign(names)
	var action := kind(SCSaveGameAction, {"what": what, "slot": slot, "variables": named, "store_worked_in": &"worked"}) as SCSaveGameAction
	action.enter(owner, 0)
	return owner.get_value(&"worked")


func held() -> Dictionary:
	var now := {}
	for name: String in START:
		now[name] = owner.get_value(name)
	return now


func engine_words(words: Array) -> PackedStringArray:
	return PackedStringArray(["--headless", "--no-header", "--path", ProjectSettings.globalize_path("res://"), "-s", "res://tests/saving/saver.gd",
	"--"] + words)


## What another engine prints that is begun behind these lines of a shell.
func another_engine(lines: String, words: Array) -> String:
	var printed: Array = []
	put("begin.sh", lines + "exec \"$@\"\n")
	OS.execute("timeout", [str(SECONDS_TO_SURVIVE), "sh", whole("begin.sh"), OS.get_executable_path()] + Array(engine_words(words)), printed, true)
	return "\n".join(printed)
