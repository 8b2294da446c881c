extends SCMachineCondition
## Is the count high enough? Remembers how often it was asked.

@export var at_least: int = 3


func _check(m: SCMachine, slot: Dictionary) -> bool:
	slot["asked"] = slot.get("asked", 0) + 1
	return m.get_value(&"count", 0) >= at_least


func _summary() -> String:
	return "Count is at least %d" % at_least


func _depends_only_on_variables() -> bool:
	return true
