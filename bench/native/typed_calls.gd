extends RefCounted
## Loops whose callee is typed with a class of the extension beside this file, so that the compiler binds the calls as it
## does those on a machine. Loaded only where that extension is.


static func send_events(subject: BenchEmptyCalls, count: int) -> void:
	for i in count:
		subject.send_event(&"go", null)


static func set_values(subject: BenchEmptyCalls, count: int) -> void:
	for i in count:
		subject.set_value(&"count", i)
