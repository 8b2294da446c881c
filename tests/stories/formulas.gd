extends Story
## Formulas: what they come to, what happens when there is no answer, and that they get at nothing but the machine's variables.


## Something of the game's that notes whoever touches it.
class Chest:
	extends Node2D

	static var touched: Array[String] = []

	var gold: int = 5:
		get:
			touched.append("gold")
			return gold

	func length() -> float:
		touched.append("length")
		return 1.0

	func open() -> String:
		touched.append("open")
		return "open"

	func _to_string() -> String:
		touched.append("_to_string")
		return "a chest"

	func _get(property: StringName) -> Variant:
		touched.append(property)
		return null


## Formulas and their answers; what the variables hold is in [method _variables].
var _answers: Dictionary[String, Variant] = {
	"speed * 2 + boost": 11.5, "clamp(health - damage, 0, 100)": 0, "(target - here).normalized() * speed": Vector2(2.4, 3.2),
	"{time left} * 2": 5.0, "{speed}+{ speed }": 8.0, "größe + 1": 8, "health>damage": false, "health": 30, "-health": -30, "+health": 30, " 1\n+\t2 ": 3,
	"1/2": 0, "1.0/2": 0.5, "7 / -2": -3, "health / damage": 0, "health / 4": 7, "speed / 0.5": 8.0, "7 % 3": 1, "-7 % 3": -1, "2 ** 10": 1024,
	"2 ** -1.0": 0.5, "2 ** 3 ** 2": 64, "-2 ** 2": -4, "2 ^ 3": 1, "6 & 3 == 2": true, "1 << 1 + 2": 8, "10 - 2 - 3": 5, "2 + 3 * 4": 14,
	"(2 + 3) * 4": 20, "5 - -3": 8, "5 + +3": 8, "not 1 == 2": true, "not true or true": true, "true or false and false": true, "1 == 1 in [true]": true,
	"!alive": false, "alive and not (health < 10)": true, "alive && health > 1 || false": true, "true != not true": true, "2 in [1, 2]": true,
	"sine(90)": 1.0, "sine(30) * 2": 1.0, "cosine(60)": 0.5, "tangent(45)": 1.0, "angle_of(0, 1)": 90.0, "angle_of(-1, 0)": 180.0,
	"angle_of(3, 1 - 4)": -45.0, "sin(PI / 2)": 1.0, "cos(0)": 1.0, "sine(sine(90) * 90)": 1.0, "round(TAU)": 6.0, "INF": INF, "-INF": -INF, "null": null,
	"min(3, 1, 2)": 1, "max(1, health)": 30, "lerp(0.0, 10.0, 0.25)": 2.5, "abs(-2)": 2, "floor(2.7)": 2.0, "ceil(2.1)": 3.0, "snapped(7.3, 0.5)": 7.5,
	"posmod(-7, 3)": 2, "fposmod(-0.5, 2)": 1.5, "wrapi(9, 0, 4)": 1, "move_toward(1, 5, 2)": 3.0, "int(2.9)": 2, "float(2)": 2.0, "bool(1)": true,
	"randf_range(2, 2)": 2.0, "randi_range(4, 4)": 4, "remap(5, 0, 10, 0, 1)": 0.5, "deg_to_rad(180)": PI, "sign(-3)": -1,
	"1_000 + 0x1F + 0b101": 1036, ".5 + 5. + 1e3 + 2.5E-1": 1005.75,
	"here.x + target.y": 7.0, "here[0]": 1.0, "here.distance_to(target)": 5.0, "Vector2(1, 2) * 2": Vector2(2, 4), "Vector3(1, 2, 3).length_squared()": 14.0,
	"Vector2i(7, 9) / 2": Vector2i(3, 4), "Vector2i(7, 9) / Vector2i(2, -3)": Vector2i(3, -3), "Vector2i(7, 9) % 4": Vector2i(3, 1),
	"here / 2": Vector2(0.5, 1.0),
	"Vector2(1, 0).rotated(PI)": Vector2(-1, 0), "Vector3(1, 0, 0).rotated(Vector3(0, 0, 5), PI)": Vector3(-1, 0, 0),
	"Vector2(3, 4).bounce(Vector2(0, 9))": Vector2(3, -4), "Vector2(3, 4).slide(Vector2(0, 9))": Vector2(3, 0), "Rect2(1, 2, 3, 4).size.x": 3.0,
	"Color(1, 0, 0)": Color.RED, "Color(\"blue\")": Color.BLUE, "Color('#ff0000', 0.5)": Color(1, 0, 0, 0.5), "Color(Color(1, 0, 0), 0.5).a": 0.5,
	"\"a\" + 'b'": "ab", "\"%d of %d\" % [health, 40]": "30 of 40", "\"%05.1f\" % speed": "004.0", "\"it's\\n\\\"so\\\"\"": "it's\n\"so\"",
	"name.to_upper()": "MILA", "name.left(2) + \"...\"": "Mi...", "str(1, \"st of \", 2.5)": "1st of 2.5", "\"M\" in name": true, "name == \"Mila\"": true,
	"bag[1] + bag.size()": 22, "bag.has(10)": true, "[1, health][1]": 30, "[]": [], "bag + [3]": [10, 20, 3], "stats.strength * 2": 14, "stats[\"in\"]": 1,
	"stats.in": 1, "stats.has(\"luck\")": false, "stats.get(\"luck\", 3)": 3, "packed[0]": 1.5, "\"{speed}\"": "{speed}", "(((((1)))))": 1,
}


