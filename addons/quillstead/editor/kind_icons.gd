@tool
extends RefCounted
## The picture beside a kind: that of its category, else a tile with the first letter of its name.

const FOLDER: String = "res://addons/quillstead/icons/"
const TILE: String = (
	'<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16" viewBox="0 0 16 16">'
	+ '<path d="M3.5 1.5h9a2 2 0 0 1 2 2v9a2 2 0 0 1-2 2h-9a2 2 0 0 1-2-2v-9a2 2 0 0 1 2-2z" fill="none" stroke="#ffca5f" stroke-width="1.4"/>'
	+ '<path d="%s" fill="#e0e0e0" fill-rule="evenodd"/></svg>'
)
const LETTER_HEIGHT: int = 10

static var _known: Dictionary[String, Texture2D] = {}


## The picture of a kind of this category; a tile with the first letter of [param title] where the category has none.
static func of(category: String, title: String = "", icon_path: String = "") -> Texture2D:
	var path := icon_path if not icon_path.is_empty() else FOLDER + category + ".svg"
	if ResourceLoader.exists(path, "Texture2D"):
		return load(path)
	var letter := (title if not title.is_empty() else category).left(1).to_upper()
	if not _known.has(letter):
		_known[letter] = letter_tile(letter)
	return _known[letter]


## A letter in a frame, drawn from the outlines of the engine's own font.
static func letter_tile(letter: String) -> Texture2D:
	var image := Image.new()
	var error := image.load_svg_from_string(TILE % _outline(letter))
	return ImageTexture.create_from_image(image) if error == OK else null


## The letter as the path of an SVG, in the middle of 16 by 16.
static func _outline(letter: String) -> String:
	var server := TextServerManager.get_primary_interface()
	var fonts := ThemeDB.fallback_font.get_rids()
	if letter.is_empty() or fonts.is_empty():
		return ""
	var glyph := server.font_get_glyph_index(fonts[0], LETTER_HEIGHT, letter.unicode_at(0), 0)
	var contours := server.font_get_glyph_contours(fonts[0], LETTER_HEIGHT, glyph)
	var points: PackedVector3Array = contours.get("points", PackedVector3Array())
	var ends: PackedInt32Array = contours.get("contours", PackedInt32Array())
	if points.is_empty():
		return ""
	var bounds := Rect2(points[0].x, points[0].y, 0, 0)
	for point in points:
		bounds = bounds.expand(Vector2(point.x, point.y))
	var shift := Vector2(8, 8) - bounds.get_center()
	var path := ""
	var from := 0
	for end in ends:
		path += _contour(points.slice(from, end + 1), shift)
		from = end + 1
	return path


## A font's contour: points on the curve and, between them, those that pull it (z tells which is which).
static func _contour(points: PackedVector3Array, shift: Vector2) -> String:
	var count := points.size()
	var start := 0
	while start < count and int(points[start].z) != TextServer.CONTOUR_CURVE_TAG_ON:
		start += 1
	if start == count:
		return ""
	var path := "M%s" % _written(points[start], shift)
	var pull: Array[Vector3] = []
	for step in range(1, count + 1):
		var point := points[(start + step) % count]
		if int(point.z) != TextServer.CONTOUR_CURVE_TAG_ON:
			if int(point.z) == TextServer.CONTOUR_CURVE_TAG_OFF_CONIC and not pull.is_empty():
				path += "Q%s %s" % [_written(pull[0], shift), _written((pull[0] + point) / 2.0, shift)]
				pull.clear()
			pull.append(point)
			continue
		match pull.size():
			0:
				path += "L%s" % _written(point, shift)
			1:
				path += "Q%s %s" % [_written(pull[0], shift), _written(point, shift)]
			_:
				path += "C%s %s %s" % [_written(pull[0], shift), _written(pull[1], shift), _written(point, shift)]
		pull.clear()
	return path + "z"


static func _written(point: Vector3, shift: Vector2) -> String:
	return "%.2f %.2f" % [point.x + shift.x, point.y + shift.y]
