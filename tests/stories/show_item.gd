extends Story
## A shelf shows what it sells.


func sword() -> SCItem:
	return kind(SCItem, {"item_name": "Sword", "line": "Cuts.", "price": 12.5, "charge": 2, "active": true, "icon": PlaceholderTexture2D.new()})


func show(settings: Dictionary) -> SCShowItemAction:
	return kind(SCShowItemAction, settings)


## One of each node that can show it.
func test_it_shows_everything_and_clears_it() -> void:
	var pictures: Array[Node] = [add(Sprite2D.new(), "Flat"), add(Sprite3D.new(), "Deep"), add(TextureRect.new(), "Box")]
	var labels: Array[Node] = [add(Label.new(), "Label"), add(RichTextLabel.new(), "Rich"), add(Label3D.new(), "Over"), add(Button.new(), "Buy")]
	var item := sword()
	for on: bool in [true, false]:
		for picture in pictures:
			for label in labels:
				var made := play(show({
					"item": item if on else null, "picture_path": NodePath("../../%s" % picture.name), "name_path": NodePath("../../%s" % label.name),
				}), {}, {"under": body("Shelf")})
				expect_equal(picture.get(&"texture"), item.icon if on else null, picture.name)
				expect_equal(label.get(&"text"), "Sword" if on else "", label.name)
				made.get_parent().free()


func test_it_keeps_the_numbers() -> void:
	for row: Array in [
		[sword(), {"price": 12.5, "charge": 2, "active": true}],
		[null, {"price": 0.0, "charge": 0, "active": false}],
	]:
		var made := play(show({"item_variable": &"shown", "store_price_in": &"price", "store_charge_in": &"charge", "store_active_in": &"active"}), {},
			{"variables": {"shown": row[0], "price": 7.0, "charge": 7, "active": true}})
		expect_values(made, row[1])


func test_a_price_that_is_no_number() -> void:
	var item := sword()
	item.price = NAN
	var made := play(show({"item": item, "store_price_in": &"price"}), {}, {"variables": {"price": 7.0}})
	expect_warning("Show Item on Machine: the price of Sword is nan, so 0 is kept. Give the item a Price.")
	expect_values(made, {"price": 0.0})


func test_the_line_goes_to_its_label() -> void:
	var label: Label = add(Label.new(), "Label")
	play(show({"item": sword(), "line_path": ^"../../Label"}), {}, {"under": body("Shelf")})
	expect_equal(label.text, "Cuts.")


func test_what_cannot_show_it_is_told() -> void:
	add(Timer.new(), "Clock")
	for row: Array in [
		[{"picture_path": ^"../../Clock"}, "Clock is a Timer, so no picture is shown. Texture wants a Sprite2D, a Sprite3D or a TextureRect."],
		[{"picture_path": ^"../Nobody"}, "the node named in Texture, Nobody, was not found, so no picture is shown."],
		[{"name_path": ^"../../Clock"}, "Clock is a Timer, so the item's Name is not shown. Name wants a Label, a RichTextLabel, a Label3D or a Button."],
		[{"line_path": ^"../Nobody"}, "the node named in Line, Nobody, was not found, so the item's Line is not shown. Line wants"],
	]:
		expect_warns(show({"item": sword()}.merged(row[0])), "Show Item on Machine: " + (row[1] as String), {"under": body("Shelf")})


func test_it_says_what_it_shows() -> void:
	expect_lines(SCShowItemAction, {
		"Show nothing": {},
		"Show Sword's picture": {"item": sword(), "picture_path": ^"../P"},
		"Show [offer]'s picture, name and line": {"item_variable": &"offer", "picture_path": ^"../P", "name_path": ^"../N", "line_path": ^"../L"},
	})
