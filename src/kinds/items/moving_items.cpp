#include "kinds/items/moving_items.hpp"

#include "inventory/bags.hpp"
#include "inventory/items.hpp"

void SCMoveItemAction::describe(KindTable<Self> &kind) {
	kind.about("items", "move_item",
			"Move something from one inventory to another, such as taking loot out of a chest, buying from a shop, handing a quest item to somebody or "
			"dropping a purse when robbed.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::item>("item", hint::ITEM, "What is moved. Empty, with Item Variable empty too, moves everything.");
	kind.setting<&Self::item_variable>("item_variable", "Move the item that this variable holds instead.").optional();
	kind.setting<&Self::from_path>("from_path", "The Inventory it comes out of, or the node that has one. Empty is the Inventory of Self.");
	kind.setting<&Self::to_path>("to_path", "The Inventory it goes into, or the node that has one. Empty is the Inventory of Self.");
	kind.setting<&Self::how_many>("how_many", hint::HOW_MANY_OR_ALL, "How many of it are moved. Zero moves all there are.").unless<&Self::moves_everything>();
	kind.setting<&Self::how_many_variable>("how_many_variable", "Read how many from this variable.").optional().unless<&Self::moves_everything>();
	kind.setting<&Self::store_moved_in>("store_moved_in", "Keep how many were really moved in this variable.").optional();
	kind.setting<&Self::moved_event>("moved_event", "The event to send when all that was asked for has moved.").optional();
	kind.setting<&Self::no_room_event>(
				"no_room_event", "The event to send when some of it stayed where it was, because it did not fit or there were not so many.")
			.optional();
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "about");
}

String SCMoveItemAction::summary_default() {
	const String to = bags::in_line(to_path, "the other inventory");
	if (moves_everything()) {
		return vformat("Move everything to %s", to);
	}
	return vformat("Move %s %s to %s", bags::how_many_in_line(how_many, how_many_variable, "all"), items::in_line(item, item_variable), to);
}

void SCMoveItemAction::warn(SCMachineBase *machine, int64_t, int64_t what, const String &about) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (what == NO_BAG) {
		verbs::warn_whole(machine, this, int(what),
				vformat("Move Item on %s: it needs an Inventory at both ends, and %s is missing. Add an Inventory node there, or point From or To at one.",
						name, about));
	} else {
		verbs::warn_whole(machine, this, int(what),
				vformat("Move Item on %s: %s, so nothing is moved. Leave Item Variable empty as well as Item to move everything.", name, about));
	}
}
