#include "kinds/items/wearing.hpp"

#include "inventory/bags.hpp"
#include "inventory/items.hpp"

namespace {

String missing_bag(SCMachineBase *machine, bool worn_side, const NodePath &worn_path, const NodePath &carried_path, const char *carried_setting) {
	if (worn_side) {
		return vformat("the worn Inventory is missing (add one with Slot Names under %s, or point Worn at one)", bags::under(machine, worn_path));
	}
	return vformat(
			"the carried Inventory is missing (add one without Slot Names under %s, or point %s at one)", bags::under(machine, carried_path), carried_setting);
}

} // namespace

void SCEquipItemAction::describe(KindTable<Self> &kind) {
	kind.about("items", "equip_item", "Wear something, putting a sword into the weapon slot or a helmet onto the head.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::item>("item", hint::ITEM, "What is put on. It goes into the slot that its Equips To names, in exchange for what is there.");
	kind.setting<&Self::item_variable>("item_variable", "Put on the item that this variable holds instead.").optional();
	kind.setting<&Self::worn_path>("worn_path", "The Inventory with Slot Names that it goes into, or the node that has one. Empty is that of Self.");
	kind.setting<&Self::from_path>("from_path", "The Inventory it comes out of, or the node that has one. Empty is the one Self carries.");
	kind.setting<&Self::on_path>("on_path", "Whoever it makes its changes to: a node with a machine on it. Empty is this machine.");
	kind.setting<&Self::equipped_event>("equipped_event", "The event to send when it is on. It carries the item.").optional();
	kind.setting<&Self::cannot_event>("cannot_event", "The event to send when it cannot be put on, and nothing has changed.").optional();
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "worn_side", "about", "bag");
}

String SCEquipItemAction::summary_default() {
	return vformat("Wear %s", items::in_line(item, item_variable));
}

void SCEquipItemAction::warn(SCMachineBase *machine, int64_t, int64_t what, bool worn_side, const String &about, const String &bag) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	String text;
	switch (what) {
		case NOTHING_TO_WEAR:
			text = vformat("Equip Item on %s: %s, so there is nothing to wear.", name,
					about.is_empty() ? missing_bag(machine, worn_side, worn_path, from_path, "From") : about);
			break;
		case NO_SLOT_OF_ITS_OWN:
		case NO_SUCH_SLOT: {
			const String thing = what == NO_SUCH_SLOT ? about : vformat("%s (the item's Equips To is empty)", about);
			text = vformat("Equip Item on %s: %s goes in no slot %s has. Set the item's Slot to one of that inventory's Slot Names.", name, thing, bag);
			break;
		}
		default:
			text = vformat("Equip Item on %s: %s, so there is nobody for %s to change and it is not put on. On wants a node with a Machine on it, or a Machine "
						   "node.",
					name, about, bag);
			break;
	}
	verbs::warn_whole(machine, this, int(what), text);
}

void SCUnequipItemAction::describe(KindTable<Self> &kind) {
	kind.about("items", "unequip_item", "Take something off.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::slot>("slot", "The slot to empty, such as hand or head. Empty is the one that the item goes in.").optional_if<&Self::item>();
	kind.setting<&Self::item>("item", hint::ITEM, "What is taken off, if it is on. Not needed when a slot is named.");
	kind.setting<&Self::item_variable>("item_variable", "Take off the item that this variable holds instead.").optional();
	kind.setting<&Self::worn_path>("worn_path", "The Inventory with Slot Names that it is in, or the node that has one. Empty is that of Self.");
	kind.setting<&Self::to_path>("to_path", "The Inventory it goes into, or the node that has one. Empty is the one Self carries.");
	kind.setting<&Self::on_path>("on_path", "Whose changes are undone: a node with a machine on it. Empty is this machine.");
	kind.setting<&Self::taken_off_event>("taken_off_event", "The event to send when it is off. It carries the item.").optional();
	kind.setting<&Self::cannot_event>("cannot_event", "The event to send when nothing could be taken off, and nothing has changed.").optional();
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "worn_side", "about", "bag", "names");
}

String SCUnequipItemAction::summary_default() {
	if (!slot.is_empty()) {
		return vformat("Take off what is worn in %s", slot);
	}
	return vformat("Take off %s", items::in_line(item, item_variable));
}

void SCUnequipItemAction::warn(SCMachineBase *machine, int64_t, int64_t what, bool worn_side, const String &about, const String &bag, const Array &slot_names) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	String text;
	switch (what) {
		case NO_BAG:
			text = vformat("Unequip Item on %s: %s, so there is nothing to take off.", name, missing_bag(machine, worn_side, worn_path, to_path, "To"));
			break;
		case NO_SLOT:
			text = vformat("Unequip Item on %s: no Slot is named and %s, so it cannot tell what to take off. Name a Slot, or pick the item.", name, about);
			break;
		case NO_SUCH_SLOT:
			text = vformat("Unequip Item on %s: %s has no slot called %s, so nothing can be taken off it. Its Slot Names are %s.", name, bag, about,
					words::listed(slot_names));
			break;
		default:
			text = vformat("Unequip Item on %s: %s, so there is nobody whose changes to undo, and it is left on. On wants a node with a Machine on it, or a "
						   "Machine node.",
					name, about);
			break;
	}
	verbs::warn_whole(machine, this, int(what), text);
}
