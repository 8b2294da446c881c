extends Story
## Questions about a node: where in the tree it is, how it stands, what it plays.


func test_a_node_has_a_kind_of_node_under_it() -> void:
	var car := body("Car")
	var seat := _under(car, Node2D.new(), "Seat")
	_under(seat, AudioStreamPlayer.new(), "Horn")
	var made := asker(car)
	var tag := StateTag.new()
	tag.machine = made
	_under(seat, tag, "Sign")
	for row: Array in [
		["Node2D", true, true], ["Node2D", false, true], ["AudioStreamPlayer", true, true], ["AudioStreamPlayer", false, false],
		["Label", true, true], ["StateTag", true, true], ["StateTag", false, false], ["SCMachine", false, true], ["Sprite2D", true, false], ["Player", true, false],
	]:
		expect_equal(ask(made, kind(SCHasChildOfTypeCondition, {"type": row[0], "recursive": row[1]})), row[2], str(row))
	expect(ask(made, kind(SCHasChildOfTypeCondition, {"type": "AudioStreamPlayer", "node_path": ^"../Seat", "recursive": false})))
	seat.get_node(^"Horn").queue_free()
	expect(not ask(made, kind(SCHasChildOfTypeCondition, {"type": "AudioStreamPlayer"})))


func test_a_kind_that_there_is_not_is_told_once() -> void:
	var made := asker(body("Car"))
	var wrong := SCHasChildOfTypeCondition.new()
	expect(not ask(made, wrong))
	expect_warning("no kind of node is picked, so the answer is no. Pick one under Type.")
	wrong.type = "Wheel"
	for i in 3:
		expect(not ask(made, wrong))
	expect_warning("there is no kind of node called Wheel, so the answer is no. Pick one under Type.")


func test_a_crate_rides_on_the_lift() -> void:
	var lift := body("Lift")
	var floor_node := _under(lift, Node2D.new(), "Floor")
	var crate := _under(floor_node, Node2D.new(), "Crate")
	var made := asker(crate)
	var riding := kind(SCIsChildOfCondition, {"parent_path": ^"../../../../Lift"}) as SCIsChildOfCondition
	expect(ask(made, riding))
	riding.recursive = false
	expect(not ask(made, riding))
	riding.parent_path = ^"../../../Floor"
	expect(ask(made, riding))
	expect(ask(made, kind(SCIsChildOfCondition, {"node_path": ^".", "recursive": false})), "the machine is right under Self")
	crate.reparent(stage)
	expect(not ask(made, kind(SCIsChildOfCondition, {"parent_path": ^"../../Lift"})))


func test_nothing_is_under_itself() -> void:
	var made := asker(body("Crate"))
	expect(not ask(made, SCIsChildOfCondition.new()))
	expect_warning("it asks whether Crate is under itself, so the answer is no. Pick another node under Node Path or Parent Path.")
	expect(not ask(made, kind(SCIsChildOfCondition, {"parent_path": ^"../../Lift"})))
	expect_warning("Is Child Of on Machine: there is no node at Lift. Pick one under Parent Path.")


func test_a_node_is_there_until_it_goes() -> void:
	var enemy := body("Enemy")
	var made := asker(stage, {"variables": {&"target": null}})
	var there := kind(SCNodeCondition, {"node_path": ^"../Enemy"})
	var held := kind(SCNodeCondition, {"node_path_variable": &"target"})
	expect(ask(made, there))
	expect(not ask(made, held), "an empty variable")
	made.set_value(&"target", enemy)
	expect(ask(made, held))
	enemy.queue_free()
	expect(not ask(made, there))
	expect(not ask(made, held))
	await frames(1)
	expect(not ask(made, there))
	expect(not ask(made, held))
	expect(ask(made, SCNodeCondition.new()), "Self")


func test_a_node_is_in_a_group() -> void:
	var made := asker(body("Enemy"))
	var in_group := kind(SCNodeCondition, {"test": SCNodeCondition.IS_IN_A_GROUP, "group": &"enemies"}) as SCNodeCondition
	expect(not ask(made, in_group))
	stage.get_node(^"Enemy").add_to_group(&"enemies")
	expect(ask(made, in_group))
	in_group.group = &""
	expect(not ask(made, in_group))
	expect_warning("no group is named, so the answer is no. Type one under Group.")


