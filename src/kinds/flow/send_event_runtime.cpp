// The compiled runtime of Send Event.

#include "action/add_kind.hpp"
#include "action/own_value.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/flow/send_event.hpp"
#include "machine/event_state.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

class SendEvent : public SCNativeAction {
	using Kind = SCSendEventAction;

	static constexpr int SEND_LATER = 3;

	static void send_to_group(SCMachineBase *machine, SCMachineAction *action, int index, const StringName &event, const Variant &data) {
		const StringName group = setting_of<&Kind::to_group>(action);
		SCMachine *sender = Object::cast_to<SCMachine>(machine);
		if (group.is_empty()) {
			verbs::say<&Kind::warn_send>(action, machine, index);
		} else if (sender != nullptr) {
			sender->broadcast_event(group, event, data);
		}
	}

	static void send_to_node(SCMachineBase *machine, SCMachineAction *action, int index, const StringName &event, const Variant &data) {
		Node *at = values::node_of(machine, setting_of<&Kind::to_node_path>(action));
		if (SCMachine *heard_by = SCMachine::machine_of_or_above(at)) {
			heard_by->send_event(event, data);
		} else {
			verbs::say<&Kind::warn_send>(action, machine, index);
		}
	}

	static void send_to_all(SCMachineBase *machine, const StringName &event, const Variant &data) {
		EventRegistry::tell_quests(machine, event);
		SCMachineBase::broadcast_everywhere(event, data);
	}

	static void send(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StringName event = setting_of<&Kind::event_name>(action);
		if (event.is_empty()) {
			verbs::say<&Kind::warn_send>(action, machine, index);
			return;
		}
		const Variant data = contents::own_value<&Kind::data>(action);
		SCMachineBase::note_sender(event, machine);
		if (SCMachineBase::core_is_global_event(event)) {
			send_to_all(machine, event, data);
			return;
		}
		switch (setting_of<&Kind::reach>(action)) {
			case Kind::THIS_MACHINE:
				machine->send_event(event, data);
				return;
			case Kind::A_GROUP:
				send_to_group(machine, action, index, event, data);
				return;
			case Kind::EVERY_MACHINE:
				send_to_all(machine, event, data);
				return;
			case Kind::A_NODE:
				send_to_node(machine, action, index, event, data);
				return;
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const double delay = setting_of<&Kind::delay>(action);
		if (delay > 0.0) {
			const Callable later = callable_mp_static(&SCNativeActions::call).bind(SEND_LATER, action, machine, index, 0.0);
			machine->finish_after(index, delay, later, false);
			return;
		}
		const StillHere here(machine);
		send(machine, action, index);
		if (here) {
			machine->finish(index);
		}
	}

	// What was waited with finishes the action. The values of the moment of sending are what the event carries.
	void other(SCMachineBase *machine, SCMachineAction *action, int index, int what) override {
		const StillHere here(machine);
		if (action->reads_variables()) {
			action->read_variables(machine);
		}
		if (here) {
			send(machine, action, index);
		}
		if (here && what != SEND_LATER) {
			machine->finish(index);
		}
	}
};

const AddKinds added = {
	add_kind<SCSendEventAction, SendEvent>(),
};

} // namespace
