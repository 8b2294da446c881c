extends Story
## Tween Property eases a property from what it is to a value.


class Lamp:
	extends Node2D

	var brightness: float = 1.0
	var count: int = 0
	var anything: Variant = 2.0
	var flag: bool = false
	var label: String = "on"
	var nothing: Resource = null


func test_a_property_gets_there_in_time() -> void:
	for row: Array in [
		["brightness", 3.0, 3.0], ["position", Vector2(10, 20), Vector2(10, 20)], ["position:y", 5, 5.0], ["scale", 2, Vector2(2, 2)],
		["modulate", Color.RED, Color.RED], ["modulate:a", 0.25, 0.25], ["count", 10, 10], ["anything", 8.0, 8.0], ["global_position", Vector2(3, 4), Vector2(3, 4)],
		["position", "where", Vector2(7, 8)],
	]:
		var lamp := _lamp()
		body("Where", Vector2(7, 8))
		var made := play(_ease(row[0], row[1] if not row[1] is String else null, {"curve": SCTweenPropertyAction.LINEAR, "duration": 0.5}.merged(
			{"to_variable": &"where"} if row[1] is String else {})), {"FINISHED": "Done"}, {"under": lamp, "variables": {"where": stage.get_node("Where")}})
		var path := NodePath(row[0]).get_as_property_path()
		var from: Variant = lamp.get_indexed(path)
		await advance(0.25)
		expect_state(made, "Work")
		if row[0] != "count":
			expect_near(lamp.get_indexed(path), lerp(from, row[2], 0.5), 0.05 * _size(row[2]), row[0])
		await expect_later(made, 0.3, "Done")
		expect_near(lamp.get_indexed(path), row[2], 0.0001, row[0])
		lamp.free()
		stage.get_node("Where").free()


func test_at_once_and_by_so_much() -> void:
	for row: Array in [["brightness", 0.5, 1.5], ["position", Vector2(1, 1), Vector2(6, 7)], ["scale", 1, Vector2(2, 2)], ["count", 3, 3]]:
		var lamp := _lamp()
		expect_state(play(_ease(row[0], row[1], {"relative": true, "duration": 0.0}), {"FINISHED": "Done"}, {"under": lamp}), "Done")
		expect_equal(lamp.get(row[0]), row[2])
		lamp.free()


func test_the_shape_of_the_change() -> void:
	var lamp := _lamp()
	play(_ease("brightness", 2.0, {"curve": 4, "easing": 0, "duration": 1.0}), {}, {"under": lamp})
	await advance(0.5)
	# Quad, slow at the start: a quarter of the way after half the time.
	expect_near(lamp.brightness, 1.25, 0.05)


func test_it_stops_with_the_state_and_survives_its_node() -> void:
	var lamp := _lamp()
	var made := play(_ease("brightness", 5.0, {"duration": 1.0}), {"go": "Done"}, {"under": lamp})
	await advance(0.3)
	made.send_event("go")
	var now := lamp.brightness
	await advance(0.3)
	expect_equal(lamp.brightness, now)
	var other := _lamp()
	made = play(_ease("brightness", 5.0, {"duration": 0.5, "node_path": NodePath("../" + other.name)}))
	await frames(2)
	other.free()
	await expect_later(made, 1.0, "Done")


func test_what_cannot_be_eased_is_told_and_holds_nothing_up() -> void:
	for row: Array in [
		["", 1, "it has no property of Lamp to change, so it did nothing. Type one under Property."],
		["nothing_like_it", 1, "Tween Property on Machine (state Work, in /root/Stage/Lamp): it could not ease nothing_like_it of Lamp, because a Node2D has no such"
				+ " property, so it did nothing. Pick another under Property, or change To."],
		["flag", true, "because it holds a bool, and there is nothing in between to pass through. Set Property sets it at once, so it did nothing."],
		["label", "off", "because it holds a String, and there is nothing in between"],
		["nothing", null, "because it holds nothing, and there is nothing in between"],
		["nothing:x", 1, "because its nothing is empty"], ["brightness", "bright", "because it takes a float and was given a String"],
		["position", null, "because it takes a Vector2 and was given nothing"], ["brightness", NAN, "was given a number that is none, or endless"],
		["position", Vector2(INF, 0), "was given a number that is none, or endless"],
	]:
		var lamp := _lamp()
		var made := play(_ease(row[0], row[1]), {"FINISHED": "Done"}, {"under": lamp})
		expect_warning(row[2])
		expect_state(made, "Done")
		lamp.free()
	expect_warns(_ease("brightness", 1, {"node_path": ^"../Nowhere"}), "there is no node at ../Nowhere. Pick one under Node Path.")


func test_lines_on_the_graph() -> void:
	expect_line(_ease("modulate:a", 0.5), "Ease modulate:a of Self to 0.5 in 1 s")
	expect_line(_ease("light_energy", 2.0, {"relative": true, "node_path": ^"../Lamp", "duration": 0.25}), "Ease light energy of Lamp by 2 in 0.25 s")
	expect_line(_ease("", null), "Ease (pick one) of Self to nothing in 1 s")
	expect_line(_ease("speed", 1.0, {"to_variable": &"pace"}), "Ease speed of Self to [pace] in 1 s")
	expect_hidden(_ease("speed", 1.0, {"duration": 0.0}), ["curve", "easing"])


func _size(value: Variant) -> float:
	return (value as Vector2).length() if value is Vector2 else 1.0 if value is Color else absf(value)


func _lamp() -> Lamp:
	return add(Lamp.new(), "Lamp", {"position": Vector2(5, 6)})


func _ease(property: String, to: Variant, settings: Dictionary = {}) -> SCTweenPropertyAction:
	return kind(SCTweenPropertyAction, {"property": property, "to": to}.merged(settings, true))
