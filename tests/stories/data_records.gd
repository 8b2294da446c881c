extends Story
## Get Data, Set Data and the Data condition: a record that is a file, one in a variable, and the one that a node owns.

const Tables := preload("res://tests/stories/data_table.gd")
const Reach := SCDataReach.From
const QuillsteadData := preload("res://addons/quillstead/runtime/quillstead_data.gd")


func sword() -> SCData:
	var made := Tables.record({"Damage": 5, "Speed": 1.5, "Rarity": PackedStringArray(["Common", "Rare", "Legendary"]), "Owned": false, "Tags": []})
	made.record_name = "Sword"
	return made


## A node with a Data node that starts with that record.
func owner_of(data: SCData, name: String = "Enemy", deep: bool = false) -> Node2D:
	var made := body(name)
	var node := SCDataNode.new()
	node.name = "Data"
	node.data = data
	add(node, "", {"under": add(Node.new(), "Parts", {"under": made}) if deep else made})
	return made


func test_a_field_is_kept_in_a_variable() -> void:
	var of := sword()
	for row: Array in [["Damage", 5], ["Speed", 1.5], ["Rarity", "Common"], ["Owned", false], ["Tags", []]]:
		expect_equal(result_of(kind(SCGetDataAction, {"data": of, "field": row[0], "store_in": &"answer"})), row[1], row[0])
	of.set_field("Damage", 7)
	expect_equal(results_of(kind(SCGetDataAction, {"data": of, "field": &"Damage", "store_in": &"answer"}), {"answer": 0.5})[&"answer"], 7.0)
	expect_equal(result_of(kind(SCGetDataAction, {"from": Reach.A_VARIABLE, "data_variable": &"held", "field": &"Damage", "store_in": &"answer"}),
			{"held": of}), 7)
	var reads := kind(SCGetDataAction, {"from": Reach.DATA_ON_A_NODE, "field": &"Damage", "store_in": &"answer"})
	for deep: bool in [false, true]:
		var enemy := owner_of(of, "Enemy", deep)
		expect_equal(result_of(reads, {}, {"under": enemy}), 7, "under it, or further down: %s" % deep)
		enemy.free()


func test_fields_are_set_and_added_to() -> void:
	var s := SCSetDataAction
	var of := sword()
	for row: Array in [
		# the operation, the field, the value, what the field holds then
		[s.SET, "Damage", 12, 12], [s.SET, "Damage", 3.0, 3], [s.ADD, "Damage", 4, 7], [s.ADD, "Damage", -10, -3], [s.ADD, "Speed", 1, 2.5],
		[s.ADD, "Speed", 0.25, 2.75], [s.SET, "Rarity", "Rare", "Rare"], [s.SET, "Owned", true, true], [s.SET, "Tags", ["a"], ["a"]],
		[s.ADD, "Damage", 2.0, -1],
	]:
		play(kind(s, {"data": of, "operation": row[0], "field": row[1], "value": row[2]}))
		expect_equal(of.get_field(row[1]), row[3], str(row))
	var typed_in := [1]
	play(kind(s, {"data": of, "field": &"Tags", "value": typed_in}))
	typed_in.append(2)
	expect_equal(of.get_field("Tags"), [1], "what was typed in is another list")
	# Both from variables: what is held, and by how much.
	play(kind(s, {"from": Reach.A_VARIABLE, "data_variable": &"held", "operation": s.ADD, "field": &"Damage", "value_variable": &"more"}), {},
			{"variables": {"held": of, "more": 5}})
	expect_equal(of.get_field("Damage"), 4)


func test_each_enemy_has_health_of_its_own() -> void:
	var slime := Tables.record({"Health": 3})
	var hit := kind(SCSetDataAction, {"from": Reach.DATA_ON_A_NODE, "operation": SCSetDataAction.ADD, "field": &"Health", "value": -1})
	var is_dead := kind(SCDataCondition, {"from": Reach.DATA_ON_A_NODE, "field": &"Health", "test": SCDataCondition.LESS, "value": 1})
	var design := template([
		state("Alive", [], {"hit": "Hit"}),
		state("Hit", [hit, kind(SCCheckAction, {"condition": is_dead, "true_event": &"dead", "false_event": &"lives"})], {"dead": "Dead", "lives": "Alive"}),
		state("Dead"),
	])
	var machines: Array[SCMachine] = []
	for name: String in ["One", "Two"]:
		machines.append(start(running(design, {"under": owner_of(slime, name)})))
	for times in 3:
		expect_state(machines[0], "Alive")
		machines[0].send_event("hit")
	expect_state(machines[0], "Dead")
	machines[1].send_event("hit")
	expect_state(machines[1], "Alive")
	expect_equal(QuillsteadData.record_on(machines[1].get_parent()).get_field("Health"), 2)
	expect_equal(slime.get_field("Health"), 3)


