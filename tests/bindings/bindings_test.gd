extends RefCounted
## Checks the C++ bindings from the side of scripts: who owns what after a call, what crosses the border, and what happens
## when it must not. The classes it calls are those of the small extension beside it, which exists only for this.
##
## Make one, call [method run], and print what it returns. Every error or warning of the engine that no check expects is a
## failure too.

const MATH_ROUNDS: int = 40
const MATH_SEED: int = 20260417

## How many tests the last [method run] went through.
var tests_run: int = 0

var _failures: Array[String] = []
var _current: String = ""
var _values: RefCounted
var _random: RandomNumberGenerator = RandomNumberGenerator.new()
var _catcher: ErrorCatcher


class ErrorCatcher:
	extends Logger

	var heard: PackedStringArray = []

	func _log_error(
		_function: String, file: String, line: int, code: String, rationale: String, _editor_notify: bool, _error_type: int, _backtraces: Array[ScriptBacktrace]
	) -> void:
		heard.append("%s %s (%s:%d)" % [code, rationale, file, line])


## Runs every check and returns a line for each that failed.
func run() -> Array[String]:
	_expect(ClassDB.class_exists(&"BindingsValues"), "the classes of the test extension are not there")
	if _failures.is_empty():
		for method: Dictionary in (get_script() as Script).get_script_method_list():
			if str(method["name"]).begins_with("test_"):
				_run_test(str(method["name"]))
		_same(_live(), 0, "counted objects left over")
	return _failures


func _run_test(test: String) -> void:
	_catcher = ErrorCatcher.new()
	OS.add_logger(_catcher)
	_current = test
	tests_run += 1
	_values = ClassDB.instantiate(&"BindingsValues") as RefCounted
	call(test)
	_values = null
	OS.remove_logger(_catcher)
	for message: String in _catcher.heard:
		_expect(false, "unexpected: " + message)


func _expect(condition: bool, what: String) -> void:
	if not condition:
		_failures.append("%s: %s" % [_current, what])


func _same(actual: Variant, expected: Variant, what: String) -> void:
	var equal: bool = typeof(actual) == typeof(expected) and actual == expected
	_expect(equal, "%s: expected %s, got %s" % [what, str(expected), str(actual)])


func _live() -> int:
	return ClassDB.class_call_static(&"BindingsCounted", &"get_live")


func _expect_error(provoke: Callable, what: String) -> void:
	var before: PackedStringArray = _catcher.heard.duplicate()
	provoke.call()
	_expect(_catcher.heard.size() > before.size(), "no engine error for " + what)
	_catcher.heard = before


func _script_on(base: String, body: String) -> GDScript:
	var script: GDScript = GDScript.new()
	script.source_code = "extends %s\n%s" % [base, body]
	_same(script.reload(), OK, "the script parses")
	return script


func _described(method_name: StringName) -> Dictionary:
	for method: Dictionary in ClassDB.class_get_method_list(&"BindingsValues", true):
		if method["name"] == method_name:
			return method
	_expect(false, "there is no method %s" % method_name)
	return {}


func test_native_checks_of_variant() -> void:
	for failure: String in _values.call(&"check_variants") as PackedStringArray:
		_expect(false, failure)


func test_a_reference_is_given_back_after_every_kind_of_call() -> void:
	var counted: RefCounted = RefCounted.new()
	for method: StringName in [&"echo", &"echo_ref", &"echo_object"]:
		_values.call(method, counted)
	_values.callv(&"echo_ref", [counted])
	_values.call(&"churn", counted, 20)
	_same(counted.get_reference_count(), 1, "references after the calls")
	var same: RefCounted = _values.call(&"echo_ref", counted)
	_expect(same == counted, "the same object comes back")
	_same(counted.get_reference_count(), 2, "references with the result held")
	same = null
	_values.call(&"hold", counted)
	_same(counted.get_reference_count(), 2, "references while C++ holds one")
	_values.call(&"hold", null)
	_values.call(&"hold_value", [counted, { "again": counted }])
	_same(counted.get_reference_count(), 3, "references inside containers that C++ holds")
	_values.call(&"hold_value", null)
	_same(counted.get_reference_count(), 1, "references when C++ has let go")


