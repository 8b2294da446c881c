class_name BenchByHandMachine
extends Node
## The yardstick of a machine: a state machine as one writes it in GDScript for use in several places. States are objects with
## enter and exit methods, an event is looked up among the transitions of the state, and a signal tells of every change.

signal state_changed(from: StringName, to: StringName)

var count: int = 0

var _states: Dictionary[StringName, State] = {}
var _current: State


class State:
	extends RefCounted

	var name: StringName
	var transitions: Dictionary[StringName, StringName]

	func _init(state_name: StringName, leads_to: Dictionary[StringName, StringName]) -> void:
		name = state_name
		transitions = leads_to

	func enter(_machine: BenchByHandMachine, _data: Variant) -> void:
		pass

	func exit(_machine: BenchByHandMachine) -> void:
		pass


class CountingState:
	extends State

	func enter(machine: BenchByHandMachine, _data: Variant) -> void:
		machine.count += 1


## The match of [method BenchDesigns.two_states].
static func two_states() -> BenchByHandMachine:
	var made := BenchByHandMachine.new()
	made.add_state(CountingState.new(&"A", {&"go": &"B"}))
	made.add_state(CountingState.new(&"B", {&"go": &"A"}))
	return made


## The match of the guard in [code]guard.tscn[/code].
static func guard() -> BenchByHandMachine:
	var made := BenchByHandMachine.new()
	made.add_state(CountingState.new(&"Walk", {&"noise": &"Look"}))
	made.add_state(State.new(&"Patrol", {&"noise": &"Look"}))
	made.add_state(State.new(&"Look", {&"quiet": &"Patrol"}))
	return made


func _ready() -> void:
	_current.enter(self, null)


## The first one added is where the machine starts.
func add_state(state: State) -> void:
	_states[state.name] = state
	if _current == null:
		_current = state


func send_event(event: StringName, data: Variant = null) -> void:
	if not _current.transitions.has(event):
		return
	var former := _current
	var next := _states[former.transitions[event]]
	former.exit(self)
	_current = next
	next.enter(self, data)
	state_changed.emit(former.name, next.name)