func _variables() -> Dictionary:
	return {
		"speed": 4.0, "boost": 3.5, "health": 30, "damage": 45, "time left": 2.5, "größe": 7, "alive": true, "name": "Mila", "here": Vector2(1, 2),
		"target": Vector2(4, 6), "bag": [10, 20], "stats": {"strength": 7, "in": 1}, "packed": PackedFloat32Array([1.5]),
	}


func test_formulas_and_their_answers() -> void:
	for formula in _answers:
		var got: Variant = _answer(formula)
		var wanted: Variant = _answers[formula]
		expect_equal(typeof(got), typeof(wanted), formula)
		if wanted is Vector2 or wanted is Vector3 or (wanted is float and is_finite(wanted)):
			expect_near(got, wanted, 0.00001, formula)
		else:
			expect_equal(got, wanted, formula)


func test_what_has_no_answer_leaves_the_variable_alone() -> void:
	var rows: Dictionary[String, String] = {
		"10 / 0": "divided by zero", "health % 0": "divided by zero", "posmod(1, 0)": "divided by zero", "10 / (5 - 5)": "divided by zero",
		"Vector2i(1, 1) / 0": "divided by zero", "Vector2i(5, 5) / 4294967296": "divided by zero", "1 / Vector2i(0, 1)": "divided by zero",
		"1 / Vector2i(2, 1)": "int and Vector2i cannot be divided", "10.0 / 0": "an endless number",
		"log(0)": "an endless number", "0.0 / 0": "no number", "sqrt(-1)": "no number", "here / 0.0": "an endless number",
		"(-9223372036854775807 - 1) / -1": "too large for a whole number", "(-999999999999999999 * 10 - 1) / \"x\"": "int and String cannot be divided",
		"smallest / -1": "grows too large", "smallest / (0 - 1)": "grows too large", "smallest % minus": "grows too large",
		"Vector2i(-2147483648, 1) / minus": "grows too large", "Vector3i(1, 1, -2147483648) % 4294967295": "grows too large", "5.5 % 2": "fmod(a, b)",
		"\"%999999999d\" % 1": "more than 99 letters",
		"(\"%9\" + \"99999999d\") % 1": "more than 99 letters", "(\"%s999999d\" % \"%\") % 1": "more than 99 letters",
		"\"%*d\" % [99999999, 1]": "more than 99 letters",
		"nobody + 1": "this machine has no variable called nobody. Add it", "{time lost}": "no variable called time lost",
		"Engine": "no variable called Engine",
		"self": "no variable called self", "1 2": "2 stands behind 1 with nothing between them", "health speed": "speed stands behind health",
		"a)": ") is one too many", "'it''s'": "\"s\" stands behind \"it\"", "1 if alive else 2": "a formula has no \"if\"; a Check chooses",
		"health is int": "a formula has no \"is\"", "(1, 2)": ") was expected where , stands", "(1 2)": "2 stands behind 1",
		"((1)": ") was expected where the end stands",
		"bag[1": "] was expected where the end stands", "max(1, 2": ") was expected where the end stands", "1 +": "it ends where something is missing",
		"* 2": "something is missing before *", "()": "something is missing before )", "1 + * 2": "something is missing before *",
		"and 1": "something is missing before and",
		"health = 5": "a single = gives a variable a value", "alive ? 1 : 2": "? has no meaning", "1; 2": "; has no meaning", "$Door": "$ has no meaning",
		"%Door": "something is missing before %", "@x": "@ has no meaning", "# note": "# has no meaning", "~1": "~ has no meaning", "“a”": "“ has no meaning",
		"6 × 7": "× has no meaning", "\"open": "does not end with one", "{time left": "opened and never closed", "{}": "braces hold nothing but the name",
		"{\"a\": 1}": "braces hold nothing but the name", "99999999999999999999": "too large for a whole number", "1e999": "too large or too small",
		"2 * 1e-999": "too large or too small",
		"sine(1, 2)": "sine() takes one number", "angle_of(1)": "angle_of() takes two, x and y", "min(1)": "expected 2 argument",
		"\"a\" + 1": "operator +, String and int",
		"true + 1": "operator +, bool and int", "here + 1": "operator +, Vector2 and int", "1 < 2 < 3": "operator <, bool and int", "bag[9]": "invalid index",
		"here.q": "invalid index", "health.x": "invalid index", "health.length()": "length() is asked of something that does not have it",
		"name.rotated(1)": "are asked of a Vector2 or a Vector3 only", "Vector3(1, 0, 0).rotated(Vector3(), 1)": "a direction that has no length",
		"Color(\"nope\")": "Color() takes a name", "1 << -1": "Only positive", "max(1, \"a\")": "Cannot convert argument 2",
		"here.": "a point is followed by the end",
		"hook": "hook holds a Callable, which no formula can work with", "1 + [1, [2, hook]][0]": "hook holds a Callable", "rings": "rings holds a Signal",
		"hooks": "hooks holds an Array", "deep": "deep holds an Array", "": "it has no formula", "  ": "it has no formula",
	}
	var variables := _variables()
	var deep: Array = []
	for i in 30:
		deep = [deep]
	variables.merge({"smallest": -9223372036854775807 - 1, "minus": -1, "hook": _variables, "rings": tree.process_frame, "hooks": [{"a": _variables}],
	"deep": deep})
	for formula in rows:
		expect_equal(_answer(formula, variables, "before"), "before", formula)
		expect_warning(rows[formula])


