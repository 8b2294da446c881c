extends Story
## Holds every registered kind to the rules that all of them keep: what it says, what it starts with, what a file keeps of
## it, where its script lies, and that a machine can run it however little is filled in.

const Dice := preload("res://tests/fuzz/dice.gd")
const Filling := preload("res://tests/fuzz/filling.gd")
const Tables := preload("res://tests/stories/files/kind_tables.gd")

const FILE: String = "user://story_sweep.tres"
const MACHINE: String = "Sweeper"
## Sentences that name the variable instead of the machine.
const NAMES_NO_MACHINE: Array[String] = ["Format Time: 'time' does not hold a number, so there is no time to write."]
## So often something else is drawn for a setting.
const DRAWS: int = 100


func most_frames() -> int:
	return 600 * FPS


func test_the_kinds_are_the_settled_ones() -> void:
	var settled := Tables.scripts()
	expect_equal(settled.size(), 294)
	for row in SCMachineAction._core_kinds():
		expect_equal(row["script"], settled.get(row["class"], "no settled kind"), row["class"])
		expect((row["script"] as String).ends_with("_%s.gd" % row["word"]) and "/%s/" % row["category"] in row["script"], "%s goes by %s in %s" % [row["class"], row["word"], row["category"]])
	for base: StringName in [&"SCMachineAction", &"SCMachineCondition"]:
		for kind in ClassDB.get_inheriters_from_class(base):
			expect(Filling.kinds().has(StringName(kind)), "%s is registered and describes no kind" % kind)


func test_they_are_registered_wait_first_and_assert_last() -> void:
	var between := Filling.kinds()
	expect_equal(between.pop_front(), &"SCWaitAction")
	if between.has(&"SCAssertAction"):
		expect_equal(between.pop_back(), &"SCAssertAction")
	var sorted := between.duplicate()
	sorted.sort_custom(func(a: StringName, b: StringName) -> bool: return String(a) < String(b))
	for i in between.size():
		if between[i] != sorted[i]:
			_fail("%s stands where %s should" % [between[i], sorted[i]])
			return


func test_each_can_be_made_and_tells_what_it_is() -> void:
	for kind in Filling.kinds():
		expect(ClassDB.can_instantiate(kind), "%s cannot be made" % kind)
		var made := _bare(kind)
		expect_equal(SCMachineAction.kind_name(made), kind)
		var is_condition := made is SCMachineCondition
		expect(String(kind).ends_with("Condition") == is_condition and (is_condition or made is SCMachineAction), "%s is named after the other base" % kind)
		for said: String in [made.call(&"summary"), made.call(&"shown_summary")]:
			expect(not said.strip_edges().is_empty() and not said.begins_with("<"), "%s says \"%s\" of itself" % [kind, said])
		var shown: String = made.call(&"shown_summary")
		expect(SCMachineAction.not_picked() in shown or not SCMachineAction.has_a_hole(shown), "%s has a hole: \"%s\"" % [kind, shown])


func test_each_setting_has_its_words() -> void:
	for kind in Filling.kinds():
		_expect_words(String(kind), SCMachineAction.doc_of(kind, &""))
		for property: Dictionary in Filling.settings_of(kind):
			if property["usage"] & PROPERTY_USAGE_EDITOR:
				_expect_words("%s.%s" % [kind, property["name"]], SCMachineAction.doc_of(kind, property["name"]))


func test_each_starts_with_what_its_settings_allow() -> void:
	for kind in Filling.kinds():
		var made := _bare(kind)
		for property: Dictionary in Filling.settings_of(kind):
			var fault := _out_of_place(property, made.get(property["name"]))
			expect(fault.is_empty(), "%s.%s starts as %s" % [kind, property["name"], fault])


func test_a_file_keeps_every_setting() -> void:
	for kind in Filling.kinds():
		var made := _bare(kind)
		_fill_in(made)
		var loaded := _saved_and_loaded(made)
		expect(loaded != null and loaded.get_class() == String(kind), "%s does not come back from a file" % kind)
		if loaded != null:
			_expect_same(made, loaded, kind)


