@tool
extends RefCounted
## One try at a floor of rooms: the rooms to fight in grow from the start, the boss goes as far from it as there is, treasure and
## shop behind dead ends, and the secret room between rooms. Each try is a whole floor; [member faults] says how far it is from a
## good one.

## Random numbers that are the same in every version of the engine.
class Dice extends RefCounted:
	const _MASK: int = 0xFFFFFFFF
	# Below 2 to the 31st, so that no product leaves 64 bits.
	const _SCATTER: int = 0x45D9F3B

	var _state: int


	func _init(from_seed: int) -> void:
		_state = _scattered((from_seed & _MASK) ^ _scattered((from_seed >> 32) & _MASK))
		if _state == 0:
			_state = _SCATTER


	## A number from 0 up to but not including [param count].
	func below(count: int) -> int:
		_state ^= (_state << 13) & _MASK
		_state ^= _state >> 17
		_state ^= (_state << 5) & _MASK
		return (_state >> 4) % count


	func _scattered(number: int) -> int:
		for time in 2:
			number = (((number >> 16) ^ number) * _SCATTER) & _MASK
		return (number >> 16) ^ number


const START: String = "start"
const FIGHT: String = "fight"
const BOSS: String = "boss"
const SECRET: String = "secret"

const _STEPS: Array[Vector2i] = [Vector2i(0, -1), Vector2i(0, 1), Vector2i(1, 0), Vector2i(-1, 0)]
# How often a place is looked for that makes neither a lump nor a ring.
const _MOST_LOOKS: int = 16
# One room in so many may touch others than the one it grows from, and one wall in so many between such rooms is open.
const _LUMP_IN: int = 5
const _OPEN_IN: int = 3
# What a room to pass through is worth that a secret one touches, more than any other.
const _WORTH_OF_A_ROOM: int = 4
# What the floors of two tries are compared by, the worst first.
const _SECRET_TOUCHES_ONE: int = 1000
const _BOSS_NOT_FARTHEST: int = 400
const _SECRET_TOUCHES_BOSS: int = 100
const _DEAD_END_TOUCHES: int = 10
const _DEAD_END_AS_FAR_AS_BOSS: int = 10

## As [code]lay_out()[/code] of [code]quillstead_dungeon.gd[/code] answers them.
var cells: Dictionary[Vector2i, String] = {}
var joins: Array = []
var secret: Array = []
## 0 for a floor that has all one could wish for.
var faults: int = 0

var _dice: Dice
# How many rooms each place touches that touches any.
var _around: Dictionary[Vector2i, int] = {}
# The open ways, by key.
var _open: Dictionary[Vector4i, bool] = {}
# The rooms to pass through, in the order in which they have grown, and how many rooms lie between each of them and the start.
var _passed: Array[Vector2i] = []
var _steps_to: Dictionary[Vector2i, int] = {}
var _farthest: int = 0


func _init(dice: Dice) -> void:
	_dice = dice


## A value for a pair of cells that is the same whichever of them comes first.
static func key_of(a: Vector2i, b: Vector2i) -> Vector4i:
	return Vector4i(a.x, a.y, b.x, b.y) if a < b else Vector4i(b.x, b.y, a.x, a.y)


func grow(fight_rooms: int, extras: PackedStringArray, with_secret: bool) -> void:
	_passed.append(Vector2i.ZERO)
	_put(Vector2i.ZERO, START)
	for count in fight_rooms:
		_grow_one()
	_open_walls()
	_measure()
	for kind in extras:
		_add_dead_end(kind)
	if with_secret:
		_add_secret()


func _put(room: Vector2i, kind: String) -> void:
	cells[room] = kind
	for step in _STEPS:
		_around[room + step] = _around.get(room + step, 0) + 1


func _grow_one() -> void:
	var count := _passed.size()
	var most_touched := 4 if _dice.below(_LUMP_IN) == 0 else 1
	for look in _MOST_LOOKS:
		# Half of them go on from one of the newest rooms, which makes arms rather than a disc.
		var at := count - 1 - _dice.below(mini(count, 3)) if _dice.below(2) == 0 else _dice.below(count)
		var to := _passed[at] + _STEPS[_dice.below(4)]
		if _around[to] <= most_touched and not cells.has(to):
			_put_fight(_passed[at], to)
			return
	# The rooms at the edge always have a free side.
	for at in range(count - 1, -1, -1):
		for step in _STEPS:
			if not cells.has(_passed[at] + step):
				_put_fight(_passed[at], _passed[at] + step)
				return