func test_nothing_outside_the_variables_can_be_reached() -> void:
	Chest.touched.clear()
	var chest: Chest = add(Chest.new(), "Chest")
	var variables := {"chest": chest, "list": [1, [chest]], "table": {"it": chest, chest: 1}, "same": chest, "Engine": 1, "text": "x"}
	var refused: Array[String] = [
		"Engine.get_version_info()", "OS.get_name()", "OS.execute(\"ls\", [])", "ClassDB.instantiate(\"Node\")", "Node.new()", "RefCounted.new()",
		"load(\"res://x.gd\")",
		"preload(\"res://x.gd\")", "FileAccess.open(\"user://x\", 2)", "ResourceLoader.load(\"x\")", "instance_from_id(1)", "is_instance_valid(chest)",
		"weakref(chest)", "str_to_var(\"Object(Node)\")", "var_to_str(chest)", "bytes_to_var_with_objects(text)", "var_to_bytes_with_objects(chest)",
		"get_stack()",
		"print(1)", "printerr(1)", "push_error(\"x\")", "push_warning(\"x\")", "seed(1)", "randomize()", "type_convert(1, 25)", "Callable(chest, \"open\")",
		"Callable(chest, \"open\").call()", "Signal(chest, \"renamed\").emit()", "Signal(chest, \"renamed\")", "NodePath(\"x\")", "RID()",
		"rid_from_int64(1)", "Object()",
		"self.get_tree()", "chest.open()", "chest.call(\"open\")", "chest.callv(\"open\", [])", "chest.get_tree().quit()", "chest.queue_free()",
		"chest.set(\"gold\", 1)",
		"list[1][0].open()", "table.it.open()", "table[\"it\"].get_parent()", "list.map(chest)", "list.append(1)", "list.clear()", "list.sort_custom(1)",
		"table.erase(\"it\")",
		"text.repeat(999999999)", "text.lpad(999999999)", "text.format([1])", "text.to_utf8_buffer()", "[chest][0].free()", "(chest).free()", "text.free()",
		"native_helper(\"x\", [])", "open()", "p0.call()", "$Chest.open()", "get_node(\"Chest\")", "exit(1)", "await chest", "func(): pass",
		"chest.gold", "list[1][0].gold", "table.it.gold", "table[\"it\"][\"gold\"]", "chest[\"gold\"]", "chest.get(\"gold\")", "chest.length()",
		"[chest][0].size()", "chest + 1",
		"chest.script", "Vector2.ZERO", "Color.RED",
	]
	for formula in refused:
		expect_equal(_answer(formula, variables, "before"), "before", formula)
		expect_warning("was not worked out, and nothing was kept")
	expect_equal(variables["list"], [1, [chest]])
	expect_equal(Chest.touched, [] as Array[String], "touched")
	expect(chest.get_parent() == stage)


