#include "kinds/items/dropping.hpp"

#include "inventory/bags.hpp"
#include "inventory/items.hpp"

void SCDropItemAction::describe(KindTable<Self> &kind) {
	kind.about("items", "drop_item",
			"Put something down where it can be picked up again, for dropped loot, a weapon thrown away or a defeated enemy spilling what it carried.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::item>("item", hint::ITEM, "What is put down.");
	kind.setting<&Self::item_variable>("item_variable", "Put down the item that this variable holds instead.").optional();
	kind.setting<&Self::bag_path>("bag_path", "The Inventory it comes out of, or the node that has one. Empty is the Inventory of Self.");
	kind.setting<&Self::how_many>("how_many", hint::HOW_MANY_OR_ALL, "How many of it are put down, all in one pickup. Zero puts down all there are.");
	kind.setting<&Self::how_many_variable>("how_many_variable", "Read how many from this variable.").optional();
	kind.setting<&Self::pickup_scene>("pickup_scene", "The scene of what then lies there. It needs an Inventory for the items to be in.");
	kind.setting<&Self::at_path>("at_path", "The node at whose place it is put down. Empty is Self.");
	kind.setting<&Self::offset>("offset", "How far from there: a Vector2 in 2D, in pixels, and a Vector3 in 3D, in metres.").optional();
	kind.setting<&Self::store_pickup_in>("store_pickup_in", "Keep the pickup in this variable.").optional();
	kind.setting<&Self::dropped_event>("dropped_event", "The event to send when it has been put down. It carries the pickup.").optional();
	kind.setting<&Self::cannot_event>("cannot_event", "The event to send when it could not be put down, and is where it was.").optional();
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "about");
}

String SCDropItemAction::summary_default() {
	return vformat("Drop %s %s", bags::how_many_in_line(how_many, how_many_variable, "all"), items::in_line(item, item_variable));
}

void SCDropItemAction::warn(SCMachineBase *machine, int64_t, int64_t what, const String &about) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	String text;
	switch (what) {
		case NO_BAG:
			text = bags::none_to(machine, bag_path, "Drop Item", "take anything out of");
			break;
		case NO_ITEM:
			text = vformat("Drop Item on %s: %s, so there is nothing to put down.", name, about);
			break;
		case NO_SCENE:
			text = vformat("Drop Item on %s: no Pickup Scene is set, so there is nowhere for %s to go. Make a small scene with an Inventory on it and whatever "
						   "picture and area a pickup needs.",
					name, about);
			break;
		case NO_BAG_IN_IT:
			text = vformat("Drop Item on %s: %s has no Inventory on it, so there is nowhere in it for the item to go. Add an Inventory node to that scene.",
					name, about);
			break;
		default:
			text = vformat(
					"Drop Item on %s: the node named in At, %s, was not found, so %s is dropped where the scene starts rather than where it should land.", name,
					bags::path_in_words(at_path), about);
			break;
	}
	verbs::warn_whole(machine, this, int(what), text);
}
