extends RefCounted
## Checks the C++ bindings from the side of scripts: who owns what after a call, what crosses the border, and what happens
## when it must not. The classes it calls are those of the small extension beside it, which exists only for this and has to
## be in the project's list of extensions when the engine starts: scripts cannot extend the classes of one that comes later.
##
## Make one, call [method run], and print what it returns. Some checks provoke errors on purpose, since a wrong argument has
## to give one and not a crash: while they do, [member provoking_errors] tells the caller's logger not to count them. Every
## other error or warning is a failure here too.

const MATH_ROUNDS: int = 40
const MATH_SEED: int = 20260417

## True while a check expects the engine to report errors.
static var provoking_errors: bool = false

var _failures: Array[String] = []
var _current: String = ""
var _values: RefCounted
var _random: RandomNumberGenerator = RandomNumberGenerator.new()
var _tests_run: int = 0
var _catcher: ErrorCatcher


class ErrorCatcher:
	extends Logger

	var is_provoking: bool = false
	var provoked: PackedStringArray = []
	var unexpected: PackedStringArray = []

	func _log_error(
		_function: String,
		file: String,
		line: int,
		code: String,
		rationale: String,
		_editor_notify: bool,
		_error_type: int,
		_script_backtraces: Array[ScriptBacktrace]
	) -> void:
		var message: String = "%s %s (%s:%d)" % [code, rationale, file, line]
		if is_provoking:
			provoked.append(message)
		else:
			unexpected.append(message)


## Runs every check and returns a line for each that failed.
func run() -> Array[String]:
	_failures.clear()
	_tests_run = 0
	_current = "extension"
	_expect(ClassDB.class_exists(&"BindingsValues"), "the classes of the test extension are not there")
	if not _failures.is_empty():
		return _failures
	for method: Dictionary in (get_script() as Script).get_script_method_list():
		var test: String = method["name"]
		if test.begins_with("test_"):
			_run_test(test)
	_current = "afterwards"
	_same(_live(), 0, "counted objects left over")
	return _failures


## How many tests the last [method run] went through.
func get_tests_run() -> int:
	return _tests_run


func _run_test(test: String) -> void:
	_catcher = ErrorCatcher.new()
	OS.add_logger(_catcher)
	_current = test
	_tests_run += 1
	_values = _make(&"BindingsValues")
	call(test)
	_values = null
	OS.remove_logger(_catcher)
	for message: String in _catcher.unexpected:
		_expect(false, "unexpected: " + message)


func _expect(condition: bool, what: String) -> void:
	if not condition:
		_failures.append("%s: %s" % [_current, what])


func _same(actual: Variant, expected: Variant, what: String) -> void:
	var equal: bool = typeof(actual) == typeof(expected) and actual == expected
	_expect(equal, "%s: expected %s, got %s" % [what, str(expected), str(actual)])


func _make(type: StringName) -> RefCounted:
	return ClassDB.instantiate(type) as RefCounted


func _live() -> int:
	return ClassDB.class_call_static(&"BindingsCounted", &"get_live")


## The errors that the engine reports while the callable runs.
func _errors_of(provoke: Callable) -> PackedStringArray:
	provoking_errors = true
	_catcher.is_provoking = true
	_catcher.provoked.clear()
	provoke.call()
	_catcher.is_provoking = false
	provoking_errors = false
	return _catcher.provoked


func _expect_error(provoke: Callable, what: String) -> void:
	_expect(not _errors_of(provoke).is_empty(), "no engine error for " + what)


func _script_on(base: String, body: String) -> GDScript:
	var script: GDScript = GDScript.new()
	script.source_code = "extends %s\n%s" % [base, body]
	_same(script.reload(), OK, "the script parses")
	return script


func test_native_checks_of_variant() -> void:
	for failure: String in _values.call(&"check_variants") as PackedStringArray:
		_expect(false, failure)


