extends Story
## Conditions about texts and files.


func test_texts_compare_by_every_test() -> void:
	var t := SCStringCompareCondition
	var made := asker(stage, {"variables": {&"said": "Open Sesame"}})
	for row: Array in [
		# the test, the text, the answer, and the answer where case does not matter
		[t.EQUALS, "Open Sesame", true, true], [t.EQUALS, "open sesame", false, true], [t.EQUALS, "Open", false, false],
		[t.NOT_EQUALS, "Open Sesame", false, false], [t.NOT_EQUALS, "OPEN SESAME", true, false],
		[t.CONTAINS, "n Ses", true, true], [t.CONTAINS, "ses", false, true], [t.CONTAINS, "", true, true],
		[t.BEGINS_WITH, "Open", true, true], [t.BEGINS_WITH, "Sesame", false, false], [t.BEGINS_WITH, "oPEN", false, true],
		[t.ENDS_WITH, "Sesame", true, true], [t.ENDS_WITH, "Open", false, false], [t.ENDS_WITH, "SAME", false, true],
		[t.MATCHES, "Open*", true, true], [t.MATCHES, "Op?n Sesame", true, true], [t.MATCHES, "Open", false, false], [t.MATCHES, "*sesame", false, true],
		[t.IS_EMPTY, "", false, false],
	]:
		for ignores: bool in [false, true]:
			expect_answers(made, [[kind(t, {"variable_name": &"said", "test": row[0], "text": row[1], "ignore_case": ignores}), row[3 if ignores else 2]]], str(row))


func test_anything_has_a_text() -> void:
	var made := asker(stage, {"variables": {&"count": 3, &"price": 2.5, &"nothing": null, &"who": null}})
	made.set_value(&"who", body("Ann"))
	for row: Array in [[&"count", "3"], [&"price", "2.5"], [&"who", "Ann"], [&"nothing", ""]]:
		expect_answers(made, [
			[kind(SCStringCompareCondition, {"variable_name": row[0], "text": row[1]}), true],
			[kind(SCStringCompareCondition, {"variable_name": row[0], "test": SCStringCompareCondition.IS_EMPTY}), row[1].is_empty()],
		], str(row))


func test_a_password_may_come_from_a_variable() -> void:
	var asked := kind(SCStringCompareCondition, {"variable_name": &"said", "text_variable": &"password"})
	var made := play(watch(asked), {"yes": "Open"}, {"variables": {&"said": "", &"password": "1234"}})
	await expect_later(made, 0.04, "Work")
	made.set_value(&"said", "1234")
	await expect_later(made, 0.04, "Open")
	# Only a variable can change the answer, which is not so of files.
	expect(asked.depends_only_on_variables() and not SCFileExistsCondition.new().depends_only_on_variables())
	expect_equal(asked.variables_read(), PackedStringArray(["said", "password"]))
	expect_equal(kind(SCFileExistsCondition, {"path": "user://{who}/{number:00}.png"}).variables_read(), PackedStringArray(["who", "number"]))


func test_files_and_folders_are_found() -> void:
	var made := asker(stage, {"variables": {&"number": 7}})
	var photo := "user://story_files/photo_7.txt"
	DirAccess.make_dir_recursive_absolute("user://story_files/inner")
	FileAccess.open(photo, FileAccess.WRITE).store_string("x")
	for row: Array in [
		# the path, whether it is a file and whether a folder
		["res://project.godot", true, false], ["res://tests", false, true], ["res://tests/", false, true], ["res://nowhere", false, false], ["uid://bqqqqqqqqqqqq", false, false],
		[photo, true, false], [" user://story_files/photo_{number}.txt ", true, false], ["user://story_files/photo_8.txt", false, false],
		["user://story_files/inner", false, true], [ProjectSettings.globalize_path(photo), true, false],
		[ResourceUID.id_to_text(ResourceLoader.get_resource_uid("res://tests/framework/story.gd")), true, false],
	]:
		expect_answers(made, [
			[kind(SCFileExistsCondition, {"path": row[0], "what": SCFileExistsCondition.A_FILE}), row[1]],
			[kind(SCFileExistsCondition, {"path": row[0], "what": SCFileExistsCondition.A_FOLDER}), row[2]],
			[kind(SCFileExistsCondition, {"path": row[0], "what": SCFileExistsCondition.EITHER}), row[1] or row[2]],
		])
	DirAccess.remove_absolute(photo)
	expect_answers(made, [[kind(SCFileExistsCondition, {"path": photo}), false]])
	DirAccess.remove_absolute("user://story_files/inner")
	DirAccess.remove_absolute("user://story_files")


func test_what_is_wrong_is_told() -> void:
	for row: Array in [
		[kind(SCStringCompareCondition), "no variable is picked, so the answer is no."],
		[kind(SCStringCompareCondition, {"variable_name": &"said", "test": SCStringCompareCondition.IS_EMPTY}), "there is no variable called said, so the answer is no. Add it under Variables, or pick another under Variable Name."],
		[kind(SCFileExistsCondition, {"path": "  "}), "File Exists on Machine: there is no path to look at, so the answer is no. Type one under Path, such as user://photo.png."],
	]:
		expect_warns(row[0], row[1])


func test_the_lines_read_like_sentences() -> void:
	var t := SCStringCompareCondition
	expect_lines(t, {
		"said is \"[password]\"": {"variable_name": &"said", "text_variable": &"password"},
		"(pick one) is empty": {"test": t.IS_EMPTY},
	})
	var tests := ["is", "is not", "contains", "begins with", "ends with", "matches"]
	for i in tests.size():
		expect_lines(t, {"said %s \"yes\"" % tests[i]: {"variable_name": &"said", "text": "yes", "test": i}})
	expect_lines(SCFileExistsCondition, {
		"there is a file user://photo.png": {"path": "user://photo.png"},
		"there is a folder user://photo.png": {"path": "user://photo.png", "what": SCFileExistsCondition.A_FOLDER},
		"there is a file or folder user://photo.png": {"path": "user://photo.png", "what": SCFileExistsCondition.EITHER},
		"there is a file (pick one)": {},
	})
