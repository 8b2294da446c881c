extends FileStory


const WAYS := {"done": "Done", "failed": "Failed", "missing": "Missing"}


func test_a_player_keeps_notes_and_reads_them_again() -> void:
	var note := kind(SCWriteFileAction, {"path": mine("notes/day_{day}.txt"), "text": "Day {day:00}: Ärger in {town}.", "done_event": &"done", "failed_event": &"failed"})
	expect_line(note, 'Write "Day {day:00}: Ärger in {town}." into %s' % mine("notes/day_{day}.txt"))
	expect_equal(note.variables_read(), PackedStringArray(["day", "town"]))
	var owner := play(note, WAYS, {"variables": {"day": 3, "town": "Ulm"}})
	expect_state(owner, "Done")
	expect_equal(held_in("notes/day_3.txt"), "Day 03: Ärger in Ulm.")
	for more: String in ["It rained.", "It stopped.\n"]:
		play(kind(SCWriteFileAction, {"path": mine("notes/day_3.txt"), "text": more, "how": SCWriteFileAction.ADD_TO_END}))
	play(kind(SCWriteFileAction, {"path": mine("notes/day_3.txt"), "text": "End", "how": SCWriteFileAction.ADD_TO_END}))
	play(kind(SCWriteFileAction, {"path": mine("notes/day_3.txt"), "text": ".", "how": SCWriteFileAction.ADD_TO_END, "on_a_new_line": false}))
	var read := kind(SCReadFileAction, {"path": mine("notes/day_3.txt"), "store_in": &"all", "store_lines_in": &"lines", "store_line_count_in": &"count", "done_event": &"done"})
	expect_line(read, "Read %s into all" % mine("notes/day_3.txt"))
	var held := results_of(kind(SCReadFileAction, {"path": mine("notes/day_3.txt"), "store_in": &"all", "store_lines_in": &"lines", "store_line_count_in": &"count"}), {"all": "", "lines": [], "count": 0})
	expect_equal(held[&"all"], "Day 03: Ärger in Ulm.\nIt rained.\nIt stopped.\nEnd.")
	expect_equal(held[&"lines"], ["Day 03: Ärger in Ulm.", "It rained.", "It stopped.", "End."])
	expect_equal(held[&"count"], 4)
	expect_state(play(read, WAYS, {"variables": {"all": "", "lines": [], "count": 0}}), "Done")
	expect_equal(listed(), ["notes/day_3.txt"], "nothing else is left behind")


func test_a_text_out_of_a_variable_is_written_as_it_is() -> void:
	play(kind(SCWriteFileAction, {"path": mine("said.txt"), "text_variable": &"said"}), {}, {"variables": {"said": "{gold} is {mine}", "gold": 7}})
	expect_equal(held_in("said.txt"), "{gold} is {mine}")
	play(kind(SCWriteFileAction, {"path": mine("said.txt"), "text": "new"}))
	expect_equal(held_in("said.txt"), "new", "it is replaced")


func test_lines_are_counted_as_everybody_does() -> void:
	var rows := {
		"": [], "one": ["one"], "one\n": ["one"], "one\n\n": ["one", ""], "one\r\ntwo\r\n": ["one", "two"], "\n": [""], "  a\tb ": ["  a\tb "],
	}
	for text: String in rows:
		put("lines.txt", text)
		var held := results_of(kind(SCReadFileAction, {"path": mine("lines.txt"), "store_lines_in": &"answer"}))
		expect_equal(held[&"answer"], rows[text], var_to_str(text))
	put("lines.txt", PackedByteArray([0xEF, 0xBB, 0xBF, 0x41]))
	expect_equal(result_of(kind(SCReadFileAction, {"path": mine("lines.txt"), "store_in": &"answer"})), "A")