func test_a_reference_is_given_back_after_every_kind_of_call() -> void:
	var counted: RefCounted = RefCounted.new()
	_values.call(&"echo", counted)
	_values.call(&"echo_ref", counted)
	_values.call(&"echo_object", counted)
	_values.callv(&"echo_ref", [counted])
	Callable(_values, &"echo_ref").call(counted)
	_values.call(&"churn", counted, 20)
	_same(counted.get_reference_count(), 1, "references after the calls")
	var same: RefCounted = _values.call(&"echo_ref", counted)
	_expect(same == counted, "the same object comes back")
	_same(counted.get_reference_count(), 2, "references with the result held")
	same = null
	_values.call(&"hold", counted)
	_same(counted.get_reference_count(), 2, "references while C++ holds one")
	_values.call(&"hold", null)
	_same(counted.get_reference_count(), 1, "references when C++ has let go")
	_values.call(&"hold_value", [counted, { "again": counted }])
	_same(counted.get_reference_count(), 3, "references inside containers that C++ holds")
	_values.call(&"hold_value", null)
	_same(counted.get_reference_count(), 1, "references when the containers are gone")


func test_an_object_of_ours_is_freed_exactly_once() -> void:
	_same(_live(), 0, "none live before")
	var made: RefCounted = _values.call(&"make_counted", 7)
	_same(_live(), 1, "one lives")
	_same(made.get_reference_count(), 1, "references to a new object")
	_same(made.get(&"number"), 7, "its property")
	_same(_values.call(&"number_of", made), 7, "C++ gets it back as its own class")
	var instantiated: RefCounted = _make(&"BindingsCounted")
	_same(instantiated.get_reference_count(), 1, "references to an instantiated object")
	_same(_live(), 2, "two live")
	instantiated = null
	_same(_live(), 1, "the second is freed")
	_values.call(&"hold", made)
	made = null
	_same(_live(), 1, "it lives while C++ holds it")
	_values.call(&"hold", null)
	_same(_live(), 0, "and is freed when that ends")
	for i: int in 50:
		_values.call(&"make_counted", i)
	_same(_live(), 0, "results that nobody takes are freed")
	_values.call(&"hold_value", _values.call(&"make_counted", 1))
	_values = null
	_same(_live(), 0, "what a C++ object held goes with it")


func test_a_freed_object_is_null_to_cpp() -> void:
	var node: Node = Node.new()
	_values.call(&"hold_value", node)
	_expect(_values.call(&"holds_live_object"), "a living node is seen")
	_expect(_values.call(&"echo_object", node) == node, "and comes back")
	node.free()
	_expect(not _values.call(&"holds_live_object"), "a freed node is null")
	_expect(_values.call(&"echo_object", null) == null, "null stays null")


func test_simple_values_cross_unchanged() -> void:
	for value: Variant in [
		null, true, false, 0, -1, 9223372036854775807, -9223372036854775807 - 1, 0.1, -INF, "", "grüße 🙂", &"", &"name", ^"A/B:c", ^"",
		Vector2(1, 2), Vector2i(3, 4), Rect2(1, 2, 3, 4), Rect2i(1, 2, 3, 4), Vector3(1, 2, 3), Vector3i(1, 2, 3), Vector4(1, 2, 3, 4),
		Vector4i(1, 2, 3, 4), Transform2D(0.5, Vector2(1, 2)), Plane(Vector3.UP, 2), Quaternion(0, 1, 0, 0), AABB(Vector3.ONE, Vector3.ONE),
		Basis.FLIP_X, Transform3D(Basis.FLIP_Y, Vector3.ONE), Projection.IDENTITY, Color(0.1, 0.2, 0.3, 0.4), RID(), [1, [2, "three"]], { "a": { 1: 2 } },
		PackedByteArray([1, 2]), PackedStringArray(["a", "b"]), Callable(), Signal(), _values.happened as Signal, Callable(_values, &"note"),
	]:
		_same(_values.call(&"echo", value), value, "echo")
	for text: String in ["", "plain", "grüße 🙂", "\t\n"]:
		_same(_values.call(&"echo_string", text), text, "a string")
		_same(_values.call(&"echo_name", StringName(text)), StringName(text), "a name")
	_same(_values.call(&"echo_path", ^"A/B:c:d"), ^"A/B:c:d", "a path")
	_same(_values.call(&"as_small", -128), -128, "a small number")
	_same(_values.call(&"as_single", 0.5), 0.5, "a single-precision number")


