extends Story
## Records, their definitions and tables of them, as scripts and the inspector use them: what a field takes, how rows are found, and the way
## of a table into a spreadsheet and back.

const T := SCDataField.Type
const CHANGED := &"quillstead_changed_data"


func close() -> void:
	if tree.root.has_meta(CHANGED):
		tree.root.remove_meta(CHANGED)
	await super()


## Fields by name: what each starts with, from which its type follows, or a list of choices.
static func defined(fields: Dictionary) -> SCDataDefinition:
	var made := SCDataDefinition.new()
	for name: StringName in fields:
		var default: Variant = fields[name]
		var types := {TYPE_FLOAT: T.FLOAT, TYPE_INT: T.INT, TYPE_BOOL: T.BOOL, TYPE_STRING: T.STRING, TYPE_VECTOR2: T.VECTOR2, TYPE_VECTOR3: T.VECTOR3,
			TYPE_COLOR: T.COLOR, TYPE_ARRAY: T.ARRAY, TYPE_DICTIONARY: T.DICTIONARY, TYPE_NIL: T.RESOURCE, TYPE_PACKED_STRING_ARRAY: T.STRING}
		var field := made.add_field(name, types[typeof(default)], null if default is PackedStringArray else default)
		if default is PackedStringArray:
			field.choices = default
	return made


static func record(fields: Dictionary, holding: Dictionary = {}) -> SCData:
	var made := SCData.new()
	made.definition = defined(fields)
	for field: StringName in holding:
		made.set_field(field, holding[field])
	return made


## The names of the rows with what they hold.
static func table(fields: Dictionary, rows: Dictionary) -> SCDataTable:
	var made := SCDataTable.new()
	made.definition = defined(fields)
	for name: String in rows:
		made.add_row(name, rows[name])
	return made


static func weapons() -> SCDataTable:
	return table({"Damage": 5, "Speed": 1.0, "Rarity": PackedStringArray(["Common", "Rare", "Legendary"]), "Owned": false, "Kind": ""}, {
		"Club": {"Kind": "blunt"},
		"Sword": {"Damage": 12, "Rarity": "Rare", "Owned": true, "Kind": "blade"},
		"Axe": {"Damage": 12, "Speed": 0.5, "Rarity": "Legendary", "Kind": "blade"},
	})


func test_what_goes_into_a_field_of_each_type() -> void:
	var of := record({"f": 1.5, "i": 2, "b": true, "s": "x", "v2": Vector2.ONE, "v3": Vector3.ONE, "c": Color.RED, "l": [1], "t": {"a": 1}, "r": null,
		"rarity": PackedStringArray(["Common", "Rare"])})
	var picture := PlaceholderTexture2D.new()
	for row: Array in [
		# the field, what is put in, what it holds then
		["f", 3, 3.0], ["f", true, 1.0], ["i", 2.6, 3], ["i", -2.6, -3], ["i", INF, 9223372036854775807], ["i", 9007199254740993, 9007199254740993],
		["b", 0, false], ["b", 2.5, true], ["s", 2.0, "2"], ["s", &"name", "name"], ["v2", Vector3(1, 2, 3), Vector2(1, 2)],
		["v3", Vector2i(4, 5), Vector3(4, 5, 0)], ["c", Color.BLUE, Color.BLUE], ["l", PackedInt32Array([4]), [4]], ["t", {2: 3}, {2: 3}],
		["r", picture, picture], ["r", null, null], ["rarity", "rare", "Rare"], ["rarity", &"Common", "Common"],
	]:
		expect_equal(of.try_set_field(row[0], row[1]), "", str(row))
		expect_equal(of.get_field(row[0]), row[2], str(row))
		expect_equal(of.get(row[0]), row[2], str(row))
	var freed := body()
	freed.free()
	for row: Array in [
		# the field, what does not go in, why
		["f", "3", "it takes a number, not a String"], ["f", NAN, "not a number"], ["f", null, "not nothing"], ["i", NAN, "not a number"],
		["b", "yes", "it takes true or false"], ["s", null, "it takes a text"], ["v2", 4, "a Vector2"], ["c", "blue", "a Color"], ["l", {}, "an Array"],
		["t", [], "a Dictionary"], ["r", 3, "it takes a resource, not an int"], ["r", stage, "not a Node"], ["v2", freed, "a Vector2"],
		["rarity", "Legendary", "Legendary is none of its choices, which are Common and Rare"],
		["nothing", 1, "a record has no field called nothing. It has f, i, b"],
	]:
		var before: Variant = of.get_field(row[0])
		expect(row[2] in of.try_set_field(row[0], row[1]), "%s: %s" % [row, of.try_set_field(row[0], row[1])])
		expect_equal(of.get_field(row[0]), before, str(row))


