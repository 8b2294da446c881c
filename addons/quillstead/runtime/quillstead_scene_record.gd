extends RefCounted
## Writes down what differs in a running scene from its file, and makes a fresh instance of that scene the same again.
##
## A record holds which nodes of the file have gone, have moved and are different, which were made while the game ran, and what
## every machine was doing. It is made of plain values that a JSON file can hold.
## [br][br]
## A node whose script has the methods [code]to_save() -> Variant[/code] and [code]from_save(saved)[/code] keeps besides what the
## first answers, of plain values, and is given it back before it enters the tree.

const Making := preload("res://addons/quillstead/runtime/scene_record_making.gd")
const Taking := preload("res://addons/quillstead/runtime/scene_record_taking.gd")

# Between the two halves of bringing a scene back.
const _UNDER_WAY: StringName = &"quillstead_coming_back"


## What [param scene], which is in the tree, has become.
static func of(scene: Node) -> Dictionary:
	return Taking.new(scene).record


## Readies [param fresh], not yet in the tree, for what [param record] holds: everything stands where it did, and no machine starts by
## itself that is to go on from what it was doing.
static func prepare(fresh: Node, record: Dictionary) -> void:
	var making := Making.new(fresh, record)
	fresh.set_meta(_UNDER_WAY, making)
	making.prepare()


## Lets the machines go on, once [param fresh] is in the tree and ready.
static func put_back(fresh: Node, _record: Dictionary) -> void:
	if fresh.has_meta(_UNDER_WAY):
		var making: Making = fresh.get_meta(_UNDER_WAY)
		fresh.remove_meta(_UNDER_WAY)
		making.go_on()


## Makes [param scene] what it was without a fresh instance: for one that no file can bring, as it was put together by a script.
static func put_back_in_place(scene: Node, record: Dictionary) -> void:
	var making := Making.new(scene, record)
	making.in_place = true
	making.prepare()
	making.go_on()