func test_containers_are_shared_or_copied_as_in_the_engine() -> void:
	var list: Array = [1]
	_values.call(&"append_to", list, "added")
	_same(list, [1, "added"], "C++ appends to the caller's array")
	_expect(is_same(_values.call(&"echo", list), list), "an array comes back as the same array")
	_same(_values.call(&"reversed", [1, "b", null]), [null, "b", 1], "a new array")
	_same(_values.call(&"inverted", { "a": 1, 2: &"b" }), { 1: "a", &"b": 2 }, "a new dictionary")
	var packed: PackedInt32Array = [1, 2]
	for value: Variant in [
		PackedByteArray([1, 2]), packed, PackedInt64Array([1, 2]), PackedFloat32Array([0.5]), PackedFloat64Array([0.1]), PackedStringArray(["a", "ü"]),
		PackedVector2Array([Vector2.ONE]), PackedVector3Array([Vector3.ONE]), PackedColorArray([Color.RED]), PackedVector4Array([Vector4.ONE]),
	]:
		_same(_values.call(&"doubled", value), value + value, type_string(typeof(value)))
	_same(packed, PackedInt32Array([1, 2]), "the caller's packed array is left alone")


func test_typed_containers() -> void:
	var numbers: Array[int] = [1, 2, 3]
	_same(_values.call(&"sum", numbers), 6, "a typed array")
	_same(_values.call(&"sum", [4, 5]), 9, "an untyped array whose elements fit")
	var parent: Node = Node.new()
	parent.add_child(Node.new())
	parent.add_child(Node2D.new())
	var children: Array = _values.call(&"children_of", parent)
	_same(children.size(), 2, "children")
	_expect(children.is_typed() and children.get_typed_class_name() == &"Node", "the result is an array of nodes")
	var typed: Array[Node] = []
	typed.assign(children)
	_expect(not _values.call(&"is_refused", typed), "an array of nodes is taken")
	parent.free()
	_same(_values.call(&"children_of", null), [] as Array[Node], "children of nothing")
	var lengths: Dictionary = _values.call(&"lengths", [&"one", &"three"] as Array[StringName])
	_same(lengths.size(), 2, "entries")
	_same(lengths[&"three"], 5, "an entry")
	_expect(lengths.is_typed_key() and lengths.get_typed_key_builtin() == TYPE_STRING_NAME, "keys are typed")
	_expect(lengths.get_typed_value_builtin() == TYPE_INT, "values are typed")
	_expect_error(func() -> void: _values.call(&"sum", ["a", "b"]), "an array with elements of another type")
	_expect_error(func() -> void: _values.call(&"is_refused", [RefCounted.new()]), "an array of objects of another class")
	var arguments: Array = _method(&"BindingsValues", &"children_of")["args"]
	_same((arguments[0] as Dictionary)["class_name"], &"Node", "the class of an object argument")
	var returned: Dictionary = _method(&"BindingsValues", &"children_of")["return"]
	_same(returned["type"], TYPE_ARRAY, "the type of the result")
	_same(returned["hint"], PROPERTY_HINT_ARRAY_TYPE, "its hint")
	_same(returned["hint_string"], "Node", "its element type")
	returned = _method(&"BindingsValues", &"lengths")["return"]
	_same(returned["hint_string"], "StringName;int", "the types of a dictionary")


func _method(type: StringName, name: StringName) -> Dictionary:
	for method: Dictionary in ClassDB.class_get_method_list(type, true):
		if method["name"] == name:
			return method
	_expect(false, "%s has no method %s" % [type, name])
	return { "args": [], "return": {} }


