extends Story
## What the editor's scripts know of designs and kinds, which takes no editor to find out.

const DesignNames := preload("res://addons/quillstead/editor/design_names.gd")
const KindCatalog := preload("res://addons/quillstead/editor/kind_catalog.gd")
const KindIcons := preload("res://addons/quillstead/editor/kind_icons.gd")
const ShownNames := preload("res://addons/quillstead/editor/shown_names.gd")
const FILE: String = "user://shown_names.tres"


class Horn:
	extends SCMachineAction

	@export var alarm_event: StringName
	@export var store_count_in: StringName
	@export var next_state: StringName
	@export var only_group: StringName
	@export var input_action: StringName
	@export var plain: StringName


func test_names_are_offered_where_they_belong() -> void:
	var horn := Horn.new()
	var way := transition(&"seen", &"Chase")
	var limited := variable(&"health", 10.0, {"never_above": "most"})
	var design := template(
		[
			state("Watch", [horn, send(&"alarm"), set_var(&"health", 1)], [way], {"sub_states": [state("Blink")]}),
			state("Chase", [], {"lost": "Watch"}, {"parallel": {"Legs": [state("Run, fast")]}}),
		],
		{"variables": [limited, variable(&"most", 20.0)], "events": [declared_event(&"dawn")]}
	)
	var states := ["Watch", "Blink", "Chase"]
	var variables := ["health", "most"]
	body("Crowd").add_to_group(&"guards")
	for made: Array in [[way, "to_state", states], [way, "store_data_in", variables], [limited, "never_above", variables], [limited, "name", []],
		[horn, "next_state", states], [horn, "store_count_in", variables], [horn, "plain", []], [design.states[0], "state_name", []],
		[wait(1.0), "seconds_variable", variables], [set_var(&"x", 1), "variable_name", variables], [horn, "only_group", ["guards"]],
	]:
		expect_equal(Array(DesignNames.offered(design, made[0], made[1], stage)), made[2], "%s of %s" % [made[1], made[0]])
	for made: Array in [[way, "event"], [horn, "alarm_event"], [send(&"x"), "event_name"]]:
		var offered := Array(DesignNames.offered(design, made[0], made[1]))
		offered.sort()
		expect_equal(offered, ["FINISHED", "alarm", "dawn", "lost", "seen"], made[1])
	expect(DesignNames.offered(design, horn, &"input_action").has("ui_accept"))
	expect(DesignNames.offered(null, way, &"to_state").is_empty())
	# A machine knows the names of the template that it runs.
	expect_equal(Array(DesignNames.states_of(running(design))), states)


func test_a_design_that_holds_itself_is_walked_once() -> void:
	var ring := state("Ring")
	ring.sub_states.append(ring)
	ring.actions.append(null)
	expect_equal(Array(DesignNames.states_of(template([ring]))), ["Ring"])
	ring.sub_states.clear()


func test_every_kind_is_offered_and_neither_base() -> void:
	for base: StringName in [&"SCMachineAction", &"SCMachineCondition"]:
		var titles := {}
		for kind in KindCatalog.of(base):
			titles["%s/%s" % [kind.category, kind.title]] = kind
			expect(kind.native_class != base or not kind.script_path.is_empty(), "%s is offered itself" % base)
			expect(not kind.about.is_empty() or kind.category == KindCatalog.OF_THE_GAME, kind.title)
		var of_the_library := SCMachineAction._core_kinds().filter(func(row: Dictionary) -> bool: return ClassDB.is_parent_class(row["class"], base))
		for row: Dictionary in of_the_library:
			expect(titles.has("%s/%s" % [row["category"], KindCatalog.title_of(row["class"])]), row["class"])
	var of_the_game := KindCatalog.of(&"SCMachineAction").filter(func(kind: KindCatalog.Kind) -> bool: return kind.title == "Slide")
	expect_equal(of_the_game.size(), 1)
	if not of_the_game.is_empty():
		var slide: KindCatalog.Kind = of_the_game[0]
		expect_equal(slide.category, KindCatalog.OF_THE_GAME)
		expect(not slide.about.is_empty() and not "##" in slide.about, slide.about)
		expect_equal((slide.make(false).get_script() as Script).resource_path, slide.script_path)


