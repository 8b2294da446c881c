extends Story
## Conditions about a node: where in the tree it is, how it stands, what it plays.


func test_a_node_has_a_kind_of_node_under_it() -> void:
	var car := body("Car")
	var seat := body("Seat", Vector2.ZERO, car)
	var horn := add(AudioStreamPlayer.new(), "Horn", {"under": seat})
	var made := asker(car)
	add(StateTag.new(), "Sign", {"under": seat, "machine": made})
	for row: Array in [
		["Node2D", true, true], [" Node2D ", false, true], ["AudioStreamPlayer", true, true], ["AudioStreamPlayer", false, false],
		["Label", true, true], ["StateTag", true, true], ["StateTag", false, false], ["SCMachine", false, true], ["Sprite2D", true, false], ["Player", true, false],
	]:
		expect_answers(made, [[kind(SCHasChildOfTypeCondition, {"type": row[0], "recursive": row[1]}), row[2]]], str(row))
	expect_answers(made, [[kind(SCHasChildOfTypeCondition, {"type": "AudioStreamPlayer", "node_path": ^"../Seat", "recursive": false}), true]])
	horn.queue_free()
	expect_answers(made, [[kind(SCHasChildOfTypeCondition, {"type": "AudioStreamPlayer"}), false]])
	# The type may change in a visit.
	var asked := kind(SCHasChildOfTypeCondition, {"type": "Label"})
	var memory := {}
	expect(ask(made, asked, memory))
	asked.type = "Sprite2D"
	expect(not ask(made, asked, memory))


func test_a_crate_rides_on_the_lift() -> void:
	var crate := body("Crate", Vector2.ZERO, body("Floor", Vector2.ZERO, body("Lift")))
	var made := asker(crate)
	expect_answers(made, [
		[kind(SCIsChildOfCondition, {"parent_path": ^"../../../../Lift"}), true],
		[kind(SCIsChildOfCondition, {"parent_path": ^"../../../../Lift", "recursive": false}), false],
		[kind(SCIsChildOfCondition, {"parent_path": ^"../../../Floor", "recursive": false}), true],
		[kind(SCIsChildOfCondition, {"node_path": ^".", "recursive": false}), true],
	])
	crate.reparent(stage)
	expect_answers(made, [[kind(SCIsChildOfCondition, {"parent_path": ^"../../Lift"}), false]])


func test_a_node_is_there_until_it_goes() -> void:
	var enemy := body("Enemy")
	var made := asker(stage, {"variables": {&"target": null}})
	var there := kind(SCNodeCondition, {"node_path": ^"../Enemy"})
	var held := kind(SCNodeCondition, {"node_path_variable": &"target"})
	expect_answers(made, [[there, true], [held, false], [kind(SCNodeCondition), true]])
	made.set_value(&"target", enemy)
	expect_answers(made, [[held, true]])
	stage.remove_child(enemy)
	expect_answers(made, [[there, false], [held, false]], "out of the tree")
	stage.add_child(enemy)
	enemy.queue_free()
	expect_answers(made, [[there, false], [held, false]], "on its way out")
	await frames(1)
	expect_answers(made, [[there, false], [held, false]], "gone")


func test_a_node_is_in_a_group() -> void:
	var enemy := body("Enemy")
	var made := asker(enemy)
	for is_enemy: bool in [false, true]:
		if is_enemy:
			enemy.add_to_group(&"enemies")
		expect_answers(made, [[kind(SCNodeCondition, {"test": SCNodeCondition.IS_IN_A_GROUP, "group": &"enemies"}), is_enemy]])


func test_a_node_is_visible() -> void:
	var made := asker()
	for node: Node in [Node2D.new(), Node3D.new(), Control.new(), CanvasLayer.new(), Window.new()]:
		var above := add(node, "Above%s" % node.get_class())
		var shown := node if node is CanvasLayer or node is Window else add(node.duplicate(), "Shown", {"under": above})
		var asked := kind(SCNodeCondition, {"test": SCNodeCondition.IS_VISIBLE, "node_path": made.get_path_to(shown)})
		expect_answers(made, [[asked, true]])
		above.call("hide")
		expect_answers(made, [[asked, false]])
		above.call("show")
		shown.call("hide")
		expect_answers(made, [[asked, false]])


func test_a_node_is_enabled() -> void:
	var lamp := body("Lamp")
	var made := asker()
	var enabled := kind(SCNodeCondition, {"test": SCNodeCondition.IS_ENABLED, "node_path": ^"../Lamp"})
	expect_answers(made, [[enabled, true]])
	lamp.process_mode = Node.PROCESS_MODE_DISABLED
	expect_answers(made, [[enabled, false]])
	lamp.process_mode = Node.PROCESS_MODE_INHERIT
	tree.paused = true
	expect_answers(made, [[enabled, false]])
	tree.paused = false
	expect_answers(made, [[enabled, true]])


