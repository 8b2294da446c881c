extends RefCounted
## Fills the settings of kinds, with what their hints allow or with what no inspector would let anybody type. Which kinds there
## are, and what can be set in them, is asked of the library.

const Dice := preload("res://tests/fuzz/dice.gd")
const GameResources := preload("res://tests/fuzz/game_resources.gd")
const Scene := preload("res://tests/fuzz/scene.gd")

## What every random design declares, a variable of each type.
const VARIABLES: Dictionary[StringName, Variant] = {
	&"whole": 3, &"level": 0.5, &"words": "some words", &"flag": true, &"place_2d": Vector2(3, 4), &"place_3d": Vector3(1, 2, 3),
	&"tint": Color.ORANGE, &"list": [1, 2, 3], &"table": {"key": 1}, &"thing": null,
}
## A name that no variable, state, event, group or node has.
const NOBODY: StringName = &"nobody"
## A state that every random design has, and that stays until it is sent away.
const ANSWERED: StringName = &"Answered"
## What the actions of a valid design send, so that it may arrive at once.
const AHEAD: StringName = &"ahead"
## Settings for the name of a variable that is to hold a node.
const FOR_A_NODE: Array[StringName] = [&"target_variable", &"toward_variable", &"point_variable", &"to_node_variable", &"from_variable"]
## Settings for the name of a variable that is to hold a number, and one such.
const COUNTS: Dictionary[String, StringName] = {"seconds_variable": &"level", "how_many_variable": &"whole"}
## Sent from outside alone, or late.
const EVENTS: Array[StringName] = [&"go", &"turn", &"back", &"alarm", &"FINISHED"]
const PATHS: Array[NodePath] = [^"", ^"..", ^"../..", ^".", ^"../../Host0", ^"../../Host1"]
const PATHS_TO_NOWHERE: Array[NodePath] = [
	^"../Nowhere", ^"/root/Nowhere/At/All", ^"../../../../../../..", ^"%Nowhere", ^"../Label:text", ^":position", ^"__no_node__",
]
## Whatever a property of these is set to, the engine takes it calmly.
const PROPERTIES: Array[String] = ["visible", "process_priority", "modulate", "modulate:a", "text", "", "nothing_like_it", "visible:nothing", "::"]
const TEXTS: Array[String] = ["some words", "7.5", "a,b,c", "{level} of {whole}", "{nobody} {level:2} {", "", "  ", "ÄÖ \n\t"]
## Seconds that anything lasts that may outlive its machine.
const LONGEST: float = 0.5
## They would end the run that plays them, or take away what it is played on.
const ENDS_THE_GAME: Array[StringName] = [&"SCQuitGameAction", &"SCQueueFreeAction", &"SCChangeSceneAction"]
## Not drawn: they would end the run as well, print what looks like a fault, keep a number in 2D and a vector in 3D, or reach files
## that are not the story's.
const LEFT_ALONE: Dictionary[StringName, Dictionary] = {
	# Without a parent they would go under the root. What is warned of comes when its machine has long gone.
	&"SCInstantiateAction": {&"parent_path": ^"..", &"warning_scene": null},
	&"SCAddNodeAction": {&"parent_path": ^".."},
	&"SCProceduralPlacementAction": {&"parent_path": ^".."},
	&"SCBuildDungeonAction": {&"parent_path": ^".."},
	# A copy of its host would copy itself.
	&"SCDuplicateAction": {&"node_path": ^"../Plain"},
	# What the others look for beside them stays there.
	&"SCReparentAction": {&"node_path": ^"../Sprite"},
	&"SCReadFileAction": {&"anywhere": false},
	&"SCWriteFileAction": {&"anywhere": false},
	&"SCChangeTextInFileAction": {&"anywhere": false},
	&"SCCopyFolderAction": {&"anywhere": false},
	&"SCMoveToBinAction": {&"anywhere": false},
	# Only asked for once something is in reach.
	&"SCInteractionAction": {&"prompt_path": ^""},
	&"SCBulletPatternAction": {&"count": 5, &"lifetime": 0.5},
	&"SCSaveGameAction": {&"what": SCSaveGameAction.SAVE, &"slot": "random", &"slot_variable": &""},
	&"SCPauseGameAction": {&"mode": SCPauseGameAction.RESUME},
	# The window is everybody's.
	&"SCScreenSettingsAction": {&"mode": 0, &"window_size": Vector2.ZERO, &"screen": 0, &"vsync": 0, &"max_fps": -1, &"interface_scale": 0.0},
	&"SCSystemAction": {&"what": SCSystemAction.PROCESSORS, &"any_address": false},
	&"SCGetVelocityAction": {&"store_turning_in": &""},
	&"SCAssertAction": {&"stop_by": SCAssertAction.PAUSING},
	&"SCPrintAction": {&"loudness": SCPrintAction.AS_LINE},
}
## What stands for a resource of a class that has many.
const STAND_INS: Dictionary[String, StringName] = {
	"AudioStream": &"AudioStreamGenerator", "Font": &"FontVariation", "Material": &"StandardMaterial3D", "Mesh": &"BoxMesh",
	"Resource": &"Gradient", "SCMachineAction": &"SCPrintAction", "Script": &"GDScript", "Shape2D": &"CircleShape2D",
	"Shape3D": &"SphereShape3D", "Texture": &"GradientTexture2D", "Texture2D": &"GradientTexture2D", "VideoStream": &"VideoStreamTheora",
}

