// Compiled runtimes of the kinds that nearly every design uses.

#include "action/add_kind.hpp"
#include "action/native_names.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/flow/basics.hpp"
#include "machine/value_kinds.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/builtin_types.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

struct Names {
	StringName warn_nothing_picked = "_warn_nothing_picked";
	StringName warn_send = "_warn_send";
};

const Names &names() {
	return NativeNames::of<Names>();
}

class Wait : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const double seconds = setting_of<&SCWaitAction::seconds>(action) + UtilityFunctions::randf() * setting_of<&SCWaitAction::random_extra>(action);
		machine->finish_after(index, seconds, Callable(), setting_of<&SCWaitAction::real_time>(action));
	}
};

class SetVariable : public SCNativeAction {
	using Operation = SCSetVariableAction::Operation;

	static bool steps_each_second(SCMachineAction *action) {
		const Operation operation = setting_of<&SCSetVariableAction::operation>(action);
		return setting_of<&SCSetVariableAction::per_second>(action) && (operation == SCSetVariableAction::ADD || operation == SCSetVariableAction::SUBTRACT) && action->repeats();
	}

	static bool combine(Variant::Operator operation, const Variant &left, const Variant &right, Variant &answer) {
		// The answer may go where an operand is.
		Variant result;
		bool valid = false;
		Variant::evaluate(operation, left, right, result, valid);
		answer = result;
		return valid;
	}

	// Places of whole numbers are worked on as places, and rounded when all is done.
	static Variant with_fractions(const Variant &value) {
		switch (value.get_type()) {
			case Variant::VECTOR2I:
				return Vector2(Vector2i(value));
			case Variant::VECTOR3I:
				return Vector3(Vector3i(value));
			default:
				return value;
		}
	}

	static bool set(const Variant &now, const Variant &value, Variant &answer) {
		if (ValueKinds::is_nothing(now) || (now.get_type() == Variant::OBJECT && ValueKinds::is_nothing(value))) {
			answer = value;
			return true;
		}
		if (!values::can_fit(now, value)) {
			return false;
		}
		// The rounding of a fraction is left to the storing, which tells of it.
		const bool loses_fraction = now.get_type() == Variant::INT && value.get_type() == Variant::FLOAT;
		answer = loses_fraction ? value : values::fitted_to(now, value);
		return true;
	}

	static bool toggle(const Variant &now, Variant &answer) {
		if (!ValueKinds::is_nothing(now) && now.get_type() != Variant::BOOL && !values::is_number(now)) {
			return false;
		}
		answer = values::fitted_to(now, !values::as_truth(now));
		return true;
	}

	static bool calculate(Variant::Operator operation, const Variant &now, const Variant &value, double factor, Variant &answer) {
		Variant amount = with_fractions(value);
		if (factor != 1.0 && !combine(Variant::OP_MULTIPLY, amount, factor, amount)) {
			return false;
		}
		// A variable that holds nothing yet counts as zero.
		Variant base = with_fractions(now);
		if (ValueKinds::is_nothing(now) && !combine(Variant::OP_MULTIPLY, amount, 0, base)) {
			return false;
		}
		const bool to_a_place = base.get_type() == Variant::VECTOR2 || base.get_type() == Variant::VECTOR3;
		if (to_a_place && !values::is_number(amount)) {
			if (!values::can_fit(base, amount)) {
				return false;
			}
			amount = values::fitted_to(base, amount);
		}
		if (!combine(operation, base, amount, answer)) {
			return false;
		}
		if (with_fractions(now).get_type() != now.get_type()) {
			answer = values::fitted_to(now, answer);
		}
		return true;
	}

	static bool outcome(Operation operation, const Variant &now, const Variant &value, double factor, Variant &answer) {
		switch (operation) {
			case SCSetVariableAction::SET:
				return set(now, value, answer);
			case SCSetVariableAction::ADD:
				return calculate(Variant::OP_ADD, now, value, factor, answer);
			case SCSetVariableAction::SUBTRACT:
				return calculate(Variant::OP_SUBTRACT, now, value, factor, answer);
			case SCSetVariableAction::MULTIPLY:
				return calculate(Variant::OP_MULTIPLY, now, value, 1.0, answer);
			case SCSetVariableAction::TOGGLE:
				return toggle(now, answer);
		}
		return false;
	}

	static bool is_plain_number(const Variant &value) { return value.get_type() == Variant::INT || value.get_type() == Variant::FLOAT; }

