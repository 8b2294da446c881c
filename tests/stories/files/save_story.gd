@abstract
extends FileStory
## A story about saved games. The folder for them is empty as it begins and gone as it ends.

const SAVES: String = "user://quillstead"
const WAYS := {"worked": "Worked", "failed": "Failed"}


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	_remove(SAVES)


func close() -> void:
	await super()
	_remove(SAVES)


## A Save Game that sends whether it worked.
func saving(what: SCSaveGameAction.What, settings: Dictionary = {}) -> SCSaveGameAction:
	return kind(SCSaveGameAction, {"what": what, "worked_event": &"worked", "failed_event": &"failed"}.merged(settings, true))


## Does it once, in a machine with these variables. Whether it worked; [param held] is then what they hold.
func do_it(what: SCSaveGameAction.What, held: Dictionary = {}, settings: Dictionary = {}) -> bool:
	var owner := play(saving(what, settings), WAYS, {"variables": held.duplicate()})
	var at := current(owner)
	expect(at in [&"Worked", &"Failed"], "it ends in %s" % at)
	held.merge(owner.values, true)
	owner.free()
	return at == &"Worked"


func save(held: Dictionary, settings: Dictionary = {}) -> bool:
	return do_it(SCSaveGameAction.SAVE, held, settings)


## What variables that begin like this hold once they are loaded, with what began as a text kept apart.
func loaded(held: Dictionary, settings: Dictionary = {}) -> Dictionary:
	expect(do_it(SCSaveGameAction.LOAD, held, settings), "it does not load")
	return held


func file_of(slot: String = "save") -> String:
	return SAVES.path_join(slot + ".json")


func text_of(slot: String = "save") -> String:
	return FileAccess.get_file_as_string(file_of(slot)) if FileAccess.file_exists(file_of(slot)) else "(no file)"


func bytes_of(slot: String = "save") -> PackedByteArray:
	return FileAccess.get_file_as_bytes(file_of(slot)) if FileAccess.file_exists(file_of(slot)) else PackedByteArray()


## Puts a file where a save is looked for.
func put_save(held: Variant, slot: String = "save") -> void:
	var path := file_of(slot)
	DirAccess.make_dir_recursive_absolute(path.get_base_dir())
	# A file that is written over makes some file systems go to the disk at once.
	if FileAccess.file_exists(path):
		DirAccess.remove_absolute(path)
	var file := FileAccess.open(path, FileAccess.WRITE)
	file.store_buffer(held if held is PackedByteArray else (held as String).to_utf8_buffer())
	file.close()


func saves() -> Array:
	var found := []
	if DirAccess.dir_exists_absolute(SAVES):
		var folder := DirAccess.open(SAVES)
		folder.include_hidden = true
		found.assign(folder.get_files())
		found.append_array(folder.get_directories())
		found.sort()
	return found
