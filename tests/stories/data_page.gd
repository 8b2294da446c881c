extends "res://tests/stories/files/page_story.gd"
## The page about data, done as it says: its tables make the records and the scene of the demo, and the slimes in it live and die.

const FOLDER := "res://demo/first_data/"
const HIT := &"ui_accept"

## That of the page, compiled once.
static var compiled: GDScript

## What the page makes besides its template, by the names of the files.
var files: Dictionary[String, Resource] = {}
var field: Node2D


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	page = FileAccess.get_file_as_string("res://docs/data.md")


func close() -> void:
	Input.action_release(HIT)
	files.clear()
	await super()


func test_the_tables_of_the_page_make_what_the_demo_has() -> void:
	make_all()
	for file in files:
		expect_equal(told(files[file]), told(load(FOLDER + file)), file)
		expect_equal(Array(files[file].call(&"findings")), [], file)
	expect_equal(told(made["slime.tres"]), told(load(FOLDER + "slime.tres")))
	expect_equal(SCMachineTemplate.findings_in(made["slime.tres"]), [])
	var saved: Node = (load(FOLDER + "first_data.tscn") as PackedScene).instantiate()
	expect_equal(told(field.get_node(^"Slime/Machine")), told(saved.get_node(^"Slime/Machine")))
	for path: String in ["Slime", "Words"]:
		expect_equal(field.get_node(path).get_class(), saved.get_node(path).get_class())
		expect_equal(field.get_node(path).get(&"position"), saved.get_node(path).get(&"position"))
	expect_equal(saved.get_node(^"Slime/Data").get(&"data").definition.names(), files["slime_fields.tres"].call(&"names"))
	saved.free()
	field.free()


func test_a_slime_appears_is_hit_and_the_next_one_comes() -> void:
	make_all()
	var slimes: SCDataTable = files["slimes.tres"]
	add(field)
	var slime: Sprite2D = field.get_node(^"Slime")
	var words: Label = field.get_node(^"Words")
	var machine_on_it: SCMachine = slime.get_node(^"Machine")
	var seen := {}
	for times in 6:
		await frames(2)
		var row: SCData = machine_on_it.get_value("row")
		seen[row.record_name] = true
		expect_equal(slime.self_modulate, row.get_field("Color"))
		for left in range(row.get_field("Health"), 0, -1):
			expect_state(machine_on_it, "Alive")
			expect_equal(words.text, "%s: %d" % [row.record_name, left])
			Input.action_press(HIT)
			await frames(2)
			Input.action_release(HIT)
			await frames(2)
		expect_state(machine_on_it, "Gone")
		expect(not slime.visible)
		await advance(1.0)
		expect(slime.visible)
	expect(seen.size() > 1)
	expect_equal(slimes.rows.map(func(one: SCData) -> int: return one.get_field("Health")), [3, 5, 8])


func test_the_spreadsheet_of_the_page_is_that_table() -> void:
	make_all()
	field.free()
	var text: String = all_of(r"```csv\n([\s\S]+?)```")[0]
	var slimes: SCDataTable = files["slimes.tres"]
	expect_equal(slimes.export_csv(), text)
	var other := SCDataTable.new()
	other.definition = files["slime_fields.tres"]
	expect(other.import_csv(text))
	expect_equal(told(other.rows), told(slimes.rows))


func test_what_the_script_of_the_page_does() -> void:
	make_all()
	field.free()
	if compiled == null:
		compiled = GDScript.new()
		compiled.source_code = all_of(r"```gdscript\n([\s\S]+?)```")[0]
		expect_equal(compiled.reload(), OK)
	var shop: Node = add(compiled.new() as Node)
	shop.set(&"slimes", files["slimes.tres"])
	expect_equal(shop.call(&"strongest"), "Gold")
	expect_equal(shop.call(&"price_of", (files["slimes.tres"] as SCDataTable).row("Gold")), 80)
	var node := SCDataNode.new()
	node.data = (files["slimes.tres"] as SCDataTable).row("Red")
	shop.call(&"hurt", add(node))
	expect_equal(node.get_field("Health"), 4)
	for method: String in all_of(r"`([a-z_]+)`[,. ]").filter(func(name: String) -> bool: return name not in ["health", "row_name", "max_health", "field_changed"]):
		expect(["slimes.tres"].any(func(file: String) -> bool: return files[file].has_method(method)) or node.has_method(method), method)


func test_which_row_is_named_as_the_inspector_does() -> void:
	var labels: String = property_of(SCFindRowAction.new(), "how")["hint_string"]
	for row: Array in tables("5. Which row")[0].slice(1):
		for name: String in row[0].split(", "):
			expect(name + ":" in labels, name)
	for name: String in all_of(r"- \*\*([A-Z][A-Za-z ]+)\*\* (?:is|holds)"):
		expect(name + ":" in (property_of(SCGetDataAction.new(), "from")["hint_string"] as String), name)


func make_all() -> void:
	var definition := SCDataDefinition.new()
	var last: SCDataField
	var fields: Array[SCDataField] = []
	for row: Array in tables("1. The fields")[0].slice(1):
		if row[0] == "SCDataField":
			last = SCDataField.new()
			fields.append(last)
		set_as_typed(last, row[1], row[2])
	definition.fields = fields
	files["slime_fields.tres"] = definition
	var slimes := SCDataTable.new()
	slimes.definition = definition
	var rows: Array = tables("2. The table")[0]
	for row: Array in rows.slice(1):
		var added := slimes.add_row()
		for i in row.size():
			set_as_typed(added, rows[0][i], row[i])
	files["slimes.tres"] = slimes
	field = Node2D.new()
	field.name = "Field"
	var from := tables("3. A slime")
	build(field, from[0])
	var design := SCMachineTemplate.new()
	put_in(design, from[1])
	for variable in design.variables:
		variable.default_value = null
	design.initial_state = design.states[0]
	made["slime.tres"] = design
	(field.get_node(^"Slime/Machine") as SCMachine).template = design


func _instantiated(of: String) -> Object:
	for global in ProjectSettings.get_global_class_list():
		if global["class"] == of:
			return (load(global["path"]) as GDScript).new()
	return super(of)


func _meant(on: Object, shown: Dictionary, typed: String) -> Variant:
	if files.has(typed):
		return files[typed]
	if shown["type"] == TYPE_PACKED_STRING_ARRAY:
		return PackedStringArray(str_to_var(typed) as Array)
	if shown["type"] == TYPE_STRING and shown["hint"] == PROPERTY_HINT_ENUM:
		return typed
	if shown["type"] == TYPE_NIL and on.get(shown["name"]) == null:
		return str_to_var(typed)
	return super(on, shown, typed)