static var _odd: Array = [
	NAN, INF, -INF, 1e300, -1, 9223372036854775807, -9223372036854775807, "", &"a name", Vector2(NAN, INF), Vector3(1e38, NAN, -INF), Vector3.ZERO,
	Color(NAN, -4.0, 1e30), RID(), Transform3D(Basis(Vector3.ZERO, Vector3.ZERO, Vector3.ZERO), Vector3.ZERO), Vector2i(-1, 2147483647), null,
	PackedByteArray([1]),
]
static var _settings: Dictionary[StringName, Array] = {}

var dice: Dice
var paths: Array[NodePath]
## A node that lives as long as the design is played.
var live: Node
## Above 0, what is filled in may leave nothing to complain of: it reads and writes variables of its own, called by this number.
var well: int = 0
## The variables of its own, with what they start as.
var declared: Dictionary[StringName, Variant] = {}
var wants_mate: bool = false
var faults: PackedStringArray = []

# The variable that most settings of one filling are about; not the whole one, as fractions get into it in the end.
var _theme: StringName


func _init(with_dice: Dice, few_nodes: bool) -> void:
	dice = with_dice
	_theme = dice.pick(VARIABLES.keys().slice(1))
	paths = Scene.paths(few_nodes)


static func kinds() -> Array[StringName]:
	var listed: Array[StringName] = []
	for row in SCMachineAction._core_kinds():
		listed.append(row["class"])
	return listed


## What the kind and its bases declare, down to but not including the engine's own.
static func settings_of(kind: StringName) -> Array:
	if not _settings.has(kind):
		var listed := []
		var of := kind
		while of != &"Resource":
			for property in ClassDB.class_get_property_list(of, true):
				if not property["usage"] & (PROPERTY_USAGE_GROUP | PROPERTY_USAGE_SUBGROUP | PROPERTY_USAGE_CATEGORY):
					listed.append(property)
			of = ClassDB.get_parent_class(of)
		_settings[kind] = listed
	return _settings[kind]


static func stored_of(kind: StringName) -> Array:
	return settings_of(kind).filter(func(property: Dictionary) -> bool: return property["usage"] & PROPERTY_USAGE_STORAGE)


## Those that may be filled in one by one.
static func open_of(kind: StringName) -> Array:
	var left: Dictionary = LEFT_ALONE.get(kind, {})
	return stored_of(kind).filter(func(property: Dictionary) -> bool:
		return property["name"] not in ["from_variables", "disabled"] and not left.has(StringName(property["name"])))


