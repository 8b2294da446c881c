class_name SCQuests
extends RefCounted
## The quest book: which quests are under way, what their steps have counted, what is tracked, and what the player has coming.
##
## There is one book for the whole game. It hangs off the [SceneTree], so it stays when the scene changes. Everything is asked of the
## class itself, and whoever wants to hear of what happens connects to the signals of [method watch]:
## [codeblock]
## SCQuests.start(preload("res://quests/apples.tres"))
## SCQuests.watch().quest_done.connect(_on_quest_done)
## [/codeblock]
## Steps wait for events, for items and for talks; nothing is asked in every frame, and an event that no step is waiting for costs
## nothing. All quests under way count, tracked or not.
## [br][br]
## By the time anybody hears of something, everything is in order already, so a signal's handler and a machine may start, end and
## save quests at will.

## A quest has begun.
signal quest_started(quest: SCQuest)
## A step has counted. [param count] is what it has now; of a step that collects it may have become less.
signal step_progressed(quest: SCQuest, step: int, count: int)
## A step is done.
signal step_completed(quest: SCQuest, step: int)
## A quest is done, and its reward given.
signal quest_done(quest: SCQuest)
## A quest has failed.
signal quest_failed(quest: SCQuest)
## A quest was given up.
signal quest_abandoned(quest: SCQuest)
## A quest is tracked now, or no longer.
signal quest_tracked(quest: SCQuest, tracked: bool)
## So many of a reward are kept until there is room for them.
signal reward_kept(item: SCItem, how_many: int)
## Something in the book is other than before. It comes after the other signals, and when a saved game was loaded.
signal changed

## Where a quest has got to.
enum Status {
	## Never begun, or wiped out of the book since.
	NOT_STARTED,
	## Under way.
	ACTIVE,
	## Done, and the reward given.
	DONE,
	## Failed, without a reward. It can be started again.
	FAILED,
	## Given up, without a reward. It can be started again.
	ABANDONED,
}

