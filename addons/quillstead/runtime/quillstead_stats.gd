extends RefCounted
## Changes of a machine's numbers that can be taken away again: those of worn items, boosts, curses and auras.
##
## A stat is a variable of the machine that holds a number. Additions go onto it first and multiplications count for the sum, so the
## order in which changes come and go makes no difference, and when the last has gone it is exactly what it was. A change is known
## by its source, such as [code]"Iron Sword"[/code], and by that it is taken away.
## [br][br]
## What the game itself writes into the variable meanwhile counts as a change of what it started as: a stat of 20 that is 10 times 2
## and is set to 30 is 15 times 2 from then on. A machine that starts anew has no changes.

const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

## The metadata of a machine that holds its changes.
const BOOK: StringName = &"quillstead_stats"
## Amounts beyond this would leave nothing of the other changes.
const LARGEST: float = 1.0e100

const _LARGEST_INT: float = 9.2e18

enum _Way { ADD, MULTIPLY }


## A sum of numbers that come and go. It is the one nearest to the true sum, so it depends on nothing but which numbers are in it.
class ExactSum:
	extends RefCounted

	# Numbers that do not overlap, from the smallest, whose true sum is the sum.
	var _parts: PackedFloat64Array = []

	func add(number: float) -> void:
		_parts = _with(number)

	## The sum with one number more.
	func total_with(number: float) -> float:
		var parts := _with(number)
		var at := parts.size() - 1
		if at < 0:
			return 0.0
		var high := parts[at]
		var low := 0.0
		while at > 0 and low == 0.0:
			at -= 1
			var before := high
			high = before + parts[at]
			low = parts[at] - (high - before)
		# Half way between two numbers, what is still smaller decides.
		if at > 0 and ((low < 0.0 and parts[at - 1] < 0.0) or (low > 0.0 and parts[at - 1] > 0.0)):
			var other := high + low * 2.0
			if other - high == low * 2.0:
				high = other
		return high

	# Adding one that was added and its opposite leaves nothing of either.
	func _with(number: float) -> PackedFloat64Array:
		var parts: PackedFloat64Array = []
		var larger := number
		for part in _parts:
			var smaller := part
			if absf(larger) < absf(smaller):
				smaller = larger
				larger = part
			var sum := larger + smaller
			var rest := smaller - (sum - larger)
			larger = sum
			if rest != 0.0:
				parts.append(rest)
		if larger != 0.0:
			parts.append(larger)
		return parts


## One number of one machine and what changes it.
class Stat:
	extends RefCounted

	## What it would be without any change.
	var base: Variant = 0.0
	## What the variable was last given here.
	var shown: Variant = 0.0
	## The same before it was rounded, or kept within the variable's limits.
	var meant: float = 0.0
	## Source to its changes, each an array of a way and an amount.
	var sources: Dictionary[String, Array] = {}

	var _additions: ExactSum = ExactSum.new()
	# In order of size, so that the product does not depend on the order they came in.
	var _factors: PackedFloat64Array = []

	func put(source: String, way: _Way, amount: float) -> void:
		if not sources.has(source):
			sources[source] = []
		sources[source].append([way, amount])
		if way == _Way.ADD:
			_additions.add(amount)
		else:
			_factors.insert(_factors.bsearch(amount), amount)

	## Takes out what a source changes that way, or in any way with -1.
	func drop(source: String, way: int = -1) -> void:
		var stays: Array = []
		for change: Array in sources.get(source, []):
			if way >= 0 and change[0] != way:
				stays.append(change)
			elif change[0] == _Way.ADD:
				_additions.add(-change[1])
			else:
				_factors.remove_at(_factors.bsearch(change[1]))
		if stays.is_empty():
			sources.erase(source)
		else:
			sources[source] = stays

	func is_unchanged() -> bool:
		return sources.is_empty()

	func product() -> float:
		var all := 1.0
		for factor in _factors:
			all *= factor
		return all

	func total() -> float:
		return _additions.total_with(base) * product()

	## The game has written [param held] since.
	func take_up(held: Variant) -> void:
		if (held == shown and typeof(held) == typeof(shown)) or not is_finite(held):
			return
		var times := product()
		if held is int and shown is int and base is int and times == 1.0 and absf(meant - float(shown)) < 1.0:
			base += held - shown
			return
		# What was only rounded off is not lost by it.
		var from: float = shown if absf(meant - float(shown)) <= 0.5 else meant
		var by: float = float(held) - from
		base = float(base) + (by / times if times != 0.0 and is_finite(by / times) else by)


