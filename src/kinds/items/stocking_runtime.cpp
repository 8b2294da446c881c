// Compiled runtimes of Add Item, Remove Item, Count Item and Sort Inventory.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "inventory/bags.hpp"
#include "inventory/items.hpp"
#include "kinds/items/stocking.hpp"

namespace {

// What Add Item and Remove Item are told. Without any of it the game maker is told which, and nothing is done.
template <class Kind>
struct Order {
	Node *bag = nullptr;
	Ref<Resource> item;
	int64_t how_many = 0;

	Order(SCMachineBase *machine, SCMachineAction *action, int index) {
		Node *found = bags::at(machine, setting_of<&Kind::bag_path>(action), bags::EITHER);
		const items::Meant meant = items::meant<&Kind::item, &Kind::item_variable>(machine, action);
		how_many = bags::how_many(machine, setting_of<&Kind::how_many>(action), setting_of<&Kind::how_many_variable>(action));
		item = meant.item;
		if (how_many < 1) {
			verbs::say<&Kind::warn>(action, machine, index, Kind::HOW_MANY, how_many);
		} else if (found == nullptr) {
			verbs::say<&Kind::warn>(action, machine, index, Kind::NO_BAG, Variant());
		} else if (!meant) {
			verbs::say<&Kind::warn>(action, machine, index, Kind::NO_ITEM, meant.missing);
		} else {
			bag = found;
		}
	}
	explicit operator bool() const { return bag != nullptr; }
};

class AddItem : public OnceOrRepeating<AddItem> {
	using Kind = SCAddItemAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		const Order<Kind> order(machine, action, index);
		if (!order || !here) {
			return;
		}
		const int64_t went = bags::add(order.bag, order.item, order.how_many);
		if (here) {
			verbs::send_either<&Kind::added_event, &Kind::no_room_event>(machine, action, went >= order.how_many);
		}
	}
};

class RemoveItem : public OnceOrRepeating<RemoveItem> {
	using Kind = SCRemoveItemAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		const Order<Kind> order(machine, action, index);
		if (!order || !here) {
			return;
		}
		const bool has = bags::has(order.bag, order.item, order.how_many);
		if (has) {
			bags::take(order.bag, order.item, order.how_many);
		}
		if (here) {
			verbs::send_either<&Kind::removed_event, &Kind::not_enough_event>(machine, action, has);
		}
	}
};

class CountItem : public OnceOrRepeating<CountItem> {
	using Kind = SCCountItemAction;

	static int64_t slots_free(Node *bag) {
		const int64_t slots = bags::slots(bag);
		return slots < 1 ? -1 : MAX(slots - bags::stacks(bag), 0);
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		Node *bag = bags::at(machine, setting_of<&Kind::bag_path>(action), bags::EITHER);
		if (bag == nullptr) {
			verbs::say<&Kind::warn>(action, machine, index, Kind::NO_BAG, String());
			return;
		}
		int64_t answer = 0;
		switch (checked::choice<&Kind::counts>(machine, action, Kind::ONE_ITEM)) {
			case Kind::STACKS_USED:
				answer = bags::stacks(bag);
				break;
			case Kind::SLOTS_FREE:
				answer = slots_free(bag);
				break;
			case Kind::ONE_ITEM:
				const items::Meant meant = items::meant<&Kind::item, &Kind::item_variable>(machine, action);
				if (!meant) {
					verbs::say<&Kind::warn>(action, machine, index, Kind::NO_ITEM, meant.missing);
					return;
				}
				answer = bags::count(bag, meant.item);
				break;
		}
		if (here) {
			verbs::keep_if_named<&Kind::store_in>(machine, action, answer);
		}
	}
};

class SortInventory : public OnceOrRepeating<SortInventory> {
	using Kind = SCSortInventoryAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		Node *bag = bags::at(machine, setting_of<&Kind::bag_path>(action), bags::EITHER);
		if (bag == nullptr) {
			verbs::say<&Kind::warn>(action, machine, index);
			return;
		}
		bags::sort_by(bag, checked::choice<&Kind::order>(machine, action, Kind::NAME));
	}
};

const AddKinds added = {
	add_kind<SCAddItemAction, AddItem>(),
	add_kind<SCRemoveItemAction, RemoveItem>(),
	add_kind<SCCountItemAction, CountItem>(),
	add_kind<SCSortInventoryAction, SortInventory>(),
};

} // namespace