static func made_of(kind: StringName) -> Resource:
	var made: Resource = ClassDB.instantiate(kind)
	var left: Dictionary = LEFT_ALONE.get(kind, {})
	for setting: StringName in left:
		made.set(setting, left[setting])
	return made


## The action itself, or one that asks the condition.
static func action_with(made: Resource) -> SCMachineAction:
	if made is SCMachineAction:
		return made
	var check := SCCheckAction.new()
	check.condition = made
	return check


static func choices_of(options: PackedStringArray) -> PackedInt64Array:
	var choices: PackedInt64Array = []
	var next := 0
	for option in options:
		if ":" in option:
			next = option.get_slice(":", 1).to_int()
		choices.append(next)
		next += 1
	return choices


## An action of the kind; a condition comes in an action that asks it.
func action_of(kind: StringName, odd_one_in: int = 0) -> SCMachineAction:
	var made := made_of(kind)
	fill(made, odd_one_in)
	var action := action_with(made)
	if action != made:
		action.set(&"true_event", _event())
		action.set(&"only_when_it_changes", dice.one_in(2))
		action.run_mode = dice.randi() % 2
	return action


func fill(made: Resource, odd_one_in: int = 0) -> void:
	var kind := StringName(made.get_class())
	for property: Dictionary in open_of(kind):
		var name: String = property["name"]
		if odd_one_in > 0 and dice.one_in(odd_one_in):
			put_odd(made, property)
		elif dice.one_in(2) or (well > 0 and not _is_of_use(made.get(name)) and dice.one_in(2)):
			made.set(name, within(property, made.get(name)))
	for setting: StringName in SCMachineAction.can_be_read_from_a_variable_of(made):
		if dice.one_in(8) and (well > 0 or odd_one_in > 0) and not LEFT_ALONE.get(kind, {}).has(setting):
			made.set("%s_variable" % setting, _variable_like(made.get(setting), setting))


## Whatever is put into a setting of a type, that type is what it goes on holding.
func put_odd(made: Resource, property: Dictionary) -> void:
	var type: Variant.Type = property["type"]
	var value: Variant = odd()
	while _refused_by_the_engine(type, property["hint_string"], value):
		value = odd()
	made.set(property["name"], value)
	var held := typeof(made.get(property["name"]))
	if type != TYPE_NIL and held != type and not (type == TYPE_OBJECT and held == TYPE_NIL):
		faults.append("%s.%s came to hold %s, a %s" % [made.get_class(), property["name"], made.get(property["name"]), type_string(held)])


## A value such as the hint allows, in a list or a table of the same sort as the one that is there.
func within(property: Dictionary, before: Variant = null) -> Variant:
	var name: String = property["name"]
	var options := (property["hint_string"] as String).split(",")
	var type: Variant.Type = property["type"]
	match type:
		TYPE_BOOL:
			return dice.one_in(2)
		TYPE_INT, TYPE_FLOAT:
			# Every machine that reaches every machine would be all that a town is busy with.
			return 0 if name == "reach" and well > 0 and not dice.one_in(8) else type_convert(_number(property["hint"], options), type)
		TYPE_STRING, TYPE_STRING_NAME:
			return type_convert(_text(property, options), type)
		TYPE_NODE_PATH:
			if well > 0 and name == "machine_path":
				wants_mate = true
				return Scene.MATE
			return dice.pick(paths + PATHS.slice(0, 2 if well > 0 else PATHS.size()))
		TYPE_VECTOR2, TYPE_VECTOR2I, TYPE_VECTOR3, TYPE_VECTOR3I:
			return type_convert(Vector3(dice.randi() % 80, dice.randi() % 80, dice.randi() % 80) / 4.0, type)
		TYPE_RECT2, TYPE_RECT2I:
			return type_convert(Rect2(1, 2, dice.randi() % 20, 4), type)
		TYPE_COLOR:
			return Color8(dice.randi() % 256, dice.randi() % 256, dice.randi() % 256, dice.randi() % 256)
		TYPE_ARRAY:
			return _list(name.trim_suffix("s"), before)
		TYPE_DICTIONARY:
			var made: Dictionary = before.duplicate() if before is Dictionary else {}
			made[_item("", made.get_typed_key_builtin(), made.get_typed_key_class_name())] = _item("", made.get_typed_value_builtin(), made.get_typed_value_class_name())
			return made
		TYPE_OBJECT:
			return _resource_of(options[0])
	if type >= TYPE_PACKED_BYTE_ARRAY:
		var items := {TYPE_PACKED_STRING_ARRAY: "x", TYPE_PACKED_VECTOR2_ARRAY: Vector2(1, 2), TYPE_PACKED_VECTOR3_ARRAY: Vector3(1, 2, 3), TYPE_PACKED_COLOR_ARRAY: Color.RED}
		return type_convert([items.get(type, 3), items.get(type, 4)], type)
	return dice.pick(VARIABLES.values()) if well == 0 or dice.one_in(2) else VARIABLES[_theme] if before == null or dice.one_in(2) else _item(name, typeof(before), &"")


