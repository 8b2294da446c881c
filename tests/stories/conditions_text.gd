extends Story
## Questions about texts and files.


func test_texts_compare_by_every_test() -> void:
	var made := asker(stage, {"variables": {&"said": "Open Sesame"}})
	for row: Array in [
		[SCStringCompareCondition.EQUALS, "Open Sesame", true], [SCStringCompareCondition.EQUALS, "open sesame", false],
		[SCStringCompareCondition.NOT_EQUALS, "Open Sesame", false], [SCStringCompareCondition.NOT_EQUALS, "open sesame", true],
		[SCStringCompareCondition.CONTAINS, "Ses", true], [SCStringCompareCondition.CONTAINS, "ses", false], [SCStringCompareCondition.CONTAINS, "", true],
		[SCStringCompareCondition.BEGINS_WITH, "Open", true], [SCStringCompareCondition.BEGINS_WITH, "Sesame", false],
		[SCStringCompareCondition.ENDS_WITH, "Sesame", true], [SCStringCompareCondition.ENDS_WITH, "Open", false],
		[SCStringCompareCondition.MATCHES, "Open*", true], [SCStringCompareCondition.MATCHES, "Op?n Sesame", true], [SCStringCompareCondition.MATCHES, "Open", false],
		[SCStringCompareCondition.IS_EMPTY, "", false],
	]:
		expect_equal(ask(made, kind(SCStringCompareCondition, {"variable_name": &"said", "test": row[0], "text": row[1]})), row[2], str(row))
	for row: Array in [
		[SCStringCompareCondition.EQUALS, "open sesame", true], [SCStringCompareCondition.NOT_EQUALS, "OPEN SESAME", false], [SCStringCompareCondition.CONTAINS, "n sE", true],
		[SCStringCompareCondition.BEGINS_WITH, "oPEN", true], [SCStringCompareCondition.ENDS_WITH, "SAME", true], [SCStringCompareCondition.MATCHES, "*sesame", true],
	]:
		expect_equal(ask(made, kind(SCStringCompareCondition, {"variable_name": &"said", "test": row[0], "text": row[1], "ignore_case": true})), row[2], str(row))


func test_anything_has_a_text() -> void:
	var made := asker(stage, {"variables": {&"count": 3, &"price": 2.5, &"nothing": null, &"who": null}})
	made.set_value(&"who", body("Ann"))
	for row: Array in [[&"count", "3"], [&"price", "2.5"], [&"who", "Ann"], [&"nothing", ""]]:
		expect(ask(made, kind(SCStringCompareCondition, {"variable_name": row[0], "text": row[1]})), str(row))
	expect(ask(made, kind(SCStringCompareCondition, {"variable_name": &"nothing", "test": SCStringCompareCondition.IS_EMPTY})))


func test_a_password_may_come_from_a_variable() -> void:
	var asked := kind(SCStringCompareCondition, {"variable_name": &"said", "text_variable": &"password"})
	var made := start(machine([state("Locked", [watch(asked)], {"yes": "Open"}), state("Open")], {"variables": {&"said": "", &"password": "1234"}}))
	await frames(2)
	expect_state(made, "Locked")
	made.set_value(&"said", "1234")
	await frames(2)
	expect_state(made, "Open")
	expect_equal(asked.shown_summary(), "said is \"[password]\"")


func test_only_a_variable_can_change_the_answer() -> void:
	expect(SCStringCompareCondition.new().depends_only_on_variables())
	expect(not SCFileExistsCondition.new().depends_only_on_variables())
	expect_equal(kind(SCStringCompareCondition, {"variable_name": &"said", "text_variable": &"password"}).variables_read(), PackedStringArray(["said", "password"]))


func test_a_text_of_no_variable_is_told() -> void:
	var made := asker(stage)
	expect(not ask(made, SCStringCompareCondition.new()))
	expect_warning("no variable is picked, so the answer is no.")
	expect(not ask(made, kind(SCStringCompareCondition, {"variable_name": &"said", "test": SCStringCompareCondition.IS_EMPTY})))
	expect_warning("there is no variable called said, so the answer is no. Add it in the Variables tab, or pick another under Variable Name.")


