// The compiled runtimes of Give Item and New Run.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "inventory/items.hpp"
#include "kinds/items/giving.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"

namespace {

struct Names {
	StringName script = "quillstead_items";
	StringName give = "give";
	StringName take_away = "take_away";
	StringName new_run = "new_run";
};

const Names &names() {
	return NativeNames::of<Names>();
}

class GiveItem : public OnceOrRepeating<GiveItem> {
	using Kind = SCGiveItemAction;

	static SCMachineBase *receiver(SCMachineBase *machine, SCMachineAction *action, int index) {
		const NodePath path = setting_of<&Kind::machine_path>(action);
		if (path.is_empty()) {
			return machine;
		}
		Node *node = values::node_of(machine, path);
		if (SCMachine *found = SCMachine::machine_of_or_above(node)) {
			return found;
		}
		const String why = node != nullptr ? vformat("%s has no Machine on it or above it", node->get_name())
										   : vformat("the node named in Machine, %s, was not found", words::name_in_line(path));
		verbs::say<&Kind::warn>(action, machine, index, int64_t(Kind::NO_MACHINE), why);
		return nullptr;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		const Weak<SCMachineBase> to(receiver(machine, action, index));
		if (!here || to.get() == nullptr) {
			return;
		}
		const items::Meant meant = items::meant<&Kind::item, &Kind::item_variable>(machine, action);
		if (!meant) {
			verbs::say<&Kind::warn>(action, machine, index, int64_t(Kind::NO_ITEM), meant.missing);
			return;
		}
		const bool gives = checked::choice<&Kind::what>(machine, action, Kind::GIVE) == Kind::GIVE;
		const StringName event = setting_of<&Kind::item_event>(action);
		const Weak<SCMachineBase> from(machine);
		CompanionScripts::call(names().script, gives ? names().give : names().take_away, Array::make(to.get(), meant.item));
		// It was given, whatever became of the state meanwhile.
		if (gives && from.get() != nullptr) {
			verbs::send(machine, event, meant.item);
		}
	}
};

class NewRun : public OnceOrRepeating<NewRun> {
public:
	static void work(SCMachineBase *, SCMachineAction *, int, double) { CompanionScripts::call(names().script, names().new_run, Array()); }
};

const AddKinds added = {
	add_kind<SCGiveItemAction, GiveItem>(),
	add_kind<SCNewRunAction, NewRun>(),
};

} // namespace