func test_limits_and_classes() -> void:
	var of := record({"hp": 5.0, "count": 5, "art": null})
	for name: StringName in ["hp", "count"]:
		var field := of.definition.field(name)
		field.has_limits = true
		field.min_value = -1.5
		field.max_value = 9.5
	of.definition.field("art").of_class = "Texture2D"
	for row: Array in [["hp", 99, 9.5], ["hp", -INF, -1.5], ["hp", 3, 3.0], ["count", 99, 9], ["count", -99, -1], ["count", 4, 4]]:
		expect(of.set_field(row[0], row[1]))
		expect_equal(of.get_field(row[0]), row[2], str(row))
	expect("it takes only Texture2D" in of.try_set_field("art", Curve.new()))
	expect_equal(of.try_set_field("art", PlaceholderTexture2D.new()), "")
	# Limits that came later hold for what is there already.
	of.definition.field("hp").max_value = 2.0
	expect_equal(of.get_field("hp"), 2.0)
	of.definition.field("hp").type = T.STRING
	expect_equal(of.get_field("hp"), "3")
	of.definition.field("art").of_class = "SCData"
	expect_equal(of.try_set_field("art", SCData.new()), "")


func test_a_refused_value_is_told_of_and_a_change_is_heard_once() -> void:
	var sword := record({"Damage": 5})
	sword.record_name = "Sword"
	var heard := []
	sword.field_changed.connect(func(field: StringName, value: Variant) -> void: heard.append([field, value]))
	expect(sword.set_field("Damage", 6) and sword.set_field("Damage", 6.0))
	sword.set("Damage", 7)
	expect_equal(heard, [[&"Damage", 6], [&"Damage", 7]])
	for times in 2:
		expect(not sword.set_field("Damage", "much"))
	expect_warning("Damage of Sword was not changed: it takes a whole number, not a String.")
	sword.reset()
	expect_equal(sword.get_field("Damage"), 5)
	expect_equal(heard.size(), 3)
	# Who listens may change it again.
	var raise := func(_field: StringName, value: Variant) -> void: sword.set_field("Damage", mini(value + 1, 20))
	sword.field_changed.connect(raise)
	sword.set_field("Damage", 10)
	expect_equal(sword.get_field("Damage"), 20)
	sword.field_changed.disconnect(raise)


func test_the_inspector_shows_each_field_as_a_property() -> void:
	var sword := record({"Damage": 5, "Rarity": PackedStringArray(["Common", "Rare"]), "Art": null})
	sword.definition.field("Art").of_class = "Texture2D"
	sword.definition.field("Damage").has_limits = true
	expect_shown(sword, ["record_name", "definition", "Damage", "Rarity", "Art"])
	expect_hidden(sword, ["values"])
	expect_equal(property_of(sword, "Damage")["hint_string"], "0.0,100.0,1")
	expect_equal(property_of(sword, "Rarity")["hint_string"], "Common,Rare")
	expect_equal(property_of(sword, "Art")["hint_string"], "Texture2D")
	expect_equal(property_of(sword, "Damage")["usage"] & PROPERTY_USAGE_STORAGE, 0)
	expect_equal(sword.property_get_revert("Damage"), 5)
	var field := sword.definition.field("Damage")
	expect_shown(field, ["min_value", "max_value"])
	expect_hidden(field, ["choices", "of_class"])
	expect_equal(property_of(field, "default_value")["type"], TYPE_INT)


