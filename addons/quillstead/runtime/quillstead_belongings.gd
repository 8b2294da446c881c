extends RefCounted
## What belongs to somebody: what the Inventories below a node hold, and the records of its Data nodes. Written down in one scene, it
## is given to the same node in the next. Of a whole scene, that is what lies right under its top: what is deeper belongs to others.
##
## A row is an [Array] of one of [enum Kind], the way from the node, what is written down, and what tells it from others of its kind.

enum Kind {
	## Rows of item, how many and slot. Told apart by whether it is worn.
	INVENTORY,
	## A [SCData] of its own. Told apart by the names of its fields.
	DATA,
}


## Rows for everything below [param node] whose id is not in [param taken], to which the ids are added.
static func of(node: Node, taken: Dictionary) -> Array[Array]:
	var rows: Array[Array] = []
	for held in _holders_below(node):
		if taken.has(held.get_instance_id()):
			continue
		taken[held.get_instance_id()] = true
		var way := node.get_path_to(held)
		if held is SCInventory:
			rows.append([Kind.INVENTORY, way, _stacks_of(held as SCInventory), (held as SCInventory).is_worn()])
		else:
			var data := (held as SCDataNode).data
			rows.append([Kind.DATA, way, data.own_copy(), data.field_names()])
	return rows


## Gives what is in [param rows] to [param node]: each to the same Inventory or Data node, else to another one like it. Answers the
## rows for which there is none.
static func give(node: Node, rows: Array[Array]) -> Array[Array]:
	var free_ones := _holders_below(node)
	var left: Array[Array] = []
	var found: Array[Array] = []
	# The same ones first, so that no other takes their place.
	for row in rows:
		var same := node.get_node_or_null(row[1] as NodePath) if node != null else null
		if same in free_ones and _takes(same, row):
			free_ones.erase(same)
			found.append([same, row])
		else:
			left.append(row)
	var nowhere: Array[Array] = []
	for row in left:
		var at := free_ones.find_custom(_is_like.bind(row))
		if at < 0:
			nowhere.append(row)
		else:
			found.append([free_ones[at], row])
			free_ones.remove_at(at)
	for pair in found:
		# Filling one may run the game's code, which may free the next.
		if is_instance_valid(pair[0]):
			_fill(pair[0] as Node, pair[1] as Array)
	return nowhere


static func _holders_below(node: Node) -> Array[Node]:
	var found: Array[Node] = []
	if node == null:
		return found
	var each: Array[Node] = [node]
	var is_whole_scene := node.is_inside_tree() and node == node.get_tree().current_scene
	each.append_array(node.get_children() if is_whole_scene else node.find_children("*", "Node", true, false))
	for child in each:
		if (child is SCInventory or (child is SCDataNode and (child as SCDataNode).data != null)) and not child.is_queued_for_deletion():
			found.append(child)
	return found


static func _is_like(node: Node, row: Array) -> bool:
	return _takes(node, row) and (row[0] == Kind.INVENTORY or (node as SCDataNode).data.field_names() == row[3])


static func _takes(node: Node, row: Array) -> bool:
	if row[0] == Kind.DATA:
		return node is SCDataNode
	return node is SCInventory and (node as SCInventory).is_worn() == row[3]


# The very items, as one that was made while playing is in no file.
static func _stacks_of(bag: SCInventory) -> Array[Array]:
	var rows: Array[Array] = []
	if bag.stacks() > 0:
		for stack in bag.held:
			rows.append([stack.item, stack.how_many, stack.place])
	return rows


static func _fill(node: Node, row: Array) -> void:
	if node is SCInventory:
		_fill_bag(node as SCInventory, row[2] as Array[Array])
		return
	var data: SCData = row[2]
	for field in data.field_names():
		if not is_instance_valid(node):
			return
		if (node as SCDataNode).has_field(field):
			(node as SCDataNode).set_field(field, data.get_field(field))


static func _fill_bag(bag: SCInventory, rows: Array[Array]) -> void:
	var stacks: Array[SCItemStack] = []
	for row in rows:
		var stack := SCItemStack.new()
		stack.item = row[0]
		stack.how_many = row[1]
		stack.place = row[2]
		stacks.append(stack)
	bag.held = stacks
	if not bag.is_node_ready():
		bag.changed.emit()
