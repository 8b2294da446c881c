#include "kinds/items/stocking.hpp"

#include "inventory/bags.hpp"
#include "inventory/items.hpp"

namespace {

String from_variable(const StringName &variable) {
	return variable.is_empty() ? String() : vformat(" (from %s)", variable);
}

} // namespace

void SCAddItemAction::describe(KindTable<Self> &kind) {
	kind.about("items", "add_item", "Put something in an inventory, such as loot into the player's pack, stock onto a shop shelf or a key into a chest.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::item>("item", hint::ITEM, "What is put in.");
	kind.setting<&Self::item_variable>("item_variable", "Put in the item that this variable holds instead.").optional();
	kind.setting<&Self::bag_path>("bag_path", "The Inventory, or the node that has one. Empty is the Inventory of Self.");
	kind.setting<&Self::how_many>("how_many", hint::HOW_MANY, "How many of it are put in.");
	kind.setting<&Self::how_many_variable>("how_many_variable", "Read how many from this variable.").optional();
	kind.setting<&Self::added_event>("added_event", "The event to send when all of them are in.").optional();
	kind.setting<&Self::no_room_event>(
				"no_room_event", "The event to send when not all of them fitted. Those that fitted are in, the others are left to whoever had them.")
			.optional();
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "about");
}

String SCAddItemAction::summary_default() {
	return vformat("Put %s %s in %s", bags::how_many_in_line(how_many, how_many_variable), items::in_line(item, item_variable), bags::in_line(bag_path));
}

void SCAddItemAction::warn(SCMachineBase *machine, int64_t, int64_t what, const Variant &about) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	String text;
	switch (what) {
		case HOW_MANY:
			text = vformat("Add Item on %s: how many is %d%s, so nothing is put in and no event is sent.", name, int64_t(values::as_number(about)),
					from_variable(how_many_variable));
			break;
		case NO_BAG:
			text = bags::none_to(machine, bag_path, "Add Item", "put anything in");
			break;
		default:
			text = vformat("Add Item on %s: %s, so there is nothing to put in the inventory.", name, words::text_of(about));
			break;
	}
	verbs::warn_whole(machine, this, int(what), text);
}

void SCRemoveItemAction::describe(KindTable<Self> &kind) {
	kind.about(
			"items", "remove_item", "Take something out of an inventory, such as spending a key on a door, paying for a purchase, or a thief lifting a purse.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::item>("item", hint::ITEM, "What is taken out.");
	kind.setting<&Self::item_variable>("item_variable", "Take out the item that this variable holds instead.").optional();
	kind.setting<&Self::bag_path>("bag_path", "The Inventory, or the node that has one. Empty is the Inventory of Self.");
	kind.setting<&Self::how_many>("how_many", hint::HOW_MANY, "How many of it are taken out. When there are fewer, none is.");
	kind.setting<&Self::how_many_variable>("how_many_variable", "Read how many from this variable.").optional();
	kind.setting<&Self::removed_event>("removed_event", "The event to send when they are out.").optional();
	kind.setting<&Self::not_enough_event>("not_enough_event", "The event to send when there were not so many of it, and nothing was taken.").optional();
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "about");
}

String SCRemoveItemAction::summary_default() {
	return vformat("Take %s %s out of %s", bags::how_many_in_line(how_many, how_many_variable), items::in_line(item, item_variable), bags::in_line(bag_path));
}

void SCRemoveItemAction::warn(SCMachineBase *machine, int64_t, int64_t what, const Variant &about) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	String text;
	switch (what) {
		case HOW_MANY:
			text = vformat("Remove Item on %s: how many is %d%s, so nothing is taken out and no event is sent.", name, int64_t(values::as_number(about)),
					from_variable(how_many_variable));
			break;
		case NO_BAG:
			text = bags::none_to(machine, bag_path, "Remove Item", "take anything out of");
			break;
		default:
			text = vformat("Remove Item on %s: %s, so there is nothing to take out.", name, words::text_of(about));
			break;
	}
	verbs::warn_whole(machine, this, int(what), text);
}

void SCCountItemAction::describe(KindTable<Self> &kind) {
	kind.about("items", "count_item", "How many of something an inventory is carrying, into a variable.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<Counts>();
	kind.setting<&Self::counts>("counts",
			"One Item counts how many there are of it. Stacks Used counts the slots something lies in. Slots Free counts the "
			"empty ones, and is -1 for an inventory without a limit.");
	kind.setting<&Self::item>("item", hint::ITEM, "What is counted.").only_if<&Self::counts, ONE_ITEM>();
	kind.setting<&Self::item_variable>("item_variable", "Count the item that this variable holds instead.").optional().only_if<&Self::counts, ONE_ITEM>();
	kind.setting<&Self::bag_path>("bag_path", "The Inventory, or the node that has one. Empty is the Inventory of Self.");
	kind.setting<&Self::store_in>("store_in", "The variable that the number goes into.");
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "missing");
}

String SCCountItemAction::summary_default() {
	const String bag = bags::in_line(bag_path);
	const String into = words::picked(store_in);
	switch (counts) {
		case STACKS_USED:
			return vformat("Count the slots %s has in use into %s", bag, into);
		case SLOTS_FREE:
			return vformat("Count the slots %s has free into %s", bag, into);
		case ONE_ITEM:
			break;
	}
	return vformat("Count the %s in %s into %s", items::in_line(item, item_variable), bag, into);
}

void SCCountItemAction::warn(SCMachineBase *machine, int64_t, int64_t what, const String &missing) {
	if (machine == nullptr) {
		return;
	}
	if (what == NO_BAG) {
		verbs::warn_whole(machine, this, int(what), bags::none_to(machine, bag_path, "Count Item", "count in"));
	} else {
		verbs::warn_whole(machine, this, int(what), vformat("Count Item on %s: %s, so there is nothing to count.", machine->name_in_messages(), missing));
	}
}

void SCSortInventoryAction::describe(KindTable<Self> &kind) {
	kind.about("items", "sort_bag", "Put an inventory's stacks in order, so a panel draws them tidily.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<SortBy>();
	kind.setting<&Self::bag_path>("bag_path", "The Inventory, or the node that has one. Empty is the Inventory of Self.");
	kind.setting<&Self::order>("order", "Name goes by what the player reads. Type puts what is of one type together. Rarity puts the rarest first.");
	kind.warns<&Self::warn>("_warn", "m", "index");
}

String SCSortInventoryAction::summary_default() {
	const String bag = bags::in_line(bag_path);
	switch (order) {
		case TYPE:
			return vformat("Order %s by type", bag);
		case RARITY:
			return vformat("Order %s with the rarest first", bag);
		case NAME:
			break;
	}
	return vformat("Order %s by name", bag);
}

void SCSortInventoryAction::warn(SCMachineBase *machine, int64_t) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, this, 0, bags::none_to(machine, bag_path, "Sort Inventory", "put in order"));
	}
}
