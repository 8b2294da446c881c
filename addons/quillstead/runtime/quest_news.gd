extends RefCounted
## What has happened in the quest book and nobody has been told of yet.
##
## Everything is put in order first and told afterwards, the outermost call telling also what comes meanwhile. So whoever is told may
## do with quests whatever he likes.

const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

# So much is told in one go. What is left is told in the next frame, so that quests which set each other off without end do not hold
# up the game.
const _MOST: int = 10_000

## Called when everything else has been told, if anything is other than before.
var at_last: Callable

var _pieces: Array[Callable] = []
var _told: int = 0
var _is_telling: bool = false
var _is_other: bool = false


## Something that happened: [param piece] tells it.
func add(piece: Callable) -> void:
	_pieces.append(piece)
	_is_other = true


## Something changed that nobody but [member at_last] has to be told of.
func add_silently() -> void:
	_is_other = true


## Drops what has not been told yet, also when it is under way.
func forget() -> void:
	_pieces.clear()
	_told = 0


## Tells it now.
func tell() -> void:
	if _is_telling:
		return
	_is_telling = true
	var told := 0
	while told < _MOST and (_is_other or not _pieces.is_empty()):
		told += 1
		if _told < _pieces.size():
			_told += 1
			_pieces[_told - 1].call()
		else:
			forget()
			_is_other = false
			at_last.call()
	_is_telling = false
	if told >= _MOST:
		MakerWarnings.once("quests without end",
				("Quests set each other off %d times in one go, so the game went on in between. Look for an event of a quest that starts, fails "
				+ "or counts the same quest again.") % _MOST)
		tell.call_deferred()


## Tells it later, for whoever only asks and is not to set anything off.
func tell_later() -> void:
	if _is_other and not _is_telling:
		tell.call_deferred()