func test_nodes_are_compared_and_handed_on() -> void:
	Chest.touched.clear()
	var chest: Chest = add(Chest.new(), "Chest")
	var gone := Node.new()
	var coin := Resource.new()
	coin.resource_name = "coin"
	var variables := {"chest": chest, "list": [1, [chest]], "table": {"it": chest, chest: 1}, "same": chest, "gone": gone, "coin": coin}
	gone.free()
	var rows: Dictionary[String, Variant] = {
		"chest": chest, "chest == same": true, "chest != coin": true, "chest == null": false, "not chest": false, "gone == null": true, "gone": null,
		"chest in list[1]": true, "list[1][0] == chest": true, "table.it": chest, "table[chest]": 1, "[chest, coin, 2]": [chest, coin, 2], "coin": coin,
		"chest == 1 or coin == coin": ERR_BUG, "list": [1, [chest]], "str(\"the \", chest, \" and \", coin)": "the Chest and coin",
		"\"the %s\" % chest": "the Chest",
		"\"%s has %d\" % [coin, 2]": "coin has 2", "str(gone)": "<null>", "table": {"it": chest, chest: 1},
	}
	for formula in rows:
		if rows[formula] is int and rows[formula] == ERR_BUG:
			expect_equal(_answer(formula, variables, "before"), "before", formula)
			expect_warning("a node or a resource in it can be compared and handed on, and nothing else")
		else:
			expect_equal(_answer(formula, variables), rows[formula], formula)
	expect_equal(Chest.touched, [] as Array[String], "touched")


func test_a_list_that_comes_out_is_another_one() -> void:
	var bag: Array[int] = [1, 2]
	var got: Variant = _answer("bag", {"bag": bag})
	expect_equal(got, bag)
	expect(not is_same(got, bag), "it is the same list")
	expect((got as Array).is_typed(), "it takes anything")


func test_the_answer_fits_where_it_goes() -> void:
	expect_equal(_answer("speed * 2", {"speed": 1.2}, 7), 2)
	expect_warning("so 2.4 was rounded to 2")
	expect_equal(_answer("2 + 1", {}, 0.5), 3.0)
	expect_equal(_answer("2 + 1", {}, "old"), "3")
	expect_equal(_answer("Vector2(1, 2)", {}, 5), 5)
	expect_warning("answer holds an int, which cannot become a Vector2")
	expect_warns(kind(SCExpressionAction, {"formula": "1"}), "there is nowhere to put the answer, so it was lost. Pick a variable under Store In.")


