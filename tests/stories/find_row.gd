extends Story
## Find Row: a row of a table by its name, its place, by chance or by what a field holds, and who is told when there is none.

const Tables := preload("res://tests/stories/data_table.gd")


func find(settings: Dictionary, of: SCDataTable = null) -> SCFindRowAction:
	return kind(SCFindRowAction, {"table": of, "not_found_event": &"none"}.merged(settings, true))


func test_the_row_that_is_found() -> void:
	var f := SCFindRowAction
	var of := Tables.weapons()
	for row: Array in [
		# the settings, the name of the row that is found
		[{"row_name": &"Sword"}, "Sword"], [{"row_name": &"sword"}, ""], [{}, ""], [{"row_name": &"Club", "row_name_variable": &"named"}, "Axe"],
		[{"how": f.AT_PLACE}, "Club"], [{"how": f.AT_PLACE, "place": 3}, "Axe"], [{"how": f.AT_PLACE, "place": 0}, ""], [{"how": f.AT_PLACE, "place": 4}, ""],
		[{"how": f.AT_PLACE, "place": 9, "place_variable": &"level"}, "Sword"], [{"how": f.WHERE_FIELD_IS, "field": &"Damage", "equals": 12}, "Sword"],
		[{"how": f.WHERE_FIELD_IS, "field": &"Damage", "equals": 12.0}, "Sword"], [{"how": f.WHERE_FIELD_IS, "field": &"Damage", "equals": 13}, ""],
		[{"how": f.WHERE_FIELD_IS, "field": &"Kind", "equals_variable": &"kind"}, "Sword"], [{"how": f.WHERE_FIELD_IS, "field": &"Owned", "equals": true}, "Sword"],
		[{"how": f.HIGHEST, "field": &"Damage"}, "Sword"], [{"how": f.LOWEST, "field": &"Damage"}, "Club"], [{"how": f.HIGHEST, "field": &"Rarity"}, "Axe"],
		[{"how": f.LOWEST, "field": &"Speed"}, "Axe"], [{"how": 99, "row_name": &"Club"}, "Club"],
	]:
		var variables := {"row": of.rows[0], "named": "Axe", "level": 2, "kind": &"blade"}
		var made := play(find(row[0], of), {"FINISHED": "Done", "none": "None"}, {"variables": variables})
		expect_state(made, "None" if row[1] == "" else "Done")
		expect_equal(str(made.get_value("row")) if made.get_value("row") != null else "", row[1], str(row))
		made.free()
	var seen := {}
	for times in 60:
		seen[str(results_of(find({"how": f.RANDOM}, of), {"row": null})[&"row"])] = true
	expect_equal(seen.size(), 3)


func test_the_event_carries_the_row() -> void:
	var of := Tables.weapons()
	var made := start(machine([
		state("Work", [find({"row_name": &"Axe", "found_event": &"found", "store_in": &""}, of)], [transition(&"found", &"Found", &"got")]),
		state("Found"),
	], {"variables": {"got": null}}))
	expect_state(made, "Found")
	expect_values(made, {"got": of.row("Axe")})


func test_a_row_goes_on_to_get_data_and_set_data() -> void:
	var of := Tables.weapons()
	var row := {"from": SCDataReach.From.A_VARIABLE, "data_variable": &"row"}
	var made := play([
		find({"how": SCFindRowAction.HIGHEST, "field": &"Rarity"}, of),
		kind(SCSetDataAction, row.merged({"field": &"Damage", "operation": SCSetDataAction.ADD, "value": 3})),
		kind(SCGetDataAction, row.merged({"field": &"Damage", "store_in": &"damage"})),
	], {"FINISHED": "Done"}, {"variables": {"row": null, "damage": 0}})
	expect_values(made, {"damage": 15})
	expect_equal(of.row("Axe").get_field("Damage"), 15)


func test_what_cannot_be_looked_in_is_told_of() -> void:
	var f := SCFindRowAction
	var empty := Tables.table({"hp": 1}, {})
	empty.resource_name = "Enemies"
	var bare := SCDataTable.new()
	bare.resource_name = "Bare"
	bare.rows = [SCData.new()] as Array[SCData]
	var of := Tables.weapons()
	of.resource_name = "Weapons"
	for row: Array in [
		[{"table": null}, "Find Row on Machine has no table picked. Pick a Data Table beside Table, or make one with Create New > QuillStead Data Table."],
		[{"table": Curve.new()}, "Find Row on Machine has no table picked."],
		[{"table": empty}, "Find Row on Machine: Enemies has no rows yet, so there is nothing to find. Open it and press Add Row."],
		[{"table": bare, "how": f.HIGHEST}, "Find Row on Machine: pick the field it looks at beside Field. The table has no Data Definition picked yet."],
		[{"table": of, "how": f.WHERE_FIELD_IS}, "Find Row on Machine: pick the field it looks at beside Field. The table has Damage, Speed, Rarity, Owned, Kind."],
		[{"table": of, "how": f.LOWEST, "field": &"Weight"},
			"nothing was found, because Weapons has no field called Weight. It has Damage, Speed, Rarity, Owned and Kind."],
	]:
		var made := play(find(row[0]), {"FINISHED": "Done", "none": "None"}, {"variables": {"row": of}})
		expect_warning(row[1])
		expect_state(made, "None")
		expect_values(made, {"row": null})
		made.free()
	for row: Array in [[{"row_name": &"Spear"}, "there is no row called Spear in Weapons, so nothing came of it"], [{}, "there is no row without a name in Weapons"],
			[{"how": f.AT_PLACE, "place": 7}, "there is no row 7 in Weapons"], [{"how": f.WHERE_FIELD_IS, "field": &"Damage", "equals": 7}, "no row whose Damage is 7"]]:
		expect_warns(find({"not_found_event": &""}.merged(row[0]), of), row[1], {"variables": {"row": null}})
	expect_warns(find({"row_name": &"Axe", "store_in": &""}, of), "there is nowhere to put the row, so it was lost. Pick a variable under Store In.")


func test_lines_and_settings() -> void:
	var f := SCFindRowAction
	var of := Tables.weapons()
	of.resource_name = "Weapons"
	expect_lines(f, {
		"Find the row Axe of Weapons into row": {"table": of, "row_name": &"Axe"},
		"Find the row [named] of Weapons into row": {"table": of, "row_name_variable": &"named"},
		"Find row 2 of Weapons into row": {"table": of, "how": f.AT_PLACE, "place": 2},
		"Find row [level] of Weapons into row": {"table": of, "how": f.AT_PLACE, "place_variable": &"level"},
		"Find a random row of Weapons into row": {"table": of, "how": f.RANDOM},
		"Find the row of Weapons where Kind is blade into row": {"table": of, "how": f.WHERE_FIELD_IS, "field": &"Kind", "equals": "blade"},
		"Find the row of Weapons with the highest Damage into row": {"table": of, "how": f.HIGHEST, "field": &"Damage"},
		"Find the row (pick one) of (pick one) into row": {},
	})
	for row: Array in [[f.NAMED, ["row_name", "row_name_variable"]], [f.AT_PLACE, ["place", "place_variable"]], [f.RANDOM, []],
			[f.WHERE_FIELD_IS, ["field", "equals", "equals_variable"]], [f.HIGHEST, ["field"]], [f.LOWEST, ["field"]]]:
		var asked := kind(f, {"how": row[0]})
		for name: String in ["row_name", "row_name_variable", "place", "place_variable", "field", "equals", "equals_variable"]:
			(expect_shown if name in row[1] else expect_hidden).call(asked, [name])
	expect_equal(kind(f).store_in, &"row")