func test_an_object_of_ours_is_freed_exactly_once() -> void:
	var made: RefCounted = _values.call(&"make_counted", 7)
	_same(made.get_reference_count(), 1, "references to a new object")
	_same(made.get(&"number"), 7, "its property")
	_same(_values.call(&"number_of", made), 7, "C++ gets it back as its own class")
	var instantiated: RefCounted = ClassDB.instantiate(&"BindingsCounted") as RefCounted
	_same(instantiated.get_reference_count(), 1, "references to an instantiated object")
	_same(_live(), 2, "two live")
	instantiated = null
	_values.call(&"hold", made)
	made = null
	_same(_live(), 1, "one lives while C++ holds it")
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
		null, true, 0, -9223372036854775807 - 1, 0.1, -INF, "", "grüße 🙂", &"", &"name", ^"A/B:c", ^"",
		Vector2(1, 2), Vector2i(3, 4), Rect2(1, 2, 3, 4), Rect2i(1, 2, 3, 4), Vector3(1, 2, 3), Vector3i(1, 2, 3), Vector4(1, 2, 3, 4),
		Vector4i(1, 2, 3, 4), Transform2D(0.5, Vector2(1, 2)), Plane(Vector3.UP, 2), Quaternion(0, 1, 0, 0), AABB(Vector3.ONE, Vector3.ONE),
		Basis.FLIP_X, Transform3D(Basis.FLIP_Y, Vector3.ONE), Projection.IDENTITY, Color(0.1, 0.2, 0.3, 0.4), RID(), [1, [2, "three"]], { "a": { 1: 2 } },
		Callable(), Signal(), _values.property_list_changed as Signal, Callable(_values, &"note"),
	]:
		_same(_values.call(&"echo", value), value, "echo")
	for text: String in ["", "plain", "grüße 🙂"]:
		_same(_values.call(&"echo_string", text), text, "a string")
	for packed: Variant in [
		PackedByteArray([1, 2]), PackedInt32Array([1, 2]), PackedInt64Array([1, 2]), PackedFloat32Array([0.5]), PackedFloat64Array([0.1]),
		PackedStringArray(["a", "ü"]), PackedVector2Array([Vector2.ONE]), PackedVector3Array([Vector3.ONE]), PackedColorArray([Color.RED]),
		PackedVector4Array([Vector4.ONE]),
	]:
		_same(_values.call(&"doubled", packed), packed + packed, type_string(typeof(packed)))


func test_typed_and_shared_containers() -> void:
	var list: Array = [1]
	_values.call(&"append_to", list, "added")
	_same(list, [1, "added"], "C++ appends to the caller's array")
	_expect(is_same(_values.call(&"echo", list), list), "an array comes back as the same array")
	var numbers: Array[int] = [1, 2, 3]
	_same(_values.call(&"sum", numbers), 6, "a typed array")
	_same(_values.call(&"sum", [4, 5]), 9, "an untyped array whose elements fit")
	_expect_error(func() -> void: _values.call(&"sum", ["a", "b"]), "an array with elements of another type")
	var parent: Node = Node.new()
	parent.add_child(Node2D.new())
	var children: Array = _values.call(&"children_of", parent)
	_expect(children.size() == 1 and children.get_typed_class_name() == &"Node", "the result is an array of nodes")
	parent.free()
	_same(_values.call(&"children_of", null), [] as Array[Node], "children of nothing")
	var lengths: Dictionary = _values.call(&"lengths", [&"one", &"three"] as Array[StringName])
	_same(lengths[&"three"], 5, "an entry")
	_expect(lengths.get_typed_key_builtin() == TYPE_STRING_NAME and lengths.get_typed_value_builtin() == TYPE_INT, "keys and values are typed")
	var arguments: Array = _described(&"children_of")["args"]
	_same((arguments[0] as Dictionary)["class_name"], &"Node", "the class of an object argument")
	var returned: Dictionary = _described(&"children_of")["return"]
	_same([returned["type"], returned["hint"], returned["hint_string"]], [TYPE_ARRAY, PROPERTY_HINT_ARRAY_TYPE, "Node"], "the type of the result")
	_same((_described(&"lengths")["return"] as Dictionary)["hint_string"], "StringName;int", "the types of a dictionary")


func test_arguments() -> void:
	_same(_values.call(&"with_defaults", 3), "3 none 0.50", "all defaults")
	_same(_values.call(&"with_defaults", 3, "some", 2.0), "3 some 2.00", "all given")
	_same((_described(&"with_defaults")["default_args"] as Array).size(), 2, "the number of defaults")
	_same(ClassDB.class_call_static(&"BindingsValues", &"add", 2, 3), 5, "a static method")
	_same(_values.call(&"as_small", -128), -128, "a small number")
	_same(_values.call(&"number_of", null), -1, "null arrives as null")
	for wrong: Array in [
		[&"number_of", "text"], [&"number_of", RefCounted.new()], [&"sum", 3], [&"as_small", "text"], [&"as_small"], [&"as_small", 1, 2], [&"with_defaults"],
		[&"no_such_method"],
	]:
		_expect_error(func() -> void: _values.callv(wrong[0] as StringName, wrong.slice(1)), str(wrong))