	// Nearly all that is set every frame are numbers that stay the kind of number they are: those take a short way, without
	// the engine's table of operators. False when this is something else.
	static bool count(SCMachineBase *machine, const SCSetVariableAction &kind, double factor) {
		MachineRun &run = machine->run();
		Variant *now = run.unguarded_value(kind.variable_name);
		if (now == nullptr || !is_plain_number(*now) || !is_plain_number(kind.value) || kind.operation == SCSetVariableAction::TOGGLE || kind.operation == SCSetVariableAction::SET) {
			return false;
		}
		const bool whole = now->get_type() == Variant::INT;
		if (whole && (kind.value.get_type() != Variant::INT || factor != 1.0)) {
			return false;
		}
		if (whole) {
			// Unsigned, as what is too big wraps around.
			const uint64_t base = uint64_t(int64_t(*now));
			const uint64_t amount = uint64_t(int64_t(kind.value));
			const uint64_t answer = kind.operation == SCSetVariableAction::ADD ? base + amount : kind.operation == SCSetVariableAction::SUBTRACT ? base - amount
																																				 : base * amount;
			*now = int64_t(answer);
			run.mark_values_changed();
			return true;
		}
		const double base = *now;
		const double amount = kind.operation == SCSetVariableAction::MULTIPLY ? double(kind.value) : double(kind.value) * factor;
		const double answer = kind.operation == SCSetVariableAction::ADD ? base + amount : kind.operation == SCSetVariableAction::SUBTRACT ? base - amount
																																		   : base * amount;
		*now = answer;
		run.mark_values_changed();
		return true;
	}

	static void work(SCMachineBase *machine, SCMachineAction *action, const StringName &name, double factor) {
		const Variant now = machine->get_value(name);
		Variant answer;
		if (outcome(setting_of<&SCSetVariableAction::operation>(action), now, setting_of<&SCSetVariableAction::value>(action), factor, answer)) {
			verbs::store(machine, name, answer);
		} else if (const SCSetVariableAction *kind = Object::cast_to<SCSetVariableAction>(action)) {
			kind->warn_cannot(machine, now);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		const SCSetVariableAction *kind = as_kind<SCSetVariableAction>(action);
		if (kind != nullptr && !kind->per_second && count(machine, *kind, 1.0)) {
			verbs::finish_unless_repeating(machine, action, index, here);
			return;
		}
		const StringName name = setting_of<&SCSetVariableAction::variable_name>(action);
		if (name.is_empty()) {
			action->call(names().warn_nothing_picked, machine, index);
		} else if (!steps_each_second(action)) {
			work(machine, action, name, 1.0);
		}
		verbs::finish_unless_repeating(machine, action, index, here);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double delta) override {
		SCSetVariableAction *kind = as_kind<SCSetVariableAction>(action);
		// Asked of the kind itself where it can be, which the compiler then knows the answer of.
		if (!(kind != nullptr ? kind->repeats() : action->repeats())) {
			return;
		}
		if (kind != nullptr && count(machine, *kind, kind->per_second ? delta : 1.0)) {
			return;
		}
		const StringName name = setting_of<&SCSetVariableAction::variable_name>(action);
		if (!name.is_empty()) {
			work(machine, action, name, steps_each_second(action) ? delta : 1.0);
		}
	}
};

class SendEvent : public SCNativeAction {
	static constexpr int SEND_LATER = 3;

	static void send_to_group(SCMachineBase *machine, SCMachineAction *action, int index, const StringName &event, const Variant &data) {
		const StringName group = setting_of<&SCSendEventAction::to_group>(action);
		SCMachine *sender = Object::cast_to<SCMachine>(machine);
		if (group.is_empty()) {
			action->call(names().warn_send, machine, index);
		} else if (sender != nullptr) {
			sender->broadcast_event(group, event, data);
		}
	}

	static void send_to_node(SCMachineBase *machine, SCMachineAction *action, int index, const StringName &event, const Variant &data) {
		Node *at = values::node_of(machine, setting_of<&SCSendEventAction::to_node_path>(action));
		if (SCMachine *heard_by = SCMachine::machine_of_or_above(at)) {
			heard_by->send_event(event, data);
		} else {
			action->call(names().warn_send, machine, index);
		}
	}

	static void send(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StringName event = setting_of<&SCSendEventAction::event_name>(action);
		if (event.is_empty()) {
			action->call(names().warn_send, machine, index);
			return;
		}
		const Variant data = setting_of<&SCSendEventAction::data>(action);
		SCMachineBase::note_sender(event, machine);
		if (SCMachineBase::core_is_global_event(event)) {
			SCMachineBase::broadcast_everywhere(event, data);
			return;
		}
		switch (setting_of<&SCSendEventAction::reach>(action)) {
			case SCSendEventAction::THIS_MACHINE:
				machine->send_event(event, data);
				return;
			case SCSendEventAction::A_GROUP:
				send_to_group(machine, action, index, event, data);
				return;
			case SCSendEventAction::EVERY_MACHINE:
				SCMachineBase::broadcast_everywhere(event, data);
				return;
			case SCSendEventAction::A_NODE:
				send_to_node(machine, action, index, event, data);
				return;
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
		const StillHere here(machine);
		send(machine, action, index);
		if (here) {
			machine->finish(index);
		}
	}

	// What was waited with finishes the action. The values of the moment of sending are what the event carries.
	void other(SCMachineBase *machine, SCMachineAction *action, int index, int what) override {
		if (what != SEND_LATER) {
			return;
		}
		const StillHere here(machine);
		if (action->reads_variables()) {
			action->read_variables(machine);
		}
		if (here) {
			send(machine, action, index);
		}
	}
};

class Print : public OnceOrRepeating<Print> {
public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
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
};

const AddKinds added = {
	add_kind<SCWaitAction, Wait>(),
	add_kind<SCSetVariableAction, SetVariable>(),
	add_kind<SCSendEventAction, SendEvent>(),
	add_kind<SCPrintAction, Print>(),
};

} // namespace