func test_a_node_is_visible() -> void:
	var visible := kind(SCNodeCondition, {"test": SCNodeCondition.IS_VISIBLE, "node_path": ^"../Above/Shown"})
	for made_above: Node in [Node2D.new(), Node3D.new(), Control.new()]:
		var above := _under(stage, made_above, "Above")
		var shown := _under(above, made_above.duplicate(), "Shown")
		var made := asker(stage)
		expect(ask(made, visible), above.get_class())
		above.call("hide")
		expect(not ask(made, visible), above.get_class())
		above.call("show")
		shown.call("hide")
		expect(not ask(made, visible), above.get_class())
		made.free()
		above.free()
	_under(stage, CanvasLayer.new(), "Layer")
	var layer_asked := kind(SCNodeCondition, {"test": SCNodeCondition.IS_VISIBLE, "node_path": ^"../Layer"})
	var last := asker(stage)
	expect(ask(last, layer_asked))
	(stage.get_node(^"Layer") as CanvasLayer).hide()
	expect(not ask(last, layer_asked))
	expect(not ask(last, kind(SCNodeCondition, {"test": SCNodeCondition.IS_VISIBLE})))
	expect_warning("Node on Machine: Stage is a Node, not a node that can be seen. Pick a node that can be seen under Node Path.")


func test_a_node_is_enabled() -> void:
	var lamp := body("Lamp")
	var made := asker(stage)
	var enabled := kind(SCNodeCondition, {"test": SCNodeCondition.IS_ENABLED, "node_path": ^"../Lamp"})
	expect(ask(made, enabled))
	lamp.process_mode = Node.PROCESS_MODE_DISABLED
	expect(not ask(made, enabled))
	lamp.process_mode = Node.PROCESS_MODE_INHERIT
	tree.paused = true
	expect(not ask(made, enabled))
	tree.paused = false
	expect(ask(made, enabled))


func test_a_missing_node_is_told_once() -> void:
	var made := asker(stage, {"variables": {&"target": null}})
	var gone := kind(SCNodeCondition, {"test": SCNodeCondition.IS_ENABLED, "node_path": ^"../Lamp"})
	for i in 3:
		expect(not ask(made, gone))
	expect_warning("Node on Machine: there is no node at Lamp. Pick one under Node Path.")
	expect(not ask(made, kind(SCNodeCondition, {"test": SCNodeCondition.IS_ENABLED, "node_path_variable": &"target"})))
	expect_warning("the variable target holds no node, so the answer is no. Put a node into it, or pick one under Node Path.")


func test_properties_compare_by_every_test() -> void:
	var box := body("Box")
	box.position = Vector2(30, 40)
	box.scale = Vector2(2, 2)
	box.modulate = Color(1, 1, 1, 0.5)
	box.z_index = 3
	var made := asker(box)
	for row: Array in [
		["z_index", SCPropertyCondition.EQUALS, 3, true], ["z_index", SCPropertyCondition.EQUALS, 3.0, true], ["z_index", SCPropertyCondition.NOT_EQUALS, 3, false],
		["z_index", SCPropertyCondition.GREATER, 2, true], ["z_index", SCPropertyCondition.GREATER, 3, false], ["z_index", SCPropertyCondition.GREATER_OR_EQUAL, 3, true],
		["z_index", SCPropertyCondition.LESS, 4, true], ["z_index", SCPropertyCondition.LESS, 3, false], ["z_index", SCPropertyCondition.LESS_OR_EQUAL, 3, true],
		["position:x", SCPropertyCondition.EQUALS, 30.0, true], ["position:y", SCPropertyCondition.LESS, 40, false],
		["position", SCPropertyCondition.EQUALS, Vector2(30, 40), true], ["position", SCPropertyCondition.EQUALS, Vector2(30, 41), false],
		["position", SCPropertyCondition.GREATER, 49, true], ["position", SCPropertyCondition.GREATER, 51.0, false], ["position", SCPropertyCondition.LESS_OR_EQUAL, Vector2(60, 80), true],
		["scale", SCPropertyCondition.EQUALS, 2.0, true], ["scale", SCPropertyCondition.EQUALS, 3, false], ["scale", SCPropertyCondition.NOT_EQUALS, 2, false],
		["modulate:a", SCPropertyCondition.LESS, 1.0, true], ["name", SCPropertyCondition.EQUALS, "Box", true], ["name", SCPropertyCondition.GREATER, "Apple", true],
		["visible", SCPropertyCondition.IS_TRUE, null, true], ["visible", SCPropertyCondition.IS_FALSE, null, false], ["material", SCPropertyCondition.IS_TRUE, null, false],
		["name", SCPropertyCondition.GREATER, 3, false],
	]:
		expect_equal(ask(made, kind(SCPropertyCondition, {"property": row[0], "test": row[1], "value": row[2]})), row[3], str(row))


