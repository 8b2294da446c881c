// The compiled runtime of Event On Signal.

#include "action/add_kind.hpp"
#include "action/native_calls.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/input/signals.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine_base.hpp"

namespace {

struct Names {
	StringName handler = "handler";
	StringName node = "node";
	StringName signal = "signal";
};

using Kind = SCEventOnSignalAction;

const Names &names() {
	return NativeNames::of<Names>();
}

void hear(SCMachineBase *machine, SCMachineAction *action, int, const Array &handed_over) {
	const StillHere here(machine);
	const int64_t argument = setting_of<&Kind::argument>(action);
	const StringName event = setting_of<&Kind::event_name>(action);
	const Variant picked = argument >= 1 && argument <= handed_over.size() ? handed_over[argument - 1] : Variant();
	const StringName store_in = setting_of<&Kind::store_argument_in>(action);
	if (!store_in.is_empty()) {
		machine->set_value(store_in, picked);
	}
	if (here && !event.is_empty()) {
		machine->send_event_from_signal(event, picked);
	}
}

class EventOnSignal : public SCNativeAction {
	static Node *node_of(const Dictionary &slot) {
		const Variant node = slot.get(names().node, Variant());
		return node.get_type() == Variant::OBJECT ? Object::cast_to<Node>(node.get_validated_object()) : nullptr;
	}

	static void listen(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StringName signal = setting_of<&Kind::signal_name>(action);
		Node *node = values::node_of(machine, setting_of<&Kind::node_path>(action));
		if (node == nullptr) {
			verbs::say<&Kind::warn_signal>(action, machine, index, int(Kind::NO_NODE), Variant());
			return;
		}
		if (!node->has_signal(signal)) {
			verbs::say<&Kind::warn_signal>(action, machine, index, int(Kind::NO_SUCH_SIGNAL), node);
			return;
		}
		if (setting_of<&Kind::event_name>(action).is_empty() && setting_of<&Kind::store_argument_in>(action).is_empty()) {
			verbs::warn(machine, action,
					vformat("it hears %s and has nothing to send. Type an event under Event Name, or pick a variable under Store Argument In.", signal));
		}
		const Callable handler = ActionCall::make("Event On Signal", machine, action, index, hear);
		Dictionary slot = machine->slot(index);
		slot[names().handler] = handler;
		slot[names().node] = node;
		slot[names().signal] = signal;
		node->connect(signal, handler);
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		listen(machine, action, index);
		if (here) {
			machine->finish(index);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override {
		const Dictionary slot = machine->slot(index);
		const Callable handler = slot.get(names().handler, Callable());
		Node *node = node_of(slot);
		const StringName signal = slot.get(names().signal, StringName());
		if (node != nullptr && node->is_connected(signal, handler)) {
			node->disconnect(signal, handler);
		}
	}
};

const AddKinds added = {
	add_kind<SCEventOnSignalAction, EventOnSignal>(),
};

} // namespace