func test_files_and_folders_are_found() -> void:
	var made := asker(stage, {"variables": {&"number": 7}})
	DirAccess.make_dir_recursive_absolute("user://story_files/inner")
	FileAccess.open("user://story_files/photo_7.txt", FileAccess.WRITE).store_string("x")
	const FILE := SCFileExistsCondition.A_FILE
	const FOLDER := SCFileExistsCondition.A_FOLDER
	const EITHER := SCFileExistsCondition.EITHER
	for row: Array in [
		["res://project.godot", FILE, true], ["res://project.godot", FOLDER, false], ["res://project.godot", EITHER, true],
		["res://tests", FILE, false], ["res://tests", FOLDER, true], ["res://tests/", EITHER, true],
		["user://story_files/photo_7.txt", FILE, true], ["user://story_files/photo_{number}.txt", FILE, true],
		["user://story_files/photo_8.txt", EITHER, false], ["user://story_files/inner", FOLDER, true],
		[ProjectSettings.globalize_path("user://story_files/photo_7.txt"), FILE, true],
		["res://nowhere", EITHER, false], ["uid://bqqqqqqqqqqqq", FILE, false],
	]:
		expect_equal(ask(made, kind(SCFileExistsCondition, {"path": row[0], "what": row[1]})), row[2], str(row))
	DirAccess.remove_absolute("user://story_files/photo_7.txt")
	expect(not ask(made, kind(SCFileExistsCondition, {"path": "user://story_files/photo_7.txt"})))
	DirAccess.remove_absolute("user://story_files/inner")
	DirAccess.remove_absolute("user://story_files")


func test_no_path_is_told() -> void:
	var made := asker(stage)
	expect(not ask(made, kind(SCFileExistsCondition, {"path": "  "})))
	expect_warning("File Exists on Machine: there is no path to look at, so the answer is no. Type one under Path, such as user://photo.png.")


func test_a_path_tells_what_it_reads() -> void:
	expect_equal(kind(SCFileExistsCondition, {"path": "user://{who}/{number:00}.png"}).variables_read(), PackedStringArray(["who", "number"]))


func test_the_lines_read_like_sentences() -> void:
	var photo := "user://photo.png"
	expect_line(kind(SCStringCompareCondition, {"variable_name": &"said", "text": "yes"}), "said is \"yes\"")
	expect_line(kind(SCStringCompareCondition, {"variable_name": &"said", "text": "yes", "test": SCStringCompareCondition.NOT_EQUALS}), "said is not \"yes\"")
	expect_line(kind(SCStringCompareCondition, {"variable_name": &"said", "text": "yes", "test": SCStringCompareCondition.CONTAINS}), "said contains \"yes\"")
	expect_line(kind(SCStringCompareCondition, {"variable_name": &"said", "text": "yes", "test": SCStringCompareCondition.BEGINS_WITH}), "said begins with \"yes\"")
	expect_line(kind(SCStringCompareCondition, {"variable_name": &"said", "text": "yes", "test": SCStringCompareCondition.ENDS_WITH}), "said ends with \"yes\"")
	expect_line(kind(SCStringCompareCondition, {"variable_name": &"said", "text": "y*", "test": SCStringCompareCondition.MATCHES}), "said matches \"y*\"")
	expect_line(kind(SCStringCompareCondition, {"variable_name": &"said", "test": SCStringCompareCondition.IS_EMPTY}), "said is empty")
	expect_line(kind(SCStringCompareCondition, {"test": SCStringCompareCondition.IS_EMPTY}), "(pick one) is empty")
	expect_line(kind(SCFileExistsCondition, {"path": photo}), "there is a file user://photo.png")
	expect_line(kind(SCFileExistsCondition, {"path": photo, "what": SCFileExistsCondition.A_FOLDER}), "there is a folder user://photo.png")
	expect_line(kind(SCFileExistsCondition, {"path": photo, "what": SCFileExistsCondition.EITHER}), "there is a file or folder user://photo.png")
	expect_line(kind(SCFileExistsCondition), "there is a file (pick one)")
