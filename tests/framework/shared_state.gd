extends RefCounted
## What is kept for the whole game, whatever its scenes do: globals, quests, what was said, found and built. Stories and rounds
## of random play start without any of it.

const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const WhatIsBuilt := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")
const WhatTurnedUp := preload("res://addons/quillstead/runtime/quillstead_items.gd")
const WhatWasSaid := preload("res://addons/quillstead/runtime/conversation.gd")


static func forget(tree: SceneTree) -> void:
	SCMachine._core_global_values().clear()
	SCQuests.forget_all(tree)
	SCMachine.set_quest_events([])
	WhatIsBuilt.forget()
	WhatWasSaid.forget_all()
	WhatTurnedUp.from_save({})
	MakerWarnings._said.clear()
