#include "kinds/items/giving.hpp"

#include "action/words.hpp"
#include "inventory/items.hpp"

void SCGiveItemAction::describe(KindTable<Self> &kind) {
	kind.about("items", "give_item",
			"Give an item to a machine, usually the player's. Its Changes are made there and stay until it is taken back, as with the powers that are found on "
			"the way through a dungeon. It goes into no inventory.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<What>();
	kind.setting<&Self::item>("item", hint::ITEM, "The item.");
	kind.setting<&Self::item_variable>("item_variable", "The item is in this variable, such as the one that Pick Item filled.").optional();
	kind.setting<&Self::what>("what", "Give makes the item's changes, and counts it as taken in this run. Remove undoes them.");
	kind.setting<&Self::machine_path>("machine_path", "A node with the machine that gets it, or the machine itself. Empty is this machine.");
	kind.setting<&Self::item_event>("item_event", "Sent to this machine when it was given. It carries the item. Empty sends nothing.")
			.optional()
			.only_if<&Self::what, GIVE>();
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "why");
}

String SCGiveItemAction::summary_default() {
	const String named = items::in_line(item, item_variable);
	const String whom = words::name_in_line(machine_path, "this machine", "this machine");
	return what == REMOVE ? vformat("Take %s back from %s", named, whom) : vformat("Give %s to %s", named, whom);
}

void SCGiveItemAction::warn(SCMachineBase *machine, int64_t, int64_t wrong, const String &why) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (wrong == NO_MACHINE) {
		verbs::warn_whole(machine, this, int(wrong),
				vformat("Give Item on %s: %s, so there is nobody to give it to and none of the item's changes are made. Machine wants a node with a Machine on "
						"it, or under it.",
						name, why));
	} else {
		verbs::warn_whole(machine, this, int(wrong), vformat("Give Item on %s: %s, so nothing is %s.", name, why, what == REMOVE ? "taken back" : "given"));
	}
}

void SCNewRunAction::describe(KindTable<Self> &kind) {
	kind.about("items", "new_run",
			"Start a new run, where every item can turn up again and none is held. Whoever was given items loses what these changed. What inventories hold "
			"stays.");
	kind.runs(Runs::ONCE_OR_REPEATING);
}

String SCNewRunAction::summary_default() {
	return "Start a new run";
}