func test_words_are_changed_in_a_file() -> void:
	var rows := [
		[{"find": "red", "replace_with": "blue"}, "blue Red blue\n", 2],
		[{"find": "red", "replace_with": "blue", "ignore_case": true}, "blue blue blue\n", 3],
		[{"find": "red", "replace_with": "blue", "which": SCChangeTextInFileAction.FIRST}, "blue Red red\n", 1],
		[{"find": "RED", "replace_with": "b", "which": SCChangeTextInFileAction.LAST, "ignore_case": true}, "red Red b\n", 1],
		[{"find": " ", "replace_with": ""}, "redRedred\n", 2],
		[{"find": "{color}", "replace_with": "{color}{color}"}, "redred Red redred\n", 2],
	]
	for row: Array in rows:
		put("paint.txt", "red Red red\n")
		var change := kind(SCChangeTextInFileAction, {"path": mine("paint.txt"), "store_count_in": &"answer", "done_event": &"done"}.merged(row[0]))
		var owner := play(change, WAYS, {"variables": {"answer": 0, "color": "red"}})
		expect_state(owner, "Done")
		expect_equal(held_in("paint.txt"), row[1])
		expect_equal(owner.get_value(&"answer"), row[2])
	put("paint.txt", "one\r\ntwo\r\n")
	play(kind(SCChangeTextInFileAction, {"path": mine("paint.txt"), "find": "one\ntwo", "replace_with": "1\n2"}))
	expect_equal(FileAccess.get_file_as_bytes(mine("paint.txt")), "1\r\n2\r\n".to_utf8_buffer(), "lines end as they did")
	expect_line(kind(SCChangeTextInFileAction, {"path": "a.txt", "find": "x", "replace_with": "y", "which": SCChangeTextInFileAction.FIRST}), 'Change the first "x" to "y" in a.txt')


func test_words_that_are_not_there_leave_the_file_alone() -> void:
	put("paint.txt", "red")
	var owner := play(kind(SCChangeTextInFileAction, {"path": mine("paint.txt"), "find": "green", "store_count_in": &"answer", "done_event": &"done", "not_found_event": &"missing"}), WAYS, {"variables": {"answer": 9}})
	expect_state(owner, "Missing")
	expect_values(owner, {"answer": 0})
	expect_equal(held_in("paint.txt"), "red")
	expect_warns(kind(SCChangeTextInFileAction, {"path": mine("paint.txt")}), "Find is empty, so nothing was done. Type the words to change beside Find.")


func test_a_game_touches_nothing_outside_its_own_folder() -> void:
	var outside := OS.get_user_data_dir().get_base_dir().path_join("outside_the_story.txt")
	var rows := {
		"user://../outside_the_story.txt": "leads out of the game's own folder",
		"user://a/../../outside_the_story.txt": "leads out of the game's own folder",
		"user://a\\..\\..\\outside_the_story.txt": "leads out of the game's own folder",
		outside: "is outside the game's own folder",
		OS.get_user_data_dir() + "/../outside_the_story.txt": "is outside the game's own folder",
		OS.get_user_data_dir() + "_of_another/x.txt": "is outside the game's own folder",
		"notes.txt": "does not say which folder it is in",
		"../notes.txt": "does not say which folder it is in",
		"http://example.org/x.txt": "is no place on this computer",
		"": "Path is empty, so nothing was done",
		"   ": "Path is empty, so nothing was done",
	}
	for path: String in rows:
		for of: Variant in [SCWriteFileAction, SCReadFileAction, SCChangeTextInFileAction]:
			var owner := play(kind(of, {"path_variable": &"typed", "failed_event": &"failed", "done_event": &"done"}), WAYS, {"variables": {"typed": path}})
			expect_state(owner, "Failed")
			expect_warning(rows[path])
			owner.free()
	for path: String in ["res://project.godot", "res://new.txt"]:
		expect_warns(kind(SCWriteFileAction, {"path": path}), "is one of the files that the game is shipped with")
	expect(not FileAccess.file_exists(outside) and not FileAccess.file_exists("res://new.txt"))
	expect_equal(listed(), [])


func test_a_link_out_of_the_folder_is_not_followed() -> void:
	var outside := OS.get_user_data_dir().get_base_dir().path_join("outside_the_story")
	DirAccess.make_dir_recursive_absolute(outside)
	link("way_out", outside)
	link("round", whole("round"))
	put("real/inside.txt", "inside")
	link("way_in", whole("real"))
	for path: String in ["way_out/x.txt", "round/x.txt"]:
		expect_warns(kind(SCWriteFileAction, {"path": mine(path), "text": "x"}), "goes through a link that leads out of the game's own folder")
	expect(not FileAccess.file_exists(outside.path_join("x.txt")))
	expect_equal(result_of(kind(SCReadFileAction, {"path": mine("way_in/inside.txt"), "store_in": &"answer"})), "inside")
	play(kind(SCWriteFileAction, {"path": mine("way_out/x.txt"), "text": "let out", "anywhere": true}))
	expect_equal(FileAccess.get_file_as_string(outside.path_join("x.txt")), "let out", "unless the maker says so")
	play(kind(SCWriteFileAction, {"path": "%s/../outside_the_story/y.txt" % OS.get_user_data_dir(), "text": "y", "anywhere": true}))
	expect_equal(FileAccess.get_file_as_string(outside.path_join("y.txt")), "y")
	for name: String in ["x.txt", "y.txt", ""]:
		DirAccess.remove_absolute(outside.path_join(name))
	DirAccess.remove_absolute(whole("way_out"))
	DirAccess.remove_absolute(whole("round"))
	DirAccess.remove_absolute(whole("way_in"))


