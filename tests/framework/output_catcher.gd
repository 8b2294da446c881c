extends Logger
## Hears everything the engine prints while a story runs, so that a story can ask for the lines it expects and fails on
## every other complaint.

const KINDS: Array[String] = ["error", "warning", "script error", "shader error"]

## A check of the bindings provokes errors on purpose and says so there.
const PROVOKING: String = "provoking_errors"

var provoking: Script

## Godot 4.6 says so of itself now and then where there are few cores, and goes on.
const OF_THE_ENGINE: String = "Jolt Physics job system exceeded the maximum number of jobs"

## " (state Open, in /root/House/Door)" behind the machine's name.
var _place: RegEx = RegEx.create_from_string(" \\((state [^()/]*(, in /[^()]*)?|in /[^()]*)\\)(?=:)")
var _lock: Mutex = Mutex.new()
var _complaints: Array[Dictionary] = []
var _printed: PackedStringArray = []


func _log_error(_function: String, file: String, line: int, code: String, rationale: String, _editor_notify: bool,
		error_type: int, backtraces: Array[ScriptBacktrace]) -> void:
	if provoking != null and provoking.get(PROVOKING):
		return
	if code.begins_with(OF_THE_ENGINE) or rationale.begins_with(OF_THE_ENGINE):
		return
	var place := "%s:%d" % [file, line]
	for backtrace in backtraces:
		if backtrace.get_frame_count() > 0:
			place = "%s:%d" % [backtrace.get_frame_file(0).get_file(), backtrace.get_frame_line(0)]
			break
	_lock.lock()
	_complaints.append({
		"kind": KINDS[error_type],
		"text": code if rationale.is_empty() else rationale,
		"place": place,
	})
	_lock.unlock()


func _log_message(message: String, _error: bool) -> void:
	_lock.lock()
	_printed.append(message)
	_lock.unlock()


func forget() -> void:
	_lock.lock()
	_complaints.clear()
	_lock.unlock()


func forget_printed() -> void:
	_lock.lock()
	_printed.clear()
	_lock.unlock()


## Takes the first complaint of that kind whose text holds [param part], told with or without the place where it happened;
## false when there is none.
func claim(kind: String, part: String) -> bool:
	_lock.lock()
	var found := false
	for i in _complaints.size():
		var text: String = _complaints[i]["text"]
		if _complaints[i]["kind"] == kind and (part in text or part in _place.sub(text, "")):
			_complaints.remove_at(i)
			found = true
			break
	_lock.unlock()
	return found


func claim_printed(part: String) -> bool:
	_lock.lock()
	var found := false
	for i in _printed.size():
		if part in _printed[i]:
			_printed.remove_at(i)
			found = true
			break
	_lock.unlock()
	return found


## What nobody has claimed, a line each.
func unclaimed() -> PackedStringArray:
	var lines: PackedStringArray = []
	_lock.lock()
	for complaint in _complaints:
		lines.append("%s: %s (%s)" % [complaint["kind"], complaint["text"], complaint["place"]])
	_lock.unlock()
	return lines
