extends RefCounted
## A design as text, a line each resource with the settings that are not as they start, for whoever has to find out what
## went wrong with it.

const LONGEST: int = 120

var _lines: PackedStringArray = []
var _seen: Dictionary[Resource, String] = {}


static func of(design: Resource) -> String:
	var dump := new()
	dump._tell("", design, 0)
	return "\n".join(dump._lines)


func _tell(label: String, of_what: Resource, depth: int) -> void:
	var head := "%s%s%s" % ["  ".repeat(depth), "%s: " % label if not label.is_empty() else "", of_what.get_class() if of_what != null else "null"]
	if of_what == null or _seen.has(of_what):
		_lines.append(head + (" (%s above)" % _seen[of_what] if of_what != null else ""))
		return
	_seen[of_what] = "#%d" % _seen.size()
	var inside: Array[Array] = []
	for property in of_what.get_property_list():
		var name: String = property["name"]
		if not property["usage"] & PROPERTY_USAGE_STORAGE or name.begins_with("resource_") or name == "script":
			continue
		var value: Variant = of_what.get(name)
		if typeof(value) == TYPE_OBJECT and is_instance_valid(value) and value is Resource:
			inside.append([name, value])
		elif value is Array and (value as Array).get_typed_builtin() == TYPE_OBJECT and not (value as Array).is_empty():
			inside.append([name, value])
		elif not is_same(value, ClassDB.class_get_property_default_value(of_what.get_class(), name)) and str(value) != str(ClassDB.class_get_property_default_value(of_what.get_class(), name)):
			var shown := str(value).c_escape().left(LONGEST)
			head += " %s=%s" % [name, "\"%s\"" % shown if value is String else shown]
	_lines.append("%s  %s" % [head, _seen[of_what]])
	for entry in inside:
		if entry[1] is Array:
			for i: int in (entry[1] as Array).size():
				_tell("%s[%d]" % [entry[0], i], entry[1][i], depth + 1)
		else:
			_tell(entry[0], entry[1], depth + 1)
