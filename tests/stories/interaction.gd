extends PhysicsStory
## A player walks up to things and uses them.


func use(settings: Dictionary = {}) -> SCInteractionAction:
	return kind(SCInteractionAction, {"reach": far(2.0), "store_in": &"in reach"}.merged(settings, true))


## A box that opens when it is used, and does nothing with it from then on.
func chest(x: float, name: String = "Chest", variables: Dictionary = {}) -> Node:
	var made := block(x, 0.5, 1.0, 1.0, name)
	made.add_to_group(&"usable")
	start(machine([state("Shut", [], [transition("USED", "Open", "user")]), state("Open")],
		{"under": made, "variables": {"user": null}.merged(variables), "name": "Lid"}))
	return made


func lid(of: Node) -> SCMachine:
	return of.get_node("Lid")


func player(settings: Dictionary = {}) -> SCMachine:
	return walk(spot(0.0, 0.5, "Player"), [use(settings)], {"variables": {"in reach": null}})


func words_over(thing: Node) -> String:
	var label := thing.get_node_or_null(^"Prompt")
	return label.get(&"text") if label != null else ""


## Another story may have played with a pad last.
func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	var moved := InputEventKey.new()
	moved.keycode = KEY_SHIFT
	for down: bool in [true, false]:
		moved.pressed = down
		Input.parse_input_event(moved.duplicate() as InputEvent)
	Input.flush_buffered_events()


func press(key: Key = KEY_E) -> void:
	for down: bool in [true, false]:
		var event := InputEventKey.new()
		event.keycode = key
		event.physical_keycode = key
		event.pressed = down
		Input.parse_input_event(event)
		await frames(2)


func test_the_nearest_that_can_be_used_is_offered_and_used() -> void:
	await on_both_sides(func() -> void:
		var near := chest(1.0, "Near")
		var other := chest(-1.5, "Other", {"prompt": "to pry open"})
		var out_of_reach := chest(2.1, "OutOfReach")
		var made := player()
		await frames(3)
		expect_equal(words_over(near), "E to use")
		expect_equal(made.get_value(&"in reach"), near)
		await press()
		expect_state(lid(near), "Open")
		expect_equal(lid(near).get_value(&"user"), made.get_parent(), "the event carries the player")
		expect_equal(lid(near).last_event_sender(), made)
		expect_equal([words_over(near), words_over(other), words_over(out_of_reach)], ["", "E to pry open", ""])
		expect_equal(made.get_value(&"in reach"), other)
		lid(other).set_value(&"prompt", "to smash")
		await frames(2)
		expect_equal(words_over(other), "E to smash")
		await press()
		expect_states(lid(other), ["Open"])
		expect_states(lid(out_of_reach), ["Shut"])
		expect_equal(made.get_value(&"in reach"), null)
		await press())


func test_reach_is_lost_and_found() -> void:
	await on_both_sides(func() -> void:
		var near := chest(1.9)
		var made := player()
		var hero := made.get_parent()
		await frames(3)
		expect_equal(words_over(near), "E to use")
		for row: Array in [[-0.2, ""], [0.0, "E to use"], [4.0, ""], [3.8, "E to use"]]:
			hero.set(&"position", at(row[0], 0.5))
			await frames(2)
			expect_equal(words_over(near), row[1], "at %s" % row[0])
		near.remove_from_group(&"usable")
		await frames(2)
		expect_equal(words_over(near), "", "it has left the group")
		# One in place of the other, so that their number says nothing.
		near.add_to_group(&"usable")
		await frames(2)
		near.remove_from_group(&"usable")
		var instead := chest(3.0, "Instead")
		await frames(2)
		expect_equal([words_over(near), words_over(instead)], ["", "E to use"])
		instead.free()
		await frames(2)
		expect_equal(made.get_value(&"in reach"), null))


