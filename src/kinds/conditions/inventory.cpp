#include "kinds/conditions/inventory.hpp"

#include "inventory/bags.hpp"
#include "inventory/items.hpp"

void SCInventoryHasCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "bag_has", "What an inventory is carrying.");
	kind.constants_of<Test>();
	kind.setting<&Self::test>("test", "Has asks for so many of an item. Is Full is so when every slot is in use, Is Empty when none is.");
	kind.setting<&Self::item>("item", hint::ITEM, "What has to be in it.").only_if<&Self::test, HAS>();
	kind.setting<&Self::item_variable>("item_variable", "Ask for the item that this variable holds instead.").optional().only_if<&Self::test, HAS>();
	kind.setting<&Self::at_least>("at_least", hint::HOW_MANY, "How many of it there have to be.").only_if<&Self::test, HAS>();
	kind.setting<&Self::bag_path>("bag_path", "The Inventory, or the node that has one. Empty is the Inventory of Self.");
	kind.warns<&Self::warn>("_warn", "m", "what", "missing");
}

String SCInventoryHasCondition::summary_default() {
	const String bag = bags::in_line(bag_path);
	switch (test) {
		case IS_FULL:
			return vformat("%s is full", bag);
		case IS_EMPTY:
			return vformat("%s is empty", bag);
		case HAS:
			break;
	}
	return vformat("%s has %s %s", bag, String::num_int64(MAX(at_least, 1)), items::in_line(item, item_variable));
}

void SCInventoryHasCondition::warn(SCMachineBase *machine, int64_t what, const String &missing) {
	if (machine == nullptr) {
		return;
	}
	if (what == NO_BAG) {
		verbs::warn_whole(machine, this, int(what), bags::none_to(machine, bag_path, "Inventory Has", "ask about, so the answer is no"));
	} else {
		verbs::warn_whole(machine, this, int(what), vformat("Inventory Has on %s: %s, so the answer is no.", machine->name_in_messages(), missing));
	}
}
