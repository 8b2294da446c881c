@tool
class_name SCDataField
extends Resource
## One field of a [SCDataDefinition]: what it is called, what kind of value it holds and what a new record starts with.

enum Type { FLOAT, INT, BOOL, STRING, VECTOR2, VECTOR3, COLOR, ARRAY, DICTIONARY, RESOURCE }

## What a field of each type holds when nothing else was said.
const EMPTY: Array = [0.0, 0, false, "", Vector2.ZERO, Vector3.ZERO, Color.WHITE, [], {}, null]
## What each type takes, for a sentence.
const TAKES: PackedStringArray = [
	"a number", "a whole number", "true or false", "a text", "a Vector2", "a Vector3", "a Color", "an Array", "a Dictionary", "a resource"]

## What the field is called, such as [code]Damage[/code]. It is how actions, conditions and the columns of a table name it.
@export var field_name: StringName = &"":
	set(value):
		field_name = value
		emit_changed()
## What kind of value it holds.
@export var type: Type = Type.FLOAT:
	set(value):
		var was_empty: bool = typeof(default_value) == typeof(EMPTY[type]) and default_value == EMPTY[type]
		type = clampi(value, 0, Type.size() - 1) as Type
		_settle()
		default_value = empty() if was_empty else default_value
		notify_property_list_changed()
## What a record holds that was given nothing else.
@export var default_value: Variant = 0.0:
	set(value):
		default_value = value
		# The type may come after it, from a file that was edited by hand.
		if refusal(value).is_empty():
			default_value = fitted(value)
		elif Engine.is_editor_hint():
			default_value = empty()
		emit_changed()
## For a String: the texts to choose from, such as Common, Rare and Legendary. Highest and Lowest go by their order. Without any,
## every text will do.
@export var choices: PackedStringArray = []:
	set(value):
		choices = value
		_settle()
		notify_property_list_changed()
		emit_changed()
## For a Float or an Int: never below [member min_value] and never above [member max_value].
@export var has_limits: bool = false:
	set(value):
		has_limits = value
		_settle()
		notify_property_list_changed()
		emit_changed()
## The least that it holds. What is less becomes this.
@export var min_value: float = 0.0:
	set(value):
		min_value = value
		emit_changed()
## The most that it holds. What is more becomes this.
@export var max_value: float = 100.0:
	set(value):
		max_value = value
		emit_changed()
## For a Resource: which class, such as [code]Texture2D[/code], [code]PackedScene[/code] or [code]SCItem[/code]. Empty takes any.
@export var of_class: String = "":
	set(value):
		of_class = value
		emit_changed()
## What it is for. The inspector shows it nowhere else.
@export_multiline var description: String = ""

# The type of the values that need no second look when they are read; below zero when all of them do.
var _as_it_is: int = TYPE_FLOAT


func _validate_property(property: Dictionary) -> void:
	match property["name"]:
		&"default_value":
			property.merge(as_property(&"default_value"), true)
		&"choices":
			_show(property, type == Type.STRING)
		&"has_limits":
			_show(property, is_number())
		&"min_value", &"max_value":
			_show(property, is_number() and has_limits)
		&"of_class":
			_show(property, type == Type.RESOURCE)


func is_number() -> bool:
	return type == Type.FLOAT or type == Type.INT


## How the inspector shows such a value, under that name.
func as_property(as_name: StringName) -> Dictionary:
	var shown := {"name": as_name, "type": typeof(EMPTY[type]), "hint": PROPERTY_HINT_NONE, "hint_string": "", "class_name": &""}
	shown["usage"] = PROPERTY_USAGE_DEFAULT
	if type == Type.RESOURCE:
		shown["type"] = TYPE_OBJECT
		shown["hint"] = PROPERTY_HINT_RESOURCE_TYPE
		shown["hint_string"] = "Resource" if of_class.is_empty() else of_class
	elif type == Type.STRING and not choices.is_empty():
		shown["hint"] = PROPERTY_HINT_ENUM
		shown["hint_string"] = ",".join(choices)
	elif is_number() and has_limits and min_value <= max_value:
		shown["hint"] = PROPERTY_HINT_RANGE
		shown["hint_string"] = "%s,%s,%s" % [min_value, max_value, 1 if type == Type.INT else 0.001]
	return shown