func test_the_words_float_upright_over_the_thing() -> void:
	var shut := chest(1.0)
	(shut as Node2D).scale = Vector2(-2, 2)
	(shut as Node2D).rotation = 0.5
	player()
	await frames(3)
	var label: Label = shut.get_node("Prompt")
	var world := label.get_global_transform()
	expect_near(world.get_rotation(), 0.0, 0.001)
	expect_near(world.get_scale(), Vector2.ONE, Vector2.ONE.length() * 0.001)
	var foot := world * Vector2(label.size.x / 2.0, label.size.y)
	# Half of a box of two metres a side, turned: its top corner.
	expect_near(foot, (shut as Node2D).global_position - Vector2(0, 32.0 * (cos(0.5) + sin(0.5)) + 4.0), 0.1)
	in_3d = true
	var in_space := chest(50.0)
	walk(spot(50.0, 1.5), [use()], {"variables": {"in reach": null}})
	await frames(3)
	var floating: Label3D = in_space.get_node("Prompt")
	expect_near(floating.global_position, Vector3(50.0, 1.125, 0.0), 0.01)
	expect(floating.no_depth_test and floating.billboard == BaseMaterial3D.BILLBOARD_ENABLED)


func test_a_picture_says_how_tall_it_is_rather_than_a_wide_area() -> void:
	for picture: bool in [false, true]:
		var sign_post := zone(1.0, 0.0, 6.0, 6.0, "Sign")
		sign_post.add_to_group(&"usable")
		start(machine([state("Up", [], {"USED": "Read"}), state("Read")], {"under": sign_post}))
		if picture:
			var sprite := Sprite2D.new()
			sprite.texture = PlaceholderTexture2D.new()
			(sprite.texture as PlaceholderTexture2D).size = Vector2(20, 40)
			sign_post.add_child(sprite)
		var made := player()
		await frames(3)
		var label: Label = sign_post.get_node("Prompt")
		expect_near(label.position.y + label.size.y, -24.0 if picture else -100.0, 0.1)
		made.get_parent().free()
		sign_post.free()


func test_a_label_of_the_game_shows_it() -> void:
	await on_both_sides(func() -> void:
		var hint: Label = add(Label.new(), "Hint")
		var shut := chest(1.0)
		var made := player({"prompt_path": ^"../../Hint", "prompt": "to open it"})
		await frames(3)
		expect_equal([hint.visible, hint.text, words_over(shut)], [true, "E to open it", ""])
		await press()
		expect(not hint.visible, "nothing is left to use")
		lid(shut).go_to(&"Shut")
		await frames(2)
		expect(hint.visible)
		made.stop()
		expect(not hint.visible, "the state was left"))


func test_the_key_of_what_the_player_holds() -> void:
	var shut := chest(1.0)
	player()
	await frames(3)
	expect_equal(words_over(shut), "E to use")
	for pressed: bool in [true, false]:
		var button := InputEventJoypadButton.new()
		button.button_index = JOY_BUTTON_A
		button.pressed = pressed
		Input.parse_input_event(button)
		await frames(2)
	expect_equal(words_over(shut), "Top Button (Y / Triangle) to use")
	await press(KEY_Q)
	expect_equal(words_over(shut), "E to use")
	var other := player({"input_action": "Key: F"})
	await frames(2)
	expect_equal(words_of(shut), ["E to use", "F to use"])
	other.get_parent().free()


func words_of(thing: Node) -> Array:
	return thing.get_children().filter(func(child: Node) -> bool: return child is Label).map(func(child: Label) -> String: return child.text)


func test_the_prompt_goes_however_the_player_goes() -> void:
	await on_both_sides(func() -> void:
		var shut := chest(1.0)
		var ways: Dictionary[String, Callable] = {
			"leaves the state": func(one: SCMachine) -> void: one.go_to(&"Rest"),
			"stops": func(one: SCMachine) -> void: one.stop(),
			"leaves the tree": func(one: SCMachine) -> void: stage.remove_child(one.get_parent()),
			"is freed": func(one: SCMachine) -> void: one.get_parent().free(),
		}
		for way in ways:
			var hero := spot(0.0, 0.5, "Player")
			var made := start(machine([state("Walk", [use()]), state("Rest")], {"under": hero, "variables": {"in reach": null}}))
			await frames(3)
			expect_equal(words_over(shut), "E to use", way)
			ways[way].call(made)
			expect_equal(words_over(shut), "", way)
			await frames(1)
			if is_instance_valid(hero):
				hero.free()
		expect_equal(shut.get_child_count(), 2, "something is left over the chest"))


func test_a_thing_that_holds_the_player_goes_with_it() -> void:
	for leaves: bool in [true, false]:
		var cart := chest(0.5, "Cart")
		var hero := Node2D.new()
		cart.add_child(hero)
		start(machine([state("Ride", [use()])], {"under": hero, "variables": {"in reach": null}}))
		await frames(3)
		expect_equal(words_over(cart), "E to use")
		if leaves:
			stage.remove_child(cart)
			await frames(1)
		cart.free()
		await frames(1)


