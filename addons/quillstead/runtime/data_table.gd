@tool
class_name SCDataTable
extends Resource
## A table of records that share a [SCDataDefinition]: a row for each sword, enemy type or level. The Find Row action looks in it, and so can
## scripts. A spreadsheet goes in and out as CSV.

const Data := preload("res://addons/quillstead/runtime/data.gd")
const DataCsv := preload("res://addons/quillstead/runtime/data_csv.gd")
const DataDefinition := preload("res://addons/quillstead/runtime/data_definition.gd")
const DataField := preload("res://addons/quillstead/runtime/data_field.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

## The heading of the column with the names of the rows.
const NAMES: String = "Row Name"
# So many things that are wrong with a CSV are told one by one.
const MOST_TOLD: int = 5

## Which fields the rows have. A row without a definition of its own gets this one.
@export var definition: DataDefinition:
	set(value):
		definition = value
		_hand_out_definition()
		_forget()
		emit_changed()
## The rows, in order. Each is found by its Record Name, by its place, or by what its fields hold.
@export var rows: Array[Data] = []:
	get:
		_was_handed_out = true
		return _rows
	set(value):
		_rows = value.duplicate()
		_was_handed_out = false
		_know_list()
		_hand_out_definition()
		_forget()
		emit_changed()
@export_tool_button("Add Row", "Add") var _add_row_button: Callable = _add_row_in_editor
@export_group("CSV")
## The file that the buttons below read and write.
@export_file("*.csv", "*.tsv", "*.txt") var csv_file: String = ""
@export_tool_button("Read CSV", "Load") var _read_button: Callable = _read_in_editor
@export_tool_button("Write CSV", "Save") var _write_button: Callable = _write_in_editor

var _rows: Array[Data] = []
# Whoever was given the list can change it without anybody hearing of it.
var _was_handed_out: bool = false
# What was found out about the rows, good while their list is that one. By field: the rows that hold a value, and the greatest and the least.
var _known_for: int = 0
var _gaps: int = 0
var _named: Dictionary[String, Data] = {}
var _holding: Dictionary[StringName, Dictionary] = {}
var _extremes: Dictionary[StringName, Array] = {}
# Where each row stands, filled with the first index; useless when one stands in two places.
var _places: Dictionary[Data, int] = {}
var _has_doubles: bool = false
var _was_told: bool = false


func _to_string() -> String:
	return shown_name()


func shown_name() -> String:
	return DataDefinition.name_of(self, "the table")


## How many rows there are, empty places in the list not counted.
func count() -> int:
	_look_at_list()
	return _rows.size() - _gaps


func field_names() -> PackedStringArray:
	return definition.names() if definition != null else PackedStringArray()


## The names of the rows that have one, in order.
func row_names() -> PackedStringArray:
	var names: PackedStringArray = []
	for one in _rows:
		if one != null and not one.get_name().is_empty():
			names.append(one.get_name())
	return names


## The row of that name, the first of several; null for none.
func row(of_name: String) -> Data:
	_look()
	var found: Data = _named.get(of_name)
	if of_name.is_empty() or (found != null and found.get_name() == of_name):
		return found
	# Not as a property, for which a record would first look among its fields.
	if _named.is_empty():
		for one in _rows:
			if one != null and not one.get_name().is_empty():
				_named.get_or_add(one.get_name(), one)
		return _named.get(of_name)
	# Rows can be given names without anybody hearing of it.
	for one in _rows:
		if one != null and one.get_name() == of_name:
			_named[of_name] = one
			return one
	return null


func has_row(of_name: String) -> bool:
	return row(of_name) != null


## The row at that place, from 1; null where there is none.
func row_at(place: int) -> Data:
	_look()
	return _rows[place - 1] if place >= 1 and place <= _rows.size() else null


## Any of the rows, by chance; null when there are none.
func random_row() -> Data:
	_look()
	var there := _rows.filter(func(one: Data) -> bool: return one != null)
	return there[randi_range(0, there.size() - 1)] if not there.is_empty() else null


## The first row whose field holds that value; null for none. 1 and 1.0 are the same, and so are a name and its text.
func find(field: StringName, value: Variant) -> Data:
	for one: Data in _candidates(field, value):
		if SCMachineAction.same_value(one.get_field(field), value):
			return one
	return null


## All rows whose field holds that value, in order.
func find_all(field: StringName, value: Variant) -> Array[Data]:
	var found: Array[Data] = []
	found.assign(_candidates(field, value).filter(func(one: Data) -> bool: return SCMachineAction.same_value(one.get_field(field), value)))
	return found


## The row whose field holds the most, the first of several; null when none can be compared. Texts go by the alphabet, choices by their order
## and places by how far out they are.
func highest(field: StringName) -> Data:
	return _extremes_of(field)[0]


## As [method highest], the row whose field holds the least.
func lowest(field: StringName) -> Data:
	return _extremes_of(field)[1]


## Adds a row at the end and answers it. [param holding] is values by the names of the fields.
func add_row(of_name: String = "", holding: Dictionary = {}) -> Data:
	var added := Data.new()
	added.resource_name = of_name
	added.definition = definition
	for field: StringName in holding:
		added.set_field(field, holding[field])
	rows = _rows + ([added] as Array[Data])
	return added


## Takes a row out. False when it is not in the table.
func remove_row(taken: Data) -> bool:
	var at := _rows.find(taken)
	if at < 0:
		return false
	var left := _rows.duplicate()
	left.remove_at(at)
	rows = left
	return true


## Why nothing can be found by that field, to go into a sentence; empty when there is one of that name.
func missing(field: StringName) -> String:
	if definition != null and definition.has_field(field):
		return ""
	if definition == null:
		for one in _rows:
			if one != null and one.has_field(field):
				return ""
		return "%s has no Data Definition picked yet, so it has no field called %s" % [shown_name(), field]
	var names := definition.names()
	return "%s has no field called %s. It has %s" % [shown_name(), field, DataField.listed(names) if not names.is_empty() else "none yet"]


## What is wrong with it, each in a sentence.
func findings() -> PackedStringArray:
	var found: PackedStringArray = []
	if definition != null:
		found.append_array(definition.findings())
	elif not _rows.is_empty() and not _rows.any(func(one: Data) -> bool: return one != null and one.definition != null):
		found.append("%s has no Data Definition, so its rows have no fields. Pick one under Definition." % shown_name())
	if _rows.has(null):
		found.append("%s has nothing in row %d, so that row is passed over. Put a record there, or remove it." % [shown_name(), _rows.find(null) + 1])
	var seen: Dictionary[String, int] = {}
	for i in _rows.size():
		if _rows[i] == null or _rows[i].get_name().is_empty():
			continue
		var name := _rows[i].get_name()
		if seen.has(name):
			found.append("%s calls both row %d and row %d %s, so only the first is found by that name. Give the other another one." % [
				shown_name(), seen[name] + 1, i + 1, name])
		else:
			seen[name] = i
	return found


## Reads rows from CSV: a file, or the text itself. The first line names the fields, and a column that names none holds the names of the rows.
## Each cell becomes the kind of value that its field holds; an empty one means the default. A row that is there already, by its name, is changed,
## and those that the CSV does not have are dropped. A table without a definition gets one, made from the first line and what stands below it.
## [br][br]
## False, and the game maker is told, when there was nothing to read.
## [br][br]
## The editor takes a CSV in the project for a translation, and leaves the file out of exported games: set it to Keep File (exported as is) in the
## Import dock.
func import_csv(path_or_text: String) -> bool:
	var read := _rows_from(path_or_text, true)
	if read.is_empty():
		return false
	rows = read
	return true


## The table as CSV, written to a file when a path is given. A first column holds the names of the rows.
func export_csv(path: String = "") -> String:
	var names := field_names()
	var lines: PackedStringArray = [DataCsv.line_of(PackedStringArray([NAMES]) + names)]
	for one in _rows:
		if one == null:
			continue
		var cells: PackedStringArray = [one.resource_name]
		for name in names:
			cells.append(DataCsv.written(one.get_field(name)))
		lines.append(DataCsv.line_of(cells))
	var text := "\n".join(lines) + "\n"
	if not path.is_empty():
		_write(path, text)
	return text


## Called by a row: all of its fields may hold something else now.
func forget_fields() -> void:
	_forget()


## Called by a row whose field held [param before] until now.
func move_row(one: Data, field: StringName, before: Variant) -> void:
	_extremes.erase(field)
	if not _holding.has(field):
		return
	if _has_doubles or not _places.has(one):
		_holding.erase(field)
		return
	var index := _holding[field]
	var left: Variant = _key_of(before)
	(index.get(left, []) as Array).erase(one)
	if (index.get(left, []) as Array).is_empty():
		index.erase(left)
	var together: Array = index.get_or_add(_key_of(one.get_field(field)), [])
	together.insert(together.bsearch_custom(one, func(a: Data, b: Data) -> bool: return _places[a] < _places[b]), one)


func _forget() -> void:
	_named.clear()
	_holding.clear()
	_extremes.clear()
	_places.clear()
	_has_doubles = false
	_was_told = false


func _hand_out_definition() -> void:
	if definition == null:
		return
	for one in _rows:
		if one != null and one.definition == null:
			one.definition = definition


func _look() -> void:
	_look_at_list()
	if not _was_told:
		_was_told = true
		for sentence in findings():
			MakerWarnings.once_for(self, sentence, sentence)


func _look_at_list() -> void:
	if _was_handed_out and _rows.hash() != _known_for:
		_know_list()
		_hand_out_definition()
		_forget()


func _know_list() -> void:
	_known_for = _rows.hash()
	_gaps = _rows.count(null)


# The rows that may hold that value, by a key that all values have in common that are the same.
func _candidates(field: StringName, value: Variant) -> Array:
	_look()
	if value is float and is_nan(value):
		return []
	if not _holding.has(field):
		_holding[field] = _index_of(field)
	return _holding[field].get(_key_of(value), [])


func _index_of(field: StringName) -> Dictionary:
	var index := {}
	_place_rows()
	for one: Data in _rows.duplicate():
		if one == null or not one.has_field(field):
			continue
		one.tell_table(self)
		var key: Variant = _key_of(one.get_field(field))
		if index.has(key):
			(index[key] as Array).append(one)
		else:
			index[key] = [one]
	return index


func _place_rows() -> void:
	if not _places.is_empty():
		return
	for i in _rows.size():
		if _rows[i] != null and _places.get_or_add(_rows[i], i) != i:
			_has_doubles = true


static func _key_of(value: Variant) -> Variant:
	match typeof(value):
		TYPE_BOOL, TYPE_INT, TYPE_FLOAT:
			# In single precision, which a fraction may have come through.
			return Vector2(value, 0.0).x
		TYPE_STRING_NAME:
			return String(value)
		TYPE_VECTOR2, TYPE_VECTOR2I:
			return Vector3(value.x, value.y, 0.0)
		TYPE_VECTOR3I:
			return Vector3(value)
		TYPE_OBJECT:
			return value if is_instance_valid(value) else null
	return value


func _extremes_of(field: StringName) -> Array:
	_look()
	if _extremes.has(field):
		return _extremes[field]
	var most: Data
	var least: Data
	var most_key: Variant
	var least_key: Variant
	for one: Data in _rows.duplicate():
		if one == null or not one.has_field(field):
			continue
		one.tell_table(self)
		var key: Variant = _size_of(one, field)
		if key == null:
			continue
		if most == null or _is_smaller(most_key, key):
			most = one
			most_key = key
		if least == null or _is_smaller(key, least_key):
			least = one
			least_key = key
	_extremes[field] = [most, least]
	return _extremes[field]


# What it is compared by, a number or a text; null for what has no size.
static func _size_of(record: Data, field: StringName) -> Variant:
	var value: Variant = record.get_field(field)
	match typeof(value):
		TYPE_BOOL, TYPE_INT:
			return int(value)
		TYPE_FLOAT:
			return null if is_nan(value) else value
		TYPE_STRING, TYPE_STRING_NAME:
			var place := record.place_among_choices(field, value)
			return place if place >= 0 else String(value)
		TYPE_VECTOR2, TYPE_VECTOR2I, TYPE_VECTOR3, TYPE_VECTOR3I:
			return null if is_nan(value.length()) else float(value.length())
	return null


# Numbers come before texts.
static func _is_smaller(first: Variant, second: Variant) -> bool:
	if first is String or second is String:
		return first is String and second is String and (first as String).naturalnocasecmp_to(second) < 0
	return first < second


# Without `into_old` the rows that are there stay as they are, so that it can be undone.
func _rows_from(path_or_text: String, into_old: bool) -> Array[Data]:
	var problems: PackedStringArray = []
	var read: Array[Data] = []
	var text := _csv_text(path_or_text)
	if text.is_empty():
		return read
	var separator := DataCsv.separator_of(text)
	var lines := DataCsv.cells_of(text, separator, problems)
	if lines.size() < 2:
		MakerWarnings.say("%s read no rows: the CSV needs a line with the names of the fields, and a line for each row below it." % shown_name())
		return read
	var columns := _columns_of(lines, separator, problems)
	var names_in := columns.find(NAMES)
	for i in range(1, lines.size()):
		var name := lines[i][names_in].strip_edges() if names_in >= 0 and names_in < lines[i].size() else ""
		var old := row(name) if names_in >= 0 else row_at(i)
		if read.has(old):
			old = null
		var one: Data = old if into_old and old != null else old.own_copy() if old != null else Data.new()
		if one.definition == null:
			one.definition = definition
		if names_in >= 0:
			one.resource_name = name
		_fill(one, lines[i], columns, separator, "line %d" % (i + 1), problems)
		read.append(one)
	for i in mini(problems.size(), MOST_TOLD):
		MakerWarnings.say("%s: %s." % [shown_name(), problems[i]])
	if problems.size() > MOST_TOLD:
		MakerWarnings.say("%s: %d more cells of the CSV were not understood." % [shown_name(), problems.size() - MOST_TOLD])
	return read


func _fill(one: Data, cells: PackedStringArray, columns: PackedStringArray, separator: String, where: String, problems: PackedStringArray) -> void:
	if cells.size() > columns.size():
		problems.append("%s has %d cells for %d columns, so the last were left out. Put quotes round a text that has the separator in it" % [
			where, cells.size(), columns.size()])
	for i in columns.size():
		var field := one.definition.field(columns[i])
		if field == null:
			continue
		var cell := cells[i] if i < cells.size() else ""
		var is_empty := cell.strip_edges().is_empty() and (field.type != DataField.Type.STRING or i >= cells.size() or not field.choices.is_empty())
		var value: Variant = field.starts_as() if is_empty else DataCsv.meant(cell, field.type, separator)
		var problem := "it takes %s" % DataField.TAKES[field.type] if value == null and not is_empty else one.try_set_field(field.field_name, value)
		if not problem.is_empty():
			problems.append("%s of %s holds \"%s\", which was left out: %s" % [field.field_name, where, cell, problem])


# The field of each column, or the word for the names of the rows, or nothing for one that is passed over.
func _columns_of(lines: Array[PackedStringArray], separator: String, problems: PackedStringArray) -> PackedStringArray:
	var headings: PackedStringArray = []
	for heading in lines[0]:
		headings.append(heading.strip_edges())
	if definition == null:
		definition = _definition_for(headings, lines, separator)
	var columns: PackedStringArray = []
	for i in headings.size():
		var field := _field_headed(headings[i])
		if field.is_empty() and not columns.has(NAMES) and (i == 0 or headings[i].capitalize() == NAMES):
			field = NAMES
		elif field.is_empty() and not headings[i].is_empty():
			problems.append("the CSV has a column %s, which no field is called, so it was left out. Add that field to the Data Definition" % headings[i])
		elif columns.has(field) and not field.is_empty():
			problems.append("the CSV has two columns for %s, so the second was left out" % field)
			field = ""
		columns.append(field)
	return columns


# As it is written, or else however it is spelled: max_health, Max Health.
func _field_headed(heading: String) -> String:
	if definition.has_field(heading) or heading.is_empty():
		return heading
	for name in definition.names():
		if name.capitalize().nocasecmp_to(heading.capitalize()) == 0:
			return name
	return ""


func _definition_for(headings: PackedStringArray, lines: Array[PackedStringArray], separator: String) -> DataDefinition:
	var made := DataDefinition.new()
	for i in headings.size():
		var cells: PackedStringArray = []
		for line: PackedStringArray in lines.slice(1):
			cells.append(line[i] if i < line.size() else "")
		var type := DataCsv.type_for(cells, separator)
		# Words in the first column are what the rows are called.
		var are_names := headings[i].capitalize() == NAMES or (i == 0 and type == DataField.Type.STRING)
		if not are_names and not headings[i].is_empty():
			made.add_field(headings[i], type)
	return made


func _csv_text(path_or_text: String) -> String:
	if "\n" in path_or_text:
		return path_or_text
	if path_or_text.is_empty():
		MakerWarnings.say("%s read no rows: there is neither a file nor text to read from." % shown_name())
		return ""
	if not FileAccess.file_exists(path_or_text):
		MakerWarnings.say("%s read no rows: there is no file at %s.%s" % [shown_name(), path_or_text, "" if not path_or_text.begins_with("res://") else
			" An exported game has it only when its CSV is set to Keep File in the Import dock."])
		return ""
	var text := FileAccess.get_file_as_string(path_or_text)
	if text.is_empty():
		MakerWarnings.say("%s read no rows: %s is empty, or cannot be read." % [shown_name(), path_or_text])
	return text


func _write(path: String, text: String) -> void:
	var file := FileAccess.open(path, FileAccess.WRITE)
	if file == null:
		MakerWarnings.say("%s was not written: %s cannot be opened (%s)." % [shown_name(), path, error_string(FileAccess.get_open_error())])
		return
	file.store_string(text)
	file.close()
	# The editor would make translations of it.
	if Engine.is_editor_hint() and path.begins_with("res://") and path.get_extension() == "csv" and not FileAccess.file_exists(path + ".import"):
		var import := FileAccess.open(path + ".import", FileAccess.WRITE)
		if import != null:
			import.store_string("[remap]\n\nimporter=\"keep\"\n")


func _add_row_in_editor() -> void:
	var added := Data.new()
	added.definition = definition
	_change_in_editor("Add Row", _rows + ([added] as Array[Data]))


func _read_in_editor() -> void:
	var had := definition
	var read := _rows_from(csv_file, false)
	if not read.is_empty():
		_change_in_editor("Read CSV", read, had)


func _write_in_editor() -> void:
	if csv_file.is_empty():
		MakerWarnings.say("%s was not written: no file is picked under CSV File." % shown_name())
	else:
		export_csv(csv_file)


# The editor's own history also notes that the file has to be saved.
func _change_in_editor(what: String, to: Array[Data], definition_before: DataDefinition = definition) -> void:
	var history: Object = Engine.get_singleton(&"EditorInterface").call(&"get_editor_undo_redo")
	history.call(&"create_action", what, 0, self)
	history.call(&"add_do_property", self, &"definition", definition)
	history.call(&"add_do_property", self, &"rows", to)
	history.call(&"add_undo_property", self, &"rows", _rows)
	history.call(&"add_undo_property", self, &"definition", definition_before)
	history.call(&"commit_action")
	notify_property_list_changed()