func test_a_custom_callable_outlives_its_target() -> void:
	var node: Node = Node.new()
	var callable: Callable = _values.call(&"custom_callable", node, "reply")
	var same: Callable = _values.call(&"custom_callable", node, null)
	var free_standing: Callable = _values.call(&"custom_callable", null, "reply")
	_expect(callable.is_custom() and callable.is_valid() and callable.get_object() == node, "it is valid and knows its object")
	_same(callable.get_argument_count(), 1, "its argument count")
	_expect(callable == same and callable.hash() == same.hash() and callable != free_standing, "it equals another with the same target")
	_same(str(callable), "Reply", "its text")
	_expect_error(func() -> void: callable.call(), "a custom callable with too few arguments")
	_same(callable.bind("bound").call(), ["bound", "reply"], "it can be bound")
	_values.call(&"hold_callable", callable)
	_same(_values.call(&"call_held", ["x"]), ["x", "reply"], "called from C++")
	node.free()
	_expect(not callable.is_valid() and callable.get_object() == null, "it is no longer valid")
	_expect_error(func() -> void: callable.call("x"), "a custom callable without its target")
	_same(_values.call(&"call_held", ["x"]), null, "the same, called from C++")
	_expect(free_standing.is_valid(), "one without a target stays valid")


func _hold_a_callable_with(reply: RefCounted) -> void:
	var callable: Callable = _values.call(&"custom_callable", null, reply)
	_values.call(&"hold_callable", callable.bind(1))


func test_a_custom_callable_is_freed_with_its_last_copy() -> void:
	_hold_a_callable_with(_values.call(&"make_counted", 1) as RefCounted)
	_same(_live(), 1, "what it owns lives")
	_values.call(&"hold_callable", Callable())
	_same(_live(), 0, "and goes with it")


func test_method_pointers() -> void:
	var own: Callable = _values.call(&"own_method")
	_expect(own == _values.call(&"own_method"), "two to the same method are equal")
	_same(own.call(2, "abc"), 5, "a method with a result")
	_same(own.get_argument_count(), 2, "its argument count")
	_same(_values.get_reference_count(), 1, "it does not keep its object alive")
	_same(own.bind(&"ab").call(1), 5, "a bound argument, and a name where a text is wanted")
	_expect_error(func() -> void: own.call(1), "too few arguments")
	_expect_error(func() -> void: own.call(1, "a", 2), "too many arguments")
	_expect_error(func() -> void: own.call([], "a"), "a list where a number is wanted")
	_same(_values.call(&"get_calls"), 3, "refused calls are not made")
	var node: Node = Node.new()
	node.add_child(Node.new())
	var count: Callable = _values.call(&"method_of", node)
	_same(count.call(false), 1, "a method of an engine class")
	node.free()
	_expect(not count.is_valid() and count.get_object() == null, "a method of a freed object is not valid")
	_expect_error(func() -> void: count.call(false), "a method of a freed object")
	_values = null
	_expect_error(func() -> void: own.call(1, "a"), "a method of a reference that is gone")


func test_scripts_override_virtual_methods() -> void:
	var plain: Node = ClassDB.instantiate(&"BindingsNode") as Node
	var other: RefCounted = RefCounted.new()
	var fallback: RefCounted = RefCounted.new()
	_same(plain.call(&"greet", "Ann"), "Nobody greets Ann", "without a script")
	_expect(not plain.call(&"overrides_greet"), "nothing is overridden")
	_expect(plain.call(&"choose", fallback, [other]) == fallback, "the fallback without a script")
	plain.set_script(_script_on("BindingsNode", """
var visited: Array = []
func _greet(name: String) -> String:
	return "Hello " + name
func _visit(node: Node) -> void:
	visited.append(node)
func _choose(fallback: RefCounted, others: Array) -> RefCounted:
	return others[0] if others.size() > 0 else null
"""))
	_same(plain.call(&"greet", "Ann"), "Hello Ann", "with a script")
	_expect(plain.call(&"overrides_greet"), "it is overridden")
	plain.call(&"visit", plain)
	plain.call(&"visit", null)
	_expect(plain.get(&"visited")[0] == plain and plain.get(&"visited")[1] == null, "objects arrive")
	_expect(plain.call(&"choose", fallback, [other]) == other, "the script's choice")
	_expect(plain.call(&"choose", fallback, []) == null, "null from a script")
	_same([other.get_reference_count(), fallback.get_reference_count()], [1, 1], "references to what was handed over")
	plain.set_script(null)
	_same(plain.call(&"greet", "Ann"), "Nobody greets Ann", "when the script is taken off")
	plain.free()