func test_default_variable_and_static_arguments() -> void:
	_same(_values.call(&"with_defaults", 3), "3 none 0.50 0", "all defaults")
	_same(_values.call(&"with_defaults", 3, "some"), "3 some 0.50 0", "one given")
	_same(_values.call(&"with_defaults", 3, "some", 2.0, [1]), "3 some 2.00 1", "all given")
	var described: Dictionary = _method(&"BindingsValues", &"with_defaults")
	_same((described["default_args"] as Array).size(), 3, "the number of defaults")
	_same(_values.call(&"join_all"), "", "no argument")
	_same(_values.call(&"join_all", 1, "b", &"c", [2]), "1,b,c,[2]", "four arguments")
	_expect(int(_method(&"BindingsValues", &"join_all")["flags"]) & METHOD_FLAG_VARARG != 0, "it is known to take any number")
	_same(ClassDB.class_call_static(&"BindingsValues", &"add", 2, 3), 5, "a static method")
	_same(_values.call(&"next_season", 1), 2, "an enumeration")
	_same(ClassDB.class_get_enum_constants(&"BindingsValues", &"Season"), PackedStringArray(["SPRING", "SUMMER", "AUTUMN", "WINTER"]), "its names")
	_same(((_method(&"BindingsValues", &"next_season")["args"] as Array)[0] as Dictionary)["class_name"], &"BindingsValues.Season", "its type")
	_same(_values.call(&"with_trait", 1, 2), 3, "flags")
	_expect(ClassDB.is_class_enum_bitfield(&"BindingsValues", &"Trait"), "flags are known as such")


func test_wrong_arguments_are_errors_and_not_crashes() -> void:
	_expect_error(func() -> void: _values.callv(&"number_of", ["text"]), "a text for an object")
	_expect_error(func() -> void: _values.callv(&"sum", [3]), "a number for an array")
	_expect_error(func() -> void: _values.callv(&"as_small", ["text"]), "a text for a number")
	_expect_error(func() -> void: _values.callv(&"as_small", []), "too few arguments")
	_expect_error(func() -> void: _values.callv(&"as_small", [1, 2]), "too many arguments")
	_expect_error(func() -> void: _values.callv(&"with_defaults", []), "too few arguments beside defaults")
	_expect_error(func() -> void: _values.callv(&"join_all", ["a", null]), "an argument that the method refuses")
	_expect_error(func() -> void: _values.callv(&"no_such_method", []), "a method that is not there")
	_same(_values.call(&"number_of", null), -1, "null arrives as null")
	_expect_error(func() -> void: _values.callv(&"number_of", [RefCounted.new()]), "an object of another class")


func test_a_custom_callable_outlives_its_target() -> void:
	var node: Node = Node.new()
	var callable: Callable = _values.call(&"custom_callable", node, "reply")
	var same: Callable = _values.call(&"custom_callable", node, null)
	var free_standing: Callable = _values.call(&"custom_callable", null, "reply")
	_expect(callable.is_custom() and callable.is_valid(), "it is valid")
	_expect(callable.get_object() == node, "it knows its object")
	_same(callable.get_argument_count(), 1, "its argument count")
	_same(callable.call("x"), ["x", "reply"], "it replies")
	_expect(callable == same, "it equals another with the same target")
	_same(callable.hash(), same.hash(), "with the same hash")
	_same({ callable: 1 }.has(same), true, "as a key")
	_expect(callable != free_standing, "but not one with another target")
	_same(str(callable), "Reply", "its text")
	_expect_error(func() -> void: callable.call(), "a custom callable with too few arguments")
	_same(callable.bind("bound").call(), ["bound", "reply"], "it can be bound")
	_values.call(&"hold_callable", callable)
	_same(_values.call(&"call_held", ["x"]), ["x", "reply"], "called from C++")
	node.free()
	_expect(not callable.is_valid(), "it is no longer valid")
	_expect(callable.get_object() == null, "and has no object")
	_expect_error(func() -> void: callable.call("x"), "a custom callable without its target")
	_same(_values.call(&"call_held", ["x"]), null, "the same, called from C++")
	_expect(free_standing.is_valid(), "one without a target stays valid")
	_same(free_standing.call("x"), ["x", "reply"], "and replies")


func _hold_a_callable_with(reply: RefCounted) -> void:
	var callable: Callable = _values.call(&"custom_callable", null, reply)
	_values.call(&"hold_callable", callable.bind(1))


