// Compiled runtimes of the kinds by which a machine asks after itself and acts on others.

#include "action/add_kind.hpp"
#include "action/machines.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "action/storing.hpp"
#include "kinds/machine/machines.hpp"
#include "machine/machine_run.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/callable_custom.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

struct MachineKindNames {
	StringName forwarder = "forwarder";
	// On a machine that is switched off: the process mode it had before.
	StringName mode_when_on = "quillstead_mode_when_on";
};

// The machine meant, or null with the game maker told, where `instead` says what came of it.
SCMachine *machine_or_warn(SCMachineBase *machine, SCMachineAction *action, const NodePath &path, const char *instead) {
	SCMachine *found = machines::at(machine, path);
	if (found == nullptr && path.is_empty()) {
		verbs::warn(machine, action, vformat("no machine is picked, so %s. Pick the node that has it under Machine Path.", instead));
	} else if (found == nullptr) {
		verbs::warn(machine, action,
				vformat("there is no Machine on %s, nor on anything it sits under, so %s. Pick a node that has one under Machine Path.",
						words::name_in_line(path), instead));
	}
	return found;
}

class CancelDelayedEvents : public SCNativeAction {
	static bool is_called_off(Object *action, const StringName &event, Array called_off) {
		const SCMachineAction *waiting = Object::cast_to<SCMachineAction>(action);
		const StringName delayed = waiting != nullptr ? waiting->delayed_event() : StringName();
		if (delayed.is_empty() || (!event.is_empty() && delayed != event)) {
			return false;
		}
		called_off.push_back(action);
		return true;
	}

	// An action with nothing left to send has done its work, or its state would wait for it for ever.
	static void finish_all(SCMachineBase *machine, const Array &called_off) {
		struct Waiting {
			int64_t serial;
			int index;
		};
		StillHere here(machine);
		MachineRun &run = machine->run();
		LocalVector<Waiting> waiting;
		for (const RunRow *row : run.live_rows()) {
			for (int i = 0; i < row->action_count(); i++) {
				if (row->runs[i].started && !row->runs[i].finished && called_off.has(row->table->actions[i].compiled)) {
					waiting.push_back({ row->serial, i });
				}
			}
		}
		for (const Waiting &one : waiting) {
			if (run.machine() == nullptr || !run.is_running()) {
				return;
			}
			run.finish_by_serial(one.serial, one.index);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		StillHere here(machine);
		Array called_off;
		const int count =
				machine->cancel_timeouts(callable_mp_static(&is_called_off).bind(setting_of<&SCCancelDelayedEventsAction::event>(action), called_off));
		if (here) {
			verbs::keep_if_named<&SCCancelDelayedEventsAction::store_count_in>(machine, action, count);
		}
		if (here) {
			finish_all(machine, called_off);
		}
	}
};

// A machine that is switched off takes no event: each is swallowed before a transition sees it.
bool swallow(const StringName &, const Variant &) {
	return true;
}

class EnableMachine : public SCNativeAction {
	static bool is_held(const SCMachine *machine) { return machine->has_meta(NativeNames::of<MachineKindNames>().mode_when_on); }

	static void hold(SCMachine *machine) {
		if (is_held(machine)) {
			return;
		}
		machine->set_meta(NativeNames::of<MachineKindNames>().mode_when_on, int64_t(machine->get_process_mode()));
		machine->add_forwarder(callable_mp_static(&swallow));
		machine->set_process_mode(Node::PROCESS_MODE_DISABLED);
	}

