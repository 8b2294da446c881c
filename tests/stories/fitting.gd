extends Story
## What a variable's value becomes in a setting that needs another kind of value.


class Holder:
	extends SCMachineAction

	@export var flag: bool = true
	@export var count: int = 7
	@export var share: float = 0.5
	@export var words: String = "typed"
	@export var way: NodePath = ^"Typed"


class Trap:
	extends SCMachineAction

	var victim: SCMachine
	@export var spring: float = 0.0:
		set(value):
			spring = value
			if victim != null:
				victim.free()
	@export var again: float = 0.0


func test_what_fits_is_converted_and_what_does_not_leaves_what_was_typed_in() -> void:
	for row: Array in [
		[true, 0, false], [false, 0.5, true], [true, true, true],
		[7, 2.5, 3], [7, 2.4, 2], [7, -2.5, -3], [7, true, 1],
		[0.5, 3, 3.0], [0.5, false, 0.0],
		["typed", 3.0, "3"], ["typed", 0.25, "0.25"], ["typed", &"name", "name"], ["typed", null, ""],
		[&"typed", 4, &"4"],
		[Vector2(1, 2), Vector3(5, 6, 7), Vector2(5, 6)], [Vector3(1, 2, 3), Vector2(5, 6), Vector3(5, 6, 0)],
		[Vector2i(1, 2), Vector2(5.6, 6.2), Vector2i(6, 6)], [Vector3(1, 2, 3), Vector3i(4, 5, 6), Vector3(4, 5, 6)],
		[[], PackedInt32Array([1, 2]), [1, 2]], [PackedStringArray(), ["a"], PackedStringArray(["a"])],
		[null, "anything", "anything"],
		# A vector takes the place of a node.
		[Vector2(), body("Crate", Vector2(30, 40)), Vector2(30, 40)], [Vector3(), body("Crate", Vector2(30, 40)), Vector3(30, 40, 0)],
		[true, "yes"], [7, "8"], [0.5, "0.7"], [0.5, null], [0.5, Vector2()], [Vector2(1, 2), 4.0], [Vector3(), "here"], [Color.RED, "blue"], [[], {}],
	]:
		expect_equal(SCMachineAction.can_fit(row[0], row[1]), row.size() > 2, str(row))
		expect_equal(SCMachineAction.fitted_to(row[0], row[1]), row[-1] if row.size() > 2 else row[0], str(row))


func test_settings_are_read_from_variables() -> void:
	for row: Array in [
		# which are read from where, and what they are then
		[{&"count": &"health", &"flag": &"health"}, {"count": 3, "flag": true}],
		[{&"share": &"nowhere", &"words": &""}, {"share": 0.5, "words": "typed"}],
		[{&"share": &"health"}, {"share": 2.6}],
	]:
		var holder := kind(Holder, {"from_variables": row[0]})
		holder.read_variables(play([], {}, {"variables": {"health": 2.6}}))
		for name: String in row[1]:
			expect_equal(holder.get(name), row[1][name], name)
	# A setting of any type takes what it is given.
	var copy := set_var(&"copy", 0.0, {"value_variable": &"label"})
	expect_values(play(copy, {}, {"variables": {"label": "high", "copy": ""}}), {"copy": "high"})


func test_the_game_maker_is_told_once() -> void:
	var holder := kind(Holder, {"from_variables": {&"share": &"label"}})
	var guard := play([], {}, {"name": "Guard", "variables": {"label": "high"}})
	for times in 2:
		holder.read_variables(guard)
		expect_equal(holder.share, 0.5)
	expect_warning("Machine on Guard cannot use label for share, because label holds a String, and share needs a float. It used the value typed in instead. Pick a variable of the right kind in its Var list, or change what label holds.")
	guard.set_value("label", 0.75)
	holder.read_variables(guard)
	expect_equal(holder.share, 0.75)
	expect_debug_warning("set_value gave label a number, and it held words.")


func test_a_path_leads_to_the_node_a_variable_holds() -> void:
	var holder := kind(Holder, {"from_variables": {&"way": &"friend"}})
	var friend := body("Friend")
	var guard := play([], {}, {"under": body("Self"), "variables": [variable(&"friend", null)]})
	guard.set_value("friend", friend)
	holder.read_variables(guard)
	expect_equal(SCMachineAction.node_of(guard, holder.way), friend)
	friend.free()
	holder.read_variables(guard)
	expect_equal(holder.way, SCMachineAction.no_node())
	expect_equal(SCMachineAction.node_of(guard, holder.way), null, "an empty node variable is not the machine's own node")
	expect_equal(SCMachineAction.node_of(guard, ^""), guard.get_parent())
	holder.from_variables = {&"way": &""}
	holder.read_variables(guard)
	expect_equal(holder.way, ^"")


func test_reading_without_a_machine_is_an_error_and_nothing_else() -> void:
	var holder := kind(Holder, {"from_variables": {&"share": &"label"}})
	holder.read_variables(null)
	expect_error("Parameter \"p_machine\" is null.")
	expect_equal(holder.share, 0.5)


func test_a_setter_may_free_the_machine() -> void:
	var guard := play([], {}, {"variables": {"force": 3.0}})
	var trap := kind(Trap, {"from_variables": {&"spring": &"force", &"again": &"force"}, "victim": guard})
	trap.read_variables(guard)
	expect(not is_instance_valid(guard))
	expect_equal(trap.again, 0.0)
	trap.victim = null