func test_properties_compare_by_every_test() -> void:
	var box := body("Box", Vector2(30, 40))
	box.scale = Vector2(2, 2)
	box.modulate = Color(1, 1, 1, 0.5)
	box.z_index = 3
	var deep := body_3d("Deep", Vector3(2, 2, 2))
	var t := SCPropertyCondition
	var made := asker(box)
	for row: Array in [
		["z_index", t.EQUALS, 3, true], ["z_index", t.EQUALS, 3.0, true], ["z_index", t.NOT_EQUALS, 3, false],
		["z_index", t.GREATER, 2, true], ["z_index", t.GREATER, 3, false], ["z_index", t.GREATER_OR_EQUAL, 3, true],
		["z_index", t.LESS, 4, true], ["z_index", t.LESS, 3, false], ["z_index", t.LESS_OR_EQUAL, 3, true],
		["position:x", t.EQUALS, 30.0, true], ["position:y", t.LESS, 40, false],
		["position", t.EQUALS, Vector2(30, 40), true], ["position", t.EQUALS, Vector2(30, 41), false],
		["position", t.GREATER, 49, true], ["position", t.GREATER, 51.0, false], ["position", t.LESS_OR_EQUAL, Vector2(60, 80), true],
		["scale", t.EQUALS, 2.0, true], ["scale", t.EQUALS, 3, false], ["scale", t.NOT_EQUALS, 2, false],
		["modulate:a", t.LESS, 1.0, true], ["name", t.EQUALS, "Box", true], ["name", t.GREATER, "Apple", true],
		["visible", t.IS_TRUE, null, true], ["visible", t.IS_FALSE, null, false], ["material", t.IS_TRUE, null, false],
		["name", t.GREATER, 3, false],
	]:
		expect_answers(made, [[kind(t, {"property": row[0], "test": row[1], "value": row[2]}), row[3]]])
	for row: Array in [[t.EQUALS, 2, true], [t.EQUALS, 3, false], [t.LESS, 4, true], [t.LESS, 3, false]]:
		expect_answers(made, [[kind(t, {"node_path": made.get_path_to(deep), "property": "position", "test": row[0], "value": row[1]}), row[2]]])


func test_a_property_meets_a_variable() -> void:
	var box := body("Box")
	var above := kind(SCPropertyCondition, {"property": "position:y", "test": SCPropertyCondition.GREATER, "value_variable": &"line"})
	var made := play(watch(above), {"yes": "Below"}, {"under": box, "variables": {&"line": 100.0}})
	await expect_later(made, 0.04, "Work")
	box.position.y = 101.0
	await expect_later(made, 0.04, "Below")


func test_an_animation_plays_and_ends() -> void:
	var hero := body("Hero")
	var player := _moves(hero)
	var made := asker(hero)
	# playing, walking, ended, the jump has ended, half of it is over
	await _expect_play(made, [false, false, false, false, false], "not begun")
	player.play(&"walk")
	await _expect_play(made, [true, true, false, false, false], "begun", 5)
	await _expect_play(made, [true, true, false, false, true], "past the half", 15)
	await _expect_play(made, [false, false, true, false, true], "at the end", 15)
	player.stop()
	await _expect_play(made, [false, false, false, false, false], "stopped")
	player.play(&"jump")
	await frames(20)
	player.pause()
	await _expect_play(made, [false, false, false, false, false], "paused")
	player.play_backwards(&"jump")
	await _expect_play(made, [false, false, true, true, true], "backwards to its beginning", 40)


func test_a_sprite_plays_and_ends() -> void:
	for sprite: Node in [AnimatedSprite2D.new(), AnimatedSprite3D.new()]:
		var drawn := SpriteFrames.new()
		drawn.set_animation_loop(&"default", false)
		drawn.set_animation_speed(&"default", 20.0)
		drawn.add_animation(&"walk")
		for i in 4:
			drawn.add_frame(&"default", PlaceholderTexture2D.new())
		add(sprite, "Sprite", {"sprite_frames": drawn})
		var made := asker(sprite)
		sprite.call("play", &"default")
		await _expect_play(made, [true, false, false, false, false], "begun", 3)
		await _expect_play(made, [true, false, false, false, true], "past the half", 6)
		await _expect_play(made, [false, false, true, false, true], "at the end", 8)
		expect(not ask(made, kind(SCPlayingCondition, {"animation_name": &"swim"})))
		expect_warning("Sprite has no animation called swim")
		sprite.free()


