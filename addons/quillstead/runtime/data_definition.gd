@tool
class_name SCDataDefinition
extends Resource
## Which fields the records of one kind have: a sword's Damage, Speed and Rarity. Many records and tables share one definition.

const DataField := preload("res://addons/quillstead/runtime/data_field.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

## What every resource has, and every record: no field can be called that.
const TAKEN: PackedStringArray = [
	"script", "resource_name", "resource_path", "resource_local_to_scene", "resource_scene_unique_id", "definition", "values", "record_name"]

## The fields, in the order in which the inspector shows them.
@export var fields: Array[DataField] = []:
	set(value):
		fields = value
		_places.clear()
		for one in value:
			if one != null and not one.changed.is_connected(emit_changed):
				one.changed.connect(emit_changed)
		emit_changed()

# Where each was found last. A list can be changed without anybody hearing of it, so what is found is looked at again.
var _places: Dictionary[StringName, int] = {}


## The field of that name; null for none. Of several that are called alike, the first.
func field(of_name: StringName) -> DataField:
	var known: int = _places.get(of_name, -1)
	if known >= 0 and known < fields.size() and fields[known] != null and fields[known].field_name == of_name:
		return fields[known]
	if of_name.is_empty():
		return null
	for i in fields.size():
		if fields[i] != null and fields[i].field_name == of_name:
			_places[of_name] = i
			return fields[i]
	_places.erase(of_name)
	return null


func has_field(of_name: StringName) -> bool:
	return field(of_name) != null


## The names of the fields, each once, in their order.
func names() -> PackedStringArray:
	var found: PackedStringArray = []
	for one in fields:
		if one != null and not one.field_name.is_empty() and not found.has(one.field_name):
			found.append(one.field_name)
	return found


## Adds a field and answers it, for a definition that is made by a script.
func add_field(of_name: StringName, type: DataField.Type = DataField.Type.FLOAT, default_value: Variant = null) -> DataField:
	var added := DataField.new()
	added.field_name = of_name
	added.type = type
	added.default_value = added.empty() if default_value == null else default_value
	fields = fields + ([added] as Array[DataField])
	return added


## What is wrong with it, each in a sentence.
func findings() -> PackedStringArray:
	var found: PackedStringArray = []
	var seen: PackedStringArray = []
	for i in fields.size():
		var one := fields[i]
		if one == null:
			found.append("%s has nothing in place %d of its fields, so that place is passed over. Put a field there, or remove it." % [shown_name(), i + 1])
		elif one.field_name.is_empty():
			found.append("%s has a field without a name in place %d, so nothing can read it. Name it under Field Name." % [shown_name(), i + 1])
		elif seen.has(one.field_name):
			found.append("%s has two fields called %s, so only the first is used. Give the other another name." % [shown_name(), one.field_name])
		elif TAKEN.has(one.field_name):
			found.append("%s has a field called %s, which every resource has, so the inspector does not show it. Give it another name." % [
				shown_name(), one.field_name])
		if one != null:
			seen.append(one.field_name)
			if one.is_number() and one.has_limits and one.min_value > one.max_value:
				found.append("%s of %s has a least value above its greatest, so it has no limits. Turn Min Value and Max Value round." % [
					one.field_name, shown_name()])
	return found


## Tells the game maker what is wrong with it, once.
func tell_findings() -> void:
	for sentence in findings():
		MakerWarnings.once_for(self, sentence, sentence)


func shown_name() -> String:
	return name_of(self, "The Data Definition")


## What a resource is called: its own name, that of its file, or [param otherwise].
static func name_of(resource: Resource, otherwise: String) -> String:
	if not resource.resource_name.is_empty():
		return resource.resource_name
	var path := resource.resource_path
	return otherwise if path.is_empty() or "::" in path else path.get_file().get_basename().capitalize()
