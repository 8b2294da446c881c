extends Story
## What a design holds is copied before a game gets it: what a script does to its own list reaches neither the design nor
## another machine of it.


func test_a_list_typed_in_is_handed_out_as_a_copy() -> void:
	for typed: Variant in [[1], {"a": [1]}, PackedInt32Array([1]), PackedStringArray(["a"])]:
		var chest: Node = add(preload("res://tests/stories/files/any_value.gd").new(), "Chest")
		var fallback := kind(SCGetEventDataAction, {"if_it_carried_nothing": typed, "store_in": &"bag"})
		for row: Array in [
			[set_var(&"bag", typed), &"value"], [send("filled", {"data": typed}), &"data"], [fallback, &"if_it_carried_nothing"],
			[kind(SCSetPropertyAction, {"property": "held", "value": typed, "node_path": ^"../../Chest"}), &"value"],
			# The variable is not there, so that what was typed in stands in for it.
			[set_var(&"bag", typed, {"value_variable": &"nowhere"}), &"value"],
		]:
			var owner := start(machine([state("A", [row[0]], [transition("filled", "B", "bag")]), state("B")], {"variables": {"bag": null}, "under": body()}))
			var got: Variant = chest.get("held") if row[0] is SCSetPropertyAction else owner.get_value("bag")
			expect_equal(got, typed, row[0].shown_summary())
			var before: Variant = str_to_var(var_to_str(typed))
			_spoil(got)
			expect_equal(row[0].get(row[1]), before, "the design of %s" % row[0].shown_summary())
			owner.get_parent().free()
		chest.free()


func test_what_a_variable_starts_as_is_a_machine_s_own() -> void:
	for typed: Variant in [[1], {"a": [1]}, PackedInt32Array([1]), PackedColorArray([Color.RED])]:
		var design := template([state("A")], {"variables": {"bag": typed}})
		var first := start(running(design))
		var second := start(running(design, {"handed_values": {&"bag": typed}}))
		var third := start(running(design, {"starting_values": {&"bag": typed}}))
		var before: Variant = str_to_var(var_to_str(typed))
		for made: SCMachine in [first, second, third]:
			_spoil(made.get_value("bag"))
		expect_equal(design.variables[0].default_value, before)
		expect_equal(typed, before)


func _spoil(held: Variant) -> void:
	if held is Dictionary:
		held["b"] = 2
		held["a"].append(2)
	else:
		held.append(held[0])
