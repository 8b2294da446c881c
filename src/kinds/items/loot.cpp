#include "kinds/items/loot.hpp"

#include "action/words.hpp"
#include "kinds/items/chances.hpp"
#include "kinds/items/varied_items.hpp"

void SCDropLootAction::describe(KindTable<Self> &kind) {
	kind.about("items", "drop_loot",
			"Drop loot on the floor, as a beaten enemy, a broken pot or an opened chest does in an action role-playing game. It slides a little way, and "
			"whoever of the group player walks over it picks it up.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::items>("items", hint::ITEMS,
			"The items that one may be dropped of. The rarity decides first, by the chances below; within one rarity each row is as likely as the next.");
	kind.setting<&Self::item_chance>("item_chance", { PROPERTY_HINT_RANGE, "0,100,0.1,suffix:%" }, "How likely it is that an item is dropped at all.");
	chances::declare(kind);
	kind.setting<&Self::drops_what_it_carries>("drops_what_it_carries", "Whatever lies in the Inventory that it carries falls down too.");
	kind.setting<&Self::varies_by>("varies_by", hint::PERCENT,
			"The damage and the changes of the item that is dropped are up to so much higher or lower, so that no two are alike. Zero drops the item as it "
			"is.");
	kind.setting<&Self::gold_least>("gold_least", { PROPERTY_HINT_RANGE, "0,100,1,or_greater,hide_slider" }, "The least gold that is dropped.");
	kind.setting<&Self::gold_most>("gold_most", { PROPERTY_HINT_RANGE, "0,100,1,or_greater,hide_slider" }, "The most gold that is dropped. Zero drops none.");
	kind.setting<&Self::gold_goes_into>("gold_goes_into", "The number that the gold is added to, of the machine of whoever picks it up.");
	kind.setting<&Self::item_sound>("item_sound", "The sound of picking an item up.");
	kind.setting<&Self::gold_sound>("gold_sound", "The sound of picking gold up.");
	kind.setting<&Self::dropped_event>("dropped_event", "Sent for each item that is dropped, and carries it. Empty sends nothing.").optional();
	kind.warns<&Self::warn>("_warn", "m", "index", "body");
	ClassDB::bind_static_method(get_class_static(), D_METHOD("numbers_of", "item"), &varied_items::numbers_of);
	ClassDB::bind_static_method(get_class_static(), D_METHOD("with_numbers", "item", "numbers"), &varied_items::with_numbers);
}

String SCDropLootAction::summary_default() {
	PackedStringArray parts;
	if (!items.is_empty() && item_chance > 0.0) {
		parts.push_back(vformat("%d%% an item from %d", int64_t(Math::round(item_chance)), items.size()));
	}
	if (gold_most > 0) {
		parts.push_back(vformat("%d to %d gold", MIN(gold_least, gold_most), MAX(gold_least, gold_most)));
	}
	if (drops_what_it_carries) {
		parts.push_back("what it carries");
	}
	return vformat("Drop %s", parts.is_empty() ? String("nothing yet") : String(" and ").join(parts));
}

void SCDropLootAction::warn(SCMachineBase *machine, int64_t, Node *body) {
	if (machine != nullptr) {
		const String named = body != nullptr ? String(body->get_name()) : String("nothing");
		verbs::warn_whole(machine, this, 0,
				vformat("Drop Loot on %s drops loot onto the floor where %s is, and %s has no place in the world, as it is not a 2D or a 3D node.",
						machine->name_in_messages(), named, named));
	}
}
