@tool
extends RefCounted
## Which design is being edited, so that names can be offered from it, paths be followed from its machine, and what is made
## for it be suited to 2D.

const DesignNames := preload("design_names.gd")

var _design_id: int = 0


## Told of everything that the inspector shows.
func shows(object: Object) -> void:
	var design := of(object)
	_design_id = design.get_instance_id() if design != null else 0
	SCMachineAction.set_shown_on_2d(side_of(design, EditorInterface.get_edited_scene_root()))


## The machine or the template that [param object] is part of. Null when nobody knows.
func of(object: Object) -> Object:
	if object is SCMachine or object is SCMachineTemplate:
		return object
	if not DesignNames.is_part(object):
		return null
	var part: Resource = object
	var candidates: Array[Object] = []
	candidates.append(instance_from_id(_design_id) if is_instance_id_valid(_design_id) else null)
	candidates.append_array(machines_in(EditorInterface.get_edited_scene_root()))
	var file := part.resource_path.get_slice("::", 0)
	candidates.append(load(file) as SCMachineTemplate if ResourceLoader.has_cached(file) else null)
	for candidate in candidates:
		if candidate != null and DesignNames.parts_of(candidate).has(part):
			return candidate
	return null


## The machine that a design is seen from: itself, or the first of the scene that runs the template.
static func machine_of(design: Object, scene: Node) -> SCMachine:
	if design is SCMachine:
		return design
	for machine in machines_in(scene):
		if machine.template != null and machine.template == design:
			return machine
	return null


static func machines_in(scene: Node) -> Array[SCMachine]:
	var found: Array[SCMachine] = []
	if scene is SCMachine:
		found.append(scene)
	if scene != null:
		for machine: SCMachine in scene.find_children("*", "SCMachine", true, false):
			found.append(machine)
	return found


## 1 when a design works on something in 2D, 0 when on something else, -1 when there is nothing to tell by.
static func side_of(design: Object, scene: Node) -> int:
	var machine := machine_of(design, scene)
	if machine != null and machine.is_inside_tree():
		var target := machine.get_parent() if machine.target_path.is_empty() else machine.get_node_or_null(machine.target_path)
		if target is CanvasItem or target is Node3D:
			return 1 if target is CanvasItem else 0
	if scene == null:
		return -1
	for node: Node in [scene] + scene.find_children("*", "", true, false):
		if node is CanvasItem or node is Node3D:
			return 1 if node is CanvasItem else 0
	return -1