func test_a_record_comes_back_from_its_file_and_its_changes_stay_until_the_game_stops() -> void:
	var path := "user://sword.tres"
	var made := record({"Damage": 5, "Tags": []}, {"Damage": 9, "Tags": ["a"]})
	expect_equal(ResourceSaver.save(made, path), OK)
	var first: SCData = load(path)
	expect_equal([first.get_field("Damage"), first.get_field("Tags"), first.shown_name()], [9, ["a"], "Sword"])
	(first.get_field("Tags") as Array).append("b")
	expect_equal(first.get_field("Tags"), ["a"], "what is read is a copy")
	first.set_field("Damage", 10)
	first = null
	first = load(path)
	expect_equal(first.get_field("Damage"), 10)
	expect("9" in FileAccess.get_file_as_string(path) and "10" not in FileAccess.get_file_as_string(path).get_slice("values", 1))
	DirAccess.remove_absolute(path)


func test_a_copy_is_nobody_elses_but_shares_its_definition() -> void:
	var inner := record({"hp": 1})
	var of := record({"l": [], "in": null}, {"l": [[1]], "in": inner})
	of.set_field("in", inner)
	inner.definition = defined({"back": null})
	inner.set_field("back", of)
	var copy := of.own_copy()
	expect(copy.definition == of.definition and copy.get_field("in") != inner and copy.get_field("in").get_field("back") == copy)
	copy.set_field("l", [2])
	expect_equal(of.get_field("l"), [[1]])
	# A ring of resources would never be freed.
	inner.set_field("back", null)
	(copy.get_field("in") as SCData).set_field("back", null)


func test_what_a_record_holds_can_be_saved() -> void:
	var of := record({"hp": 3, "tags": [], "art": null, "own": null, "gold": 5}, {"hp": 1, "tags": ["a"], "own": Curve.new()})
	of.set_field("art", load("res://addons/quillstead/icons/data.svg"))
	var saved := of.to_save()
	expect_equal(saved, {"hp": 1, "tags": ["a"], "art": "res://addons/quillstead/icons/data.svg"})
	var other := of.own_copy()
	other.set_field("gold", 99)
	other.set_field("hp", 2)
	other.from_save(str_to_var(var_to_str(saved)))
	expect_equal(["hp", "tags", "art", "own", "gold"].map(other.get_field), [1, ["a"], of.get_field("art"), null, 5])


func test_a_definition_tells_what_is_wrong_with_it() -> void:
	var made := defined({"hp": 1, "HP": 2, "script": 3})
	made.fields = made.fields + ([null, SCDataField.new(), made.fields[0].duplicate()] as Array[SCDataField])
	made.field("HP").has_limits = true
	made.field("HP").min_value = 200.0
	var found := "\n".join(made.findings())
	for words: String in ["nothing in place 4", "without a name in place 5", "two fields called hp", "called script", "HP of The Data Definition has a least"]:
		expect(words in found, words)
	expect_equal(made.findings().size(), 5)
	expect_equal(made.names(), PackedStringArray(["hp", "HP", "script"]))
	expect(made.field("") == null and made.field("hp").default_value == 1)
	# Fields may be moved about behind its back.
	made.fields.reverse()
	expect_equal(made.field("HP").default_value, 2)
	var without := SCData.new()
	without.values = {"old": [3]}
	expect(without.has_field("old") and without.set_field("old", 4) and without.get_field("old") == 4)
	expect(not without.set_field("fresh", 1))
	expect_warning("a record has no Data Definition, so there is no field called fresh. Pick one under Definition.")


