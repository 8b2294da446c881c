// The compiled condition Inventory Has.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "inventory/bags.hpp"
#include "inventory/items.hpp"
#include "kinds/conditions/inventory.hpp"

namespace {

using Kind = SCInventoryHasCondition;

bool inventory_has(SCMachineBase *machine, SCMachineCondition *condition) {
	if (machine == nullptr) {
		return false;
	}
	Node *bag = bags::at(machine, setting_of<&Kind::bag_path>(condition), bags::EITHER);
	if (bag == nullptr) {
		condition->call(*WarningOf<&Kind::warn>::name, machine, Kind::NO_BAG, String());
		return false;
	}
	switch (setting_of<&Kind::test>(condition)) {
		case Kind::IS_FULL:
			return bags::is_full(bag);
		case Kind::IS_EMPTY:
			return bags::stacks(bag) == 0;
		default:
			break;
	}
	const items::Meant meant = items::meant(machine, setting_of<&Kind::item>(condition), setting_of<&Kind::item_variable>(condition));
	if (!meant) {
		condition->call(*WarningOf<&Kind::warn>::name, machine, Kind::NO_ITEM, meant.missing);
		return false;
	}
	return bags::has(bag, meant.item, MAX(setting_of<&Kind::at_least>(condition), 1));
}

const AddKinds added = {
	add_condition<SCInventoryHasCondition, &inventory_has>(),
};

} // namespace
