@abstract
class_name FileStory
extends Story
## A story about files: it has a folder of its own in the game's, which is gone again when it ends.

const FOLDER: String = "user://file_story"


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	_remove(FOLDER)
	DirAccess.make_dir_recursive_absolute(FOLDER)


func close() -> void:
	await super()
	_remove(FOLDER)


## The path of a file or a folder in the story's own.
func mine(name: String) -> String:
	return FOLDER.path_join(name)


## The same in the words of the computer.
func whole(name: String) -> String:
	return ProjectSettings.globalize_path(mine(name))


## Puts a file there, with what is in it as a text or as bytes.
func put(name: String, held: Variant) -> void:
	DirAccess.make_dir_recursive_absolute(mine(name).get_base_dir())
	var file := FileAccess.open(mine(name), FileAccess.WRITE)
	file.store_buffer(held if held is PackedByteArray else (held as String).to_utf8_buffer())


func held_in(name: String) -> String:
	return FileAccess.get_file_as_string(mine(name)) if FileAccess.file_exists(mine(name)) else "(no file)"


## The paths of all files below the folder, in order.
func listed(name: String = "") -> Array:
	var found := []
	var folder := DirAccess.open(mine(name))
	if folder == null:
		return found
	folder.include_hidden = true
	for file in folder.get_files():
		found.append(file)
	for inner in folder.get_directories():
		for below: String in listed(name.path_join(inner)):
			found.append(inner.path_join(below))
	found.sort()
	return found


## Waits for a machine to be done with its work, which another program or the disk may hold up.
func until_done(owner: SCMachine) -> void:
	for i in 1000:
		if current(owner) != &"Work":
			return
		OS.delay_msec(2)
		await frames(1)
	_fail("%s is at work for ever" % owner.name)


func link(name: String, to: String) -> void:
	DirAccess.open(FOLDER).create_link(to, whole(name))


func _remove(path: String) -> void:
	var folder := DirAccess.open(path)
	if folder == null:
		return
	folder.include_hidden = true
	for inner in folder.get_directories():
		if folder.is_link(ProjectSettings.globalize_path(path.path_join(inner))):
			folder.remove(path.path_join(inner))
		else:
			_remove(path.path_join(inner))
	for file in folder.get_files():
		folder.remove(path.path_join(file))
	DirAccess.remove_absolute(path)