func test_a_custom_callable_is_freed_with_its_last_copy() -> void:
	_hold_a_callable_with(_values.call(&"make_counted", 1) as RefCounted)
	_same(_live(), 1, "what it owns lives")
	_values.call(&"hold_callable", Callable())
	_same(_live(), 0, "and goes with it")


func test_method_pointers() -> void:
	_expect(_values.call(&"callables_agree"), "two to the same method are equal")
	var own: Callable = _values.call(&"own_method")
	_same(own.call(2, "abc"), 5, "a method with a result")
	_same(own.get_argument_count(), 2, "its argument count")
	_same(own.bind("ab").call(1), 5, "with a bound argument")
	_same(_values.get_reference_count(), 1, "it does not keep its object alive")
	_same(own.call(1, &"n"), 5, "a name where a text is wanted")
	_expect_error(func() -> void: own.call(1), "too few arguments")
	_expect_error(func() -> void: own.call(1, "a", 2), "too many arguments")
	_expect_error(func() -> void: own.call([], "a"), "a list where a number is wanted")
	_same(_values.call(&"get_calls"), 4, "refused calls are not made")
	_same((_values.call(&"static_function") as Callable).call("n", 5), "n5", "a plain function")
	var node: Node = Node.new()
	node.add_child(Node.new())
	var count: Callable = _values.call(&"method_of", node)
	_same(count.call(false), 1, "a method of an engine class")
	node.free()
	_expect(not count.is_valid() and count.get_object() == null, "a method of a freed object is not valid")
	_expect_error(func() -> void: count.call(false), "a method of a freed object")
	_values = null
	_expect(not own.is_valid(), "nor is one of a reference that is gone")
	_expect_error(func() -> void: own.call(1, "a"), "a method of a reference that is gone")


func test_callbacks_from_cpp() -> void:
	_same(_values.call(&"call_back", func(x: int) -> int: return x * 2, 21), 42, "a lambda")
	var counted: RefCounted = RefCounted.new()
	_values.call(&"call_back", func(x: RefCounted) -> RefCounted: return x, counted)
	_same(counted.get_reference_count(), 1, "references after the callback")


func test_signals() -> void:
	var heard: Array = []
	_values.connect(&"happened", func(number: int, counted: RefCounted) -> void: heard.append([number, counted]))
	_expect(_values.call(&"connect_itself"), "C++ connects a method pointer")
	var counted: RefCounted = _values.call(&"make_counted", 9)
	_values.call(&"emit_happened", 5, counted)
	_same(heard, [[5, counted]], "what a script heard")
	_same(_values.call(&"get_calls"), 5, "what C++ heard")
	_values.emit_signal(&"happened", 1, null)
	_same(_values.call(&"get_calls"), 6, "a signal emitted by a script")
	heard.clear()
	_same(counted.get_reference_count(), 1, "references after the signals")


func test_scripts_override_virtual_methods() -> void:
	var plain: Node = ClassDB.instantiate(&"BindingsNode") as Node
	_same(plain.call(&"greet", "Ann"), "Nobody greets Ann", "without a script")
	_expect(not plain.call(&"overrides_greet") and not plain.call(&"is_enough"), "nothing is overridden")
	var script: GDScript = _script_on("BindingsNode", """
var visited: Array = []
func _greet(name: String) -> String:
	return "Hello " + name
func _visit(node: Node) -> void:
	visited.append(node)
func _is_enough() -> bool:
	return true
func _choose(fallback: RefCounted, others: Array) -> RefCounted:
	return others[0] if others.size() > 0 else null
""")
	var other: RefCounted = RefCounted.new()
	var fallback: RefCounted = RefCounted.new()
	_expect(plain.call(&"choose", fallback, [other]) == fallback, "the fallback without a script")
	plain.set_script(script)
	_same(plain.call(&"greet", "Ann"), "Hello Ann", "with a script")
	_expect(plain.call(&"overrides_greet") and plain.call(&"is_enough"), "it is overridden")
	plain.call(&"visit", plain)
	plain.call(&"visit", null)
	var visited: Array = plain.get(&"visited")
	_expect(visited.size() == 2 and visited[0] == plain and visited[1] == null, "objects arrive")
	_expect(plain.call(&"choose", fallback, [other]) == other, "the script's choice")
	_expect(plain.call(&"choose", fallback, []) == null, "null from a script")
	_same(other.get_reference_count(), 1, "references to the chosen")
	_same(fallback.get_reference_count(), 1, "references to the fallback")
	plain.set_script(null)
	_same(plain.call(&"greet", "Ann"), "Nobody greets Ann", "when the script is taken off")
	plain.free()
	var child: Node = (_script_on("BindingsChild", "func _greet(name: String) -> String:\n\treturn name\n")).new()
	_same(child.call(&"greet", "Bo"), "Bo", "a class that inherits the virtual")
	child.free()
	_expect(ClassDB.class_has_method(&"BindingsNode", &"greet"), "the public method is known")