func test_a_sound_plays() -> void:
	for sound: Node in [AudioStreamPlayer.new(), AudioStreamPlayer2D.new(), AudioStreamPlayer3D.new()]:
		var radio := add(Node.new(), "Radio")
		var stream_id := _give_stream(sound)
		add(sound, "Sound", {"under": radio})
		var made := asker(radio)
		for plays: bool in [false, true, false]:
			sound.call("play" if plays else "stop")
			await frames(1)
			expect_answers(made, [
				[kind(SCPlayingCondition), plays],
				[kind(SCPlayingCondition, {"test": SCPlayingCondition.HAS_ENDED}), not plays],
				[kind(SCPlayingCondition, {"test": SCPlayingCondition.HAS_GOT_AS_FAR_AS, "fraction": 0.0}), plays],
				[kind(SCPlayingCondition, {"test": SCPlayingCondition.HAS_GOT_AS_FAR_AS, "fraction": 1.0}), false],
			], sound.get_class())
		radio.free()
		# The sound server lets go of a sound on its own clock.
		for i in 500:
			if not is_instance_id_valid(stream_id):
				break
			OS.delay_msec(2)
			await frames(1)


func test_an_animation_tree_stands_in_a_state() -> void:
	var hero := body("Hero")
	_moves(hero)
	var graph := AnimationNodeStateMachine.new()
	for name: StringName in [&"walk", &"jump"]:
		var node := AnimationNodeAnimation.new()
		node.animation = name
		graph.add_node(name, node)
	var moves := add(AnimationTree.new(), "Tree", {"under": hero, "tree_root": graph, "anim_player": ^"../Moves", "active": true})
	var made := asker(hero)
	var playback: AnimationNodeStateMachinePlayback = moves.get("parameters/playback")
	playback.start(&"walk")
	await _expect_play(made, [true, true, false, false, false], "walking", 5, ^"../Tree")
	await _expect_play(made, [true, true, false, false, true], "half way", 15, ^"../Tree")
	await _expect_play(made, [true, true, true, false, true], "at the end", 20, ^"../Tree")
	playback.start(&"jump")
	await _expect_play(made, [true, false, false, false, false], "jumping", 3, ^"../Tree")
	moves.set(&"active", false)
	await _expect_play(made, [false, false, false, false, false], "switched off", 0, ^"../Tree")


func test_what_is_wrong_is_told_once() -> void:
	var box := body("Box")
	_moves(box)
	add(AnimationTree.new(), "Tree", {"under": box})
	body("Stone")
	add(Timer.new(), "Clock")
	for row: Array in [
		[SCHasChildOfTypeCondition, {}, "no kind of node is picked, so the answer is no. Pick one under Type."],
		[SCHasChildOfTypeCondition, {"type": "Wheel"}, "there is no kind of node called Wheel, so the answer is no. Pick one under Type."],
		[SCIsChildOfCondition, {}, "it asks whether Box is under itself, so the answer is no. Pick another node under Node Path or Parent Path."],
		[SCIsChildOfCondition, {"parent_path": ^"../../Lift"}, "Is Child Of on Machine: there is no node at ../../Lift. Pick one under Parent Path."],
		[SCIsChildOfCondition, {"node_path": ^"../../Lift"}, "Is Child Of on Machine: there is no node at ../../Lift. Pick one under Node Path."],
		[SCNodeCondition, {"test": SCNodeCondition.IS_IN_A_GROUP}, "no group is named, so the answer is no. Type one under Group."],
		[SCNodeCondition, {"test": SCNodeCondition.IS_VISIBLE, "node_path": ^"../../Clock"}, "Node on Machine: Clock is a Timer, not a node that can be seen. Pick a node that can be seen under Node Path."],
		[SCNodeCondition, {"test": SCNodeCondition.IS_ENABLED, "node_path": ^"../../Lamp"}, "Node on Machine: there is no node at ../../Lamp. Pick one under Node Path."],
		[SCNodeCondition, {"test": SCNodeCondition.IS_ENABLED, "node_path_variable": &"target"}, "the variable target holds no node, so the answer is no. Put a node into it, or pick one under Node Path."],
		[SCPropertyCondition, {}, "no property is named, so the answer is no. Type one under Property."],
		[SCPropertyCondition, {"property": "helth"}, "Property on Machine: Box has no property helth, so the answer is no. Check the name under Property."],
		[SCPropertyCondition, {"property": "position:w"}, "Box has no property position:w"],
		[SCPropertyCondition, {"property": "material:albedo_color"}, "Box has no property material:albedo_color"],
		[SCPropertyCondition, {"property": "x", "node_path": ^"../../Lift"}, "Property on Machine: there is no node at ../../Lift."],
		[SCPlayingCondition, {"animation_name": &"swim"}, "Playing on Machine: Moves has no animation called swim, so the answer is no. Check the name under Animation Name."],
		[SCPlayingCondition, {"node_path": ^"../Tree", "state_machine": "Attacks"}, "Tree has no state machine Attacks, so the answer is no. Type the name of one in the tree under State Machine."],
		[SCPlayingCondition, {"node_path": ^"../Tree", "animation_name": &"walk"}, "Tree has no state machine of its own, so the answer is no."],
		[SCPlayingCondition, {"node_path": ^"../../Stone"}, "nothing on Stone or under it plays an animation, a sound or a video, so the answer is no. Pick what plays under Node Path."],
	]:
		expect_warns(kind(row[0], row[1]), row[2], {"under": box, "variables": {"target": null}})


