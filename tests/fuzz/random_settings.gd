extends RefCounted
## Settings drawn for kinds: such as their hints allow, and such as no inspector would let anybody type.

const Dice := preload("res://tests/fuzz/random_dice.gd")

## What every random design declares, a variable of each type.
const VARIABLES: Dictionary[StringName, Variant] = {
	&"whole": 3, &"level": 2.5, &"words": "some words", &"flag": true, &"flat_place": Vector2(3, 4), &"deep_place": Vector3(1, 2, 3),
	&"tint": Color.ORANGE, &"list": [1, 2, 3], &"table": {"key": 1}, &"thing": null,
}
## A name that no variable, state, event, group or node has.
const NOBODY: StringName = &"nobody"
const EVENTS: Array[StringName] = [&"go", &"turn", &"back", &"alarm", &"FINISHED"]
const PATHS: Array[NodePath] = [
	^"", ^"..", ^"../..", ^".", ^"../Plain", ^"../Area", ^"../Body", ^"../Rigid", ^"../Sprite", ^"../Animations", ^"../Sound", ^"../Ticker",
	^"../Label", ^"../Button", ^"../Box/Inside", ^"../Track", ^"../Track/Rider", ^"../Eye", ^"../../Flat", ^"../../Deep",
]
const PATHS_TO_NOWHERE: Array[NodePath] = [
	^"../Nowhere", ^"/root/Nowhere/At/All", ^"../../../../../../..", ^"%Nowhere", ^"../Label:text", ^":position", ^"__no_node__",
]
## Whatever a property of these is set to, the engine takes it calmly.
const PROPERTIES: Array[String] = ["visible", "modulate", "modulate:a", "text", "process_priority", "", "nothing_like_it", "visible:nothing", "::"]
const TEXTS: Array[String] = ["some words", "7.5", "{level} of {whole}", "{nobody} {level:2} {", "", "  ", "ÄÖ \n\t", "a,b,c"]
## Not drawn: they end the run of the stories, or print what looks like a fault.
const LEFT_ALONE: Dictionary[StringName, Dictionary] = {
	&"SCAssertAction": {&"stop_by": SCAssertAction.PAUSING},
	&"SCPrintAction": {&"loudness": SCPrintAction.AS_LINE},
}

## The kinds that have been drawn so far.
static var drawn: Dictionary[StringName, bool] = {}

static var _settings: Dictionary[StringName, Array] = {}

var dice: Dice
var faults: PackedStringArray = []
## A node that lives as long as the design is played.
var live: Node

var _deck: Array[StringName] = []
var _next: int = 0


func _init(with_dice: Dice) -> void:
	dice = with_dice
	_deck = kinds()
	_next = int(dice.seed * 7) % _deck.size()


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
				if property["usage"] & PROPERTY_USAGE_STORAGE and property["name"] != "from_variables":
					listed.append(property)
			of = ClassDB.get_parent_class(of)
		_settings[kind] = listed
	return _settings[kind]


## The next of all kinds, so that a run of some designs uses each of them.
func next_kind() -> StringName:
	_next = (_next + 1) % _deck.size()
	drawn[_deck[_next]] = true
	return _deck[_next]


## An action of the kind; a question comes in an action that asks it.
func action_of(kind: StringName, odd_one_in: int = 0) -> SCMachineAction:
	var made := made_of(kind)
	fill(made, odd_one_in)
	var action := asking(made) if made is SCMachineCondition else made as SCMachineAction
	if action != made:
		action.set(&"true_event", dice.pick(EVENTS))
		action.run_mode = dice.randi() % 2
	return action


static func made_of(kind: StringName) -> Resource:
	var made: Resource = ClassDB.instantiate(kind)
	var left: Dictionary = LEFT_ALONE.get(kind, {})
	for setting: StringName in left:
		made.set(setting, left[setting])
	return made


static func asking(question: Resource) -> SCMachineAction:
	var made := SCCheckAction.new()
	made.condition = question
	return made


func fill(made: Resource, odd_one_in: int) -> void:
	var kind := StringName(made.get_class())
	for property: Dictionary in settings_of(kind):
		if LEFT_ALONE.get(kind, {}).has(property["name"]) or property["name"] == "disabled":
			continue
		if odd_one_in > 0 and dice.one_in(odd_one_in):
			put_odd(made, property)
		elif dice.one_in(2):
			made.set(property["name"], within(property))
	for setting: StringName in SCMachineAction.can_be_read_from_a_variable_of(made):
		if odd_one_in > 0 and not LEFT_ALONE.get(kind, {}).has(setting) and dice.one_in(8):
			made.set("%s_variable" % setting, dice.pick(VARIABLES.keys()) if not dice.one_in(6) else NOBODY)


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


