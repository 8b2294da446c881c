extends Story
## What ends the game is played in an engine of its own.


## What it printed, line by line, and the code it ended with.
func quits(arguments: Array) -> Dictionary:
	var printed: Array = []
	var code := OS.execute("timeout", [
		str(SECONDS_TO_SURVIVE), OS.get_executable_path(), "--headless", "--no-header", "--fixed-fps", str(FPS), "--quit-after", "600", "--path", ProjectSettings.globalize_path("res://"),
		"-s", "res://tests/survival/quitting.gd", "--",
	] + arguments, printed, true)
	var lines := []
	for line in ("\n".join(printed)).split("\n", false):
		if not line.begins_with("   "):
			lines.append(line.strip_edges())
	return {"code": code, "lines": lines}


func test_everybody_may_save_and_every_state_is_left() -> void:
	var seen := quits(["code=3"])
	expect_equal(seen["code"], 3)
	var lines: Array = seen["lines"]
	for line: String in ["saved by Saver", "autosaved", "left Autosave", "left Guard"]:
		expect_equal(lines.count(line), 1, line)
	expect_equal(lines.count("left Menu"), 2)
	expect("played on" not in lines and not lines.any(func(line: String) -> bool: return "ERROR" in line), str(lines))


func test_it_goes_without_a_word_where_that_is_wanted() -> void:
	var seen := quits(["quiet"])
	expect_equal(seen["code"], 0)
	expect("saved by Saver" not in seen["lines"] and "autosaved" not in seen["lines"] and "left Menu" in seen["lines"], str(seen["lines"]))


func test_whoever_hears_of_it_may_take_the_machine_away() -> void:
	var seen := quits(["hostile", "code=900"])
	expect_equal(seen["code"], 255)
	var lines: Array = seen["lines"]
	expect_equal(lines.count("saved by Saver"), 1)
	expect("played on" not in lines and not lines.any(func(line: String) -> bool: return "ERROR" in line), str(lines))
	expect(lines.any(func(line: String) -> bool: return "900 is no code that a game can end with, so it ends with 255" in line), str(lines))


func test_what_it_says() -> void:
	expect_lines(SCQuitGameAction, {"Close the game": {}, "Close the game with code 2": {"exit_code": 2}, "Close the game with code [result]": {"exit_code_variable": &"result"}})
