@tool
class_name SCActor
extends Resource
## Somebody who speaks in dialogues: a name, a picture and a voice, kept in one place for all of their lines.
##
## Save one as a file for each speaker, and pick it under [member SCDialogueLine.actor]. What is changed here is changed in every
## dialogue they speak in.

## The name over their words. It is translated, and [code]{name}[/code] drops the value of a variable in. Empty is the name of
## the file.
@export var actor_name: String = ""
## Their picture beside the words. A line may show another one.
@export var portrait: Texture2D
## The colour of their name in the Dialogue Box.
@export var color: Color = Color.WHITE

@export_group("Sound")
## The voice of the player's computer that reads their words aloud: the name or the id of one, or a language such as
## [code]en[/code]. Empty reads nothing. Text to Speech has to be enabled in the Project Settings, under Audio > General.
@export var voice: String = ""
## Played while their words appear, every few letters.
@export var typing_sound: AudioStream


## The name that players see.
func shown_name() -> String:
	if not actor_name.is_empty():
		return tr(actor_name)
	return resource_path.get_file().get_basename().capitalize() if not resource_path.is_empty() else ""
