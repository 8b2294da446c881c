class_name Crowd
extends Node2D
## A thousand small nodes, each with a machine of its own, all from one template. Waiting for an event costs them nothing.

## A group of members has gone the same way: all of them, or those there were when it had been quiet for a moment.
signal moved(from: String, to: String, how_many: int)

## How many there are.
const SIZE := 1000

const _MEMBER := preload("res://demo/crowd/member.tscn")
const _COLUMNS := 125
const _SPACING := Vector2(8.6, 7.4)
const _COLORS: Array[Color] = [Color("4fd1c5"), Color("ffd166"), Color("ff7b6b"), Color("8fa8ff")]
const _QUIET_FRAMES := 20
const _FRAMES_PER_LABEL := 15

## Members that wait for something to happen.
var idle := 0

## Frames in which every member was idle, and what all machines of the scene took in them, in microseconds.
var quiet_frames := 0
var quiet_usec := 0

## What all machines took in the frame that took the longest.
var longest_usec := 0

var _counts: Dictionary[String, int] = {}
var _last_move: Dictionary[String, int] = {}
var _recent_usec := 0
var _recent_frames := 0
var _was_quiet := false

@onready var _label: Label = $Label
@onready var _members: Node2D = $Members


func _ready() -> void:
	for number in SIZE:
		var member := _MEMBER.instantiate() as ColorRect
		member.position = Vector2(number % _COLUMNS, floori(float(number) / _COLUMNS)) * _SPACING
		member.color = _COLORS[(number * 7 + floori(float(number) / _COLUMNS) * 3) % _COLORS.size()]
		_members.add_child(member)
		var machine := SCMachine.machine_of(member)
		machine.state_changed.connect(_on_state_changed)
		idle += int(machine.find_state(&"Idle") == machine.current_state)
	SCMachine.set_measuring(true)


func _exit_tree() -> void:
	SCMachine.set_measuring(false)


func _process(_delta: float) -> void:
	_read_cost()
	_tell_of_moves()


## The machines of the crowd.
func machines() -> Array[SCMachine]:
	var found: Array[SCMachine] = []
	for member in _members.get_children():
		found.append(SCMachine.machine_of(member))
	return found


## How many of the crowd's machines the engine calls each frame as things stand.
func called_each_frame() -> int:
	var called := 0
	for machine in machines():
		called += int(machine.is_processing() or machine.is_physics_processing())
	return called


func _read_cost() -> void:
	var usec := SCMachine.get_measured_usec()
	SCMachine.set_measured_usec(0)
	var quiet := idle == SIZE
	if quiet and _was_quiet:
		quiet_frames += 1
		quiet_usec += usec
	_was_quiet = quiet
	longest_usec = maxi(longest_usec, usec)
	_recent_usec += usec
	_recent_frames += 1
	if _recent_frames == _FRAMES_PER_LABEL:
		var per_frame := float(_recent_usec) / _recent_frames
		_label.text = "%s machines from one template  ·  %s in Idle  ·  all machines here took %s a frame" % [_with_comma(SIZE), _with_comma(idle), _as_time(per_frame)]
		_recent_usec = 0
		_recent_frames = 0


func _on_state_changed(before: SCMachineState, now: SCMachineState) -> void:
	if now == null or before == null:
		return
	idle += int(now.state_name == &"Idle") - int(before.state_name == &"Idle")
	var way := "%s\n%s" % [before.state_name, now.state_name]
	_counts[way] = _counts.get(way, 0) + 1
	_last_move[way] = Engine.get_process_frames()


func _tell_of_moves() -> void:
	for way: String in _counts.keys():
		if _counts[way] >= SIZE or Engine.get_process_frames() - _last_move[way] > _QUIET_FRAMES:
			moved.emit(way.get_slice("\n", 0), way.get_slice("\n", 1), _counts[way])
			_counts.erase(way)


static func _with_comma(number: int) -> String:
	return str(number) if number < 1000 else "%d,%03d" % [floori(number / 1000.0), number % 1000]


static func _as_time(usec: float) -> String:
	return "%.0f µs" % usec if usec < 1000.0 else "%.1f ms" % (usec / 1000.0)
