extends SceneTree
## Runs the tests of the bindings and leaves with 1 when one fails:
## [code]godot --headless --path tests/bindings --script res://run.gd[/code].


func _process(_delta: float) -> bool:
	var failures: Array[String] = []
	var tests_run: int = 0
	var script: GDScript = load("res://bindings_test.gd") as GDScript
	if script == null or not script.can_instantiate():
		failures.append("bindings_test.gd does not compile")
	else:
		var test: RefCounted = script.new()
		failures = test.call(&"run")
		tests_run = test.get(&"tests_run")
	for failure: String in failures:
		print("FAILED ", failure)
	print("%d passed, %d failed" % [maxi(tests_run - failures.size(), 0), failures.size()])
	quit(0 if failures.is_empty() else 1)
	return true
