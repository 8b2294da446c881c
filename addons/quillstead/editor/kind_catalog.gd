@tool
extends RefCounted
## The kinds that can be put into a design: those of the library, and the game's own scripts that have a class name.

## Where the game's own kinds are listed.
const OF_THE_GAME: String = "this_game"
const ADDON: String = "res://addons/quillstead/"


## One kind, as it is offered.
class Kind:
	extends RefCounted

	## What it is called.
	var title: String
	## The heading it is listed under.
	var category: String
	## What it is for.
	var about: String
	## The class it is made from.
	var native_class: StringName
	## The script on top of that class. Empty for a kind of the library.
	var script_path: String
	## The icon its script names.
	var icon_path: String

	## A fresh one, suited to what it is going to work on.
	func make(on_2d: bool) -> Resource:
		var made: Resource = ClassDB.instantiate(native_class)
		if not script_path.is_empty():
			made.set_script(load(script_path))
		if on_2d:
			suit(made)
		return made

	## Whether what somebody types into the search finds it.
	func fits(words: String) -> bool:
		var text := "%s %s %s" % [title, category.capitalize(), about]
		for word in words.split(" ", false):
			if not text.containsn(word):
				return false
		return true

	## Gives a fresh action or condition the values that make sense in 2D.
	static func suit(made: Resource) -> void:
		var action := made as SCMachineAction
		if action != null:
			action.suit_2d()
		else:
			SCMachineAction.suit_settings_2d(made)


## Every kind of a base, [code]SCMachineAction[/code] or [code]SCMachineCondition[/code], by category and title. The bases
## themselves do nothing, so they are not among them.
static func of(base: StringName) -> Array[Kind]:
	var kinds: Array[Kind] = []
	for row: Dictionary in SCMachineAction._core_kinds():
		var native: StringName = row["class"]
		if ClassDB.is_parent_class(native, base):
			kinds.append(_made(title_of(native), row["category"], row["about"], native))
	for entry in ProjectSettings.get_global_class_list():
		var native := _native_below(entry["class"])
		if not entry.get("is_abstract", false) and not String(entry["path"]).begins_with(ADDON) and _is_a(native, base):
			var kind := _made(title_of(entry["class"]), OF_THE_GAME, said_by(entry["path"]), native)
			kind.script_path = entry["path"]
			kind.icon_path = entry.get("icon", "")
			kinds.append(kind)
	kinds.sort_custom(_comes_before)
	return kinds


## "SCSetVariableAction" is called "Set Variable".
static func title_of(class_of_kind: String) -> String:
	var plain := class_of_kind.trim_prefix("SC").trim_suffix("Action").trim_suffix("Condition")
	return plain.capitalize() if not plain.is_empty() else class_of_kind


static func first_sentence_of(text: String) -> String:
	var end := text.length()
	for mark: String in [". ", "? ", "! ", "\n"]:
		var at := text.find(mark)
		if at >= 0:
			end = mini(end, at + mark.strip_edges().length())
	return text.left(end)


## What an action or a condition is called: its kind's title, or that of its script.
static func title_of_made(made: Resource) -> String:
	var script: Script = made.get_script()
	while script != null and script.get_global_name().is_empty():
		if script.get_base_script() == null:
			return script.resource_path.get_file().get_basename().capitalize() if not script.resource_path.is_empty() else "Script"
		script = script.get_base_script()
	return title_of(script.get_global_name() if script != null else StringName(made.get_class()))


## The first of a script's own [code]##[/code] texts, in one line.
static func said_by(script_path: String) -> String:
	var script := load(script_path) as Script
	var lines := PackedStringArray()
	for line in script.source_code.split("\n") if script != null else PackedStringArray():
		if line.begins_with("##"):
			lines.append(line.trim_prefix("##").strip_edges())
		elif not lines.is_empty() or line.begins_with("func ") or line.begins_with("var ") or line.begins_with("@export"):
			break
	return RegEx.create_from_string("\\[/?\\w+(=[^\\]]*)?\\]").sub(" ".join(lines), "", true)


static func _made(title: String, category: String, about: String, native: StringName) -> Kind:
	var kind := Kind.new()
	kind.title = title
	kind.category = category
	kind.about = about
	kind.native_class = native
	return kind


## The class of the library that a script of this name extends in the end.
static func _native_below(name: StringName) -> StringName:
	var bases := {}
	for entry in ProjectSettings.get_global_class_list():
		bases[entry["class"]] = entry["base"]
	for step in bases.size():
		if not bases.has(name):
			break
		name = bases[name]
	return name


static func _is_a(native: StringName, base: StringName) -> bool:
	return native == base or (ClassDB.class_exists(native) and ClassDB.is_parent_class(native, base))


## The game's own come first: they are few.
static func _comes_before(a: Kind, b: Kind) -> bool:
	if a.category != b.category:
		return a.category == OF_THE_GAME or (b.category != OF_THE_GAME and a.category < b.category)
	return a.title.naturalnocasecmp_to(b.title) < 0
