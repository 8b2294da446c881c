extends Node3D
## A yard, a plaza and a vault with guards in them. What everybody does comes from kinds in their templates; this script takes
## no part in it.
##
## Opened as usual, it is there to be played. With [code]-- --demo-frames=N[/code] a recording plays it, every change of state
## is printed, and after N frames the run ends. [code]--shot=PATH[/code] leaves a picture.

const RECORDING: String = "res://demo/arena/recording.txt"


func _ready() -> void:
	var run := RunByItself.wanted()
	if run != null:
		add_child(run)
		run.write_into(Journal.new())
		play_by_itself()


## Plays the recording, as if somebody sat there.
func play_by_itself() -> RecordedInput:
	var player := RecordedInput.new()
	add_child(player)
	player.play(RECORDING)
	return player