func test_engine_virtuals_and_notifications() -> void:
	var node: Node = ClassDB.instantiate(&"BindingsChild") as Node
	var tree: SceneTree = Engine.get_main_loop() as SceneTree
	tree.root.add_child(node)
	_same(node.call(&"get_ready_calls"), 1, "_ready of the parent class")
	_same(node.call(&"get_own_notifications"), 1, "the notification in the class itself")
	_expect(node.is_processing(), "a class with _process is processed")
	node.notification(Node.NOTIFICATION_PROCESS)
	node.notification(Node.NOTIFICATION_PROCESS)
	_same(node.call(&"get_frames"), 2, "_process")
	tree.root.remove_child(node)
	_same(node.call(&"get_notifications"), PackedInt32Array([Node.NOTIFICATION_ENTER_TREE, Node.NOTIFICATION_READY, Node.NOTIFICATION_EXIT_TREE]), "the notifications of the parent class")
	node.free()


func test_property_hooks() -> void:
	var resource: Resource = ClassDB.instantiate(&"BindingsResource") as Resource
	_same(str(resource), "<untitled>", "its text")
	resource.set(&"title", "Tale")
	_same(resource.get(&"title"), "Tale", "a bound property")
	_same(resource.get(&"amount_second"), 2.0, "an indexed property")
	resource.set(&"amount_second", 4.5)
	_same([resource.get(&"amount_first"), resource.get(&"amount_second")], [1.0, 4.5], "indexed properties apart")
	_expect(resource.get(&"extra_a") == null and resource.get(&"nothing") == null, "what is not there")
	resource.set(&"extra_a", [1])
	_same(resource.get(&"extra_a"), [1], "a property of _set and _get")
	resource.set(&"other", 1)
	_expect(resource.get(&"other") == null, "what _set does not take")
	_expect(resource.property_can_revert(&"extra_a") and not resource.property_can_revert(&"title"), "_property_can_revert")
	_same(resource.property_get_revert(&"extra_a"), "reverted", "_property_get_revert")
	var listed: Dictionary = {}
	for property: Dictionary in resource.get_property_list():
		listed[property["name"]] = property
	_same((listed["extra_a"] as Dictionary)["type"], TYPE_ARRAY, "the type of a listed property")
	_same((listed["extra_a"] as Dictionary)["hint_string"], "of extras", "its hint")
	_same((listed["Amounts"] as Dictionary)["usage"], PROPERTY_USAGE_GROUP, "a group")
	_same((listed["amount_first"] as Dictionary)["hint_string"], "0,10", "a range")
	_expect(int((listed["title"] as Dictionary)["usage"]) & PROPERTY_USAGE_READ_ONLY == 0, "a property before validation")
	resource.set(&"title", "")
	for property: Dictionary in resource.get_property_list():
		if property["name"] == "title":
			_expect(int(property["usage"]) & PROPERTY_USAGE_READ_ONLY != 0, "a property after validation")
	_same(ClassDB.class_get_property_default_value(&"BindingsResource", &"amount_second"), 2.0, "a default")
	var parts: Array[Resource] = [Resource.new()]
	resource.set(&"parts", parts)
	_same(resource.get(&"parts"), parts, "a typed array")
	_expect_error(func() -> void: resource.call(&"get_amount", 2), "an index outside")
	var copy: Resource = resource.duplicate()
	_same(copy.get(&"extra_a"), [1], "a duplicate carries what is listed")
	_same(copy.get_class(), "BindingsResource", "a duplicate's class")