func odd() -> Variant:
	match dice.randi_range(0, _odd.size() + 9):
		0: return live
		1: return Callable()
		2: return Signal(self, &"nothing")
		3: return "x".repeat(5000)
		4: return [SCMachineState, Gradient, SCCompareCondition][dice.randi_range(0, 2)].new()
		5: return _gone()
		6, 7: return dice.pick(PATHS_TO_NOWHERE)
		8: return [null, NAN, "x", []]
		9: return {null: NAN, "x": {}}
	return dice.pick(_odd)


func _gone() -> Variant:
	var gone := Node.new()
	gone.free()
	return gone


func _is_of_use(value: Variant) -> bool:
	return typeof(value) not in [TYPE_STRING, TYPE_STRING_NAME, TYPE_OBJECT, TYPE_NIL] and not (value is Array and (value as Array).is_empty())


## A list of wrong items, or text that is no colour: the engine itself complains of these before anybody hears of them.
func _refused_by_the_engine(type: Variant.Type, hint: String, value: Variant) -> bool:
	if type in [TYPE_COLOR, TYPE_PACKED_COLOR_ARRAY]:
		return value is String or value is StringName or value is Array
	return type in [TYPE_ARRAY, TYPE_DICTIONARY] and not hint.is_empty() and typeof(value) >= TYPE_DICTIONARY


## Of a range the short end, most of the time: there something happens within a few frames. What a file keeps without loss.
func _number(hint: PropertyHint, options: PackedStringArray) -> float:
	match hint:
		PROPERTY_HINT_ENUM:
			return dice.pick(choices_of(options))
		PROPERTY_HINT_RANGE:
			var number := options[0].to_float() + floorf(pow(dice.randf(), 6.0) * (options[1].to_float() - options[0].to_float()) * 16.0) / 16.0
			return minf(number, LONGEST) if well > 0 and "suffix:s" in options else number
		PROPERTY_HINT_FLAGS:
			return dice.randi() % (1 << options.size())
	return dice.randi_range(-12, 48) / 4.0


func _text(property: Dictionary, options: PackedStringArray) -> String:
	var name: String = property["name"]
	match property["hint"] as PropertyHint:
		PROPERTY_HINT_ENUM:
			return dice.pick(options)
		PROPERTY_HINT_INPUT_NAME:
			return dice.pick(["ui_accept", "ui_left"] if well > 0 else ["ui_accept", "ui_left", NOBODY, ""])
		PROPERTY_HINT_TYPE_STRING, PROPERTY_HINT_ARRAY_TYPE:
			return dice.pick(["Label", "Node", "Nothing"])
	if well > 0 and GameResources.TEXTS.has(name):
		return GameResources.TEXTS[name]
	if name == "property":
		return dice.pick(PROPERTIES.slice(0, 2 if well > 0 else PROPERTIES.size()))
	return dice.pick(TEXTS.slice(0, 3 if well > 0 else TEXTS.size())) if property["type"] == TYPE_STRING else String(_name_for(name))


