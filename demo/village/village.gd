extends Node2D
## A village with a shop, a chest, somebody to talk to and a meadow full of slimes. What everybody does comes from kinds in their
## templates; this script takes no part in it.
##
## Opened as usual, it is there to be played. With [code]-- --demo-frames=N[/code] a recording plays it, every change of state
## and what happens to things and quests is printed, and the run ends with the recording, or after N frames.
## [code]--shot=PATH[/code] leaves a picture.

const RECORDING: String = "res://demo/village/recording.txt"
## Slimes roam by chance. With this they always do in the same way.
const SEED: int = 7


func _ready() -> void:
	var run := RunByItself.wanted()
	if run != null:
		add_child(run)
		run.write_into(VillageJournal.new())
		play_by_itself().ended.connect(run.finish)


## Plays the recording, as if somebody sat there.
func play_by_itself() -> RecordedInput:
	seed(SEED)
	var player := RecordedInput.new()
	add_child(player)
	player.play(RECORDING)
	return player
