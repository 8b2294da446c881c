extends SceneTree
## What a script holds too long: a foe that has been freed, in a variable that says it is a node.


func _initialize() -> void:
	await process_frame
	var foe := Node2D.new()
	var post := SCMachine.new()
	foe.free()
	post.free()
	for got: Variant in [
		SCMachineAction.position_of(foe), SCMachineAction.node_of(post, ^".."), SCMachineAction.item_in(post, &"a"), SCMachine.machine_of(foe),
		SCMachine.machine_of_or_above(foe), SCMachineCondition.position_of(foe), SCMachineAction.kind_of(foe), SCMachineAction.position_of("door"),
	]:
		_expect(got == null)
	_expect(not SCMachineAction.is_2d(foe) and not SCMachineAction.has_a_place(foe))
	_expect(SCMachineAction.number_of(post, 2.0, &"a") == 2.0 and SCMachineAction.value_of(post, 3, &"a") == 3)
	_expect(SCMachineAction.keep_whole(post, &"a", 1.5) == 1.5)
	_expect(SCMachineAction.fill_in("{a}", post, foe) == "{a}")
	_expect(SCMachineAction.path_to(post, foe) == SCMachineAction.no_node())
	_expect(SCMachineAction.shown_settings(foe, []) == [] and SCMachineAction.naming_settings(foe) == [] and SCMachineAction.shown_line(foe) == "")
	SCMachineAction.set_position_of(foe, Vector2.ONE)
	SCMachineAction.no_place_words(foe, "Node")
	SCMachineAction._no_such_variable(post, &"a")
	SCMachineAction.suit_settings_2d(foe)
	SCMachine.move_node(foe, foe)
	SCMachineBase.native_action(0, SCWaitAction.new(), post, 0, 0.0)
	var own := SCMachine.new()
	own.set_target(foe)
	own.target = foe
	_expect(own.target == null)
	own.set_target(own)
	own.call(&"set_target", "door")
	_expect(own.target == own)
	own.free()
	print("survived")
	quit()


func _expect(holds: bool) -> void:
	if not holds:
		print("FAIL line %d" % get_stack()[1]["line"])
