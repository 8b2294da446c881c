extends FileStory


const WAYS := {"done": "Done", "failed": "Failed", "FINISHED": "Over"}


func copied(from: String, to: String, options: Dictionary = {}) -> SCMachine:
	var owner := copy(from, to, options)
	await until_done(owner)
	return owner


func copy(from: String, to: String, options: Dictionary = {}) -> SCMachine:
	var action := kind(SCCopyFolderAction, {"from": from, "to": to, "store_count_in": &"count", "done_event": &"done", "failed_event": &"failed"}.merged(options, true))
	return play(action, WAYS, {"variables": {"count": -1}})


func test_saves_are_backed_up() -> void:
	put("saves/one.save", "1")
	put("saves/deep/er/two.save", PackedByteArray([0, 1, 2, 255]))
	put("saves/.hidden", "h")
	DirAccess.make_dir_recursive_absolute(mine("saves/empty"))
	expect_line(kind(SCCopyFolderAction, {"from": "user://saves", "to": "user://backup"}), "Copy the folder user://saves to user://backup")
	var owner := await copied(mine("saves"), mine("backup/of_today/"))
	expect_state(owner, "Done")
	expect_values(owner, {"count": 3})
	expect_equal(listed("backup/of_today"), [".hidden", "deep/er/two.save", "one.save"])
	expect_equal(FileAccess.get_file_as_bytes(mine("backup/of_today/deep/er/two.save")), PackedByteArray([0, 1, 2, 255]))
	expect(DirAccess.dir_exists_absolute(mine("backup/of_today/empty")))


func test_what_is_done_with_files_that_are_there() -> void:
	var rows := [
		[SCCopyFolderAction.REPLACE_FILES, "Done", "new", 2], [SCCopyFolderAction.KEEP_FILES, "Done", "old", 1], [SCCopyFolderAction.DO_NOT_COPY, "Failed", "old", -1],
	]
	for row: Array in rows:
		put("from/a.txt", "new")
		put("from/b.txt", "b")
		put("to/a.txt", "old")
		put("to/own.txt", "own")
		var owner := await copied(mine("from"), mine("to"), {"if_there": row[0]})
		expect_state(owner, row[1])
		expect_values(owner, {"count": row[3]})
		expect_equal(held_in("to/a.txt"), row[2])
		expect_equal(held_in("to/own.txt"), "own")
		_remove(mine("to"))


func test_what_is_shipped_goes_to_the_player() -> void:
	var shipped := "res://build/story_shipped"
	DirAccess.make_dir_recursive_absolute(ProjectSettings.globalize_path(shipped))
	FileAccess.open(shipped.path_join("level.txt"), FileAccess.WRITE).store_string("a maze")
	expect_state(await copied(shipped, mine("starter")), "Done")
	expect_equal(held_in("starter/level.txt"), "a maze")
	DirAccess.remove_absolute(ProjectSettings.globalize_path(shipped.path_join("level.txt")))
	DirAccess.remove_absolute(ProjectSettings.globalize_path(shipped))


func test_a_large_folder_takes_several_frames() -> void:
	var large := PackedByteArray()
	large.resize(40 * 1024 * 1024)
	large.fill(7)
	put("from/large", large)
	put("from/small", "s")
	var owner := copy(mine("from"), mine("to"))
	expect_state(owner, "Work")
	await until_done(owner)
	expect_state(owner, "Done")
	expect_equal(FileAccess.get_md5(mine("to/large")), FileAccess.get_md5(mine("from/large")))
	expect_equal(listed("to"), ["large", "small"])
	var left := copy(mine("from"), mine("left"))
	expect_state(left, "Work")
	left.send_event(&"failed")
	expect("large~new" not in listed("left") and "large" not in listed("left"), "half a file is left")
	var freed := copy(mine("from"), mine("freed"))
	freed.free()
	await frames(2)
	expect("large" not in listed("freed"))


func test_a_program_stays_one_and_links_are_left_out() -> void:
	put("from/tool", "#!/bin/sh\n")
	FileAccess.set_unix_permissions(mine("from/tool"), 0x1ED)
	link("from/again", whole("from"))
	link("from/tool_2", whole("from/tool"))
	expect_state(await copied(mine("from"), mine("to")), "Done")
	expect_equal(listed("to"), ["tool"])
	expect_equal(FileAccess.get_unix_permissions(mine("to/tool")), 0x1ED)
	DirAccess.remove_absolute(whole("from/again"))