## A list of wrong items, or text that is no colour: the engine itself complains of these before anybody hears of them.
func _refused_by_the_engine(type: Variant.Type, hint: String, value: Variant) -> bool:
	if type in [TYPE_COLOR, TYPE_PACKED_COLOR_ARRAY]:
		return value is String or value is StringName or value is Array
	return type in [TYPE_ARRAY, TYPE_DICTIONARY] and not hint.is_empty() and typeof(value) >= TYPE_DICTIONARY


## A value such as the hint allows.
func within(property: Dictionary) -> Variant:
	var name: String = property["name"]
	var options := (property["hint_string"] as String).split(",")
	match property["type"] as Variant.Type:
		TYPE_BOOL:
			return dice.one_in(2)
		TYPE_INT, TYPE_FLOAT:
			if property["hint"] == PROPERTY_HINT_ENUM:
				return dice.randi() % options.size()
			if property["hint"] == PROPERTY_HINT_RANGE:
				# The short end is where something happens within a few frames.
				var number := lerpf(options[0].to_float(), options[1].to_float(), pow(dice.randf(), 6.0))
				return number if property["type"] == TYPE_FLOAT else ceili(number)
			return dice.randi_range(-3, 12) if property["type"] == TYPE_INT else dice.randf_range(-3.0, 12.0)
		TYPE_STRING:
			return dice.pick(PROPERTIES) if name == "property" else dice.pick(TEXTS) if name != "type" else dice.pick(["Label", "Node", "Nothing"])
		TYPE_STRING_NAME:
			return _name_for(name)
		TYPE_NODE_PATH:
			return dice.pick(PATHS)
		TYPE_VECTOR2:
			return Vector2(dice.randf(), dice.randf()) * 20.0
		TYPE_VECTOR3:
			return Vector3(dice.randf(), dice.randf(), dice.randf()) * 20.0
		TYPE_COLOR:
			return Color(dice.randf(), dice.randf(), dice.randf(), dice.randf())
		TYPE_PACKED_COLOR_ARRAY:
			return PackedColorArray([Color.RED, Color.BLUE])
		TYPE_ARRAY:
			if options[0].is_empty():
				return [1, 2.5, "some words"].slice(dice.randi() % 3)
			return [dice.pick(EVENTS), dice.pick(EVENTS)] as Array[StringName]
		TYPE_OBJECT:
			return _resource_for(options[0])
	return dice.pick(VARIABLES.values())


func odd() -> Variant:
	match dice.randi() % 30:
		0: return NAN
		1: return INF
		2: return -INF
		3: return 1e300
		4: return -1
		5: return 9223372036854775807
		6: return -9223372036854775807
		7: return ""
		8: return "x".repeat(5000)
		9: return &"a name"
		10: return dice.pick(PATHS_TO_NOWHERE)
		11: return dice.pick(PATHS_TO_NOWHERE)
		12: return Vector2(NAN, INF)
		13: return Vector3(1e38, NAN, -INF)
		14: return Vector3.ZERO
		15: return Color(NAN, -4.0, 1e30)
		16: return live
		17: return Callable()
		18: return Signal(self, &"nothing")
		19: return RID()
		20: return Transform3D(Basis(Vector3.ZERO, Vector3.ZERO, Vector3.ZERO), Vector3.ZERO)
		21: return Vector2i(-1, 2147483647)
		22: return SCMachineState.new()
		23: return Gradient.new()
		24: return SCCompareCondition.new()
		25: return [null, NAN, "x", []]
		26: return {null: NAN, "x": {}}
		27: return PackedByteArray([1])
		28: return _gone()
	return null


func _gone() -> Variant:
	var gone := Node.new()
	gone.free()
	return gone


func _name_for(setting: String) -> StringName:
	if setting.ends_with("variable") or setting.ends_with("_in") or setting in ["variable_name", "variable_there"]:
		return dice.pick(VARIABLES.keys()) if not dice.one_in(8) else &""
	if setting.ends_with("event") or setting == "event_name":
		return dice.pick(EVENTS) if not dice.one_in(8) else &""
	if setting.ends_with("action"):
		return dice.pick([&"ui_accept", &"ui_left", NOBODY, &""])
	if setting.ends_with("group"):
		return dice.pick([&"things", NOBODY, &""])
	if setting == "state_name":
		return dice.pick([&"S0", &"S1", &"S4", NOBODY])
	return dice.pick([&"pressed", &"timeout", &"visibility_changed", &"walk", NOBODY])


func _resource_for(class_of: String) -> Resource:
	match class_of:
		"SCMachineCondition":
			var questions := _deck.filter(func(kind: StringName) -> bool: return ClassDB.is_parent_class(kind, &"SCMachineCondition"))
			var made := made_of(dice.pick(questions))
			fill(made, 0)
			return made
		"SCMachineTemplate":
			var made := SCMachineTemplate.new()
			var state := SCMachineState.new()
			state.is_end_state = dice.one_in(2)
			state.actions.append(SCWaitAction.new())
			made.states.append(state)
			made.initial_state = state if not dice.one_in(4) else null
			return made
		"Curve", "Gradient":
			return ClassDB.instantiate(class_of)
	return null