func test_what_is_added_is_suited_to_what_it_works_on() -> void:
	for kind in KindCatalog.of(&"SCMachineAction") + KindCatalog.of(&"SCMachineCondition"):
		if kind.native_class in [&"SCTranslateAction", &"SCDistanceCondition"]:
			var setting := "speed" if kind.native_class == &"SCTranslateAction" else "distance"
			expect_equal(kind.make(true).get(setting), kind.make(false).get(setting) * 32.0, kind.title)


func test_every_category_has_a_picture_and_what_has_none_a_letter() -> void:
	for category: String in [
		"ai", "animation", "audio", "camera", "color", "combat", "conditions", "data", "dialogue", "display", "files", "flow", "input", "items", "logic",
		"loop", "machine", "navmesh", "node", "physics", "quests", "scene", "tiles", "time", "transform", "ui", "state", "transition", "template",
		"variable", "event",
	]:
		expect(FileAccess.file_exists(KindIcons.FOLDER + category + ".svg"), category)
	var letters: Array[PackedByteArray] = []
	for letter: String in ["B", "O", "W", ""]:
		var image := KindIcons.letter_tile(letter).get_image()
		expect_equal(image.get_size(), Vector2i(16, 16), letter)
		expect(not image.get_data() in letters, "%s looks like another" % letter)
		letters.append(image.get_data())
	expect(KindIcons.of("no_such_category", "Boss") != null)


func test_names_are_shown_and_no_file_holds_them() -> void:
	var held := state("Watch", [wait(2.0), kind_with_a_name()], {"seen": "Chase"})
	held.resource_name = "My own"
	var design := template([held, state("Chase")], {"variables": {"level": 1}})
	var names := ShownNames.new()
	for object: Object in [design, held]:
		names.follow(object)
	expect_equal(held.resource_name, "My own", "somebody's own name")
	expect_equal(held.actions[0].resource_name, "Wait 2 s")
	expect_equal(held.actions[1].resource_name, "Take a rest")
	expect_equal(held.transitions[0].resource_name, "on seen to Chase")
	expect_equal(design.states[1].resource_name, "Chase")
	expect_equal(design.variables[0].resource_name, str(design.variables[0]))
	# In the editor every change tells of itself.
	held.actions[0].set(&"seconds", 3.0)
	held.actions[0].emit_changed()
	expect_equal(held.actions[0].resource_name, "Wait 3 s")
	expect_equal(ResourceSaver.save(design, FILE), OK)
	var text := FileAccess.get_file_as_string(FILE)
	expect_equal(text.count("resource_name"), 1, text)
	expect('resource_name = "My own"' in text, text)


func kind_with_a_name() -> SCMachineAction:
	return wait(1.0, {"display_name": "Take a rest"})


func test_the_help_tells_of_everything_that_is_there_and_of_nothing_else() -> void:
	for name in ClassDB.get_class_list():
		var is_internal := name.begins_with("SCDebugDrawings")
		if not name.begins_with("SC") or ClassDB.class_get_api_type(name) != ClassDB.APIType.API_EXTENSION or is_internal:
			continue
		var help := SCMachineAction._help_of(name)
		var told := {}
		var there := {}
		for found in RegEx.create_from_string('<(method|signal|constant|member) name="([^"]+)"').search_all(help):
			told["%s %s" % [found.get_string(1), found.get_string(2)]] = true
		for method in ClassDB.class_get_method_list(name, true):
			if not String(method["name"]).begins_with("_") or method["flags"] & METHOD_FLAG_VIRTUAL:
				there["method %s" % method["name"]] = true
		for property in ClassDB.class_get_property_list(name, true):
			there.erase("method %s" % ClassDB.class_get_property_setter(name, property["name"]))
			there.erase("method %s" % ClassDB.class_get_property_getter(name, property["name"]))
		for event in ClassDB.class_get_signal_list(name, true):
			there["signal %s" % event["name"]] = true
		for constant in ClassDB.class_get_integer_constant_list(name, true):
			there["constant %s" % constant] = true
		for what: String in there:
			expect(told.has(what), "%s: the help is silent on the %s" % [name, what])
		for what: String in told:
			var is_an_accessor := what.begins_with("method ") and ClassDB.class_has_method(name, what.trim_prefix("method "), true)
			expect(there.has(what) or is_an_accessor or what.begins_with("member "), "%s: the help tells of the %s, which is not there" % [name, what])
		expect_equal(XMLParser.new().open_buffer(help.to_utf8_buffer()), OK, name)
	var paths := SCMachineAction._help_of(&"SCMoveToAction")
	expect("The path is seen from the Machine." in paths, paths)