func test_a_state_within_another_that_takes_it_or_runs_beside() -> void:
	var lever := block(1.0, 0.5, 1.0, 1.0, "Lever")
	lever.add_to_group(&"usable")
	var its := start(machine([
		state("On", [], {"USED": "Off"}, {"sub_states": [state("Humming", [], {"jam": "Jammed"}), state("Jammed")]}),
		state("Off", [], {"oil": "On"}),
		state("Nowhere", [], {"USED": "Not there"}),
	], {"under": lever}))
	player()
	for row: Array in [["", true], ["jam", true], ["USED", false], ["oil", true]]:
		if not (row[0] as String).is_empty():
			its.send_event(row[0])
		await frames(2)
		expect_equal(not words_over(lever).is_empty(), row[1], row[0])
	its.go_to(&"Nowhere")
	await frames(2)
	expect_equal(words_over(lever), "", "a way that leads nowhere does nothing")
	its.go_to(&"On")
	await frames(2)
	its.stop()
	await frames(2)
	expect_equal(words_over(lever), "", "a machine that does not run does nothing")


func test_a_press_is_used_once() -> void:
	var reading := kind(SCEventOnInputAction, {"input_action": "Key: E", "event_name": "close"})
	var scroll := chest(1.0, "Scroll")
	var hero := spot(0.0, 0.5, "Player")
	var made := start(machine([state("Walk", [use()], {"read": "Read"}), state("Read", [reading], {"close": "Walk"})],
		{"under": hero, "variables": {"in reach": null}}))
	lid(scroll).state_changed.connect(func(_from: Resource, _to: Resource) -> void: made.send_event(&"read"))
	await frames(3)
	await press()
	expect_state(made, "Read")
	await press()
	expect_state(made, "Walk")


func test_it_holds_no_state_up_and_says_what_it_does() -> void:
	var made := start(machine([state("Walk", [use({"store_in": &""})], {"FINISHED": "Done"}), state("Done")], {"under": spot(0.0, 0.0)}))
	expect_state(made, "Done")
	expect_lines(SCInteractionAction, {
		"Use the nearest usable in reach with Key: E or Pad: Top Button (Y / Triangle), sending USED": {},
		"Pick what can be used": {"usable_group": &""},
	})


func test_what_is_set_up_wrong_is_told() -> void:
	var stone := block(1.0, 0.5, 1.0, 1.0, "Stone")
	stone.add_to_group(&"usable")
	var made := player({"input_action": "Key: E"})
	await frames(3)
	expect_warning("Interaction on Machine: Stone is in usable but has no machine, so pressing Key: E cannot tell it it was used. "
		+ "Give it a machine with a way out on USED.")
	expect_equal(stone.get_child_count(), 1)
	made.get_parent().free()
	stone.free()
	for row: Array in [
		[{"usable_group": &""}, "nothing is picked under Usable Group, so there is nothing to use. Pick the things that can be used, such as the chests."],
		[{"prompt_path": ^"../Nobody"}, "there is no Label at Prompt to show the prompt in. "
			+ "Pick a Label, or leave Prompt empty for words floating over what is in reach."],
		[{"input_action": &"jmup"}, "nothing is called \"jmup\", so nothing can be used."],
		[{"used_event": &""}, "it has no event to send, so nothing can be used. Type one under Used Event."],
	]:
		await expect_warns_in_physics(use(row[0]), row[1], {"under": spot(0.0, 0.0)})
	await expect_warns_in_physics(
		use(), "Interaction on Machine needs a 2D or 3D character to reach from, and Menu is neither.", {"under": add(Node.new(), "Menu")})


func test_two_hundred_things_ask_for_nothing() -> void:
	for i in 200:
		chest(2.5 + i * 0.1, "Far%d" % i)
	chest(1.0)
	var made := player()
	await frames(10)
	if not AllocationCounter.is_available():
		return
	AllocationCounter.begin("libquillstead_core")
	await frames(100)
	expect_equal(AllocationCounter.end(), 0, "allocations, from %s" % ", ".join(AllocationCounter.sites()))
	expect(made.get_value(&"in reach") != null)