## What a record keeps for this field, made to fit where the field has become another since.
func read(kept: Variant) -> Variant:
	if typeof(kept) == _as_it_is:
		return kept
	return fitted(kept) if refusal(kept).is_empty() else starts_as()


## A value of its own for a record that was given none.
func starts_as() -> Variant:
	return fitted(default_value) if refusal(default_value).is_empty() else empty()


## What a field of this type holds when nothing else was said: for choices the first of them.
func empty() -> Variant:
	if type == Type.STRING and not choices.is_empty():
		return choices[0]
	return _limited(EMPTY[type]) if is_number() else copied(EMPTY[type])


## Why it cannot hold that value, to go into a sentence; empty when it can.
func refusal(value: Variant) -> String:
	if type == Type.RESOURCE:
		return _refused_as_resource(value)
	if is_number() and (value is float or value is int) and is_nan(value):
		return "it takes %s, and this is not a number" % TAKES[type]
	if value == null or not SCMachineAction.can_fit(EMPTY[type], value):
		return "it takes %s, not %s" % [TAKES[type], SCMachineAction.kind_in_words(value)]
	if type == Type.STRING and not choices.is_empty() and place_of(value) < 0:
		return "%s is none of its choices, which are %s" % [SCMachineAction.text_of(value), listed(choices)]
	return ""


## A value that is not refused, as this field holds it: of its type and within its limits. Lists and tables are copied.
func fitted(value: Variant) -> Variant:
	if type == Type.RESOURCE:
		return value if is_instance_valid(value) else null
	if type == Type.STRING and not choices.is_empty():
		return choices[maxi(place_of(value), 0)]
	var held: Variant = SCMachineAction.fitted_to(EMPTY[type], value)
	return _limited(held) if is_number() else copied(held)


## Which of the choices that is, from 0; below 0 for none of them. Large and small letters are the same.
func place_of(choice: Variant) -> int:
	var text := SCMachineAction.text_of(choice)
	var exactly := choices.find(text)
	if exactly >= 0:
		return exactly
	for i in choices.size():
		if choices[i].nocasecmp_to(text) == 0:
			return i
	return -1


## "Damage, Speed and Rarity".
static func listed(names: PackedStringArray) -> String:
	if names.size() < 2:
		return "".join(names)
	return "%s and %s" % [", ".join(names.slice(0, -1)), names[-1]]


## Lists and tables with all that is in them, but the same resources.
static func copied(value: Variant) -> Variant:
	return value.duplicate(true) if value is Array or value is Dictionary else value


func _settle() -> void:
	var is_plain := type < Type.ARRAY and not (is_number() and has_limits) and choices.is_empty()
	_as_it_is = typeof(EMPTY[type]) if is_plain else -1


func _refused_as_resource(value: Variant) -> String:
	if value == null or (value is Object and not is_instance_valid(value)):
		return ""
	if not value is Resource:
		return "it takes a resource, not %s" % SCMachineAction.kind_in_words(value)
	if of_class.is_empty() or (value as Resource).is_class(of_class):
		return ""
	var script: Script = (value as Resource).get_script()
	while script != null:
		if script.get_global_name() == StringName(of_class):
			return ""
		script = script.get_base_script()
	return "it takes only %s" % of_class


func _limited(number: Variant) -> Variant:
	if not has_limits or min_value > max_value:
		return number
	var inside := clampf(number, min_value, max_value)
	if type == Type.FLOAT:
		return inside
	# A limit between two whole numbers leaves the nearest one inside.
	return number if inside == number else ceili(inside) if inside == min_value else floori(inside)


func _show(property: Dictionary, shown: bool) -> void:
	if not shown:
		property["usage"] &= ~PROPERTY_USAGE_EDITOR
