#include "kinds/items/picking.hpp"

#include "kinds/items/chances.hpp"

namespace {

constexpr char ITEMS[] = "The items to choose from. The rarity decides first, by the chances below; within one rarity each row is as likely as the next, so an "
						 "item that stands there twice turns up twice as often.";

void warn_lost(SCMachineBase *machine, const Object *kind, const char *what) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, kind, 0,
				vformat("%s on %s has no Store In, so the item it picked was lost. Pick a Resource variable beside Store In.", what,
						machine->name_in_messages()));
	}
}

} // namespace

void SCOfferItemAction::describe(KindTable<Self> &kind) {
	kind.about("items", "offer_item",
			"Choose an item to show without using it up, for a pedestal the player may walk away from, a shop shelf, or a chest that is only opened later. It "
			"can be offered again until somebody is given it.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::items>("items", hint::ITEMS, ITEMS);
	chances::declare(kind);
	kind.setting<&Self::not_taken_this_run>("not_taken_this_run", "Leave out what Give Item has given to anybody since the last New Run.");
	kind.setting<&Self::store_in>("store_in", "The variable that the item goes into. It holds nothing when none is left.");
	kind.setting<&Self::none_left_event>("none_left_event", "Sent when there was no item to choose. Empty sends nothing.").optional();
	kind.warns<&Self::warn>("_warn", "m", "index");
}

String SCOfferItemAction::summary_default() {
	return vformat("%s = an item offered from %d%s", words::picked(store_in), items.size(), not_taken_this_run ? " not taken yet" : "");
}

void SCOfferItemAction::warn(SCMachineBase *machine, int64_t) {
	warn_lost(machine, this, "Offer Item");
}

void SCPickItemAction::describe(KindTable<Self> &kind) {
	kind.about("items", "pick_item",
			"Choose an item at random for a pedestal, a chest or a shop shelf. It counts as having turned up, so that it does not turn up again in this run.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::items>("items", hint::ITEMS, ITEMS);
	chances::declare(kind);
	kind.setting<&Self::not_seen_this_run>("not_seen_this_run", "Leave out what any Pick Item has chosen since the last New Run.");
	kind.setting<&Self::store_in>("store_in", "The variable that the item goes into. It holds nothing when none is left.");
	kind.setting<&Self::none_left_event>("none_left_event", "Sent when there was no item to choose. Empty sends nothing.").optional();
	kind.warns<&Self::warn>("_warn", "m", "index");
}

String SCPickItemAction::summary_default() {
	return vformat("%s = an item from %d%s", words::picked(store_in), items.size(), not_seen_this_run ? " not seen yet" : "");
}

void SCPickItemAction::warn(SCMachineBase *machine, int64_t) {
	warn_lost(machine, this, "Pick Item");
}