func test_what_cannot_be_read_or_written_is_told() -> void:
	put("picture.png", PackedByteArray([0x89, 0x50, 0x4E, 0x47, 0, 1]))
	put("old.txt", PackedByteArray([0x47, 0x72, 0xFC, 0xDF]))
	put("a_file", "x")
	var rows := [
		[SCReadFileAction, "picture.png", "is not a text in UTF-8, so nothing was done. Save it as UTF-8"],
		[SCReadFileAction, "old.txt", "is not a text in UTF-8"],
		[SCReadFileAction, "", "is a folder, not a file"],
		[SCReadFileAction, "nobody.txt", "there is no file user://file_story/nobody.txt, so nothing was done."],
		[SCReadFileAction, "a_file/x.txt", "there is no file"],
		[SCWriteFileAction, "", "is a folder, not a file"],
		[SCWriteFileAction, "a_file/x/y.txt", "user://file_story/a_file is a file, and a folder of that name is needed"],
		[SCWriteFileAction, "x".repeat(5000), "cannot be"],
		[SCChangeTextInFileAction, "nobody.txt", "there is no file"],
	]
	for row: Array in rows:
		var action: Resource = kind(row[0], {"path": mine(row[1])})
		if action is SCReadFileAction:
			action.set(&"store_in", &"answer")
		elif action is SCChangeTextInFileAction:
			action.set(&"find", "x")
		expect_warns(action, row[2], {"variables": {"answer": "as it was"}})
	expect_equal(held_in("a_file"), "x")
	# Somebody who asks for an event then expects it.
	var owner := play(kind(SCReadFileAction, {"path": mine("nobody.txt"), "store_in": &"answer", "failed_event": &"failed"}), WAYS, {"variables": {"answer": "as it was"}})
	expect_state(owner, "Failed")
	expect_values(owner, {"answer": "as it was"})
	put("words.txt", "x")
	expect_warns(kind(SCReadFileAction, {"path": mine("words.txt")}), "Store In")


func test_a_file_of_more_than_100_mb_is_told_and_borne() -> void:
	const MEGABYTE := 1024 * 1024
	var file := FileAccess.open(mine("large.txt"), FileAccess.WRITE)
	var letters := PackedByteArray()
	letters.resize(MEGABYTE)
	letters.fill(0x78)
	for i in 101:
		file.store_buffer(letters)
	file.close()
	var owner := play(kind(SCReadFileAction, {"path": mine("large.txt"), "store_in": &"answer"}), {}, {"variables": {"answer": ""}})
	expect_warning("is larger than 100 MB, so the game stands still while it is read")
	expect_equal((owner.get_value(&"answer") as String).length(), 101 * MEGABYTE)
	owner.free()


func test_whoever_hears_of_it_may_end_the_machine() -> void:
	for settings: Dictionary in [{"done_event": &"done"}, {"failed_event": &"failed", "path": ""}]:
		for of: Variant in [SCReadFileAction, SCWriteFileAction, SCChangeTextInFileAction]:
			put("words.txt", "x")
			var action := kind(of, {"path": mine("words.txt")}.merged(settings, true))
			_put(action, {"store_in": &"answer"} if of == SCReadFileAction else {"find": "x"} if of == SCChangeTextInFileAction else {})
			var owner := doing(action, WAYS, {"variables": {"answer": ""}})
			owner.event_sent.connect(func(_name: StringName, _data: Variant) -> void: owner.stop())
			start(owner)
			expect(not owner.is_running(), "%s went on" % action)
			if settings.has("path"):
				expect_warning("Path is empty")
