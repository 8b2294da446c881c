// The compiled runtime of Move Item.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "inventory/bags.hpp"
#include "inventory/items.hpp"
#include "kinds/items/moving_items.hpp"

#include <godot_cpp/variant/packed_string_array.hpp>

namespace {

using Kind = SCMoveItemAction;

struct Move {
	int64_t moved = 0;
	bool is_whole = false;
};

class MoveItem : public OnceOrRepeating<MoveItem> {
	// Each key once, with all there are of it, for as long as both inventories are there.
	static Move everything(Node *from_bag, Node *to_bag) {
		const Weak<Node> from(from_bag);
		const Weak<Node> to(to_bag);
		const Array held = bags::held_items(from_bag);
		PackedStringArray seen;
		Move move;
		for (int64_t i = 0; i < held.size() && from.get() != nullptr && to.get() != nullptr; i++) {
			const Ref<Resource> item = held[i];
			const String key = items::key_of(item);
			if (seen.has(key)) {
				continue;
			}
			seen.push_back(key);
			const int64_t count = bags::count(from.get(), item);
			if (from.get() != nullptr && to.get() != nullptr) {
				move.moved += bags::move_to(from.get(), to.get(), item, count);
			}
		}
		move.is_whole = from.get() != nullptr && bags::stacks(from.get()) == 0;
		return move;
	}

	static Move some(SCMachineBase *machine, SCMachineAction *action, Node *from_bag, Node *to_bag, const Ref<Resource> &item) {
		const Weak<Node> from(from_bag);
		const Weak<Node> to(to_bag);
		int64_t asked = bags::how_many(machine, setting_of<&Kind::how_many>(action), setting_of<&Kind::how_many_variable>(action));
		if (asked < 1 && from.get() != nullptr) {
			asked = bags::count(from.get(), item);
		}
		Move move;
		if (from.get() != nullptr && to.get() != nullptr) {
			move.moved = bags::move_to(from.get(), to.get(), item, asked);
		}
		move.is_whole = asked > 0 && move.moved >= asked;
		return move;
	}

	static void tell_what_is_missing(SCMachineBase *machine, SCMachineAction *action, int index, const String &end) {
		const StillHere here(machine);
		verbs::say<&Kind::warn>(action, machine, index, Kind::NO_BAG, end);
		if (here) {
			verbs::keep_if_named<&Kind::store_moved_in>(machine, action, 0);
		}
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		Node *from = bags::at(machine, setting_of<&Kind::from_path>(action), bags::EITHER);
		Node *to = bags::at(machine, setting_of<&Kind::to_path>(action), bags::EITHER);
		if (from == nullptr || to == nullptr) {
			tell_what_is_missing(machine, action, index, from == nullptr ? "From" : "To");
			return;
		}
		if (from == to) {
			verbs::warn(machine, action, "From and To are the same Inventory, so nothing is moved. Point one of them at another.");
		}
		Move move;
		if (setting_of<&Kind::item>(action).is_null() && setting_of<&Kind::item_variable>(action).is_empty()) {
			move = everything(from, to);
		} else {
			const items::Meant meant = items::meant<&Kind::item, &Kind::item_variable>(machine, action);
			if (!meant) {
				verbs::say<&Kind::warn>(action, machine, index, Kind::NO_ITEM, meant.missing);
				return;
			}
			move = some(machine, action, from, to, meant.item);
		}
		if (here) {
			verbs::keep_if_named<&Kind::store_moved_in>(machine, action, move.moved);
		}
		if (here) {
			verbs::send_either<&Kind::moved_event, &Kind::no_room_event>(machine, action, move.is_whole);
		}
	}
};

const AddKinds added = {
	add_kind<SCMoveItemAction, MoveItem>(),
};

} // namespace