func test_what_the_condition_asks() -> void:
	var c := SCDataCondition
	var of := sword()
	var rows := []
	for row: Array in [
		["Damage", c.EQUALS, 5, true], ["Damage", c.EQUALS, 5.0, true], ["Damage", c.NOT_EQUALS, 5, false], ["Damage", c.GREATER, 4.5, true],
		["Damage", c.GREATER, 5, false], ["Damage", c.GREATER_OR_EQUAL, 5, true], ["Damage", c.LESS, 5, false], ["Damage", c.LESS_OR_EQUAL, 5, true],
		["Owned", c.IS_TRUE, null, false], ["Owned", c.IS_FALSE, null, true], ["Damage", c.IS_TRUE, null, true], ["Tags", c.IS_TRUE, null, false],
		["Owned", c.EQUALS, false, true], ["Rarity", c.EQUALS, &"Rare", true], ["Rarity", c.EQUALS, "Common", false],
		# By the order of the choices, not by the alphabet.
		["Rarity", c.GREATER, "Common", true], ["Rarity", c.LESS, "Legendary", true], ["Rarity", c.GREATER_OR_EQUAL, "Rare", true],
		["Rarity", c.GREATER, "Legendary", false],
	]:
		rows.append([kind(c, {"data": of, "field": row[0], "test": row[1], "value": row[2]}), row[3]])
	of.set_field("Rarity", "Rare")
	var asking := asker(stage, {"variables": {"held": of, "least": 5}})
	expect_answers(asking, rows)
	expect_answers(asking, [
		[kind(c, {"from": Reach.A_VARIABLE, "data_variable": &"held", "field": &"Damage", "value_variable": &"least"}), true],
		[kind(c, {"data": of, "field": &"Damage", "value": 5, "invert": true}), false],
	])
	asking.set_value("least", 6)
	expect_answers(asking, [[kind(c, {"data": of, "field": &"Damage", "test": c.LESS, "value_variable": &"least"}), true]])
	expect_answers(asking, [[kind(c, {"data": of, "field": &"Rarity", "value": "Legendry"}), false]])
	expect_warning("Rarity is compared with what it never holds: Legendry is none of its choices")
	# A setting that holds what nothing is chosen by is not there.
	expect_answers(asking, [[kind(c, {"data": of, "field": &"Damage", "test": 99}), false]])


func test_a_data_node_is_found_where_a_maker_puts_it() -> void:
	var enemy := body("Enemy")
	expect(QuillsteadData.node_on(enemy) == null and QuillsteadData.record_on(enemy) == null and QuillsteadData.node_on(null) == null)
	# A weapon in the hand is a scene with data of its own.
	var weapon := owner_of(sword(), "Weapon")
	weapon.scene_file_path = "res://weapon.tscn"
	weapon.reparent(enemy)
	expect(QuillsteadData.record_on(enemy) == null)
	expect_equal(str(QuillsteadData.record_on(weapon)), "Sword")
	var node := SCDataNode.new()
	add(node, "Data", {"under": add(Node.new(), "Parts", {"under": enemy})})
	expect(QuillsteadData.node_on(enemy) == node and QuillsteadData.node_on(node) == node and QuillsteadData.record_on(enemy) == null)
	expect(not node.has_field("Damage") and node.get_field("Damage") == null and not node.set_field("Damage", 1))
	expect_equal(node._get_configuration_warnings().size(), 1)
	var of := sword()
	node.data = of
	var heard := []
	node.field_changed.connect(func(field: StringName, value: Variant) -> void: heard.append([field, value]))
	expect(node.set_field("Damage", 9) and node.has_field("Damage"))
	expect_equal([heard, of.get_field("Damage"), node.get_field("Damage")], [[[&"Damage", 9]], 5, 9])
	var twin: SCDataNode = node.duplicate()
	twin.set_field("Damage", 1)
	expect_equal([node.get_field("Damage"), twin.get_field("Damage")], [9, 1])
	twin.free()


