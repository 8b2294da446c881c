extends SceneTree
## Makes the addon's scripts of kinds, [code]docs/kinds.md[/code] and the README's count from what the library has registered. Run by
## [code]./dev kinds[/code] with [code]write[/code], which touches only what differs, and by [code]./dev lint[/code] with
## [code]check[/code], which ends with 1 when a script is missing, misnamed or stale, or when something else lies there.

const FOLDERS: Array[String] = ["res://addons/quillstead/actions", "res://addons/quillstead/conditions"]
const MANIFEST: String = "res://addons/quillstead/quillstead.gdextension"
const ICONS: String = "res://addons/quillstead/icons/%s.svg"
## The icons of what is no kind.
const ICON_OF: Dictionary[String, String] = {
	"SCMachine": "machine", "SCMachineTemplate": "template", "SCMachineState": "state", "SCMachineParallelState": "parallel_state",
	"SCMachineTransition": "transition", "SCMachineVariable": "variable", "SCMachineEvent": "event", "SCMachineNote": "note",
	"SCMachineAction": "action", "SCMachineCondition": "conditions",
}
const KindCatalog := preload("res://addons/quillstead/editor/kind_catalog.gd")
const PAGE: String = "res://docs/kinds.md"
const README: String = "res://README.md"
const WIDTH: int = 116

var _wanted: Dictionary[String, String] = {}
var _changed: int = 0
var _faults: PackedStringArray = []


func _initialize() -> void:
	var writes := "write" in OS.get_cmdline_user_args()
	var kinds := SCMachineAction._core_kinds()
	for kind in kinds:
		_wanted[kind["script"]] = _script_of(kind)
	_wanted[PAGE] = _page_of(kinds)
	_wanted[MANIFEST] = _manifest_of(kinds)
	_wanted[README] = _readme_with(kinds.size())
	for path in _wanted:
		_settle(path, writes)
	for folder in FOLDERS:
		_settle_what_lies_in(folder, writes)
	for fault in _faults:
		print(fault)
	if writes:
		print("%d kinds, %d files changed" % [kinds.size(), _changed])
	elif not _faults.is_empty():
		print("./dev kinds makes them anew.")
	quit(0 if _faults.is_empty() else 1)


func _script_of(kind: Dictionary) -> String:
	return "extends %s\n%s" % [kind["class"], _in_lines("## ", kind["about"])]


## What the scene tree, the create dialog and the inspector show beside each class.
func _manifest_of(kinds: Array[Dictionary]) -> String:
	var icons := ICON_OF.duplicate()
	for kind in kinds:
		icons[kind["class"]] = kind["category"]
	var lines := PackedStringArray()
	for name: String in icons:
		if FileAccess.file_exists(ICONS % icons[name]):
			lines.append('%s = "%s"' % [name, ICONS % icons[name]])
		else:
			_faults.append("%s is missing, for %s" % [(ICONS % icons[name]).trim_prefix("res://"), name])
	lines.sort()
	return "%s\n\n[icons]\n\n%s\n" % [FileAccess.get_file_as_string(MANIFEST).get_slice("[icons]", 0).strip_edges(), "\n".join(lines)]


## The engine joins the lines of a comment again.
func _in_lines(mark: String, text: String) -> String:
	var lines := ""
	var line := ""
	for word in text.replace("\n", "[br]").split(" ", false):
		if not line.is_empty() and mark.length() + line.length() + 1 + word.length() > WIDTH:
			lines += mark + line + "\n"
			line = ""
		line += word if line.is_empty() else " " + word
	return lines if line.is_empty() else lines + mark + line + "\n"


func _page_of(kinds: Array[Dictionary]) -> String:
	var by_category: Dictionary[String, PackedStringArray] = {}
	for kind in kinds:
		var category: String = kind["category"]
		var lines: PackedStringArray = by_category.get(category, PackedStringArray())
		lines.append("- **%s**: %s" % [KindCatalog.title_of(kind["class"]), KindCatalog.first_sentence_of(kind["about"])])
		by_category[category] = lines
	var page := "# The kinds\n\nWhat the Add Action menu offers, and the questions a Check asks. The editor's help tells each in full.\n"
	page += "Made by `./dev kinds` from what the library says of itself.\n"
	var categories := by_category.keys()
	categories.sort_custom(_conditions_last)
	for category: String in categories:
		by_category[category].sort()
		page += "\n## %s\n\n%s\n" % [category.capitalize(), "\n".join(by_category[category])]
	return page


## The page as it is, with the number of kinds as it is now.
func _readme_with(count: int) -> String:
	var text := FileAccess.get_file_as_string(README)
	var told := RegEx.create_from_string("\\d+(?= ready-made actions and conditions)")
	if told.search(text) == null:
		_faults.append("README.md does not say how many ready-made actions and conditions there are")
	return told.sub(text, str(count))


func _conditions_last(a: String, b: String) -> bool:
	if (a == "conditions") != (b == "conditions"):
		return b == "conditions"
	return a < b


func _settle(path: String, writes: bool) -> void:
	var there := FileAccess.file_exists(path)
	if there and FileAccess.get_file_as_string(path) == _wanted[path]:
		return
	if not writes:
		_faults.append("%s %s" % [path.trim_prefix("res://"), "is stale" if there else "is missing"])
		return
	DirAccess.make_dir_recursive_absolute(path.get_base_dir())
	var file := FileAccess.open(path, FileAccess.WRITE)
	if file == null:
		_faults.append("%s cannot be written (%s)" % [path.trim_prefix("res://"), error_string(FileAccess.get_open_error())])
		return
	file.store_string(_wanted[path])
	_changed += 1


func _settle_what_lies_in(folder: String, writes: bool) -> void:
	for name in DirAccess.get_files_at(folder):
		var path := folder.path_join(name)
		if _wanted.has(path.trim_suffix(".uid")):
			continue
		# Only what this tool can have made is taken away again.
		if writes and name.trim_suffix(".uid").get_extension() == "gd" and (name.begins_with("action_") or name.begins_with("condition_")):
			DirAccess.remove_absolute(path)
			_changed += 1
		else:
			_faults.append("%s stands for no kind" % path.trim_prefix("res://"))
	for name in DirAccess.get_directories_at(folder):
		var inner := folder.path_join(name)
		_settle_what_lies_in(inner, writes)
		if not _holds_anything(inner):
			if writes:
				DirAccess.remove_absolute(inner)
				_changed += 1
			else:
				_faults.append("%s is empty" % inner.trim_prefix("res://"))


func _holds_anything(folder: String) -> bool:
	return not DirAccess.get_files_at(folder).is_empty() or not DirAccess.get_directories_at(folder).is_empty()
