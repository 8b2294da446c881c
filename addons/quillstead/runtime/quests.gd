extends RefCounted
## Hears the events that quests wait for.
##
## The library passes an event on to [method heard] only while somebody waits for it, so that a game without quests
## pays nothing for them.

## Event name to those who wait for it.
static var _waiting: Dictionary[StringName, Array] = {}


## An event that was waited for has gone by on some machine of [param tree].
static func heard(event_name: StringName, tree: SceneTree) -> void:
	var callables: Array = _waiting.get(event_name, [])
	for callable: Callable in callables.duplicate():
		if callable.is_valid():
			callable.call(event_name, tree)
		else:
			stop_waiting(event_name, callable)


## Calls [param callable] with the event's name and the tree each time [param event_name] goes by.
static func wait_for(event_name: StringName, callable: Callable) -> void:
	if event_name.is_empty():
		return
	var callables: Array = _waiting.get_or_add(event_name, [])
	if not callables.has(callable):
		callables.append(callable)
	SCMachineBase.set_quest_events(_waiting.keys())


## Ends what [method wait_for] began.
static func stop_waiting(event_name: StringName, callable: Callable) -> void:
	if not _waiting.has(event_name):
		return
	_waiting[event_name].erase(callable)
	if _waiting[event_name].is_empty():
		_waiting.erase(event_name)
	SCMachineBase.set_quest_events(_waiting.keys())