## What is known of one machine.
class Book:
	extends RefCounted

	## A machine that was duplicated has the same metadata, and starts without changes all the same.
	var of: int = 0
	var stats: Dictionary[StringName, Stat] = {}
	## What items remember of the machine; see [code]quillstead_items.gd[/code].
	var notes: Dictionary = {}

	# Its variables are what they start as again.
	func on_state_changed(previous: SCMachineState, _current: SCMachineState) -> void:
		if previous != null:
			return
		var machine := instance_from_id(of) as SCMachine
		for stat: StringName in stats.keys():
			if machine == null or machine.get_value(stat) != stats[stat].shown:
				stats.erase(stat)


## Adds [param amount] to a stat until its [param source] is taken away. An addition of the same source is replaced; with
## [param stack] there may be several. Without a source, any change without one is replaced.
static func add(machine: SCMachine, stat: StringName, source: String, amount: float, stack: bool = false) -> void:
	_change(machine, stat, source, _Way.ADD, amount, stack)


## Multiplies a stat by [param amount] until its [param source] is taken away. A multiplication of the same source is replaced; with
## [param stack] there may be several. Without a source, any change without one is replaced.
static func multiply(machine: SCMachine, stat: StringName, source: String, amount: float, stack: bool = false) -> void:
	_change(machine, stat, source, _Way.MULTIPLY, amount, stack)


## Takes away everything that [param source] changes about a stat. An empty [param stat] is every stat.
static func take_away(machine: SCMachine, stat: StringName, source: String) -> void:
	var book := _book_if_any(machine)
	if book == null:
		return
	for name: StringName in book.stats.keys() if stat.is_empty() else [stat]:
		# Writing a number may run the game's code.
		if not is_instance_valid(machine):
			return
		var record: Stat = book.stats.get(name)
		if record == null or not record.sources.has(source):
			continue
		var held: Variant = machine.get_value(name)
		if not (held is int or held is float):
			record.drop(source)
			continue
		record.take_up(held)
		record.drop(source)
		_show(machine, name, book, record, held)


## The sources that change a stat at the moment, in the order they came.
static func sources_of(machine: SCMachine, stat: StringName) -> PackedStringArray:
	var record := _stat_of(machine, stat)
	return PackedStringArray(record.sources.keys()) if record != null else PackedStringArray()


## Whether [param source] changes a stat at the moment.
static func is_changed_by(machine: SCMachine, stat: StringName, source: String) -> bool:
	var record := _stat_of(machine, stat)
	return record != null and record.sources.has(source)


## What a stat would be without any change.
static func base_of(machine: SCMachine, stat: StringName) -> Variant:
	var record := _stat_of(machine, stat)
	if record == null:
		return machine.get_value(stat) if machine != null else null
	var copy := Stat.new()
	copy.base = record.base
	copy.shown = record.shown
	copy.meant = record.meant
	copy._factors = record._factors
	copy.take_up(machine.get_value(stat))
	return _as_kind_of(machine.get_value(stat), copy.base)


## What is remembered of a machine, made when there is nothing yet. Null without a machine.
static func book_of(machine: SCMachine) -> Book:
	if machine == null:
		return null
	var book := _book_if_any(machine)
	if book == null:
		book = Book.new()
		book.of = machine.get_instance_id()
		machine.set_meta(BOOK, book)
		machine.state_changed.connect(book.on_state_changed)
	return book


## Every change of a machine's stats, in plain values that a file can hold. [method from_save] takes it back, into a machine whose
## variables hold what they did.
static func to_save(machine: SCMachine) -> Dictionary:
	var book := _book_if_any(machine)
	if book == null:
		return {}
	var stats := {}
	for stat in book.stats:
		var record := book.stats[stat]
		var rows: Array = []
		for source in record.sources:
			for change: Array in record.sources[source]:
				rows.append([source, change[0], change[1]])
		stats[String(stat)] = {"base": record.base, "shown": record.shown, "meant": record.meant, "changes": rows}
	return {"stats": stats, "notes": book.notes.duplicate(true)}


