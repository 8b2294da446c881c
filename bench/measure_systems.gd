extends Bench

const Stats := preload("res://addons/quillstead/runtime/quillstead_stats.gd")

const SLOTS: int = 50
## So many of each item that nothing runs out, and no stack is full.
const PLENTY: int = 1_000_000_000

const SOURCES: PackedInt32Array = [10, 1000]

const QUESTS: int = 200

# No file has to be there for an item to be known by it.
const ITEM_PATH: String = "res://bench/item_%d.tres"


func number() -> int:
	return 11


func title() -> String:
	return "Systems: inventories, stats and quests"


func measure() -> void:
	await _measure_stacks()
	await _measure_singles()
	for count in SOURCES:
		await _measure_stats(count)
	await _measure_quests()


## Two inventories of fifty kinds each, a stack of each kind.
func _measure_stacks() -> void:
	var items: Array[SCItem] = []
	var by_hand_items: Array[BenchByHandBag.Item] = []
	var bags: Array[SCInventory] = [_bag(), _bag()]
	var by_hand: Array[BenchByHandBag] = [_by_hand_bag(), _by_hand_bag()]
	for i in SLOTS:
		items.append(_item(i, 2 * PLENTY))
		by_hand_items.append(_by_hand_item(2 * PLENTY))
		for at in 2:
			bags[at].add(items[i], PLENTY)
			by_hand[at].add(by_hand_items[i], PLENTY)
	assert(bags[1].is_full() and bags[1].count(items[0]) == PLENTY and by_hand[1].count(by_hand_items[0]) == PLENTY)
	var turns := BenchTurns.new()
	turns.add_loop("add", _add.bind(bags[0], items))
	turns.add_loop("add_by_hand", _add_by_hand.bind(by_hand[0], by_hand_items))
	turns.add_loop("take", _take.bind(bags[0], items))
	turns.add_loop("take_by_hand", _take_by_hand.bind(by_hand[0], by_hand_items))
	turns.add_loop("move", _move.bind(bags[0], bags[1], items))
	turns.add_loop("move_by_hand", _move_by_hand.bind(by_hand[0], by_hand[1], by_hand_items))
	await turns.play(tree)
	assert(bags[1].count(items[0]) > PLENTY and by_hand[1].count(by_hand_items[0]) > PLENTY)
	for which: Array in [["add", "one more onto one of 50 stacks"], ["take", "one less from one of 50 stacks"], ["move", "one from 50 stacks to 50 others"]]:
		_beside("systems.bag_%s" % which[0], which[1], "us", 1000.0, turns, which[0])


## What comes and goes with a stack of its own, in an inventory that is half full.
func _measure_singles() -> void:
	var bag := _bag()
	var by_hand := _by_hand_bag()
	for i in floori(SLOTS / 2.0):
		bag.add(_item(i, 1))
		by_hand.add(_by_hand_item(1))
	var turns := BenchTurns.new()
	turns.add_loop("single", _add_and_take.bind(bag, _item(SLOTS, 1)))
	turns.add_loop("single_by_hand", _add_and_take_by_hand.bind(by_hand, _by_hand_item(1)))
	await turns.play(tree)
	_beside("systems.bag_single", "one that does not stack put in and taken out, beside 25 others", "us", 1000.0, turns, "single")


func _bag() -> SCInventory:
	var made := SCInventory.new()
	made.slots = SLOTS
	stage.add_child(made)
	return made


func _by_hand_bag() -> BenchByHandBag:
	var made := BenchByHandBag.new()
	made.most_slots = SLOTS
	stage.add_child(made)
	return made


func _item(place: int, most_in_a_stack: int) -> SCItem:
	var made := SCItem.new()
	made.most_in_a_stack = most_in_a_stack
	made.take_over_path(ITEM_PATH % place)
	return made


func _by_hand_item(most_in_a_stack: int) -> BenchByHandBag.Item:
	var made := BenchByHandBag.Item.new()
	made.most_in_a_stack = most_in_a_stack
	return made


func _add(count: int, bag: SCInventory, items: Array[SCItem]) -> void:
	for i in count:
		bag.add(items[i % SLOTS])


func _add_by_hand(count: int, bag: BenchByHandBag, items: Array[BenchByHandBag.Item]) -> void:
	for i in count:
		bag.add(items[i % SLOTS])