func test_classes_that_cannot_be_made() -> void:
	_expect(ClassDB.class_exists(&"BindingsAbstract"), "an abstract class is known")
	_expect(not ClassDB.can_instantiate(&"BindingsAbstract"), "and cannot be made")
	_same(ClassDB.get_parent_class(&"BindingsChild"), &"BindingsNode", "a class's parent")


func test_math_gives_what_the_engine_gives() -> void:
	_random.seed = MATH_SEED
	var cases: Array = _values.call(&"math_cases")
	_expect(cases.size() > 400, "there are cases for every type")
	for index: int in cases.size():
		var expression_text: String = cases[index][0]
		var types: Array = cases[index][1]
		var names: PackedStringArray = PackedStringArray(["a", "b", "c", "d", "e"]).slice(0, types.size())
		var expression: Expression = Expression.new()
		if expression.parse(expression_text, names) != OK:
			_expect(false, "%s on %s: %s" % [expression_text, types, expression.get_error_text()])
			continue
		for round: int in MATH_ROUNDS:
			var arguments: Array = types.map(_random_value)
			var expected: Variant = expression.execute(arguments, null, false)
			if expression.has_execute_failed():
				_expect(false, "%s on %s: %s" % [expression_text, types, expression.get_error_text()])
				break
			var actual: Variant = _values.call(&"math_result", index, arguments)
			if not _near(actual, expected):
				_expect(false, "%s with %s: the engine says %s, we say %s" % [expression_text, arguments, expected, actual])
				break


func _number() -> float:
	# Now and then a round or a special number, where implementations part.
	match _random.randi_range(0, 9):
		0:
			return 0.0
		1:
			return float(_random.randi_range(-3, 3))
		_:
			return _random.randf_range(-10.0, 10.0)


func _whole() -> int:
	return _random.randi_range(-20, 20)


func _unit_3() -> Vector3:
	return Vector3(_random.randf_range(0.1, 1.0), _random.randf_range(-1.0, 1.0), _random.randf_range(-1.0, 1.0)).normalized()