func _name_for(setting: String) -> StringName:
	if setting == "variable_there":
		return &"heard"
	if well > 0 and GameResources.NAMES.has(setting):
		return GameResources.NAMES[setting]
	if well > 0 and COUNTS.has(setting):
		return _variable_like(VARIABLES[COUNTS[setting]], setting)
	# What comes in late may be of any type.
	if setting.ends_with("_in") and well > 0:
		declared[StringName("any %d of %s" % [well, setting])] = null
		return StringName("any %d of %s" % [well, setting])
	if setting in FOR_A_NODE and well > 0:
		declared[StringName("node %d of %s" % [well, setting])] = null
		return StringName("node %d of %s" % [well, setting])
	if setting.ends_with("variable") or setting.ends_with("_in") or setting == "variable_name":
		for like: StringName in [&"list", &"table"]:
			if setting.begins_with(like) and dice.one_in(2):
				return _variable_like(VARIABLES[like], setting)
		return _variable_like(null, setting)
	if setting.ends_with("event") or setting == "event_name":
		return _event()
	if setting.ends_with("group"):
		return dice.pick([&"things", NOBODY, &""])
	if setting == "state_name":
		return ANSWERED if well > 0 else dice.pick([&"S0", &"S1", &"S4", NOBODY])
	return dice.pick([&"pressed", &"timeout", &"visibility_changed", &"walk", NOBODY])


func _event() -> StringName:
	return dice.pick([AHEAD, &"unheard"]) if well > 0 else &"" if dice.one_in(8) else dice.pick(EVENTS)


## One of the same type, when there is one. A variable of its own for each setting, as two may put values of two types into it.
func _variable_like(value: Variant, setting: String) -> StringName:
	if well == 0:
		return dice.pick([NOBODY, &""]) if dice.one_in(8) else dice.pick(VARIABLES.keys())
	var fitting := VARIABLES.keys().filter(func(name: StringName) -> bool: return typeof(VARIABLES[name]) == typeof(value))
	var like: StringName = dice.pick(fitting) if value != null and not fitting.is_empty() else _theme
	var name := StringName("%s %d of %s" % [like, well, setting])
	declared[name] = VARIABLES[like]
	return name


func _list(name: String, before: Variant) -> Array:
	var made: Array = before.duplicate() if before is Array else []
	made.clear()
	if not made.is_typed():
		return [1, 2.5, "some words"].slice(dice.randi() % 3)
	for i in 2:
		made.append(_item(name, made.get_typed_builtin(), _class_of_items(made)))
	return made


func _class_of_items(list: Array) -> StringName:
	var script := list.get_typed_script() as Script
	return list.get_typed_class_name() if script == null else script.get_global_name()


func _item(name: String, type: int, class_of: StringName) -> Variant:
	return "else" if type == TYPE_NIL else within({"name": name, "type": type, "hint": PROPERTY_HINT_NONE, "hint_string": class_of})


func _resource_of(class_of: String) -> Resource:
	match class_of:
		"SCMachineCondition":
			var made := made_of(dice.pick(kinds().filter(func(kind: StringName) -> bool: return ClassDB.is_parent_class(kind, &"SCMachineCondition"))))
			fill(made)
			return made
		"SCMachineTemplate":
			var made := SCMachineTemplate.new()
			var state := SCMachineState.new()
			state.is_end_state = dice.one_in(2)
			state.actions.append(SCWaitAction.new())
			made.states.append(state)
			made.initial_state = null if well == 0 and dice.one_in(4) else state
			return made
		"PackedScene":
			var root := Node.new()
			var made := PackedScene.new()
			made.pack(root)
			root.free()
			return made
	var declared_by_script := GameResources.made(class_of)
	if declared_by_script != null:
		return declared_by_script
	var name: StringName = STAND_INS.get(class_of, class_of)
	var made: Resource = ClassDB.instantiate(name) if ClassDB.can_instantiate(name) else null
	if made is Curve:
		(made as Curve).add_point(Vector2.ONE)
	return made
