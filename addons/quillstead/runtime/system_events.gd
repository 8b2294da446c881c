extends RefCounted
## The events that nodes and the application send by themselves, such as [code]pressed[/code].
##
## A machine asks for every event of its design whether it is one of them, and if it is, connects the signal behind
## it as it starts. What is listed here and what the machine can connect are the same.

## Event name to what it takes to send it, in words that end the sentence "That takes ...".
const SENT_BY: Dictionary[StringName, String] = {
	&"application_focus_in": "the game's window, so put the machine in a running scene",
	&"application_focus_out": "the game's window, so put the machine in a running scene",
	&"close_requested": "the game's window, so put the machine in a running scene",
	&"focus_entered": "a Control, such as a Button or a LineEdit",
	&"focus_exited": "a Control, such as a Button or a LineEdit",
	&"shown": "a node that can be seen: a Control, a Node2D or a Node3D",
	&"hidden": "a node that can be seen: a Control, a Node2D or a Node3D",
	&"child_order_changed": "a node, so set the machine's Target Path to one",
	&"mouse_entered": "a Control, or a body or area in 2D or 3D",
	&"mouse_exited": "a Control, or a body or area in 2D or 3D",
	&"pressed": "a Button or another Control, or a body or area in 2D or 3D",
	&"button_down": "a Control, or a body or area in 2D or 3D",
	&"button_up": "a Control, or a body or area in 2D or 3D",
	&"right_pressed": "a Control, or a body or area in 2D or 3D",
	&"middle_pressed": "a Control, or a body or area in 2D or 3D",
	&"body_entered": "an Area2D or Area3D, or a RigidBody2D or RigidBody3D",
	&"body_exited": "an Area2D or Area3D, or a RigidBody2D or RigidBody3D",
	&"area_entered": "an Area2D or Area3D",
	&"area_exited": "an Area2D or Area3D",
	&"text_submitted": "a LineEdit",
}


## Whether [param name] is an event that some node, or the application, sends by itself.
static func is_system_event(name: StringName) -> bool:
	return SENT_BY.has(name)


## What kind of node sends [param name], in words; empty for an event that no node sends by itself.
static func sent_by(name: StringName) -> String:
	return SENT_BY.get(name, "")