func test_a_property_that_there_is_not_is_told_once() -> void:
	var made := asker(body("Box"))
	var wrong := SCPropertyCondition.new()
	expect(not ask(made, wrong))
	expect_warning("no property is named, so the answer is no. Type one under Property.")
	wrong.property = "helth"
	for i in 3:
		expect(not ask(made, wrong))
	expect_warning("Property on Machine: Box has no property helth, so the answer is no. Check the name under Property.")
	wrong.property = "position:w"
	expect(not ask(made, wrong))
	expect_warning("Box has no property position:w")
	wrong.property = "material:albedo_color"
	expect(not ask(made, wrong))
	expect_warning("Box has no property material:albedo_color")


func test_a_property_meets_a_variable() -> void:
	var box := body("Box")
	var above := kind(SCPropertyCondition, {"property": "position:y", "test": SCPropertyCondition.GREATER, "value_variable": &"line"})
	var made := start(machine([state("Above", [watch(above)], {"yes": "Below"}), state("Below")], {"under": box, "variables": {&"line": 100.0}}))
	await frames(2)
	expect_state(made, "Above")
	box.position.y = 101.0
	await frames(2)
	expect_state(made, "Below")
	expect_equal(above.shown_summary(), "position:y of Self is above [line]")


func test_an_animation_plays_and_ends() -> void:
	var hero := body("Hero")
	var player := _under(hero, AnimationPlayer.new(), "Moves") as AnimationPlayer
	var library := AnimationLibrary.new()
	for name: StringName in [&"walk", &"jump"]:
		var animation := Animation.new()
		animation.length = 0.5
		library.add_animation(name, animation)
	player.add_animation_library(&"", library)
	var made := asker(hero)
	var playing := SCPlayingCondition.new()
	var walking := kind(SCPlayingCondition, {"animation_name": &"walk"})
	var ended := kind(SCPlayingCondition, {"test": SCPlayingCondition.HAS_ENDED})
	var jumped := kind(SCPlayingCondition, {"test": SCPlayingCondition.HAS_ENDED, "animation_name": &"jump"})
	var half := kind(SCPlayingCondition, {"test": SCPlayingCondition.HAS_GOT_AS_FAR_AS, "fraction": 0.5})
	_expect_answers(made, [[playing, false], [walking, false], [ended, false], [half, false]], "not begun")
	player.play(&"walk")
	await frames(5)
	_expect_answers(made, [[playing, true], [walking, true], [ended, false], [jumped, false], [half, false]], "begun")
	await frames(15)
	_expect_answers(made, [[playing, true], [half, true], [ended, false]], "past the half")
	await frames(15)
	_expect_answers(made, [[playing, false], [walking, false], [ended, true], [jumped, false], [half, true]], "at the end")
	player.stop()
	_expect_answers(made, [[playing, false], [ended, false], [half, false]], "stopped")
	player.play(&"jump")
	await frames(10)
	player.pause()
	_expect_answers(made, [[playing, false], [jumped, false], [half, false]], "paused")
	player.play_backwards(&"jump")
	await frames(40)
	_expect_answers(made, [[playing, false], [jumped, true]], "backwards to its beginning")
	expect(not ask(made, kind(SCPlayingCondition, {"animation_name": &"swim"})))
	expect_warning("Playing on Machine: Moves has no animation called swim, so the answer is no. Check the name under Animation Name.")


