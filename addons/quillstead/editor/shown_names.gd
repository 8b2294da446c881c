@tool
extends RefCounted
## Gives the pieces of a design the names that the editor's lists and heads show: a state its own, a transition its event
## and where it leads, an action its summary. They are the editor's alone; no file holds them.

const DesignNames := preload("design_names.gd")
const KindCatalog := preload("kind_catalog.gd")

# A summary tries out what its settings do to it, and each try tells of a change.
var _naming: bool = false


## Names [param object] and what it holds, now and whenever one of them changes.
func follow(object: Object) -> void:
	for part in DesignNames.held_by(object):
		_follow(part)
	if DesignNames.is_part(object):
		_follow(object as Resource)


## What a piece of a design is called in a list.
static func name_of(part: Resource) -> String:
	if part is SCMachineTransition:
		var transition: SCMachineTransition = part
		return "on %s to %s" % [_or(transition.event, "(nothing)"), _or(transition.to_state, "(nowhere)")]
	if part is SCMachineAction:
		var action: SCMachineAction = part
		return _first_filled([action.display_name, "" if _is_only_a_script(action) else action.shown_summary(), KindCatalog.title_of_made(part)])
	if part is SCMachineCondition:
		var condition: SCMachineCondition = part
		return _first_filled([condition.display_name, "" if _is_only_a_script(condition) else condition.shown_summary(), KindCatalog.title_of_made(part)])
	return str(part)


func _follow(part: Resource) -> void:
	var renames := _rename.bind(part.get_instance_id())
	if not part.changed.is_connected(renames):
		part.changed.connect(renames)
	_rename(part.get_instance_id())


func _rename(id: int) -> void:
	var part := instance_from_id(id) as Resource
	if part != null and not _naming:
		_naming = true
		SCMachineAction._show_name(part, name_of(part))
		_naming = false


## In the editor such a script does not run, so that it says nothing of what it does.
static func _is_only_a_script(part: Resource) -> bool:
	var script: Script = part.get_script()
	return script != null and not script.is_tool()


static func _first_filled(names: Array) -> String:
	for name: String in names:
		if not name.strip_edges().is_empty():
			return name
	return ""


static func _or(name: StringName, otherwise: String) -> String:
	return otherwise if name.is_empty() else String(name)