func test_scenes_made_from_one_file_do_not_share_their_record() -> void:
	var made := Node2D.new()
	var node := SCDataNode.new()
	made.add_child(node)
	node.owner = made
	node.data = sword()
	var packed := PackedScene.new()
	packed.pack(made)
	made.free()
	var one := add(packed.instantiate())
	var two := add(packed.instantiate())
	QuillsteadData.record_on(one).set_field("Damage", 50)
	expect_equal(QuillsteadData.record_on(two).get_field("Damage"), 5)


func test_what_is_missing_is_told_of() -> void:
	var bare := SCData.new()
	var of := sword()
	var enemy := body("Enemy")
	var empty := owner_of(null, "Empty")
	var held := {"variables": {"answer": null, "held": 3, "sword": of}}
	var place := {"from": Reach.DATA_ON_A_NODE, "field": &"Damage"}
	for row: Array in [
		# the settings, what is said
		[{"field": &"Damage"}, "no record is picked. Pick one under Data."],
		[{"data": Curve.new(), "field": &"Damage"}, "what is picked under Data is a Resource without fields. Pick a Data file."],
		[{"data": of}, "no field is picked. Pick one under Field."],
		[{"data": of, "field": &"Dammage"}, "Sword has no field called Dammage. It has Damage, Speed, Rarity, Owned and Tags."],
		[{"data": bare, "field": &"Damage"}, "a record has no Data Definition, so there is no field called Damage. Pick one under Definition."],
		[{"from": Reach.A_VARIABLE, "field": &"Damage"}, "no variable is picked."],
		[{"from": Reach.A_VARIABLE, "field": &"Damage", "data_variable": &"none"}, "there is no variable called none."],
		[{"from": Reach.A_VARIABLE, "field": &"Damage", "data_variable": &"held"}, "the variable held holds an int, not a record."],
		[place.merged({"node_path": ^"../Nobody"}), "there is no node at ../Nobody. Pick one under Node Path."],
		[place, "Enemy has no Data node under it. Add one, and pick its record under Data."],
		[place.merged({"node_path": NodePath("../../Empty")}), "the Data node of Empty has no record. Pick one under Data, or make one there."],
	]:
		var said: String = row[1]
		var options := held.merged({"under": enemy})
		expect_warns(kind(SCGetDataAction, {"store_in": &"answer"}.merged(row[0])),
				"Get Data on Machine (state Work, in /root/Stage/Enemy): nothing was read, because " + said, options)
		expect_warns(kind(SCDataCondition, row[0]), "Data on Machine (state Asking, in /root/Stage/Enemy): the answer is no, because " + said, options)
		var changes := "no field is picked, so nothing was changed. Pick one under Field."
		if row[0].has("field"):
			changes = "Set Data on Machine did not change %s: %s" % [row[0]["field"], said]
		expect_warns(kind(SCSetDataAction, {"value": 1}.merged(row[0])), changes, options)
	empty.free()


func test_what_does_not_go_in_is_told_of() -> void:
	var of := sword()
	var s := SCSetDataAction
	expect_warns(kind(SCGetDataAction, {"data": of, "field": &"Damage"}), "Get Data on Machine has no variable to put the field in. Pick one beside Store In.")
	expect_warns(kind(s, {"data": of, "field": &"Rarity", "operation": s.ADD, "value": 1}),
			"Set Data on Machine adds to Rarity, which holds a String, not a number. Use Set for a field that is not a number.")
	expect_warns(kind(s, {"data": of, "field": &"Owned", "operation": s.ADD, "value": 1}), "adds to Owned, which holds a bool, not a number.")
	expect_warns(kind(s, {"data": of, "field": &"Damage", "value": "much"}), "Set Data on Machine did not change Damage: it takes a whole number, not a String.")
	expect_warns(kind(s, {"data": of, "field": &"Damage", "operation": s.ADD, "value": "much"}),
			"Set Data on Machine did not change Damage: Value holds a String, not a number to add.")
	expect_warns(kind(s, {"data": of, "field": &"Rarity", "value": "Epic"}),
			"did not change Rarity: Epic is none of its choices, which are Common, Rare and Legendary.")
	expect_equal([of.get_field("Damage"), of.get_field("Rarity"), of.get_field("Owned")], [5, "Common", false])
	play(kind(s, {"data": of, "field": &"Damage", "operation": s.ADD, "value": 0.6}))
	expect_warning("Damage is an Int, so the sum is rounded to a whole number.")
	expect_equal(of.get_field("Damage"), 6)
	# What was read before does not stay where the field is not there.
	expect_equal(results_of(kind(SCGetDataAction, {"field": &"Damage", "store_in": &"answer"}), {"answer": of})[&"answer"], null)
	expect_warning("no record is picked")


