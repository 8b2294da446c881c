extends RefCounted
## What is kept for the whole game, whatever its scenes do: globals, quests, what was said, found and built, and the scenes that were
## left. Stories and rounds of random play start without any of it.

const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const SceneChanger := preload("res://addons/quillstead/runtime/quillstead_scene_changer.gd")
const WhatGoesAlong := preload("res://addons/quillstead/runtime/quillstead_carry_over.gd")
const WhatIsBuilt := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")
const WhatTurnedUp := preload("res://addons/quillstead/runtime/quillstead_items.gd")
const WhatWasLeft := preload("res://addons/quillstead/runtime/quillstead_scenes_left.gd")
const WhatWasSaid := preload("res://addons/quillstead/runtime/conversation.gd")


static func forget(tree: SceneTree) -> void:
	SCMachine._core_global_values().clear()
	SCQuests.forget_all(tree)
	SCMachine.set_quest_events([])
	SceneChanger.forget()
	WhatGoesAlong.forget()
	WhatWasLeft.forget_all()
	WhatIsBuilt.forget()
	WhatWasSaid.forget_all()
	WhatTurnedUp.from_save({})
	MakerWarnings._said.clear()
	Input.mouse_mode = Input.MOUSE_MODE_VISIBLE