func test_a_repeating_formula_follows_its_variables_and_is_told_of_once() -> void:
	var formula: SCExpressionAction = kind(SCExpressionAction, {"formula": "{time left} * pace", "store_in": &"answer",
			"run_mode": SCMachineAction.EVERY_FRAME})
	var owner := play(formula, {}, {"variables": {"time left": 1.0, "pace": null, "answer": 0.0}})
	expect_warning("operator *, float and Nil")
	owner.set_value(&"pace", 2)
	for left in 4:
		owner.set_value(&"time left", left * 1.0)
		await frames(1)
		expect_values(owner, {"answer": left * 2.0})
	formula.formula = "{time left} * \"a\""
	await frames(3)
	expect_values(owner, {"answer": 6.0})
	expect_warning("operator *, float and String")


func test_a_formula_out_of_a_variable_is_held_to_the_same_words() -> void:
	var owner := play(kind(SCExpressionAction, {"formula_variable": &"typed", "store_in": &"answer", "run_mode": SCMachineAction.EVERY_FRAME}), {},
			{"variables": {"typed": "1 + 1", "answer": null}})
	expect_values(owner, {"answer": 2})
	for row: Array in [["2 * answer", 4], ["OS.get_name()", 4], ["answer", 4], ["answer - 1", 3]]:
		owner.set_value(&"typed", row[0])
		await frames(1)
		expect_values(owner, {"answer": row[1]}, row[0])
		owner.set_value(&"typed", "answer")
		await frames(1)
	expect_warning("it has no .get_name()")


func test_machines_share_a_formula_and_each_gets_its_own_answer() -> void:
	var design := template([state("Work", [kind(SCExpressionAction, {"formula": "mine * 10", "store_in": &"answer",
			"run_mode": SCMachineAction.EVERY_FRAME})])],
			{"variables": {"mine": 0, "answer": 0}})
	var owners := range(3).map(func(i: int) -> SCMachine: return start(running(design, {"name": "M%d" % i})))
	for i in 3:
		(owners[i] as SCMachine).set_value(&"mine", i)
	await frames(2)
	for i in 3:
		expect_values(owners[i] as SCMachine, {"answer": i * 10})


func test_long_and_deep_formulas_are_refused_and_what_is_short_is_not() -> void:
	var rows: Dictionary[String, String] = {
		"(".repeat(5000) + "1" + ")".repeat(5000): "it is too long", "(".repeat(200) + "1" + ")".repeat(200): "too much within brackets",
		"-".repeat(400) + "1": "too much within brackets", "not ".repeat(400) + "1": "too much within brackets", "[".repeat(100): "too much within brackets",
		"1" + " + 1".repeat(300): "it is too long", "x" + "[0]".repeat(300): "it is too long", "2" + " ** 2".repeat(400): "it is too long",
	}
	for formula in rows:
		expect_equal(_answer(formula, {"x": 1}, "before"), "before", formula.left(20))
		expect_warning(rows[formula])
	expect_equal(_answer("1" + " + 1".repeat(240)), 241)
	expect_equal(_answer("(".repeat(40) + "1" + ")".repeat(40)), 1)


func test_a_repeating_formula_asks_for_no_memory_of_its_own() -> void:
	if not AllocationCounter.is_available():
		return
	for formula: String in ["speed * 2 + boost", "(target - here).normalized() * speed > here", "bag[1] + 1"]:
		var owner := play(kind(SCExpressionAction, {"formula": formula, "store_in": &"answer", "run_mode": SCMachineAction.EVERY_FRAME}), {},
				{"variables": _variables().merged({"answer": null})})
		await frames(5)
		AllocationCounter.begin("libquillstead_core")
		await frames(100)
		expect_equal(AllocationCounter.end(), 0, formula)
		expect(owner.get_value(&"answer") != null, formula)