func _take(count: int, bag: SCInventory, items: Array[SCItem]) -> void:
	for i in count:
		bag.take(items[i % SLOTS])


func _take_by_hand(count: int, bag: BenchByHandBag, items: Array[BenchByHandBag.Item]) -> void:
	for i in count:
		bag.take(items[i % SLOTS])


func _move(count: int, bag: SCInventory, to: SCInventory, items: Array[SCItem]) -> void:
	for i in count:
		bag.move_to(to, items[i % SLOTS])


func _move_by_hand(count: int, bag: BenchByHandBag, to: BenchByHandBag, items: Array[BenchByHandBag.Item]) -> void:
	for i in count:
		bag.move_to(to, items[i % SLOTS])


func _add_and_take(count: int, bag: SCInventory, item: SCItem) -> void:
	for i in count:
		bag.add(item)
		bag.take(item)


func _add_and_take_by_hand(count: int, bag: BenchByHandBag, item: BenchByHandBag.Item) -> void:
	for i in count:
		bag.add(item)
		bag.take(item)


## So many sources that all change one stat: each is put in, and then each is taken out.
func _measure_stats(count: int) -> void:
	var sources: PackedStringArray = []
	for i in count:
		sources.append("Ring %d" % i)
	var variables: Array[SCMachineVariable] = [BenchDesigns.variable(&"power", 10.0)]
	add_machines(stage, 1, BenchDesigns.waiting(variables))
	var machine: SCMachine = stage.get_child(-1)
	add_machines(stage, 1, _putting_on_and_off(sources, variables))
	var dresser: SCMachine = stage.get_child(-1)
	assert(dresser.get_value(&"power") == 10.0 + 0.25 * count)
	var by_hand := BenchByHandStat.new()
	var turns := BenchTurns.new()
	turns.add_loop("add", _change.bind(machine, sources, Stats.add, 0.25), 1)
	turns.add_loop("modify", _modify.bind(dresser), 1)
	turns.add_loop("add_by_hand", _change_by_hand.bind(by_hand, sources, by_hand.add, 0.25), 1)
	turns.add_loop("multiply", _change.bind(machine, sources, Stats.multiply, 1.0078125), 1)
	turns.add_loop("multiply_by_hand", _change_by_hand.bind(by_hand, sources, by_hand.multiply, 1.0078125), 1)
	await turns.play(tree)
	assert(machine.get_value(&"power") == 10.0 and by_hand.value == 10.0)
	# A round's figure is for all of them, in and out.
	var parts := 2000.0 * count
	var among := "one of %s sources" % ("%d,%03d" % [floori(count / 1000.0), count % 1000] if count >= 1000 else str(count))
	_beside("systems.stat_add_%d" % count, "an addition by %s" % among, "us", parts, turns, "add")
	figure("systems.stat_modify_%d" % count, "the same by Modify Stat", "us", each(turns.samples("modify"), parts))
	ratio("systems.stat_modify_%d" % count, "systems.stat_add_%d_by_hand" % count)
	_beside("systems.stat_multiply_%d" % count, "a multiplication by %s" % among, "us", parts, turns, "multiply")


## An event puts all of them on, the next takes all of them off.
func _putting_on_and_off(sources: PackedStringArray, variables: Array[SCMachineVariable]) -> SCMachineTemplate:
	var actions: Array[Array] = [[], []]
	for source in sources:
		for change: SCModifyStatAction.Change in [SCModifyStatAction.ADD, SCModifyStatAction.REMOVE]:
			var made := SCModifyStatAction.new()
			made.variable_name = &"power"
			made.change = change
			made.amount = 0.25
			made.source = source
			actions[0 if change == SCModifyStatAction.ADD else 1].append(made)
	return BenchDesigns.template([
		BenchDesigns.state(&"On", Array(actions[0], TYPE_OBJECT, &"SCMachineAction", null), {&"go": &"Off"}),
		BenchDesigns.state(&"Off", Array(actions[1], TYPE_OBJECT, &"SCMachineAction", null), {&"go": &"On"}),
	], variables)


func _change(count: int, machine: SCMachine, sources: PackedStringArray, way: Callable, amount: float) -> void:
	for i in count:
		for source in sources:
			way.call(machine, &"power", source, amount)
		for source in sources:
			Stats.take_away(machine, &"power", source)


