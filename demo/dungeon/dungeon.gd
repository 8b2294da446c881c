extends Control
## The title of a run through a cellar that is built from a seed: fights, loot, a shop, a king on every floor, and a way to save.
## What everybody does comes from kinds in their templates; this script takes no part in it.
##
## Opened as usual, it is there to be played. With [code]-- --demo-frames=N[/code] a recording plays it, what happens is printed,
## and the run ends with the recording, or after N frames. [code]--shot=PATH[/code] leaves a picture.

const RECORDING: String = "res://demo/dungeon/recording.txt"
## Chance that no seed of the run decides on has it the same way each time with this.
const SEED: int = 7
## What plays outlives the title, and begins once.
const RUN: StringName = &"Run"
## A recording counts frames, so nothing may be loaded meanwhile, which takes more of them on one machine than on another.
const SCENES: Array[String] = ["res://demo/dungeon/dungeon.tscn", "res://demo/dungeon/floor/floor.tscn", "res://demo/dungeon/shop/shop.tscn"]


func _ready() -> void:
	if get_tree().root.has_node(NodePath(RUN)):
		return
	var run := RunByItself.wanted()
	if run != null:
		run.name = RUN
		run.write_into(DungeonJournal.new())
		get_tree().root.add_child.call_deferred(run)
		play_by_itself(run).ended.connect(run.finish)


## Plays the recording below [param outliving], as if somebody sat there.
static func play_by_itself(outliving: Node) -> RecordedInput:
	seed(SEED)
	var player := RecordedInput.new()
	player.set_meta(&"loaded", SCENES.map(func(path: String) -> PackedScene: return load(path)))
	outliving.add_child(player)
	player.play(RECORDING)
	return player
