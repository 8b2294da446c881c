@tool
class_name SCDialogueLine
extends Resource
## One line of a dialogue: who says what, and which answers there are to it.

## Who picks the answer.
enum AnswersAre {
	## Each answer is a button.
	THE_PLAYER_CHOOSES,
	## One of those offered is drawn when the player moves on, for lines that go on in another way each time.
	AT_RANDOM,
}

## What other lines and conditions call it. Two lines of a dialogue must not share one.
@export var id: StringName = &""
## Who says it, an [SCActor]. Empty is nobody, as for a sign or a narrator.
@export_custom(PROPERTY_HINT_RESOURCE_TYPE, "SCActor") var actor: Resource
## What is said. [code]{name}[/code] drops the value of a variable in. BBCode works, such as [code][b]bold[/b][/code]; besides,
## [code][speed=2][/code] types twice as fast from there on, [code][speed=1][/code] as ever, [code][pause=0.5][/code] holds on
## for half a second, and [code][wait][/code] for a press.
@export_multiline var words: String = ""
## Whether a press shows all of the words at once, and whether the conversation can be left here. Off for lines that have to be
## seen.
@export var can_skip: bool = true

@export_group("Looks and Sound")
## Shown instead of the actor's name.
@export var speaker: String = ""
## Shown instead of the actor's picture, such as an angry face.
@export var portrait: Texture2D
## The words as they were recorded. They start with the line and end with it.
@export var voice_sound: AudioStream

@export_group("What Comes Next")
## The answers, each an [SCDialogueAnswer], in order from the top. Without any that is offered, the dialogue goes on to Next Line.
@export_custom(PROPERTY_HINT_TYPE_STRING, "24/17:SCDialogueAnswer") var answers: Array = []
## Whether the player picks the answer, or chance does.
@export var answers_are: AnswersAre = AnswersAre.THE_PLAYER_CHOOSES
## The line that comes next when there is no answer to pick. Empty ends the dialogue.
@export var next_line: StringName = &""

## Where its box lies when the dialogue is drawn as a graph.
@export_storage var graph_position: Vector2 = Vector2.ZERO


## The name to show over the words: its own, or that of its actor.
func shown_speaker() -> String:
	if not speaker.is_empty():
		return tr(speaker)
	return (actor as SCActor).shown_name() if actor is SCActor else ""


## The picture to show beside the words: its own, or that of its actor. Null for none.
func shown_portrait() -> Texture2D:
	return portrait if portrait != null or not actor is SCActor else (actor as SCActor).portrait
