extends RefCounted
## Tells the game maker what is wrong, in the Output panel and the debugger, without saying it over and over.

## Machine id to the keys already used for that machine. Warnings that belong to no machine are kept under 0.
static var _said: Dictionary[int, Dictionary] = {}


## Warns with [param text], once for [param machine] and [param key]. [param machine] may be null.
static func once_for(machine: Object, key: String, text: String) -> void:
	var id := machine.get_instance_id() if machine != null else 0
	if not _said.has(id):
		_forget_the_gone()
		_said[id] = {}
	if _said[id].has(key):
		return
	_said[id][key] = true
	push_warning(text)


## Warns with [param text], every time.
static func say(text: String) -> void:
	push_warning(text)


## Warns with [param text], once for [param key] whichever machine it comes from.
static func once(key: String, text: String) -> void:
	once_for(null, key, text)


# An id is never given twice, so what was said of a machine that has gone is of no more use.
static func _forget_the_gone() -> void:
	for id: int in _said.keys():
		if id != 0 and not is_instance_id_valid(id):
			_said.erase(id)
