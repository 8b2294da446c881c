@tool
extends RefCounted
## The names that a setting of an action or a condition takes from a node or a class: methods, signals, properties, and the
## classes whose methods can be called. They are offered, and any other can be typed in.

## As many values as an action hands over.
const MOST: int = 2
## What can be eased.
const WITH_VALUES_IN_BETWEEN: Array[Variant.Type] = [
	TYPE_INT, TYPE_FLOAT, TYPE_VECTOR2, TYPE_VECTOR2I, TYPE_VECTOR3, TYPE_VECTOR3I, TYPE_VECTOR4, TYPE_VECTOR4I, TYPE_RECT2, TYPE_RECT2I, TYPE_COLOR,
	TYPE_QUATERNION, TYPE_BASIS, TYPE_TRANSFORM2D, TYPE_TRANSFORM3D,
]

# The engine's classes with something to call, looked up once.
static var _callable: PackedStringArray = []


## The names for a setting of [param object], seen from [param machine]. Empty where there are none to pick from.
static func offered(object: Object, setting: StringName, machine: SCMachine) -> PackedStringArray:
	if not (object is SCMachineAction or object is SCMachineCondition):
		return []
	if object is SCCallStaticMethodAction:
		return classes() if setting == &"of_class" else static_methods_of(object.of_class) if setting == &"method_name" else PackedStringArray()
	if setting not in [&"method_name", &"signal_name", &"property"]:
		return []
	var node := node_of(object, machine)
	if node == null:
		return []
	match setting:
		&"method_name":
			return methods_of(node)
		&"signal_name":
			return signals_of(node, MOST if object is SCEmitSignalAction else -1)
		_:
			return properties_of(node, object is SCTweenPropertyAction)


## The node under Node Path. Null where that is read from a variable, or leads nowhere in the open scene.
static func node_of(object: Object, machine: SCMachine) -> Node:
	if machine == null or not machine.is_inside_tree() or not StringName(object.get(&"from_variables").get(&"node_path", &"")).is_empty():
		return null
	var path: Variant = object.get(&"node_path")
	if path is NodePath and not (path as NodePath).is_empty():
		return machine.get_node_or_null(path)
	return machine.get_parent() if machine.target_path.is_empty() else machine.get_node_or_null(machine.target_path)


## Those that take no more values than there are settings for, the script's own first.
static func methods_of(node: Object) -> PackedStringArray:
	var names := PackedStringArray()
	var script: Script = node.get_script()
	if script != null:
		_add_methods(script.get_script_method_list(), 0, names)
	var type := node.get_class()
	while not type.is_empty():
		_add_methods(ClassDB.class_get_method_list(type, true), 0, names)
		type = ClassDB.get_parent_class(type)
	return names


## Those that hand over no more than [param most] values; all of them below 0.
static func signals_of(node: Object, most: int = -1) -> PackedStringArray:
	var names := PackedStringArray()
	for described in node.get_signal_list():
		if most < 0 or (described["args"] as Array).size() <= most:
			_add(described["name"], names)
	return names


static func properties_of(node: Object, can_be_eased: bool = false) -> PackedStringArray:
	var names := PackedStringArray()
	for described in node.get_property_list():
		var is_one: bool = described["usage"] & PROPERTY_USAGE_EDITOR or String(described["name"]).begins_with("global_")
		var headings := PROPERTY_USAGE_CATEGORY | PROPERTY_USAGE_GROUP | PROPERTY_USAGE_SUBGROUP
		if is_one and not described["usage"] & headings and (not can_be_eased or described["type"] in WITH_VALUES_IN_BETWEEN):
			_add(described["name"], names)
	return names


## Those of the game's scripts, those of which there is one object, and those of the engine's with static methods.
static func classes() -> PackedStringArray:
	var names := PackedStringArray()
	for listed in ProjectSettings.get_global_class_list():
		_add(listed["class"], names)
	if _callable.is_empty():
		for type in ClassDB.get_class_list():
			if Engine.has_singleton(type) or ClassDB.class_get_method_list(type, true).any(_is_static):
				_callable.append(type)
	for type in _callable:
		_add(type, names)
	return names


static func static_methods_of(type: StringName) -> PackedStringArray:
	var names := PackedStringArray()
	if ClassDB.class_exists(type):
		_add_methods(ClassDB.class_get_method_list(type, true), 0 if Engine.has_singleton(type) else METHOD_FLAG_STATIC, names)
		return names
	for listed in ProjectSettings.get_global_class_list():
		if listed["class"] == type:
			var script := load(listed["path"]) as Script
			if script != null:
				_add_methods(script.get_script_method_list(), METHOD_FLAG_STATIC, names)
	return names


static func _is_static(described: Dictionary) -> bool:
	return described["flags"] & METHOD_FLAG_STATIC != 0


static func _add_methods(list: Array[Dictionary], flags: int, names: PackedStringArray) -> void:
	for described in list:
		var needed: int = (described["args"] as Array).size() - (described["default_args"] as Array).size()
		if needed <= MOST and described["flags"] & flags == flags and not described["flags"] & METHOD_FLAG_VIRTUAL:
			_add(described["name"], names)


## A comma would part it in the engine's list, and a name that begins with an underscore is nobody else's business.
static func _add(name: String, names: PackedStringArray) -> void:
	if not (name.is_empty() or name.contains(",") or name.begins_with("_") or names.has(name)):
		names.append(name)
