// Compiled runtimes of Equip Item and Unequip Item. Every step may run a game's code, through the signals of the inventories and the
// variables that the items change. Whatever that does, what was taken out of one inventory ends up in the other or back in its own.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "inventory/bags.hpp"
#include "inventory/items.hpp"
#include "kinds/items/wearing.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"

namespace {

struct Names {
	StringName script = "quillstead_items";
	StringName apply_changes = "apply_changes";
	StringName undo_changes = "undo_changes";
	StringName equips_to = "equips_to";
};

const Names &names() {
	return NativeNames::of<Names>();
}

StringName slot_of(const Ref<Resource> &item) {
	const Variant named = items::ask(item, names().equips_to);
	return named.get_type() == Variant::STRING_NAME || named.get_type() == Variant::STRING ? StringName(named) : StringName();
}

// Who wears it, and the two inventories.
struct Wardrobe {
	Weak<Node> worn;
	Weak<Node> carried;
	Weak<Node> wearer;

	void change(const StringName &how, const Ref<Resource> &item) const {
		if (Node *machine = wearer.get()) {
			CompanionScripts::call(names().script, how, Array::make(machine, item));
		}
	}

	bool is_carried(const Ref<Resource> &item) const { return carried.get() != nullptr && bags::has(carried.get(), item, 1); }
	bool takes_back(const Ref<Resource> &item) const { return carried.get() != nullptr && bags::room_for(carried.get(), item) > 0; }
	void take_off(const Ref<Resource> &item) const {
		bags::take(worn.get(), item, 1);
		change(names().undo_changes, item);
		carry(item);
	}
	// Never refused: a full inventory, or one that does not take the like of it, keeps what came from here.
	void carry(const Ref<Resource> &item) const {
		if (Node *bag = carried.get()) {
			bags::put_back(bag, item, 1);
		} else {
			put_on(item);
		}
	}
	bool put_on(const Ref<Resource> &item) const {
		if (worn.get() == nullptr || bags::add(worn.get(), item, 1) < 1) {
			return false;
		}
		change(names().apply_changes, item);
		return true;
	}
};

// The machine whose numbers change: this one for no path. Null, with the words for it, when there is none.
Node *wearer_of(SCMachineBase *machine, const NodePath &path, String &wrong) {
	if (path.is_empty()) {
		return machine;
	}
	Node *node = values::node_of(machine, path);
	if (node == nullptr) {
		wrong = vformat("the node named in On, %s, was not found", bags::path_in_words(path));
		return nullptr;
	}
	Node *found = SCMachine::machine_of(node);
	if (found == nullptr) {
		wrong = vformat("%s has no Machine on it", node->get_name());
	}
	return found;
}

class EquipItem : public OnceOrRepeating<EquipItem> {
	using Kind = SCEquipItemAction;

	static void wrong(SCMachineBase *machine, SCMachineAction *action, int index, Kind::Wrong what, bool worn_side, const String &about, const String &bag) {
		verbs::say<&Kind::warn>(action, machine, index, what, worn_side, about, bag);
	}

	// Finds out whether it goes at all; nothing has changed when it does not.
	static bool is_ready(SCMachineBase *machine, SCMachineAction *action, int index, Wardrobe &wardrobe, Ref<Resource> &item) {
		const items::Meant meant = items::meant<&Kind::item, &Kind::item_variable>(machine, action);
		item = meant.item;
		Node *worn = bags::at(machine, setting_of<&Kind::worn_path>(action), bags::WORN);
		Node *carried = bags::at(machine, setting_of<&Kind::from_path>(action), bags::CARRIED);
		if (!meant || worn == nullptr || carried == nullptr) {
			wrong(machine, action, index, Kind::NOTHING_TO_WEAR, worn == nullptr, meant.missing, String());
			return false;
		}
		const StringName slot = slot_of(item);
		if (slot.is_empty() || !bags::slot_names(worn).has(slot)) {
			wrong(machine, action, index, slot.is_empty() ? Kind::NO_SLOT_OF_ITS_OWN : Kind::NO_SUCH_SLOT, false, items::shown_name(item), worn->get_name());
			return false;
		}
		wardrobe = Wardrobe{ Weak<Node>(worn), Weak<Node>(carried), Weak<Node>(nullptr) };
		if (!wardrobe.is_carried(item)) {
			return false;
		}
		String nobody;
		Node *wearer = wearer_of(machine, setting_of<&Kind::on_path>(action), nobody);
		if (wearer == nullptr) {
			wrong(machine, action, index, Kind::NOBODY, false, nobody, items::shown_name(item));
			return false;
		}
		wardrobe.wearer = Weak<Node>(wearer);
		return worn == wardrobe.worn.get();
	}

