extends RefCounted
## Who comes into the scene that is being gone to, and where the player stands there.
##
## That is whoever is carried over, or else the player that the new scene has. In 2D the player stays turned as it is, in 3D it is
## turned the way the spot faces.

const CarryOver := preload("res://addons/quillstead/runtime/quillstead_carry_over.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

const RecordWords := preload("res://addons/quillstead/runtime/scene_record_words.gd")

const PLAYERS: StringName = &"player"


## What [param record] holds of a scene that was left, but for those who come into it now: they are not who left. [param scene] is it
## anew, not yet in the tree.
static func without_those_who_come(scene: Node, record: Dictionary) -> Dictionary:
	var theirs: PackedStringArray = []
	for machine: SCMachine in scene.find_children("*", "SCMachine", true, false):
		if CarryOver.is_awaited(machine):
			theirs.append(str(scene.get_path_to(machine)))
			var node := CarryOver.node_of(machine)
			if node != null and scene.is_ancestor_of(node):
				theirs.append(str(scene.get_path_to(node)))
	if theirs.is_empty() or record.is_empty():
		return record
	var rest := record.duplicate(true)
	rest[RecordWords.MACHINES] = _rows_of_others(rest, RecordWords.MACHINES, RecordWords.AT, theirs)
	if rest.get(RecordWords.TOP) is Dictionary:
		var top: Dictionary = rest[RecordWords.TOP]
		top[RecordWords.NEWCOMERS] = _rows_of_others(top, RecordWords.NEWCOMERS, RecordWords.PARENT, theirs)
		if top.get(RecordWords.GONE) is Array:
			top[RecordWords.GONE] = (top[RecordWords.GONE] as Array).filter(func(place: Variant) -> bool: return not _is_within(place, theirs))
		if top.get(RecordWords.NODES) is Dictionary:
			for place: Variant in (top[RecordWords.NODES] as Dictionary).keys().filter(_is_within.bind(theirs)):
				(top[RecordWords.NODES] as Dictionary).erase(place)
	return rest


## Before [param scene] enters the tree, so that no area notices the player where the scene has it.
static func prepare(scene: Node, spot_name: StringName) -> void:
	var spot := _spot_in(scene, spot_name)
	var player := _player_in(scene)
	if spot is Node2D and player is Node2D:
		_place_2d(player as Node2D, _in_2d(spot as Node2D))
	elif spot is Node3D and player is Node3D:
		_place_3d(player as Node3D, _in_3d(spot as Node3D))


## Once [param scene] is in the tree: a spot that it made for itself is there now, and so is everybody who moves as they begin.
static func finish(scene: Node, spot_name: StringName, asked_by: String) -> void:
	var spot := _spot_in(scene, spot_name)
	var player := _player_in(scene)
	var wrong := ""
	if spot == null:
		wrong = "there is no spot called %s in %s, so the player stands where that scene has it. Give a Marker2D or a Marker3D there that name" % [
			spot_name, _name_of(scene)]
	elif player == null:
		wrong = "there is nobody in %s to stand at %s. Put its player into the group player" % [_name_of(scene), spot_name]
	elif spot is Node2D and player is Node2D:
		if not (player as Node2D).global_position.is_equal_approx((spot as Node2D).global_position):
			(player as Node2D).global_position = (spot as Node2D).global_position
	elif spot is Node3D and player is Node3D:
		_turn_and_place(player as Node3D, (spot as Node3D).global_transform)
	else:
		wrong = "%s is a %s, and %s in %s is a %s, so the player stands where that scene has it. Make both 2D, or both 3D" % [
			spot_name, spot.get_class(), player.name, _name_of(scene), player.get_class()]
	if wrong.is_empty():
		_stand_still(player)
	else:
		MakerWarnings.say("Change Scene on %s: %s." % [asked_by, wrong])


static func _rows_of_others(of: Dictionary, name: String, place: String, theirs: PackedStringArray) -> Array:
	var rows: Variant = of.get(name)
	if not rows is Array:
		return []
	return (rows as Array).filter(func(row: Variant) -> bool: return row is Dictionary and not _is_within((row as Dictionary).get(place), theirs))


static func _is_within(place: Variant, theirs: PackedStringArray) -> bool:
	for above in theirs:
		if str(place) == above or str(place).begins_with(above + "/"):
			return true
	return false


# Not find_child(), to which some letters of a name stand for others.
static func _spot_in(node: Node, spot_name: StringName) -> Node:
	if node.name == spot_name:
		return node
	for child in node.get_children():
		var found := _spot_in(child, spot_name)
		if found != null:
			return found
	return null


# In or out of the tree. Somebody who is carried over counts first, and among several the one in the group.
static func _player_in(scene: Node) -> Node:
	var machines: Array[SCMachine] = []
	if scene is SCMachine:
		machines.append(scene)
	machines.append_array(scene.find_children("*", "SCMachine", true, false))
	# Nobody is the whole scene, whose top may have a machine as well.
	var can_stand := func(node: Node) -> bool: return node != scene and _has_a_place(node)
	var carried := machines.filter(_is_carried).map(CarryOver.node_of).filter(can_stand)
	var players := carried.filter(_is_player)
	if not carried.is_empty():
		return players[0] if not players.is_empty() else carried[0]
	var own := _first_player_below(scene)
	if own != null:
		return own
	var going := machines.filter(_carries_over).map(CarryOver.node_of).filter(can_stand)
	return going[0] if not going.is_empty() else null


static func _is_carried(machine: SCMachine) -> bool:
	return _carries_over(machine) and (machine.has_meta(CarryOver.ARRIVED_RECORD) or CarryOver.is_awaited(machine))


static func _carries_over(machine: SCMachine) -> bool:
	return machine.template != null and machine.template.carries_over


static func _has_a_place(node: Node) -> bool:
	return node is Node2D or node is Node3D


static func _is_player(node: Node) -> bool:
	return node.is_in_group(PLAYERS)


static func _first_player_below(node: Node) -> Node:
	for child in node.get_children():
		var found := child if _has_a_place(child) and _is_player(child) else _first_player_below(child)
		if found != null:
			return found
	return null


# The engine knows places within a scene only once it is in the tree.
static func _in_2d(node: Node2D) -> Transform2D:
	var above := node.get_parent() as Node2D
	return node.transform if above == null or node.top_level else _in_2d(above) * node.transform


static func _in_3d(node: Node3D) -> Transform3D:
	var above := node.get_parent() as Node3D
	return node.transform if above == null or node.top_level else _in_3d(above) * node.transform


static func _place_2d(player: Node2D, spot: Transform2D) -> void:
	var above := player.get_parent() as Node2D
	if above == null or player.top_level:
		player.position = spot.origin
	elif not is_zero_approx(_in_2d(above).determinant()):
		player.position = _in_2d(above).affine_inverse() * spot.origin


static func _place_3d(player: Node3D, spot: Transform3D) -> void:
	var above := player.get_parent() as Node3D
	var wanted := _turned(_in_3d(player), spot)
	if above == null or player.top_level:
		player.transform = wanted
	elif not is_zero_approx(_in_3d(above).basis.determinant()):
		player.transform = _in_3d(above).affine_inverse() * wanted


static func _turn_and_place(player: Node3D, spot: Transform3D) -> void:
	var wanted := _turned(player.global_transform, spot)
	if not player.global_transform.is_equal_approx(wanted):
		player.global_transform = wanted


# Where the spot is, upright as before, facing the way the spot does. One that looks straight up or down faces no way.
static func _turned(from: Transform3D, spot: Transform3D) -> Transform3D:
	var was := -from.basis.z.slide(Vector3.UP)
	var way := -spot.basis.z.slide(Vector3.UP)
	if was.is_zero_approx() or way.is_zero_approx():
		return Transform3D(from.basis, spot.origin)
	return Transform3D(Basis(Vector3.UP, was.signed_angle_to(way, Vector3.UP)) * from.basis, spot.origin)


static func _stand_still(player: Node) -> void:
	if player is CharacterBody2D:
		(player as CharacterBody2D).velocity = Vector2.ZERO
	elif player is CharacterBody3D:
		(player as CharacterBody3D).velocity = Vector3.ZERO
	elif player is RigidBody2D:
		(player as RigidBody2D).linear_velocity = Vector2.ZERO
		(player as RigidBody2D).angular_velocity = 0.0
	elif player is RigidBody3D:
		(player as RigidBody3D).linear_velocity = Vector3.ZERO
		(player as RigidBody3D).angular_velocity = Vector3.ZERO
	player.reset_physics_interpolation()


static func _name_of(scene: Node) -> String:
	return String(scene.name) if scene.scene_file_path.is_empty() else scene.scene_file_path.get_file()