func test_a_sprite_plays_and_ends() -> void:
	for sprite: Node in [AnimatedSprite2D.new(), AnimatedSprite3D.new()]:
		var drawn := SpriteFrames.new()
		drawn.set_animation_loop(&"default", false)
		drawn.set_animation_speed(&"default", 20.0)
		for i in 4:
			drawn.add_frame(&"default", PlaceholderTexture2D.new())
		sprite.set("sprite_frames", drawn)
		_under(stage, sprite, "Sprite")
		var made := asker(sprite)
		var ended := kind(SCPlayingCondition, {"test": SCPlayingCondition.HAS_ENDED})
		var half := kind(SCPlayingCondition, {"test": SCPlayingCondition.HAS_GOT_AS_FAR_AS, "animation_name": &"default"})
		sprite.call("play", &"default")
		await frames(3)
		_expect_answers(made, [[SCPlayingCondition.new(), true], [ended, false], [half, false]], sprite.get_class())
		await frames(6)
		_expect_answers(made, [[SCPlayingCondition.new(), true], [half, true]], sprite.get_class())
		await frames(8)
		_expect_answers(made, [[SCPlayingCondition.new(), false], [ended, true], [half, true]], sprite.get_class())
		expect(not ask(made, kind(SCPlayingCondition, {"animation_name": &"swim"})))
		expect_warning("Sprite has no animation called swim")
		sprite.free()


func test_a_sound_plays() -> void:
	for sound: Node in [AudioStreamPlayer.new(), AudioStreamPlayer2D.new(), AudioStreamPlayer3D.new()]:
		var radio := _under(stage, Node.new(), "Radio")
		var stream_id := _give_stream(sound)
		_under(radio, sound, "Sound")
		var made := asker(radio)
		var ended := kind(SCPlayingCondition, {"test": SCPlayingCondition.HAS_ENDED})
		_expect_answers(made, [[SCPlayingCondition.new(), false], [ended, true]], sound.get_class())
		sound.call("play")
		await frames(1)
		_expect_answers(made, [[SCPlayingCondition.new(), true], [ended, false], [kind(SCPlayingCondition, {"test": SCPlayingCondition.HAS_GOT_AS_FAR_AS, "fraction": 1.0}), false]], sound.get_class())
		sound.call("stop")
		_expect_answers(made, [[SCPlayingCondition.new(), false], [ended, true]], sound.get_class())
		radio.free()
		# The sound server lets go of a sound on its own clock.
		for i in 500:
			if not is_instance_id_valid(stream_id):
				break
			OS.delay_msec(2)
			await frames(1)


func test_an_animation_tree_stands_in_a_state() -> void:
	var hero := body("Hero")
	var player := _under(hero, AnimationPlayer.new(), "Moves") as AnimationPlayer
	var library := AnimationLibrary.new()
	var graph := AnimationNodeStateMachine.new()
	for name: StringName in [&"walk", &"jump"]:
		var animation := Animation.new()
		animation.length = 0.5
		library.add_animation(name, animation)
		var node := AnimationNodeAnimation.new()
		node.animation = name
		graph.add_node(name, node)
	player.add_animation_library(&"", library)
	var moves := _under(hero, AnimationTree.new(), "Tree") as AnimationTree
	moves.tree_root = graph
	moves.anim_player = ^"../Moves"
	moves.active = true
	var made := asker(hero)
	var walking := kind(SCPlayingCondition, {"node_path": ^"../Tree", "animation_name": &"walk"})
	var half := kind(SCPlayingCondition, {"node_path": ^"../Tree", "animation_name": &"walk", "test": SCPlayingCondition.HAS_GOT_AS_FAR_AS})
	var playback: AnimationNodeStateMachinePlayback = moves.get("parameters/playback")
	playback.start(&"walk")
	await frames(5)
	_expect_answers(made, [[walking, true], [half, false]], "walking")
	await frames(15)
	_expect_answers(made, [[walking, true], [half, true]], "half way")
	await frames(20)
	_expect_answers(made, [[kind(SCPlayingCondition, {"node_path": ^"../Tree", "test": SCPlayingCondition.HAS_ENDED}), true]], "at the end")
	playback.start(&"jump")
	await frames(3)
	_expect_answers(made, [[walking, false], [kind(SCPlayingCondition, {"node_path": ^"../Tree"}), true]], "jumping")
	expect(not ask(made, kind(SCPlayingCondition, {"node_path": ^"../Tree", "state_machine": "Attacks"})))
	expect_warning("Tree has no state machine Attacks, so the answer is no. Type the name of one in the tree under State Machine.")


