// The compiled runtime of Use Item.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "inventory/bags.hpp"
#include "inventory/items.hpp"
#include "kinds/items/using.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"

namespace {

using Kind = SCUseItemAction;

struct Names {
	StringName used_up = "used_up";
	StringName leaves_the_bag = "leaves_the_bag";
	StringName when_used = "when_used";
	StringName charge = "charge";
	StringName use_event = "use_event";

	StringName script = "quillstead_items";
	StringName use_up = "use_up";
};

const Names &names() {
	return NativeNames::of<Names>();
}

class UseItem : public OnceOrRepeating<UseItem> {
	static void warn(SCMachineBase *machine, SCMachineAction *action, int index, Kind::Wrong what, const String &words) {
		verbs::say<&Kind::warn>(action, machine, index, int64_t(what), words);
	}

	static SCMachineBase *user(SCMachineBase *machine, SCMachineAction *action, int index, const NodePath &path) {
		if (path.is_empty()) {
			return machine;
		}
		Node *node = values::node_of(machine, path);
		if (SCMachine *found = SCMachine::machine_of_or_above(node)) {
			return found;
		}
		const Weak<SCMachineBase> instead(machine);
		warn(machine, action, index, Kind::NO_USER,
				node != nullptr ? vformat("%s has no Machine on it or above it", node->get_name())
								: vformat("the node named in On, %s, was not found", words::name_in_line(path)));
		return instead.get();
	}

	static void use_up(SCMachineBase *machine, SCMachineAction *action, int index, const Ref<Resource> &item) {
		const StillHere here(machine);
		const NodePath on_path = setting_of<&Kind::on_path>(action);
		Node *bag = bags::at(machine, setting_of<&Kind::bag_path>(action), bags::EITHER);
		if (bag == nullptr) {
			warn(machine, action, index, Kind::NO_BAG, items::shown_name(item));
		}
		if (bag == nullptr || !bags::has(bag, item, 1)) {
			if (here) {
				verbs::send<&Kind::none_left_event>(machine, action);
			}
			return;
		}
		// From here on one is used, whatever becomes of the state meanwhile.
		const Weak<SCMachineBase> alive(machine);
		const Array changes = items::ask(item, names().when_used);
		if (changes.is_empty()) {
			warn(machine, action, index, Kind::CHANGES_NOTHING, items::shown_name(item));
		}
		if (alive.get() == nullptr) {
			return;
		}
		const Weak<SCMachineBase> by(user(machine, action, index, on_path));
		const Weak<Node> from(bag);
		if (from.get() != nullptr && items::ask(item, names().leaves_the_bag).booleanize()) {
			bags::take(from.get(), item, 1);
		}
		if (SCMachineBase *whose = by.get()) {
			CompanionScripts::call(names().script, names().use_up, Array::make(whose, item));
		}
	}

	static void use_charged(SCMachineBase *machine, SCMachineAction *action, const Ref<Resource> &item) {
		const StillHere here(machine);
		const StringName variable = setting_of<&Kind::charge_variable>(action);
		const double needed = values::as_number(items::ask(item, names().charge));
		const bool has_charge = !variable.is_empty() && machine->has_value(variable);
		// What needs no charge does without the variable.
		const double charge = has_charge || needed > 0.0 ? values::number_of(machine, 0.0, variable) : 0.0;
		if (!here) {
			return;
		}
		if (item.is_null() || needed > charge) {
			verbs::send<&Kind::not_ready_event>(machine, action);
			return;
		}
		const Weak<SCMachineBase> alive(machine);
		const Variant held = machine->get_value(variable);
		if (has_charge && values::is_number(held)) {
			machine->set_value(variable, held.get_type() == Variant::INT ? Variant(int64_t(0)) : Variant(0.0));
		}
		if (alive.get() != nullptr) {
			const Variant event = items::ask(item, names().use_event);
			verbs::send(machine, event, item);
		}
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		items::Meant meant = items::meant<&Kind::item, &Kind::item_variable>(machine, action);
		if (!meant && items::is_item(setting_of<&Kind::item>(action).ptr())) {
			meant = { setting_of<&Kind::item>(action), String() };
		}
		if (!meant) {
			warn(machine, action, index, Kind::NO_ITEM, meant.missing);
		}
		if (!here) {
			return;
		}
		if (meant && items::ask(meant.item, names().used_up).booleanize()) {
			use_up(machine, action, index, meant.item);
		} else {
			use_charged(machine, action, meant.item);
		}
	}
};

const AddKinds added = {
	add_kind<SCUseItemAction, UseItem>(),
};

} // namespace