func test_what_cannot_be_copied_is_told() -> void:
	put("from/a.txt", "a")
	put("a_file", "x")
	put("in_the_way/a.txt/x", "x")
	var rows := [
		["nobody", "to", "there is no folder user://file_story/nobody"],
		["a_file", "to", "user://file_story/a_file is a file, not a folder"],
		["from", "from", "is inside the folder that is copied"],
		["from", "from/deep/er", "is inside the folder that is copied"],
		["from", "a_file", "a_file is a file, and a folder of that name is needed, so the copying ended there, after 0 files"],
		["from", "in_the_way", "a.txt is a folder, and a file of that name is needed"],
		["../..", "to", "leads out of the game's own folder"],
		["from", "../../to", "leads out of the game's own folder"],
	]
	for row: Array in rows:
		var owner := await copied(mine(row[0]), mine(row[1]), {"failed_event": &""})
		expect_warning(row[2])
		owner.free()
	expect_warns(kind(SCCopyFolderAction, {"from": mine("from")}), "To is empty")
	expect_warns(kind(SCCopyFolderAction, {"to": mine("to")}), "From is empty")
	expect_warns(kind(SCCopyFolderAction, {"from": "/etc", "to": mine("to")}), "/etc is outside the game's own folder, so nothing was done. Use a path that begins with user://, or tick Anywhere.")
	expect_equal(listed("to"), [])
	expect_state(await copied(whole("from"), whole("to"), {"anywhere": true}), "Done")
	expect_equal(listed("to"), ["a.txt"])


func test_a_save_goes_to_the_bin() -> void:
	put("saves/a_save_of_this_story", "1")
	var owner := play(kind(SCMoveToBinAction, {"path": mine("saves/{name}"), "done_event": &"done"}), WAYS, {"variables": {"name": "a_save_of_this_story"}})
	expect_state(owner, "Done")
	expect(not FileAccess.file_exists(mine("saves/a_save_of_this_story")))
	expect(DirAccess.dir_exists_absolute(mine("saves")))
	_empty_bin_of("a_save_of_this_story")
	put("a_folder_of_this_story/x", "x")
	expect_state(play(kind(SCMoveToBinAction, {"path": mine("a_folder_of_this_story"), "done_event": &"done"}), WAYS), "Done")
	expect_equal(listed(), [])
	_empty_bin_of("a_folder_of_this_story")


func test_the_game_itself_never_goes_to_the_bin() -> void:
	for path: String in ["user://", "user://.", "user://a/..", OS.get_user_data_dir()]:
		expect_warns(kind(SCMoveToBinAction, {"path": path}), "the game itself, or all that it keeps, is in")
	for path: String in ["/", OS.get_user_data_dir().get_base_dir(), ProjectSettings.globalize_path("res://"), OS.get_executable_path(), "user://.."]:
		expect_warns(kind(SCMoveToBinAction, {"path": path, "anywhere": true}), "the game itself, or all that it keeps, is in")
	expect_warns(kind(SCMoveToBinAction, {"path": "res://project.godot"}), "shipped with")
	expect_warns(kind(SCMoveToBinAction, {"path": mine("nobody")}), "there is nothing at user://file_story/nobody")
	expect_state(play(kind(SCMoveToBinAction, {"path": mine("nobody"), "failed_event": &"failed"}), WAYS), "Failed")
	expect(DirAccess.dir_exists_absolute("user://") and FileAccess.file_exists("res://project.godot"))


func test_a_player_chooses_a_folder() -> void:
	var choose := kind(SCChooseFolderAction, {"title": "Where to, {who}?", "start_in": mine(""), "store_in": &"answer", "chosen_event": &"done", "canceled_event": &"failed"})
	expect_line(choose, "Ask for a folder and keep it in answer")
	for chosen: bool in [true, false]:
		var owner := play(choose, WAYS, {"variables": {"answer": "", "who": "Ann"}})
		await frames(2)
		var window := _window_of(owner)
		expect_equal(window.title, "Where to, Ann?")
		expect(window.visible)
		expect_equal(window.current_dir.trim_suffix("/"), whole("").trim_suffix("/"))
		if chosen:
			window.dir_selected.emit(whole("levels"))
		else:
			window.canceled.emit()
		expect_state(owner, "Done" if chosen else "Failed")
		expect_values(owner, {"answer": whole("levels") if chosen else ""})
		await frames(2)
		expect(not is_instance_valid(window), "the window stays")
	var left := play(choose, {"failed": "Failed"}, {"variables": {"answer": "", "who": ""}})
	await frames(2)
	left.send_event(&"failed")
	await frames(2)
	expect_equal(_window_of(left), null)
	expect_line(kind(SCChooseFolderAction, {"chosen_event": &"done"}), "Ask for a folder and send done")
	expect_warns(kind(SCChooseFolderAction), "nothing would come of the player's choice, so the player was not asked")
	expect_warns(kind(SCChooseFolderAction, {"start_in": mine("nobody"), "store_in": &"answer"}), "there is no folder user://file_story/nobody to begin with", {"variables": {"answer": ""}})


func _window_of(owner: SCMachine) -> FileDialog:
	for child in owner.get_children(true):
		if child is FileDialog and not child.is_queued_for_deletion():
			return child
	return null


## What the story has thrown away is nobody's to find.
func _empty_bin_of(name: String) -> void:
	var bin := OS.get_data_dir().path_join("Trash")
	DirAccess.remove_absolute(bin.path_join("info").path_join(name + ".trashinfo"))
	var thrown := bin.path_join("files").path_join(name)
	_remove(thrown)
	DirAccess.remove_absolute(thrown)