func test_what_cannot_play_is_told() -> void:
	var made := asker(body("Stone"))
	expect(not ask(made, SCPlayingCondition.new()))
	expect_warning("nothing on Stone or under it plays an animation, a sound or a video, so the answer is no. Pick what plays under Node Path.")


func test_the_lines_read_like_sentences() -> void:
	var sword := ^"../../Sword"
	expect_line(kind(SCHasChildOfTypeCondition, {"type": "Sprite2D"}), "Self has a Sprite2D under it")
	expect_line(kind(SCHasChildOfTypeCondition, {"type": "Area2D", "recursive": false, "node_path": sword}), "Sword has an Area2D right under it")
	expect_line(kind(SCHasChildOfTypeCondition), "Self has a (pick one) under it")
	expect_line(kind(SCIsChildOfCondition, {"node_path": sword, "parent_path": ^"../../Hand"}), "Sword is under Hand")
	expect_line(kind(SCIsChildOfCondition, {"parent_path": ^"../../Hand", "recursive": false}), "Self is right under Hand")
	expect_line(kind(SCNodeCondition, {"node_path": sword}), "Sword is there")
	expect_line(kind(SCNodeCondition, {"node_path": sword, "test": SCNodeCondition.IS_IN_A_GROUP, "group": &"weapons"}), "Sword is in weapons")
	expect_line(kind(SCNodeCondition, {"node_path": sword, "test": SCNodeCondition.IS_IN_A_GROUP}), "Sword is in (pick one)")
	expect_line(kind(SCNodeCondition, {"test": SCNodeCondition.IS_VISIBLE}), "Self is visible")
	expect_line(kind(SCNodeCondition, {"test": SCNodeCondition.IS_ENABLED, "node_path_variable": &"target"}), "[target] is enabled")
	expect_line(kind(SCPlayingCondition, {"node_path": ^"../../Moves"}), "Moves is playing")
	expect_line(kind(SCPlayingCondition, {"node_path": ^"../../Moves", "animation_name": &"walk"}), "Moves is playing walk")
	expect_line(kind(SCPlayingCondition, {"node_path": ^"../../Moves", "test": SCPlayingCondition.HAS_ENDED}), "Moves has ended")
	expect_line(kind(SCPlayingCondition, {"node_path": ^"../../Moves", "test": SCPlayingCondition.HAS_GOT_AS_FAR_AS, "animation_name": &"walk"}), "Moves has got as far as 0.5 of walk")
	expect_line(kind(SCPlayingCondition, {"test": SCPlayingCondition.HAS_GOT_AS_FAR_AS}), "Self has got as far as 0.5 of what it plays")
	expect_line(kind(SCPropertyCondition, {"property": "position:y", "test": SCPropertyCondition.LESS, "value": 3}), "position:y of Self is below 3")
	expect_line(kind(SCPropertyCondition, {"property": "visible", "test": SCPropertyCondition.IS_TRUE, "node_path": sword}), "visible of Sword is true")
	expect_line(kind(SCPropertyCondition), "(pick one) of Self is 0")


func _under(parent: Node, child: Node, name: String) -> Node:
	child.name = name
	parent.add_child(child)
	return child


## What it held is left to the player alone.
func _give_stream(sound: Node) -> int:
	var stream := AudioStreamWAV.new()
	stream.data = PackedByteArray()
	stream.data.resize(44100)
	sound.set("stream", stream)
	return stream.get_instance_id()


func _expect_answers(of: SCMachine, rows: Array, when: String) -> void:
	for row: Array in rows:
		var asked: SCMachineCondition = row[0]
		expect_equal(ask(of, asked), row[1], "%s, %s" % [when, asked.shown_summary()])