func test_rows_are_found() -> void:
	var of := weapons()
	for row: Array in [
		[of.row("Sword"), "Sword"], [of.row("sword"), ""], [of.row(""), ""], [of.row_at(1), "Club"], [of.row_at(3), "Axe"], [of.row_at(0), ""],
		[of.row_at(4), ""], [of.row_at(-1), ""], [of.find("Damage", 12), "Sword"], [of.find("Damage", 12.0), "Sword"], [of.find("Damage", "12"), ""],
		[of.find("Damage", NAN), ""], [of.find("Speed", 1), "Club"], [of.find("Owned", true), "Sword"], [of.find("Owned", 1), "Sword"],
		[of.find("Kind", &"blade"), "Sword"], [of.find("Rarity", "Legendary"), "Axe"], [of.find("None", 1), ""], [of.find("Kind", null), ""],
		[of.highest("Damage"), "Sword"], [of.lowest("Damage"), "Club"], [of.highest("Rarity"), "Axe"], [of.lowest("Rarity"), "Club"],
		[of.highest("Kind"), "Club"], [of.lowest("Kind"), "Sword"], [of.lowest("Speed"), "Axe"], [of.highest("Owned"), "Sword"], [of.highest("None"), ""],
	]:
		expect_equal((row[0] as SCData).record_name if row[0] != null else "", row[1], str(row))
	expect_equal(of.find_all("Damage", 12).map(str), ["Sword", "Axe"])
	expect_equal([of.count(), of.row_names()], [3, PackedStringArray(["Club", "Sword", "Axe"])])
	var seen := {}
	for times in 100:
		seen[of.random_row().record_name] = true
	expect_equal(seen.size(), 3)
	var empty := SCDataTable.new()
	expect(empty.random_row() == null and empty.row_at(1) == null and empty.find("a", 1) == null and empty.highest("a") == null)


func test_what_is_found_follows_every_change() -> void:
	var of := weapons()
	expect_equal([str(of.find("Damage", 12)), str(of.highest("Damage")), str(of.row("Club"))], ["Sword", "Sword", "Club"])
	of.row("Sword").set_field("Damage", 1)
	expect_equal([str(of.find("Damage", 12)), str(of.highest("Damage")), str(of.lowest("Damage"))], ["Axe", "Axe", "Sword"])
	of.row("Axe").values = {}
	expect(of.find("Damage", 12) == null)
	var spear := of.add_row("Spear", {"Damage": 12})
	expect(of.find("Damage", 12) == spear and of.highest("Damage") == spear)
	# Behind its back.
	of.rows.erase(spear)
	expect(of.find("Damage", 12) == null and of.row("Spear") == null)
	of.rows.append(spear)
	expect(of.find("Damage", 12) == spear and of.row("Spear") == spear)
	spear.resource_name = "Lance"
	expect(of.row("Spear") == null and of.row("Lance") == spear)
	of.rows[0] = spear
	expect(of.row("Club") == null and of.row_at(1) == spear)
	expect_warning("calls both row 1 and row 4 Lance")
	of.rows.resize(3)
	expect(of.remove_row(of.row("Sword")) and not of.has_row("Sword") and not of.remove_row(null))


func test_gaps_and_names_given_twice_are_told_of() -> void:
	var of := weapons()
	of.rows = of.rows + ([null, of.row("Club").own_copy()] as Array[SCData])
	expect_equal(of.find_all("Kind", "blunt").size(), 2)
	expect_warning("has nothing in row 4, so that row is passed over")
	expect_warning("calls both row 1 and row 5 Club, so only the first is found")
	expect(of.row_at(4) == null and of.count() == 4 and of.row("Club") == of.rows[0])
	for times in 30:
		expect(of.random_row() != null)
	var bare := SCDataTable.new()
	bare.rows = [SCData.new()] as Array[SCData]
	expect(bare.find("hp", 1) == null)
	expect_warning("has no Data Definition, so its rows have no fields")
	bare.definition = defined({"hp": 1})
	expect_equal(bare.find("hp", 1), bare.rows[0], "a row without a definition has that of the table")