func test_a_file_keeps_which_variables_are_read() -> void:
	for kind in Filling.kinds():
		var made := _bare(kind)
		var settings := SCMachineAction.can_be_read_from_a_variable_of(made)
		_read_everything_from_variables(made)
		var said: String = made.call(&"shown_summary")
		var loaded := _saved_and_loaded(made)
		expect_equal(loaded.get(&"from_variables"), made.get(&"from_variables"), kind)
		for setting in settings:
			var twin := StringName("%s_variable" % setting)
			expect_equal(made.get(twin), StringName("v_%s" % setting), "%s.%s" % [kind, twin])
			expect_equal(loaded.get(twin), made.get(twin), "%s.%s" % [kind, twin])
		expect(not "¤" in said and not "990" in said, "%s shows a marker: \"%s\"" % [kind, said])
		expect_equal(loaded.call(&"shown_summary"), said, kind)
		# Asking for the line must leave the settings alone.
		_expect_same(made, loaded, kind)


func test_each_has_its_script_and_the_script_its_runtime() -> void:
	var without: PackedStringArray = []
	for row in SCMachineAction._core_kinds():
		var kind: StringName = row["class"]
		var path: String = row["script"]
		if not ResourceLoader.exists(path):
			_fail("%s has no script at %s; ./dev kinds makes it" % [kind, path])
			continue
		var script: GDScript = load(path)
		expect_equal(script.get_instance_base_type(), kind, path)
		expect(script.get_base_script() == null and script.get_global_name().is_empty(), "%s stands for more than its kind" % path)
		var bare := _bare(kind)
		var scripted: Resource = script.new()
		var has := SCMachineAction._core_has_runtime(bare)
		if not has:
			without.append(kind)
		expect_equal(SCMachineAction._core_has_runtime(scripted), has, "%s by its script" % kind)
		var loaded := _saved_and_loaded(scripted)
		expect(loaded.get_script() == script and loaded.get_class() == String(kind), "%s with its script does not come back from a file" % kind)
		for said: StringName in [&"uses_run_mode", &"finishes_as_it_starts", &"wants_physics", &"needs_every_tick"]:
			if bare is SCMachineAction:
				expect_equal(scripted.call(said), bare.call(said), "%s.%s by its script" % [kind, said])
	if not without.is_empty():
		print("      without a compiled runtime: %s" % ", ".join(without))


func test_the_settings_of_any_type_are_the_settled_ones() -> void:
	var settled := Tables.listed(Tables.ANY_TYPE)
	for kind in Filling.kinds():
		for property: Dictionary in Filling.settings_of(kind):
			var takes_any: bool = property["type"] == TYPE_NIL and property["usage"] & PROPERTY_USAGE_NIL_IS_VARIANT
			var key := "%s:%s" % [kind, property["name"]]
			expect(takes_any == settled.has(key), "%s takes %s" % [key, "any type" if takes_any else "one type"])
			settled.erase(key)
	for key in settled:
		expect(key.get_slice(":", 0) not in Filling.kinds(), "%s is not there" % key)


func test_the_2d_defaults_are_the_settled_ones() -> void:
	var settled: Dictionary[String, Variant] = {}
	for entry in Tables.IN_2D:
		settled[Tables.key_of(entry)] = Tables.IN_2D[entry]
	for key in Tables.listed(Tables.AT_ZERO):
		settled[key] = Vector2.ZERO
	for key in Tables.listed(Tables.IN_PIXELS):
		settled[key] = "px"
	for key: String in settled.keys():
		if not Filling.kinds().has(StringName(key.get_slice(":", 0))):
			settled.erase(key)
	var told := SCMachineAction.starts_in_2d()
	for key: String in settled:
		expect(told.has(key) and typeof(told[key]) == typeof(settled[key]) and told[key] == settled[key], "%s starts in 2D as %s, settled is %s" % [key, told.get(key, "in 3D"), settled[key]])
	for key: String in told:
		expect(settled.has(key), "%s has a 2D default that is not settled" % key)
	for kind in Filling.kinds():
		for way: StringName in [&"suit_settings_2d", &"suit_2d"]:
			var suited := _bare(kind)
			if way == &"suit_settings_2d":
				SCMachineAction.suit_settings_2d(suited)
			elif suited is SCMachineAction:
				suited.call(way)
			else:
				continue
			_expect_suited(kind, way, suited, settled)


