extends RefCounted
## Tables of text as spreadsheets write them: cells in lines, with a comma, a semicolon or a tab in between.

const DataField := preload("res://addons/quillstead/runtime/data_field.gd")

const SEPARATORS: PackedStringArray = [",", ";", "\t"]
const YES: PackedStringArray = ["true", "yes", "on", "x", "1"]
const NO: PackedStringArray = ["false", "no", "off", "0"]


## What stands between the cells: the separator that the first line has most of.
static func separator_of(text: String) -> String:
	var best := SEPARATORS[0]
	var most := 0
	var line := text.get_slice("\n", 0)
	# What stands in quotes separates nothing.
	var outside := ""
	for i in line.get_slice_count("\""):
		outside += line.get_slice("\"", i) if i % 2 == 0 else ""
	for separator in SEPARATORS:
		if outside.count(separator) > most:
			most = outside.count(separator)
			best = separator
	return best


## The cells of each line, empty lines left out. A cell in quotes may hold anything, with a quote written twice. What is wrong is added to
## [param problems], to go into a sentence.
static func cells_of(text: String, separator: String, problems: PackedStringArray) -> Array[PackedStringArray]:
	var lines: Array[PackedStringArray] = []
	var line: PackedStringArray = []
	text = text.trim_prefix("\uFEFF").replace("\r\n", "\n").replace("\r", "\n")
	var at := 0
	var line_end := _or_end(text, "\n", 0)
	while at <= text.length():
		var cell := ""
		if at < text.length() and text[at] == "\"":
			var close := _closing_quote(text, at + 1)
			if close < 0:
				problems.append("a quote in line %d is never closed, so all that follows it went into one cell" % (text.count("\n", 0, at + 1) + 1))
				close = text.length()
			cell = text.substr(at + 1, close - at - 1).replace("\"\"", "\"")
			at = close + 1
			if at > line_end:
				line_end = _or_end(text, "\n", mini(at, text.length()))
		var cell_end := mini(_or_end(text, separator, mini(at, text.length())), line_end)
		cell += text.substr(at, cell_end - at)
		line.append(cell)
		at = cell_end + 1
		if cell_end == line_end:
			if line.size() > 1 or not line[0].strip_edges().is_empty():
				lines.append(line)
			line = []
			line_end = _or_end(text, "\n", mini(at, text.length()))
	return lines


## One line of it, without its end.
static func line_of(cells: PackedStringArray) -> String:
	var quoted: PackedStringArray = []
	for cell in cells:
		# A line of nothing but an empty cell would be an empty line.
		var needs_quotes := cell != cell.strip_edges() or (cells.size() == 1 and cell.is_empty())
		for special in SEPARATORS + PackedStringArray(["\"", "\n", "\r"]):
			needs_quotes = needs_quotes or cell.contains(special)
		quoted.append("\"%s\"" % cell.replace("\"", "\"\"") if needs_quotes else cell)
	return ",".join(quoted)


## What a cell means in a field of that type; null when it means no such value. Where a semicolon separates the cells, a comma may stand for
## the point in a number.
static func meant(cell: String, type: DataField.Type, separator: String) -> Variant:
	var word := cell.strip_edges()
	match type:
		DataField.Type.STRING:
			return cell
		DataField.Type.FLOAT, DataField.Type.INT:
			if word.is_valid_int():
				return word.to_int()
			if separator == ";" and word.count(",") == 1:
				word = word.replace(",", ".")
			return word.to_float() if word.is_valid_float() else null
		DataField.Type.BOOL:
			return true if YES.has(word.to_lower()) else false if NO.has(word.to_lower()) else null
		DataField.Type.VECTOR2, DataField.Type.VECTOR3:
			return _vector(word, 2 if type == DataField.Type.VECTOR2 else 3)
		DataField.Type.COLOR:
			return _color(word)
		DataField.Type.ARRAY:
			return _list(word, separator)
		DataField.Type.DICTIONARY:
			var table: Variant = _from_json(word)
			return table if table is Dictionary else null
	return load(word) if ResourceLoader.exists(word) else null


## How a value is written into a cell.
static func written(value: Variant) -> String:
	match typeof(value):
		TYPE_FLOAT:
			# All its digits, but a whole number without a point.
			return str(int(value)) if value == floorf(value) and absf(value) < 1.0e15 else var_to_str(value)
		TYPE_VECTOR2:
			return "(%s, %s)" % [written(value.x), written(value.y)]
		TYPE_VECTOR3:
			return "(%s, %s, %s)" % [written(value.x), written(value.y), written(value.z)]
		TYPE_COLOR:
			return "#" + (value as Color).to_html(value.a < 1.0)
		TYPE_ARRAY, TYPE_DICTIONARY:
			return JSON.stringify(value, "", false, true)
		TYPE_OBJECT:
			return (value as Resource).resource_path if value is Resource else ""
		TYPE_NIL:
			return ""
	return str(value)


## The type of field that all these cells fit, those that are empty left out.
static func type_for(cells: PackedStringArray, separator: String) -> DataField.Type:
	for type: DataField.Type in [DataField.Type.INT, DataField.Type.FLOAT, DataField.Type.BOOL]:
		var fits := false
		for cell in cells:
			if not cell.strip_edges().is_empty():
				var value: Variant = meant(cell, type, separator)
				fits = value != null and (type != DataField.Type.INT or value is int)
				if not fits:
					break
		if fits:
			return type
	return DataField.Type.STRING


static func _or_end(text: String, what: String, from: int) -> int:
	var found := text.find(what, from)
	return found if found >= 0 else text.length()


static func _closing_quote(text: String, from: int) -> int:
	var close := text.find("\"", from)
	while close >= 0 and close + 1 < text.length() and text[close + 1] == "\"":
		close = text.find("\"", close + 2)
	return close


static func _vector(word: String, parts: int) -> Variant:
	var inside := word.get_slice("(", 1) if "(" in word else word
	var numbers: Array[float] = []
	for part in inside.trim_suffix(")").replace(";", ",").replace(" ", ",").split(",", false):
		if not part.is_valid_float():
			return null
		numbers.append(part.to_float())
	if numbers.size() != parts:
		return null
	return Vector2(numbers[0], numbers[1]) if parts == 2 else Vector3(numbers[0], numbers[1], numbers[2])


static func _color(word: String) -> Variant:
	var none := Color(-1.0, -1.0, -1.0, -1.0)
	var color := Color.from_string(word, none)
	return color if color != none else null


static func _list(word: String, separator: String) -> Variant:
	if word.begins_with("["):
		var list: Variant = _from_json(word)
		return list if list is Array else null
	return Array(word.split("," if separator != "," or "," in word else ";", false)).map(func(part: String) -> String: return part.strip_edges())


# JSON knows no whole numbers.
static func _from_json(word: String) -> Variant:
	var json := JSON.new()
	return _with_whole_numbers(json.data) if json.parse(word) == OK else null


static func _with_whole_numbers(value: Variant) -> Variant:
	if value is Array:
		return (value as Array).map(_with_whole_numbers)
	if value is Dictionary:
		var table := {}
		for key: Variant in value:
			table[key] = _with_whole_numbers(value[key])
		return table
	if value is float and value == floorf(value) and absf(value) < 1.0e15:
		return int(value)
	return value