	static bool wear(const Wardrobe &wardrobe, const Ref<Resource> &item) {
		// Where a slot is there twice, as for rings, a free one comes first.
		const bool is_free = bags::room_for(wardrobe.worn.get(), item) > 0;
		const Ref<Resource> old = is_free || wardrobe.worn.get() == nullptr ? Ref<Resource>() : bags::worn(wardrobe.worn.get(), slot_of(item));
		if (wardrobe.carried.get() == nullptr || (!is_free && old.is_null())) {
			return false;
		}
		// Out first, for the old one to have its room.
		bags::take(wardrobe.carried.get(), item, 1);
		if (old.is_valid()) {
			if (!wardrobe.takes_back(old) || wardrobe.worn.get() == nullptr) {
				wardrobe.carry(item);
				return false;
			}
			wardrobe.take_off(old);
		}
		if (wardrobe.put_on(item)) {
			return true;
		}
		wardrobe.carry(item);
		if (old.is_valid() && wardrobe.is_carried(old) && wardrobe.worn.get() != nullptr && bags::room_for(wardrobe.worn.get(), old) > 0) {
			bags::take(wardrobe.carried.get(), old, 1);
			wardrobe.put_on(old);
		}
		return false;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		Wardrobe wardrobe = { Weak<Node>(nullptr), Weak<Node>(nullptr), Weak<Node>(nullptr) };
		Ref<Resource> item;
		const bool is_on = is_ready(machine, action, index, wardrobe, item) && wear(wardrobe, item);
		if (here) {
			verbs::send_either<&Kind::equipped_event, &Kind::cannot_event>(machine, action, is_on, is_on ? Variant(item) : Variant());
		}
	}
};

class UnequipItem : public OnceOrRepeating<UnequipItem> {
	using Kind = SCUnequipItemAction;

	static void wrong(SCMachineBase *machine, SCMachineAction *action, int index, Kind::Wrong what, bool worn_side, const String &about = String(),
			const String &bag = String(), const Array &slot_names = Array()) {
		verbs::say<&Kind::warn>(action, machine, index, what, worn_side, about, bag, slot_names);
	}

	// What is to come off; null when it does not.
	static Ref<Resource> find(SCMachineBase *machine, SCMachineAction *action, int index, Wardrobe &wardrobe) {
		Node *worn = bags::at(machine, setting_of<&Kind::worn_path>(action), bags::WORN);
		Node *carried = bags::at(machine, setting_of<&Kind::to_path>(action), bags::CARRIED);
		if (worn == nullptr || carried == nullptr) {
			wrong(machine, action, index, Kind::NO_BAG, worn == nullptr);
			return Ref<Resource>();
		}
		const StringName named = setting_of<&Kind::slot>(action);
		items::Meant meant;
		if (named.is_empty()) {
			meant = items::meant<&Kind::item, &Kind::item_variable>(machine, action);
		}
		const StringName slot = named.is_empty() ? slot_of(meant.item) : named;
		if (slot.is_empty()) {
			wrong(machine, action, index, Kind::NO_SLOT, false, meant ? String("the item's Equips To is empty") : meant.missing);
			return Ref<Resource>();
		}
		const Array slots = bags::slot_names(worn);
		if (!slots.has(slot)) {
			wrong(machine, action, index, Kind::NO_SUCH_SLOT, false, slot, worn->get_name(), slots);
			return Ref<Resource>();
		}
		String nobody;
		Node *wearer = wearer_of(machine, setting_of<&Kind::on_path>(action), nobody);
		if (wearer == nullptr) {
			wrong(machine, action, index, Kind::NOBODY, false, nobody);
			return Ref<Resource>();
		}
		wardrobe = Wardrobe{ Weak<Node>(worn), Weak<Node>(carried), Weak<Node>(wearer) };
		if (named.is_empty()) {
			return bags::has(worn, meant.item, 1) ? meant.item : Ref<Resource>();
		}
		return bags::worn(worn, slot);
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		Wardrobe wardrobe = { Weak<Node>(nullptr), Weak<Node>(nullptr), Weak<Node>(nullptr) };
		const Ref<Resource> item = find(machine, action, index, wardrobe);
		const bool comes_off = item.is_valid() && wardrobe.takes_back(item) && wardrobe.worn.get() != nullptr;
		if (comes_off) {
			wardrobe.take_off(item);
		}
		if (here) {
			verbs::send_either<&Kind::taken_off_event, &Kind::cannot_event>(machine, action, comes_off, comes_off ? Variant(item) : Variant());
		}
	}
};

const AddKinds added = {
	add_kind<SCEquipItemAction, EquipItem>(),
	add_kind<SCUnequipItemAction, UnequipItem>(),
};

} // namespace