	static void switch_on(SCMachine *machine) {
		MachineRun &run = machine->run();
		MachineRun::Busy keep(run);
		if (is_held(machine)) {
			const StringName &mode = NativeNames::of<MachineKindNames>().mode_when_on;
			const int64_t before = machine->get_meta(mode);
			machine->remove_meta(mode);
			machine->remove_forwarder(callable_mp_static(&swallow));
			machine->set_process_mode(Node::ProcessMode(before));
		}
		if (run.machine() != nullptr && !run.is_running()) {
			machine->start();
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		SCMachine *other = machine_or_warn(machine, action, setting_of<&SCEnableMachineAction::machine_path>(action), "nothing was switched");
		if (other == nullptr) {
			return;
		}
		const auto turn = setting_of<&SCEnableMachineAction::turn>(action);
		const bool is_on = other->is_running() && !is_held(other);
		if (turn == SCEnableMachineAction::TURN_ON || (turn == SCEnableMachineAction::TURN_OTHER_WAY && !is_on)) {
			switch_on(other);
		} else if (setting_of<&SCEnableMachineAction::when_off>(action) == SCEnableMachineAction::STOPS) {
			other->stop();
		} else {
			hold(other);
		}
	}
};

// Stands among a machine's forwarders while the state runs. Never hides the event from the machine itself.
class EventForward final : public CallableCustom {
	// Machines that are passing something on at this moment, so that two that pass on to each other do not
	// hand an event to and fro.
	struct Passing {
		uint64_t from;
		const Passing *outer;
	};
	inline static const Passing *innermost = nullptr;

	uint64_t from;
	uint64_t to;
	TypedArray<StringName> only_these;

	static bool is_passing(uint64_t machine) {
		for (const Passing *at = innermost; at != nullptr; at = at->outer) {
			if (at->from == machine) {
				return true;
			}
		}
		return false;
	}
	static bool same(const CallableCustom *left, const CallableCustom *right) { return left == right; }
	static bool before(const CallableCustom *left, const CallableCustom *right) { return left < right; }

public:
	EventForward(uint64_t from_machine, uint64_t to_machine, const TypedArray<StringName> &only) : from(from_machine), to(to_machine), only_these(only) {}

	uint32_t hash() const override { return uint32_t(from * 31 + to); }
	String get_as_text() const override { return "SCForwardEventsAction"; }
	CompareEqualFunc get_compare_equal_func() const override { return &EventForward::same; }
	CompareLessFunc get_compare_less_func() const override { return &EventForward::before; }
	bool is_valid() const override { return true; }
	ObjectID get_object() const override { return ObjectID(from); }

	void call(const Variant **arguments, int count, Variant &answer, GDExtensionCallError &error) const override {
		error.error = GDEXTENSION_CALL_OK;
		answer = false;
		SCMachineBase *other = Object::cast_to<SCMachineBase>(ObjectDB::get_instance(to));
		if (count < 2 || other == nullptr || is_passing(to)) {
			return;
		}
		const StringName event = *arguments[0];
		if (SCMachineBase::core_is_global_event(event) || (!only_these.is_empty() && !only_these.has(event))) {
			return;
		}
		const Passing this_one = { from, innermost };
		innermost = &this_one;
		other->send_event(event, *arguments[1]);
		innermost = this_one.outer;
	}
};

class ForwardEvents : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		SCMachine *other = machine_or_warn(machine, action, setting_of<&SCForwardEventsAction::machine_path>(action), "no event is passed on");
		if (other == nullptr) {
			return;
		}
		if (other == machine) {
			verbs::warn(machine, action, "it would pass its events on to itself, so it passes on none. Pick a node with another machine under Machine Path.");
			return;
		}
		const TypedArray<StringName> only_these = setting_of<&SCForwardEventsAction::only_these>(action);
		const Callable forwarder = Callable(memnew(EventForward(machine->get_instance_id(), other->get_instance_id(), only_these.duplicate())));
		machine->slot(index)[NativeNames::of<MachineKindNames>().forwarder] = forwarder;
		machine->add_forwarder(forwarder);
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override {
		const Variant forwarder = machine->slot(index).get(NativeNames::of<MachineKindNames>().forwarder, Variant());
		if (forwarder.get_type() == Variant::CALLABLE) {
			machine->remove_forwarder(forwarder);
		}
	}
};

// Keeps something the machine knows of itself.
template <auto Store, Variant (*Ask)(SCMachineBase *)>
class KeepsAName : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		verbs::keep<Store>(machine, action, Ask(machine), "what it found");
	}
};

Variant last_event_of(SCMachineBase *machine) {
	return String(machine->last_event());
}

Variant previous_state_of(SCMachineBase *machine) {
	return String(machines::name_of_state(machine->previous_state()));
}