func _change_by_hand(count: int, stat: BenchByHandStat, sources: PackedStringArray, way: Callable, amount: float) -> void:
	for i in count:
		for source in sources:
			way.call(source, amount)
		for source in sources:
			stat.take_away(source)


func _modify(count: int, machine: SCMachine) -> void:
	for i in count:
		machine.send_event(&"go", null)
		machine.send_event(&"go", null)


## What two hundred quests make of an event that none of them waits for, and of one that all of them wait for.
func _measure_quests() -> void:
	add_machines(stage, 1, BenchDesigns.two_states())
	var machine: SCMachine = stage.get_child(-1)
	var by_hand := BenchByHandQuests.new()
	for i in QUESTS:
		by_hand.begin("Wolves %d" % i, &"wolf_slain", PLENTY)
	var apart := _quests(func(i: int) -> StringName: return StringName("heard_by_quest_%d" % i))
	var together := _quests(func(_i: int) -> StringName: return &"wolf_slain")
	var silent := _quests(func(_i: int) -> StringName: return &"wolf_slain")
	for quest in silent:
		quest.progress_event = &""
	var turns := BenchTurns.new()
	turns.add("without", _nsec_with.bind([] as Array[SCQuest], BenchLoop.new(_send.bind(machine, &"go"))))
	turns.add("unheard", _nsec_with.bind(apart, BenchLoop.new(_send.bind(machine, &"go"))))
	turns.add("ignored_without", _nsec_with.bind([] as Array[SCQuest], BenchLoop.new(_send.bind(machine, &"nothing"))))
	turns.add("ignored", _nsec_with.bind(apart, BenchLoop.new(_send.bind(machine, &"nothing"))))
	turns.add("heard", _nsec_with.bind(together, BenchLoop.new(_send.bind(machine, &"wolf_slain"), 10)))
	turns.add("silent", _nsec_with.bind(silent, BenchLoop.new(_send.bind(machine, &"wolf_slain"), 10)))
	turns.add_loop("heard_by_hand", _hear_by_hand.bind(by_hand), 10)
	await turns.play(tree)
	figure("systems.event_without_quests", "a change of state without quests", "ns", turns.samples("without"))
	figure("systems.event_unheard", "with %d that wait for other events" % QUESTS, "ns", turns.samples("unheard"))
	ratio("systems.event_unheard", "systems.event_without_quests", 1.05)
	figure("systems.event_ignored_without_quests", "an event that finds no transition, without quests", "ns", turns.samples("ignored_without"))
	figure("systems.event_ignored", "the same with %d that wait for other events" % QUESTS, "ns", turns.samples("ignored"))
	ratio("systems.event_ignored", "systems.event_ignored_without_quests")
	_beside("systems.quest", "one of %d quests that count an event" % QUESTS, "us", 1000.0 * QUESTS, turns, "heard")
	figure("systems.quest_silent", "one whose Progress Event is empty", "us", each(turns.samples("silent"), 1000.0 * QUESTS))
	ratio("systems.quest_silent", "systems.quest_by_hand")


func _quests(waits_for: Callable) -> Array[SCQuest]:
	var all: Array[SCQuest] = []
	for i in QUESTS:
		var step := SCQuestStep.new()
		step.waits_for = waits_for.call(i)
		step.how_many = PLENTY
		var quest := SCQuest.new()
		quest.title = "Wolves %d" % i
		quest.steps = [step]
		all.append(quest)
	return all


func _nsec_with(quests: Array[SCQuest], loop: BenchLoop) -> float:
	for quest in quests:
		SCQuests.start(quest, tree)
	assert(SCQuests.quests_with(SCQuests.Status.ACTIVE, tree).size() == quests.size())
	var nsec := loop.take()
	SCQuests.forget_all(tree)
	return nsec


func _send(count: int, machine: SCMachine, event: StringName) -> void:
	for i in count:
		machine.send_event(event, null)


func _hear_by_hand(count: int, quests: BenchByHandQuests) -> void:
	for i in count:
		quests.hear(&"wolf_slain")


## A figure with the same by hand, whose samples have [code]_by_hand[/code] behind the name.
func _beside(name: String, what: String, unit: String, parts: float, turns: BenchTurns, samples: String) -> void:
	figure(name, what, unit, each(turns.samples(samples), parts))
	figure(name + "_by_hand", "the same by hand", unit, each(turns.samples(samples + "_by_hand"), parts))
	ratio(name, name + "_by_hand")