func test_settings_of_one_side_are_there() -> void:
	for entry in Tables.ON_ONE_SIDE:
		var key := Tables.key_of(entry)
		var parts := key.split(":")
		if not ClassDB.class_exists(parts[0]):
			continue
		for on_2d: bool in [false, true]:
			SCMachineAction.set_shown_on_2d(1 if on_2d else 0)
			var shown := false
			for property in _bare(parts[0]).get_property_list():
				if property["name"] == parts[1] and property["usage"] & PROPERTY_USAGE_EDITOR:
					shown = true
			expect(shown == (on_2d == Tables.ON_ONE_SIDE[entry]), "%s is %s in %s" % [key, "shown" if shown else "hidden", "2D" if on_2d else "3D"])
		SCMachineAction.set_shown_on_2d(-1)


func test_each_runs_with_nothing_filled_in() -> void:
	for kind in Filling.kinds():
		var said := await _run_everywhere(kind, func(_made: Resource) -> void: pass)
		var asks := SCMachineAction.not_picked() in (_bare(kind).call(&"shown_summary") as String)
		expect(said or not asks or kind in Filling.ENDS_THE_GAME, "%s shows that something is to be picked, and runs without a word" % kind)


func test_each_runs_reading_variables_that_nobody_has() -> void:
	for kind in Filling.kinds():
		await _run_everywhere(kind, _read_everything_from_variables)


## In machines on a node without a place, on a node_2d and on a node_3d, once and every frame; left, stopped, and freed
## while they run. Whether anything was said.
func _run_everywhere(kind: StringName, prepare: Callable) -> bool:
	if kind in Filling.ENDS_THE_GAME:
		return false
	var left := _put_to_work(kind, Node2D.new(), SCMachineAction.EVERY_FRAME, prepare)
	var stopped := _put_to_work(kind, Node.new(), SCMachineAction.ONCE, prepare)
	_put_to_work(kind, CharacterBody3D.new(), SCMachineAction.EVERY_FRAME, prepare)
	await frames(2)
	await physics_frames(1)
	for made: SCMachine in _made:
		expect(is_instance_valid(made) and made.is_running(), "%s stopped its machine" % kind)
	if is_instance_valid(left):
		left.go_to("Over")
	if is_instance_valid(stopped):
		stopped.stop()
	await frames(1)
	for host in stage.get_children():
		host.free()
	_made.clear()
	_put_the_game_back()
	await frames(1)
	# What it lacks it may tell the game maker, and must say of which machine.
	var lines := output.unclaimed()
	for line in lines:
		expect(line.begins_with("warning: ") and (MACHINE in line or NAMES_NO_MACHINE.any(line.contains)), "%s: %s" % [kind, line])
	output.forget()
	MakerWarnings._said.clear()
	return not lines.is_empty()


func _put_to_work(kind: StringName, host: Node, mode: int, prepare: Callable) -> SCMachine:
	add(host)
	var made := _bare(kind)
	prepare.call(made)
	var action := Filling.action_with(made)
	action.run_mode = mode
	return start(machine([state("Work", [action], {"FINISHED": "Over"}), state("Over")], {"name": MACHINE, "under": host}))


func _put_the_game_back() -> void:
	tree.paused = false
	Engine.time_scale = 1.0
	Input.mouse_mode = Input.MOUSE_MODE_VISIBLE


func _bare(kind: StringName) -> Resource:
	return ClassDB.instantiate(kind)


func _expect_words(whose: String, words: String) -> void:
	if words.is_empty():
		_fail("%s has no words" % whose)
		return
	expect(words.ends_with(".") or words.ends_with("?"), "%s does not end its sentence: \"%s\"" % [whose, words])
	expect(words == words.strip_edges() and not "  " in words, "%s has blanks to spare: \"%s\"" % [whose, words])


