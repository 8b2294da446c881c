extends FileStory


const WAYS := {"done": "Done", "failed": "Failed"}


func run(program: String, arguments: Array, options: Dictionary = {}) -> SCMachine:
	var action := kind(SCRunProgramAction, {"program": program, "done_event": &"done", "failed_event": &"failed"}.merged(options, true))
	var typed: Array[String] = []
	typed.assign(arguments)
	action.set(&"arguments", typed)
	return play(action, WAYS, {"variables": {"id": 0, "code": -1, "typed": "; touch hacked", "folder": whole("")}})


func test_a_program_gets_its_arguments_as_they_are() -> void:
	var hostile := ["two words", "$(touch %s)" % whole("hacked"), "`touch %s`" % whole("hacked"), "a\"b'c", "&& true", "*"]
	var owner := run("touch", hostile.map(func(name: String) -> String: return "{folder}/%s" % name.replace("/", "_")), {"wait_for_end": true, "store_exit_code_in": &"code", "store_process_id_in": &"id"})
	expect_state(owner, "Work")
	await until_done(owner)
	expect_state(owner, "Done")
	expect_values(owner, {"code": 0})
	expect((owner.get_value(&"id") as int) > 0)
	var wanted := hostile.map(func(name: String) -> String: return name.replace("/", "_"))
	wanted.sort()
	expect_equal(listed(), wanted)
	var typed := run("touch", ["{folder}/x{typed}"], {"wait_for_end": true})
	await until_done(typed)
	expect("x; touch hacked" in listed() and not FileAccess.file_exists("res://hacked"))


func test_it_carries_on_or_waits() -> void:
	expect_line(kind(SCRunProgramAction, {"program": "git", "arguments": ["clone", "a b"] as Array[String]}), 'Run git "clone" "a b"')
	expect_line(kind(SCRunProgramAction, {"program": "git", "wait_for_end": true}), "Run git and wait for its end")
	expect_shown(kind(SCRunProgramAction, {"wait_for_end": true}), ["store_exit_code_in"])
	expect_hidden(kind(SCRunProgramAction), ["store_exit_code_in"])
	var owner := run("/bin/sleep", ["60"], {"store_process_id_in": &"id"})
	expect_state(owner, "Done")
	expect(OS.is_process_running(owner.get_value(&"id")))
	var code := run("false", [], {"wait_for_end": true, "store_exit_code_in": &"code"})
	await until_done(code)
	expect_values(code, {"code": 1})
	OS.kill(owner.get_value(&"id"))


func test_a_program_of_the_games_own_folder_runs() -> void:
	put("tool", "#!/bin/sh\nexit 7\n")
	expect_warns(kind(SCRunProgramAction, {"program": mine("tool")}), "is a file that may not be run as a program")
	FileAccess.set_unix_permissions(mine("tool"), 0x1ED)
	var owner := run(mine("tool"), [], {"wait_for_end": true, "store_exit_code_in": &"code"})
	await until_done(owner)
	expect_values(owner, {"code": 7})


func test_what_cannot_be_run_is_told() -> void:
	var rows := {
		"": "Run Program on Machine: Program is empty, so nothing was done. Look at what is beside Program.",
		"nobody_has_this_program": "this computer knows no program called nobody_has_this_program",
		"/nowhere/at_all": "there is no program /nowhere/at_all",
		"tools/at_all": "there is no program tools/at_all",
		"user://": "there is no program user://",
		"/bin": "there is no program /bin",
		"start.bat": "start.bat is a batch file, which goes through a command shell",
		"C:\\games\\start.CMD . ": "is a batch file",
		"ls -l; touch x": "this computer knows no program called ls -l; touch x",
	}
	for program: String in rows:
		var owner := run(program, [])
		expect_state(owner, "Failed")
		expect_warning(rows[program])
		owner.free()
