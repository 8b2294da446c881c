extends Story
## What a variable's value becomes in a setting that needs another kind of value.


class Holder:
	extends SCMachineAction

	@export var flag: bool = true
	@export var count: int = 7
	@export var share: float = 0.5
	@export var words: String = "typed"
	@export var flat: Vector2 = Vector2(1, 2)
	@export var deep: Vector3 = Vector3(1, 2, 3)
	@export var tint: Color = Color.RED
	@export var way: NodePath = ^"Typed"

	func _summary() -> String:
		return "Hold"


func test_what_fits_is_converted() -> void:
	var rows: Array[Array] = [
		[true, 0, false], [false, 0.5, true], [true, true, true],
		[7, 2.5, 3], [7, 2.4, 2], [7, -2.5, -3], [7, true, 1],
		[0.5, 3, 3.0], [0.5, false, 0.0],
		["typed", 3.0, "3"], ["typed", 0.25, "0.25"], ["typed", &"name", "name"], ["typed", null, ""],
		[&"typed", 4, &"4"],
		[Vector2(1, 2), Vector3(5, 6, 7), Vector2(5, 6)], [Vector3(1, 2, 3), Vector2(5, 6), Vector3(5, 6, 0)],
		[Vector2i(1, 2), Vector2(5.6, 6.2), Vector2i(6, 6)], [Vector3(1, 2, 3), Vector3i(4, 5, 6), Vector3(4, 5, 6)],
		[[], PackedInt32Array([1, 2]), [1, 2]], [PackedStringArray(), ["a"], PackedStringArray(["a"])],
		[null, "anything", "anything"],
	]
	for row in rows:
		expect(SCMachineAction.can_fit(row[0], row[1]), "%s takes %s" % [row[0], row[1]])
		expect_equal(SCMachineAction.fitted_to(row[0], row[1]), row[2], "%s for %s" % [row[1], row[0]])


func test_what_does_not_fit_leaves_what_was_typed_in() -> void:
	var rows: Array[Array] = [
		[true, "yes"], [7, "8"], [0.5, "0.7"], [0.5, null], [0.5, Vector2()], [Vector2(1, 2), 4.0], [Vector3(), "here"], [Color.RED, "blue"], [[], {}],
	]
	for row in rows:
		expect(not SCMachineAction.can_fit(row[0], row[1]), "%s does not take %s" % [row[0], row[1]])
		expect_equal(SCMachineAction.fitted_to(row[0], row[1]), row[0])


func test_a_vector_takes_the_place_of_a_node() -> void:
	var crate := body("Crate")
	crate.position = Vector2(30, 40)
	expect_equal(SCMachineAction.fitted_to(Vector2(), crate), Vector2(30, 40))
	expect_equal(SCMachineAction.fitted_to(Vector3(), crate), Vector3(30, 40, 0))


func test_the_game_maker_is_told_once() -> void:
	var holder := Holder.new()
	holder.from_variables = {&"share": &"label"}
	var guard := start(machine([state("Idle")], {"name": "Guard", "variables": {"label": "high"}}))
	holder.read_variables(guard)
	expect_equal(holder.share, 0.5)
	expect_warning("SCMachineAction".trim_prefix("SC").trim_suffix("Action") + " on Guard cannot use label for share, because label holds a String, and share needs a float. It used the value typed in instead. Pick a variable of the right kind in its Var list, or change what label holds.")
	holder.read_variables(guard)
	guard.set_value("label", 0.75)
	holder.read_variables(guard)
	expect_equal(holder.share, 0.75)


func test_a_number_is_rounded_without_a_word() -> void:
	var holder := Holder.new()
	holder.from_variables = {&"count": &"health", &"flag": &"health"}
	var guard := start(machine([state("Idle")], {"variables": {"health": 2.6}}))
	holder.read_variables(guard)
	expect_equal(holder.count, 3)
	expect_equal(holder.flag, true)


func test_a_variable_that_is_not_there_leaves_what_was_typed_in() -> void:
	var holder := Holder.new()
	holder.from_variables = {&"share": &"nowhere", &"words": &""}
	var guard := start(machine([state("Idle")]))
	holder.share = 0.25
	holder.read_variables(guard)
	expect_equal(holder.share, 0.25)
	expect_equal(holder.words, "typed")


func test_a_path_leads_to_the_node_a_variable_holds() -> void:
	var holder := Holder.new()
	holder.from_variables = {&"way": &"friend"}
	var friend := body("Friend")
	var guard := start(machine([state("Idle")], {"under": body("Self"), "variables": [variable(&"friend", null)]}))
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


func test_a_setting_of_any_type_takes_what_it_is_given() -> void:
	var copy := set_var(&"copy", 0.0)
	copy.set(&"value_variable", &"label")
	var guard := start(machine([state("Idle", [copy])], {"variables": {"label": "high", "copy": ""}}))
	expect_values(guard, {"copy": "high"})


func test_reading_without_a_machine_is_an_error_and_nothing_else() -> void:
	var holder := Holder.new()
	holder.from_variables = {&"share": &"label"}
	holder.read_variables(null)
	expect_error("Parameter \"p_machine\" is null.")
	expect_equal(holder.share, 0.5)


func test_a_setter_may_free_the_machine() -> void:
	var trap := Trap.new()
	trap.from_variables = {&"spring": &"force", &"again": &"force"}
	var guard := start(machine([state("Idle")], {"variables": {"force": 3.0}}))
	trap.victim = guard
	trap.read_variables(guard)
	expect(not is_instance_valid(guard))
	expect_equal(trap.again, 0.0)
	trap.victim = null


class Trap:
	extends SCMachineAction

	var victim: SCMachine
	@export var spring: float = 0.0:
		set(value):
			spring = value
			if victim != null:
				victim.free()
	@export var again: float = 0.0