func test_an_index_finds_what_a_look_through_all_rows_finds() -> void:
	seed(9)
	var of := table({"n": 0.0, "s": "", "v": Vector2.ZERO}, {})
	var all: Array[SCData] = []
	for i in 400:
		var one := SCData.new()
		one.definition = of.definition
		one.set_field("n", randi_range(-5, 5) / [1.0, 10.0][randi() % 2])
		one.set_field("s", "abc"[randi() % 3])
		one.set_field("v", Vector2(randi() % 3, randi() % 3) / 10.0)
		all.append(one)
	of.rows = all
	for times in 200:
		var at := all[randi() % 400]
		var field: StringName = ["n", "s", "v"][randi() % 3]
		var value: Variant = at.get_field(field)
		if randf() < 0.2:
			at.set_field(field, all[randi() % 400].get_field(field))
		var first: SCData = null
		for one in all:
			if first == null and SCMachineAction.same_value(one.get_field(field), value):
				first = one
		expect(of.find(field, value) == first, "%s %s" % [field, value])


## Whatever is written into the rows meanwhile, what is found is what looking through them all would find.
func test_what_is_found_follows_what_is_written() -> void:
	var dice := RandomNumberGenerator.new()
	dice.seed = 12
	var of := table({"id": 0, "name": ""}, {})
	for i in 60:
		of.add_row("", {"id": i % 7, "name": "abc"[i % 3]})
	for i in 400:
		var one := of.row_at(dice.randi_range(1, of.count()))
		match dice.randi() % 8:
			0:
				one.set_field("name", "abcd"[dice.randi() % 4])
			1:
				of.remove_row(one)
			2:
				of.add_row("", {"id": dice.randi() % 9})
			3 when dice.randi() % 8 == 0:
				var twice := of.rows.duplicate()
				twice.append(one)
				of.rows = twice
			_:
				one.set_field("id", dice.randi() % 9)
		var value := dice.randi() % 9
		var by_hand := of.rows.filter(func(row: SCData) -> bool: return row.get_field("id") == value)
		expect_equal(of.find_all("id", value), by_hand, "after %d changes" % i)
		expect(of.find("id", value) == (by_hand[0] if not by_hand.is_empty() else null))


func test_a_table_goes_into_a_spreadsheet_and_back() -> void:
	var of := table({"n": 0.0, "i": 0, "b": false, "s": "", "v": Vector2.ZERO, "w": Vector3.ZERO, "c": Color.WHITE, "l": [], "t": {}, "r": null,
			"q": PackedStringArray(["a", "b"])}, {
		"plain": {"n": 0.1 + 0.2, "i": -9007199254740993, "b": true, "s": "two words", "v": Vector2(0.1, -2), "w": Vector3(1, 2, 3), "c": Color("#11223344")},
		"odd, \"very\"": {"s": "a,b\n\"c\"; d\t", "l": [1, "x", 2.5, [true]], "t": {"k": 3}, "q": "b", "r": load("res://addons/quillstead/runtime/data.gd")},
		"": {"s": " spaced ", "n": -12345678.125, "l": ["a"]},
	})
	var text := of.export_csv()
	expect_equal(text.get_slice("\n", 0), "Row Name,n,i,b,s,v,w,c,l,t,r,q")
	for way: String in ["as it is", "by a path", "from Windows"]:
		var other := SCDataTable.new()
		other.definition = of.definition
		if way == "by a path":
			of.export_csv("user://table.csv")
			expect(other.import_csv("user://table.csv"))
			DirAccess.remove_absolute("user://table.csv")
		else:
			expect(other.import_csv("\uFEFF" + text.replace("\n", "\r\n") if way == "from Windows" else text))
		expect_equal(other.rows.map(str), of.rows.map(str), way)
		for i in of.count():
			for field in of.field_names():
				expect_equal(var_to_str(other.rows[i].get_field(field)), var_to_str(of.rows[i].get_field(field)), "%s: %s of %d" % [way, field, i])