func test_a_game_may_do_anything_when_a_field_changes() -> void:
	for what: String in ["leave", "free"]:
		var of := sword()
		var made := doing(kind(SCSetDataAction, {"data": of, "field": &"Damage", "value": 9}), {"FINISHED": "Done", "out": "Out"})
		var answer := func(_field: StringName, _value: Variant) -> void:
			if what == "free":
				made.free()
			else:
				made.send_event("out")
		of.field_changed.connect(answer)
		stage.add_child(made)
		expect_equal(of.get_field("Damage"), 9)
		if what == "leave":
			expect_state(made, "Out")
		of.field_changed.disconnect(answer)


func test_a_field_is_followed_every_frame() -> void:
	var of := sword()
	var made := play(kind(SCGetDataAction, {"data": of, "field": &"Damage", "store_in": &"answer", "run_mode": SCMachineAction.EVERY_FRAME}), {},
			{"variables": {"answer": 0}})
	expect_values(made, {"answer": 5})
	of.set_field("Damage", 8)
	await frames(2)
	expect_values(made, {"answer": 8})


func test_lines_and_settings() -> void:
	var of := sword()
	var shares := {"from": Reach.A_VARIABLE, "data_variable": &"row"}
	var nodes := {"from": Reach.DATA_ON_A_NODE}
	expect_lines(SCGetDataAction, {
		"Keep Damage of Sword in answer": {"data": of, "field": &"Damage", "store_in": &"answer"},
		"Keep Damage of [row] in answer": shares.merged({"field": &"Damage", "store_in": &"answer"}),
		"Keep Health of Self in hp": nodes.merged({"field": &"Health", "store_in": &"hp"}),
		"Keep (pick one) of (pick one) in (pick one)": {},
	})
	expect_lines(SCSetDataAction, {
		"Set Damage of Sword to 5": {"data": of, "field": &"Damage", "value": 5},
		"Add -1 to Health of Enemy": nodes.merged({"node_path": ^"../Enemy", "field": &"Health", "operation": SCSetDataAction.ADD, "value": -1}),
		"Add a value to Damage of [row] (value: [more])": shares.merged({"field": &"Damage", "operation": SCSetDataAction.ADD, "value_variable": &"more"}),
	})
	expect_lines(SCDataCondition, {
		"Health of Self is below 1": nodes.merged({"field": &"Health", "test": SCDataCondition.LESS, "value": 1}),
		"Owned of Sword is true": {"data": of, "field": &"Owned", "test": SCDataCondition.IS_TRUE},
		"Rarity of [row] is Legendary": shares.merged({"field": &"Rarity", "value": "Legendary"}),
	})
	for class_of: Variant in [SCGetDataAction, SCSetDataAction, SCDataCondition]:
		for row: Array in [[Reach.A_DATA_FILE, "data"], [Reach.A_VARIABLE, "data_variable"], [Reach.DATA_ON_A_NODE, "node_path"]]:
			var asked := kind(class_of, {"from": row[0]})
			for name: String in ["data", "data_variable", "node_path"]:
				(expect_shown if name == row[1] else expect_hidden).call(asked, [name])
		expect_equal(property_of(kind(class_of), "from")["hint_string"], "A Data File:0,A Variable:1,Data On A Node:2")
	expect_hidden(kind(SCDataCondition, {"test": SCDataCondition.IS_FALSE}), ["value"])