func _put_fight(from: Vector2i, to: Vector2i) -> void:
	_passed.append(to)
	_put(to, FIGHT)
	joins.append([from, to])
	_open[key_of(from, to)] = true


# Some rings, so that there is more than one way through.
func _open_walls() -> void:
	for room in _passed:
		for step: Vector2i in [Vector2i(1, 0), Vector2i(0, 1)]:
			var beyond := room + step
			if cells.has(beyond) and not _open.has(Vector4i(room.x, room.y, beyond.x, beyond.y)) and _dice.below(_OPEN_IN) == 0:
				joins.append([room, beyond])


func _measure() -> void:
	var ways: Dictionary[Vector2i, Array] = {}
	for room in _passed:
		ways[room] = []
	for pair: Array in joins:
		ways[pair[0]].append(pair[1])
		ways[pair[1]].append(pair[0])
	var reached: Array[Vector2i] = [Vector2i.ZERO]
	_steps_to[Vector2i.ZERO] = 0
	# It grows as it is walked.
	for room in reached:
		for next: Vector2i in ways[room]:
			if not _steps_to.has(next):
				_steps_to[next] = _steps_to[room] + 1
				reached.append(next)
	_farthest = _steps_to[reached.back()]


# Of the free places beside the rooms to pass through, one of those with the fewest faults.
func _add_dead_end(kind: String) -> void:
	var best: Array[Array] = []
	var fewest := -1
	for from in _passed:
		var wrong_from := 0
		if kind == BOSS:
			wrong_from = _BOSS_NOT_FARTHEST * (_farthest - _steps_to[from])
		elif _steps_to[from] == _farthest and _farthest > 0:
			wrong_from = _DEAD_END_AS_FAR_AS_BOSS
		if fewest >= 0 and wrong_from > fewest:
			continue
		for step in _STEPS:
			var to := from + step
			var wrong := wrong_from + _DEAD_END_TOUCHES * (_around[to] - 1)
			if (fewest >= 0 and wrong > fewest) or cells.has(to):
				continue
			if wrong != fewest:
				fewest = wrong
				best.clear()
			best.append([from, to])
	var way := best[_dice.below(best.size())]
	_put(way[1] as Vector2i, kind)
	joins.append(way)
	faults += fewest


# Where most rooms are touched, and no boss met by surprise. Dead ends are touched only where there is no better place.
func _add_secret() -> void:
	var best: Array[Vector2i] = []
	var most := 0
	var looked_at: Dictionary[Vector2i, bool] = {}
	for room: Vector2i in cells:
		for step in _STEPS:
			var place := room + step
			if (not best.is_empty() and _around[place] * _WORTH_OF_A_ROOM < most) or cells.has(place) or looked_at.has(place):
				continue
			looked_at[place] = true
			var worth := _worth_of_secret(place)
			if best.is_empty() or worth > most:
				most = worth
				best.clear()
			if worth == most:
				best.append(place)
	var chosen := best[_dice.below(best.size())]
	var touched := _touched(chosen)
	for room in touched:
		secret.append([chosen, room])
		if cells[room] == BOSS:
			faults += _SECRET_TOUCHES_BOSS
	if touched.size() < 2:
		faults += _SECRET_TOUCHES_ONE
	cells[chosen] = SECRET


func _worth_of_secret(place: Vector2i) -> int:
	var touched := _touched(place)
	var worth := 0 if touched.size() > 1 else -_SECRET_TOUCHES_ONE
	for room in touched:
		match cells[room]:
			START, FIGHT:
				worth += _WORTH_OF_A_ROOM
			BOSS:
				worth -= _SECRET_TOUCHES_BOSS
			_:
				worth += 1
	return worth


func _touched(place: Vector2i) -> Array[Vector2i]:
	var rooms: Array[Vector2i] = []
	for step in _STEPS:
		if cells.has(place + step):
			rooms.append(place + step)
	return rooms
