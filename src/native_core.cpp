// Compiled runtimes of the kinds that nearly every design uses.

#include "action/values.hpp"
#include "action/words.hpp"
#include "kinds/flow.hpp"
#include "machine/still_here.hpp"
#include "native_files.hpp"
#include "sc_machine.hpp"
#include "sc_native_actions.hpp"

#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

class Wait : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const double extra = setting_of<&SCWaitAction::random_extra>(action);
		const double seconds = setting_of<&SCWaitAction::seconds>(action) + (extra > 0.0 ? UtilityFunctions::randf() * extra : 0.0);
		machine->finish_after(index, seconds, Callable(), setting_of<&SCWaitAction::real_time>(action));
	}
};

class SetVariable : public SCNativeAction {
	static bool steps_each_second(const SCMachineAction *action) {
		const auto operation = setting_of<&SCSetVariableAction::operation>(action);
		return setting_of<&SCSetVariableAction::per_second>(action) && (operation == SCSetVariableAction::ADD || operation == SCSetVariableAction::SUBTRACT) && const_cast<SCMachineAction *>(action)->repeats();
	}

	static Variant combined(const Variant &now, const Variant &value, Variant::Operator operation) {
		Variant answer;
		bool valid = false;
		Variant::evaluate(operation, now, value, answer, valid);
		return valid ? answer : now;
	}

	static void work(SCMachineBase *machine, const SCMachineAction *action, const StringName &name, double factor) {
		const Variant value = setting_of<&SCSetVariableAction::value>(action);
		const Variant now = machine->get_value(name);
		Variant answer;
		switch (setting_of<&SCSetVariableAction::operation>(action)) {
			case SCSetVariableAction::SET:
				answer = machine->has_value(name) ? values::fitted_to(now, value) : value;
				break;
			case SCSetVariableAction::ADD:
				answer = combined(now, scaled(value, factor), Variant::OP_ADD);
				break;
			case SCSetVariableAction::SUBTRACT:
				answer = combined(now, scaled(value, factor), Variant::OP_SUBTRACT);
				break;
			case SCSetVariableAction::MULTIPLY:
				answer = combined(now, value, Variant::OP_MULTIPLY);
				break;
			case SCSetVariableAction::TOGGLE:
				answer = !values::as_truth(now);
				break;
		}
		if (now.get_type() == Variant::INT && answer.get_type() == Variant::FLOAT) {
			answer = values::keep_whole(machine, name, answer);
		}
		machine->set_value(name, answer);
	}

	static Variant scaled(const Variant &value, double factor) {
		return factor == 1.0 ? value : combined(value, factor, Variant::OP_MULTIPLY);
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StringName name = setting_of<&SCSetVariableAction::variable_name>(action);
		StillHere here(machine);
		if (name.is_empty()) {
			action->call("_warn_nothing_picked", machine, index);
		} else if (!steps_each_second(action)) {
			work(machine, action, name, 1.0);
		}
		if (here && !action->repeats()) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double delta) override {
		const StringName name = setting_of<&SCSetVariableAction::variable_name>(action);
		if (!name.is_empty() && action->repeats()) {
			work(machine, action, name, steps_each_second(action) ? delta : 1.0);
		}
	}
};

class SendEvent : public SCNativeAction {
	static constexpr int SEND_LATER = 3;

	static void send(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StringName event = setting_of<&SCSendEventAction::event_name>(action);
		if (event.is_empty()) {
			action->call("_warn_send", machine, index);
			return;
		}
		const Variant data = setting_of<&SCSendEventAction::data>(action);
		SCMachineBase::note_sender(event, machine);
		const auto reach = setting_of<&SCSendEventAction::reach>(action);
		if (SCMachineBase::core_is_global_event(event) || reach == SCSendEventAction::EVERY_MACHINE) {
			SCMachineBase::broadcast_everywhere(event, data);
		} else if (reach == SCSendEventAction::A_GROUP) {
			if (SCMachine *sender = Object::cast_to<SCMachine>(machine)) {
				sender->broadcast_event(setting_of<&SCSendEventAction::to_group>(action), event, data);
			}
		} else if (reach == SCSendEventAction::A_NODE) {
			const NodePath path = setting_of<&SCSendEventAction::to_node_path>(action);
			Node *at = path.is_empty() ? machine->target_node() : machine->node_at(path);
			if (SCMachine *heard_by = SCMachine::machine_of_or_above(at)) {
				heard_by->send_event(event, data);
			}
		} else {
			machine->send_event(event, data);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const double delay = setting_of<&SCSendEventAction::delay>(action);
		if (delay > 0.0) {
			const Callable later = callable_mp_static(&SCNativeActions::call).bind(SEND_LATER, action, machine, index, 0.0);
			machine->finish_after(index, delay, later, false);
			return;
		}
		StillHere here(machine);
		send(machine, action, index);
		if (here) {
			machine->finish(index);
		}
	}

	// The values of the moment of sending are what the event carries.
	void other(SCMachineBase *machine, SCMachineAction *action, int index, int what) override {
		if (what != SEND_LATER) {
			return;
		}
		StillHere here(machine);
		if (action->reads_variables()) {
			action->read_variables(machine);
		}
		if (here) {
			send(machine, action, index);
		}
	}
};

class Print : public SCNativeAction {
	static void say(SCMachineBase *machine, const SCMachineAction *action) {
		const String line = words::fill_in(setting_of<&SCPrintAction::text>(action), machine);
		switch (setting_of<&SCPrintAction::loudness>(action)) {
			case SCPrintAction::AS_LINE:
				UtilityFunctions::print(line);
				break;
			case SCPrintAction::AS_WARNING:
				UtilityFunctions::push_warning(line);
				break;
			case SCPrintAction::AS_ERROR:
				UtilityFunctions::push_error(line);
				break;
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		say(machine, action);
		if (!action->repeats()) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double) override {
		if (action->repeats()) {
			say(machine, action);
		}
	}
};

} // namespace

void register_core_natives() {
	add_native<SCWaitAction, Wait>();
	add_native<SCSetVariableAction, SetVariable>();
	add_native<SCSendEventAction, SendEvent>();
	add_native<SCPrintAction, Print>();
}