## Takes back what [method to_save] gave, in place of all changes that the machine has. Its variables stay as they are.
static func from_save(machine: SCMachine, saved: Dictionary) -> void:
	var book := _book_if_any(machine) if saved.is_empty() else book_of(machine)
	if book == null:
		return
	book.stats.clear()
	var notes: Variant = saved.get("notes")
	book.notes = (notes as Dictionary).duplicate(true) if notes is Dictionary else {}
	var stats: Variant = saved.get("stats")
	for stat: Variant in stats if stats is Dictionary else {}:
		var given: Variant = stats[stat]
		if given is Dictionary and (stat is String or stat is StringName):
			var record := _stat_from(given)
			if not record.is_unchanged():
				book.stats[StringName(stat)] = record


static func _stat_from(given: Dictionary) -> Stat:
	var record := Stat.new()
	record.base = _number(given.get("base"))
	record.shown = _number(given.get("shown"))
	record.meant = float(_number(given.get("meant", record.shown)))
	var rows: Variant = given.get("changes")
	for row: Variant in rows if rows is Array else []:
		if row is Array and (row as Array).size() == 3 and row[0] is String and _is_sound(row[2]):
			record.put(row[0], _Way.MULTIPLY if row[1] == _Way.MULTIPLY else _Way.ADD, row[2])
	return record


static func _number(value: Variant) -> Variant:
	return value if value is int or value is float else 0.0


static func _is_sound(amount: Variant) -> bool:
	return (amount is int or amount is float) and is_finite(amount) and absf(amount) <= LARGEST


static func _change(machine: SCMachine, stat: StringName, source: String, way: _Way, amount: float, stack: bool) -> void:
	if machine == null:
		return
	if not _is_sound(amount):
		_tell(machine, "stat amount:%s" % stat, "%s cannot change by %s, so it stays as it is. Give the change an amount that is a number." % [stat, amount])
		return
	var held: Variant = machine.get_value(stat)
	if not (held is int or held is float):
		var why := "there is no variable called %s" % stat
		if machine.has_value(stat):
			why = "%s holds %s, which is not a number" % [stat, SCMachineAction.kind_in_words(held)]
		_tell(machine, "no stat:%s" % stat, "%s, so a change of it does nothing. Add a number of that name in its Variables tab, or correct the name." % why)
		return
	var book := book_of(machine)
	var record: Stat = book.stats.get(stat)
	if record == null:
		record = Stat.new()
		record.base = held
		record.shown = held
		record.meant = held
		book.stats[stat] = record
	record.take_up(held)
	if not stack:
		record.drop(source, -1 if source.is_empty() else way)
	record.put(source, way, amount)
	_show(machine, stat, book, record, held)


# Everything is settled before the variable is written, as that may run the game's code.
static func _show(machine: SCMachine, stat: StringName, book: Book, record: Stat, held: Variant) -> void:
	var fresh: Variant
	if record.is_unchanged():
		book.stats.erase(stat)
		fresh = _as_kind_of(held, record.base)
	else:
		record.meant = record.total()
		fresh = _as_kind_of(held, record.meant)
		record.shown = machine._within_limits(stat, fresh)
	if fresh != held:
		machine.set_value(stat, fresh)


static func _as_kind_of(held: Variant, number: Variant) -> Variant:
	if held is float:
		return float(number)
	if number is int:
		return number
	return roundi(clampf(number, -_LARGEST_INT, _LARGEST_INT)) if not is_nan(number) else 0


static func _stat_of(machine: SCMachine, stat: StringName) -> Stat:
	var book := _book_if_any(machine)
	return book.stats.get(stat) if book != null else null


static func _book_if_any(machine: SCMachine) -> Book:
	if machine == null or not machine.has_meta(BOOK):
		return null
	var book := machine.get_meta(BOOK) as Book
	return book if book != null and book.of == machine.get_instance_id() else null


static func _tell(machine: SCMachine, key: String, what: String) -> void:
	MakerWarnings.once_for(machine, key, "%s: %s" % [machine.name, what])
