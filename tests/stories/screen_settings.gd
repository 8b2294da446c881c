extends Story

const WAYS := {"changed": "Changed", "failed": "Failed"}
const NO_SCREEN: String = "the game runs without a screen, so nothing was done about "

var _scale: float = 1.0


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	_scale = tree.root.content_scale_factor


func close() -> void:
	tree.root.content_scale_factor = _scale
	Engine.max_fps = 0
	await super()


func set_screen(settings: Dictionary, variables: Dictionary = {}) -> SCMachine:
	return play(kind(SCScreenSettingsAction, {"changed_event": &"changed", "failed_event": &"failed"}.merged(settings)), WAYS, {"variables": variables})


func test_what_needs_no_screen_is_set() -> void:
	for row: Array in [[60, 60], [0, 0], [1000000, 100000]]:
		expect_state(set_screen({"max_fps": row[0]}), "Changed")
		expect_equal(Engine.max_fps, row[1])
	for row: Array in [[1.5, 1.5], [0.01, 0.25], [90.0, 8.0]]:
		expect_state(set_screen({"interface_scale_variable": &"size"}, {"size": row[0]}), "Changed")
		expect_near(tree.root.content_scale_factor, row[1])
	expect_state(set_screen({"max_fps": 30}), "Changed")
	expect_near(tree.root.content_scale_factor, 8.0)
	expect_state(set_screen({"interface_scale": 1.0}), "Changed")
	expect_equal(Engine.max_fps, 30)


func test_what_is_not_there_is_told() -> void:
	var is_headless := DisplayServer.get_name() == "headless"
	if is_headless:
		var rows := {
			"Mode": {"mode": SCScreenSettingsAction.TOGGLE_FULLSCREEN},
			"Mode and Window Size and Vsync. Start it without --headless.": {"mode": SCScreenSettingsAction.WINDOW, "window_size": Vector2(800, 600), "vsync": SCScreenSettingsAction.VSYNC_OFF},
			"Screen": {"screen": SCScreenSettingsAction.THE_NEXT_ONE, "max_fps": 50},
		}
		for text: String in rows:
			expect_state(set_screen(rows[text]), "Failed")
			expect_warning(NO_SCREEN + text)
		expect_equal(Engine.max_fps, 50)
	expect_state(set_screen({"screen": SCScreenSettingsAction.BY_NUMBER, "screen_number": 40}), "Failed")
	expect_warning("there is no screen 40, as the computer has %d, so nothing was done about Screen. Pick one of those that there are under Screen Number." % DisplayServer.get_screen_count())
	expect_warns(kind(SCScreenSettingsAction), "nothing is to be set, so the screen stays as it is. Pick something under Mode or below.")
	expect_warns(kind(SCScreenSettingsAction, {"window_size": Vector2(0, 600)}), "a window cannot be of 0 by 600 pixels, so it keeps its size")
	expect_warns(kind(SCScreenSettingsAction, {"window_size": Vector2(NAN, 600)}), "Window Size")


func test_how_it_is_set_is_kept() -> void:
	var held := results_of(kind(SCScreenSettingsAction, {"store_size_in": &"size", "store_fullscreen_in": &"full", "store_screen_in": &"screen", "store_vsync_in": &"vsync", "store_mode_in": &"mode"}),
		{"size": Vector2.ZERO, "full": true, "screen": -1, "vsync": -1, "mode": -1})
	expect_equal(held[&"size"], Vector2(tree.root.size))
	expect_equal(held[&"full"], tree.root.mode in [Window.MODE_FULLSCREEN, Window.MODE_EXCLUSIVE_FULLSCREEN])
	expect_equal(held[&"screen"], tree.root.current_screen)
	expect_equal(held[&"vsync"], DisplayServer.window_get_vsync_mode() + SCScreenSettingsAction.VSYNC_OFF)
	expect(held[&"mode"] in [SCScreenSettingsAction.WINDOW, SCScreenSettingsAction.WINDOW_WITHOUT_FRAME, SCScreenSettingsAction.MAXIMIZED, SCScreenSettingsAction.FULLSCREEN])


func test_what_it_says() -> void:
	expect_lines(SCScreenSettingsAction, {
		"Leave the screen as it is": {},
		"Set the screen: fullscreen or back": {"mode": SCScreenSettingsAction.TOGGLE_FULLSCREEN},
		"Set the screen: a window, 1280 by 720 pixels, on screen 1, V-Sync off, at most 60 pictures a second, drawn 1.5 times as large": {
			"mode": SCScreenSettingsAction.WINDOW, "window_size": Vector2(1280, 720), "screen": SCScreenSettingsAction.BY_NUMBER, "screen_number": 1,
			"vsync": SCScreenSettingsAction.VSYNC_OFF, "max_fps": 60, "interface_scale": 1.5,
		},
		"Look how the screen is set": {"store_fullscreen_in": &"full"},
	})
	expect_hidden(kind(SCScreenSettingsAction), ["screen_number", "center_window"])
	expect_shown(kind(SCScreenSettingsAction, {"mode": SCScreenSettingsAction.WINDOW, "screen": SCScreenSettingsAction.BY_NUMBER}), ["screen_number", "center_window"])


## With a window of its own, on a screen that is drawn nowhere.
func test_a_window_changes_where_there_is_a_screen() -> void:
	# What goes before the engine to check its memory, the programs beside it do not bear.
	if OS.has_environment("ASAN_OPTIONS") or OS.has_environment("LSAN_OPTIONS") or OS.execute("sh", ["-c", "command -v xvfb-run xauth"]) != 0:
		return
	var printed: Array = []
	var status := OS.execute("timeout", [
		str(SECONDS_TO_SURVIVE), "xvfb-run", "-a", "-s", "-screen 0 1600x1024x24", OS.get_executable_path(), "--rendering-driver", "opengl3", "--audio-driver", "Dummy", "--no-header",
		"--fixed-fps", str(FPS), "--quit-after", "600", "--path", ProjectSettings.globalize_path("res://"), "-s", "res://tests/survival/window.gd",
	], printed, true)
	var said := "\n".join(printed)
	if "no window can be opened" in said:
		return
	expect("survived" in said and "FAIL" not in said and status == 0, said.right(1500))