func test_what_cells_become() -> void:
	for row: Array in [
		# the field starts with, the cell, what it holds
		[0.0, "1.5", 1.5], [0.0, " 2 ", 2.0], [7.0, "", 7.0], [0, "3.6", 4], [0, "12", 12], [false, "Yes", true], [true, "off", false], [false, "x", true],
		["d", "", ""], ["", " a ", " a "], [Vector2.ZERO, "(1, 2)", Vector2(1, 2)], [Vector3.ZERO, "1 2 -3.5", Vector3(1, 2, -3.5)],
		[Color.WHITE, "red", Color.RED], [Color.WHITE, "#00f", Color.BLUE], [[], "[1, 2.5, \"a\"]", [1, 2.5, "a"]], [[], "fire, ice", ["fire", "ice"]],
		[{}, "{\"a\": 10}", {"a": 10}], [null, "res://addons/quillstead/icons/data.svg", load("res://addons/quillstead/icons/data.svg")],
		[PackedStringArray(["Common", "Rare"]), "rare", "Rare"], [PackedStringArray(["Common", "Rare"]), "", "Common"],
	]:
		var of := table({"field": row[0]}, {})
		var cell: String = (row[1] as String).replace("\"", "\"\"")
		expect(of.import_csv("Row Name,FIELD\none,\"%s\"\n" % cell), str(row))
		expect_equal(of.row("one").get_field("field"), row[2], str(row))
	# As spreadsheets write it where the comma is the point.
	var german := table({"Max Health": 0.0, "Name": ""}, {})
	expect(german.import_csv("Row Name;max_health;Name\nA;1,5;\"x;y\"\n\n;;\nB;2\n"))
	expect_equal(german.rows.map(func(one: SCData) -> Variant: return [one.record_name, one.get_field("Max Health"), one.get_field("Name")]),
			[["A", 1.5, "x;y"], ["", 0.0, ""], ["B", 2.0, ""]])


func test_a_table_without_a_definition_gets_one_from_the_first_line() -> void:
	var of := SCDataTable.new()
	expect(of.import_csv("Weapon\tDamage\tSpeed\tOwned\tNote\nSword\t5\t1.5\tyes\t\nAxe\t7\t2\tno\tbig\n"))
	expect_equal(of.definition.names(), PackedStringArray(["Damage", "Speed", "Owned", "Note"]))
	expect_equal(of.definition.fields.map(func(field: SCDataField) -> int: return field.type), [T.INT, T.FLOAT, T.BOOL, T.STRING])
	expect_equal([of.row("Axe").get_field("Damage"), of.row("Axe").get_field("Owned"), of.row("Sword").get_field("Speed")], [7, false, 1.5])


func test_reading_again_changes_the_rows_that_are_there() -> void:
	var of := weapons()
	var sword := of.row("Sword")
	expect(of.import_csv("Row Name,Damage\nPike,3\nSword,40\n"))
	expect(of.row("Sword") == sword and sword.get_field("Damage") == 40 and sword.get_field("Kind") == "blade")
	expect_equal(of.row_names(), PackedStringArray(["Pike", "Sword"]))
	expect_equal(of.highest("Damage"), sword)


func test_what_a_spreadsheet_has_wrong_is_told_of() -> void:
	var of := weapons()
	expect(of.import_csv("Row Name,Damage,Weight,Rarity,Damage\nA,many,3,Epic,4\nB,4,,\"Rare,9,9\nC,1"))
	for part: String in ["Damage of line 2 holds \"many\", which was left out: it takes a whole number", "column Weight, which no field is called",
			"Rarity of line 2 holds \"Epic\", which was left out: Epic is none of its choices", "two columns for Damage", "quote in line 3 is never closed"]:
		expect_warning(part)
	expect_warning("1 more cells")
	expect_equal(of.row("A").get_field("Damage"), 5)
	for row: Array in [["res://no.csv", "no file at res://no.csv. An exported game"], ["no.csv", "no file at no.csv."], ["", "neither a file nor text"],
			["Row Name,Damage\n", "needs a line with the names"]]:
		expect(not of.import_csv(row[0]))
		expect_warning(row[1])
	expect_equal(of.count(), 2)