func test_whatever_is_typed_nothing_breaks() -> void:
	var words := ["1", "2.5", "0", "-1", "9223372036854775807", "smallest", "4294967295", "4294967296", "2147483648", "x", "here", "grid", "list", "table",
			"chest", "gone", "\"%d\"", "'a'", "PI", "INF", "NAN", "null",
			"true", "+", "-", "*", "/", "%", "**", "==", "<", "and", "or", "not", "in", "(", ")", "[", "]", ",", ".", "^", "<<", ">>", "{", "}", "=", "if",
			"é", "\\", "\""]
	var calls := ["min", "max", "clamp", "lerp", "wrap", "wrapi", "wrapf", "posmod", "fmod", "fposmod", "snapped", "snappedi", "pingpong", "int", "abs",
			"pow", "log", "sine",
			"angle_of", "str", "Color", "Vector2i", "Vector2", "Vector3i", "nearest_po2", "step_decimals", "randi_range", "randf_range", "ease", "remap",
			"sqrt", "round",
			"here.rotated", "here.length", "here.clamp", "here.limit_length", "here.snapped", "grid.snapped", "grid.clamp", "list.has", "list.size",
			"list.min", "list.find", "'ab'.substr",
			"'ab'.left", "'ab'.get_slice", "'ab'.count", "table.get", "table.keys", "here.posmod", "here.slide", "here.project", "here.angle_to", "Rect2",
			"smoothstep", "cubic_interpolate"]
	var operations := [" + ", " - ", " * ", " / ", " % ", " ** ", " == ", " < ", " and ", " in ", " & ", " << ", " >> "]
	var variables := {"smallest": -9223372036854775807 - 1, "x": -1, "here": Vector2(3, 4), "grid": Vector2i(-2147483648, -1), "list": [1, "a"],
			"table": {"k": 1},
			"chest": add(Chest.new(), "Chest"), "gone": null}
	var action: SCExpressionAction = kind(SCExpressionAction, {"formula": "1", "store_in": &"answer", "run_mode": SCMachineAction.EVERY_FRAME})
	var owner := play(action, {}, {"variables": {"answer": null}.merged(variables)})
	var answered := 0
	for draw: int in seeds(700, 3, 60):
		seed(draw)
		for round_number in 400:
			action.formula = " ".join(range(randi() % 9 + 1).map(func(_i: int) -> String: return words.pick_random()))
			if round_number % 4 > 0:
				action.formula = _grown(words.slice(0, 23), calls, operations, 3)
			owner.set_value(&"answer", null)
			action.update(owner, 0, 0.1)
			answered += 1 if owner.get_value(&"answer") != null else 0
			output.claim("warning", "was not worked out")
			output.claim("warning", "cannot become")
	expect(answered > 100, "only %d of them had an answer" % answered)


func test_the_line_and_what_it_reads() -> void:
	expect_lines(SCExpressionAction, {
		"Set aim to speed * 2": {"formula": "speed * 2", "store_in": &"aim"},
		"Set (pick one) to speed": {"formula": "speed"},
		"Set aim to a formula": {"store_in": &"aim"},
		"Set aim to [typed]": {"store_in": &"aim", "formula": "1", "formula_variable": &"typed"},
	})
	var formula: SCExpressionAction = kind(SCExpressionAction, {"formula": "{time left} + sine(turn) * turn + PI", "store_in": &"aim"})
	expect_equal(formula.variables_read(), PackedStringArray(["time left", "turn"]))
	expect_equal(formula.variables_written(), PackedStringArray(["aim"]))


func _answer(formula: String, variables: Dictionary = _variables(), before: Variant = null) -> Variant:
	return result_of(kind(SCExpressionAction, {"formula": formula, "store_in": &"answer"}), {"answer": before}.merged(variables))


func _grown(values: Array, calls: Array, operations: Array, depth: int) -> String:
	var kind_of := randi() % 5
	if depth == 0 or kind_of == 0:
		return values.pick_random()
	if kind_of < 3:
		return "%s(%s)" % [calls.pick_random(),
				", ".join(range(randi() % 4).map(func(_i: int) -> String: return _grown(values, calls, operations, depth - 1)))]
	return "(%s%s%s)" % [_grown(values, calls, operations, depth - 1), operations.pick_random(), _grown(values, calls, operations, depth - 1)]
