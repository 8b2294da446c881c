extends Node2D
## A level to run and jump through, past three guards. Everything in it is put together from ready-made kinds.
##
## Opened as usual, it is there to be played. With [code]-- --demo-frames=N[/code] it plays itself from a recording, every change
## of state is printed, and the run ends with the recording, or after N frames. [code]--shot=PATH[/code] leaves a picture.

## How the level is played by itself.
const RECORDING: String = "res://demo/platformer/recording.txt"


func _ready() -> void:
	var run := RunByItself.wanted()
	if run != null:
		add_child(run)
		run.write_into(Journal.new(null, _machines_of_the_critters()))
		play_by_itself().ended.connect(run.finish)


## From here on the recording plays, in place of whoever sits there.
func play_by_itself() -> RecordedInput:
	var player := RecordedInput.new()
	add_child(player)
	player.play(RECORDING)
	return player


func _machines_of_the_critters() -> Array[SCMachine]:
	var found: Array[SCMachine] = []
	for critter in $Critters.get_children():
		found.append(SCMachine.machine_of(critter))
	return found
