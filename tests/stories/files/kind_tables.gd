extends RefCounted
## What is settled of every kind: where its script lies, which settings take any type, what a 2D machine starts with.
## Files of game makers name these, so no kind may drift from them.

## By folder, the kinds as their classes are named between SC and Action or Condition. The script and the runtime of one are
## named by the same word in lower case, or by the word beside it. Kinds that are not built yet are here too.
const KINDS: Dictionary[String, String] = {
	"ai": "AlertAllies Chase Flee Interaction KeepApart KeepDistance LookForTarget MakeNoise Patrol SearchLastKnown StrafeAround TakeCover Wander",
	"animation": "AnimationEvent=animation_moment PlayAnimation SeekAnimation SetAnimationSpeed SetTreeParameter=set_blend StopAnimation TravelTo",
	"audio": "Mute PauseSound PlayMusic PlayRandomSound PlaySound PlaySoundAtPosition=sound_at_place SetBusEffect SetPitch SetSoundLoop SetVolume StopMusic "
			+ "StopSound TextToSpeech=say",
	"camera": "CameraFollow CameraLimits CameraShake CameraZoom FadeScreen GetCurrentCamera HeadBob MouseLook OrbitCamera Recoil ScreenToWorld SetBackgroundColor "
			+ "SwitchCamera WeaponSway WorldToScreen",
	"color": "GetColorComponents RandomColor SampleGradient SetColorComponents",
	"combat": "Attack Heal Hurt",
	"conditions": "CanSee Chance Compare Data DialogueLineSaid Distance FileExists HasChildOfType InRange InState InWater Input InventoryHas=bag_has IsChildOf "
			+ "NavigationReachable=navmesh_reachable Node OnScreen Playing PointerOverUi Property QuestIs QuestStepIs StringCompare=text "
			+ "SubStateFinished=sub_state_completed TargetLost Tile Timeout Touching VariableChanged Variable",
	"data": "Array=list Clamp Dictionary=table EaseAlongCurve EaseVariable Expression=calculate FindRow FormatString=build_string FormatTime GetData "
			+ "GetProperty GetVectorComponents=get_vector_parts HighScoreTable=score_table Math RandomNumber RandomSeed RandomVector SetData "
			+ "SetVectorComponents=set_vector_parts Stamina String StringToNumber Vector",
	"display": "DisplaySettings RunWhenUnfocused SetUiScale TakeScreenshot",
	"effects": "EmitParticles Flicker LeaveMarks ScreenEffect SetEnvironment SetLight SetMaterial SetMaterialColor SetMaterialTexture SetModulate "
			+ "SetShaderParameter=set_shader_value",
	"files": "ChangeTextInFile ChooseFolder CopyFolder MoveToBin ReadFile RunProgram WriteFile",
	"flow": "Assert DrawDebug GetEventData GoToState NextFrameEvent=next_frame Print RandomEvent SendEvent SetVariable Timer=countdown Wait",
	"input": "ClickToMove DeviceMotion Drag EventOnInput EventOnSignal GetActionStrength=input_strength GetInputVector=input_axis InputCombo "
			+ "JoypadConnected=gamepad_connected LastDevice MouseMotion MousePick MousePosition Pinch RebindInput=rebind_control ScreenOrientation TouchCount "
			+ "TouchGesture Vibrate VirtualJoystick=touch_stick WarpMouse",
	"items": "AddItem CountItem DropItem DropLoot EquipItem GiveItem ModifyStat MoveItem NewRun OfferItem PickItem RemoveItem ShowItem SortInventory=sort_bag "
			+ "UnequipItem UseItem",
	"logic": "BoolOperator=bool Check Switch",
	"loop": "ForEach Repeat Sequence",
	"machine": "CancelDelayedEvents EnableMachine ForwardEvents GetLastEvent GetPreviousState GetState GoToPreviousState MachineVariable RunTemplate",
	"navmesh": "GetNavigationPoint=navmesh_point GridPath NavigateTo=navmesh_move",
	"node": "AddNode BulletPattern CallMethod CallStaticMethod Carry Duplicate EmitSignal EnableNode FindChild=find_node GetChildren GetParent Group "
			+ "GroupSwitch Instantiate=spawn QueueFree=destroy Reparent SetProcessMode SetProperty TweenProperty",
	"physics": "ApplyForce Crouch Dash Drive EventOnCollision Explosion=blast Freeze GetContact GetLastCollision GetOverlapping=overlap GetVelocity GetWaterDepth "
			+ "Jump LedgeGrab MoveCharacter Raycast RaycastAll SetBodyProperties SetCollision=collision SetGravity SetJoint SetVelocity ShapeCast StepUp Swim "
			+ "Swing WallCling",
	"quests": "AbandonQuest CompleteQuest FailQuest StartQuest TrackQuest",
	"scene": "BuildDungeon ChangeScene GetScene GetScreenSize PauseGame ProceduralPlacement QuitGame SaveGame ScreenSettings SetLanguage SetMouseMode System",
	"sprite": "FlipSprite PlaySpriteAnimation StopSpriteAnimation",
	"tiles": "GetCell=get_tile GridMapCell=grid_cell PaintTerrain SetCell=set_tile",
	"time": "GetTime SetTimeScale",
	"transform": "FollowPath LookAt MoveTo PathProgress=distance_along_path Punch Rotate=keep_turning RotateTo ScaleTo ToGlobal ToLocal Translate=keep_moving",
	"ui": "GetFocus GetText GetValue GrabFocus=focus_control OffScreenIndicator=screen_marker OptionButton SetDisabled SetText SetTexture=set_picture "
			+ "SetValue SetVisible ShowChoices StartDialogue=have_conversation ToggleButton",
	"video": "PlayVideo",
}