## Empty when the value is one that the inspector would let a game maker pick.
func _out_of_place(property: Dictionary, value: Variant) -> String:
	var options := (property["hint_string"] as String).split(",")
	match property["hint"] as PropertyHint:
		PROPERTY_HINT_RANGE:
			for part in _parts_of(value):
				if part < options[0].to_float() and not "or_less" in options or part > options[1].to_float() and not "or_greater" in options:
					return "%s, outside %s" % [value, property["hint_string"]]
		PROPERTY_HINT_ENUM:
			if property["type"] == TYPE_INT and not (value as int) in Filling.choices_of(options):
				return "%s, which is none of %s" % [value, property["hint_string"]]
			if property["type"] in [TYPE_STRING, TYPE_STRING_NAME] and not String(value).is_empty() and not String(value) in options:
				return "%s, which is none of %s" % [value, property["hint_string"]]
		PROPERTY_HINT_FLAGS:
			var bits := 0
			for i in options.size():
				bits |= options[i].get_slice(":", 1).to_int() if ":" in options[i] else 1 << i
			if (value as int) & ~bits:
				return "%s, which is not all of %s" % [value, property["hint_string"]]
	return ""


func _parts_of(value: Variant) -> PackedFloat64Array:
	match typeof(value):
		TYPE_INT, TYPE_FLOAT:
			return [value]
		TYPE_VECTOR2, TYPE_VECTOR2I:
			return [value.x, value.y]
		TYPE_VECTOR3, TYPE_VECTOR3I:
			return [value.x, value.y, value.z]
	return []


## Another value than it starts with for every setting that a file keeps.
func _fill_in(made: Resource) -> void:
	var dice := Dice.new()
	dice.seed = hash(made.get_class())
	var filling := Filling.new(dice, false)
	for property: Dictionary in Filling.stored_of(made.get_class()):
		var setting: String = property["name"]
		# Filled through the settings that can be read from a variable.
		if setting == "from_variables":
			continue
		var before: Variant = made.get(setting)
		var other: Variant = before
		for i in DRAWS:
			other = filling.within(property, before)
			if other != null and not _same(other, before):
				break
		made.set(setting, other)
		expect(not _same(made.get(setting), before), "%s.%s stays as it was when it is set to %s" % [made.get_class(), setting, other])


func _read_everything_from_variables(made: Resource) -> void:
	for setting in SCMachineAction.can_be_read_from_a_variable_of(made):
		made.set("%s_variable" % setting, "v_%s" % setting)


func _saved_and_loaded(made: Resource) -> Resource:
	expect_equal(ResourceSaver.save(made, FILE), OK)
	var loaded := ResourceLoader.load(FILE, "", ResourceLoader.CACHE_MODE_IGNORE)
	DirAccess.remove_absolute(FILE)
	return loaded


func _expect_same(made: Resource, loaded: Resource, whose: StringName) -> void:
	for property: Dictionary in Filling.stored_of(StringName(made.get_class())):
		var setting: String = property["name"]
		expect(_same(made.get(setting), loaded.get(setting)), "%s.%s was saved as %s and loaded as %s" % [whose, setting, made.get(setting), loaded.get(setting)])


## Two resources are the same when they are of one class and hold the same.
func _same(a: Variant, b: Variant) -> bool:
	if a is Resource and b is Resource:
		if a.get_class() != b.get_class():
			return false
		for property: Dictionary in a.get_property_list():
			var is_kept: bool = property["usage"] & PROPERTY_USAGE_STORAGE
			if is_kept and not (property["name"] as String).begins_with("resource_") and not _same(a.get(property["name"]), b.get(property["name"])):
				return false
		return true
	if typeof(a) != typeof(b):
		return false
	if a is Array:
		for i: int in a.size():
			if i >= b.size() or not _same(a[i], b[i]):
				return false
		return a.size() == b.size()
	return a == b


func _expect_suited(kind: StringName, way: StringName, suited: Resource, settled: Dictionary[String, Variant]) -> void:
	var bare := _bare(kind)
	for property: Dictionary in Filling.stored_of(kind):
		var setting: String = property["name"]
		var key := "%s:%s" % [kind, setting]
		if settled.has(key):
			var wanted: Variant = bare.get(setting) * SCMachineAction.pixels_per_metre() if settled[key] is String else settled[key]
			expect_equal(suited.get(setting), wanted, "%s after %s" % [key, way])
		elif way == &"suit_settings_2d":
			expect(_same(suited.get(setting), bare.get(setting)), "%s has another value in 2D, which is not settled" % key)