func test_math_gives_what_the_engine_gives() -> void:
	_random.seed = MATH_SEED
	var makers: Dictionary[String, Callable] = _makers()
	var cases: Array = _values.call(&"math_cases")
	for index: int in cases.size():
		var expression_text: String = cases[index][0]
		var types: Array = Array(cases[index][1] as PackedStringArray)
		var expression: Expression = Expression.new()
		_same(expression.parse(expression_text, PackedStringArray(["a", "b", "c", "d", "e"]).slice(0, types.size())), OK, expression_text)
		for round: int in MATH_ROUNDS:
			var arguments: Array = types.map(func(type: String) -> Variant: return makers[type].call())
			var expected: Variant = expression.execute(arguments, null, false)
			_expect(not expression.has_execute_failed(), "%s on %s: %s" % [expression_text, types, expression.get_error_text()])
			var actual: Variant = _values.call(&"math_result", index, arguments)
			if not _near(actual, expected):
				_expect(false, "%s with %s: the engine says %s, we say %s" % [expression_text, arguments, expected, actual])
				break


## Random values by the names that the cases give to the types of their arguments.
func _makers() -> Dictionary[String, Callable]:
	return {
		"Number": _number,
		"Float": _number,
		"Fraction": _random.randf,
		"Positive": _positive,
		"Angle": _angle,
		"Count": _count,
		"Vector2": func() -> Vector2: return Vector2(_number(), _number()),
		"UnitVector2": func() -> Vector2: return Vector2.from_angle(_angle()),
		"Vector2i": func() -> Vector2i: return Vector2i(_whole(), _whole()),
		"CountVector2i": func() -> Vector2i: return Vector2i(_count(), _count()),
		"Vector3": _vector,
		"UnitVector3": _unit,
		"Vector3i": func() -> Vector3i: return Vector3i(_whole(), _whole(), _whole()),
		"CountVector3i": func() -> Vector3i: return Vector3i(_count(), _count(), _count()),
		"Rect2": func() -> Rect2: return Rect2(_number(), _number(), _positive(), _positive()),
		"AABB": func() -> AABB: return AABB(_vector(), Vector3(_positive(), _positive(), _positive())),
		"Plane": func() -> Plane: return Plane(_unit(), _number()),
		"Transform2D": func() -> Transform2D: return Transform2D(_angle(), Vector2(_positive(), _positive()), _random.randf() - 0.5, Vector2(_number(), _number())),
		"RigidTransform2D": func() -> Transform2D: return Transform2D(_angle(), Vector2(_number(), _number())),
		"Transform3D": func() -> Transform3D: return Transform3D(_basis(), _vector()),
		"RigidTransform3D": func() -> Transform3D: return Transform3D(_rotation(), _vector()),
		"Basis": _basis,
		"Rotation": _rotation,
		"Quaternion": func() -> Quaternion: return Quaternion(_number(), _number(), _number(), _positive()),
		"UnitQuaternion": func() -> Quaternion: return Quaternion(_unit(), _angle()),
		"Color": func() -> Color: return Color(_share(), _share(), _share(), _share()),
	}


func _number() -> float:
	# Now and then a round or a special number, where implementations part.
	match _random.randi_range(0, 9):
		0:
			return 0.0
		1:
			return float(_random.randi_range(-3, 3))
		_:
			return _random.randf_range(-10.0, 10.0)


func _positive() -> float:
	return _random.randf_range(0.5, 8.0)


func _angle() -> float:
	return _random.randf_range(-PI, PI)


func _share() -> float:
	return _random.randf_range(0.05, 1.0)


func _whole() -> int:
	return _random.randi_range(-20, 20)


func _count() -> int:
	return _random.randi_range(1, 9)


func _vector() -> Vector3:
	return Vector3(_number(), _number(), _number())


func _unit() -> Vector3:
	return Vector3(_share(), _random.randf_range(-1.0, 1.0), _random.randf_range(-1.0, 1.0)).normalized()


func _rotation() -> Basis:
	return Basis(_unit(), _angle())


func _basis() -> Basis:
	return _rotation().scaled(Vector3(_positive(), _positive(), _positive()))


func _near(actual: Variant, expected: Variant) -> bool:
	if typeof(actual) != typeof(expected):
		return false
	var expected_parts: Array = _parts(expected)
	if expected_parts.is_empty():
		return actual == expected
	var actual_parts: Array = _parts(actual)
	# Single precision, and a value may be a small difference of large ones: the whole sets the scale.
	var scale: float = 1.0
	for part: float in expected_parts:
		scale = maxf(scale, absf(part) if is_finite(part) else 0.0)
	for index: int in expected_parts.size():
		var left: float = actual_parts[index]
		var right: float = expected_parts[index]
		if left != right and not (is_nan(left) and is_nan(right)) and not absf(left - right) <= 0.0001 * scale:
			return false
	return true


## The numbers a value is made of; nothing for types that are compared exactly.
func _parts(value: Variant) -> Array:
	if value is float:
		return [value]
	var described: Variant = JSON.from_native(value)
	return described["args"] if described is Dictionary and described.has("args") else []