## By kind, the settings that take any type.
const ANY_TYPE: String = (
		"ApplyForce force, Array item, CallMethod argument_1 argument_2, CallStaticMethod argument_1 argument_2, CameraFollow offset, Carry throw, "
		+ "Dash direction, Data value, Dictionary value, DrawDebug to_point target_position size, DropItem offset, Duplicate offset, EaseAlongCurve to, "
		+ "EaseVariable to, EmitSignal argument_1 argument_2, EventOnInput data, FindRow equals, GetEventData if_it_carried_nothing, GetNavigationPoint near, "
		+ "GetVectorComponents vector, Instantiate place offset, LookAt place direction, MakeNoise place, MoveCharacter direction toward_place, MoveTo to, "
		+ "NavigateTo to, NavigationReachable to, Property value, Punch amount, RandomVector center size, Raycast direction, RaycastAll direction, ScaleTo to, "
		+ "SendEvent data, SetData value, SetProperty value, SetShaderParameter value, SetVariable value, SetVelocity velocity, ShapeCast size direction, "
		+ "Swing direction, Tile value, ToGlobal local_point, ToLocal global_point, Translate direction, TweenProperty to, Variable value, "
		+ "Vector first second, WorldToScreen place"
)

## Distances and speeds: metres in 3D, so many pixels in 2D.
const IN_PIXELS: String = (
		"AlertAllies within, Attack unarmed_reach, CameraShake strength, Chase speed stop_within, Crouch crouched_height, Dash distance, Distance distance, "
		+ "Drive acceleration top_speed, Flee look_ahead safe_distance speed, FollowPath speed, InRange but_further_than closer_than, Interaction reach, "
		+ "Jump away_from_wall height, KeepApart personal_space push, KeepDistance no_closer_than no_further_than speed spread, "
		+ "LedgeGrab over_the_edge reach_up, MakeNoise max_distance, MoveCharacter speed stop_within, Patrol arrive_within speed, "
		+ "ProceduralPlacement cell_size, RandomVector radius, Raycast distance, RaycastAll distance, SearchLastKnown arrive_within speed, "
		+ "ShapeCast distance radius, StepUp tallest_step, StrafeAround speed, Swim settles_at swim_speed, TakeCover arrive_within eye_height speed within, "
		+ "Translate speed, WallCling slide_speed, Wander arrive_within radius speed"
)

## Places that are a Vector2 of zeros in 2D.
const AT_ZERO: String = (
		"CameraFollow offset, DrawDebug to_point, Duplicate offset, GetNavigationPoint near, GetVectorComponents vector, Instantiate offset place, "
		+ "LookAt place, MakeNoise place, MoveCharacter toward_place, MoveTo to, NavigateTo to, RandomVector center, SetVelocity velocity, "
		+ "ToGlobal local_point, ToLocal global_point, Vector first second, WorldToScreen place"
)

## What else starts as something of its own in 2D.
const IN_2D: Dictionary[String, Variant] = {
	"ApplyForce force": Vector2(0, -160),
	"CameraZoom to": 1.5,
	"Carry throw": Vector2(200, -120),
	"ClickToMove reach": 60.0,
	"ClickToMove stop_within": 10.0,
	"DrawDebug size": Vector2(64, 64),
	"DrawDebug target_position": Vector2(0, 50),
	"ProceduralPlacement frequency": 0.004,
	"Punch amount": Vector2(0.3, 0.3),
	"RandomVector size": Vector2(320, 320),
	"Raycast direction": Vector2(0, 1),
	"RaycastAll direction": Vector2(0, 1),
	"ScaleTo to": Vector2(1, 1),
	"ShapeCast direction": Vector2(0, 1),
	"ShapeCast size": Vector2(32, 32),
	"Swing pump": 300.0,
	"Swing shortest": 16.0,
}

## Settings that one side alone shows; true is 2D.
const ON_ONE_SIDE: Dictionary[String, bool] = {"SetGravity turn_picture": true, "SetVelocity set_z": false, "TakeCover eye_height": false}


## Every settled kind with the script that it has.
static func scripts() -> Dictionary[StringName, String]:
	var settled: Dictionary[StringName, String] = {}
	for category in KINDS:
		for entry in KINDS[category].split(" "):
			var word := entry.get_slice("=", 1) if "=" in entry else entry.to_snake_case()
			var is_condition := category == "conditions"
			var kind := StringName("SC%s%s" % [entry.get_slice("=", 0), "Condition" if is_condition else "Action"])
			settled[kind] = "res://addons/quillstead/" + ("conditions/condition_%s.gd" % word if is_condition else "actions/%s/action_%s.gd" % [category, word])
	return settled


## The settings of such a table, each as "class:setting".
static func listed(table: String) -> PackedStringArray:
	var settings: PackedStringArray = []
	for row in table.split(", "):
		for setting in row.split(" ").slice(1):
			settings.append(key_of("%s %s" % [row.get_slice(" ", 0), setting]))
	return settings


## "class:setting" of a kind and a setting.
static func key_of(entry: String) -> String:
	var condition := "SC%sCondition" % entry.get_slice(" ", 0)
	return "%s:%s" % [condition if scripts().has(condition) else condition.trim_suffix("Condition") + "Action", entry.get_slice(" ", 1)]