func _random_value(type: String) -> Variant:
	match type:
		"Float":
			return _number()
		"Fraction":
			return _random.randf()
		"Positive":
			return _random.randf_range(0.1, 8.0)
		"Angle":
			return _random.randf_range(-TAU, TAU)
		"Int":
			return _whole()
		"Count":
			return _random.randi_range(1, 9)
		"Vector2":
			return Vector2(_number(), _number())
		"UnitVector2":
			return Vector2.from_angle(_random.randf_range(-PI, PI))
		"Vector2i":
			return Vector2i(_whole(), _whole())
		"CountVector2i":
			return Vector2i(_random.randi_range(1, 9), _random.randi_range(1, 9))
		"Vector3":
			return Vector3(_number(), _number(), _number())
		"UnitVector3":
			return _unit_3()
		"Vector3i":
			return Vector3i(_whole(), _whole(), _whole())
		"CountVector3i":
			return Vector3i(_random.randi_range(1, 9), _random.randi_range(1, 9), _random.randi_range(1, 9))
		"Vector4":
			return Vector4(_number(), _number(), _number(), _number())
		"Vector4i":
			return Vector4i(_whole(), _whole(), _whole(), _whole())
		"CountVector4i":
			return Vector4i(_random.randi_range(1, 9), _random.randi_range(1, 9), _random.randi_range(1, 9), _random.randi_range(1, 9))
		"Rect2":
			return Rect2(_number(), _number(), _random.randf_range(0.5, 9.0), _random.randf_range(0.5, 9.0))
		"Rect2i":
			return Rect2i(_whole(), _whole(), _random.randi_range(0, 9), _random.randi_range(0, 9))
		"Transform2D":
			var scale: Vector2 = Vector2(_random.randf_range(0.5, 3.0), _random.randf_range(0.5, 3.0))
			return Transform2D(_random.randf_range(-PI, PI), scale, _random.randf_range(-0.5, 0.5), Vector2(_number(), _number()))
		"RigidTransform2D":
			return Transform2D(_random.randf_range(-PI, PI), Vector2(_number(), _number()))
		"Color":
			return Color(_random.randf_range(0.05, 1.0), _random.randf_range(0.05, 1.0), _random.randf_range(0.05, 1.0), _random.randf_range(0.05, 1.0))
		"Plane":
			return Plane(_unit_3(), _number())
		"Quaternion":
			return Quaternion(_number(), _number(), _number(), _random.randf_range(0.5, 3.0))
		"UnitQuaternion":
			return Quaternion(_unit_3(), _random.randf_range(-3.0, 3.0))
		"AABB":
			return AABB(Vector3(_number(), _number(), _number()), Vector3(_random.randf_range(0.5, 9.0), _random.randf_range(0.5, 9.0), _random.randf_range(0.5, 9.0)))
		"Rotation":
			return Basis(_unit_3(), _random.randf_range(-3.0, 3.0))
		"Basis":
			return Basis(_unit_3(), _random.randf_range(-3.0, 3.0)).scaled(Vector3(_random.randf_range(0.5, 3.0), _random.randf_range(0.5, 3.0), _random.randf_range(0.5, 3.0)))
		"Transform3D":
			return Transform3D(_random_value("Basis") as Basis, Vector3(_number(), _number(), _number()))
		"RigidTransform3D":
			return Transform3D(_random_value("Rotation") as Basis, Vector3(_number(), _number(), _number()))
		"Projection":
			return Projection.create_perspective(_random.randf_range(30.0, 100.0), _random.randf_range(0.5, 2.0), _random.randf_range(0.05, 1.0), _random.randf_range(10.0, 500.0))
	_expect(false, "no random value for " + type)
	return null


func _near(actual: Variant, expected: Variant) -> bool:
	if typeof(actual) != typeof(expected):
		return false
	var expected_parts: PackedFloat64Array = _parts(expected)
	if expected_parts.is_empty():
		return actual == expected
	var actual_parts: PackedFloat64Array = _parts(actual)
	# Single precision, and a value may be a small difference of large ones: the whole sets the scale.
	var scale: float = 1.0
	for part: float in expected_parts:
		if is_finite(part):
			scale = maxf(scale, absf(part))
	for index: int in expected_parts.size():
		var left: float = actual_parts[index]
		var right: float = expected_parts[index]
		if is_finite(left) and is_finite(right):
			if absf(left - right) > 0.0001 * scale:
				return false
		elif is_nan(left) != is_nan(right) or (not is_nan(left) and left != right):
			return false
	return true


## The numbers a value of a floating-point type is made of; nothing for other types, which are compared exactly.
func _parts(value: Variant) -> PackedFloat64Array:
	var parts: PackedFloat64Array = []
	match typeof(value):
		TYPE_FLOAT:
			parts.append(value)
		TYPE_VECTOR2:
			parts = [value.x, value.y]
		TYPE_VECTOR3:
			parts = [value.x, value.y, value.z]
		TYPE_VECTOR4, TYPE_QUATERNION:
			parts = [value.x, value.y, value.z, value.w]
		TYPE_COLOR:
			parts = [value.r, value.g, value.b, value.a]
		TYPE_PLANE:
			parts = [value.x, value.y, value.z, value.d]
		TYPE_RECT2, TYPE_AABB:
			parts = _parts(value.position) + _parts(value.size)
		TYPE_TRANSFORM2D, TYPE_BASIS:
			parts = _parts(value.x) + _parts(value.y) + _parts(value.origin if value is Transform2D else value.z)
		TYPE_TRANSFORM3D:
			parts = _parts(value.basis) + _parts(value.origin)
		TYPE_PROJECTION:
			parts = _parts(value.x) + _parts(value.y) + _parts(value.z) + _parts(value.w)
	return parts