class GetState : public OnceOrRepeating<GetState> {
	static String state_of(SCMachineBase *machine, SCGetStateAction::Which which) {
		const Array chain = machine->active_chain();
		if (!machine->is_running() || chain.is_empty()) {
			return String();
		}
		if (which == SCGetStateAction::INNERMOST) {
			return machines::name_of_state(machine->get_current_state());
		}
		PackedStringArray names;
		for (int64_t i = 0; i < chain.size(); i++) {
			names.push_back(machines::name_of_state(chain[i]));
		}
		return which == SCGetStateAction::OUTERMOST ? names[0] : String("/").join(names);
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		StillHere here(machine);
		const NodePath path = setting_of<&SCGetStateAction::machine_path>(action);
		SCMachineBase *asked = path.is_empty() ? machine : machine_or_warn(machine, action, path, "it found no state");
		if (asked != nullptr && here) {
			verbs::keep<&SCGetStateAction::store_in>(machine, action, state_of(asked, setting_of<&SCGetStateAction::which>(action)), "what it found");
		}
	}
};

class GoToPreviousState : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		const Ref<Resource> previous = machine->previous_state();
		if (previous.is_valid()) {
			machine->go_to_state(previous);
		} else {
			verbs::warn(machine, action, "the machine came from no other state, so it stays where it is. Put the action in a state that others lead to.");
		}
	}
};

class MachineVariable : public OnceOrRepeating<MachineVariable> {
	static void read(SCMachineBase *machine, SCMachineAction *action, SCMachine *other, const StringName &there) {
		if (other->has_value(there)) {
			verbs::keep<&SCMachineVariableAction::store_in>(machine, action, other->get_value(there), "what it read");
		} else {
			say_it_lacks(machine, action, other, there, "nothing was read");
		}
	}

	static void write(SCMachineBase *machine, SCMachineAction *action, SCMachine *other, const StringName &there) {
		const StringName from = setting_of<&SCMachineVariableAction::from_variable>(action);
		const Variant value = machine->get_value(from);
		if (from.is_empty()) {
			verbs::warn(machine, action, "no variable is picked to take the value from, so nothing was written. Pick one beside From Variable.");
		} else if (!machine->has_value(from)) {
			say_it_lacks(machine, action, machine, from, "nothing was written");
		} else if (!other->has_value(there)) {
			say_it_lacks(machine, action, other, there, "nothing was written");
		} else if (!storing::put(other, there, value)) {
			verbs::warn(machine, action,
					vformat("%s on %s holds %s and cannot take %s, so it was left as it is. Pick variables of the same kind.", there, other->name_in_messages(),
							values::kind_in_words(other->get_value(there)), values::kind_in_words(value)));
		}
	}

	static void say_it_lacks(SCMachineBase *machine, SCMachineAction *action, SCMachineBase *lacking, const StringName &variable, const char *instead) {
		verbs::warn(machine, action,
				vformat("%s has no variable called %s, so %s. Add it under that machine's Variables, or pick one it has.", lacking->name_in_messages(),
						variable, instead));
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		SCMachine *other = machine_or_warn(machine, action, setting_of<&SCMachineVariableAction::machine_path>(action), "nothing was read or written");
		if (other == nullptr) {
			return;
		}
		const StringName there = setting_of<&SCMachineVariableAction::variable_there>(action);
		if (there.is_empty()) {
			verbs::warn(machine, action, "it names no variable of the other machine, so nothing was read or written. Type its name beside Variable There.");
		} else if (setting_of<&SCMachineVariableAction::operation>(action) == SCMachineVariableAction::READ) {
			read(machine, action, other, there);
		} else {
			write(machine, action, other, there);
		}
	}
};

const AddKinds added = {
	add_kind<SCCancelDelayedEventsAction, CancelDelayedEvents>(),
	add_kind<SCEnableMachineAction, EnableMachine>(),
	add_kind<SCForwardEventsAction, ForwardEvents>(),
	add_kind<SCGetLastEventAction, KeepsAName<&SCGetLastEventAction::store_in, &last_event_of>>(),
	add_kind<SCGetPreviousStateAction, KeepsAName<&SCGetPreviousStateAction::store_in, &previous_state_of>>(),
	add_kind<SCGetStateAction, GetState>(),
	add_kind<SCGoToPreviousStateAction, GoToPreviousState>(),
	add_kind<SCMachineVariableAction, MachineVariable>(),
};

} // namespace