func test_the_lines_read_like_sentences() -> void:
	var sword := ^"../../Sword"
	var moves := ^"../../Moves"
	expect_lines(SCHasChildOfTypeCondition, {
		"Self has a Sprite2D under it": {"type": "Sprite2D"},
		"Sword has an Area2D right under it": {"type": "Area2D", "recursive": false, "node_path": sword},
		"Self has a (pick one) under it": {},
	})
	expect_lines(SCIsChildOfCondition, {
		"Sword is under Hand": {"node_path": sword, "parent_path": ^"../../Hand"},
		"Self is right under Hand": {"parent_path": ^"../../Hand", "recursive": false},
	})
	expect_lines(SCNodeCondition, {
		"Sword is there": {"node_path": sword},
		"Sword is in weapons": {"node_path": sword, "test": SCNodeCondition.IS_IN_A_GROUP, "group": &"weapons"},
		"Sword is in (pick one)": {"node_path": sword, "test": SCNodeCondition.IS_IN_A_GROUP},
		"Self is visible": {"test": SCNodeCondition.IS_VISIBLE},
		"[target] is enabled": {"test": SCNodeCondition.IS_ENABLED, "node_path_variable": &"target"},
	})
	expect_lines(SCPlayingCondition, {
		"Moves is playing": {"node_path": moves},
		"Moves is playing walk": {"node_path": moves, "animation_name": &"walk"},
		"Moves has ended": {"node_path": moves, "test": SCPlayingCondition.HAS_ENDED},
		"Moves has got as far as 0.5 of walk": {"node_path": moves, "test": SCPlayingCondition.HAS_GOT_AS_FAR_AS, "animation_name": &"walk"},
		"Self has got as far as 0.5 of what it plays": {"test": SCPlayingCondition.HAS_GOT_AS_FAR_AS},
	})
	expect_lines(SCPropertyCondition, {
		"position:y of Self is below 3": {"property": "position:y", "test": SCPropertyCondition.LESS, "value": 3},
		"position:y of Self is above [line]": {"property": "position:y", "test": SCPropertyCondition.GREATER, "value_variable": &"line"},
		"visible of Sword is true": {"property": "visible", "test": SCPropertyCondition.IS_TRUE, "node_path": sword},
		"(pick one) of Self is 0": {},
	})


## The answers to whether it plays, whether it is the walk that does, whether it has ended, whether the jump has, and
## whether half of it is over.
func _expect_play(made: SCMachine, wanted: Array[bool], when: String, after: int = 0, path: NodePath = ^"") -> void:
	await frames(after)
	var rows: Array[Dictionary] = [
		{}, {"animation_name": &"walk"}, {"test": SCPlayingCondition.HAS_ENDED},
		{"test": SCPlayingCondition.HAS_ENDED, "animation_name": &"jump"}, {"test": SCPlayingCondition.HAS_GOT_AS_FAR_AS, "fraction": 0.5},
	]
	# A kind of sprite that has never heard of a jump.
	if made.get_parent() is AnimatedSprite2D or made.get_parent() is AnimatedSprite3D:
		rows[3]["animation_name"] = &"walk"
	for i in rows.size():
		expect_answers(made, [[kind(SCPlayingCondition, rows[i].merged({"node_path": path})), wanted[i]]], when)


func _moves(hero: Node) -> AnimationPlayer:
	var library := AnimationLibrary.new()
	for name: StringName in [&"walk", &"jump"]:
		var animation := Animation.new()
		animation.length = 0.5
		library.add_animation(name, animation)
	var player: AnimationPlayer = add(AnimationPlayer.new(), "Moves", {"under": hero})
	player.add_animation_library(&"", library)
	return player


## What it held is left to the player alone.
func _give_stream(sound: Node) -> int:
	var stream := AudioStreamWAV.new()
	stream.data = PackedByteArray()
	stream.data.resize(44100)
	sound.set("stream", stream)
	return stream.get_instance_id()
