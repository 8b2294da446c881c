extends Story
## Set Property sets any property of any node, or a part of one, to a value of any kind that fits.


class Chest:
	extends Node2D

	var anything: Variant = null
	var count: int = 0
	var label: String = ""
	var key: NodePath = NodePath()
	var tint: Color = Color.WHITE
	var lid: Node = null
	var picture: Texture2D = null
	var cell: Vector2i = Vector2i.ZERO
	var inside: Dictionary = {"gold": 1}


func test_a_value_becomes_what_the_property_takes() -> void:
	for row: Array in [
		["position", Vector2(3, 4), Vector2(3, 4)], ["position:y", 7, 7.0], ["scale", 2, Vector2(2, 2)], ["cell", 1.6, Vector2i(2, 2)],
		["rotation", 1, 1.0], ["rotation", INF, INF], ["visible", 0, false], ["count", 2.6, 3], ["label", 5, "5"], ["label", &"words", "words"],
		["tint", 0.5, Color(0.5, 0.5, 0.5, 0.5)], ["tint", "ff0000", Color.RED], ["tint:a", 0.25, 0.25], ["modulate:a", 0.5, 0.5],
		["key", "../Door", NodePath("../Door")], ["anything", [1, 2], [1, 2]], ["anything", null, null],
		["inside:gold", 50, 50], ["metadata/note", "read me", "read me"],
	]:
		# Typed in, and out of a variable.
		for by: Dictionary in [{"value": row[1]}, {"value_variable": &"from"}]:
			var chest := _chest()
			var sets: SCSetPropertyAction = kind(SCSetPropertyAction, {"property": row[0]}.merged(by))
			expect_state(play(sets, {"FINISHED": "Done"}, {"under": chest, "variables": {"from": row[1]}}), "Done")
			expect_equal(chest.get_indexed(NodePath(row[0]).get_as_property_path()), row[2], "%s to %s" % [row[0], by])


func test_inside_a_resource() -> void:
	var style := StyleBoxFlat.new()
	var panel: Panel = add(Panel.new(), "", {"material": CanvasItemMaterial.new()})
	panel.add_theme_stylebox_override("panel", style)
	play([_set_it("material:light_mode", 1), _set_it("theme_override_styles/panel:bg_color", Color.BLUE)], {}, {"under": panel})
	expect_equal((panel.material as CanvasItemMaterial).light_mode, 1)
	expect_equal(style.bg_color, Color.BLUE)


func test_nodes_and_resources() -> void:
	var chest := _chest()
	var lid := body("Lid")
	var picture := GradientTexture1D.new()
	var reads: Array = [["lid", &"lid"], ["picture", &"picture"], ["key", &"lid"]].map(func(row: Array) -> Resource:
		return kind(SCSetPropertyAction, {"property": row[0], "value_variable": row[1]}))
	var made := start(machine([state("Wait", [], {"go": "A"}), state("A", reads)], {"under": chest, "variables": {"lid": null, "picture": picture}}))
	made.set_value("lid", lid)
	made.send_event("go")
	expect_equal(chest.lid, lid)
	expect_equal(chest.picture, picture)
	expect_equal(chest.get_node(chest.key), lid)


func test_every_frame_keeps_it_so() -> void:
	var chest := _chest()
	var keeps := _set_it("", 4, {"run_mode": SCMachineAction.EVERY_FRAME, "property_variable": &"which"})
	var made := play(keeps, {"FINISHED": "Wrong"}, {"under": chest, "variables": {"which": "count"}})
	chest.count = 9
	await frames(2)
	expect_equal(chest.count, 4)
	made.set_value("which", "label")
	await frames(1)
	expect_equal(chest.label, "4", "and another property from then on")
	expect_state(made, "Work")


func test_what_it_cannot_take_is_told_once_and_left() -> void:
	var chest := _chest()
	for row: Array in [
		["count", "five", "Set Property on Machine: it could not set count of Chest, because it takes an int and was given a String, so nothing was set."],
		["position", Color.RED, "because it takes a Vector2 and was given a Color"],
		["picture", RefCounted.new(), "because it takes a Texture2D and was given a Resource"],
		["count", null, "because it takes an int and was given nothing"],
		["colour", 5, "because a Node2D has no such property"],
		["material:light_mode", 1, "because its material is empty"],
		["position:q", 1, "because a Node2D has no such property"],
		["position::x", 1, "because a Node2D has no such property"],
		["key", "..::Door", "because ..::Door is no path to a node"],
		["position", Vector2(NAN, 0), "because Value holds a number that is none, as 0 divided by 0 is, so nothing was set."],
		["position", Vector3(0, NAN, 0), "because Value holds a number that is none"],
		["rotation", NAN, "because Value holds a number that is none"],
		["name", null, "because it takes a StringName and was given nothing"],
		["name", "", "because it takes a StringName and was given a String"],
	]:
		var made := play(_set_it(row[0], row[1], {"run_mode": SCMachineAction.EVERY_FRAME}), {}, {"under": chest})
		await frames(2)
		expect_warning(row[2])
		made.free()
	expect_equal(chest.count, 0)
	expect_equal(chest.position, Vector2.ZERO)


func test_what_is_missing_is_told() -> void:
	for row: Array in [
		[_set_it("count", 1, {"node_path": NodePath("../Nowhere")}), "there is no node at ../Nowhere. Pick one under Node Path."],
		[_set_it("", 1), "it has no property of Stage to set"],
	]:
		result_of(row[0])
		expect_warning(row[1])
	var chest := _chest()
	expect_warns(_set_it("count", 4, {"value_variable": &"nowhere"}), "Machine reads the variable nowhere, which it does not have", {"under": chest})
	expect_equal(chest.count, 4, "what was typed in")


func test_lines_on_the_graph() -> void:
	expect_line(_set_it("modulate", Color.RED, {"node_path": NodePath("../Door")}), "Set modulate of Door to #ff0000")
	expect_line(_set_it("speed_scale", 2.5), "Set speed scale of Self to 2.5")
	expect_line(_set_it("", 2.5), "Set (pick one) of Self to 2.5")
	expect_line(_set_it("text", null), "Set text of Self to nothing")


func _chest() -> Chest:
	return add(Chest.new(), "Chest")


func _set_it(property: String, value: Variant, options: Dictionary = {}) -> SCSetPropertyAction:
	return kind(SCSetPropertyAction, {"property": property, "value": value}.merged(options))
