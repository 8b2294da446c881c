#include "kinds/items/using.hpp"

#include "action/words.hpp"
#include "inventory/items.hpp"

void SCUseItemAction::describe(KindTable<Self> &kind) {
	kind.about("items", "use_item",
			"Use an item. A potion is used up: one comes out of the inventory, and its When Used changes are made. An active item is used when it is charged: "
			"its charge goes back to zero, and its Use Event is sent.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::item>("item", hint::ITEM, "The item, also when there is none in Item Variable.");
	kind.setting<&Self::item_variable>("item_variable", "The item is in this variable.").optional();
	kind.setting<&Self::charge_variable>("charge_variable", "The number of this machine that says how far an active item is charged.")
			.only_if<&Self::may_be_charged>();
	kind.setting<&Self::not_ready_event>("not_ready_event", "Sent when an active item is not charged yet, or there is no item. Empty sends nothing.")
			.optional();
	kind.setting<&Self::bag_path>("bag_path", "The Inventory that an item which is used up comes out of, or the node it is on. Empty is Self.");
	kind.setting<&Self::none_left_event>("none_left_event", "Sent when there is none of it left to use up. Empty sends nothing.").optional();
	kind.setting<&Self::on_path>("on_path", "A node with the machine that an item which is used up changes. Empty is this machine.");
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "words");
}

bool SCUseItemAction::may_be_charged() const {
	return !item_variable.is_empty() || item.is_null() || !items::ask(item, "used_up").booleanize();
}

String SCUseItemAction::summary_default() {
	const String named = items::in_line(item, item_variable);
	if (item_variable.is_empty() && items::ask(item, "used_up").booleanize()) {
		return vformat("Use %s from %s", named, words::name_in_line(bag_path, "the inventory", "the inventory"));
	}
	if (item_variable.is_empty() && values::as_number(items::ask(item, "charge")) > 0.0) {
		return vformat("Use %s when %s is full", named, words::picked(charge_variable));
	}
	return vformat("Use %s", named);
}

void SCUseItemAction::warn(SCMachineBase *machine, int64_t, int64_t what, const String &words) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	String sentence;
	switch (what) {
		case NO_ITEM:
			sentence = vformat("Use Item on %s: %s, so there is nothing to use.", name, words);
			break;
		case NO_BAG: {
			const Node *body = machine->target_node();
			sentence = vformat("Use Item on %s: %s is used up when used, but there is no Inventory to take it out of. Add an Inventory node under %s, or point "
							   "Bag at one.",
					name, words, body != nullptr ? String(body->get_name()) : String("the node it works on"));
			break;
		}
		case CHANGES_NOTHING:
			sentence = vformat("Use Item on %s: %s is used up when used, but it has no When Used changes, so using it does nothing but take it out of the "
							   "inventory.",
					name, words);
			break;
		default:
			sentence = vformat("Use Item on %s: %s, so the item is used on this machine instead.", name, words);
			break;
	}
	verbs::warn_whole(machine, this, int(what), sentence);
}