const GameFiles := preload("res://addons/quillstead/runtime/quillstead_game_files.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const Progress := preload("res://addons/quillstead/runtime/quest_progress.gd")
const QuestPlayer := preload("res://addons/quillstead/runtime/quest_player.gd")
const Rewards := preload("res://addons/quillstead/runtime/quest_rewards.gd")
const Waits := preload("res://addons/quillstead/runtime/quest_waits.gd")
const News := preload("res://addons/quillstead/runtime/quest_news.gd")

# Where the book hangs on the tree.
const _META: StringName = &"quillstead_quests"

# Event name to those who wait for it.
static var _waiting: Dictionary[StringName, Array] = {}

var _tree: SceneTree
# In the order in which they began.
var _all: Dictionary[String, Progress] = {}
var _waits: Waits = Waits.new()
var _player: QuestPlayer
var _rewards: Rewards = Rewards.new()
var _news: News = News.new()


#region For everybody
## Begins a quest, also one that failed or was given up before. Nothing comes of it while the quest is under way, or once it is done.
static func start(quest: Resource, tree: SceneTree = null) -> void:
	var book := _book_for(quest, tree)
	if book != null:
		book._start(quest as SCQuest)


## Ends a quest as done, with its reward, however far its steps are. One that has not begun begins first.
static func complete(quest: Resource, tree: SceneTree = null) -> void:
	var book := _book_for(quest, tree)
	if book != null:
		book._complete(quest as SCQuest)


## Fails a quest that is under way. Its steps stop counting.
static func fail(quest: Resource) -> void:
	var book := _book_for(quest)
	if book != null:
		book._end(quest as SCQuest, Status.FAILED)


## Gives up a quest that is under way. Its steps stop counting.
static func abandon(quest: Resource) -> void:
	var book := _book_for(quest)
	if book != null:
		book._end(quest as SCQuest, Status.ABANDONED)


## Wipes a quest out of the book, so that it can be done once more, such as a daily one.
static func forget(quest: Resource) -> void:
	var book := _book_for(quest)
	if book != null:
		book._forget(quest as SCQuest)


## Tracks a quest, or stops tracking it. Every quest is tracked from the moment it begins. It counts either way.
static func track(quest: Resource, tracked: bool = true) -> void:
	var book := _book_for(quest)
	if book != null:
		book._track(quest as SCQuest, tracked)


## Counts a step from a script, by [param by] more or, below zero, less, if it is one to do now. The first step is 0.
static func count_step(quest: Resource, step: int, by: int = 1) -> void:
	var book := _book_for(quest)
	if book != null:
		book._count_by(quest as SCQuest, step, by)


## Where a quest has got to.
static func status_of(quest: Resource) -> Status:
	var found := _progress_of(quest)
	return found.status as Status if found != null else Status.NOT_STARTED


## Whether a step is done. The first step is 0.
static func step_done(quest: Resource, step: int) -> bool:
	var found := _progress_of(quest)
	return found != null and found.is_step_done(step)


## Whether a step is one to do now: the quest is under way, it is not done, and, where steps come in order, it is its turn.
static func step_counts_now(quest: Resource, step: int) -> bool:
	var found := _progress_of(quest)
	return found != null and found.counts_now(step)


## What a step has counted so far.
static func step_count(quest: Resource, step: int) -> int:
	var found := _progress_of(quest)
	return found.rows[step].count if found != null and step >= 0 and step < found.rows.size() else 0


## Whether a step may be shown to the player already: one that is hidden may not before its turn.
static func step_shown(quest: Resource, step: int) -> bool:
	var found := _progress_of(quest)
	return found != null and found.is_shown(step)


## Whether a quest is tracked. It may be done already.
static func is_tracked(quest: Resource) -> bool:
	var found := _progress_of(quest)
	return found != null and found.is_tracked


## The quests with a status, in the order in which they began.
static func quests_with(status: Status, tree: SceneTree = null) -> Array[SCQuest]:
	var quests: Array[SCQuest] = []
	var book := book_of(tree)
	if book != null:
		for progress: Progress in book._all.values():
			if progress.status != status:
				continue
			if progress.quest == null:
				book._find_quest_of(progress)
			if progress.quest != null:
				quests.append(progress.quest)
	return quests


## The quests under way that are tracked, in the order in which they began.
static func tracked_quests(tree: SceneTree = null) -> Array[SCQuest]:
	return quests_with(Status.ACTIVE, tree).filter(is_tracked)


## What the player has coming that did not fit yet: how many of which item.
static func kept_rewards(tree: SceneTree = null) -> Dictionary[SCItem, int]:
	var kept: Dictionary[SCItem, int] = {}
	var book := book_of(tree)
	if book != null:
		for debt in book._rewards.debts:
			if debt.item != null:
				kept[debt.item] = kept.get(debt.item, 0) + debt.how_many
	return kept


## A dialogue has ended on [param machine]: for steps that wait for a talk with the node it works on.
static func talked(machine: Object, tree: SceneTree = null) -> void:
	var book := book_of(tree)
	if book != null and is_instance_valid(machine) and machine is Node:
		book._count_all(book._waits.of_talk(machine as Node))


## Goes by the steps of the quests as they are now. A quest whose [member SCQuest.steps] is set, or whose steps are, does so by
## itself; call it after steps were put into the list of a quest under way, or taken out.
static func steps_changed(quest: Resource) -> void:
	var book := _book_for(quest)
	var found: Progress = book._found(quest as SCQuest) if book != null else null
	if found != null:
		book._review(found)
		book._news.tell()


## The book itself, for its signals.
static func watch(tree: SceneTree = null) -> SCQuests:
	return book_of(tree)


## The book of a game. Null only where no game is running.
static func book_of(tree: SceneTree = null) -> SCQuests:
	var of_tree := tree if tree != null else Engine.get_main_loop() as SceneTree
	if of_tree == null:
		MakerWarnings.once("quests without a tree", "There is no scene tree to keep quests in, so nothing was done about them. Ask for them while a game is running.")
		return null
	if of_tree.has_meta(_META):
		var held: Variant = of_tree.get_meta(_META)
		return held as SCQuests
	var book := SCQuests.new()
	book._open(of_tree)
	of_tree.set_meta(_META, book)
	return book


## Wipes the book, for a new game. Who is connected to its signals stays connected.
static func forget_all(tree: SceneTree = null) -> void:
	var book := book_of(tree)
	if book != null:
		book._forget_all()
#endregion


#region Saved games
## The whole book in plain values that a file can hold. [method from_save] takes it back.
static func to_save(tree: SceneTree = null) -> Dictionary:
	var book := book_of(tree)
	return book._to_save() if book != null else {}


## Puts everything back as it was saved, and forgets what was not. Nobody has to list the quests: each is found by its file. What is
## done stays done, and is not rewarded again.
static func from_save(saved: Dictionary, tree: SceneTree = null) -> void:
	var book := book_of(tree)
	if book != null:
		book._from_save(saved)
#endregion


#region Events
## An event that was waited for has gone by on some machine of [param tree].
static func heard(event_name: StringName, tree: SceneTree) -> void:
	var callables: Array = _waiting.get(event_name, [])
	for callable: Callable in callables.duplicate():
		if callable.is_valid():
			callable.call(event_name, tree)
		else:
			stop_waiting(event_name, callable)


## Calls [param callable] with the event's name and the tree each time [param event_name] goes by.
static func wait_for(event_name: StringName, callable: Callable) -> void:
	if event_name.is_empty():
		return
	var callables: Array = _waiting.get_or_add(event_name, [])
	if not callables.has(callable):
		callables.append(callable)
	SCMachineBase.set_quest_events(_waiting.keys())


## Ends what [method wait_for] began.
static func stop_waiting(event_name: StringName, callable: Callable) -> void:
	if not _waiting.has(event_name):
		return
	_waiting[event_name].erase(callable)
	if _waiting[event_name].is_empty():
		_waiting.erase(event_name)
	SCMachineBase.set_quest_events(_waiting.keys())
#endregion


static func _book_for(quest: Resource, tree: SceneTree = null) -> SCQuests:
	if quest is SCQuest:
		return book_of(tree)
	MakerWarnings.once("no quest:%d" % (quest.get_instance_id() if quest != null else 0),
			"Quests were asked about %s, which is no quest, so nothing was done. Hand over an SCQuest." % ("nothing" if quest == null else str(quest)))
	return null


static func _progress_of(quest: Resource) -> Progress:
	var book := _book_for(quest)
	return book._found(quest as SCQuest) if book != null else null


func _open(tree: SceneTree) -> void:
	_tree = tree
	_player = QuestPlayer.new(tree)
	_player.bag_changed.connect(_on_bag_changed)
	_player.came.connect(_on_somebody_came)
	_waits.event_needed.connect(wait_for.bind(_hear))
	_waits.event_not_needed.connect(stop_waiting.bind(_hear))
	_waits.step_edited.connect(_on_quest_changed)
	_news.at_last = changed.emit


# What the book has on a quest. Null when it has nothing. A quest that a saved game was waiting for is found by this.
func _found(quest: SCQuest) -> Progress:
	var found: Progress = _all.get(quest.key())
	if found == null:
		return null
	if found.quest == null:
		_bind(found, quest)
		_review(found, false)
	elif found.is_behind():
		_review(found)
	_news.tell_later()
	return found


func _bind(progress: Progress, quest: SCQuest) -> void:
	progress.quest = quest
	progress.path = quest.resource_path
	var on_changed := _on_quest_changed.bind(progress.key)
	if not quest.changed.is_connected(on_changed):
		quest.changed.connect(on_changed)


func _unbind(progress: Progress) -> void:
	_waits.end_all(progress.rows)
	if progress.quest == null:
		return
	var on_changed := _on_quest_changed.bind(progress.key)
	if progress.quest.changed.is_connected(on_changed):
		progress.quest.changed.disconnect(on_changed)


func _start(quest: SCQuest) -> void:
	var found := _found(quest)
	if found != null and (found.status == Status.ACTIVE or found.status == Status.DONE):
		_news.tell()
		return
	_begin(quest)
	_review(_all[quest.key()])
	_news.tell()


func _begin(quest: SCQuest) -> void:
	var key := quest.key()
	var progress: Progress = _all.get(key)
	if progress == null:
		progress = Progress.new()
		progress.key = key
	_unbind(progress)
	# To the end of the order.
	_all.erase(key)
	_all[key] = progress
	_bind(progress, quest)
	progress.begin()
	_warn_of_steps(quest)
	_news.add(emit_signal.bind(&"quest_started", quest))
	_send(quest.started_event, quest)


func _complete(quest: SCQuest) -> void:
	var found := _found(quest)
	if found == null:
		_begin(quest)
		found = _all[quest.key()]
	if found.status != Status.DONE:
		_finish(found)
	_news.tell()


func _finish(progress: Progress) -> void:
	progress.status = Status.DONE
	_waits.end_all(progress.rows)
	_rewards.owe(progress.quest)
	_news.add(_give_rewards)
	_news.add(emit_signal.bind(&"quest_done", progress.quest))
	_send(progress.quest.done_event, progress.quest)


func _end(quest: SCQuest, status: Status) -> void:
	var found := _found(quest)
	if found == null or found.status != Status.ACTIVE:
		_news.tell()
		return
	found.status = status
	_waits.end_all(found.rows)
	_look_after_player()
	_news.add(emit_signal.bind(&"quest_failed" if status == Status.FAILED else &"quest_abandoned", quest))
	_send(quest.failed_event if status == Status.FAILED else quest.abandoned_event, quest)
	_news.tell()


func _forget(quest: SCQuest) -> void:
	var found: Progress = _all.get(quest.key())
	if found == null:
		return
	_unbind(found)
	_all.erase(found.key)
	_look_after_player()
	_news.add_silently()
	_news.tell()


func _forget_all() -> void:
	for progress: Progress in _all.values():
		_unbind(progress)
	_all.clear()
	_rewards.debts.clear()
	_news.forget()
	_look_after_player()
	_news.add_silently()
	_news.tell()


func _track(quest: SCQuest, tracked: bool) -> void:
	var found := _found(quest)
	if found == null or found.is_tracked == tracked:
		return
	found.is_tracked = tracked
	_news.add(emit_signal.bind(&"quest_tracked", quest, tracked))
	_news.tell()


func _count_by(quest: SCQuest, step: int, by: int) -> void:
	var found := _found(quest)
	if found != null and found.counts_now(step) and _set_count(found, found.rows[step], found.rows[step].count + by):
		_review(found)
	_news.tell()


# Called as one of the events goes by that this book waits for. What begins to wait meanwhile does not hear it any more.
func _hear(event_name: StringName, _in_tree: SceneTree) -> void:
	_count_all(_waits.of_event(event_name))


# All of them count before any quest is over by it.
func _count_all(waiting: Dictionary, counted: Callable = _one_more) -> void:
	var is_step_done: Dictionary[Progress, bool] = {}
	var now := waiting.duplicate()
	for row: Progress.Row in now:
		var progress: Progress = now[row]
		if row.waits_as != null and _set_count(progress, row, counted.call(row) as int):
			is_step_done[progress] = true
	for progress: Progress in is_step_done:
		_review(progress)
	_news.tell()


static func _one_more(row: Progress.Row) -> int:
	return row.count + 1


# Answers whether the step is done by that.
func _set_count(progress: Progress, row: Progress.Row, to: int) -> bool:
	var needed := row.step.needed()
	var count := clampi(to, 0, needed)
	if count != row.count:
		row.count = count
		var at := progress.rows.find(row)
		_news.add(emit_signal.bind(&"step_progressed", progress.quest, at, count))
		_send(progress.quest.progress_event, {"quest": progress.quest, "step": at, "count": count, "how_many": needed})
	if count < needed:
		return false
	row.is_done = true
	_news.add(emit_signal.bind(&"step_completed", progress.quest, progress.rows.find(row)))
	return true


# Lets the steps wait whose turn it is, and the others not, and ends a quest that has nothing left to do. A step that collects counts
# what is there already as its turn comes, but not in a saved game, whose player may not be there yet.
func _review(progress: Progress, counts_what_is_there: bool = true) -> void:
	if progress.quest == null:
		return
	var before := progress.rows
	progress.go_by_steps()
	_waits.end_all(before, progress.rows)
	var is_settled := false
	while not is_settled:
		is_settled = true
		var live := progress.live_rows()
		_waits.end_all(progress.rows, live)
		for row in live:
			var is_new := row.waits_as == null
			_waits.begin(progress, row)
			var has_enough := row.count >= row.step.needed()
			if has_enough or (is_new and counts_what_is_there and row.step.kind == SCQuestStep.Kind.COLLECT):
				is_settled = not _set_count(progress, row, row.count if has_enough else _carried(row)) and is_settled
	_news.add_silently()
	_look_after_player()
	if progress.status == Status.ACTIVE and progress.is_fulfilled():
		_finish(progress)


func _carried(row: Progress.Row) -> int:
	var bag := _player.bag()
	return bag.count(row.step.item) if bag != null and row.step.item != null else row.count


func _look_after_player() -> void:
	_player.is_waited_for = not _rewards.debts.is_empty()
	_player.is_needed = not _waits.collecting.is_empty() or _player.is_waited_for


func _on_bag_changed() -> void:
	_count_all(_waits.collecting, _carried)
	if not _rewards.debts.is_empty():
		_news.add(_give_rewards)
	_news.tell()


func _on_somebody_came() -> void:
	if not _rewards.debts.is_empty():
		_news.add(_give_rewards)
	_news.tell()


func _on_quest_changed(key: String) -> void:
	var progress: Progress = _all.get(key)
	if progress != null:
		_review(progress)
		_news.tell()


func _give_rewards() -> void:
	for debt in _rewards.give(_player.bag(), _player.machine()):
		if debt.item != null:
			_news.add(emit_signal.bind(&"reward_kept", debt.item, debt.how_many))
	_look_after_player()


# Quests hear each other's events once, whichever machines take them.
func _send(event_name: StringName, data: Variant) -> void:
	if not event_name.is_empty():
		_news.add(_send_now.bind(event_name, data))


func _send_now(event_name: StringName, data: Variant) -> void:
	heard(event_name, _tree if is_instance_valid(_tree) else null)
	SCMachineBase.broadcast_everywhere(event_name, data)


func _warn_of_steps(quest: SCQuest) -> void:
	for at in quest.steps.size():
		var step := quest.steps[at]
		if step == null:
			MakerWarnings.once("quest step:%s:%d" % [quest.key(), at],
					"Step %d of the quest \"%s\" is an empty row, so it is left out. Make a step in it, or remove it." % [at + 1, quest.shown_title()])
		elif step.waits_for_nothing():
			var setting: String = ["Waits For", "Item", "Talk To"][clampi(step.kind, 0, 2)]
			MakerWarnings.once("quest step:%s:%d" % [quest.key(), at],
					"Step %d of the quest \"%s\" waits for nothing, so it does not tick itself off. Fill in its %s, or count it with SCQuests.count_step()."
					% [at + 1, quest.shown_title(), setting])


func _to_save() -> Dictionary:
	var quests: Array[Dictionary] = []
	for progress: Progress in _all.values():
		if progress.key.begins_with(SCQuest.MADE):
			MakerWarnings.once("quest not saved:%d" % progress.quest.get_instance_id(),
					"The quest \"%s\" was not saved, as it could not be found again: it has neither a file nor a Quest Key. Save it as a file of its own."
					% progress.quest.shown_title())
			continue
		quests.append(progress.to_save())
	return {"quests": quests, "rewards": _rewards.to_save()}


func _from_save(saved: Dictionary) -> void:
	var known: Dictionary[String, SCQuest] = {}
	for progress: Progress in _all.values():
		_unbind(progress)
		if progress.quest != null:
			known[progress.key] = progress.quest
	_all.clear()
	# Of the game that was left.
	_news.forget()
	_rewards.from_save(saved.get("rewards"))
	var quests: Variant = saved.get("quests")
	if not quests is Array:
		MakerWarnings.say("A saved game has no quests that could be read, so the quest book is empty. It takes what SCQuests.to_save() gave.")
	for row: Variant in quests if quests is Array else []:
		var progress := Progress.new()
		if row is Dictionary and progress.from_save(row as Dictionary):
			_all[progress.key] = progress
	for progress: Progress in _all.values():
		if known.has(progress.key):
			_bind(progress, known[progress.key])
			_review(progress, false)
		elif progress.status == Status.ACTIVE and not _find_quest_of(progress):
			MakerWarnings.say("A saved game goes on with a quest that is not found at %s, so its steps do not count. What they have counted is kept. Put its file back."
					% (progress.path if not progress.path.is_empty() else "its key " + progress.key))
	if not _rewards.debts.is_empty():
		_news.add(_give_rewards)
	_look_after_player()
	_news.add_silently()
	_news.tell()


# One that is over is looked for only when somebody asks.
func _find_quest_of(progress: Progress) -> bool:
	var quest := _quest_at(progress.path)
	if quest == null:
		return false
	_bind(progress, quest)
	_review(progress, false)
	return true


static func _quest_at(path: String) -> SCQuest:
	if path.is_empty():
		return null
	# A quest that is part of another file is there while that one is loaded.
	var file := path.get_slice("::", 0)
	var whole: Resource = load(file) if GameFiles.may_load(file) else null
	if path == file or whole == null:
		return whole as SCQuest
	return ResourceLoader.get_cached_ref(path) as SCQuest if ResourceLoader.has_cached(path) else null
